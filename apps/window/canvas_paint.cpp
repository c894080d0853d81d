// How the canvas draws: the picture, or its preview, on a surface that stays as long as neither changes, and over it
// what moves.
#include "canvas.h"

#include <algorithm>
#include <cmath>

#include "system/screen.h"
#include "system/text.h"
#include "texts.h"

namespace {

struct Span {
    int from;
    int to;
};

// The pixels of a side that come into a part of the window, and where they begin and end there.
Span SpanOf(double origin, double scale, double clipFrom, double clipTo, std::size_t pixels) {
    const double from = std::floor((clipFrom - origin) / scale);
    const double to = std::ceil((clipTo - origin) / scale);
    const auto most = static_cast<double>(pixels);
    return {static_cast<int>(std::clamp(from, 0.0, most)), static_cast<int>(std::clamp(to, 0.0, most))};
}

int Rounded(double number) {
    return static_cast<int>(std::lround(number));
}

} // namespace

Preview Canvas::Whole() const {
    const Level& level = levels_->AtLeast(view_.scale);
    const LockedPicture locked(*level.picture);
    return {level.picture, 0, 0, static_cast<double>(locked.Width()) / size_.width, false};
}

// Straight from the packed picture, the pixels that are to be seen.
void Canvas::PaintPicture(HDC device, const RECT& clip, const Preview& shown) const {
    const LockedPicture picture(*shown.image);
    const Position origin = view_.ToClient({shown.left, shown.top});
    const double scale = view_.scale / shown.scale;
    const Span columns = SpanOf(origin.x, scale, clip.left, clip.right, picture.Width());
    const Span rows = SpanOf(origin.y, scale, clip.top, clip.bottom, picture.Height());
    if (columns.from >= columns.to || rows.from >= rows.to) {
        return;
    }
    const RECT from{columns.from, rows.from, columns.to, rows.to};
    const RECT to{Rounded(origin.x + columns.from * scale), Rounded(origin.y + rows.from * scale),
                  Rounded(origin.x + columns.to * scale), Rounded(origin.y + rows.to * scale)};
    const int saved = SaveDC(device);
    IntersectClipRect(device, clip.left, clip.top, clip.right, clip.bottom);
    PaintPixels(device, to, picture.Bytes(), from);
    RestoreDC(device, saved);
}

void Canvas::PaintScene(HDC device, const RECT& client) {
    FillRect(device, &client, GetSysColorBrush(COLOR_APPWORKSPACE));
    if (levels_ == nullptr) {
        RECT place = client;
        const GdiObject<HFONT> font = MessageFont(Dots(window_));
        const Chosen chosen(device, font.Get());
        SetBkMode(device, TRANSPARENT);
        SetTextColor(device, GetSysColor(COLOR_WINDOWTEXT));
        DrawTextW(device, Text(IDS_DROP_HERE).c_str(), -1, &place, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
        return;
    }
    RECT before = client;
    RECT after = client;
    if (!preview_ || before_) {
        after.left = after.right;
    } else if (divider_) {
        before.right = after.left = DividerColumn();
    } else if (!preview_->isPart) {
        before.right = before.left;
    }
    PaintPicture(device, before, Whole());
    if (preview_ && after.left < after.right) {
        PaintPicture(device, after, *preview_);
    }
    if (preview_ && divider_ && !before_) {
        const RECT line{before.right - 1, client.top, before.right + 1, client.bottom};
        FillRect(device, &line, GetSysColorBrush(COLOR_HIGHLIGHT));
    }
}

void Canvas::PaintOverlay(HDC device, const RECT& client) {
    if (levels_ == nullptr) {
        return;
    }
    if (!selection_.IsEmpty()) {
        if (!edges_) {
            edges_ = EdgesOf(selection_, size_, view_,
                             {static_cast<double>(client.right), static_cast<double>(client.bottom)});
        }
        PaintEdges(device, view_, *edges_, antStep_);
    }
    if (tool_ != nullptr) {
        PaintFigure(device, view_, tool_->Shown(), antStep_, Dots(window_).PerInch());
    }
}

void Canvas::Paint() {
    const DWORD begun = GetTickCount();
    RECT client;
    GetClientRect(window_, &client);
    PAINTSTRUCT painting;
    const HDC screen = BeginPaint(window_, &painting);
    scene_.Prepare(screen, client.right, client.bottom);
    shown_.Prepare(screen, client.right, client.bottom);
    if (sceneIsOld_) {
        PaintScene(scene_.Device(), client);
        sceneIsOld_ = false;
    }
    BitBlt(shown_.Device(), 0, 0, client.right, client.bottom, scene_.Device(), 0, 0, SRCCOPY);
    PaintOverlay(shown_.Device(), client);
    if (GetFocus() == window_) {
        DrawFocusRect(shown_.Device(), &client);
    }
    BitBlt(screen, 0, 0, client.right, client.bottom, shown_.Device(), 0, 0, SRCCOPY);
    EndPaint(window_, &painting);
    painted_ = GetTickCount();
    paintTook_ = painted_ - begun;
    if (previewIsNew_) {
        previewIsNew_ = false;
        owner_.PreviewPainted();
    }
}

#include "canvas.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <windowsx.h>

#include "commands.h"
#include "system/guard.h"
#include "system/screen.h"
#include "system/text.h"
#include "texts.h"

namespace {

constexpr UINT_PTR kAntTimer = 1;
constexpr UINT kAntMilliseconds = 120;
constexpr DWORD kRests = 15; // as long as painting took: edges that are slow to draw move slowly
constexpr int kScrollStep = 40;

Position PositionOf(LPARAM lParam) {
    return {static_cast<double>(GET_X_LPARAM(lParam)), static_cast<double>(GET_Y_LPARAM(lParam))};
}

void RegisterCanvasClass(WNDPROC procedure) {
    WNDCLASSEXW description = {};
    description.cbSize = sizeof description;
    description.style = CS_DBLCLKS;
    description.lpfnWndProc = procedure;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = QV8WINDOW_CANVAS_CLASS;
    RegisterClassExW(&description); // fails the second time, which does not matter
}

} // namespace

Canvas::Canvas(HWND parent, CanvasOwner& owner) : owner_(owner) {
    RegisterCanvasClass(Procedure);
    CreateWindowExW(0, QV8WINDOW_CANVAS_CLASS, L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS, 0, 0, 0, 0,
                    parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(IDC_CANVAS)), GetModuleHandleW(nullptr), this);
    SetTimer(window_, kAntTimer, kAntMilliseconds, nullptr);
}

QV8_REALIGN LRESULT CALLBACK Canvas::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        auto* const canvas = static_cast<Canvas*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
        canvas->window_ = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(canvas));
    }
    auto* const canvas = reinterpret_cast<Canvas*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (canvas == nullptr) {
        return DefWindowProcW(window, message, wParam, lParam);
    }
    return Guarded(window, [&] { return canvas->Handle(message, wParam, lParam); });
}

LRESULT Canvas::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_ERASEBKGND:
        return 1; // all of it is painted
    case WM_PAINT:
        Paint();
        return 0;
    case WM_SIZE:
        SetView(fits_ ? Fitted() : view_, fits_);
        return 0;
    case WM_TIMER:
        MoveAnts();
        return 0;
    case WM_GETDLGCODE: {
        const auto* const key = reinterpret_cast<const MSG*>(lParam);
        const bool leaves = key != nullptr && key->message == WM_KEYDOWN && key->wParam == VK_TAB;
        return leaves ? 0 : DLGC_WANTALLKEYS;
    }
    case WM_KEYDOWN:
        return Key(wParam) ? 0 : DefWindowProcW(window_, message, wParam, lParam);
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        InvalidateRect(window_, nullptr, FALSE);
        return 0;
    case WM_SETCURSOR:
        return LOWORD(lParam) == HTCLIENT && SetCursorShape() ? TRUE : DefWindowProcW(window_, message, wParam, lParam);
    case WM_MOUSELEAVE:
        isTracked_ = false;
        owner_.PointerMoved(nullptr);
        return 0;
    case WM_CAPTURECHANGED:
        drag_ = Drag::kNone;
        return 0;
    default:
        if (message >= WM_MOUSEFIRST && message <= WM_MBUTTONDBLCLK) {
            Mouse(message, wParam, lParam);
            return 0;
        }
        return DefWindowProcW(window_, message, wParam, lParam);
    }
}

void Canvas::MoveAnts() {
    const bool areThere = !selection_.IsEmpty() || (tool_ != nullptr && !tool_->Shown().area.empty());
    if (areThere && GetTickCount() - painted_ >= kRests * paintTook_) {
        antStep_ = (antStep_ + 1) % kAntSteps;
        InvalidateRect(window_, nullptr, FALSE);
    }
}

void Canvas::Show(SharedLevels levels, const ViewMapping& view, bool fits) {
    levels_ = std::move(levels);
    preview_.reset();
    tool_ = nullptr;
    size_ = {};
    if (levels_ != nullptr) {
        const LockedPicture locked(*levels_->Whole());
        size_ = {static_cast<double>(locked.Width()), static_cast<double>(locked.Height())};
    }
    SetView(fits ? Fitted() : view, fits);
}

void Canvas::ImproveLevels(SharedLevels levels) {
    levels_ = std::move(levels);
    Redraw();
}

void Canvas::SetPreview(std::optional<Preview> preview) {
    previewIsNew_ = preview.has_value();
    if (preview_ || preview) {
        preview_ = std::move(preview);
        Redraw();
        Refit();
    }
}

void Canvas::SetSelection(const Selection& selection) {
    selection_ = selection;
    edges_.reset();
    InvalidateRect(window_, nullptr, FALSE);
}

void Canvas::SetTool(Tool* tool) {
    tool_ = tool;
    drag_ = Drag::kNone;
    SetView(fits_ ? Fitted() : view_, fits_); // a tool may need more room
}

void Canvas::ShowDivider(bool shown) {
    divider_ = shown;
    Redraw();
}

void Canvas::ShowBefore(bool shown) {
    if (before_ != shown) {
        before_ = shown;
        Redraw();
    }
}

void Canvas::Redraw() {
    sceneIsOld_ = true;
    InvalidateRect(window_, nullptr, FALSE);
}

Extent Canvas::Client() const {
    RECT client;
    GetClientRect(window_, &client);
    return {static_cast<double>(client.right), static_cast<double>(client.bottom)};
}

// What there is to see. A view that fits has room for results that lie beside the picture or are larger.
Box Canvas::Room() const {
    const Extent alone = tool_ != nullptr ? tool_->Room(size_) : size_;
    Box room{0, 0, alone.width, alone.height};
    if (fits_ && preview_) {
        const LockedPicture shown(*preview_->image);
        room.left = std::min(room.left, preview_->left);
        room.top = std::min(room.top, preview_->top);
        room.right = std::max(room.right, preview_->left + static_cast<double>(shown.Width()) / preview_->scale);
        room.bottom = std::max(room.bottom, preview_->top + static_cast<double>(shown.Height()) / preview_->scale);
    }
    return room;
}

ViewMapping Canvas::Fitted() const {
    const Box room = Room();
    const ViewMapping view = ::Fit({room.Width(), room.Height()}, Client());
    return {view.scale, view.left - std::floor(room.left * view.scale), view.top - std::floor(room.top * view.scale)};
}

ViewMapping Canvas::Clamped(ViewMapping view) const {
    const Box room = Room();
    const Position corner{std::floor(room.left * view.scale), std::floor(room.top * view.scale)};
    view = Clamp({view.scale, view.left + corner.x, view.top + corner.y}, {room.Width(), room.Height()}, Client());
    return {view.scale, view.left - corner.x, view.top - corner.y};
}

// Not while something is dragged, which would go away under the pointer; and not for less than previews at two levels
// differ by.
void Canvas::Refit() {
    constexpr double kEnough = 4;
    if (!fits_ || levels_ == nullptr || drag_ != Drag::kNone) {
        return;
    }
    const ViewMapping fitted = Fitted();
    const Position corner = fitted.ToClient({size_.width, size_.height});
    const Position before = view_.ToClient({size_.width, size_.height});
    const double moved = std::max({std::abs(fitted.left - view_.left), std::abs(fitted.top - view_.top),
                                   std::abs(corner.x - before.x), std::abs(corner.y - before.y)});
    if (moved > kEnough) {
        SetView(fitted, true);
    }
}

void Canvas::SetView(const ViewMapping& view, bool fits) {
    fits_ = fits;
    view_ = levels_ != nullptr ? Clamped(view) : view;
    edges_.reset();
    Redraw();
    owner_.ViewChanged();
}

void Canvas::Fit() {
    fits_ = true; // so that the preview counts
    SetView(Fitted(), true);
}

void Canvas::Zoom(double scale) {
    const Extent client = Client();
    SetView(ZoomAround(view_, {client.width / 2, client.height / 2}, scale), false);
}

void Canvas::ZoomBy(int clicks) {
    Zoom(ScaleAfter(view_.scale, clicks));
}

void Canvas::Wheel(WPARAM wParam, LPARAM lParam) {
    wheelRest_ += GET_WHEEL_DELTA_WPARAM(wParam);
    const int clicks = wheelRest_ / WHEEL_DELTA;
    wheelRest_ %= WHEEL_DELTA;
    POINT at{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    ScreenToClient(window_, &at);
    if (clicks != 0 && levels_ != nullptr) {
        SetView(
            ZoomAround(view_, {static_cast<double>(at.x), static_cast<double>(at.y)}, ScaleAfter(view_.scale, clicks)),
            false);
    }
}

PreviewView Canvas::Visible() const {
    const Extent client = Client();
    const Position from = view_.ToPicture({0, 0});
    const Position to = view_.ToPicture({client.width, client.height});
    const auto clamped = [](double at, double most) {
        return static_cast<LONG>(std::clamp(at, 0.0, std::max(most, 0.0)));
    };
    return {{clamped(std::floor(from.x), size_.width), clamped(std::floor(from.y), size_.height),
             clamped(std::ceil(to.x), size_.width), clamped(std::ceil(to.y), size_.height)},
            view_.scale};
}

double Canvas::Reach() const {
    return Dots(window_)(7) / view_.scale;
}

int Canvas::DividerColumn() const {
    return static_cast<int>(Client().width * dividerAt_);
}

bool Canvas::Key(WPARAM key) {
    if (tool_ != nullptr && tool_->Key(static_cast<int>(key))) {
        Redraw();
        owner_.ToolChanged();
        return true;
    }
    const double step = Dots(window_)(kScrollStep);
    ViewMapping moved = view_;
    moved.left += key == VK_LEFT ? step : key == VK_RIGHT ? -step : 0;
    moved.top += key == VK_UP ? step : key == VK_DOWN ? -step : 0;
    if (levels_ != nullptr && (moved.left != view_.left || moved.top != view_.top)) {
        SetView(moved, false);
        return true;
    }
    return false;
}

void Canvas::Mouse(UINT message, WPARAM wParam, LPARAM lParam) {
    const Position at = PositionOf(lParam);
    if (message == WM_LBUTTONDOWN || message == WM_MBUTTONDOWN) {
        SetFocus(window_);
    }
    if (levels_ == nullptr) {
        return;
    }
    Track(at);
    if (drag_ == Drag::kTool || (!DragDivider(message, at) && !DragPicture(message, at))) {
        ToTool(message, wParam, at);
    }
}

void Canvas::Track(Position at) {
    if (!isTracked_) {
        TRACKMOUSEEVENT track{sizeof track, TME_LEAVE, window_, 0};
        isTracked_ = TrackMouseEvent(&track) != 0;
    }
    const Position inPicture = view_.ToPicture(at);
    const bool inside = inPicture.x >= 0 && inPicture.y >= 0 && inPicture.x < size_.width && inPicture.y < size_.height;
    owner_.PointerMoved(inside ? &inPicture : nullptr);
}

bool Canvas::DragDivider(UINT message, Position at) {
    const bool isNear = divider_ && preview_ && std::abs(at.x - DividerColumn()) <= Dots(window_)(5);
    if (message == WM_LBUTTONDOWN && isNear) {
        drag_ = Drag::kDivider;
        SetCapture(window_);
    } else if (drag_ == Drag::kDivider && message == WM_MOUSEMOVE) {
        dividerAt_ = std::clamp(at.x / std::max(1.0, Client().width), 0.0, 1.0);
        Redraw();
    } else if (drag_ == Drag::kDivider && message == WM_LBUTTONUP) {
        ReleaseCapture();
    } else {
        return drag_ == Drag::kDivider;
    }
    return true;
}

bool Canvas::DragPicture(UINT message, Position at) {
    const bool starts = message == WM_MBUTTONDOWN || (message == WM_LBUTTONDOWN && tool_ == nullptr);
    if (starts && drag_ == Drag::kNone) {
        drag_ = Drag::kPicture;
        dragFrom_ = at;
        dragView_ = view_;
        SetCapture(window_);
    } else if (drag_ == Drag::kPicture && message == WM_MOUSEMOVE) {
        ViewMapping moved = dragView_;
        moved.left += at.x - dragFrom_.x;
        moved.top += at.y - dragFrom_.y;
        SetView(moved, false);
    } else if (drag_ == Drag::kPicture && (message == WM_LBUTTONUP || message == WM_MBUTTONUP)) {
        ReleaseCapture();
    } else {
        return drag_ == Drag::kPicture;
    }
    return true;
}

void Canvas::ToTool(UINT message, WPARAM wParam, Position at) {
    if (tool_ == nullptr) {
        return;
    }
    using Kind = MouseEvent::Kind;
    Kind kind = Kind::kMove;
    switch (message) {
    case WM_MOUSEMOVE:
        break;
    case WM_LBUTTONDOWN:
        kind = Kind::kPress;
        drag_ = Drag::kTool;
        SetCapture(window_);
        break;
    case WM_LBUTTONUP:
        kind = Kind::kRelease;
        if (drag_ == Drag::kTool) {
            ReleaseCapture();
        }
        break;
    case WM_LBUTTONDBLCLK:
        kind = Kind::kDoubleClick;
        break;
    default:
        return;
    }
    if (tool_->Mouse({kind, view_.ToPicture(at), Reach(), (wParam & MK_SHIFT) != 0})) {
        Redraw();
        owner_.ToolChanged();
    }
    if (kind == Kind::kRelease) {
        Refit();
    }
}

bool Canvas::SetCursorShape() const {
    POINT at;
    if (levels_ == nullptr || !GetCursorPos(&at) || !ScreenToClient(window_, &at)) {
        return false;
    }
    const bool onDivider = divider_ && preview_ && std::abs(at.x - DividerColumn()) <= Dots(window_)(5);
    const Position inPicture = view_.ToPicture({static_cast<double>(at.x), static_cast<double>(at.y)});
    SetCursor(onDivider          ? LoadCursorW(nullptr, IDC_SIZEWE)
              : tool_ != nullptr ? SystemCursor(tool_->CursorAt(inPicture, Reach()))
                                 : LoadCursorW(nullptr, IDC_SIZEALL));
    return true;
}

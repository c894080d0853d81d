#include "tools/paint.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "pictures/picture.h"

namespace {

constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kBlack = RGB(0, 0, 0);
constexpr COLORREF kAccent = RGB(0, 120, 215);
constexpr int kPlainDots = 96;

POINT InClient(const ViewMapping& mapping, Position at) {
    constexpr double kFarthest = 30000; // what drawing takes on every system
    const Position client = mapping.ToClient(at);
    return {static_cast<LONG>(std::lround(std::clamp(client.x, -kFarthest, kFarthest))),
            static_cast<LONG>(std::lround(std::clamp(client.y, -kFarthest, kFarthest)))};
}

// Stands in the device for a while.
class Selected {
public:
    Selected(HDC device, HGDIOBJ object) : device_(device), object_(object), before_(SelectObject(device, object)) {}
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;
    ~Selected() {
        SelectObject(device_, before_);
        DeleteObject(object_); // a stock object is not harmed
    }

private:
    HDC device_;
    HGDIOBJ object_;
    HGDIOBJ before_;
};

// Slanting stripes of black and white, which seem to move when they begin elsewhere.
class Stripes {
public:
    explicit Stripes(int step) {
        std::array<WORD, kAntSteps> rows{};
        for (int y = 0; y != kAntSteps; ++y) {
            const unsigned turned = 0x0F0FU << ((y + step) % kAntSteps);
            rows.at(static_cast<std::size_t>(y)) = static_cast<WORD>(turned >> kAntSteps & 0xFFU);
        }
        pattern_ = CreateBitmap(kAntSteps, kAntSteps, 1, 1, rows.data());
        brush_ = CreatePatternBrush(pattern_);
    }
    Stripes(const Stripes&) = delete;
    Stripes& operator=(const Stripes&) = delete;
    ~Stripes() {
        DeleteObject(brush_);
        DeleteObject(pattern_);
    }
    HBRUSH Brush() const {
        return brush_;
    }
    HBITMAP Pattern() const {
        return pattern_;
    }

private:
    HBITMAP pattern_;
    HBRUSH brush_;
};

void DrawOutline(HDC device, const ViewMapping& mapping, const Outline& outline) {
    std::vector<POINT> points;
    std::transform(outline.points.begin(), outline.points.end(), std::back_inserter(points),
                   [&mapping](const Position& at) { return InClient(mapping, at); });
    if (outline.closed && !points.empty()) {
        points.push_back(points.front());
    }
    if (points.size() > 1) {
        Polyline(device, points.data(), static_cast<int>(points.size()));
    }
}

void DrawOutlines(HDC device, const ViewMapping& mapping, const std::vector<Outline>& outlines) {
    for (const Outline& outline : outlines) {
        DrawOutline(device, mapping, outline);
    }
}

void DrawMoving(HDC device, const ViewMapping& mapping, const std::vector<Outline>& outlines, int step) {
    if (outlines.empty()) {
        return;
    }
    const Stripes stripes(step);
    const LOGBRUSH brush{BS_PATTERN, 0, reinterpret_cast<ULONG_PTR>(stripes.Pattern())};
    const Selected pen(device, ExtCreatePen(PS_GEOMETRIC | PS_SOLID | PS_ENDCAP_FLAT, 1, &brush, 0, nullptr));
    DrawOutlines(device, mapping, outlines);
}

// A light line along a dark one is seen on every picture.
void DrawLines(HDC device, const ViewMapping& mapping, const std::vector<Outline>& outlines, int thickness) {
    {
        const Selected pen(device, CreatePen(PS_SOLID, 3 * thickness, kWhite));
        DrawOutlines(device, mapping, outlines);
    }
    const Selected pen(device, CreatePen(PS_SOLID, thickness, kAccent));
    DrawOutlines(device, mapping, outlines);
}

void DrawHandles(HDC device, const ViewMapping& mapping, const std::vector<Position>& handles, int half) {
    const Selected pen(device, CreatePen(PS_SOLID, 1, kBlack));
    const Selected brush(device, GetStockObject(WHITE_BRUSH));
    for (const Position& handle : handles) {
        const POINT at = InClient(mapping, handle);
        Rectangle(device, at.x - half, at.y - half, at.x + half + 1, at.y + half + 1);
    }
}

void DrawNumber(HDC device, POINT at, int number, int radius) {
    Ellipse(device, at.x - radius, at.y - radius, at.x + radius + 1, at.y + radius + 1);
    const std::wstring text = std::to_wstring(number);
    RECT room{at.x - radius, at.y - radius, at.x + radius + 1, at.y + radius + 1};
    DrawTextW(device, text.c_str(), static_cast<int>(text.size()), &room,
              DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOCLIP | DT_NOPREFIX);
}

// A disc with the number beside the point, whose own pixel a cross marks.
void DrawPoints(HDC device, const ViewMapping& mapping, const std::vector<NumberedPoint>& points, int dots) {
    const int half = MulDiv(7, dots, kPlainDots);
    std::vector<Outline> crosses;
    const double arm = half / mapping.scale;
    for (const auto& [at, number] : points) {
        crosses.push_back({{{at.x - arm, at.y}, {at.x + arm, at.y}}, false});
        crosses.push_back({{{at.x, at.y - arm}, {at.x, at.y + arm}}, false});
    }
    DrawLines(device, mapping, crosses, 1);
    const Selected font(device, CreateFontW(-MulDiv(12, dots, kPlainDots), 0, 0, 0, FW_BOLD, FALSE, FALSE, FALSE,
                                            DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                                            DEFAULT_PITCH | FF_SWISS, L"Tahoma"));
    const Selected pen(device, CreatePen(PS_SOLID, 1, kWhite));
    const Selected brush(device, CreateSolidBrush(kAccent));
    const int mode = SetBkMode(device, TRANSPARENT);
    const COLORREF colour = SetTextColor(device, kWhite);
    for (const auto& [at, number] : points) {
        const POINT point = InClient(mapping, at);
        DrawNumber(device, {point.x + 2 * half, point.y - 2 * half}, number, half + 1);
    }
    SetTextColor(device, colour);
    SetBkMode(device, mode);
}

void DrawPicture(HDC device, const ViewMapping& mapping, const PlacedPicture& placed) {
    const POINT from = InClient(mapping, placed.corner);
    const POINT to = InClient(mapping, {placed.corner.x + placed.size.width, placed.corner.y + placed.size.height});
    const auto* const bytes = static_cast<const BYTE*>(GlobalLock(placed.picture));
    if (bytes != nullptr) {
        const auto& header = *reinterpret_cast<const BITMAPINFOHEADER*>(bytes);
        PaintPixels(device, {from.x, from.y, to.x, to.y}, bytes, {0, 0, header.biWidth, header.biHeight});
        GlobalUnlock(placed.picture);
    }
}

// The header of a part of the rows of a picture: colour table and channel masks included.
struct PartHeader {
    BITMAPINFOHEADER header;
    std::array<RGBQUAD, 256> table;
};

// What the runs cover, as a picture of one bit.
HBITMAP BitsOf(const std::vector<RECT>& runs, int width, int height) {
    const auto stride = static_cast<std::size_t>((width + 15) / 16 * 2);
    std::vector<BYTE> bits(stride * static_cast<std::size_t>(height));
    for (const RECT& run : runs) {
        for (LONG y = run.top; y < run.bottom; ++y) {
            BYTE* const row = bits.data() + static_cast<std::size_t>(y) * stride;
            for (LONG x = run.left; x < run.right; ++x) {
                row[x / 8] = static_cast<BYTE>(row[x / 8] | 0x80 >> x % 8);
            }
        }
    }
    return CreateBitmap(width, height, 1, 1, bits.data());
}

} // namespace

void PaintFigure(HDC device, const ViewMapping& mapping, const Figure& figure, int antStep, int dots) {
    for (const PlacedPicture& placed : figure.pictures) {
        DrawPicture(device, mapping, placed);
    }
    DrawMoving(device, mapping, figure.area, antStep);
    DrawLines(device, mapping, figure.lines, std::max(1, dots / kPlainDots));
    DrawHandles(device, mapping, figure.handles, MulDiv(3, dots, kPlainDots));
    DrawPoints(device, mapping, figure.points, dots);
}

void PaintEdges(HDC device, const ViewMapping& mapping, const SelectionEdges& edges, int antStep) {
    DrawMoving(device, mapping, edges.outlines, antStep);
    if (edges.runs.empty()) {
        return;
    }
    // There may be very many. As a picture they take no longer than few.
    int width = 0;
    int height = 0;
    for (const RECT& run : edges.runs) {
        width = std::max(width, static_cast<int>(run.right));
        height = std::max(height, static_cast<int>(run.bottom));
    }
    constexpr DWORD kBrushWhereSet = 0x00E20746; // DSPDxax
    const Stripes stripes(antStep);
    const HDC memory = CreateCompatibleDC(device);
    {
        const Selected bits(memory, BitsOf(edges.runs, width, height));
        const HGDIOBJ before = SelectObject(device, stripes.Brush());
        BitBlt(device, 0, 0, width, height, memory, 0, 0, kBrushWhereSet);
        SelectObject(device, before);
    }
    DeleteDC(memory);
}

void PaintPixels(HDC device, const RECT& to, const BYTE* packed, const RECT& from) {
    const std::size_t offset = sizeof(BITMAPINFOHEADER) + static_cast<std::size_t>(GetDibPalSize(packed));
    PartHeader part{};
    std::memcpy(&part, packed, std::min(sizeof part, offset));
    BITMAPINFOHEADER& header = part.header;
    const auto stride = static_cast<LONG>(RowBytes(header.biBitCount, static_cast<std::uint64_t>(header.biWidth)));
    const BYTE* const lowest =
        packed + offset + static_cast<std::size_t>(stride) * static_cast<std::size_t>(header.biHeight - from.bottom);
    // A picture that becomes much smaller is taken for one whose rows are several rows of it, of which only the first
    // is looked at: the system reads all that it is given, however little of it will be seen.
    const LONG rows = from.bottom - from.top;
    const LONG every = std::max<LONG>(1, rows / std::max<LONG>(1, to.bottom - to.top));
    if (every > 1) {
        header.biWidth = static_cast<LONG>(std::int64_t{stride} * every * 8 / header.biBitCount);
    }
    header.biHeight = rows / every;
    header.biSizeImage = 0;
    const int mode = SetStretchBltMode(device, COLORONCOLOR);
    StretchDIBits(device, to.left, to.top, to.right - to.left, to.bottom - to.top, from.left, 0, from.right - from.left,
                  header.biHeight, lowest, reinterpret_cast<const BITMAPINFO*>(&part), DIB_RGB_COLORS, SRCCOPY);
    SetStretchBltMode(device, mode);
}

HCURSOR SystemCursor(ToolCursor cursor) {
    const std::array names{IDC_ARROW,  IDC_CROSS,  IDC_SIZEALL,  IDC_HAND,
                           IDC_SIZENS, IDC_SIZEWE, IDC_SIZENWSE, IDC_SIZENESW};
    return LoadCursor(nullptr, names.at(static_cast<std::size_t>(cursor)));
}

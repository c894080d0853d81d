#include "support/area.h"

#include <algorithm>
#include <sstream>

#include "support/drawing.h"

namespace test {
namespace {

constexpr AreaForm kForms[] = {AreaForm::kWhole,          AreaForm::kMask,          AreaForm::kPolygonInside,
                               AreaForm::kPolygonOutside, AreaForm::kEllipseInside, AreaForm::kEllipseOutside};

// Draws with the platform's white pen and brush on black, and reads the canvas back as a 1-bit picture.
template <class Shape>
bool DrawOn(Picture& canvas, Shape shape) {
    std::fill_n(canvas.TableEntry(1), 3, BYTE{255});
    const BITMAPINFOHEADER header = canvas.Header();
    auto* const bits = &canvas.bytes[canvas.PixelOffset()];
    auto* const format = reinterpret_cast<BITMAPINFO*>(canvas.bytes.data());
    const auto rows = static_cast<UINT>(canvas.Height());
    const HDC screen = GetDC(nullptr);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, canvas.Width(), canvas.Height());
    const HDC context = CreateCompatibleDC(nullptr);
    SetDIBits(context, bitmap, 0, rows, bits, format, DIB_RGB_COLORS);
    const HGDIOBJ before = SelectObject(context, bitmap);
    SelectObject(context, GetStockObject(WHITE_PEN));
    SelectObject(context, GetStockObject(WHITE_BRUSH));
    const bool drawn = shape(context);
    SelectObject(context, before);
    const int read = GetDIBits(context, bitmap, 0, rows, bits, format, DIB_RGB_COLORS);
    DeleteDC(context);
    DeleteObject(bitmap);
    ReleaseDC(nullptr, screen);
    canvas.SetHeader(header); // reading fills in the size of the rows
    EXPECT_EQ(read, canvas.Height());
    return drawn;
}

bool DrawPolygon(Picture& canvas, std::vector<POINT> points) {
    for (POINT& point : points) {
        point.x = std::clamp<LONG>(point.x, 0, canvas.Width() - 1);
        point.y = std::clamp<LONG>(point.y, 0, canvas.Height() - 1);
    }
    return DrawOn(canvas,
                  [&](HDC context) { return Polygon(context, points.data(), static_cast<int>(points.size())) != 0; });
}

// Cut to the picture, with its sides in order.
RECT Clipped(const RECT& rect, int width, int height) {
    const auto x = std::minmax({std::clamp<LONG>(rect.left, 0, width - 1), std::clamp<LONG>(rect.right, 0, width - 1)});
    const auto y =
        std::minmax({std::clamp<LONG>(rect.top, 0, height - 1), std::clamp<LONG>(rect.bottom, 0, height - 1)});
    return {x.first, y.first, x.second, y.second};
}

bool DrawEllipse(Picture& canvas, const RECT& rect) {
    const RECT clipped = Clipped(rect, canvas.Width(), canvas.Height());
    return DrawOn(canvas, [&](HDC context) {
        return Ellipse(context, clipped.left, clipped.top, clipped.right, clipped.bottom) != 0;
    });
}

// Wine draws the ends of ellipses this narrow as its memory happens to be, so that they prove nothing.
bool IsUnsteady(const RECT& clipped) {
    const LONG width = clipped.right - clipped.left;
    const LONG height = clipped.bottom - clipped.top;
    return width > 2 && height >= 2 * (width - 1) * (width - 1);
}

} // namespace

std::span<const AreaForm> AreaForms() {
    return kForms;
}

const char* NameOf(AreaForm form) {
    switch (form) {
    case AreaForm::kWhole:
        return "whole";
    case AreaForm::kMask:
        return "mask";
    case AreaForm::kPolygonInside:
    case AreaForm::kPolygonOutside:
        return "polygon";
    default:
        return "ellipse";
    }
}

std::string Describe(const Area& area) {
    std::ostringstream text;
    text << "area type " << area.type << (area.inside != 0 ? " inside" : " outside");
    for (const POINT& point : area.points) {
        text << " (" << point.x << ", " << point.y << ")";
    }
    const RECT& rect = area.rect;
    text << " [" << rect.left << ", " << rect.top << ", " << rect.right << ", " << rect.bottom << "]";
    return text.str();
}

Area RandomArea(AreaForm form, int width, int height, Random& random) {
    const auto anyX = [&] { return static_cast<LONG>(random.Between(-3, width + 2)); };
    const auto anyY = [&] { return static_cast<LONG>(random.Between(-3, height + 2)); };
    Area area;
    area.inside = form == AreaForm::kPolygonOutside || form == AreaForm::kEllipseOutside ? 0 : random.Between(1, 9);
    switch (form) {
    case AreaForm::kWhole:
        area.type = QV8_AREA_WHOLE;
        break;
    case AreaForm::kMask:
        area.type = QV8_AREA_MASK;
        break;
    case AreaForm::kPolygonInside:
    case AreaForm::kPolygonOutside:
        area.type = QV8_AREA_POLYGON;
        for (int left = random.Between(2, 9); left != 0; --left) {
            const LONG x = anyX();
            area.points.push_back({x, anyY()});
        }
        break;
    default:
        area.type = QV8_AREA_ELLIPSE;
        do {
            area.rect.left = anyX();
            area.rect.top = anyY();
            area.rect.right = anyX();
            area.rect.bottom = anyY();
        } while (IsUnsteady(Clipped(area.rect, width, height)));
    }
    return area;
}

Picture RandomMask(int width, int height, Random& random) {
    Picture mask = RandomPicture(LayoutNamed("1"), width, height, random);
    for (std::size_t i = mask.PixelOffset(); i != mask.bytes.size(); ++i) {
        if (random.Chance(50)) {
            mask.bytes[i] = random.Chance(50) ? 0xFF : 0;
        }
    }
    return mask;
}

bool DrawLine(Picture& canvas, POINT from, POINT to) {
    return DrawOn(canvas, [&](HDC context) {
        return MoveToEx(context, from.x, from.y, nullptr) != 0 && LineTo(context, to.x, to.y) != 0;
    });
}

std::optional<std::vector<bool>> PixelsOf(const Area& area, const Picture& mask, int width, int height) {
    Picture marked = area.type == QV8_AREA_MASK ? mask : BlankPicture(1, width, height);
    if ((area.type == QV8_AREA_POLYGON && !DrawPolygon(marked, area.points)) ||
        (area.type == QV8_AREA_ELLIPSE && !DrawEllipse(marked, area.rect))) {
        return std::nullopt;
    }
    const bool outside = area.inside == 0 && (area.type == QV8_AREA_POLYGON || area.type == QV8_AREA_ELLIPSE);
    std::vector<bool> pixels;
    for (int row = 0; row != height; ++row) {
        for (int x = 0; x != width; ++x) {
            pixels.push_back(area.type == QV8_AREA_WHOLE || (marked.Index(x, row) != 0) != outside);
        }
    }
    return pixels;
}

} // namespace test

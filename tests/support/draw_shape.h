// Draws a shape through the platform's calls, in the steps of the library's area masks.
#pragma once

#include <cstddef>
#include <vector>

#include "platform/platform.h"
#include "support/shapes.h"

namespace test {

// Header and colours of a 1-bit picture, as the bit transfers take them.
struct MonoInfo {
    BITMAPINFOHEADER header = {};
    RGBQUAD colours[2] = {{0, 0, 0, 0}, {255, 255, 255, 0}};

    MonoInfo(int width, int height) {
        header.biSize = sizeof header;
        header.biWidth = width;
        header.biHeight = height;
        header.biPlanes = 1;
        header.biBitCount = 1;
    }
    BITMAPINFO* Get() {
        return reinterpret_cast<BITMAPINFO*>(this);
    }
};

// A bitmap selected into a memory context.
struct Canvas {
    HDC screen = GetDC(nullptr);
    HBITMAP bitmap;
    HDC context = CreateCompatibleDC(nullptr);
    HGDIOBJ previous;
    UINT rows;
    MonoInfo info;

    Canvas(int width, int height)
        : bitmap(CreateCompatibleBitmap(screen, width, height)), previous(SelectObject(context, bitmap)),
          rows(static_cast<UINT>(height)), info(width, height) {}
    ~Canvas() {
        SelectObject(context, previous);
        DeleteDC(context);
        DeleteObject(bitmap);
        ReleaseDC(nullptr, screen);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    bool Write(const std::vector<BYTE>& bits) {
        return SetDIBits(context, bitmap, 0, rows, bits.data(), info.Get(), DIB_RGB_COLORS) == static_cast<int>(rows);
    }
    bool Read(std::vector<BYTE>& bits) {
        return GetDIBits(context, bitmap, 0, rows, bits.data(), info.Get(), DIB_RGB_COLORS) == static_cast<int>(rows);
    }
};

// Sets the result and the mask of `shape`; false when a step around the drawing failed.
inline bool DrawShape(Shape& shape) {
    Canvas canvas(shape.width, shape.height);
    shape.mask.assign(shape.Stride() * static_cast<std::size_t>(shape.height), 0);
    if (canvas.previous == nullptr || !canvas.Write(shape.mask)) {
        return false;
    }
    const int mode = SetROP2(canvas.context, R2_COPYPEN);
    const HGDIOBJ pen = SelectObject(canvas.context, GetStockObject(WHITE_PEN));
    const HGDIOBJ brush = SelectObject(canvas.context, GetStockObject(WHITE_BRUSH));
    const std::vector<POINT>& points = shape.points;
    if (shape.kind == Shape::kPolygon) {
        shape.result = Polygon(canvas.context, points.data(), static_cast<int>(points.size()));
    } else if (shape.kind == Shape::kEllipse) {
        shape.result = Ellipse(canvas.context, points[0].x, points[0].y, points[1].x, points[1].y);
    } else if (MoveToEx(canvas.context, points[0].x, points[0].y, nullptr) == 0 ||
               LineTo(canvas.context, points[1].x, points[1].y) == 0) {
        return false;
    } else {
        shape.result = ExtFloodFill(canvas.context, points[2].x, points[2].y, RGB(0, 0, 0), FLOODFILLSURFACE);
    }
    SelectObject(canvas.context, pen);
    SelectObject(canvas.context, brush);
    SetROP2(canvas.context, mode);
    return canvas.Read(shape.mask);
}

} // namespace test

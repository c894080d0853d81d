// What the drawing calls work on: a bitmap's pixels, one bit each, and the context that draws on them. The library
// draws in white and black alone, so one bit says all there is to know of a pixel, and a row has the layout of a row
// of a 1-bit picture: the leftmost pixel in the highest bit, rows padded with zeros to whole 32-bit words.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "platform/drawing.h"

namespace qv8::drawing {

// Sides of a bitmap and coordinates of a shape stay within this, so that products of two distances fit 64 bits.
constexpr std::int32_t kMaxCoordinate = 1 << 29;

// The value is what eight pixels of that ink look like.
enum class Ink : std::uint8_t { Black = 0x00, White = 0xFF };

struct Pixels {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::size_t stride = 0;
    std::uint8_t* bits = nullptr; // the top row first

    std::uint8_t* Row(std::int32_t y) const {
        return bits + static_cast<std::size_t>(y) * stride;
    }

    // Both leave out what lies outside the bitmap; the span ends before `end`.
    void Set(std::int64_t x, std::int64_t y, Ink ink) const;
    void FillSpan(std::int64_t y, std::int64_t begin, std::int64_t end, Ink ink) const;
};

enum class ObjectKind : std::uint8_t { Bitmap, Pen, Brush, Font };

// Begins every object that can be selected, so that its kind can be read through an untyped handle.
struct ObjectHeader {
    ObjectKind kind;
    bool isStock;
};

// A pen one pixel wide or a solid brush.
struct DrawingTool {
    ObjectHeader header;
    Ink ink;
};

// The ink that is nearest to a colour.
Ink InkOf(COLORREF colour);

// The bitmap that `context` draws on, or null when there is none to draw on.
const Pixels* TargetOf(HDC context);

// What a context has selected before it is given a font: nothing that text can be drawn with.
extern ObjectHeader noFont;

void DeleteFont(ObjectHeader* font);

// Draws from `from` up to, not including, `to`.
void DrawLine(const Pixels& target, POINT from, POINT to, Ink ink);

constexpr bool IsDrawable(std::int32_t coordinate) {
    return coordinate >= -kMaxCoordinate && coordinate <= kMaxCoordinate;
}

} // namespace qv8::drawing

struct Qv8Bitmap {
    qv8::drawing::ObjectHeader header;
    bool isSelected = false;
    qv8::drawing::Pixels pixels; // owned, from the heap

    constexpr Qv8Bitmap(qv8::drawing::ObjectHeader itsHeader, qv8::drawing::Pixels itsPixels)
        : header(itsHeader), pixels(itsPixels) {}
    ~Qv8Bitmap() {
        std::free(pixels.bits);
    }
    Qv8Bitmap(const Qv8Bitmap&) = delete;
    Qv8Bitmap& operator=(const Qv8Bitmap&) = delete;
};

struct Qv8Brush {
    qv8::drawing::DrawingTool tool;
};

struct Qv8DeviceContext {
    Qv8Bitmap* bitmap; // null for the screen, which is not drawn on
    qv8::drawing::DrawingTool* pen;
    qv8::drawing::DrawingTool* brush;
    qv8::drawing::ObjectHeader* font = &qv8::drawing::noFont;
    qv8::drawing::Ink textInk = qv8::drawing::Ink::Black;
    qv8::drawing::Ink backInk = qv8::drawing::Ink::White;
    POINT position = {0, 0}; // where lines begin
};

// Text: FreeType draws the characters of a font without smoothing.
#include "platform/font.h"

#include FT_OUTLINE_H

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>
#include <tuple>
#include <utility>

using namespace qv8::drawing;

namespace {

// Where a line of text is drawn. Its own coordinates go right and down from the corner that reading begins in.
struct Line {
    const Pixels& target;
    const Qv8Font& font;
    std::int64_t x; // that corner
    std::int64_t y;

    // Fills a box given in the line's own coordinates.
    void Fill(std::int64_t left, std::int64_t top, std::int64_t right, std::int64_t bottom, Ink ink) const {
        for (int turn = 0; turn != font.quarterTurns; ++turn) {
            std::tie(left, top, right, bottom) = std::tuple(top, -right, bottom, -left);
        }
        const std::int64_t end = std::min<std::int64_t>(y + bottom, target.height);
        for (std::int64_t row = std::max<std::int64_t>(y + top, 0); row < end; ++row) {
            target.FillSpan(row, x + left, x + right, ink);
        }
    }
};

struct Box {
    std::int64_t left, top, right, bottom;
};

FT_Pos Floor(FT_Pos value) {
    return value >> 6;
}
FT_Pos Ceil(FT_Pos value) {
    return (value + 63) >> 6;
}

// The part of the target that an outline, whose origin is at the line's corner, can reach.
Box ReachOf(FT_Outline& outline, const Line& line) {
    FT_BBox bounds;
    FT_Outline_Get_CBox(&outline, &bounds);
    // A stroke thinner than a pixel is drawn all the same, to either side of its place.
    return {std::max<std::int64_t>(line.x + Floor(bounds.xMin) - 1, 0),
            std::max<std::int64_t>(line.y - Ceil(bounds.yMax) - 1, 0),
            std::min<std::int64_t>(line.x + Ceil(bounds.xMax) + 1, line.target.width),
            std::min<std::int64_t>(line.y - Floor(bounds.yMin) + 1, line.target.height)};
}

// Draws the outline in the glyph slot, `along` pixels into the line.
bool DrawOutline(const Line& line, LONG along, Ink ink) {
    static constexpr FT_Matrix kTurns[] = {
        {0x10000, 0, 0, 0x10000}, {0, -0x10000, 0x10000, 0}, {-0x10000, 0, 0, -0x10000}, {0, 0x10000, -0x10000, 0}};
    FT_Outline& outline = line.font.face->glyph->outline;
    FT_Outline_Translate(&outline, FT_Pos{along} * 64, FT_Pos{-line.font.Ascent()} * 64);
    FT_Outline_Transform(&outline, &kTurns[line.font.quarterTurns]);
    const Box box = ReachOf(outline, line);
    if (box.left >= box.right || box.top >= box.bottom) {
        return true;
    }
    const std::int64_t width = box.right - box.left;
    const std::int64_t height = box.bottom - box.top;
    if (width > kMaxBitmapSide || height > kMaxBitmapSide) {
        return false;
    }
    const auto stride = static_cast<std::size_t>(width + 7) / 8;
    const std::unique_ptr<BYTE[]> bits(new (std::nothrow) BYTE[stride * static_cast<std::size_t>(height)]());
    if (!bits) {
        return false;
    }
    FT_Bitmap bitmap = {};
    bitmap.width = static_cast<unsigned>(width);
    bitmap.rows = static_cast<unsigned>(height);
    bitmap.pitch = static_cast<int>(stride);
    bitmap.buffer = bits.get();
    bitmap.pixel_mode = FT_PIXEL_MODE_MONO;
    FT_Outline_Translate(&outline, (line.x - box.left) * 64, (box.bottom - line.y) * 64);
    if (FT_Outline_Get_Bitmap(line.font.library, &outline, &bitmap) != 0) {
        return false;
    }
    for (std::int64_t y = 0; y != height; ++y) {
        const BYTE* const row = bits.get() + static_cast<std::size_t>(y) * stride;
        for (std::int64_t x = 0; x != width; ++x) {
            if ((row[x >> 3] & 0x80U >> (x & 7)) != 0) {
                line.target.Set(box.left + x, box.top + y, ink);
            }
        }
    }
    return true;
}

// The lines under and through a text of that width.
void DrawBars(const Line& line, LONG width, Ink ink) {
    auto* const face = line.font.face;
    const auto scaled = [face](FT_Pos units) { return FT_MulFix(units, face->size->metrics.y_scale) / 64; };
    const FT_Pos thickness = std::max<FT_Pos>(scaled(face->underline_thickness), 1);
    const auto draw = [&](FT_Pos above) {
        const std::int64_t top = line.font.Ascent() - above;
        line.Fill(0, top, width, top + thickness, ink);
    };
    if (line.font.isUnderlined) {
        draw(scaled(face->underline_position));
    }
    if (line.font.isStruckOut) {
        draw(scaled(face->ascender) / 3);
    }
}

const Qv8Font* FontOf(HDC context) {
    return context == nullptr || context->font->isStock ? nullptr : reinterpret_cast<const Qv8Font*>(context->font);
}

// Returns the width of the text, -1 on failure.
LONG WidthOf(const Qv8Font& font, const char* text, int bytes) {
    LONG width = 0;
    const auto add = [&width](LONG advance) {
        width += advance;
        return true;
    };
    return ForEachCharacter(font, text, bytes, add) ? width : -1;
}

// The text without its marks on characters. Null when memory is short.
std::unique_ptr<char[]> WithoutMarks(const char* text, int& bytes) {
    std::unique_ptr<char[]> result(new (std::nothrow) char[static_cast<std::size_t>(bytes) + 1]);
    int count = 0;
    for (int i = 0; result && i < bytes; ++i) {
        const bool isMark = text[i] == '&';
        if (isMark && i + 1 == bytes) {
            break;
        }
        i += isMark ? 1 : 0;
        result[static_cast<std::size_t>(count++)] = text[i];
        if (!isMark && qv8::IsLeadByte(text[i]) && i + 1 < bytes) {
            result[static_cast<std::size_t>(count++)] = text[++i];
        }
    }
    bytes = count;
    return result;
}

COLORREF ColourOf(Ink ink) {
    return ink == Ink::White ? RGB(255U, 255U, 255U) : RGB(0U, 0U, 0U);
}

} // namespace

extern "C" {

int GetDeviceCaps(HDC context, int index) {
    return context != nullptr && index == LOGPIXELSY ? kDotsPerInch : 0;
}

int MulDiv(int number, int numerator, int denominator) {
    if (denominator == 0) {
        return -1;
    }
    const std::int64_t product = std::int64_t{number} * numerator;
    const std::int64_t half = std::abs(std::int64_t{denominator}) / 2;
    const std::int64_t result = (product < 0 ? product - half : product + half) / denominator;
    return result == static_cast<int>(result) ? static_cast<int>(result) : -1;
}

COLORREF SetTextColor(HDC context, COLORREF colour) {
    return context == nullptr ? CLR_INVALID : ColourOf(std::exchange(context->textInk, InkOf(colour)));
}

COLORREF SetBkColor(HDC context, COLORREF colour) {
    return context == nullptr ? CLR_INVALID : ColourOf(std::exchange(context->backInk, InkOf(colour)));
}

int SetBkMode(HDC context, int mode) {
    return context != nullptr && mode == OPAQUE ? OPAQUE : 0;
}

BOOL GetTextExtentPoint32A(HDC context, LPCSTR text, int bytes, SIZE* extent) {
    const Qv8Font* const font = FontOf(context);
    if (font == nullptr || text == nullptr || bytes < 0 || extent == nullptr) {
        return FALSE;
    }
    const LONG width = WidthOf(*font, text, bytes);
    if (width < 0) {
        return FALSE;
    }
    *extent = {width, font->Height()};
    return TRUE;
}

int DrawTextA(HDC context, LPCSTR text, int bytes, RECT* rect, UINT format) {
    const Qv8Font* const font = FontOf(context);
    const Pixels* const target = TargetOf(context);
    const bool isKnown = (format & ~UINT{DT_SINGLELINE}) == DT_NOCLIP;
    if (font == nullptr || target == nullptr || text == nullptr || bytes < 0 || rect == nullptr || !isKnown) {
        return 0;
    }
    const std::unique_ptr<char[]> plain = WithoutMarks(text, bytes);
    const LONG width = plain ? WidthOf(*font, plain.get(), bytes) : -1;
    if (width < 0) {
        return 0;
    }
    const Line line = {*target, *font, rect->left, rect->top};
    line.Fill(0, 0, width, font->Height(), context->backInk);
    LONG along = 0;
    const bool drawn = ForEachCharacter(*font, plain.get(), bytes, [&](LONG advance) {
        return DrawOutline(line, std::exchange(along, along + advance), context->textInk);
    });
    DrawBars(line, width, context->textInk);
    return drawn ? font->Height() : 0;
}

} // extern "C"

// Fonts of the drawing functions, as FreeType has them.
#pragma once

#include <ft2build.h>

#include FT_FREETYPE_H

#include <type_traits>

#include "platform/characters.h"
#include "platform/surface.h"

struct Qv8Font {
    qv8::drawing::ObjectHeader header = {qv8::drawing::ObjectKind::Font, false};
    FT_Library library = nullptr;
    FT_Face face = nullptr;
    FT_Matrix slant = {0x10000, 0, 0, 0x10000};
    int quarterTurns = 0; // anticlockwise
    bool isEmboldened = false;
    bool isUnderlined = false;
    bool isStruckOut = false;

    Qv8Font() = default;
    ~Qv8Font() {
        FT_Done_Face(face);
        FT_Done_FreeType(library);
    }
    Qv8Font(const Qv8Font&) = delete;
    Qv8Font& operator=(const Qv8Font&) = delete;

    int Ascent() const {
        return static_cast<int>(face->size->metrics.ascender >> 6);
    }
    int Height() const {
        return Ascent() + static_cast<int>(-face->size->metrics.descender >> 6);
    }
};
static_assert(std::is_standard_layout_v<Qv8Font>,
              "an untyped handle is read as the header that the object begins with");

namespace qv8::drawing {

constexpr int kDotsPerInch = 96;
constexpr LONG kMaxBitmapSide = 0x7FFF; // what FreeType's rasteriser takes

// Takes the first character of a text off it.
FT_ULong TakeCharacter(const char*& text, const char* end);

// Loads the outline of a character, upright, into the font's glyph slot. Returns its advance in pixels, -1 on failure.
LONG LoadCharacter(const Qv8Font& font, FT_ULong character);

// Runs use(advance) with the outline of each visible character in the glyph slot. False when one fails.
template <class Use>
bool ForEachCharacter(const Qv8Font& font, const char* text, int bytes, Use use) {
    for (const char* const end = text + bytes; text != end;) {
        const FT_ULong character = TakeCharacter(text, end);
        if (character < 0x20) {
            continue;
        }
        const LONG advance = LoadCharacter(font, character);
        if (advance < 0 || !use(advance)) {
            return false;
        }
    }
    return true;
}

} // namespace qv8::drawing

// Fonts and text: fontconfig finds the font, FreeType draws its characters without smoothing.
#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include <iconv.h>

#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "platform/surface.h"

using namespace qv8::drawing;

struct Qv8Font {
    ObjectHeader header = {ObjectKind::Font, false};
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

constinit ObjectHeader noFont = {ObjectKind::Font, true};

void DeleteFont(ObjectHeader* font) {
    delete reinterpret_cast<Qv8Font*>(font);
}

} // namespace qv8::drawing

namespace {

constexpr int kDotsPerInch = 96;
constexpr LONG kDefaultHeight = 12 * kDotsPerInch / 72;
constexpr LONG kMaxBitmapSide = 0x7FFF; // what FreeType's rasteriser takes

// --- Choice of a font ------------------------------------------------------------------------------------------------

struct PatternDeleter {
    void operator()(FcPattern* pattern) const {
        FcPatternDestroy(pattern);
    }
};
using Pattern = std::unique_ptr<FcPattern, PatternDeleter>;

bool IsAscii(const char* text) {
    return std::all_of(text, text + std::char_traits<char>::length(text), [](char c) { return c > 0; });
}

Pattern FindFont(const LOGFONTA& description) {
    Pattern wanted(FcPatternCreate());
    if (!wanted) {
        return nullptr;
    }
    char name[LF_FACESIZE + 1] = {};
    std::copy_n(description.lfFaceName, LF_FACESIZE, name);
    if (name[0] != '\0' && IsAscii(name)) {
        FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(name));
    }
    FcPatternAddInteger(wanted.get(), FC_WEIGHT, description.lfWeight >= FW_BOLD ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
    FcPatternAddInteger(wanted.get(), FC_SLANT, description.lfItalic != 0 ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcPatternAddBool(wanted.get(), FC_SCALABLE, FcTrue);
    FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result = FcResultMatch;
    return Pattern(FcFontMatch(nullptr, wanted.get(), &result));
}

// Opens the font and takes over what is to be done to its outlines for a weight or slant that it does not have.
bool OpenFont(const FcPattern* found, Qv8Font& font) {
    FcChar8* file = nullptr;
    int index = 0;
    if (FcPatternGetString(found, FC_FILE, 0, &file) != FcResultMatch || FT_Init_FreeType(&font.library) != 0) {
        return false;
    }
    FcPatternGetInteger(found, FC_INDEX, 0, &index);
    if (FT_New_Face(font.library, reinterpret_cast<const char*>(file), index, &font.face) != 0 ||
        !FT_IS_SCALABLE(font.face)) {
        return false;
    }
    FcBool isEmboldened = FcFalse;
    FcPatternGetBool(found, FC_EMBOLDEN, 0, &isEmboldened);
    font.isEmboldened = isEmboldened != FcFalse;
    FcMatrix* slant = nullptr;
    if (FcPatternGetMatrix(found, FC_MATRIX, 0, &slant) == FcResultMatch && slant != nullptr) {
        const auto fixed = [](double value) { return std::lround(std::clamp(value, -8.0, 8.0) * 0x10000); };
        font.slant = {fixed(slant->xx), fixed(slant->xy), fixed(slant->yx), fixed(slant->yy)};
    }
    return true;
}

// --- Characters ------------------------------------------------------------------------------------------------------

constexpr FT_ULong kUnknown = 0xFFFD;

bool IsLeadByte(BYTE byte) {
    return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

// A character of two bytes; of those that cannot be told, the one that stands for them.
FT_ULong FromTwoBytes(const char* bytes) {
    const iconv_t converter = iconv_open("UTF-16LE", "CP932");
    if (converter == reinterpret_cast<iconv_t>(-1)) {
        return kUnknown;
    }
    char source[2] = {bytes[0], bytes[1]};
    BYTE result[4] = {};
    char* from = source;
    char* to = reinterpret_cast<char*>(result);
    std::size_t fromBytes = sizeof source;
    std::size_t toBytes = sizeof result;
    const std::size_t converted = iconv(converter, &from, &fromBytes, &to, &toBytes);
    iconv_close(converter);
    return converted == static_cast<std::size_t>(-1) ? kUnknown : static_cast<FT_ULong>(result[0] | result[1] << 8);
}

// Takes the first character of a text off it.
FT_ULong TakeCharacter(const char*& text, const char* end) {
    const auto byte = static_cast<BYTE>(*text++);
    if (byte < 0x80) {
        return byte;
    }
    if (byte >= 0xA1 && byte <= 0xDF) {
        return 0xFF61UL + byte - 0xA1;
    }
    if (!IsLeadByte(byte) || text == end) {
        return kUnknown;
    }
    return FromTwoBytes(text++ - 1);
}

// Loads the outline of a character, upright, into the font's glyph slot. Returns its advance in pixels, -1 on failure.
LONG LoadCharacter(const Qv8Font& font, FT_ULong character) {
    if (FT_Load_Char(font.face, character, FT_LOAD_NO_BITMAP | FT_LOAD_TARGET_MONO) != 0 ||
        font.face->glyph->format != FT_GLYPH_FORMAT_OUTLINE) {
        return -1;
    }
    FT_GlyphSlot const glyph = font.face->glyph;
    FT_Pos advance = glyph->advance.x;
    if (font.isEmboldened) {
        const FT_Pos strength = std::max<FT_Pos>(font.face->size->metrics.y_ppem * 64L / 24, 64);
        FT_Outline_Embolden(&glyph->outline, strength);
        advance += strength;
    }
    FT_Outline_Transform(&glyph->outline, &font.slant);
    return static_cast<LONG>(std::max<FT_Pos>((advance + 32) >> 6, 0));
}

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

// --- Drawing ---------------------------------------------------------------------------------------------------------

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
    const FT_Face face = line.font.face;
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
        if (!isMark && IsLeadByte(static_cast<BYTE>(text[i])) && i + 1 < bytes) {
            result[static_cast<std::size_t>(count++)] = text[++i];
        }
    }
    bytes = count;
    return result;
}

Ink InkOf(COLORREF colour) {
    const unsigned sum = (colour & 0xFFU) + (colour >> 8 & 0xFFU) + (colour >> 16 & 0xFFU);
    return sum * 2 > 3 * 255 ? Ink::White : Ink::Black;
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

HFONT CreateFontIndirectA(const LOGFONTA* description) {
    if (description == nullptr || description->lfHeight > 0 || description->lfEscapement % 900 != 0) {
        return nullptr;
    }
    const Pattern found = FindFont(*description);
    std::unique_ptr<Qv8Font> font(new (std::nothrow) Qv8Font);
    if (!found || !font || !OpenFont(found.get(), *font)) {
        return nullptr;
    }
    const std::int64_t height = description->lfHeight != 0 ? -std::int64_t{description->lfHeight} : kDefaultHeight;
    if (height > kMaxBitmapSide || FT_Set_Pixel_Sizes(font->face, 0, static_cast<FT_UInt>(height)) != 0) {
        return nullptr;
    }
    font->quarterTurns = (description->lfEscapement / 900 % 4 + 4) % 4;
    font->isUnderlined = description->lfUnderline != 0;
    font->isStruckOut = description->lfStrikeOut != 0;
    return font.release();
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

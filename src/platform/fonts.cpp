// Fonts and their characters: fontconfig finds the font, FreeType loads its outlines.
#include "platform/font.h"

#include <fontconfig/fontconfig.h>
#include <iconv.h>

#include FT_OUTLINE_H

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>

using namespace qv8::drawing;

namespace {

constexpr LONG kDefaultHeight = 12 * kDotsPerInch / 72;

struct PatternDeleter {
    void operator()(FcPattern* pattern) const {
        FcPatternDestroy(pattern);
    }
};
using Pattern = std::unique_ptr<FcPattern, PatternDeleter>;

bool IsAscii(const char* text) {
    return std::all_of(text, text + std::char_traits<char>::length(text), [](char c) { return c > 0; });
}

// What fonts there are, found out once. The library's own way to do that tries for ever when memory is short, and the
// configuration that it keeps is the host's to change.
class FontConfiguration {
public:
    constexpr FontConfiguration() = default;
    FontConfiguration(const FontConfiguration&) = delete;
    FontConfiguration& operator=(const FontConfiguration&) = delete;
    ~FontConfiguration() {
        if (FcConfig* const loaded = loaded_) {
            FcConfigDestroy(loaded);
        }
    }
    // Null when memory is short.
    FcConfig* Get() {
        FcConfig* known = loaded_;
        if (known != nullptr) {
            return known;
        }
        FcConfig* const loaded = FcInitLoadConfigAndFonts();
        if (loaded == nullptr || loaded_.compare_exchange_strong(known, loaded)) {
            return loaded;
        }
        FcConfigDestroy(loaded); // another thread was faster
        return known;
    }

private:
    std::atomic<FcConfig*> loaded_ = nullptr;
};

constinit FontConfiguration configuration;

Pattern FindFont(const LOGFONTA& description) {
    FcConfig* const config = configuration.Get();
    Pattern wanted(config != nullptr ? FcPatternCreate() : nullptr);
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
    FcConfigSubstitute(config, wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result = FcResultMatch;
    return Pattern(FcFontMatch(config, wanted.get(), &result));
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

constexpr FT_ULong kUnknown = 0xFFFD;

// A character of two bytes; of those that cannot be told, the one that stands for them.
FT_ULong FromTwoBytes(const char* bytes) {
    void* const converter = iconv_open("UTF-16LE", "CP932");
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

} // namespace

namespace qv8::drawing {

constinit ObjectHeader noFont = {ObjectKind::Font, true};

void DeleteFont(ObjectHeader* font) {
    delete reinterpret_cast<Qv8Font*>(font);
}

FT_ULong TakeCharacter(const char*& text, const char* end) {
    const auto byte = static_cast<BYTE>(*text++);
    if (byte < 0x80) {
        return byte;
    }
    if (byte >= 0xA1 && byte <= 0xDF) {
        return 0xFF61UL + byte - 0xA1;
    }
    if (!IsLeadByte(static_cast<char>(byte)) || text == end) {
        return kUnknown;
    }
    return FromTwoBytes(text++ - 1);
}

LONG LoadCharacter(const Qv8Font& font, FT_ULong character) {
    if (FT_Load_Char(font.face, character, FT_LOAD_NO_BITMAP | FT_LOAD_TARGET_MONO) != 0 ||
        font.face->glyph->format != FT_GLYPH_FORMAT_OUTLINE) {
        return -1;
    }
    auto* const glyph = font.face->glyph;
    FT_Pos advance = glyph->advance.x;
    if (font.isEmboldened) {
        const FT_Pos strength = std::max<FT_Pos>(font.face->size->metrics.y_ppem * 64L / 24, 64);
        FT_Outline_Embolden(&glyph->outline, strength);
        advance += strength;
    }
    FT_Outline_Transform(&glyph->outline, &font.slant);
    return static_cast<LONG>(std::max<FT_Pos>((advance + 32) >> 6, 0));
}

} // namespace qv8::drawing

extern "C" {

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

} // extern "C"

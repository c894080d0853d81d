#include "message.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace {

constexpr std::size_t kLongest = 1000;
constexpr std::size_t kKeptAtTheEnd = 400;

struct Span {
    std::uint32_t first;
    std::uint32_t last;
};

// What steers a terminal, or changes the order in which a line is shown.
constexpr std::array kNotShown{Span{0, 0x1F},          Span{0x7F, 0x9F},        Span{0x61C, 0x61C},
                               Span{0x200B, 0x200F},   Span{0x2028, 0x202E},    Span{0x2060, 0x206F},
                               Span{0xD800, 0xDFFF},   Span{0xFEFF, 0xFEFF},    Span{0xFFF9, 0xFFFB},
                               Span{0xE0000, 0xE007F}, Span{0x110000, 0x1FFFFF}};

// Whether a character of several bytes goes on here.
bool ContinuesCharacter(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80;
}

struct Character {
    std::uint32_t code;
    std::size_t bytes; // 0 when the text is no UTF-8 here
};

// The character that begins at `at`.
Character CharacterAt(const std::string& text, std::size_t at) {
    constexpr std::array<std::uint32_t, 5> kLeast{0, 0, 0x80, 0x800, 0x10000}; // that needs so many bytes
    const auto first = static_cast<unsigned char>(text[at]);
    const std::size_t bytes = first < 0x80   ? 1
                              : first < 0xC0 ? 0
                              : first < 0xE0 ? 2
                              : first < 0xF0 ? 3
                              : first < 0xF8 ? 4
                                             : 0;
    std::uint32_t code = bytes <= 1 ? first : first & (0x7FU >> bytes);
    for (std::size_t i = 1; i < bytes; ++i) {
        if (at + i >= text.size() || !ContinuesCharacter(text[at + i])) {
            return {0, 0};
        }
        code = code << 6 | (static_cast<unsigned char>(text[at + i]) & 0x3FU);
    }
    return code < kLeast[bytes] ? Character{0, 0} : Character{code, bytes};
}

bool IsShown(const Character& character) {
    return character.bytes != 0 && std::none_of(kNotShown.begin(), kNotShown.end(), [&](const Span& span) {
               return character.code >= span.first && character.code <= span.last;
           });
}

std::string Shortened(const std::string& text) {
    if (text.size() <= kLongest) {
        return text;
    }
    std::size_t begin = kLongest - kKeptAtTheEnd;
    while (begin > 0 && ContinuesCharacter(text[begin])) {
        --begin;
    }
    std::size_t end = text.size() - kKeptAtTheEnd;
    while (end < text.size() && ContinuesCharacter(text[end])) {
        ++end;
    }
    return text.substr(0, begin) + " ... " + text.substr(end);
}

} // namespace

std::string OneLine(const std::string& text) {
    const std::string whole = Shortened(text);
    std::string line;
    for (std::size_t at = 0; at < whole.size();) {
        const Character character = CharacterAt(whole, at);
        const std::size_t bytes = std::max<std::size_t>(character.bytes, 1);
        line += IsShown(character) ? whole.substr(at, bytes) : "?";
        at += bytes;
    }
    return line;
}

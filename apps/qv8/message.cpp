#include "message.h"

#include <algorithm>

namespace {

constexpr std::size_t kLongest = 1000;
constexpr std::size_t kKeptAtTheEnd = 400;

bool IsControl(char c) {
    return (c >= 0 && c < ' ') || c == '\x7F';
}

// Whether a character of several bytes goes on here.
bool ContinuesCharacter(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80;
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
    std::string line = Shortened(text);
    std::replace_if(line.begin(), line.end(), IsControl, '?');
    return line;
}

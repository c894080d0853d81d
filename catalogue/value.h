// What a parameter of an effect can hold.
#ifndef QV8_CATALOGUE_VALUE_H
#define QV8_CATALOGUE_VALUE_H

#include <array>
#include <string>
#include <variant>
#include <vector>

#include <qv8effect.h>

namespace catalogue {

struct Colour {
    BYTE red = 0;
    BYTE green = 0;
    BYTE blue = 0;
};

// 9 x 9 weights, the row above first.
struct Kernel {
    std::array<LONG, 81> weights{};
    DWORD divisor = 1;
    DWORD offset = 0;
};

// Nothing stands for the parameter's default. Flags are 0 or 1, choices the number behind their word, angles degrees.
// Pictures and masks are the caller's.
using Value =
    std::variant<std::monostate, LONG, double, std::string, Colour, std::vector<POINT>, RECT, Kernel, HGLOBAL>;

// The part of a picture that an effect changes.
struct Area {
    DWORD type = QV8_AREA_WHOLE;
    HGLOBAL mask = nullptr; // the caller's
    std::vector<POINT> points;
    RECT rect{};
    QV8BOOL inside = TRUE;
};

} // namespace catalogue

#endif

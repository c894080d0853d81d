// Short ways to describe a parameter.
#ifndef QV8_CATALOGUE_PARAMETERS_H
#define QV8_CATALOGUE_PARAMETERS_H

#include <array>
#include <limits>

#include "catalogue/effect.h"

namespace catalogue {

inline constexpr Range kAnyInteger{std::numeric_limits<LONG>::min(), std::numeric_limits<LONG>::max()};
inline constexpr Range kPositive{1, std::numeric_limits<LONG>::max()};
inline constexpr Range kByte{0, 255};

constexpr Parameter Integer(const char* name, const char* help, Range range, double standard, const char* unit = "") {
    return {.name = name, .help = help, .range = range, .standard = standard, .unit = unit};
}
constexpr Parameter Real(const char* name, const char* help) {
    return {.name = name, .help = help, .kind = Kind::kReal};
}
constexpr Parameter Angle() {
    return {.name = "angle",
            .help = "to the left, in hundredths",
            .kind = Kind::kAngle,
            .range = {-359.99, 359.99},
            .unit = "degrees",
            .factor = 100};
}
constexpr Parameter Flag(const char* name, const char* help, LONG whenSet = 1) {
    return {.name = name, .help = help, .kind = Kind::kFlag, .factor = whenSet};
}
constexpr Parameter OneOf(const char* name, const char* help, std::array<Choice, 7> choices, double standard = 0) {
    return {.name = name, .help = help, .kind = Kind::kChoice, .standard = standard, .choices = choices};
}
constexpr Parameter Points(const char* name, const char* help, int count) {
    const auto number = static_cast<double>(count);
    return {.name = name,
            .help = help,
            .kind = Kind::kPoints,
            .need = Need::kRequired,
            .range = {number, number},
            .unit = "pixels"};
}
constexpr Parameter Plain(Kind kind, const char* name, const char* help) {
    return {.name = name, .help = help, .kind = kind};
}
constexpr Parameter Side(Kind kind, const char* name) {
    return {.name = name, .help = "of the result", .kind = kind, .range = kPositive, .unit = "pixels"};
}
constexpr Parameter Needed(Parameter parameter, Need need = Need::kRequired) {
    parameter.need = need;
    return parameter;
}

} // namespace catalogue

#endif

// Checks for option values.
#ifndef QV8_TOOL_OPTION_TYPES_H
#define QV8_TOOL_OPTION_TYPES_H

#include <cmath>
#include <cstdlib>
#include <string>

#include <CLI/CLI.hpp>

// Refuses the "nan" and "inf" that the reading of numbers lets pass.
inline std::string CheckFinite(const std::string& text) {
    return std::isfinite(std::strtod(text.c_str(), nullptr)) ? std::string() : text + " is not a finite number";
}

// Accepts whole numbers of a range. The help text of the option is to name it.
inline CLI::Validator Between(int from, int to) {
    CLI::Validator range = CLI::Range(from, to);
    range.description("");
    return range;
}

#endif

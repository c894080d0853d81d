// Kinds of options, and checks of their values.
#ifndef QV8_TOOL_OPTION_TYPES_H
#define QV8_TOOL_OPTION_TYPES_H

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <string>

#include <CLI/CLI.hpp>

#include "qv8effect.h"

// Accepts decimal numbers, and nothing else: the reading of numbers takes "nan", "inf" and a word that is empty.
inline std::string CheckFinite(const std::string& text) {
    double value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    const bool isNumber = error == std::errc() && stop == end && std::isfinite(value);
    return isNumber ? std::string() : "\"" + text + "\" is not a finite number";
}

// Accepts decimal whole numbers of a range, and nothing else: the reading of numbers takes "010" for eight. The help
// text of the option is to name the range. For transform().
inline CLI::Validator Between(std::int64_t from, std::int64_t to) {
    const auto read = [from, to](std::string& text) {
        std::int64_t value = 0;
        const char* const end = text.data() + text.size();
        const auto [stop, error] = std::from_chars(text.data(), end, value);
        if (error != std::errc() || stop != end || value < from || value > to) {
            return "\"" + text + "\" is not a whole number from " + std::to_string(from) + " to " + std::to_string(to);
        }
        text = std::to_string(value);
        return std::string();
    };
    return CLI::Validator(read, "");
}

// All that an int can be.
inline CLI::Validator Whole() {
    return Between(std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
}
inline CLI::Validator Positive() {
    return Between(1, std::numeric_limits<int>::max());
}

// Adds a whole number of a range.
inline void AddNumber(CLI::App& command, const char* name, DWORD& value, int from, int to, const std::string& help) {
    command.add_option(name, value, help + ", " + std::to_string(from) + ".." + std::to_string(to))
        ->type_name("N")
        ->transform(Between(from, to))
        ->capture_default_str();
}

// Adds an option whose value is one of some words.
inline CLI::Option* AddChoice(CLI::App& command, const char* name, DWORD& value,
                              const std::map<std::string, DWORD>& choices, const std::string& help) {
    const auto toNumber = [choices](std::string& text) {
        const auto found = choices.find(text);
        if (found == choices.end()) {
            return text + " is not known";
        }
        text = std::to_string(found->second);
        return std::string();
    };
    return command.add_option(name, value, help)->type_name("NAME")->transform(CLI::Validator(toNumber, ""));
}

// Adds red, green and blue as one option.
inline CLI::Option* AddColour(CLI::App& command, const char* name, std::array<DWORD, 3>& colour,
                              const std::string& help) {
    return command.add_option(name, colour, help)->delimiter(',')->type_name("r,g,b")->transform(Between(0, 255));
}

// Adds degrees to the left.
inline void AddAngle(CLI::App& command, double& degrees) {
    command.add_option("--angle", degrees, "degrees to the left, -359.99 .. 359.99, in hundredths")
        ->type_name("DEGREES")
        ->check(CheckFinite)
        ->check(CLI::Range(-359.99, 359.99).description(""));
}
inline LONG Hundredths(double degrees) {
    return static_cast<LONG>(std::lround(degrees * 100));
}

#endif

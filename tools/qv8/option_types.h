// Kinds of options, and checks of their values.
#ifndef QV8_TOOL_OPTION_TYPES_H
#define QV8_TOOL_OPTION_TYPES_H

#include <array>
#include <cmath>
#include <cstdlib>
#include <map>
#include <string>

#include <CLI/CLI.hpp>

#include "qv8effect.h"

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

// Adds a whole number of a range.
inline void AddNumber(CLI::App& command, const char* name, DWORD& value, int from, int to, const std::string& help) {
    command.add_option(name, value, help + ", " + std::to_string(from) + ".." + std::to_string(to))
        ->type_name("N")
        ->check(Between(from, to))
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
    return command.add_option(name, colour, help)->delimiter(',')->type_name("r,g,b")->check(Between(0, 255));
}

// Adds degrees to the left.
inline void AddAngle(CLI::App& command, double& degrees) {
    command.add_option("--angle", degrees, "degrees to the left, -359.99 .. 359.99, in hundredths")
        ->type_name("DEGREES")
        ->check(CLI::Range(-359.99, 359.99).description(""));
}
inline LONG Hundredths(double degrees) {
    return static_cast<LONG>(std::lround(degrees * 100));
}

#endif

// JSON as the program reads and writes it.
#ifndef QV8_CHAINS_JSON_H
#define QV8_CHAINS_JSON_H

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

// A value in a file, with the line on which it stands. Numbers and strings are text; true and false are "1" and "0".
struct JsonNode {
    enum class Kind { kNothing, kText, kArray, kObject };

    Kind kind = Kind::kNothing;
    int line = 1;
    std::string name; // of a member of an object
    std::string text;
    std::vector<JsonNode> children;
};

// Throws a Failure that names the file and the line of a mistake.
JsonNode ParseJson(const std::string& text, const std::string& fileName);

using JsonValue = std::variant<std::string, std::int64_t, double>;

// An object on one line, its members in the order given. Names of files that are no Unicode text are mended.
std::string JsonLine(const std::vector<std::pair<std::string, JsonValue>>& members);

#endif

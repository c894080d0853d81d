// The catalogue says what the exports are, and no more.
#include <algorithm>
#include <fstream>
#include <set>

#include <gtest/gtest.h>

#include "catalogue/run.h"
#include "catalogue/text.h"

namespace {

using catalogue::Effect;

std::set<std::string> Exports() {
    const char* const list = QV8_EXPORT_LIST;
    std::ifstream file(std::ifstream(list) ? list : "Z:" QV8_EXPORT_LIST); // or a path of the host, seen from Wine
    std::set<std::string> names;
    for (std::string word; file >> word;) {
        if (word.starts_with("QV8") && word.find('@') == std::string::npos) {
            names.insert(word);
        }
    }
    return names;
}

TEST(Catalogue, HasEveryExportOnce) {
    std::multiset<std::string> named;
    for (const Effect& effect : catalogue::AllEffects()) {
        named.insert(effect.function);
        if (effect.twin != nullptr) {
            named.insert(effect.twin);
        }
    }
    const std::set<std::string> exports = Exports();
    EXPECT_EQ(exports.size(), 37U);
    EXPECT_TRUE(std::equal(named.begin(), named.end(), exports.begin(), exports.end()));
}

// A name is that of the export with hyphens, and no effect has two parameters of one name.
TEST(Catalogue, NamesAreDistinctAndFollowFromTheExports) {
    for (const Effect& effect : catalogue::AllEffects()) {
        std::string letters = effect.name;
        std::erase(letters, '-');
        const std::string function = std::string(effect.function).substr(3);
        EXPECT_TRUE(std::equal(letters.begin(), letters.end(), function.begin(), function.end(), [](char a, char b) {
            return a == b || a == b - 'A' + 'a';
        })) << effect.name;
        std::set<std::string> names;
        for (const auto parameters : {effect.Parameters(), catalogue::AreaParameters(effect)}) {
            for (const catalogue::Parameter& parameter : parameters) {
                EXPECT_TRUE(names.insert(parameter.name).second) << effect.name << ' ' << parameter.name;
            }
        }
    }
}

// The text of a default, as help shows it, is a value.
TEST(Catalogue, DefaultsAreAmongTheValues) {
    for (const Effect& effect : catalogue::AllEffects()) {
        for (const catalogue::Parameter& parameter : effect.Parameters()) {
            const std::string limits = catalogue::LimitsOf(parameter);
            const std::size_t end = limits.find(" unless given");
            if (end == std::string::npos || limits.ends_with("none unless given") ||
                limits.ends_with("black unless given")) {
                continue;
            }
            const std::size_t begin = limits.rfind(' ', end - 1) + 1;
            catalogue::Value value;
            EXPECT_EQ(catalogue::ParseValue(parameter, limits.substr(begin, end - begin), value), "") << limits;
        }
    }
}

} // namespace

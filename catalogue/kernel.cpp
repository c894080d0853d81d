// Kernels of the custom filter: a few with a name, and any other from text.
#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <numeric>
#include <optional>
#include <sstream>

#include "catalogue/text.h"

namespace catalogue {

namespace {

constexpr std::size_t kSide = 9;

struct NamedKernel {
    const char* name;
    const char* text;
};

constexpr std::array kNamed{
    NamedKernel{"blur", "1 1 1\n1 1 1\n1 1 1\n"},
    NamedKernel{"gauss", "1 2 1\n2 4 2\n1 2 1\n"},
    NamedKernel{"sharpen", "0 -1 0\n-1 5 -1\n0 -1 0\n"},
    NamedKernel{"edges", "-1 -1 -1\n-1 8 -1\n-1 -1 -1\n"},
    NamedKernel{"motion", "0 0 0 0 0 0 0 0 1\n0 0 0 0 0 0 0 1 0\n0 0 0 0 0 0 1 0 0\n0 0 0 0 0 1 0 0 0\n"
                          "0 0 0 0 1 0 0 0 0\n0 0 0 1 0 0 0 0 0\n0 0 1 0 0 0 0 0 0\n0 1 0 0 0 0 0 0 0\n"
                          "1 0 0 0 0 0 0 0 0\n"},
};

using Words = std::vector<std::string>;

Words WordsOf(const std::string& line) {
    std::istringstream stream(line.substr(0, line.find('#')));
    return {std::istream_iterator<std::string>(stream), {}};
}

// "divisor N" or "offset N". Returns what is wrong with it.
std::string ParseSetting(const Words& words, Kernel& kernel, bool& hasDivisor) {
    const bool divisor = words[0] == "divisor";
    const std::optional<LONG> value = words.size() == 2 ? ParseInteger(words[1], divisor ? 1 : 0, 255) : std::nullopt;
    if (!value) {
        return divisor ? "the divisor is a number from 1 to 255" : "the offset is a number from 0 to 255";
    }
    (divisor ? kernel.divisor : kernel.offset) = static_cast<DWORD>(*value);
    hasDivisor = hasDivisor || divisor;
    return {};
}

} // namespace

std::string ParseKernel(const std::string& text, Kernel& kernel) {
    kernel = {};
    bool hasDivisor = false;
    std::vector<Words> rows;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        Words words = WordsOf(line);
        if (words.empty()) {
            continue;
        }
        if (words[0] == "divisor" || words[0] == "offset") {
            const std::string mistake = ParseSetting(words, kernel, hasDivisor);
            if (!mistake.empty()) {
                return mistake;
            }
            continue;
        }
        rows.push_back(std::move(words));
    }
    const std::size_t side = rows.size();
    if (side > kSide || side % 2 == 0) {
        return "a kernel has 1, 3, 5, 7 or 9 rows, this one has " + std::to_string(side);
    }
    const std::size_t margin = (kSide - side) / 2;
    for (std::size_t r = 0; r != side; ++r) {
        if (rows[r].size() != side) {
            return "row " + std::to_string(r + 1) + " has " + std::to_string(rows[r].size()) + " weights instead of " +
                   std::to_string(side);
        }
        for (std::size_t c = 0; c != side; ++c) {
            const std::optional<LONG> weight = ParseInteger(rows[r][c], INT32_MIN, INT32_MAX);
            if (!weight) {
                return "\"" + rows[r][c] + "\" is not a weight";
            }
            kernel.weights[(r + margin) * kSide + c + margin] = *weight;
        }
    }
    const auto sum = std::accumulate(kernel.weights.begin(), kernel.weights.end(), std::int64_t{0});
    if (!hasDivisor && sum >= 1 && sum <= 255) {
        kernel.divisor = static_cast<DWORD>(sum);
    }
    return {};
}

std::vector<std::string> KernelNames() {
    std::vector<std::string> names;
    std::transform(kNamed.begin(), kNamed.end(), std::back_inserter(names),
                   [](const NamedKernel& k) { return k.name; });
    return names;
}

bool FindKernel(const std::string& name, Kernel& kernel) {
    const auto* const found =
        std::find_if(kNamed.begin(), kNamed.end(), [&name](const NamedKernel& k) { return k.name == name; });
    return found != kNamed.end() && ParseKernel(found->text, kernel).empty();
}

} // namespace catalogue

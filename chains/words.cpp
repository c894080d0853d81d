#include "chains/words.h"

#include <algorithm>

#include "catalogue/text.h"
#include "pictures/failure.h"

namespace {

bool TakesSeveralPoints(const std::string& option) {
    const auto fits = [&option](const catalogue::Parameter& parameter) {
        return parameter.kind == catalogue::Kind::kPoints && parameter.range.most > 1 &&
               "--" + std::string(parameter.name) == option;
    };
    const auto effects = catalogue::AllEffects();
    return option.starts_with("--") &&
           std::any_of(effects.begin(), effects.end(), [&](const catalogue::Effect& effect) {
               const auto own = effect.Parameters();
               const auto area = catalogue::AreaParameters(effect);
               return std::any_of(own.begin(), own.end(), fits) || std::any_of(area.begin(), area.end(), fits);
           });
}

bool IsPoint(const std::string& word) {
    const auto points = catalogue::ParsePoints(word);
    return points && points->size() == 1;
}

std::string WithLeadingZero(const std::string& word) {
    const bool bare = word.size() > 2 && word[0] == '-' && word[1] == '.' && word[2] >= '0' && word[2] <= '9';
    return bare ? "-0" + word.substr(1) : word;
}

bool IsSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

} // namespace

void RefuseEmptyWords(const Words& words) {
    for (std::size_t i = 0; i < words.size(); ++i) {
        const bool isOption = words[i].starts_with("--");
        if (words[i].empty() || (isOption && words[i].ends_with("="))) {
            throw Failure(kExitUsage, isOption ? words[i] + " has no value"
                                               : "an empty word stands behind " + (i > 0 ? words[i - 1] : "qv8"));
        }
    }
}

Words Prepared(const Words& words) {
    const auto names = std::find(words.begin(), words.end(), "--");
    Words prepared;
    for (auto word = words.begin(); word != names; ++word) {
        prepared.push_back(WithLeadingZero(*word));
        if (!TakesSeveralPoints(*word)) {
            continue;
        }
        for (bool first = true; word + 1 != names && IsPoint(word[1]); first = false) {
            prepared.back() += (first ? "=" : " ") + *++word;
        }
    }
    prepared.insert(prepared.end(), names, words.end());
    return prepared;
}

std::vector<Words> StepsOf(const std::string& chain) {
    std::vector<Words> steps(1);
    std::string word;
    bool inWord = false;
    char quote = 0;
    const auto endWord = [&] {
        if (inWord) {
            steps.back().push_back(word);
        }
        word.clear();
        inWord = false;
    };
    for (const char c : chain) {
        if (quote == 0 && (IsSpace(c) || c == '|')) {
            endWord();
            if (c == '|') {
                steps.emplace_back();
            }
        } else if (c == quote || (quote == 0 && (c == '"' || c == '\''))) {
            quote = quote == 0 ? c : '\0';
            inWord = true;
        } else {
            word += c;
            inWord = true;
        }
    }
    if (quote != 0) {
        throw Failure(kExitUsage, "a quote is not closed in \"" + chain + "\"");
    }
    endWord();
    return steps;
}

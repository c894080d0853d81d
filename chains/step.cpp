#include "chains/step.h"

#include <algorithm>
#include <numeric>

#include "catalogue/run.h"
#include "catalogue/text.h"
#include "pictures/failure.h"

namespace {

// Letters that have to be put in, taken out, exchanged or swapped with their neighbour to make one word of the other.
std::size_t Distance(const std::string& from, const std::string& to) {
    std::vector<std::vector<std::size_t>> rows(from.size() + 1, std::vector<std::size_t>(to.size() + 1));
    std::iota(rows[0].begin(), rows[0].end(), std::size_t{0});
    for (std::size_t i = 1; i <= from.size(); ++i) {
        rows[i][0] = i;
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const std::size_t changed = rows[i - 1][j - 1] + (from[i - 1] == to[j - 1] ? 0 : 1);
            rows[i][j] = std::min({changed, rows[i - 1][j] + 1, rows[i][j - 1] + 1});
            if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1]) {
                rows[i][j] = std::min(rows[i][j], rows[i - 2][j - 2] + 1);
            }
        }
    }
    return rows.back().back();
}

std::vector<catalogue::Value> Values(std::vector<Setting>::const_iterator begin,
                                     std::vector<Setting>::const_iterator end) {
    std::vector<catalogue::Value> values;
    std::transform(begin, end, std::back_inserter(values), [](const Setting& setting) { return setting.value; });
    return values;
}

} // namespace

Step::Step(const catalogue::Effect& described) : effect(&described) {
    for (const auto parameters : {described.Parameters(), catalogue::AreaParameters(described)}) {
        for (const catalogue::Parameter& parameter : parameters) {
            settings.push_back({&parameter, {}, {}});
        }
    }
}

Setting* Step::Find(const std::string& name) {
    const auto found =
        std::find_if(settings.begin(), settings.end(), [&](const Setting& s) { return s.parameter->name == name; });
    return found == settings.end() ? nullptr : &*found;
}

std::vector<catalogue::Value> Step::OwnValues() const {
    return Values(settings.begin(), settings.begin() + std::ssize(effect->Parameters()));
}

std::vector<catalogue::Value> Step::AreaValues() const {
    return Values(settings.begin() + std::ssize(effect->Parameters()), settings.end());
}

bool IsOffered(const catalogue::Effect& effect) {
    return effect.family != catalogue::Family::kClipboard;
}

std::string Set(Setting& setting, const std::string& text) {
    const catalogue::Parameter& parameter = *setting.parameter;
    if (text.empty()) {
        return "it has no value";
    }
    catalogue::Kernel kernel;
    if (catalogue::MayNameFile(parameter) && !catalogue::FindKernel(text, kernel)) {
        setting.file = text;
        setting.value = HGLOBAL{};
        return {};
    }
    return catalogue::ParseValue(parameter, text, setting.value);
}

std::string CheckStep(const Step& step) {
    catalogue::Area area;
    const std::string mistake = catalogue::CheckValues(*step.effect, step.OwnValues());
    return mistake.empty() ? catalogue::MakeArea(*step.effect, step.AreaValues(), area) : mistake;
}

const catalogue::Effect& EffectNamed(const std::string& name) {
    if (const catalogue::Effect* const effect = catalogue::FindEffect(name); effect != nullptr) {
        return *effect;
    }
    std::vector<std::string> known;
    for (const catalogue::Effect& effect : catalogue::AllEffects()) {
        known.emplace_back(effect.name);
    }
    throw Failure(kExitUsage,
                  "there is no effect \"" + name + "\"" + Suggestion(name, known) + R"(; "qv8 effects" lists them)");
}

std::string Suggestion(const std::string& word, const std::vector<std::string>& known) {
    const auto closer = [&word](const std::string& a, const std::string& b) {
        return Distance(word, a) < Distance(word, b);
    };
    const auto closest = std::min_element(known.begin(), known.end(), closer);
    const bool isLike = word.size() < 40 && closest != known.end() &&
                        (Distance(word, *closest) <= 2 || (word.size() >= 3 && closest->starts_with(word)));
    return isLike ? " (did you mean \"" + *closest + "\"?)" : "";
}

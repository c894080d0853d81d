#include "chains/step.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <span>

#include "catalogue/parameters.h"
#include "catalogue/run.h"
#include "catalogue/text.h"
#include "pictures/failure.h"
#include "pictures/quantise.h"

namespace {

constexpr const char* kColours = "colours";
constexpr const char* kDither = "dither";

// What the export of an effect does not have.
std::span<const catalogue::Parameter> AddedParameters(const catalogue::Effect& effect) {
    static constexpr catalogue::Parameter kAdded[] = {{.name = kColours,
                                                       .help = "the best for the eye; in place of --depth",
                                                       .need = catalogue::Need::kRequired, // has no default
                                                       .range = {2, 256}}};
    return effect.name == std::string("convert-color") ? kAdded : std::span<const catalogue::Parameter>();
}

template <class Settings>
auto* FindNamed(Settings& settings, const std::string& name) {
    const auto found =
        std::find_if(settings.begin(), settings.end(), [&](const Setting& s) { return s.parameter->name == name; });
    return found == settings.end() ? nullptr : &*found;
}

bool IsGiven(const Setting& setting) {
    const LONG* const number = std::get_if<LONG>(&setting.value);
    const bool isUnsetFlag = setting.parameter->kind == catalogue::Kind::kFlag && number != nullptr && *number == 0;
    return setting.value.index() != 0 && !isUnsetFlag;
}

// What is wrong with the values of a step that chooses colours for the eye.
std::string CheckChosenColours(const Step& step) {
    if (!CanQuantise()) {
        return "--colours is missing in this program, which was built without Leptonica";
    }
    for (const Setting& setting : step.settings) {
        const std::string name = setting.parameter->name;
        if (IsGiven(setting) && name != kColours && name != kDither) {
            return kColours + (" excludes " + name);
        }
    }
    return {};
}

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

std::vector<catalogue::Value> Values(std::span<const Setting> settings) {
    std::vector<catalogue::Value> values;
    std::transform(settings.begin(), settings.end(), std::back_inserter(values),
                   [](const Setting& setting) { return setting.value; });
    return values;
}

} // namespace

Step::Step(const catalogue::Effect& described) : effect(&described) {
    for (const auto parameters :
         {described.Parameters(), catalogue::AreaParameters(described), AddedParameters(described)}) {
        for (const catalogue::Parameter& parameter : parameters) {
            settings.push_back({&parameter, {}, {}});
        }
    }
}

Setting* Step::Find(const std::string& name) {
    return FindNamed(settings, name);
}

const Setting* Step::Find(const std::string& name) const {
    return FindNamed(settings, name);
}

std::vector<catalogue::Value> Step::OwnValues() const {
    return Values(std::span(settings).first(effect->Parameters().size()));
}

std::vector<catalogue::Value> Step::AreaValues() const {
    return Values(std::span(settings).subspan(effect->Parameters().size(), catalogue::AreaParameters(*effect).size()));
}

unsigned Step::ChosenColours() const {
    const Setting* const setting = Find(kColours);
    const bool given = setting != nullptr && !AddedParameters(*effect).empty() && IsGiven(*setting);
    return given ? static_cast<unsigned>(std::get<LONG>(setting->value)) : 0;
}

bool Step::Dithers() const {
    const Setting* const setting = Find(kDither);
    return setting != nullptr && IsGiven(*setting);
}

bool Step::LooksAtSinglePixels() const {
    const Setting* const depth = Find("depth");
    const LONG* const bits = depth != nullptr ? std::get_if<LONG>(&depth->value) : nullptr;
    const bool isGrey = bits != nullptr && *bits == QV8_DEPTH_GREY;
    const bool hasArea = std::any_of(settings.begin() + static_cast<std::ptrdiff_t>(effect->Parameters().size()),
                                     settings.end(), IsGiven);
    return !hasArea && (effect->family == catalogue::Family::kTone || isGrey);
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
    if (step.ChosenColours() != 0) {
        return CheckChosenColours(step);
    }
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

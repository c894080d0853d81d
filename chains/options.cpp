#include "chains/options.h"

#include <algorithm>
#include <vector>

#include "catalogue/run.h"
#include "catalogue/text.h"
#include "chains/words.h"
#include "pictures/failure.h"

namespace {

std::string HelpOf(const catalogue::Parameter& parameter) {
    const std::string help = parameter.help;
    const std::string limits = catalogue::LimitsOf(parameter);
    return help + (help.empty() || limits.empty() ? "" : "; ") + limits;
}

std::vector<std::string> OptionNames(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::Option* const option : command.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    return names;
}

// One effect and its options.
Step ParseStep(const Words& words) {
    if (words.empty()) {
        throw Failure(kExitUsage, "an effect is missing in the chain");
    }
    RefuseEmptyWords(words);
    Step step(EffectNamed(words[0]));
    CLI::App app("", words[0]);
    app.allow_windows_style_options(false);
    app.set_help_flag();
    app.allow_extras();
    AddParameters(app, step);
    try {
        Words options = Prepared({words.begin() + 1, words.end()});
        std::reverse(options.begin(), options.end()); // as the parser wants them
        app.parse(options);
    } catch (const CLI::ParseError& error) {
        throw Failure(kExitUsage, words[0] + ": " + error.what());
    }
    RefuseExtras(app);
    if (const std::string mistake = CheckStep(step); !mistake.empty()) {
        throw Failure(kExitUsage, words[0] + ": " + mistake);
    }
    return step;
}

} // namespace

void AddParameters(CLI::App& command, Step& step) {
    const std::size_t own = step.effect->Parameters().size();
    const std::size_t areaEnd = own + catalogue::AreaParameters(*step.effect).size();
    for (std::size_t i = 0; i != step.settings.size(); ++i) {
        Setting& setting = step.settings[i];
        const catalogue::Parameter& parameter = *setting.parameter;
        const std::string name = "--" + std::string(parameter.name);
        const std::string group = i < own || i >= areaEnd ? "Options" : "Area of effect";
        const std::string form = catalogue::FormOf(parameter);
        if (form.empty()) {
            command
                .add_flag_callback(
                    name, [&setting] { setting.value = LONG{1}; }, HelpOf(parameter))
                ->group(group);
            continue;
        }
        command
            .add_option_function<std::string>(
                name, [](const std::string&) {}, HelpOf(parameter))
            ->type_name(form)
            ->check(CLI::Validator([&setting](std::string& text) { return Set(setting, text); }, ""))
            ->group(group);
    }
}

void RefuseExtras(const CLI::App& command) {
    for (const std::string& word : command.remaining()) {
        if (word.starts_with("-") && word != "--") {
            const std::string name = word.substr(0, word.find('='));
            throw Failure(kExitUsage,
                          command.get_name() + ": there is no option " + name + Suggestion(name, OptionNames(command)));
        }
        if (word != "--") {
            throw Failure(kExitUsage, command.get_name() + ": \"" + word + "\" is one word too many");
        }
    }
}

Chain ParseChain(const std::string& text) {
    Chain chain;
    for (const Words& words : StepsOf(text)) {
        chain.push_back(ParseStep(words));
    }
    return chain;
}

void CheckChain(const Chain& chain) {
    for (const Step& step : chain) {
        if (!IsOffered(*step.effect) || (!step.effect->TakesPicture() && &step != &chain.front())) {
            throw Failure(kExitUsage, std::string(step.effect->name) + " cannot stand there in a chain");
        }
    }
}

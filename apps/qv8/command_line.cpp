#include "command_line.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <limits>
#include <memory>
#include <new>
#include <ostream>
#include <sstream>
#include <stdexcept>

#include <CLI/CLI.hpp>

#include "catalogue/text.h"
#include "clipboard.h"
#include "info.h"
#include "message.h"
#include "pictures/failure.h"
#include "pictures/image_file.h"
#include "single_run.h"
#include "step.h"
#include "words.h"

namespace {

constexpr const char* kFooter = "Run \"qv8 EFFECT --help\" for the options of an effect.\n"
                                "Files are BMP, PNG or JPEG; input by content, output by the ending of its name.\n"
                                "\n"
                                "Exit codes: 0 done; 1 the effect failed; 2 wrong usage; 3 an input cannot be read;\n"
                                "4 the output cannot be written; 130 cancelled.";

using Action = std::function<void(std::ostream& out)>;

// Accepts decimal whole numbers of a range, and nothing else: the parser takes "010" for eight.
CLI::Validator Between(std::int64_t from, std::int64_t to) {
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

void AddMaxPixels(CLI::App& command, FileOptions& files) {
    command.add_option("--max-pixels", files.maxPixels, "refuse larger pictures")
        ->type_name("N")
        ->transform(Between(1, std::numeric_limits<std::int64_t>::max()))
        ->capture_default_str()
        ->group("Files");
}

CLI::Option* AddPositional(CLI::App& command, const std::string& name, std::string& word, const std::string& help) {
    return command.add_option(name, word, help)->type_name("");
}

// How a result is written.
void AddOutputOptions(CLI::App& command, FileOptions& files) {
    AddMaxPixels(command, files);
    command.add_option("--quality", files.quality, "of a JPEG output, 1..100")
        ->type_name("N")
        ->transform(Between(1, 100))
        ->capture_default_str()
        ->group("Files");
    command.add_flag("--force", files.mayReplace, "replace an output that is there already")->group("Files");
}

std::string HelpOf(const catalogue::Parameter& parameter) {
    const std::string help = parameter.help;
    const std::string limits = catalogue::LimitsOf(parameter);
    return help + (help.empty() || limits.empty() ? "" : "; ") + limits;
}

// Adds an option for each parameter of an effect. The step must stay where it is while the command is in use.
void AddParameters(CLI::App& command, Step& step) {
    const std::size_t own = step.effect->Parameters().size();
    for (std::size_t i = 0; i != step.settings.size(); ++i) {
        Setting& setting = step.settings[i];
        const catalogue::Parameter& parameter = *setting.parameter;
        const std::string name = "--" + std::string(parameter.name);
        const std::string group = i < own ? "Options" : "Area of effect";
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

std::vector<std::string> OptionNames(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::Option* const option : command.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    return names;
}

// Names what is wrong with words that nothing takes better than the parser does.
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

// The second picture that an effect cannot do without, or null: it may be given as a word between INPUT and OUTPUT.
Setting* SecondPicture(Step& step) {
    const auto found = std::find_if(step.settings.begin(), step.settings.end(), [](const Setting& setting) {
        return catalogue::IsPicture(*setting.parameter) && setting.parameter->need == catalogue::Need::kRequired;
    });
    return found == step.settings.end() ? nullptr : &*found;
}

std::string Capitals(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    return text;
}

// The command of one effect.
struct EffectCommand {
    explicit EffectCommand(const catalogue::Effect& effect) : step(effect) {}

    void AddTo(CLI::App& command);

    // Takes the words for what no option gave, checks everything and does it.
    void Run();

    Step step;
    FileOptions files;
    std::string namedOutput;
    std::string second; // the words behind INPUT
    std::string last;
};

void EffectCommand::AddTo(CLI::App& command) {
    if (step.effect->TakesPicture()) {
        AddPositional(command, "INPUT", files.input, "picture to read")->required();
    }
    if (const Setting* const picture = SecondPicture(step); picture != nullptr) {
        AddPositional(command, Capitals(picture->parameter->name), second, picture->parameter->help);
    }
    AddPositional(command, "OUTPUT", last, "picture to write: .bmp, .png, .jpg, .jpeg");
    AddParameters(command, step);
    command.add_option("-o", namedOutput, "picture to write, over one that is there")
        ->type_name("FILE")
        ->group("Files");
    if (step.effect->result == catalogue::Result::kPictureAndMask) {
        command.add_option("--mask-out", files.maskOutput, "write the mask of the result")
            ->type_name("FILE")
            ->group("Files");
    }
    AddOutputOptions(command, files);
    command.allow_extras();
}

void EffectCommand::Run() {
    Words words;
    for (const std::string& word : {second, last}) {
        if (!word.empty()) {
            words.push_back(word);
        }
    }
    const auto take = [&](const std::string& name) {
        if (words.empty()) {
            throw Failure(kExitUsage, std::string(step.effect->name) + ": " + name + " is missing");
        }
        const std::string word = words.front();
        words.erase(words.begin());
        return word;
    };
    if (Setting* const picture = SecondPicture(step); picture != nullptr && picture->file.empty()) {
        Set(*picture, take(Capitals(picture->parameter->name)));
    }
    files.mayReplace = files.mayReplace || !namedOutput.empty();
    files.output = namedOutput.empty() ? take("OUTPUT") : namedOutput;
    if (!words.empty()) {
        throw Failure(kExitUsage, "\"" + words.front() + "\" is one word too many");
    }
    if (const std::string mistake = CheckStep(step); !mistake.empty()) {
        throw Failure(kExitUsage, std::string(step.effect->name) + ": " + mistake);
    }
    RunOnFile({step}, files);
}

// Those of the clipboard have commands of their own where there is one.
bool IsOffered(const catalogue::Effect& effect) {
    return effect.family != catalogue::Family::kClipboard;
}

void ListEffects(std::ostream& out) {
    std::size_t widest = 0;
    for (const catalogue::Effect& effect : catalogue::AllEffects()) {
        widest = std::max(widest, std::string(effect.name).size());
    }
    for (const catalogue::Effect& effect : catalogue::AllEffects()) {
        const std::string name = effect.name;
        if (IsOffered(effect)) {
            out << name << std::string(widest + 2 - name.size(), ' ') << effect.help << "\n";
        }
    }
}

// Every command stores in `action` what is to be done; it is done when the whole command line has been understood.
void AddEffectCommands(CLI::App& app, Action& action) {
    for (const catalogue::Effect& effect : catalogue::AllEffects()) {
        if (!IsOffered(effect)) {
            continue;
        }
        CLI::App* const command =
            app.add_subcommand(effect.name, effect.help)->group(catalogue::FamilyName(effect.family));
        const auto state = std::make_shared<EffectCommand>(effect);
        state->AddTo(*command);
        command->callback([&action, command, state] {
            RefuseExtras(*command);
            action = [state](std::ostream&) { state->Run(); };
        });
    }
}

void AddOtherCommands(CLI::App& app, Action& action) {
    CLI::App* const list = app.add_subcommand("effects", "list the effects")->group("Other commands");
    list->callback([&action] { action = ListEffects; });
    CLI::App* const info = app.add_subcommand("info", "describe a picture")->group("Other commands");
    const auto files = std::make_shared<FileOptions>();
    AddPositional(*info, "PICTURE", files->input, "picture to read")->required();
    AddMaxPixels(*info, *files);
    info->callback([&action, files] {
        action = [files](std::ostream& out) {
            out << DescribePicture(files->input, LoadPicture(files->input, files->maxPixels));
        };
    });
}

// Only where the system has a clipboard for all programs.
void AddClipboardCommands([[maybe_unused]] CLI::App& app, [[maybe_unused]] Action& action) {
#ifdef _WIN32
    CLI::App* const copy = app.add_subcommand("copy", "put a picture on the clipboard")->group("Other commands");
    const auto source = std::make_shared<FileOptions>();
    AddPositional(*copy, "PICTURE", source->input, "picture to read")->required();
    AddMaxPixels(*copy, *source);
    copy->callback([&action, source] {
        action = [source](std::ostream&) {
            CopyToClipboard(LoadPicture(source->input, source->maxPixels).picture, source->input);
        };
    });
    CLI::App* const paste =
        app.add_subcommand("paste", "write the picture that is on the clipboard")->group("Other commands");
    const auto files = std::make_shared<FileOptions>();
    AddPositional(*paste, "OUTPUT", files->output, "picture to write")->required();
    AddOutputOptions(*paste, *files);
    paste->callback([&action, files] {
        action = [files](std::ostream&) {
            const ImageFormat format = FormatForName(files->output);
            RefuseToReplace(files->output, files->mayReplace);
            SavePicture(PictureFromClipboard(files->maxPixels), files->output, format, files->quality);
        };
    });
#endif
}

// "help EFFECT" is "EFFECT --help".
Words WithoutHelpCommand(Words words) {
    if (!words.empty() && words[0] == "help") {
        words.erase(words.begin());
        words.emplace_back("--help");
    }
    return words;
}

// Does what the words ask for. Throws a Failure otherwise.
void RunCommand(const Words& given, std::ostream& out) {
    RefuseEmptyWords(given);
    Words words = Prepared(WithoutHelpCommand(given));
    CLI::App app("Applies effects to pictures.", "qv8");
    app.allow_windows_style_options(false); // a word that begins with a slash is a file on every system
    app.require_subcommand(1);
    app.set_version_flag("--version", "qv8 " QV8_VERSION);
    app.footer(kFooter);
    Action action;
    AddEffectCommands(app, action);
    AddOtherCommands(app, action);
    AddClipboardCommands(app, action);
    const auto isFirst = [&words](const CLI::App* command) { return command->get_name() == words[0]; };
    if (!words.empty() && !words[0].starts_with("-") && app.get_subcommands(isFirst).empty()) {
        EffectNamed(words[0]); // which says what is like it
    }
    try {
        std::reverse(words.begin(), words.end()); // as the parser wants them
        app.parse(words);
    } catch (const CLI::ParseError& error) {
        std::ostringstream unused;
        if (app.exit(error, out, unused) != 0) { // 0 when help was asked for, and given
            throw Failure(kExitUsage, error.what() + std::string(R"(; see "qv8 --help" or "qv8 EFFECT --help")"));
        }
    }
    if (action) {
        action(out);
    }
    if (!out.flush()) {
        throw Failure(kExitOutput, "standard output cannot be written");
    }
}

} // namespace

int RunCommandLine(const std::vector<std::string>& words, std::ostream& out, std::ostream& err) {
    const auto fail = [&err](const std::string& message, ExitCode code) {
        err << "qv8: " + OneLine(message) + "\n" << std::flush;
        return code;
    };
    try {
        RunCommand(words, out);
        return kExitOk;
    } catch (const Failure& failure) {
        return fail(failure.what(), failure.Code());
    } catch (const std::bad_alloc&) {
        return fail("out of memory", kExitEffectFailed);
    } catch (const std::length_error&) { // more than the system has addresses for
        return fail("out of memory", kExitEffectFailed);
    } catch (const std::exception& error) {
        return fail(error.what(), kExitEffectFailed);
    }
}

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

#include "chains/clipboard.h"
#include "chains/options.h"
#include "chains/words.h"
#include "commands.h"
#include "description.h"
#include "message.h"
#include "pictures/failure.h"
#include "pictures/image_file.h"
#include "progress_bar.h"
#include "qv8version.h"

namespace {

constexpr const char* kFooter = "Run \"qv8 help EFFECT\" for the options of an effect.\n"
                                "Files are BMP, PNG, JPEG, TIFF or WebP, or - for standard input and output; input by\n"
                                "content, output by the ending of its name or --format.\n"
                                "\n"
                                "Exit codes: 0 done; 1 the effect failed; 2 wrong usage; 3 an input cannot be read;\n"
                                "4 the output cannot be written; 5 some of many files failed; 130 cancelled.";

using Action = std::function<ExitCode(std::ostream& out, std::ostream& err)>;

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
    command.add_option("--format", files.format, "of the output, whatever its name: bmp, png, jpg, tif, webp")
        ->type_name("NAME")
        ->group("Files");
    command.add_option("--quality", files.quality, "of a JPEG or WebP output, 1..100; 90 unless given")
        ->type_name("N")
        ->transform(Between(1, 100))
        ->group("Files");
    command.add_flag("--progressive", files.progressive, "a JPEG output that appears in steps, and is smaller")
        ->group("Files");
    command.add_flag("--strip", files.strip, "leave profile, EXIF and resolution out")->group("Files");
    command.add_flag("!--no-sync", files.sync, "do not wait until the disk has the output")->group("Files");
    command.add_flag("--force", files.mayReplace, "replace an output that is there already")->group("Files");
}

void AddEffectOptions(CLI::App& command, EffectCommand& effect) {
    Step& step = effect.step;
    if (step.effect->TakesPicture()) {
        AddPositional(command, "INPUT", effect.names.input, "picture to read")->required();
    }
    if (const Setting* const picture = SecondPicture(step); picture != nullptr) {
        AddPositional(command, Capitals(picture->parameter->name), effect.second, picture->parameter->help);
    }
    AddPositional(command, "OUTPUT", effect.last, "picture to write: " + KnownEndings());
    AddParameters(command, step);
    command.add_option("-o", effect.named, "picture to write, over one that is there")
        ->type_name("FILE")
        ->group("Files");
    if (step.effect->result == catalogue::Result::kPictureAndMask) {
        command.add_option("--mask-out", effect.names.maskOutput, "write the mask of the result")
            ->type_name("FILE")
            ->group("Files");
    }
    AddOutputOptions(command, effect.files);
    command.add_flag("-q,--quiet", effect.quiet, "no progress bar")->group("Files");
    command.allow_extras();
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
        AddEffectOptions(*command, *state);
        command->callback([&action, command, state] {
            RefuseExtras(*command);
            action = [state](std::ostream&, std::ostream& err) { return state->Run(err); };
        });
    }
}

void AddRunOptions(CLI::App& command, RunCommand& run) {
    BatchOptions& batch = run.batch;
    AddPositional(command, "CHAIN", run.chain, "effects with their options and \"|\" between them, or a recipe.json")
        ->required();
    command.add_option("FILES", batch.inputs.names, "pictures to read, and folders with --recursive")->type_name("");
    const auto add = [&command](const char* option, std::string& value, const char* help, const char* form) {
        command.add_option(option, value, help)->type_name(form)->group("Files");
    };
    add("--out-dir", batch.outFolder, "folder of the results, made where it is missing", "DIR");
    add("-o", batch.output, "the only result, over one that is there", "FILE");
    add("--name", run.name, "of each result, {stem}{ext} unless given", "PATTERN");
    add("--files-from", batch.inputs.listName, "more names, one a line; - is standard input", "FILE");
    command.add_flag("--recursive", batch.inputs.recursive, "take the pictures in folders")->group("Files");
    command.add_flag("--skip-existing", batch.skipExisting, "leave out what has a result")->group("Files");
    AddOutputOptions(command, batch.files);
    command.add_option("-j,--jobs", batch.jobs, "pictures at once; as many as processors unless given")
        ->type_name("N")
        ->transform(Between(1, 256))
        ->group("Run");
    command.add_option("--memory", run.megabytes, "for all of them; half of the machine's unless given")
        ->type_name("MiB")
        ->transform(Between(1, 1 << 30))
        ->group("Run");
    command.add_flag("--json", batch.json, "a line about each file on standard output")->group("Run");
    command.add_flag("-q,--quiet", batch.quiet, "no bar and no summary")->group("Run");
    command.add_flag("-v,--verbose", batch.verbose, "a line about each file on standard error")->group("Run");
    command.allow_extras();
}

void AddRunCommand(CLI::App& app, Action& action) {
    CLI::App* const command =
        app.add_subcommand("run", "apply effects one after another to many files")->group("Other commands");
    const auto state = std::make_shared<RunCommand>();
    AddRunOptions(*command, *state);
    command->callback([&action, command, state] {
        RefuseExtras(*command);
        action = [state](std::ostream& out, std::ostream& err) { return state->Run(out, err); };
    });
}

void AddOtherCommands(CLI::App& app, Action& action) {
    CLI::App* const list = app.add_subcommand("effects", "list the effects")->group("Other commands");
    const auto json = std::make_shared<bool>(false);
    list->add_flag("--json", *json, "all that can be called, with every option, as JSON");
    list->callback([&app, &action, json] {
        action = ListEffects;
        if (*json) {
            action = [&app](std::ostream& out, std::ostream&) {
                out << DescribeProgram(app);
                return kExitOk;
            };
        }
    });
    app.add_subcommand("help", "explain an effect or a command")->group("Other commands"); // its words are exchanged
    CLI::App* const info = app.add_subcommand("info", "describe pictures")->group("Other commands");
    const auto options = std::make_shared<InfoCommand>();
    info->add_option("PICTURES", options->names, "pictures to read")->required()->type_name("");
    info->add_flag("--json", options->json, "a line of JSON about each");
    AddMaxPixels(*info, options->files);
    info->callback([&action, options] {
        action = [options](std::ostream& out, std::ostream& err) { return options->Run(out, err); };
    });
}

// Only where the system has a clipboard for all programs.
void AddClipboardCommands([[maybe_unused]] CLI::App& app, [[maybe_unused]] Action& action) {
#ifdef _WIN32
    CLI::App* const copy = app.add_subcommand("copy", "put a picture on the clipboard")->group("Other commands");
    struct Files {
        FileNames names;
        FileOptions files;
    };
    const auto source = std::make_shared<Files>();
    AddPositional(*copy, "PICTURE", source->names.input, "picture to read")->required();
    AddMaxPixels(*copy, source->files);
    copy->callback([&action, source] {
        action = [source](std::ostream&, std::ostream&) {
            ProgressBar bar(ProgressBar::Shown::kOnTerminal);
            const std::string& name = source->names.input;
            CopyToClipboard(LoadPicture(name, source->files.maxPixels).picture, name, bar.AsReport());
            return kExitOk;
        };
    });
    CLI::App* const paste =
        app.add_subcommand("paste", "write the picture that is on the clipboard")->group("Other commands");
    const auto target = std::make_shared<Files>();
    AddPositional(*paste, "OUTPUT", target->names.output, "picture to write")->required();
    AddOutputOptions(*paste, target->files);
    paste->callback([&action, target] {
        action = [target](std::ostream&, std::ostream&) {
            ProgressBar bar(ProgressBar::Shown::kOnTerminal);
            SaveAlone(PictureFromClipboard(target->files.maxPixels, bar.AsReport()), target->names, target->files);
            return kExitOk;
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
ExitCode Obey(const Words& given, std::ostream& out, std::ostream& err) {
    RefuseEmptyWords(given);
    Words words = Prepared(WithoutHelpCommand(given));
    CLI::App app("Applies effects to pictures.", "qv8");
    app.allow_windows_style_options(false); // a word that begins with a slash is a file on every system
    app.require_subcommand(1);
    app.set_version_flag("--version", "qv8 " QV8_VERSION "\n" + CodecVersions());
    app.footer(kFooter);
    Action action;
    AddEffectCommands(app, action);
    AddRunCommand(app, action);
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
    const ExitCode code = action ? action(out, err) : kExitOk;
    if (!out.flush()) {
        throw Failure(kExitOutput, "standard output cannot be written");
    }
    return code;
}

} // namespace

int RunCommandLine(const std::vector<std::string>& words, std::ostream& out, std::ostream& err) {
    const auto fail = [&err](const std::string& message, ExitCode code) {
        err << "qv8: " + OneLine(message) + "\n" << std::flush;
        return code;
    };
    try {
        return Obey(words, out, err);
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

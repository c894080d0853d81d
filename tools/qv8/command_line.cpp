#include "command_line.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <new>
#include <ostream>

#include <CLI/CLI.hpp>

#include "area_options.h"
#include "clipboard.h"
#include "effects.h"
#include "failure.h"
#include "image_file.h"
#include "info.h"
#include "interrupt.h"
#include "option_types.h"
#include "progress.h"

namespace {

constexpr const char* kFooter = "Run \"qv8 EFFECT --help\" for the options of an effect.\n"
                                "Files are BMP, PNG or JPEG; input by content, output by the ending of its name.\n"
                                "\n"
                                "Exit codes: 0 done; 1 the effect failed; 2 wrong usage; 3 an input cannot be read;\n"
                                "4 the output cannot be written; 130 cancelled.";

// The options of every command that reads or writes pictures.
struct FileOptions {
    std::string input;
    std::string output;
    std::string maskOutput; // empty: the mask of the result is not wanted
    std::uint64_t maxPixels = std::uint64_t{256} << 20;
    int quality = 90;
};

using Action = std::function<void(std::ostream& out)>;

void AddMaxPixels(CLI::App& command, FileOptions& files) {
    command.add_option("--max-pixels", files.maxPixels, "refuse larger pictures")
        ->type_name("N")
        ->capture_default_str()
        ->group("Files");
}

// Words without an option's name are taken in the order in which they are added: an effect's own come between these.
void AddInput(CLI::App& command, FileOptions& files) {
    command.add_option("INPUT", files.input, "picture to read")->required()->type_name("");
}

void AddOutput(CLI::App& command, Gives gives, FileOptions& files) {
    command.add_option("OUTPUT", files.output, "picture to write: .bmp, .png, .jpg, .jpeg")->required()->type_name("");
    if (gives == Gives::kPictureAndMask) {
        command.add_option("--mask-out", files.maskOutput, "write the mask of the result: .bmp, .png, .jpg, .jpeg")
            ->type_name("FILE")
            ->group("Files");
    }
    AddMaxPixels(command, files);
    command.add_option("--quality", files.quality, "of a JPEG output, 1..100")
        ->type_name("N")
        ->check(Between(1, 100))
        ->capture_default_str()
        ->group("Files");
}

// Where the pictures of the result go, in what format. All that can be wrong with it is found before the work.
struct Destination {
    const FileOptions& files;
    ImageFormat format;
    ImageFormat maskFormat;

    explicit Destination(const FileOptions& options)
        : files(options), format(FormatForName(options.output)),
          maskFormat(options.maskOutput.empty() ? format : FormatForName(options.maskOutput)) {
        if (options.maskOutput == options.output) {
            throw Failure(kExitUsage, options.output + ": the picture and its mask need a file each");
        }
    }

    void Save(const EffectResult& result) const {
        if (!files.maskOutput.empty()) {
            if (!result.mask) {
                throw Failure(kExitUsage, files.maskOutput + ": the result has no mask because the input has none");
            }
            SavePicture(result.mask, files.maskOutput, maskFormat, files.quality);
        }
        SavePicture(result.image, files.output, format, files.quality);
    }
};

void ApplyEffect(const Effect& effect, const EffectCall& call, const FileOptions& files) {
    const Destination destination(files);
    Picture source;
    if (effect.source == Source::kPicture) {
        source = LoadPicture(files.input, files.maxPixels).picture;
    }
    const auto apply = [&] {
        const Progress progress(Progress::Bar::kWhenTerminal);
        return call({source.Handle(), files.input, files.maxPixels, progress.Owner()});
    };
    const EffectResult result = apply();
    if (!result.image) {
        const std::string& subject = effect.source == Source::kPicture ? files.input : files.output;
        throw StatusFailure(subject + ": " + effect.name + ": ", GetErrorStatus());
    }
    destination.Save(result);
}

void ListEffects(std::ostream& out) {
    std::size_t widest = 0;
    for (const Effect& effect : AllEffects()) {
        widest = std::max(widest, std::string(effect.name).size());
    }
    for (const Effect& effect : AllEffects()) {
        const std::string name = effect.name;
        out << name << std::string(widest + 2 - name.size(), ' ') << effect.help << "\n";
    }
}

// Every command stores in `action` what is to be done; it is done when the whole command line has been understood.
void AddEffectCommands(CLI::App& app, Action& action) {
    for (const Effect& effect : AllEffects()) {
        CLI::App* const command = app.add_subcommand(effect.name, effect.help)->group("Effects");
        const auto files = std::make_shared<FileOptions>();
        if (effect.source == Source::kPicture) {
            AddInput(*command, *files);
        }
        const EffectCall call = effect.addTo(*command);
        AddOutput(*command, effect.gives, *files);
        command->callback([&action, &effect, call, files] {
            action = [&effect, call, files](std::ostream&) { ApplyEffect(effect, call, *files); };
        });
    }
}

void AddOtherCommands(CLI::App& app, Action& action) {
    CLI::App* const list = app.add_subcommand("effects", "list the effects")->group("Other commands");
    list->callback([&action] { action = ListEffects; });
    CLI::App* const info = app.add_subcommand("info", "describe a picture")->group("Other commands");
    const auto files = std::make_shared<FileOptions>();
    info->add_option("PICTURE", files->input, "picture to read")->required()->type_name("");
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
    copy->add_option("PICTURE", source->input, "picture to read")->required()->type_name("");
    AddMaxPixels(*copy, *source);
    copy->callback([&action, source] {
        action = [source](std::ostream&) {
            CopyToClipboard(LoadPicture(source->input, source->maxPixels).picture, source->input);
        };
    });
    CLI::App* const paste =
        app.add_subcommand("paste", "write the picture that is on the clipboard")->group("Other commands");
    const auto files = std::make_shared<FileOptions>();
    AddOutput(*paste, Gives::kPicture, *files);
    paste->callback([&action, files] {
        action = [files](std::ostream&) {
            const ImageFormat format = FormatForName(files->output);
            SavePicture(PictureFromClipboard(files->maxPixels), files->output, format, files->quality);
        };
    });
#endif
}

// Names what is wrong better than the parser does.
bool NamesUnknownCommand(const CLI::App& app, const std::vector<std::string>& words) {
    const auto hasName = [&words](const CLI::App* command) { return command->get_name() == words[0]; };
    return !words.empty() && !words[0].starts_with("-") && app.get_subcommands(hasName).empty();
}

// A number such as -.5 would be taken for an option.
std::string WithLeadingZero(const std::string& word) {
    const bool bare = word.size() > 2 && word[0] == '-' && word[1] == '.' && word[2] >= '0' && word[2] <= '9';
    return bare ? "-0" + word.substr(1) : word;
}

std::vector<std::string> ReversedForParser(const std::vector<std::string>& words) {
    std::vector<std::string> prepared = JoinPointWords(words);
    std::transform(prepared.begin(), prepared.end(), prepared.begin(), WithLeadingZero);
    std::reverse(prepared.begin(), prepared.end());
    return prepared;
}

int CarryOut(const Action& action, std::ostream& out, std::ostream& err) {
    try {
        action(out);
        return kExitOk;
    } catch (const Failure& failure) {
        err << "qv8: " << failure.what() << "\n";
        return failure.Code();
    } catch (const std::bad_alloc&) {
        err << "qv8: out of memory\n";
        return kExitEffectFailed;
    } catch (const std::exception& error) {
        err << "qv8: " << error.what() << "\n";
        return kExitEffectFailed;
    }
}

} // namespace

int RunCommandLine(const std::vector<std::string>& words, std::ostream& out, std::ostream& err) {
    CLI::App app("Applies an effect to a picture.", "qv8");
    app.allow_windows_style_options(false); // a word that begins with a slash is a file on every system
    app.require_subcommand(1);
    app.set_version_flag("--version", "qv8 " QV8_VERSION);
    app.footer(kFooter);
    app.failure_message([](const CLI::App*, const CLI::Error& error) {
        return std::string("qv8: ") + error.what() + "\nRun \"qv8 --help\" or \"qv8 EFFECT --help\".\n";
    });
    Action action;
    AddEffectCommands(app, action);
    AddOtherCommands(app, action);
    AddClipboardCommands(app, action);
    if (NamesUnknownCommand(app, words)) {
        err << "qv8: there is no effect \"" << words[0] << "\"; \"qv8 effects\" lists them\n";
        return kExitUsage;
    }
    try {
        app.parse(ReversedForParser(words));
    } catch (const CLI::ParseError& error) {
        return app.exit(error, out, err) == 0 ? kExitOk : kExitUsage;
    }
    return CarryOut(action, out, err);
}

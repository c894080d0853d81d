#include "command_line.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <limits>
#include <memory>
#include <new>
#include <ostream>
#include <sstream>
#include <stdexcept>

#include <CLI/CLI.hpp>

#include "area_options.h"
#include "clipboard.h"
#include "effects.h"
#include "info.h"
#include "message.h"
#include "option_types.h"
#include "pictures/failure.h"
#include "pictures/image_file.h"
#include "pictures/output_file.h"
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
        ->transform(Between(1, std::numeric_limits<std::int64_t>::max()))
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
        ->transform(Between(1, 100))
        ->capture_default_str()
        ->group("Files");
}

// Whether two names mean one file, which need not be there yet.
bool AreOneFile(const std::string& name, const std::string& other) {
    std::error_code failed;
    const auto whole = [&failed](const std::string& text) {
        return std::filesystem::weakly_canonical(std::filesystem::absolute(PathOf(text), failed), failed);
    };
    const bool sameName = whole(name) == whole(other) && !failed;
    std::error_code unknown;
    return name == other || sameName || std::filesystem::equivalent(PathOf(name), PathOf(other), unknown);
}

// Where the pictures of the result go, in what format. All that can be wrong with it is found before the work.
struct Destination {
    const FileOptions& files;
    ImageFormat format;
    ImageFormat maskFormat;

    explicit Destination(const FileOptions& options)
        : files(options), format(FormatForName(options.output)),
          maskFormat(options.maskOutput.empty() ? format : FormatForName(options.maskOutput)) {
        if (!options.maskOutput.empty() && AreOneFile(options.maskOutput, options.output)) {
            throw Failure(kExitUsage, options.output + ": the picture and its mask need a file each");
        }
    }

    // Both files are complete before the first takes its place.
    void Save(const EffectResult& result) const {
        if (!files.maskOutput.empty() && !result.mask) {
            throw Failure(kExitUsage, files.maskOutput + ": the result has no mask because the input has none");
        }
        std::unique_ptr<OutputFile> mask;
        if (!files.maskOutput.empty()) {
            mask = PreparePicture(result.mask, files.maskOutput, maskFormat, files.quality);
        }
        const auto image = PreparePicture(result.image, files.output, format, files.quality);
        if (mask) {
            mask->Commit();
        }
        image->Commit();
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

// Behind "--" there are names only, which stay as they are.
std::vector<std::string> ReversedForParser(const std::vector<std::string>& words) {
    const auto names = std::find(words.begin(), words.end(), "--");
    std::vector<std::string> prepared = JoinPointWords({words.begin(), names});
    std::transform(prepared.begin(), prepared.end(), prepared.begin(), WithLeadingZero);
    prepared.insert(prepared.end(), names, words.end());
    std::reverse(prepared.begin(), prepared.end());
    return prepared;
}

// An empty word, such as a variable of a script that was never set makes, would be as good as no word, and the effect
// another one. Throws a Failure that says where it stands.
void RefuseEmptyWords(const std::vector<std::string>& words) {
    for (std::size_t i = 0; i < words.size(); ++i) {
        const bool isOption = words[i].starts_with("--");
        if (words[i].empty() || (isOption && words[i].ends_with("="))) {
            throw Failure(kExitUsage, isOption ? words[i] + " has no value"
                                               : "an empty word stands behind " + (i > 0 ? words[i - 1] : "qv8"));
        }
    }
}

// Does what the words ask for. Throws a Failure otherwise.
void RunCommand(const std::vector<std::string>& words, std::ostream& out) {
    RefuseEmptyWords(words);
    CLI::App app("Applies an effect to a picture.", "qv8");
    app.allow_windows_style_options(false); // a word that begins with a slash is a file on every system
    app.require_subcommand(1);
    app.set_version_flag("--version", "qv8 " QV8_VERSION);
    app.footer(kFooter);
    Action action;
    AddEffectCommands(app, action);
    AddOtherCommands(app, action);
    AddClipboardCommands(app, action);
    if (NamesUnknownCommand(app, words)) {
        throw Failure(kExitUsage, "there is no effect \"" + words[0] + R"("; "qv8 effects" lists them)");
    }
    try {
        app.parse(ReversedForParser(words));
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

// Marks hidden in the luminance of a picture.
#include <algorithm>
#include <memory>
#include <string>

#include "area_options.h"
#include "effect_families.h"
#include "mask.h"
#include "option_types.h"
#include "pictures/failure.h"
#include "pictures/image_file.h"

namespace {

struct MarkOptions {
    std::string picture;
    std::string text;
    std::string font;
    DWORD size = 24;
    DWORD bold = 0;
    DWORD italic = 0;
    DWORD underline = 0;
    DWORD strikeOut = 0;
    bool vertical = false;
    DWORD angle = 0;
    int strength = 3;
    std::string rectangle = "0,0,2147483647,2147483647"; // cut to the picture
};

// The library takes other characters in an encoding that command lines do not have.
std::string CheckAscii(const std::string& text) {
    const bool isAscii = std::all_of(text.begin(), text.end(), [](char c) { return c > 0; });
    return isAscii ? std::string() : "\"" + text + "\" has characters other than ASCII";
}

// Two characters, a backslash and an n, are a line break: shells do not let one type it easily.
std::string WithLineBreaks(std::string text) {
    for (std::size_t at = 0; (at = text.find("\\n", at)) != std::string::npos; ++at) {
        text.replace(at, 2, "\n");
    }
    return text;
}

// A 1-bit picture as it is; of any other the parts that are not dark.
Picture LoadPattern(const std::string& name, std::uint64_t maxPixels) {
    Picture pattern = LoadPicture(name, maxPixels).picture;
    const bool isOneBit = LockedPicture(pattern).Header().biBitCount == 1;
    return isOneBit ? std::move(pattern) : MaskFromLuminance(pattern, name);
}

} // namespace

EffectCall AddSetSecretImage(CLI::App& command) {
    auto options = std::make_shared<MarkOptions>();
    CLI::Option* const picture =
        command
            .add_option("--picture", options->picture, "hide this picture: 1-bit, or any other from luminance 128 on")
            ->type_name("FILE");
    CLI::Option* const text = command.add_option("--text", options->text, "hide this text; \\n breaks a line")
                                  ->excludes(picture)
                                  ->check(CheckAscii);
    command.add_option("--font", options->font, "name of the font")->check(CheckAscii);
    command.add_option("--size", options->size, "of the font, in points")
        ->transform(Between(1, 0xFFFF))
        ->capture_default_str();
    for (const auto& [name, value] : {std::pair{"--bold", &options->bold},
                                      {"--italic", &options->italic},
                                      {"--underline", &options->underline},
                                      {"--strike-out", &options->strikeOut}}) {
        command.add_flag(name, *value);
    }
    command.add_flag("--vertical", options->vertical, "characters below one another");
    command.add_option("--angle", options->angle, "0, 90, 180 or 270 degrees")
        ->check(CLI::IsMember({"0", "90", "180", "270"}));
    command.add_option("--strength", options->strength, "change of luminance")
        ->transform(Whole())
        ->capture_default_str();
    command.add_option("--rect", options->rectangle, "where the text is; a picture is at its upper left corner")
        ->type_name("l,t,r,b")
        ->check(CheckRectangle);
    return [options, picture, text](const EffectRequest& request) -> EffectResult {
        if (picture->count() + text->count() == 0) {
            throw Failure(kExitUsage, "set-secret-image needs --picture or --text");
        }
        const MarkOptions& o = *options;
        const Picture pattern = picture->count() != 0 ? LoadPattern(o.picture, request.maxPixels) : Picture();
        const RECT rect = ParseRectangle(o.rectangle).value();
        return QV8SetSecretImage(request.image, pattern.Handle(), WithLineBreaks(o.text).c_str(), o.font.c_str(),
                                 o.size, o.bold, o.italic, o.underline, o.strikeOut, o.vertical ? 2 : 0, o.angle,
                                 o.strength, rect.left, rect.top, rect.right, rect.bottom, request.progressOwner, 0, 0,
                                 0);
    };
}

EffectCall AddCheckSecretImage(CLI::App& command) {
    struct Options {
        std::string marked;
        int threshold = 2;
    };
    auto options = std::make_shared<Options>();
    command.add_option("--marked", options->marked, "the marked picture; INPUT is the unmarked one")
        ->required()
        ->type_name("FILE");
    command.add_option("--threshold", options->threshold, "least rise of luminance that is shown")
        ->transform(Whole())
        ->capture_default_str();
    return [options](const EffectRequest& request) -> EffectResult {
        const Picture marked = LoadPicture(options->marked, request.maxPixels).picture;
        return QV8CheckSecretImage(request.image, marked.Handle(), options->threshold, request.progressOwner, 0, 0, 0);
    };
}

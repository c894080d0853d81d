// Conversion between depths.
#include <map>
#include <memory>

#include "effect_families.h"
#include "option_types.h"

EffectCall AddConvertColor(CLI::App& command) {
    struct Options {
        DWORD depth = 0;
        bool fixedPalette = false;
        bool dither = false;
        DWORD threshold = 128;
    };
    static const std::map<std::string, DWORD> depths{{"1", 1},   {"4", 4},   {"8", 8},  {"grey", QV8_DEPTH_GREY},
                                                     {"16", 16}, {"24", 24}, {"32", 32}};
    auto options = std::make_shared<Options>();
    command.add_option("--depth", options->depth, "new depth: 1, 4, 8, grey (8 bits with a grey ramp), 16, 24 or 32")
        ->required()
        ->type_name("DEPTH")
        ->transform(CLI::Validator(
            [](std::string& text) {
                const auto found = depths.find(text);
                if (found == depths.end()) {
                    return text + " is not one of 1, 4, 8, grey, 16, 24 and 32";
                }
                text = std::to_string(found->second);
                return std::string();
            },
            ""));
    command.add_flag("--fixed-palette", options->fixedPalette,
                     "reduce to a fixed table, not one made from the picture");
    command.add_flag("--dither", options->dither, "spread the error of each pixel over its neighbours");
    command.add_option("--threshold", options->threshold, "mean from which on a 1-bit result is white, 0..255")
        ->type_name("LEVEL")
        ->check(Between(0, 255))
        ->capture_default_str();
    return [options](const EffectRequest& request) -> EffectResult {
        return QV8ConvertColor(request.image, options->depth, options->fixedPalette, options->dither,
                               options->threshold, request.progressOwner, 0, 0, 0);
    };
}

// Conversion between depths.
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
    auto options = std::make_shared<Options>();
    AddChoice(command, "--depth", options->depth,
              {{"1", 1}, {"4", 4}, {"8", 8}, {"grey", QV8_DEPTH_GREY}, {"16", 16}, {"24", 24}, {"32", 32}},
              "new depth: 1, 4, 8, grey (8 bits with a grey ramp), 16, 24 or 32")
        ->required();
    command.add_flag("--fixed-palette", options->fixedPalette,
                     "reduce to a fixed table, not one made from the picture");
    command.add_flag("--dither", options->dither, "spread the error of each pixel over its neighbours");
    AddNumber(command, "--threshold", options->threshold, 0, 255, "mean from which on a 1-bit result is white");
    return [options](const EffectRequest& request) -> EffectResult {
        return QV8ConvertColor(request.image, options->depth, options->fixedPalette, options->dither,
                               options->threshold, request.progressOwner, 0, 0, 0);
    };
}

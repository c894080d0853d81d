// Composition.
#include <array>
#include <memory>

#include "effect_families.h"
#include "image_file.h"
#include "option_types.h"

EffectCall AddLayer(CLI::App& command) {
    struct Options {
        std::string layerName;
        DWORD opacity = 255;
        std::array<DWORD, 3> transparent{};
        std::array<DWORD, 3> background{};
        int x = 0;
        int y = 0;
        bool clip = false;
    };
    auto options = std::make_shared<Options>();
    command.add_option("--layer", options->layerName, "picture to lay over the input")->required()->type_name("FILE");
    command.add_option("--x", options->x, "left edge of the layer in the input")->type_name("COLUMN");
    command.add_option("--y", options->y, "top edge of the layer in the input")->type_name("ROW");
    AddNumber(command, "--opacity", options->opacity, 0, 255, "of the layer");
    AddColour(command, "--transparent", options->transparent, "colour of the layer that lets the input show");
    AddColour(command, "--background", options->background, "colour where neither picture lies");
    command.add_flag("--clip", options->clip, "keep the size of the input");
    return [options](const EffectRequest& request) -> EffectResult {
        const Picture layer = LoadPicture(options->layerName, request.maxPixels).picture;
        const auto& clear = options->transparent;
        const auto& ground = options->background;
        return QV8Layer(request.image, layer.Handle(), options->opacity, clear[0], clear[1], clear[2], ground[0],
                        ground[1], ground[2], options->x, options->y, options->clip, request.progressOwner, 0, 0, 0);
    };
}

// Creation and copy.
#include <memory>

#include "effect_families.h"
#include "option_types.h"
#include "pictures/failure.h"

EffectCall AddCreateImage(CLI::App& command) {
    struct Options {
        int width = 0;
        int height = 0;
        DWORD depth = 24;
        DWORD red = 0;
        DWORD green = 0;
        DWORD blue = 0;
    };
    auto options = std::make_shared<Options>();
    command.add_option("--width", options->width, "pixels")->required()->transform(Positive());
    command.add_option("--height", options->height, "pixels")->required()->transform(Positive());
    command.add_option("--depth", options->depth, "1, 4, 8, 16, 24 or 32")
        ->transform(Between(0, 0xFFFF))
        ->capture_default_str();
    for (const auto& [name, value] :
         {std::pair{"--red", &options->red}, {"--green", &options->green}, {"--blue", &options->blue}}) {
        command.add_option(name, *value, "0..255")->type_name("LEVEL")->transform(Between(0, 255));
    }
    return [options](const EffectRequest& request) -> EffectResult {
        const auto width = static_cast<std::uint64_t>(options->width);
        const auto height = static_cast<std::uint64_t>(options->height);
        if (width * height > request.maxPixels) {
            throw Failure(kExitUsage, "a result of " + std::to_string(width) + " x " + std::to_string(height) +
                                          " pixels is above the limit of " + std::to_string(request.maxPixels));
        }
        return QV8CreateImage(options->width, options->height, options->depth, options->red, options->green,
                              options->blue, request.progressOwner, 0, 0, 0);
    };
}

EffectCall AddCopyImage(CLI::App&) {
    return [](const EffectRequest& request) -> EffectResult {
        return QV8CopyImage(request.image, request.progressOwner, 0, 0, 0);
    };
}

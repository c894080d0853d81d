// Selection.
#include <memory>

#include "area_options.h"
#include "effect_families.h"
#include "option_types.h"

namespace {

struct Levels {
    DWORD red = 0;
    DWORD green = 0;
    DWORD blue = 0;

    void AddTo(CLI::App& command, const std::string& help) {
        for (const auto& [name, value] : {std::pair{"--red", &red}, {"--green", &green}, {"--blue", &blue}}) {
            AddNumber(command, name, *value, 0, 255, help);
        }
    }
};

} // namespace

EffectCall AddSelectImage(CLI::App& command) {
    struct Options {
        Levels background;
        AreaOptions area;
    };
    auto options = std::make_shared<Options>();
    options->background.AddTo(command, "of the background");
    options->area.AddShapesTo(command);
    return [options](const EffectRequest& request) -> EffectResult {
        const Area area = options->area.Resolve(request);
        const Levels& background = options->background;
        return QV8SelectImage(request.image, area.type, area.points.data(), area.PointCount(), &area.rect, area.inside,
                              background.red, background.green, background.blue, request.progressOwner, 0, 0, 0);
    };
}

EffectCall AddAutoSelectImage(CLI::App& command) {
    struct Options {
        Levels key;
        DWORD mode = 0;
        DWORD tolerance = 32;
        AreaOptions area;
    };
    auto options = std::make_shared<Options>();
    options->key.AddTo(command, "of the key colour");
    AddChoice(command, "--match", options->mode, {{"rgb", 0}, {"colour", 1}, {"brightness", 2}},
              "rgb (unless given), colour (whatever the brightness) or brightness");
    AddNumber(command, "--tolerance", options->tolerance, 0, 255, "mean difference that still matches");
    options->area.AddShapesTo(command);
    return [options](const EffectRequest& request) -> EffectResult {
        const Area area = options->area.Resolve(request);
        const Levels& key = options->key;
        return QV8AutoSelectImage(request.image, area.type, area.points.data(), area.PointCount(), &area.rect,
                                  area.inside, key.red, key.green, key.blue, options->mode, options->tolerance,
                                  request.progressOwner, 0, 0, 0);
    };
}

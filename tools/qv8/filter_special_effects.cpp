// Noise removal, anti-aliasing, mosaic and outline.
#include <map>
#include <memory>

#include "area_options.h"
#include "effect_families.h"
#include "option_types.h"

namespace {

// An option whose value is one of some words.
void AddChoice(CLI::App& command, const char* option, DWORD& value, const std::map<std::string, DWORD>& choices,
               const char* help) {
    command.add_option(option, value, help)
        ->type_name("NAME")
        ->transform(CLI::Validator(
            [choices](std::string& text) {
                const auto found = choices.find(text);
                if (found == choices.end()) {
                    return text + " is not known";
                }
                text = std::to_string(found->second);
                return std::string();
            },
            ""));
}

} // namespace

EffectCall AddRemoveNoise(CLI::App& command) {
    struct Options {
        DWORD mode = 0;
        DWORD sensitivity = 255;
        AreaOptions area;
    };
    auto options = std::make_shared<Options>();
    AddChoice(command, "--mode", options->mode, {{"luminance", 0}, {"channels", 1}},
              "luminance (unless given): the pixel of middle luminance; channels: the median of each channel");
    command
        .add_option("--sensitivity", options->sensitivity,
                    "channels: 255 less the difference from a neighbour that is left alone, 0..255")
        ->type_name("LEVEL")
        ->check(Between(0, 255))
        ->capture_default_str();
    options->area.AddTo(command);
    return [options](const EffectRequest& request) -> EffectResult {
        const Area area = options->area.Resolve(request);
        return QV8RemoveNoise(&area.target, area.type, area.points.data(), area.PointCount(), &area.rect, area.inside,
                              options->mode, options->sensitivity, request.progressOwner, 0, 0, 0);
    };
}

EffectCall AddAntiAlias(CLI::App& command) {
    auto options = std::make_shared<AreaOptions>();
    options->AddTo(command);
    return [options](const EffectRequest& request) -> EffectResult {
        const Area area = options->Resolve(request);
        return QV8AntiAlias(&area.target, area.type, area.points.data(), area.PointCount(), &area.rect, area.inside,
                            request.progressOwner, 0, 0, 0);
    };
}

EffectCall AddMosaic(CLI::App& command) {
    struct Options {
        int width = 8;
        int height = 8;
        AreaOptions area;
    };
    auto options = std::make_shared<Options>();
    command.add_option("--width", options->width, "width of a block; 1 makes upright stripes")
        ->type_name("PIXELS")
        ->capture_default_str();
    command.add_option("--height", options->height, "height of a block; not both can be 1")
        ->type_name("PIXELS")
        ->capture_default_str();
    options->area.AddTo(command);
    return [options](const EffectRequest& request) -> EffectResult {
        const Area area = options->area.Resolve(request);
        return QV8Mosaic(&area.target, area.type, area.points.data(), area.PointCount(), &area.rect, area.inside,
                         options->width, options->height, request.progressOwner, 0, 0, 0);
    };
}

EffectCall AddOutline(CLI::App& command) {
    struct Options {
        DWORD channel = 0;
        DWORD edgeOperator = 2;
        DWORD gain = 1;
        AreaOptions area;
    };
    auto options = std::make_shared<Options>();
    AddChoice(command, "--channel", options->channel, {{"luminance", 0}, {"red", 1}, {"green", 2}, {"blue", 3}},
              "luminance (unless given), red, green or blue");
    AddChoice(command, "--operator", options->edgeOperator, {{"difference", 0}, {"roberts", 1}, {"sobel", 2}},
              "difference, roberts or sobel (unless given)");
    command.add_option("--gain", options->gain, "factor on the strength of edges, 0..100")
        ->type_name("FACTOR")
        ->check(Between(0, 100))
        ->capture_default_str();
    options->area.AddTo(command);
    return [options](const EffectRequest& request) -> EffectResult {
        const Area area = options->area.Resolve(request);
        return QV8Outline(&area.target, area.type, area.points.data(), area.PointCount(), &area.rect, area.inside,
                          options->channel, options->edgeOperator, options->gain, request.progressOwner, 0, 0, 0);
    };
}

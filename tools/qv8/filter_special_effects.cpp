// Noise removal, anti-aliasing, mosaic and outline.
#include <memory>

#include "area_options.h"
#include "effect_families.h"
#include "option_types.h"

EffectCall AddRemoveNoise(CLI::App& command) {
    struct Options {
        DWORD mode = 0;
        DWORD sensitivity = 255;
        AreaOptions area;
    };
    auto options = std::make_shared<Options>();
    AddChoice(command, "--mode", options->mode, {{"luminance", 0}, {"channels", 1}},
              "luminance (unless given): the pixel of middle luminance; channels: the median of each channel");
    AddNumber(command, "--sensitivity", options->sensitivity, 0, 255,
              "channels: 255 less the difference from a neighbour that is left alone");
    options->area.AddTo(command);
    return [options](const EffectRequest& request) {
        return CallOnArea(QV8RemoveNoise, options->area, request, options->mode, options->sensitivity);
    };
}

EffectCall AddAntiAlias(CLI::App& command) {
    auto options = std::make_shared<AreaOptions>();
    options->AddTo(command);
    return [options](const EffectRequest& request) { return CallOnArea(QV8AntiAlias, *options, request); };
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
        ->transform(Whole())
        ->capture_default_str();
    command.add_option("--height", options->height, "height of a block; not both can be 1")
        ->type_name("PIXELS")
        ->transform(Whole())
        ->capture_default_str();
    options->area.AddTo(command);
    return [options](const EffectRequest& request) {
        return CallOnArea(QV8Mosaic, options->area, request, options->width, options->height);
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
    AddNumber(command, "--gain", options->gain, 0, 100, "factor on the strength of edges");
    options->area.AddTo(command);
    return [options](const EffectRequest& request) {
        return CallOnArea(QV8Outline, options->area, request, options->channel, options->edgeOperator, options->gain);
    };
}

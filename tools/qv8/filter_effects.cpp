// Filters over the neighbourhood of each pixel.
#include <memory>

#include "area_options.h"
#include "effect_families.h"
#include "kernel_file.h"
#include "option_types.h"

EffectCall AddCustomFilter(CLI::App& command) {
    struct Options {
        std::string kernel;
        bool red = false;
        bool green = false;
        bool blue = false;
        AreaOptions area;
    };
    auto options = std::make_shared<Options>();
    command
        .add_option("--kernel", options->kernel,
                    "blur, gauss, sharpen, edges, motion, or a text file with rows of weights")
        ->required()
        ->type_name("NAME|FILE");
    command.add_flag("--red", options->red, "filter red");
    command.add_flag("--green", options->green, "filter green");
    command.add_flag("--blue", options->blue, "filter blue; all three when none is named");
    options->area.AddTo(command);
    return [options](const EffectRequest& request) {
        const Kernel kernel = LoadKernel(options->kernel);
        const bool all = !options->red && !options->green && !options->blue;
        return CallOnArea(QV8CustomFilter, options->area, request, kernel.weights.data(), kernel.divisor, kernel.offset,
                          all || options->red, all || options->green, all || options->blue);
    };
}

EffectCall AddSharp(CLI::App& command) {
    struct Options {
        DWORD strength = 30;
        AreaOptions area;
    };
    auto options = std::make_shared<Options>();
    AddNumber(command, "--strength", options->strength, 0, 100, "how much");
    options->area.AddTo(command);
    return [options](const EffectRequest& request) {
        return CallOnArea(QV8Sharp, options->area, request, options->strength);
    };
}

EffectCall AddEmboss(CLI::App& command) {
    struct Options {
        DWORD direction = 1;
        DWORD depth = 3;
        DWORD base = 128;
        AreaOptions area;
    };
    auto options = std::make_shared<Options>();
    AddNumber(command, "--direction", options->direction, 0, 7, "side that is lit: 0 right, then clockwise");
    AddNumber(command, "--depth", options->depth, 1, 5, "flat to deep");
    AddNumber(command, "--base", options->base, 0, 255, "level of even surfaces");
    options->area.AddTo(command);
    return [options](const EffectRequest& request) {
        return CallOnArea(QV8Emboss, options->area, request, options->direction, options->depth, options->base);
    };
}

EffectCall AddShade(CLI::App& command) {
    struct Options {
        DWORD radius = 2;
        AreaOptions area;
    };
    auto options = std::make_shared<Options>();
    AddNumber(command, "--radius", options->radius, 1, 20, "of the square that is averaged, in pixels");
    options->area.AddTo(command);
    return [options](const EffectRequest& request) {
        return CallOnArea(QV8Shade, options->area, request, options->radius);
    };
}

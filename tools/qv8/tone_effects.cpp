// Tone and colour.
#include <array>
#include <memory>

#include "area_options.h"
#include "effect_families.h"
#include "option_types.h"

namespace {

// Three channels, which the library takes as three arguments in a row.
using Names = std::array<const char*, 3>;
constexpr Names kRgbOptions{"--red", "--green", "--blue"};
constexpr Names kRgbNames{"red", "green", "blue"};
constexpr Names kYccOptions{"--y", "--cr", "--cb"};
constexpr Names kYccNames{"luminance", "red difference", "blue difference"};

template <class Value>
struct ChannelOptions {
    std::array<Value, 3> values{};
    AreaOptions area;
};

using GammaFunction = decltype(QV8RGBGamma);
using LevelFunction = decltype(QV8RGBLevel);
using InvertFunction = decltype(QV8RGBRev);

// Calls any of the functions that take an area and three channel values.
template <class Function, class Value>
EffectResult CallOnChannels(Function* function, const ChannelOptions<Value>& options,
                            const std::array<Value, 3>& values, const EffectRequest& request) {
    return CallOnArea(function, options.area, request, values[0], values[1], values[2]);
}

EffectCall AddGamma(CLI::App& command, const Names& options, const Names& names, GammaFunction* function) {
    auto channels = std::make_shared<ChannelOptions<double>>();
    for (std::size_t i = 0; i < 3; ++i) {
        command
            .add_option(options[i], channels->values[i], std::string(names[i]) + ": below 0 lightens, above 0 darkens")
            ->type_name("NUMBER")
            ->check(CheckFinite);
    }
    channels->area.AddTo(command);
    return [=](const EffectRequest& request) { return CallOnChannels(function, *channels, channels->values, request); };
}

EffectCall AddLevel(CLI::App& command, const Names& options, const Names& names, LevelFunction* function) {
    auto channels = std::make_shared<ChannelOptions<LONG>>();
    for (std::size_t i = 0; i < 3; ++i) {
        command.add_option(options[i], channels->values[i], std::string("added to ") + names[i])
            ->type_name("LEVEL")
            ->transform(Whole());
    }
    channels->area.AddTo(command);
    return [=](const EffectRequest& request) { return CallOnChannels(function, *channels, channels->values, request); };
}

EffectCall AddInvert(CLI::App& command, const Names& options, const Names& names, InvertFunction* function) {
    auto channels = std::make_shared<ChannelOptions<BOOL>>();
    for (std::size_t i = 0; i < 3; ++i) {
        command.add_flag(options[i], channels->values[i], std::string("invert ") + names[i]);
    }
    channels->area.AddTo(command);
    return [=](const EffectRequest& request) {
        const bool any = channels->values != std::array<BOOL, 3>{};
        return CallOnChannels(function, *channels, any ? channels->values : std::array<BOOL, 3>{1, 1, 1}, request);
    };
}

} // namespace

EffectCall AddRgbGamma(CLI::App& command) {
    return AddGamma(command, kRgbOptions, kRgbNames, QV8RGBGamma);
}

EffectCall AddRgbLevel(CLI::App& command) {
    return AddLevel(command, kRgbOptions, kRgbNames, QV8RGBLevel);
}

EffectCall AddRgbRev(CLI::App& command) {
    return AddInvert(command, kRgbOptions, kRgbNames, QV8RGBRev);
}

EffectCall AddYccGamma(CLI::App& command) {
    return AddGamma(command, kYccOptions, kYccNames, QV8YCCGamma);
}

EffectCall AddYccLevel(CLI::App& command) {
    return AddLevel(command, kYccOptions, kYccNames, QV8YCCLevel);
}

EffectCall AddYccRev(CLI::App& command) {
    return AddInvert(command, kYccOptions, kYccNames, QV8YCCRev);
}

EffectCall AddChroma(CLI::App& command) {
    struct Options {
        LONG amount = 0;
        AreaOptions area;
    };
    auto options = std::make_shared<Options>();
    command.add_option("--amount", options->amount, "change in percent, -100 (grey) .. 1000")
        ->type_name("PERCENT")
        ->transform(Whole());
    options->area.AddTo(command);
    return [options](const EffectRequest& request) {
        return CallOnArea(QV8Chroma, options->area, request, options->amount);
    };
}

EffectCall AddSetGray(CLI::App&) {
    return [](const EffectRequest& request) -> EffectResult {
        return QV8SetGray(request.image, request.progressOwner, 0, 0, 0);
    };
}

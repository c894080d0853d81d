// Composition.
#include <array>
#include <memory>
#include <utility>
#include <vector>

#include "effect_families.h"
#include "mask.h"
#include "option_types.h"
#include "pictures/image_file.h"

namespace {

// A transparent colour, or none, in the form in which the library takes it.
class ClearColour {
public:
    void AddTo(CLI::App& command, const std::string& help) {
        option_ = AddColour(command, "--transparent", levels_, help);
    }
    void Read() {
        for (std::size_t i = 0; i != levels_.size(); ++i) {
            bytes_[i] = static_cast<BYTE>(levels_[i]);
        }
    }
    const BYTE* Level(std::size_t channel) const {
        return option_->count() > 0 ? &bytes_[channel] : nullptr;
    }

private:
    const CLI::Option* option_ = nullptr;
    std::array<DWORD, 3> levels_{};
    std::array<BYTE, 3> bytes_{};
};

} // namespace

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
    command.add_option("LAYER", options->layerName, "picture to lay over it")->required()->type_name("");
    command.add_option("--x", options->x, "left edge of the layer in the input")
        ->type_name("COLUMN")
        ->transform(Whole());
    command.add_option("--y", options->y, "top edge of the layer in the input")->type_name("ROW")->transform(Whole());
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

EffectCall AddPasteImage(CLI::App& command) {
    struct Options {
        std::string pastedName;
        std::string maskName;
        int x = 0;
        int y = 0;
        double degrees = 0;
        BOOL mirror = FALSE;
        BOOL flip = FALSE;
        DWORD opacity = 255;
        ClearColour clear;
        DWORD nearest = 0;
    };
    auto options = std::make_shared<Options>();
    command.add_option("--pasted", options->pastedName, "picture to paste onto the input")
        ->required()
        ->type_name("FILE");
    command.add_option("--mask", options->maskName, "picture of its size that marks what is pasted of it")
        ->type_name("FILE");
    command.add_option("--x", options->x, "where its middle lies in the input")
        ->required()
        ->type_name("COLUMN")
        ->transform(Whole());
    command.add_option("--y", options->y, "where its middle lies in the input")
        ->required()
        ->type_name("ROW")
        ->transform(Whole());
    AddAngle(command, options->degrees);
    command.add_flag("--mirror", options->mirror, "exchange left and right before");
    command.add_flag("--flip", options->flip, "exchange top and bottom before");
    AddNumber(command, "--opacity", options->opacity, 0, 255, "of what is pasted");
    options->clear.AddTo(command, "colour of the picture that lets the input show");
    command.add_flag("--nearest", options->nearest, "take the nearest pixel instead of blending neighbours");
    return [options](const EffectRequest& request) -> EffectResult {
        const Picture picture = LoadPicture(options->pastedName, request.maxPixels).picture;
        Picture mask;
        if (!options->maskName.empty()) {
            EffectRequest masked = request;
            masked.image = picture.Handle();
            masked.imageName = options->pastedName;
            mask = LoadMask(options->maskName, false, masked);
        }
        const ImageSet pasted = {picture.Handle(), mask.Handle()};
        ClearColour& clear = options->clear;
        clear.Read();
        return QV8PasteImage(request.image, &pasted, Hundredths(options->degrees), options->mirror, options->flip,
                             options->opacity, clear.Level(0), clear.Level(1), clear.Level(2), options->x, options->y,
                             options->nearest, request.progressOwner, 0, 0, 0);
    };
}

EffectCall AddPanorama(CLI::App& command) {
    struct Options {
        std::string addedName;
        std::array<std::vector<int>, 4> points;
        DWORD seamMode = 0;
        ClearColour clear;
    };
    auto options = std::make_shared<Options>();
    command.add_option("--added", options->addedName, "picture to join to the input")->required()->type_name("FILE");
    constexpr std::array kPoints = {std::pair{"--a1", "a point in the input"},
                                    std::pair{"--a2", "another point in the input"},
                                    std::pair{"--b1", "where the first one is in the added picture"},
                                    std::pair{"--b2", "where the other one is in the added picture"}};
    for (std::size_t i = 0; i != kPoints.size(); ++i) {
        command.add_option(kPoints[i].first, options->points[i], kPoints[i].second)
            ->required()
            ->delimiter(',')
            ->expected(2)
            ->type_name("x,y")
            ->transform(Whole());
    }
    AddChoice(command, "--seam", options->seamMode, {{"none", 0}, {"left", 1}, {"right", 2}},
              "add only what lies left or right of the way from the first point to the other: none, left, right");
    options->clear.AddTo(command, "colour of the added picture that lets the input show");
    return [options](const EffectRequest& request) -> EffectResult {
        const Picture added = LoadPicture(options->addedName, request.maxPixels).picture;
        const auto& [a1, a2, b1, b2] = options->points;
        ClearColour& clear = options->clear;
        clear.Read();
        return QV8Panorama(request.image, added.Handle(), options->seamMode, a1[0], a1[1], a2[0], a2[1], b1[0], b1[1],
                           b2[0], b2[1], clear.Level(0), clear.Level(1), clear.Level(2), request.progressOwner, 0, 0,
                           0);
    };
}

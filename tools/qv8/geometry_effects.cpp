// Scaling, turning and straightening.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <memory>

#include "area_options.h"
#include "effect_families.h"
#include "mask.h"
#include "option_types.h"
#include "pictures/failure.h"

namespace {

struct ResizeOptions {
    int width = 0; // 0: goes by the other side
    int height = 0;
    double scale = 0; // 0: not given
    bool smooth = false;
    std::string mask;
};

struct Size {
    int width;
    int height;
};

int Scaled(int side, double factor) {
    return static_cast<int>(std::clamp(std::round(side * factor), 1.0, 2147483647.0));
}

Size NewSize(const ResizeOptions& options, const EffectRequest& request) {
    const auto* const header = static_cast<const BITMAPINFOHEADER*>(GlobalLock(request.image));
    const Size old = {static_cast<int>(header->biWidth), static_cast<int>(header->biHeight)};
    GlobalUnlock(request.image);
    Size size = {options.width, options.height};
    if (options.scale > 0) {
        size = {Scaled(old.width, options.scale), Scaled(old.height, options.scale)};
    } else if (size.width == 0 && size.height == 0) {
        throw Failure(kExitUsage, "--width, --height or --scale is needed");
    } else if (size.width == 0) {
        size.width = Scaled(old.width, static_cast<double>(size.height) / old.height);
    } else if (size.height == 0) {
        size.height = Scaled(old.height, static_cast<double>(size.width) / old.width);
    }
    if (static_cast<std::uint64_t>(size.width) * static_cast<std::uint64_t>(size.height) > request.maxPixels) {
        throw Failure(kExitUsage, "a result of " + std::to_string(size.width) + " x " + std::to_string(size.height) +
                                      " pixels is above the limit of " + std::to_string(request.maxPixels));
    }
    return size;
}

std::string CheckScale(const std::string& text) {
    const bool isAbove0 = CheckFinite(text).empty() && std::strtod(text.c_str(), nullptr) > 0;
    return isAbove0 ? std::string() : "\"" + text + "\" is not a number above 0";
}

std::string CheckCorners(const std::string& text) {
    const auto corners = ParsePolygon(text);
    return corners && corners->size() == 4 ? std::string() : "\"" + text + "\" is not four points x,y";
}

} // namespace

EffectCall AddAffine(CLI::App& command) {
    auto corners = std::make_shared<std::string>();
    command.add_option("--corners", *corners, "of the area that becomes upright, in any order")
        ->type_name("x,y x,y x,y x,y")
        ->required()
        ->check(CheckCorners);
    return [corners](const EffectRequest& request) -> EffectResult {
        const std::vector<POINT> at = ParsePolygon(*corners).value();
        SetErrorStatus(QV8_STATUS_SUCCESS); // one failure sets no status
        const HGLOBAL result = QV8Affine(request.image, at[0].x, at[0].y, at[1].x, at[1].y, at[2].x, at[2].y, at[3].x,
                                         at[3].y, request.progressOwner, 0, 0, 0);
        if (result == nullptr && GetErrorStatus() == QV8_STATUS_SUCCESS) {
            throw Failure(kExitEffectFailed, request.imageName + ": affine: the corners leave no area");
        }
        return result;
    };
}

EffectCall AddResize(CLI::App& command) {
    auto options = std::make_shared<ResizeOptions>();
    CLI::Option* const width = command.add_option("--width", options->width, "pixels");
    CLI::Option* const height = command.add_option("--height", options->height, "pixels");
    width->transform(Positive());
    height->transform(Positive());
    command.add_option("--scale", options->scale, "factor for both sides")
        ->type_name("FACTOR")
        ->check(CheckScale)
        ->excludes(width)
        ->excludes(height);
    command.add_flag("--smooth", options->smooth, "blend pixels instead of repeating or dropping them");
    command.add_option("--mask", options->mask, "picture of the same size that is scaled along as a mask")
        ->type_name("FILE");
    return [options](const EffectRequest& request) -> EffectResult {
        const Size size = NewSize(*options, request);
        Picture mask;
        if (!options->mask.empty()) {
            mask = LoadMask(options->mask, false, request);
        }
        const ImageSet target = {request.image, mask.Handle()};
        return QV8Resize(&target, size.width, size.height, static_cast<DWORD>(options->smooth), request.progressOwner,
                         0, 0, 0);
    };
}

EffectCall AddRotation(CLI::App& command) {
    struct Options {
        double degrees = 0;
        BOOL mirror = FALSE;
        BOOL flip = FALSE;
        DWORD smooth = 0;
        std::array<DWORD, 3> background{};
        BOOL keepSize = FALSE;
    };
    auto options = std::make_shared<Options>();
    AddAngle(command, options->degrees);
    command.add_flag("--mirror", options->mirror, "exchange left and right before");
    command.add_flag("--flip", options->flip, "exchange top and bottom before");
    command.add_flag("--smooth", options->smooth, "blend neighbouring pixels");
    AddColour(command, "--background", options->background, "colour of what the turned picture does not cover");
    command.add_flag("--keep-size", options->keepSize, "cut the turned picture to the size of the source");
    return [options](const EffectRequest& request) -> EffectResult {
        const ImageSet target = {request.image, nullptr};
        const auto& background = options->background;
        return QV8Rotation(&target, Hundredths(options->degrees), options->mirror, options->flip, options->smooth,
                           background[0], background[1], background[2], options->keepSize, request.progressOwner, 0, 0,
                           0);
    };
}

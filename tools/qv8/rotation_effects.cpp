// Rotation.
#include <cmath>
#include <memory>
#include <vector>

#include "effect_families.h"
#include "option_types.h"

EffectCall AddRotation(CLI::App& command) {
    struct Options {
        double degrees = 0;
        BOOL mirror = FALSE;
        BOOL flip = FALSE;
        DWORD smooth = 0;
        std::vector<DWORD> background = {0, 0, 0};
        BOOL keepSize = FALSE;
    };
    auto options = std::make_shared<Options>();
    command.add_option("--angle", options->degrees, "degrees to the left, -359.99 .. 359.99, in hundredths")
        ->type_name("DEGREES")
        ->check(CLI::Range(-359.99, 359.99).description(""));
    command.add_flag("--mirror", options->mirror, "exchange left and right before");
    command.add_flag("--flip", options->flip, "exchange top and bottom before");
    command.add_flag("--smooth", options->smooth, "blend neighbouring pixels");
    command.add_option("--background", options->background, "colour of what the turned picture does not cover")
        ->type_name("R,G,B")
        ->delimiter(',')
        ->expected(3)
        ->check(Between(0, 255));
    command.add_flag("--keep-size", options->keepSize, "cut the turned picture to the size of the source");
    return [options](const EffectRequest& request) -> EffectResult {
        const ImageSet target = {request.image, nullptr};
        const std::vector<DWORD>& background = options->background;
        return QV8Rotation(&target, static_cast<LONG>(std::lround(options->degrees * 100)), options->mirror,
                           options->flip, options->smooth, background[0], background[1], background[2],
                           options->keepSize, request.progressOwner, 0, 0, 0);
    };
}

// One effect on open pictures: on the whole picture, as it is applied, and on what a window shows of it.
#ifndef QV8_WINDOW_EFFECT_RUN_H
#define QV8_WINDOW_EFFECT_RUN_H

#include <map>
#include <string>

#include "chains/chain.h"
#include "model/parameter_values.h"
#include "model/picture_levels.h"

// An open picture as the effects of another thread need it, which outlives what becomes of it meanwhile.
struct PictureSource {
    SharedPicture image;
    bool alpha = false;
    Selection selection;
    SharedLevels levels; // what was made of them so far
    std::string name;    // in the words of failures
};

struct EffectRun {
    PictureSource subject; // without an image for an effect that takes none
    ParameterValues values;
    std::map<std::string, PictureSource> others; // pictures by the name of their parameter
};

constexpr std::uint64_t kMostPixels = std::uint64_t{256} << 20; // as for pictures that are read

// Throws a Failure when the effect cannot be applied.
ChainResult Apply(const EffectRun& run, const Report& report);

struct PreviewView {
    RECT visible{};  // of the picture; the preview may know more and less
    double zoom = 1; // pixels of the window for one of the picture
};

struct Preview {
    SharedPicture image;
    double left = 0; // where it lies, in pixels of the picture
    double top = 0;
    double scale = 1;    // of its pixels to those of the picture
    bool isPart = false; // the rest stays as it is
};

// What the result will look like in that view. Throws a Failure. Effects on single pixels and those that move pixels
// work on the level that the zoom asks for; filters, which would look stronger on a smaller picture, on the visible
// part at full size.
Preview MakePreview(const EffectRun& run, const PreviewView& view, const Report& report);

#endif

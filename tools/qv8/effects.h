// The effects that the program knows. A new effect is one function, which adds the effect's options to its command and
// says how to call the library, and one row in the table of effects.cpp.
#ifndef QV8_TOOL_EFFECTS_H
#define QV8_TOOL_EFFECTS_H

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include <qv8effect.h>

#include "pictures/picture.h"

namespace CLI {
class App;
}

// What an effect is applied to.
struct EffectRequest {
    HGLOBAL image; // 0 for an effect without a source
    std::string imageName;
    std::uint64_t maxPixels; // for further pictures that the effect reads
    DWORD progressOwner;
};

// What the library returned: pictures of this program's own, or none when the effect failed.
struct EffectResult {
    EffectResult(HGLOBAL newImage) : image(newImage) {}
    EffectResult(const ImageSet& set) : image(set.hImage), mask(set.hMask) {}

    Picture image;
    Picture mask;
};

using EffectCall = std::function<EffectResult(const EffectRequest&)>;

enum class Source { kPicture, kNone };
enum class Gives { kPicture, kPictureAndMask }; // a mask is written where --mask-out says

struct Effect {
    const char* name;
    const char* help;
    EffectCall (*addTo)(CLI::App& command); // the call reads the options' values, so it is made once they are parsed
    Source source = Source::kPicture;
    Gives gives = Gives::kPicture;
};

std::span<const Effect> AllEffects();

#endif

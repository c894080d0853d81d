// The description of every effect: its name, its parameters and the call of its export. Whatever shows, documents or
// offers effects goes by it, so that an effect is described once.
#ifndef QV8_CATALOGUE_EFFECT_H
#define QV8_CATALOGUE_EFFECT_H

#include <array>
#include <span>
#include <string_view>

#include "catalogue/value.h"

namespace catalogue {

enum class Kind {
    kInteger,
    kReal,
    kAngle,          // degrees to the left
    kFlag,           // 0 or 1
    kChannel,        // a flag of a set: when none of them is set, all are
    kChoice,         // one of some words
    kColour,         //
    kOptionalColour, // a colour, or none
    kPoints,         // from `least` to `most` of them
    kRectangle,
    kText, // ASCII
    kKernel,
    kPicture,       // a second picture
    kPattern,       // 1-bit picture of any size
    kMaskedPicture, // the same, with a parameter kMask that belongs to it
    kMask,          // 1-bit picture of the size of the picture that it marks a part of
    kWidth,         // of the result; without it the proportions are kept
    kHeight,
    kScale // width and height as a factor
};

enum class Need {
    kOptional,
    kRequired,
    kOneOf // exactly one of the parameters with this need
};

struct Choice {
    const char* name;
    LONG number;
};

struct Range {
    double least;
    double most;
};

struct Parameter {
    const char* name = nullptr;
    const char* help = "";
    Kind kind = Kind::kInteger;
    Need need = Need::kOptional;
    Range range{};
    double standard = 0; // the default of numbers, flags and choices
    const char* unit = "";
    LONG factor = 1; // from the value to the number that the export takes
    std::array<Choice, 7> choices{};

    // The choices that there are.
    std::span<const Choice> Choices() const;
};

enum class Family { kTone, kDepth, kFilter, kSelection, kGeometry, kComposition, kHidden, kCreation, kClipboard };

// What an export takes before its own parameters.
enum class Source {
    kNothing,
    kPicture,
    kMaskedPicture,  // a picture, and a parameter kMask that belongs to it
    kPictureInArea,  // a picture and an area of any type
    kPictureInShape, // a picture and an area that is no mask
    kClipboard,
    kPictureForClipboard
};

enum class Depths {
    kAny,
    kGreyOrTrueColour, // 8 bits with a grey table, 16, 24 and 32 bits
    kTrueColour24
};

enum class Result { kPicture, kPictureAndMask, kFlag };

// One argument of an export; which member counts depends on its type.
struct Slot {
    LONG word = 0;
    double real = 0;
    const void* pointer = nullptr;
};

struct CallResult {
    ImageSet pictures{};
    QV8BOOL flag = FALSE;
};

struct Effect {
    const char* name = nullptr;
    const char* function = nullptr; // the export
    const char* twin = nullptr;     // an export that differs in how it gives its result only, or null
    Family family{};
    const char* help = "";
    Source source = Source::kPicture;
    Depths depths = Depths::kAny;
    std::array<Parameter, 12> parameters{};
    const char* refusal = nullptr;     // what a bad parameter (status 5) means; null where values are checked before
    bool refusalMeansUnneeded = false; // such a refusal says that there is nothing to do
    Result result{};
    bool showsProgress = true;
    CallResult (*call)(const Slot* slots) = nullptr;
    CallResult (*callTwin)(const Slot* slots) = nullptr; // with the same arguments; null without a twin

    // The parameters that there are, in the order of the export's arguments.
    std::span<const Parameter> Parameters() const;
    bool TakesPicture() const {
        return source != Source::kNothing && source != Source::kClipboard;
    }
    bool TakesArea() const {
        return source == Source::kPictureInArea || source == Source::kPictureInShape;
    }
};

std::span<const Effect> AllEffects();

// What limits an effect to an area, as parameters: mask, polygon, ellipse, outside. Without the first for an effect
// that takes no mask; none for one that takes no area.
std::span<const Parameter> AreaParameters(const Effect& effect);

// The effect of that name, or null.
const Effect* FindEffect(std::string_view name);

// Whether the parameter is a second picture, and no mask or pattern.
inline bool IsPicture(const Parameter& parameter) {
    return parameter.kind == Kind::kPicture || parameter.kind == Kind::kMaskedPicture;
}

// The name of a family as a heading.
const char* FamilyName(Family family);

} // namespace catalogue

#endif

// Which arguments of an export stand for the parts of a description.
#ifndef QV8_CATALOGUE_SLOTS_H
#define QV8_CATALOGUE_SLOTS_H

#include <array>
#include <cstddef>

#include "catalogue/effect.h"

namespace catalogue {

enum class SlotType { kWord, kReal, kHandle, kText, kByte, kWeights, kImageSet, kPoints, kRect };

inline constexpr std::size_t kProgressSlots = 4; // the last arguments of every export with progress

struct SlotTypes {
    std::array<SlotType, 24> types{};
    std::size_t count = 0;

    constexpr void Add(SlotType type, std::size_t times = 1) {
        for (; times > 0; --times) {
            types[count++] = type;
        }
    }
};

constexpr void AddSourceTypes(SlotTypes& types, Source source) {
    using enum SlotType;
    switch (source) {
    case Source::kNothing:
        return;
    case Source::kPicture:
    case Source::kClipboard:
        return types.Add(kHandle);
    case Source::kPictureForClipboard:
        return types.Add(kHandle, 2);
    case Source::kMaskedPicture:
        return types.Add(kImageSet);
    case Source::kPictureInArea:
    case Source::kPictureInShape:
        types.Add(source == Source::kPictureInArea ? kImageSet : kHandle);
        for (const SlotType type : {kWord, kPoints, kWord, kRect, kWord}) {
            types.Add(type);
        }
    }
}

constexpr void AddParameterTypes(SlotTypes& types, const Parameter& parameter) {
    using enum SlotType;
    switch (parameter.kind) {
    case Kind::kReal:
        return types.Add(kReal);
    case Kind::kColour:
        return types.Add(kWord, 3);
    case Kind::kOptionalColour:
        return types.Add(kByte, 3);
    case Kind::kPoints:
        return types.Add(kWord, 2 * static_cast<std::size_t>(parameter.range.least));
    case Kind::kRectangle:
        return types.Add(kWord, 4);
    case Kind::kText:
        return types.Add(kText);
    case Kind::kKernel:
        types.Add(kWeights);
        return types.Add(kWord, 2);
    case Kind::kPicture:
    case Kind::kPattern:
        return types.Add(kHandle);
    case Kind::kMaskedPicture:
        return types.Add(kImageSet);
    case Kind::kMask: // goes with its picture
    case Kind::kScale:
        return;
    default:
        return types.Add(kWord);
    }
}

// The types of an export's arguments, but for those of progress.
constexpr SlotTypes SlotTypesOf(const Effect& effect) {
    SlotTypes types;
    AddSourceTypes(types, effect.source);
    for (const Parameter& parameter : effect.parameters) {
        if (parameter.name != nullptr) {
            AddParameterTypes(types, parameter);
        }
    }
    return types;
}

} // namespace catalogue

#endif

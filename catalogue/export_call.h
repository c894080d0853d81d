// Turns an export of any signature into a call with a list of arguments, and proves while compiling that a description
// fits its export: as many arguments, of the same types, in the same order.
#ifndef QV8_CATALOGUE_EXPORT_CALL_H
#define QV8_CATALOGUE_EXPORT_CALL_H

#include <array>
#include <cstddef>
#include <type_traits>
#include <utility>

#include "catalogue/slots.h"

namespace catalogue {

template <class Argument>
constexpr SlotType TypeOfSlot() {
    if constexpr (std::is_same_v<Argument, double>) {
        return SlotType::kReal;
    } else if constexpr (std::is_integral_v<Argument>) {
        return SlotType::kWord;
    } else if constexpr (std::is_same_v<Argument, LPCSTR>) {
        return SlotType::kText;
    } else if constexpr (std::is_same_v<Argument, const BYTE*>) {
        return SlotType::kByte;
    } else if constexpr (std::is_same_v<Argument, const LONG*>) {
        return SlotType::kWeights;
    } else if constexpr (std::is_same_v<Argument, const ImageSet*>) {
        return SlotType::kImageSet;
    } else if constexpr (std::is_same_v<Argument, const POINT*>) {
        return SlotType::kPoints;
    } else if constexpr (std::is_same_v<Argument, const RECT*>) {
        return SlotType::kRect;
    } else {
        static_assert(std::is_same_v<Argument, HGLOBAL> || std::is_same_v<Argument, HWND>);
        return SlotType::kHandle;
    }
}

template <class Argument>
Argument FromSlot(const Slot& slot) {
    if constexpr (std::is_same_v<Argument, double>) {
        return slot.real;
    } else if constexpr (std::is_integral_v<Argument>) {
        return static_cast<Argument>(slot.word);
    } else {
        return static_cast<Argument>(const_cast<void*>(slot.pointer));
    }
}

inline CallResult AsResult(HGLOBAL picture) {
    return {{picture, nullptr}, FALSE};
}
inline CallResult AsResult(const ImageSet& pictures) {
    return {pictures, FALSE};
}
inline CallResult AsResult(QV8BOOL flag) {
    return {{}, flag};
}

template <auto Export>
struct ExportCall;

template <class Returned, class... Arguments, Returned(QV8API* Export)(Arguments...)>
struct ExportCall<Export> {
    static constexpr std::array<SlotType, sizeof...(Arguments)> kTypes{TypeOfSlot<Arguments>()...};
    static constexpr Result kResult = std::is_same_v<Returned, HGLOBAL>    ? Result::kPicture
                                      : std::is_same_v<Returned, ImageSet> ? Result::kPictureAndMask
                                                                           : Result::kFlag;

    static CallResult Call(const Slot* slots) {
        return CallEach(slots, std::index_sequence_for<Arguments...>());
    }

private:
    template <std::size_t... Indices>
    static CallResult CallEach(const Slot* slots, std::index_sequence<Indices...>) {
        return AsResult(Export(FromSlot<Arguments>(slots[Indices])...));
    }
};

// An export that takes the same arguments and stores its pictures where one more of them says, behind the first.
template <auto Twin>
struct TwinCall;

template <class First, class... Rest, QV8BOOL(QV8API* Twin)(First, ImageSet*, Rest...)>
struct TwinCall<Twin> {
    static constexpr std::array<SlotType, 1 + sizeof...(Rest)> kTypes{TypeOfSlot<First>(), TypeOfSlot<Rest>()...};

    static CallResult Call(const Slot* slots) {
        return CallEach(slots, std::index_sequence_for<Rest...>());
    }

private:
    template <std::size_t... Indices>
    static CallResult CallEach(const Slot* slots, std::index_sequence<Indices...>) {
        CallResult result;
        result.flag = Twin(FromSlot<First>(slots[0]), &result.pictures, FromSlot<Rest>(slots[1 + Indices])...);
        return result;
    }
};

// Completes a description by what the signature of its export says. Only constexpr, since clang 14 takes no consteval
// function within another one for constant; the table is constexpr, so a wrong description stops the compiler anyway.
template <auto Export>
constexpr Effect Describe(const char* function, Effect effect) {
    using Signature = ExportCall<Export>;
    effect.function = function;
    effect.call = Signature::Call;
    effect.result = Signature::kResult;
    const SlotTypes described = SlotTypesOf(effect);
    effect.showsProgress = described.count < Signature::kTypes.size();
    const std::size_t expected = described.count + (effect.showsProgress ? kProgressSlots : 0);
    if (Signature::kTypes.size() != expected) {
        throw "the description has another number of arguments than the export";
    }
    for (std::size_t i = 0; i != expected; ++i) {
        if (Signature::kTypes[i] != (i < described.count ? described.types[i] : SlotType::kWord)) {
            throw "the description has arguments of other types than the export";
        }
    }
    return effect;
}

template <auto Export, auto Twin>
constexpr Effect Describe(const char* function, const char* twin, const Effect& effect) {
    static_assert(TwinCall<Twin>::kTypes == ExportCall<Export>::kTypes, "twins have the same arguments");
    Effect described = Describe<Export>(function, effect);
    described.twin = twin;
    described.callTwin = TwinCall<Twin>::Call;
    return described;
}

} // namespace catalogue

#endif

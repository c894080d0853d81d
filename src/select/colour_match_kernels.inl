// Compiled once per target, see each_target.h.

#include "pixels/ycc_lanes.inl"

// Whole vectors only: the channels and the results have room for them.
void Differences(const PlanarRow& channels, BYTE* cr, BYTE* cb, int count) {
    const PlanarRow row = channels; // which storing bytes cannot change
    for (int i = 0; i < count; i += kLanes) {
        const Components c = Forward(
            Colours{LoadBytesAsFloats(row.blue + i), LoadBytesAsFloats(row.green + i), LoadBytesAsFloats(row.red + i)},
            Broadcast(128.0F));
        StoreFloatsAsBytes(cr + i, ToFloats(c.cr));
        StoreFloatsAsBytes(cb + i, ToFloats(c.cb));
    }
}

inline BYTE Distance(BYTE a, BYTE b) {
    return static_cast<BYTE>(a > b ? a - b : b - a);
}

template <int kComponents>
void Compare(const BYTE* const* components, const BYTE* key, WORD limit, BYTE* __restrict matches, int count) {
    const BYTE* __restrict const first = components[0];
    const BYTE* __restrict const second = components[kComponents > 1 ? 1 : 0];
    const BYTE* __restrict const third = components[kComponents > 2 ? 2 : 0];
    const BYTE keys[3] = {key[0], key[1], key[2]};
    for (int i = 0; i < count; ++i) {
        WORD sum = Distance(first[i], keys[0]);
        if constexpr (kComponents > 1) {
            sum = static_cast<WORD>(sum + Distance(second[i], keys[1]));
        }
        if constexpr (kComponents > 2) {
            sum = static_cast<WORD>(sum + Distance(third[i], keys[2]));
        }
        matches[i] = sum <= limit ? 1 : 0;
    }
}

constexpr ColourMatchKernels kKernels = {Differences, {Compare<1>, Compare<2>, Compare<3>}};

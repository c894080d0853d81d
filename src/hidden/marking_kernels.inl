// Compiled once per target, see each_target.h. Single precision in the written order: only the luminance is
// truncated on the way, the colour differences keep their fractions.

#include "pixels/ycc_lanes.inl"

inline Colours Raised(const Colours& c, Ints strength) {
    const Ints y = Truncate(WeightedSum(c, kLuminanceWeights));
    const Floats cb = WeightedSum(c, kCbWeights);
    const Floats cr = WeightedSum(c, kCrWeights);
    const Ints raised = y + strength;
    const Ints isByte = (raised & BroadcastInt(~255)) == BroadcastInt(0); // all bits or none
    const Floats luminance = ToFloats((raised & isByte) | (y & ~isByte));
    // Adding the offset and taking it away costs last digits that the result depends on.
    const Floats offset = Broadcast(128.0F);
    return Back(luminance, (cr + offset) - offset, (cb + offset) - offset);
}

void Raise(int strength, const BYTE* selected, const PlanarRow& channels, int count) {
    const PlanarRow row = channels; // which storing bytes cannot change
    for (int i = 0; i < count; i += kLanes) {
        const Colours own = {LoadBytesAsFloats(row.blue + i), LoadBytesAsFloats(row.green + i),
                             LoadBytesAsFloats(row.red + i)};
        const auto isSelected = LoadBytesAsFloats(selected + i) > Broadcast(0);
        const Colours raised = Raised(own, BroadcastInt(strength));
        StoreFloatsAsBytes(row.blue + i, isSelected ? raised.blue : own.blue);
        StoreFloatsAsBytes(row.green + i, isSelected ? raised.green : own.green);
        StoreFloatsAsBytes(row.red + i, isSelected ? raised.red : own.red);
    }
}

void Risen(int threshold, const BYTE* __restrict before, const BYTE* __restrict after, BYTE* __restrict result,
           int count) {
    const auto least = static_cast<short>(threshold);
    for (int i = 0; i < count; ++i) {
        const auto rise = static_cast<short>(after[i] - before[i]);
        result[i] = rise >= least ? 1 : 0;
    }
}

constexpr MarkingKernels kKernels = {Raise, Risen};

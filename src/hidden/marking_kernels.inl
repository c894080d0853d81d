// Compiled once per target, see each_target.h. Single precision in the written order: only the luminance is
// truncated on the way, the colour differences keep their fractions.

#include "pixels/ycc_lanes.inl"

void Raise(int strength, const PlanarRow& row, int count) {
    ForEachVector(
        row, count, [strength](const Colours& c) __attribute__((always_inline)) {
            const Ints y = Truncate(WeightedSum(c, kLuminanceWeights));
            const Floats cb = WeightedSum(c, kCbWeights);
            const Floats cr = WeightedSum(c, kCrWeights);
            const Ints raised = y + BroadcastInt(strength);
            const Ints isByte = (raised & BroadcastInt(~255)) == BroadcastInt(0); // all bits or none
            const Floats luminance = ToFloats((raised & isByte) | (y & ~isByte));
            // Adding the offset and taking it away costs last digits that the result depends on.
            const Floats offset = Broadcast(128.0F);
            return Back(luminance, (cr + offset) - offset, (cb + offset) - offset);
        });
}

inline void SelectChannel(const BYTE* __restrict selected, const BYTE* __restrict source, BYTE* __restrict result,
                          int count) {
    for (int i = 0; i < count; ++i) {
        result[i] = selected[i] != 0 ? source[i] : result[i];
    }
}

void Select(const BYTE* selected, const PlanarRow& source, const PlanarRow& row, int count) {
    SelectChannel(selected, source.blue, row.blue, count);
    SelectChannel(selected, source.green, row.green, count);
    SelectChannel(selected, source.red, row.red, count);
}

void Risen(int threshold, const BYTE* __restrict before, const BYTE* __restrict after, BYTE* __restrict result,
           int count) {
    const auto least = static_cast<short>(threshold);
    for (int i = 0; i < count; ++i) {
        const auto rise = static_cast<short>(after[i] - before[i]);
        result[i] = rise >= least ? 1 : 0;
    }
}

constexpr MarkingKernels kKernels = {Raise, Select, Risen};

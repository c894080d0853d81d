// Compiled once per target, see each_target.h. Every product and sum is single precision in the written order, and
// every component is truncated to an integer in between: that is what the results are made of.

#include "pixels/ycc_lanes.inl"

inline Floats Shift(Ints value, const ComponentShift& shift) {
    using Unsigned = unsigned __attribute__((vector_size(sizeof(Ints))));
    const auto flipped = reinterpret_cast<Unsigned>(value ^ BroadcastInt(shift.flip));
    return ToFloats(reinterpret_cast<Ints>(flipped + reinterpret_cast<Unsigned>(BroadcastInt(shift.add))));
}

void ShiftRow(const YccShift& shift, const PlanarRow& row, int count) {
    const YccShift own = shift;
    ForEachVector(
        row, count, [own](const Colours& colours) __attribute__((always_inline)) {
            const Components c = Forward(colours, Broadcast(128.0F));
            return Back(Shift(c.y, own.y), Shift(c.cr, own.cr), Shift(c.cb, own.cb));
        });
}

void ScaleRow(float factor, const PlanarRow& row, int count) {
    ForEachVector(
        row, count, [factor](const Colours& colours) __attribute__((always_inline)) {
            const Components c = Forward(colours, Broadcast(0.0F));
            return Back(ToFloats(c.y), ToFloats(c.cr) * Broadcast(factor), ToFloats(c.cb) * Broadcast(factor));
        });
}

inline Floats LookUp(Ints value, const float* table) {
    Floats result;
    for (int lane = 0; lane != kLanes; ++lane) {
        result[lane] = table[value[lane]];
    }
    return result;
}

void MapRow(const YccTables& tables, const PlanarRow& row, int count) {
    ForEachVector(
        row, count, [&tables](const Colours& colours) __attribute__((always_inline)) {
            const Components c = Forward(colours, Broadcast(128.0F));
            return Back(LookUp(c.y, tables.y), LookUp(c.cr, tables.cr), LookUp(c.cb, tables.cb));
        });
}

void GammaTable(double gamma, int offset, float* __restrict table) {
    constexpr auto kFar = static_cast<float>(kFarComponent);
    for (int i = 0; i != 256; ++i) {
        const auto value = static_cast<float>(GammaCurve(i, gamma));
        const float low = value > -kFar ? value : -kFar; // also what is not a number
        table[i] = static_cast<float>(static_cast<int>(low < kFar ? low : kFar) - offset);
    }
}

constexpr YccKernels kKernels = {ShiftRow, MapRow, ScaleRow, GammaTable};

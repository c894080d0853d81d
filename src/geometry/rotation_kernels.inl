// Compiled once per target, see each_target.h. All work on whole registers: arrays have room for that.

inline Floats LoadFloats(const float* values) {
    Floats result;
    __builtin_memcpy(&result, values, sizeof result);
    return result;
}

template <class Vector, class Item>
inline void Store(Item* items, const Vector& values) {
    __builtin_memcpy(items, &values, sizeof values);
}

inline Ints Columns(int x) {
    Ints result;
    for (int lane = 0; lane < kLanes; ++lane) {
        result[lane] = x + lane;
    }
    return result;
}

inline Ints PlacesOf(const Ints& centred, const Direction& direction) {
    return (centred ^ BroadcastInt(direction.exchange)) + BroadcastInt(direction.base);
}

// The place on the side that the fraction leans to, and its weight.
inline void Neighbour(const Floats& exact, const Ints& centred, const Ints& places, float sign, int* next,
                      float* weights) {
    const Floats lean = (exact - ToFloats(centred)) * Broadcast(sign);
    const Ints isAfter = reinterpret_cast<Ints>(lean > Broadcast(0));
    Store(next, places - 1 - isAfter - isAfter);
    Store(weights, lean > Broadcast(0) ? lean : -lean);
}

template <bool kWithNeighbours>
void Find(const SourceLines& sourceLines, const Directions& sourceDirections, int x, int count, Places& places) {
    const SourceLines lines = sourceLines;
    const Directions directions = sourceDirections;
    Ints columns = Columns(x);
    for (int i = 0; i < count; i += kLanes, columns += kLanes) {
        const Floats along = ToFloats(columns);
        const Floats exactColumn = along * Broadcast(lines.column.factor) + Broadcast(lines.column.offset);
        const Floats exactRow = along * Broadcast(lines.row.factor) + Broadcast(lines.row.offset);
        const Ints column = Truncate(exactColumn);
        const Ints row = Truncate(exactRow);
        const Ints sourceColumn = PlacesOf(column, directions.column);
        const Ints sourceRow = PlacesOf(row, directions.row);
        Store(places.columns + i, sourceColumn);
        Store(places.rows + i, sourceRow);
        if constexpr (kWithNeighbours) {
            Neighbour(exactColumn, column, sourceColumn, directions.column.sign, places.nextColumns + i,
                      places.columnWeights + i);
            Neighbour(exactRow, row, sourceRow, directions.row.sign, places.nextRows + i, places.rowWeights + i);
        }
    }
}

void Blend(const Places& places, const BYTE* pixel, const BYTE* beside, const BYTE* above, const BYTE* diagonal,
           int count, BYTE* result) {
    for (int i = 0; i < count; i += kLanes) {
        const Floats fx = LoadFloats(places.columnWeights + i);
        const Floats fy = LoadFloats(places.rowWeights + i);
        const Floats restX = Broadcast(1) - fx;
        const Floats restY = Broadcast(1) - fy;
        const Floats acrossRow = fx * LoadBytesAsFloats(diagonal + i) + restX * LoadBytesAsFloats(above + i);
        const Floats ownRow = restX * LoadBytesAsFloats(pixel + i) + fx * LoadBytesAsFloats(beside + i);
        StoreFloatsAsBytes(result + i, fy * acrossRow + restY * ownRow);
    }
}

namespace narrow {
#include "simd/lanes_16_bytes.inl"
} // namespace narrow

// The four pixels around a place, each in one register with its channels side by side. Sums are those of Blend.
template <int kBytes>
void BlendPacked(const DibView& picture, const Places& places, int count, BYTE* __restrict result) {
    const BYTE* const pixels = picture.pixels;
    const auto stride = static_cast<std::ptrdiff_t>(picture.stride);
    for (int i = 0; i < count; ++i) {
        const int column = places.columns[i];
        const int row = places.rows[i];
        const BYTE* const own = pixels + row * stride + std::ptrdiff_t{column} * kBytes;
        const std::ptrdiff_t beside = std::ptrdiff_t{places.nextColumns[i] - column} * kBytes;
        const BYTE* const above = own + (places.nextRows[i] - row) * stride;
        const narrow::Floats fx = narrow::Broadcast(places.columnWeights[i]);
        const narrow::Floats fy = narrow::Broadcast(places.rowWeights[i]);
        const narrow::Floats restX = narrow::Broadcast(1) - fx;
        const narrow::Floats restY = narrow::Broadcast(1) - fy;
        const narrow::Floats acrossRow =
            fx * narrow::LoadBytesAsFloats(above + beside) + restX * narrow::LoadBytesAsFloats(above);
        const narrow::Floats ownRow =
            restX * narrow::LoadBytesAsFloats(own) + fx * narrow::LoadBytesAsFloats(own + beside);
        BYTE blended[4];
        narrow::StoreFloatsAsBytes(blended, fy * acrossRow + restY * ownRow);
        // The fourth byte makes way for the next pixel.
        __builtin_memcpy(result + std::ptrdiff_t{i} * kBytes, blended, i + 1 == count ? kBytes : sizeof blended);
    }
}

constexpr RotationKernels kKernels = {Find<false>, Find<true>, BlendPacked<3>, BlendPacked<4>, Blend};

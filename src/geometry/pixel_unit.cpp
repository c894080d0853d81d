#include "geometry/pixel_unit.h"

#include <cstring>

#include "frame/indices.h"

namespace qv8 {
namespace {

struct ThreeBytes {
    BYTE bytes[3];
};

template <class Unit>
void CopyLine(const DibView& picture, int column, int row, int columnStep, int rowStep, int count, BYTE* result) {
    const BYTE* source = picture.Row(row) + static_cast<std::size_t>(column) * sizeof(Unit);
    if (rowStep == 0 && columnStep == 1) {
        std::memcpy(result, source, static_cast<std::size_t>(count) * sizeof(Unit));
        return;
    }
    const std::ptrdiff_t step =
        columnStep * static_cast<std::ptrdiff_t>(sizeof(Unit)) + rowStep * static_cast<std::ptrdiff_t>(picture.stride);
    for (int i = 0; i < count; ++i) {
        std::memcpy(result + static_cast<std::size_t>(i) * sizeof(Unit), source + i * step, sizeof(Unit));
    }
}

template <class Unit>
void CopyColumns(const BYTE* __restrict row, const int* __restrict columns, int count, BYTE* __restrict result) {
    for (int i = 0; i < count; ++i) {
        std::memcpy(result + static_cast<std::size_t>(i) * sizeof(Unit),
                    row + static_cast<std::size_t>(columns[i]) * sizeof(Unit), sizeof(Unit));
    }
}

template <class Unit>
void CopyPlaces(const DibView& picture, const int* __restrict columns, const int* __restrict rows, int count,
                BYTE* __restrict result) {
    const BYTE* const pixels = picture.pixels;
    const std::size_t stride = picture.stride;
    for (int i = 0; i < count; ++i) {
        const BYTE* const source =
            pixels + static_cast<std::size_t>(rows[i]) * stride + static_cast<std::size_t>(columns[i]) * sizeof(Unit);
        std::memcpy(result + static_cast<std::size_t>(i) * sizeof(Unit), source, sizeof(Unit));
    }
}

template <int kBits>
BYTE IndexAt(const BYTE* row, int column) {
    constexpr int kPerByte = 8 / kBits;
    const int shift = 8 - kBits - column % kPerByte * kBits;
    return static_cast<BYTE>(static_cast<unsigned>(row[column / kPerByte]) >> shift & ((1U << kBits) - 1));
}

template <int kBits>
void CopyIndexLine(const DibView& picture, int column, int row, int columnStep, int rowStep, int count, BYTE* result) {
    for (int i = 0; i < count; ++i) {
        result[i] = IndexAt<kBits>(picture.Row(row + i * rowStep), column + i * columnStep);
    }
}

template <int kBits>
void CopyIndexColumns(const BYTE* row, const int* columns, int count, BYTE* result) {
    for (int i = 0; i < count; ++i) {
        result[i] = IndexAt<kBits>(row, columns[i]);
    }
}

template <int kBits>
void CopyIndexPlaces(const DibView& picture, const int* columns, const int* rows, int count, BYTE* result) {
    for (int i = 0; i < count; ++i) {
        result[i] = IndexAt<kBits>(picture.Row(rows[i]), columns[i]);
    }
}

template <class Unit>
constexpr PixelUnit kUnit = {sizeof(Unit), CopyLine<Unit>, CopyColumns<Unit>, CopyPlaces<Unit>};

} // namespace

PixelUnit PixelUnitOf(int bitCount) {
    switch (bitCount) {
    case 1:
        return {1, CopyIndexLine<1>, CopyIndexColumns<1>, CopyIndexPlaces<1>};
    case 4:
        return {1, CopyIndexLine<4>, CopyIndexColumns<4>, CopyIndexPlaces<4>};
    case 8:
        return kUnit<BYTE>;
    case 16:
        return kUnit<WORD>;
    case 24:
        return kUnit<ThreeBytes>;
    default:
        return kUnit<DWORD>;
    }
}

void StorePixels(const DibView& result, const BYTE* pixels, int count, BYTE* row, int column) {
    if (result.bitCount < 8) {
        PackIndices(result.bitCount, pixels, count, row, column);
        return;
    }
    const auto unit = static_cast<std::size_t>(result.bitCount) / 8;
    BYTE* const place = row + static_cast<std::size_t>(column) * unit;
    if (place != pixels) {
        std::memcpy(place, pixels, static_cast<std::size_t>(count) * unit);
    }
}

void ClearPadding(const DibView& result, BYTE* row) {
    const auto bits = static_cast<std::uint64_t>(result.width) * static_cast<std::uint64_t>(result.bitCount);
    const auto used = static_cast<std::size_t>((bits + 7) / 8);
    std::memset(row + used, 0, result.stride - used);
}

} // namespace qv8

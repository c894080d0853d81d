#include "pixels/pixel_unit.h"

#include <cstring>

#include "pixels/indices.h"
#include "pixels/pixel_kernels.h"

namespace qv8 {
namespace {

struct __attribute__((packed)) ThreeBytes {
    WORD first;
    BYTE last;
};

// A pixel at any address, aligned or not. Copied through this type a pixel of three bytes goes by way of registers; for
// memcpy of three bytes compilers put it together on the stack first, which takes longer.
template <class Unit>
struct __attribute__((packed, may_alias)) Stored {
    Unit unit;
};

template <class Unit>
void CopyLine(const DibView& picture, int column, int row, int columnStep, int rowStep, int count, BYTE* result) {
    const BYTE* source = picture.Row(row) + static_cast<std::size_t>(column) * sizeof(Unit);
    if (rowStep == 0 && columnStep == 1) {
        std::memcpy(result, source, static_cast<std::size_t>(count) * sizeof(Unit));
        return;
    }
    if constexpr (sizeof(Unit) == 3) {
        if (rowStep == 0 && columnStep == -1) {
            ThePixelKernels().reverse24(source + sizeof(Unit), result, count);
            return;
        }
    }
    const std::ptrdiff_t step =
        columnStep * static_cast<std::ptrdiff_t>(sizeof(Unit)) + rowStep * static_cast<std::ptrdiff_t>(picture.stride);
    for (int i = 0; i < count; ++i) {
        std::memcpy(result + static_cast<std::size_t>(i) * sizeof(Unit), source + i * step, sizeof(Unit));
    }
}

template <class Unit>
void GatherColumns(const BYTE* __restrict row, const int* __restrict columns, int count, BYTE* __restrict result) {
    for (int i = 0; i < count; ++i) {
        std::memcpy(result + static_cast<std::size_t>(i) * sizeof(Unit),
                    row + static_cast<std::size_t>(columns[i]) * sizeof(Unit), sizeof(Unit));
    }
}

template <class Unit>
void Gather(const DibView& picture, const int* __restrict columns, const int* __restrict rows, int count,
            BYTE* __restrict result) {
    const BYTE* const pixels = picture.pixels;
    const std::size_t stride = picture.stride;
    for (int i = 0; i < count; ++i) {
        const BYTE* const source =
            pixels + static_cast<std::size_t>(rows[i]) * stride + static_cast<std::size_t>(columns[i]) * sizeof(Unit);
        std::memcpy(result + static_cast<std::size_t>(i) * sizeof(Unit), source, sizeof(Unit));
    }
}

// write(row, column, i) puts pixel i in a row of the result.
template <class Write>
void ScatterEach(const int* __restrict columns, const int* __restrict rows, int count, const NewPicture& result,
                 Write write) {
    const int lastColumn = result.view.width - 1;
    const int lastRow = result.view.height - 1;
    const std::size_t stride = result.view.stride;
    const auto bits = static_cast<std::size_t>(result.view.bitCount);
    BYTE* const bottom = result.Row(0);
    for (int i = 0; i < count; ++i) {
        // Along a slanting line each pixel goes to another row, and so to another line of the cache, whose coming each
        // store would wait for. So the lines are asked for some pixels in advance.
        constexpr int kAhead = 40;
        if (i % 4 == 0 && i + kAhead < count && columns[i + kAhead] >= 0) {
            const int row = rows[i + kAhead];
            const BYTE* const next = bottom + static_cast<std::size_t>(row) * stride +
                                     static_cast<std::size_t>(columns[i + kAhead]) / 8 * bits;
            __builtin_prefetch(next, 1);
            __builtin_prefetch(row < lastRow ? next + stride : next, 1);
        }
        const int column = columns[i];
        if (column < 0) {
            continue;
        }
        BYTE* const row = bottom + static_cast<std::size_t>(rows[i]) * stride;
        write(row, column, i);
        if (column < lastColumn) {
            write(row, column + 1, i);
        }
        if (rows[i] < lastRow) {
            write(row + stride, column, i);
        }
    }
}

template <class Unit>
void Scatter(const BYTE* __restrict pixels, const int* columns, const int* rows, int count, const NewPicture& result) {
    ScatterEach(columns, rows, count, result, [pixels](BYTE* row, int column, int i) {
        const Unit unit = reinterpret_cast<const Stored<Unit>*>(pixels)[i].unit;
        BYTE* const place = row + static_cast<std::size_t>(column) * sizeof unit;
        reinterpret_cast<Stored<Unit>*>(place)->unit = unit;
    });
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
void GatherIndexColumns(const BYTE* row, const int* columns, int count, BYTE* result) {
    for (int i = 0; i < count; ++i) {
        result[i] = IndexAt<kBits>(row, columns[i]);
    }
}

template <int kBits>
void GatherIndices(const DibView& picture, const int* columns, const int* rows, int count, BYTE* result) {
    for (int i = 0; i < count; ++i) {
        result[i] = IndexAt<kBits>(picture.Row(rows[i]), columns[i]);
    }
}

template <int kBits>
void ScatterIndices(const BYTE* indices, const int* columns, const int* rows, int count, const NewPicture& result) {
    ScatterEach(columns, rows, count, result, [indices](BYTE* row, int column, int i) {
        constexpr int kPerByte = 8 / kBits;
        constexpr unsigned kMask = (1U << kBits) - 1;
        const int shift = 8 - kBits - column % kPerByte * kBits;
        const int at = column / kPerByte;
        row[at] = static_cast<BYTE>((row[at] & ~(kMask << shift)) | static_cast<unsigned>(indices[i]) << shift);
    });
}

template <class Unit>
constexpr PixelUnit UnitOf() {
    return {CopyLine<Unit>, GatherColumns<Unit>, Gather<Unit>, Scatter<Unit>};
}

template <int kBits>
constexpr PixelUnit UnitOfBits() {
    return {CopyIndexLine<kBits>, GatherIndexColumns<kBits>, GatherIndices<kBits>, ScatterIndices<kBits>};
}

} // namespace

constexpr PixelUnit kUnitOf1Bit = UnitOfBits<1>();
constexpr PixelUnit kUnitOf4Bits = UnitOfBits<4>();
constexpr PixelUnit kUnitOf1Byte = UnitOf<BYTE>();
constexpr PixelUnit kUnitOf2Bytes = UnitOf<WORD>();
constexpr PixelUnit kUnitOf3Bytes = UnitOf<ThreeBytes>();
constexpr PixelUnit kUnitOf4Bytes = UnitOf<DWORD>();

void StorePixels(const DibView& result, const BYTE* pixels, int count, BYTE* row, int column) {
    if (result.layout->SharesBytes()) {
        PackIndices(result.bitCount, pixels, count, row, column);
        return;
    }
    const auto bytes = static_cast<std::size_t>(result.layout->Bytes());
    BYTE* const place = row + static_cast<std::size_t>(column) * bytes;
    if (place != pixels) {
        std::memcpy(place, pixels, static_cast<std::size_t>(count) * bytes);
    }
}

void ClearBehind(const DibView& result, int count, BYTE* row) {
    const auto bits = static_cast<std::uint64_t>(count) * static_cast<std::uint64_t>(result.bitCount);
    const auto used = static_cast<std::size_t>((bits + 7) / 8);
    if (used != result.stride) {
        std::memset(row + used, 0, result.stride - used);
    }
}

void ClearPadding(const DibView& result, BYTE* row) {
    ClearBehind(result, result.width, row);
}

} // namespace qv8

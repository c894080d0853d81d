#include "filter/filter_frame.h"

#include <algorithm>
#include <cstring>

#include "area/area_rows.h"
#include "filter/row_ring.h"
#include "filter/smoothing_kernels.h"
#include "frame/status.h"

namespace qv8 {
namespace {

// One call: what the rows are made from and where they go.
struct FilterCall {
    const Filter& filter;
    const Area& area;
    RowRing& ring;
    int filteredRow = -1;
    int roomyRows = 0; // those below have room behind for what kernels read and write too much, which later rows mend
};

void FilterPlane(const FilterCall& call, const FilterRow& at, Plane plane, BYTE* result) {
    const int begin = call.area.rect.left * at.step;
    const int count = call.area.rect.Width() * at.step;
    if (call.filter.channels[plane] || call.ring.kind == RowKind::kGrey) {
        call.filter.filterSamples(call.filter.context, at, plane, begin, count, result);
    } else {
        std::memcpy(result, at.rows[plane][0] + begin, static_cast<std::size_t>(count));
    }
}

// Filters all columns of the area's rectangle in one row.
void FilterWholeRow(FilterCall& call, int row) {
    const FilterRow& at = MoveTo(call.ring, row);
    const WorkRect& rect = call.area.rect;
    BYTE* const* const results = call.ring.results;
    if (call.filter.filterSamples == nullptr) {
        call.filter.filterPixels(call.filter.context, at, rect.left, rect.right + 1,
                                 {results[0], results[1], results[2]});
        return;
    }
    const int planes = call.ring.kind == RowKind::kPlanar ? 3 : 1;
    for (int plane = 0; plane < planes; ++plane) {
        FilterPlane(call, at, static_cast<Plane>(plane), results[plane]);
    }
}

template <int kBytes, int kCopied>
void CopyNeighboursOf(const BYTE* source, const std::ptrdiff_t* offsets, int count, const BYTE* codes, BYTE* result) {
    const auto copy = [=](int i, std::size_t bytes) __attribute__((always_inline)) {
        const std::ptrdiff_t place = std::ptrdiff_t{i} * kBytes;
        std::memcpy(result + place, source + offsets[codes[i]] + place, bytes);
    };
    int i = 0;
    if constexpr (kBytes ==
                  3) { // words of four bytes one over the other; there is a pixel behind any neighbour of these
        for (; i < count - 2; ++i) {
            copy(i, sizeof(DWORD));
        }
    }
    for (; i < count; ++i) {
        copy(i, kCopied);
    }
}

void CopyNeighbours(const DibView& source, int roomyRows, int row, int column, int count, const BYTE* codes,
                    BYTE* result) {
    const int bytes = source.layout->Bytes();
    const auto stride = static_cast<std::ptrdiff_t>(source.stride);
    const BYTE* const pixels = source.Row(row) + std::ptrdiff_t{column} * bytes;
    const auto copy24 = TheSmoothingKernels().copyNeighbours24;
    if (source.layout->IsNothingButBgr() && copy24 != nullptr && row > 0 && row + 1 < roomyRows) {
        copy24({{pixels - stride, pixels, pixels + stride}}, codes, count, result);
        return;
    }
    std::ptrdiff_t offsets[16];
    for (int code = 0; code < 16; ++code) {
        offsets[code] = (code / 4 - 1) * stride + (code % 4 - 1) * bytes;
    }
    const auto copy = source.layout->unusedBytes != 0 ? CopyNeighboursOf<4, 3>
                      : bytes == 2                    ? CopyNeighboursOf<2, 2>
                                                      : CopyNeighboursOf<3, 3>;
    copy(pixels, offsets, count, codes, result);
}

// Writes a run of pixels from the results of its row.
void WriteRun(const DibView& source, const FilterCall& call, int row, int column, int count, BYTE* result) {
    const std::ptrdiff_t first = column - call.area.rect.left;
    BYTE* const* const results = call.ring.results;
    const bool neighbours = call.filter.result == Filter::Result::kNeighbour;
    if (call.ring.kind == RowKind::kPacked) {
        std::memcpy(result, results[0] + first * 3, static_cast<std::size_t>(count) * 3);
    } else if (neighbours && call.ring.format.IsGrey()) { // indices already
        std::memcpy(result, results[0] + first, static_cast<std::size_t>(count));
    } else if (neighbours) {
        CopyNeighbours(source, call.roomyRows, row, column, count, results[0] + first, result);
    } else {
        const bool grey = call.filter.result == Filter::Result::kGrey;
        const PlanarRow planes = {results[0] + first, results[grey ? 0 : 1] + first, results[grey ? 0 : 2] + first};
        call.ring.format.Encode(planes, result, count);
    }
}

HGLOBAL FilterArea(const DibView& source, const Area& area, const Filter& filter, const Progress& progress) {
    NewPicture result = DuplicateDib(source, InitialPixels::kUnwritten);
    if (!result) {
        return nullptr;
    }
    RowRing ring;
    if (!MakeRowRing(source, filter, area.rect.Width(), ring)) {
        return nullptr;
    }
    FilterCall call = {filter, area, ring};
    // Neighbours are copied by whole vectors of pixels, which reach farther beyond a row than filters do.
    call.roomyRows = source.bitCount == 24 ? RowsToRead(source, filter.reach + kFilterSlack) : 0;
    const auto write = [&](int row, int column, int count, const BYTE* sourcePixels, BYTE* resultPixels) {
        if (call.ring.kind == RowKind::kPacked && row < call.roomyRows && count == area.rect.Width()) {
            FilterPlane(call, MoveTo(call.ring, row), kBlue, resultPixels);
            return;
        }
        if (call.filteredRow != row) { // rows without a pixel of the area are never filtered
            FilterWholeRow(call, row);
            call.filteredRow = row;
        }
        CopyUnused(call.ring.format, sourcePixels, resultPixels, count);
        WriteRun(source, call, row, column, count, resultPixels);
    };
    const auto writeRows = [&] { return WriteArea(source, area, result, progress, write); };
    const bool done = filter.isFloatless ? progress.RunWithoutFloats(writeRows) : writeRows();
    return done ? result.Release() : nullptr;
}

} // namespace

HGLOBAL ApplyFilter(const AreaArguments& areaArguments, const Filter& filter, const Progress& progress) {
    Picture source;
    Area area;
    if (!OpenArea(areaArguments, kAcceptGreyOrTrueColour, filter.valid, source, area)) {
        return nullptr;
    }
    return FilterArea(source.view, area, filter, progress);
}

} // namespace qv8

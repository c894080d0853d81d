#include "filter/row_ring.h"

#include <algorithm>
#include <cstring>

#include "frame/block_parts.h"
#include "pixels/luminance_kernels.h"
#include "qv8com.h"

namespace qv8 {
namespace {

RowKind KindOf(const PixelFormat& format, const Filter& filter) {
    if (format.IsGrey()) {
        return RowKind::kGrey;
    }
    const bool allAlike =
        filter.filterSamples != nullptr && filter.channels[kBlue] && filter.channels[kGreen] && filter.channels[kRed];
    return format.layout->IsNothingButBgr() && allAlike ? RowKind::kPacked : RowKind::kPlanar;
}

// Repeats the pixels at both ends of a row outward.
void RepeatEnds(BYTE* row, int samples, int step, int reach) {
    if (step == 1) {
        std::memset(row - reach, row[0], static_cast<std::size_t>(reach));
        std::memset(row + samples, row[samples - 1], static_cast<std::size_t>(reach));
        return;
    }
    for (int i = 0; i < reach * step; ++i) {
        row[-1 - i] = row[-1 - i + step];
        row[samples + i] = row[samples + i - step];
    }
}

void DecodeRow(RowRing& ring, int row) {
    const BYTE* const source = ring.source.Row(row);
    const int width = ring.source.width;
    const std::size_t slot = static_cast<std::size_t>(row % ring.slots) * ring.stride;
    BYTE* const blue = ring.planes[kBlue] + slot;
    if (ring.kind == RowKind::kPacked) {
        std::memcpy(blue, source, static_cast<std::size_t>(width) * 3);
        RepeatEnds(blue, width * 3, 3, ring.reach);
        return;
    }
    BYTE* const luminance = ring.planes[kLuminance] + slot;
    if (ring.luminanceAlone) {
        TheLuminanceKernels().luminance24(source, luminance, width);
        RepeatEnds(luminance, width, 1, ring.reach);
        return;
    }
    const PlanarRow planes = {blue, ring.planes[kGreen] + slot, ring.planes[kRed] + slot};
    ring.format.Decode(source, planes, width);
    RepeatEnds(blue, width, 1, ring.reach);
    if (ring.kind == RowKind::kGrey) {
        return;
    }
    RepeatEnds(planes.green, width, 1, ring.reach);
    RepeatEnds(planes.red, width, 1, ring.reach);
    if (ring.luminance) {
        TheLuminanceKernels().luminance(planes, luminance, width);
        RepeatEnds(luminance, width, 1, ring.reach);
    }
}

// What is read from the source is told by its header, once.
void Describe(const DibView& source, const Filter& filter, RowRing& ring) {
    ring.source = source;
    ring.format = PixelFormatOf(source);
    ring.kind = KindOf(ring.format, filter);
    ring.luminance = filter.wantsLuminance && ring.kind == RowKind::kPlanar;
    ring.luminanceAlone = ring.luminance && !filter.wantsColours && ring.format.layout->IsNothingButBgr();
    ring.reach = filter.reach;
    ring.slots = std::min(2 * filter.reach + 1, source.height);
    // Rows of packed pixels are what filters read already, unless pixels have to be repeated at their ends.
    const bool inPlace = ring.kind == RowKind::kPacked && filter.endsAtBorder;
    ring.rowsInPlace = inPlace ? RowsToRead(source, filter.reach) : 0;
    ring.at.step = ring.kind == RowKind::kPacked ? 3 : 1;
    ring.at.isGrey = ring.kind == RowKind::kGrey;
    ring.at.width = source.width;
    ring.at.height = source.height;
}

// Rows have room on both sides for the repeated border, and for kernels that work on whole registers.
void LayOut(const Filter& filter, int resultWidth, RowRing& ring, BlockParts& parts) {
    const auto step = static_cast<std::uint64_t>(ring.at.step);
    const std::uint64_t end = BlockParts::Aligned((static_cast<std::uint64_t>(filter.reach) + kFilterSlack) * step);
    const std::uint64_t stride = BlockParts::Aligned(static_cast<std::uint64_t>(ring.source.width) * step) + 2 * end;
    const std::uint64_t results = static_cast<std::uint64_t>(resultWidth) * step + end;
    const auto scratch = static_cast<std::uint64_t>(filter.scratchBytes);
    const int channels = ring.kind == RowKind::kPlanar ? 3 : 1;
    const auto skip = [](auto*& part, std::uint64_t items) { part = part != nullptr ? part + items : nullptr; };
    ring.stride = static_cast<std::size_t>(stride);
    for (int plane = 0; plane < channels; ++plane) {
        parts.Take(ring.planes[plane], stride * static_cast<std::uint64_t>(ring.slots));
        skip(ring.planes[plane], end);
        parts.Take(ring.at.scratch[plane], stride * scratch);
        skip(ring.at.scratch[plane], end * scratch);
    }
    std::fill(ring.planes + channels, ring.planes + kPlaneCount, ring.planes[kBlue]); // grey is its own luminance
    if (ring.luminance) {
        parts.Take(ring.planes[kLuminance], stride * static_cast<std::uint64_t>(ring.slots));
        skip(ring.planes[kLuminance], end);
    }
    for (int plane = 0; plane < 3; ++plane) { // a filter of whole pixels writes all three, of grey pictures too
        ring.results[plane] = ring.results[kBlue];
        if (plane < channels || filter.filterPixels != nullptr) {
            parts.Take(ring.results[plane], results);
        }
    }
}

} // namespace

int RowsToRead(const DibView& picture, int reach) {
    const std::size_t read = (static_cast<std::size_t>(picture.width) + static_cast<std::size_t>(reach)) * 3;
    const auto behind = static_cast<int>((read + kFilterSlack + picture.stride - 1) / picture.stride);
    return std::max(picture.height - behind, 0);
}

bool MakeRowRing(const DibView& source, const Filter& filter, int resultWidth, RowRing& ring) {
    Describe(source, filter, ring);
    ring.memory = AllocateParts([&](BlockParts& parts) { LayOut(filter, resultWidth, ring, parts); });
    return static_cast<bool>(ring.memory);
}

const FilterRow& MoveTo(RowRing& ring, int row) {
    const int last = ring.source.height - 1;
    const int first = std::max(row - ring.reach, 0);
    const int behind = std::min(row + ring.reach, last) + 1;
    for (int r = std::max({ring.nextRow, ring.rowsInPlace, first}); r < behind; ++r) {
        DecodeRow(ring, r);
    }
    ring.nextRow = behind;
    ring.at.row = row;
    int slot = first % ring.slots; // once only: divisions would take longer than some filters
    const int planes = ring.kind == RowKind::kPlanar ? kPlaneCount : 1; // else all planes are one
    for (int r = row - ring.reach; r <= row + ring.reach; ++r) {
        const int kept = std::clamp(r, 0, last);
        for (int plane = 0; plane < planes; ++plane) {
            ring.pointers[plane][r - row + ring.reach] =
                kept < ring.rowsInPlace ? ring.source.Row(kept)
                                        : ring.planes[plane] + static_cast<std::size_t>(slot) * ring.stride;
        }
        if (r == kept && r != last) {
            slot = slot + 1 == ring.slots ? 0 : slot + 1;
        }
    }
    for (int plane = 0; plane < kPlaneCount; ++plane) {
        ring.at.rows[plane] = ring.pointers[plane < planes ? plane : 0] + ring.reach;
    }
    return ring.at;
}

} // namespace qv8

#include "filter/row_ring.h"

#include <algorithm>
#include <cstring>

#include "frame/luminance.h"
#include "qv8com.h"

namespace qv8 {
namespace {

constexpr std::uint64_t kAlignment = 64;

std::uint64_t Aligned(std::uint64_t bytes) {
    return (bytes + kAlignment - 1) / kAlignment * kAlignment;
}

RowKind KindOf(const DibView& source, const Filter& filter) {
    if (source.IsPaletted()) {
        return RowKind::kGrey;
    }
    const bool allAlike =
        filter.samples != nullptr && filter.channels[kBlue] && filter.channels[kGreen] && filter.channels[kRed];
    return source.bitCount == 24 && allAlike ? RowKind::kPacked : RowKind::kPlanar;
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
    if (ring.kind == RowKind::kGrey) {
        for (int i = 0; i < width; ++i) {
            blue[i] = ring.levels[source[i]];
        }
        RepeatEnds(blue, width, 1, ring.reach);
        return;
    }
    const PlanarRow planes = {blue, ring.planes[kGreen] + slot, ring.planes[kRed] + slot};
    ring.format.decode(ring.format.masks, source, planes, width);
    for (BYTE* const plane : {planes.blue, planes.green, planes.red}) {
        RepeatEnds(plane, width, 1, ring.reach);
    }
    if (ring.luminance) {
        BYTE* const luminance = ring.planes[kLuminance] + slot;
        TheLuminanceKernels().luminance(planes, luminance, width);
        RepeatEnds(luminance, width, 1, ring.reach);
    }
}

// Hands the parts of the ring's memory out one after another.
struct Carver {
    std::uint64_t used = 0;

    std::uint64_t Take(std::uint64_t bytes) {
        const std::uint64_t begin = used;
        used += bytes;
        return begin;
    }
};

} // namespace

bool MakeRowRing(const DibView& source, const Filter& filter, int resultWidth, RowRing& ring) {
    ring.source = source;
    ring.kind = KindOf(source, filter);
    ring.luminance = filter.wantsLuminance && ring.kind == RowKind::kPlanar;
    ring.reach = filter.reach;
    ring.slots = std::min(2 * filter.reach + 1, source.height);
    if (ring.kind == RowKind::kGrey) {
        for (std::uint32_t i = 0; i < source.paletteSize; ++i) {
            ring.levels[i] = source.palette[i].rgbBlue;
        }
    } else {
        ring.format = PixelFormatOf(source.bitCount, source.masks);
    }
    ring.at.step = ring.kind == RowKind::kPacked ? 3 : 1;
    ring.at.width = source.width;
    ring.at.height = source.height;

    const auto step = static_cast<std::uint64_t>(ring.at.step);
    const std::uint64_t end = Aligned((static_cast<std::uint64_t>(filter.reach) + kFilterSlack) * step);
    const std::uint64_t stride = Aligned(static_cast<std::uint64_t>(source.width) * step) + 2 * end;
    const std::uint64_t results = Aligned(static_cast<std::uint64_t>(resultWidth) * step) + end;
    const std::uint64_t scratch = stride * static_cast<std::uint64_t>(filter.scratchBytes);
    const int channels = ring.kind == RowKind::kPlanar ? 3 : 1;

    Carver carver;
    std::uint64_t planeAt[kPlaneCount] = {};
    std::uint64_t resultAt[3] = {};
    std::uint64_t scratchAt[3] = {};
    for (int plane = 0; plane < channels + (ring.luminance ? 1 : 0); ++plane) {
        planeAt[plane] = carver.Take(stride * static_cast<std::uint64_t>(ring.slots)) + end;
    }
    for (int plane = 0; plane < 3; ++plane) { // a filter of whole pixels writes all three, of grey pictures too
        resultAt[plane] = plane < channels || filter.pixels != nullptr ? carver.Take(results) : resultAt[0];
        scratchAt[plane] =
            plane < channels ? carver.Take(scratch) + end * static_cast<std::uint64_t>(filter.scratchBytes) : 0;
    }
    if (carver.used + kAlignment > kMaxBlockBytes) {
        SetErrorStatus(QV8_STATUS_MEMORY);
        return false;
    }
    ring.memory = AllocateWorkingBlock(static_cast<SIZE_T>(carver.used + kAlignment));
    if (!ring.memory) {
        SetErrorStatus(QV8_STATUS_MEMORY);
        return false;
    }
    BYTE* const unaligned = ring.memory.As<BYTE>();
    BYTE* const base = unaligned + (kAlignment - reinterpret_cast<std::uintptr_t>(unaligned) % kAlignment);
    ring.stride = static_cast<std::size_t>(stride);
    for (int plane = 0; plane < 3; ++plane) {
        ring.planes[plane] = base + planeAt[plane];
        ring.results[plane] = base + resultAt[plane];
        ring.at.scratch[plane] = reinterpret_cast<std::byte*>(base + scratchAt[plane]);
    }
    ring.planes[kLuminance] = base + planeAt[ring.kind == RowKind::kGrey ? kBlue : kLuminance];
    return true;
}

const FilterRow& MoveTo(RowRing& ring, int row) {
    const int last = ring.source.height - 1;
    for (int r = std::max(ring.nextRow, row - ring.reach); r <= std::min(row + ring.reach, last); ++r) {
        DecodeRow(ring, r);
    }
    ring.nextRow = std::min(row + ring.reach, last) + 1;
    ring.at.row = row;
    for (int plane = 0; plane < kPlaneCount; ++plane) {
        for (int dy = -ring.reach; dy <= ring.reach; ++dy) {
            const int r = std::clamp(row + dy, 0, last);
            ring.pointers[plane][dy + ring.reach] =
                ring.planes[plane] + static_cast<std::size_t>(r % ring.slots) * ring.stride;
        }
        ring.at.rows[plane] = ring.pointers[plane] + ring.reach;
    }
    return ring.at;
}

} // namespace qv8

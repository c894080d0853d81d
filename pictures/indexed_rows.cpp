#include "pictures/indexed_rows.h"

#include <algorithm>
#include <cstring>

#include "pictures/codec.h"

namespace {

unsigned IndexAt(const BYTE* row, std::size_t x, unsigned depth) {
    const std::size_t inByte = 8 / depth;
    return row[x / inByte] >> (8 - depth - x % inByte * depth) & ((1U << depth) - 1);
}

} // namespace

IndexedRows::IndexedRows(const Picture& picture) : locked_(picture), depth_(locked_.Header().biBitCount) {
    const std::size_t largest = std::size_t{1} << depth_;
    const std::size_t own = std::min(locked_.TableEntries(), largest);
    table_.assign(locked_.Table(), locked_.Table() + own);
    table_.resize(own < largest ? std::max<std::size_t>(own, LargestIndex() + 1) : own);
    depth_ = depth_ == 4 && table_.size() <= 4 ? 2 : depth_;
    row_.resize((locked_.Width() * depth_ + 7) / 8);
}

bool IndexedRows::IsGreyRamp() const {
    const auto same = [](const RGBQUAD& a, const RGBQUAD& b) {
        return a.rgbRed == b.rgbRed && a.rgbGreen == b.rgbGreen && a.rgbBlue == b.rgbBlue;
    };
    const std::span<const RGBQUAD> ramp = GreyRamp(depth_);
    return std::equal(table_.begin(), table_.end(), ramp.begin(), ramp.end(), same);
}

BYTE* IndexedRows::Row(std::size_t y) {
    const BYTE* const row = locked_.RowFromTop(y);
    if (depth_ == 2) {
        PackTwoBits(row, row_.data(), locked_.Width());
        return row_.data();
    }
    std::memcpy(row_.data(), row, row_.size());
    if (const std::size_t unused = row_.size() * 8 - locked_.Width() * depth_; unused != 0) {
        row_.back() = static_cast<BYTE>(row_.back() >> unused << unused);
    }
    return row_.data();
}

unsigned IndexedRows::LargestIndex() const {
    unsigned largest = 0;
    for (std::size_t y = 0; y < locked_.Height(); ++y) {
        const BYTE* const row = locked_.RowFromTop(y);
        for (std::size_t x = 0; x < locked_.Width(); ++x) {
            largest = std::max(largest, IndexAt(row, x, depth_));
        }
    }
    return largest;
}

void SpreadTwoBits(const BYTE* from, BYTE* to, std::size_t width) {
    for (std::size_t x = 0; x < width; x += 2) {
        const unsigned second = x + 1 < width ? IndexAt(from, x + 1, 2) : 0;
        to[x / 2] = static_cast<BYTE>(IndexAt(from, x, 2) << 4 | second);
    }
}

void PackTwoBits(const BYTE* from, BYTE* to, std::size_t width) {
    std::fill_n(to, (width + 3) / 4, BYTE{0});
    for (std::size_t x = 0; x < width; ++x) {
        to[x / 4] = static_cast<BYTE>(to[x / 4] | (IndexAt(from, x, 4) & 3) << (6 - x % 4 * 2));
    }
}

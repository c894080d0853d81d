// Which pixels of a side go where when the side is scaled.
#pragma once

#include <cstdint>

namespace qv8 {

// One side of a picture, before and after.
struct ScaledSide {
    int oldSize;
    int newSize;
    float factor;

    bool Enlarges() const {
        return factor >= 1.0F;
    }
};

// Neighbouring source pixels and the block of new pixels that they cover. Blocks follow one another without a gap and
// without overlap, the first at 0; they may end before the last new pixel, and groups behind it have empty blocks.
// Where a side shrinks no block is longer than 1; where it enlarges every group is 1 pixel.
struct PixelGroup {
    int first;
    int count; // inside the picture
    int next;  // where the next group begins; the old size behind the last one
    int resultFirst;
    int resultCount; // inside the new picture
};

ScaledSide MakeScaledSide(int oldSize, int newSize);

PixelGroup GroupAt(const ScaledSide& side, int first);

// Calls use(group) for every group of a side.
template <class Use>
void ForEachGroup(const ScaledSide& side, Use use) {
    for (int first = 0; first < side.oldSize;) {
        const PixelGroup group = GroupAt(side, first);
        use(group);
        first = group.next;
    }
}

} // namespace qv8

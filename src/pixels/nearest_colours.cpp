#include "pixels/nearest_colours.h"

#include <algorithm>
#include <utility>

#include "pixels/palettes.h"
#include "qv8com.h"

namespace qv8 {
namespace {

constexpr std::uint32_t kFirstSlots = 1024; // always a power of two

DWORD* Keys(const NearestColours& nearest) {
    return nearest.memory.As<DWORD>();
}

BYTE* Entries(const NearestColours& nearest) {
    return reinterpret_cast<BYTE*>(Keys(nearest) + nearest.slots);
}

bool Allocate(std::uint32_t slots, NearestColours& nearest) {
    nearest.slots = slots;
    nearest.memory = AllocateWorkingBlock(SIZE_T{slots} * (sizeof(DWORD) + sizeof(BYTE)));
    return static_cast<bool>(nearest.memory);
}

// The slot of a key, or the free one where it belongs.
std::uint32_t SlotOf(const NearestColours& nearest, DWORD key) {
    std::uint32_t slot = (key * 0x9E3779B1U >> 8U) & (nearest.slots - 1);
    while (Keys(nearest)[slot] != 0 && Keys(nearest)[slot] != key) {
        slot = (slot + 1) & (nearest.slots - 1);
    }
    return slot;
}

bool Grow(NearestColours& nearest) {
    NearestColours larger = {nearest.palette, nearest.entries, {}, 0, nearest.used};
    if (!Allocate(nearest.slots * 2, larger)) {
        return false;
    }
    for (std::uint32_t old = 0; old < nearest.slots; ++old) {
        if (const DWORD key = Keys(nearest)[old]; key != 0) {
            const std::uint32_t slot = SlotOf(larger, key);
            Keys(larger)[slot] = key;
            Entries(larger)[slot] = Entries(nearest)[old];
        }
    }
    nearest = std::move(larger);
    return true;
}

} // namespace

bool MakeNearestColours(const DibView& picture, NearestColours& nearest) {
    nearest.palette = picture.palette;
    nearest.entries = picture.NameableEntries();
    return Allocate(kFirstSlots, nearest);
}

bool FindNearest(NearestColours& nearest, BYTE red, BYTE green, BYTE blue, BYTE& entry) {
    const DWORD key = (DWORD{red} << 16 | DWORD{green} << 8 | blue) + 1;
    std::uint32_t slot = SlotOf(nearest, key);
    if (Keys(nearest)[slot] == 0) {
        if (nearest.used >= nearest.slots / 2) {
            if (!Grow(nearest)) {
                return false;
            }
            slot = SlotOf(nearest, key);
        }
        ++nearest.used;
        Keys(nearest)[slot] = key;
        Entries(nearest)[slot] = static_cast<BYTE>(NearestEntry(nearest.palette, nearest.entries, red, green, blue));
    }
    entry = Entries(nearest)[slot];
    return true;
}

} // namespace qv8

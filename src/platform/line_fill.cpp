// Single lines, and the filling of what they enclose.
#include <algorithm>
#include <bit>
#include <cstdlib>
#include <new>

#include "platform/surface.h"

using namespace qv8::drawing;

namespace {

struct Place {
    std::int32_t x;
    std::int32_t y;
};

// Places yet to be filled from.
class PlaceStack {
public:
    PlaceStack() = default;
    ~PlaceStack() {
        std::free(places_);
    }
    PlaceStack(const PlaceStack&) = delete;
    PlaceStack& operator=(const PlaceStack&) = delete;

    bool Push(Place place) {
        if (count_ == room_) {
            const std::size_t room = std::max<std::size_t>(2 * room_, 256);
            void* const larger = std::realloc(places_, room * sizeof(Place));
            if (larger == nullptr) {
                return false;
            }
            places_ = static_cast<Place*>(larger);
            room_ = room;
        }
        places_[count_++] = place;
        return true;
    }
    bool IsEmpty() const {
        return count_ == 0;
    }
    Place Pop() {
        return places_[--count_];
    }

private:
    Place* places_ = nullptr;
    std::size_t count_ = 0;
    std::size_t room_ = 0;
};

// A row of the bitmap, in which pixels of one ink are the surface.
struct SurfaceRow {
    const std::uint8_t* bits;
    std::uint8_t others; // a byte without a pixel of the surface

    bool Has(std::int32_t x) const {
        return ((bits[x >> 3] ^ others) & 0x80U >> (x & 7)) != 0;
    }
    // The first x from `begin` on that is of the surface, or is not; `end` when there is none.
    std::int32_t Find(std::int32_t begin, std::int32_t end, bool isSurface) const {
        const unsigned flip = isSurface ? others : others ^ 0xFFU;
        for (std::int32_t x = begin; x < end; x = (x | 7) + 1) {
            const unsigned wanted = (bits[x >> 3] ^ flip) & 0xFFU >> (x & 7);
            if (wanted != 0) {
                return std::min(end, (x & ~7) + std::countl_zero(static_cast<std::uint8_t>(wanted)));
            }
        }
        return end;
    }
    // The first x of the surface's pixels that reach to `x`, itself one of them.
    std::int32_t Begin(std::int32_t x) const {
        while (x > 0 && Has(x - 1)) {
            --x;
            while ((x & 7) == 0 && x > 0 && bits[(x >> 3) - 1] == (others ^ 0xFFU)) {
                x -= 8;
            }
        }
        return x;
    }
};

SurfaceRow RowOf(const Pixels& target, std::int32_t y, Ink surface) {
    return {target.Row(y), static_cast<std::uint8_t>(static_cast<unsigned>(surface) ^ 0xFFU)};
}

// Adds one place for each run of the surface between two columns of a row.
bool PushRuns(const Pixels& target, std::int32_t y, std::int32_t begin, std::int32_t end, Ink surface,
              PlaceStack& places) {
    if (y < 0 || y >= target.height) {
        return true;
    }
    const SurfaceRow row = RowOf(target, y, surface);
    for (std::int32_t x = row.Find(begin, end, true); x < end; x = row.Find(x, end, true)) {
        if (!places.Push({x, y})) {
            return false;
        }
        x = row.Find(x, end, false);
    }
    return true;
}

// Fills what is connected, sideways or up and down, with a place on the surface. The ink is another than the surface's.
bool FillSurface(const Pixels& target, Place first, Ink surface, Ink ink) {
    PlaceStack places;
    bool isDone = places.Push(first);
    while (isDone && !places.IsEmpty()) {
        const auto [x, y] = places.Pop();
        const SurfaceRow row = RowOf(target, y, surface);
        if (!row.Has(x)) {
            continue; // filled by now
        }
        const std::int32_t begin = row.Begin(x);
        const std::int32_t end = row.Find(x, target.width, false);
        target.FillSpan(y, begin, end, ink);
        isDone = PushRuns(target, y - 1, begin, end, surface, places) &&
                 PushRuns(target, y + 1, begin, end, surface, places);
    }
    return isDone;
}

} // namespace

extern "C" {

BOOL MoveToEx(HDC context, int x, int y, POINT* previous) {
    if (context == nullptr) {
        return FALSE;
    }
    if (previous != nullptr) {
        *previous = context->position;
    }
    context->position = {x, y};
    return TRUE;
}

BOOL LineTo(HDC context, int x, int y) {
    const Pixels* const target = TargetOf(context);
    if (target == nullptr) {
        return FALSE;
    }
    const POINT from = context->position;
    if (!IsDrawable(from.x) || !IsDrawable(from.y) || !IsDrawable(x) || !IsDrawable(y)) {
        return FALSE;
    }
    DrawLine(*target, from, {x, y}, context->pen->ink);
    context->position = {x, y};
    return TRUE;
}

HBRUSH CreateSolidBrush(COLORREF colour) {
    return new (std::nothrow) Qv8Brush{{{ObjectKind::Brush, false}, InkOf(colour)}};
}

BOOL ExtFloodFill(HDC context, int x, int y, COLORREF colour, UINT mode) {
    const Pixels* const target = TargetOf(context);
    if (target == nullptr || mode != FLOODFILLSURFACE || x < 0 || x >= target->width || y < 0 || y >= target->height) {
        return FALSE;
    }
    const Ink surface = InkOf(colour);
    const Ink ink = context->brush->ink;
    if (!RowOf(*target, y, surface).Has(x)) {
        return FALSE;
    }
    return surface == ink || FillSurface(*target, {x, y}, surface, ink) ? TRUE : FALSE;
}

} // extern "C"

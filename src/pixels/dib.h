// Packed device-independent bitmaps: what a handle holds, checked once, and how results are made.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "frame/global_memory.h"
#include "pixels/pixel_layout.h"
#include "qv8effect.h"

namespace qv8 {

constexpr std::size_t kHeaderBytes = 40;
constexpr std::size_t kMaskBytes = 12; // of the three channel masks behind some headers

// A picture whose header has been found to describe its block. Rows count from the bottom.
struct DibView {
    const BITMAPINFOHEADER* header = nullptr;
    const RGBQUAD* palette = nullptr;
    std::uint32_t paletteSize = 0; // entries of the table that a walk over it visits; 0 from 16 bits on
    const BYTE* pixels = nullptr;
    std::size_t stride = 0;
    int width = 0;
    int height = 0;
    int bitCount = 0;
    const PixelLayout* layout = nullptr;

    const BYTE* Row(int row) const {
        return pixels + static_cast<std::size_t>(row) * stride;
    }
    bool IsPaletted() const {
        return layout->IsIndexed();
    }
    // Entries of the colour table that a pixel can name.
    int NameableEntries() const {
        return static_cast<int>(std::min(paletteSize, std::uint32_t{1} << bitCount));
    }
};

// A caller's picture, locked for as long as this lives.
struct Picture {
    GlobalLockScope lock;
    DibView view;
};

// A picture being made, locked; freed unless it is released to the caller.
struct NewPicture {
    LockedBlock memory;
    DibView view;

    explicit operator bool() const {
        return static_cast<bool>(memory);
    }
    BYTE* Row(int row) const {
        return const_cast<BYTE*>(view.Row(row));
    }
    BITMAPINFOHEADER& Header() const {
        return *memory.As<BITMAPINFOHEADER>();
    }
    RGBQUAD* Palette() const {
        return reinterpret_cast<RGBQUAD*>(memory.As<BYTE>() + kHeaderBytes);
    }
    HGLOBAL Release() {
        return memory.Release();
    }
};

// A colour table at its full length; entries that the picture does not have are black.
struct FullPalette {
    RGBQUAD colours[256];
};

// Bytes of one row: a multiple of 4.
constexpr std::int64_t DibRowBytes(int bitCount, int width) {
    return (static_cast<std::int64_t>(bitCount) * width + 31) / 32 * 4;
}

// headerBytes + rows of the given picture, or 0 when that is above 0x7FFFFFFF, or the bits of a row are.
std::uint32_t DibBytes(std::uint64_t headerBytes, int bitCount, int width, int height);

// Whether a header says that masks tell the layout, which the companion reads: behind a header of 40 bytes.
bool HasMasks(const BITMAPINFOHEADER& header);

// Entries that a walk over the colour table of a 1-, 4- or 8-bit picture visits.
std::uint32_t PaletteLength(const BITMAPINFOHEADER& header);

// Whether the depth and layout are among those accepted; else sets status 7. Fills in the layout of the view, which
// until then is the one of new pictures of its depth.
bool CheckDibFormat(DibView& picture, unsigned acceptFlags);

// Whether an 8-bit picture has all 256 grey levels in its table, in any order.
bool IsGreyRampPalette(const DibView& picture);

// Locks the picture and finds its header; sets status 7 (zero handle, no room for a header) or 3 (lock failed).
bool LockPicture(HGLOBAL image, Picture& picture);

// Checks that the block holds what the header says and fills the rest of the view; else sets status 7.
bool CheckPicture(Picture& picture);

// LockPicture, CheckPicture and CheckDibFormat in one.
bool OpenPicture(HGLOBAL image, unsigned acceptFlags, Picture& picture);

FullPalette FullPaletteOf(const DibView& picture);

// What is in the rows of a new picture: zeros, the source's rows, or nothing yet, for a worker that writes every byte
// of them, padding included.
enum class InitialPixels { kZero, kCopied, kUnwritten };

// A block of the given size for a picture, which is all still to be written; sets status 3.
LockedBlock AllocatePicture(std::uint32_t bytes, InitialPixels pixels);

struct DibDescription {
    int bitCount;
    int width;
    int height;
    std::uint32_t colours = 0;     // entries of the table
    std::uint32_t coloursUsed = 0; // the same as the header tells it: 0 stands for as many as the depth can have
};

// A new picture of the plain layout of its depth, whose colour table the caller writes. Sets status 3 when it fails.
NewPicture CreateDib(const DibDescription& description, InitialPixels pixels);

// A new picture with the source's header and colour table at the given size. Copying its pixels wants the source's
// own size. Sets status 5 (size below 1) or 3.
NewPicture DuplicateDib(const DibView& source, int width, int height, InitialPixels pixels);

// The same at the source's own size.
inline NewPicture DuplicateDib(const DibView& source, InitialPixels pixels) {
    return DuplicateDib(source, source.width, source.height, pixels);
}

} // namespace qv8

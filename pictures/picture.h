// Owner of a picture block, and access to its parts while it is locked.
#ifndef QV8_PICTURES_PICTURE_H
#define QV8_PICTURES_PICTURE_H

#include <cstddef>
#include <cstdint>
#include <utility>

#include <qv8com.h>
#include <qv8platform.h>

// Frees its block at the end of its life.
class Picture {
public:
    Picture() = default;
    explicit Picture(HGLOBAL block) : block_(block) {}
    Picture(Picture&& other) noexcept : block_(std::exchange(other.block_, nullptr)) {}
    Picture& operator=(Picture&& other) noexcept {
        std::swap(block_, other.block_);
        return *this;
    }
    ~Picture() {
        if (block_ != nullptr) {
            GlobalFree(block_);
        }
    }

    HGLOBAL Handle() const {
        return block_;
    }
    explicit operator bool() const {
        return block_ != nullptr;
    }

private:
    HGLOBAL block_ = nullptr;
};

// How much memory a picture may take.
constexpr std::uint64_t kLargestBlock = 0x7FFFFFFF;

// Bytes of one row, which is padded to a multiple of four.
inline std::uint64_t RowBytes(std::uint64_t bitCount, std::uint64_t width) {
    return (bitCount * width + 31) / 32 * 4;
}

// Keeps a picture locked. For pictures that this program or the library made: their headers are sound.
class LockedPicture {
public:
    explicit LockedPicture(const Picture& picture)
        : block_(picture.Handle()), bytes_(static_cast<BYTE*>(GlobalLock(block_))) {}
    LockedPicture(const LockedPicture&) = delete;
    LockedPicture& operator=(const LockedPicture&) = delete;
    ~LockedPicture() {
        GlobalUnlock(block_);
    }

    BYTE* Bytes() const {
        return bytes_;
    }
    BITMAPINFOHEADER& Header() const {
        return *reinterpret_cast<BITMAPINFOHEADER*>(bytes_);
    }
    std::size_t Width() const {
        return static_cast<std::size_t>(Header().biWidth);
    }
    std::size_t Height() const {
        return static_cast<std::size_t>(Header().biHeight);
    }
    std::size_t Stride() const {
        return static_cast<std::size_t>(RowBytes(Header().biBitCount, Width()));
    }
    // The colour table of a picture of 1, 4 or 8 bits.
    const RGBQUAD* Table() const {
        return reinterpret_cast<const RGBQUAD*>(bytes_ + sizeof(BITMAPINFOHEADER));
    }
    std::size_t TableEntries() const {
        return static_cast<std::size_t>(DibNumColors(bytes_));
    }
    std::size_t PixelOffset() const {
        return sizeof(BITMAPINFOHEADER) + static_cast<std::size_t>(GetDibPalSize(bytes_));
    }
    // Row `y` counted from the top of the picture.
    BYTE* RowFromTop(std::size_t y) const {
        return bytes_ + PixelOffset() + (Height() - 1 - y) * Stride();
    }
    std::size_t Size() const {
        return PixelOffset() + Stride() * Height();
    }

private:
    HGLOBAL block_;
    BYTE* bytes_;
};

#endif

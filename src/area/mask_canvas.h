// A mask as a bitmap that the platform draws on, and the owners of what drawing takes from the platform.
#pragma once

#include <cstring>
#include <memory>
#include <type_traits>

#include "area/area_mask.h"

namespace qv8 {

struct MaskInfo {
    BITMAPINFOHEADER header;
    RGBQUAD colours[2];
};
static_assert(sizeof(MaskInfo) == kMaskHeaderBytes);

struct ScreenDeleter {
    using pointer = HDC;
    void operator()(HDC context) const {
        ReleaseDC(nullptr, context);
    }
};
struct ObjectDeleter {
    void operator()(HGDIOBJ object) const {
        DeleteObject(object);
    }
};
struct MemoryContextDeleter {
    using pointer = HDC;
    void operator()(HDC context) const {
        DeleteDC(context);
    }
};
template <class Handle>
using DrawingObject = std::unique_ptr<std::remove_pointer_t<Handle>, ObjectDeleter>;

// Puts the previous object back.
struct SelectionDeleter {
    using pointer = HGDIOBJ;
    HDC context = nullptr;
    void operator()(HGDIOBJ previous) const {
        SelectObject(context, previous);
    }
};
using Selection = std::unique_ptr<void, SelectionDeleter>;

inline Selection Select(HDC context, HGDIOBJ object) {
    return {SelectObject(context, object), SelectionDeleter{context}};
}

enum class CanvasColours { kScreen, kMonochrome };

// The mask's bits go in with WriteBits and come back with ReadBack. The members go in reverse order: deselect the
// bitmap, delete the context, delete the bitmap, release the screen, unlock.
class MaskCanvas {
public:
    explicit MaskCanvas(HGLOBAL mask, CanvasColours colours = CanvasColours::kScreen) : lock_(LockBlock(mask)) {
        if (!lock_) {
            return;
        }
        std::memcpy(&info_, lock_.get(), sizeof info_);
        screen_.reset(GetDC(nullptr));
        context_.reset(CreateCompatibleDC(nullptr));
        if (!screen_ || !context_) {
            return;
        }
        // A memory context is monochrome until a bitmap of more colours is selected.
        auto* const model = colours == CanvasColours::kMonochrome ? context_.get() : screen_.get();
        bitmap_.reset(CreateCompatibleBitmap(model, info_.header.biWidth, info_.header.biHeight));
        if (bitmap_) {
            selection_ = Select(context_.get(), bitmap_.get());
        }
    }

    bool IsLocked() const {
        return lock_ != nullptr;
    }
    bool IsReady() const {
        return selection_ != nullptr;
    }
    HDC Context() const {
        return context_.get();
    }
    SIZE Size() const {
        return {info_.header.biWidth, info_.header.biHeight};
    }
    bool WriteBits() {
        return SetDIBits(context_.get(), bitmap_.get(), 0, Rows(), Bits(), Info(), DIB_RGB_COLORS) != 0;
    }
    bool ReadBack() {
        return GetDIBits(context_.get(), bitmap_.get(), 0, Rows(), Bits(), Info(), DIB_RGB_COLORS) != 0;
    }

private:
    UINT Rows() const {
        return static_cast<UINT>(info_.header.biHeight);
    }
    BYTE* Bits() const {
        return static_cast<BYTE*>(lock_.get()) + kMaskHeaderBytes;
    }
    // A copy of the mask's own header, because reading back writes to it.
    BITMAPINFO* Info() {
        return reinterpret_cast<BITMAPINFO*>(&info_);
    }

    MaskInfo info_ = {};
    GlobalLockScope lock_;
    std::unique_ptr<std::remove_pointer_t<HDC>, ScreenDeleter> screen_;
    DrawingObject<HBITMAP> bitmap_;
    std::unique_ptr<std::remove_pointer_t<HDC>, MemoryContextDeleter> context_;
    Selection selection_;
};

} // namespace qv8

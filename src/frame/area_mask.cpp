#include "frame/area_mask.h"

#include <cstring>
#include <type_traits>

#include "frame/dib.h"
#include "qv8com.h"

namespace qv8 {
namespace {

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
struct BitmapDeleter {
    using pointer = HBITMAP;
    void operator()(HBITMAP bitmap) const {
        DeleteObject(bitmap);
    }
};
struct MemoryContextDeleter {
    using pointer = HDC;
    void operator()(HDC context) const {
        DeleteDC(context);
    }
};

// Puts the previous object back.
struct SelectionDeleter {
    using pointer = HGDIOBJ;
    HDC context = nullptr;
    void operator()(HGDIOBJ previous) const {
        SelectObject(context, previous);
    }
};
using Selection = std::unique_ptr<void, SelectionDeleter>;

Selection Select(HDC context, HGDIOBJ object) {
    return {SelectObject(context, object), SelectionDeleter{context}};
}

// A mask as a bitmap to draw on: its bits go in at the start and come back with ReadBack. The members go in reverse
// order: deselect the bitmap, delete the context, delete the bitmap, release the screen, unlock.
class MaskCanvas {
public:
    explicit MaskCanvas(HGLOBAL mask) : lock_(LockBlock(mask)) {
        if (!lock_) {
            return;
        }
        std::memcpy(&info_, lock_.get(), sizeof info_);
        screen_.reset(GetDC(nullptr));
        bitmap_.reset(CreateCompatibleBitmap(screen_.get(), info_.header.biWidth, info_.header.biHeight));
        if (!bitmap_) {
            return;
        }
        context_.reset(CreateCompatibleDC(nullptr));
        if (context_) {
            selection_ = Select(context_.get(), bitmap_.get());
        }
    }

    bool IsReady() const {
        return selection_ != nullptr;
    }
    HDC Context() const {
        return context_.get();
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
    std::unique_ptr<std::remove_pointer_t<HBITMAP>, BitmapDeleter> bitmap_;
    std::unique_ptr<std::remove_pointer_t<HDC>, MemoryContextDeleter> context_;
    Selection selection_;
};

void WriteMaskHeader(void* mask, int width, int height, DWORD imageBytes) {
    MaskInfo info = {};
    info.header.biSize = kHeaderBytes;
    info.header.biWidth = width;
    info.header.biHeight = height;
    info.header.biPlanes = 1;
    info.header.biBitCount = 1;
    info.header.biCompression = BI_RGB;
    info.header.biSizeImage = imageBytes;
    info.colours[1] = {255, 255, 255, 0};
    std::memcpy(mask, &info, sizeof info);
}

bool DrawShape(HGLOBAL mask, BYTE areaType, const POINT* points, int pointCount, const RECT& drawRect) {
    switch (areaType) {
    case QV8_AREA_POLYGON:
        return DrawPolygonMask(mask, points, pointCount);
    case QV8_AREA_ELLIPSE:
        return DrawEllipseMask(mask, drawRect);
    default:
        return true;
    }
}

} // namespace

GlobalBlock CreateAreaMask(int width, int height, BYTE areaType, const POINT* points, int pointCount,
                           const RECT& drawRect, bool inside) {
    const std::uint32_t bytes = DibBytes(kMaskHeaderBytes, 1, width, height);
    NewPicture mask = AllocatePicture(bytes, Pixels::kZero);
    if (!mask) {
        return nullptr;
    }
    WriteMaskHeader(mask.lock.get(), width, height, bytes - static_cast<DWORD>(kMaskHeaderBytes));
    GlobalBlock result(mask.Release());
    if (!DrawShape(result.get(), areaType, points, pointCount, drawRect) ||
        (!inside && !InvertMask(result.get(), static_cast<std::size_t>(DibRowBytes(1, width))))) {
        SetErrorStatus(QV8_STATUS_DIALOG);
        return nullptr;
    }
    return result;
}

bool DrawPolygonMask(HGLOBAL mask, const POINT* points, int pointCount) {
    MaskCanvas canvas(mask);
    if (!canvas.IsReady() || !canvas.WriteBits()) {
        return false;
    }
    {
        const Selection pen = Select(canvas.Context(), GetStockObject(WHITE_PEN));
        const Selection brush = Select(canvas.Context(), GetStockObject(WHITE_BRUSH));
        Polygon(canvas.Context(), points, pointCount);
    }
    return canvas.ReadBack();
}

bool DrawEllipseMask(HGLOBAL mask, const RECT& rect) {
    MaskCanvas canvas(mask);
    if (!canvas.IsReady()) {
        return false;
    }
    canvas.WriteBits();
    BOOL drawn = FALSE;
    {
        const int previousMode = SetROP2(canvas.Context(), R2_COPYPEN);
        const Selection pen = Select(canvas.Context(), GetStockObject(WHITE_PEN));
        const Selection brush = Select(canvas.Context(), GetStockObject(WHITE_BRUSH));
        drawn = Ellipse(canvas.Context(), rect.left, rect.top, rect.right, rect.bottom);
        SetROP2(canvas.Context(), previousMode);
    }
    canvas.ReadBack();
    SetErrorStatus(drawn == TRUE ? QV8_STATUS_SUCCESS : QV8_STATUS_DRAWING);
    return drawn == TRUE;
}

bool InvertMask(HGLOBAL mask, std::size_t stride) {
    const GlobalLockScope lock = LockBlock(mask);
    if (!lock) {
        return false;
    }
    BYTE* const begin = static_cast<BYTE*>(lock.get()) + kMaskHeaderBytes;
    const LONG height = static_cast<const BITMAPINFOHEADER*>(lock.get())->biHeight;
    BYTE* const end = begin + stride * static_cast<std::size_t>(height);
    for (BYTE* byte = begin; byte != end; ++byte) {
        *byte = static_cast<BYTE>(~*byte);
    }
    return true;
}

} // namespace qv8

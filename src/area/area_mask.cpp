#include "area/area_mask.h"

#include "area/mask_canvas.h"
#include "frame/status.h"
#include "pixels/palettes.h"
#include "qv8com.h"

namespace qv8 {
NewPicture NewMask(int width, int height) {
    NewPicture mask = CreateDib({1, width, height, 2}, InitialPixels::kZero);
    if (mask) {
        WriteGreyRamp(mask.Palette(), 2);
    }
    return mask;
}

bool DrawPolygonMask(HGLOBAL mask, const POINT* points, int pointCount) {
    MaskCanvas canvas(mask);
    if (!canvas.IsReady() || !canvas.WriteBits()) {
        return false;
    }
    BOOL drawn = FALSE;
    {
        const Selection pen = Select(canvas.Context(), GetStockObject(WHITE_PEN));
        const Selection brush = Select(canvas.Context(), GetStockObject(WHITE_BRUSH));
        drawn = Polygon(canvas.Context(), points, pointCount);
    }
    return drawn != FALSE && canvas.ReadBack();
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

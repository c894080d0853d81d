// Contexts, bitmaps and stock objects: who draws on what, and the way of the pixels in and out.
#include "platform/drawing.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

#include "platform/surface.h"

using namespace qv8::drawing;

namespace qv8::drawing {

void Pixels::Set(std::int64_t x, std::int64_t y, Ink ink) const {
    if (x < 0 || x >= width || y < 0 || y >= height) {
        return;
    }
    std::uint8_t& byte = Row(static_cast<std::int32_t>(y))[x >> 3];
    const unsigned mask = 0x80U >> (x & 7);
    byte = static_cast<std::uint8_t>((byte & ~mask) | (static_cast<unsigned>(ink) & mask));
}

void Pixels::FillSpan(std::int64_t y, std::int64_t begin, std::int64_t end, Ink ink) const {
    begin = std::max<std::int64_t>(begin, 0);
    end = std::min<std::int64_t>(end, width);
    if (begin >= end || y < 0 || y >= height) {
        return;
    }
    std::uint8_t* const row = Row(static_cast<std::int32_t>(y));
    const auto blend = [row, ink](std::int64_t index, unsigned mask) {
        row[index] = static_cast<std::uint8_t>((row[index] & ~mask) | (static_cast<unsigned>(ink) & mask));
    };
    const std::int64_t first = begin >> 3;
    const std::int64_t last = (end - 1) >> 3;
    const unsigned firstMask = 0xFFU >> (begin & 7);
    const unsigned lastMask = 0xFF00U >> (((end - 1) & 7) + 1) & 0xFFU;
    if (first == last) {
        blend(first, firstMask & lastMask);
        return;
    }
    blend(first, firstMask);
    std::memset(row + first + 1, static_cast<int>(ink), static_cast<std::size_t>(last - first - 1));
    blend(last, lastMask);
}

Ink InkOf(COLORREF colour) {
    const unsigned sum = (colour & 0xFFU) + (colour >> 8 & 0xFFU) + (colour >> 16 & 0xFFU);
    return sum * 2 > 3 * 255 ? Ink::White : Ink::Black;
}

const Pixels* TargetOf(HDC context) {
    if (context == nullptr || context->bitmap == nullptr || context->bitmap->pixels.bits == nullptr) {
        return nullptr;
    }
    return &context->bitmap->pixels;
}

} // namespace qv8::drawing

namespace {

static_assert(std::is_standard_layout_v<DrawingTool> && std::is_standard_layout_v<Qv8Brush> &&
                  std::is_standard_layout_v<Qv8Bitmap>,
              "an untyped handle is read as the header that the object begins with");

constexpr std::size_t kMaxBitmapBytes = 0x7FFFFFFF;

constinit DrawingTool whiteBrush{{ObjectKind::Brush, true}, Ink::White};
constinit DrawingTool whitePen{{ObjectKind::Pen, true}, Ink::White};
constinit DrawingTool blackPen{{ObjectKind::Pen, true}, Ink::Black};

// Stands for the bitmap of a context into which none was selected; it has no pixels.
constinit Qv8Bitmap noBitmap({ObjectKind::Bitmap, true}, {});

HDC NewContext(Qv8Bitmap* bitmap) {
    return new (std::nothrow) Qv8DeviceContext{bitmap, &blackPen, &whiteBrush};
}

void MarkSelected(Qv8Bitmap* bitmap, bool isSelected) {
    if (!bitmap->header.isStock) {
        bitmap->isSelected = isSelected;
    }
}

// A bitmap is selected into one context at a time, and never into the screen's.
HGDIOBJ SelectBitmap(HDC context, Qv8Bitmap* bitmap) {
    Qv8Bitmap* const previous = context->bitmap;
    if (previous == nullptr || (bitmap->isSelected && bitmap != previous)) {
        return nullptr;
    }
    MarkSelected(previous, false);
    MarkSelected(bitmap, true);
    context->bitmap = bitmap;
    return previous;
}

Ink NearestInk(const RGBQUAD& colour) {
    return InkOf(RGB(DWORD{colour.rgbRed}, DWORD{colour.rgbGreen}, DWORD{colour.rgbBlue}));
}

// Rows are copied between a bitmap and a bottom-up 1-bit picture of the bitmap's own size; no other kind is known.
bool IsPictureOf(const BITMAPINFO* info, const Qv8Bitmap* bitmap) {
    if (info == nullptr || bitmap == nullptr || bitmap->pixels.bits == nullptr) {
        return false;
    }
    const BITMAPINFOHEADER& header = info->bmiHeader;
    return header.biSize == sizeof header && header.biPlanes == 1 && header.biBitCount == 1 &&
           header.biCompression == BI_RGB && header.biWidth == bitmap->pixels.width &&
           header.biHeight == bitmap->pixels.height;
}

// The row of the bitmap that row `pictureRow` of a bottom-up picture belongs to.
std::uint8_t* RowFromBottom(const Pixels& pixels, UINT pictureRow) {
    return pixels.Row(pixels.height - 1 - static_cast<std::int32_t>(pictureRow));
}

UINT RowsFrom(const Pixels& pixels, UINT startRow, UINT rows) {
    const UINT height = static_cast<UINT>(pixels.height);
    return startRow < height ? std::min(rows, height - startRow) : 0;
}

void ClearPadding(const Pixels& pixels, std::uint8_t* row) {
    const std::size_t used = (static_cast<std::size_t>(pixels.width) + 7) / 8;
    const unsigned unusedBits = static_cast<unsigned>(used * 8 - static_cast<std::size_t>(pixels.width));
    row[used - 1] = static_cast<std::uint8_t>(row[used - 1] & (0xFFU << unusedBits));
    std::memset(row + used, 0, pixels.stride - used);
}

// Turns a row of table indices into a row of inks.
void TranslateRow(const Pixels& pixels, std::uint8_t* row, Ink ink0, Ink ink1) {
    for (std::size_t i = 0; i < pixels.stride; ++i) {
        const unsigned indices = row[i];
        row[i] = static_cast<std::uint8_t>((indices & static_cast<unsigned>(ink1)) |
                                           (~indices & static_cast<unsigned>(ink0)));
    }
}

} // namespace

extern "C" {

HDC GetDC(HWND) {
    return NewContext(nullptr);
}

int ReleaseDC(HWND, HDC context) {
    if (context == nullptr || context->bitmap != nullptr) {
        return 0;
    }
    delete context;
    return 1;
}

HDC CreateCompatibleDC(HDC) {
    return NewContext(&noBitmap);
}

BOOL DeleteDC(HDC context) {
    if (context == nullptr) {
        return FALSE;
    }
    if (context->bitmap != nullptr) {
        MarkSelected(context->bitmap, false);
    }
    delete context;
    return TRUE;
}

HBITMAP CreateCompatibleBitmap(HDC context, int width, int height) {
    if (context == nullptr || width < 1 || height < 1 || width > kMaxCoordinate || height > kMaxCoordinate) {
        return nullptr;
    }
    const std::size_t stride = (static_cast<std::size_t>(width) + 31) / 32 * 4;
    const std::size_t rows = static_cast<std::size_t>(height);
    if (stride > kMaxBitmapBytes / rows) {
        return nullptr;
    }
    std::uint8_t* const bits = static_cast<std::uint8_t*>(std::calloc(rows, stride));
    if (bits == nullptr) {
        return nullptr;
    }
    Qv8Bitmap* const bitmap = new (std::nothrow) Qv8Bitmap({ObjectKind::Bitmap, false}, {width, height, stride, bits});
    if (bitmap == nullptr) {
        std::free(bits);
    }
    return bitmap;
}

BOOL DeleteObject(HGDIOBJ object) {
    if (object == nullptr) {
        return FALSE;
    }
    auto* const header = static_cast<ObjectHeader*>(object);
    if (header->isStock) {
        return TRUE;
    }
    if (header->kind == ObjectKind::Font) {
        DeleteFont(header);
        return TRUE;
    }
    if (header->kind == ObjectKind::Brush) {
        delete static_cast<Qv8Brush*>(object);
        return TRUE;
    }
    Qv8Bitmap* const bitmap = static_cast<Qv8Bitmap*>(object);
    if (bitmap->isSelected) {
        return FALSE;
    }
    delete bitmap;
    return TRUE;
}

HGDIOBJ SelectObject(HDC context, HGDIOBJ object) {
    if (context == nullptr || object == nullptr) {
        return nullptr;
    }
    switch (static_cast<const ObjectHeader*>(object)->kind) {
    case ObjectKind::Bitmap:
        return SelectBitmap(context, static_cast<Qv8Bitmap*>(object));
    case ObjectKind::Pen:
        return std::exchange(context->pen, static_cast<DrawingTool*>(object));
    case ObjectKind::Brush:
        return std::exchange(context->brush, static_cast<DrawingTool*>(object));
    case ObjectKind::Font:
        return std::exchange(context->font, static_cast<ObjectHeader*>(object));
    }
    return nullptr;
}

HGDIOBJ GetStockObject(int index) {
    switch (index) {
    case WHITE_BRUSH:
        return &whiteBrush;
    case WHITE_PEN:
        return &whitePen;
    case BLACK_PEN:
        return &blackPen;
    default:
        return nullptr;
    }
}

int SetROP2(HDC context, int mode) {
    return context != nullptr && mode == R2_COPYPEN ? R2_COPYPEN : 0;
}

int SetDIBits(HDC, HBITMAP bitmap, UINT startRow, UINT rows, const void* bits, const BITMAPINFO* info, UINT usage) {
    if (!IsPictureOf(info, bitmap) || bits == nullptr || usage != DIB_RGB_COLORS) {
        return 0;
    }
    const Pixels& pixels = bitmap->pixels;
    const RGBQUAD* const table = info->bmiColors;
    const Ink ink0 = NearestInk(table[0]);
    const Ink ink1 = NearestInk(table[1]);
    const UINT count = RowsFrom(pixels, startRow, rows);
    for (UINT i = 0; i < count; ++i) {
        std::uint8_t* const row = RowFromBottom(pixels, startRow + i);
        std::memcpy(row, static_cast<const std::uint8_t*>(bits) + i * pixels.stride, pixels.stride);
        if (ink0 != Ink::Black || ink1 != Ink::White) {
            TranslateRow(pixels, row, ink0, ink1);
        }
        ClearPadding(pixels, row);
    }
    return static_cast<int>(count);
}

int GetDIBits(HDC context, HBITMAP bitmap, UINT startRow, UINT rows, void* bits, BITMAPINFO* info, UINT usage) {
    if (context == nullptr || !IsPictureOf(info, bitmap) || bits == nullptr || usage != DIB_RGB_COLORS) {
        return 0;
    }
    const Pixels& pixels = bitmap->pixels;
    RGBQUAD* const table = info->bmiColors;
    table[0] = {0, 0, 0, 0};
    table[1] = {255, 255, 255, 0};
    const UINT count = RowsFrom(pixels, startRow, rows);
    for (UINT i = 0; i < count; ++i) {
        std::memcpy(static_cast<std::uint8_t*>(bits) + i * pixels.stride, RowFromBottom(pixels, startRow + i),
                    pixels.stride);
    }
    return static_cast<int>(count);
}

} // extern "C"

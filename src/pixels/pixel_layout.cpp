#include "pixels/pixel_layout.h"

#include "pixels/pixel_unit.h"

namespace qv8 {
namespace {

constexpr unsigned kAnyAnswer = 0xFFFFFFFF;

// Of the layouts of one depth the first is that of new pictures, and the first that an answer fits is taken.
constexpr PixelLayout kLayouts[] = {
    {1, kAccept1, nullptr, 0, nullptr, false, 0, &kUnitOf1Bit},
    {4, kAccept4, nullptr, 0, nullptr, false, 0, &kUnitOf4Bits},
    {8, kAccept8, nullptr, 0, nullptr, false, 0, &kUnitOf1Byte},
    {16, kAccept16, GetBmp16Info, 1U << 1 | 1U << 3, &PixelKernels::words555, false, 0, &kUnitOf2Bytes},
    {16, kAccept16, GetBmp16Info, 1U << 2, &PixelKernels::words565, false, 0, &kUnitOf2Bytes},
    {16, kAccept16, GetBmp16Info, kAnyAnswer, &PixelKernels::unknownWords, false, 0, &kUnitOf2Bytes},
    {24, kAccept24, nullptr, 0, &PixelKernels::bgr, true, 0, &kUnitOf3Bytes},
    {32, kAccept32, GetBmp32Info, kAnyAnswer, &PixelKernels::bgrx, true, 1, &kUnitOf4Bytes},
};

bool Fits(const PixelLayout& layout, int answer) {
    return layout.answers == kAnyAnswer || (answer >= 0 && answer < 32 && (layout.answers >> answer & 1U) != 0);
}

} // namespace

const PixelLayout* LayoutOfDepth(int bitCount) {
    for (const PixelLayout& layout : kLayouts) {
        if (layout.bits == bitCount) {
            return &layout;
        }
    }
    return nullptr;
}

const PixelLayout* LayoutOf(const BITMAPINFOHEADER& header) {
    const PixelLayout* layout = LayoutOfDepth(header.biBitCount);
    if (layout->question == nullptr) {
        return layout;
    }
    constexpr int kRefused = -1;
    const int answer = layout->question(&header);
    if (answer == kRefused) {
        return nullptr;
    }
    while (!Fits(*layout, answer)) { // the last of each depth fits any
        ++layout;
    }
    return layout;
}

} // namespace qv8

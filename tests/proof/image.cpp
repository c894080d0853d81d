#include "api/slow_reduction.cpp"
#include "proof/proof.h"
#include "support/clipboard.h"

namespace test {
bool ProveImage(const Proved& p) {
    if (p.Is("QV8CopyImage")) {
        Picture expected = p.Source();
        BITMAPINFOHEADER header = expected.Header();
        header.biSizeImage = static_cast<DWORD>(expected.RowBytes()) * static_cast<DWORD>(expected.Height());
        expected.SetHeader(header);
        EXPECT_TRUE(Holds(p.image, expected));
        return true;
    }
    if (p.Is("QV8GetFromClipBrd")) {
        EXPECT_EQ(ReadBlock(p.image), p.Source().bytes);
        EXPECT_EQ(ClipboardContent(), p.Source().bytes);
        return true;
    }
    if (p.Is("QV8SetToClipBrd")) {
        Bytes expected = p.Source().bytes;
        if (p.layout.compression == BI_BITFIELDS) {
            expected.erase(expected.begin() + 40, expected.begin() + 52);
        }
        EXPECT_EQ(ClipboardContent(), expected);
        return true;
    }
    if (!p.Is("QV8CreateImage")) {
        return false;
    }
    const int width = std::max<int>(p.Number(0), 1), height = std::max<int>(p.Number(1), 1), bits = p.layout.bits;
    const Colour asked = p.At(3);
    Cut cut;
    Picture source = BlankPicture(24, width, height);
    BITMAPINFOHEADER header = source.Header();
    if (bits <= 8) {
        cut.table = FixedTable(bits);
    }
    header.biClrImportant = 0;
    source.SetHeader(header);
    Picture expected = EmptyResult(source, {bits, true, false, 128}, cut);
    for (int row = 0; row != height; ++row) {
        for (int x = 0; x != width; ++x) {
            if (bits <= 8) {
                expected.SetIndex(x, row, ChooseIndex({bits, true, false, 128}, cut, asked));
            } else {
                expected.SetColour(x, row, asked);
            }
        }
    }
    EXPECT_TRUE(Holds(p.image, expected));
    return true;
}
} // namespace test

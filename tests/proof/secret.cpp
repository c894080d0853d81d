#include "api/secret_image_test.cpp"
#include "proof/proof.h"

namespace test {
bool ProveSecret(const Proved& p) {
    if (p.Is("QV8SetSecretImage")) {
        const Picture& picture = p.Source();
        const Picture& pattern = p.Mask();
        const LONG strength = p.Number(11), left = p.Number(12), top = p.Number(13);
        Picture expected = picture;
        BITMAPINFOHEADER header = expected.Header();
        header.biSizeImage = static_cast<DWORD>(expected.RowBytes()) * static_cast<DWORD>(expected.Height());
        expected.SetHeader(header);
        for (int y = 0; y != picture.Height(); ++y) { // from the top
            for (int x = 0; x != picture.Width(); ++x) {
                const std::int64_t px = std::int64_t{x} - left;
                const std::int64_t py = std::int64_t{y} - top;
                if (px < 0 || px >= pattern.Width() || py < 0 || py >= pattern.Height()) {
                    continue;
                }
                const int row = picture.Height() - 1 - y;
                if (pattern.Index(static_cast<int>(px), pattern.Height() - 1 - static_cast<int>(py)) != 0) {
                    expected.SetColour(x, row, Marked(picture.ColourAt(x, row), strength));
                }
            }
        }
        EXPECT_TRUE(Holds(p.image, expected));
        return true;
    }
    if (!p.Is("QV8CheckSecretImage")) {
        return false;
    }
    const Picture found{ReadBlock(p.image)};
    EXPECT_EQ(found.bytes.size(), 48 + found.RowBytes() * static_cast<std::size_t>(found.Height()));
    for (int row = 0; row != p.Source().Height(); ++row) {
        for (int x = 0; x != p.Source().Width(); ++x) {
            const int rise = Luminance(p.Second().ColourAt(x, row)) - Luminance(p.Source().ColourAt(x, row));
            EXPECT_EQ(found.Index(x, row), rise >= p.Number(2) ? 1U : 0U);
        }
    }
    return true;
}
} // namespace test

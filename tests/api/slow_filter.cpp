#include "api/slow_filter.h"

#include <algorithm>

#include "qv8com.h"

namespace test {
namespace {

unsigned IndexOfGrey(const Picture& picture, BYTE grey) {
    for (unsigned i = 0; i != 256; ++i) {
        if (picture.TableEntry(i)[0] == grey) {
            return i;
        }
    }
    return 0;
}

} // namespace

void CheckPixels(const Scene& scene, const std::function<HGLOBAL(const Call&)>& call, const SetPixel& set) {
    const Picture& source = scene.picture.Content();
    const auto area = PixelsOf(scene.area, scene.mask.Content(), source.Width(), source.Height());
    const Block result(call(scene.AsCall()));
    if (!area) {
        EXPECT_EQ(result, nullptr);
        EXPECT_EQ(GetErrorStatus(), QV8_STATUS_DIALOG);
        return;
    }
    ASSERT_NE(result, nullptr) << GetErrorStatus();
    Picture expected = source;
    BITMAPINFOHEADER header = source.Header();
    header.biSizeImage = static_cast<DWORD>(source.RowBytes() * static_cast<std::size_t>(source.Height()));
    expected.SetHeader(header);
    std::size_t i = 0;
    for (int row = 0; row != source.Height(); ++row) {
        for (int x = 0; x != source.Width(); ++x, ++i) {
            if ((*area)[i]) {
                set(source, x, row, expected);
            }
        }
    }
    EXPECT_TRUE(Holds(result.get(), expected));
    EXPECT_TRUE(scene.Untouched());
}

void CheckFilter(const Scene& scene, const std::function<HGLOBAL(const Call&)>& call, const SlowPixel& pixel) {
    CheckPixels(scene, call, [&](const Picture& source, int x, int row, Picture& expected) {
        const Colour colour = pixel(source, x, row);
        if (source.Bits() == 8) {
            expected.SetIndex(x, row, IndexOfGrey(source, colour.blue));
        } else {
            expected.SetColour(x, row, colour);
        }
    });
}

Colour Repeated(const Picture& source, int x, int row) {
    return source.ColourAt(std::clamp(x, 0, source.Width() - 1), std::clamp(row, 0, source.Height() - 1));
}

int LuminanceAt(const Picture& source, int x, int row) {
    const Colour colour = source.ColourAt(x, row);
    if (source.Bits() == 8) {
        return colour.blue;
    }
    const float red = static_cast<float>(colour.red) * 0.299F;
    const float green = static_cast<float>(colour.green) * 0.587F;
    const float blue = static_cast<float>(colour.blue) * 0.114F;
    return static_cast<int>(red + green + blue);
}

void ForEachFilterScene(Random& random, int rounds, const std::function<void(const Scene&)>& use, unsigned accepted) {
    for (const Layout& layout : Layouts()) {
        if ((layout.acceptedBy & accepted) == 0) {
            continue;
        }
        for (const AreaForm form : AreaForms()) {
            for (int i = 0; i != rounds; ++i) {
                const int width = RandomSide(random);
                const int height = random.Chance(4) ? random.Between(1, 3) : random.Between(1, 30);
                const Scene scene = RandomScene(layout, form, width, height, random);
                SCOPED_TRACE(std::string(layout.name) + ", " + std::to_string(width) + " x " + std::to_string(height) +
                             ", " + Describe(scene.area));
                use(scene);
                if (testing::Test::HasFailure()) {
                    return;
                }
            }
        }
    }
}

} // namespace test

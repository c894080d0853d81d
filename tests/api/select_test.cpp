// Selection by shape and by colour, against the rules written out pixel by pixel.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

#include "api/export_table.h"
#include "qv8com.h"
#include "support/emptied.h"

namespace test {
namespace {

struct Box {
    int left, firstRow, right, lastRow;
};

// The box of an area, rows from the bottom.
Box BoxOf(const Area& area, int width, int height) {
    const auto inX = [&](LONG x) { return static_cast<int>(std::clamp<LONG>(x, 0, width - 1)); };
    const auto inRows = [&](LONG y) { return height - 1 - static_cast<int>(std::clamp<LONG>(y, 0, height - 1)); };
    std::vector<POINT> corners = area.points;
    if (area.type == QV8_AREA_ELLIPSE) {
        corners = {{area.rect.left, area.rect.top}, {area.rect.right, area.rect.bottom}};
    }
    if (area.type == QV8_AREA_WHOLE || area.inside == 0) {
        return {0, 0, width - 1, height - 1};
    }
    Box box = {width, height, 0, 0};
    for (const POINT& corner : corners) {
        box = {std::min(box.left, inX(corner.x)), std::min(box.firstRow, inRows(corner.y)),
               std::max(box.right, inX(corner.x)), std::max(box.lastRow, inRows(corner.y))};
    }
    return box;
}

// The area moved so that the picture is its box.
Area InBox(Area area, const Box& box, int height) {
    const LONG top = height - 1 - box.lastRow;
    const auto x = [&](LONG value) { return std::clamp<LONG>(value, box.left, box.right) - box.left; };
    const auto y = [&](LONG value) { return std::clamp<LONG>(value, top, top + box.lastRow - box.firstRow) - top; };
    for (POINT& point : area.points) {
        point = {x(point.x), y(point.y)};
    }
    area.rect = {x(area.rect.left), y(area.rect.top), x(area.rect.right), y(area.rect.bottom)};
    return area;
}

Picture EmptyMask(int width, int height) {
    Picture mask = BlankPicture(1, width, height);
    BITMAPINFOHEADER header = {};
    header.biSize = 40;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = 1;
    header.biSizeImage = static_cast<DWORD>(RowBytesOf(1, width) * static_cast<std::size_t>(height));
    mask.SetHeader(header);
    std::fill_n(mask.TableEntry(1), 3, BYTE{0xFF});
    return mask;
}

// Copies a pixel as it is: an index, or all of its bytes.
void CopyPixel(const Picture& source, int x, int row, Picture& result, int toX, int toRow) {
    if (source.Bits() <= 8) {
        result.SetIndex(toX, toRow, source.Index(x, row));
        return;
    }
    const auto from = source.bytes.begin() + static_cast<std::ptrdiff_t>(source.PixelAddress(x, row));
    std::copy_n(from, source.Bits() / 8,
                result.bytes.begin() + static_cast<std::ptrdiff_t>(result.PixelAddress(toX, toRow)));
}

void PutBackground(Picture& result, int x, int row, Colour colour) {
    if (result.Bits() <= 8) {
        result.SetIndex(x, row, result.NearestIndex(colour));
    } else {
        result.SetColour(x, row, colour);
    }
}

struct Selection {
    Picture image;
    Picture mask;
};

Selection ShapeSelection(const Picture& source, const Box& box, const std::vector<bool>& pixels, Colour background) {
    const int width = box.right - box.left + 1;
    const int height = box.lastRow - box.firstRow + 1;
    Selection selection = {Emptied(source, width, height), EmptyMask(width, height)};
    for (int row = 0; row != height; ++row) {
        for (int x = 0; x != width; ++x) {
            if (pixels[static_cast<std::size_t>(row * width + x)]) {
                CopyPixel(source, box.left + x, box.firstRow + row, selection.image, x, row);
                selection.mask.SetIndex(x, row, 1);
            } else {
                PutBackground(selection.image, x, row, background);
            }
        }
    }
    return selection;
}

struct Key {
    Colour colour;
    int mode;
    int tolerance;
};

int Component(const Colour& c, float red, float green, float blue, float offset) {
    const float r = static_cast<float>(c.red) * red;
    const float g = static_cast<float>(c.green) * green;
    const float b = static_cast<float>(c.blue) * blue;
    return static_cast<int>(r + g + b + offset);
}

bool Matches(const Colour& colour, const Key& key) {
    const auto apart = [&](float red, float green, float blue, float offset) {
        return std::abs(Component(colour, red, green, blue, offset) - Component(key.colour, red, green, blue, offset));
    };
    switch (key.mode) {
    case 0:
        return apart(1, 0, 0, 0) + apart(0, 1, 0, 0) + apart(0, 0, 1, 0) <= 3 * key.tolerance;
    case 1:
        return apart(0.5F, -0.41869F, -0.08131F, 128) + apart(-0.16874F, -0.33126F, 0.5F, 128) <= 2 * key.tolerance;
    default:
        return apart(0.299F, 0.587F, 0.114F, 0) <= key.tolerance;
    }
}

Selection ColourSelection(const Picture& source, const Box& box, const std::vector<bool>& pixels, const Key& key) {
    const int width = box.right - box.left + 1;
    const int height = box.lastRow - box.firstRow + 1;
    Selection selection = {Emptied(source, width, height), EmptyMask(width, height)};
    for (int row = 0; row != height; ++row) {
        for (int x = 0; x != width; ++x) {
            if (!pixels[static_cast<std::size_t>(row * width + x)]) {
                continue;
            }
            const Colour colour = source.ColourAt(box.left + x, box.firstRow + row);
            if (source.Bits() <= 8) {
                CopyPixel(source, box.left + x, box.firstRow + row, selection.image, x, row);
            } else {
                selection.image.SetColour(x, row, colour);
            }
            selection.mask.SetIndex(x, row, Matches(colour, key) ? 1 : 0);
        }
    }
    return selection;
}

// A mask drawn by the platform may hold anything behind the last pixel of a row.
Picture WithoutPadding(Picture mask) {
    const std::size_t used = static_cast<std::size_t>(mask.Width());
    for (int row = 0; row != mask.Height(); ++row) {
        const std::size_t begin = mask.PixelOffset() + static_cast<std::size_t>(row) * mask.RowBytes();
        for (std::size_t bit = used; bit != mask.RowBytes() * 8; ++bit) {
            mask.bytes[begin + bit / 8] &= static_cast<BYTE>(~(0x80U >> bit % 8));
        }
    }
    return mask;
}

template <class Function, class... OwnParameters>
ImageSet CallWithShape(Function* function, const Call& call, OwnParameters... parameters) {
    const Area& area = call.area;
    return function(call.target.hImage, area.type, area.points.data(), static_cast<int>(area.points.size()), &area.rect,
                    area.inside, static_cast<DWORD>(parameters)..., call.progressOwner, 0, 0, 0);
}

// The pixels of the area within its box, as the platform draws it there.
std::vector<bool> PixelsInBox(const Area& area, const Box& box, int height) {
    const int width = box.right - box.left + 1;
    const int rows = box.lastRow - box.firstRow + 1;
    return PixelsOf(InBox(area, box, height), Picture(), width, rows).value_or(std::vector<bool>());
}

void Check(const Scene& scene, Colour background, const Key& key) {
    const Picture& source = scene.picture.Content();
    const Box box = BoxOf(scene.area, source.Width(), source.Height());
    const std::vector<bool> pixels = PixelsInBox(scene.area, box, source.Height());
    const ImageSet cut =
        CallWithShape(QV8SelectImage, scene.AsCall(), background.red, background.green, background.blue);
    const ImageSet matched = CallWithShape(QV8AutoSelectImage, scene.AsCall(), key.colour.red, key.colour.green,
                                           key.colour.blue, key.mode, key.tolerance);
    const Block blocks[] = {Block(cut.hImage), Block(cut.hMask), Block(matched.hImage), Block(matched.hMask)};
    if (pixels.empty()) { // the platform refuses to draw this shape
        EXPECT_EQ(cut.hImage, nullptr);
        EXPECT_EQ(matched.hImage, nullptr);
        return;
    }
    const Selection byShape = ShapeSelection(source, box, pixels, background);
    const Selection byColour = ColourSelection(source, box, pixels, key);
    ASSERT_NE(cut.hImage, nullptr);
    ASSERT_NE(matched.hImage, nullptr);
    EXPECT_TRUE(Holds(cut.hImage, byShape.image));
    EXPECT_EQ(WithoutPadding({ReadBlock(cut.hMask)}).bytes, byShape.mask.bytes);
    EXPECT_TRUE(Holds(matched.hImage, byColour.image));
    EXPECT_TRUE(Holds(matched.hMask, byColour.mask));
    EXPECT_TRUE(scene.Untouched());
}

Colour RandomColour(const Picture& picture, Random& random) {
    if (random.Chance(50)) { // one that is there
        return picture.ColourAt(random.Between(0, picture.Width() - 1), random.Between(0, picture.Height() - 1));
    }
    return {random.Byte(), random.Byte(), random.Byte()};
}

TEST(Select, FollowsItsRulesAtEveryDepthAndInEveryShape) {
    Random random(50);
    for (const Layout& layout : Layouts()) {
        if ((layout.acceptedBy & kAcceptAll) == 0) {
            continue;
        }
        for (const AreaForm form : AreaForms()) {
            for (int i = 0; i != 40 && form != AreaForm::kMask; ++i) {
                const int width = RandomSide(random);
                const Scene scene = RandomScene(layout, form, width, random.Between(1, 20), random);
                const Colour background = RandomColour(scene.picture.Content(), random);
                const Key key = {RandomColour(scene.picture.Content(), random), random.Between(0, 2),
                                 random.Chance(20) ? 0 : random.Between(0, 255)};
                SCOPED_TRACE(std::string(layout.name) + ", " + Describe(scene.area) + ", mode " +
                             std::to_string(key.mode) + ", tolerance " + std::to_string(key.tolerance));
                Check(scene, background, key);
                ASSERT_FALSE(HasFailure());
            }
        }
    }
}

TEST(Select, ChecksTheMatchModeBeforeAnythingElse) {
    for (const DWORD mode : {3U, 255U, 0xFFFFFF03U}) {
        EXPECT_EQ(QV8AutoSelectImage(nullptr, 9, nullptr, 0, nullptr, 1, 0, 0, 0, mode, 0, 1, 0, 0, 0).hImage, nullptr);
        EXPECT_EQ(GetErrorStatus(), QV8_STATUS_PARAMETER);
    }
    const Source picture(BlankPicture(24, 3, 2));
    EXPECT_EQ(QV8SelectImageEx(picture.Handle(), nullptr, 1, nullptr, 0, nullptr, 1, 0, 0, 0, 1, 0, 0, 0), 0);
    EXPECT_EQ(GetErrorStatus(), QV8_STATUS_PARAMETER);
    EXPECT_EQ(QV8AutoSelectImageEx(picture.Handle(), nullptr, 1, nullptr, 0, nullptr, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0), 0);
    EXPECT_EQ(GetErrorStatus(), QV8_STATUS_PARAMETER);
}

// The rows are reported as they count in the source, so that a box off the bottom runs ahead.
TEST(Select, ReportsRowsOfTheSource) {
    Random random(51);
    Scene scene = RandomScene(LayoutNamed("24"), AreaForm::kPolygonInside, 12, 20, random);
    scene.area.points = {{2, 3}, {9, 3}, {9, 8}}; // rows 11 to 16 from the bottom
    for (const Export& row : Exports()) {
        const bool byShape = row.areaUse == AreaUse::kDrawnShapes;
        if (!byShape && row.areaUse != AreaUse::kShapes) {
            continue;
        }
        SCOPED_TRACE(row.name);
        const auto progress = WatchExport(row, scene.AsCall()).report.progress;
        ASSERT_EQ(progress.size(), 6U);
        for (int i = 0; i != 6; ++i) {
            EXPECT_EQ(progress[static_cast<std::size_t>(i)].current, byShape ? 11 + i : i);
            EXPECT_EQ(progress[static_cast<std::size_t>(i)].last, 5);
        }
    }
}

// A selection is a target as it is: its mask is the area of any other effect.
TEST(Select, MakesTargetsForOtherEffects) {
    Random random(52);
    for (const char* const name : {"1", "4", "8-grey", "16-565", "24", "32"}) {
        Scene scene = RandomScene(LayoutNamed(name), AreaForm::kEllipseInside, 40, 30, random);
        scene.area.rect = {5, 3, 31, 24};
        for (const bool byColour : {false, true}) {
            const ImageSet selection = byColour ? CallWithShape(QV8AutoSelectImage, scene.AsCall(), 90, 120, 150, 2, 60)
                                                : CallWithShape(QV8SelectImage, scene.AsCall(), 0, 0, 0);
            const Block image(selection.hImage);
            const Block mask(selection.hMask);
            ASSERT_NE(mask, nullptr);
            const Picture before = {ReadBlock(selection.hImage)};
            const Picture marked = {ReadBlock(selection.hMask)};
            Call call;
            call.target = selection;
            call.bits = scene.picture.Content().Bits();
            call.area.type = QV8_AREA_MASK;
            call.second = image.get();
            for (const Export& row : Exports()) {
                const Layout& layout = LayoutNamed(name);
                if (!row.Accepts(layout) || !row.UsesForm(layout, AreaForm::kMask)) {
                    continue;
                }
                SCOPED_TRACE(std::string(row.name) + " at " + name);
                const Outcome outcome = CallExport(row, call);
                ASSERT_TRUE(outcome.succeeded);
                if (row.areaUse == AreaUse::kMaskAlong) {
                    EXPECT_TRUE(outcome.mask != nullptr || row.TakesSecond()); // whose mask it is then
                    continue;
                }
                const Picture after = {ReadBlock(outcome.image.get())};
                for (int y = 0; y != before.Height(); ++y) {
                    for (int x = 0; x != before.Width(); ++x) {
                        if (marked.Index(x, y) == 0) {
                            ASSERT_EQ(after.ColourAt(x, y), before.ColourAt(x, y)) << x << ", " << y;
                        }
                    }
                }
            }
        }
    }
}

} // namespace
} // namespace test

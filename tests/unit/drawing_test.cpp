// What is drawn, against a recording of what the platform itself draws, and the rules of contexts and bitmaps.
#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "support/draw_shape.h"
#include "support/shapes.h"

using test::Canvas;
using test::Shape;

namespace {

std::string Picture(const Shape& shape) {
    if (shape.width > 120) {
        return "(too wide to show)\n";
    }
    std::string text;
    for (int y = 0; y < shape.height; ++y) {
        for (int x = 0; x < shape.width; ++x) {
            text += shape.IsSet(x, y) ? '#' : '.';
        }
        text += '\n';
    }
    return text;
}

// One hash for each shape, over what the drawing returned and the pixels. On Windows the same test draws with the
// system's own calls, so that what it writes there is the recording.
std::string HashOf(const Shape& shape) {
    unsigned hash = 2166136261U;
    const auto add = [&hash](unsigned value) { hash = (hash ^ value) * 16777619U; };
    add(static_cast<unsigned>(shape.result));
    for (int y = 0; y != shape.height; ++y) {
        for (int x = 0; x != shape.width; ++x) { // without the padding
            add(shape.IsSet(x, y) ? 1 : 2);
        }
    }
    char text[9];
    std::snprintf(text, sizeof text, "%08x", hash);
    return text;
}

TEST(Drawing, EqualsTheRecording) {
    std::ifstream recording(QV8_TEST_DATA "/shapes.txt");
    std::string actual;
    int differences = 0;
    std::size_t shapes = 0;
    for (Shape& shape : test::GenerateShapes()) {
        ASSERT_TRUE(DrawShape(shape)) << Describe(shape);
        const std::string hash = HashOf(shape);
        std::string recorded;
        recording >> recorded;
        actual += hash + "\n";
        if (hash != recorded && ++differences <= 3) {
            ADD_FAILURE() << "shape " << shapes << ", " << Describe(shape) << ", returned " << shape.result << "\n"
                          << Picture(shape);
        }
        ++shapes;
    }
    EXPECT_GT(shapes, 2000U);
    if (differences != 0) {
        std::ofstream("shapes.actual.txt", std::ios::binary) << actual;
    }
}

TEST(Drawing, NeedsAContextAndTwoPoints) {
    const POINT points[] = {{0, 0}, {3, 3}};
    Canvas canvas(4, 4);
    EXPECT_FALSE(Polygon(canvas.context, points, 1));
    EXPECT_FALSE(Polygon(canvas.context, points, 0));
    EXPECT_FALSE(Polygon(nullptr, points, 2));
    EXPECT_FALSE(Ellipse(nullptr, 0, 0, 4, 4));
    EXPECT_EQ(SetROP2(nullptr, R2_COPYPEN), 0);
    EXPECT_EQ(SetROP2(canvas.context, R2_COPYPEN), R2_COPYPEN);
}

TEST(Drawing, FillsOnlyTheColourItIsToldFrom) {
    Canvas canvas(9, 3);
    EXPECT_FALSE(MoveToEx(nullptr, 0, 0, nullptr));
    EXPECT_FALSE(LineTo(nullptr, 0, 0));
    POINT before = {7, 7};
    EXPECT_TRUE(MoveToEx(canvas.context, 4, 0, &before) && before.x == 0 && before.y == 0);
    const HGDIOBJ pen = SelectObject(canvas.context, GetStockObject(WHITE_PEN));
    EXPECT_TRUE(LineTo(canvas.context, 4, 3) && MoveToEx(canvas.context, 0, 0, &before) && before.y == 3);
    SelectObject(canvas.context, pen);
    for (const POINT outside : {POINT{-1, 0}, {9, 0}, {0, -1}, {0, 3}, {4, 1}}) {
        EXPECT_FALSE(ExtFloodFill(canvas.context, outside.x, outside.y, RGB(0, 0, 0), FLOODFILLSURFACE));
    }
    const HBRUSH black = CreateSolidBrush(RGB(10, 20, 30));
    const HGDIOBJ brush = SelectObject(canvas.context, black);
    EXPECT_TRUE(ExtFloodFill(canvas.context, 4, 1, RGB(255, 255, 255), FLOODFILLSURFACE));
    EXPECT_TRUE(ExtFloodFill(canvas.context, 0, 0, RGB(0, 0, 0), FLOODFILLSURFACE)); // with itself
    EXPECT_EQ(SelectObject(canvas.context, brush), black);
    EXPECT_TRUE(DeleteObject(black));
    std::vector<BYTE> bits(12, 0xEE);
    ASSERT_TRUE(canvas.Read(bits));
    EXPECT_EQ(bits, std::vector<BYTE>(12));
}

TEST(Drawing, RefusesBitmapsOfHostileSize) {
    const HDC screen = GetDC(nullptr);
    EXPECT_EQ(CreateCompatibleBitmap(screen, INT_MAX, INT_MAX), nullptr);
    EXPECT_EQ(CreateCompatibleBitmap(screen, 1 << 20, 1 << 20), nullptr);
    EXPECT_EQ(CreateCompatibleBitmap(nullptr, 4, 4), nullptr);
    EXPECT_EQ(ReleaseDC(nullptr, screen), 1);
}

// A new context fills in white and outlines in black.
TEST(Drawing, OutlinesWithThePenAndFillsWithTheBrush) {
    Canvas canvas(16, 5);
    const POINT square[] = {{0, 0}, {4, 0}, {4, 4}, {0, 4}};
    EXPECT_TRUE(Polygon(canvas.context, square, 4));
    EXPECT_TRUE(Ellipse(canvas.context, 8, 0, 13, 5));
    std::vector<BYTE> bits(20);
    ASSERT_TRUE(canvas.Read(bits));
    const std::vector<BYTE> expected = {0, 0, 0, 0, 0x70, 0x70, 0, 0, 0x70, 0x70, 0, 0, 0x70, 0x70, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(bits, expected);
}

#ifndef _WIN32 // where nothing is known of them
TEST(Drawing, FillsTheTipsOfNarrowEllipses) {
    for (const POINT size : {POINT{3, 8}, {3, 300}, {4, 40}, {5, 600}, {6, 601}}) {
        Shape shape;
        shape.kind = Shape::kEllipse;
        shape.width = size.x;
        shape.height = size.y;
        shape.points = {{0, 0}, size};
        ASSERT_TRUE(DrawShape(shape));
        const int middle = (size.x - 1) / 2;
        for (int y = 0; y != size.y; ++y) {
            ASSERT_TRUE(shape.IsSet(middle, y) && shape.IsSet(size.x / 2, y)) << Describe(shape) << ", row " << y;
        }
        EXPECT_FALSE(shape.IsSet(middle - 1, 0) || shape.IsSet(size.x / 2 + 1, size.y - 1)) << Describe(shape);
    }
}
#endif

TEST(Drawing, SelectsABitmapIntoOneContextAtATime) {
    Canvas canvas(4, 4);
    const HDC other = CreateCompatibleDC(nullptr);
    EXPECT_EQ(SelectObject(other, canvas.bitmap), nullptr);
    EXPECT_EQ(SelectObject(canvas.context, canvas.previous), canvas.bitmap);
    EXPECT_NE(SelectObject(other, canvas.bitmap), nullptr);
    EXPECT_TRUE(DeleteDC(other));
    EXPECT_NE(SelectObject(canvas.context, canvas.bitmap), nullptr);
    EXPECT_EQ(SelectObject(nullptr, canvas.bitmap), nullptr);
    EXPECT_EQ(SelectObject(canvas.context, nullptr), nullptr);
}

TEST(Drawing, KeepsStockObjects) {
    EXPECT_TRUE(DeleteObject(GetStockObject(WHITE_PEN)));
    Canvas canvas(1, 1);
    const HGDIOBJ pen = SelectObject(canvas.context, GetStockObject(WHITE_PEN));
    EXPECT_EQ(pen, GetStockObject(BLACK_PEN));
    EXPECT_EQ(SelectObject(canvas.context, pen), GetStockObject(WHITE_PEN));
}

// Rows go in from the bottom, colours by the picture's table; reading always gives black and white, and clear padding.
TEST(Drawing, TransfersRowsAndColours) {
    Canvas canvas(12, 3);
    canvas.info.colours[0] = {250, 200, 130, 0};
    canvas.info.colours[1] = {10, 100, 40, 0};
    const std::vector<BYTE> bits = {0xF0, 0x0F, 0xFF, 0xFF, 0x55, 0x55, 0x55, 0x55};
    EXPECT_EQ(SetDIBits(canvas.context, canvas.bitmap, 1, 5, bits.data(), canvas.info.Get(), DIB_RGB_COLORS), 2);
    EXPECT_EQ(SetDIBits(canvas.context, canvas.bitmap, 3, 1, bits.data(), canvas.info.Get(), DIB_RGB_COLORS), 0);
    EXPECT_EQ(SetDIBits(canvas.context, nullptr, 0, 3, bits.data(), canvas.info.Get(), DIB_RGB_COLORS), 0);
    std::vector<BYTE> read(12, 0xEE);
    ASSERT_TRUE(canvas.Read(read));
    EXPECT_EQ(read, (std::vector<BYTE>{0, 0, 0, 0, 0x0F, 0xF0, 0, 0, 0xAA, 0xA0, 0, 0}));
    EXPECT_EQ(canvas.info.colours[0].rgbBlue, 0);
    EXPECT_EQ(canvas.info.colours[1].rgbBlue, 255);
    // The colours nearest to the middle on either side of it.
    for (const bool turned : {false, true}) {
        const RGBQUAD dark = {128, 127, 127, 0};
        const RGBQUAD light = {128, 128, 127, 0};
        canvas.info.colours[0] = turned ? light : dark;
        canvas.info.colours[1] = turned ? dark : light;
        EXPECT_EQ(SetDIBits(canvas.context, canvas.bitmap, 0, 1, bits.data(), canvas.info.Get(), DIB_RGB_COLORS), 1);
        ASSERT_TRUE(canvas.Read(read));
        EXPECT_EQ(read[0], turned ? 0x0F : 0xF0);
    }
    EXPECT_EQ(GetDIBits(nullptr, canvas.bitmap, 0, 3, read.data(), canvas.info.Get(), DIB_RGB_COLORS), 0);
    EXPECT_EQ(GetDIBits(canvas.context, nullptr, 0, 3, read.data(), canvas.info.Get(), DIB_RGB_COLORS), 0);
}

} // namespace

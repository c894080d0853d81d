// What every effect does, worked out by hand: small pictures, a call, and the pixels that come of it.
#include <cstring>
#include <string>
#include <vector>

#include "api/export_table.h"

namespace test {
namespace {

// Rows as they are seen, the upper one first. True colours are 0xRRGGBB, with the fourth byte above them at 32 bits;
// others are words or indices.
struct Pixels {
    int bits = 0; // 565 for 16 bits of that layout
    int width = 0;
    std::vector<unsigned> pixels;
    std::vector<unsigned> table = {}; // black and white, or steps of grey unless given
};

struct Example {
    const char* what;
    const char* name;
    std::vector<double> own; // the effect's own numbers, in order
    Pixels before;
    Pixels after;
    std::vector<unsigned> mask = {};                        // of the area
    std::vector<POINT> corners = {};                        // of a polygon that is the area
    std::vector<std::pair<std::size_t, LONG>> weights = {}; // of the custom filter, by place
    Pixels second = {1, 1, {0}};
    std::vector<unsigned> clear = {}; // the transparent colour
    std::vector<unsigned> maskAfter = {};
    BOOL inside = 1;
};

unsigned Reversed(unsigned level) {
    return (255 - level) * 0x10101;
}

std::vector<unsigned> ReversedRamp() {
    std::vector<unsigned> table;
    for (unsigned i = 0; i != 256; ++i) {
        table.push_back(Reversed(i));
    }
    return table;
}

// 0xRRGGBB of an entry that is not given.
unsigned DefaultEntry(int bits, std::size_t i) {
    const std::size_t last = (std::size_t{1} << bits) - 1;
    return static_cast<unsigned>(i * 255 / last) * 0x10101;
}

Picture MakePicture(const Pixels& given) {
    const int bits = given.bits == 565 ? 16 : given.bits;
    const int height = static_cast<int>(given.pixels.size()) / given.width;
    Random random(1);
    Picture picture = given.bits == 565 ? RandomPicture(LayoutNamed("16-565"), given.width, height, random)
                                        : BlankPicture(bits, given.width, height);
    if (bits <= 8 && !given.table.empty() && given.table.size() != picture.ColourCount()) {
        BITMAPINFOHEADER header = picture.Header();
        header.biClrUsed = static_cast<DWORD>(given.table.size());
        picture.SetHeader(header);
        picture.bytes.resize(picture.PixelOffset() + picture.RowBytes() * static_cast<std::size_t>(height));
    }
    for (std::size_t i = 0; bits <= 8 && i != picture.ColourCount(); ++i) {
        const unsigned colour = given.table.empty() ? DefaultEntry(bits, i) : given.table[i];
        std::memcpy(picture.TableEntry(i), &colour, 3); // blue first
    }
    for (std::size_t i = 0; i != given.pixels.size(); ++i) {
        const int x = static_cast<int>(i) % given.width;
        const int row = height - 1 - static_cast<int>(i) / given.width;
        if (bits <= 8) {
            picture.SetIndex(x, row, given.pixels[i]);
        } else {
            std::memcpy(&picture.bytes[picture.PixelAddress(x, row)], &given.pixels[i],
                        static_cast<unsigned>(bits) / 8);
        }
    }
    return picture;
}

std::vector<unsigned> PixelsOf(const Picture& picture) {
    std::vector<unsigned> pixels;
    for (int row = picture.Height() - 1; row >= 0; --row) {
        for (int x = 0; x != picture.Width(); ++x) {
            unsigned pixel = 0;
            if (picture.Bits() <= 8) {
                pixel = picture.Index(x, row);
            } else {
                std::memcpy(&pixel, &picture.bytes[picture.PixelAddress(x, row)],
                            static_cast<unsigned>(picture.Bits()) / 8);
            }
            pixels.push_back(pixel);
        }
    }
    return pixels;
}

std::vector<unsigned> TableOf(const Picture& picture) {
    std::vector<unsigned> table;
    for (std::size_t i = 0; i != picture.ColourCount(); ++i) {
        unsigned entry = 0;
        std::memcpy(&entry, picture.TableEntry(i), 4);
        table.push_back(entry);
    }
    return table;
}

std::string Hex(const std::vector<unsigned>& numbers) {
    std::string text;
    char number[12];
    for (const unsigned value : numbers) {
        std::snprintf(number, sizeof number, "%X ", value);
        text += number;
    }
    return text;
}

// Puts the example's numbers, weights and clear colour in place of the typical ones.
void SetOwn(const Export& row, const Example& example, Arguments& arguments) {
    SetOwnNumbers(row, example.own, arguments);
    std::fill(std::begin(arguments.weights), std::end(arguments.weights), 0);
    for (const auto& [place, weight] : example.weights) {
        arguments.weights[place] = weight;
    }
    for (std::size_t i = 0; i != 3 && !example.clear.empty(); ++i) {
        arguments.clear[i] = static_cast<BYTE>(example.clear[0] >> (16 - 8 * i));
        arguments.values[6 + i].pointer = &arguments.clear[i]; // behind angle, mirror, flip and opacity of a paste
    }
}

// Rows of the examples: greys of 24 bits are easily written as G * level.
constexpr unsigned G = 0x10101;

const Example kExamples[] = {
    // --- Tone ---
    {"beyond the range", "QV8RGBLevel", {300, -300, 0}, {24, 2, {0x102030, 0xFFFEFD}}, {24, 2, {0xFF0030, 0xFF00FD}}},
    {"within", "QV8RGBLevel", {10, 20, -30}, {24, 1, {0x102030}}, {24, 1, {0x1A3412}}},
    {"two channels", "QV8RGBRev", {1, 0, 1}, {24, 1, {0x102030}}, {24, 1, {0xEF20CF}}},
    {"the fourth byte", "QV8RGBRev", {1, 1, 1}, {32, 1, {0xAA102030}}, {32, 1, {0xAAEFDFCF}}},
    {"a table", "QV8RGBRev", {1, 1, 0}, {1, 2, {0, 1}, {0x000080, 0xFF4080}}, {1, 2, {0, 1}, {0xFFFF80, 0x00BF80}}},
    {"only where the mask is", "QV8RGBRev", {1, 1, 1}, {24, 2, {0, 0}}, {24, 2, {0xFFFFFF, 0}}, {1, 0}},
    {"a polygon with its outline",
     "QV8RGBRev",
     {1, 1, 1},
     {24, 3, {0, 0, 0, 0, 0, 0}},
     {24, 3, {0xFFFFFF, 0xFFFFFF, 0, 0xFFFFFF, 0xFFFFFF, 0}},
     {},
     {{0, 0}, {1, 0}, {1, 1}, {0, 1}}},
    {.what = "around a polygon",
     .name = "QV8RGBRev",
     .own = {1, 1, 1},
     .before = {24, 3, {0, 0, 0, 0, 0, 0}},
     .after = {24, 3, {0, 0, 0xFFFFFF, 0, 0, 0xFFFFFF}},
     .corners = {{0, 0}, {1, 0}, {1, 1}, {0, 1}},
     .inside = 0},
    // 255 * sqrt(64 / 255) = 127.75; twice 128 less 180.67 is 75.33
    {"lighter and darker", "QV8RGBGamma", {-1, 1, 0}, {24, 1, {0x408040}}, {24, 1, {0x804B40}}},
    {"5 bits lose a level", "QV8RGBLevel", {0, 0, 0}, {16, 3, {0x0421, 0x8000, 0xFFFF}}, {16, 3, {0, 0, 0x7FFF}}},
    {"6 bits", "QV8RGBLevel", {0, 0, 0}, {565, 2, {21 << 5, 20 << 5}}, {16, 2, {21 << 5, 19 << 5}}},
    {"luminance from black", "QV8YCCRev", {1, 0, 0}, {24, 1, {0}}, {24, 1, {0xFFFFFF}}},
    {"to red", "QV8YCCLevel", {0, 100, 0}, {24, 1, {0}}, {24, 1, {140 << 16}}},
    {"to blue", "QV8YCCLevel", {0, 0, 100}, {24, 1, {0}}, {24, 1, {177}}},
    {"to white", "QV8YCCLevel", {1000, 0, 0}, {24, 1, {0x808080}}, {24, 1, {0xFFFFFF}}},
    // Red 64: luminance 19.136, differences 32 and -10.799, which become 32 and -11 around 128
    {"there and back", "QV8YCCLevel", {0, 0, 0}, {24, 1, {0x400000}}, {24, 1, {0x3F0000}}},
    {"lighter", "QV8YCCGamma", {-1, 0, 0}, {24, 1, {0x400000}}, {24, 1, {0x713131}}},
    {"grey", "QV8Chroma", {-100}, {24, 1, {0x400000}}, {24, 1, {19 * G}}},
    {"twice the colour", "QV8Chroma", {100}, {24, 1, {0x400000}}, {24, 1, {108 << 16}}},
    {"no more", "QV8Chroma", {0}, {16, 1, {0x0421}}, {16, 1, {0x0421}}},
    {"true colours", "QV8SetGray", {}, {24, 3, {0x400000, 0x00FF00, 0x0000FF}}, {24, 3, {19 * G, 149 * G, 29 * G}}},
    {"127 is black", "QV8SetGray", {}, {1, 2, {0, 1}, {0x81807F, 0x807F7F}}, {1, 2, {1, 0}, {0, 0xFFFFFF}}},
    {"one of 16", "QV8SetGray", {}, {4, 1, {3}, {0, 0, 0, 0x00FF00}}, {4, 1, {8}}},
    {"the level is the index", "QV8SetGray", {}, {8, 1, {1}, {0, 0x00FF00}}, {8, 1, {149}}},

    // --- Depth ---
    {"to 16 bits", "QV8ConvertColor", {16, 0, 0, 0}, {24, 1, {0x09FF08}}, {16, 1, {0x07E0}}},
    {"from 5-6-5", "QV8ConvertColor", {24, 0, 0, 0}, {565, 2, {0x07E0, 0x0400}}, {24, 2, {0x00FF00, 0x008100}}},
    {"a short table stays short",
     "QV8ConvertColor",
     {8, 0, 0, 0},
     {4, 2, {2, 1}, {1, 2, 3}},
     {8, 2, {2, 1}, {1, 2, 3}}},
    {"a table to grey", "QV8ConvertColor", {80, 0, 0, 0}, {8, 1, {1}, {0, 0x00FF00}}, {8, 1, {149}}},
    {"white from the threshold on",
     "QV8ConvertColor",
     {1, 0, 0, 254},
     {24, 3, {0, 0xFEFFFF, 0xFFFFFF}},
     {1, 3, {0, 1, 1}, {0, 0xFFFFFF}}},
    {"only white", "QV8ConvertColor", {1, 0, 0, 255}, {24, 3, {0, 0xFEFFFF, 0xFFFFFF}}, {1, 3, {0, 0, 1}}},
    // 7/16 of 100 makes the next one 143, of -112 the last one 51
    {"an error goes on", "QV8ConvertColor", {1, 0, 1, 128}, {24, 3, {100 * G, 100 * G, 100 * G}}, {1, 3, {0, 1, 0}}},
    {"six levels",
     "QV8ConvertColor",
     {8, 1, 0, 0},
     {24, 4, {0x010101, 0x1A1A1A, 0xFF0000, 0x0000FF}},
     {8, 4, {0, 43, 5, 180}}},
    {"the nearest of 16",
     "QV8ConvertColor",
     {4, 1, 0, 0},
     {24, 4, {0xC8BEB4, 0x400000, 0x7F7F7F, 0x0000FF}},
     {4, 4, {8, 1, 7, 12}}},
    {"the most used first",
     "QV8ConvertColor",
     {4, 0, 0, 0},
     {8, 6, {0, 1, 1, 1, 2, 2}, {0x1E140A, 0xFAC864, 0x4600FF}},
     {4, 6, {2, 0, 0, 0, 1, 1}, {0xFAC864, 0x4600FF, 0x1E140A, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}}},

    // --- Filters ---
    {.what = "the pixel itself",
     .name = "QV8CustomFilter",
     .own = {3, 0, 1, 1, 1},
     .before = {24, 2, {0x102030, 0xFFFEFD}},
     .after = {24, 2, {0x102030, 0xFFFEFD}},
     .weights = {{40, 3}}},
    {.what = "no weights, without green",
     .name = "QV8CustomFilter",
     .own = {1, 7, 1, 0, 1},
     .before = {24, 1, {0x102030}},
     .after = {24, 1, {0x072007}}},
    {.what = "the right neighbour, repeated at the border",
     .name = "QV8CustomFilter",
     .own = {1, 0, 1, 1, 1},
     .before = {24, 3, {1, 2, 3}},
     .after = {24, 3, {2, 3, 3}},
     .weights = {{41, 1}}},
    {.what = "the upper neighbour",
     .name = "QV8CustomFilter",
     .own = {1, 0, 1, 1, 1},
     .before = {24, 1, {1, 2, 3}},
     .after = {24, 1, {1, 1, 2}},
     .weights = {{31, 1}}},
    {.what = "truncated toward zero before the offset",
     .name = "QV8CustomFilter",
     .own = {9, 5, 1, 1, 1},
     .before = {24, 2, {8, 18}},
     .after = {24, 2, {0x050505, 0x050503}},
     .weights = {{40, -1}}},
    {.what = "sums beyond 16 bits",
     .name = "QV8CustomFilter",
     .own = {255, 0, 1, 1, 1},
     .before = {24, 2, {255, 128}},
     .after = {24, 2, {255, 130}},
     .weights = {{40, 260}}},
    {"lit from the right", "QV8Emboss", {0, 5, 128}, {24, 3, {10, 20, 30}}, {24, 3, {0x8080BC, 0x8080F8, 0x8080BC}}},
    {"flat", "QV8Emboss", {0, 0, 128}, {24, 3, {10, 20, 30}}, {24, 3, {0x80808C, 0x808098, 0x80808C}}},
    {"lit from below", "QV8Emboss", {2, 5, 0}, {24, 1, {10, 20, 30}}, {24, 1, {60, 120, 60}}},
    {"boxes are cut at the border", "QV8Shade", {1}, {24, 3, {10, 20, 40}}, {24, 3, {15, 23, 30}}},
    {"away from the box", "QV8Sharp", {200}, {8, 3, {10, 20, 40}}, {8, 3, {0, 0, 100}}},
    {"one pixel stands out",
     "QV8RemoveNoise",
     {0, 0},
     {24, 3, {G, G, G, G, 0xFFFFFF, G, G, G, G}},
     {24, 3, {G, G, G, G, G, G, G, G, G}}},
    {"more than 100", "QV8RemoveNoise", {1, 155}, {24, 3, {0, 50, 200}}, {24, 3, {0, 200, 50}}},
    {"a level is stored as an index", "QV8RemoveNoise", {0, 0}, {8, 1, {10}, ReversedRamp()}, {8, 1, {245}}},
    {"neither", "QV8RemoveNoise", {2, 255}, {16, 2, {0x0421, 0xFFFF}}, {16, 2, {0x0421, 0xFFFF}}},
    {"three in a row", "QV8AntiAlias", {}, {24, 3, {10, 20, 40}}, {24, 3, {15, 23, 30}}},
    {"blocks of four",
     "QV8Mosaic",
     {4, 1},
     {24, 10, {0, 10, 20, 30, 40, 50, 60, 70, 80, 90}},
     {24, 10, {15, 15, 15, 15, 55, 55, 55, 55, 85, 85}}},
    {"from the bottom", "QV8Mosaic", {0, 2}, {24, 1, {30, 20, 10}}, {24, 1, {30, 15, 15}}},
    {"mostly white, or half", "QV8Mosaic", {3, 1}, {1, 5, {1, 0, 1, 1, 0}}, {1, 5, {1, 1, 1, 0, 0}}},
    {"simple difference", "QV8Outline", {1, 0, 1}, {24, 2, {0x100000, 0x400000}}, {24, 2, {48 * G, 0}}},
    {"Roberts", "QV8Outline", {3, 7, 1}, {24, 2, {10, 20, 40, 80}}, {24, 2, {72 * G, 84 * G, 56 * G, 0}}},
    {"Sobel twice", "QV8Outline", {3, 2, 2}, {24, 3, {0, 10, 20}}, {24, 3, {80 * G, 160 * G, 80 * G}}},

    // --- Selection ---
    {.what = "the box of a polygon",
     .name = "QV8SelectImage",
     .own = {255, 0, 255},
     .before = {24, 4, {1, 2, 3, 4, 5, 6, 7, 8}},
     .after = {24, 2, {2, 3, 6, 7}},
     .corners = {{1, 0}, {2, 0}, {2, 1}, {1, 1}},
     .maskAfter = {1, 1, 1, 1}},
    {.what = "near in all channels together",
     .name = "QV8AutoSelectImage",
     .own = {16, 16, 16, 0, 10},
     .before = {24, 3, {0x101010, 0x1A1A1A, 0x1B1A1A}},
     .after = {24, 3, {0x101010, 0x1A1A1A, 0x1B1A1A}},
     .maskAfter = {1, 1, 0}},
    {.what = "as bright as blue",
     .name = "QV8AutoSelectImage",
     .own = {0, 0, 255, 2, 0},
     .before = {24, 3, {0x610000, 0x640000, 0x650000}},
     .after = {24, 3, {0x610000, 0x640000, 0x650000}},
     .maskAfter = {1, 1, 0}},

    // --- Geometry ---
    {"each pixel twice", "QV8Resize", {4, 1, 0}, {24, 2, {10, 20}}, {24, 4, {10, 10, 20, 20}}},
    {"halfway between", "QV8Resize", {4, 1, 1}, {24, 2, {10, 20}}, {24, 4, {10, 15, 20, 20}}},
    // The second group is two pixels wide.
    {"one of a group", "QV8Resize", {2, 1, 0}, {24, 4, {10, 20, 30, 40}}, {24, 2, {10, 20}}},
    {"the mean of a group", "QV8Resize", {2, 1, 1}, {24, 4, {10, 20, 30, 40}}, {24, 2, {10, 25}}},
    {"mirrored", "QV8Rotation", {0, 1, 0, 0, 0, 0, 0, 0}, {24, 3, {4, 5, 6, 1, 2, 3}}, {24, 3, {6, 5, 4, 3, 2, 1}}},
    {"flipped", "QV8Rotation", {0, 0, 1, 0, 0, 0, 0, 0}, {24, 3, {4, 5, 6, 1, 2, 3}}, {24, 3, {1, 2, 3, 4, 5, 6}}},
    {"to the left",
     "QV8Rotation",
     {9000, 0, 0, 1, 0, 0, 9, 0},
     {24, 3, {4, 5, 6, 1, 2, 3}},
     {24, 2, {6, 3, 5, 2, 4, 1}}},
    {"half a turn",
     "QV8Rotation",
     {-18000, 0, 0, 1, 0, 0, 9, 0},
     {24, 3, {4, 5, 6, 1, 2, 3}},
     {24, 3, {3, 2, 1, 6, 5, 4}}},
    {"to the right",
     "QV8Rotation",
     {-9000, 0, 0, 1, 0, 0, 9, 0},
     {24, 3, {4, 5, 6, 1, 2, 3}},
     {24, 2, {1, 4, 2, 5, 3, 6}}},
    // One column less than needed.
    {"size kept", "QV8Rotation", {9000, 0, 0, 1, 0, 0, 9, 1}, {24, 3, {4, 5, 6, 1, 2, 3}}, {24, 3, {6, 3, 9, 5, 2, 9}}},
    {"size kept, to the right",
     "QV8Rotation",
     {27000, 0, 0, 1, 0, 0, 9, 1},
     {24, 3, {4, 5, 6, 1, 2, 3}},
     {24, 3, {9, 2, 5, 9, 3, 6}}},
    // Each row is read from the one above.
    {"an upright area",
     "QV8Affine",
     {1, 3, 1, 1, 3, 1, 3, 3},
     {8, 4, {1, 2, 3, 4, 11, 12, 13, 14, 21, 22, 23, 24, 31, 32, 33, 34}},
     {8, 2, {2, 3, 12, 13}}},
    {"above the picture there is nothing",
     "QV8Affine",
     {1, 2, 1, 0, 3, 0, 3, 2},
     {8, 4, {1, 2, 3, 4, 11, 12, 13, 14, 21, 22, 23, 24}},
     {8, 2, {0, 0, 2, 3}}},

    // --- Composition ---
    {.what = "half white",
     .name = "QV8Layer",
     .own = {128, 1, 1, 1, 0, 0, 0, 0, 0, 1},
     .before = {24, 2, {0, 0}},
     .after = {24, 2, {0x808080, 0}},
     .second = {24, 1, {0xFFFFFF}}},
    {.what = "around both",
     .name = "QV8Layer",
     .own = {255, 1, 2, 3, 7, 8, 9, 1, 1, 0},
     .before = {24, 1, {0xAA}},
     .after = {24, 2, {0xAA, 0x070809, 0x070809, 0xBB}},
     .second = {24, 1, {0xBB}}},
    {.what = "a transparent colour",
     .name = "QV8Layer",
     .own = {255, 1, 2, 3, 0, 0, 0, 0, 0, 1},
     .before = {24, 3, {5, 6, 7}},
     .after = {24, 3, {5, 0x010204, 7}},
     .second = {24, 2, {0x010203, 0x010204}}},
    {.what = "its middle at the place",
     .name = "QV8PasteImage",
     .own = {0, 0, 0, 255, 1, 1, 1},
     .before = {24, 3, {0, 0, 0, 0, 0, 0, 0, 0, 0}},
     .after = {24, 3, {0, 0, 0, 4, 5, 6, 1, 2, 3}},
     .second = {24, 3, {4, 5, 6, 1, 2, 3}}},
    {.what = "turned, but for a clear colour",
     .name = "QV8PasteImage",
     .own = {9000, 0, 0, 255, 1, 1, 1},
     .before = {24, 3, {0, 0, 0, 0, 0, 0, 0, 0, 0}},
     .after = {24, 3, {0, 6, 3, 0, 0, 2, 0, 4, 1}},
     .second = {24, 3, {4, 5, 6, 1, 2, 3}},
     .clear = {5}},
    // Places are cut off toward the middle.
    {.what = "by an eighth",
     .name = "QV8PasteImage",
     .own = {4500, 0, 0, 255, 1, 1, 1},
     .before = {24, 3, {0, 0, 0, 0, 0, 0, 0, 0, 0}},
     .after = {24, 3, {0, 5, 6, 5, 5, 5, 4, 5, 2}},
     .second = {24, 3, {4, 5, 6, 1, 2, 3}}},

    // --- Creation and marks ---
    {"black of two", "QV8CreateImage", {2, 1, 127, 127, 127}, {1, 1, {0}}, {1, 2, {0, 0}, {0, 0xFFFFFF}}},
    {"white of two", "QV8CreateImage", {2, 1, 0, 129, 255}, {1, 1, {0}}, {1, 2, {1, 1}}},
    {"dark red of 16", "QV8CreateImage", {0, -5, 64, 0, 0}, {4, 1, {0}}, {4, 1, {1}}},
    {"of 216", "QV8CreateImage", {1, 1, 60, 120, 250}, {8, 1, {0}}, {8, 1, {193}}},
    {"of 16 bits", "QV8CreateImage", {1, 1, 200, 128, 8}, {16, 1, {0}}, {16, 1, {24 << 10 | 15 << 5}}},
    // Luminance 19 and 30; the colour differences stay.
    {.what = "raised where the pattern is",
     .name = "QV8SetSecretImage",
     .own = {0, 0, 0, 0, 0, 0, 0, 30, 0, 0, 0, 0},
     .before = {24, 2, {0x400000, 0x400000}},
     .after = {24, 2, {0x5D1D1D, 0x400000}},
     .mask = {1, 0}},
    {.what = "risen by ten",
     .name = "QV8CheckSecretImage",
     .own = {10},
     .before = {24, 2, {0x400000, 0x400000}},
     .after = {1, 2, {0, 1}, {0, 0xFFFFFF}},
     .second = {24, 2, {0x600000, 0x640000}}},
};

TEST(Examples, ComeOutAsByHand) {
    for (const Example& example : kExamples) {
        SCOPED_TRACE(std::string(example.name) + ": " + example.what);
        const Export& row = ExportNamed(example.name);
        const Pixels masked = {1, example.before.width, example.mask};
        Area area;
        area.type = !example.corners.empty() ? DWORD{QV8_AREA_POLYGON}
                    : example.mask.empty()   ? DWORD{QV8_AREA_WHOLE}
                                             : DWORD{QV8_AREA_MASK};
        area.points = example.corners;
        area.inside = example.inside;
        const Scene scene = {Source(MakePicture(example.before)),
                             Source(example.mask.empty() ? BlankPicture(1, 1, 1) : MakePicture(masked)),
                             Source(MakePicture(example.second)), area};
        const Call call = scene.AsCall();
        Arguments arguments;
        DrawArguments(row, call, {}, arguments);
        SetOwn(row, example, arguments);
        const Outcome outcome = WatchExport(row, call, {}, arguments);
        EXPECT_EQ(outcome.status, QV8_STATUS_SUCCESS);
        ASSERT_NE(outcome.image, nullptr);
        const Picture result{ReadBlock(outcome.image.get())};
        EXPECT_EQ(result.Width(), example.after.width);
        EXPECT_EQ(Hex(PixelsOf(result)), Hex(example.after.pixels));
        if (!example.after.table.empty()) {
            EXPECT_EQ(Hex(TableOf(result)), Hex(example.after.table));
        }
        if (!example.maskAfter.empty()) {
            EXPECT_EQ(Hex(PixelsOf(Picture{ReadBlock(outcome.mask.get())})), Hex(example.maskAfter));
        }
        EXPECT_TRUE(scene.Untouched());
    }
}

} // namespace
} // namespace test

#include "checksums/cases.h"

#include <algorithm>
#include <cstring>

namespace test {
namespace {

constexpr int kCasesPerForm = 8; // two forms make one polygon or ellipse entry
constexpr int kCasesWithoutArea = 48;
constexpr int kCasesOf24Bits = 160; // of exports that take no other pictures

// Wide ones beyond a chunk of pixels, tall and tiny ones, and most of a size between.
Sides AnySize(int i, Random& random) {
    Sides size = {RandomSide(random), random.Between(1, 24)};
    switch (i % 8) {
    case 0:
        return {1000 + size.width, (size.height + 7) / 8};
    case 1:
        return {(size.width + 34) / 35, 300 + 16 * size.height};
    case 2:
        return {(size.width + 49) / 50, (size.height + 7) / 8};
    default:
        return size;
    }
}

// Changes every byte of the pixels: change(byte, its place).
template <class Change>
void ForPixelBytes(Picture& picture, Change change) {
    for (std::size_t i = picture.PixelOffset(); i != picture.bytes.size(); ++i) {
        picture.bytes[i] = static_cast<BYTE>(change(picture.bytes[i], i));
    }
}

// Noise is a rare picture: few colours, so that many pixels are alike; only 0 and 255; white with a few other pixels;
// soft ramps, whose colours crowd as in photographs; levels around the middle.
void Restyle(Picture& picture, Random& random) {
    const std::size_t rowBytes = picture.RowBytes();
    switch (random.Between(0, 9)) {
    case 0:
        return ForPixelBytes(picture, [](BYTE byte, std::size_t) { return byte & 0xC1; });
    case 1:
        return ForPixelBytes(picture, [](BYTE byte, std::size_t) { return byte < 128 ? 0 : 255; });
    case 2:
        return ForPixelBytes(picture, [](BYTE byte, std::size_t) { return byte < 240 ? 255 : byte * 16; });
    case 3:
        return ForPixelBytes(picture, [rowBytes](BYTE byte, std::size_t at) {
            return at % rowBytes / 3 * (1 + at % 3) / 2 + at / rowBytes * 3 + byte % 8;
        });
    case 4:
        return ForPixelBytes(picture, [](BYTE byte, std::size_t) { return 126 + byte % 4; });
    case 5: { // pixels that repeat
        const std::size_t period = 12 * static_cast<std::size_t>(random.Between(1, 4));
        for (std::size_t i = picture.PixelOffset() + period; i < picture.bytes.size(); ++i) {
            picture.bytes[i] = picture.bytes[i - period];
        }
        return;
    }
    default:
        return;
    }
}

void RestyleTable(const Layout& layout, Picture& picture, Random& random) {
    const int kind = random.Between(0, 2);
    for (std::size_t i = 0; layout.table == Table::kRandom && layout.bits <= 8 && i != picture.ColourCount(); ++i) {
        for (int c = 0; c != 3; ++c) {
            BYTE& level = picture.TableEntry(i)[c];
            level = kind == 0   ? static_cast<BYTE>(126 + level % 4)
                    : kind == 1 ? static_cast<BYTE>(level & 0xE0)
                                : level;
        }
    }
}

Picture AnyPicture(const Layout& layout, const Sides& size, Random& random) {
    Picture picture = RandomPicture(layout, size.width, size.height, random);
    Restyle(picture, random);
    RestyleTable(layout, picture, random);
    return picture;
}

// Of the same size where it has to be, then now and then the first one with small changes; else anything.
Picture SecondPicture(const Export& row, const Layout& layout, const Picture& first, int i, Random& random) {
    const bool alike = row.Is(kAlike) || random.Chance(30);
    const Sides size = alike ? Sides{first.Width(), first.Height()} : AnySize(i + random.Between(0, 5), random);
    Picture second = AnyPicture(layout.bits == 24 || random.Chance(30) ? layout : RandomLayout(random), size, random);
    if (alike && second.bytes.size() == first.bytes.size() && random.Chance(60)) {
        const Bytes noise = second.bytes;
        second = first;
        ForPixelBytes(second, [&](BYTE byte, std::size_t at) { return byte + noise[at] % 5 - 2; });
    }
    return second;
}

// Straightened areas some of whose pixels are just far enough from where all of them would meet to have a place.
constexpr int kFlatAreas[][8] = {
    {426, 216, 12, 81, 992, 0, 613, 82}, {561, 286, 216, 23, 719, 9, 595, 63}, {363, 277, 408, 7, 674, 88, 514, 174}};

Colour AnyPixel(const Picture& picture, Random& random) {
    const int x = random.Between(0, picture.Width() - 1);
    return picture.ColourAt(x, random.Between(0, picture.Height() - 1));
}

void UseCase(const std::string& key, const Export& row, const Layout& layout, AreaForm form, int i, Random& random,
             const std::function<void(const Case&)>& use) {
    const bool isFlat = row.Takes(Role::kDown) && !row.TakesSecond() && i < static_cast<int>(std::size(kFlatAreas));
    const Sides size = isFlat ? Sides{1000, 300} : AnySize(i, random);
    Picture picture = AnyPicture(layout, size, random);
    Picture second = row.TakesSecond() ? SecondPicture(row, layout, picture, i, random) : BlankPicture(1, 1, 1);
    const Picture& masked = row.Takes(Role::kPasted) ? second : picture;
    Picture mask = RandomMask(masked.Width(), masked.Height(), random);
    Area area = RandomArea(form, size.width, size.height, random);
    const Colour colours[] = {AnyPixel(picture, random), AnyPixel(second, random)};
    const Scene scene = {Source(std::move(picture)), Source(std::move(mask)), Source(std::move(second)),
                         std::move(area)};
    Call call = scene.AsCall();
    std::copy(std::begin(colours), std::end(colours), call.colours);
    Arguments arguments;
    DrawArguments(row, call, Parameters(random), arguments);
    for (std::size_t k = 0; isFlat && k != 8; ++k) {
        arguments.values[k + 1].number = kFlatAreas[i][k];
    }
    use({key, row, scene, call, arguments});
}

} // namespace

void ForEachCase(const std::function<void(const Case&)>& use) {
    for (const Export& row : Exports()) {
        for (const Layout& layout : Layouts()) {
            for (const AreaForm form : AreaForms()) {
                if (!row.Accepts(layout) || row.Is(kUnframed) || !row.UsesForm(layout, form)) {
                    continue; // those without a frame make no bytes
                }
                const std::string key = std::string(row.name) + " " + layout.name + " " + NameOf(form);
                // A new row or layout changes no other one's cases.
                Random random(Hash(Bytes(key.begin(), key.end()), static_cast<std::uint64_t>(form)));
                const int others = row.accepts == kAccept24 ? kCasesOf24Bits : kCasesWithoutArea;
                const int cases = row.UsesAreaOf(layout) ? kCasesPerForm : others;
                for (int i = 0; i != cases; ++i) {
                    UseCase(key, row, layout, form, i, random, use);
                }
            }
        }
    }
}

} // namespace test

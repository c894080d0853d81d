#include "support/picture.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <numeric>
#include <utility>

#include "qv8com.h"

namespace test {
namespace {

constexpr unsigned kAccept8Ramp = kAccept8 | kAccept8Grey;
constexpr std::size_t kHeaderBytes = 40;

const Layout kLayouts[] = {
    {"1", 1, BI_RGB, 0, 0, 0, 0, Table::kRandom, kAccept1},
    {"1-short", 1, BI_RGB, 1, 0, 0, 0, Table::kRandom, kAccept1},
    {"4", 4, BI_RGB, 0, 0, 0, 0, Table::kRandom, kAccept4},
    {"4-short", 4, BI_RGB, 5, 0, 0, 0, Table::kRandom, kAccept4},
    {"8", 8, BI_RGB, 0, 0, 0, 0, Table::kRandom, kAccept8},
    {"8-short", 8, BI_RGB, 77, 0, 0, 0, Table::kRandom, kAccept8},
    {"8-grey", 8, BI_RGB, 0, 0, 0, 0, Table::kGreyRamp, kAccept8Ramp},
    {"8-shuffled", 8, BI_RGB, 256, 0, 0, 0, Table::kGreyRampShuffled, kAccept8Ramp},
    {"8-gap", 8, BI_RGB, 0, 0, 0, 0, Table::kGreyGap, kAccept8},
    {"16", 16, BI_RGB, 0, 0, 0, 0, Table::kRandom, kAccept16},
    {"16-555", 16, BI_BITFIELDS, 0, 0x7C00, 0x03E0, 0x001F, Table::kRandom, kAccept16},
    {"16-565", 16, BI_BITFIELDS, 0, 0xF800, 0x07E0, 0x001F, Table::kRandom, kAccept16},
    {"24", 24, BI_RGB, 0, 0, 0, 0, Table::kRandom, kAccept24},
    {"24-table", 24, BI_RGB, 3, 0, 0, 0, Table::kRandom, kAccept24},
    {"32", 32, BI_RGB, 0, 0, 0, 0, Table::kRandom, kAccept32},
    {"32-fields", 32, BI_BITFIELDS, 0, 0xFF0000, 0xFF00, 0xFF, Table::kRandom, kAccept32},
};

void StoreDword(BYTE* address, DWORD value) {
    std::memcpy(address, &value, sizeof value);
}

void FillTable(Picture& picture, const Layout& layout, Random& random) {
    if (layout.table == Table::kRandom) {
        return; // all bytes are random already
    }
    std::vector<BYTE> levels(256);
    std::iota(levels.begin(), levels.end(), BYTE{0});
    if (layout.table == Table::kGreyRampShuffled) {
        for (int last = 255; last > 0; --last) {
            std::swap(levels[static_cast<std::size_t>(last)],
                      levels[static_cast<std::size_t>(random.Between(0, last))]);
        }
    }
    if (layout.table == Table::kGreyGap) {
        const auto missing = static_cast<std::size_t>(random.Between(1, 254));
        levels[missing] = levels[missing - 1];
    }
    for (std::size_t i = 0; i != levels.size(); ++i) {
        std::fill_n(picture.TableEntry(i), 3, levels[i]);
    }
}

Colour Unpack16(unsigned word, bool is565) {
    const unsigned blue = word & 31U;
    const unsigned green = is565 ? word >> 5U & 63U : word >> 5U & 31U;
    const unsigned red = is565 ? word >> 11U & 31U : word >> 10U & 31U;
    return {static_cast<BYTE>(blue * 255 / 31), static_cast<BYTE>(green * 255 / (is565 ? 63 : 31)),
            static_cast<BYTE>(red * 255 / 31)};
}

} // namespace

std::span<const Layout> Layouts() {
    return kLayouts;
}

const Layout& LayoutNamed(const std::string& name) {
    const auto* const found = std::find_if(std::begin(kLayouts), std::end(kLayouts),
                                           [&](const Layout& layout) { return name == layout.name; });
    EXPECT_NE(found, std::end(kLayouts)) << name;
    return found != std::end(kLayouts) ? *found : kLayouts[0];
}

std::size_t RowBytesOf(int bits, int width) {
    return (static_cast<std::size_t>(bits) * static_cast<std::size_t>(width) + 31) / 32 * 4;
}

BITMAPINFOHEADER Picture::Header() const {
    BITMAPINFOHEADER header;
    std::memcpy(&header, bytes.data(), sizeof header);
    return header;
}

void Picture::SetHeader(const BITMAPINFOHEADER& header) {
    std::memcpy(bytes.data(), &header, sizeof header);
}

std::size_t Picture::ColourCount() const {
    const BITMAPINFOHEADER header = Header();
    if (header.biClrUsed != 0) {
        return header.biClrUsed;
    }
    return header.biBitCount <= 8 ? std::size_t{1} << header.biBitCount : 0;
}

std::size_t Picture::PixelOffset() const {
    const BITMAPINFOHEADER header = Header();
    const bool hasMasks = header.biCompression == BI_BITFIELDS && (header.biBitCount == 16 || header.biBitCount == 32);
    return kHeaderBytes + 4 * ColourCount() + (hasMasks ? 12 : 0);
}

std::size_t Picture::RowBytes() const {
    return RowBytesOf(Bits(), Width());
}

std::size_t Picture::PixelAddress(int x, int row) const {
    return PixelOffset() + static_cast<std::size_t>(row) * RowBytes() +
           static_cast<std::size_t>(x) * static_cast<std::size_t>(Bits()) / 8;
}

unsigned Picture::Index(int x, int row) const {
    const unsigned bits = static_cast<unsigned>(Bits());
    const unsigned shift = 8 - bits - static_cast<unsigned>(x) * bits % 8;
    return static_cast<unsigned>(bytes[PixelAddress(x, row)]) >> shift & ((1U << bits) - 1);
}

void Picture::SetIndex(int x, int row, unsigned index) {
    const unsigned bits = static_cast<unsigned>(Bits());
    const unsigned shift = 8 - bits - static_cast<unsigned>(x) * bits % 8;
    BYTE& byte = bytes[PixelAddress(x, row)];
    byte = static_cast<BYTE>((byte & ~(((1U << bits) - 1) << shift)) | index << shift);
}

bool Picture::Is565() const {
    DWORD redMask = 0;
    if (Header().biCompression == BI_BITFIELDS) {
        std::memcpy(&redMask, &bytes[kHeaderBytes], sizeof redMask);
    }
    return redMask == 0xF800;
}

Colour Picture::ColourAt(int x, int row) const {
    const int bits = Bits();
    const bool isKnownDepth = bits == 1 || bits == 4 || bits % 8 == 0;
    if (!isKnownDepth || PixelAddress(x, row) + static_cast<std::size_t>(bits + 7) / 8 > bytes.size()) {
        return {0, 0, 0}; // the header was made to tell what is not there
    }
    if (Bits() <= 8) {
        const unsigned index = Index(x, row);
        if (index >= ColourCount()) {
            return {0, 0, 0};
        }
        const BYTE* const entry = TableEntry(index);
        return {entry[0], entry[1], entry[2]};
    }
    const BYTE* const pixel = &bytes[PixelAddress(x, row)];
    if (Bits() == 16) {
        return Unpack16(static_cast<unsigned>(pixel[0] | pixel[1] << 8), Is565());
    }
    return {pixel[0], pixel[1], pixel[2]};
}

void Picture::SetColour(int x, int row, Colour colour) {
    BYTE* const pixel = &bytes[PixelAddress(x, row)];
    pixel[0] = colour.blue;
    pixel[1] = colour.green;
    pixel[2] = colour.red;
}

Picture RandomPicture(const Layout& layout, int width, int height, Random& random) {
    BITMAPINFOHEADER header = {};
    header.biSize = sizeof header;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = layout.bits;
    header.biCompression = layout.compression;
    header.biSizeImage = random.Next(); // nothing may depend on it
    header.biXPelsPerMeter = random.Between(0, 10000);
    header.biYPelsPerMeter = random.Between(0, 10000);
    header.biClrUsed = layout.coloursUsed;
    header.biClrImportant = random.Byte();

    Picture picture{Bytes(sizeof header)};
    picture.SetHeader(header);
    picture.bytes.resize(picture.PixelOffset() + picture.RowBytes() * static_cast<std::size_t>(height));
    std::generate(picture.bytes.begin() + sizeof header, picture.bytes.end(), [&] { return random.Byte(); });
    if (layout.compression == BI_BITFIELDS) {
        StoreDword(&picture.bytes[kHeaderBytes], layout.redMask);
        StoreDword(&picture.bytes[kHeaderBytes + 4], layout.greenMask);
        StoreDword(&picture.bytes[kHeaderBytes + 8], layout.blueMask);
    }
    FillTable(picture, layout, random);
    return picture;
}

Picture BlankPicture(int bits, int width, int height) {
    BITMAPINFOHEADER header = {};
    header.biSize = sizeof header;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = static_cast<WORD>(bits);
    Picture picture{Bytes(sizeof header)};
    picture.SetHeader(header);
    picture.bytes.resize(picture.PixelOffset() + picture.RowBytes() * static_cast<std::size_t>(height));
    return picture;
}

int RandomSide(Random& random) {
    return random.Chance(80) ? random.Between(1, 40) : random.Between(41, 140);
}

const Layout& RandomLayout(Random& random) {
    for (;;) {
        const Layout& layout =
            Layouts()[static_cast<std::size_t>(random.Between(0, static_cast<int>(Layouts().size()) - 1))];
        if ((layout.acceptedBy & kAcceptAll) != 0) {
            return layout;
        }
    }
}

Block MakeBlock(const Bytes& bytes) {
    Block block(GlobalAlloc(GHND, bytes.size()));
    EXPECT_NE(block, nullptr);
    if (!bytes.empty()) {
        std::memcpy(GlobalLock(block.get()), bytes.data(), bytes.size());
        GlobalUnlock(block.get());
    }
    return block;
}

Bytes ReadBlock(HGLOBAL block) {
    const void* const address = GlobalLock(block);
    if (address == nullptr) {
        return {};
    }
    Bytes bytes(GlobalSize(block));
    std::memcpy(bytes.data(), address, bytes.size());
    GlobalUnlock(block);
    return bytes;
}

testing::AssertionResult Source::Untouched() const {
    auto result = Holds(block_.get(), picture_);
    return result ? result : result << " (a picture passed in)";
}

testing::AssertionResult Holds(HGLOBAL block, const Picture& expected) {
    if ((GlobalFlags(block) & 0xFFU) != 0) {
        return testing::AssertionFailure() << "still locked";
    }
    const Bytes actual = ReadBlock(block);
    if (actual.size() != expected.bytes.size()) {
        return testing::AssertionFailure() << actual.size() << " bytes instead of " << expected.bytes.size();
    }
    const auto [wanted, found] = std::mismatch(expected.bytes.begin(), expected.bytes.end(), actual.begin());
    if (wanted == expected.bytes.end()) {
        return testing::AssertionSuccess();
    }
    const auto offset = wanted - expected.bytes.begin();
    return testing::AssertionFailure() << "byte " << offset << " is " << int{*found} << " instead of " << int{*wanted}
                                       << " in " << expected.Width() << " x " << expected.Height() << " at "
                                       << expected.Bits() << " bits";
}

testing::AssertionResult IsSound(HGLOBAL block, bool orMore) {
    const Picture picture{ReadBlock(block)};
    if (picture.bytes.size() < kHeaderBytes || (GlobalFlags(block) & 0xFFU) != 0) {
        return testing::AssertionFailure() << "locked, or without a header";
    }
    static constexpr int kDepths[] = {1, 4, 8, 16, 24, 32};
    const bool isDepth = std::find(std::begin(kDepths), std::end(kDepths), picture.Bits()) != std::end(kDepths);
    if (!isDepth || picture.Width() < 1 || picture.Height() < 1) {
        return testing::AssertionFailure() << picture.Width() << " x " << picture.Height() << " at " << picture.Bits();
    }
    const std::size_t before = kHeaderBytes + static_cast<std::size_t>(GetDibPalSize(picture.bytes.data()));
    const std::size_t size = before + picture.RowBytes() * static_cast<std::size_t>(picture.Height());
    const bool fits = orMore ? size <= picture.bytes.size() : size == picture.bytes.size();
    if (fits) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << size << " bytes described, " << picture.bytes.size() << " there at "
                                       << picture.Bits() << " bits, " << picture.Width() << " x " << picture.Height();
}

std::uint64_t Hash(const Bytes& bytes, std::uint64_t seed) {
    std::uint64_t hash = seed;
    for (const BYTE byte : bytes) {
        hash = (hash ^ byte) * 0x100000001B3ULL;
    }
    return hash;
}

} // namespace test

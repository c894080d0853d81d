// Pictures of every depth and layout, made, read and compared the slow obvious way.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "qv8platform.h"
#include "support/random.h"

namespace test {

using Bytes = std::vector<BYTE>;

// What an effect can accept, one bit each.
enum : unsigned {
    kAccept1 = 1,
    kAccept4 = 2,
    kAccept8Grey = 4,
    kAccept8 = 8,
    kAccept16 = 16,
    kAccept24 = 32,
    kAccept32 = 64,
    kAcceptAll = 127,
    kAcceptOdd = 128, // 16 and 32 bits in layouts that nothing else knows
};

enum class Table { kRandom, kGreyRamp, kGreyRampShuffled, kGreyGap }; // the last lacks one level of grey

struct Layout {
    const char* name;
    WORD bits;
    DWORD compression;
    DWORD coloursUsed;
    DWORD redMask, greenMask, blueMask; // stored when `compression` is BI_BITFIELDS
    Table table;
    unsigned acceptedBy; // any of these bits accepts the layout
};

// Every layout that is a good picture.
std::span<const Layout> Layouts();
const Layout& LayoutNamed(const std::string& name);

struct Colour {
    BYTE blue, green, red;
    bool operator==(const Colour&) const = default;
};

// A packed picture. Rows count from the bottom, as they lie in memory.
struct Picture {
    Bytes bytes;

    BITMAPINFOHEADER Header() const;
    void SetHeader(const BITMAPINFOHEADER& header);
    int Width() const {
        return Header().biWidth;
    }
    int Height() const {
        return Header().biHeight;
    }
    int Bits() const {
        return Header().biBitCount;
    }

    std::size_t ColourCount() const; // entries of the table, at any depth
    std::size_t PixelOffset() const;
    std::size_t RowBytes() const;

    BYTE* TableEntry(std::size_t index) {
        return &bytes[40 + 4 * index];
    }
    const BYTE* TableEntry(std::size_t index) const {
        return &bytes[40 + 4 * index];
    }
    std::size_t PixelAddress(int x, int row) const; // offset of the byte that holds the pixel or begins it

    unsigned Index(int x, int row) const; // 1, 4 and 8 bits
    void SetIndex(int x, int row, unsigned index);
    bool Is565() const;
    Colour ColourAt(int x, int row) const;         // any depth; an index beyond the table is black
    void SetColour(int x, int row, Colour colour); // 24 and 32 bits; other bytes stay
};

std::size_t RowBytesOf(int bits, int width);

// A picture whose every byte that may be anything is random: pixels, padding, fourth bytes, colours, resolutions.
Picture RandomPicture(const Layout& layout, int width, int height, Random& random);
// An empty picture with a full table of zeros.
Picture BlankPicture(int bits, int width, int height);
int RandomSide(Random& random);
// Any layout that most effects accept.
const Layout& RandomLayout(Random& random);

// --- Blocks of global memory -----------------------------------------------------------------------------------------

struct FreeBlock {
    void operator()(HGLOBAL block) const {
        GlobalFree(block);
    }
};
using Block = std::unique_ptr<void, FreeBlock>;

Block MakeBlock(const Bytes& bytes);
// The first `size` bytes of a block, or all of it.
Bytes ReadBlock(HGLOBAL block);

// A picture given to a call, with what is needed to prove that the call left it alone.
class Source {
public:
    explicit Source(Picture picture) : picture_(std::move(picture)), block_(MakeBlock(picture_.bytes)) {}

    HGLOBAL Handle() const {
        return block_.get();
    }
    const Picture& Content() const {
        return picture_;
    }
    testing::AssertionResult Untouched() const; // same bytes, no lock

private:
    Picture picture_;
    Block block_;
};

// Whether the block holds exactly this picture, unlocked.
testing::AssertionResult Holds(HGLOBAL block, const Picture& expected);

// Whether the block holds a picture that its header describes, and nothing else unless `orMore`.
testing::AssertionResult IsSound(HGLOBAL block, bool orMore = false);

std::uint64_t Hash(const Bytes& bytes, std::uint64_t seed);
constexpr std::uint64_t kHashSeed = 0xCBF29CE484222325ULL;

} // namespace test

#include <cmath>
#include <cstring>
#include <utility>

#include "pictures/codec.h"
#include "pictures/metadata.h"

namespace {

// Where the pixels of the upright picture come from: it begins in one corner and goes along one side.
struct Turn {
    bool fromRight;
    bool fromBottom;
    bool alongColumns; // rows of the upright picture are columns of the other
};

constexpr Turn kTurns[] = {{false, false, false}, {true, false, false}, {true, true, false}, {false, true, false},
                           {false, false, true},  {false, true, true},  {true, true, true},  {true, false, true}};

// Pixels of at least a byte are copied as bytes, smaller ones as bits.
void CopyPixel(const BYTE* fromRow, std::size_t fromX, BYTE* toRow, std::size_t toX, unsigned depth) {
    if (depth >= 8) {
        const std::size_t bytes = depth / 8;
        for (std::size_t i = 0; i < bytes; ++i) {
            toRow[toX * bytes + i] = fromRow[fromX * bytes + i];
        }
        return;
    }
    const std::size_t inByte = 8 / depth;
    const unsigned mask = (1U << depth) - 1;
    const unsigned value = fromRow[fromX / inByte] >> (8 - depth - fromX % inByte * depth) & mask;
    const std::size_t shift = 8 - depth - toX % inByte * depth;
    BYTE& byte = toRow[toX / inByte];
    byte = static_cast<BYTE>((byte & ~(mask << shift)) | value << shift);
}

// In squares, so that rows of the one and columns of the other picture stay in the cache.
void CopyTurned(const LockedPicture& from, const LockedPicture& to, const Turn& turn) {
    constexpr std::size_t kSquare = 64;
    const unsigned depth = from.Header().biBitCount;
    for (std::size_t top = 0; top < to.Height(); top += kSquare) {
        for (std::size_t left = 0; left < to.Width(); left += kSquare) {
            for (std::size_t y = top; y < std::min(top + kSquare, to.Height()); ++y) {
                BYTE* const row = to.RowFromTop(y);
                for (std::size_t x = left; x < std::min(left + kSquare, to.Width()); ++x) {
                    std::size_t column = turn.alongColumns ? y : x;
                    std::size_t line = turn.alongColumns ? x : y;
                    column = turn.fromRight ? from.Width() - 1 - column : column;
                    line = turn.fromBottom ? from.Height() - 1 - line : line;
                    CopyPixel(from.RowFromTop(line), column, row, x, depth);
                }
            }
        }
    }
}

} // namespace

Picture Upright(Picture picture, unsigned orientation) {
    if (orientation < 2 || orientation > 8) {
        return picture;
    }
    const Turn& turn = kTurns[orientation - 1];
    const LockedPicture from(picture);
    const std::span table(from.Table(), from.Header().biBitCount <= 8 ? from.TableEntries() : 0);
    Picture turned = NewPicture(turn.alongColumns ? from.Height() : from.Width(),
                                turn.alongColumns ? from.Width() : from.Height(), from.Header().biBitCount, table);
    CopyTurned(from, LockedPicture(turned), turn);
    return turned;
}

void ApplyOrientation(LoadedPicture& loaded, unsigned orientation) {
    loaded.picture = Upright(std::move(loaded.picture), orientation);
    if (orientation >= 5 && orientation <= 8) {
        std::swap(loaded.metadata.xPixelsPerMetre, loaded.metadata.yPixelsPerMetre);
    }
    RefreshExif(loaded.metadata.exif);
}

double DotsPerInch(std::uint32_t perMetre) {
    const double exact = perMetre * 0.0254;
    const double whole = std::round(exact);
    return std::fabs(exact - whole) <= 0.0127 ? whole : exact; // a metre's dots are whole, an inch's were
}

std::uint32_t PerMetre(double dotsPerInch) {
    const double perMetre = std::round(dotsPerInch / 0.0254);
    return perMetre >= 1 && perMetre <= 0x7FFFFFFF ? static_cast<std::uint32_t>(perMetre) : 0;
}

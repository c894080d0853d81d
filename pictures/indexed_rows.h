// Pictures with a colour table for encoders that keep it.
#ifndef QV8_PICTURES_INDEXED_ROWS_H
#define QV8_PICTURES_INDEXED_ROWS_H

#include <vector>

#include "pictures/picture.h"

class IndexedRows {
public:
    explicit IndexedRows(const Picture& picture);

    // Bits of an index: those of the picture, or 2 where 4 entries are enough for one of 4 bits.
    unsigned Depth() const {
        return depth_;
    }
    // As many entries as the picture has and uses, black beyond its own.
    const std::vector<RGBQUAD>& Table() const {
        return table_;
    }
    // Whether the indices are grey levels themselves.
    bool IsGreyRamp() const;

    std::size_t RowBytes() const {
        return row_.size();
    }
    // Row `y` from the top, without padding, unchanged until the next call.
    BYTE* Row(std::size_t y);

private:
    unsigned LargestIndex() const;

    LockedPicture locked_;
    unsigned depth_;
    std::vector<RGBQUAD> table_;
    std::vector<BYTE> row_;
};

// From four indices of 2 bits in a byte to two of 4 bits, and back.
void SpreadTwoBits(const BYTE* from, BYTE* to, std::size_t width);
void PackTwoBits(const BYTE* from, BYTE* to, std::size_t width);

#endif

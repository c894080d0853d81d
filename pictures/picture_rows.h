// The rows of any picture in the form that encoders take: from the top, a byte for each channel.
#ifndef QV8_PICTURES_PICTURE_ROWS_H
#define QV8_PICTURES_PICTURE_ROWS_H

#include <array>
#include <vector>

#include "pictures/picture.h"

class PictureRows {
public:
    enum class Form { kGrey = 1, kColour = 3, kColourAndAlpha = 4 }; // the level; blue, green, red; and alpha

    // Greys where the colour table has nothing else, alpha where a 32-bit picture has it: `fourthByteIsAlpha` says so,
    // or any fourth byte is not 0. Throws a Refusal when the picture has channel masks that the library does not know.
    PictureRows(const Picture& picture, bool fourthByteIsAlpha);

    Form Kind() const {
        return form_;
    }
    std::size_t Channels() const {
        return static_cast<std::size_t>(form_);
    }
    std::size_t Width() const {
        return locked_.Width();
    }
    std::size_t Height() const {
        return locked_.Height();
    }

    // Row `y` from the top, unchanged until the next call.
    BYTE* Row(std::size_t y);

private:
    void FromIndices(const BYTE* from);
    void WithoutFourthByte(const BYTE* from);

    Picture converted_; // of 24 bits, for a picture whose pixels are no whole bytes
    LockedPicture locked_;
    Form form_ = Form::kColour;
    std::array<RGBQUAD, 256> table_{}; // black beyond the picture's own
    std::vector<BYTE> row_;
};

// Whether every entry of the colour table is grey. A picture without a table has none that is.
bool HasGreyTable(const LockedPicture& picture);

// A picture of 16 bits as one of 24. Throws a Refusal when the picture has channel masks that the library does not
// know.
Picture As24Bit(const Picture& picture);

#endif

// Run-length compression of BMP files.
#include "pictures/bmp.h"

namespace {

enum Escape : unsigned { kEndOfRow, kEndOfPicture, kMove }; // larger numbers count pixels that follow one by one

class RunLengths {
public:
    RunLengths(ByteView packed, const BITMAPINFOHEADER& header, BYTE* pixels, std::size_t stride)
        : packed_(packed), nibbles_(header.biBitCount == 4), width_(static_cast<std::size_t>(header.biWidth)),
          height_(static_cast<std::size_t>(header.biHeight)), pixels_(pixels), stride_(stride) {}

    void Decode() {
        bool done = false;
        while (!done) {
            const unsigned count = Next();
            const unsigned value = Next();
            if (count != 0) {
                for (unsigned i = 0; i < count; ++i) {
                    Put(nibbles_ ? value >> (i % 2 == 0 ? 4 : 0) & 15 : value);
                }
            } else {
                done = Follow(value);
            }
        }
    }

private:
    unsigned Next() {
        Require(place_ < packed_.size(), "the file ends within the pixels");
        return packed_[place_++];
    }

    // Some writers compress rows together with what fills them up to whole groups of four bytes.
    void Put(unsigned value) {
        Require(x_ < (width_ + 3) / 4 * 4 && y_ < height_, "its pixels go beyond the picture");
        if (x_ >= width_) {
            ++x_;
            return;
        }
        BYTE* const row = pixels_ + y_ * stride_;
        if (nibbles_) {
            row[x_ / 2] = static_cast<BYTE>(row[x_ / 2] | value << (x_ % 2 == 0 ? 4 : 0));
        } else {
            row[x_] = static_cast<BYTE>(value);
        }
        ++x_;
    }

    // Whether that was the end.
    bool Follow(unsigned escape) {
        switch (escape) {
        case kEndOfRow:
            Require(y_ < height_, "its pixels go beyond the picture");
            x_ = 0;
            ++y_;
            return false;
        case kEndOfPicture:
            return true;
        case kMove:
            x_ += Next();
            y_ += Next();
            return false;
        default:
            PutOneByOne(escape);
            return false;
        }
    }

    void PutOneByOne(unsigned count) {
        const std::size_t begin = place_;
        unsigned both = 0;
        for (unsigned i = 0; i < count; ++i) {
            if (!nibbles_) {
                Put(Next());
            } else {
                both = i % 2 == 0 ? Next() : both;
                Put(both >> (i % 2 == 0 ? 4 : 0) & 15);
            }
        }
        if ((place_ - begin) % 2 != 0) {
            Next(); // to an even number of bytes
        }
    }

    ByteView packed_;
    bool nibbles_;
    std::size_t width_;
    std::size_t height_;
    BYTE* pixels_;
    std::size_t stride_;
    std::size_t place_ = 0;
    std::size_t x_ = 0;
    std::size_t y_ = 0;
};

} // namespace

void DecodeRunLengths(ByteView packed, const BITMAPINFOHEADER& header, BYTE* pixels, std::size_t stride) {
    RunLengths(packed, header, pixels, stride).Decode();
}

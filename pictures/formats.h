// What goes with reading and writing picture files, whatever their format.
#ifndef QV8_PICTURES_FORMATS_H
#define QV8_PICTURES_FORMATS_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "pictures/picture.h"

enum class ImageFormat { kBmp, kPng, kJpeg, kTiff, kWebp };

// What a file says about its picture besides the pixels.
struct Metadata {
    std::vector<BYTE> profile; // ICC
    std::vector<BYTE> exif;    // from the TIFF header on; it asks for no turning, and has no small picture
    std::uint32_t xPixelsPerMetre = 0;
    std::uint32_t yPixelsPerMetre = 0; // 0 when unknown
    bool alpha = false;                // the fourth byte of a 32-bit picture is alpha, even where it is 0 throughout
};

struct ReadOptions {
    // Larger pictures are refused before memory is taken for them.
    std::uint64_t maxPixels = std::uint64_t{256} << 20;
    // Told the size before memory is taken for the pixels, unless empty. May wait for memory of others, or throw.
    std::function<void(std::uint64_t width, std::uint64_t height)> sizeKnown;
};

struct LoadedPicture {
    Picture picture; // stands upright, whatever the file's orientation
    ImageFormat format = ImageFormat::kBmp;
    Metadata metadata;
    std::vector<std::string> notes; // what of the file is not in the picture, a sentence each
};

struct WriteOptions {
    ImageFormat format = ImageFormat::kBmp;
    int quality = 90;         // of JPEG and of lossy WebP, 1..100; JPEG halves no colour from 90 on
    bool progressive = false; // JPEG that appears in steps
    bool lossless = false;    // WebP; pictures with a colour table of other than greys always are
    int compression = -1;     // of PNG and TIFF, 0 (fast) to 9 (small); -1 leaves it to this library
    bool strip = false;       // leave profile, EXIF and resolution out
    bool sync = true;         // the file is on the disk before it takes its place
};

#endif

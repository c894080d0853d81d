// Picture files of all the formats that the program knows.
#ifndef QV8_PICTURES_IMAGE_FILE_H
#define QV8_PICTURES_IMAGE_FILE_H

#include <cstdint>
#include <memory>
#include <string>

#include "pictures/output_file.h"
#include "pictures/picture.h"

enum class ImageFormat { kBmp, kPng, kJpeg };

const char* FormatName(ImageFormat format);

struct LoadedPicture {
    Picture picture;
    ImageFormat format;
};

// Reads a picture; its content tells the format. Throws a Failure with kExitInput that names the file.
LoadedPicture LoadPicture(const std::string& name, std::uint64_t maxPixels);

// The format that the ending of a name asks for. Throws a Failure with kExitUsage when it is not a known one.
ImageFormat FormatForName(const std::string& name);

// Writes a picture under a temporary name; it is in its place after Commit(), and gone otherwise. `quality` (1..100) is
// for JPEG. Throws a Failure with kExitOutput that names the file.
std::unique_ptr<OutputFile> PreparePicture(const Picture& picture, const std::string& name, ImageFormat format,
                                           int quality);

// Writes a picture, all of it or nothing.
void SavePicture(const Picture& picture, const std::string& name, ImageFormat format, int quality);

#endif

// The files in data/pictures, made by other programs, with what those see in them.
#ifndef QV8_TEST_PICTURES_RECORDED_H
#define QV8_TEST_PICTURES_RECORDED_H

#include <cstdint>
#include <string>
#include <vector>

#include "pictures/image_file.h"

using Bytes = std::vector<unsigned char>;

struct Recorded {
    std::string name;
    std::string refusal; // words of the reason, or empty
    std::size_t width = 0;
    std::size_t height = 0;
    unsigned depth = 0;
    std::string pixels; // a hash; "?" where programs need not agree
};

std::vector<Recorded> AllRecorded();

Bytes FileOf(const std::string& name);

// The hash of red, green, blue and alpha from the top.
std::string HashOf(const LoadedPicture& loaded);

inline LoadedPicture ReadRecorded(const std::string& name) {
    return DecodePicture(FileOf(name), name);
}

// Why a file is refused, or nothing when it is not.
std::string RefusalOf(const Bytes& file, const ReadOptions& options = {});

#endif

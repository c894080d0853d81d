// The pictures of one size that rows are timed on: smooth gradients with fine noise.
#pragma once

#include <functional>
#include <map>
#include <string>

#include "qv8effect.h"

namespace bench {

struct Size {
    const char* name;
    int width;
    int height;
};

class Scene {
public:
    explicit Scene(const Size& size) : width(size.width), height(size.height) {}
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;
    ~Scene();

    // Made once for each depth; 8-bit ones have a grey ramp.
    HGLOBAL Picture(int bits = 24) const;
    const BYTE* Pixels(int bits) const;
    // Any other picture, made once under its name.
    HGLOBAL Made(const std::string& name, const std::function<HGLOBAL()>& make) const;
    double PixelCount() const {
        return static_cast<double>(width) * height;
    }

    const int width;
    const int height;

private:
    mutable std::map<std::string, HGLOBAL> pictures_;
};

std::size_t Stride(int width, int bits);

// Where the rows of a picture begin.
BYTE* LockPixels(HGLOBAL picture);

// A progress owner that never cancels, so that no dialog is part of what is timed.
DWORD QuietOwner();

} // namespace bench

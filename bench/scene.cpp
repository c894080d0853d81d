#include "scene.h"

#include <cstring>

#include "qv8com.h"

namespace bench {
namespace {

constexpr std::size_t kHeaderBytes = 40;

int QV8API KeepGoing(int /*percent*/, void* /*context*/) {
    return 1;
}

std::size_t PaletteBytes(int bits) {
    return bits <= 8 ? (std::size_t{1} << bits) * sizeof(RGBQUAD) : 0;
}

void FillRow(BYTE* row, std::size_t stride, int y) {
    unsigned noise = static_cast<unsigned>(y) * 2654435761U + 12345U;
    for (std::size_t i = 0; i != stride; ++i) {
        noise = noise * 1664525U + 1013904223U;
        const auto slope = static_cast<unsigned>(i / 24 + static_cast<std::size_t>(y) / 6);
        row[i] = static_cast<BYTE>(slope + (noise >> 28U));
    }
}

HGLOBAL MakePicture(int width, int height, int bits) {
    const std::size_t tableBytes = PaletteBytes(bits);
    const std::size_t stride = Stride(width, bits);
    const std::size_t imageBytes = stride * static_cast<std::size_t>(height);
    const HGLOBAL picture = GlobalAlloc(GHND, kHeaderBytes + tableBytes + imageBytes);
    auto* const bytes = static_cast<BYTE*>(GlobalLock(picture));
    BITMAPINFOHEADER header = {};
    header.biSize = kHeaderBytes;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = static_cast<WORD>(bits);
    header.biSizeImage = static_cast<DWORD>(imageBytes);
    std::memcpy(bytes, &header, sizeof header);
    for (std::size_t i = 0; i != tableBytes; ++i) {
        bytes[kHeaderBytes + i] = static_cast<BYTE>(i % 4 == 3 ? 0 : i / 4 * 255 / (tableBytes / 4 - 1));
    }
    for (int y = 0; y != height; ++y) {
        FillRow(bytes + kHeaderBytes + tableBytes + static_cast<std::size_t>(y) * stride, stride, y);
    }
    GlobalUnlock(picture);
    return picture;
}

} // namespace

Scene::~Scene() {
    for (const auto& [name, picture] : pictures_) {
        GlobalFree(picture);
    }
}

HGLOBAL Scene::Picture(int bits) const {
    return Made(std::to_string(bits), [&] { return MakePicture(width, height, bits); });
}

const BYTE* Scene::Pixels(int bits) const {
    return LockPixels(Picture(bits));
}

HGLOBAL Scene::Made(const std::string& name, const std::function<HGLOBAL()>& make) const {
    HGLOBAL& picture = pictures_[name];
    if (picture == nullptr) {
        picture = make();
    }
    return picture;
}

std::size_t Stride(int width, int bits) {
    return (static_cast<std::size_t>(width) * static_cast<std::size_t>(bits) + 31) / 32 * 4;
}

BYTE* LockPixels(HGLOBAL picture) {
    auto* const bytes = static_cast<BYTE*>(GlobalLock(picture));
    GlobalUnlock(picture);
    return bytes + kHeaderBytes + PaletteBytes(reinterpret_cast<const BITMAPINFOHEADER*>(bytes)->biBitCount);
}

DWORD QuietOwner() {
    static const DWORD owner = AddProgressOwner(KeepGoing, nullptr);
    return owner;
}

} // namespace bench

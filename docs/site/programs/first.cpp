// The same in C++: pictures free themselves, and a failure is an exception.
#include <qv8com.h>
#include <qv8effect.h>

#include <cstdio>
#include <memory>
#include <stdexcept>
#include <type_traits>
#include <vector>

struct Free {
    void operator()(HGLOBAL picture) const {
        GlobalFree(picture);
    }
};
using Picture = std::unique_ptr<std::remove_pointer_t<HGLOBAL>, Free>;

Picture Checked(HGLOBAL result) {
    if (result == nullptr) {
        throw std::runtime_error(GetErrorStatusText(GetErrorStatus()));
    }
    return Picture(result);
}

// Calls visit(pixel, x, y) for every pixel of a 24-bit picture; pixel[0] is blue, y counts from the top.
template <class Visit>
void ForEachPixel(const Picture& picture, Visit visit) {
    auto* const header = static_cast<BITMAPINFOHEADER*>(GlobalLock(picture.get()));
    const int stride = (header->biWidth * 3 + 3) / 4 * 4;
    for (int y = 0; y < header->biHeight; ++y) {
        BYTE* const row = reinterpret_cast<BYTE*>(header + 1) + (header->biHeight - 1 - y) * stride;
        for (int x = 0; x < header->biWidth; ++x) {
            visit(row + 3 * x, x, y);
        }
    }
    GlobalUnlock(picture.get());
}

int main() try {
    const std::vector<BYTE> rgb{255, 0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 128, 128, 128, 255, 255, 255};
    const Picture source = Checked(QV8CreateImage(3, 2, 24, 0, 0, 0, 0, 0, 0, 0));
    ForEachPixel(source, [&](BYTE* pixel, int x, int y) {
        for (int channel = 0; channel < 3; ++channel) {
            pixel[2 - channel] = rgb[static_cast<std::size_t>(3 * (3 * y + x) + channel)];
        }
    });
    const ImageSet target{source.get(), nullptr};
    const Picture warmer =
        Checked(QV8RGBLevel(&target, QV8_AREA_WHOLE, nullptr, 0, nullptr, TRUE, 30, 5, -30, 0, 0, 0, 0));
    ForEachPixel(warmer, [](const BYTE* pixel, int x, int) {
        std::printf("%3d,%3d,%3d  %s", pixel[2], pixel[1], pixel[0], x == 2 ? "\n" : "");
    });
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}

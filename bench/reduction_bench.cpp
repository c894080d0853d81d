// Colour reduction beside Leptonica's.
#include <leptonica/allheaders.h>

#include <cstdlib>
#include <string>

#include "pictures.h"

namespace bench {
namespace {

// The 24-bit picture as Leptonica holds it.
PIX* SourcePix() {
    static PIX* const picture = [] {
        PIX* const pix = pixCreate(kWidth, kHeight, 32);
        const BYTE* pixel = SourcePixels(24);
        for (int y = kHeight - 1; y >= 0; --y) {
            for (int x = 0; x != kWidth; ++x, pixel += 3) {
                pixSetRGBPixel(pix, x, y, pixel[2], pixel[1], pixel[0]);
            }
        }
        return pix;
    }();
    return picture;
}

void AddReduction(const std::string& name, int depth, bool fixedPalette, bool dither, int sourceDepth = 24) {
    benchmark::RegisterBenchmark((name + "/qv8").c_str(), [=](benchmark::State& state) {
        TimeCall(state, [&] {
            return QV8ConvertColor(SourcePicture(sourceDepth), static_cast<DWORD>(depth), fixedPalette, dither, 128,
                                   QuietOwner(), 0, 0, 0);
        });
    });
}

template <class Operation>
void AddPeer(const std::string& name, Operation operation) {
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        TimePixels(state, [&] {
            PIX* result = operation(SourcePix());
            if (result == nullptr) {
                std::abort();
            }
            pixDestroy(&result);
        });
    });
}

const bool registered = [] {
    AddReduction("24 to 256 dithered", 8, false, true);
    AddPeer("24 to 256 dithered/leptonica",
            [](PIX* source) { return pixMedianCutQuantGeneral(source, 1, 8, 256, 0, 1, 1); });
    AddReduction("24 to 256", 8, false, false);
    AddPeer("24 to 256/leptonica", [](PIX* source) { return pixMedianCutQuantGeneral(source, 0, 8, 256, 0, 1, 1); });
    AddReduction("24 to 216 dithered", 8, true, true);
    AddReduction("24 to 216", 8, true, false);
    AddReduction("24 to 16 dithered", 4, false, true);
    AddReduction("24 to 16", 4, false, false);
    AddReduction("24 to 2 dithered", 1, false, true);
    AddPeer("24 to 2 dithered/leptonica", [](PIX* source) {
        PIX* grey = pixConvertRGBToLuminance(source);
        PIX* const result = pixDitherToBinary(grey);
        pixDestroy(&grey);
        return result;
    });
    AddReduction("grey to 2 dithered", 1, false, true, 8);
    AddPeer("grey to 2 dithered/leptonica", [](PIX* source) {
        static PIX* const grey = pixConvertRGBToLuminance(source);
        return pixDitherToBinary(grey);
    });
    AddReduction("24 to grey", QV8_DEPTH_GREY, false, false);
    return true;
}();

} // namespace
} // namespace bench

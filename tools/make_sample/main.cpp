// Draws the sample picture: a landscape with even gradients, fine texture, sharp edges and strong colours, the same in
// every run. Usage: make_sample OUTPUT.png
#include <cmath>
#include <cstdio>
#include <cstring>
#include <vector>

#include <stb/stb_image_write.h>

#include "noise.h"
#include "scene.h"

namespace {

constexpr int kSupersampling = 3; // points per pixel and direction
constexpr double kGrain = 0.003;

Canvas DrawScene() {
    Canvas canvas(kWidth * kSupersampling, kHeight * kSupersampling);
    for (int y = 0; y < canvas.Height(); ++y) {
        for (int x = 0; x < canvas.Width(); ++x) {
            canvas.At(x, y) = BackdropAt((x + 0.5) / kSupersampling, (y + 0.5) / kSupersampling);
        }
    }
    DrawForeground(canvas, kSupersampling);
    return canvas;
}

Colour MeanAt(Canvas& canvas, int x, int y) {
    Colour sum;
    for (int i = 0; i < kSupersampling * kSupersampling; ++i) {
        sum = sum + canvas.At(x * kSupersampling + i % kSupersampling, y * kSupersampling + i / kSupersampling);
    }
    return sum * (1.0 / (kSupersampling * kSupersampling));
}

unsigned char Level(double value) {
    return static_cast<unsigned char>(std::lround(255 * std::clamp(value, 0.0, 1.0)));
}

// Pixels as a camera would give them: corners a little darker, some grain.
std::vector<unsigned char> Develop(Canvas& canvas) {
    Random random(900);
    std::vector<unsigned char> samples;
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const double fromCentre = std::hypot((x - 0.5 * kWidth) / kWidth, (y - 0.5 * kHeight) / kHeight);
            const double grain = kGrain * (random.Next() + random.Next() - 1);
            const Colour colour = MeanAt(canvas, x, y) * (1.04 - 0.34 * fromCentre * fromCentre);
            for (const double channel : {colour.red, colour.green, colour.blue}) {
                samples.push_back(Level(channel + grain));
            }
        }
    }
    return samples;
}

void Append(void* context, void* data, int size) {
    std::fwrite(data, 1, static_cast<std::size_t>(size), static_cast<std::FILE*>(context));
}

} // namespace

int main(int argc, char** argv) {
    std::FILE* const file = argc == 2 ? std::fopen(argv[1], "wb") : nullptr;
    if (file == nullptr) {
        std::fprintf(stderr, "usage: make_sample OUTPUT.png\n");
        return 2;
    }
    Canvas canvas = DrawScene();
    const std::vector<unsigned char> samples = Develop(canvas);
    stbi_write_png_compression_level = 64;
    stbi_write_force_png_filter = 3; // gives the smallest file here
    const bool done = stbi_write_png_to_func(Append, file, kWidth, kHeight, 3, samples.data(), 0) != 0;
    return std::fclose(file) == 0 && done ? 0 : 1;
}

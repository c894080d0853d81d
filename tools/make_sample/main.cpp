// Draws the sample picture: a landscape with even gradients, fine texture, sharp edges and strong colours, the same in
// every run. Usage: make_sample OUTPUT.png
#include <cmath>
#include <cstdio>
#include <vector>

#include "noise.h"
#include "pictures/failure.h"
#include "pictures/image_file.h"
#include "pictures/plain_image.h"
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

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_sample OUTPUT.png\n");
        return 2;
    }
    Canvas canvas = DrawScene();
    const std::vector<unsigned char> samples = Develop(canvas);
    try {
        WriteOptions options;
        options.format = ImageFormat::kPng;
        options.compression = 9;
        PreparePicture(PictureFromSamples(samples.data(), kWidth, kHeight, 3), {}, argv[1], options)->Commit();
        return 0;
    } catch (const Failure& failure) {
        std::fprintf(stderr, "make_sample: %s\n", failure.what());
        return 1;
    }
}

// Noise that is the same in every run.
#ifndef QV8_SAMPLE_NOISE_H
#define QV8_SAMPLE_NOISE_H

#include <cstdint>

// A number from 0 to 1 for a place on the grid.
double HashAt(int x, int y, std::uint32_t seed);

// Smooth noise from 0 to 1, and several octaves of it.
double ValueNoise(double x, double y, std::uint32_t seed);
double CloudNoise(double x, double y, int octaves, std::uint32_t seed);

// The same with sharp crests.
double RidgeNoise(double x, double y, int octaves, std::uint32_t seed);

// A row of numbers from 0 to 1.
class Random {
public:
    explicit Random(std::uint32_t seed) : state_(seed) {}
    double Next();
    double Between(double from, double to) {
        return from + (to - from) * Next();
    }

private:
    std::uint32_t state_;
};

#endif

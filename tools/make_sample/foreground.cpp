// Shore, grass, flowers and a pine, drawn stroke by stroke from back to front.
#include "scene.h"

#include <array>
#include <cmath>

#include "noise.h"

namespace {

// Draws in the coordinates of the scene.
class Brush {
public:
    Brush(Canvas& canvas, double scale) : canvas_(canvas), scale_(scale) {}

    void Dot(double x, double y, double radius, Colour colour, double opacity = 1) {
        const double r = std::max(radius * scale_, 0.5);
        for (int row = Floor(y * scale_ - r); row <= Floor(y * scale_ + r); ++row) {
            for (int column = Floor(x * scale_ - r); column <= Floor(x * scale_ + r); ++column) {
                const double distance = std::hypot(column + 0.5 - x * scale_, row + 0.5 - y * scale_);
                canvas_.Blend(column, row, colour, opacity * std::clamp(r + 0.5 - distance, 0.0, 1.0));
            }
        }
    }

    // A stroke that bends to the side and becomes thinner and lighter toward its end.
    void Stroke(double x, double y, double dx, double dy, double bend, double radius, Colour from, Colour to) {
        const int steps = 2 + Floor(std::hypot(dx, dy) * scale_);
        for (int i = 0; i <= steps; ++i) {
            const double t = static_cast<double>(i) / steps;
            Dot(x + dx * t + bend * t * t, y + dy * t, radius * (1 - 0.75 * t), Mix(from, to, t), 0.9);
        }
    }

private:
    static int Floor(double value) {
        return static_cast<int>(std::floor(value));
    }

    Canvas& canvas_;
    double scale_;
};

double BankAt(double x) {
    return 424 - 30 * Step(230, 0, x) - 16 * Step(520, 640, x) + 12 * (CloudNoise(0.02 * x, 0.3, 4, 300) - 0.5);
}

void DrawGround(Canvas& canvas, double scale) {
    for (int row = 0; row < canvas.Height(); ++row) {
        for (int column = 0; column < canvas.Width(); ++column) {
            const double x = column / scale;
            const double y = row / scale;
            const double below = y - BankAt(x);
            const double clumps = CloudNoise(0.07 * x, 0.12 * y, 4, 310);
            const Colour soil = Mix({0.20, 0.15, 0.09}, {0.44, 0.36, 0.24}, clumps);
            const Colour turf = Mix({0.07, 0.14, 0.03}, {0.20, 0.30, 0.07}, clumps);
            canvas.Blend(column, row, Mix(soil, turf, Step(3, 16, below + 8 * clumps)), Step(-0.6, 0.6, below));
        }
    }
}

void DrawPebbles(Brush& brush) {
    Random random(400);
    for (int i = 0; i < 700; ++i) {
        const double x = random.Between(0, kWidth);
        const double y = BankAt(x) + random.Between(-3, 7);
        const double radius = random.Between(0.6, 2.6);
        const double tone = random.Between(0.28, 0.66);
        const Colour stone{tone, tone * random.Between(0.90, 0.98), tone * random.Between(0.80, 0.95)};
        brush.Dot(x, y + 0.5 * radius, radius, stone * 0.4, 0.8);
        brush.Dot(x, y, radius, stone * 0.8);
        brush.Dot(x + 0.3 * radius, y - 0.35 * radius, 0.6 * radius, Mix(stone, {1, 0.95, 0.85}, 0.3));
    }
}

void DrawFlower(Brush& brush, Random& random, double x, double y, double size) {
    static constexpr std::array kPetals{Colour{0.86, 0.10, 0.08}, Colour{0.97, 0.80, 0.14}, Colour{0.52, 0.26, 0.72},
                                        Colour{0.96, 0.95, 0.93}, Colour{0.90, 0.38, 0.58}};
    const double kind = ValueNoise(0.02 * x, 0.05 * y, 501) * 0.7 + random.Next() * 0.3;
    const Colour petal = kPetals[static_cast<std::size_t>(kind * 4.999)];
    for (int i = 0; i < 5; ++i) {
        const double angle = 1.2566 * i + x;
        brush.Dot(x + size * std::cos(angle), y + 0.7 * size * std::sin(angle), 0.75 * size,
                  petal * random.Between(0.80, 1.05));
    }
    brush.Dot(x, y, 0.5 * size, {0.45, 0.32, 0.05});
}

// One row of the meadow after the other, the nearest last.
void DrawMeadow(Brush& brush) {
    Random random(410);
    for (double row = 392; row < kHeight + 26; row += 0.35) {
        const double nearness = (row - 385) / (kHeight - 385);
        for (int i = 0; i < 9; ++i) {
            const double x = random.Between(-10, kWidth + 10);
            const double tuft = CloudNoise(0.05 * x, 0.05 * row, 3, 420);
            if (row < BankAt(x) + 5 + 10 * random.Next()) {
                continue;
            }
            const double length = (5 + 24 * nearness) * random.Between(0.4, 1.0) * (0.5 + tuft);
            const Colour tip =
                Mix({0.38, 0.56, 0.12}, {0.82, 0.76, 0.36}, Step(0.45, 0.75, tuft) * 0.7 + 0.3 * random.Next());
            const Colour root{0.06 + 0.05 * tuft, 0.15 + 0.06 * tuft, 0.03};
            const double lean = random.Between(-0.35, 0.45) * length;
            brush.Stroke(x, row, 0.3 * lean, -length, lean, 0.35 + 0.45 * nearness, root, tip);
            if (random.Next() < 0.045) {
                DrawFlower(brush, random, x + 1.3 * lean, row - length, 0.7 + 1.2 * nearness);
            }
        }
    }
}

void DrawBranch(Brush& brush, Random& random, double x, double y, double reach, double side) {
    const double droop = 0.20 * reach;
    brush.Stroke(x, y, side * reach, droop, 0, 1.0, {0.13, 0.09, 0.05}, {0.10, 0.12, 0.05});
    const int needles = 10 + static_cast<int>(3.2 * reach);
    for (int i = 0; i < needles; ++i) {
        const double t = random.Next();
        const double light = std::clamp(0.25 + 0.35 * side * t + random.Between(-0.2, 0.35), 0.0, 1.0);
        const Colour green = Mix({0.02, 0.07, 0.04}, {0.26, 0.38, 0.13}, light);
        brush.Stroke(x + side * reach * t, y + droop * t, side * random.Between(1, 6),
                     random.Between(-3, 7) * (1 - 0.4 * t), 0, 0.55, green * 0.7, green);
    }
}

void DrawPine(Brush& brush, double x, double foot, double height, std::uint32_t seed) {
    Random random(seed);
    brush.Stroke(x, foot, 0, -height, 0, 0.017 * height, {0.20, 0.13, 0.08}, {0.14, 0.10, 0.06});
    for (double down = 0.015; down < 0.90; down += 0.011) {
        const double tier = 0.72 + 0.28 * std::fmod(down * 13, 1.0);
        const double reach = 0.235 * height * std::pow(down, 0.85) * tier * random.Between(0.7, 1.1) + 2;
        const double y = foot - height * (1 - down);
        DrawBranch(brush, random, x, y, reach, random.Next() < 0.5 ? -1 : 1);
        DrawBranch(brush, random, x, y + 2, reach * random.Between(0.3, 1.0), random.Next() < 0.5 ? -1 : 1);
    }
}

} // namespace

void DrawForeground(Canvas& canvas, double scale) {
    Brush brush(canvas, scale);
    DrawGround(canvas, scale);
    DrawPebbles(brush);
    DrawPine(brush, 126, 428, 186, 610);
    DrawPine(brush, 58, 452, 372, 600);
    DrawPine(brush, 612, 430, 142, 620);
    DrawMeadow(brush);
}

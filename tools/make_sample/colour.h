// Colours as three numbers from 0 to 1, and the canvas that is drawn on.
#ifndef QV8_SAMPLE_COLOUR_H
#define QV8_SAMPLE_COLOUR_H

#include <algorithm>
#include <cstddef>
#include <vector>

struct Colour {
    double red = 0;
    double green = 0;
    double blue = 0;
};

inline Colour operator+(Colour a, Colour b) {
    return {a.red + b.red, a.green + b.green, a.blue + b.blue};
}

inline Colour operator*(Colour a, double factor) {
    return {a.red * factor, a.green * factor, a.blue * factor};
}

inline Colour Mix(Colour a, Colour b, double share) {
    return a * (1 - share) + b * share;
}

// 0 up to `from`, 1 beyond `to`, smooth between them.
inline double Step(double from, double to, double value) {
    const double t = std::clamp((value - from) / (to - from), 0.0, 1.0);
    return t * t * (3 - 2 * t);
}

class Canvas {
public:
    Canvas(int width, int height)
        : width_(width), height_(height), pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {}

    int Width() const {
        return width_;
    }
    int Height() const {
        return height_;
    }
    Colour& At(int x, int y) {
        return pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x)];
    }
    // Lays a colour over a pixel, if it is on the canvas.
    void Blend(int x, int y, Colour colour, double opacity) {
        if (x >= 0 && y >= 0 && x < width_ && y < height_) {
            At(x, y) = Mix(At(x, y), colour, opacity);
        }
    }

private:
    int width_;
    int height_;
    std::vector<Colour> pixels_;
};

#endif

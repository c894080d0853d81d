// Some thousands of shapes that a platform can draw, always the same ones.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "qv8platform.h"

namespace test {

struct Shape {
    // A seam is a line and the filling of what lies on one side of it. Its third point is where the filling begins; an
    // ellipse has two, the corners of its rectangle.
    enum Kind { kPolygon, kEllipse, kSeam };

    Kind kind = kPolygon;
    int width = 0;
    int height = 0;
    std::vector<POINT> points;
    int result = 0;         // what the drawing call returned
    std::vector<BYTE> mask; // rows of a 1-bit picture, the bottom row first

    std::size_t Stride() const {
        return (static_cast<std::size_t>(width) + 31) / 32 * 4;
    }
    bool IsSet(int x, int y) const; // y counts from the top
};

// The system never writes the outermost rows of very narrow ellipses and shows what its memory held before, so nothing
// is known of these.
bool IsDefinedEllipse(std::int64_t width, std::int64_t height);

// The shape's kind, size and points in one line.
std::string Describe(const Shape& shape);

// Not drawn yet.
std::vector<Shape> GenerateShapes();

} // namespace test

// Shapes and what the platform draws for them, as recorded in data/gdi_shapes.bin by tools/record_shapes.cpp.
//
// The file is a sequence of numbers, each in groups of seven bits, the lowest first, with the top bit of a byte set
// when more follow. It begins with the number of shapes. A shape is
//
//     kind (0 polygon, 1 ellipse, 2 seam), width and height of the bitmap, number of points, the points,
//     what the drawing call returned, the pixels
//
// A coordinate c is stored as 2c, or as -2c - 1 when it is negative. An ellipse has two points, the corners of its
// rectangle; a seam three, both ends of the line and where the filling begins, and what the filling returned. The
// pixels are runs from left to right and from the top row to the bottom row, beginning with a run (of 0 or more) of
// black ones, then white and black in turn until the bitmap is full.
#pragma once

#include <string>
#include <vector>

#include "qv8platform.h"

namespace test {

struct Shape {
    // A seam is a line and the filling of what lies on one side of it.
    enum Kind { kPolygon, kEllipse, kSeam };

    Kind kind = kPolygon;
    int width = 0;
    int height = 0;
    std::vector<POINT> points;
    int result = 0;
    std::vector<BYTE> mask; // rows of a 1-bit picture, the bottom row first

    std::size_t Stride() const {
        return (static_cast<std::size_t>(width) + 31) / 32 * 4;
    }
    bool IsSet(int x, int y) const; // y counts from the top
};

// The shape's kind, size and points in one line.
std::string Describe(const Shape& shape);

// No shapes when the bytes are not a whole recording.
std::vector<Shape> DecodeShapes(const std::vector<BYTE>& bytes);
std::vector<BYTE> EncodeShapes(const std::vector<Shape>& shapes);

// The recording in the directory of test data.
std::vector<Shape> LoadRecordedShapes();

} // namespace test

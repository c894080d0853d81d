// Where the pixels of a turned picture come from. Columns and rows are counted from the centre here: those of a picture
// of W columns run from -(W / 2) to W - 1 - W / 2. All arithmetic after sine and cosine is in single precision, in the
// order written, so that every build takes the same pixels.
#pragma once

#include <cstdint>

#include "frame/span.h"
#include "pixels/dib.h"

namespace qv8 {

// A little more than the true value. It decides the size and place of results, so it stays as it is.
constexpr double kPi = 3.141592657;

constexpr int kQuarterTurn = 9000; // angles are in hundredths of a degree, counter-clockwise
constexpr int kMaxAngle = 35999;

// The whole quarters of an angle: 0 to 3, of a multiple of a quarter below 0 too, as -1 is 3.
constexpr int QuartersOf(int angle) {
    return angle / kQuarterTurn & 3;
}

// A linear map around the centre: (x, y) goes to (x * columnByX + y * columnByY, x * rowByX + y * rowByY).
struct LinearMap {
    float columnByX;
    float columnByY;
    float rowByX;
    float rowByY;
};

// From a picture to its turned form, and from there back.
struct Turn {
    LinearMap forth;
    LinearMap back;
};
Turn TurnBy(int angle);

// A picture's sides with the place of its first column and row.
struct CentredRect {
    std::int64_t firstColumn;
    std::int64_t firstRow;
    std::int64_t width;
    std::int64_t height;
};
CentredRect CentredRectOf(const DibView& picture);

// The rectangle that holds the whole mapped picture. Its sides may be beyond what a picture can have.
CentredRect BoundsOf(const LinearMap& forth, const CentredRect& source);

// A coordinate of the source along a row of the result: value * factor + offset, cut off toward zero. It never turns
// back along the row.
struct SourceLine {
    float factor;
    float offset;

    float At(int x) const {
        return static_cast<float>(x) * factor + offset;
    }
};

// Both coordinates along a row of the result.
struct SourceLines {
    SourceLine column;
    SourceLine row;
};
SourceLines SourceLinesOf(const LinearMap& back, int y);

// Narrows `within` to the columns where the coordinate lies in first .. first + count - 1. `guess` is where the search
// begins, best the span of the row before; it becomes the span of this one.
Span SpanInside(const SourceLine& line, std::int64_t first, std::int64_t count, const Span& within, Span& guess);

} // namespace qv8

// Ellipses inscribed in a rectangle of pixels.
//
// With columns and rows counted in half pixels from the centre, the ellipse of width a + 1 and height b + 1 pixels is
// where F(x, y) = b²x² + a²y² - a²b² is zero; F is negative inside. The outline is walked in one quarter, from the
// outermost column of the middle row towards the outermost row, by steps of a column, a row or both. Each step looks at
// F at the two pixels on either side of the curve: if their sum says that the curve is nearer to the outer one, the
// walk goes there. Only whole numbers are used, of more than 64 bits for the largest shapes.
//
// The tips of narrow tall ellipses are less than half a pixel wide on either side of the centre, where the walk has no
// column left to step to: they are the one or two columns in the middle.
#include <cstdint>
#include <utility>

#include "platform/surface.h"

using namespace qv8::drawing;

namespace {

using Wide = __int128;

// A position on the outline: one column on each side of the centre, one row above it and one below.
class OutlineWalk {
public:
    OutlineWalk(std::int64_t left, std::int64_t top, std::int64_t width, std::int64_t height)
        : left_(left), right_(left + width - 1), top_(top), upper_(top + (height - 1) / 2), lower_(top + height / 2) {
        const Wide a = width - 1;
        const Wide b = height - 1;
        const Wide isEven = height % 2 == 0 ? 1 : 0;
        columnGain_ = 4 * (1 - a) * b * b;
        rowGain_ = 4 * (1 + isEven) * a * a;
        columnGrowth_ = 8 * b * b;
        rowGrowth_ = 8 * a * a;
        // The platform forms the last term in 32 bits, which shows in shapes more than 46341 pixels wide.
        diagonal_ = columnGain_ + rowGain_ + isEven * static_cast<std::int32_t>(a * a);
    }

    std::int64_t Left() const {
        return left_;
    }
    std::int64_t Right() const {
        return right_;
    }
    std::int64_t Upper() const {
        return upper_;
    }
    std::int64_t Lower() const {
        return lower_;
    }
    bool IsAtTheTip() const { // in the middle, with rows left perhaps
        return left_ > right_;
    }
    bool IsOver() const {
        return upper_ < top_;
    }

    // Returns whether the walk went on to another row.
    bool Next() {
        const Wide doubled = 2 * diagonal_;
        const bool stepRow = doubled <= rowGain_;
        if (doubled >= columnGain_ || !stepRow) {
            ++left_;
            --right_;
            columnGain_ += columnGrowth_;
            diagonal_ += columnGain_;
        }
        if (stepRow) {
            NextRow();
            rowGain_ += rowGrowth_;
            diagonal_ += rowGain_;
        }
        return stepRow;
    }

    void NextRow() {
        --upper_;
        ++lower_;
    }

private:
    std::int64_t left_, right_, top_, upper_, lower_;
    Wide diagonal_;   // F one column and one row further on
    Wide columnGain_; // what one column further on adds to F
    Wide rowGain_;
    Wide columnGrowth_; // what a step adds to the gain
    Wide rowGrowth_;
};

void DrawWalk(const Pixels& target, OutlineWalk walk, Ink pen, Ink brush) {
    bool isNewRow = true;
    while (!walk.IsOver() && !walk.IsAtTheTip()) {
        for (const std::int64_t y : {walk.Upper(), walk.Lower()}) {
            if (isNewRow) {
                target.FillSpan(y, walk.Left() + 1, walk.Right(), brush);
            }
            target.Set(walk.Left(), y, pen);
            target.Set(walk.Right(), y, pen);
        }
        isNewRow = walk.Next();
    }
    for (; !walk.IsOver(); walk.NextRow()) {
        for (const std::int64_t y : {walk.Upper(), walk.Lower()}) {
            target.FillSpan(y, walk.Left() - 1, walk.Right() + 2, pen);
        }
    }
}

} // namespace

extern "C" BOOL Ellipse(HDC context, int left, int top, int right, int bottom) {
    const Pixels* const target = TargetOf(context);
    if (target == nullptr || !IsDrawable(left) || !IsDrawable(top) || !IsDrawable(right) || !IsDrawable(bottom)) {
        return FALSE;
    }
    if (left > right) {
        std::swap(left, right);
    }
    if (top > bottom) {
        std::swap(top, bottom);
    }
    const std::int64_t width = right - left;
    const std::int64_t height = bottom - top;
    // Nothing is drawn in an empty rectangle, nor in a single pixel; up to two columns are all outline.
    if (width == 0 || height == 0 || (width == 1 && height == 1)) {
        return TRUE;
    }
    if (width > 2) {
        DrawWalk(*target, OutlineWalk(left, top, width, height), context->pen->ink, context->brush->ink);
        return TRUE;
    }
    for (std::int64_t y = top; y < bottom; ++y) {
        target->FillSpan(y, left, right, context->pen->ink);
    }
    return TRUE;
}

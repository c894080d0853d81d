#include "compose/paste_placement.h"

namespace qv8 {
namespace {

// For turns by quarters: which column, or which row, of the pasted picture lies at each column of a row of the base, as
// a centred coordinate. With every column it goes on by one, back by one or stays, as the picture is turned.
struct ExactLine {
    std::int64_t start; // at the middle column
    int step;           // -1, 0 or 1

    std::int64_t At(std::int64_t column) const {
        return start + step * column;
    }
    // Leaves of the columns, which count from the middle, those where it is one of `size` coordinates from `first` on.
    void Cut(std::int64_t first, std::int64_t size, WideSpan& columns) const {
        const std::int64_t from = first - start;
        if (step == 0) {
            columns.end = from <= 0 && from + size > 0 ? columns.end : columns.begin;
        } else {
            const std::int64_t begin = step > 0 ? from : 1 - from - size;
            columns.CutTo(begin, begin + size);
        }
    }
};

struct ExactLines {
    ExactLine column;
    ExactLine row;
};

ExactLines ExactLinesOf(const PastePlacement& placement, std::int64_t y) {
    return {{-y * placement.rowStep, placement.columnStep}, {y * placement.columnStep, placement.rowStep}};
}

WideSpan CoveredExactly(const PastePlacement& placement, std::int64_t y, WideSpan columns) {
    const ExactLines lines = ExactLinesOf(placement, y);
    const CentredRect& source = placement.source;
    lines.column.Cut(source.firstColumn, source.width, columns);
    lines.row.Cut(source.firstRow, source.height, columns);
    return columns;
}

WideSpan CoveredFreely(const PastePlacement& placement, std::int64_t y, WideSpan columns, PasteGuesses& guesses) {
    const CentredRect& reach = placement.reach;
    if (y < reach.firstRow || y >= reach.firstRow + reach.height) {
        return {0, 0};
    }
    columns.CutTo(reach.firstColumn, reach.firstColumn + reach.width);
    if (columns.IsEmpty()) {
        return columns;
    }
    const SourceLines lines = SourceLinesOf(placement.turn.back, static_cast<int>(y));
    const CentredRect& source = placement.source;
    Span inside = {static_cast<int>(columns.begin), static_cast<int>(columns.end)};
    inside = SpanInside(lines.column, source.firstColumn, source.width, inside, guesses.column);
    inside = SpanInside(lines.row, source.firstRow, source.height, inside, guesses.row);
    return {inside.begin, inside.end};
}

// A rectangle outside of which no pixel of the base is covered: the bounds of the turned picture, with room around. Two
// things let pixels beyond the bounds be covered. Coordinates in the picture count from its middle and are truncated
// toward it, so that those up to a pixel outside are taken for the border. And in pictures of millions of pixels a side
// they lie so far from the middle that single precision does not tell neighbouring columns apart.
CentredRect ReachOf(const Turn& turn, const CentredRect& source) {
    const CentredRect bounds = BoundsOf(turn.forth, source);
    const std::int64_t room = 2 + (source.width + source.height) / (1 << 20);
    return {bounds.firstColumn - room, bounds.firstRow - room, bounds.width + 2 * room, bounds.height + 2 * room};
}

} // namespace

PastePlacement PlacePicture(const DibView& base, const DibView& pasted, int angle, bool mirror, bool flip, int x,
                            int y) {
    PastePlacement placement = {};
    placement.baseWidth = base.width;
    placement.middleColumn = x;
    placement.middleRow = std::int64_t{base.height} - 1 - y;
    placement.source = {-((pasted.width - 1) / 2), -(pasted.height / 2), pasted.width, pasted.height};
    placement.turn = TurnBy(angle);
    placement.reach = ReachOf(placement.turn, placement.source);
    placement.directions = Directions::Of(placement.source, mirror, flip);
    placement.isExact = angle % kQuarterTurn == 0;
    // A step to the right in the base, turned back: cosine and negative sine of the angle.
    constexpr int kCosines[] = {1, 0, -1, 0};
    const int quarters = QuartersOf(angle);
    placement.columnStep = kCosines[quarters];
    placement.rowStep = -kCosines[(quarters + 3) % 4];
    return placement;
}

Span CoveredColumns(const PastePlacement& placement, int row, PasteGuesses& guesses) {
    const std::int64_t y = row - placement.middleRow;
    const WideSpan base = {-placement.middleColumn, placement.baseWidth - placement.middleColumn};
    const WideSpan covered =
        placement.isExact ? CoveredExactly(placement, y, base) : CoveredFreely(placement, y, base, guesses);
    if (covered.IsEmpty()) {
        return {};
    }
    return {static_cast<int>(covered.begin + placement.middleColumn),
            static_cast<int>(covered.end + placement.middleColumn)};
}

void FindPastePlaces(const PastePlacement& placement, int row, int column, int count, bool withNeighbours,
                     Places& places) {
    const std::int64_t x = column - placement.middleColumn;
    const std::int64_t y = row - placement.middleRow;
    if (placement.isExact) {
        const ExactLines lines = ExactLinesOf(placement, y);
        places.columns[0] = placement.directions.column.PlaceOf(static_cast<int>(lines.column.At(x)));
        places.rows[0] = placement.directions.row.PlaceOf(static_cast<int>(lines.row.At(x)));
        return;
    }
    const RotationKernels& kernels = TheRotationKernels();
    const auto find = withNeighbours ? kernels.findNeighbours : kernels.findPlaces;
    find(SourceLinesOf(placement.turn.back, static_cast<int>(y)), placement.directions, static_cast<int>(x), count,
         places);
}

bool LaysLines(const PastePlacement& placement) {
    return placement.isExact && placement.directions.column.Step(placement.columnStep) == 1;
}

PasteLines LinesOf(const PastePlacement& placement, int baseHeight) {
    WideSpan covered = {-placement.middleRow, baseHeight - placement.middleRow};
    ExactLine{0, placement.columnStep}.Cut(placement.source.firstRow, placement.source.height, covered);
    if (covered.IsEmpty()) {
        return {};
    }
    PasteLines lines = {};
    lines.rows = {static_cast<int>(covered.begin + placement.middleRow),
                  static_cast<int>(covered.end + placement.middleRow)};
    PasteGuesses guesses;
    lines.columns = CoveredColumns(placement, lines.rows.begin, guesses);
    if (lines.columns.IsEmpty()) {
        return {};
    }
    Places places;
    FindPastePlaces(placement, lines.rows.begin, lines.columns.begin, 1, false, places);
    lines.firstColumn = places.columns[0];
    lines.firstRow = places.rows[0];
    lines.rowStep = placement.directions.row.Step(placement.columnStep);
    return lines;
}

void CopyPastePixels(const PastePlacement& placement, const Places& places, const DibView& picture,
                     const PixelUnit& unit, int count, BYTE* result) {
    if (placement.isExact) {
        const Directions& directions = placement.directions;
        unit.copyLine(picture, places.columns[0], places.rows[0], directions.column.Step(placement.columnStep),
                      directions.row.Step(placement.rowStep), count, result);
    } else {
        unit.gather(picture, places.columns, places.rows, count, result);
    }
}

} // namespace qv8

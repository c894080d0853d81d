#include "compose/paste.h"

#include <algorithm>
#include <cstring>

#include "area/masked_picture.h"
#include "frame/rows.h"
#include "frame/status.h"
#include "geometry/exchange_reports.h"
#include "pixels/pixel_format.h"

namespace qv8 {
namespace {

bool MakePasting(const DibView& base, const DibView& pasted, const DibView* mask, const PasteOptions& options,
                 Pasting& pasting) {
    pasting.placement = PlacePicture(base, pasted, options.angle, options.mirror, options.flip, options.x, options.y);
    pasting.base = MakeColourReader(base);
    pasting.pasted = MakeColourReader(pasted);
    pasting.mask = mask;
    pasting.unit = *pasted.layout->unit;
    pasting.maskUnit = mask != nullptr ? *mask->layout->unit : PixelUnit{};
    pasting.transparent = options.transparent;
    pasting.opacity = options.opacity;
    pasting.smooth = options.smooth && !pasting.placement.isExact && CanBlend(pasted);
    // Indices mean something in their own table only, and unused bytes are the base's.
    const bool isCopyable = base.layout == pasted.layout && !base.IsPaletted() && base.layout->unusedBytes == 0;
    pasting.copies = isCopyable && !pasting.smooth && options.opacity == 255;
    pasting.packs = isCopyable && base.layout->Bytes() == 3 && mask == nullptr && !options.transparent.isGiven;
    return !base.IsPaletted() || MakeNearestColours(base, pasting.nearest);
}

// Copies a row of the base but for columns whose pixels will be written over.
void CopyAround(const DibView& base, int row, const Span& columns, BYTE* result) {
    const BYTE* const source = base.Row(row);
    const auto begin = static_cast<std::size_t>(columns.begin) * 3;
    const auto end = static_cast<std::size_t>(columns.end) * 3;
    std::memcpy(result, source, begin);
    std::memcpy(result + end, source + end, base.stride - end);
}

// Pixels that are copied, not computed; their places are turned by quarters only.
bool CopiesExactly(const Pasting& pasting) {
    return pasting.placement.isExact && pasting.copies;
}

// Pixels that lie on the base's as rows of bytes.
bool PasteAllLines(const Pasting& pasting, const NewPicture& result, const Progress& progress) {
    const DibView& base = pasting.base.picture;
    const PasteLines lines = pasting.opacity != 0 ? LinesOf(pasting.placement, base.height) : PasteLines{};
    const Span written = pasting.opacity == 255 ? lines.columns : Span{};
    return ForEachRow(base.height, progress, [&](int row) {
        const bool isCovered = row >= lines.rows.begin && row < lines.rows.end;
        CopyAround(base, row, isCovered ? written : Span{}, result.Row(row));
        if (isCovered) {
            PasteLine(pasting, lines, row, result.Row(row));
        }
    });
}

bool PasteRows(Pasting& pasting, const NewPicture& result, const Progress& progress) {
    if (pasting.packs && LaysLines(pasting.placement)) {
        return PasteAllLines(pasting, result, progress);
    }
    const int height = result.view.height;
    PasteGuesses guesses;
    for (int row = 0; row < height; ++row) {
        const Span columns = pasting.opacity != 0 ? CoveredColumns(pasting.placement, row, guesses) : Span{};
        CopyAround(pasting.base.picture, row, pasting.packs && pasting.opacity == 255 ? columns : Span{},
                   result.Row(row));
        if (!PastePixels(pasting, row, columns, result.Row(row)) || !progress.Report(row, height - 1)) {
            return false;
        }
    }
    return true;
}

} // namespace

TransparentColour TransparentColourAt(const BYTE* red, const BYTE* green, const BYTE* blue) {
    if (red == nullptr || green == nullptr || blue == nullptr) {
        return {};
    }
    return {true, *red, *green, *blue};
}

HGLOBAL PasteImage(HGLOBAL baseImage, const ImageSet& pastedImages, const PasteOptions& wanted, const Progress& whole) {
    if (baseImage == nullptr || pastedImages.hImage == nullptr) {
        return Fail(QV8_STATUS_PICTURE);
    }
    Picture base;
    MaskedPicture pasted;
    if (!OpenPicture(baseImage, kAcceptAll, base) || !OpenMaskedPicture(pastedImages, pasted)) {
        return nullptr;
    }
    PasteOptions options = wanted;
    options.angle = std::clamp(wanted.angle, -kMaxAngle, kMaxAngle);
    Progress progress = whole;
    if (!ReportExchanges(pasted.image.view.height, options.mirror, options.flip, progress)) {
        return nullptr;
    }
    Pasting pasting;
    if (!MakePasting(base.view, pasted.image.view, pasted.Mask(), options, pasting)) {
        return nullptr;
    }
    NewPicture result = DuplicateDib(base.view, InitialPixels::kUnwritten);
    const auto paste = [&] { return PasteRows(pasting, result, progress); };
    const bool done = result && (CopiesExactly(pasting) ? progress.RunWithoutFloats(paste) : paste());
    return done ? result.Release() : nullptr;
}

} // namespace qv8

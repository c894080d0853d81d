#include "tools/selection.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <new>
#include <utility>

#include "catalogue/picture_header.h"
#include "catalogue/run.h"
#include "chains/mask.h"
#include "chains/progress.h"
#include "pictures/failure.h"
#include "pictures/image_file.h"
#include "tools/box.h"

namespace {

Extent SizeOf(HGLOBAL image) {
    const BITMAPINFOHEADER header = catalogue::HeaderOf(image).value();
    return {static_cast<double>(header.biWidth), static_cast<double>(header.biHeight)};
}

Selection OfMask(Picture mask) {
    Selection selection;
    selection.form = Selection::Form::kMask;
    selection.mask = std::make_shared<const Picture>(std::move(mask));
    return selection;
}

// The mask that an effect marks, without the picture that it cuts out.
Picture MarkedBy(const char* effect, catalogue::Request request) {
    const Progress progress([](int) { return true; });
    request.progressOwner = progress.Owner();
    const catalogue::Outcome outcome = catalogue::Run(*catalogue::FindEffect(effect), request);
    const Picture cutOut(outcome.result.pictures.hImage);
    if (outcome.failed != catalogue::Failed::kNot) {
        throw Failure(kExitEffectFailed, outcome.words);
    }
    return Picture(outcome.result.pictures.hMask);
}

Picture CopyOf(const Picture& picture) {
    const Progress progress([](int) { return true; });
    Picture copy(QV8CopyImage(picture.Handle(), progress.Owner(), 0, 0, 0));
    if (!copy) {
        throw std::bad_alloc();
    }
    return copy;
}

// Leaves the bits that are set in both.
void KeepWhatIsIn(const Picture& mask, const Picture& other) {
    const LockedPicture to(mask);
    const LockedPicture from(other);
    std::transform(to.Bytes() + to.PixelOffset(), to.Bytes() + to.Size(), from.Bytes() + from.PixelOffset(),
                   to.Bytes() + to.PixelOffset(), std::bit_and<>());
}

// What the client area shows of a mask, a row of its pixels at a time.
class ShownMask {
public:
    ShownMask(const Picture& mask, const ViewMapping& mapping, Extent client)
        : locked_(mask), mapping_(mapping), columns_(static_cast<std::size_t>(client.width)) {
        for (std::size_t x = 0; x != columns_.size(); ++x) {
            columns_[x] = Index(mapping.ToPicture({static_cast<double>(x) + 0.5, 0}).x, locked_.Width());
        }
    }
    std::vector<bool> Row(int y) const {
        std::vector<bool> bits(columns_.size());
        const std::ptrdiff_t row = Index(mapping_.ToPicture({0, y + 0.5}).y, locked_.Height());
        if (row == kOutside) {
            return bits;
        }
        const BYTE* const bytes = locked_.RowFromTop(static_cast<std::size_t>(row));
        for (std::size_t x = 0; x != bits.size(); ++x) {
            const std::ptrdiff_t column = columns_[x];
            bits[x] = column != kOutside && (bytes[column / 8] >> (7 - column % 8) & 1) != 0;
        }
        return bits;
    }

private:
    static constexpr std::ptrdiff_t kOutside = -1;

    static std::ptrdiff_t Index(double position, std::size_t length) {
        const double index = std::floor(position);
        return index < 0 || index >= static_cast<double>(length) ? kOutside : static_cast<std::ptrdiff_t>(index);
    }

    LockedPicture locked_;
    ViewMapping mapping_;
    std::vector<std::ptrdiff_t> columns_; // of the picture
};

// The upper and left sides of what is marked and of what is not: runs along rows, and runs down columns.
std::vector<RECT> EdgeRuns(const ShownMask& mask, int width, int height) {
    std::vector<RECT> runs;
    std::vector<bool> above = mask.Row(-1);
    std::vector<int> since(static_cast<std::size_t>(width) + 1, -1); // the row where an edge down a column began
    for (int y = 0; y <= height; ++y) {
        const std::vector<bool> row = y < height ? mask.Row(y) : std::vector<bool>(above.size());
        for (int x = 0, start = -1; x <= width; ++x) {
            const auto at = static_cast<std::size_t>(x);
            const bool isEdge = y < height && x < width && row[at] != above[at];
            if (isEdge && start < 0) {
                start = x;
            } else if (!isEdge && start >= 0) {
                runs.push_back({start, y, x, y + 1});
                start = -1;
            }
            const bool isSide = y < height && x > 0 && x < width && row[at] != row[at - 1];
            if (isSide && since[at] < 0) {
                since[at] = y;
            } else if (!isSide && since[at] >= 0) {
                runs.push_back({x, since[at], x + 1, y});
                since[at] = -1;
            }
        }
        above = row;
    }
    return runs;
}

} // namespace

Selection SelectionFrom(const DrawnValues& values) {
    Selection selection;
    for (const DrawnValue& drawn : values) {
        if (const auto* const points = std::get_if<std::vector<POINT>>(&drawn.value);
            points != nullptr && drawn.name == "polygon") {
            selection.form = Selection::Form::kPolygon;
            selection.points = *points;
        } else if (const RECT* const rect = std::get_if<RECT>(&drawn.value);
                   rect != nullptr && drawn.name == "ellipse") {
            selection.form = Selection::Form::kEllipse;
            selection.rect = *rect;
        }
    }
    return selection;
}

DrawnValues AreaValues(const Selection& selection) {
    DrawnValues values{{"mask", {}}, {"polygon", {}}, {"ellipse", {}}, {"outside", {}}};
    switch (selection.form) {
    case Selection::Form::kMask:
        values[0].value = selection.mask->Handle();
        break;
    case Selection::Form::kPolygon:
        values[1].value = selection.points;
        break;
    case Selection::Form::kEllipse:
        values[2].value = selection.rect;
        break;
    default:
        break;
    }
    if (selection.outside) {
        values[3].value = LONG{1};
    }
    return values;
}

Selection SelectAll(HGLOBAL image) {
    const Extent size = SizeOf(image);
    const auto right = static_cast<LONG>(size.width) - 1;
    const auto bottom = static_cast<LONG>(size.height) - 1;
    Selection selection;
    selection.form = Selection::Form::kPolygon;
    selection.points = {{0, 0}, {right, 0}, {right, bottom}, {0, bottom}};
    return selection;
}

Selection Inverted(const Selection& selection) {
    if (selection.form == Selection::Form::kMask) {
        Picture mask = CopyOf(*selection.mask);
        InvertMask(mask);
        return OfMask(std::move(mask));
    }
    Selection inverted = selection;
    inverted.outside = !selection.IsEmpty() && !selection.outside;
    return inverted;
}

Selection SelectColour(HGLOBAL image, const Selection& within, catalogue::Colour colour, LONG match, LONG tolerance) {
    catalogue::Request request;
    request.image = image;
    request.values = {colour, match, tolerance};
    Picture mask = MarkedBy("auto-select-image", std::move(request));
    if (!within.IsEmpty()) {
        KeepWhatIsIn(mask, *AsMaskOf(image, within).mask);
    }
    return OfMask(std::move(mask));
}

// The box around what is outside of a shape is the whole picture, and so the mask has its size; the one around the
// shape itself has not.
Selection AsMaskOf(HGLOBAL image, const Selection& selection) {
    if (selection.form == Selection::Form::kMask) {
        return selection;
    }
    catalogue::Request request;
    request.image = image;
    request.area.points = selection.points;
    request.area.rect = selection.rect;
    request.area.inside = FALSE;
    request.area.type = selection.form == Selection::Form::kPolygon   ? QV8_AREA_POLYGON
                        : selection.form == Selection::Form::kEllipse ? QV8_AREA_ELLIPSE
                                                                      : QV8_AREA_WHOLE;
    Picture mask = MarkedBy("select-image", std::move(request));
    if (!selection.IsEmpty() && !selection.outside) {
        InvertMask(mask);
    }
    return OfMask(std::move(mask));
}

Selection LoadSelection(const std::string& name, HGLOBAL image) {
    Picture mask = AsMask(LoadPicture(name).picture, name);
    CheckMaskSize(mask.Handle(), name, image, "the picture");
    return OfMask(std::move(mask));
}

void SaveSelection(const std::string& name, HGLOBAL image, const Selection& selection) {
    const WriteOptions options{.format = FormatForName(name)};
    PreparePicture(*AsMaskOf(image, selection).mask, {}, name, options)->Commit();
}

SelectionEdges EdgesOf(const Selection& selection, Extent picture, const ViewMapping& mapping, Extent client) {
    SelectionEdges edges;
    if (selection.form == Selection::Form::kMask) {
        const ShownMask shown(*selection.mask, mapping, client);
        edges.runs = EdgeRuns(shown, static_cast<int>(client.width), static_cast<int>(client.height));
        return edges;
    }
    if (selection.form == Selection::Form::kEllipse) {
        edges.outlines.push_back({EllipseInBox(BoxOfRect(selection.rect))});
    } else if (selection.form == Selection::Form::kPolygon) {
        Outline outline;
        std::transform(selection.points.begin(), selection.points.end(), std::back_inserter(outline.points), MiddleOf);
        edges.outlines.push_back(std::move(outline));
    }
    if (selection.outside) {
        edges.outlines.push_back({CornersOfBox({0, 0, picture.width, picture.height})});
    }
    return edges;
}

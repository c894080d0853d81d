#include "model/effect_run.h"

#include <algorithm>
#include <utility>

#include "chains/mask.h"
#include "model/preview_plan.h"
#include "pictures/failure.h"

namespace {

// The values with all that they name: the area and its mask, masks that go with pictures, other pictures.
class FilledValues {
public:
    FilledValues(const EffectRun& run, bool masksOfPictures) : values_(run.values) {
        FillArea(run.subject);
        for (const Setting& setting : run.values.Settings()) {
            Fill(run, *setting.parameter, masksOfPictures);
        }
    }

    const ParameterValues& Values() const {
        return values_;
    }

private:
    void FillArea(const PictureSource& subject) {
        if (!values_.Effect().TakesArea() || subject.selection.IsEmpty()) {
            return;
        }
        if (subject.selection.form == Selection::Form::kMask && !values_.Has("mask")) {
            throw Failure(kExitUsage, "it takes an area that is drawn, and no mask: draw a rectangle, an ellipse or a "
                                      "polygon, or choose Select > None");
        }
        for (const DrawnValue& drawn : AreaValues(subject.selection)) {
            values_.Set(drawn.name, drawn.value);
        }
        mask_ = subject.selection.mask;
    }

    void Fill(const EffectRun& run, const catalogue::Parameter& parameter, bool masksOfPictures) {
        const auto other = run.others.find(parameter.name);
        if (catalogue::IsPicture(parameter) && other != run.others.end()) {
            values_.Set(parameter.name, other->second.image->Handle());
            if (parameter.kind == catalogue::Kind::kMaskedPicture && masksOfPictures) {
                FillMask(other->second);
            }
        } else if (parameter.kind == catalogue::Kind::kPattern && other != run.others.end()) {
            const LockedPicture whole(*other->second.image);
            RECT all{0, 0, static_cast<LONG>(whole.Width()), static_cast<LONG>(whole.Height())};
            made_.push_back(AsMask(PartOf(*other->second.image, all), other->second.name));
            values_.Set(parameter.name, made_.back().Handle());
        } else if (values_.Effect().source == catalogue::Source::kMaskedPicture && masksOfPictures &&
                   parameter.kind == catalogue::Kind::kMask) {
            FillMask(run.subject);
        }
    }

    void FillMask(const PictureSource& owner) {
        if (!owner.selection.IsEmpty()) {
            const Selection marked = AsMaskOf(owner.image->Handle(), owner.selection);
            masks_.push_back(marked.mask);
            values_.Set("mask", marked.mask->Handle());
        }
    }

    ParameterValues values_;
    std::vector<Picture> made_;
    std::vector<SharedPicture> masks_;
    SharedPicture mask_;
};

ChainResult ApplyFilled(const PictureSource& subject, const ParameterValues& values, const ApplyMode& mode) {
    if (const std::string mistake = values.Check(); !mistake.empty()) {
        throw Failure(kExitUsage, mistake);
    }
    const ReadyChain chain({values.AsStep()}, kMostPixels);
    return chain.Apply({subject.image.get(), subject.name, subject.alpha}, mode);
}

Extent SizeOf(const Picture& picture) {
    const LockedPicture locked(picture);
    return {static_cast<double>(locked.Width()), static_cast<double>(locked.Height())};
}

// A picture at the scale of a level, with its mask.
PictureSource AtScale(const PictureSource& source, double scale, const Report& report) {
    PictureSource result = source;
    if (source.levels == nullptr || scale >= 1) {
        return result;
    }
    result.image = source.levels->AtLeast(scale).picture;
    if (source.selection.mask != nullptr && result.image != source.image) {
        const Extent size = SizeOf(*result.image);
        result.selection.mask = std::make_shared<const Picture>(
            Resized(*source.selection.mask, static_cast<LONG>(size.width), static_cast<LONG>(size.height), report));
    }
    return result;
}

// The shape of a selection goes the way of values, by the parameters of the area; only masks stay with the picture.
ParameterValues WithShape(const EffectRun& run) {
    ParameterValues values = run.values;
    for (const DrawnValue& drawn : AreaValues(run.subject.selection)) {
        if (values.Effect().TakesArea() && run.subject.selection.form != Selection::Form::kMask) {
            values.Set(drawn.name, drawn.value);
        }
    }
    return values;
}

// A rectangle that has all of a shape too: of one that goes beyond a picture the library makes another.
RECT WithShapeOf(const Selection& selection, RECT rect) {
    const auto include = [&rect](LONG x, LONG y) {
        rect = {std::min(rect.left, x), std::min(rect.top, y), std::max(rect.right, x + 1),
                std::max(rect.bottom, y + 1)};
    };
    for (const POINT& point : selection.points) {
        include(point.x, point.y);
    }
    if (selection.form == Selection::Form::kEllipse) {
        include(selection.rect.left, selection.rect.top);
        include(selection.rect.right, selection.rect.bottom);
    }
    return rect;
}

void CutTo(RECT& part, PictureSource& source) {
    const Picture* const mask = source.selection.mask.get();
    RECT partOfMask = part;
    if (mask != nullptr) { // which begins at a whole byte
        source.selection.mask = std::make_shared<const Picture>(PartOf(*mask, partOfMask));
        part.left = partOfMask.left;
    }
    source.image = std::make_shared<const Picture>(PartOf(*source.image, part));
}

} // namespace

ChainResult Apply(const EffectRun& run, const Report& report) {
    const FilledValues filled(run, true);
    // Previews call the exports that return a pair, so both ways are in use.
    return ApplyFilled(run.subject, filled.Values(), {.report = report, .callsTwins = true});
}

Preview MakePreview(const EffectRun& run, const PreviewView& view, const Report& report) {
    const PreviewPlan plan = PlanPreview(run.values.Effect(), view.zoom);
    const Extent whole = SizeOf(*run.subject.image);
    EffectRun small{AtScale(run.subject, plan.scale, report), WithShape(run), {}};
    const Extent size = SizeOf(*small.subject.image);
    const Extent scale{size.width / whole.width, size.height / whole.height};
    for (const auto& [name, source] : run.others) {
        small.others.emplace(name, AtScale(source, plan.scale, report));
    }
    RECT part{0, 0, static_cast<LONG>(size.width), static_cast<LONG>(size.height)};
    if (plan.partly) {
        const auto at = [](LONG position, double by) { return static_cast<LONG>(position * by); };
        const RECT seen = WithShapeOf(run.subject.selection, view.visible);
        const RECT visible{at(seen.left, scale.width), at(seen.top, scale.height), at(seen.right, scale.width) + 1,
                           at(seen.bottom, scale.height) + 1};
        part = PartFor(visible, plan.margin, part.right, part.bottom);
        CutTo(part, small.subject);
    }
    small.values = MappedValues(small.values, {}, scale);
    small.values = MappedValues(small.values, {part.left, part.top}, {1, 1});
    if (small.subject.selection.form != Selection::Form::kMask) {
        small.subject.selection = {}; // it is among the values
    }
    const FilledValues filled(small, false);
    ChainResult result = ApplyFilled(small.subject, filled.Values(), {.report = report});
    Preview preview;
    const Extent resultSize = SizeOf(result.image);
    preview.scale = scale.width;
    const Position corner = plan.partly ? Position{static_cast<double>(part.left), static_cast<double>(part.top)}
                                        : CornerOfResult(small.values, size, resultSize);
    preview.left = corner.x / scale.width;
    preview.top = corner.y / scale.height;
    preview.isPart = plan.partly || preview.left >= whole.width;
    preview.image = std::make_shared<const Picture>(std::move(result.image));
    return preview;
}

#include "tools/tool.h"

#include <algorithm>

#include "tools/box_tool.h"
#include "tools/placement_tool.h"
#include "tools/points_tool.h"
#include "tools/polygon_tool.h"

namespace {

// A click chooses the pixel under it.
class PixelTool : public DragTool {
public:
    explicit PixelTool(Extent picture) : picture_(picture) {}

    ToolCursor CursorAt(Position /*at*/, double /*reach*/) const override {
        return ToolCursor::kCross;
    }
    Figure Shown() const override {
        return {};
    }
    DrawnValues Values() const override {
        return pixel_ ? DrawnValues{{"pixel", std::vector<POINT>{*pixel_}}} : DrawnValues();
    }
    void Follow(const DrawnValues& /*values*/) override {}

protected:
    int GripAt(Position at, double /*reach*/) const override {
        return Box{0, 0, picture_.width, picture_.height}.Contains(at) ? 0 : kNothing;
    }
    bool Begin(const MouseEvent& event, int& grip) override {
        if (grip != kNothing) {
            pixel_ = PixelAt(event.at);
        }
        return grip != kNothing;
    }
    bool Drag(const MouseEvent& /*event*/, int /*grip*/) override {
        return false;
    }

private:
    Extent picture_;
    std::optional<POINT> pixel_;
};

const catalogue::Parameter* FindKind(const catalogue::Effect& effect, catalogue::Kind kind) {
    const auto parameters = effect.Parameters();
    const auto found =
        std::find_if(parameters.begin(), parameters.end(), [kind](const auto& p) { return p.kind == kind; });
    return found == parameters.end() ? nullptr : &*found;
}

// For two pictures, of which the second is placed or joined.
std::unique_ptr<Tool> MakeToolForTwo(const catalogue::Effect& effect, const ToolSubject& subject) {
    using catalogue::Kind;
    if (subject.second == nullptr) {
        return nullptr;
    }
    if (FindKind(effect, Kind::kPoints) != nullptr) {
        return std::make_unique<PanoramaTool>(subject);
    }
    const auto parameters = effect.Parameters();
    const bool isPlaced = std::any_of(parameters.begin(), parameters.end(),
                                      [](const auto& parameter) { return parameter.name == std::string("x"); });
    using Place = PlacementTool::Place;
    return isPlaced ? std::make_unique<PlacementTool>(
                          subject, FindKind(effect, Kind::kAngle) != nullptr ? Place::kMiddle : Place::kCorner)
                    : nullptr;
}

} // namespace

bool Tool::Key(int /*virtualKey*/) {
    return false;
}

Position StepOf(int virtualKey) {
    switch (virtualKey) {
    case tool_key::kLeft:
        return {-1, 0};
    case tool_key::kRight:
        return {1, 0};
    case tool_key::kUp:
        return {0, -1};
    case tool_key::kDown:
        return {0, 1};
    default:
        return {};
    }
}

std::unique_ptr<Tool> MakeAreaTool(AreaForm form, Extent picture) {
    switch (form) {
    case AreaForm::kRectangle:
        return std::make_unique<BoxTool>(BoxTool::Form::kArea, "polygon");
    case AreaForm::kEllipse:
        return std::make_unique<BoxTool>(BoxTool::Form::kEllipse, "ellipse");
    case AreaForm::kPolygon:
        return std::make_unique<PolygonTool>();
    default:
        return std::make_unique<PixelTool>(picture);
    }
}

std::unique_ptr<Tool> MakeEffectTool(const catalogue::Effect& effect, const ToolSubject& subject) {
    using catalogue::Kind;
    const auto parameters = effect.Parameters();
    if (std::any_of(parameters.begin(), parameters.end(), catalogue::IsPicture)) {
        return MakeToolForTwo(effect, subject);
    }
    if (!effect.TakesPicture()) {
        return nullptr;
    }
    if (const auto* const points = FindKind(effect, Kind::kPoints)) {
        return std::make_unique<CornersTool>(subject.picture, points->name);
    }
    if (const auto* const rectangle = FindKind(effect, Kind::kRectangle)) {
        return std::make_unique<BoxTool>(BoxTool::Form::kParameter, rectangle->name);
    }
    if (FindKind(effect, Kind::kWidth) != nullptr) {
        return std::make_unique<SizeTool>(subject.picture);
    }
    return FindKind(effect, Kind::kAngle) != nullptr ? std::make_unique<TurnTool>(subject.picture) : nullptr;
}

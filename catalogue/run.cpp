#include "catalogue/run.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include <qv8com.h>

#include "catalogue/picture_header.h"
#include "catalogue/slots.h"
#include "catalogue/text.h"

namespace catalogue {

namespace {

using Size = std::array<LONG, 2>; // width and height

const Value kNothing;

const Value& ValueOf(const Request& request, std::size_t index) {
    return index < request.values.size() ? request.values[index] : kNothing;
}

bool IsGiven(const Value& value) {
    return !std::holds_alternative<std::monostate>(value);
}

// The value of the only parameter of that kind, or nothing.
const Value& ValueOf(const Effect& effect, const Request& request, Kind kind) {
    const auto parameters = effect.Parameters();
    const auto found =
        std::find_if(parameters.begin(), parameters.end(), [kind](const Parameter& p) { return p.kind == kind; });
    return found == parameters.end() ? kNothing
                                     : ValueOf(request, static_cast<std::size_t>(found - parameters.begin()));
}

template <class Type>
Type Or(const Value& value, Type otherwise) {
    const Type* const given = std::get_if<Type>(&value);
    return given != nullptr ? *given : otherwise;
}

LONG Scaled(LONG side, double factor) {
    return static_cast<LONG>(std::clamp(std::round(side * factor), 1.0, 2147483647.0));
}

// The size of the result, when parameters ask for one: both sides, one of them with the picture's proportions, or a
// factor.
std::optional<Size> ResultSize(const Effect& effect, const Request& request) {
    const LONG width = Or<LONG>(ValueOf(effect, request, Kind::kWidth), 0);
    const LONG height = Or<LONG>(ValueOf(effect, request, Kind::kHeight), 0);
    const double scale = Or<double>(ValueOf(effect, request, Kind::kScale), 0);
    const std::optional<BITMAPINFOHEADER> old = HeaderOf(request.image);
    if (!old || (width == 0 && height == 0 && scale == 0)) {
        return width == 0 ? std::nullopt : std::optional(Size{width, height});
    }
    if (scale > 0) {
        return Size{Scaled(old->biWidth, scale), Scaled(old->biHeight, scale)};
    }
    return Size{width > 0 ? width : Scaled(old->biWidth, static_cast<double>(height) / old->biHeight),
                height > 0 ? height : Scaled(old->biHeight, static_cast<double>(width) / old->biWidth)};
}

// The arguments of one call, and what they point to.
class Arguments {
public:
    Arguments(const Effect& effect, const Request& request, const Size& size)
        : effect_(effect), request_(request), size_(size) {
        AddSource();
        const auto parameters = effect.Parameters();
        const auto isSet = [&](const Parameter& p) {
            return p.kind == Kind::kChannel && Or<LONG>(ValueOf(request, Index(p)), 0) != 0;
        };
        anyChannel_ = std::any_of(parameters.begin(), parameters.end(), isSet);
        for (const Parameter& parameter : parameters) {
            Add(parameter, ValueOf(request, Index(parameter)));
        }
        if (effect.showsProgress) {
            AddWord(static_cast<LONG>(request.progressOwner));
            slots_.resize(slots_.size() + kProgressSlots - 1);
        }
    }
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;

    const Slot* Slots() const {
        return slots_.data();
    }

private:
    std::size_t Index(const Parameter& parameter) const {
        return static_cast<std::size_t>(&parameter - effect_.parameters.data());
    }
    void AddWord(LONG word) {
        slots_.push_back({.word = word});
    }
    void AddPointer(const void* pointer) {
        slots_.push_back({.pointer = pointer});
    }
    void AddSource();
    void Add(const Parameter& parameter, const Value& value);
    void AddColour(const Value& value, bool optional);

    const Effect& effect_;
    const Request& request_;
    Size size_;
    bool anyChannel_ = false;
    ImageSet target_{};
    ImageSet second_{};
    std::vector<Slot> slots_;
};

void Arguments::AddSource() {
    target_ = {request_.image, effect_.source == Source::kMaskedPicture
                                   ? Or<HGLOBAL>(ValueOf(effect_, request_, Kind::kMask), nullptr)
                                   : request_.area.mask};
    switch (effect_.source) {
    case Source::kNothing:
        return;
    case Source::kPicture:
        return AddPointer(request_.image);
    case Source::kMaskedPicture:
        return AddPointer(&target_);
    case Source::kClipboard:
        return AddPointer(request_.window);
    case Source::kPictureForClipboard:
        AddPointer(request_.window);
        return AddPointer(request_.image);
    case Source::kPictureInArea:
    case Source::kPictureInShape:
        const Area& area = request_.area;
        AddPointer(effect_.source == Source::kPictureInArea ? &target_ : request_.image);
        AddWord(static_cast<LONG>(area.type));
        AddPointer(area.points.data());
        AddWord(static_cast<LONG>(area.points.size()));
        AddPointer(&area.rect);
        AddWord(area.inside);
    }
}

void Arguments::AddColour(const Value& value, bool optional) {
    static constexpr Colour kBlack;
    const Colour* const given = std::get_if<Colour>(&value);
    const Colour& colour = given != nullptr ? *given : kBlack;
    for (const BYTE* const level : {&colour.red, &colour.green, &colour.blue}) {
        slots_.push_back({.word = *level, .pointer = optional && given == nullptr ? nullptr : level});
    }
}

void Arguments::Add(const Parameter& parameter, const Value& value) {
    static const std::string kNoText;
    static const Kernel kNoKernel;
    switch (parameter.kind) {
    case Kind::kInteger:
    case Kind::kFlag:
    case Kind::kChoice:
        return AddWord(Or<LONG>(value, static_cast<LONG>(parameter.standard)) * parameter.factor);
    case Kind::kChannel:
        return AddWord(anyChannel_ ? Or<LONG>(value, 0) : 1);
    case Kind::kAngle:
        return AddWord(static_cast<LONG>(std::lround(Or<double>(value, 0) * parameter.factor)));
    case Kind::kReal:
        return slots_.push_back({.real = Or<double>(value, parameter.standard)});
    case Kind::kColour:
    case Kind::kOptionalColour:
        return AddColour(value, parameter.kind == Kind::kOptionalColour);
    case Kind::kPoints:
        for (const POINT& point : Or<std::vector<POINT>>(value, {})) {
            AddWord(point.x);
            AddWord(point.y);
        }
        return;
    case Kind::kRectangle: {
        const RECT rect = Or<RECT>(value, {0, 0, 2147483647, 2147483647}); // cut to the picture
        for (const LONG side : {rect.left, rect.top, rect.right, rect.bottom}) {
            AddWord(side);
        }
        return;
    }
    case Kind::kText: {
        const auto* const text = std::get_if<std::string>(&value);
        return AddPointer((text != nullptr ? *text : kNoText).c_str());
    }
    case Kind::kKernel: {
        const auto* const given = std::get_if<Kernel>(&value);
        const Kernel& kernel = given != nullptr ? *given : kNoKernel;
        AddPointer(kernel.weights.data());
        AddWord(static_cast<LONG>(kernel.divisor));
        return AddWord(static_cast<LONG>(kernel.offset));
    }
    case Kind::kPicture:
    case Kind::kPattern:
        return AddPointer(Or<HGLOBAL>(value, nullptr));
    case Kind::kMaskedPicture:
        second_ = {Or<HGLOBAL>(value, nullptr), Or<HGLOBAL>(ValueOf(effect_, request_, Kind::kMask), nullptr)};
        return AddPointer(&second_);
    case Kind::kWidth:
        return AddWord(size_[0]);
    case Kind::kHeight:
        return AddWord(size_[1]);
    case Kind::kMask:
    case Kind::kScale:
        return;
    }
}

// The names of the parameters for which `fits`, such as "width, height or scale".
template <class Predicate>
std::string NamesWhere(const Effect& effect, Predicate fits) {
    std::vector<std::string> names;
    for (const Parameter& parameter : effect.Parameters()) {
        if (fits(parameter)) {
            names.emplace_back(parameter.name);
        }
    }
    return WordList(names);
}

bool IsSize(const Parameter& parameter) {
    return parameter.kind == Kind::kWidth || parameter.kind == Kind::kHeight || parameter.kind == Kind::kScale;
}

} // namespace

std::string MakeArea(const Effect& effect, const std::vector<Value>& values, Area& area) {
    const auto parameters = AreaParameters(effect);
    area = {};
    std::string shape; // the parameter that gives it
    for (std::size_t i = 0; i != parameters.size() && i < values.size(); ++i) {
        const std::string name = parameters[i].name;
        if (!IsGiven(values[i])) {
            continue;
        }
        if (name == "outside") {
            area.inside = static_cast<QV8BOOL>(std::get<LONG>(values[i]) == 0);
            continue;
        }
        if (!shape.empty()) {
            return (name + " excludes ").append(shape);
        }
        shape = name;
        area.mask = Or<HGLOBAL>(values[i], nullptr);
        area.points = Or<std::vector<POINT>>(values[i], {});
        area.rect = Or<RECT>(values[i], {});
        area.type = std::holds_alternative<HGLOBAL>(values[i]) ? QV8_AREA_MASK
                    : area.points.empty()                      ? QV8_AREA_ELLIPSE
                                                               : QV8_AREA_POLYGON;
    }
    return shape.empty() && area.inside == 0 ? "outside needs an area" : std::string();
}

std::string CheckValues(const Effect& effect, const std::vector<Value>& values) {
    const auto parameters = effect.Parameters();
    const auto isGiven = [&](std::size_t i) { return i < values.size() && IsGiven(values[i]); };
    bool choosesOne = false;
    int chosen = 0;
    bool hasSize = true;
    bool hasSide = false;
    bool hasScale = false;
    for (std::size_t i = 0; i != parameters.size(); ++i) {
        const Parameter& parameter = parameters[i];
        if (parameter.need == Need::kRequired && !isGiven(i)) {
            return std::string(parameter.name) + " is missing";
        }
        choosesOne = choosesOne || parameter.need == Need::kOneOf;
        chosen += parameter.need == Need::kOneOf && isGiven(i) ? 1 : 0;
        hasSize = hasSize && !(IsSize(parameter));
        hasSide = hasSide || (isGiven(i) && IsSize(parameter) && parameter.kind != Kind::kScale);
        hasScale = hasScale || (isGiven(i) && parameter.kind == Kind::kScale);
    }
    if (choosesOne && chosen != 1) {
        const auto isOne = [](const Parameter& p) { return p.need == Need::kOneOf; };
        return std::string(chosen == 0 ? "one" : "only one") + " of " + NamesWhere(effect, isOne) + " is to be given";
    }
    if (!hasSize && !hasSide && !hasScale) {
        return NamesWhere(effect, IsSize) + " is needed";
    }
    return hasSide && hasScale ? "scale excludes width and height" : std::string();
}

Outcome Run(const Effect& effect, const Request& request) {
    Outcome outcome;
    outcome.words = CheckValues(effect, request.values);
    const Size size = ResultSize(effect, request).value_or(Size{});
    if (outcome.words.empty() &&
        static_cast<std::uint64_t>(size[0]) * static_cast<std::uint64_t>(size[1]) > request.maxPixels) {
        outcome.words = "a result of " + std::to_string(size[0]) + " x " + std::to_string(size[1]) +
                        " pixels is above the limit of " + std::to_string(request.maxPixels);
    }
    if (!outcome.words.empty()) {
        outcome.failed = Failed::kValues;
        return outcome;
    }
    const Arguments arguments(effect, request, size);
    SetErrorStatus(QV8_STATUS_SUCCESS); // not every failure sets one
    outcome.result =
        (request.callsTwin && effect.callTwin != nullptr ? effect.callTwin : effect.call)(arguments.Slots());
    outcome.status = GetErrorStatus();
    const bool failed =
        effect.result == Result::kFlag ? outcome.status != 0 : outcome.result.pictures.hImage == nullptr;
    if (failed) {
        outcome.failed = Failed::kEffect;
        outcome.words = Explain(effect, request, outcome.status);
    }
    return outcome;
}

} // namespace catalogue

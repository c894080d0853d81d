#include "model/parameter_scale.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <sstream>

namespace {

using catalogue::Kind;

constexpr double kLargestStepless = 100000; // a wider range is any number

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

SliderScale Whole(double least, double most) {
    return {least, 1, static_cast<int>(most - least)};
}

SliderScale ScaleOfInteger(const catalogue::Parameter& parameter, Extent picture) {
    const bool isPixels = parameter.unit == std::string("pixels");
    if (parameter.range.most - parameter.range.least <= kLargestStepless) {
        return Whole(parameter.range.least, parameter.range.most);
    }
    if (isPixels && parameter.standard == 0) { // a position
        const double side = parameter.name == std::string("y") ? picture.height : picture.width;
        return Whole(-side, 2 * side);
    }
    return isPixels ? Whole(1, 100) : Whole(-255, 255);
}

} // namespace

int SliderScale::PositionOf(double number) const {
    return static_cast<int>(std::clamp(std::round((number - least) / step), 0.0, static_cast<double>(steps)));
}

std::optional<SliderScale> ScaleFor(const catalogue::Parameter& parameter, Extent picture) {
    switch (parameter.kind) {
    case Kind::kInteger:
        return ScaleOfInteger(parameter, picture);
    case Kind::kReal:
        return SliderScale{-1, 0.01, 200};
    case Kind::kAngle:
        return SliderScale{-180, 0.5, 720};
    case Kind::kScale:
        return SliderScale{0.05, 0.05, 79};
    case Kind::kWidth:
        return Whole(1, std::max(1000.0, 2 * picture.width));
    case Kind::kHeight:
        return Whole(1, std::max(1000.0, 2 * picture.height));
    default:
        return {};
    }
}

catalogue::Value ValueOf(const catalogue::Parameter& parameter, double number) {
    if (parameter.kind == Kind::kReal || parameter.kind == Kind::kAngle || parameter.kind == Kind::kScale) {
        return std::round(number * 1000) / 1000;
    }
    return static_cast<LONG>(std::lround(number));
}

double NumberOf(const catalogue::Parameter& parameter, const catalogue::Value& value, Extent picture) {
    if (const LONG* const whole = std::get_if<LONG>(&value); whole != nullptr) {
        return *whole;
    }
    if (const double* const real = std::get_if<double>(&value); real != nullptr) {
        return *real;
    }
    switch (parameter.kind) {
    case Kind::kWidth:
        return picture.width;
    case Kind::kHeight:
        return picture.height;
    case Kind::kScale:
        return 1;
    default:
        return parameter.standard;
    }
}

std::string TitleOf(const char* name) {
    constexpr std::array kCapitals{"rgb", "ycc", "y", "x"};
    std::string title;
    std::string words = name;
    std::replace(words.begin(), words.end(), '-', ' ');
    std::istringstream stream(words);
    for (std::string word; stream >> word;) {
        const bool isShort = std::find(kCapitals.begin(), kCapitals.end(), word) != kCapitals.end();
        const auto letters = isShort ? word.size() : title.empty() ? 1 : 0;
        std::transform(word.begin(), word.begin() + static_cast<std::ptrdiff_t>(letters), word.begin(),
                       [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
        title += (title.empty() ? "" : " ") + word;
    }
    return title;
}

bool IsFound(const catalogue::Effect& effect, const std::string& search) {
    const std::string all = Lower(TitleOf(effect.name) + " " + effect.name + " " + effect.function + " " +
                                  (effect.twin != nullptr ? effect.twin : "") + " " +
                                  catalogue::FamilyName(effect.family) + " " + effect.help);
    std::istringstream words(Lower(search));
    for (std::string word; words >> word;) {
        if (all.find(word) == std::string::npos) {
            return false;
        }
    }
    return true;
}

#include "catalogue/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <initializer_list>
#include <sstream>

namespace catalogue {

namespace {

template <class Number>
std::optional<Number> ParseWhole(const char* begin, const char* end) {
    Number number = 0;
    const auto [stop, error] = std::from_chars(begin, end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

// The numbers of "n,n,..." when there are `count` of them and nothing else.
std::optional<std::vector<LONG>> ParseIntegers(const std::string& text, std::size_t count, LONG least, LONG most) {
    std::vector<LONG> numbers;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t comma = std::min(text.find(',', at), text.size());
        const auto number = ParseInteger(text.substr(at, comma - at), least, most);
        if (!number) {
            return {};
        }
        numbers.push_back(*number);
        at = comma + 1;
    }
    return numbers.size() == count ? std::optional(numbers) : std::nullopt;
}

std::optional<std::vector<LONG>> ParseIntegers(const std::string& text, std::size_t count) {
    return ParseIntegers(text, count, INT32_MIN, INT32_MAX);
}

std::string NumberText(double number) {
    std::ostringstream text;
    text.precision(12);
    text << number;
    return text.str();
}

std::string RangeText(const Range& range) {
    return NumberText(range.least) + " to " + NumberText(range.most);
}

std::string Quoted(const std::string& text) {
    return "\"" + text + "\"";
}

std::string ChoiceList(const Parameter& parameter) {
    std::vector<std::string> names;
    for (const Choice& choice : parameter.Choices()) {
        names.emplace_back(choice.name);
    }
    return WordList(names);
}

std::string ParseNumber(const Parameter& parameter, const std::string& text, Value& value) {
    const auto number = ParseWhole<double>(text.data(), text.data() + text.size());
    if (!number || !std::isfinite(*number)) {
        return Quoted(text) + " is not a finite number";
    }
    value = *number;
    const bool outside = *number < parameter.range.least || *number > parameter.range.most;
    if (parameter.kind == Kind::kAngle && outside) {
        return Quoted(text) + " is not a number from " + RangeText(parameter.range);
    }
    return parameter.kind == Kind::kScale && *number <= 0 ? Quoted(text) + " is not a number above 0" : std::string();
}

std::string ParseChoice(const Parameter& parameter, const std::string& text, Value& value) {
    const auto choices = parameter.Choices();
    const auto found =
        std::find_if(choices.begin(), choices.end(), [&text](const Choice& c) { return text == c.name; });
    if (found == choices.end()) {
        return Quoted(text) + " is not " + ChoiceList(parameter);
    }
    value = found->number;
    return {};
}

std::string ParseColour(const std::string& text, Value& value) {
    const auto levels = ParseIntegers(text, 3, 0, 255);
    if (levels) {
        const auto level = [&levels](std::size_t i) { return static_cast<BYTE>((*levels)[i]); };
        value = Colour{level(0), level(1), level(2)};
    }
    return levels ? std::string() : Quoted(text) + " is not red,green,blue, each from 0 to 255";
}

// The library takes other characters in an encoding that command lines do not have. Two characters, a backslash and an
// n, are a line break: shells do not let one type it easily.
std::string ParseText(std::string text, Value& value) {
    if (!std::all_of(text.begin(), text.end(), [](char c) { return c > 0; })) {
        return Quoted(text) + " has characters other than ASCII";
    }
    for (std::size_t at = 0; (at = text.find("\\n", at)) != std::string::npos; ++at) {
        text.replace(at, 2, "\n");
    }
    value = text;
    return {};
}

std::string ParsePointList(const Parameter& parameter, const std::string& text, Value& value) {
    const auto points = ParsePoints(text);
    const auto count = static_cast<double>(points ? points->size() : 0);
    const auto [least, most] = parameter.range;
    if (count < least || count > most || count == 0) {
        const std::string list = NumberText(least) + " points x,y";
        return Quoted(text) + (most == 1       ? " is not x,y"
                               : least == most ? " is not " + list
                                               : " is not a list of at least " + list);
    }
    value = *points;
    return {};
}

struct ValueText {
    std::string operator()(double number) const {
        std::array<char, 32> text{};
        return {text.data(), std::to_chars(text.data(), text.data() + text.size(), number).ptr};
    }
    std::string operator()(std::string text) const {
        for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2) {
            text.replace(at, 1, "\\n");
        }
        return text;
    }
    std::string operator()(const Colour& colour) const {
        return Joined({colour.red, colour.green, colour.blue});
    }
    std::string operator()(const std::vector<POINT>& points) const {
        std::string text;
        for (const POINT& point : points) {
            text += (text.empty() ? "" : " ") + Joined({point.x, point.y});
        }
        return text;
    }
    std::string operator()(const RECT& rect) const {
        return Joined({rect.left, rect.top, rect.right, rect.bottom});
    }
    template <class Type>
    std::string operator()(const Type&) const {
        return {};
    }

private:
    static std::string Joined(std::initializer_list<LONG> numbers) {
        std::string text;
        for (const LONG number : numbers) {
            text += (text.empty() ? "" : ",") + std::to_string(number);
        }
        return text;
    }
};

} // namespace

std::string WordList(const std::vector<std::string>& words) {
    std::string list;
    for (std::size_t i = 0; i != words.size(); ++i) {
        list += (i == 0 ? "" : i + 1 == words.size() ? " or " : ", ") + words[i];
    }
    return list;
}

bool MayNameFile(const Parameter& parameter) {
    return parameter.kind == Kind::kPicture || parameter.kind == Kind::kMaskedPicture ||
           parameter.kind == Kind::kPattern || parameter.kind == Kind::kMask || parameter.kind == Kind::kKernel;
}

std::optional<LONG> ParseInteger(const std::string& text, LONG least, LONG most) {
    const auto number = ParseWhole<LONG>(text.data(), text.data() + text.size());
    return number && *number >= least && *number <= most ? number : std::nullopt;
}

std::optional<std::vector<POINT>> ParsePoints(const std::string& text) {
    std::vector<POINT> points;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        const auto numbers = ParseIntegers(word, 2);
        if (!numbers) {
            return {};
        }
        points.push_back({(*numbers)[0], (*numbers)[1]});
    }
    return points;
}

std::optional<RECT> ParseRectangle(const std::string& text) {
    const auto numbers = ParseIntegers(text, 4);
    return numbers ? std::optional(RECT{(*numbers)[0], (*numbers)[1], (*numbers)[2], (*numbers)[3]}) : std::nullopt;
}

std::string ParseValue(const Parameter& parameter, const std::string& text, Value& value) {
    switch (parameter.kind) {
    case Kind::kReal:
    case Kind::kAngle:
    case Kind::kScale:
        return ParseNumber(parameter, text, value);
    case Kind::kChoice:
        return ParseChoice(parameter, text, value);
    case Kind::kColour:
    case Kind::kOptionalColour:
        return ParseColour(text, value);
    case Kind::kPoints:
        return ParsePointList(parameter, text, value);
    case Kind::kRectangle: {
        const auto rectangle = ParseRectangle(text);
        value = rectangle.value_or(RECT{});
        return rectangle ? std::string() : Quoted(text) + " is not left,top,right,bottom";
    }
    case Kind::kText:
        return ParseText(text, value);
    case Kind::kKernel: {
        Kernel kernel;
        const bool found = FindKernel(text, kernel);
        value = kernel;
        return found ? std::string() : Quoted(text) + " is not " + WordList(KernelNames());
    }
    default: {
        const bool isFlag = parameter.kind == Kind::kFlag || parameter.kind == Kind::kChannel;
        const Range range = isFlag ? Range{0, 1} : parameter.range;
        const auto number = ParseInteger(text, static_cast<LONG>(range.least), static_cast<LONG>(range.most));
        value = number.value_or(0);
        return number ? std::string() : Quoted(text) + " is not a whole number from " + RangeText(range);
    }
    }
}

std::string TextOf(const Parameter& parameter, const Value& value) {
    if (const LONG* const number = std::get_if<LONG>(&value); number != nullptr) {
        const auto choices = parameter.Choices();
        const auto found =
            std::find_if(choices.begin(), choices.end(), [&](const Choice& c) { return c.number == *number; });
        return found != choices.end() ? found->name : std::to_string(*number);
    }
    return std::visit(ValueText(), value);
}

std::string FormOf(const Parameter& parameter) {
    switch (parameter.kind) {
    case Kind::kFlag:
    case Kind::kChannel:
        return "";
    case Kind::kReal:
    case Kind::kAngle:
    case Kind::kScale:
        return "NUMBER";
    case Kind::kChoice:
        return "NAME";
    case Kind::kColour:
    case Kind::kOptionalColour:
        return "r,g,b";
    case Kind::kPoints:
        return parameter.range.most > 1 ? "x,y ..." : "x,y";
    case Kind::kRectangle:
        return "l,t,r,b";
    case Kind::kText:
        return "TEXT";
    case Kind::kKernel:
        return "NAME|FILE";
    default:
        return MayNameFile(parameter) ? "FILE" : "N";
    }
}

std::string LimitsOf(const Parameter& parameter) {
    const bool required = parameter.need == Need::kRequired;
    std::string limits;
    std::string standard;
    switch (parameter.kind) {
    case Kind::kInteger: {
        const bool any = parameter.range.least == INT32_MIN;
        limits = any ? "" : RangeText(parameter.range);
        standard = NumberText(parameter.standard);
        break;
    }
    case Kind::kAngle:
        limits = RangeText(parameter.range);
        break;
    case Kind::kKernel:
        limits = WordList(KernelNames());
        break;
    case Kind::kChoice: {
        const auto choices = parameter.Choices();
        limits = ChoiceList(parameter);
        standard = std::find_if(choices.begin(), choices.end(), [&](const Choice& c) {
                       return c.number == static_cast<LONG>(parameter.standard);
                   })->name;
        break;
    }
    case Kind::kChannel:
        return "all when none is named";
    case Kind::kColour:
        standard = "black";
        break;
    case Kind::kOptionalColour:
        standard = "none";
        break;
    default:
        break;
    }
    const std::string unit = parameter.unit;
    limits += (limits.empty() || unit.empty() ? "" : " ") + unit;
    if (!required && !standard.empty()) {
        limits += (limits.empty() ? "" : ", ") + standard + " unless given";
    }
    return limits;
}

} // namespace catalogue

#include "area_options.h"

#include <charconv>
#include <sstream>

#include <CLI/CLI.hpp>

#include "mask.h"
#include "pictures/failure.h"

namespace {

// The numbers of "n,n,..." when there are `count` of them and nothing else.
std::optional<std::vector<LONG>> ParseNumbers(const std::string& text, std::size_t count) {
    std::vector<LONG> numbers;
    const char* at = text.data();
    const char* const end = at + text.size();
    while (true) {
        LONG number = 0;
        const auto [stop, error] = std::from_chars(at, end, number);
        if (error != std::errc()) {
            return {};
        }
        numbers.push_back(number);
        if (stop == end) {
            break;
        }
        if (*stop != ',') {
            return {};
        }
        at = stop + 1;
    }
    return numbers.size() == count ? std::optional(numbers) : std::nullopt;
}

std::string CheckPolygon(const std::string& text) {
    return ParsePolygon(text) ? std::string() : "\"" + text + "\" is not a list of at least two points x,y";
}

} // namespace

std::optional<std::vector<POINT>> ParsePolygon(const std::string& text) {
    std::vector<POINT> points;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        const auto numbers = ParseNumbers(word, 2);
        if (!numbers) {
            return {};
        }
        points.push_back({(*numbers)[0], (*numbers)[1]});
    }
    return points.size() >= 2 ? std::optional(points) : std::nullopt;
}

std::optional<RECT> ParseRectangle(const std::string& text) {
    const auto numbers = ParseNumbers(text, 4);
    return numbers ? std::optional(RECT{(*numbers)[0], (*numbers)[1], (*numbers)[2], (*numbers)[3]}) : std::nullopt;
}

std::string CheckRectangle(const std::string& text) {
    return ParseRectangle(text) ? std::string() : "\"" + text + "\" is not left,top,right,bottom";
}

std::vector<std::string> JoinPointWords(const std::vector<std::string>& words) {
    std::vector<std::string> joined;
    for (std::size_t i = 0; i < words.size(); ++i) {
        joined.push_back(words[i]);
        if (words[i] != "--polygon" && words[i] != "--corners") {
            continue;
        }
        const std::string option = words[i];
        std::string points;
        for (; i + 1 < words.size() && ParseNumbers(words[i + 1], 2); ++i) {
            points += (points.empty() ? "" : " ") + words[i + 1];
        }
        if (!points.empty()) {
            joined.back() = option + "=" + points;
        }
    }
    return joined;
}

void AreaOptions::AddTo(CLI::App& command) {
    CLI::Option* const mask = command.add_option("--mask", maskName_,
                                                 "picture of the same size that marks the area: "
                                                 "1-bit, or any other from luminance 128 on");
    mask->type_name("FILE")->group("Area of effect");
    AddShapesTo(command);
    mask->excludes("--polygon")->excludes("--ellipse");
}

void AreaOptions::AddShapesTo(CLI::App& command) {
    CLI::Option* const polygon = command.add_option("--polygon", polygon_, "corners of the area, at least two");
    CLI::Option* const ellipse = command.add_option("--ellipse", ellipse_, "left,top,right,bottom of the area");
    CLI::Option* const outside = command.add_flag("--outside", outside_, "everything but that area");
    polygon->type_name("x,y x,y ...")->excludes(ellipse)->check(CheckPolygon)->group("Area of effect");
    ellipse->type_name("l,t,r,b")->check(CheckRectangle)->group("Area of effect");
    outside->group("Area of effect");
}

Area AreaOptions::Resolve(const EffectRequest& request) const {
    Area area;
    area.target.hImage = request.image;
    area.inside = !outside_;
    if (!maskName_.empty()) {
        area.type = QV8_AREA_MASK;
        area.mask = LoadMask(maskName_, outside_, request);
        area.target.hMask = area.mask.Handle();
    } else if (!polygon_.empty()) {
        area.type = QV8_AREA_POLYGON;
        area.points = ParsePolygon(polygon_).value();
    } else if (!ellipse_.empty()) {
        area.type = QV8_AREA_ELLIPSE;
        area.rect = ParseRectangle(ellipse_).value();
    } else if (outside_) {
        throw Failure(kExitUsage, "--outside needs an area");
    }
    return area;
}

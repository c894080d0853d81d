// The options that limit an effect to a part of the picture.
#ifndef QV8_TOOL_AREA_OPTIONS_H
#define QV8_TOOL_AREA_OPTIONS_H

#include <optional>
#include <string>
#include <vector>

#include "effects.h"

// The area in the form in which the library takes it.
struct Area {
    ImageSet target{};
    DWORD type = QV8_AREA_WHOLE;
    std::vector<POINT> points;
    RECT rect{};
    BOOL inside = TRUE;
    Picture mask; // what target.hMask names

    int PointCount() const {
        return static_cast<int>(points.size());
    }
};

class AreaOptions {
public:
    // Adds --polygon, --ellipse and --outside.
    void AddShapesTo(CLI::App& command);

    // Adds --mask, --polygon, --ellipse and --outside. The options must stay where they are while the command is in
    // use.
    void AddTo(CLI::App& command);

    // Reads the mask file, if there is one. Throws a Failure when it cannot be used.
    Area Resolve(const EffectRequest& request) const;

private:
    std::string maskName_;
    std::string polygon_;
    std::string ellipse_;
    bool outside_ = false;
};

// Calls a function that takes an area and then its own parameters.
template <class Function, class... OwnParameters>
EffectResult CallOnArea(Function* function, const AreaOptions& options, const EffectRequest& request,
                        OwnParameters... parameters) {
    const Area area = options.Resolve(request);
    return function(&area.target, area.type, area.points.data(), area.PointCount(), &area.rect, area.inside,
                    parameters..., request.progressOwner, 0, 0, 0);
}

// The points of "x,y x,y ...", or nothing when the text is anything else or has fewer than two.
std::optional<std::vector<POINT>> ParsePolygon(const std::string& text);

// The rectangle of "left,top,right,bottom", or nothing when the text is anything else.
std::optional<RECT> ParseRectangle(const std::string& text);

// What is wrong with a text that is no rectangle.
std::string CheckRectangle(const std::string& text);

// Joins the words behind "--polygon" and "--corners" that are points into one word, so that the option is told from
// what follows it.
std::vector<std::string> JoinPointWords(const std::vector<std::string>& words);

#endif

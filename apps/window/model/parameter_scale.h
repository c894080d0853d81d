// Where a slider stands for a number, and the words that stand for effects and parameters.
#ifndef QV8_WINDOW_PARAMETER_SCALE_H
#define QV8_WINDOW_PARAMETER_SCALE_H

#include <optional>
#include <string>

#include "catalogue/effect.h"
#include "tools/view_mapping.h"

// The numbers that a slider reaches, in steps. Parameters that take any number can be given others by typing.
struct SliderScale {
    double least = 0;
    double step = 1;
    int steps = 0;

    double NumberAt(int position) const {
        return least + step * position;
    }
    int PositionOf(double number) const; // the nearest
};

// Nothing for a parameter that is no number.
std::optional<SliderScale> ScaleFor(const catalogue::Parameter& parameter, Extent picture);

// The value of that number, whole where the parameter is.
catalogue::Value ValueOf(const catalogue::Parameter& parameter, double number);

// The number of a value or of the default; without one where the slider of a picture's size stands at first.
double NumberOf(const catalogue::Parameter& parameter, const catalogue::Value& value, Extent picture);

// "rgb-gamma" as "RGB gamma".
std::string TitleOf(const char* name);

// Whether every word of the search is in the name, the export, the family or the help of the effect, in any case.
bool IsFound(const catalogue::Effect& effect, const std::string& search);

#endif

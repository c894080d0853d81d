// One effect with the values that were written for it, and several of them one after another.
#ifndef QV8_CHAINS_STEP_H
#define QV8_CHAINS_STEP_H

#include <string>
#include <vector>

#include "catalogue/effect.h"

// A value of one parameter, and the file that it has to be read from, if any.
struct Setting {
    const catalogue::Parameter* parameter;
    catalogue::Value value;
    std::string file;
};

struct Step {
    explicit Step(const catalogue::Effect& described);

    const catalogue::Effect* effect;
    // The effect's own parameters, those of its area, and what only the command line adds.
    std::vector<Setting> settings;

    // The setting of that name, or null.
    Setting* Find(const std::string& name);
    const Setting* Find(const std::string& name) const;
    std::vector<catalogue::Value> OwnValues() const;
    std::vector<catalogue::Value> AreaValues() const;

    // How many colours are to be chosen for the eye, and not by the effect's export; 0 when it is called.
    unsigned ChosenColours() const;
    bool Dithers() const;

    // Whether each pixel of the result comes from the pixel at the same place alone, wherever that is: parts of a
    // picture that are changed one by one are what they are in the whole then. For pictures without a colour table.
    bool LooksAtSinglePixels() const;
};

using Chain = std::vector<Step>;

// Whether the effect changes or makes a picture: all but those of the clipboard do.
bool IsOffered(const catalogue::Effect& effect);

// Stores what a text says. Returns what is wrong with it, or nothing.
std::string Set(Setting& setting, const std::string& text);

// What is wrong with the values of a step together, or nothing.
std::string CheckStep(const Step& step);

// The effect of that name. Throws a Failure with a name that is like it otherwise.
const catalogue::Effect& EffectNamed(const std::string& name);

// One of `known` that differs from `word` in a letter or two, as " (did you mean \"...\"?)"; nothing when none does.
std::string Suggestion(const std::string& word, const std::vector<std::string>& known);

#endif

// What a person has chosen for one effect: its parameters and its area, in the form that the effects' chains take.
#ifndef QV8_WINDOW_PARAMETER_VALUES_H
#define QV8_WINDOW_PARAMETER_VALUES_H

#include <span>
#include <string>

#include "chains/step.h"

class ParameterValues {
public:
    explicit ParameterValues(const catalogue::Effect& effect) : step_(effect) {}

    const catalogue::Effect& Effect() const {
        return *step_.effect;
    }
    // The effect's own parameters, those of its area, and what a chain adds.
    std::span<const Setting> Settings() const {
        return step_.settings;
    }
    bool Has(const std::string& name) const {
        return step_.Find(name) != nullptr;
    }
    // The value, which is nothing where the default counts or the effect has no such parameter.
    const catalogue::Value& Get(const std::string& name) const;

    // Stores a value, and takes back what it excludes: sides and a factor for both. An effect without such a parameter
    // stays as it is. Pictures and masks are the caller's. Returns whether anything is another value than before.
    bool Set(const std::string& name, const catalogue::Value& value);

    // The same from text as the command line has it, where none means the default. Returns what is wrong with the text,
    // or nothing; a value stays what it was then.
    std::string SetText(const std::string& name, const std::string& text);

    // The value as text; none for a default, a picture or a mask.
    std::string Text(const std::string& name) const;

    // What is wrong with the values together, or nothing.
    std::string Check() const {
        return CheckStep(step_);
    }
    const Step& AsStep() const {
        return step_;
    }

private:
    void DropExcluded(const Setting& given);

    Step step_;
};

// Whether two values are the same.
bool AreEqual(const catalogue::Value& value, const catalogue::Value& other);

#endif

// The native half of the package: what effects there are, and calling them.
#include <exception>
#include <string>

#include <pybind11/pybind11.h>

#include <qv8com.h>

#include "call.h"
#include "catalogue/text.h"
#include "image.h"
#include "pictures/failure.h"
#include "recipe.h"

namespace {

// What a parameter takes, by the names that the generator knows.
const char* KindName(const catalogue::Parameter& parameter) {
    using enum catalogue::Kind;
    switch (parameter.kind) {
    case kReal:
    case kAngle:
    case kScale:
        return "float";
    case kFlag:
    case kChannel:
        return "bool";
    case kChoice:
        return "choice";
    case kColour:
    case kOptionalColour:
        return "colour";
    case kPoints:
        return parameter.range.most > 1 ? "points" : "point";
    case kRectangle:
        return "rectangle";
    case kText:
        return "str";
    case kKernel:
        return "kernel";
    case kPicture:
    case kMaskedPicture:
        return "picture";
    case kPattern:
    case kMask:
        return "mask";
    default:
        return "int";
    }
}

py::dict Described(const catalogue::Parameter& parameter) {
    using enum catalogue::Kind;
    py::dict description;
    description["name"] = parameter.name;
    description["help"] = parameter.help;
    description["limits"] = catalogue::LimitsOf(parameter);
    description["kind"] = KindName(parameter);
    description["required"] = parameter.need == catalogue::Need::kRequired;
    description["default"] = py::none();
    if (parameter.kind == kInteger) {
        description["default"] = static_cast<LONG>(parameter.standard);
    } else if (parameter.kind == kFlag || parameter.kind == kChannel) {
        description["default"] = false;
    }
    py::list choices;
    for (const catalogue::Choice& choice : parameter.Choices()) {
        choices.append(choice.name);
        if (parameter.need != catalogue::Need::kRequired && choice.number == static_cast<LONG>(parameter.standard)) {
            description["default"] = choice.name;
        }
    }
    description["choices"] = choices;
    return description;
}

// When an effect gives a mask along with its picture.
const char* MaskWords(const catalogue::Effect& effect) {
    const bool givesMask = effect.result == catalogue::Result::kPictureAndMask;
    return !givesMask ? "never" : effect.source == catalogue::Source::kMaskedPicture ? "with mask" : "always";
}

// Every effect that a picture comes out of, as plain data.
py::list Describe() {
    py::list effects;
    for (const catalogue::Effect& effect : catalogue::AllEffects()) {
        if (!IsOffered(effect)) {
            continue;
        }
        py::list parameters;
        for (const catalogue::Parameter& parameter : effect.Parameters()) {
            parameters.append(Described(parameter));
        }
        py::dict description;
        description["name"] = effect.name;
        description["help"] = effect.help;
        description["family"] = catalogue::FamilyName(effect.family);
        description["takes_picture"] = effect.TakesPicture();
        description["takes_area"] = effect.TakesArea();
        description["gives_mask"] = MaskWords(effect);
        description["parameters"] = parameters;
        effects.append(description);
    }
    return effects;
}

void Raise(const char* type, const std::string& words, int status) {
    const py::object error = py::module_::import("qv8.errors").attr(type);
    PyErr_SetObject(error.ptr(), error(words, status).ptr());
}

void Translate(std::exception_ptr thrown) {
    try {
        std::rethrow_exception(std::move(thrown));
    } catch (const EffectFailure& failure) {
        const bool isValue = failure.Code() == kExitUsage;
        Raise(isValue                            ? "ValueRefused"
              : failure.Code() == kExitCancelled ? "Cancelled"
                                                 : "Error",
              failure.what(), failure.Status());
    } catch (const Failure& failure) {
        switch (failure.Code()) {
        case kExitUsage:
            return Raise("ValueRefused", failure.what(), QV8_STATUS_PARAMETER);
        case kExitInput:
        case kExitOutput:
            return Raise("FileError", failure.what(), 0);
        default:
            return Raise("Error", failure.what(), 0);
        }
    }
}

} // namespace

PYBIND11_MODULE(_native, module) {
    using namespace py::literals;
    py::register_exception_translator(&Translate);
    module.def("describe", &Describe);
    module.def("apply", &Apply, "name"_a, "image"_a, "values"_a, "area"_a = py::none(), "progress"_a = py::none());
    AddImage(module);
    AddRecipe(module);
}

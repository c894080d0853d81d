#include "recipe.h"

#include <memory>
#include <string>

#include <pybind11/stl.h>

#include "call.h"
#include "chains/file_run.h"
#include "chains/options.h"
#include "chains/recipe.h"
#include "pictures/failure.h"

namespace {

// A chain with all that it needs. Its text makes it again in another process.
struct PreparedRecipe {
    std::string text;
    std::string name; // of the file that the text comes from, or empty where it is a chain
    Recipe recipe;
    std::unique_ptr<ReadyChain> chain;
};

std::unique_ptr<PreparedRecipe> Prepared(std::string text, std::string name) {
    auto prepared = std::make_unique<PreparedRecipe>();
    prepared->text = std::move(text);
    prepared->name = std::move(name);
    const py::gil_scoped_release released;
    if (prepared->name.empty()) {
        prepared->recipe.chain = ParseChain(prepared->text);
    } else {
        prepared->recipe = ParseRecipe(prepared->text, prepared->name);
    }
    CheckChain(prepared->recipe.chain);
    prepared->chain = std::make_unique<ReadyChain>(prepared->recipe.chain, FileOptions().maxPixels);
    return prepared;
}

std::unique_ptr<PreparedRecipe> RecipeFrom(const py::object& source) {
    const auto word = py::str(py::module_::import("os").attr("fspath")(source)).cast<std::string>();
    if (IsRecipeName(word)) {
        return Prepared(LoadRecipeText(word), word);
    }
    const std::size_t first = word.find_first_not_of(" \t\r\n");
    const bool isJson = first != std::string::npos && (word[first] == '[' || word[first] == '{');
    return Prepared(word, isJson ? "recipe" : "");
}

std::vector<std::string> Run(const PreparedRecipe& recipe, const py::object& input, const py::object& output,
                             bool force, bool sync, const py::object& progress) {
    const auto fileName = [](const py::object& name) {
        return name.is_none() ? std::string() : py::module_::import("os").attr("fsencode")(name).cast<std::string>();
    };
    const FileNames names{fileName(input), fileName(output), {}};
    FileOptions options;
    options.format = recipe.recipe.format;
    options.quality = recipe.recipe.quality;
    options.mayReplace = force || recipe.recipe.force;
    options.sync = sync;
    if (recipe.chain->TakesPicture() == names.input.empty()) {
        throw py::value_error(names.input.empty() ? "input: a picture is needed"
                                                  : "input: the recipe makes its picture");
    }
    Watch watch(progress);
    return watch.Run(
        [&] { return RunOnFile(*recipe.chain, names, options, {.report = watch.AsReport(), .lenient = true}).notes; });
}

std::vector<std::string> Steps(const PreparedRecipe& recipe) {
    std::vector<std::string> names;
    for (const Step& step : recipe.recipe.chain) {
        names.emplace_back(step.effect->name);
    }
    return names;
}

} // namespace

void AddRecipe(py::module_& module) {
    using namespace py::literals;
    py::class_<PreparedRecipe>(module, "Recipe",
                               "Effects one after another, as the command line has them: the name of a recipe file "
                               "(.json), its text, or a chain\n"
                               "such as \"resize --scale 0.25 --smooth | sharp --strength 20\". What it needs is read "
                               "once; threads may share it.")
        .def(py::init(&RecipeFrom), "source"_a)
        .def(
            "__call__",
            [](const PreparedRecipe& recipe, const py::object& image, const py::object& progress) {
                return ApplyChain(*recipe.chain, image, progress, true);
            },
            "image"_a = py::none(), py::kw_only(), "progress"_a = py::none(),
            "The picture after all of its effects, an array or an Image like the one given.")
        .def("run", &Run, "input"_a, "output"_a, py::kw_only(), "force"_a = false, "sync"_a = true,
             "progress"_a = py::none(),
             "From file to file, as `qv8 run` does it: the output is there whole or not at all, in the format, with "
             "the\n"
             "quality and with everything that goes along. One that is there is refused without force. Returns what "
             "was\n"
             "lost on the way, a sentence each.")
        .def_property_readonly("steps", &Steps, "The names of its effects.")
        .def(py::pickle([](const PreparedRecipe& recipe) { return py::make_tuple(recipe.text, recipe.name); },
                        [](const py::tuple& state) {
                            return Prepared(state[0].cast<std::string>(), state[1].cast<std::string>());
                        }));
}

#include "description.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "catalogue/text.h"
#include "qv8version.h"

namespace {

using Json = nlohmann::ordered_json;

const char* DepthWords(catalogue::Depths depths) {
    switch (depths) {
    case catalogue::Depths::kGreyOrTrueColour:
        return "8 bits with grey levels, 16, 24 and 32 bits";
    case catalogue::Depths::kTrueColour24:
        return "24 bits";
    default:
        return "all";
    }
}

Json DescribeParameters(std::span<const catalogue::Parameter> parameters) {
    Json list = Json::array();
    for (const catalogue::Parameter& parameter : parameters) {
        Json choices = Json::array();
        for (const catalogue::Choice& choice : parameter.Choices()) {
            choices.push_back(choice.name);
        }
        list.push_back({{"name", parameter.name},
                        {"help", parameter.help},
                        {"form", catalogue::FormOf(parameter)},
                        {"limits", catalogue::LimitsOf(parameter)},
                        {"unit", parameter.unit},
                        {"required", parameter.need == catalogue::Need::kRequired},
                        {"file", catalogue::MayNameFile(parameter)},
                        {"choices", choices}});
    }
    return list;
}

Json DescribeEffect(const catalogue::Effect& effect) {
    return {{"name", effect.name},
            {"function", effect.function},
            {"twin", effect.twin != nullptr ? Json(effect.twin) : Json()},
            {"family", catalogue::FamilyName(effect.family)},
            {"help", effect.help},
            {"takesPicture", effect.TakesPicture()},
            {"depths", DepthWords(effect.depths)},
            {"parameters", DescribeParameters(effect.Parameters())},
            {"area", DescribeParameters(catalogue::AreaParameters(effect))},
            {"givesMask", effect.result == catalogue::Result::kPictureAndMask},
            {"showsProgress", effect.showsProgress}};
}

Json DescribeCommand(const CLI::App& command) {
    Json options = Json::array();
    for (const CLI::Option* const option : command.get_options()) {
        Json names = Json::array();
        for (const std::string& name : option->get_snames()) {
            names.push_back("-" + name);
        }
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
        options.push_back({{"names", names},
                           {"word", option->get_name(true)},
                           {"form", option->get_items_expected_max() == 0 ? "" : option->get_type_name()},
                           {"help", option->get_description()},
                           {"group", option->get_group()},
                           {"required", option->get_required()}});
    }
    return {{"name", command.get_name()},
            {"help", command.get_description()},
            {"group", command.get_group()},
            {"options", options}};
}

} // namespace

std::string DescribeProgram(const CLI::App& app) {
    Json effects = Json::array();
    for (const catalogue::Effect& effect : catalogue::AllEffects()) {
        effects.push_back(DescribeEffect(effect));
    }
    Json commands = Json::array();
    for (const CLI::App* const command : app.get_subcommands({})) {
        commands.push_back(DescribeCommand(*command));
    }
    const Json all = {{"version", QV8_VERSION},     {"help", app.get_description()},
                      {"footer", app.get_footer()}, {"options", DescribeCommand(app)["options"]},
                      {"effects", effects},         {"commands", commands}};
    return all.dump(1) + "\n";
}

#include "chains/recipe.h"

#include <algorithm>
#include <set>

#include "catalogue/text.h"
#include "chains/json.h"
#include "pictures/failure.h"
#include "pictures/input_file.h"

namespace {

constexpr std::size_t kLargestRecipe = 1 << 20;

using Kind = JsonNode::Kind;

// Knows the file that mistakes are in.
class RecipeReader {
public:
    explicit RecipeReader(const std::string& fileName) : fileName_(fileName) {}

    Recipe Read(const JsonNode& root) const;

private:
    [[noreturn]] void Fail(const JsonNode& at, const std::string& mistake) const {
        throw Failure(kExitUsage, fileName_ + ": line " + std::to_string(at.line) + ": " + mistake);
    }
    void RefuseRepeated(const JsonNode& object) const;
    std::string Text(const JsonNode& node) const;
    std::string ListText(const JsonNode& node) const;
    int Whole(const JsonNode& node, int least, int most) const;
    bool Truth(const JsonNode& node) const {
        return Whole(node, 0, 1) != 0;
    }
    Chain ReadChain(const JsonNode& steps) const;
    Step ReadStep(const JsonNode& node) const;
    void ReadSetting(const JsonNode& member, Step& step) const;
    Step NamedStep(const JsonNode& node) const;

    const std::string& fileName_;
};

void RecipeReader::RefuseRepeated(const JsonNode& object) const {
    std::set<std::string> names;
    for (const JsonNode& member : object.children) {
        if (!names.insert(member.name).second) {
            Fail(member, member.name + " stands there twice");
        }
    }
}

std::string RecipeReader::Text(const JsonNode& node) const {
    if (node.kind != Kind::kText) {
        Fail(node, (node.name.empty() ? "this" : node.name) + " is to be a text or a number");
    }
    return node.text;
}

// Lists are written as on command lines: numbers with commas, points with spaces between them.
std::string RecipeReader::ListText(const JsonNode& node) const {
    if (node.kind != Kind::kArray) {
        return Text(node);
    }
    std::string text;
    for (const JsonNode& child : node.children) {
        const char* const separator = child.kind == Kind::kArray ? " " : ",";
        text += (text.empty() ? "" : separator) + ListText(child);
    }
    return text;
}

int RecipeReader::Whole(const JsonNode& node, int least, int most) const {
    const auto number = catalogue::ParseInteger(Text(node), least, most);
    if (!number) {
        Fail(node, node.name + " is not a whole number from " + std::to_string(least) + " to " + std::to_string(most));
    }
    return static_cast<int>(*number);
}

Step RecipeReader::NamedStep(const JsonNode& node) const {
    try {
        return Step(EffectNamed(Text(node)));
    } catch (const Failure& failure) {
        Fail(node, failure.what());
    }
}

void RecipeReader::ReadSetting(const JsonNode& member, Step& step) const {
    Setting* const setting = step.Find(member.name);
    const std::string subject = std::string(step.effect->name) + ": ";
    if (setting == nullptr) {
        std::vector<std::string> known;
        std::transform(step.settings.begin(), step.settings.end(), std::back_inserter(known),
                       [](const Setting& s) { return s.parameter->name; });
        Fail(member, subject + "there is no parameter " + member.name + Suggestion(member.name, known));
    }
    if (member.kind == Kind::kNothing) {
        return;
    }
    if (const std::string mistake = Set(*setting, ListText(member)); !mistake.empty()) {
        Fail(member, subject + member.name + ": " + mistake);
    }
}

// A name alone, or an object with the name as "effect" and the effect's parameters.
Step RecipeReader::ReadStep(const JsonNode& node) const {
    if (node.kind == Kind::kText) {
        return NamedStep(node);
    }
    const auto isName = [](const JsonNode& member) { return member.name == "effect"; };
    const auto name = std::find_if(node.children.begin(), node.children.end(), isName);
    if (node.kind != Kind::kObject || name == node.children.end()) {
        Fail(node, R"(a step is the name of an effect, or {"effect": NAME, PARAMETER: VALUE ...})");
    }
    RefuseRepeated(node);
    Step step = NamedStep(*name);
    for (const JsonNode& member : node.children) {
        if (!isName(member)) {
            ReadSetting(member, step);
        }
    }
    return step;
}

Chain RecipeReader::ReadChain(const JsonNode& steps) const {
    Chain chain;
    if (steps.kind != Kind::kArray || steps.children.empty()) {
        Fail(steps, "steps are a list of effects");
    }
    for (const JsonNode& node : steps.children) {
        chain.push_back(ReadStep(node));
        if (const std::string mistake = CheckStep(chain.back()); !mistake.empty()) {
            Fail(node, std::string(chain.back().effect->name) + ": " + mistake);
        }
    }
    return chain;
}

Recipe RecipeReader::Read(const JsonNode& root) const {
    Recipe recipe;
    if (root.kind != Kind::kObject) {
        recipe.chain = ReadChain(root);
        return recipe;
    }
    RefuseRepeated(root);
    for (const JsonNode& member : root.children) {
        if (member.name == "steps") {
            recipe.chain = ReadChain(member);
        } else if (member.name == "name") {
            recipe.name = Text(member);
        } else if (member.name == "format") {
            recipe.format = Text(member);
        } else if (member.name == "quality") {
            recipe.quality = Whole(member, 1, 100);
        } else if (member.name == "progressive") {
            recipe.progressive = Truth(member);
        } else if (member.name == "force") {
            recipe.force = Truth(member);
        } else {
            const std::vector<std::string> known{"steps", "name", "format", "quality", "progressive", "force"};
            Fail(member, "a recipe has no " + member.name + Suggestion(member.name, known));
        }
    }
    if (recipe.chain.empty()) {
        Fail(root, "the steps are missing");
    }
    return recipe;
}

} // namespace

bool IsRecipeName(const std::string& word) {
    return word.ends_with(".json");
}

Recipe ParseRecipe(const std::string& text, const std::string& fileName) {
    return RecipeReader(fileName).Read(ParseJson(text, fileName));
}

std::string LoadRecipeText(const std::string& fileName) {
    const std::vector<BYTE> text = ReadWholeFile(fileName, kLargestRecipe, [](const std::vector<BYTE>&) {});
    return {text.begin(), text.end()};
}

Recipe LoadRecipe(const std::string& fileName) {
    return ParseRecipe(LoadRecipeText(fileName), fileName);
}

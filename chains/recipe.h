// A chain of effects in a file, and what is to become of its results.
#ifndef QV8_CHAINS_RECIPE_H
#define QV8_CHAINS_RECIPE_H

#include <optional>
#include <string>

#include "chains/step.h"

struct Recipe {
    Chain chain;
    std::string name;   // pattern of the results' names; empty unless the recipe says it
    std::string format; // likewise
    std::optional<int> quality;
    bool progressive = false;
    bool force = false;
};

// Whether the word before the files is the name of a recipe, and no chain.
bool IsRecipeName(const std::string& word);

// Reads a recipe from a file. Throws a Failure that names the line and the parameter of a mistake.
Recipe LoadRecipe(const std::string& fileName);

// The text of a recipe's file, which is no longer than a recipe may be. Throws a Failure.
std::string LoadRecipeText(const std::string& fileName);

// Reads a recipe from text.
Recipe ParseRecipe(const std::string& text, const std::string& fileName);

#endif

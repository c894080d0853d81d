// Recipes of the command line.
#ifndef QV8_PYTHON_RECIPE_H
#define QV8_PYTHON_RECIPE_H

#include <pybind11/pybind11.h>

void AddRecipe(pybind11::module_& module);

#endif

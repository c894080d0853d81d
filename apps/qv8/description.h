// All that the program offers, as data for what makes manuals, completions and bindings of it.
#ifndef QV8_APP_DESCRIPTION_H
#define QV8_APP_DESCRIPTION_H

#include <string>

namespace CLI {
class App;
}

// The effects with their functions and parameters, and the commands with their options, as JSON.
std::string DescribeProgram(const CLI::App& app);

#endif

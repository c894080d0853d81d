// The options of an effect, as they stand on a command line and in the text of a chain.
#ifndef QV8_CHAINS_OPTIONS_H
#define QV8_CHAINS_OPTIONS_H

#include <string>

#include <CLI/CLI.hpp>

#include "chains/step.h"

// Adds an option for each parameter of an effect. The step must stay where it is while the command is in use.
void AddParameters(CLI::App& command, Step& step);

// Throws a Failure that names what is wrong with words that nothing takes better than the parser does.
void RefuseExtras(const CLI::App& command);

// Reads "resize --scale 0.25 --smooth | sharp --strength 20". Throws a Failure.
Chain ParseChain(const std::string& text);

// Throws a Failure unless every step can stand where it does: only the first may make its picture, and all give one.
void CheckChain(const Chain& chain);

#endif

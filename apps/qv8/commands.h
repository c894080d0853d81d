// What the commands do once their words are understood.
#ifndef QV8_APP_COMMANDS_H
#define QV8_APP_COMMANDS_H

#include <iosfwd>
#include <string>
#include <vector>

#include "batch.h"
#include "chains/file_run.h"
#include "chains/step.h"
#include "pictures/failure.h"

// The command of one effect.
struct EffectCommand {
    explicit EffectCommand(const catalogue::Effect& effect) : step(effect) {}

    // Takes the words for what no option gave, checks everything and does it.
    ExitCode Run(std::ostream& err);

    Step step;
    FileNames names;
    FileOptions files;
    bool quiet = false;
    std::string named;  // output
    std::string second; // the words behind INPUT
    std::string last;
};

// The command that applies a chain to many files.
struct RunCommand {
    std::string chain;
    std::string name;
    std::uint64_t megabytes = 0;
    BatchOptions batch;

    ExitCode Run(std::ostream& out, std::ostream& err);
};

// Descriptions of pictures.
struct InfoCommand {
    std::vector<std::string> names;
    FileOptions files;
    bool json = false;

    ExitCode Run(std::ostream& out, std::ostream& err) const;
};

// A line about each effect.
ExitCode ListEffects(std::ostream& out, std::ostream& err);

// The second picture that an effect cannot do without, or null: it may be given as a word between INPUT and OUTPUT.
Setting* SecondPicture(Step& step);

std::string Capitals(std::string text);

#endif

// The files that a run over many is to read, and what its results are called.
#ifndef QV8_APP_INPUTS_H
#define QV8_APP_INPUTS_H

#include <filesystem>
#include <string>
#include <vector>

struct InputFile {
    std::string name;
    std::string folder; // below the folder that was searched; results keep it
};

struct InputOptions {
    std::vector<std::string> names; // files, folders, patterns with * and ?
    std::string listName;           // a file with one name a line, "-" for standard input; empty: none
    bool recursive = false;         // look for pictures in folders and the folders in them
};

// All of them, folders in the order of their names. A name that is not there stays in the list, to be reported when its
// turn comes. Throws a Failure when a pattern fits nothing, or a folder is not to be searched.
std::vector<InputFile> GatherInputs(const InputOptions& options);

// The names in a pattern with * and ? in its last part; the pattern alone when it has none, or is itself there.
std::vector<std::string> ExpandPattern(const std::string& pattern);

// A name as the program has all of its texts.
std::string Utf8(const std::filesystem::path& path);

// Fills in a pattern: {stem} is the input's name without folder and ending, {ext} the ending with its dot. Throws a
// Failure when something else stands in braces.
std::string FillName(const std::string& pattern, const std::string& inputName);

#endif

// Runs an effect by its description.
#ifndef QV8_CATALOGUE_RUN_H
#define QV8_CATALOGUE_RUN_H

#include <cstdint>
#include <string>
#include <vector>

#include "catalogue/effect.h"

namespace catalogue {

struct Request {
    HGLOBAL image = nullptr; // the caller's; 0 for an effect that takes none
    Area area;
    std::vector<Value> values; // in the order of the effect's parameters; what is missing at the end is the default
    DWORD progressOwner = 0;   // as the exports take it
    HWND window = nullptr;     // owner of the clipboard
    bool callsTwin = false;    // the export that stores its result, where there is one
    std::uint64_t maxPixels = std::uint64_t{1} << 31; // no result of a given size is larger
};

enum class Failed { kNot, kValues, kEffect };

struct Outcome {
    CallResult result; // the pictures are the caller's from now on
    Failed failed = Failed::kNot;
    int status = 0;    // of the library
    std::string words; // why it failed, and what would help
};

// The area that values of AreaParameters(effect) stand for. Returns what is wrong with them, or nothing. A mask marks
// the area even with `outside`: the caller exchanges its bits.
std::string MakeArea(const Effect& effect, const std::vector<Value>& values, Area& area);

// What is wrong with the values for whatever picture, or nothing.
std::string CheckValues(const Effect& effect, const std::vector<Value>& values);

// Calls the export. Values that a picture of this size cannot have are told apart from what the library refuses.
Outcome Run(const Effect& effect, const Request& request);

// Why a call with `status` failed and what would help, in words that need no subject.
std::string Explain(const Effect& effect, const Request& request, int status);

} // namespace catalogue

#endif

// One picture, or none, through a chain into a file.
#ifndef QV8_APP_SINGLE_RUN_H
#define QV8_APP_SINGLE_RUN_H

#include <cstdint>
#include <string>

#include "pictures/picture.h"
#include "step.h"

inline constexpr std::uint64_t kMaxPixels = std::uint64_t{256} << 20; // unless --max-pixels says otherwise

// What goes in and out.
struct FileOptions {
    std::string input; // empty for an effect without a source
    std::string output;
    std::string maskOutput;  // empty: the mask of the result is not wanted
    bool mayReplace = false; // an output that is there already
    std::uint64_t maxPixels = kMaxPixels;
    int quality = 90;
};

// All that can be wrong with the names is found before the work. Throws a Failure.
void RunOnFile(const Chain& chain, const FileOptions& files);

// Throws a Failure when the file is there and may not be replaced.
void RefuseToReplace(const std::string& output, bool mayReplace);

#endif

// One picture, or none, through a chain into a file.
#ifndef QV8_CHAINS_FILE_RUN_H
#define QV8_CHAINS_FILE_RUN_H

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "chains/chain.h"

struct FileNames {
    std::string input; // empty for a chain that makes its picture
    std::string output;
    std::string maskOutput; // empty: the mask of the result is not wanted
};

// How files are read and written.
struct FileOptions {
    std::uint64_t maxPixels = std::uint64_t{256} << 20;
    std::string format;         // empty: what the ending of the output's name asks for
    std::optional<int> quality; // of JPEG and WebP; 90 unless given
    bool progressive = false;   // a JPEG that appears in steps
    bool strip = false;         // leave profile, EXIF and resolution out
    bool sync = true;           // the file is on the disk before it takes its place
    // Told the size of the input before memory is taken for it.
    std::function<void(std::uint64_t width, std::uint64_t height)> sizeKnown;
    bool mayReplace = false; // an output that is there already
};

struct FileReport {
    std::uint64_t pixels = 0;       // of the input, or else of the output
    std::vector<std::string> notes; // what of the input is not in the output, a sentence each
};

// All that can be wrong with the names is found before the work. Throws a Failure.
FileReport RunOnFile(const ReadyChain& chain, const FileNames& names, const FileOptions& options,
                     const ApplyMode& mode);

// Writes a picture that comes from no file. Throws a Failure.
void SaveAlone(Picture picture, const FileNames& names, const FileOptions& options);

// Throws a Failure when the file is there and may not be replaced.
void RefuseToReplace(const std::string& output, bool mayReplace);

// Whether two names mean one file, which need not be there yet.
bool AreOneFile(const std::string& name, const std::string& other);

#endif

// A chain over many files.
#ifndef QV8_APP_BATCH_H
#define QV8_APP_BATCH_H

#include <iosfwd>
#include <string>

#include "chains/file_run.h"
#include "inputs.h"
#include "pictures/failure.h"

struct BatchOptions {
    InputOptions inputs;
    std::string output; // of the only file; empty: names are made from those of the inputs
    std::string outFolder;
    std::string name = "{stem}{ext}"; // of each result
    unsigned jobs = 0;                // 0: as many as there are processors
    std::uint64_t memory = 0;         // bytes that all pictures under way may take; 0: half of the machine's
    bool skipExisting = false;
    bool json = false;  // a line about each file on standard output
    bool quiet = false; // no bar and no summary
    bool verbose = false;
    FileOptions files;
};

// Works on every file, whatever becomes of the others. Throws a Failure when it cannot begin.
ExitCode RunBatch(const ReadyChain& chain, const BatchOptions& options, std::ostream& out, std::ostream& err);

#endif

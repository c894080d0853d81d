// Tells people and programs how a run over many files goes.
#ifndef QV8_APP_BATCH_REPORT_H
#define QV8_APP_BATCH_REPORT_H

#include <chrono>
#include <cstdint>
#include <iosfwd>
#include <mutex>
#include <string>
#include <vector>

#include "pictures/failure.h"

struct FileOutcome {
    enum class State { kDone, kSkipped, kFailed, kCancelled };

    std::string input;
    std::string output;
    State state = State::kDone;
    ExitCode code = kExitOk;
    std::string error;
    std::vector<std::string> notes; // what of the input is not in the output
    std::uint64_t pixels = 0;
    double seconds = 0;
};

enum class Voice { kQuiet, kNormal, kVerbose };

// Threads may call it at once.
class BatchReport {
public:
    BatchReport(std::size_t files, Voice voice, bool json, std::ostream& out, std::ostream& err);
    BatchReport(const BatchReport&) = delete;
    BatchReport& operator=(const BatchReport&) = delete;

    void Add(const FileOutcome& outcome);

    // Takes the bar away, says what became of the files and tells the exit code.
    ExitCode Finish();

private:
    double Seconds() const;
    void DrawBar();
    void ClearBar();

    std::mutex mutex_;
    std::ostream& out_;
    std::ostream& err_;
    Voice voice_;
    bool json_;
    bool bar_;
    std::size_t drawn_ = 0; // characters of the bar on the terminal
    std::size_t files_;
    std::size_t done_ = 0;
    std::size_t skipped_ = 0;
    std::size_t failed_ = 0;
    std::uint64_t pixels_ = 0;
    ExitCode lastCode_ = kExitOk;
    std::chrono::steady_clock::time_point begin_;
    std::chrono::steady_clock::time_point lastDrawn_;
};

// What the bar shows after `seconds`: files, pixels per second and time left.
std::string BatchLine(std::size_t finished, std::size_t files, std::uint64_t pixels, double seconds);

#endif

#include "batch_report.h"

#include <algorithm>
#include <cstdio>
#include <ostream>

#include "chains/json.h"
#include "message.h"
#include "pictures/interrupt.h"
#include "progress_bar.h"

namespace {

constexpr std::chrono::milliseconds kBetweenDrawings{100};

const char* StateName(FileOutcome::State state) {
    switch (state) {
    case FileOutcome::State::kDone:
        return "done";
    case FileOutcome::State::kSkipped:
        return "skipped";
    case FileOutcome::State::kFailed:
        return "failed";
    default:
        return "cancelled";
    }
}

std::string JsonOf(const FileOutcome& outcome) {
    std::vector<std::pair<std::string, JsonValue>> members{{"input", outcome.input},
                                                           {"output", outcome.output},
                                                           {"state", std::string(StateName(outcome.state))},
                                                           {"code", std::int64_t{outcome.code}}};
    if (!outcome.error.empty()) {
        members.emplace_back("error", outcome.error);
    }
    for (const std::string& note : outcome.notes) {
        members.emplace_back("note", note);
    }
    members.emplace_back("pixels", static_cast<std::int64_t>(outcome.pixels));
    members.emplace_back("seconds", outcome.seconds);
    return JsonLine(members);
}

std::string Fixed(double number, int digits) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", digits, number);
    return text;
}

std::string Clock(double seconds) {
    char text[64];
    const auto whole = static_cast<long long>(seconds + 0.5);
    std::snprintf(text, sizeof text, "%lld:%02lld", whole / 60, whole % 60);
    return text;
}

} // namespace

BatchReport::BatchReport(std::size_t files, Voice voice, bool json, std::ostream& out, std::ostream& err)
    : out_(out), err_(err), voice_(voice), json_(json), bar_(voice != Voice::kQuiet && ErrorsGoToTerminal()),
      files_(files), begin_(std::chrono::steady_clock::now()), lastDrawn_(begin_) {}

double BatchReport::Seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin_).count();
}

void BatchReport::ClearBar() {
    if (drawn_ != 0) {
        err_ << "\r" + std::string(drawn_, ' ') + "\r";
        drawn_ = 0;
    }
}

void BatchReport::DrawBar() {
    const auto now = std::chrono::steady_clock::now();
    if (!bar_ || (now - lastDrawn_ < kBetweenDrawings)) {
        return;
    }
    lastDrawn_ = now;
    const std::string line = BatchLine(done_ + skipped_ + failed_, files_, pixels_, Seconds());
    ClearBar();
    err_ << line << std::flush;
    drawn_ = line.size();
}

void BatchReport::Add(const FileOutcome& outcome) {
    using State = FileOutcome::State;
    const std::lock_guard lock(mutex_);
    done_ += outcome.state == State::kDone ? 1 : 0;
    skipped_ += outcome.state == State::kSkipped ? 1 : 0;
    failed_ += outcome.state == State::kFailed ? 1 : 0;
    pixels_ += outcome.pixels;
    if (outcome.state == State::kFailed) {
        ClearBar();
        lastCode_ = outcome.code;
        err_ << "qv8: " + OneLine(outcome.error) + "\n" << std::flush;
    } else if (voice_ == Voice::kVerbose && outcome.state != State::kCancelled) {
        ClearBar();
        err_ << OneLine(outcome.input) + " -> " + OneLine(outcome.output) + ": " + StateName(outcome.state) + ", " +
                    Fixed(outcome.seconds, 3) + " s\n";
    }
    for (const std::string& note : outcome.notes) {
        if (voice_ == Voice::kVerbose) {
            err_ << "qv8: " + OneLine(outcome.input + ": " + note) + "\n";
        }
    }
    if (json_) {
        out_ << JsonOf(outcome) << std::flush;
    }
    DrawBar();
}

ExitCode BatchReport::Finish() {
    const std::lock_guard lock(mutex_);
    ClearBar();
    if (voice_ != Voice::kQuiet && files_ != 1) {
        const std::size_t left = files_ - done_ - skipped_ - failed_;
        err_ << "qv8: " + std::to_string(done_) + " done, " + std::to_string(skipped_) + " skipped, " +
                    std::to_string(failed_) + " failed" + (left != 0 ? ", " + std::to_string(left) + " left" : "") +
                    " in " + Fixed(Seconds(), 1) + " s\n"
             << std::flush;
    }
    if (Interrupted()) {
        return kExitCancelled;
    }
    return failed_ == 0 ? kExitOk : files_ == 1 ? lastCode_ : kExitSomeFailed;
}

std::string BatchLine(std::size_t finished, std::size_t files, std::uint64_t pixels, double seconds) {
    const int percent = static_cast<int>(100 * finished / std::max<std::size_t>(files, 1));
    const double elapsed = std::max(seconds, 0.001);
    const double left =
        elapsed * static_cast<double>(files - finished) / static_cast<double>(std::max<std::size_t>(finished, 1));
    return ProgressLine(percent) + "  " + std::to_string(finished) + "/" + std::to_string(files) + " files  " +
           Fixed(static_cast<double>(pixels) / 1e6 / elapsed, 1) + " Mpixel/s  " +
           (finished == 0 ? "-:--" : Clock(left)) + " left";
}

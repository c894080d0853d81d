#include "batch.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <map>
#include <new>
#include <stdexcept>
#include <system_error>
#include <thread>

#include "batch_report.h"
#include "memory_budget.h"
#include "pictures/image_file.h"
#include "pictures/interrupt.h"
#include "progress_bar.h"

namespace fs = std::filesystem;

namespace {

// The picture, the result and what reading and writing need besides, where both are of one size.
constexpr std::uint64_t kBytesForAPixel = 12;

struct Job {
    std::string input;
    std::string output;
};

// The result of each input. Throws a Failure when two would have one name.
std::vector<Job> PlanJobs(const ReadyChain& chain, const BatchOptions& options) {
    if (!chain.TakesPicture()) {
        return {{"", options.output}};
    }
    std::vector<Job> jobs;
    std::map<fs::path, std::string> inputOf;
    for (const InputFile& input : GatherInputs(options.inputs)) {
        if (!options.output.empty()) {
            jobs.push_back({input.name, options.output});
            continue;
        }
        fs::path name = PathOf(FillName(options.name, input.name));
        if (!options.files.format.empty() && options.name.ends_with("{ext}")) {
            name.replace_extension(PathOf("." + options.files.format));
        }
        const fs::path path = (PathOf(options.outFolder) / PathOf(input.folder) / name).lexically_normal();
        const auto [other, isNew] = inputOf.try_emplace(path, input.name);
        if (!isNew) {
            throw Failure(kExitUsage, other->second + " and " + input.name + " would both become " + Utf8(path) +
                                          "; --name can keep them apart");
        }
        jobs.push_back({input.name, Utf8(path)});
    }
    if (!options.output.empty() && jobs.size() != 1) {
        throw Failure(kExitUsage, options.output + ": is one output for " + std::to_string(jobs.size()) +
                                      " inputs; --out-dir takes many");
    }
    return jobs;
}

// Takes one job after the other from a common list until none is left, or an interrupt ends it.
class Workers {
public:
    Workers(const ReadyChain& chain, const BatchOptions& options, const std::vector<Job>& jobs, BatchReport& report)
        : chain_(chain), options_(options), jobs_(jobs), report_(report),
          budget_(options.memory != 0 ? options.memory : UsualMemory()) {}

    void Run(unsigned count) {
        std::vector<std::thread> threads;
        threads.reserve(count);
        try {
            for (unsigned i = 1; i < count; ++i) {
                threads.emplace_back([this] { Work(); });
            }
        } catch (const std::system_error&) { // then those that there are do it
        }
        Work();
        for (std::thread& thread : threads) {
            thread.join();
        }
        if (outOfMemory_) {
            throw std::bad_alloc();
        }
    }

private:
    // Nothing leaves it: an exception would end the program from a thread.
    void Work() noexcept {
        try {
            for (std::size_t i = next_++; i < jobs_.size() && !Interrupted(); i = next_++) {
                report_.Add(Do(jobs_[i]));
            }
        } catch (...) { // of what the report needs
            outOfMemory_ = true;
        }
    }
    FileOutcome Do(const Job& job);
    FileReport Apply(const Job& job);

    const ReadyChain& chain_;
    const BatchOptions& options_;
    const std::vector<Job>& jobs_;
    BatchReport& report_;
    MemoryBudget budget_;
    std::atomic<std::size_t> next_{0};
    std::atomic<bool> outOfMemory_{false};
};

FileReport Workers::Apply(const Job& job) {
    std::error_code failed;
    fs::create_directories(PathOf(job.output).parent_path(), failed); // what fails shows when the file is written
    MemoryBudget::Share share(budget_);
    FileOptions files = options_.files;
    files.sizeKnown = [&share](std::uint64_t width, std::uint64_t height) {
        share.Take(width * height * kBytesForAPixel);
    };
    const bool isAlone = !options_.quiet && jobs_.size() == 1;
    ProgressBar bar(isAlone ? ProgressBar::Shown::kOnTerminal : ProgressBar::Shown::kNever);
    return RunOnFile(chain_, {job.input, job.output, {}}, files, {.report = bar.AsReport(), .lenient = true});
}

FileOutcome Workers::Do(const Job& job) {
    FileOutcome outcome;
    outcome.input = job.input;
    outcome.output = job.output;
    std::error_code unknown;
    if (options_.skipExisting && fs::exists(PathOf(job.output), unknown)) {
        outcome.state = FileOutcome::State::kSkipped;
        return outcome;
    }
    const auto fail = [&outcome](ExitCode code, const std::string& error) {
        outcome.state = code == kExitCancelled ? FileOutcome::State::kCancelled : FileOutcome::State::kFailed;
        outcome.code = code;
        outcome.error = error;
    };
    const auto begin = std::chrono::steady_clock::now();
    try {
        const FileReport report = Apply(job);
        outcome.pixels = report.pixels;
        outcome.notes = report.notes;
    } catch (const Failure& failure) {
        fail(failure.Code(), failure.what());
    } catch (const std::bad_alloc&) {
        fail(kExitEffectFailed, job.input + ": out of memory");
    } catch (const std::length_error&) { // more than the system has addresses for
        fail(kExitEffectFailed, job.input + ": out of memory");
    } catch (const std::exception& error) {
        fail(kExitEffectFailed, job.input + ": " + error.what());
    }
    outcome.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    return outcome;
}

} // namespace

ExitCode RunBatch(const ReadyChain& chain, const BatchOptions& options, std::ostream& out, std::ostream& err) {
    const std::vector<Job> jobs = PlanJobs(chain, options);
    const Voice voice = options.quiet ? Voice::kQuiet : options.verbose ? Voice::kVerbose : Voice::kNormal;
    BatchReport report(jobs.size(), voice, options.json, out, err);
    const unsigned processors = std::max(1U, std::thread::hardware_concurrency());
    const auto most = static_cast<unsigned>(std::min<std::size_t>(std::max<std::size_t>(jobs.size(), 1), 256));
    Workers(chain, options, jobs, report).Run(std::min(options.jobs != 0 ? options.jobs : processors, most));
    return report.Finish();
}

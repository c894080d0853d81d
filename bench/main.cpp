// Runs the benchmarks and then says how each row compares with its peers.
//
// Rows are named OPERATION/WHO. A last table gives, for each operation, the time of every other row of the operation
// divided by that of "qv8": above 1 the library is the faster one. Medians over several interleaved repetitions are
// compared, because the speed of a machine drifts.
#include <benchmark/benchmark.h>
#include <opencv2/core/utility.hpp>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace {

class RatioReporter : public benchmark::ConsoleReporter {
public:
    RatioReporter() : ConsoleReporter(OO_Tabular) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median") {
                const std::string name = run.run_name.function_name;
                const std::size_t slash = name.find('/');
                times_[name.substr(0, slash)][name.substr(slash + 1)] = run.counters.at("ns/px").value;
            }
        }
    }

    void Finalize() override {
        std::printf("\n%-34s %-26s %10s %12s\n", "operation", "who", "ns/px", "time / qv8");
        for (const auto& [operation, rows] : times_) {
            const auto own = rows.find("qv8");
            for (const auto& [who, time] : rows) {
                std::printf("%-34s %-26s %10.3f", operation.c_str(), who.c_str(), time);
                if (own != rows.end() && who != "qv8") {
                    std::printf(" %12.2f", time / own->second);
                }
                std::printf("\n");
            }
        }
    }

private:
    std::map<std::string, std::map<std::string, double>> times_;
};

} // namespace

int main(int argc, char** argv) {
    cv::setNumThreads(1);
    std::string repetitions = "--benchmark_repetitions=9";
    std::string interleave = "--benchmark_enable_random_interleaving=true";
    std::string brief = "--benchmark_report_aggregates_only=true";
    std::string time = "--benchmark_min_time=0.05";
    std::vector<char*> arguments = {argv[0], repetitions.data(), interleave.data(), brief.data(), time.data()};
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) {
        return 1;
    }
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}

// Times the rows and writes one line for each figure: row, size, what, figure, with tabs between them.
//
//   qv8_bench [--filter TEXT] [--size NAME] [--samples NUMBER]
//   qv8_bench --dialog [--samples NUMBER]     the progress dialog instead, in words
//
// `what` is qv8 or qv8-32 (nanoseconds of a call of this build), ready or fresh (of the peer into such a block) or
// memory (the most that a call took, by the bytes of the picture). scripts/bench makes a table of the lines.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "blocks.h"
#include "dialog.h"
#include "rows.h"
#include "timing.h"

namespace bench {
namespace {

constexpr Size kSizes[] = {{"16x16", 16, 16}, {"640x480", 640, 480}, {"1080p", 1920, 1080}, {"12MP", 4000, 3000}};
constexpr const char* kOwnName = sizeof(void*) == 4 ? "qv8-32" : "qv8";

struct Options {
    std::string filter;
    std::string size;
    int samples = 5;
    bool dialog = false;
};

void Print(const Row& row, const Size& size, const char* what, double figure) {
    std::printf("%s\t%s\t%s\t%.6g\n", row.name, size.name, what, figure);
    std::fflush(stdout);
}

void TimeRow(const Row& row, const Size& size, const Scene& scene, int samples) {
    const auto call = [&] { GlobalFree(row.call(scene)); };
    call();
    TakePeak();
    call();
    const std::size_t peak = TakePeak();
    if (peak != 0) {
        Print(row, size, "memory", static_cast<double>(peak) / (scene.PixelCount() * 3));
    }
    Timed own(call);
    Timed ready(PeerCall(row.name, scene, Block::kReady));
    Timed fresh(PeerCall(row.name, scene, Block::kFresh));
    for (int i = 0; i != samples; ++i) {
        own.TakeSample();
        ready.TakeSample();
        fresh.TakeSample();
    }
    Print(row, size, kOwnName, own.Nanoseconds());
    if (ready) {
        Print(row, size, "ready", ready.Nanoseconds());
        Print(row, size, "fresh", fresh.Nanoseconds());
    }
}

void TimeAll(const Options& options) {
    for (const Size& size : kSizes) {
        if (!options.size.empty() && options.size != size.name) {
            continue;
        }
        const Scene scene(size);
        for (const auto& rows : {ColourRows(), FilterRows(), GeometryRows(), ComposeRows()}) {
            for (const Row& row : rows) {
                if (std::string(row.name).find(options.filter) != std::string::npos) {
                    TimeRow(row, size, scene, options.samples);
                }
            }
        }
    }
}

bool ReadOptions(int count, char** arguments, Options& options) {
    options.dialog = count > 1 && std::string(arguments[1]) == "--dialog";
    const int first = options.dialog ? 2 : 1;
    for (int i = first; i + 1 < count; i += 2) {
        const std::string name = arguments[i];
        const char* const value = arguments[i + 1];
        if (name == "--filter") {
            options.filter = value;
        } else if (name == "--size") {
            options.size = value;
        } else if (name == "--samples") {
            options.samples = std::atoi(value);
        } else {
            return false;
        }
    }
    return (count - first) % 2 == 0 && options.samples > 0;
}

} // namespace
} // namespace bench

int main(int argc, char** argv) {
    bench::Options options;
    if (!bench::ReadOptions(argc, argv, options)) {
        std::fprintf(
            stderr,
            "usage: qv8_bench [--dialog] [--filter TEXT] [--size 16x16|640x480|1080p|12MP] [--samples NUMBER]\n");
        return 2;
    }
    options.dialog ? bench::TimeDialog(options.samples) : bench::TimeAll(options);
    return 0;
}

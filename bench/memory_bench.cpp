// What a result block costs before any effect is computed: the measure that every other row is read against.
#include <opencv2/core.hpp>
#include <sys/mman.h>

#include <cstring>
#include <vector>

#include "pictures.h"

namespace bench {
namespace {

void CopyToReady(benchmark::State& state) {
    std::vector<BYTE> result(ImageBytes(24));
    const BYTE* const source = SourcePixels(24);
    TimePixels(state, [&] { std::memcpy(result.data(), source, result.size()); });
}
BENCHMARK(CopyToReady)->Name("copy/ready block");

// The library's memory: zero-filled, from large pages, some of them used before.
void CopyToGlobal(benchmark::State& state) {
    const BYTE* const source = SourcePixels(24);
    TimeCall(state, [&] {
        const HGLOBAL block = GlobalAlloc(GHND, ImageBytes(24));
        std::memcpy(GlobalLock(block), source, ImageBytes(24));
        GlobalUnlock(block);
        return block;
    });
}
BENCHMARK(CopyToGlobal)->Name("copy/fresh GlobalAlloc");

// Pages of 4 KiB straight from the system, never touched before: what a block costs without such memory.
void CopyToUntouched(benchmark::State& state) {
    const BYTE* const source = SourcePixels(24);
    TimePixels(state, [&] {
        void* const block = mmap(nullptr, ImageBytes(24), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        std::memcpy(block, source, ImageBytes(24));
        munmap(block, ImageBytes(24));
    });
}
BENCHMARK(CopyToUntouched)->Name("copy/fresh 4 KiB pages");

void CopyToMat(benchmark::State& state) {
    const cv::Mat source(kHeight, kWidth, CV_8UC3, const_cast<BYTE*>(SourcePixels(24)));
    TimePixels(state, [&] { const cv::Mat result = source.clone(); });
}
BENCHMARK(CopyToMat)->Name("copy/fresh cv::Mat");

} // namespace
} // namespace bench

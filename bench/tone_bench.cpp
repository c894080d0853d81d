// Tone curves beside the operations of OpenCV that give the same pixels.
#include <opencv2/core.hpp>

#include <cstdlib>
#include <cstring>
#include <vector>

#include "frame/target.h"
#include "pictures.h"
#include "tone/curve_kernels.h"

namespace bench {
namespace {

cv::Mat SourceMat() {
    return {kHeight, kWidth, CV_8UC3, const_cast<BYTE*>(SourcePixels(24))};
}

// Times an OpenCV operation three ways: into a matrix of its own allocation, into a block of the library's allocation,
// and into a block that is there already.
template <class Operation>
void AddPeer(const std::string& name, Operation operation) {
    benchmark::RegisterBenchmark((name + "/opencv, fresh cv::Mat").c_str(), [operation](benchmark::State& state) {
        const cv::Mat source = SourceMat();
        TimePixels(state, [&] {
            cv::Mat result;
            operation(source, result);
        });
    });
    benchmark::RegisterBenchmark((name + "/opencv, fresh GlobalAlloc").c_str(), [operation](benchmark::State& state) {
        const cv::Mat source = SourceMat();
        TimeCall(state, [&] {
            const HGLOBAL block = GlobalAlloc(GHND, ImageBytes(24));
            cv::Mat result(kHeight, kWidth, CV_8UC3, GlobalLock(block));
            operation(source, result);
            GlobalUnlock(block);
            return block;
        });
    });
    benchmark::RegisterBenchmark((name + " in place/opencv").c_str(), [operation](benchmark::State& state) {
        const cv::Mat source = SourceMat();
        cv::Mat result(kHeight, kWidth, CV_8UC3);
        TimePixels(state, [&] { operation(source, result); });
    });
}

// Times the kernel of an effect row by row into a block that is there already.
template <class Row>
void AddKernel(const std::string& name, Row row) {
    for (const bool wide : {true, false}) {
        benchmark::RegisterBenchmark((name + (wide ? " in place/qv8" : " in place/qv8, SSE2")).c_str(),
                                     [row, wide](benchmark::State& state) {
                                         qv8::UseTarget(wide ? qv8::BestTarget() : qv8::Target::kBaseline);
                                         std::vector<BYTE> result(ImageBytes(24));
                                         const BYTE* const source = SourcePixels(24);
                                         constexpr std::size_t kStride = std::size_t{kWidth} * 3;
                                         TimePixels(state, [&] {
                                             for (std::size_t y = 0; y != kHeight; ++y) {
                                                 row(source + y * kStride, result.data() + y * kStride);
                                             }
                                         });
                                         qv8::UseTarget(qv8::BestTarget());
                                     });
    }
}

template <class Call>
void AddEffect(const std::string& name, Call call) {
    benchmark::RegisterBenchmark((name + "/qv8").c_str(), [call](benchmark::State& state) {
        const ImageSet target = {SourcePicture(24), nullptr};
        TimeCall(state, [&] { return call(&target); });
    });
}

const bool registered = [] {
    AddEffect("RGBLevel", [](const ImageSet* target) {
        return QV8RGBLevel(target, QV8_AREA_WHOLE, nullptr, 0, nullptr, 1, 40, 40, 40, QuietOwner(), 0, 0, 0);
    });
    AddPeer("RGBLevel",
            [](const cv::Mat& source, cv::Mat& result) { cv::add(source, cv::Scalar(40, 40, 40), result); });
    qv8::ShiftPattern level = {};
    std::memset(level.add, 40, sizeof level.add);
    AddKernel("RGBLevel", [level](const BYTE* source, BYTE* result) {
        qv8::TheCurveKernels().shiftBytes(level, source, result, std::size_t{kWidth} * 3);
    });

    AddEffect("RGBRev", [](const ImageSet* target) {
        return QV8RGBRev(target, QV8_AREA_WHOLE, nullptr, 0, nullptr, 1, 1, 1, 1, QuietOwner(), 0, 0, 0);
    });
    AddPeer("RGBRev", [](const cv::Mat& source, cv::Mat& result) { cv::bitwise_not(source, result); });
    qv8::ShiftPattern invert = {};
    std::memset(invert.flip, 0xFF, sizeof invert.flip);
    AddKernel("RGBRev", [invert](const BYTE* source, BYTE* result) {
        qv8::TheCurveKernels().shiftBytes(invert, source, result, std::size_t{kWidth} * 3);
    });

    AddEffect("RGBGamma", [](const ImageSet* target) {
        return QV8RGBGamma(target, QV8_AREA_WHOLE, nullptr, 0, nullptr, 1, -0.5, -0.5, -0.5, QuietOwner(), 0, 0, 0);
    });
    AddPeer("RGBGamma", [](const cv::Mat& source, cv::Mat& result) {
        static const cv::Mat table(1, 256, CV_8UC1, cv::Scalar(7));
        cv::LUT(source, table, result);
    });
    return true;
}();

} // namespace
} // namespace bench

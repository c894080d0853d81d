// Tone curves beside the operations of OpenCV that give the same pixels.
#include <opencv2/imgproc.hpp>

#include <cstdlib>
#include <cstring>
#include <vector>

#include "rows.h"
#include "simd/target.h"
#include "tone/curve_kernels.h"

namespace bench {
namespace {

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

    // The way to luminance and colour differences and back, with a change in between.
    AddEffect("YCCLevel", [](const ImageSet* target) {
        return QV8YCCLevel(target, QV8_AREA_WHOLE, nullptr, 0, nullptr, 1, 10, 20, 30, QuietOwner(), 0, 0, 0);
    });
    AddPeer("YCCLevel", [](const cv::Mat& source, cv::Mat& result) {
        cv::Mat ycc;
        cv::cvtColor(source, ycc, cv::COLOR_BGR2YCrCb);
        cv::add(ycc, cv::Scalar(10, 20, 30), ycc);
        cv::cvtColor(ycc, result, cv::COLOR_YCrCb2BGR);
    });
    AddEffect("YCCGamma", [](const ImageSet* target) {
        return QV8YCCGamma(target, QV8_AREA_WHOLE, nullptr, 0, nullptr, 1, 0.1, 0.2, 0.3, QuietOwner(), 0, 0, 0);
    });
    AddPeer("YCCGamma", [](const cv::Mat& source, cv::Mat& result) {
        static const cv::Mat table(1, 256, CV_8UC1, cv::Scalar(7));
        cv::Mat ycc;
        cv::cvtColor(source, ycc, cv::COLOR_BGR2YCrCb);
        cv::LUT(ycc, table, ycc);
        cv::cvtColor(ycc, result, cv::COLOR_YCrCb2BGR);
    });
    AddEffect("Chroma", [](const ImageSet* target) {
        return QV8Chroma(target, QV8_AREA_WHOLE, nullptr, 0, nullptr, 1, 50, QuietOwner(), 0, 0, 0);
    });
    AddPeer("Chroma", [](const cv::Mat& source, cv::Mat& result) {
        cv::Mat ycc;
        cv::cvtColor(source, ycc, cv::COLOR_BGR2YCrCb);
        cv::Mat planes[3];
        cv::split(ycc, planes);
        planes[1].convertTo(planes[1], -1, 1.5, -64);
        planes[2].convertTo(planes[2], -1, 1.5, -64);
        cv::merge(planes, 3, ycc);
        cv::cvtColor(ycc, result, cv::COLOR_YCrCb2BGR);
    });
    AddEffect("SetGray", [](const ImageSet* target) { return QV8SetGray(target->hImage, QuietOwner(), 0, 0, 0); });
    AddPeer("SetGray", [](const cv::Mat& source, cv::Mat& result) {
        cv::Mat grey;
        cv::cvtColor(source, grey, cv::COLOR_BGR2GRAY);
        cv::cvtColor(grey, result, cv::COLOR_GRAY2BGR);
    });
    return true;
}();

} // namespace
} // namespace bench

// Scaling beside OpenCV, to sizes of their own.
#include <opencv2/imgproc.hpp>

#include "rows.h"

namespace bench {
namespace {

void AddResize(const std::string& name, double scale, DWORD smooth, int interpolation) {
    const int width = static_cast<int>(kWidth * scale);
    const int height = static_cast<int>(kHeight * scale);
    AddEffect(name, [=](const ImageSet* target) {
        return QV8Resize(target, width, height, smooth, QuietOwner(), 0, 0, 0).hImage;
    });
    benchmark::RegisterBenchmark((name + "/opencv, fresh cv::Mat").c_str(), [=](benchmark::State& state) {
        const cv::Mat source = SourceMat();
        TimePixels(state, [&] {
            cv::Mat result;
            cv::resize(source, result, cv::Size(width, height), 0, 0, interpolation);
        });
    });
}

const bool registered = [] {
    AddResize("Resize x2 smooth", 2, 1, cv::INTER_LINEAR);
    AddResize("Resize x0.5 smooth", 0.5, 1, cv::INTER_AREA);
    AddResize("Resize x0.37 smooth", 0.37, 1, cv::INTER_AREA);
    AddResize("Resize x2", 2, 0, cv::INTER_NEAREST);
    AddResize("Resize x0.5", 0.5, 0, cv::INTER_NEAREST);
    return true;
}();

} // namespace
} // namespace bench

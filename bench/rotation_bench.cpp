// Rotation, mirroring and flipping beside OpenCV.
#include <opencv2/imgproc.hpp>

#include <cmath>

#include "rows.h"

namespace bench {
namespace {

HGLOBAL Rotate(const ImageSet* target, LONG angle, BOOL mirror, BOOL flip, DWORD smooth) {
    return QV8Rotation(target, angle, mirror, flip, smooth, 30, 60, 90, 0, QuietOwner(), 0, 0, 0).hImage;
}

// Turns about the centre into a matrix that holds the whole turned picture, as the library does.
void Warp(const cv::Mat& source, cv::Mat& result, double degrees, int interpolation) {
    const double theta = degrees * CV_PI / 180;
    const double width = source.cols * std::cos(theta) + source.rows * std::sin(theta);
    const double height = source.cols * std::sin(theta) + source.rows * std::cos(theta);
    cv::Mat matrix = cv::getRotationMatrix2D(cv::Point2d(source.cols / 2.0, source.rows / 2.0), degrees, 1);
    matrix.at<double>(0, 2) += (width - source.cols) / 2;
    matrix.at<double>(1, 2) += (height - source.rows) / 2;
    cv::warpAffine(source, result, matrix, cv::Size(static_cast<int>(width) + 2, static_cast<int>(height) + 2),
                   interpolation, cv::BORDER_CONSTANT, cv::Scalar(90, 60, 30));
}

// Times an OpenCV operation whose result has a size of its own.
template <class Operation>
void AddFreshPeer(const std::string& name, Operation operation) {
    benchmark::RegisterBenchmark((name + "/opencv, fresh cv::Mat").c_str(), [operation](benchmark::State& state) {
        const cv::Mat source = SourceMat();
        TimePixels(state, [&] {
            cv::Mat result;
            operation(source, result);
        });
    });
}

const bool registered = [] {
    AddEffect("Rotation 90", [](const ImageSet* target) { return Rotate(target, 9000, 0, 0, 0); });
    AddFreshPeer("Rotation 90", [](const cv::Mat& source, cv::Mat& result) {
        cv::rotate(source, result, cv::ROTATE_90_COUNTERCLOCKWISE);
    });
    AddEffect("Rotation 30", [](const ImageSet* target) { return Rotate(target, 3000, 0, 0, 0); });
    AddFreshPeer("Rotation 30",
                 [](const cv::Mat& source, cv::Mat& result) { Warp(source, result, 30, cv::INTER_NEAREST); });
    AddEffect("Rotation 30 smooth", [](const ImageSet* target) { return Rotate(target, 3000, 0, 0, 1); });
    AddFreshPeer("Rotation 30 smooth",
                 [](const cv::Mat& source, cv::Mat& result) { Warp(source, result, 30, cv::INTER_LINEAR); });
    AddEffect("Rotation mirror", [](const ImageSet* target) { return Rotate(target, 0, 1, 0, 0); });
    AddFreshPeer("Rotation mirror", [](const cv::Mat& source, cv::Mat& result) { cv::flip(source, result, 1); });
    AddEffect("Rotation flip", [](const ImageSet* target) { return Rotate(target, 0, 0, 1, 0); });
    AddFreshPeer("Rotation flip", [](const cv::Mat& source, cv::Mat& result) { cv::flip(source, result, 0); });
    return true;
}();

} // namespace
} // namespace bench

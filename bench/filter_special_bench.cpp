// Noise removal, anti-aliasing, mosaic and outline beside the operations of OpenCV that come closest.
#include <opencv2/imgproc.hpp>

#include "rows.h"

namespace bench {
namespace {

void Gradient(const cv::Mat& source, cv::Mat& result) {
    cv::Mat grey;
    cv::Mat slopes[2];
    cv::Mat lengths;
    cv::cvtColor(source, grey, cv::COLOR_BGR2GRAY);
    cv::Sobel(grey, slopes[0], CV_16S, 1, 0);
    cv::Sobel(grey, slopes[1], CV_16S, 0, 1);
    slopes[0].convertTo(slopes[0], CV_32F);
    slopes[1].convertTo(slopes[1], CV_32F);
    cv::magnitude(slopes[0], slopes[1], lengths);
    lengths.convertTo(grey, CV_8U);
    cv::cvtColor(grey, result, cv::COLOR_GRAY2BGR);
}

const bool registered = [] {
    AddEffect("RemoveNoise channels", [](const ImageSet* target) {
        return QV8RemoveNoise(target, QV8_AREA_WHOLE, nullptr, 0, nullptr, 1, 1, 255, QuietOwner(), 0, 0, 0);
    });
    AddPeer("RemoveNoise channels", [](const cv::Mat& source, cv::Mat& result) { cv::medianBlur(source, result, 3); });
    AddEffect("RemoveNoise luminance", [](const ImageSet* target) {
        return QV8RemoveNoise(target, QV8_AREA_WHOLE, nullptr, 0, nullptr, 1, 0, 0, QuietOwner(), 0, 0, 0);
    });
    AddPeer("RemoveNoise luminance", [](const cv::Mat& source, cv::Mat& result) { cv::medianBlur(source, result, 3); });

    AddEffect("AntiAlias", [](const ImageSet* target) {
        return QV8AntiAlias(target, QV8_AREA_WHOLE, nullptr, 0, nullptr, 1, QuietOwner(), 0, 0, 0);
    });
    AddPeer("AntiAlias", [](const cv::Mat& source, cv::Mat& result) { cv::blur(source, result, cv::Size(3, 1)); });

    AddEffect("Mosaic 8 x 8", [](const ImageSet* target) {
        return QV8Mosaic(target, QV8_AREA_WHOLE, nullptr, 0, nullptr, 1, 8, 8, QuietOwner(), 0, 0, 0);
    });
    AddPeer("Mosaic 8 x 8", [](const cv::Mat& source, cv::Mat& result) {
        cv::Mat blocks;
        cv::resize(source, blocks, cv::Size(kWidth / 8, kHeight / 8), 0, 0, cv::INTER_AREA);
        cv::resize(blocks, result, source.size(), 0, 0, cv::INTER_NEAREST);
    });

    AddEffect("Outline Sobel", [](const ImageSet* target) {
        return QV8Outline(target, QV8_AREA_WHOLE, nullptr, 0, nullptr, 1, 0, 2, 1, QuietOwner(), 0, 0, 0);
    });
    AddPeer("Outline Sobel", Gradient);
    return true;
}();

} // namespace
} // namespace bench

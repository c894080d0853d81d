// Neighbourhood filters beside the operations of OpenCV that come nearest.
#include <opencv2/imgproc.hpp>

#include "rows.h"

namespace bench {
namespace {

void AddShade(int radius) {
    const std::string name = "Shade radius " + std::to_string(radius);
    AddEffect(name, [radius](const ImageSet* target) {
        return QV8Shade(target, QV8_AREA_WHOLE, nullptr, 0, nullptr, 1, static_cast<DWORD>(radius), QuietOwner(), 0, 0,
                        0);
    });
    AddPeer(name, [radius](const cv::Mat& source, cv::Mat& result) {
        cv::blur(source, result, cv::Size(2 * radius + 1, 2 * radius + 1), cv::Point(-1, -1), cv::BORDER_REPLICATE);
    });
}

// Weights that are all different from 0, with sums that do and do not fit 16 bits.
void AddCustomFilter(const std::string& name, LONG weight, LONG centre) {
    std::vector<LONG> kernel(81, weight);
    kernel[40] = centre;
    AddEffect(name, [kernel](const ImageSet* target) {
        return QV8CustomFilter(target, QV8_AREA_WHOLE, nullptr, 0, nullptr, 1, kernel.data(), 81, 0, 1, 1, 1,
                               QuietOwner(), 0, 0, 0);
    });
    cv::Mat weights(9, 9, CV_32F, cv::Scalar(static_cast<float>(weight) / 81.0F));
    weights.at<float>(4, 4) = static_cast<float>(centre) / 81.0F;
    AddPeer(name, [weights](const cv::Mat& source, cv::Mat& result) {
        cv::filter2D(source, result, -1, weights, cv::Point(-1, -1), 0, cv::BORDER_REPLICATE);
    });
}

const bool registered = [] {
    AddCustomFilter("CustomFilter 9 x 9", 1, 3);
    AddCustomFilter("CustomFilter 9 x 9 wide sums", -50, 4000);

    AddEffect("Emboss", [](const ImageSet* target) {
        return QV8Emboss(target, QV8_AREA_WHOLE, nullptr, 0, nullptr, 1, 1, 3, 128, QuietOwner(), 0, 0, 0);
    });
    const cv::Mat relief = (cv::Mat_<float>(3, 3) << -2, -1, 0, -1, 0, 1, 0, 1, 2) / 3.0F;
    AddPeer("Emboss", [relief](const cv::Mat& source, cv::Mat& result) {
        cv::filter2D(source, result, -1, relief, cv::Point(-1, -1), 128, cv::BORDER_REPLICATE);
    });

    for (const int radius : {1, 5, 20}) {
        AddShade(radius);
    }

    AddEffect("Sharp", [](const ImageSet* target) {
        return QV8Sharp(target, QV8_AREA_WHOLE, nullptr, 0, nullptr, 1, 30, QuietOwner(), 0, 0, 0);
    });
    AddPeer("Sharp", [](const cv::Mat& source, cv::Mat& result) {
        cv::Mat ycc;
        cv::cvtColor(source, ycc, cv::COLOR_BGR2YCrCb);
        cv::Mat planes[3];
        cv::split(ycc, planes);
        const cv::Mat kernel = (cv::Mat_<float>(3, 3) << -1, -1, -1, -1, 9, -1, -1, -1, -1);
        cv::filter2D(planes[0].clone(), planes[0], -1, kernel);
        cv::merge(planes, 3, ycc);
        cv::cvtColor(ycc, result, cv::COLOR_YCrCb2BGR);
    });
    return true;
}();

} // namespace
} // namespace bench

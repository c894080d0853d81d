// Selection by colour, layers, pasting and panoramas beside the operations of OpenCV that do the same.
#include <opencv2/imgproc.hpp>

#include "rows.h"

namespace bench {
namespace {

// Pastes the picture onto itself, its middle onto the middle.
HGLOBAL Paste(const ImageSet* target, LONG angle, DWORD opacity, DWORD sampling) {
    return QV8PasteImage(target->hImage, target, angle, 0, 0, opacity, nullptr, nullptr, nullptr, kWidth / 2,
                         kHeight / 2, sampling, QuietOwner(), 0, 0, 0);
}

void AddPastePeer(const std::string& name, double degrees, int interpolation) {
    AddPeer(name, [=](const cv::Mat& source, cv::Mat& result) {
        source.copyTo(result);
        const cv::Point2d middle(kWidth / 2.0, kHeight / 2.0);
        cv::warpAffine(source, result, cv::getRotationMatrix2D(middle, degrees, 1), source.size(), interpolation,
                       cv::BORDER_TRANSPARENT);
    });
}

const bool registered = [] {
    AddEffect("PasteImage 30", [](const ImageSet* target) { return Paste(target, 3000, 255, 1); });
    AddPastePeer("PasteImage 30", 30, cv::INTER_NEAREST);
    AddEffect("PasteImage 30 smooth", [](const ImageSet* target) { return Paste(target, 3000, 255, 0); });
    AddPastePeer("PasteImage 30 smooth", 30, cv::INTER_LINEAR);
    AddEffect("PasteImage blended", [](const ImageSet* target) { return Paste(target, 0, 100, 0); });
    AddPeer("PasteImage blended", [](const cv::Mat& source, cv::Mat& result) {
        cv::addWeighted(source, 155.0 / 255, source, 100.0 / 255, 0, result);
    });

    AddEffect("Layer", [](const ImageSet* target) {
        return QV8Layer(target->hImage, target->hImage, 100, 1, 2, 3, 0, 0, 0, 0, 0, 1, QuietOwner(), 0, 0, 0);
    });
    AddPeer("Layer", [](const cv::Mat& source, cv::Mat& result) {
        cv::addWeighted(source, 155.0 / 255, source, 100.0 / 255, 0, result);
    });

    AddEffect("Panorama", [](const ImageSet* target) {
        return QV8Panorama(target->hImage, target->hImage, 0, 400, 300, 1400, 400, 300, 200, 1350, 600, nullptr,
                           nullptr, nullptr, QuietOwner(), 0, 0, 0);
    });
    AddPeer("Panorama", [](const cv::Mat& source, cv::Mat& result) {
        constexpr double kScale = 1004.0 / 1123; // the lengths of the two segments
        cv::Mat scaled;
        cv::resize(source, scaled, cv::Size(), kScale, kScale, cv::INTER_LINEAR);
        source.copyTo(result);
        cv::Mat matrix = cv::getRotationMatrix2D(cv::Point2d(300 * kScale, 200 * kScale), -15.1, 1);
        matrix.at<double>(0, 2) += 400 - 300 * kScale;
        matrix.at<double>(1, 2) += 300 - 200 * kScale;
        cv::warpAffine(scaled, result, matrix, source.size(), cv::INTER_LINEAR, cv::BORDER_TRANSPARENT);
    });

    AddEffect("AutoSelectImage", [](const ImageSet* target) {
        const ImageSet set = QV8AutoSelectImage(target->hImage, QV8_AREA_WHOLE, nullptr, 0, nullptr, 1, 120, 120, 120,
                                                0, 40, QuietOwner(), 0, 0, 0);
        GlobalFree(set.hMask);
        return set.hImage;
    });
    AddPeer("AutoSelectImage", [](const cv::Mat& source, cv::Mat& result) {
        cv::Mat mask;
        cv::inRange(source, cv::Scalar(80, 80, 80), cv::Scalar(160, 160, 160), mask);
        source.copyTo(result, mask);
    });
    return true;
}();

} // namespace
} // namespace bench

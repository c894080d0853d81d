// Selection by colour and layers beside the operations of OpenCV that do the same.
#include <opencv2/imgproc.hpp>

#include "rows.h"

namespace bench {
namespace {

const bool registered = [] {
    AddEffect("Layer", [](const ImageSet* target) {
        return QV8Layer(target->hImage, target->hImage, 100, 1, 2, 3, 0, 0, 0, 0, 0, 1, QuietOwner(), 0, 0, 0);
    });
    AddPeer("Layer", [](const cv::Mat& source, cv::Mat& result) {
        cv::addWeighted(source, 155.0 / 255, source, 100.0 / 255, 0, result);
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

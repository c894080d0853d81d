// Marks hidden in the luminance, beside the operations of OpenCV that come nearest.
#include <opencv2/imgproc.hpp>

#include <cstring>

#include "rows.h"

namespace bench {
namespace {

// A pattern of the picture's size with every bit set, or the right half of each eight columns.
HGLOBAL MakePattern(BYTE bits) {
    const HGLOBAL pattern = QV8CreateImage(kWidth, kHeight, 1, 0, 0, 0, QuietOwner(), 0, 0, 0);
    BYTE* const bytes = static_cast<BYTE*>(GlobalLock(pattern));
    std::memset(bytes + 48, bits, std::size_t{kWidth} / 8 * kHeight); // rows without padding
    GlobalUnlock(pattern);
    return pattern;
}

HGLOBAL Mark(HGLOBAL image, HGLOBAL pattern) {
    return QV8SetSecretImage(image, pattern, nullptr, nullptr, 0, 0, 0, 0, 0, 0, 0, 3, 0, 0, 0, 0, QuietOwner(), 0, 0,
                             0);
}

const bool registered = [] {
    AddEffect("SetSecretImage", [](const ImageSet* target) {
        static const HGLOBAL pattern = MakePattern(0xFF);
        return Mark(target->hImage, pattern);
    });
    AddPeer("SetSecretImage", [](const cv::Mat& source, cv::Mat& result) {
        cv::Mat ycc;
        cv::cvtColor(source, ycc, cv::COLOR_BGR2YCrCb);
        cv::add(ycc, cv::Scalar(3, 0, 0), ycc);
        cv::cvtColor(ycc, result, cv::COLOR_YCrCb2BGR);
    });
    AddEffect("CheckSecretImage", [](const ImageSet* target) {
        static const HGLOBAL marked = Mark(target->hImage, MakePattern(0x0F));
        return QV8CheckSecretImage(target->hImage, marked, 2, QuietOwner(), 0, 0, 0);
    });
    // Bytes instead of bits.
    AddPeer("CheckSecretImage", [](const cv::Mat& source, cv::Mat& result) {
        static const cv::Mat marked = source + cv::Scalar(3, 3, 3);
        cv::Mat before, after;
        cv::cvtColor(source, before, cv::COLOR_BGR2GRAY);
        cv::cvtColor(marked, after, cv::COLOR_BGR2GRAY);
        cv::subtract(after, before, before);
        cv::compare(before, 2, result, cv::CMP_GE);
    });
    return true;
}();

} // namespace
} // namespace bench

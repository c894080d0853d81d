// Straightening four corners beside OpenCV: of a page that is turned, and of one seen from the side.
#include <opencv2/imgproc.hpp>

#include <algorithm>

#include "rows.h"

namespace bench {
namespace {

// Upper left, upper right, lower right, lower left.
struct Corners {
    POINT at[4];
};

// OpenCV makes a picture of the same size: what fits between the edges.
void AddStraightening(const std::string& name, const Corners& corners) {
    const POINT* const at = corners.at;
    const int width = static_cast<int>(std::min(at[1].x, at[2].x) - std::max(at[0].x, at[3].x));
    const int height = static_cast<int>(std::min(at[2].y, at[3].y) - std::max(at[0].y, at[1].y));
    AddEffect(name, [=](const ImageSet* target) {
        const POINT* const corner = corners.at;
        return QV8Affine(target->hImage, corner[0].x, corner[0].y, corner[1].x, corner[1].y, corner[2].x, corner[2].y,
                         corner[3].x, corner[3].y, QuietOwner(), 0, 0, 0);
    });
    benchmark::RegisterBenchmark((name + "/opencv, fresh cv::Mat").c_str(), [=](benchmark::State& state) {
        const cv::Mat source = SourceMat();
        cv::Point2f from[4];
        std::transform(corners.at, corners.at + 4, from, [](const POINT& corner) {
            return cv::Point2f(static_cast<float>(corner.x), static_cast<float>(corner.y));
        });
        const auto right = static_cast<float>(width);
        const auto bottom = static_cast<float>(height);
        const cv::Point2f to[4] = {{0, 0}, {right, 0}, {right, bottom}, {0, bottom}};
        const cv::Mat matrix = cv::getPerspectiveTransform(from, to);
        TimePixels(state, [&] {
            cv::Mat result;
            cv::warpPerspective(source, result, matrix, cv::Size(width, height), cv::INTER_LINEAR);
        });
    });
}

const bool registered = [] {
    AddStraightening("Affine turned page", {{{60, 160}, {1800, 20}, {1880, 920}, {140, 1060}}});
    AddStraightening("Affine slanted page", {{{200, 60}, {1720, 100}, {1860, 1060}, {90, 1020}}});
    return true;
}();

} // namespace
} // namespace bench

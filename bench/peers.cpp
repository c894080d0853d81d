// Peers of the rows: operations of OpenCV, and of Leptonica for colour reduction, that do the same or come nearest.
#include <leptonica/allheaders.h>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>

#include "rows.h"

namespace bench {
namespace {

using Operation = std::function<void(const Scene& scene, const cv::Mat& source, cv::Mat& result)>;

cv::Mat MatOf(const Scene& scene, int bits) {
    const int type = bits == 16 ? CV_8UC2 : CV_MAKETYPE(CV_8U, bits / 8);
    return {scene.height, scene.width, type, const_cast<BYTE*>(scene.Pixels(bits)), Stride(scene.width, bits)};
}

template <int kCode>
void ConvertWith(const Scene& /*scene*/, const cv::Mat& source, cv::Mat& result) {
    cv::cvtColor(source, result, kCode);
}

// There, changed, and back.
template <class Change>
Operation OnLuminance(Change change) {
    return [change](const Scene& /*scene*/, const cv::Mat& source, cv::Mat& result) {
        cv::Mat ycc;
        cv::cvtColor(source, ycc, cv::COLOR_BGR2YCrCb);
        change(ycc);
        cv::cvtColor(ycc, result, cv::COLOR_YCrCb2BGR);
    };
}

void Scaled(cv::Mat& ycc) {
    cv::Mat planes[3];
    cv::split(ycc, planes);
    planes[1].convertTo(planes[1], -1, 1.5, -64);
    planes[2].convertTo(planes[2], -1, 1.5, -64);
    cv::merge(planes, 3, ycc);
}

void Sharpened(cv::Mat& ycc) {
    cv::Mat planes[3];
    cv::split(ycc, planes);
    const cv::Mat kernel = (cv::Mat_<float>(3, 3) << -1, -1, -1, -1, 9, -1, -1, -1, -1);
    cv::filter2D(planes[0].clone(), planes[0], -1, kernel);
    cv::merge(planes, 3, ycc);
}

Operation Convolve(const cv::Mat& weights, double offset) {
    return [=](const Scene& /*scene*/, const cv::Mat& source, cv::Mat& result) {
        cv::filter2D(source, result, -1, weights, cv::Point(-1, -1), offset, cv::BORDER_REPLICATE);
    };
}

Operation CustomFilter(float weight, float centre) {
    cv::Mat weights(9, 9, CV_32F, cv::Scalar(weight / 81.0F));
    weights.at<float>(4, 4) = centre / 81.0F;
    return Convolve(weights, 0);
}

Operation Blur(int columns, int rows) {
    return [=](const Scene& /*scene*/, const cv::Mat& source, cv::Mat& result) {
        cv::blur(source, result, cv::Size(columns, rows), cv::Point(-1, -1), cv::BORDER_REPLICATE);
    };
}

void Median(const Scene& /*scene*/, const cv::Mat& source, cv::Mat& result) {
    cv::medianBlur(source, result, 3);
}

void Gradient(const Scene& /*scene*/, const cv::Mat& source, cv::Mat& result) {
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

void Mosaic(const Scene& scene, const cv::Mat& source, cv::Mat& result) {
    cv::Mat blocks;
    cv::resize(source, blocks, cv::Size(std::max(scene.width / 8, 1), std::max(scene.height / 8, 1)), 0, 0,
               cv::INTER_AREA);
    cv::resize(blocks, result, source.size(), 0, 0, cv::INTER_NEAREST);
}

Operation Resize(int percent, int interpolation) {
    return [=](const Scene& scene, const cv::Mat& source, cv::Mat& result) {
        const cv::Size size(std::max(scene.width * percent / 100, 1), std::max(scene.height * percent / 100, 1));
        cv::resize(source, result, size, 0, 0, interpolation);
    };
}

// Turns about the centre into a matrix that holds the whole turned picture, as the library does.
Operation Turn(double degrees, int interpolation) {
    return [=](const Scene& /*scene*/, const cv::Mat& source, cv::Mat& result) {
        const double theta = degrees * CV_PI / 180;
        const double width = source.cols * std::cos(theta) + source.rows * std::sin(theta);
        const double height = source.cols * std::sin(theta) + source.rows * std::cos(theta);
        cv::Mat matrix = cv::getRotationMatrix2D(cv::Point2d(source.cols / 2.0, source.rows / 2.0), degrees, 1);
        matrix.at<double>(0, 2) += (width - source.cols) / 2;
        matrix.at<double>(1, 2) += (height - source.rows) / 2;
        cv::warpAffine(source, result, matrix, cv::Size(static_cast<int>(width) + 2, static_cast<int>(height) + 2),
                       interpolation, cv::BORDER_CONSTANT, cv::Scalar(90, 60, 30));
    };
}

Operation Straighten(const std::array<int, 8>& parts) {
    return [=](const Scene& scene, const cv::Mat& source, cv::Mat& result) {
        cv::Point2f from[4];
        for (std::size_t i = 0; i != 4; ++i) {
            from[i] = {static_cast<float>(scene.width * parts[2 * i] / 1000),
                       static_cast<float>(scene.height * parts[2 * i + 1] / 1000)};
        }
        const float right = std::max(std::min(from[1].x, from[2].x) - std::max(from[0].x, from[3].x), 1.0F);
        const float bottom = std::max(std::min(from[2].y, from[3].y) - std::max(from[0].y, from[1].y), 1.0F);
        const cv::Point2f to[4] = {{0, 0}, {right, 0}, {right, bottom}, {0, bottom}};
        cv::warpPerspective(source, result, cv::getPerspectiveTransform(from, to),
                            cv::Size(static_cast<int>(right), static_cast<int>(bottom)), cv::INTER_LINEAR);
    };
}

Operation PasteTurned(int interpolation) {
    return [=](const Scene& scene, const cv::Mat& source, cv::Mat& result) {
        source.copyTo(result);
        const cv::Point2d middle(scene.width / 2.0, scene.height / 2.0);
        cv::warpAffine(source, result, cv::getRotationMatrix2D(middle, 30, 1), source.size(), interpolation,
                       cv::BORDER_TRANSPARENT);
    };
}

void Mix(const Scene& /*scene*/, const cv::Mat& source, cv::Mat& result) {
    cv::addWeighted(source, 155.0 / 255, source, 100.0 / 255, 0, result);
}

void Panorama(const Scene& scene, const cv::Mat& source, cv::Mat& result) {
    const double length = std::hypot(0.521 * scene.width, 0.092 * scene.height);
    const double scale = length / std::hypot(0.547 * scene.width, 0.371 * scene.height);
    cv::Mat scaled;
    cv::resize(source, scaled, cv::Size(), scale, scale, cv::INTER_LINEAR);
    source.copyTo(result);
    const cv::Point2d first(0.156 * scene.width * scale, 0.185 * scene.height * scale);
    cv::Mat matrix = cv::getRotationMatrix2D(first, -15.1, 1);
    matrix.at<double>(0, 2) += 0.208 * scene.width - first.x;
    matrix.at<double>(1, 2) += 0.278 * scene.height - first.y;
    cv::warpAffine(scaled, result, matrix, source.size(), cv::INTER_LINEAR, cv::BORDER_TRANSPARENT);
}

void SelectByColour(const Scene& /*scene*/, const cv::Mat& source, cv::Mat& result) {
    cv::Mat mask;
    cv::inRange(source, cv::Scalar(80, 80, 80), cv::Scalar(160, 160, 160), mask);
    source.copyTo(result, mask);
}

// Bytes instead of bits, the picture beside itself.
void CheckMark(const Scene& /*scene*/, const cv::Mat& source, cv::Mat& result) {
    cv::Mat before, after;
    cv::cvtColor(source, before, cv::COLOR_BGR2GRAY);
    cv::cvtColor(source, after, cv::COLOR_BGR2GRAY);
    cv::subtract(after, before, before);
    cv::compare(before, 2, result, cv::CMP_GE);
}

void Threshold(const Scene& /*scene*/, const cv::Mat& source, cv::Mat& result) {
    cv::Mat grey;
    cv::cvtColor(source, grey, cv::COLOR_BGR2GRAY);
    cv::threshold(grey, result, 127, 255, cv::THRESH_BINARY);
}

struct Peer {
    int sourceBits;
    Operation operation;
};

const std::map<std::string, Peer>& OpenCvPeers() {
    const cv::Mat table(1, 256, CV_8UC1, cv::Scalar(7));
    const auto lookUp = [table](const Scene&, const cv::Mat& source, cv::Mat& result) {
        cv::LUT(source, table, result);
    };
    const auto add = [](cv::Mat& ycc) { cv::add(ycc, cv::Scalar(10, 20, 30), ycc); };
    const cv::Mat relief = (cv::Mat_<float>(3, 3) << -2, -1, 0, -1, 0, 1, 0, 1, 2) / 3.0F;
    static const std::map<std::string, Peer> peers = {
        {"RGBGamma", {24, lookUp}},
        {"RGBLevel", {24, [](const Scene&, const cv::Mat& s, cv::Mat& r) { cv::add(s, cv::Scalar(40, 40, 40), r); }}},
        {"RGBRev", {24, [](const Scene&, const cv::Mat& s, cv::Mat& r) { cv::bitwise_not(s, r); }}},
        {"YCCGamma", {24, OnLuminance([table](cv::Mat& ycc) { cv::LUT(ycc, table, ycc); })}},
        {"YCCLevel", {24, OnLuminance(add)}},
        {"YCCRev", {24, OnLuminance([](cv::Mat& ycc) { cv::bitwise_not(ycc, ycc); })}},
        {"Chroma", {24, OnLuminance(Scaled)}},
        {"SetGray",
         {24,
          [](const Scene&, const cv::Mat& s, cv::Mat& r) {
              cv::Mat grey;
              cv::cvtColor(s, grey, cv::COLOR_BGR2GRAY);
              cv::cvtColor(grey, r, cv::COLOR_GRAY2BGR);
          }}},
        {"ConvertColor 24 to 32", {24, ConvertWith<cv::COLOR_BGR2BGRA>}},
        {"ConvertColor 32 to 24", {32, ConvertWith<cv::COLOR_BGRA2BGR>}},
        {"ConvertColor 24 to 16", {24, ConvertWith<cv::COLOR_BGR2BGR555>}},
        {"ConvertColor 16 to 24", {16, ConvertWith<cv::COLOR_BGR5552BGR>}},
        {"ConvertColor 8 to 24", {8, ConvertWith<cv::COLOR_GRAY2BGR>}},
        {"ConvertColor 24 to grey", {24, ConvertWith<cv::COLOR_BGR2GRAY>}},
        {"ConvertColor 24 to 2", {24, Threshold}},
        {"CustomFilter", {24, CustomFilter(1, 3)}},
        {"CustomFilter wide sums", {24, CustomFilter(-50, 4000)}},
        {"Sharp", {24, OnLuminance(Sharpened)}},
        {"Emboss", {24, Convolve(relief, 128)}},
        {"Shade radius 1", {24, Blur(3, 3)}},
        {"Shade radius 5", {24, Blur(11, 11)}},
        {"Shade radius 20", {24, Blur(41, 41)}},
        {"RemoveNoise channels", {24, Median}},
        {"RemoveNoise luminance", {24, Median}},
        {"AntiAlias", {24, Blur(3, 1)}},
        {"Mosaic 8 x 8", {24, Mosaic}},
        {"Outline Sobel", {24, Gradient}},
        {"Resize x2 smooth", {24, Resize(200, cv::INTER_LINEAR)}},
        {"Resize x0.9 smooth", {24, Resize(90, cv::INTER_AREA)}},
        {"Resize x0.7 smooth", {24, Resize(70, cv::INTER_AREA)}},
        {"Resize x0.5 smooth", {24, Resize(50, cv::INTER_AREA)}},
        {"Resize x0.37 smooth", {24, Resize(37, cv::INTER_AREA)}},
        {"Resize x2", {24, Resize(200, cv::INTER_NEAREST)}},
        {"Resize x0.5", {24, Resize(50, cv::INTER_NEAREST)}},
        {"Rotation 90",
         {24, [](const Scene&, const cv::Mat& s, cv::Mat& r) { cv::rotate(s, r, cv::ROTATE_90_COUNTERCLOCKWISE); }}},
        {"RotationEx 180", {24, [](const Scene&, const cv::Mat& s, cv::Mat& r) { cv::rotate(s, r, cv::ROTATE_180); }}},
        {"Rotation mirror", {24, [](const Scene&, const cv::Mat& s, cv::Mat& r) { cv::flip(s, r, 1); }}},
        {"Rotation flip", {24, [](const Scene&, const cv::Mat& s, cv::Mat& r) { cv::flip(s, r, 0); }}},
        {"Rotation 30", {24, Turn(30, cv::INTER_NEAREST)}},
        {"Rotation 30 smooth", {24, Turn(30, cv::INTER_LINEAR)}},
        {"Affine turned page", {24, Straighten({31, 148, 937, 19, 979, 852, 73, 981})}},
        {"Affine slanted page", {24, Straighten({104, 56, 896, 93, 969, 981, 47, 944})}},
        {"AutoSelectImage", {24, SelectByColour}},
        {"PasteImage", {24, [](const Scene&, const cv::Mat& s, cv::Mat& r) { s.copyTo(r); }}},
        {"PasteImage blended", {24, Mix}},
        {"PasteImage 30", {24, PasteTurned(cv::INTER_NEAREST)}},
        {"PasteImage 30 smooth", {24, PasteTurned(cv::INTER_LINEAR)}},
        {"Layer", {24, Mix}},
        {"Panorama", {24, Panorama}},
        {"SetSecretImage", {24, OnLuminance([](cv::Mat& ycc) { cv::add(ycc, cv::Scalar(3, 0, 0), ycc); })}},
        {"CheckSecretImage", {24, CheckMark}},
        {"CreateImage",
         {24,
          [](const Scene&, const cv::Mat& s, cv::Mat& r) {
              r.create(s.size(), s.type());
              r.setTo(cv::Scalar(90, 60, 30));
          }}},
        {"CopyImage", {24, [](const Scene&, const cv::Mat& s, cv::Mat& r) { s.copyTo(r); }}},
    };
    return peers;
}

// --- Leptonica, which makes a new picture each time
// -------------------------------------------------------------------

std::shared_ptr<PIX> Owned(PIX* pix) {
    return {pix, [](PIX* last) { pixDestroy(&last); }};
}

std::shared_ptr<PIX> PixOf(const Scene& scene) {
    auto pix = Owned(pixCreate(scene.width, scene.height, 32));
    const BYTE* pixels = scene.Pixels(24);
    for (int y = scene.height - 1; y >= 0; --y, pixels += Stride(scene.width, 24)) {
        for (int x = 0; x != scene.width; ++x) {
            pixSetRGBPixel(pix.get(), x, y, pixels[3 * x + 2], pixels[3 * x + 1], pixels[3 * x]);
        }
    }
    return pix;
}

using PixOperation = PIX* (*)(PIX* source);

const std::map<std::string, PixOperation> kLeptonicaPeers = {
    {"ConvertColor 24 to 256", [](PIX* source) { return pixMedianCutQuantGeneral(source, 0, 8, 256, 0, 1, 1); }},
    {"ConvertColor 24 to 256 dithered",
     [](PIX* source) { return pixMedianCutQuantGeneral(source, 1, 8, 256, 0, 1, 1); }},
    {"ConvertColor 24 to 2 dithered",
     [](PIX* source) {
         const auto grey = Owned(pixConvertRGBToLuminance(source));
         return pixDitherToBinary(grey.get());
     }},
    {"ConvertColor grey to 2 dithered", [](PIX* grey) { return pixDitherToBinary(grey); }},
};

std::function<void()> LeptonicaCall(const std::string& row, const Scene& scene) {
    setMsgSeverity(L_SEVERITY_NONE); // it tells of every picture which way it goes
    const auto found = kLeptonicaPeers.find(row);
    if (found == kLeptonicaPeers.end()) {
        return {};
    }
    auto pix = PixOf(scene);
    if (row.find("grey to") != std::string::npos) {
        pix = Owned(pixConvertRGBToLuminance(pix.get()));
    }
    return [pix, operation = found->second] { Owned(operation(pix.get())); };
}

} // namespace

std::function<void()> PeerCall(const std::string& row, const Scene& scene, Block block) {
    [[maybe_unused]] static const bool oneThread = (cv::setNumThreads(1), true);
    const auto found = OpenCvPeers().find(row);
    if (found == OpenCvPeers().end()) {
        return LeptonicaCall(row, scene);
    }
    const Peer& peer = found->second;
    const cv::Mat source = MatOf(scene, peer.sourceBits);
    if (block == Block::kFresh) {
        return [&peer, &scene, source] {
            cv::Mat result;
            peer.operation(scene, source, result);
        };
    }
    return [&peer, &scene, source, result = cv::Mat()]() mutable { peer.operation(scene, source, result); };
}

} // namespace bench

// Conversions between depths beside OpenCV's, where it has the same.
#include <opencv2/imgproc.hpp>

#include <string>

#include "pictures.h"

namespace bench {
namespace {

void AddConversion(const std::string& name, int from, int to) {
    benchmark::RegisterBenchmark((name + "/qv8").c_str(), [from, to](benchmark::State& state) {
        TimeCall(state, [&] {
            return QV8ConvertColor(SourcePicture(from), static_cast<DWORD>(to), 0, 0, 128, QuietOwner(), 0, 0, 0);
        });
    });
}

void AddPeer(const std::string& name, int from, int type, int code, int toBits) {
    benchmark::RegisterBenchmark((name + "/opencv, fresh GlobalAlloc").c_str(), [from, type, code,
                                                                                 toBits](benchmark::State& state) {
        const cv::Mat source(kHeight, kWidth, type, const_cast<BYTE*>(SourcePixels(from)));
        TimeCall(state, [&] {
            const HGLOBAL block = GlobalAlloc(GHND, ImageBytes(toBits));
            cv::Mat result(kHeight, kWidth, toBits == 16 ? CV_8UC2 : CV_MAKETYPE(CV_8U, toBits / 8), GlobalLock(block));
            cv::cvtColor(source, result, code);
            GlobalUnlock(block);
            return block;
        });
    });
}

const bool registered = [] {
    AddConversion("convert 24 to 32", 24, 32);
    AddPeer("convert 24 to 32", 24, CV_8UC3, cv::COLOR_BGR2BGRA, 32);
    AddConversion("convert 32 to 24", 32, 24);
    AddPeer("convert 32 to 24", 32, CV_8UC4, cv::COLOR_BGRA2BGR, 24);
    AddConversion("convert 24 to 16", 24, 16);
    AddPeer("convert 24 to 16", 24, CV_8UC3, cv::COLOR_BGR2BGR555, 16);
    AddConversion("convert 16 to 24", 16, 24);
    AddPeer("convert 16 to 24", 16, CV_8UC2, cv::COLOR_BGR5552BGR, 24);
    AddConversion("convert 8 to 24", 8, 24);
    AddConversion("convert 8 to grey", 8, QV8_DEPTH_GREY);
    return true;
}();

} // namespace
} // namespace bench

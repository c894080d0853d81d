// Rows of an operation: the library's call, and OpenCV's three ways.
#pragma once

#include <opencv2/core.hpp>

#include <string>

#include "pictures.h"

namespace bench {

inline cv::Mat SourceMat() {
    return {kHeight, kWidth, CV_8UC3, const_cast<BYTE*>(SourcePixels(24))};
}

// Times a call of the library that returns a picture: call(const ImageSet* target).
template <class Call>
void AddEffect(const std::string& name, Call call) {
    benchmark::RegisterBenchmark((name + "/qv8").c_str(), [call](benchmark::State& state) {
        const ImageSet target = {SourcePicture(24), nullptr};
        TimeCall(state, [&] { return call(&target); });
    });
}

// Times an OpenCV operation from 24 bits to 24 bits: into a matrix of its own allocation, into a block of the library's
// allocation, and into a block that is there already.
template <class Operation>
void AddPeer(const std::string& name, Operation operation) {
    benchmark::RegisterBenchmark((name + "/opencv, fresh cv::Mat").c_str(), [operation](benchmark::State& state) {
        const cv::Mat source = SourceMat();
        TimePixels(state, [&] {
            cv::Mat result;
            operation(source, result);
        });
    });
    benchmark::RegisterBenchmark((name + "/opencv, fresh GlobalAlloc").c_str(), [operation](benchmark::State& state) {
        const cv::Mat source = SourceMat();
        TimeCall(state, [&] {
            const HGLOBAL block = GlobalAlloc(GHND, ImageBytes(24));
            cv::Mat result(kHeight, kWidth, CV_8UC3, GlobalLock(block));
            operation(source, result);
            GlobalUnlock(block);
            return block;
        });
    });
    benchmark::RegisterBenchmark((name + " in place/opencv").c_str(), [operation](benchmark::State& state) {
        const cv::Mat source = SourceMat();
        cv::Mat result(kHeight, kWidth, CV_8UC3);
        TimePixels(state, [&] { operation(source, result); });
    });
}

} // namespace bench

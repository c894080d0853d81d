// The pictures that effects are timed on: 1920 x 1080, 24-bit unless said otherwise.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <functional>

#include "qv8effect.h"

namespace bench {

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;

// A picture with smooth gradients and fine noise, made once for each depth and never freed.
HGLOBAL SourcePicture(int bitCount);

// Its rows, locked for good.
const BYTE* SourcePixels(int bitCount);

std::size_t ImageBytes(int bitCount);

// A progress owner that never cancels, so that no dialog is part of what is timed.
DWORD QuietOwner();

// Runs `work` as the loop of a benchmark and reports ns per pixel.
void TimePixels(benchmark::State& state, const std::function<void()>& work);

// Times a call that returns a picture, which is freed.
void TimeCall(benchmark::State& state, const std::function<HGLOBAL()>& call);

} // namespace bench

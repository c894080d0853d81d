#include "pictures.h"

#include <cstdlib>
#include <cstring>
#include <map>

#include "qv8com.h"

namespace bench {
namespace {

int QV8API KeepGoing(int /*percent*/, void* /*context*/) {
    return 1;
}

std::size_t PaletteBytes(int bitCount) {
    return bitCount <= 8 ? (std::size_t{1} << bitCount) * sizeof(RGBQUAD) : 0;
}

void FillRow(BYTE* row, std::size_t stride, int y) {
    unsigned noise = static_cast<unsigned>(y) * 2654435761U + 12345U;
    for (std::size_t i = 0; i != stride; ++i) {
        noise = noise * 1664525U + 1013904223U;
        const auto slope = static_cast<unsigned>(i / 24 + static_cast<std::size_t>(y) / 6);
        row[i] = static_cast<BYTE>(slope + (noise >> 28U));
    }
}

HGLOBAL MakePicture(int bitCount) {
    const std::size_t tableBytes = PaletteBytes(bitCount);
    const HGLOBAL picture = GlobalAlloc(GHND, 40 + tableBytes + ImageBytes(bitCount));
    auto* const bytes = static_cast<BYTE*>(GlobalLock(picture));
    BITMAPINFOHEADER header = {};
    header.biSize = 40;
    header.biWidth = kWidth;
    header.biHeight = kHeight;
    header.biPlanes = 1;
    header.biBitCount = static_cast<WORD>(bitCount);
    header.biSizeImage = static_cast<DWORD>(ImageBytes(bitCount));
    std::memcpy(bytes, &header, sizeof header);
    for (std::size_t i = 0; i != tableBytes; ++i) {
        bytes[40 + i] = static_cast<BYTE>(i % 4 == 3 ? 0 : i / 4 * 255 / (tableBytes / 4 - 1)); // a grey ramp
    }
    const std::size_t stride = ImageBytes(bitCount) / kHeight;
    for (int y = 0; y != kHeight; ++y) {
        FillRow(bytes + 40 + tableBytes + static_cast<std::size_t>(y) * stride, stride, y);
    }
    GlobalUnlock(picture);
    return picture;
}

} // namespace

std::size_t ImageBytes(int bitCount) {
    return static_cast<std::size_t>((kWidth * bitCount + 31) / 32 * 4) * kHeight;
}

HGLOBAL SourcePicture(int bitCount) {
    static std::map<int, HGLOBAL> pictures;
    HGLOBAL& picture = pictures[bitCount];
    if (picture == nullptr) {
        picture = MakePicture(bitCount);
    }
    return picture;
}

const BYTE* SourcePixels(int bitCount) {
    return static_cast<const BYTE*>(GlobalLock(SourcePicture(bitCount))) + 40 + PaletteBytes(bitCount);
}

DWORD QuietOwner() {
    static const DWORD owner = AddProgressOwner(KeepGoing, nullptr);
    return owner;
}

void TimePixels(benchmark::State& state, const std::function<void()>& work) {
    for (auto _ : state) {
        work();
        benchmark::ClobberMemory();
    }
    state.counters["ns/px"] = benchmark::Counter(
        kWidth * kHeight * 1e-9, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void TimeCall(benchmark::State& state, const std::function<HGLOBAL()>& call) {
    TimePixels(state, [&] {
        const HGLOBAL result = call();
        if (result == nullptr) {
            std::abort();
        }
        GlobalFree(result);
    });
}

} // namespace bench

#include "tone/rgb_curves.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "pixels/pixel_fill.h"
#include "tone/curve_kernels.h"
#include "tone/gamma_curve.h"
#include "tone/tone_worker.h"

namespace qv8 {
namespace {

// What one call does to each channel, in the order of memory: blue, green, red.
struct Curves {
    bool isShift; // shifts, which vectors do faster; else tables
    ByteShift shifts[3];
    ShiftPattern packed; // the shifts of the bytes of pixels
    ShiftPattern packedWithUnused;
    CurveTables tables;
};

const Curves& CurvesOf(const void* context) {
    return *static_cast<const Curves*>(context);
}

void CurveChannels(const void* context, const PlanarRow& row, int count) {
    const Curves& curves = CurvesOf(context);
    const CurveKernels& kernels = TheCurveKernels();
    BYTE* const channels[3] = {row.blue, row.green, row.red};
    for (int c = 0; c != 3; ++c) {
        if (curves.isShift) {
            kernels.shiftChannel(curves.shifts[c], channels[c], count);
        } else {
            kernels.lookUpChannel(curves.tables.channel[c], channels[c], count);
        }
    }
}

void CurvePixels(const void* context, const PixelFormat& format, const BYTE* source, BYTE* result, int count) {
    const Curves& curves = CurvesOf(context);
    const CurveKernels& kernels = TheCurveKernels();
    const bool hasUnused = format.layout->unusedBytes != 0;
    if (!format.layout->isBgr) {
        ApplyPlanarTone(context, CurveChannels, format, source, result, count);
    } else if (curves.isShift) {
        kernels.shiftBytes(hasUnused ? curves.packedWithUnused : curves.packed, source, result, format.BytesOf(count));
    } else {
        (hasUnused ? kernels.lookUp32 : kernels.lookUp24)(curves.tables, source, result, count);
    }
}

RGBQUAD CurveEntry(const void* context, RGBQUAD colour) {
    CurveChannels(context, {&colour.rgbBlue, &colour.rgbGreen, &colour.rgbRed}, 1);
    return colour;
}

// Truncates toward zero and clamps; a value that is not a number becomes 0.
template <class Number>
BYTE ToByte(Number value) {
    if (!(value > 0)) {
        return 0;
    }
    return value >= 255 ? BYTE{255} : static_cast<BYTE>(value);
}

// Pixels go through a table kept in single precision; entries of a colour table are computed in double precision to the
// end. The two differ by one level here and there.
struct GammaCurves {
    Curves pixels;
    double gammas[3];
};

void SetGammaCurve(double gamma, BYTE* table) {
    for (int i = 0; i != 256; ++i) {
        table[i] = ToByte(static_cast<float>(GammaCurve(i, gamma)) + 0.5F);
    }
}

void RgbGammaPixels(const void* context, const PixelFormat& format, const BYTE* source, BYTE* result, int count) {
    CurvePixels(&static_cast<const GammaCurves*>(context)->pixels, format, source, result, count);
}

RGBQUAD RgbGammaEntry(const void* context, RGBQUAD colour) {
    const auto& gammas = static_cast<const GammaCurves*>(context)->gammas;
    const auto entry = [](BYTE level, double gamma) { return ToByte(GammaCurve(level, gamma) + 0.5); };
    return {entry(colour.rgbBlue, gammas[0]), entry(colour.rgbGreen, gammas[1]), entry(colour.rgbRed, gammas[2]), 0};
}

// The largest level whose sum with a channel value stays in 32 bits. Sums beyond wrap around to negative values.
constexpr LONG kMaxShiftLevel = std::numeric_limits<LONG>::max() - 255;

void SetLevelCurve(LONG level, BYTE* table) {
    for (std::uint32_t i = 0; i != 256; ++i) {
        const auto sum = static_cast<std::int32_t>(i + static_cast<std::uint32_t>(level));
        table[i] = static_cast<BYTE>(std::clamp(sum, 0, 255));
    }
}

ByteShift LevelShift(LONG level) {
    return {0, static_cast<BYTE>(std::clamp<LONG>(level, 0, 255)),
            static_cast<BYTE>(-std::clamp<LONG>(level, -255, 0))};
}

// Repeats the shifts of a pixel's bytes along the pattern.
void SetPattern(const ByteShift* shifts, std::size_t bytes, ShiftPattern& pattern) {
    for (std::size_t i = 0; i != bytes; ++i) {
        pattern.flip[i] = shifts[i].flip;
        pattern.add[i] = shifts[i].add;
        pattern.subtract[i] = shifts[i].subtract;
    }
    for (BYTE* const part : {pattern.flip, pattern.add, pattern.subtract}) {
        RepeatBytes(part, bytes, ShiftPattern::kLength);
    }
}

// A fourth byte is left as it is.
HGLOBAL ApplyShifts(const AreaArguments& area, const ByteShift (&shifts)[3], const Progress& progress) {
    Curves curves;
    curves.isShift = true;
    const ByteShift withUnused[] = {shifts[0], shifts[1], shifts[2], {}};
    std::copy_n(shifts, 3, curves.shifts);
    SetPattern(withUnused, 3, curves.packed);
    SetPattern(withUnused, 4, curves.packedWithUnused);
    return ApplyTone(area, {&curves, CurvePixels, CurveEntry, true}, progress);
}

} // namespace

HGLOBAL RgbGamma(const AreaArguments& area, double gammaRed, double gammaGreen, double gammaBlue,
                 const Progress& progress) {
    GammaCurves curves;
    curves.gammas[0] = gammaBlue;
    curves.gammas[1] = gammaGreen;
    curves.gammas[2] = gammaRed;
    curves.pixels.isShift = false;
    BYTE(&tables)[3][256] = curves.pixels.tables.channel;
    for (int c = 0; c != 3; ++c) {
        if (c != 0 && curves.gammas[c] == curves.gammas[c - 1]) {
            std::copy_n(tables[c - 1], 256, tables[c]);
        } else {
            SetGammaCurve(curves.gammas[c], tables[c]);
        }
    }
    return ApplyTone(area, {&curves, RgbGammaPixels, RgbGammaEntry, true}, progress);
}

HGLOBAL RgbLevel(const AreaArguments& area, LONG levelRed, LONG levelGreen, LONG levelBlue, const Progress& progress) {
    const LONG levels[3] = {levelBlue, levelGreen, levelRed};
    if (*std::max_element(levels, levels + 3) <= kMaxShiftLevel) {
        return ApplyShifts(area, {LevelShift(levels[0]), LevelShift(levels[1]), LevelShift(levels[2])}, progress);
    }
    Curves curves = {};
    for (int c = 0; c != 3; ++c) {
        SetLevelCurve(levels[c], curves.tables.channel[c]);
    }
    return ApplyTone(area, {&curves, CurvePixels, CurveEntry, true}, progress);
}

HGLOBAL RgbRev(const AreaArguments& area, bool invertRed, bool invertGreen, bool invertBlue, const Progress& progress) {
    const auto flip = [](bool inverts) { return ByteShift{inverts ? BYTE{0xFF} : BYTE{0}, 0, 0}; };
    return ApplyShifts(area, {flip(invertBlue), flip(invertGreen), flip(invertRed)}, progress);
}

} // namespace qv8

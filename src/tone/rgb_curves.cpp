#include "tone/rgb_curves.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "tone/curve_kernels.h"
#include "tone/gamma_curve.h"
#include "tone/tone_worker.h"

namespace qv8 {
namespace {

// What one call does to each channel, in the order of memory: blue, green, red.
struct Curves {
    CurveTables pixels;  // of pixel channels
    CurveTables entries; // of colour-table entries
    bool isShift;        // the tables are these shifts, which vectors do faster
    ByteShift shifts[3];
    ShiftPattern packed; // the shifts of the bytes of pixels
    ShiftPattern packedWithUnused;
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
            kernels.lookUpChannel(curves.pixels.channel[c], channels[c], count);
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
        (hasUnused ? kernels.lookUp32 : kernels.lookUp24)(curves.pixels, source, result, count);
    }
}

RGBQUAD CurveEntry(const void* context, RGBQUAD colour) {
    const CurveTables& tables = CurvesOf(context).entries;
    return {tables.channel[0][colour.rgbBlue], tables.channel[1][colour.rgbGreen], tables.channel[2][colour.rgbRed], 0};
}

HGLOBAL ApplyCurves(const AreaArguments& area, const Curves& curves, const Progress& progress) {
    return ApplyTone(area, {&curves, CurvePixels, CurveEntry}, progress);
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
void SetGammaCurve(double gamma, BYTE* pixels, BYTE* entries) {
    for (int i = 0; i != 256; ++i) {
        const double value = GammaCurve(i, gamma);
        pixels[i] = ToByte(static_cast<float>(value) + 0.5F);
        entries[i] = ToByte(value + 0.5);
    }
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

// Repeats the three shifts along the patterns; a fourth byte is left as it is.
void SetShifts(Curves& curves) {
    const auto set = [](ShiftPattern& pattern, std::size_t i, const ByteShift& shift) {
        pattern.flip[i] = shift.flip;
        pattern.add[i] = shift.add;
        pattern.subtract[i] = shift.subtract;
    };
    for (std::size_t i = 0; i != ShiftPattern::kLength; ++i) {
        set(curves.packed, i, curves.shifts[i % 3]);
        set(curves.packedWithUnused, i, i % 4 == 3 ? ByteShift{} : curves.shifts[i % 4]);
    }
    curves.isShift = true;
}

} // namespace

HGLOBAL RgbGamma(const AreaArguments& area, double gammaRed, double gammaGreen, double gammaBlue,
                 const Progress& progress) {
    const double gammas[3] = {gammaBlue, gammaGreen, gammaRed};
    Curves curves = {};
    for (int c = 0; c != 3; ++c) {
        if (c != 0 && gammas[c] == gammas[c - 1]) { // 256 powers take longer than a small picture
            std::copy_n(curves.pixels.channel[c - 1], 256, curves.pixels.channel[c]);
            std::copy_n(curves.entries.channel[c - 1], 256, curves.entries.channel[c]);
        } else {
            SetGammaCurve(gammas[c], curves.pixels.channel[c], curves.entries.channel[c]);
        }
    }
    return ApplyCurves(area, curves, progress);
}

HGLOBAL RgbLevel(const AreaArguments& area, LONG levelRed, LONG levelGreen, LONG levelBlue, const Progress& progress) {
    const LONG levels[3] = {levelBlue, levelGreen, levelRed};
    Curves curves = {};
    for (int c = 0; c != 3; ++c) {
        SetLevelCurve(levels[c], curves.pixels.channel[c]);
        curves.shifts[c] = LevelShift(levels[c]);
    }
    curves.entries = curves.pixels;
    if (*std::max_element(levels, levels + 3) <= kMaxShiftLevel) {
        SetShifts(curves);
    }
    return ApplyCurves(area, curves, progress);
}

HGLOBAL RgbRev(const AreaArguments& area, bool invertRed, bool invertGreen, bool invertBlue, const Progress& progress) {
    const bool inverts[3] = {invertBlue, invertGreen, invertRed};
    Curves curves = {};
    for (int c = 0; c != 3; ++c) {
        curves.shifts[c].flip = inverts[c] ? 0xFF : 0;
        for (int i = 0; i != 256; ++i) {
            curves.pixels.channel[c][i] = static_cast<BYTE>(i ^ curves.shifts[c].flip);
        }
    }
    curves.entries = curves.pixels;
    SetShifts(curves);
    return ApplyCurves(area, curves, progress);
}

} // namespace qv8

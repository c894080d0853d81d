#include "tone/ycc_curves.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "pixels/ycc_weights.h"
#include "tone/gamma_curve.h"
#include "tone/tone_worker.h"
#include "tone/ycc_kernels.h"

namespace qv8 {
namespace {

// Components of a colour-table entry. Its forward sums are double precision, unlike those of pixels.
struct Components {
    int y;
    int cr;
    int cb;
};

Components ForwardEntry(const RGBQUAD& colour, double offset) {
    const double red = colour.rgbRed;
    const double green = colour.rgbGreen;
    const double blue = colour.rgbBlue;
    const auto sum = [&](const ColourWeights& w) { return w.red * red + w.green * green + w.blue * blue; };
    return {static_cast<int>(sum(kLuminanceWeights)), static_cast<int>(sum(kCrWeights) + offset),
            static_cast<int>(sum(kCbWeights) + offset)};
}

RGBQUAD BackEntry(int y, int cr, int cb) {
    return FromYcc(static_cast<float>(y), static_cast<float>(cr), static_cast<float>(cb));
}

// Every forward value lies in 0..255, which the all-colours test proves for pixels; entries are held there.
int Clamped(int value) {
    return std::clamp(value, 0, 255);
}

// Truncates toward zero.
int ToComponent(double value) {
    if (!(value > -kFarComponent)) { // also what is not a number
        return -kFarComponent;
    }
    return value < kFarComponent ? static_cast<int>(value) : kFarComponent;
}

// --- Gamma -----------------------------------------------------------------------------------------------------------

struct YccGammas {
    double y;
    double cr;
    double cb;
    YccTables pixels; // in single precision; of entries the curves are computed in double precision to the end
};

void YccGammaPixels(const void* context, const PlanarRow& row, int count) {
    TheYccKernels().map(static_cast<const YccGammas*>(context)->pixels, row, count);
}

RGBQUAD YccGammaEntry(const void* context, RGBQUAD colour) {
    const auto& gammas = *static_cast<const YccGammas*>(context);
    const Components c = ForwardEntry(colour, 128.0);
    const auto curve = [](int value, double gamma) { return ToComponent(GammaCurve(Clamped(value), gamma)); };
    return BackEntry(curve(c.y, gammas.y), curve(c.cr, gammas.cr) - 128, curve(c.cb, gammas.cb) - 128);
}

// --- Level and inversion ---------------------------------------------------------------------------------------------

void ShiftPixels(const void* context, const PlanarRow& row, int count) {
    TheYccKernels().shift(*static_cast<const YccShift*>(context), row, count);
}

int Shifted(int value, const ComponentShift& shift) {
    return static_cast<int>(static_cast<std::uint32_t>(value ^ shift.flip) + static_cast<std::uint32_t>(shift.add));
}

RGBQUAD ShiftEntry(const void* context, RGBQUAD colour) {
    const auto& shift = *static_cast<const YccShift*>(context);
    const Components c = ForwardEntry(colour, 128.0);
    return BackEntry(Shifted(c.y, shift.y), Shifted(c.cr, shift.cr), Shifted(c.cb, shift.cb));
}

// --- Chroma ----------------------------------------------------------------------------------------------------------

void ScalePixels(const void* context, const PlanarRow& row, int count) {
    TheYccKernels().scale(*static_cast<const float*>(context), row, count);
}

RGBQUAD ScaleEntry(const void* context, RGBQUAD colour) {
    const float factor = *static_cast<const float*>(context);
    const Components c = ForwardEntry(colour, 0.0);
    return FromYcc(static_cast<float>(c.y), static_cast<float>(c.cr) * factor, static_cast<float>(c.cb) * factor);
}

// A change of 0 percent leaves even 16-bit pixels as they are.
void CopyPixels(const void* /*context*/, const PixelFormat& format, const BYTE* source, BYTE* result, int count) {
    std::memcpy(result, source, format.BytesOf(count));
}

RGBQUAD CopyEntry(const void* /*context*/, RGBQUAD colour) {
    return colour;
}

// The `pixels` of an effect from its planar form.
template <PlanarTone kTone>
void Planar(const void* context, const PixelFormat& format, const BYTE* source, BYTE* result, int count) {
    ApplyPlanarTone(context, kTone, format, source, result, count);
}

} // namespace

HGLOBAL YccGamma(const AreaArguments& area, double gammaY, double gammaCr, double gammaCb, const Progress& progress) {
    YccGammas gammas;
    gammas.y = gammaY;
    gammas.cr = gammaCr;
    gammas.cb = gammaCb;
    const auto gammaTable = TheYccKernels().gammaTable;
    gammaTable(gammaY, 0, gammas.pixels.y);
    gammaTable(gammaCr, 128, gammas.pixels.cr);
    gammaTable(gammaCb, 128, gammas.pixels.cb);
    return ApplyTone(area, {&gammas, Planar<YccGammaPixels>, YccGammaEntry}, progress);
}

HGLOBAL YccLevel(const AreaArguments& area, LONG levelY, LONG levelCr, LONG levelCb, const Progress& progress) {
    const auto centred = [](LONG level) {
        return static_cast<int>(static_cast<std::uint32_t>(level) - std::uint32_t{128});
    };
    const YccShift shift = {{0, static_cast<int>(levelY)}, {0, centred(levelCr)}, {0, centred(levelCb)}};
    return ApplyTone(area, {&shift, Planar<ShiftPixels>, ShiftEntry}, progress);
}

HGLOBAL YccRev(const AreaArguments& area, bool invertY, bool invertCr, bool invertCb, const Progress& progress) {
    const auto flip = [](bool invert) { return invert ? 255 : 0; };
    const YccShift shift = {{flip(invertY), 0}, {flip(invertCr), -128}, {flip(invertCb), -128}};
    return ApplyTone(area, {&shift, Planar<ShiftPixels>, ShiftEntry}, progress);
}

HGLOBAL Chroma(const AreaArguments& area, LONG chroma, const Progress& progress) {
    const auto factor = static_cast<float>((std::clamp<LONG>(chroma, -100, 1000) + 100) / 100.0);
    const ToneEffect effect = factor == 1.0F ? ToneEffect{&factor, CopyPixels, CopyEntry, true}
                                             : ToneEffect{&factor, Planar<ScalePixels>, ScaleEntry};
    return ApplyTone(area, effect, progress);
}

} // namespace qv8

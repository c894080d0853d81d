#include "api/export_rows.h"

namespace test {
namespace {

Result RgbGamma(const Call& call, Parameters& parameters) {
    const double red = parameters.Real(-0.5, -4, 4);
    const double green = parameters.Real(0.5, -1, 1);
    const double blue = parameters.Real(1, -40, 40);
    return Single(CallWithArea(QV8RGBGamma, call, red, green, blue));
}

Result RgbLevel(const Call& call, Parameters& parameters) {
    const LONG red = parameters.Wild(20, -270, 270);
    const LONG green = parameters.Wild(-30, -100, 100);
    const LONG blue = parameters.Wild(40, -20, 20);
    return Single(CallWithArea(QV8RGBLevel, call, red, green, blue));
}

Result RgbRev(const Call& call, Parameters& parameters) {
    const BOOL red = parameters.Flag(1);
    const BOOL green = parameters.Flag(0);
    const BOOL blue = parameters.Flag(2);
    return Single(CallWithArea(QV8RGBRev, call, red, green, blue));
}

Result YccGamma(const Call& call, Parameters& parameters) {
    const double y = parameters.Real(-0.5, -4, 4);
    const double cr = parameters.Real(0.5, -1, 1);
    const double cb = parameters.Real(1, -40, 40);
    return Single(CallWithArea(QV8YCCGamma, call, y, cr, cb));
}

Result YccLevel(const Call& call, Parameters& parameters) {
    const LONG y = parameters.Wild(20, -270, 270);
    const LONG cr = parameters.Wild(-30, -100, 100);
    const LONG cb = parameters.Wild(40, -20, 20);
    return Single(CallWithArea(QV8YCCLevel, call, y, cr, cb));
}

Result YccRev(const Call& call, Parameters& parameters) {
    const BOOL y = parameters.Flag(1);
    const BOOL cr = parameters.Flag(0);
    const BOOL cb = parameters.Flag(2);
    return Single(CallWithArea(QV8YCCRev, call, y, cr, cb));
}

Result Chroma(const Call& call, Parameters& parameters) {
    return Single(CallWithArea(QV8Chroma, call, parameters.Wild(40, -110, 1010)));
}

Result SetGray(const Call& call, Parameters&) {
    return Single(QV8SetGray(call.target.hImage, call.progressOwner, call.dialog[0], call.dialog[1], call.dialog[2]));
}

constexpr Export kRows[] = {
    {"QV8RGBGamma", kAcceptAll, AreaUse::kTrueColour, kBadPicture, kBadPicture, RgbGamma},
    {"QV8RGBLevel", kAcceptAll, AreaUse::kTrueColour, kBadPicture, kBadPicture, RgbLevel},
    {"QV8RGBRev", kAcceptAll, AreaUse::kTrueColour, kBadPicture, kBadPicture, RgbRev},
    {"QV8YCCGamma", kAcceptAll, AreaUse::kTrueColour, kBadPicture, kBadPicture, YccGamma},
    {"QV8YCCLevel", kAcceptAll, AreaUse::kTrueColour, kBadPicture, kBadPicture, YccLevel},
    {"QV8YCCRev", kAcceptAll, AreaUse::kTrueColour, kBadPicture, kBadPicture, YccRev},
    {"QV8Chroma", kAcceptAll, AreaUse::kTrueColour, kBadPicture, kBadPicture, Chroma},
    {"QV8SetGray", kAcceptAll, AreaUse::kNone, kBadPicture, kBadPicture, SetGray},
};

} // namespace

std::span<const Export> ToneRows() {
    return kRows;
}

} // namespace test

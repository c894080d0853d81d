#include "api/export_table.h"

#include <algorithm>

#include "qv8com.h"

namespace test {
namespace {

Result Single(HGLOBAL image) {
    return {image, nullptr, image != nullptr};
}

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

Result ConvertColor(const Call& call, Parameters& parameters) {
    static constexpr DWORD kTargets[] = {24, 32, 16, QV8_DEPTH_GREY, 8, 4, 1};
    DWORD depth = kTargets[parameters.Number(0, 0, 6)];
    if (depth == static_cast<DWORD>(call.bits)) {
        depth = call.bits == 24 ? 32 : 24;
    }
    const BOOL fixedPalette = parameters.Flag(0);
    const BOOL dither = parameters.Flag(0);
    const int threshold = parameters.Number(128, 0, 255);
    return Single(QV8ConvertColor(call.target.hImage, depth, fixedPalette, dither, static_cast<DWORD>(threshold),
                                  call.progressOwner, call.dialog[0], call.dialog[1], call.dialog[2]));
}

// Of the depth of the picture that is not used.
Result CreateImage(const Call& call, Parameters& parameters) {
    const int width = parameters.Number(9, -1, 70);
    const int height = parameters.Number(5, -1, 20);
    const auto red = static_cast<DWORD>(parameters.Number(60, 0, 255));
    const auto green = static_cast<DWORD>(parameters.Number(120, 0, 255));
    const auto blue = static_cast<DWORD>(parameters.Number(250, 0, 255));
    return Single(QV8CreateImage(width, height, static_cast<DWORD>(call.bits), red, green, blue, call.progressOwner,
                                 call.dialog[0], call.dialog[1], call.dialog[2]));
}

Result CopyImage(const Call& call, Parameters&) {
    return Single(QV8CopyImage(call.target.hImage, call.progressOwner, call.dialog[0], call.dialog[1], call.dialog[2]));
}

constexpr int kBadPicture = QV8_STATUS_PICTURE;
constexpr int kBadParameter = QV8_STATUS_PARAMETER;
constexpr int kBadDepth = QV8_STATUS_DEPTH;

// Name, layouts accepted, use of the area, status of a zero handle and of a depth that does not exist, typical call.
constexpr Export kExports[] = {
    {"QV8RGBGamma", kAcceptAll, AreaUse::kTrueColour, kBadPicture, kBadPicture, RgbGamma},
    {"QV8RGBLevel", kAcceptAll, AreaUse::kTrueColour, kBadPicture, kBadPicture, RgbLevel},
    {"QV8RGBRev", kAcceptAll, AreaUse::kTrueColour, kBadPicture, kBadPicture, RgbRev},
    {"QV8YCCGamma", kAcceptAll, AreaUse::kTrueColour, kBadPicture, kBadPicture, YccGamma},
    {"QV8YCCLevel", kAcceptAll, AreaUse::kTrueColour, kBadPicture, kBadPicture, YccLevel},
    {"QV8YCCRev", kAcceptAll, AreaUse::kTrueColour, kBadPicture, kBadPicture, YccRev},
    {"QV8Chroma", kAcceptAll, AreaUse::kTrueColour, kBadPicture, kBadPicture, Chroma},
    {"QV8SetGray", kAcceptAll, AreaUse::kNone, kBadPicture, kBadPicture, SetGray},
    {"QV8ConvertColor", kAcceptAll, AreaUse::kNone, kUntouched, kBadParameter, ConvertColor},
    {"QV8CreateImage", kAcceptAll, AreaUse::kNone, QV8_STATUS_SUCCESS, kBadDepth, CreateImage},
    {"QV8CopyImage", kAcceptAll | kAcceptOdd, AreaUse::kNone, kBadPicture, kBadPicture, CopyImage},
};

} // namespace

double Parameters::Real(double typical, double low, double high) {
    return random_ != nullptr ? low + (high - low) * (random_->Between(0, 1 << 20) / 1048576.0) : typical;
}

LONG Parameters::Wild(LONG typical, LONG low, LONG high) {
    static constexpr LONG kEnds[] = {0x7FFFFFFF, 0x7FFFFF80, -0x7FFFFFFF - 1, -0x7FFFFF80};
    if (random_ != nullptr && random_->Chance(10)) {
        return kEnds[random_->Between(0, 3)];
    }
    return Number(static_cast<int>(typical), static_cast<int>(low), static_cast<int>(high));
}

std::span<const Export> Exports() {
    return kExports;
}

Call Scene::AsCall() const {
    Call call;
    call.target = {picture.Handle(), area.type == QV8_AREA_MASK ? mask.Handle() : nullptr};
    call.bits = picture.Content().Bits();
    call.area = area;
    return call;
}

bool Scene::Untouched() const {
    const auto pictureUntouched = picture.Untouched();
    const auto maskUntouched = mask.Untouched();
    EXPECT_TRUE(pictureUntouched);
    EXPECT_TRUE(maskUntouched);
    return pictureUntouched && maskUntouched;
}

Scene RandomScene(const Layout& layout, AreaForm form, int width, int height, Random& random) {
    Picture picture = RandomPicture(layout, width, height, random);
    Picture mask = RandomMask(width, height, random);
    Area area = RandomArea(form, width, height, random);
    return {Source(std::move(picture)), Source(std::move(mask)), std::move(area)};
}

Outcome CallExport(const Export& row, const Call& call, Parameters parameters) {
    SetErrorStatus(kUntouched);
    const Result result = row.call(call, parameters);
    return {Block(result.image), Block(result.mask), result.succeeded, GetErrorStatus(), {}};
}

Outcome WatchExport(const Export& row, const Call& call, const hooks::Failure& failure) {
    Outcome outcome;
    hooks::Report report = hooks::Watch(failure, [&] { outcome = CallExport(row, call); });

    std::vector<HGLOBAL> results;
    for (const HGLOBAL block : {outcome.image.get(), outcome.mask.get()}) {
        if (block != nullptr) {
            results.push_back(block);
        }
    }
    std::sort(results.begin(), results.end());
    EXPECT_EQ(report.blocks, results) << "blocks left behind";
    EXPECT_EQ(report.locks, 0);
    EXPECT_EQ(report.drawingObjects, 0);
    EXPECT_EQ(report.misuse, "");
    EXPECT_EQ(static_cast<int>(report.dialogs.size()), report.dialogsClosed);
    EXPECT_EQ(outcome.succeeded, outcome.status == QV8_STATUS_SUCCESS);
    EXPECT_TRUE(outcome.succeeded || results.empty()) << "a result of a call that failed";
    outcome.report = std::move(report);
    return outcome;
}

} // namespace test

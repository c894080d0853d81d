// Every export stands whatever it is called with.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <string>

#include "api/export_table.h"
#include "api/hostile_call.h"
#include "qv8com.h"

namespace test {
namespace {

TEST(EveryExport, StandsHostileCalls) {
    for (std::uint64_t seed = 1; seed <= 4000 && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        Random random(seed);
        MakeHostileCall(random);
    }
}

// What fuzzing found worth keeping, on the builds that it does not run on.
TEST(EveryExport, StandsTheCallsOfTheCorpus) {
    int calls = 0;
    for (const auto& entry : std::filesystem::directory_iterator(QV8_CORPUS)) {
        SCOPED_TRACE(entry.path().filename().string());
        std::ifstream file(entry.path(), std::ios::binary);
        const Bytes script{std::istreambuf_iterator<char>(file), {}};
        Random random(script);
        MakeHostileCall(random);
        ++calls;
    }
    EXPECT_GE(calls, 100);
}

TEST(EveryExport, TakesANullPairForZeroHandlesAndANullRectangleForZeros) {
    Random random(60);
    for (const Export& row : Exports()) {
        SCOPED_TRACE(row.name);
        const Scene scene = RandomScene(LayoutNamed("24"), AreaForm::kEllipseOutside, 9, 5, random);
        const bool usesArea = row.UsesAreaOf(LayoutNamed("24"));
        Call noPair = scene.AsCall();
        noPair.omitTarget = true;
        if ((usesArea && row.TakesMasks()) || (row.areaUse == AreaUse::kMaskAlong && !row.TakesSecond())) {
            EXPECT_EQ(WatchExport(row, noPair).status, QV8_STATUS_PICTURE);
        }
        Call noRect = scene.AsCall();
        noRect.area.rect = {0, 0, 0, 0};
        const Outcome zeros = WatchExport(row, noRect);
        noRect.area.rect = {1, 1, 7, 4};
        noRect.area.omitRect = true;
        const Outcome null = WatchExport(row, noRect);
        EXPECT_EQ(null.status, zeros.status);
        EXPECT_EQ(ReadBlock(null.image.get()), ReadBlock(zeros.image.get()));
    }
}

// Only our own memory tells handles from other values without danger.
#ifndef _WIN32
TEST(EveryExport, RefusesWhatIsNoHandle) {
    const Source good(BlankPicture(24, 5, 3));
    Block freed = MakeBlock(good.Content().bytes);
    const HGLOBAL before = freed.get();
    freed.reset();
    void* const address = GlobalLock(good.Handle());
    GlobalUnlock(good.Handle());
    for (const Export& row : Exports()) {
        SCOPED_TRACE(row.name);
        for (const HGLOBAL handle : {before, HGLOBAL{address}, reinterpret_cast<HGLOBAL>(~std::uintptr_t{0})}) {
            for (int place = row.TakesPicture() ? 0 : 2; place <= static_cast<int>(row.TakesSecond()); ++place) {
                Call call;
                call.target.hImage = place == 1 ? good.Handle() : handle;
                call.second = place == 1 ? handle : good.Handle();
                const Outcome outcome = WatchExport(row, call);
                EXPECT_EQ(outcome.status, row.LockStatus());
            }
        }
        EXPECT_TRUE(good.Untouched());
    }
}
#endif

// Between the ends every level goes below or above all bytes; at the ends, where nothing times infinity stands, and for
// what is no number, it is enough that there is a byte.
TEST(RGBGamma, ClampsWhatIsNotFinite) {
    Picture ramp = BlankPicture(24, 256, 1);
    for (int x = 0; x != 256; ++x) {
        const BYTE level = static_cast<BYTE>(x);
        ramp.SetColour(x, 0, {level, level, level});
    }
    const Source source(ramp);
    const ImageSet target = {source.Handle(), nullptr};
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const Block result(
        QV8RGBGamma(&target, QV8_AREA_WHOLE, nullptr, 0, nullptr, 1, kInfinity, -kInfinity, std::nan(""), 1, 0, 0, 0));
    ASSERT_NE(result, nullptr);
    const Picture curved{ReadBlock(result.get())};
    for (int x = 1; x != 255; ++x) {
        EXPECT_EQ(curved.ColourAt(x, 0).red, 0) << x;
        EXPECT_EQ(curved.ColourAt(x, 0).green, 255) << x;
    }
    const Block luminance(
        QV8YCCGamma(&target, QV8_AREA_WHOLE, nullptr, 0, nullptr, 1, kInfinity, std::nan(""), -kInfinity, 1, 0, 0, 0));
    EXPECT_TRUE(IsSound(luminance.get()));
}

} // namespace
} // namespace test

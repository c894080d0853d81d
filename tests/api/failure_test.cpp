// For every export: whatever fails in the middle of a call, the promised status, no result, and nothing left behind.
#include <algorithm>
#include <cstdio>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "api/export_table.h"
#include "qv8com.h"

namespace test {
namespace {

using hooks::Kind;

// What a failing call of one kind leads to while one thing is drawn.
struct Promise {
    const char* what;
    Kind kind;
    DWORD drawn; // area type, or one of these:
    std::set<int> statuses;
};

constexpr DWORD kAnything = 99;
constexpr DWORD kText = 98;

const Promise kPromises[] = {
    {"allocation", Kind::kAllocation, kAnything, {QV8_STATUS_MEMORY}},
    // A mask that cannot be locked while it is drawn or inverted counts as a failure to draw.
    {"lock", Kind::kLock, QV8_AREA_POLYGON, {QV8_STATUS_MEMORY, QV8_STATUS_DIALOG}},
    {"lock", Kind::kLock, QV8_AREA_ELLIPSE, {QV8_STATUS_MEMORY, QV8_STATUS_DIALOG}},
    {"lock", Kind::kLock, kAnything, {QV8_STATUS_MEMORY}},
    {"progress", Kind::kProgress, kAnything, {QV8_STATUS_CANCELLED}},
    {"dialog", Kind::kDialog, kAnything, {QV8_STATUS_DIALOG}},
    {"screen context", Kind::kGetContext, kAnything, {QV8_STATUS_DIALOG}},
    {"memory context", Kind::kCreateContext, kAnything, {QV8_STATUS_DIALOG}},
    {"bitmap", Kind::kCreateBitmap, kAnything, {QV8_STATUS_DIALOG}},
    // Selecting is not promised to be checked. With a text it is the bitmap, the font, and then both back.
    {"selection", Kind::kSelect, kText, {kOk, QV8_STATUS_DIALOG, QV8_STATUS_DRAWING}},
    {"selection", Kind::kSelect, kAnything, {kOk, QV8_STATUS_DIALOG}},
    // The ellipse goes on whether its bits were transferred or not.
    {"bits in", Kind::kSetBits, QV8_AREA_ELLIPSE, {kOk}},
    {"bits in", Kind::kSetBits, kText, {QV8_STATUS_DRAWING}},
    {"bits in", Kind::kSetBits, kAnything, {QV8_STATUS_DIALOG}},
    {"bits out", Kind::kGetBits, QV8_AREA_ELLIPSE, {kOk}},
    {"bits out", Kind::kGetBits, kText, {QV8_STATUS_DRAWING}},
    {"bits out", Kind::kGetBits, kAnything, {QV8_STATUS_DIALOG}},
    {"polygon", Kind::kPolygon, QV8_AREA_POLYGON, {QV8_STATUS_DIALOG}},
    {"ellipse", Kind::kEllipse, QV8_AREA_ELLIPSE, {QV8_STATUS_DIALOG}},
    // The seam of a panorama, which has no area.
    {"start of a line", Kind::kMoveTo, QV8_AREA_WHOLE, {QV8_STATUS_DIALOG}},
    {"line", Kind::kLineTo, QV8_AREA_WHOLE, {QV8_STATUS_DIALOG}},
    {"brush", Kind::kCreateBrush, QV8_AREA_WHOLE, {QV8_STATUS_DIALOG}},
    {"filling", Kind::kFloodFill, QV8_AREA_WHOLE, {kOk}},
    // What is missing to draw a text on has another status than what could not be drawn.
    {"font", Kind::kCreateFont, kText, {QV8_STATUS_DRAWING}},
    {"colours", Kind::kTextColours, kText, {QV8_STATUS_DRAWING}},
    {"measuring", Kind::kMeasureText, kText, {QV8_STATUS_DRAWING}},
    {"text", Kind::kDrawText, kText, {QV8_STATUS_DRAWING}},
    // Without an open clipboard nothing can be put there (3) or had from there (7).
    {"opening of the clipboard", Kind::kOpenClipboard, kAnything, {QV8_STATUS_MEMORY, QV8_STATUS_PICTURE}},
    {"emptying of the clipboard", Kind::kEmptyClipboard, kAnything, {kOk}},
    {"data to the clipboard", Kind::kSetClipboard, kAnything, {QV8_STATUS_MEMORY}},
    {"data from the clipboard", Kind::kGetClipboard, kAnything, {QV8_STATUS_PICTURE}},
    {"closing of the clipboard", Kind::kCloseClipboard, kAnything, {kOk}},
};

const Promise* PromiseOf(Kind kind, DWORD drawn) {
    const auto* const found = std::find_if(std::begin(kPromises), std::end(kPromises), [&](const Promise& promise) {
        return promise.kind == kind && (promise.drawn == drawn || promise.drawn == kAnything);
    });
    return found != std::end(kPromises) ? found : nullptr;
}

Scene SmallScene(const Layout& layout, AreaForm form, std::uint64_t seed) {
    Random random(seed);
    Scene scene = RandomScene(layout, form, 9, 5, random);
    // A shape of some size in any case.
    scene.area.points = {{1, 1}, {7, 0}, {5, 4}};
    scene.area.rect = {1, 0, 8, 4};
    return scene;
}

constexpr int kDraws = 4;

// What a sweep did and found, added up.
struct Sweep {
    std::set<const Promise*> promises;
    int calls = 0; // exports x layouts x areas
    int failures = 0;
    int draw = 0; // of the parameters: typical ones, then random ones

    Outcome Watch(const Export& row, const Scene& scene, const hooks::Failure& failure = {}) {
        Call call = scene.AsCall();
        call.progressOwner = 0; // so that dialogs are opened, too
        Random random(static_cast<std::uint64_t>(draw));
        Outcome outcome = WatchExport(row, call, failure, draw == 0 ? Parameters() : Parameters(random));
        EXPECT_TRUE(scene.Untouched());
        return outcome;
    }
};

bool Keeps(const Export& row, const Promise& promise, int status) {
    if (row.Is(kUnframed)) {
        return status == kOk;
    }
    return promise.statuses.count(status) == 1 || (promise.kind == Kind::kLock && status == row.LockStatus());
}

// Makes the first, second ... call of one kind fail, alone and with all that follow.
void FailEachCall(const Export& row, const Scene& scene, const Promise& promise, int calls, Sweep& sweep) {
    for (int n = 1; n <= calls; ++n) {
        for (const bool andAfter : {false, true}) {
            SCOPED_TRACE(std::string(promise.what) + " " + std::to_string(n) + (andAfter ? " and after" : ""));
            const Outcome outcome = sweep.Watch(row, scene, {promise.kind, n, andAfter});
            EXPECT_TRUE(outcome.report.failed);
            EXPECT_TRUE(Keeps(row, promise, outcome.status)) << "status " << outcome.status;
            sweep.promises.insert(&promise);
            sweep.failures += 1;
        }
    }
}

void FailEverything(const Export& row, const Scene& scene, Sweep& sweep) {
    const Outcome plain = sweep.Watch(row, scene);
    if (sweep.draw != 0 && plain.status != kOk) {
        return; // bad parameters
    }
    EXPECT_EQ(plain.status, kOk);
    EXPECT_TRUE(plain.succeeded);
    sweep.calls += 1;
    const hooks::Report& report = plain.report;
    const DWORD drawn = row.Is(kDrawsText) ? kText : row.DrawnAs(scene.area.type);
    for (int k = static_cast<int>(Kind::kNothing) + 1; k != static_cast<int>(Kind::kCount); ++k) {
        const auto kind = static_cast<Kind>(k);
        const Promise* const promise = PromiseOf(kind, drawn);
        if (promise != nullptr) {
            FailEachCall(row, scene, *promise, report.Calls(kind), sweep);
        } else {
            EXPECT_EQ(report.Calls(kind), 0) << "nothing is promised of kind " << k;
        }
    }
    if (!row.Is(kUnframed)) { // were these not seen, nothing above could fail
        EXPECT_GE(report.Calls(Kind::kAllocation), 1);
        EXPECT_GE(report.Calls(Kind::kLock), 1);
        EXPECT_GE(report.Calls(Kind::kProgress), 1);
    }
    const int polygons = drawn == QV8_AREA_POLYGON ? 1 : 0;
    const int ellipses = drawn == QV8_AREA_ELLIPSE ? 1 : 0;
    EXPECT_EQ(report.Calls(Kind::kPolygon), polygons);
    EXPECT_EQ(report.Calls(Kind::kEllipse), ellipses);
    EXPECT_EQ(report.Calls(Kind::kSetBits), polygons + ellipses + report.Calls(Kind::kLineTo) + (drawn == kText));
}

void SweepEverything(Sweep& sweep) {
    for (const Export& row : ExportsAndTexts()) {
        for (const Layout& layout : Layouts()) {
            for (const AreaForm form : AreaForms()) {
                if (!row.Accepts(layout) || !row.UsesForm(layout, form)) {
                    continue;
                }
                SCOPED_TRACE(row.name + std::string(" at ") + layout.name + " with " + NameOf(form));
                const Scene scene = SmallScene(layout, form, 1);
                for (sweep.draw = 0; sweep.draw != kDraws; ++sweep.draw) {
                    FailEverything(row, scene, sweep);
                    ASSERT_FALSE(testing::Test::HasFailure()) << "draw " << sweep.draw;
                }
            }
        }
    }
    EXPECT_EQ(sweep.promises.size(), std::size(kPromises)) << "something promised was never called";
}

TEST(EveryExport, LeavesNothingBehindWhateverFails) {
    Sweep sweep;
    SweepEverything(sweep);
    std::printf("sweep: %d calls (export x layout x area x parameters), %d failures tried\n", sweep.calls,
                sweep.failures);
}

// The dialog is opened with the caller's three values and closed again, in calls without an owner only; where it does
// not open, nothing else happens.
TEST(EveryExport, OpensTheDialogOfCallsWithoutAnOwner) {
    for (const Export& row : Exports()) {
        if (row.Is(kUnframed)) {
            continue;
        }
        SCOPED_TRACE(row.name);
        const Scene scene = SmallScene(LayoutNamed("24"), AreaForm::kWhole, 3);
        Call call = scene.AsCall();
        EXPECT_TRUE(WatchExport(row, call).report.dialogs.empty());

        call.progressOwner = 0;
        std::copy_n(std::begin({DWORD_PTR{11}, DWORD_PTR{22}, DWORD_PTR{33}}), 3, call.dialog);
        const Outcome shown = WatchExport(row, call);
        EXPECT_TRUE(shown.succeeded);
        ASSERT_EQ(shown.report.dialogs.size(), 1U);
        EXPECT_EQ(shown.report.dialogs[0], (std::array<DWORD_PTR, 3>{11, 22, 33}));

        const Outcome cancelled = WatchExport(row, call, {Kind::kProgress, 1});
        EXPECT_EQ(cancelled.report.failed ? QV8_STATUS_CANCELLED : kOk, cancelled.status);
        EXPECT_EQ(cancelled.report.dialogs.size(), 1U);

        const Outcome refused = WatchExport(row, call, {Kind::kDialog, 1});
        EXPECT_FALSE(refused.succeeded);
        EXPECT_EQ(refused.status, QV8_STATUS_DIALOG);
        EXPECT_EQ(refused.report.Calls(Kind::kLock), 0);
        EXPECT_EQ(refused.report.Calls(Kind::kProgress), 0);
    }
}

// The companion's own dialog: it may not open where there is no display.
TEST(EveryExport, WorksUnderTheRealDialog) {
    for (const Export& row : Exports()) {
        SCOPED_TRACE(row.name);
        const Scene scene = SmallScene(LayoutNamed("24"), AreaForm::kWhole, 4);
        Call call = scene.AsCall();
        const DWORD_PTR caption = reinterpret_cast<DWORD_PTR>(row.name);
        call.progressOwner = 0;
        call.dialog[1] = caption;
        const Outcome outcome = CallExport(row, call);
#ifdef _WIN32
        if (outcome.status == QV8_STATUS_DIALOG) {
            EXPECT_FALSE(outcome.succeeded);
            continue;
        }
#endif
        EXPECT_TRUE(outcome.succeeded);
        EXPECT_EQ(outcome.status, kOk);
    }
}

} // namespace
} // namespace test

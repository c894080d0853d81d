// For every export: whatever fails in the middle of a call, the promised status, no result, and nothing left behind.
#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "api/export_table.h"
#include "qv8com.h"

namespace test {
namespace {

using hooks::Kind;

// What a failing call of one kind leads to in an area of one type.
struct Promise {
    const char* what;
    Kind kind;
    DWORD areaType; // the area it can happen in; kAnyArea: all
    std::set<int> statuses;
};

constexpr DWORD kAnyArea = 99;
constexpr int kOk = QV8_STATUS_SUCCESS;

const Promise kPromises[] = {
    {"allocation", Kind::kAllocation, kAnyArea, {QV8_STATUS_MEMORY}},
    {"lock", Kind::kLock, QV8_AREA_WHOLE, {QV8_STATUS_MEMORY}},
    {"lock", Kind::kLock, QV8_AREA_MASK, {QV8_STATUS_MEMORY}},
    // A mask that cannot be locked while it is drawn or inverted counts as a failure to draw.
    {"lock", Kind::kLock, QV8_AREA_POLYGON, {QV8_STATUS_MEMORY, QV8_STATUS_DIALOG}},
    {"lock", Kind::kLock, QV8_AREA_ELLIPSE, {QV8_STATUS_MEMORY, QV8_STATUS_DIALOG}},
    {"progress", Kind::kProgress, kAnyArea, {QV8_STATUS_CANCELLED}},
    {"screen context", Kind::kGetContext, kAnyArea, {QV8_STATUS_DIALOG}},
    {"memory context", Kind::kCreateContext, kAnyArea, {QV8_STATUS_DIALOG}},
    {"bitmap", Kind::kCreateBitmap, kAnyArea, {QV8_STATUS_DIALOG}},
    // Selecting is not promised to be checked.
    {"selection", Kind::kSelect, kAnyArea, {kOk, QV8_STATUS_DIALOG}},
    // The ellipse goes on whether its bits were transferred or not.
    {"bits in", Kind::kSetBits, QV8_AREA_POLYGON, {QV8_STATUS_DIALOG}},
    {"bits in", Kind::kSetBits, QV8_AREA_ELLIPSE, {kOk}},
    {"bits out", Kind::kGetBits, QV8_AREA_POLYGON, {QV8_STATUS_DIALOG}},
    {"bits out", Kind::kGetBits, QV8_AREA_ELLIPSE, {kOk}},
    {"polygon", Kind::kPolygon, QV8_AREA_POLYGON, {kOk, QV8_STATUS_DIALOG}},
    {"ellipse", Kind::kEllipse, QV8_AREA_ELLIPSE, {QV8_STATUS_DIALOG}},
    // The seam of a panorama, which has no area.
    {"bits in", Kind::kSetBits, QV8_AREA_WHOLE, {QV8_STATUS_DIALOG}},
    {"bits out", Kind::kGetBits, QV8_AREA_WHOLE, {QV8_STATUS_DIALOG}},
    {"start of a line", Kind::kMoveTo, kAnyArea, {QV8_STATUS_DIALOG}},
    {"line", Kind::kLineTo, kAnyArea, {QV8_STATUS_DIALOG}},
    {"brush", Kind::kCreateBrush, kAnyArea, {QV8_STATUS_DIALOG}},
    {"filling", Kind::kFloodFill, kAnyArea, {kOk}},
    // Without an open clipboard nothing can be put there (3) or had from there (7).
    {"opening of the clipboard", Kind::kOpenClipboard, kAnyArea, {QV8_STATUS_MEMORY, QV8_STATUS_PICTURE}},
    {"emptying of the clipboard", Kind::kEmptyClipboard, kAnyArea, {kOk}},
    {"data to the clipboard", Kind::kSetClipboard, kAnyArea, {QV8_STATUS_MEMORY}},
    {"data from the clipboard", Kind::kGetClipboard, kAnyArea, {QV8_STATUS_PICTURE}},
    {"closing of the clipboard", Kind::kCloseClipboard, kAnyArea, {kOk}},
};

// Makes the first, second ... call fail until the export gets through without; returns how often it failed.
int FailEachCall(const Export& row, const Scene& scene, const Promise& promise, bool andAfter) {
    for (int n = 1;; ++n) {
        SCOPED_TRACE(std::string(promise.what) + " " + std::to_string(n) + (andAfter ? " and after" : ""));
        const Outcome outcome = WatchExport(row, scene.AsCall(), {promise.kind, n, andAfter});
        EXPECT_TRUE(scene.Untouched());
        if (!outcome.report.failed) {
            EXPECT_EQ(outcome.status, kOk);
            EXPECT_TRUE(outcome.succeeded);
            return n - 1;
        }
        const bool isLockStatus = promise.kind == Kind::kLock && outcome.status == row.LockStatus();
        EXPECT_TRUE(isLockStatus || promise.statuses.count(outcome.status) == 1) << "status " << outcome.status;
        if (testing::Test::HasFailure()) {
            return n;
        }
    }
}

void FailEverything(const Export& row, const Scene& scene) {
    for (const Promise& promise : kPromises) {
        if (promise.areaType != kAnyArea && promise.areaType != row.DrawnAs(scene.area.type)) {
            continue;
        }
        const int once = FailEachCall(row, scene, promise, false);
        FailEachCall(row, scene, promise, true);
        // Were the calls not seen, nothing above could fail.
        if (promise.kind == Kind::kAllocation || promise.kind == Kind::kLock) {
            EXPECT_GE(once, 1);
        }
        if (testing::Test::HasFailure()) {
            return;
        }
    }
}

// Every step of drawing a text: what is missing to draw on has another status than what could not be drawn.
const Promise kTextPromises[] = {
    {"allocation", Kind::kAllocation, kAnyArea, {QV8_STATUS_MEMORY}},
    {"lock", Kind::kLock, kAnyArea, {QV8_STATUS_MEMORY}},
    {"progress", Kind::kProgress, kAnyArea, {QV8_STATUS_CANCELLED}},
    {"screen context", Kind::kGetContext, kAnyArea, {QV8_STATUS_DIALOG}},
    {"memory context", Kind::kCreateContext, kAnyArea, {QV8_STATUS_DIALOG}},
    {"bitmap", Kind::kCreateBitmap, kAnyArea, {QV8_STATUS_DIALOG}},
    // The bitmap, the font, and then both back, which nothing depends on.
    {"selection", Kind::kSelect, kAnyArea, {kOk, QV8_STATUS_DIALOG, QV8_STATUS_DRAWING}},
    {"bits in", Kind::kSetBits, kAnyArea, {QV8_STATUS_DRAWING}},
    {"bits out", Kind::kGetBits, kAnyArea, {QV8_STATUS_DRAWING}},
    {"font", Kind::kCreateFont, kAnyArea, {QV8_STATUS_DRAWING}},
    {"colours", Kind::kTextColours, kAnyArea, {QV8_STATUS_DRAWING}},
    {"measuring", Kind::kMeasureText, kAnyArea, {QV8_STATUS_DRAWING}},
    {"text", Kind::kDrawText, kAnyArea, {QV8_STATUS_DRAWING}},
};

Scene SmallScene(const Layout& layout, AreaForm form, std::uint64_t seed) {
    Random random(seed);
    Scene scene = RandomScene(layout, form, 9, 5, random);
    // A shape of some size in any case.
    scene.area.points = {{1, 1}, {7, 0}, {5, 4}};
    scene.area.rect = {1, 0, 8, 4};
    return scene;
}

TEST(EveryExport, LeavesNothingBehindWhateverFails) {
    for (const Export& row : Exports()) {
        for (const Layout& layout : Layouts()) {
            if (!row.Accepts(layout) || row.Is(kUnframed)) {
                continue;
            }
            SCOPED_TRACE(std::string(row.name) + " at " + layout.name);
            FailEverything(row, SmallScene(layout, AreaForm::kWhole, 1));
            ASSERT_FALSE(HasFailure());
        }
    }
}

TEST(EveryExport, LeavesNothingBehindWhateverFailsInAnArea) {
    for (const Export& row : Exports()) {
        const Layout& layout = LayoutNamed("24");
        if (!row.Accepts(layout) || row.Is(kUnframed)) {
            continue;
        }
        for (const AreaForm form : AreaForms()) {
            if (!row.UsesForm(layout, form)) {
                continue;
            }
            SCOPED_TRACE(std::string(row.name) + " with " + NameOf(form));
            const Scene scene = SmallScene(layout, form, 2);
            FailEverything(row, scene);
            const hooks::Report report = WatchExport(row, scene.AsCall()).report;
            const DWORD drawn = row.DrawnAs(scene.area.type);
            EXPECT_EQ(report.Calls(Kind::kPolygon), drawn == QV8_AREA_POLYGON ? 1 : 0);
            EXPECT_EQ(report.Calls(Kind::kEllipse), drawn == QV8_AREA_ELLIPSE ? 1 : 0);
            EXPECT_EQ(report.Calls(Kind::kSetBits),
                      report.Calls(Kind::kPolygon) + report.Calls(Kind::kEllipse) + report.Calls(Kind::kLineTo));
            ASSERT_FALSE(HasFailure());
        }
    }
}

template <DWORD kDirection>
Result MarkWithText(const Call& call, Parameters&) {
    const HGLOBAL image =
        QV8SetSecretImage(call.target.hImage, nullptr, kDirection == 0 ? "I." : "I\n.", "", 4, 0, 0, 1, 1, kDirection,
                          0, 9, 0, 0, 8, 4, call.progressOwner, call.dialog[0], call.dialog[1], call.dialog[2]);
    return {image, nullptr, image != nullptr};
}

TEST(SetSecretImage, LeavesNothingBehindWhateverFailsInDrawingText) {
    const Export texts[] = {
        {"a line", kAccept24, AreaUse::kNone, 0, 0, MarkWithText<0>},
        {"columns", kAccept24, AreaUse::kNone, 0, 0, MarkWithText<2>},
    };
    for (const Export& row : texts) {
        SCOPED_TRACE(row.name);
        const Scene scene = SmallScene(LayoutNamed("24"), AreaForm::kWhole, 7);
        for (const Promise& promise : kTextPromises) {
            EXPECT_GE(FailEachCall(row, scene, promise, false), 1);
            FailEachCall(row, scene, promise, true);
        }
    }
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

// Every report carries the caller's owner, and together they are a course from the start to the end.
TEST(EveryExport, ReportsProgressToItsOwner) {
    for (const Export& row : Exports()) {
        for (const Layout& layout : Layouts()) {
            if (!row.Accepts(layout)) {
                continue;
            }
            SCOPED_TRACE(std::string(row.name) + " at " + layout.name);
            Call call;
            const Scene scene = SmallScene(layout, AreaForm::kWhole, 5);
            call = scene.AsCall();
            call.progressOwner = 0x8765FEDC;
            const std::vector<hooks::ProgressCall> progress = WatchExport(row, call).report.progress;
            int reached = 0;
            for (const hooks::ProgressCall& step : progress) {
                EXPECT_EQ(step.owner, 0x8765FEDCU);
                EXPECT_TRUE(0 <= step.current && step.current <= step.last);
                EXPECT_TRUE(reached <= step.fromPercent || step.current > 0) << "a slice begins before the last ended";
                EXPECT_TRUE(step.fromPercent <= step.toPercent && step.toPercent <= 100);
                const int lastStep = row.Is(kOnClipboard) ? step.last - 1 : step.last;
                reached = step.current == lastStep ? step.toPercent : reached;
            }
            EXPECT_TRUE(progress.empty() || reached == 100) << reached;
        }
    }
}

struct Cancelling {
    int callsLeft;
};

int QV8API CountDown(int percent, void* context) {
    EXPECT_TRUE(0 <= percent && percent <= 100);
    return --static_cast<Cancelling*>(context)->callsLeft > 0 ? 1 : 0;
}

// The same cancelling as above all the way through the companion.
TEST(EveryExport, IsCancelledByItsProgressOwner) {
    for (const Export& row : Exports()) {
        SCOPED_TRACE(row.name);
        const Scene scene = SmallScene(LayoutNamed("24"), AreaForm::kWhole, 6);
        Call call = scene.AsCall();
        const int reports = WatchExport(row, call).report.Calls(Kind::kProgress);
        for (int n = 1; n <= reports + 1; ++n) {
            Cancelling cancelling = {n};
            call.progressOwner = AddProgressOwner(CountDown, &cancelling);
            const Outcome outcome = WatchExport(row, call);
            RemoveProgressOwner(call.progressOwner);
            EXPECT_EQ(outcome.status, n <= reports ? QV8_STATUS_CANCELLED : kOk) << "at report " << n;
            EXPECT_TRUE(scene.Untouched());
        }
    }
}

} // namespace
} // namespace test

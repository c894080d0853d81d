// Exports share nothing: threads may work on the same pictures at once, and a callback may call back.
#include <atomic>
#include <chrono>
#include <cstdio>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "api/export_table.h"
#include "qv8com.h"
#include "support/clipboard.h"

namespace test {
namespace {

// All that a caller sees of a call.
struct Observed {
    Bytes image;
    Bytes mask;
    bool succeeded = false;
    int status = kUntouched;

    bool operator==(const Observed&) const = default;
};

Observed Observe(const Export& row, const Call& call) {
    const Outcome outcome = CallExport(row, call);
    const auto read = [](const Block& block) { return block != nullptr ? ReadBlock(block.get()) : Bytes(); };
    return {read(outcome.image), read(outcome.mask), outcome.succeeded, outcome.status};
}

struct Case {
    std::string name;
    Export row;
    std::shared_ptr<const Scene> scene;
    Observed expected; // with nobody else at work
};

std::vector<Case> CasesOf(const Layout& layout, AreaForm form, int width, int height) {
    Random random(40);
    const auto scene = std::make_shared<const Scene>(RandomScene(layout, form, width, height, random));
    std::vector<Case> cases;
    for (const Export& row : ExportsAndTexts()) {
        if (row.Accepts(layout) && row.UsesForm(layout, form)) {
            cases.push_back({row.name + std::string(" at ") + layout.name + " with " + NameOf(form), row, scene,
                             Observe(row, scene->AsCall())});
            EXPECT_TRUE(cases.back().expected.succeeded);
        }
    }
    return cases;
}

struct Workload {
    std::vector<Case> cases;
    std::set<Bytes> pictures; // that may be met on the clipboard
    std::set<std::string> exports;
};

Workload SharedWorkload() {
    Workload work;
    for (const char* const layout : {"1", "8", "16-565", "24", "32"}) {
        for (const AreaForm form : AreaForms()) {
            for (Case& c : CasesOf(LayoutNamed(layout), form, 61, 47)) {
                work.pictures.insert(c.scene->picture.Content().bytes);
                work.exports.insert(c.row.name);
                work.cases.push_back(std::move(c));
            }
        }
    }
    return work;
}

// The clipboard is one for all: while another thread has it a call is refused, and what lies there may be any picture
// that a thread put there, but a whole one.
bool IsRight(const Workload& work, const Case& c, const Observed& seen) {
    if (!c.row.Is(kOnClipboard)) {
        return seen == c.expected;
    }
    if (c.row.Is(kUnframed)) {
        return seen.status == QV8_STATUS_SUCCESS;
    }
    if (!seen.succeeded) {
        return seen.image.empty() && seen.status == (c.row.TakesPicture() ? QV8_STATUS_MEMORY : QV8_STATUS_PICTURE);
    }
    return seen.status == QV8_STATUS_SUCCESS &&
           (c.row.TakesPicture() ? seen.image.empty() : work.pictures.count(seen.image) == 1);
}

// One of two threads, what it did and what it saw.
struct Worker {
    static constexpr int kMeetings = 4; // in a call

    const Workload& work;
    std::mutex& clipboardTurn;
    std::size_t stride; // makes an order of its own
    const Worker* other = nullptr;
    std::atomic<int> meetings = 0;
    int meetingsLeft = 0; // in this call
    int calls = 0;
    int fromClipboard = 0;
    std::set<std::string> wrong = {};

    // Waits until the other thread has come as far; only in time, for nothing is to be put in an order by it.
    void Meet() {
        const int meeting = meetings.fetch_add(1, std::memory_order_relaxed) + 1;
        while (other->meetings.load(std::memory_order_relaxed) < meeting) {
            std::this_thread::yield();
        }
    }
    static int QV8API MeetAtFirstReports(int, void* context) {
        auto* const self = static_cast<Worker*>(context);
        if (self->meetingsLeft > 0) {
            --self->meetingsLeft;
            self->Meet();
        }
        return 1;
    }

    void Try(const Case& c, DWORD progressOwner) {
        std::unique_lock turn(clipboardTurn, std::defer_lock);
        if (kThreadsAreOneUser && c.row.Is(kOnClipboard)) {
            turn.lock();
        }
        Call call = c.scene->AsCall();
        call.progressOwner = progressOwner;
        const Observed seen = Observe(c.row, call);
        if (!IsRight(work, c, seen)) {
            wrong.insert(c.name);
        }
        calls += 1;
        fromClipboard += c.row.Is(kOnClipboard) && !seen.image.empty() ? 1 : 0;
    }

    // Every call at the same moment as the other thread, which it meets in the middle of it, too. Memory is handed out
    // under a lock; without the meetings that would put what two calls do in an order, and hide what they share.
    void KeepStep() {
        const DWORD owner = AddProgressOwner(MeetAtFirstReports, this);
        for (const Case& c : work.cases) {
            Meet();
            meetingsLeft = c.row.Is(kOnClipboard) ? 0 : kMeetings;
            Try(c, owner);
            meetings.fetch_add(meetingsLeft, std::memory_order_relaxed); // of a call with fewer reports
        }
        RemoveProgressOwner(owner);
    }

    void Run() {
        KeepStep();
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(1);
        do {
            for (std::size_t i = 0; i != work.cases.size(); ++i) {
                Try(work.cases[i * stride % work.cases.size()], 1);
            }
        } while (std::chrono::steady_clock::now() < end);
    }
};

TEST(EveryExport, RunsOnTwoThreadsAtOnce) {
    const Workload work = SharedWorkload();
    EXPECT_EQ(work.exports.size(), Exports().size());
    std::mutex clipboardTurn;
    Worker forwards = {work, clipboardTurn, 1};
    Worker backwards = {work, clipboardTurn, work.cases.size() - 1};
    forwards.other = &backwards;
    backwards.other = &forwards;
    std::thread thread([&] { backwards.Run(); });
    forwards.Run();
    thread.join();
    for (const Worker* const worker : {&forwards, &backwards}) {
        EXPECT_EQ(worker->wrong, std::set<std::string>());
        EXPECT_GT(worker->fromClipboard, 0);
    }
    for (const Case& c : work.cases) {
        EXPECT_TRUE(c.scene->Untouched());
    }
    std::printf("threads: %zu exports, %zu calls (export x layout x area), made %d + %d times\n", work.exports.size(),
                work.cases.size(), forwards.calls, backwards.calls);
}

// Calls one export after another from within another's call, three at each report.
struct Callback {
    const std::vector<Case>& cases;
    std::size_t next;
    int wrong = 0;

    static int QV8API Run(int, void* context) {
        auto* const self = static_cast<Callback*>(context);
        for (int i = 0; i != 3; ++i) {
            const Case& c = self->cases[self->next++ % self->cases.size()];
            self->wrong += Observe(c.row, c.scene->AsCall()) == c.expected ? 0 : 1;
        }
        return 1;
    }
};

TEST(EveryExport, MayBeCalledFromAProgressCallback) {
    std::vector<Case> cases = CasesOf(LayoutNamed("24"), AreaForm::kWhole, 12, 6);
    const std::vector<Case> withArea = CasesOf(LayoutNamed("24"), AreaForm::kPolygonOutside, 12, 6);
    cases.insert(cases.end(), withArea.begin(), withArea.end());
    std::size_t inner = 0;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Callback callback = {cases, inner};
        Call call = c.scene->AsCall();
        call.progressOwner = AddProgressOwner(Callback::Run, &callback);
        EXPECT_EQ(Observe(c.row, call), c.expected);
        RemoveProgressOwner(call.progressOwner);
        EXPECT_EQ(callback.wrong, 0);
        EXPECT_TRUE(callback.next > inner || c.row.Is(kUnframed)) << "not called back";
        inner = callback.next;
    }
    EXPECT_GE(inner, 3 * cases.size());
}

} // namespace
} // namespace test

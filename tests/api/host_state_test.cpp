// The floating-point state of the host: no bytes depend on it, nothing traps, and the host's code runs in it, which is
// what hears of progress and what goes on after the call.
#if defined(__i386__) || defined(__x86_64__)

#include <cstdint>
#include <cstdio>
#include <iterator>
#include <set>
#include <string>

#include "api/export_table.h"
#include "qv8com.h"
#include "support/clipboard.h"

namespace test {
namespace {

struct State {
    std::uint32_t sse;
    std::uint16_t x87;
    std::uint16_t x87Flags = 0;

    bool operator==(const State& other) const = default;
};

struct Environment {
    const char* name;
    State state;
};

constexpr Environment kEnvironments[] = {
    {"rounding down", {0x3F80, 0x077F}},
    {"rounding up", {0x5F80, 0x0B7F}},
    {"rounding to zero", {0x7F80, 0x0F7F}},
    {"flushing to zero", {0x9FC0, 0x037F}},
    {"single precision", {0x1F80, 0x007F}},
    {"double precision", {0x1F80, 0x027F}},
    {"exceptions of SSE", {0x0000, 0x037F}},
    {"exceptions of x87", {0x1F80, 0x0340}},
    {"all of it, with exceptions that have happened", {0xC07F, 0x0840}},
};

State Current() {
    State state = {};
    asm volatile("stmxcsr %0\n\tfnstcw %1\n\tfnstsw %2"
                 : "=m"(state.sse), "=m"(state.x87), "=m"(state.x87Flags)::"memory");
    state.x87Flags &= 0xFF;
    return state;
}

void Set(const State& state) {
    asm volatile("fnclex\n\tldmxcsr %0\n\tfldcw %1" ::"m"(state.sse), "m"(state.x87) : "memory");
}

struct Listener {
    State expected;
    const State* leaves = nullptr; // what it changes the state to for good
    int reports = 0;
    int strange = 0;
};

int QV8API Listen(int /*percent*/, void* context) {
    auto* const listener = static_cast<Listener*>(context);
    ++listener->reports;
    listener->strange += Current() == listener->expected ? 0 : 1;
    if (listener->leaves != nullptr) {
        listener->expected = *listener->leaves;
        Set(listener->expected);
    }
    return 1;
}

struct Made {
    int status;
    Bytes image;
    Bytes mask;

    bool operator==(const Made& other) const = default;
};

// Nothing but the call itself happens in the state.
Made CallIn(const State& state, const Export& row, const Call& call, Arguments& arguments, State& after) {
    if (row.Is(kFromClipboard)) {
        PutOnClipboard(ReadBlock(call.target.hImage));
    }
    const State ours = Current();
    Set(state);
    const Result result = row.call(arguments);
    after = Current();
    Set(ours);
    const Block image(result.image);
    const Block mask(result.mask);
    return {GetErrorStatus(), image ? ReadBlock(image.get()) : Bytes(), mask ? ReadBlock(mask.get()) : Bytes()};
}

class HostState : public testing::Test {
protected:
    void TryAll(const Export& row, const Scene& scene, Random& random) {
        Call call = scene.AsCall();
        call.progressOwner = owner_;
        Arguments arguments;
        DrawArguments(row, call, Parameters(random), arguments);
        State after = {};
        listener_ = {Current()};
        const Made expected = CallIn(Current(), row, call, arguments, after);
        ++calls_;
        exports_.insert(row.name);
        for (std::size_t i = 0; i != std::size(kEnvironments); ++i) {
            const Environment& environment = kEnvironments[i];
            SCOPED_TRACE(std::string(row.name) + ", " + environment.name);
            listener_ = {environment.state};
            const bool same = CallIn(environment.state, row, call, arguments, after) == expected;
            EXPECT_TRUE(same);
            EXPECT_EQ(after, environment.state);
            EXPECT_EQ(listener_.strange, 0);
            differing_[i] += same ? 0 : 1;
            reports_ += listener_.reports;
        }
        SCOPED_TRACE(std::string(row.name) + ", a callback that changes it");
        const State& changed = std::rbegin(kEnvironments)->state;
        listener_ = {Current(), &changed};
        EXPECT_EQ(CallIn(Current(), row, call, arguments, after), expected);
        EXPECT_TRUE(after == changed || listener_.reports == 0);
        EXPECT_LE(listener_.strange, 1); // modes like ours are left alone, and flags with them, until the first report
    }

    Listener listener_ = {};
    DWORD owner_ = AddProgressOwner(Listen, &listener_);
    std::set<std::string> exports_;
    int calls_ = 0; // in each environment
    int differing_[std::size(kEnvironments)] = {};
    int reports_ = 0;
};

TEST_F(HostState, ReachesNoResultAndComesBack) {
    Random random(15);
    for (const Export& row : Exports()) {
        for (const Layout& layout : Layouts()) {
            for (const AreaForm form : {AreaForm::kWhole, AreaForm::kPolygonInside}) {
                if (row.Accepts(layout) && row.UsesForm(layout, form) && !row.Is(kUnframed)) {
                    TryAll(row, RandomScene(layout, form, 37, 9, random), random);
                }
            }
        }
    }
    RemoveProgressOwner(owner_);
    for (std::size_t i = 0; i != std::size(kEnvironments); ++i) {
        std::printf("%-46s %zu exports, %d calls, %d differ\n", kEnvironments[i].name, exports_.size(), calls_,
                    differing_[i]);
    }
    EXPECT_GT(reports_, calls_);
}

} // namespace
} // namespace test

#endif

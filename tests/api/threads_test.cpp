// Exports share nothing: threads may work on the same pictures at once, and a callback may call back.
#include <algorithm>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "api/export_table.h"
#include "qv8com.h"

namespace test {
namespace {

Bytes ResultOf(const Export& row, const Call& call) {
    const Outcome outcome = CallExport(row, call);
    return outcome.image != nullptr ? ReadBlock(outcome.image.get()) : Bytes();
}

TEST(EveryExport, RunsOnSeveralThreadsAtOnce) {
    Random random(40);
    const Scene scene = RandomScene(LayoutNamed("24"), AreaForm::kEllipseInside, 61, 47, random);
    std::vector<Bytes> expected;
    std::vector<Export> rows;
    std::copy_if(Exports().begin(), Exports().end(), std::back_inserter(rows),
                 [](const Export& row) { return !row.Is(kOnClipboard); });
    for (const Export& row : rows) {
        expected.push_back(ResultOf(row, scene.AsCall()));
    }
    std::vector<std::string> wrong(4);
    std::vector<std::thread> threads;
    for (std::string& mistakes : wrong) {
        threads.emplace_back([&] {
            for (int i = 0; i != 20; ++i) {
                for (std::size_t row = 0; row != rows.size(); ++row) {
                    if (ResultOf(rows[row], scene.AsCall()) != expected[row]) {
                        mistakes = rows[row].name;
                    }
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, std::vector<std::string>(4));
    EXPECT_TRUE(scene.Untouched());
}

struct Inner {
    const Export* row;
    const Call* call;
    const Bytes* expected;
};

int QV8API CallBack(int, void* context) {
    const auto* const inner = static_cast<const Inner*>(context);
    EXPECT_EQ(ResultOf(*inner->row, *inner->call), *inner->expected);
    return 1;
}

TEST(EveryExport, MayBeCalledFromAProgressCallback) {
    Random random(41);
    const Scene scene = RandomScene(LayoutNamed("24"), AreaForm::kPolygonOutside, 12, 6, random);
    for (const Export& row : Exports()) {
        SCOPED_TRACE(row.name);
        const Call inside = scene.AsCall();
        const Bytes expected = ResultOf(row, inside);
        Inner inner = {&row, &inside, &expected};
        Call outside = inside;
        outside.progressOwner = AddProgressOwner(CallBack, &inner);
        const Outcome outcome = CallExport(row, outside);
        RemoveProgressOwner(outside.progressOwner);
        EXPECT_EQ(outcome.status, QV8_STATUS_SUCCESS);
        EXPECT_EQ(ReadBlock(outcome.image.get()), expected);
    }
}

} // namespace
} // namespace test

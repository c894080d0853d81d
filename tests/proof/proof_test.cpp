// Every case of the table of checksums, made once more and compared with what the slow version makes of it.
#include "proof/proof.h"

#include <cstdio>
#include <map>
#include <sstream>

namespace test {
namespace {

TEST(Proof, TheSlowVersionsGiveTheSame) {
    std::map<std::string, std::pair<int, int>> counts;
    ForEachCase([&](const Case& each) {
        if (testing::Test::HasFailure()) {
            return;
        }
        std::istringstream words(each.key);
        std::string name, layout;
        words >> name >> layout;
        const Outcome outcome = WatchExport(each.row, each.call, {}, each.arguments);
        const Proved proved = {each, LayoutNamed(layout), outcome.status, outcome.image.get(), outcome.mask.get()};
        bool isProved = false;
        SCOPED_TRACE(each.key);
        for (const auto prove : {ProveRgb, ProveYcc, ProveConversion, ProveReduction, ProveFilter, ProveSpecialFilter,
                                 ProveSelect, ProveResize, ProveRotation, ProveAffine, ProvePanorama, ProvePaste,
                                 ProveLayer, ProveSecret, ProveImage}) {
            isProved = isProved || prove(proved);
        }
        (isProved ? counts[each.key].first : counts[each.key].second) += 1;
    });
    int cases = 0, others = 0;
    for (const auto& [key, count] : counts) {
        cases += count.first;
        others += count.second;
        if (count.second != 0) {
            std::printf("%s: %d cases have no slow version\n", key.c_str(), count.second);
        }
    }
    std::printf("proof: %zu entries, %d cases equal to the slow versions, %d without one\n", counts.size(), cases,
                others);
}

} // namespace
} // namespace test

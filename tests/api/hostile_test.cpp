// Every export stands whatever it is called with.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "api/export_table.h"
#include "api/hostile_call.h"

namespace test {
namespace {

TEST(EveryExport, StandsHostileCalls) {
    for (std::uint64_t seed = 1; seed <= 20000 && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        Random random(seed);
        MakeHostileCall(random);
    }
}

} // namespace
} // namespace test

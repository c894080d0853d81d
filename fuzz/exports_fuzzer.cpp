// The input is a script of numbers for one call of any export.
#include <cstddef>
#include <span>

#include "api/hostile_call.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size) {
    test::Random random(std::span(bytes, size));
    test::MakeHostileCall(random);
    return 0;
}

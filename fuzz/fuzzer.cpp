// What all fuzzers have in common: a check that fails ends the program, so that the input is kept.
#include <gtest/gtest.h>

extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** /*words*/) {
    GTEST_FLAG_SET(throw_on_failure, true); // nobody catches it
    return 0;
}

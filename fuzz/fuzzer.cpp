// What all fuzzers have in common: a check that fails ends the program, so that the input is kept.
#include <gtest/gtest.h>

// Where blocks come from is told by how the input is run again; to note it every time would take half of the time.
extern "C" const char* __asan_default_options();
const char* __asan_default_options() {
    return "malloc_context_size=1:quarantine_size_mb=16";
}

extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** /*words*/) {
    GTEST_FLAG_SET(throw_on_failure, true); // nobody catches it
    return 0;
}

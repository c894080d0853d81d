// Found by LeakSanitizer in the program under test: fontconfig keeps a little of its first search for ever.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();

const char* __lsan_default_suppressions() {
    return "leak:libfontconfig\n";
}

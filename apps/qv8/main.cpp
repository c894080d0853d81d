// Entry of the program: brings the command line into the same form on all systems.
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include "command_line.h"
#include "pictures/failure.h"
#include "pictures/interrupt.h"

#ifdef _WIN32
#include <qv8platform.h>
#include <shellapi.h>

namespace {

std::string Utf8(const wchar_t* text) {
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string converted(static_cast<std::size_t>(size > 0 ? size : 1), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, converted.data(), size, nullptr, nullptr);
    converted.pop_back(); // the ending zero
    return converted;
}

// Names may hold characters that the system's 8-bit code page lacks.
std::vector<std::string> Words(int, char**) {
    int count = 0;
    wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> words;
    for (int i = 1; wide != nullptr && i < count; ++i) {
        words.push_back(Utf8(wide[i]));
    }
    LocalFree(wide);
    return words;
}

// Shows messages as UTF-8 while it lives.
class StandardStreams {
public:
    StandardStreams() {
        SetConsoleOutputCP(CP_UTF8);
    }
    ~StandardStreams() {
        SetConsoleOutputCP(before_);
    }

private:
    UINT before_ = GetConsoleOutputCP();
};

} // namespace
#else
#include <fcntl.h>
#include <unistd.h>

namespace {

std::vector<std::string> Words(int count, char** words) {
    return count > 1 ? std::vector<std::string>(words + 1, words + count) : std::vector<std::string>();
}

// Makes what reads or writes a closed standard stream fail. Otherwise the next file that is opened would take its
// number, and a message could end up in a picture.
struct StandardStreams {
    StandardStreams() {
        for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
            if (fcntl(stream, F_GETFD) == -1) {
                open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY); // takes the lowest free number
            }
        }
    }
};

} // namespace
#endif

int main(int argc, char** argv) {
    [[maybe_unused]] const StandardStreams streams;
    WatchForInterrupt();
    try {
        return RunCommandLine(Words(argc, argv), std::cout, std::cerr);
    } catch (...) { // there is not even memory for a message
        std::fputs("qv8: out of memory\n", stderr);
        return kExitEffectFailed;
    }
}

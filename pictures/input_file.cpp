#include "pictures/input_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

#include "pictures/output_file.h"

namespace {

constexpr std::size_t kChunk = std::size_t{1} << 20;

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

// Standard input is not closed.
File OpenForReading(const std::string& name) {
    if (name == kStandardStream) {
#ifdef _WIN32
        _setmode(_fileno(stdin), _O_BINARY);
#endif
        return File(stdin, [](std::FILE*) { return 0; });
    }
#ifdef _WIN32
    File file(_wfopen(PathOf(name).c_str(), L"rb"), std::fclose);
#else
    File file(std::fopen(name.c_str(), "rb"), std::fclose);
#endif
    if (!file) {
        throw ReadFailure(name, std::strerror(errno));
    }
    return file;
}

} // namespace

Failure ReadFailure(const std::string& name, const std::string& reason) {
    return Failure(kExitInput, name + ": cannot be read: " + reason);
}

// Piece by piece, so that what has no known size can be read as well.
std::vector<BYTE> ReadWholeFile(const std::string& name, std::size_t mostBytes,
                                const std::function<void(const std::vector<BYTE>&)>& checkStart) {
    const File file = OpenForReading(name);
    std::error_code unknown;
    const std::uintmax_t expected = std::filesystem::file_size(PathOf(name), unknown);
    std::vector<BYTE> bytes;
    if (!unknown && expected <= mostBytes) {
        bytes.reserve(static_cast<std::size_t>(expected) + std::min(mostBytes, kChunk));
    }
    bool atEnd = false;
    while (!atEnd) {
        const std::size_t before = bytes.size();
        const std::size_t wanted = std::min(kChunk, mostBytes - before + 1);
        bytes.resize(before + wanted);
        const std::size_t got = std::fread(bytes.data() + before, 1, wanted, file.get());
        bytes.resize(before + got);
        atEnd = got < wanted;
        if (std::ferror(file.get()) != 0) {
            throw ReadFailure(name, std::strerror(errno));
        }
        if (before == 0) {
            checkStart(bytes);
        }
        if (bytes.size() > mostBytes || (!unknown && expected > mostBytes)) {
            throw ReadFailure(name, "it is too large");
        }
    }
    return bytes;
}

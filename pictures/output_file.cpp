#include "pictures/output_file.h"

#include <cerrno>
#include <fcntl.h>
#include <system_error>

#ifdef _WIN32
#include <io.h>
#include <process.h>
#include <sys/stat.h>
#else
#include <unistd.h>
#endif

#include "pictures/failure.h"

namespace fs = std::filesystem;

namespace {

constexpr int kNameTries = 100;

// The file that is really meant: a link is followed, so that it stays a link.
fs::path Target(const fs::path& path) {
    std::error_code ignored;
    if (!fs::is_symlink(path, ignored)) {
        return path;
    }
    std::error_code failed;
    fs::path resolved = fs::weakly_canonical(path, failed);
    return failed ? path : resolved;
}

// Makes a file that was not there. Returns null and leaves errno when that fails.
std::FILE* CreateNew(const fs::path& path) {
#ifdef _WIN32
    const int descriptor = _wopen(path.c_str(), _O_CREAT | _O_EXCL | _O_WRONLY | _O_BINARY, _S_IREAD | _S_IWRITE);
    return descriptor < 0 ? nullptr : _fdopen(descriptor, "wb");
#else
    const int descriptor = open(path.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0666);
    return descriptor < 0 ? nullptr : fdopen(descriptor, "wb");
#endif
}

int ProcessNumber() {
#ifdef _WIN32
    return _getpid();
#else
    return getpid();
#endif
}

// A file that replaces another keeps the other's permissions.
void TakePermissions([[maybe_unused]] const fs::path& from, [[maybe_unused]] const fs::path& to) {
#ifndef _WIN32
    std::error_code ignored;
    const fs::file_status status = fs::status(from, ignored);
    if (fs::is_regular_file(status)) {
        fs::permissions(to, status.permissions(), ignored);
    }
#endif
}

} // namespace

fs::path PathOf(const std::string& name) {
    return fs::path(std::u8string(name.begin(), name.end()));
}

OutputFile::OutputFile(const std::string& name) : name_(name), target_(Target(PathOf(name))) {
    std::error_code failed;
    const fs::file_status status = fs::status(target_, failed);
    if (!fs::status_known(status)) { // such as a link to itself, or a name that is too long
        Fail(failed.message());
    }
    if (fs::is_directory(status)) {
        Fail("it is a folder");
    }
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        Fail("it is not an ordinary file");
    }
    constexpr auto kAnyWrite = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    if (fs::exists(status) && (status.permissions() & kAnyWrite) == fs::perms::none) {
        Fail("it is write-protected");
    }
    OpenTemporary();
}

OutputFile::~OutputFile() {
    if (file_ != nullptr) {
        std::fclose(file_);
    }
    if (!temporary_.empty()) {
        std::error_code ignored;
        fs::remove(temporary_, ignored);
    }
}

void OutputFile::OpenTemporary() {
    for (int attempt = 0; file_ == nullptr && attempt < kNameTries; ++attempt) {
        const std::string suffix = "." + std::to_string(ProcessNumber()) + "-" + std::to_string(attempt) + ".tmp";
        const fs::path path = target_.parent_path() / ("qv8" + suffix);
        file_ = CreateNew(path);
        if (file_ != nullptr) {
            temporary_ = path;
        } else if (errno != EEXIST) {
            break;
        }
    }
    if (file_ == nullptr) {
        Fail(std::generic_category().message(errno));
    }
}

void OutputFile::Write(const void* bytes, std::size_t size) {
    if (std::fwrite(bytes, 1, size, file_) != size) {
        Fail(std::generic_category().message(errno));
    }
}

void OutputFile::Complete() {
    std::FILE* const file = file_;
    file_ = nullptr;
    if (std::fclose(file) != 0) {
        Fail(std::generic_category().message(errno));
    }
    TakePermissions(target_, temporary_);
}

void OutputFile::Commit() {
    std::error_code failed;
    fs::rename(temporary_, target_, failed);
    if (failed) {
        Fail(failed.message());
    }
    temporary_.clear();
}

void OutputFile::Fail(const std::string& reason) const {
    throw Failure(kExitOutput, name_ + ": cannot be written: " + reason);
}

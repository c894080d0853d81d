#include "pictures/output_file.h"

#include <cerrno>
#include <system_error>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

#include "pictures/failure.h"
#include "qv8platform.h"

namespace fs = std::filesystem;

namespace {

std::string Words(int error) {
    return std::generic_category().message(error);
}

// The file that is really meant: links are followed, so that they stay links. A chain of links that is too long, or has
// no end, is left to whoever opens it.
fs::path Target(fs::path path) {
    constexpr int kLongestChain = 40;
    for (int i = 0; i < kLongestChain; ++i) {
        std::error_code failed;
        if (!fs::is_symlink(fs::symlink_status(path, failed))) {
            break;
        }
        const fs::path next = fs::read_symlink(path, failed);
        if (failed) {
            break;
        }
        path = next.is_absolute() ? next : path.parent_path() / next;
    }
    return path;
}

#ifndef _WIN32
// What the process takes away from the permissions of new files. Asking for it sets it for a moment: to less, not more.
mode_t ProcessMask() {
    static const mode_t mask = [] {
        const mode_t current = umask(077);
        umask(current);
        return current;
    }();
    return mask;
}

// Gives a file, as far as the system lets it, what the file that it replaces has. Rights of a group or an owner that
// cannot be kept do not go to another one.
void TakeOwnerAndPermissions(int descriptor, const fs::path& replaced) {
    struct stat status {};
    if (stat(replaced.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
        fchmod(descriptor, 0666 & ~ProcessMask());
        return;
    }
    mode_t mode = status.st_mode & 07777;
    if (fchown(descriptor, status.st_uid, status.st_gid) != 0) {
        mode &= ~static_cast<mode_t>(S_ISUID);
        if (fchown(descriptor, static_cast<uid_t>(-1), status.st_gid) != 0) {
            mode = (mode & ~static_cast<mode_t>(S_ISGID | S_IRWXG)) | (mode & S_IRWXO) << 3;
        }
    }
    fchmod(descriptor, mode);
}

// Whether the permissions let this process write the file.
bool MayWrite(const fs::path& path) {
    return faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
}
#else
bool MayWrite(const fs::path&) {
    return true; // nothing but the attribute that is looked at anyway
}
#endif

} // namespace

fs::path PathOf(const std::string& name) {
#ifdef _WIN32
    // What is no UTF-8 becomes a sign for it. No file is called so, and that is what the user is told.
    const int bytes = static_cast<int>(name.size());
    std::wstring wide(name.size(), L'\0');
    wide.resize(static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, name.data(), bytes, wide.data(), bytes)));
    return wide;
#else
    return name;
#endif
}

OutputFile::OutputFile(const std::string& name, Sync sync) : name_(name), sync_(sync == Sync::kYes) {
    if (name_ == kStandardStream) {
        return;
    }
    target_ = Target(PathOf(name));
    CheckTarget();
    if (const std::string error = file_.Create(target_.parent_path()); !error.empty()) {
        Fail(error);
    }
}

void OutputFile::CheckTarget() const {
    std::error_code failed;
    const fs::file_status status = fs::status(target_, failed);
    if (!fs::status_known(status)) { // such as a link to itself, or a name that is too long
        Fail(failed.message());
    }
    if (fs::is_directory(status)) {
        Fail("it is a folder");
    }
    if (!fs::exists(status)) {
        return;
    }
    if (!fs::is_regular_file(status)) {
        Fail("it is not an ordinary file");
    }
    constexpr auto kAnyWrite = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    if ((status.permissions() & kAnyWrite) == fs::perms::none || !MayWrite(target_)) {
        Fail("it is write-protected");
    }
}

void OutputFile::Write(const void* bytes, std::size_t size) {
    if (file_.File() == nullptr) {
        const char* const from = static_cast<const char*>(bytes);
        forStandardOutput_.insert(forStandardOutput_.end(), from, from + size);
    } else if (std::fwrite(bytes, 1, size, file_.File()) != size) {
        Fail(Words(errno));
    }
}

void OutputFile::Complete() {
    if (file_.File() == nullptr) {
        return;
    }
#ifndef _WIN32
    TakeOwnerAndPermissions(fileno(file_.File()), target_);
#endif
    if (const int error = file_.Close(sync_); error != 0) {
        Fail(Words(error));
    }
}

void OutputFile::Commit() {
    if (name_ == kStandardStream) {
        WriteStandardOutput();
    } else if (const std::string error = file_.Rename(target_, sync_); !error.empty()) {
        Fail(error);
    }
}

void OutputFile::WriteStandardOutput() {
#ifdef _WIN32
    _setmode(_fileno(stdout), _O_BINARY);
#endif
    const std::size_t size = forStandardOutput_.size();
    if (std::fwrite(forStandardOutput_.data(), 1, size, stdout) != size || std::fflush(stdout) != 0) {
        Fail(Words(errno));
    }
}

void OutputFile::Fail(const std::string& reason) const {
    throw Failure(kExitOutput, name_ + ": cannot be written: " + reason);
}

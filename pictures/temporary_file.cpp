#include "pictures/temporary_file.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <random>
#include <system_error>

#ifdef _WIN32
#include <io.h>

#include <qv8platform.h>
#else
#include <unistd.h>
#endif

namespace fs = std::filesystem;

namespace {

using Name = const fs::path::value_type*;

// What RemoveTemporaryFiles finds: whoever takes a name out of the list is its owner. A name that finds no room here is
// removed in the ordinary way only.
constinit std::array<std::atomic<Name>, 256> names{};
// Those that RemoveTemporaryFiles took. It may run in the middle of anything, so they are never freed.
constinit std::array<std::atomic<Name>, names.size()> removed{};
static_assert(std::atomic<Name>::is_always_lock_free);

void Enter(Name name) {
    for (std::atomic<Name>& place : names) {
        Name empty = nullptr;
        if (place.compare_exchange_strong(empty, name)) {
            return;
        }
    }
}

// False when somebody else has taken the name and removes the file.
bool TakeOut(Name name) {
    const auto took = [name](std::atomic<Name>& place) {
        Name expected = name;
        return place.compare_exchange_strong(expected, nullptr);
    };
    return std::any_of(names.begin(), names.end(), took);
}

Name Copied(const fs::path& path) {
    const std::size_t size = path.native().size() + 1;
    auto* const copy = new fs::path::value_type[size];
    std::copy_n(path.c_str(), size, copy);
    return copy;
}

fs::path RandomName() {
    constexpr char kDigits[] = "0123456789abcdef";
    std::random_device random;
    std::string name = "qv8.";
    for (int i = 0; i < 16; ++i) {
        name += kDigits[random() % 16];
    }
    return name + ".tmp";
}

#ifdef _WIN32
// Open for others to delete, so that a second interrupt can.
std::FILE* CreateNew(Name path) {
    const HANDLE handle = CreateFileW(path, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, CREATE_NEW,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        const DWORD error = GetLastError();
        errno = error == ERROR_FILE_EXISTS      ? EEXIST
                : error == ERROR_PATH_NOT_FOUND ? ENOENT
                : error == ERROR_DISK_FULL      ? ENOSPC
                                                : EACCES;
        return nullptr;
    }
    return _fdopen(_open_osfhandle(reinterpret_cast<intptr_t>(handle), _O_WRONLY | _O_BINARY), "wb");
}

void Remove(Name path) {
    DeleteFileW(path);
}

int SyncFile(std::FILE* file) {
    return _commit(_fileno(file));
}

void SyncFolder(const fs::path&) {}
#else
std::FILE* CreateNew(Name path) {
    const int descriptor = open(path, O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600);
    return descriptor < 0 ? nullptr : fdopen(descriptor, "wb");
}

void Remove(Name path) {
    unlink(path);
}

int SyncFile(std::FILE* file) {
    const bool unknown = fsync(fileno(file)) != 0 && (errno == EINVAL || errno == ENOSYS); // not on every file system
    return unknown || errno == 0 ? 0 : -1;
}

void SyncFolder(const fs::path& folder) {
    const int descriptor = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        fsync(descriptor);
        close(descriptor);
    }
}
#endif

} // namespace

TemporaryFile::~TemporaryFile() {
    if (file_ != nullptr) {
        std::fclose(file_);
    }
    if (path_ != nullptr) {
        Remove(path_);
        Forget();
    }
}

std::string TemporaryFile::Create(const fs::path& folder) {
    constexpr int kTries = 100;
    for (int attempt = 0; file_ == nullptr && attempt < kTries; ++attempt) {
        path_ = Copied(folder / RandomName());
        Enter(path_); // before there is a file, so that none is ever left
        file_ = CreateNew(path_);
        if (file_ == nullptr) {
            const int error = errno;
            Forget();
            if (error != EEXIST) {
                return std::generic_category().message(error);
            }
        }
    }
    return file_ != nullptr ? std::string() : "no temporary file can be made";
}

int TemporaryFile::Close(bool sync) {
    errno = 0;
    int error = std::fflush(file_) != 0 || (sync && SyncFile(file_) != 0) ? errno : 0;
    if (std::fclose(file_) != 0 && error == 0) {
        error = errno;
    }
    file_ = nullptr;
    return error;
}

std::string TemporaryFile::Rename(const fs::path& target, bool sync) {
    std::error_code failed;
    fs::rename(path_, target, failed);
    if (failed) {
        return failed.message();
    }
    Forget();
    if (sync) {
        SyncFolder(target.parent_path());
    }
    return {};
}

void TemporaryFile::Forget() {
    if (TakeOut(path_)) {
        delete[] path_;
    }
    path_ = nullptr;
}

void RemoveTemporaryFiles() {
    for (std::size_t i = 0; i != names.size(); ++i) {
        if (const Name name = names[i].exchange(nullptr); name != nullptr) {
            removed[i] = name;
            Remove(name);
        }
    }
}

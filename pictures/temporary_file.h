// Files under temporary names, which go unless they are given another one.
#ifndef QV8_PICTURES_TEMPORARY_FILE_H
#define QV8_PICTURES_TEMPORARY_FILE_H

#include <cstdio>
#include <filesystem>
#include <string>

class TemporaryFile {
public:
    TemporaryFile() = default;
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile(); // closes the file and removes it

    // Makes a file that was not there, in a folder, under a name that nobody can guess. Nobody else may open it. What
    // went wrong is returned, or nothing.
    std::string Create(const std::filesystem::path& folder);

    std::FILE* File() const {
        return file_;
    }
    // Ends the writing; 0, or what errno says. `sync`: the data is on the disk then.
    int Close(bool sync);

    // Gives the closed file its name for good, over a file of that name. `sync`: the name is on the disk then.
    std::string Rename(const std::filesystem::path& target, bool sync);

private:
    void Forget();

    std::FILE* file_ = nullptr;
    const std::filesystem::path::value_type* path_ = nullptr;
};

// Removes all there are; the program ends afterwards. May be called by a signal handler.
void RemoveTemporaryFiles();

#endif

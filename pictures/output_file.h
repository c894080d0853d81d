// A file that is written beside its final place and put there when it is complete, so that a failure leaves what was
// there before, and a program may write the file that it reads.
#ifndef QV8_PICTURES_OUTPUT_FILE_H
#define QV8_PICTURES_OUTPUT_FILE_H

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <string>

// Names on the command line are UTF-8 on every system.
std::filesystem::path PathOf(const std::string& name);

class OutputFile {
public:
    // Opens a temporary file in the folder of `name`. This and the other operations throw a Failure with kExitOutput
    // that names the file.
    explicit OutputFile(const std::string& name);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile(); // removes the temporary file unless it was put in its place

    void Write(const void* bytes, std::size_t size);

    // Ends the writing. What could not be written shows here at the latest.
    void Complete();

    // Puts the complete file in its place, over a file that is there.
    void Commit();

private:
    void OpenTemporary();
    [[noreturn]] void Fail(const std::string& reason) const;

    std::string name_;
    std::filesystem::path target_;
    std::filesystem::path temporary_; // empty once there is nothing to remove
    std::FILE* file_ = nullptr;
};

#endif

// A file that is written beside its final place and put there when it is complete, so that a failure leaves what was
// there before, and a program may write the file that it reads.
#ifndef QV8_PICTURES_OUTPUT_FILE_H
#define QV8_PICTURES_OUTPUT_FILE_H

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "pictures/temporary_file.h"

// Names on the command line are UTF-8 on every system.
std::filesystem::path PathOf(const std::string& name);

// The name that stands for standard input or output.
inline constexpr const char* kStandardStream = "-";

class OutputFile {
public:
    enum class Sync { kNo, kYes }; // whether it is waited for until the disk has it

    // Opens a temporary file in the folder of `name`, which nobody else may read; a link is followed, so that it stays
    // one, even where it leads to no file yet. The name "-" means standard output. This and the other operations throw
    // a Failure with kExitOutput that names the file.
    explicit OutputFile(const std::string& name, Sync sync = Sync::kYes);

    void Write(const void* bytes, std::size_t size);

    // Ends the writing. What could not be written shows here at the latest. From here on the file has the permissions,
    // and as far as the system lets it the owner and the group, of the file that it replaces.
    void Complete();

    // Puts the complete file in its place, over a file that is there. Until then it goes with the object, and when a
    // second interrupt ends the program.
    void Commit();

private:
    [[noreturn]] void Fail(const std::string& reason) const;
    void CheckTarget() const;
    void WriteStandardOutput();

    std::string name_;
    std::filesystem::path target_;
    bool sync_;
    TemporaryFile file_;
    std::vector<char> forStandardOutput_;
};

#endif

// Files for the tests of the command line, put together byte by byte.
#ifndef QV8_TEST_CLI_FILES_H
#define QV8_TEST_CLI_FILES_H

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

using Bytes = std::vector<unsigned char>;

// A BMP file, as the format's description has it.
struct BmpForm {
    int bits = 24;
    int width = 3;
    int height = 2;
    bool topDown = false;
    std::uint32_t headerSize = 40;
    std::uint32_t colours = 0; // stored in the header; the table has this many, or the full number when 0
    std::vector<std::uint32_t> masks{};
    std::size_t gap = 0; // bytes between table and pixels
};

// Rows that differ in every byte, the lowest first.
std::vector<Bytes> RowsFor(const BmpForm& form);

Bytes BuildBmp(const BmpForm& form, const std::vector<Bytes>& rowsFromBottom);
inline Bytes BuildBmp(const BmpForm& form) {
    return BuildBmp(form, RowsFor(form));
}

void Put32(Bytes& bytes, std::size_t at, std::uint32_t value);

Bytes Slice(const Bytes& bytes, std::size_t from, std::size_t count = ~std::size_t{0});

// A folder of its own for one test, removed with everything in it.
class Folder {
public:
    Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder();

    std::filesystem::path Path(const std::string& name) const;
    std::string Name(const std::string& name) const; // as a word of a command line
    std::string Store(const std::string& name, const Bytes& bytes) const;
    Bytes Load(const std::string& name) const;
    std::size_t FileCount() const;

private:
    std::filesystem::path path_;
};

#endif

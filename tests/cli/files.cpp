#include "files.h"

#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

namespace {

void Append(Bytes& bytes, std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i) {
        bytes.push_back(static_cast<unsigned char>(value >> (8 * i)));
    }
}

std::string Utf8(const fs::path& path) {
    const std::u8string text = path.u8string();
    return std::string(text.begin(), text.end());
}

} // namespace

std::vector<Bytes> RowsFor(const BmpForm& form) {
    const int stride = (form.bits * form.width + 31) / 32 * 4;
    std::vector<Bytes> rows;
    for (int y = 0; y < form.height; ++y) {
        Bytes row;
        for (int i = 0; i < stride; ++i) {
            row.push_back(static_cast<unsigned char>(7 + 37 * (y * stride + i)));
        }
        rows.push_back(row);
    }
    return rows;
}

Bytes BuildBmp(const BmpForm& form, const std::vector<Bytes>& rowsFromBottom) {
    Bytes info;
    Append(info, form.headerSize, 4);
    Append(info, static_cast<std::uint32_t>(form.width), 4);
    Append(info, static_cast<std::uint32_t>(form.topDown ? -form.height : form.height), 4);
    Append(info, 1, 2);
    Append(info, static_cast<std::uint32_t>(form.bits), 2);
    Append(info, form.masks.empty() ? 0 : 3, 4);
    Append(info, 0, 4);
    Append(info, 2835, 4);
    Append(info, 2836, 4);
    Append(info, form.colours, 4);
    Append(info, 0, 4);
    for (const std::uint32_t mask : form.masks) {
        Append(info, mask, 4);
    }
    if (info.size() < form.headerSize) { // what larger headers add: an alpha mask, colour spaces
        info.resize(form.headerSize, 0xAB);
    }
    const std::uint32_t entries = form.colours != 0 ? form.colours : form.bits <= 8 ? 1U << form.bits : 0;
    for (std::uint32_t i = 0; i < entries; ++i) {
        Append(info, 0x00010307U * (i + 1) & 0xFFFFFFU, 4);
    }
    info.resize(info.size() + form.gap, 0xCD);
    Bytes file;
    Append(file, 0x4D42, 2);
    Append(file, 0, 4); // the size, known at the end
    Append(file, 0, 4);
    Append(file, static_cast<std::uint32_t>(14 + info.size()), 4);
    file.insert(file.end(), info.begin(), info.end());
    for (std::size_t y = 0; y < rowsFromBottom.size(); ++y) {
        const Bytes& row = rowsFromBottom[form.topDown ? rowsFromBottom.size() - 1 - y : y];
        file.insert(file.end(), row.begin(), row.end());
    }
    Put32(file, 2, static_cast<std::uint32_t>(file.size()));
    return file;
}

void Put32(Bytes& bytes, std::size_t at, std::uint32_t value) {
    for (std::size_t i = 0; i < 4; ++i) {
        bytes[at + i] = static_cast<unsigned char>(value >> (8 * i));
    }
}

Bytes Slice(const Bytes& bytes, std::size_t from, std::size_t count) {
    const std::size_t end = count < bytes.size() - from ? from + count : bytes.size();
    return Bytes(bytes.begin() + static_cast<std::ptrdiff_t>(from), bytes.begin() + static_cast<std::ptrdiff_t>(end));
}

Folder::Folder() {
    int number = 0;
    do {
        path_ = fs::temp_directory_path() / ("qv8 cli test " + std::to_string(number++));
    } while (!fs::create_directory(path_));
}

Folder::~Folder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

fs::path Folder::Path(const std::string& name) const {
    return path_ / std::u8string(name.begin(), name.end());
}

std::string Folder::Name(const std::string& name) const {
    return Utf8(Path(name));
}

std::string Folder::Store(const std::string& name, const Bytes& bytes) const {
    std::ofstream file(Path(name), std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return Name(name);
}

Bytes Folder::Load(const std::string& name) const {
    std::ifstream file(Path(name), std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

std::size_t Folder::FileCount() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(path_), fs::directory_iterator()));
}

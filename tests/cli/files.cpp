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

void AppendBigEndian(Bytes& bytes, std::size_t value, int count) {
    while (count-- > 0) {
        bytes.push_back(static_cast<unsigned char>(value >> (8 * count)));
    }
}

void AppendText(Bytes& bytes, const std::string& text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
}

void AppendChunk(Bytes& file, const char* name, const Bytes& data) {
    AppendBigEndian(file, data.size(), 4);
    AppendText(file, name);
    file.insert(file.end(), data.begin(), data.end());
    AppendBigEndian(file, 0, 4);
}

void AppendSegment(Bytes& file, unsigned marker, const Bytes& data) {
    AppendBigEndian(file, 0xFF00 | marker, 2);
    AppendBigEndian(file, data.size() + 2, 2);
    file.insert(file.end(), data.begin(), data.end());
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

Bytes Stored(const Bytes& data) {
    Bytes packed{0x78, 0x01, 1};
    Append(packed, static_cast<std::uint32_t>(data.size() | ~data.size() << 16), 4);
    packed.insert(packed.end(), data.begin(), data.end());
    return packed;
}

Bytes PackedZeroes(int count) {
    std::string bits = "1"
                       "10"
                       "00110000"; // the last block, with the fixed codes; a zero
    for (; count > 0; count -= 258) {
        bits += "11000101"
                "00000"; // 258 bytes as the one before
    }
    bits += "0000000"; // the end
    Bytes packed{0x78, 0x01};
    for (std::size_t i = 0; i < bits.size(); ++i) {
        if (i % 8 == 0) {
            packed.push_back(0);
        }
        packed.back() = static_cast<unsigned char>(packed.back() | (bits[i] - '0') << i % 8);
    }
    return packed;
}

Bytes BuildPng(const PngForm& form, const Bytes& packed) {
    Bytes header;
    AppendBigEndian(header, form.width, 4);
    AppendBigEndian(header, form.height, 4);
    for (const unsigned value : {form.depth, form.colour, 0U, 0U, form.interlaced ? 1U : 0U}) {
        AppendBigEndian(header, value, 1);
    }
    Bytes file;
    AppendText(file, "\x89PNG\r\n\x1A\n");
    AppendChunk(file, "IHDR", header);
    for (const auto& [name, chunk] : {std::pair{"PLTE", &form.table}, {"tRNS", &form.transparency}}) {
        if (!chunk->empty()) {
            AppendChunk(file, name, *chunk);
        }
    }
    AppendChunk(file, "IDAT", packed);
    AppendChunk(file, "IEND", {});
    return file;
}

Bytes BuildJpeg(unsigned width, unsigned height, unsigned scans) {
    const bool progressive = scans > 1;
    Bytes file{0xFF, 0xD8};
    Bytes quantization(65, 1);
    quantization[0] = 0;
    AppendSegment(file, 0xDB, quantization);
    Bytes frame{8};
    AppendBigEndian(frame, height, 2);
    AppendBigEndian(frame, width, 2);
    frame.insert(frame.end(), {1, 1, 0x11, 0});
    AppendSegment(file, progressive ? 0xC2 : 0xC0, frame);
    Bytes codes(18, 0);
    codes[1] = 1;
    AppendSegment(file, 0xC4, codes); // for the means
    codes[0] = 0x10;
    AppendSegment(file, 0xC4, codes); // for the rest
    for (unsigned scan = 0; scan < scans; ++scan) {
        const unsigned char first = scan > 0 ? 1 : 0; // the means, then all the rest
        const unsigned char last = progressive && scan == 0 ? 0 : 63;
        AppendSegment(file, 0xDA, {1, 1, 0, first, last, 0});
        file.insert(file.end(), 4, 0);
    }
    file.insert(file.end(), {0xFF, 0xD9});
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

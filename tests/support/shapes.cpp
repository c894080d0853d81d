#include "support/shapes.h"

#include <cstdint>
#include <fstream>
#include <iterator>
#include <sstream>

namespace test {
namespace {

class Writer {
public:
    void Number(std::uint64_t value) {
        for (; value >= 0x80; value >>= 7) {
            bytes.push_back(static_cast<BYTE>(0x80U | (value & 0x7F)));
        }
        bytes.push_back(static_cast<BYTE>(value));
    }
    void Coordinate(LONG value) {
        const std::int64_t wide = value;
        Number(static_cast<std::uint64_t>(wide < 0 ? -2 * wide - 1 : 2 * wide));
    }
    std::vector<BYTE> bytes;
};

class Reader {
public:
    explicit Reader(const std::vector<BYTE>& bytes) : bytes_(bytes) {}
    std::uint64_t Number() {
        std::uint64_t value = 0;
        for (unsigned shift = 0; shift < 63; shift += 7) {
            if (position_ == bytes_.size()) {
                break;
            }
            const BYTE byte = bytes_[position_++];
            value |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
            if (byte < 0x80) {
                return value;
            }
        }
        isGood_ = false;
        return 0;
    }
    int Int() {
        return static_cast<int>(Number());
    }
    LONG Coordinate() {
        const std::uint64_t value = Number();
        const std::int64_t half = static_cast<std::int64_t>(value >> 1);
        return static_cast<LONG>(value % 2 == 0 ? half : -half - 1);
    }
    void Fail() {
        isGood_ = false;
    }
    bool IsGood() const {
        return isGood_;
    }
    bool IsAtEnd() const {
        return position_ == bytes_.size();
    }

private:
    const std::vector<BYTE>& bytes_;
    std::size_t position_ = 0;
    bool isGood_ = true;
};

std::size_t ByteAt(const Shape& shape, int x, int y) {
    return static_cast<std::size_t>(shape.height - 1 - y) * shape.Stride() + static_cast<std::size_t>(x) / 8;
}

unsigned BitAt(int x) {
    return 0x80U >> (static_cast<unsigned>(x) % 8);
}

void WritePixels(Writer& writer, const Shape& shape) {
    bool isSet = false;
    std::uint64_t run = 0;
    for (int y = 0; y < shape.height; ++y) {
        for (int x = 0; x < shape.width; ++x) {
            if (shape.IsSet(x, y) != isSet) {
                writer.Number(run);
                isSet = !isSet;
                run = 0;
            }
            ++run;
        }
    }
    writer.Number(run);
}

void ReadPixels(Reader& reader, Shape& shape) {
    shape.mask.assign(shape.Stride() * static_cast<std::size_t>(shape.height), 0);
    const std::uint64_t width = static_cast<std::uint64_t>(shape.width);
    const std::uint64_t pixels = width * static_cast<std::uint64_t>(shape.height);
    bool isSet = false;
    for (std::uint64_t done = 0; done < pixels && reader.IsGood(); isSet = !isSet) {
        const std::uint64_t run = reader.Number();
        if (run > pixels - done) {
            reader.Fail();
            return;
        }
        for (std::uint64_t end = done + run; done < end; ++done) {
            const int x = static_cast<int>(done % width);
            BYTE& byte = shape.mask[ByteAt(shape, x, static_cast<int>(done / width))];
            byte = static_cast<BYTE>(byte | (isSet ? BitAt(x) : 0U));
        }
    }
}

Shape ReadShape(Reader& reader) {
    Shape shape;
    shape.kind = static_cast<Shape::Kind>(reader.Int());
    shape.width = reader.Int();
    shape.height = reader.Int();
    for (int left = reader.Int(); left > 0 && reader.IsGood(); --left) {
        const LONG x = reader.Coordinate();
        shape.points.push_back({x, reader.Coordinate()});
    }
    shape.result = reader.Int();
    ReadPixels(reader, shape);
    return shape;
}

} // namespace

bool Shape::IsSet(int x, int y) const {
    return (mask[ByteAt(*this, x, y)] & BitAt(x)) != 0;
}

std::string Describe(const Shape& shape) {
    std::ostringstream text;
    static constexpr const char* kNames[] = {"polygon", "ellipse", "seam"};
    text << kNames[shape.kind] << " in " << shape.width << " x " << shape.height;
    for (const POINT& point : shape.points) {
        text << " (" << point.x << ", " << point.y << ")";
    }
    return text.str();
}

std::vector<BYTE> EncodeShapes(const std::vector<Shape>& shapes) {
    Writer writer;
    writer.Number(shapes.size());
    for (const Shape& shape : shapes) {
        writer.Number(shape.kind);
        writer.Number(static_cast<std::uint64_t>(shape.width));
        writer.Number(static_cast<std::uint64_t>(shape.height));
        writer.Number(shape.points.size());
        for (const POINT& point : shape.points) {
            writer.Coordinate(point.x);
            writer.Coordinate(point.y);
        }
        writer.Number(static_cast<std::uint64_t>(shape.result));
        WritePixels(writer, shape);
    }
    return writer.bytes;
}

std::vector<Shape> DecodeShapes(const std::vector<BYTE>& bytes) {
    Reader reader(bytes);
    std::vector<Shape> shapes;
    for (std::uint64_t left = reader.Number(); left > 0 && reader.IsGood(); --left) {
        shapes.push_back(ReadShape(reader));
    }
    if (!reader.IsGood() || !reader.IsAtEnd()) {
        shapes.clear();
    }
    return shapes;
}

std::vector<Shape> LoadRecordedShapes() {
    const std::string path = QV8_TEST_DATA "/gdi_shapes.bin";
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        file.open("Z:" + path, std::ios::binary); // a path of the host, seen from inside Wine
    }
    return DecodeShapes(std::vector<BYTE>(std::istreambuf_iterator<char>(file), {}));
}

} // namespace test

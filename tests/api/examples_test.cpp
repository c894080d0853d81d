// What every effect does and refuses, worked out by hand: data/examples.txt tells how it is written.
#include <algorithm>
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "api/export_table.h"

namespace test {
namespace {

using Words = std::vector<std::string>;

// The parts of a row between its bars, by their first word; a picture has none.
using Parts = std::map<std::string, Words>;

Words WordsOf(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

std::vector<std::string> Split(const std::string& text, const std::string& separator) {
    std::vector<std::string> parts;
    std::size_t begin = 0;
    for (std::size_t end = 0; end != std::string::npos; begin = end + separator.size()) {
        end = text.find(separator, begin);
        parts.push_back(text.substr(begin, end == std::string::npos ? end : end - begin));
    }
    return parts;
}

Parts PartsOf(const std::string& text, const std::string& first) {
    static const Words kNames = {"second", "mask", "polygon", "around", "weight", "clear", "area", "along", "status"};
    Parts parts;
    std::string name = first;
    for (const std::string& part : Split(text, " | ")) {
        Words words = WordsOf(part);
        if (std::find(kNames.begin(), kNames.end(), words[0]) != kNames.end()) {
            name = words[0];
            words.erase(words.begin());
        }
        parts[name] = words;
        name = "picture";
    }
    return parts;
}

unsigned Pixel(const std::string& word, int bits) {
    return static_cast<unsigned>(std::stoul(word, nullptr, bits <= 8 ? 10 : 16));
}

Picture Blank(const Words& words) {
    Picture picture = BlankPicture(std::stoi(words[0]), std::stoi(words[2]), std::stoi(words[3]));
    if (words.size() == 6) {
        BITMAPINFOHEADER header = picture.Header();
        header.biBitCount = static_cast<WORD>(std::stoi(words[5]));
        picture.SetHeader(header);
    }
    return picture;
}

std::vector<unsigned> DefaultTable(int bits, bool reversed) {
    std::vector<unsigned> table;
    const unsigned last = (1U << std::min(bits, 8)) - 1;
    for (unsigned i = 0; bits <= 8 && i <= last; ++i) {
        table.push_back((reversed ? last - i : i) * 255 / last * 0x10101);
    }
    return table;
}

// A picture as it is written, row by row.
struct Written {
    int bits = 0;
    std::vector<std::vector<unsigned>> rows = {{}};
    std::vector<unsigned> table;
    bool hasTable = false;

    explicit Written(const Words& words) : bits(std::stoi(words[0])) {
        bits = bits == 565 ? 16 : bits;
        table = DefaultTable(bits, words.back() == "reversed");
        for (std::size_t i = 1; i != words.size() && words[i] != "reversed"; ++i) {
            if (words[i] == "table") {
                hasTable = words[i + 1] != "reversed";
                table = hasTable ? std::vector<unsigned>() : table;
            } else if (hasTable) {
                table.push_back(Pixel(words[i], 24));
            } else if (words[i] == "/") {
                rows.emplace_back();
            } else {
                rows.back().push_back(Pixel(words[i], bits));
            }
        }
    }
};

Picture MakePicture(const Words& words) {
    if (words.size() > 1 && words[1] == "of") {
        return Blank(words);
    }
    const Written written(words);
    const auto width = static_cast<int>(written.rows[0].size());
    const auto height = static_cast<int>(written.rows.size());
    Random random(1);
    Picture picture = words[0] == "565" ? RandomPicture(LayoutNamed("16-565"), width, height, random)
                                        : BlankPicture(written.bits, width, height);
    if (written.table.size() != picture.ColourCount()) {
        BITMAPINFOHEADER header = picture.Header();
        header.biClrUsed = static_cast<DWORD>(written.table.size());
        picture.SetHeader(header);
        picture.bytes.resize(picture.PixelOffset() + picture.RowBytes() * written.rows.size());
    }
    for (std::size_t i = 0; i != written.table.size(); ++i) {
        std::memcpy(picture.TableEntry(i), &written.table[i], 3); // blue first
    }
    for (int y = 0; y != height; ++y) {
        for (int x = 0; x != width; ++x) {
            const unsigned pixel = written.rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)];
            if (written.bits <= 8) {
                picture.SetIndex(x, height - 1 - y, pixel);
            } else {
                std::memcpy(&picture.bytes[picture.PixelAddress(x, height - 1 - y)], &pixel,
                            static_cast<unsigned>(written.bits) / 8);
            }
        }
    }
    return picture;
}

// A result as it would be written.
std::string Write(const Picture& picture, bool withTable) {
    std::ostringstream text;
    const int bits = picture.Bits();
    text << bits << std::hex << std::uppercase;
    for (int row = picture.Height() - 1; row >= 0; --row) {
        for (int x = 0; x != picture.Width(); ++x) {
            unsigned pixel = 0;
            if (bits <= 8) {
                text << ' ' << std::dec << picture.Index(x, row) << std::hex;
                continue;
            }
            std::memcpy(&pixel, &picture.bytes[picture.PixelAddress(x, row)], static_cast<unsigned>(bits) / 8);
            text << ' ';
            text.width(bits == 16 ? 4 : bits / 4);
            text.fill('0');
            text << pixel;
        }
        text << (row != 0 ? " /" : "");
    }
    text << (withTable ? " table" : "");
    for (std::size_t i = 0; withTable && i != picture.ColourCount(); ++i) {
        unsigned entry = 0;
        std::memcpy(&entry, picture.TableEntry(i), 4);
        text << ' ';
        text.width(6);
        text.fill('0');
        text << entry;
    }
    return text.str();
}

std::string Joined(const Words& words) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : " ") + word;
    }
    return text;
}

Area AreaOf(Parts& given) {
    Area area;
    area.type = given.count("polygon") + given.count("around") != 0 ? DWORD{QV8_AREA_POLYGON}
                : given.count("mask") != 0                          ? DWORD{QV8_AREA_MASK}
                : given.count("area") != 0                          ? static_cast<DWORD>(std::stoul(given["area"][0]))
                                                                    : DWORD{QV8_AREA_WHOLE};
    area.inside = given.count("around") != 0 ? 0 : 1;
    const Words& corners = given[area.inside != 0 ? "polygon" : "around"];
    for (std::size_t i = 0; i != corners.size(); i += 2) {
        area.points.push_back({std::stoi(corners[i]), std::stoi(corners[i + 1])});
    }
    return area;
}

void SetOwn(const Export& row, Parts& given, Arguments& arguments) {
    std::vector<double> own;
    for (std::size_t i = 1; i < given["call"].size(); ++i) {
        own.push_back(std::stod(given["call"][i]));
    }
    SetOwnNumbers(row, own, arguments);
    std::fill(std::begin(arguments.weights), std::end(arguments.weights), 0);
    if (given.count("weight") != 0) {
        arguments.weights[std::stoul(given["weight"][0])] = std::stoi(given["weight"][1]);
    }
    for (std::size_t i = 0; i != 3 && given.count("clear") != 0; ++i) {
        arguments.clear[i] = static_cast<BYTE>(Pixel(given["clear"][0], 24) >> (16 - 8 * i));
        arguments.values[6 + i].pointer = &arguments.clear[i]; // behind angle, mirror, flip and opacity of a paste
    }
}

void Check(Parts given, Parts expected) {
    const auto picture = [&given](const char* part, const Words& otherwise) {
        return Source(MakePicture(given.count(part) == 0 || given[part][0] == "none" ? otherwise : given[part]));
    };
    const Words kBlank = {"1", "of", "1", "1"};
    Words mask = given.count("mask") != 0 ? given["mask"] : Words();
    mask.insert(mask.begin(), "1");
    const Scene scene = {picture("picture", kBlank), Source(MakePicture(mask.size() == 1 ? kBlank : mask)),
                         picture("second", kBlank), AreaOf(given)};
    const Source along = picture("along", kBlank);
    Call call = scene.AsCall();
    call.target.hImage = given["picture"][0] == "none" ? nullptr : call.target.hImage;
    call.target.hMask = given.count("along") != 0  ? along.Handle()
                        : given.count("mask") == 0 ? nullptr
                                                   : call.target.hMask;
    call.second = given.count("second") != 0 && given["second"][0] == "none" ? nullptr : call.second;
    const Export& row = ExportNamed(given["call"][0]);
    Arguments arguments;
    DrawArguments(row, call, {}, arguments);
    SetOwn(row, given, arguments);
    const Outcome outcome = WatchExport(row, call, {}, arguments);
    EXPECT_TRUE(scene.Untouched());
    if (expected.count("status") != 0) {
        EXPECT_EQ(outcome.status == kUntouched ? "untouched" : std::to_string(outcome.status), expected["status"][0]);
        return;
    }
    EXPECT_EQ(outcome.status, QV8_STATUS_SUCCESS);
    ASSERT_NE(outcome.image, nullptr);
    const Words& after = expected["picture"];
    const bool withTable = std::find(after.begin(), after.end(), "table") != after.end();
    EXPECT_EQ(Write(Picture{ReadBlock(outcome.image.get())}, withTable), Joined(after));
    if (expected.count("mask") != 0) {
        EXPECT_EQ(Write(Picture{ReadBlock(outcome.mask.get())}, false), "1 " + Joined(expected["mask"]));
    }
}

TEST(Examples, ComeOutAsByHand) {
    std::ifstream file(QV8_TEST_DATA "/examples.txt");
    std::string line;
    int examples = 0;
    while (std::getline(file, line)) {
        const std::string row = line.substr(0, line.find('#'));
        if (row.empty()) {
            continue;
        }
        SCOPED_TRACE(line);
        const std::vector<std::string> sides = Split(row, " -> ");
        ASSERT_EQ(sides.size(), 2U);
        Check(PartsOf(sides[0], "call"), PartsOf(sides[1], "picture"));
        ++examples;
    }
    EXPECT_GT(examples, 60);
}

} // namespace
} // namespace test

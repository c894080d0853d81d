#include "recorded.h"

#include <fstream>
#include <iterator>
#include <sstream>

#include "pictures/failure.h"
#include "pictures/picture_rows.h"

std::vector<Recorded> AllRecorded() {
    std::ifstream list(QV8_PICTURE_DATA "/list.txt");
    std::vector<Recorded> all;
    for (std::string line; std::getline(list, line);) {
        std::istringstream words(line);
        Recorded recorded;
        words >> recorded.name >> std::ws;
        if (words.peek() == '-') {
            words.ignore(2);
            std::getline(words, recorded.refusal);
        } else {
            words >> recorded.width >> recorded.height >> recorded.depth >> recorded.pixels;
        }
        all.push_back(recorded);
    }
    return all;
}

Bytes FileOf(const std::string& name) {
    std::ifstream file(QV8_PICTURE_DATA "/" + name, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

std::string HashOf(const LoadedPicture& loaded) {
    PictureRows rows(loaded.picture, loaded.metadata.alpha);
    std::uint64_t hash = 0xCBF29CE484222325U;
    const auto add = [&hash](unsigned value) { hash = (hash ^ value) * 0x100000001B3U; };
    for (std::size_t y = 0; y < rows.Height(); ++y) {
        const BYTE* pixel = rows.Row(y);
        for (std::size_t x = 0; x < rows.Width(); ++x, pixel += rows.Channels()) {
            const std::size_t last = rows.Channels() == 1 ? 0 : 2;
            add(pixel[last]);
            add(pixel[last / 2]);
            add(pixel[0]);
            add(rows.Channels() == 4 ? pixel[3] : 255);
        }
    }
    std::ostringstream text;
    text << std::hex;
    text.width(16);
    text.fill('0');
    text << hash;
    return text.str();
}

std::string RefusalOf(const Bytes& file, const ReadOptions& options) {
    try {
        DecodePicture(Bytes(file.begin(), file.end()), "file", options);
        return {};
    } catch (const Failure& failure) {
        return failure.what();
    }
}

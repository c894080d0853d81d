#include "checksums/dump.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>

#include "checksums/cases.h"
#include "support/clipboard.h"

// A file is lines of words. A case begins with `call`; then come its parameters in the order of the declaration,
//
//     number N | real HEXADECIMAL | picture HEX | pair HEX HEX | bytes HEX | numbers N ...
//
// (a null pointer is the number 0), pictures as bytes of their packed form (`-` for a handle of 0, `result` where a
// result is stored), and then what came of it: `status`, `progress current last from to` for each report, `image` and
// `mask`, and `clipboard` where it counts.
namespace test {
namespace {

std::string Hex(const void* data, std::size_t size) {
    static constexpr char kDigits[] = "0123456789abcdef";
    const auto* const bytes = static_cast<const BYTE*>(data);
    std::string text;
    for (std::size_t i = 0; i != size; ++i) {
        text += {kDigits[bytes[i] >> 4], kDigits[bytes[i] & 15]};
    }
    return text;
}

std::string PictureText(HGLOBAL block) {
    const Bytes bytes = block != nullptr ? ReadBlock(block) : Bytes();
    return block != nullptr ? Hex(bytes.data(), bytes.size()) : "-";
}

std::string PairText(const ImageSet& pair) {
    return "pair " + PictureText(pair.hImage) + " " + PictureText(pair.hMask);
}

std::string NumbersText(std::initializer_list<LONG> numbers) {
    std::string text = "numbers";
    for (const LONG number : numbers) {
        text += " " + std::to_string(number);
    }
    return text;
}

std::string PointerText(const Case& each, const Value& value) {
    const Arguments& arguments = each.arguments;
    const Area& area = each.call.area;
    const void* const pointer = value.pointer;
    if (pointer == each.call.Target()) {
        return PairText(each.call.target);
    }
    if (pointer == &arguments.pasted) {
        return PairText(arguments.pasted);
    }
    if (pointer == &arguments.stored) {
        return "result";
    }
    if (pointer == &arguments.weights[0]) {
        return "bytes " + Hex(pointer, sizeof arguments.weights);
    }
    if (pointer == &area.rect) {
        return NumbersText({area.rect.left, area.rect.top, area.rect.right, area.rect.bottom});
    }
    if (pointer == area.Points()) {
        return "bytes " + Hex(pointer, area.points.size() * sizeof area.points[0]);
    }
    if (std::any_of(std::begin(arguments.clear), std::end(arguments.clear),
                    [pointer](const BYTE& channel) { return pointer == &channel; })) {
        return "bytes " + Hex(pointer, 1);
    }
    return "picture " + PictureText(const_cast<HGLOBAL>(pointer));
}

std::string Text(const Case& each, const Value& value) {
    if (value.pointer != nullptr) {
        return PointerText(each, value);
    }
    char text[40];
    if (value.real != 0) {
        std::snprintf(text, sizeof text, "real %a", value.real);
        return text;
    }
    return "number " + std::to_string(value.number); // a real 0, too
}

void Dump(const Case& each, std::ostream& file) {
    file << "call\n";
    for (const Value& value : each.arguments.values) {
        file << Text(each, value) << '\n';
    }
    const Outcome outcome = WatchExport(each.row, each.call, {}, each.arguments);
    file << "status " << outcome.status << '\n';
    for (const hooks::ProgressCall& step : outcome.report.progress) {
        file << "progress " << step.current << ' ' << step.last << ' ' << step.fromPercent << ' ' << step.toPercent
             << '\n';
    }
    file << "image " << PictureText(outcome.image.get()) << "\nmask " << PictureText(outcome.mask.get()) << '\n';
    if (each.row.Is(kOnClipboard)) {
        const Bytes content = ClipboardContent();
        file << "clipboard " << Hex(content.data(), content.size()) << '\n';
    }
}

} // namespace

bool DumpCases(const std::string& directory) {
    bool good = true;
    ForEachCase([&](const Case& each) {
        std::string name = each.key + ".txt";
        std::replace(name.begin(), name.end(), ' ', '_');
        std::ofstream file(directory + "/" + name, std::ios::app | std::ios::binary);
        Dump(each, file);
        good = good && file.good();
    });
    return good;
}

} // namespace test

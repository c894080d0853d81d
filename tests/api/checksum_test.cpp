// Every build gives the same bytes: checksums over many random calls of every export, compared with a list that is part
// of the sources. Where they differ, the list of this build is written to checksums.actual.txt.
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <map>
#include <set>
#include <string>

#include "api/export_table.h"
#include "support/clipboard.h"

namespace test {
namespace {

using Checksums = std::map<std::string, std::string>;

constexpr int kCallsPerForm = 6; // two forms make one polygon or ellipse line

std::uint64_t HashOfCall(const Export& row, const Layout& layout, AreaForm form, Random& random, std::uint64_t hash) {
    const int width = RandomSide(random);
    const Scene scene = RandomScene(layout, form, width, random.Between(1, 24), random);
    const Outcome outcome = CallExport(row, scene.AsCall(), Parameters(random));
    hash = Hash({static_cast<BYTE>(outcome.status)}, hash);
    for (const Block* const block : {&outcome.image, &outcome.mask}) {
        if (*block != nullptr) {
            hash = Hash(ReadBlock(block->get()), hash);
        }
    }
    return row.Is(kOnClipboard) ? Hash(ClipboardContent(), hash) : hash;
}

// One entry for each export, layout and form of area.
Checksums ComputeChecksums() {
    std::map<std::string, std::uint64_t> hashes;
    for (const Export& row : Exports()) {
        const Bytes name(row.name, row.name + std::char_traits<char>::length(row.name));
        for (const Layout& layout : Layouts()) {
            if (!row.Accepts(layout) || row.Is(kUnframed)) { // those make no bytes
                continue;
            }
            Random random(Hash(name, kHashSeed)); // a new row changes no other row's pictures
            for (const AreaForm form : AreaForms()) {
                if (!row.UsesForm(layout, form)) {
                    continue;
                }
                const std::string key = std::string(row.name) + " " + layout.name + " " + NameOf(form);
                std::uint64_t& hash = hashes.try_emplace(key, kHashSeed).first->second;
                for (int i = 0; i != (row.UsesAreaOf(layout) ? kCallsPerForm : 6 * kCallsPerForm); ++i) {
                    hash = HashOfCall(row, layout, form, random, hash);
                }
            }
        }
    }
    Checksums checksums;
    for (const auto& [key, hash] : hashes) {
        char text[17];
        std::snprintf(text, sizeof text, "%08x%08x", static_cast<unsigned>(hash >> 32U),
                      static_cast<unsigned>(hash & 0xFFFFFFFFU));
        checksums[key] = text;
    }
    return checksums;
}

Checksums ReadChecksums(const std::string& path) {
    Checksums checksums;
    std::ifstream file(path);
    std::string name, layout, form, checksum;
    while (file >> name >> layout >> form >> checksum) {
        checksums[name + " " + layout + " " + form] = checksum;
    }
    return checksums;
}

// The entries that are not the same in both lists, in words.
std::vector<std::string> Differences(const Checksums& actual, const Checksums& expected) {
    std::vector<std::string> differences;
    for (const auto& [key, checksum] : actual) {
        const auto found = expected.find(key);
        if (found == expected.end()) {
            differences.push_back(key + " is not in the list");
        } else if (found->second != checksum) {
            differences.push_back(key + " differs");
        }
    }
    for (const auto& [key, checksum] : expected) {
        if (actual.count(key) == 0) {
            differences.push_back(key + " is in the list only");
        }
    }
    return differences;
}

TEST(EveryExport, GivesTheSameBytesOnEveryBuild) {
    const Checksums actual = ComputeChecksums();
    const auto differences = Differences(actual, ReadChecksums(QV8_TEST_DATA "/checksums.txt"));
    if (differences.empty()) {
        return;
    }
    std::ofstream file("checksums.actual.txt", std::ios::binary);
    for (const auto& [key, checksum] : actual) {
        file << key << ' ' << checksum << '\n';
    }
    std::string first;
    for (std::size_t i = 0; i != std::min<std::size_t>(differences.size(), 20); ++i) {
        first += "  " + differences[i] + "\n";
    }
    ADD_FAILURE() << differences.size() << " differences; the first:\n" << first;
}

TEST(EveryExport, HasARowInTheTable) {
    std::set<std::string> exported;
    std::ifstream file(QV8_EXPORT_LIST);
    std::string word;
    while (file >> word) {
        if (word.rfind("QV8", 0) == 0 && word.find('@') == std::string::npos) {
            exported.insert(word);
        }
    }
    std::set<std::string> rows;
    for (const Export& row : Exports()) {
        rows.insert(row.name);
    }
    EXPECT_EQ(rows, exported);
}

} // namespace
} // namespace test

// Every build and every target gives the same bytes, statuses and reports of progress: checksums over thousands of
// calls of every export, compared with a list that is part of the sources. Where they differ, the list of this build is
// written to checksums.actual.txt.
//
//     qv8_checksum_tests --dump DIRECTORY
//
// writes the cases out instead, a file for each entry, so that any other program can be asked what it makes of them.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "checksums/cases.h"
#include "checksums/dump.h"
#include "simd/target.h"
#include "support/clipboard.h"

namespace test {
namespace {

using Checksums = std::map<std::string, std::string>;
using Hashes = std::map<std::string, std::uint64_t>;

std::uint64_t HashNumbers(std::initializer_list<int> numbers, std::uint64_t hash) {
    for (const int number : numbers) {
        const auto bits = static_cast<unsigned>(number);
        hash = Hash({static_cast<BYTE>(bits), static_cast<BYTE>(bits >> 8U), static_cast<BYTE>(bits >> 16U),
                     static_cast<BYTE>(bits >> 24U)},
                    hash);
    }
    return hash;
}

// All that a caller and the companion see of the call.
std::uint64_t HashOfCase(const Case& each, std::uint64_t hash) {
    const Outcome outcome = WatchExport(each.row, each.call, {}, each.arguments);
    hash = HashNumbers({outcome.status}, hash);
    for (const hooks::ProgressCall& step : outcome.report.progress) {
        hash = HashNumbers({step.current, step.last, step.fromPercent, step.toPercent}, hash);
    }
    for (const Block* const block : {&outcome.image, &outcome.mask}) {
        if (*block != nullptr) {
            hash = Hash(ReadBlock(block->get()), hash);
        }
    }
    return each.row.Is(kOnClipboard) ? Hash(ClipboardContent(), hash) : hash;
}

// Of each target that can run here.
std::vector<Checksums> ComputeChecksums() {
    const auto targets = qv8::RunnableTargets();
    std::vector<Hashes> hashes(targets.size());
    ForEachCase([&](const Case& each) {
        for (std::size_t i = 0; i != targets.size(); ++i) {
            qv8::UseTarget(targets[i]);
            std::uint64_t& hash = hashes[i].try_emplace(each.key, kHashSeed).first->second;
            hash = HashOfCase(each, hash);
        }
        EXPECT_TRUE(each.scene.Untouched()) << each.key;
    });
    qv8::UseTarget(qv8::BestTarget());
    std::vector<Checksums> checksums;
    for (const Hashes& ofTarget : hashes) {
        Checksums& texts = checksums.emplace_back();
        for (const auto& [key, hash] : ofTarget) {
            char text[17];
            std::snprintf(text, sizeof text, "%08x%08x", static_cast<unsigned>(hash >> 32U),
                          static_cast<unsigned>(hash & 0xFFFFFFFFU));
            texts[key] = text;
        }
    }
    return checksums;
}

// The entries of a list, and the remarks at its head.
Checksums ReadChecksums(const std::string& path, std::string& remarks) {
    Checksums checksums;
    std::ifstream file(path);
    std::string line;
    while (std::getline(file, line)) {
        const std::size_t end = line.rfind(' ');
        if (line.starts_with('#')) {
            remarks += line + '\n';
        } else if (end != std::string::npos) {
            checksums[line.substr(0, end)] = line.substr(end + 1);
        }
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

TEST(EveryExport, GivesTheSameOnEveryBuildAndTarget) {
    std::string remarks;
    const Checksums expected = ReadChecksums(QV8_TEST_DATA "/checksums.txt", remarks);
    const std::vector<Checksums> actual = ComputeChecksums();
    for (std::size_t target = 0; target != actual.size(); ++target) {
        const auto differences = Differences(actual[target], expected);
        if (differences.empty()) {
            continue;
        }
        std::ofstream file("checksums.actual.txt", std::ios::binary);
        file << remarks;
        for (const auto& [key, checksum] : actual[target]) {
            file << key << ' ' << checksum << '\n';
        }
        std::string first;
        for (std::size_t i = 0; i != std::min<std::size_t>(differences.size(), 20); ++i) {
            first += "  " + differences[i] + "\n";
        }
        ADD_FAILURE() << differences.size() << " differences on target " << target << "; the first:\n" << first;
    }
    std::printf("checksums: %zu entries on %zu targets\n", expected.size(), actual.size());
}

} // namespace
} // namespace test

int main(int count, char** words) {
    if (count == 3 && std::string(words[1]) == "--dump") {
        return test::DumpCases(words[2]) ? 0 : 1;
    }
    testing::InitGoogleTest(&count, words);
    return RUN_ALL_TESTS();
}

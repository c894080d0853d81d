#include "pictures/colour_table.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <set>

namespace {

// Cubes of 8 x 8 x 8 colours.
constexpr int kCubeSide = 8;
constexpr std::size_t kCubesInARow = 256 / kCubeSide;

std::size_t CubeOf(const Levels& colour) {
    std::size_t cube = 0;
    for (const int level : colour) {
        cube = cube * kCubesInARow + static_cast<std::size_t>(level / kCubeSide);
    }
    return cube;
}

int Squared(int value) {
    return value * value;
}

int Distance(const Levels& colour, const Levels& other) {
    return Squared(colour[0] - other[0]) + Squared(colour[1] - other[1]) + Squared(colour[2] - other[2]);
}

// Of one cube, or of the colours that an entry is the nearest to.
struct Sum {
    std::uint64_t count = 0;
    std::array<std::uint64_t, 3> levels{};

    void Add(const Sum& other) {
        count += other.count;
        for (std::size_t i = 0; i < levels.size(); ++i) {
            levels[i] += other.levels[i];
        }
    }
    Levels Mean() const {
        Levels mean{};
        for (std::size_t i = 0; i < levels.size(); ++i) {
            mean[i] = static_cast<int>((levels[i] + count / 2) / count);
        }
        return mean;
    }
};

std::vector<Sum> SumsOfCubes(PictureRows& rows) {
    std::vector<Sum> sums(kCubesInARow * kCubesInARow * kCubesInARow);
    std::vector<Levels> row;
    for (std::size_t y = 0; y < rows.Height(); ++y) {
        ReadColours(rows, y, row);
        for (const Levels& colour : row) {
            Sum one{1, {}};
            std::copy(colour.begin(), colour.end(), one.levels.begin());
            sums[CubeOf(colour)].Add(one);
        }
    }
    std::erase_if(sums, [](const Sum& sum) { return sum.count == 0; });
    return sums;
}

RGBQUAD EntryOf(const Levels& colour) {
    return {static_cast<BYTE>(colour[0]), static_cast<BYTE>(colour[1]), static_cast<BYTE>(colour[2]), 0};
}

} // namespace

void ReadColours(PictureRows& rows, std::size_t y, std::vector<Levels>& colours) {
    const BYTE* from = rows.Row(y);
    const std::size_t next = rows.Channels() == 1 ? 0 : 1; // a grey level stands for all three
    colours.resize(rows.Width());
    for (Levels& colour : colours) {
        colour = {from[0], from[next], from[2 * next]};
        from += rows.Channels();
    }
}

NearestEntry::NearestEntry(const std::vector<RGBQUAD>& table)
    : candidates_(kCubesInARow * kCubesInARow * kCubesInARow) {
    for (const RGBQUAD& entry : table) {
        table_.push_back({entry.rgbBlue, entry.rgbGreen, entry.rgbRed});
    }
}

// An entry whose nearest corner is farther away than the farthest of another one is the nearest to no colour inside.
void NearestEntry::FindCandidates(std::size_t cube) {
    const Levels low{static_cast<int>(cube / kCubesInARow / kCubesInARow) * kCubeSide,
                     static_cast<int>(cube / kCubesInARow % kCubesInARow) * kCubeSide,
                     static_cast<int>(cube % kCubesInARow) * kCubeSide};
    std::vector<int> nearest(table_.size());
    int limit = std::numeric_limits<int>::max();
    for (std::size_t i = 0; i < table_.size(); ++i) {
        int farthest = 0;
        for (std::size_t c = 0; c < low.size(); ++c) {
            const int below = low[c] - table_[i][c];
            const int above = table_[i][c] - (low[c] + kCubeSide - 1);
            nearest[i] += Squared(std::max({below, above, 0}));
            farthest += Squared(kCubeSide - 1 + std::max(below, above));
        }
        limit = std::min(limit, farthest);
    }
    for (std::size_t i = 0; i < table_.size(); ++i) {
        if (nearest[i] <= limit) {
            candidates_[cube].push_back(static_cast<BYTE>(i));
        }
    }
}

std::size_t NearestEntry::Find(const Levels& colour) {
    const std::size_t cube = CubeOf(colour);
    if (candidates_[cube].empty()) {
        FindCandidates(cube);
    }
    const std::vector<BYTE>& candidates = candidates_[cube];
    return *std::min_element(candidates.begin(), candidates.end(),
                             [&](BYTE a, BYTE b) { return Distance(table_[a], colour) < Distance(table_[b], colour); });
}

std::vector<RGBQUAD> AllColours(PictureRows& rows, std::size_t most) {
    std::set<Levels> found;
    std::vector<Levels> row;
    for (std::size_t y = 0; y < rows.Height(); ++y) {
        ReadColours(rows, y, row);
        for (std::size_t x = 0; x < row.size(); ++x) {
            if (x != 0 && row[x] == row[x - 1]) {
                continue;
            }
            found.insert(row[x]);
            if (found.size() > most) {
                return {};
            }
        }
    }
    std::vector<RGBQUAD> table;
    std::transform(found.begin(), found.end(), std::back_inserter(table), EntryOf);
    return table;
}

std::vector<RGBQUAD> Fitted(std::vector<RGBQUAD> table, PictureRows& rows) {
    constexpr int kRounds = 10; // further ones change less than a tenth of a decibel
    const std::vector<Sum> cubes = SumsOfCubes(rows);
    for (int round = 0; round < kRounds; ++round) {
        NearestEntry nearest(table);
        std::vector<Sum> sums(table.size());
        for (const Sum& cube : cubes) {
            sums[nearest.Find(cube.Mean())].Add(cube);
        }
        for (std::size_t i = 0; i < table.size(); ++i) {
            table[i] = sums[i].count != 0 ? EntryOf(sums[i].Mean()) : table[i];
        }
    }
    return table;
}

// What is timed: rows of the library's calls, and for some of them a peer that does the same or something near.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "scene.h"

namespace bench {

struct Row {
    const char* name;                    // the export, without its prefix, then the parameters that matter
    HGLOBAL (*call)(const Scene& scene); // the result is freed; null where the export gives none
};

std::span<const Row> ColourRows(); // tone, depth
std::span<const Row> FilterRows();
std::span<const Row> GeometryRows(); // and selection
std::span<const Row> ComposeRows();  // and hidden marks, creation, clipboard

// Where a result is written: to a block that was there before and has been written to, or to a new one each time.
enum class Block { kReady, kFresh };

// The same by another library, ready to be repeated. Empty when there is none.
std::function<void()> PeerCall(const std::string& row, const Scene& scene, Block block);

} // namespace bench

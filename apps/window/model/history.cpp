#include "model/history.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <numeric>
#include <utility>

std::uint64_t Version::Bytes() const {
    const std::uint64_t mask = selection.mask != nullptr ? GlobalSize(selection.mask->Handle()) : 0;
    return GlobalSize(image->Handle()) + mask;
}

std::vector<Version> History::Add(Version version) {
    const auto undone = versions_.begin() + static_cast<std::ptrdiff_t>(current_) + 1;
    std::vector<Version> forgotten(std::make_move_iterator(undone), std::make_move_iterator(versions_.end()));
    versions_.erase(undone, versions_.end());
    versions_.push_back(std::move(version));
    ++current_;
    return forgotten;
}

std::uint64_t History::BytesKept() const {
    const auto add = [](std::uint64_t sum, const Version& version) { return sum + version.Bytes(); };
    return std::accumulate(versions_.begin(), versions_.end(), std::uint64_t{0}, add) - Current().Bytes();
}

Version History::DropOne() {
    const auto farthest = current_ > 0 ? versions_.begin() : versions_.end() - 1;
    Version dropped = std::move(*farthest);
    versions_.erase(farthest);
    current_ -= current_ > 0 ? std::size_t{1} : 0;
    return dropped;
}

std::uint64_t BytesKept(std::span<History* const> histories) {
    const auto add = [](std::uint64_t sum, const History* history) { return sum + history->BytesKept(); };
    return std::accumulate(histories.begin(), histories.end(), std::uint64_t{0}, add);
}

std::vector<Version> KeepWithin(std::span<History* const> histories, std::uint64_t mostBytes) {
    std::vector<Version> forgotten;
    while (BytesKept(histories) > mostBytes) {
        const auto keepsLess = [](const History* a, const History* b) { return a->BytesKept() < b->BytesKept(); };
        forgotten.push_back((*std::max_element(histories.begin(), histories.end(), keepsLess))->DropOne());
    }
    return forgotten;
}

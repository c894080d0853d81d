#include "model/history.h"

#include <algorithm>
#include <numeric>
#include <utility>

std::uint64_t Version::Bytes() const {
    const std::uint64_t mask = selection.mask != nullptr ? GlobalSize(selection.mask->Handle()) : 0;
    return GlobalSize(image->Handle()) + mask;
}

void History::Add(Version version) {
    versions_.resize(current_ + 1, Version{});
    versions_.push_back(std::move(version));
    ++current_;
}

std::uint64_t History::BytesKept() const {
    const auto add = [](std::uint64_t sum, const Version& version) { return sum + version.Bytes(); };
    return std::accumulate(versions_.begin(), versions_.end(), std::uint64_t{0}, add) - Current().Bytes();
}

bool History::DropOne() {
    if (current_ > 0) {
        versions_.erase(versions_.begin());
        --current_;
        return true;
    }
    if (versions_.size() > 1) {
        versions_.pop_back();
        return true;
    }
    return false;
}

std::uint64_t BytesKept(std::span<History* const> histories) {
    const auto add = [](std::uint64_t sum, const History* history) { return sum + history->BytesKept(); };
    return std::accumulate(histories.begin(), histories.end(), std::uint64_t{0}, add);
}

void KeepWithin(std::span<History* const> histories, std::uint64_t mostBytes) {
    while (BytesKept(histories) > mostBytes) {
        const auto keepsLess = [](const History* a, const History* b) { return a->BytesKept() < b->BytesKept(); };
        if (!(*std::max_element(histories.begin(), histories.end(), keepsLess))->DropOne()) {
            return;
        }
    }
}

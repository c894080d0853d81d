// Random numbers that are the same on every system and with every standard library.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>

#include "qv8platform.h"

namespace test {

class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}
    // Drawn from these bytes, the low byte first, until they have run out: whoever makes the bytes chooses the numbers.
    explicit Random(std::span<const BYTE> script) : state_(0), script_(script) {}

    std::uint32_t Next() {
        return script_.empty() ? Mixed() : Scripted(4);
    }

    // Both ends included; the span fits in 32 bits.
    int Between(int low, int high) {
        const auto span = static_cast<std::uint32_t>(high) - static_cast<std::uint32_t>(low);
        const std::uint32_t drawn = script_.empty() ? Mixed() : Scripted(span <= 0xFF ? 1 : 4);
        const std::uint32_t step = span == 0xFFFFFFFFU ? drawn : drawn % (span + 1);
        return static_cast<int>(static_cast<std::uint32_t>(low) + step);
    }

    BYTE Byte() {
        return static_cast<BYTE>(Next());
    }
    bool Chance(int percent) {
        return Between(1, 100) <= percent;
    }

private:
    std::uint32_t Mixed() {
        state_ += 0x9E3779B97F4A7C15ULL;
        std::uint64_t mixed = state_;
        mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9ULL;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBULL;
        return static_cast<std::uint32_t>(mixed >> 32U);
    }

    std::uint32_t Scripted(std::size_t bytes) {
        const auto taken = script_.first(std::min(bytes, script_.size()));
        script_ = script_.subspan(taken.size());
        std::uint32_t number = 0;
        for (std::size_t i = taken.size(); i != 0; --i) {
            number = number << 8U | taken[i - 1];
        }
        return number;
    }

    std::uint64_t state_;
    std::span<const BYTE> script_;
};

} // namespace test

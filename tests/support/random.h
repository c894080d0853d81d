// Random numbers that are the same on every system and with every standard library.
#pragma once

#include <cstdint>

#include "qv8platform.h"

namespace test {

class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint32_t Next() {
        state_ += 0x9E3779B97F4A7C15ULL;
        std::uint64_t mixed = state_;
        mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9ULL;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBULL;
        return static_cast<std::uint32_t>(mixed >> 32U);
    }

    // Both ends included; the span fits in 32 bits.
    int Between(int low, int high) {
        const auto span = static_cast<std::uint32_t>(high) - static_cast<std::uint32_t>(low);
        const std::uint32_t step = span == 0xFFFFFFFFU ? Next() : Next() % (span + 1);
        return static_cast<int>(static_cast<std::uint32_t>(low) + step);
    }

    BYTE Byte() {
        return static_cast<BYTE>(Next());
    }
    bool Chance(int percent) {
        return Between(1, 100) <= percent;
    }

private:
    std::uint64_t state_;
};

} // namespace test

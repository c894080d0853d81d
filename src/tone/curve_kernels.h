// One 8-bit curve per channel, applied to packed pixels or to single channels.
#pragma once

#include <cstddef>

#include "platform/platform.h"

namespace qv8 {

// A curve as a table of its 256 values, per channel in the order of memory: blue, green, red.
struct CurveTables {
    BYTE channel[3][256];
};

// A curve that shifts: v becomes (v ^ flip) + add, at most 255, then - subtract, at least 0.
struct ByteShift {
    BYTE flip;
    BYTE add;
    BYTE subtract;
};

// The shifts of consecutive bytes. The length is a multiple of a pixel's 3 or 4 bytes and of a vector's 16 or 32.
struct ShiftPattern {
    static constexpr std::size_t kLength = 96;
    BYTE flip[kLength];
    BYTE add[kLength];
    BYTE subtract[kLength];
};

// Source and result do not overlap.
struct CurveKernels {
    // Bytes by a pattern that starts over every 96 bytes.
    void (*shiftBytes)(const ShiftPattern& pattern, const BYTE* source, BYTE* result, std::size_t bytes);
    // One channel, in place.
    void (*shiftChannel)(const ByteShift& shift, BYTE* channel, int count);
    // 24- and 32-bit pixels through tables; the fourth byte is copied.
    void (*lookUp24)(const CurveTables& tables, const BYTE* source, BYTE* result, int count);
    void (*lookUp32)(const CurveTables& tables, const BYTE* source, BYTE* result, int count);
    // One channel through its table, in place.
    void (*lookUpChannel)(const BYTE* table, BYTE* channel, int count);
};

const CurveKernels& TheCurveKernels();

} // namespace qv8

// The inner loops of scaling, over the pixels of one row.
#pragma once

#include <cstdint>

#include "platform/platform.h"

namespace qv8 {

// Neighbours of new pixels in a row of cells, and how they are weighed.
struct ColumnWeights {
    const int* cell; // of each new pixel; the one behind it is the right neighbour
    const float* right;
    const float* left;
};

// Groups of neighbouring pixels in a row.
struct PixelGroups {
    const int* first;
    const int* columns;
    int count;
    int mostColumns;
};

// How sums of so many pixels become their mean, rounded: half of the number is added, then the rest is division.
struct FixedMean {
    WORD half;
    WORD factor;
    WORD shift;
};

// Beyond lines, for loops that take four samples at once.
constexpr int kSlack = 4;
constexpr int kMeansBeyond = 8; // the same of vectors of bytes

struct ResizeKernels {
    void (*widenRow)(const BYTE* row, std::uint32_t* sums, int count);
    void (*addRow)(const BYTE* row, std::uint32_t* sums, int count);
    void (*addSmallRow)(const BYTE* row, WORD* sums, int count);
    // Sums of `columns` pixels by their numbers, rounded.
    void (*average)(const double* sums, const int* columns, int rows, float* result, int count);
    // Means of groups in sums of `rows` rows, rounded; sums of groups stay below 2^31. Of single channels, and of three
    // that lie side by side.
    void (*averageGroups)(const std::uint32_t* sums, const PixelGroups& groups, int rows, BYTE* result);
    void (*averageTriples)(const std::uint32_t* sums, const PixelGroups& groups, int rows, BYTE* result);
    // The same of 16-bit sums, by the number of columns.
    void (*averageSmallGroups)(const WORD* sums, const PixelGroups& groups, const FixedMean* means, BYTE* result);
    void (*averageSmallTriples)(const WORD* sums, const PixelGroups& groups, const FixedMean* means, BYTE* result);
    // Means of two by two packed pixels of 24 bits, rounded; `result` has room for kMeansBeyond bytes more.
    void (*averageFourTriples)(const BYTE* lower, const BYTE* upper, int count, BYTE* result);
    void (*toFloats)(const BYTE* row, float* result, int count);
    // Weighs the cells and their right neighbours; of single channels, and of three side by side.
    void (*blendColumns)(const float* cells, const ColumnWeights& weights, float* result, int count);
    void (*blendTriples)(const float* cells, const ColumnWeights& weights, float* result, int count);
    // Weighs two blended rows; rounds.
    void (*blendRows)(const float* upper, const float* lower, float upperWeight, BYTE* result, int count);
};

const ResizeKernels& TheResizeKernels();

} // namespace qv8

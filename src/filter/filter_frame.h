// The worker of the neighbourhood filters: the picture's rows in a ring of planar rows, a kernel, and the pixels of the
// area written from what the kernel gives.
#pragma once

#include <cstddef>

#include "area/area.h"
#include "frame/progress.h"
#include "pixels/pixel_format.h"

namespace qv8 {

// Kernels may read this many samples beyond the last neighbour of a row, and write as many beyond the last result.
constexpr int kFilterSlack = 64;

// Samples are the 8-bit channels of pixels. A plane holds one channel of each pixel of a row, or, at 24 bits, all three
// side by side where the filter treats all channels alike.
enum Plane { kBlue, kGreen, kRed, kLuminance, kPlaneCount };

// The surroundings of the row that is being filtered.
struct FilterRow {
    int row = 0;    // in the picture, from the bottom
    int height = 0; // of the picture
    int width = 0;  // of the picture in pixels
    int step = 1;   // samples from one pixel of a plane to the next
    bool isGrey = false;
    // The samples of row `row` + dy, |dy| at most the filter's reach: rows[plane][dy] is the one of column 0. Rows
    // beyond the picture's border are those at the border. Within a row, the filter's reach in pixels can be read
    // beyond both ends, where the pixel at the border repeats. Grey pictures have the planes kBlue and kLuminance, both
    // their grey.
    const BYTE* const* rows[kPlaneCount] = {};
    // The filter's own memory for each plane, zero before the first row, that many bytes for each sample of a row and
    // its two ends of reach + kFilterSlack pixels. Points at column 0.
    std::byte* scratch[3] = {};
};

struct Filter {
    // Filters the samples `begin` to `begin` + `count` - 1 of one plane: any channel, all treated alike.
    using FilterSamples = void (*)(const void* context, const FilterRow& at, Plane plane, int begin, int count,
                                   BYTE* result);
    // Filters the pixels `begin` to `end` - 1, all channels of each at once. In grey pictures all planes of the result
    // are the same.
    using FilterPixels = void (*)(const void* context, const FilterRow& at, int begin, int end,
                                  const PlanarRow& result);

    enum class Result {
        kColours, // channels, or grey levels
        kGrey,    // `filterPixels` writes grey levels to the blue plane, which become all channels
        // `filterPixels` writes to the blue plane where the pixel is copied from, untouched: 4 (dy + 1) + dx + 1. In
        // 8-bit pictures it writes the new indices themselves.
        kNeighbour,
    };

    bool valid = true; // whether the filter's own parameters are good; else status 5
    int reach = 0;     // rows and columns on each side
    const void* context = nullptr;
    FilterSamples filterSamples = nullptr; // one of these two is null
    FilterPixels filterPixels = nullptr;
    Result result = Result::kColours;
    bool wantsLuminance = false;
    bool wantsColours = true; // `filterPixels` may do with the luminance alone: planes of colours are not filled then
    bool channels[3] = {true, true, true}; // blue, green, red to be filtered; `filterSamples` only
    bool isFloatless = false;              // rows are filtered without a floating-point number
    int scratchBytes = 0;                  // for each sample
    bool endsAtBorder =
        false; // no result depends on what is read beyond the picture's border, so nothing repeats there
};

// Filters the area of a grey ramp or true-colour picture; another one gives status 7. Statuses as frame/status.h has
// them.
HGLOBAL ApplyFilter(const AreaArguments& areaArguments, const Filter& filter, const Progress& progress);

} // namespace qv8

// What smooth scaling blends: a cell for each group of columns in a group of rows, a pixel or the mean of its group.
#pragma once

#include "frame/span.h"
#include "geometry/resize_copy.h"
#include "geometry/resize_kernels.h"
#include "pixels/pixel_format.h"

namespace qv8 {

constexpr int kMaxChannels = 3;

// Columns of groups whose sums are tried to be kept in 16 bits.
constexpr int kMaxSmallColumns = 16;

// A row of cells of each channel, and one cell behind the last as its neighbour.
struct CellRow {
    float* channels[kMaxChannels] = {};
};

// 24-bit pixels stay as they are, as one channel of three samples a pixel, unless groups are too large for that.
struct CellReader {
    const ResizeTask& task;
    const ResizeKernels& kernels = TheResizeKernels();
    PixelFormat format = {};
    int channels = 1;
    int step = 1;         // samples of a pixel in a channel
    bool sumsFit = false; // the sums of groups fit 31 bits
    int cellCount = 0;
    int fewestColumns = 0; // of a cell
    int mostColumns = 0;
    Span pairs = {}; // a run of cells of two columns each
    LockedBlock block = {};

    // All in the block.
    int* groupFirst = nullptr;
    int* groupCount = nullptr;
    BYTE* decoded[kMaxChannels] = {};
    std::uint32_t* sums[kMaxChannels] = {};
    double* cellSums[kMaxChannels] = {}; // where sums do not fit
    BYTE* means[kMaxChannels] = {};
    WORD* smallSums[kMaxChannels] = {}; // where these suffice
    FixedMean fixedMeans[kMaxSmallColumns + 1] = {};

    const BYTE* line[kMaxChannels] = {}; // the row that was read last

    bool IsPacked() const {
        return step != 1;
    }
    std::size_t Samples(int pixels) const {
        return static_cast<std::size_t>(pixels) * static_cast<std::size_t>(step);
    }
};

// False when memory is short; sets status 3.
bool MakeCellReader(CellReader& reader);

void ReadLine(CellReader& reader, int row);

// The cells of a group of rows.
void ReadCells(CellReader& reader, const PixelGroup& rows, const CellRow& cells);

// The same in `means`, rounded already. Only where sums fit.
void ReadMeans(CellReader& reader, const PixelGroup& rows);

// The first pixels of the groups in one row, as they are.
void ReadFirstPixels(CellReader& reader, int row, const CellRow& cells);

} // namespace qv8

// Included once for each target. All arithmetic is in single precision in the order written: it decides the results.

void AddRow(const BYTE* __restrict row, std::uint32_t* __restrict sums, int count) {
    for (int i = 0; i < count; ++i) {
        sums[i] += row[i];
    }
}

void Average(const double* __restrict sums, const int* __restrict columns, int rows, float* __restrict result,
             int count) {
    const auto height = static_cast<float>(rows);
    for (int i = 0; i < count; ++i) {
        const float mean = static_cast<float>(sums[i]) / (static_cast<float>(columns[i]) * height) + 0.5F;
        result[i] = static_cast<float>(static_cast<int>(mean));
    }
}

void ToFloats(const BYTE* __restrict row, float* __restrict result, int count) {
    for (int i = 0; i < count; ++i) {
        result[i] = static_cast<float>(row[i]);
    }
}

void BlendColumns(const float* __restrict cells, const ColumnWeights& weights, float* __restrict result, int count) {
    const int* __restrict const cell = weights.cell;
    const float* __restrict const right = weights.right;
    const float* __restrict const left = weights.left;
    for (int i = 0; i < count; ++i) {
        result[i] = cells[cell[i] + 1] * right[i] + cells[cell[i]] * left[i];
    }
}

void BlendRows(const float* __restrict upper, const float* __restrict lower, float upperWeight, BYTE* __restrict result,
               int count) {
    const float lowerWeight = 1.0F - upperWeight;
    for (int i = 0; i < count; ++i) {
        const auto value = static_cast<int>(upper[i] * upperWeight + lower[i] * lowerWeight + 0.5F);
        result[i] = static_cast<BYTE>(value < 0 ? 0 : value > 255 ? 255 : value);
    }
}

constexpr ResizeKernels kKernels = {AddRow, Average, ToFloats, BlendColumns, BlendRows};

// Compiled once per target, see luminance.cpp.

void Luminance(const PlanarRow& row, BYTE* __restrict result, int count) {
    const BYTE* __restrict const blue = row.blue;
    const BYTE* __restrict const green = row.green;
    const BYTE* __restrict const red = row.red;
    for (int i = 0; i < count; ++i) {
        const float sum = static_cast<float>(red[i]) * kRed + static_cast<float>(green[i]) * kGreen +
                          static_cast<float>(blue[i]) * kBlue;
        result[i] = static_cast<BYTE>(static_cast<int>(sum));
    }
}

void GreyLevel(const PlanarRow& row, BYTE* __restrict result, int count) {
    const BYTE* __restrict const blue = row.blue;
    const BYTE* __restrict const green = row.green;
    const BYTE* __restrict const red = row.red;
    for (int i = 0; i < count; ++i) {
        const double sum = static_cast<double>(static_cast<float>(red[i]) * kRed) +
                           static_cast<double>(static_cast<float>(green[i]) * kGreen) +
                           static_cast<double>(static_cast<float>(blue[i]) * kBlue);
        result[i] = static_cast<BYTE>(static_cast<int>(sum));
    }
}

constexpr LuminanceKernels kKernels = {Luminance, GreyLevel};

// Compiled once per target, see luminance.cpp.

void Luminance(const PlanarRow& channels, BYTE* result, int count) {
    const PlanarRow row = channels; // which storing bytes cannot change
    const auto step = [](const BYTE* blue, const BYTE* green, const BYTE* red, BYTE* luminance) {
        StoreBytes(luminance,
                   LoadBytes(red) * Spread(kRed) + LoadBytes(green) * Spread(kGreen) + LoadBytes(blue) * Spread(kBlue));
    };
    int i = 0;
    for (; i + kLanes <= count; i += kLanes) {
        step(row.blue + i, row.green + i, row.red + i, result + i);
    }
    if (i < count) {
        const auto rest = static_cast<std::size_t>(count - i);
        BYTE rests[3][kLanes] = {};
        BYTE luminance[kLanes];
        std::memcpy(rests[0], row.blue + i, rest);
        std::memcpy(rests[1], row.green + i, rest);
        std::memcpy(rests[2], row.red + i, rest);
        step(rests[0], rests[1], rests[2], luminance);
        std::memcpy(result + i, luminance, rest);
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

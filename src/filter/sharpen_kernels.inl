// Compiled once per target, see each_target.h.

#include "pixels/ycc_lanes.inl"

template <std::size_t kRows>
inline void DifferencesOf(const BYTE* const* rows, const BYTE* centre, int count, short* result) {
    const BYTE* own[kRows];
    for (std::size_t r = 0; r < kRows; ++r) {
        own[r] = rows[r];
    }
    for (int i = 0; i < count; i += kWordLanes) {
        Words difference = LoadBytesAsWords(centre + i) * BroadcastWord(static_cast<int>(kRows) * 3);
        for (const BYTE* const row : own) {
            difference -= LoadBytesAsWords(row + i - 1) + LoadBytesAsWords(row + i) + LoadBytesAsWords(row + i + 1);
        }
        __builtin_memcpy(result + i, &difference, sizeof difference);
    }
}

void Differences(const BYTE* const* rows, int rowCount, const BYTE* centre, int count, short* result) {
    if (rowCount == 3) {
        DifferencesOf<3>(rows, centre, count, result);
    } else if (rowCount == 2) {
        DifferencesOf<2>(rows, centre, count, result);
    } else {
        DifferencesOf<1>(rows, centre, count, result);
    }
}

inline Floats Sharpened(Floats strength, const BYTE* centre, const short* differences) {
    Ints difference;
    for (int lane = 0; lane < kLanes; ++lane) {
        difference[lane] = differences[lane];
    }
    return LoadBytesAsFloats(centre) + strength * ToFloats(difference);
}

void SharpenGrey(float strength, const BYTE* centre, const short* differences, int count, BYTE* result) {
    for (int i = 0; i < count; i += kLanes) {
        StoreFloatsAsBytes(result + i, Sharpened(Broadcast(strength), centre + i, differences + i));
    }
}

void SharpenColours(float strength, const BYTE* luminance, const short* differences, const PlanarRow& source, int count,
                    const PlanarRow& result) {
    const PlanarRow from = source;
    const PlanarRow to = result;
    for (int i = 0; i < count; i += kLanes) {
        const Colours before = {LoadBytesAsFloats(from.blue + i), LoadBytesAsFloats(from.green + i),
                                LoadBytesAsFloats(from.red + i)};
        const Colours colours = Back(Sharpened(Broadcast(strength), luminance + i, differences + i),
                                     WeightedSum(before, kCrWeights), WeightedSum(before, kCbWeights));
        StoreFloatsAsBytes(to.blue + i, colours.blue);
        StoreFloatsAsBytes(to.green + i, colours.green);
        StoreFloatsAsBytes(to.red + i, colours.red);
    }
}

constexpr SharpenKernels kKernels = {Differences, SharpenGrey, SharpenColours};

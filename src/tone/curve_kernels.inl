// Compiled once per target, see each_target.h.

inline BYTE Shifted(BYTE value, BYTE flip, BYTE add, BYTE subtract) {
    const auto flipped = static_cast<BYTE>(value ^ flip);
    const auto room = static_cast<BYTE>(~flipped); // what can be added before 255 is reached
    const auto raised = static_cast<BYTE>(flipped + (add < room ? add : room));
    return static_cast<BYTE>(raised - (subtract < raised ? subtract : raised));
}

inline Bytes Shifted(Bytes value, Bytes flip, Bytes add, Bytes subtract) {
    return SubtractSaturated(AddSaturated(value ^ flip, add), subtract);
}

void ShiftBytes(const ShiftPattern& pattern, const BYTE* __restrict source, BYTE* __restrict result,
                std::size_t bytes) {
    constexpr std::size_t kLength = ShiftPattern::kLength;
    constexpr std::size_t kVectors = kLength / kByteLanes;
    Bytes flip[kVectors];
    Bytes add[kVectors];
    Bytes subtract[kVectors];
    __builtin_memcpy(flip, pattern.flip, kLength);
    __builtin_memcpy(add, pattern.add, kLength);
    __builtin_memcpy(subtract, pattern.subtract, kLength);
    std::size_t done = 0;
    for (; done + kLength <= bytes; done += kLength) {
        for (std::size_t k = 0; k < kVectors; ++k) {
            const std::size_t at = done + k * kByteLanes;
            StoreBytes(result + at, Shifted(LoadBytes(source + at), flip[k], add[k], subtract[k]));
        }
    }
    for (std::size_t i = 0; done + i < bytes; ++i) {
        result[done + i] = Shifted(source[done + i], pattern.flip[i], pattern.add[i], pattern.subtract[i]);
    }
}

void ShiftChannel(const ByteShift& shift, BYTE* channel, int count) {
    const ByteShift own = shift;
    for (int i = 0; i < count; ++i) {
        channel[i] = Shifted(channel[i], own.flip, own.add, own.subtract);
    }
}

template <int kBytes>
inline void LookUpPacked(const CurveTables& tables, const BYTE* __restrict source, BYTE* __restrict result, int count) {
    for (int i = 0; i < count; ++i) {
        result[kBytes * i] = tables.channel[0][source[kBytes * i]];
        result[kBytes * i + 1] = tables.channel[1][source[kBytes * i + 1]];
        result[kBytes * i + 2] = tables.channel[2][source[kBytes * i + 2]];
        if constexpr (kBytes == 4) {
            result[kBytes * i + 3] = source[kBytes * i + 3];
        }
    }
}

void LookUp24(const CurveTables& tables, const BYTE* source, BYTE* result, int count) {
    LookUpPacked<3>(tables, source, result, count);
}
void LookUp32(const CurveTables& tables, const BYTE* source, BYTE* result, int count) {
    LookUpPacked<4>(tables, source, result, count);
}

void LookUpChannel(const BYTE* __restrict table, BYTE* __restrict channel, int count) {
    for (int i = 0; i < count; ++i) {
        channel[i] = table[channel[i]];
    }
}

constexpr CurveKernels kKernels = {ShiftBytes, ShiftChannel, LookUp24, LookUp32, LookUpChannel};

// ShuffleBytes for processors without an instruction for it: the byte at each place, or 0 for a place from 128 on.

inline Bytes ShuffleBytes(Bytes value, Bytes places) {
    Bytes result;
    for (int lane = 0; lane != kByteLanes; ++lane) {
        result[lane] = places[lane] < 128 ? value[places[lane] % kByteLanes] : BYTE{0};
    }
    return result;
}

// Words in memory, kWordLanes at a time. Included by kernels after their lanes.

inline Words LoadWords(const WORD* words) {
    Words loaded;
    __builtin_memcpy(&loaded, words, sizeof loaded);
    return loaded;
}
inline void StoreWords(WORD* words, Words value) {
    __builtin_memcpy(words, &value, sizeof value);
}

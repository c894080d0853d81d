// 24-bit pixels to greys without a detour over planar channels: a byte shuffle takes each channel of eight pixels
// straight into eight numbers, and another one writes each grey three times.
void Grey24(const BYTE* source, BYTE* result, int count) {
    // Four pixels, twelve bytes, in each half of a register.
    const __m256i blueBytes =
        _mm256_broadcastsi128_si256(_mm_setr_epi8(0, -1, -1, -1, 3, -1, -1, -1, 6, -1, -1, -1, 9, -1, -1, -1));
    const __m256i isUsed = _mm256_cmpgt_epi8(blueBytes, _mm256_set1_epi8(-1));
    const __m256i step = _mm256_and_si256(isUsed, _mm256_set1_epi8(1)); // to the next channel
    const __m256i greenBytes = _mm256_add_epi8(blueBytes, step);
    const __m256i redBytes = _mm256_add_epi8(greenBytes, step);
    const __m256i threeTimes =
        _mm256_broadcastsi128_si256(_mm_setr_epi8(0, 0, 0, 4, 4, 4, 8, 8, 8, 12, 12, 12, -1, -1, -1, -1));
    int i = 0;
    for (; i + 10 <= count; i += 8) { // 28 bytes are read and written for these 24
        const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(source + 3 * i));
        const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(source + 3 * i + 12));
        const __m256i pixels = _mm256_inserti128_si256(_mm256_castsi128_si256(low), high, 1);
        const Floats red = _mm256_cvtepi32_ps(_mm256_shuffle_epi8(pixels, redBytes));
        const Floats green = _mm256_cvtepi32_ps(_mm256_shuffle_epi8(pixels, greenBytes));
        const Floats blue = _mm256_cvtepi32_ps(_mm256_shuffle_epi8(pixels, blueBytes));
        const Floats sum = red * Spread(kRed) + green * Spread(kGreen) + blue * Spread(kBlue);
        const __m256i greys = _mm256_shuffle_epi8(_mm256_cvttps_epi32(sum), threeTimes);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(result + 3 * i), _mm256_castsi256_si128(greys));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(result + 3 * i + 12), _mm256_extracti128_si256(greys, 1));
    }
    for (; i < count; ++i) {
        BYTE grey;
        Luminance({const_cast<BYTE*>(source) + 3 * i, const_cast<BYTE*>(source) + 3 * i + 1,
                   const_cast<BYTE*>(source) + 3 * i + 2},
                  &grey, 1);
        result[3 * i] = result[3 * i + 1] = result[3 * i + 2] = grey;
    }
}

constexpr LuminanceKernels kKernels = {Luminance, GreyLevel, Grey24};

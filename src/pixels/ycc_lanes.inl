// Luminance and colour differences of colours, for vectors of a target: included by kernel files after its lanes. Every
// product and sum is single precision in the written order, and every component is truncated to an integer: that is
// what the results are made of.

struct Colours {
    Floats blue;
    Floats green;
    Floats red;
};

struct Components {
    Ints y;
    Ints cr;
    Ints cb;
};

inline Floats WeightedSum(const Colours& c, const ColourWeights& weights) {
    return c.red * Broadcast(static_cast<float>(weights.red)) + c.green * Broadcast(static_cast<float>(weights.green)) +
           c.blue * Broadcast(static_cast<float>(weights.blue));
}

// `offset` is added last: 128 for components in 0..255, 0, which changes no sum, for components around 0.
inline Components Forward(const Colours& c, Floats offset) {
    const Floats y = WeightedSum(c, kLuminanceWeights);
    const Floats cr = WeightedSum(c, kCrWeights) + offset;
    const Floats cb = WeightedSum(c, kCbWeights) + offset;
    return {Truncate(y), Truncate(cr), Truncate(cb)};
}

// The way back, from red and blue difference around 0; in the written order too.
inline Colours Back(Floats y, Floats cr, Floats cb) {
    return {y + Broadcast(1.772F) * cb, y - Broadcast(0.34414F) * cb - Broadcast(0.71414F) * cr,
            y + Broadcast(1.402F) * cr};
}

// Runs `change`, from colours to colours, over whole vectors; what is left over goes through a vector of its own.
template <class Change>
inline void ForEachVector(const PlanarRow& channels, int count, Change change) {
    const PlanarRow row = channels; // which storing bytes cannot change
    const auto step = [&](BYTE * blue, BYTE * green, BYTE * red) __attribute__((always_inline)) {
        const Colours changed =
            change(Colours{LoadBytesAsFloats(blue), LoadBytesAsFloats(green), LoadBytesAsFloats(red)});
        StoreFloatsAsBytes(blue, changed.blue);
        StoreFloatsAsBytes(green, changed.green);
        StoreFloatsAsBytes(red, changed.red);
    };
    int i = 0;
    for (; i + kLanes <= count; i += kLanes) {
        step(row.blue + i, row.green + i, row.red + i);
    }
    if (i < count) {
        const auto rest = static_cast<std::size_t>(count - i);
        BYTE blue[kLanes] = {};
        BYTE green[kLanes] = {};
        BYTE red[kLanes] = {};
        __builtin_memcpy(blue, row.blue + i, rest);
        __builtin_memcpy(green, row.green + i, rest);
        __builtin_memcpy(red, row.red + i, rest);
        step(blue, green, red);
        __builtin_memcpy(row.blue + i, blue, rest);
        __builtin_memcpy(row.green + i, green, rest);
        __builtin_memcpy(row.red + i, red, rest);
    }
}

// Compiled once per target, see ycc_kernels.cpp. Every product and sum is single precision in the written order, and
// every component is truncated to an integer in between: that is what the results are made of.

// Runs `change`, from colours to colours, over whole vectors; what is left over goes through a vector of its own.
template <class Change>
inline void ForEachVector(const PlanarRow& channels, int count, Change change) {
    const PlanarRow row = channels; // which storing bytes cannot change
    const auto step = [&](BYTE * blue, BYTE * green, BYTE * red) __attribute__((always_inline)) {
        const Colours changed = change(Colours{LoadBytes(blue), LoadBytes(green), LoadBytes(red)});
        StoreBytes(blue, changed.blue);
        StoreBytes(green, changed.green);
        StoreBytes(red, changed.red);
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
        std::memcpy(blue, row.blue + i, rest);
        std::memcpy(green, row.green + i, rest);
        std::memcpy(red, row.red + i, rest);
        step(blue, green, red);
        std::memcpy(row.blue + i, blue, rest);
        std::memcpy(row.green + i, green, rest);
        std::memcpy(row.red + i, red, rest);
    }
}

inline Floats Shift(Ints value, const ComponentShift& shift) {
    using Unsigned = unsigned __attribute__((vector_size(sizeof(Ints))));
    const auto flipped = reinterpret_cast<Unsigned>(value ^ SpreadInt(shift.flip));
    return ToFloats(reinterpret_cast<Ints>(flipped + reinterpret_cast<Unsigned>(SpreadInt(shift.add))));
}

void ShiftRow(const YccShift& shift, const PlanarRow& row, int count) {
    const YccShift own = shift;
    ForEachVector(
        row, count, [own](const Colours& colours) __attribute__((always_inline)) {
            const Components c = Forward(colours, Spread(128.0F));
            return Back(Shift(c.y, own.y), Shift(c.cr, own.cr), Shift(c.cb, own.cb));
        });
}

void ScaleRow(float factor, const PlanarRow& row, int count) {
    ForEachVector(
        row, count, [factor](const Colours& colours) __attribute__((always_inline)) {
            const Components c = Forward(colours, Spread(0.0F));
            return Back(ToFloats(c.y), ToFloats(c.cr) * Spread(factor), ToFloats(c.cb) * Spread(factor));
        });
}

inline Floats LookUp(Ints value, const float* table) {
    Floats result;
    for (int lane = 0; lane != kLanes; ++lane) {
        result[lane] = table[value[lane]];
    }
    return result;
}

void MapRow(const YccTables& tables, const PlanarRow& row, int count) {
    ForEachVector(
        row, count, [&tables](const Colours& colours) __attribute__((always_inline)) {
            const Components c = Forward(colours, Spread(128.0F));
            return Back(LookUp(c.y, tables.y), LookUp(c.cr, tables.cr), LookUp(c.cb, tables.cb));
        });
}

constexpr YccKernels kKernels = {ShiftRow, MapRow, ScaleRow};

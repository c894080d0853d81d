// Compiled once per target, see ycc_kernels.cpp. Every product and sum is single precision in the written order, and
// every component is truncated to an integer in between: that is what the results are made of.

struct Colour {
    float blue;
    float green;
    float red;
};

inline Colour Load(const BYTE* blue, const BYTE* green, const BYTE* red, int i) {
    return {static_cast<float>(blue[i]), static_cast<float>(green[i]), static_cast<float>(red[i])};
}

inline int ForwardY(const Colour& c) {
    return static_cast<int>(c.red * 0.299F + c.green * 0.587F + c.blue * 0.114F);
}
// `offset` is 128 for components in 0..255, 0 for components around 0. Adding 0 changes no sum.
inline int ForwardCr(const Colour& c, float offset) {
    return static_cast<int>(c.red * 0.5F + c.green * -0.41869F + c.blue * -0.08131F + offset);
}
inline int ForwardCb(const Colour& c, float offset) {
    return static_cast<int>(c.red * -0.16874F + c.green * -0.33126F + c.blue * 0.5F + offset);
}

// Clamped first: the truncated value is the same, and no value is beyond an integer.
inline BYTE ToByte(float value) {
    const float floored = value > 0.0F ? value : 0.0F;
    return static_cast<BYTE>(static_cast<int>(floored < 255.0F ? floored : 255.0F));
}

inline BYTE BackBlue(float y, float cb) {
    return ToByte(y + 1.772F * cb);
}
inline BYTE BackGreen(float y, float cr, float cb) {
    return ToByte(y - 0.34414F * cb - 0.71414F * cr);
}
inline BYTE BackRed(float y, float cr) {
    return ToByte(y + 1.402F * cr);
}

inline float Shift(int value, int flip, int add) {
    return static_cast<float>(static_cast<int>(static_cast<unsigned>(value ^ flip) + static_cast<unsigned>(add)));
}

void ShiftRow(const YccShift& shift, const PlanarRow& row, int count) {
    const YccShift own = shift;
    BYTE* __restrict const blue = row.blue;
    BYTE* __restrict const green = row.green;
    BYTE* __restrict const red = row.red;
    for (int i = 0; i < count; ++i) {
        const Colour c = Load(blue, green, red, i);
        const float y = Shift(ForwardY(c), own.y.flip, own.y.add);
        const float cr = Shift(ForwardCr(c, 128.0F), own.cr.flip, own.cr.add);
        const float cb = Shift(ForwardCb(c, 128.0F), own.cb.flip, own.cb.add);
        blue[i] = BackBlue(y, cb);
        green[i] = BackGreen(y, cr, cb);
        red[i] = BackRed(y, cr);
    }
}

void ScaleRow(float factor, const PlanarRow& row, int count) {
    BYTE* __restrict const blue = row.blue;
    BYTE* __restrict const green = row.green;
    BYTE* __restrict const red = row.red;
    for (int i = 0; i < count; ++i) {
        const Colour c = Load(blue, green, red, i);
        const auto y = static_cast<float>(ForwardY(c));
        const float cr = static_cast<float>(ForwardCr(c, 0.0F)) * factor;
        const float cb = static_cast<float>(ForwardCb(c, 0.0F)) * factor;
        blue[i] = BackBlue(y, cb);
        green[i] = BackGreen(y, cr, cb);
        red[i] = BackRed(y, cr);
    }
}

// Three passes over a part that stays in the first-level cache, because table look-ups are no vector code.
void MapRow(const YccTables& tables, const PlanarRow& row, int count) {
    constexpr int kPart = 256;
    int y[kPart];
    int cr[kPart];
    int cb[kPart];
    for (int start = 0; start < count; start += kPart) {
        const int part = count - start < kPart ? count - start : kPart;
        BYTE* __restrict const blue = row.blue + start;
        BYTE* __restrict const green = row.green + start;
        BYTE* __restrict const red = row.red + start;
        for (int i = 0; i < part; ++i) {
            const Colour c = Load(blue, green, red, i);
            y[i] = ForwardY(c);
            cr[i] = ForwardCr(c, 128.0F);
            cb[i] = ForwardCb(c, 128.0F);
        }
        for (int i = 0; i < part; ++i) {
            y[i] = tables.y[y[i]];
            cr[i] = tables.cr[cr[i]];
            cb[i] = tables.cb[cb[i]];
        }
        for (int i = 0; i < part; ++i) {
            const auto newY = static_cast<float>(y[i]);
            const auto newCr = static_cast<float>(cr[i]);
            const auto newCb = static_cast<float>(cb[i]);
            blue[i] = BackBlue(newY, newCb);
            green[i] = BackGreen(newY, newCr, newCb);
            red[i] = BackRed(newY, newCr);
        }
    }
}

constexpr YccKernels kKernels = {ShiftRow, MapRow, ScaleRow};

// Luminance and colour differences in the lanes of vector registers; included after a lanes_*.inl.

struct Colours {
    Floats blue;
    Floats green;
    Floats red;
};

// Red and blue difference around 0. Every product and sum is single precision in this order.
inline Colours Back(Floats y, Floats cr, Floats cb) {
    return {y + Spread(1.772F) * cb, y - Spread(0.34414F) * cb - Spread(0.71414F) * cr, y + Spread(1.402F) * cr};
}

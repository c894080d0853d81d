// Compiled once per target, see each_target.h. All work on whole registers: arrays have room for that.

// The numbers start, start + step ... in the lanes.
inline Doubles Sequence(double start, double step) {
    Doubles result;
    for (int lane = 0; lane < kDoubleLanes; ++lane) {
        result[lane] = start + lane * step;
    }
    return result;
}

// The numerators of s and t are whole numbers below 2^53 all along, so that adding up gives their exact values.
// A pixel with no place gets NaN or worse on the way, which no comparison lets through to a conversion.
// In a parallelogram n is 0 and both divisors are 2, exactly, so that s and t are what is looked for.
template <bool kIsParallelogram>
void Find(const Patch& givenPatch, int x, int y, int count, ScatterPlaces& places) {
    const Patch patch = givenPatch;
    const double fromX = x - patch.originX;
    const double fromY = y - patch.originY;
    Doubles sNumerators = Sequence(patch.upY * fromX - patch.upX * fromY, patch.upY);
    Doubles tNumerators = Sequence(patch.rightX * fromY - patch.rightY * fromX, -patch.rightY);
    const Doubles sStep = BroadcastDouble(patch.upY * kDoubleLanes);
    const Doubles tStep = BroadcastDouble(-patch.rightY * kDoubleLanes);
    const Doubles determinant = BroadcastDouble(patch.determinant);
    const Doubles aRest = BroadcastDouble(patch.a - 1);
    const Doubles bRest = BroadcastDouble(patch.b - 1);
    const Doubles width = BroadcastDouble(patch.width);
    const Doubles height = BroadcastDouble(patch.height);
    const Doubles zero = BroadcastDouble(0);
    const Doubles one = BroadcastDouble(1);
    const Doubles two = BroadcastDouble(2);
    const Doubles smallest = BroadcastDouble(0.0001);
    const FewInts lastRow = FewInts{} + (static_cast<int>(patch.height) - 1);
    for (int i = 0; i < count; i += kDoubleLanes, sNumerators += sStep, tNumerators += tStep) {
        const Doubles s = sNumerators / determinant;
        const Doubles t = tNumerators / determinant;
        Doubles column = width * s;
        Doubles rowFromTop = height - height * t;
        auto hasPlace = t == t; // all of them
        if constexpr (!kIsParallelogram) {
            const Doubles m = bRest * s;
            const Doubles n = aRest * t - m;
            const Doubles discriminant = (n + one) * (n + one) + BroadcastDouble(4) * m;
            const Doubles root = SquareRoot(discriminant);
            const Doubles upDivisor = one - n + root;
            const Doubles rightDivisor = root + n + one;
            column = width * (two * s / rightDivisor);
            rowFromTop = height - height * (two * t / upDivisor);
            hasPlace = (discriminant >= zero) & (upDivisor >= smallest) & (rightDivisor >= smallest);
        }
        // Numbers above -1 become 0 or more when they are cut off.
        hasPlace &= (column > -one) & (column < width) & (rowFromTop > -one) & (rowFromTop < height);
        StoreFewInts(places.columns + i, TruncateDoubles(hasPlace ? column : -one));
        StoreFewInts(places.rows + i, lastRow - TruncateDoubles(hasPlace ? rowFromTop : zero));
    }
}

void FindPlaces(const Patch& patch, int x, int y, int count, ScatterPlaces& places) {
    (patch.a == 1 && patch.b == 1 ? Find<true> : Find<false>)(patch, x, y, count, places);
}

constexpr AffineKernels kKernels = {FindPlaces};

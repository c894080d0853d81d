// Division of 16-bit sums by a product and a shift.
#pragma once

namespace qv8 {

// The quotient is the upper half of a product with the factor, shifted.
struct FixedReciprocal {
    int factor = 0;
    int shift = 0;
    bool exact = false; // for every number up to the largest
};

// The factor is 2^(16 + shift) / divisor, rounded up by less than `excess` / divisor; quotients stay exact as long as
// the number times the excess is below 2^(16 + shift). Divisors and numbers are below 2^16.
inline FixedReciprocal MakeFixedReciprocal(int divisor, int largest) {
    FixedReciprocal result;
    while ((2 << result.shift) < divisor) {
        ++result.shift;
    }
    const int power = 0x10000 << result.shift;
    result.factor = (power + divisor - 1) / divisor;
    const int excess = result.factor * divisor - power;
    result.exact = largest <= 0xFFFF && result.factor <= 0xFFFF && static_cast<long long>(largest) * excess < power;
    return result;
}

} // namespace qv8

// Values of middle rank, by exchanges alone. Included where Min and Max are there for what is ranked: lanes, or
// numbers.

template <class Value>
inline void Order(Value& low, Value& high) {
    const Value smaller = Min(low, high);
    high = Max(low, high);
    low = smaller;
}

// Three values in order.
template <class Value>
struct Sorted {
    Value low;
    Value middle;
    Value high;
};

template <class Value>
inline Sorted<Value> Sort(Value a, Value b, Value c) {
    Order(a, b);
    Order(b, c);
    Order(a, b);
    return {a, b, c};
}

template <class Value>
inline Value Middle(Value a, Value b, Value c) {
    return Max(Min(a, b), Min(Max(a, b), c));
}

// The fifth of nine: of their columns only the highest of the low ones, the middle one of those between and the lowest
// of the high ones can be it.
template <class Value>
inline Value MedianOfColumns(const Sorted<Value>& a, const Sorted<Value>& b, const Sorted<Value>& c) {
    return Middle(Max(Max(a.low, b.low), c.low), Middle(a.middle, b.middle, c.middle),
                  Min(Min(a.high, b.high), c.high));
}

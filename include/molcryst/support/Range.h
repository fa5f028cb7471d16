// Range: an interval whose two ends are each absent, closed or open, with
// the comparison of values supplied by a comparator (DoubleComparator for
// measured values), so that "equal" ends follow the comparator's tolerance.
#ifndef MOLCRYST_SUPPORT_RANGE_H
#define MOLCRYST_SUPPORT_RANGE_H

#include "molcryst/support/DoubleComparator.h"

namespace molcryst {

/// An interval with optional ends. Kinds: 0 no end, 1 closed, 2 open; any
/// other value counts as an open end.
template <class T, class Compare = DoubleComparator>
class Range {
public:
    enum EndKind { none = 0, closed = 1, open = 2 };

    /// No ends: contains everything.
    Range() = default;
    Range(const T& minimum, int minimum_kind, const T& maximum, int maximum_kind, const Compare& less = Compare())
        : min(minimum), min_kind(minimum_kind), max(maximum), max_kind(maximum_kind), less_(less) {}

    bool has_min() const { return min_kind != none; }
    bool has_max() const { return max_kind != none; }

    /// Whether `x` lies on the inner side of the minimum; the end's presence is not looked at.
    bool above_minimum(const T& x) const { return min_kind == closed ? !less_(x, min) : less_(min, x); }
    /// Whether `x` lies on the inner side of the maximum; the end's presence is not looked at.
    bool below_maximum(const T& x) const { return max_kind == closed ? !less_(max, x) : less_(x, max); }

    bool contains(const T& x) const {
        if (!has_min() && !has_max()) return true;
        if (!has_max()) return above_minimum(x);
        if (!has_min()) return below_maximum(x);
        if (is_null()) return false;
        return above_minimum(x) && below_maximum(x);
    }

    /// True only for two open ends that the comparator finds equal: (a, a) holds nothing.
    bool is_null() const {
        return min_kind != none && min_kind != closed && max_kind != none && max_kind != closed &&
               !less_(min, max) && !less_(max, min);
    }

    bool overlaps(const Range& other) const {
        if (is_null() || other.is_null()) return false;
        if (!has_min() && !has_max()) return true;
        if ((has_min() && other.contains(min)) || (has_max() && other.contains(max))) return true;
        if ((other.has_min() && contains(other.min)) || (other.has_max() && contains(other.max))) return true;
        if (has_min() && other.has_min() && !less_(min, other.min) && !less_(other.min, min)) return true;
        if (has_max() && other.has_max() && !less_(max, other.max) && !less_(other.max, max)) return true;
        return false;
    }

    const Compare& comparator() const { return less_; }

    T min = T();
    int min_kind = none;
    T max = T();
    int max_kind = none;

private:
    Compare less_;
};

}  // namespace molcryst

#endif

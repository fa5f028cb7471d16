// DoubleComparator: a strict "less" on doubles that treats values nearer
// than a tolerance as equal, so that ranges and sorted lists of measured
// values do not split hairs below the precision of the data.
#ifndef MOLCRYST_SUPPORT_DOUBLECOMPARATOR_H
#define MOLCRYST_SUPPORT_DOUBLECOMPARATOR_H

namespace molcryst {

/// `a` is less than `b` when it is smaller by at least the tolerance.
class DoubleComparator {
public:
    /// The default of 1e-07 is the kernel's tolerance for values that are the same number.
    explicit DoubleComparator(double tolerance = 1e-07) : tolerance_(tolerance) {}

    /// True when `a < b` and `b - a` is not below the tolerance; NaN is less than nothing.
    bool operator()(const double& a, const double& b) const { return a < b && !(b - a < tolerance_); }

    double tolerance() const { return tolerance_; }

private:
    double tolerance_;  // >= 0; values nearer than this compare equal
};

}  // namespace molcryst

#endif

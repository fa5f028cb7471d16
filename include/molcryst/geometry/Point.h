// Point: a position in three dimensions, orthogonal (Angstrom) or fractional.
//
// A Point is a Vector<double,3> that knows it is a position: the two convert
// freely, and the difference of two points is a vector. The distinction
// matters to Transformation, which moves points by its translation and
// vectors without it.
#ifndef MOLCRYST_GEOMETRY_POINT_H
#define MOLCRYST_GEOMETRY_POINT_H

#include "molcryst/geometry/Vector.h"

namespace molcryst {

/// A position: three doubles.
class Point : public Vector<double, 3> {
public:
    /// The origin.
    Point() = default;
    Point(double x, double y, double z) : Vector<double, 3>(x, y, z) {}
    Point(const Vector<double, 3>& v) : Vector<double, 3>(v) {}  // NOLINT: points and vectors convert freely
    Point(const Array<double, 3>& a) : Vector<double, 3>(a) {}   // NOLINT

    double x() const { return (*this)[0]; }
    double y() const { return (*this)[1]; }
    double z() const { return (*this)[2]; }
};

/// Euclidean distance.
inline double distance(const Point& a, const Point& b) {
    const double dx = a[0] - b[0];
    const double dy = a[1] - b[1];
    const double dz = a[2] - b[2];
    return std::sqrt(dx * dx + dy * dy + dz * dz);
}

/// Lexicographic order on x, then y, then z: the order of sorted point lists.
struct PointCompareXYZ {
    bool operator()(const Point& a, const Point& b) const {
        if (a[0] != b[0]) return a[0] < b[0];
        if (a[1] != b[1]) return a[1] < b[1];
        return a[2] < b[2];
    }
};

/// True for the points that `equals` the given one within the tolerance:
/// every component strictly closer. For std::find_if over point lists.
class PointEqualsPredicate {
public:
    PointEqualsPredicate(const Point& p, double tolerance) : p_(p), tolerance_(tolerance) {}
    bool operator()(const Point& q) const { return equals(p_, q, tolerance_); }

private:
    Point p_;
    double tolerance_;
};

}  // namespace molcryst

#endif

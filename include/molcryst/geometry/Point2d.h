// Point2d: a position in the plane of a chemical diagram.
#ifndef MOLCRYST_GEOMETRY_POINT2D_H
#define MOLCRYST_GEOMETRY_POINT2D_H

#include "molcryst/geometry/Vector.h"

namespace molcryst {

/// A position in two dimensions: two doubles, convertible to and from Vector<double,2>.
class Point2d : public Vector<double, 2> {
public:
    /// The origin.
    Point2d() = default;
    Point2d(double x, double y) : Vector<double, 2>(x, y) {}
    Point2d(const Vector<double, 2>& v) : Vector<double, 2>(v) {}  // NOLINT: points and vectors convert freely
    Point2d(const Array<double, 2>& a) : Vector<double, 2>(a) {}   // NOLINT

    double x() const { return (*this)[0]; }
    double y() const { return (*this)[1]; }
};

/// Euclidean distance.
inline double distance(const Point2d& a, const Point2d& b) {
    const double dx = a[0] - b[0];
    const double dy = a[1] - b[1];
    return std::sqrt(dx * dx + dy * dy);
}

}  // namespace molcryst

#endif

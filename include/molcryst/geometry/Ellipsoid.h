// Ellipsoid: a centre and three semi-axis vectors, the shape of a thermal
// displacement ellipsoid at a chosen probability level.
#ifndef MOLCRYST_GEOMETRY_ELLIPSOID_H
#define MOLCRYST_GEOMETRY_ELLIPSOID_H

#include <iosfwd>

#include "molcryst/geometry/Point.h"

namespace molcryst {

/// The points centre + sum of s_i * axis_i with sum of s_i^2 at most 1.
class Ellipsoid {
public:
    /// A point: centre at the origin, zero axes.
    Ellipsoid() = default;
    Ellipsoid(const Point& centre, const Vector<double, 3>& axis1, const Vector<double, 3>& axis2,
              const Vector<double, 3>& axis3);

    const Point& centre() const { return centre_; }
    /// Semi-axis i, counted from 0.
    const Vector<double, 3>& axis(int i) const { return axes_[i]; }

    /// 4/3 pi times the volume of the parallelepiped of the axes.
    double volume() const;
    /// Whether `p` lies inside, surface included. An ellipsoid with
    /// dependent axes is flat and contains no point off its centre's plane;
    /// it is treated as containing only its centre.
    bool contains(const Point& p) const;

    bool operator==(const Ellipsoid& e) const;
    bool operator!=(const Ellipsoid& e) const { return !(*this == e); }

    /// "centre (x, y, z) axes (..) (..) (..)".
    void print(std::ostream& os) const;

private:
    Point centre_;
    Array<Vector<double, 3>, 3> axes_;
};

std::ostream& operator<<(std::ostream& os, const Ellipsoid& e);

}  // namespace molcryst

#endif

// Plane: a plane in space by its unit normal n and its signed distance d
// from the origin, the points p with n.p = d. Mean planes of molecules and
// the slicing plane of a crystal view are Planes.
//
// Archive layout (32 bytes): the normal as three doubles, then the distance.
#ifndef MOLCRYST_GEOMETRY_PLANE_H
#define MOLCRYST_GEOMETRY_PLANE_H

#include <iosfwd>
#include <vector>

#include "molcryst/geometry/Point.h"
#include "molcryst/support/Archive.h"

namespace molcryst {

/// A plane by unit normal and distance from the origin.
class Plane {
public:
    /// The xy plane: normal (0, 0, 1), distance 0.
    Plane();
    /// The plane with the direction of `normal`, scaled to unit length, at
    /// signed distance `distance` from the origin along it. A zero normal
    /// throws std::invalid_argument.
    Plane(const Vector<double, 3>& normal, double distance);
    /// The least-squares plane of the points: through their centroid, normal
    /// along the direction of least spread. The normal is turned so that the
    /// distance is positive; through the origin, so that its largest
    /// component is positive. Fewer than three points leave the plane
    /// underdetermined and it is still defined: none gives the xy plane; one
    /// point, the plane parallel to xy through it; two, a plane through both.
    explicit Plane(const std::vector<Point>& points);

    const Vector<double, 3>& normal() const { return normal_; }
    double distance() const { return distance_; }

    /// Signed distance of `p` from the plane, positive on the side the normal points to.
    double signed_distance(const Point& p) const { return normal_.dot(p) - distance_; }
    /// The foot of the perpendicular from `p`.
    Point project(const Point& p) const { return Point(p - normal_ * signed_distance(p)); }

    bool operator==(const Plane& p) const { return normal_ == p.normal_ && distance_ == p.distance_; }
    bool operator!=(const Plane& p) const { return !(*this == p); }

    /// "normal (x, y, z) distance d".
    void print(std::ostream& os) const;
    void write(Archive& ar) const;
    /// Reads the layout above; a normal that is not of unit length, or values
    /// that are not finite, throw std::runtime_error.
    void read(Archive& ar);

private:
    Vector<double, 3> normal_;  // unit length
    double distance_ = 0.0;     // Angstrom, along normal_
};

std::ostream& operator<<(std::ostream& os, const Plane& p);
Archive& operator<<(Archive& ar, const Plane& p);
Archive& operator>>(Archive& ar, Plane& p);

}  // namespace molcryst

#endif

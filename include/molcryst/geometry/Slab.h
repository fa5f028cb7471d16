// Slab: the region between two parallel planes, the cut of a sliced crystal
// view. A Slab is a Solid.
#ifndef MOLCRYST_GEOMETRY_SLAB_H
#define MOLCRYST_GEOMETRY_SLAB_H

#include "molcryst/geometry/Box.h"
#include "molcryst/geometry/Plane.h"

namespace molcryst {

/// The points within half the thickness of a plane, on either side: the
/// plane runs through the middle of the slab.
class Slab : public Solid {
public:
    /// A negative or undefined thickness throws std::invalid_argument.
    Slab(const Plane& plane, double thickness);

    const Plane& plane() const { return plane_; }
    double thickness() const { return thickness_; }

    bool contains(const Point& p) const override;
    /// Infinite along every axis, except the one axis that the normal lies
    /// along, if it lies along one.
    Box bounding_box() const override;

private:
    Plane plane_;
    double thickness_;  // Angstrom, >= 0
};

}  // namespace molcryst

#endif

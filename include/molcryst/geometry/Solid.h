// Solid: a region of space in one coordinate frame, the shape that symmetry
// generation fills with molecules (a packing box, a slab, their intersection).
//
// A Solid knows nothing of cells; TransformedSolid says in which frame,
// orthogonal or fractional, a Solid stands.
#ifndef MOLCRYST_GEOMETRY_SOLID_H
#define MOLCRYST_GEOMETRY_SOLID_H

#include "molcryst/geometry/Point.h"

namespace molcryst {

class Box;

/// A region of space; polymorphic.
class Solid {
public:
    virtual ~Solid();

    /// Whether `p` lies inside the solid, its boundary included.
    virtual bool contains(const Point& p) const = 0;

    /// The smallest axis-aligned box holding the solid. Bounds along which
    /// the solid does not end are infinite.
    virtual Box bounding_box() const = 0;
};

}  // namespace molcryst

#endif

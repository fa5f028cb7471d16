// TransformedSolid: a Solid placed in a crystal, either in fractional or in
// orthogonal coordinates, and seen by symmetry generation through the
// fractional coordinates of a Cell: which fractional points lie inside, and
// what fractional box holds the whole.
#ifndef MOLCRYST_GEOMETRY_TRANSFORMEDSOLID_H
#define MOLCRYST_GEOMETRY_TRANSFORMEDSOLID_H

#include "molcryst/geometry/Box.h"

namespace molcryst {

class Cell;

/// A region of a crystal, queried in fractional coordinates; polymorphic.
class TransformedSolid {
public:
    virtual ~TransformedSolid();

    /// Whether the fractional point `fractional` of `cell` lies inside.
    virtual bool contains(const Cell& cell, const Point& fractional) const = 0;

    /// A box in fractional coordinates of `cell` that holds the region. Its
    /// bounds may be infinite where the region does not end.
    virtual Box fractional_box(const Cell& cell) const = 0;
};

}  // namespace molcryst

#endif

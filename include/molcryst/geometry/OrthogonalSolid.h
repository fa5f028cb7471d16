// OrthogonalSolid: a Solid whose coordinates are orthogonal Angstrom, such as
// a slab through a crystal or the region around a molecule.
#ifndef MOLCRYST_GEOMETRY_ORTHOGONALSOLID_H
#define MOLCRYST_GEOMETRY_ORTHOGONALSOLID_H

#include "molcryst/geometry/TransformedSolid.h"
#include "molcryst/support/THandle.h"

namespace molcryst {

/// A Solid in orthogonal coordinates.
class OrthogonalSolid : public TransformedSolid {
public:
    /// A null solid throws std::invalid_argument.
    explicit OrthogonalSolid(const THandle<Solid>& solid);

    const THandle<Solid>& solid() const { return solid_; }

    /// Converts the point to orthogonal coordinates and asks the solid.
    bool contains(const Cell& cell, const Point& fractional) const override;
    /// The solid's bounding box carried into fractional coordinates: the
    /// fractional bounding box of that orthogonal box.
    Box fractional_box(const Cell& cell) const override;

private:
    THandle<Solid> solid_;
};

}  // namespace molcryst

#endif

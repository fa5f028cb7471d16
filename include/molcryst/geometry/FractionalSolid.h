// FractionalSolid: a Solid whose coordinates are fractional, such as the
// packing box of a crystal view in units of the cell edges.
#ifndef MOLCRYST_GEOMETRY_FRACTIONALSOLID_H
#define MOLCRYST_GEOMETRY_FRACTIONALSOLID_H

#include "molcryst/geometry/TransformedSolid.h"
#include "molcryst/support/THandle.h"

namespace molcryst {

/// A Solid in fractional coordinates.
class FractionalSolid : public TransformedSolid {
public:
    /// A null solid throws std::invalid_argument.
    explicit FractionalSolid(const THandle<Solid>& solid);

    const THandle<Solid>& solid() const { return solid_; }

    bool contains(const Cell& cell, const Point& fractional) const override;
    /// The solid's own bounding box.
    Box fractional_box(const Cell& cell) const override;

private:
    THandle<Solid> solid_;
};

}  // namespace molcryst

#endif

// TransformedSolidComposite: the intersection of two regions of a crystal,
// such as a slab cut within a packing box.
#ifndef MOLCRYST_GEOMETRY_TRANSFORMEDSOLIDCOMPOSITE_H
#define MOLCRYST_GEOMETRY_TRANSFORMEDSOLIDCOMPOSITE_H

#include "molcryst/geometry/TransformedSolid.h"
#include "molcryst/support/THandle.h"

namespace molcryst {

/// The points inside both regions.
class TransformedSolidComposite : public TransformedSolid {
public:
    /// A null region throws std::invalid_argument.
    TransformedSolidComposite(const THandle<TransformedSolid>& first, const THandle<TransformedSolid>& second);

    const THandle<TransformedSolid>& first() const { return first_; }
    const THandle<TransformedSolid>& second() const { return second_; }

    bool contains(const Cell& cell, const Point& fractional) const override;
    /// The intersection of the two regions' boxes.
    Box fractional_box(const Cell& cell) const override;

private:
    THandle<TransformedSolid> first_;
    THandle<TransformedSolid> second_;
};

}  // namespace molcryst

#endif

#include "molcryst/geometry/TransformedSolid.h"

#include <stdexcept>

#include "molcryst/geometry/Cell.h"
#include "molcryst/geometry/FractionalSolid.h"
#include "molcryst/geometry/OrthogonalSolid.h"
#include "molcryst/geometry/TransformedSolidComposite.h"

namespace molcryst {

TransformedSolid::~TransformedSolid() = default;

FractionalSolid::FractionalSolid(const THandle<Solid>& solid) : solid_(solid) {
    if (solid.unhand() == nullptr)
        throw std::invalid_argument("FractionalSolid::FractionalSolid(const THandle<Solid>&) solid is a null pointer");
}

bool FractionalSolid::contains(const Cell&, const Point& fractional) const { return solid_->contains(fractional); }

Box FractionalSolid::fractional_box(const Cell&) const { return solid_->bounding_box(); }

OrthogonalSolid::OrthogonalSolid(const THandle<Solid>& solid) : solid_(solid) {
    if (solid.unhand() == nullptr)
        throw std::invalid_argument("OrthogonalSolid::OrthogonalSolid(const THandle<Solid>&) solid is a null pointer");
}

bool OrthogonalSolid::contains(const Cell& cell, const Point& fractional) const {
    return solid_->contains(cell.orthogonal(fractional));
}

Box OrthogonalSolid::fractional_box(const Cell& cell) const {
    return transform_box(cell.frac_from_orth(), Vector<double, 3>(), solid_->bounding_box());
}

TransformedSolidComposite::TransformedSolidComposite(const THandle<TransformedSolid>& first,
                                                     const THandle<TransformedSolid>& second)
    : first_(first), second_(second) {
    if (first.unhand() == nullptr || second.unhand() == nullptr)
        throw std::invalid_argument(
            "TransformedSolidComposite::TransformedSolidComposite(const THandle<TransformedSolid>&, const "
            "THandle<TransformedSolid>&) solid is a null pointer");
}

bool TransformedSolidComposite::contains(const Cell& cell, const Point& fractional) const {
    return first_->contains(cell, fractional) && second_->contains(cell, fractional);
}

Box TransformedSolidComposite::fractional_box(const Cell& cell) const {
    return first_->fractional_box(cell).intersection(second_->fractional_box(cell));
}

}  // namespace molcryst

// MoleculeTransformation: an affine map applied to every atom of a molecule
// that has a site. Each such atom receives a new site, so that a site it
// shares with an atom of another molecule stays where it was.
#ifndef MOLCRYST_EDIT_MOLECULETRANSFORMATION_H
#define MOLCRYST_EDIT_MOLECULETRANSFORMATION_H

#include "molcryst/edit/MoleculeGeometryEdit.h"
#include "molcryst/geometry/Cell.h"
#include "molcryst/geometry/Matrix.h"
#include "molcryst/geometry/Transformation.h"

namespace molcryst {

/// Moves a molecule by a Transformation of orthogonal coordinates.
class MoleculeTransformation : public MoleculeGeometryEdit {
public:
    /// The new fractional points come through `cell`, or through the unit
    /// cube when `cell` is null.
    MoleculeTransformation(const HMolecule& molecule, const Transformation& transformation, const HCell& cell);

    /// Each atom with a site gets Site(orthogonal t(p), its fractional
    /// point, the old occupancy); uncertainties and displacement parameters
    /// of the old site are not carried over.
    void apply() const override;
    bool is_absolute() const override { return false; }

    const Transformation& transformation() const { return transformation_; }

private:
    Transformation transformation_;
    Matrix<double, 3, 3> frac_from_orth_;
};

}  // namespace molcryst

#endif

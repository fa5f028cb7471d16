// MoleculeCrystalSymmetryTransformation: a crystal symmetry transformation
// applied in place to the sites of a molecule's atoms.
#ifndef MOLCRYST_EDIT_MOLECULECRYSTALSYMMETRYTRANSFORMATION_H
#define MOLCRYST_EDIT_MOLECULECRYSTALSYMMETRYTRANSFORMATION_H

#include "molcryst/edit/MoleculeGeometryEdit.h"
#include "molcryst/geometry/Cell.h"
#include "molcryst/geometry/CrystalSymmetryTransformation.h"

namespace molcryst {

/// Moves each site of the molecule's atoms to R f + t in fractional space.
/// The edit holds references: the transformation and the cell must outlive it.
class MoleculeCrystalSymmetryTransformation : public MoleculeGeometryEdit {
public:
    MoleculeCrystalSymmetryTransformation(const HMolecule& molecule, const CrystalSymmetryTransformation& transformation,
                                          const Cell& cell)
        : MoleculeGeometryEdit(molecule), transformation_(transformation), cell_(cell) {}

    /// Moves the sites themselves: a site shared with another molecule moves there too.
    void apply() const override;
    bool is_absolute() const override { return false; }

    const CrystalSymmetryTransformation& transformation() const { return transformation_; }
    const Cell& cell() const { return cell_; }

private:
    const CrystalSymmetryTransformation& transformation_;
    const Cell& cell_;
};

}  // namespace molcryst

#endif

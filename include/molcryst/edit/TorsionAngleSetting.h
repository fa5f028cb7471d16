// TorsionAngleSetting: a requested torsion angle over four atoms, the record
// a ConformationSetting works through.
#ifndef MOLCRYST_EDIT_TORSIONANGLESETTING_H
#define MOLCRYST_EDIT_TORSIONANGLESETTING_H

#include <vector>

#include "molcryst/geometry/Angle.h"
#include "molcryst/molecule/Molecule.h"
#include "molcryst/support/THandle.h"

namespace molcryst {

/// The torsion atom1-atom2-atom3-atom4 wanted at `angle_`; the bond (or
/// path) atom2-atom3 is the axis turned about.
class TorsionAngleSetting {
public:
    /// Null atoms, angle 0.
    TorsionAngleSetting() = default;
    /// The atoms at those indices of `molecule`; a null molecule throws
    /// std::invalid_argument, an index outside it std::out_of_range.
    TorsionAngleSetting(const HMolecule& molecule, int atom1, int atom2, int atom3, int atom4, const Angle& angle);
    /// A null atom throws std::invalid_argument.
    TorsionAngleSetting(const HAtom& atom1, const HAtom& atom2, const HAtom& atom3, const HAtom& atom4,
                        const Angle& angle);

    HAtom atom1_, atom2_, atom3_, atom4_;
    Angle angle_;
};

typedef THandle<TorsionAngleSetting> HTorsionAngleSetting;
typedef std::vector<HTorsionAngleSetting> vector_HTorsionAngleSetting;
typedef THandle<vector_HTorsionAngleSetting> Hvector_HTorsionAngleSetting;

}  // namespace molcryst

#endif

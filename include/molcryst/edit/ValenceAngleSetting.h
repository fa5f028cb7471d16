// ValenceAngleSetting: a requested valence angle atom1-atom2-atom3, apex
// atom2. A record only: no edit acts on it yet.
#ifndef MOLCRYST_EDIT_VALENCEANGLESETTING_H
#define MOLCRYST_EDIT_VALENCEANGLESETTING_H

#include "molcryst/geometry/Angle.h"
#include "molcryst/molecule/Molecule.h"
#include "molcryst/support/THandle.h"

namespace molcryst {

/// The angle atom1-atom2-atom3 wanted at `angle_`.
class ValenceAngleSetting {
public:
    /// Null atoms, angle 0.
    ValenceAngleSetting() = default;
    /// The atoms at those indices of `molecule`; a null molecule throws
    /// std::invalid_argument, an index outside it std::out_of_range.
    ValenceAngleSetting(const HMolecule& molecule, int atom1, int atom2, int atom3, const Angle& angle);
    /// A null atom throws std::invalid_argument.
    ValenceAngleSetting(const HAtom& atom1, const HAtom& atom2, const HAtom& atom3, const Angle& angle);

    HAtom atom1_, atom2_, atom3_;
    Angle angle_;
};

typedef THandle<ValenceAngleSetting> HValenceAngleSetting;

}  // namespace molcryst

#endif

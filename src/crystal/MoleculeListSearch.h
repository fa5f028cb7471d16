// The lookups that Crystal and CrystalMaker share over a list of molecules:
// by symmetry tag at an atom index, and by symmetry tag and place.
#ifndef MOLCRYST_SRC_CRYSTAL_MOLECULELISTSEARCH_H
#define MOLCRYST_SRC_CRYSTAL_MOLECULELISTSEARCH_H

#include "molcryst/molecule/Molecule.h"

namespace molcryst {
namespace crystal_detail {

/// The first molecule with more than `index` atoms whose atom `index` has
/// that symmetry tag; a null handle if none.
inline HMolecule find_molecule(const vector_HMolecule& molecules, int index, int symmtag) {
    if (index < 0) return HMolecule();  // no atom has a negative index
    for (const HMolecule& m : molecules)
        if (m->natoms() > index && m->atom(index)->symmtag() == symmtag) return m;
    return HMolecule();
}

/// Asks each molecule in turn for a sited atom of that tag at `p`; on the
/// first hit sets both outputs. Else `index` is -1 and the result false.
inline bool find_atom(const vector_HMolecule& molecules, int symmtag, const Point& p, HMolecule& molecule,
                      int& index) {
    for (const HMolecule& m : molecules) {
        int found = -1;
        if (m->find_atom(symmtag, p, found)) {
            molecule = m;
            index = found;
            return true;
        }
    }
    index = -1;
    return false;
}

}  // namespace crystal_detail
}  // namespace molcryst

#endif

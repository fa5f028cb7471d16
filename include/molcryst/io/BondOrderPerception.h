// BondOrderPerception: bond types of a molecule read from its geometry, for
// what needs real orders where the atom-type rules of the import leave most
// ring and multiple bonds unknown: valence counting, and files for other
// programs.
#ifndef MOLCRYST_IO_BONDORDERPERCEPTION_H
#define MOLCRYST_IO_BONDORDERPERCEPTION_H

#include "molcryst/molecule/Molecule.h"

namespace molcryst {

class BondOrderPerception {
public:
    /// Gives every bond of `molecule` a type from its ends and its length: a
    /// bond to a metal, or with an end without a site, is single; a bond of
    /// a flat five- or six-membered ring of short bonds, whose atoms have at
    /// most three neighbours, is aromatic; any other is single, double or
    /// triple by its length against the thresholds of its pair of elements
    /// (C-C 1.37 and 1.25 A, C-N 1.30 and 1.20, C-O 1.28, C-S 1.70, N-N
    /// 1.30 and 1.15, N-O 1.28, S-O 1.50, P-O 1.53, ...). The two C-O bonds
    /// of a carboxylate, both short, are aromatic, as in SYBYL files.
    static void perceive(Molecule& molecule);
};

}  // namespace molcryst

#endif

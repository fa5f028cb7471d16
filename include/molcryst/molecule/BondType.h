// BondType: the ten kinds of bond, shared by bonds, bond records,
// connectivity bonds and diagram edges.
#ifndef MOLCRYST_MOLECULE_BONDTYPE_H
#define MOLCRYST_MOLECULE_BONDTYPE_H

namespace molcryst {

/// Bond kinds with their values; the valence each contributes is in brackets.
/// The underlying type is fixed so that any stored integer, such as one read
/// from an archive, is a defined value of the type.
enum BondType : int {
    UNKNOWN_BOND = 0,      // not known (valence counting refuses it)
    SINGLE_BOND = 1,       // [1.0] the one rotatable type
    DOUBLE_BOND = 2,       // [2.0]
    TRIPLE_BOND = 3,       // [3.0]
    QUADRUPLE_BOND = 4,    // [4.0]
    AROMATIC_BOND = 5,     // [1.5]
    POLYMERIC_BOND = 6,    // [1.0] counted with single bonds
    DELOCALISED_BOND = 7,  // [1.5]
    RESERVED_BOND = 8,     // legal in a bond but never produced (valence counting refuses it)
    PI_BOND = 9            // [0.0] a bond to a pi system
};

}  // namespace molcryst

#endif

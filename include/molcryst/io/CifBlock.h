// CifBlock: the crystal structure of one CIF data block, as deposited and
// checked: cell, symmetry and atom sites, before anything is built from it.
#ifndef MOLCRYST_IO_CIFBLOCK_H
#define MOLCRYST_IO_CIFBLOCK_H

#include <array>
#include <string>
#include <vector>

#include "molcryst/elements/Element.h"
#include "molcryst/geometry/Cell.h"
#include "molcryst/geometry/Point.h"
#include "molcryst/geometry/UncertainValue.h"

namespace molcryst {

/// One row of the atom-site loop, with its displacement parameters joined in.
struct CifAtomSite {
    enum Displacement { NoDisplacement, Uiso, Uaniso, Biso };

    std::string label;
    std::string type_symbol;  // as written, "" when the loop has none
    Element element;
    int formal_charge = 0;                  // from a type symbol such as "O2-" or "Na1+"
    std::array<UncertainValue, 3> fract;    // fractional x, y, z
    UncertainValue occupancy = 1.0;         // 1 when not given
    Displacement displacement = NoDisplacement;
    UncertainValue u_iso;                   // Angstrom^2; Uiso, or Biso / (8 pi^2)
    std::array<UncertainValue, 6> u_aniso;  // U11 U22 U33 U12 U13 U23, Angstrom^2
    std::string disorder_assembly;          // "" when none
    int disorder_group = 0;                 // 0 when none; negative for a group on a special position
    int multiplicity = 0;                   // _atom_site_symmetry_multiplicity, 0 when not given
    int line = 0;                           // line of the loop that holds the row
};

/// A data block with a usable structure.
struct CifBlock {
    std::string name;  // without "data_"
    int line = 0;      // where the block starts
    std::array<UncertainValue, 3> lengths;  // a, b, c in Angstrom
    std::array<UncertainValue, 3> angles;   // alpha, beta, gamma in degrees
    double published_volume = 0.0;          // _cell_volume, 0 when not given
    int z = 0;                              // _cell_formula_units_Z, 0 when not given
    std::string formula_sum;                // _chemical_formula_sum as written, "" when not given
    std::string formula_moiety;             // _chemical_formula_moiety as written, "" when not given
    Cell cell;                              // with the spacegroup and its operators in file order
    std::vector<std::string> operator_triplets;  // as written in the file, in file order
    std::string symmetry_source;  // "operators", "Hall symbol" or "Hermann-Mauguin name"
    std::string hall_symbol;      // as given, "" when not
    std::string hm_name;          // as given, "" when not
    std::vector<CifAtomSite> atoms;
    std::vector<std::string> warnings;  // "FILE:LINE: ..." lines about what was passed over
};

}  // namespace molcryst

#endif

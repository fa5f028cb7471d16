// What the db subcommands work out from a stored structure: its connectivity
// record with multipliers, its crystal topology index and its crystal
// formula, the keys by which duplicates are found.
#ifndef MOLCRYST_APPS_DBSTRUCTURE_H
#define MOLCRYST_APPS_DBSTRUCTURE_H

#include <string>

#include "molcryst/connectivity/ConnectivityInfo.h"
#include "molcryst/connectivity/CrystalTopologyIndex.h"
#include "molcryst/crystal/CrystalMaker.h"
#include "molcryst/formula/CrystalChemicalFormula.h"

namespace molcryst {
namespace app {

/// The connected parts of the maker's current molecules, one item per
/// distinct topology index with the number of parts that have it as
/// multiplier, in the order of first sight; then simplify_multipliers.
HConnectivityInfo connectivity_info_of(const CrystalMaker& maker);

/// The crystal topology index of connectivity_info_of, by the order-3 index.
CrystalTopologyIndex crystal_topology_index_of(const CrystalMaker& maker);

/// The crystal formula of connectivity_info_of, one residue per record with
/// its multiplier, residues sorted: "C3 H7 N6,H2 O1".
CrystalChemicalFormula crystal_formula_of(const CrystalMaker& maker);

}  // namespace app
}  // namespace molcryst

#endif

// What the db subcommands work out from a stored structure: its connectivity
// record with multipliers, its crystal topology index and its element
// composition, the keys by which duplicates are found.
#ifndef MOLCRYST_APPS_DBSTRUCTURE_H
#define MOLCRYST_APPS_DBSTRUCTURE_H

#include <map>
#include <string>

#include "molcryst/connectivity/ConnectivityInfo.h"
#include "molcryst/connectivity/CrystalTopologyIndex.h"
#include "molcryst/crystal/CrystalMaker.h"

namespace molcryst {
namespace app {

/// The connected parts of the maker's current molecules, one item per
/// distinct topology index with the number of parts that have it as
/// multiplier, in the order of first sight; then simplify_multipliers.
HConnectivityInfo connectivity_info_of(const CrystalMaker& maker);

/// The crystal topology index of connectivity_info_of, by the order-3 index.
CrystalTopologyIndex crystal_topology_index_of(const CrystalMaker& maker);

/// Atoms of each element summed over the maker's current molecules, by
/// symbol. A stand-in for a chemical formula of the structure when grouping
/// duplicates.
std::map<std::string, int> element_composition(const CrystalMaker& maker);

/// The composition in Hill order (C, H, then the others alphabetically;
/// all alphabetically without carbon), counts of 1 left out: "C6H7NO".
std::string composition_text(const std::map<std::string, int>& composition);

}  // namespace app
}  // namespace molcryst

#endif

// The hydrogen-bonded network of a structure as the crystal view grows it:
// the asymmetric unit with the default hydrogen-bond rule, expanded fully.
// Shared by report --expand and the benchmarks' figures.
#ifndef MOLCRYST_APPS_HBONDNETWORK_H
#define MOLCRYST_APPS_HBONDNETWORK_H

#include <iosfwd>
#include <nlohmann/json.hpp>
#include <vector>

#include "molcryst/crystal/CrystalMaker.h"
#include "molcryst/crystal/NewCrystal.h"
#include "molcryst/geometry/Vector.h"

namespace molcryst {
namespace app {

/// How far the hydrogen bonds of a structure reach, and where they repeat.
struct HBondNetwork {
    int molecules = 0;                        // whole molecules reached, hanging atoms not counted
    int contacts = 0;                         // hydrogen bonds shown
    int open = 0;                             // contacts left unexpanded because the network repeats there
    std::vector<Vector<int, 3> > directions;  // lattice vectors of the repeats, first non-zero entry positive
    int dimensions = 0;                       // how many independent directions: 0 finite, 3 a framework
};

/// Expands the maker's asymmetric unit along its hydrogen bonds; the maker
/// is switched to its 3D view.
HBondNetwork expand_hbond_network(const HCrystalMaker& maker);
/// The network as a view shows it, grown or not (a saved crystal read back).
HBondNetwork summarise_hbond_network(const NewCrystal& crystal);
/// The hydrogen-bond rule of report: vdW corrected, with hydrogens, both
/// inter- and intramolecular, bond paths from 3.
HContactCriterion default_hbond_criterion();

/// {"molecules", "contacts", "open_contacts", "polymeric_directions", "dimensions"}.
nlohmann::json network_json(const HBondNetwork& network);
/// "hydrogen-bonded network: ..." and one line on where it repeats.
void network_text(std::ostream& out, const HBondNetwork& network);

}  // namespace app
}  // namespace molcryst

#endif

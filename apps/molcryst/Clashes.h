// Clashes: close contacts between molecules of a structure that no hydrogen
// bond explains, found by the crystal view with a ClashCriterion around the
// asymmetric unit. Shared by report --clashes on CIF files and on saved crystals.
#ifndef MOLCRYST_APPS_CLASHES_H
#define MOLCRYST_APPS_CLASHES_H

#include <iosfwd>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "molcryst/crystal/CrystalMaker.h"

namespace molcryst {
namespace app {

/// Atoms of two molecules closer than their van der Waals radii allow, by
/// at least this much (Angstrom): slight overlaps are ordinary packing.
constexpr double clash_overlap = 0.4;

struct Clash {
    std::string atom1, atom2;  // labels; atom2 may be a symmetry image
    double distance = 0;       // Angstrom
    double overlap = 0;        // sum of van der Waals radii less the distance
};

/// Every clash once, deepest first; pairs that symmetry joins within three
/// bonds are left out. The maker is switched to its 3D view.
std::vector<Clash> find_clashes(const HCrystalMaker& maker);

/// The value with `decimals` digits after the point.
std::string decimal_text(double value, int decimals);

/// [{"atom1", "atom2", "distance", "overlap"}].
nlohmann::json clashes_json(const std::vector<Clash>& clashes);
/// "clashes: N ..." and a table.
void clashes_text(std::ostream& out, const std::vector<Clash>& clashes);

}  // namespace app
}  // namespace molcryst

#endif

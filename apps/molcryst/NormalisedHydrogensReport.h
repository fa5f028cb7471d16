// The hydrogens that report --normalise-hydrogens moved, as JSON and as text.
#ifndef MOLCRYST_APPS_NORMALISEDHYDROGENSREPORT_H
#define MOLCRYST_APPS_NORMALISEDHYDROGENSREPORT_H

#include <iosfwd>
#include <nlohmann/json.hpp>
#include <vector>

#include "molcryst/io/NormalisedHydrogens.h"

namespace molcryst {
namespace app {

/// [{"label", "parent", "before", "after"}], distances in Angstrom, in site order.
nlohmann::json normalised_json(const CifBlock& block, const std::vector<NormalisedHydrogens::Moved>& moved);
/// "normalised hydrogens: N" and a table of the same.
void normalised_text(std::ostream& out, const CifBlock& block, const std::vector<NormalisedHydrogens::Moved>& moved);

}  // namespace app
}  // namespace molcryst

#endif

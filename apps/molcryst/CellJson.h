// The JSON forms of a cell and its spacegroup that the subcommands reporting
// a stored crystal (db show, report of a saved crystal) share.
#ifndef MOLCRYST_APPS_CELLJSON_H
#define MOLCRYST_APPS_CELLJSON_H

#include <nlohmann/json.hpp>

#include "molcryst/geometry/Cell.h"

namespace molcryst {
namespace app {

/// { "a", "b", "c", "alpha", "beta", "gamma", "volume" }: Angstrom, degrees, cubic Angstrom.
nlohmann::json cell_json(const Cell& cell);

/// { "name", "number", "operators" }: the operators by their number.
nlohmann::json spacegroup_json(const Spacegroup& spacegroup);

}  // namespace app
}  // namespace molcryst

#endif

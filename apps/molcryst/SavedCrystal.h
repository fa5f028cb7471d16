// Saved crystals: the file form of a crystal view (NewCrystal::write), made
// by `molcryst save` and reported on by `molcryst report OUT.mcr`.
#ifndef MOLCRYST_APPS_SAVEDCRYSTAL_H
#define MOLCRYST_APPS_SAVEDCRYSTAL_H

#include <iosfwd>
#include <nlohmann/json.hpp>
#include <string>

#include "molcryst/crystal/NewCrystal.h"

namespace molcryst {
namespace app {

/// Saved crystals are told from CIF files by the extension ".mcr".
bool is_saved_crystal(const std::string& file);

/// Writes the view to `file`; std::runtime_error if it cannot be written.
void save_crystal(const NewCrystal& crystal, const std::string& file);
/// Reads a saved view, of either format version; std::runtime_error for a
/// file that cannot be opened or read.
NewCrystal read_saved_crystal(const std::string& file);

/// The report of a saved crystal into `entry` (JSON) or `out` (text): cell,
/// spacegroup, the picture, criteria, contacts, the hydrogen-bonded network
/// as shown, and with `clashes` the clashes of its structure. 1 when the
/// file cannot be read, after one line on `err`; 0 otherwise.
int report_saved_crystal(const std::string& file, bool json, bool clashes, std::ostream& out, std::ostream& err,
                         nlohmann::json& entry);

}  // namespace app
}  // namespace molcryst

#endif

// Checks shared by the disorder state and the disorder selector, which word
// their messages alike under their own names.
#ifndef MOLCRYST_SRC_EDIT_DISORDERCHECKS_H
#define MOLCRYST_SRC_EDIT_DISORDERCHECKS_H

#include <string>

#include "molcryst/edit/AtomSiteMapping.h"

namespace molcryst {
namespace disorder_checks {

/// A non-empty group: every site non-null with a non-zero occupancy, and the
/// occupancies agreeing with the first atom's within three standard
/// uncertainties; std::runtime_error, the message starting with `who`.
void check_sites(const AtomSiteMapping& group, const std::string& who);

}  // namespace disorder_checks
}  // namespace molcryst

#endif

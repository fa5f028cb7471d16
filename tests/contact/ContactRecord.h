// Test helper: everything a contact holds, as one text to compare.
#ifndef MOLCRYST_TESTS_CONTACT_CONTACTRECORD_H
#define MOLCRYST_TESTS_CONTACT_CONTACTRECORD_H

#include <sstream>
#include <string>

#include "molcryst/contact/BasicContact.h"

namespace molcryst {
namespace testing {

/// The print form, then "sorted", the sorted from group, " |" and the sorted to group.
inline std::string record(const BasicContact& c) {
    std::ostringstream os;
    os << c << "sorted";
    for (int i : c.sorted_from()) os << " " << i;
    os << " |";
    for (int i : c.sorted_to()) os << " " << i;
    return os.str();
}

}  // namespace testing
}  // namespace molcryst

#endif

#include "molcryst/contact/CriterionSpecifics.h"

namespace molcryst {

bool operator==(const CriterionSpecifics& a, const CriterionSpecifics& b) {
    if (a.active != b.active || a.calculated != b.calculated) return false;
    // A null list is an empty one: specifics not yet calculated compare equal.
    const std::size_t na = a.contacts.unhand() != nullptr ? a.contacts->size() : 0;
    const std::size_t nb = b.contacts.unhand() != nullptr ? b.contacts->size() : 0;
    if (na != nb) return false;
    for (std::size_t i = 0; i < na; ++i)
        if (!(*(*a.contacts)[i] == *(*b.contacts)[i])) return false;
    return true;
}

bool operator!=(const CriterionSpecifics& a, const CriterionSpecifics& b) { return !(a == b); }

}  // namespace molcryst

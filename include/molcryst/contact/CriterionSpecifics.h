// CriterionSpecifics: what a crystal view keeps beside each contact
// criterion: whether the criterion is in use, and its base contacts once
// they have been calculated.
#ifndef MOLCRYST_CONTACT_CRITERIONSPECIFICS_H
#define MOLCRYST_CONTACT_CRITERIONSPECIFICS_H

#include "molcryst/contact/MolecularContact.h"

namespace molcryst {

/// A criterion's state in a view.
struct CriterionSpecifics {
    CriterionSpecifics() = default;
    /// Copies `active` only: the copy has its contacts still to calculate.
    CriterionSpecifics(const CriterionSpecifics& other) : active(other.active) {}
    CriterionSpecifics& operator=(const CriterionSpecifics& other) = default;

    bool active = true;        // the criterion is in use in the view
    bool calculated = false;   // `contacts` holds its base contacts
    Hvector_HMolecularContact contacts;  // null until calculated
};

/// The flags, then the sizes of the contact lists, then the contacts in
/// order; a null list counts as empty.
bool operator==(const CriterionSpecifics& a, const CriterionSpecifics& b);
bool operator!=(const CriterionSpecifics& a, const CriterionSpecifics& b);

}  // namespace molcryst

#endif

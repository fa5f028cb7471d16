// ContactCriterionArchiver: stores a criterion of any of the archivable
// classes behind a base handle, tagged with its class name, and makes the
// right object again on reading.
//
// Archivable are DistanceCriterion, VdWCriterion, CombinedCriterion and
// HBondCriterion. A criterion is made afresh on reading and then reads its
// own layout, so what that layout leaves out comes from the fresh object:
// `strongest_only` is false, and a CombinedCriterion is van der Waals corrected.
//
// Archive layout: name length (unsigned int), the name's bytes, then the
// criterion's own layout. A vector: count (unsigned int), then each criterion.
#ifndef MOLCRYST_CONTACT_CONTACTCRITERIONARCHIVER_H
#define MOLCRYST_CONTACT_CONTACTCRITERIONARCHIVER_H

#include <ostream>
#include <vector>

#include "molcryst/contact/ContactCriterion.h"

namespace molcryst {

/// Polymorphic archiving of criteria by class name; see the banner.
class ContactCriterionArchiver {
public:
    virtual ~ContactCriterionArchiver();

    /// A null handle goes to HandleCommon::null_handle_error; a criterion of
    /// any other class throws std::runtime_error "Unrecognised contact
    /// definition: <name>" before anything is written.
    static void write(const HContactCriterion& criterion, Archive& ar);
    /// A new criterion of the class named in the archive. An unknown name or a
    /// bad archive throws std::runtime_error and leaves `criterion` as it was.
    static void read(HContactCriterion& criterion, Archive& ar);
    /// Every criterion is checked before the first is written.
    static void write(const std::vector<HContactCriterion>& criteria, Archive& ar);
    /// All or nothing: `criteria` is changed only when every one was read.
    static void read(std::vector<HContactCriterion>& criteria, Archive& ar);
    /// Whether write takes the criterion: one of the four archivable classes.
    static bool archivable(const ContactCriterion& criterion);
    /// The criterion's own print.
    static std::ostream& print(std::ostream& os, const HContactCriterion& criterion);
};

}  // namespace molcryst

#endif

#include "molcryst/contact/ContactCriterionArchiver.h"

#include <cstring>
#include <stdexcept>
#include <string>

#include "molcryst/contact/CombinedCriterion.h"
#include "molcryst/contact/HBondCriterion.h"
#include "molcryst/support/Archive.h"

namespace molcryst {

namespace {

[[noreturn]] void unrecognised(const std::string& name) {
    throw std::runtime_error("Unrecognised contact definition: " + name);
}

// A fresh criterion of the named class, with the settings that its own
// layout does not carry; null for a name that is not archivable.
HContactCriterion make_criterion(const std::string& name) {
    if (name == "DistanceCriterion")
        return HContactCriterion(new DistanceCriterion(2.0, 0.0, INTERMOLECULAR, 4, 999, false));
    if (name == "VdWCriterion") return HContactCriterion(new VdWCriterion(0.0, -5.0, INTERMOLECULAR, 4, 999, false));
    if (name == "CombinedCriterion")
        return HContactCriterion(new CombinedCriterion(true, 0.0, -5.0, INTERMOLECULAR, 4, 999, false));
    if (name == "HBondCriterion")
        return HContactCriterion(
            new HBondCriterion(0.0, -5.0, Angle::from_degrees(120), true, false, INTERMOLECULAR, 4, 999));
    return HContactCriterion();
}

bool archivable_name(const char* name) {
    for (const char* known : {"DistanceCriterion", "VdWCriterion", "CombinedCriterion", "HBondCriterion"})
        if (std::strcmp(name, known) == 0) return true;
    return false;
}

// The class name of a criterion that may be written; throws otherwise.
const char* checked_name(const HContactCriterion& criterion) {
    if (criterion.unhand() == nullptr) HandleCommon::null_handle_error();
    const char* name = criterion->class_name();
    if (!archivable_name(name)) unrecognised(name);
    return name;
}

void write_checked(const HContactCriterion& criterion, const char* name, Archive& ar) {
    const unsigned int length = static_cast<unsigned int>(std::strlen(name));
    ar << length;
    ar.write_bytes(name, length);
    criterion->write(ar);
}

}  // namespace

ContactCriterionArchiver::~ContactCriterionArchiver() {}

bool ContactCriterionArchiver::archivable(const ContactCriterion& criterion) {
    return archivable_name(criterion.class_name());
}

void ContactCriterionArchiver::write(const HContactCriterion& criterion, Archive& ar) {
    write_checked(criterion, checked_name(criterion), ar);
}

void ContactCriterionArchiver::read(HContactCriterion& criterion, Archive& ar) {
    std::string name;
    {
        Archive::Field field(ar, "ContactCriterionArchiver::read class name");
        ar >> name;
    }
    HContactCriterion made = make_criterion(name);
    if (made.unhand() == nullptr) unrecognised(name);
    made->read(ar);
    criterion = made;
}

void ContactCriterionArchiver::write(const std::vector<HContactCriterion>& criteria, Archive& ar) {
    std::vector<const char*> names;
    names.reserve(criteria.size());
    for (const HContactCriterion& c : criteria) names.push_back(checked_name(c));
    ar << static_cast<unsigned int>(criteria.size());
    for (std::size_t i = 0; i < criteria.size(); ++i) write_checked(criteria[i], names[i], ar);
}

void ContactCriterionArchiver::read(std::vector<HContactCriterion>& criteria, Archive& ar) {
    unsigned int count = 0;
    {
        Archive::Field field(ar, "ContactCriterionArchiver::read criterion count");
        ar >> count;
        // Each criterion takes at least its name length and the base layout.
        ar.check_count(count, 4 + 12, "criterion count");
    }
    std::vector<HContactCriterion> read_criteria;
    read_criteria.reserve(count < 64 ? count : 64);
    for (unsigned int i = 0; i < count; ++i) {
        read_criteria.emplace_back();
        read(read_criteria.back(), ar);
    }
    criteria.swap(read_criteria);
}

std::ostream& ContactCriterionArchiver::print(std::ostream& os, const HContactCriterion& criterion) {
    return criterion->print(os);
}

}  // namespace molcryst

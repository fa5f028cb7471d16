#include "molcryst/contact/VdWCriterion.h"

#include <algorithm>
#include <typeinfo>

#include "molcryst/elements/Element.h"

namespace molcryst {

namespace {

// The radius that stands for an empty set: the largest in the element table.
const double largest_vdw_radius = 2.75;

double vdw_radius_of_number(int z) { return Element(Element::atomic_number_to_tarn_code(z)).vdw_radius(); }

// The radius max_radius takes for an end.
double end_radius(const std::set<int>& numbers) {
    if (numbers.empty()) return largest_vdw_radius;
    double r = vdw_radius_of_number(*numbers.begin());
    for (int z : numbers) r = std::max(r, vdw_radius_of_number(z));
    return r;
}

// Whether no element allowed at an end has a larger radius than `r`: an
// atomic number may belong to several elements (H and D, the pseudo-elements).
bool end_bounded(const std::set<int>& numbers, double r) {
    for (int code = 0; code < Element::ncodes_; ++code) {
        if (!numbers.empty() && numbers.count(Element::atomic_numbers_[static_cast<std::size_t>(code)]) == 0) continue;
        if (!(Element::vdw_radii_[static_cast<std::size_t>(code)] <= r)) return false;
    }
    return true;
}

}  // namespace

VdWCriterion::VdWCriterion(double max_tolerance, double min_tolerance, ContactType type, int min_path, int max_path,
                           bool strongest_only, Hset_int from, Hset_int to)
    : DistanceCriterion(max_tolerance, min_tolerance, type, min_path, max_path, strongest_only, from, to) {}

VdWCriterion::~VdWCriterion() {}

HContactCriterion VdWCriterion::clone() const { return HContactCriterion(new VdWCriterion(*this)); }

VdWCriterion& VdWCriterion::assign(const ContactCriterion& other) {
    if (typeid(other) != typeid(*this)) assign_type_error("assign(const ContactCriterion&)");
    return *this = static_cast<const VdWCriterion&>(other);
}

const char* VdWCriterion::class_name() const { return "VdWCriterion"; }

double VdWCriterion::vdw_max_radius() const {
    return end_radius(*from_atomic_numbers()) + end_radius(*to_atomic_numbers()) + max_tolerance();
}

double VdWCriterion::max_radius() const { return vdw_max_radius(); }

bool VdWCriterion::vdw_radii_bounded() const {
    return end_bounded(*from_atomic_numbers(), end_radius(*from_atomic_numbers())) &&
           end_bounded(*to_atomic_numbers(), end_radius(*to_atomic_numbers()));
}

bool VdWCriterion::radius_bounds_reach() const {
    return typeid(*this) == typeid(VdWCriterion) && vdw_radii_bounded();
}

std::ostream& VdWCriterion::print(std::ostream& os) const {
    os << "VdWCriterion: ";
    return DistanceCriterion::print(os);
}

bool VdWCriterion::operator==(const ContactCriterion& other) const {
    if (typeid(other) != typeid(*this)) return false;
    return *this == static_cast<const VdWCriterion&>(other);
}

bool VdWCriterion::operator==(const VdWCriterion& other) const { return DistanceCriterion::operator==(other); }

double VdWCriterion::normalisation_factor(const Molecule& m1, int atom1, const Molecule& m2, int atom2) const {
    return m1.atom(atom1)->element().vdw_radius() + m2.atom(atom2)->element().vdw_radius();
}

NonBondType VdWCriterion::contact_type() const { return 1; }

}  // namespace molcryst

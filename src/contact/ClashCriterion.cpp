#include "molcryst/contact/ClashCriterion.h"

#include <typeinfo>

#include "molcryst/molecule/Atom.h"

namespace molcryst {

namespace {

bool is_hydrogen(const Atom& atom) { return atom.element().atomic_number() == 1; }

}  // namespace

ClashCriterion::ClashCriterion()
    : ContactCriterion(INTERMOLECULAR, 4, 999, false),
      hbond_criterion_(0.0, -5.0, Angle::from_degrees(120), true, false, INTERMOLECULAR, 4, 999),
      combined_criterion_(true, 0.0, -5.0, INTERMOLECULAR, 4, 999, false) {}

ClashCriterion::ClashCriterion(const CombinedCriterion& combined, const HBondCriterion& hbond)
    : ContactCriterion(INTERMOLECULAR, 4, 999, false), hbond_criterion_(hbond), combined_criterion_(combined) {}

ClashCriterion::~ClashCriterion() {}

HContactCriterion ClashCriterion::clone() const { return HContactCriterion(new ClashCriterion(*this)); }

ClashCriterion& ClashCriterion::assign(const ContactCriterion& other) {
    if (typeid(other) != typeid(*this)) assign_type_error("assign(const ContactCriterion&)");
    return *this = static_cast<const ClashCriterion&>(other);
}

const char* ClashCriterion::class_name() const { return "ClashCriterion"; }

double ClashCriterion::max_radius() const {
    const double h = hbond_criterion_.max_radius(), c = combined_criterion_.max_radius();
    return h > c ? h : c;
}

bool ClashCriterion::radius_bounds_reach() const {
    return typeid(*this) == typeid(ClashCriterion) && bounds_reach_of(combined_criterion_);
}

Hvector_HMolecularContact ClashCriterion::find_contact(const HMolecule& m1, int atom1, const HMolecule& m2,
                                                       int atom2) const {
    const Hvector_HMolecularContact found = combined_criterion_.find_contact(m1, atom1, m2, atom2);
    Hvector_HMolecularContact kept(new vector_HMolecularContact());
    for (const HMolecularContact& c : *found) {
        const HMolecule& from = c->molecule_from();
        const HMolecule& to = c->molecule_to();
        if (is_not_hbound(from, from->atom(c->atom_from()), to, to->atom(c->atom_to()))) kept->push_back(c);
    }
    return kept;
}

Hvector_HBasicContact ClashCriterion::find_intramolecular_contact(const Molecule& mol, int atom1, int atom2) const {
    const Hvector_HBasicContact found = combined_criterion_.find_intramolecular_contact(mol, atom1, atom2);
    Hvector_HBasicContact kept(new vector_HBasicContact());
    for (const HBasicContact& c : *found)
        if (hbond_criterion_.find_intramolecular_contact(mol, c->atom_from(), c->atom_to())->empty())
            kept->push_back(c);
    return kept;
}

bool ClashCriterion::operator==(const ContactCriterion& other) const {
    if (typeid(other) != typeid(*this)) return false;
    return *this == static_cast<const ClashCriterion&>(other);
}

bool ClashCriterion::operator==(const ClashCriterion& other) const {
    return hbond_criterion_ == other.hbond_criterion_ && combined_criterion_ == other.combined_criterion_;
}

bool ClashCriterion::is_not_hbound(const HMolecule& m1, const HAtom& x, const HMolecule& m2, const HAtom& y) const {
    return hbond_criterion_.no_hydrogens() ? is_not_hbound_when_not_using_hydrogen(m1, x, m2, y)
                                           : is_not_hbound_when_using_hydrogen(m1, x, m2, y);
}

// Whether the hydrogen-bond member finds a bond from `x` to `y`.
bool ClashCriterion::hbonded(const HMolecule& m1, const HAtom& x, const HMolecule& m2, const HAtom& y) const {
    return !hbond_criterion_.find_contact(m1, x->index(), m2, y->index())->empty();
}

bool ClashCriterion::is_not_hbound_when_using_hydrogen(const HMolecule& m1, const HAtom& x, const HMolecule& m2,
                                                       const HAtom& y) const {
    const bool hx = is_hydrogen(*x), hy = is_hydrogen(*y);
    if (hx && hy) return true;
    if (hx || hy) return !hbonded(m1, x, m2, y);
    for (const HAtom& n : x->neighbours())
        if (is_hydrogen(*n) && hbonded(m1, n, m2, y)) return false;
    for (const HAtom& n : y->neighbours())
        if (is_hydrogen(*n) && hbonded(m2, n, m1, x)) return false;
    return true;
}

bool ClashCriterion::is_not_hbound_when_not_using_hydrogen(const HMolecule& m1, const HAtom& x, const HMolecule& m2,
                                                           const HAtom& y) const {
    // A hydrogen without neighbours stands for nothing, and so is never bound.
    HAtom from = x, to = y;
    if (is_hydrogen(*x)) {
        const std::deque<HAtom> n = x->neighbours();
        if (n.empty()) return true;
        from = n.front();
    }
    if (is_hydrogen(*y)) {
        const std::deque<HAtom> n = y->neighbours();
        if (n.empty()) return true;
        to = n.front();
    }
    return !hbonded(m1, from, m2, to);
}

}  // namespace molcryst

#include "molcryst/crystal/NewCrystal.h"

#include <cmath>
#include <iostream>
#include <stdexcept>

#include "NewCrystalPrivate.h"
#include "molcryst/contact/VdWCriterion.h"
#include "molcryst/crystal/NewCrystalMemento.h"
#include "molcryst/molecule/Bond.h"
#include "molcryst/molecule/MoleculeFunctions.h"
#include "molcryst/molecule/Site.h"
#include "molcryst/support/TARNLog.h"

namespace molcryst {

namespace {

const double bond_length_tolerance = 1e-05;  // Angstrom

const void* address(const void* p) { return p; }

}  // namespace

NewCrystal::NewCrystal() : private_(new NewCrystalPrivate()) {
    MOLCRYST_DEBUG_LINE(3, "Entered NewCrystal::NewCrystal() - " << address(this));
    private_->rebuild_snapshot();
    private_->validate(NewCrystalPrivate::validation_level_);
}

NewCrystal::NewCrystal(const HCrystalMaker& crystal_maker) : private_(new NewCrystalPrivate(crystal_maker)) {
    MOLCRYST_DEBUG_LINE(3, "Entered NewCrystal::NewCrystal(const HCrystalMaker& crystal_maker) - " << address(this));
    private_->rebuild_snapshot();
    private_->validate(NewCrystalPrivate::validation_level_);
}

NewCrystal::NewCrystal(const NewCrystal& x) : Subject(x), private_(new NewCrystalPrivate(*x.private_)) {
    MOLCRYST_DEBUG_LINE(3, "Entered NewCrystal::NewCrystal(const NewCrystal& x) - " << address(this));
    private_->validate(NewCrystalPrivate::validation_level_);
}

NewCrystal& NewCrystal::operator=(const NewCrystal& x) {
    if (this == &x) return *this;
    NewCrystalPrivate* copy = new NewCrystalPrivate(*x.private_);
    delete private_;
    private_ = copy;
    set_changed();
    notify();
    return *this;
}

NewCrystal::~NewCrystal() {
    MOLCRYST_DEBUG_LINE(3, "Entered NewCrystal::~NewCrystal() - " << address(this));
    delete private_;
}

NewCrystal::NewCrystal(const NewCrystalMemento& memento) : private_(new NewCrystalPrivate(memento)) {
    MOLCRYST_DEBUG_LINE(3, "Entered NewCrystal::NewCrystal(const NewCrystalMemento& memento) - " << address(this));
    private_->validate(NewCrystalPrivate::validation_level_);
}

void NewCrystal::write(Archive& ar) const { NewCrystalMemento(*this).write(ar); }

void NewCrystal::read(Archive& ar) {
    NewCrystalMemento memento;
    memento.read(ar);
    NewCrystalPrivate* restored = new NewCrystalPrivate(memento);
    delete private_;
    private_ = restored;
}

void NewCrystal::print(std::ostream& os) const {
    const NewCrystalPrivate& p = *private_;
    os << "packing: " << p.packing_ << "\n";
    os << "packing box: " << p.packing_box_ << "\n";
    os << "slicing: " << p.slicing_ << "\n";
    os << "slicing plane: " << p.slicing_plane_ << "\n";
    os << "slicing thickness: " << p.slicing_thickness_ << "\n";
    os << "slicing displacement: " << p.slicing_displacement_ << "\n";
    os << "contact criteria: ";
    for (const HContactCriterion& c : p.contact_criteria()) os << *c;
    os << "\n";
    os << "crystal_maker: " << address(p.crystal_maker_.unhand()) << "\n";
    os << "crystal_snapshot: " << address(p.crystal_snapshot_.unhand()) << "\n";
    os << "contacts: " << address(p.contacts_.unhand()) << "\n";
}

const HCrystalMaker& NewCrystal::crystal_maker() const { return private_->crystal_maker_; }
HCrystal NewCrystal::crystal_snapshot() const { return private_->crystal_snapshot(); }
bool NewCrystal::has_structure() const { return private_->crystal_maker_->natoms() > 0; }
bool NewCrystal::has_symmetry() const { return private_->crystal_maker_->cell().spacegroup().noperators() > 0; }
Box NewCrystal::box() const { return private_->box(); }
bool NewCrystal::packing() const { return private_->packing_; }
const Box& NewCrystal::packing_box() const { return private_->packing_box_; }
bool NewCrystal::slicing() const { return private_->slicing_; }
const Plane& NewCrystal::slicing_plane() const { return private_->slicing_plane_; }
double NewCrystal::slicing_thickness() const { return private_->slicing_thickness_; }
double NewCrystal::slicing_displacement() const { return private_->slicing_displacement_; }

void NewCrystal::set_validation_level(int level) { NewCrystalPrivate::validation_level_ = level; }

Box NewCrystal::default_packing_box() { return Box(Point(0, 0, 0), Point(1, 1, 1)); }
double NewCrystal::default_slicing_thickness() { return 5; }
double NewCrystal::default_slicing_displacement() { return 0; }

void NewCrystal::set_packing(bool packing) {
    if (packing == private_->packing_) return;
    private_->packing_ = packing;
    rebuild_snapshot();
}

void NewCrystal::set_packing_box(const Box& box) {
    if (box == private_->packing_box_) return;
    private_->packing_box_ = box;
    private_->invalidate_packing_snapshot();
    private_->invalidate_slicing_snapshot();
    if (private_->packing_ || private_->slicing_) rebuild_snapshot();
}

void NewCrystal::set_slicing(bool slicing) {
    if (slicing == private_->slicing_) return;
    private_->slicing_ = slicing;
    if (!rebuild_snapshot()) {
        set_changed();
        notify();
    }
}

namespace {

// The common tail of the slicing settings: a stale slab, and a new picture if one is shown.
void slicing_setting_changed(NewCrystal& crystal, NewCrystalPrivate& p) {
    p.invalidate_slicing_snapshot();
    if (p.slicing_ && !crystal.rebuild_snapshot()) {
        crystal.set_changed();
        crystal.notify();
    }
}

}  // namespace

void NewCrystal::set_slicing_plane(const Plane& plane) {
    if (plane == private_->slicing_plane_) return;
    private_->slicing_plane_ = plane;
    slicing_setting_changed(*this, *private_);
}

void NewCrystal::set_slicing_thickness(double thickness) {
    if (thickness == private_->slicing_thickness_) return;
    private_->slicing_thickness_ = thickness;
    slicing_setting_changed(*this, *private_);
}

void NewCrystal::set_slicing_displacement(double displacement) {
    if (displacement == private_->slicing_displacement_) return;
    private_->slicing_displacement_ = displacement;
    slicing_setting_changed(*this, *private_);
}

HMolecule NewCrystal::base_molecule(HAtom atom) const { return private_->base_molecule(atom); }
HMolecule NewCrystal::base_molecule(HBond bond) const { return private_->base_molecule(bond); }
HAtom NewCrystal::base_atom(HAtom atom) const { return private_->base_atom(atom); }
HBond NewCrystal::base_bond(HBond bond) const { return private_->base_bond(bond); }

void NewCrystal::add(HBond bond, HAtom atom1, HAtom atom2) {
    const double v = (atom2->site()->orth() - atom1->site()->orth()).length();
    HAtom base1 = private_->base_atom(atom1);
    if (base1.unhand() == nullptr)
        throw std::invalid_argument(
            "NewCrystal::add(HBond, HAtom, HAtom): atom1 is not related to any of the atoms in this crystal");
    HAtom base2 = private_->base_atom(atom2);
    if (base2.unhand() == nullptr)
        throw std::invalid_argument(
            "NewCrystal::add(HBond, HAtom, HAtom): atom2 is not related to any of the atoms in this crystal");
    const double u = (base2->site()->orth() - base1->site()->orth()).length();
    // The bond exists in the asymmetric unit only if the atoms shown are as
    // far apart as their base atoms; else they belong to two images.
    if (!(u - v < bond_length_tolerance && v - u < bond_length_tolerance))
        throw std::invalid_argument(
            "NewCrystal::add(HBond, HAtom, HAtom): Cannot join together two symmetry-related molecules.");
    private_->crystal_maker_->add(bond, base1, base2);
    notify_crystal_maker_changed();
}

void NewCrystal::add_hydrogens(HAtom atom, int n) {
    HAtom base = private_->base_atom(atom);
    HMolecule molecule = private_->base_molecule(atom);
    if (base.unhand() == nullptr || molecule.unhand() == nullptr)
        throw std::invalid_argument(
            "NewCrystal::add_hydrogens(HAtom, int): atom is not related to any of the atoms in this crystal");
    add_hydrogens_with_sites(private_->crystal_maker_, molecule, base->index(), n);
    notify_crystal_maker_changed();
}

void NewCrystal::remove(HAtom atom) {
    HAtom base = private_->base_atom(atom);
    if (base.unhand() == nullptr)
        throw std::invalid_argument(
            "NewCrystal::remove(HAtom): atom is not related to any of the atoms in this crystal");
    private_->crystal_maker_->remove(base);
    notify_crystal_maker_changed();
}

void NewCrystal::remove(HBond bond) {
    HBond base = private_->base_bond(bond);
    if (base.unhand() == nullptr)
        throw std::invalid_argument(
            "NewCrystal::remove(HBond): bond is not related to any of the bonds in this crystal");
    private_->crystal_maker_->remove(base);
    notify_crystal_maker_changed();
}

void NewCrystal::remove(HMolecule molecule) {
    HMolecule base = molecule->natoms() > 0 ? private_->base_molecule(molecule->atom(0)) : HMolecule();
    if (base.unhand() == nullptr)
        throw std::invalid_argument(
            "NewCrystal::remove(HMolecule): molecule is not related to any of the molecules in this crystal");
    private_->crystal_maker_->remove(base);
    notify_crystal_maker_changed();
}

void NewCrystal::set_bond_type(HBond bond, BondType type) {
    HBond base = private_->base_bond(bond);
    if (base.unhand() == nullptr)
        throw std::invalid_argument(
            "NewCrystal::set_bond_type(HBond, BondType): bond is not related to any of the bonds in this crystal");
    if (base->type() == type) return;
    base->set_type(type);
    notify_crystal_maker_changed();
}

bool NewCrystal::rebuild_snapshot() {
    const bool changed = private_->rebuild_snapshot();
    if (changed) {
        set_changed();
        notify();
    }
    return changed;
}

bool NewCrystal::rebuild_snapshot(const HCrystal& start) {
    const bool changed = private_->rebuild_snapshot(start);
    if (changed) {
        set_changed();
        notify();
    }
    return changed;
}

bool NewCrystal::rebuild_contacts() {
    const bool changed = private_->rebuild_contacts();
    if (changed) {
        set_changed();
        notify();
    }
    return changed;
}

void NewCrystal::notify_crystal_maker_changed() {
    private_->invalidate_crystal_snapshot();
    private_->invalidate_crystal_maker_snapshot();
    private_->invalidate_packing_snapshot();
    private_->invalidate_slicing_snapshot();
    // Every criterion's base contacts are redone, and the picture once for
    // all of them, so that observers hear of an edit once.
    for (const auto& entry : private_->criteria_) private_->uncalculate_contact_criterion(entry.first);
    private_->rebuild_snapshot();
    set_changed();
    notify();
}

void NewCrystal::notify_crystal_snapshot_changed() {
    set_changed();
    notify();
}

void NewCrystal::add_contact_criterion(HContactCriterion criterion) {
    private_->add_contact_criterion(criterion);
    rebuild_contacts();
}

void NewCrystal::remove_contact_criterion(HContactCriterion criterion) {
    private_->remove_contact_criterion(criterion);
    rebuild_contacts();
}

void NewCrystal::set_contact_criterion(HContactCriterion criterion) {
    for (const HContactCriterion& c : private_->contact_criteria()) private_->remove_contact_criterion(c);
    private_->add_contact_criterion(criterion);
    rebuild_contacts();
}

void NewCrystal::update_contact_criterion(HContactCriterion criterion) {
    if (!private_->uncalculate_contact_criterion(criterion)) {
        TARNLog::start_warning_line() << "NewCrystal::update_contact_criterion: contact at "
                                      << address(criterion.unhand()) << " not found in crystal at " << address(this);
        TARNLog::end_warning_line();
        return;
    }
    rebuild_contacts();
}

void NewCrystal::clear_contact_criteria() {
    for (const HContactCriterion& c : private_->contact_criteria()) private_->remove_contact_criterion(c);
    rebuild_contacts();
}

int NewCrystal::ncontact_criteria() const { return private_->ncontact_criteria(); }
std::vector<HContactCriterion> NewCrystal::contact_criteria() const { return private_->contact_criteria(); }

void NewCrystal::set_contact_filter(HDistanceCriterion filter) {
    if (filter.unhand() == private_->contact_filter_.unhand()) return;
    private_->contact_filter_ = filter;
    rebuild_contacts();
}

void NewCrystal::set_contact_filter_distances(double min, double max) {
    set_contact_filter(HDistanceCriterion(new DistanceCriterion(max, min, INTERMOLECULAR, 4, 999, false)));
}

void NewCrystal::set_contact_filter_tolerances(double min, double max) {
    set_contact_filter(HDistanceCriterion(new VdWCriterion(max, min, INTERMOLECULAR, 4, 999, false)));
}

void NewCrystal::clear_contact_filter() { set_contact_filter(HDistanceCriterion()); }
const HDistanceCriterion& NewCrystal::contact_filter() const { return private_->contact_filter_; }

Hvector_HMolecularContact NewCrystal::contacts() const { return private_->contacts(); }
vector_HMolecularContact NewCrystal::contacts(HMolecule molecule) const { return private_->contacts(molecule); }
vector_HMolecularContact NewCrystal::contacts(HMolecule molecule, HAtom atom) const {
    return private_->contacts(molecule, atom);
}

void NewCrystal::calculate_contact_extremities(double& base_min, double& base_max, double& base_min_vdw,
                                               double& base_max_vdw, double& cur_min, double& cur_max,
                                               double& cur_min_vdw, double& cur_max_vdw) const {
    private_->calculate_base_contact_extremities(base_min, base_max, base_min_vdw, base_max_vdw);
    private_->calculate_current_contact_extremities(cur_min, cur_max, cur_min_vdw, cur_max_vdw);
}

bool NewCrystal::expandable(HMolecularContact contact) const { return private_->expandable(contact); }
bool NewCrystal::expandable(HMolecule molecule, HAtom atom) const { return private_->expandable(molecule, atom); }
bool NewCrystal::expandable(HMolecule molecule) const { return private_->expandable(molecule); }
bool NewCrystal::expandable() const { return private_->expandable(); }
bool NewCrystal::expandable(const vector_HMolecularContact& contacts) const { return private_->expandable(contacts); }

bool NewCrystal::expand_contact(HMolecularContact contact, bool notify_observers) {
    const bool changed = private_->expand_contact(contact);
    if (changed) {
        set_changed();
        if (notify_observers) {
            private_->validate(NewCrystalPrivate::validation_level_);
            notify();
        }
    }
    return changed;
}

bool NewCrystal::expand_contacts(const vector_HMolecularContact& contacts) {
    bool changed = false;
    for (const HMolecularContact& c : contacts)
        if (expand_contact(c, false)) changed = true;
    if (changed) {
        private_->validate(NewCrystalPrivate::validation_level_);
        notify();
    }
    return changed;
}

bool NewCrystal::expand_contacts(HMolecule molecule, HAtom atom) { return expand_contacts(contacts(molecule, atom)); }
bool NewCrystal::expand_contacts(HMolecule molecule) { return expand_contacts(contacts(molecule)); }
// A copy: expansion adds to the list.
bool NewCrystal::expand_all_contacts() { return expand_contacts(vector_HMolecularContact(*contacts())); }

void NewCrystal::expand_fully() {
    if (private_->expand_fully()) set_changed();
}

bool NewCrystal::find_contacts(HMolecule molecule, HAtom atom) {
    const bool changed = private_->find_contacts(molecule, atom);
    if (changed) notify_crystal_snapshot_changed();
    return changed;
}

bool NewCrystal::find_contacts(HMolecule molecule) {
    const bool changed = private_->find_contacts(molecule);
    if (changed) notify_crystal_snapshot_changed();
    return changed;
}

bool NewCrystal::delete_contact(HMolecularContact contact, bool notify_observers) {
    const bool changed = private_->remove_contact(contact);
    if (changed) {
        set_changed();
        if (notify_observers) notify();
    }
    return changed;
}

bool NewCrystal::delete_contacts(const vector_HMolecularContact& contacts) {
    bool changed = false;
    for (const HMolecularContact& c : contacts)
        if (delete_contact(c, false)) changed = true;
    if (changed) notify();
    return changed;
}

bool NewCrystal::delete_contacts(HMolecule molecule, HAtom atom) { return delete_contacts(contacts(molecule, atom)); }
bool NewCrystal::delete_contacts(HMolecule molecule) { return delete_contacts(contacts(molecule)); }

bool NewCrystal::delete_hanging_contacts() {
    const bool changed = private_->delete_hanging_contacts();
    if (changed) notify_crystal_snapshot_changed();
    return changed;
}

bool NewCrystal::is_hanging_atom(HMolecule molecule, HAtom atom) const {
    std::cout << "NewCrystal::is_hanging_atom" << std::endl;
    return private_->is_hanging_atom(molecule, atom);
}

void NewCrystal::reset_contacts() {
    private_->contact_filter_ = HDistanceCriterion();
    rebuild_snapshot();
}

bool NewCrystal::delete_molecule(HMolecule molecule) {
    const bool changed = private_->delete_molecule(molecule);
    if (changed) {
        notify_crystal_snapshot_changed();
    } else {
        TARNLog::start_warning_line() << "NewCrystal::delete_molecule - did not delete molecule at "
                                      << address(molecule.unhand()) << " from crystal at "
                                      << address(private_->crystal_snapshot_.unhand());
        TARNLog::end_warning_line();
    }
    return changed;
}

void NewCrystal::convert_contacts_to_bonds() {
    MOLCRYST_DEBUG_LINE(2, "NewCrystal::convert_contacts_to_bonds entered. nmolecules = "
                               << private_->crystal_snapshot()->nmolecules());
    const HCrystal joined = private_->convert_contacts_to_bonds();
    rebuild_snapshot(joined);
    MOLCRYST_DEBUG_LINE(2, "NewCrystal::convert_contacts_to_bonds finished. nmolecules = "
                               << private_->crystal_snapshot()->nmolecules());
}

bool operator==(const NewCrystal& a, const NewCrystal& b) {
    auto differs = [](const char* what) {
        std::cout << "operator==(NewCrystal,NewCrystal): " << what << " differs" << std::endl;
        return false;
    };
    if (!(*a.crystal_maker() == *b.crystal_maker())) return differs("crystal_maker");
    const HCrystal sa = a.crystal_snapshot(), sb = b.crystal_snapshot();
    if (*sa != *sb) {
        std::cout << "operator==(NewCrystal,NewCrystal): crystal_snapshot differs " << sa->nmolecules() << " "
                  << sb->nmolecules() << std::endl;
        return false;
    }
    if (a.packing() != b.packing()) return differs("packing");
    if (a.packing_box() != b.packing_box()) return differs("packing_box");
    if (a.slicing() != b.slicing()) return differs("slicing");
    if (a.slicing_plane() != b.slicing_plane()) return differs("slicing_plane");
    if (!(std::fabs(a.slicing_thickness() - b.slicing_thickness()) < 1e-07)) return differs("slicing_thickness");
    if (!(std::fabs(a.slicing_displacement() - b.slicing_displacement()) < 1e-07))
        return differs("slicing_displacement");
    if (a.ncontact_criteria() != b.ncontact_criteria()) return differs("ncontact_criteria");
    const Hvector_HMolecularContact ca = a.contacts(), cb = b.contacts();
    if (ca->size() != cb->size()) return differs("contacts size");
    for (std::size_t k = 0; k < ca->size(); ++k)
        if (!(*(*ca)[k] == *(*cb)[k])) {
            std::cout << "operator==(NewCrystal,NewCrystal): contact differs " << k << std::endl;
            return false;
        }
    return true;
}

bool operator!=(const NewCrystal& a, const NewCrystal& b) { return !(a == b); }

std::ostream& operator<<(std::ostream& os, const NewCrystal& crystal) {
    crystal.print(os);
    return os;
}

}  // namespace molcryst

// The pipeline of snapshots behind NewCrystal: the three generated pictures
// (asymmetric unit, packed box, slab within the box), the picture shown with
// its contact layer, and the way back from a shown atom to the stored one.
#include "NewCrystalPrivate.h"

#include <set>

#include "molcryst/crystal/CrystalMakerHelpers.h"
#include "molcryst/geometry/FractionalSolid.h"
#include "molcryst/geometry/OrthogonalSolid.h"
#include "molcryst/geometry/Slab.h"
#include "molcryst/geometry/TransformedSolidComposite.h"
#include "molcryst/molecule/Bond.h"
#include "molcryst/molecule/Molecule3d.h"
#include "molcryst/molecule/Site.h"
#include "molcryst/support/TARNLog.h"

namespace molcryst {

int NewCrystalPrivate::validation_level_ = 0;

namespace {

const double packing_box_edge = 0.001;  // Angstrom, across each face of the packing box

// The deep copy of a snapshot, or null for null.
HCrystal copy_of(const HCrystal& c) { return c.unhand() != nullptr ? HCrystal(new Crystal(*c)) : HCrystal(); }

bool atoms_match(const Atom& a, const Atom& b) { return a.symmtag() == b.symmtag() && a.label() == b.label(); }

}  // namespace

NewCrystalPrivate::NewCrystalPrivate() : NewCrystalPrivate(HCrystalMaker(new CrystalMaker())) {}

NewCrystalPrivate::NewCrystalPrivate(const HCrystalMaker& crystal_maker)
    : crystal_maker_(crystal_maker),
      packing_box_(Box(Point(0, 0, 0), Point(1, 1, 1))),
      slicing_thickness_(5),
      slicing_displacement_(0) {
    crystal_maker_->select_3d();
}

NewCrystalPrivate::NewCrystalPrivate(const NewCrystalPrivate& x)
    : crystal_maker_(new CrystalMaker(*x.crystal_maker_)),
      packing_(x.packing_),
      packing_box_(x.packing_box_),
      slicing_(x.slicing_),
      slicing_plane_(x.slicing_plane_),
      slicing_thickness_(x.slicing_thickness_),
      slicing_displacement_(x.slicing_displacement_),
      contact_filter_(x.contact_filter_),
      crystal_snapshot_valid_(x.crystal_snapshot_valid_),
      crystal_maker_snapshot_valid_(x.crystal_maker_snapshot_valid_),
      crystal_maker_snapshot_(copy_of(x.crystal_maker_snapshot_)),
      packing_snapshot_valid_(x.packing_snapshot_valid_),
      packing_snapshot_(copy_of(x.packing_snapshot_)),
      slicing_snapshot_valid_(x.slicing_snapshot_valid_),
      slicing_snapshot_(copy_of(x.slicing_snapshot_)),
      box_(x.box_),
      box_valid_(x.box_valid_) {
    // The same criteria, each with its base contacts to calculate again for the new maker.
    for (const auto& entry : x.criteria_)
        criteria_.insert(std::make_pair(entry.first, HCriterionSpecifics(new CriterionSpecifics(*entry.second))));
    // Picture and contacts copied together, so that contact ends land on the copied molecules.
    if (x.crystal_snapshot_.unhand() != nullptr) {
        const Crystal joined(x.crystal_snapshot_->cell(), x.crystal_snapshot_->molecules(),
                             x.contacts_.unhand() != nullptr ? x.contacts_ : Hvector_HMolecularContact());
        const Crystal copy(joined);
        crystal_snapshot_ = HCrystal(new Crystal(copy.cell(), copy.molecules()));
        if (x.contacts_.unhand() != nullptr) contacts_ = copy.contacts();
    } else if (x.contacts_.unhand() != nullptr) {
        contacts_ = Hvector_HMolecularContact(new vector_HMolecularContact());
    }
}

NewCrystalPrivate::~NewCrystalPrivate() = default;

void NewCrystalPrivate::validate(int level) const {
    if (level < 1 || level > 4 || crystal_snapshot_.unhand() == nullptr) return;
    std::set<const Molecule*> shown;
    for (const HMolecule& m : *crystal_snapshot_->molecules()) shown.insert(m.unhand());
    if (contacts_.unhand() != nullptr) {
        for (const HMolecularContact& c : *contacts_) {
            const void* address = c.unhand();
            if (shown.count(c->molecule_from().unhand()) == 0) {
                TARNLog::start_error_line() << "NewCrystalPrivate::validate: 'from' molecule at "
                                            << static_cast<const void*>(c->molecule_from().unhand())
                                            << " not found in current snapshot from contact at " << address;
                TARNLog::end_error_line();
            }
            if (shown.count(c->molecule_to().unhand()) == 0) {
                TARNLog::start_error_line() << "NewCrystalPrivate::validate: 'to' molecule at "
                                            << static_cast<const void*>(c->molecule_to().unhand())
                                            << " not found in current snapshot from contact at " << address;
                TARNLog::end_error_line();
            }
            if (c->molecule_to().unhand() != nullptr && c->molecule_to()->natoms() != 1) {
                TARNLog::start_error_line() << "NewCrystalPrivate::validate: 'to' molecule at "
                                            << static_cast<const void*>(c->molecule_to().unhand())
                                            << " should have exactly one atom: it has " << c->molecule_to()->natoms();
                TARNLog::end_error_line();
            }
        }
    }
    const vector_HMolecule& molecules = *crystal_snapshot_->molecules();
    for (std::size_t i = 0; i < molecules.size(); ++i)
        for (std::size_t j = i + 1; j < molecules.size(); ++j)
            if (*molecules[i] == *molecules[j]) {
                TARNLog::start_error_line() << "NewCrystalPrivate::validate: Duplicate molecules in current snapshot:"
                                            << " " << static_cast<const void*>(molecules[i].unhand()) << " "
                                            << static_cast<const void*>(molecules[j].unhand());
                TARNLog::end_error_line();
            }
}

HCrystal NewCrystalPrivate::crystal_maker_snapshot() const {
    if (!crystal_maker_snapshot_valid_) {
        crystal_maker_snapshot_ = crystal_maker_->create_crystal();
        crystal_maker_snapshot_valid_ = true;
    }
    return crystal_maker_snapshot_;
}

HCrystal NewCrystalPrivate::packing_snapshot() const {
    if (!packing_snapshot_valid_) {
        packing_snapshot_ = CrystalMakerHelpers::create_packed_crystal(*crystal_maker_, packing_box_);
        packing_snapshot_valid_ = true;
    }
    return packing_snapshot_;
}

HCrystal NewCrystalPrivate::slicing_snapshot() const {
    if (!slicing_snapshot_valid_) {
        const Cell& cell = crystal_maker_->cell();
        const Plane plane(slicing_plane_.normal(), slicing_plane_.distance() + slicing_displacement_);
        // The slab is cut within the packing box, not through all space.
        THandle<TransformedSolid> slab(new OrthogonalSolid(THandle<Solid>(new Slab(plane, slicing_thickness_))));
        THandle<TransformedSolid> box(new FractionalSolid(
            THandle<Solid>(new Box(CrystalMakerHelpers::expand_packing_box(cell, packing_box_edge, packing_box_)))));
        const TransformedSolidComposite region(slab, box);
        slicing_snapshot_ = crystal_maker_->create_crystal(IfCentroidIncluded<HAtom>(), region);
        slicing_snapshot_valid_ = true;
    }
    return slicing_snapshot_;
}

HCrystal NewCrystalPrivate::crystal_snapshot() const {
    if (!crystal_snapshot_valid_) {
        MOLCRYST_DEBUG_LINE(2, "NewCrystalPrivate::crystal_snapshot rebuilding snapshot");
        rebuild_snapshot();
        MOLCRYST_DEBUG_LINE(2, "NewCrystalPrivate::crystal_snapshot snapshot rebuilt");
    }
    return crystal_snapshot_;
}

bool NewCrystalPrivate::rebuild_snapshot() const {
    HCrystal source = slicing_ ? slicing_snapshot() : packing_ ? packing_snapshot() : crystal_maker_snapshot();
    return rebuild_snapshot(source->create_shallow_copy());
}

bool NewCrystalPrivate::rebuild_snapshot(const HCrystal& start) const {
    vector_HMolecularContact contacts;
    vector_HMolecule molecules;
    replicate_base_contacts(start, contacts, molecules);
    for (const HMolecule& m : molecules) start->merge(m);
    const bool snapshot_changed =
        !crystal_snapshot_valid_ || crystal_snapshot_.unhand() == nullptr || *start != *crystal_snapshot_;
    if (snapshot_changed) {
        invalidate_box();
        crystal_snapshot_ = start;
        crystal_snapshot_valid_ = true;
    }
    bool contacts_changed = contacts_.unhand() == nullptr || contacts_->size() != contacts.size();
    for (std::size_t k = 0; !contacts_changed && k < contacts.size(); ++k)
        contacts_changed = !(*(*contacts_)[k] == *contacts[k]);
    if (contacts_changed) contacts_ = Hvector_HMolecularContact(new vector_HMolecularContact(contacts));
    // The contacts stand on the molecules of the picture even when an equal
    // picture is kept: they are taken with the picture they were made on.
    if (snapshot_changed && !contacts_changed)
        contacts_ = Hvector_HMolecularContact(new vector_HMolecularContact(contacts));
    drop_contact_ends();
    return snapshot_changed || contacts_changed;
}

bool NewCrystalPrivate::rebuild_contacts() const {
    if (crystal_snapshot_.unhand() == nullptr) return rebuild_snapshot();
    // Keep what the user expanded: drop the hanging atoms, keep the molecules.
    HCrystal copy = crystal_snapshot_->create_shallow_copy();
    if (contacts_.unhand() != nullptr) {
        for (const HMolecularContact& c : *contacts_) copy->remove(c->molecule_to());
        for (const HMolecularContact& c : *contacts_) copy->merge(c->molecule_from());
    }
    return rebuild_snapshot(copy);
}

void NewCrystalPrivate::invalidate_crystal_maker_snapshot() const {
    crystal_maker_snapshot_valid_ = false;
    crystal_maker_snapshot_ = HCrystal();
}

void NewCrystalPrivate::invalidate_packing_snapshot() const {
    packing_snapshot_valid_ = false;
    packing_snapshot_ = HCrystal();
}

void NewCrystalPrivate::invalidate_slicing_snapshot() const {
    slicing_snapshot_valid_ = false;
    slicing_snapshot_ = HCrystal();
}

void NewCrystalPrivate::invalidate_crystal_snapshot() const {
    crystal_snapshot_valid_ = false;
    crystal_snapshot_ = HCrystal();
    invalidate_box();
}

void NewCrystalPrivate::invalidate_box() const { box_valid_ = false; }

const Box& NewCrystalPrivate::box() const {
    if (!box_valid_) {
        Box b;
        for (const HMolecule& m : *crystal_snapshot()->molecules()) b.merge(m->box());
        box_ = b;
        box_valid_ = true;
    }
    return box_;
}

HMolecule NewCrystalPrivate::base_molecule(const HAtom& atom) const {
    if (atom.unhand() == nullptr) return HMolecule();
    const int index = atom->index();
    if (index < 0) return HMolecule();
    for (const HMolecule& m : *crystal_maker_->current_molecules())
        if (m->natoms() > index && atoms_match(*atom, *m->atom(index))) return m;
    return HMolecule();
}

HMolecule NewCrystalPrivate::base_molecule(const HBond& bond) const {
    if (bond.unhand() == nullptr) return HMolecule();
    const int index1 = bond->atom1()->index();
    const int index2 = bond->atom2()->index();
    if (index1 < 0 || index2 < 0) return HMolecule();
    for (const HMolecule& m : *crystal_maker_->current_molecules())
        if (m->natoms() > index1 && m->natoms() > index2 && atoms_match(*bond->atom1(), *m->atom(index1)) &&
            atoms_match(*bond->atom2(), *m->atom(index2)))
            return m;
    return HMolecule();
}

HAtom NewCrystalPrivate::base_atom(const HAtom& atom) const {
    HMolecule m = base_molecule(atom);
    return m.unhand() != nullptr ? m->atom(atom->index()) : HAtom();
}

HBond NewCrystalPrivate::base_bond(const HBond& bond) const {
    HMolecule m = base_molecule(bond);
    if (m.unhand() == nullptr) return HBond();
    const int k = m->bond_index(bond->atom1()->index(), bond->atom2()->index());
    return k >= 0 ? m->bond(k) : HBond();
}

void NewCrystalPrivate::add_contact_criterion(const HContactCriterion& criterion) {
    auto found = criteria_.find(criterion);
    if (found != criteria_.end())
        found->second->active = true;
    else
        criteria_.insert(std::make_pair(criterion, HCriterionSpecifics(new CriterionSpecifics())));
}

void NewCrystalPrivate::remove_contact_criterion(const HContactCriterion& criterion) {
    auto found = criteria_.find(criterion);
    if (found != criteria_.end()) found->second->active = false;
}

bool NewCrystalPrivate::uncalculate_contact_criterion(const HContactCriterion& criterion) {
    auto found = criteria_.find(criterion);
    if (found == criteria_.end()) return false;
    found->second->calculated = false;
    found->second->contacts = Hvector_HMolecularContact();
    return true;
}

int NewCrystalPrivate::ncontact_criteria() const {
    int n = 0;
    for (const auto& entry : criteria_)
        if (entry.second->active) ++n;
    return n;
}

std::vector<HContactCriterion> NewCrystalPrivate::contact_criteria() const {
    std::vector<HContactCriterion> active;
    for (const auto& entry : criteria_)
        if (entry.second->active) active.push_back(entry.first);
    return active;
}

}  // namespace molcryst

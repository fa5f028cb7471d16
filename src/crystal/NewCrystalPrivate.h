// NewCrystalPrivate: the state behind NewCrystal and everything it does
// without telling observers: the pipeline of snapshots (NewCrystalPrivate.cpp)
// and the contact layer with its expansion (NewCrystalPrivate_contacts.cpp).
#ifndef MOLCRYST_SRC_CRYSTAL_NEWCRYSTALPRIVATE_H
#define MOLCRYST_SRC_CRYSTAL_NEWCRYSTALPRIVATE_H

#include <map>
#include <memory>
#include <ostream>
#include <vector>

#include "molcryst/contact/ContactCriterion.h"
#include "molcryst/contact/CriterionSpecifics.h"
#include "molcryst/contact/DistanceCriterion.h"
#include "molcryst/crystal/Crystal.h"
#include "molcryst/crystal/CrystalMaker.h"
#include "molcryst/geometry/Box.h"
#include "molcryst/geometry/Plane.h"

namespace molcryst {

class NewCrystalMemento;
typedef THandle<CriterionSpecifics> HCriterionSpecifics;

/// NewCrystal's settings, criteria and snapshots, and every operation on them.
class NewCrystalPrivate {
public:
    NewCrystalPrivate();
    explicit NewCrystalPrivate(const HCrystalMaker& crystal_maker);
    /// The saved view (NewCrystalPrivate_memento.cpp).
    explicit NewCrystalPrivate(const NewCrystalMemento& memento);
    /// Deep; see NewCrystal's copy.
    NewCrystalPrivate(const NewCrystalPrivate& x);
    NewCrystalPrivate& operator=(const NewCrystalPrivate&) = delete;
    ~NewCrystalPrivate();

    /// Checks that every contact end is in the picture, that hanging atoms
    /// have one atom and that no molecule is shown twice; reports on the
    /// error log. Acts at levels 1 to 4 only.
    void validate(int level) const;
    static int validation_level_;  // 0: the checks are off

    // The pipeline.
    HCrystal crystal_maker_snapshot() const;
    HCrystal packing_snapshot() const;
    HCrystal slicing_snapshot() const;
    HCrystal crystal_snapshot() const;
    bool rebuild_snapshot() const;
    bool rebuild_snapshot(const HCrystal& start) const;
    bool rebuild_contacts() const;
    void invalidate_crystal_maker_snapshot() const;
    void invalidate_packing_snapshot() const;
    void invalidate_slicing_snapshot() const;
    void invalidate_crystal_snapshot() const;
    void invalidate_box() const;
    const Box& box() const;

    HMolecule base_molecule(const HAtom& atom) const;
    HMolecule base_molecule(const HBond& bond) const;
    HAtom base_atom(const HAtom& atom) const;
    HBond base_bond(const HBond& bond) const;

    // Criteria.
    void add_contact_criterion(const HContactCriterion& criterion);
    void remove_contact_criterion(const HContactCriterion& criterion);
    /// False if the criterion is unknown.
    bool uncalculate_contact_criterion(const HContactCriterion& criterion);
    int ncontact_criteria() const;
    std::vector<HContactCriterion> contact_criteria() const;

    // Contacts.
    Hvector_HMolecularContact contacts() const;
    vector_HMolecularContact contacts(const HMolecule& m) const;
    vector_HMolecularContact contacts(const HMolecule& m, const HAtom& atom) const;
    void calculate_base_contacts() const;
    Hvector_HMolecularContact calculate_base_contacts(const ContactCriterion& criterion) const;
    static bool contains_suppressed_atoms(const Molecule& m);
    bool filter_contact(const MolecularContact& c) const;
    vector_HMolecularContact filter_contacts(const vector_HMolecularContact& contacts) const;
    void replicate_base_contacts(const HCrystal& crystal, vector_HMolecularContact& contacts,
                                 vector_HMolecule& molecules) const;
    /// All active criteria onto one molecule.
    void replicate_base_contacts(const HMolecule& m, const Cell& cell, vector_HMolecularContact& contacts,
                                 vector_HMolecule& molecules) const;
    /// Only base contacts from the listed atom indices that relate to `m`'s atoms.
    void replicate_base_contacts(const HMolecule& m, const std::vector<int>& atoms, const Cell& cell,
                                 vector_HMolecularContact& contacts, vector_HMolecule& molecules) const;
    void add_contact(const HMolecularContact& c);
    bool add(const vector_HMolecularContact& contacts, const vector_HMolecule& molecules);
    void calculate_contact_extremities(const vector_HMolecularContact& contacts, double& min, double& max,
                                       double& min_vdw, double& max_vdw) const;
    void calculate_base_contact_extremities(double& min, double& max, double& min_vdw, double& max_vdw) const;
    void calculate_current_contact_extremities(double& min, double& max, double& min_vdw, double& max_vdw) const;

    // Expansion.
    bool expandable(const HMolecularContact& c) const;
    bool expandable(const HMolecule& m, const HAtom& atom) const;
    bool expandable(const HMolecule& m) const;
    bool expandable() const;
    bool expandable(const vector_HMolecularContact& contacts) const;
    /// The first present contact running the other way, or null.
    HMolecularContact first_reverse_contact(const MolecularContact& c) const;
    bool expand_contact(const HMolecularContact& c);
    /// Expands breadth first; see NewCrystal::expand_fully. True if anything changed.
    bool expand_fully();
    bool contains_translational_equivalents(const Crystal& crystal, const Atom& atom, const Point& p) const;
    bool find_contacts(const HMolecule& m);
    bool find_contacts(const HMolecule& m, const HAtom& atom);
    bool remove_contact(const HMolecularContact& c);
    bool delete_hanging_contacts();
    bool is_hanging_atom(const HMolecule& m, const HAtom& atom) const;
    bool delete_molecule(const HMolecule& m);
    /// The picture with contacts made bonds and overlapping molecules joined.
    HCrystal convert_contacts_to_bonds();

    // The state; the snapshots are caches written by const operations.
    HCrystalMaker crystal_maker_;
    bool packing_ = false;
    Box packing_box_;  // fractional
    bool slicing_ = false;
    Plane slicing_plane_;
    double slicing_thickness_;
    double slicing_displacement_;
    std::map<HContactCriterion, HCriterionSpecifics> criteria_;
    HDistanceCriterion contact_filter_;
    mutable bool crystal_snapshot_valid_ = false;
    mutable HCrystal crystal_snapshot_;
    mutable bool crystal_maker_snapshot_valid_ = false;
    mutable HCrystal crystal_maker_snapshot_;
    mutable bool packing_snapshot_valid_ = false;
    mutable HCrystal packing_snapshot_;
    mutable bool slicing_snapshot_valid_ = false;
    mutable HCrystal slicing_snapshot_;
    mutable Hvector_HMolecularContact contacts_;
    mutable Box box_;
    mutable bool box_valid_ = false;

private:
    /// Where the present contacts' ends stand, so that the reverse of a
    /// contact and a contact with the same ends are found without a scan of
    /// the list. Kept for contacts_ as it grows; dropped when contacts leave.
    struct ContactEnds;
    ContactEnds& contact_ends() const;
    void drop_contact_ends() const;
    void erase_contact(std::size_t index);

    /// What the replicated lists hold, so that an equal molecule or contact
    /// is found without a scan of them.
    struct ReplicationIndex;
    /// The filtered base contacts of the active criteria, calculated first if need be.
    vector_HMolecularContact active_base_contacts() const;
    void replicate_base_contact(const HMolecule& m, const MolecularContact& c, const Cell& cell,
                                vector_HMolecularContact& contacts, vector_HMolecule& molecules,
                                ReplicationIndex& index) const;

    mutable std::shared_ptr<ContactEnds> contact_ends_;  // shared_ptr: the type is complete only where it is used
};

}  // namespace molcryst

#endif

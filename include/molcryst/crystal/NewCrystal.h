// NewCrystal: the crystal an application holds. It stands on a CrystalMaker
// (what is stored and what an edit changes) and keeps the picture wanted of
// it up to date: the asymmetric unit, a packed box or a slab cut within the
// box, with the contacts of the active criteria overlaid. Each contact ends
// on a hanging atom, a one-atom molecule standing in for a neighbour not
// shown; expanding a contact brings the whole neighbour in.
//
// Every snapshot is a cache, rebuilt on demand: a setting drops what depends
// on it, an edit drops all of them but keeps the criteria (their base
// contacts are recalculated), and a change of criteria redoes only the
// contact layer. The state sits in a private object; this class is its
// notifying face, and observers hear of each change once.
#ifndef MOLCRYST_CRYSTAL_NEWCRYSTAL_H
#define MOLCRYST_CRYSTAL_NEWCRYSTAL_H

#include <ostream>
#include <vector>

#include "molcryst/contact/ContactCriterion.h"
#include "molcryst/contact/DistanceCriterion.h"
#include "molcryst/crystal/Crystal.h"
#include "molcryst/crystal/CrystalMaker.h"
#include "molcryst/geometry/Box.h"
#include "molcryst/geometry/Plane.h"
#include "molcryst/molecule/BondType.h"
#include "molcryst/support/Subject.h"

namespace molcryst {

class Archive;
class NewCrystal;
class NewCrystalMemento;
class NewCrystalPrivate;

typedef THandle<NewCrystal> HNewCrystal;

/// The observable view of a crystal; see the banner.
class NewCrystal : public Subject {
public:
    /// A new empty maker, its 3D view selected, and the asymmetric-unit picture.
    NewCrystal();
    /// Takes the handle and selects the maker's 3D view: the caller's maker
    /// is switched too.
    explicit NewCrystal(const HCrystalMaker& crystal_maker);
    /// Deep: a new maker and copies of the snapshots and contacts; the same
    /// criteria with their base contacts still to calculate. The copy is
    /// connected to the same observers.
    NewCrystal(const NewCrystal& x);
    /// The view a memento holds, as saved: its picture and contacts shown
    /// without a rebuild, its criteria active.
    explicit NewCrystal(const NewCrystalMemento& memento);
    /// As the copy, then one notification. Self-assignment does nothing.
    NewCrystal& operator=(const NewCrystal& x);
    ~NewCrystal() override;

    /// Through a NewCrystalMemento of the whole view, so that expansions
    /// survive a save. A criterion that cannot be archived throws
    /// std::runtime_error before anything is written; a failed read throws
    /// std::runtime_error and leaves the view as it was. Neither notifies.
    virtual void write(Archive& ar) const;
    virtual void read(Archive& ar);
    /// The settings, the active criteria and the addresses of the held objects.
    virtual void print(std::ostream& os) const;

    // Queries.
    const HCrystalMaker& crystal_maker() const;
    /// The picture shown, hanging atoms included; rebuilt first if stale.
    HCrystal crystal_snapshot() const;
    /// The maker has at least one atom.
    bool has_structure() const;
    /// The spacegroup has at least one operator.
    bool has_symmetry() const;
    /// The bounding box of the picture's molecules, orthogonal.
    Box box() const;
    bool packing() const;
    /// In fractional coordinates.
    const Box& packing_box() const;
    bool slicing() const;
    const Plane& slicing_plane() const;
    double slicing_thickness() const;     // Angstrom
    double slicing_displacement() const;  // Angstrom, added to the plane's distance

    /// Levels 1 to 4 make every view check, after each change, that its
    /// contacts stand on molecules of the picture, that hanging atoms have
    /// one atom and that no molecule is shown twice; faults go to the error
    /// log. 0, the default, checks nothing.
    static void set_validation_level(int level);

    static Box default_packing_box();
    static double default_slicing_thickness();
    static double default_slicing_displacement();

    // Settings; each notifies when the picture changes.
    void set_packing(bool packing);
    void set_packing_box(const Box& box);
    /// Slicing has priority over packing.
    void set_slicing(bool slicing);
    void set_slicing_plane(const Plane& plane);
    void set_slicing_thickness(double thickness);
    void set_slicing_displacement(double displacement);

    // The base structure behind atoms of the picture: by index, symmetry tag and label.
    HMolecule base_molecule(HAtom atom) const;
    HMolecule base_molecule(HBond bond) const;
    HAtom base_atom(HAtom atom) const;
    HBond base_bond(HBond bond) const;

    // Edits, made on the base structure from objects of the picture; each
    // drops every snapshot, keeps the criteria and notifies once.
    /// Bonds the base atoms; std::invalid_argument if an atom has no base or
    /// the two atoms, as shown, are not the distance apart that their base
    /// atoms are (they belong to two symmetry images).
    void add(HBond bond, HAtom atom1, HAtom atom2);
    /// Adds `n` hydrogens with sites to the base atom.
    void add_hydrogens(HAtom atom, int n);
    void remove(HAtom atom);
    void remove(HBond bond);
    void remove(HMolecule molecule);
    /// No notification when the bond has that type already.
    void set_bond_type(HBond bond, BondType type);

    // Rebuilding; true if the picture or its contacts changed, and then notified.
    bool rebuild_snapshot();
    /// The contact layer redone on `start`, which becomes the picture.
    bool rebuild_snapshot(const HCrystal& start);
    /// The contact layer redone, keeping the molecules the user expanded.
    bool rebuild_contacts();
    void notify_crystal_maker_changed();
    void notify_crystal_snapshot_changed();

    // Contact criteria.
    /// Activates the criterion, adding it if new, and redoes the contacts.
    void add_contact_criterion(HContactCriterion criterion);
    /// Deactivates it; its base contacts stay cached for a later add.
    void remove_contact_criterion(HContactCriterion criterion);
    /// The only active criterion.
    void set_contact_criterion(HContactCriterion criterion);
    /// Recalculates its base contacts: the call to make after editing a
    /// criterion. An unknown one writes a warning.
    void update_contact_criterion(HContactCriterion criterion);
    void clear_contact_criteria();
    /// The number of active criteria.
    int ncontact_criteria() const;
    std::vector<HContactCriterion> contact_criteria() const;

    // The filter on shown contacts.
    void set_contact_filter(HDistanceCriterion filter);
    /// Distances in [min, max] Angstrom.
    void set_contact_filter_distances(double min, double max);
    /// Distances less the two van der Waals radii in [min, max].
    void set_contact_filter_tolerances(double min, double max);
    void clear_contact_filter();
    const HDistanceCriterion& contact_filter() const;

    // Contacts of the picture.
    Hvector_HMolecularContact contacts() const;
    /// At either end of the molecule, by handle or by equality.
    vector_HMolecularContact contacts(HMolecule molecule) const;
    vector_HMolecularContact contacts(HMolecule molecule, HAtom atom) const;
    /// Distance limits (plain, and less the van der Waals radii) over the
    /// base contacts of the active criteria and over the shown contacts;
    /// 1e10 and -1e10 when there are none.
    void calculate_contact_extremities(double& base_min, double& base_max, double& base_min_vdw, double& base_max_vdw,
                                       double& cur_min, double& cur_max, double& cur_min_vdw,
                                       double& cur_max_vdw) const;

    // Expansion. A contact is expandable when it joins two molecules and no
    // contact runs the other way: its to end is a hanging atom.
    bool expandable(HMolecularContact contact) const;
    bool expandable(HMolecule molecule, HAtom atom) const;
    bool expandable(HMolecule molecule) const;
    bool expandable() const;
    bool expandable(const vector_HMolecularContact& contacts) const;
    /// Replaces the hanging atom by the whole neighbour with its own
    /// contacts. False, with nothing changed, if the contact is not
    /// expandable or the crystal is inconsistent (logged, never thrown).
    bool expand_contact(HMolecularContact contact, bool notify = true);
    /// One notification for all of them.
    bool expand_contacts(const vector_HMolecularContact& contacts);
    bool expand_contacts(HMolecule molecule, HAtom atom);
    bool expand_contacts(HMolecule molecule);
    bool expand_all_contacts();
    /// Expands breadth first until nothing new appears, never following a
    /// contact to an atom that has an image in the picture at a pure lattice
    /// translation: that is where a polymer repeats. Marks the crystal
    /// changed; the caller calls notify() when done.
    void expand_fully();

    /// Shows the contacts a molecule (or one atom of it) would have, without expanding.
    bool find_contacts(HMolecule molecule, HAtom atom);
    bool find_contacts(HMolecule molecule);
    bool delete_contact(HMolecularContact contact, bool notify = true);
    bool delete_contacts(const vector_HMolecularContact& contacts);
    bool delete_contacts(HMolecule molecule, HAtom atom);
    bool delete_contacts(HMolecule molecule);
    bool delete_hanging_contacts();
    bool is_hanging_atom(HMolecule molecule, HAtom atom) const;
    /// No filter, and the generated picture again.
    void reset_contacts();
    bool delete_molecule(HMolecule molecule);
    /// Makes the contact network covalent: polymers shown as one molecule.
    void convert_contacts_to_bonds();

private:
    NewCrystalPrivate* private_;  // owned; never null
};

/// Compares maker, picture, settings, criteria count and contacts in that
/// order; the first difference is written to standard output.
bool operator==(const NewCrystal& a, const NewCrystal& b);
bool operator!=(const NewCrystal& a, const NewCrystal& b);
std::ostream& operator<<(std::ostream& os, const NewCrystal& crystal);

}  // namespace molcryst

#endif

// NewCrystalMemento: a NewCrystal at rest, the file form of a crystal view.
//
// It holds what restores the same picture with the same expansions: a copy
// of the maker, the settings, the active criteria and filter, and the picture
// shown with its contacts. A molecule may appear in the maker's view, in the
// picture and at the ends of contacts; all of them are kept once, in a pool,
// and referred to by position, so that one molecule comes back as one object.
//
// Archive layout: version (int, 2), the maker, the pool (unsigned int count,
// each molecule), the picture's pool positions (vector of int), packed
// (bool), packing box, sliced (bool), slicing plane, thickness and
// displacement (doubles), the criteria (ContactCriterionArchiver), the filter
// (bool present, then the criterion), the contacts (int count, each: from
// position, to position, the BasicContact). A version 1 archive differs in
// the layouts of the maker and the molecules only.
#ifndef MOLCRYST_CRYSTAL_NEWCRYSTALMEMENTO_H
#define MOLCRYST_CRYSTAL_NEWCRYSTALMEMENTO_H

#include <map>
#include <ostream>
#include <vector>

#include "molcryst/contact/BasicContact.h"
#include "molcryst/contact/ContactCriterion.h"
#include "molcryst/contact/DistanceCriterion.h"
#include "molcryst/crystal/Crystal.h"
#include "molcryst/crystal/CrystalMaker.h"
#include "molcryst/geometry/Box.h"
#include "molcryst/geometry/Plane.h"

namespace molcryst {

class Archive;
class NewCrystal;

/// A contact between two molecules of the pool, by pool position.
struct MolecularContactMemento {
    int molecule_from_index_ = -1;
    int molecule_to_index_ = -1;
    BasicContact contact_{-1, -1};

    bool operator==(const MolecularContactMemento& other) const {
        return molecule_from_index_ == other.molecule_from_index_ && molecule_to_index_ == other.molecule_to_index_ &&
               contact_ == other.contact_;
    }
    bool operator!=(const MolecularContactMemento& other) const { return !(*this == other); }
};

std::ostream& operator<<(std::ostream& os, const MolecularContactMemento& memento);

/// The saved state of a crystal view; see the banner.
class NewCrystalMemento {
public:
    /// No maker, an empty picture, the default settings.
    NewCrystalMemento();
    /// The view's settings, criteria and filter, then set_crystal with its
    /// maker, picture and contacts.
    explicit NewCrystalMemento(const NewCrystal& crystal);
    NewCrystalMemento(const NewCrystalMemento& other);
    NewCrystalMemento& operator=(const NewCrystalMemento& other);
    virtual ~NewCrystalMemento();

    /// Keeps a copy of the maker and pools the molecules of its view, of the
    /// picture and at the contacts' ends. A contact with an end outside the
    /// pool is left out, with a line on standard output.
    void set_crystal(const HCrystalMaker& maker, const HCrystal& snapshot, const Hvector_HMolecularContact& contacts);

    const HCrystalMaker& crystal_maker() const { return crystal_maker_; }
    /// A new crystal of the maker's cell and the pooled molecules of the
    /// picture, without contacts.
    HCrystal crystal_snapshot() const;
    /// New contacts between the pooled molecules, rebuilt from their two
    /// atoms: type 0, no strength, single-atom groups.
    Hvector_HMolecularContact contacts() const;

    const std::vector<HMolecule>& base_molecules() const { return base_molecules_; }
    const std::vector<int>& crystal_snapshot_indices() const { return crystal_snapshot_indices_; }
    const std::vector<MolecularContactMemento>& contact_mementos() const { return contact_mementos_; }

    bool packing() const { return packed_; }
    void set_packing(bool packing) { packed_ = packing; }
    const Box& packing_box() const { return packing_box_; }
    void set_packing_box(const Box& box) { packing_box_ = box; }
    bool slicing() const { return sliced_; }
    void set_slicing(bool slicing) { sliced_ = slicing; }
    const Plane& slicing_plane() const { return slicing_plane_; }
    void set_slicing_plane(const Plane& plane) { slicing_plane_ = plane; }
    double slicing_thickness() const { return slicing_thickness_; }  // Angstrom
    void set_slicing_thickness(double thickness) { slicing_thickness_ = thickness; }
    double slicing_displacement() const { return slicing_displacement_; }  // Angstrom
    void set_slicing_displacement(double displacement) { slicing_displacement_ = displacement; }
    const std::vector<HContactCriterion>& criteria() const { return criteria_; }
    void set_criteria(const std::vector<HContactCriterion>& criteria) { criteria_ = criteria; }
    const HDistanceCriterion& contact_filter() const { return contact_filter_; }
    void set_contact_filter(const HDistanceCriterion& filter) { contact_filter_ = filter; }

    /// A criterion or filter that ContactCriterionArchiver refuses throws
    /// its std::runtime_error before anything is written; a null maker goes
    /// to HandleCommon::null_handle_error.
    void write(Archive& ar) const;
    /// Versions 2 and 1 (the latter from a VersionedArchive only). Any
    /// failure throws std::runtime_error and leaves the memento as it was.
    void read(Archive& ar);
    virtual void print(std::ostream& os) const;

private:
    typedef std::map<const Molecule*, int> PoolIndex;

    /// Everything after the version, into this fresh memento.
    void read_body(Archive& ar);
    void add_to_indices(const HMolecule& molecule, PoolIndex& index);
    std::vector<int> build_indices(const HCrystal& snapshot, const PoolIndex& index) const;
    std::vector<MolecularContactMemento> build_contacts(const PoolIndex& index,
                                                        const Hvector_HMolecularContact& contacts) const;

    HCrystalMaker crystal_maker_;
    std::vector<HMolecule> base_molecules_;
    std::vector<int> crystal_snapshot_indices_;
    bool packed_ = false;
    Box packing_box_;  // fractional
    bool sliced_ = false;
    Plane slicing_plane_;
    double slicing_thickness_;
    double slicing_displacement_;
    std::vector<HContactCriterion> criteria_;
    HDistanceCriterion contact_filter_;  // may be null
    std::vector<MolecularContactMemento> contact_mementos_;
};

/// Field by field, the doubles within 1e-07; the first difference is written to standard output.
bool operator==(const NewCrystalMemento& a, const NewCrystalMemento& b);
bool operator!=(const NewCrystalMemento& a, const NewCrystalMemento& b);
std::ostream& operator<<(std::ostream& os, const NewCrystalMemento& memento);

}  // namespace molcryst

#endif

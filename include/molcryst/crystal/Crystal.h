// Crystal: a plain picture of a crystal: molecules in a cell, every atom
// with a site, and the contacts known between them. It has no asymmetric
// unit and no memory of how it was made; its one piece of thought is merge,
// which stores once the molecules that arrive by different symmetry routes
// and describe the same atoms.
//
// Archive layout: the cell; the molecule count (unsigned int) and each
// molecule by its own write; the contact count (unsigned int) and, per
// contact, its own write then the positions of its two molecules (int,
// int). A contact end that is not one of the crystal's molecules by handle
// is written as position 0. Molecules read back as Molecule3d.
#ifndef MOLCRYST_CRYSTAL_CRYSTAL_H
#define MOLCRYST_CRYSTAL_CRYSTAL_H

#include <cstdint>
#include <memory>
#include <ostream>
#include <vector>

#include "molcryst/contact/MolecularContact.h"
#include "molcryst/geometry/Cell.h"
#include "molcryst/molecule/Molecule.h"

namespace molcryst {

class Archive;
class ContactCriterion;
class Crystal;

typedef THandle<Crystal> HCrystal;
typedef std::vector<HCrystal> vector_HCrystal;
typedef THandle<vector_HCrystal> Hvector_HCrystal;

/// Molecules in a cell with their contacts; see the banner.
class Crystal {
public:
    /// The default cell, no molecules, no contacts.
    Crystal();
    explicit Crystal(Archive& ar);
    /// Adopts the list by handle (a null one becomes a new empty list), with
    /// no contacts. Throws std::runtime_error if an atom has no site.
    Crystal(const Cell& cell, Hvector_HMolecule molecules);
    /// Adopts both lists by handle.
    Crystal(const Cell& cell, Hvector_HMolecule molecules, Hvector_HMolecularContact contacts);
    /// Deep: new molecules, and new contacts joining them.
    Crystal(const Crystal& x);
    Crystal& operator=(const Crystal& x);
    virtual ~Crystal();

    virtual void write(Archive& ar) const;
    /// On failure throws std::runtime_error and leaves the crystal as it was.
    virtual void read(Archive& ar);
    /// "cell: " and the cell, then each molecule and each contact under a
    /// numbered heading.
    virtual void print(std::ostream& os) const;

    /// New lists holding the same molecule and contact handles.
    HCrystal create_shallow_copy() const;

    const Cell& cell() const { return cell_; }
    const Hvector_HMolecule& molecules() const { return molecules_; }
    const Hvector_HMolecularContact& contacts() const { return contacts_; }
    int natoms() const;
    int nbonds() const;
    int nmolecules() const { return static_cast<int>(molecules_->size()); }
    int ncontacts() const { return static_cast<int>(contacts_->size()); }
    /// The stored handle; std::out_of_range outside the list.
    HMolecule molecule(int index) const;
    /// A new copy of the stored contact; std::out_of_range outside the list.
    HMolecularContact contact(int index) const;
    /// The mean orthogonal point of all sited atoms; the origin when there are none.
    Point centroid() const;
    /// The first molecule with more than `index` atoms whose atom `index`
    /// has that symmetry tag; a null handle if none.
    HMolecule find_molecule(int index, int symmtag) const;
    /// The first molecule with a sited atom of that tag at `p` (1e-05
    /// Angstrom); sets both outputs. Else `index` is -1 and the result false.
    bool find_atom(int symmtag, const Point& p, HMolecule& molecule, int& index) const;

    /// Contacts from the atoms `atoms_i` of molecule i to `atoms_j` of
    /// molecule j; empty unless some atom of each group may stand at its end.
    Hvector_HMolecularContact nonbonded_search(int i, const std::vector<int>& atoms_i, int j,
                                               const std::vector<int>& atoms_j, const ContactCriterion& c) const;
    /// From `atoms_i` of molecule i to all atoms of every other molecule, in order.
    Hvector_HMolecularContact nonbonded_search(int i, const std::vector<int>& atoms_i,
                                               const ContactCriterion& c) const;
    /// From all atoms of molecule i.
    Hvector_HMolecularContact nonbonded_search(int i, const ContactCriterion& c) const;

    /// Stores `m` unless a stored molecule describes the same atoms (in the
    /// same order, fractional points within 1e-05); the index of the stored
    /// one, or of `m` at the end. Throws std::runtime_error if an atom has no site.
    int merge(HMolecule m);
    /// Merges the image of `m` under `t`.
    int merge(HMolecule m, const CrystalSymmetryTransformation& t);
    /// Stores a contact equal to none stored, with its molecules; its index.
    int merge(HMolecularContact c);
    /// Merges each molecule of `other`, not its contacts; the indices in order.
    std::vector<int> merge(HCrystal other);
    std::vector<int> merge(HCrystal other, const CrystalSymmetryTransformation& t);

    /// Erases the first molecule equal to `m`; its index, or -1.
    int remove(HMolecule m);
    /// Erases the molecule at `index`; std::out_of_range outside the list.
    void remove(int index);
    /// Erases the first contact equal to `c`; its index, or -1.
    int remove(HMolecularContact c);
    void clear_contacts();

    /// Equal cells, counts, molecules by index and contacts by index.
    bool operator==(const Crystal& other) const;
    bool operator!=(const Crystal& other) const { return !(*this == other); }

    /// Throws std::runtime_error "Trying to add siteless atom to Crystal" at
    /// the first atom without a site.
    void check_atoms_have_sites() const;
    void check_atoms_have_sites(HMolecule m) const;

private:
    /// The lookup that lets merge compare a new molecule with the few stored
    /// ones that can match it rather than with all of them.
    struct MergeIndex;

    void write_contacts_(Archive& ar) const;
    void read_contacts_(Archive& ar, const vector_HMolecule& molecules, vector_HMolecularContact& contacts) const;
    /// The index brought up to date with molecules_, rebuilt if the list
    /// changed other than by appending.
    MergeIndex& merge_index() const;
    void invalidate_merge_index();

    Cell cell_;
    Hvector_HMolecule molecules_;          // never null
    Hvector_HMolecularContact contacts_;   // never null
    mutable std::unique_ptr<MergeIndex> merge_index_;  // scratch, rebuilt on demand
};

std::ostream& operator<<(std::ostream& os, const Crystal& crystal);

}  // namespace molcryst

#endif

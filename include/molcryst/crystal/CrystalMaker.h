// CrystalMaker: the structure as deposited, and the object an edit changes.
// One cell and the molecules of the asymmetric unit, in three lists that say
// how far the three-dimensional atoms and the two-dimensional diagram were
// matched to each other: matched molecules (both agree), unmatched 2d
// molecules (from the diagram alone) and unmatched 3d molecules (from
// coordinates alone). It holds no symmetry copies and no contacts; Crystal
// pictures are generated from it on demand.
//
// The current view (molecule(i), nmolecules, natoms, nbonds and every
// generator) is a list of the very molecule handles of the three lists,
// chosen by a Selection and rebuilt from them after each edit. Within a
// molecule, atoms with a site stand before atoms without one, and bonds are
// ordered by falling number of ends with a site; the edits keep that order.
//
// Archive layout: the cell; the selection (one char); a reserved text
// (unsigned int 8 and eight blanks); then the matched, the unmatched 2d and
// the unmatched 3d list, each an unsigned int count and each molecule by its
// own write. There is no version number. Molecules read back as Molecule3d.
#ifndef MOLCRYST_CRYSTAL_CRYSTALMAKER_H
#define MOLCRYST_CRYSTAL_CRYSTALMAKER_H

#include <map>
#include <ostream>
#include <vector>

#include "molcryst/crystal/Crystal.h"
#include "molcryst/crystal/SymmetryInclusionCondition.h"
#include "molcryst/geometry/Cell.h"
#include "molcryst/molecule/Molecule.h"

namespace molcryst {

class Archive;
class ContactCriterion;
class CrystalMaker;

typedef THandle<CrystalMaker> HCrystalMaker;

/// The deposited structure: a cell and its asymmetric unit in three lists.
class CrystalMaker {
public:
    // The three enumerations are nested so that their short names stay out
    // of the library's namespace.

    /// Which lists form the current view; archived as one byte.
    enum Selection {
        Select2d = 0,      // matched, then unmatched 2d
        Select3d = 1,      // matched, then unmatched 3d
        SelectAll = 2,     // matched, then unmatched 2d, then unmatched 3d
        SelectMatched = 3  // matched only
    };
    /// What set_cell keeps of each site; any value but KeepOrthogonal keeps
    /// the fractional point.
    enum CoordinatesToKeep { KeepFractional = 0, KeepOrthogonal = 1 };
    /// How far the coordinates and the diagram were matched.
    enum MatchLevel { FullyMatched = 0, PartiallyMatched = 1, NotMatched = 2 };

    /// Empty lists, the default cell, SelectAll.
    CrystalMaker();
    /// Adopts the three lists by handle (a null one becomes a new empty
    /// list); the view is Select2d.
    CrystalMaker(const Cell& cell, Hvector_HMolecule molecules, Hvector_HMolecule molecules2d,
                 Hvector_HMolecule molecules3d);
    explicit CrystalMaker(Archive& ar);
    /// Deep: every molecule of the three lists copied as a Molecule3d, the
    /// same selection.
    CrystalMaker(const CrystalMaker& x);
    CrystalMaker& operator=(const CrystalMaker& x);
    virtual ~CrystalMaker();

    virtual void write(Archive& ar) const;
    /// On failure throws std::runtime_error naming the field and leaves the
    /// maker as it was.
    virtual void read(Archive& ar);
    /// The cell, the selection, each list and the current view, with counts.
    virtual void print(std::ostream& os) const;

    // The current view.
    int nmolecules() const { return static_cast<int>(current_molecules_->size()); }
    /// The handle at `index` of the view; std::out_of_range outside it.
    HMolecule molecule(int index) const;
    int natoms() const;
    int nbonds() const;
    const Cell& cell() const { return cell_; }
    Selection selection() const { return selection_; }
    const Hvector_HMolecule& current_molecules() const { return current_molecules_; }
    /// The matched, unmatched 2d and unmatched 3d lists.
    const Hvector_HMolecule& molecules() const { return molecules_; }
    const Hvector_HMolecule& molecules2d() const { return molecules2d_; }
    const Hvector_HMolecule& molecules3d() const { return molecules3d_; }

    /// The first current molecule with more than `index` atoms whose atom
    /// `index` has that symmetry tag; a null handle if none.
    HMolecule find_molecule(int index, int symmtag) const;
    /// Asks each current molecule in turn for a sited atom of that tag at
    /// `p`; on the first hit sets both outputs. Else `index` is -1 and the
    /// result false.
    bool find_atom(int symmtag, const Point& p, HMolecule& molecule, int& index) const;

    /// Rebuilds the view from the lists; a value outside the enumeration
    /// throws std::invalid_argument "Invalid Selection!".
    void select(Selection s);
    void select_2d() { select(Select2d); }
    void select_3d() { select(Select3d); }
    void select_all() { select(SelectAll); }
    void select_matched() { select(SelectMatched); }

    MatchLevel match_level() const;

    /// Appends `m` to the list of `s` (Select2d: unmatched 2d; Select3d:
    /// unmatched 3d; SelectAll and SelectMatched: matched) and rebuilds the view.
    void add(HMolecule m, Selection s);
    /// Erases the handle from every list and the view, wherever it stands.
    void remove(HMolecule m);
    /// Bonds two atoms of the view. Atoms of two molecules join the first:
    /// the second leaves every list, empty. std::invalid_argument
    /// "CrystalMaker::add(HBond, HAtom, HAtom): atom1 is not in any of the
    /// currently-selected molecules" (or atom2) for an atom outside the view.
    void add(HBond bond, HAtom atom1, HAtom atom2);
    /// Removes an atom of the view; the molecule is split if it may have
    /// fallen apart, and dropped when it has no atoms left.
    void remove(HAtom atom);
    /// Removes a bond of the view; the molecule is split if it may have fallen apart.
    void remove(HBond bond);
    /// Keeps the first connected part in `m` and adds each further part, in
    /// order, as a new Molecule3d to the matched list, whichever list `m` is in.
    void split_molecule(HMolecule m);

    /// Replaces the cell; every site of the three lists keeps its fractional
    /// point (KeepFractional) or its orthogonal one (KeepOrthogonal) and the
    /// other is derived.
    void set_cell(const Cell& cell, CoordinatesToKeep keep);
    /// A change of axes: the rows of `m` give the new axes in terms of the
    /// old. The new cell stands in the standard orientation, every site
    /// turned with it, and its spacegroup is always "P1" with no operators.
    /// A negative determinant throws std::runtime_error
    /// "CrystalMaker::transform(): determinant < 0."; axes that span no
    /// volume, std::invalid_argument. Nothing changes on failure.
    void transform(const Matrix<int, 3, 3>& m);

    /// True for i == j; else whether entries i and j of the matched list are
    /// related by symmetry. std::out_of_range for an index outside that list.
    bool is_symmetry_related(int i, int j) const;
    /// True if the molecules are equal, or some sited atom of `a` and some of
    /// `b` are images of each other: by equal symmetry tags when both are
    /// known, else by the cell's symmetry at 1e-07.
    bool is_symmetry_related(const Molecule& a, const Molecule& b) const;
    /// True if the molecules are equal, or every listed sited atom of `b` is
    /// related, as above, to some sited atom of `a`.
    bool are_all_symmetry_related(const Molecule& a, const Molecule& b, const std::vector<int>& atoms_of_b) const;

    /// The molecule's atoms in index order.
    static std::vector<HAtom> create_atom_list(const Molecule& m);
    /// The fractional points of the molecule's atoms in index order; an atom
    /// without a site throws std::invalid_argument.
    static std::vector<Point> create_points(const Molecule& m);
    /// One molecule per mapping list: the targets as atoms, with the bonds of
    /// `source` among the atoms the list maps. `all_atoms` says the lists map
    /// every atom of the source; a list that does not is still given only
    /// the bonds among its own atoms.
    Hvector_HMolecule create_molecule(HMolecule source, const std::vector<Hvector_HCrystalSymmetryMapping>& lists,
                                      bool all_atoms) const;

    /// The asymmetric unit as a crystal: copies of the sited atoms of the
    /// matched, then the unmatched 3d list; no symmetry applied.
    HCrystal create_crystal() const;
    /// The images of the sited atoms of each current molecule admitted into
    /// `solid` by `condition`.
    HCrystal create_crystal(const SymmetryInclusionCondition<HAtom>& condition, const TransformedSolid& solid) const;
    /// The same for current molecule `i` alone; std::out_of_range outside the view.
    HCrystal create_crystal(int i, const SymmetryInclusionCondition<HAtom>& condition,
                            const TransformedSolid& solid) const;
    /// The same for the listed atoms of current molecule `i`, which need sites.
    HCrystal create_crystal(int i, const std::vector<int>& atoms, const SymmetryInclusionCondition<HAtom>& condition,
                            const TransformedSolid& solid) const;

    // Non-bonded surroundings. Each builder answers which atoms of the
    // crystal touch a molecule, or a group of its atoms, by a criterion, and
    // returns a crystal holding the central molecule first, the surrounding
    // matter and the contacts. The region searched is the bounding box of the
    // central atoms widened by the criterion's max_radius(); only images with
    // an atom inside it are generated, and molecules are cut down after the
    // search. The criterion's ContactType decides whether images are looked
    // at (intermolecular), the molecule itself (intramolecular), or both.
    // None of them throws for an empty group: it gives an empty or nearly
    // empty crystal.

    /// The fill crystals of every current molecule merged into one.
    HCrystal create_nonbonded_fill(const ContactCriterion& criterion) const;
    /// All sited atoms of molecule `i`; with none, a crystal of that
    /// molecule and no contacts.
    HCrystal create_nonbonded_fill(int i, const ContactCriterion& criterion) const;
    /// The group `atoms` of molecule `i` against the whole crystal: the
    /// contacts within the molecule (unless intermolecular only), then the
    /// pair crystal of every current molecule with a sited atom, its
    /// molecules appended and its intermolecular contacts copied.
    HCrystal create_nonbonded_fill(int i, const std::vector<int>& atoms, const ContactCriterion& criterion) const;
    /// The group `atoms_i` of molecule `i` against the images of the group
    /// `atoms_j` of molecule `j`: the central molecule, cut to the group and
    /// its contact atoms, first, then each image cut to its contact atoms.
    HCrystal create_nonbonded_fill(int i, const std::vector<int>& atoms_i, int j, const std::vector<int>& atoms_j,
                                   const ContactCriterion& criterion) const;

    /// As create_nonbonded_fill, with the crystals merged.
    HCrystal create_nonbonded_molecule(const ContactCriterion& criterion) const;
    HCrystal create_nonbonded_molecule(int i, const ContactCriterion& criterion) const;
    /// As the fill form, merging the group crystal of each pair.
    HCrystal create_nonbonded_molecule(int i, const std::vector<int>& atoms, const ContactCriterion& criterion) const;
    /// The molecules in contact with the group, whole: the partner group is
    /// closed under the partner's own symmetry, its images are whole
    /// molecules, and the result holds the molecules some contact touches.
    HCrystal create_nonbonded_molecule(int i, const std::vector<int>& atoms_i, int j,
                                       const std::vector<int>& atoms_j, const ContactCriterion& criterion) const;
    /// As the pair form of fill, with the partner group closed under the
    /// partner's symmetry and the central molecule its sited copy.
    HCrystal create_nonbonded_group(int i, const std::vector<int>& atoms_i, int j, const std::vector<int>& atoms_j,
                                    const ContactCriterion& criterion) const;

    /// A new list of one molecule: the sited part of molecule `i` as a copy.
    /// `atoms` does not narrow it; the builders apply the group later.
    Hvector_HMolecule init_nonbonded_search(int i, const std::vector<int>& atoms) const;
    /// The contacts, in order, that the criterion's type admits: every one
    /// for both types; else those whose to atom stands (fractional, 1e-07)
    /// on a central point for intramolecular, and those that do not for
    /// intermolecular.
    Hvector_HMolecularContact prune_contacts(const std::vector<Point>& central_points,
                                             const vector_HMolecularContact& contacts,
                                             const ContactCriterion& criterion) const;
    /// For each contact's to molecule, the atoms it touches in first-seen
    /// order: the to atom alone, or the whole to group for a group contact
    /// (type -1) or when `whole_groups` is set.
    std::map<HMolecule, std::vector<int> > create_contact_atom_selections(const vector_HMolecularContact& contacts,
                                                                           bool whole_groups) const;
    /// The contacts carried over to the replacement molecules: each end found
    /// again by symmetry tag and fractional point; a contact whose molecule
    /// or anchor cannot be found is dropped.
    Hvector_HMolecularContact update_contact_list(const vector_HMolecularContact& contacts,
                                                  const std::map<HMolecule, HMolecule>& replaced) const;
    /// The listed atoms of molecule `i` with every sited atom of that
    /// molecule related to one of them by the cell's symmetry (1e-07), in
    /// order of discovery.
    std::vector<int> symmetrize_atom_indexes(int i, const std::vector<int>& atoms) const;

private:
    // The list that add(m, s) appends to; std::invalid_argument for a bad value.
    Hvector_HMolecule& list_for(Selection s);
    // Appends to `out` the molecules made from the images of the atoms of `m`.
    void append_images(const HMolecule& m, const SymmetryInclusionCondition<HAtom>& condition,
                       const TransformedSolid& solid, bool all_atoms, vector_HMolecule& out) const;

    // The third form of both builder families; `whole` merges the group
    // crystal of each pair instead of appending the fill crystal.
    HCrystal nonbonded_surroundings(int i, const std::vector<int>& atoms, const ContactCriterion& criterion,
                                    bool whole) const;
    // The pair form of fill, or with `closed_group` of create_nonbonded_group.
    HCrystal nonbonded_pair(int i, const std::vector<int>& atoms_i, int j, const std::vector<int>& atoms_j,
                            const ContactCriterion& criterion, bool closed_group) const;

    Cell cell_;
    Hvector_HMolecule current_molecules_;  // the view: handles of the lists below; never archived
    Selection selection_;
    Hvector_HMolecule molecules_;    // matched
    Hvector_HMolecule molecules2d_;  // unmatched, from the diagram alone
    Hvector_HMolecule molecules3d_;  // unmatched, from coordinates alone
};

/// Equal cells and current views, molecule by molecule; the selection and
/// the lists outside the view play no part.
bool operator==(const CrystalMaker& a, const CrystalMaker& b);
bool operator!=(const CrystalMaker& a, const CrystalMaker& b);
std::ostream& operator<<(std::ostream& os, const CrystalMaker& maker);

}  // namespace molcryst

#endif

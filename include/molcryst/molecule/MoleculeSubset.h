// MoleculeSubset: a read-only view of part of another molecule.
//
// The view is a molecule of its own, with its own indices and its own
// connectivity, made of ProxyAtom and ProxyBond objects that forward all
// chemistry to the parent's atoms and bonds. A parent bond that was not
// selected does not exist in the view, even between two selected atoms.
//
// Archive layout: the atom selection, then the bond selection, each an `int`
// count and that many `int` parent indices. The parent is not written: a
// subset is read back by one constructed over the same parent.
#ifndef MOLCRYST_MOLECULE_MOLECULESUBSET_H
#define MOLCRYST_MOLECULE_MOLECULESUBSET_H

#include <ostream>
#include <vector>

#include "molcryst/molecule/MoleculeGraphImpl.h"

namespace molcryst {

/// A view of selected atoms and bonds of a parent molecule. It is not
/// editable: every mutating operation of Molecule raises
/// "Molecule::<name> this molecule can not be edited.". Changes to the
/// parent's atoms (sites above all) show in the view at once, since the
/// proxies hold the very parent atoms.
class MoleculeSubset : public MoleculeGraphImpl {
public:
    /// A view of `parent` that selects nothing; std::invalid_argument for a
    /// null parent. The view types its atoms with the parent's typer.
    explicit MoleculeSubset(const HMolecule& parent);
    /// A view of the same parent with the same selection, of new proxies.
    MoleculeSubset(const MoleculeSubset& x);
    /// Takes the other's parent, typer and selection, with new proxies.
    MoleculeSubset& operator=(const MoleculeSubset& x);
    ~MoleculeSubset() override;

    HMolecule clone() const override;
    /// The parts of create_molecule(), as new molecules free of the parent.
    Hvector_HMolecule split() const override;
    /// "atom selection:" and "bond selection:", each followed by the parent
    /// indices, one line each.
    void print(std::ostream& out) const override;
    void write(Archive& ar) const override;
    /// Reads both selections and rebuilds the view over the parent given at
    /// construction. Indices the parent does not have, an index given twice,
    /// or a bond whose ends are not both selected throw std::runtime_error and
    /// leave the view as it was.
    void read(Archive& ar) override;

    const HMolecule& parent() const { return parent_; }

    /// All atoms and all bonds of the parent.
    void select_all();
    /// The parent's atoms that have sites, with the bonds among them.
    void select_3d();
    /// Those parent atoms, in the order given, and the parent's bonds among them.
    void select_atom_indices(const std::vector<int>& atoms);
    /// Those parent bonds and the atoms at their ends, the atoms ascending.
    void select_bond_indices(const std::vector<int>& bonds);
    /// Those parent atoms and no bonds.
    void select_atom_indices_only(const std::vector<int>& atoms);
    /// Narrows the view: `atoms` are indices of this subset, and the bonds
    /// kept are those of this subset among them.
    void select_atom_indices_from_current(const std::vector<int>& atoms);
    /// Rebuilds the view: one proxy per parent atom index, in that order, and
    /// one per parent bond index, between the proxies of its ends. Indices
    /// the parent lacks raise its std::out_of_range; an atom or bond given
    /// twice, or a bond with an end not selected, std::invalid_argument. On
    /// failure the view is left as it was.
    void create_atoms_and_bonds(const std::vector<int>& atoms, const std::vector<int>& bonds);

    /// The index the parent gives now to the atom at `index` here. It follows
    /// edits of the parent; an atom that has left the parent, or whose proxy
    /// was marked dead, throws std::runtime_error.
    int parent_atom_index(int index) const;
    /// The index the parent gives now to the bond at `index` here.
    int parent_bond_index(int index) const;
    /// Parent indices of the atoms here, in this subset's order.
    std::vector<int> current_atom_selection() const;
    /// Parent indices of the bonds here, in this subset's order.
    std::vector<int> current_bond_selection() const;

    using Molecule::create_molecule;
    /// A new Molecule3d copied from this view: plain atoms with sites of their
    /// own, free of the parent, in this subset's order.
    HMolecule create_molecule() const;

private:
    /// Checks the selection against `parent`, then replaces the view; throws
    /// before changing anything. With `ar`, a bad selection is a read error of it.
    void rebuild(const HMolecule& parent, const std::vector<int>& atoms, const std::vector<int>& bonds,
                 const Archive* ar = nullptr);

    HMolecule parent_;  // never null
};

typedef THandle<MoleculeSubset> HMoleculeSubset;

}  // namespace molcryst

#endif

// MoleculeGraphEditableImpl: a molecule in a chemical graph that may be edited.
#ifndef MOLCRYST_MOLECULE_MOLECULEGRAPHEDITABLEIMPL_H
#define MOLCRYST_MOLECULE_MOLECULEGRAPHEDITABLEIMPL_H

#include "molcryst/molecule/MoleculeGraphImpl.h"

namespace molcryst {

/// Adds the mutating operations of Molecule by forwarding them to the graph.
class MoleculeGraphEditableImpl : public MoleculeGraphImpl {
public:
    ~MoleculeGraphEditableImpl() override;

    bool editable() const override;
    using Molecule::add;
    int add(HAtom atom) override;
    int unchecked_add(HAtom atom) override;
    int add(HBond bond, int atom1, int atom2) override;
    int add(HBond bond, HAtom atom1, HAtom atom2) override;
    int unchecked_add(HBond bond, HAtom atom1, HAtom atom2) override;
    void remove_atom(int index) override;
    void remove(HAtom atom) override;
    void remove_bond(int index) override;
    void remove(HBond bond) override;
    void isolate(HAtom atom) override;
    void clear() override;
    /// `order[k]` is the old index of the atom that is to have index k;
    /// atoms not listed follow in their old order. Bonds keep their indices
    /// and their ends. An index out of range, or listed twice, throws
    /// std::invalid_argument and leaves the molecule as it was.
    void reorder_atoms(const std::vector<int>& order) override;
    /// The same for bonds: bonds not listed follow in their old order, and
    /// atoms keep their indices.
    void reorder_bonds(const std::vector<int>& order) override;
    using Molecule::remove_atoms;
    /// Forwards to the graph's batch removal: one pass over the tables.
    int remove_atoms(const std::vector<HAtom>& atoms) override;

protected:
    MoleculeGraphEditableImpl() = default;
    MoleculeGraphEditableImpl(const MoleculeGraphEditableImpl& x) = default;
    explicit MoleculeGraphEditableImpl(const Molecule& x) : MoleculeGraphImpl(x) {}
    MoleculeGraphEditableImpl& operator=(const MoleculeGraphEditableImpl& x) = default;
};

}  // namespace molcryst

#endif

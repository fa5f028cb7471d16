// MoleculeGraphImpl: the storage of a molecule in a chemical graph.
//
// It answers every read operation of Molecule from a ChemicalGraph<Atom, Bond>
// and leaves editing to MoleculeGraphEditableImpl. Read-only views
// (MoleculeSubset) derive from it directly.
#ifndef MOLCRYST_MOLECULE_MOLECULEGRAPHIMPL_H
#define MOLCRYST_MOLECULE_MOLECULEGRAPHIMPL_H

#include "molcryst/molecule/BondInGraph.h"
#include "molcryst/molecule/Molecule.h"

namespace molcryst {

/// A molecule whose atoms and bonds live in a chemical graph. Atoms and bonds
/// stored here must carry graph data (AtomInGraph, BondInGraph).
class MoleculeGraphImpl : public Molecule {
public:
    ~MoleculeGraphImpl() override;

    int ncomponents() const override;
    bool contiguous() const override;
    int natoms() const override;
    HAtom atom(int index) const override;
    bool has_atom(HAtom atom) const override;
    PolymorphicConstIterator<HAtom> begin_atoms() const override;
    PolymorphicConstIterator<HAtom> end_atoms() const override;
    PolymorphicIterator<HAtom> begin_atoms() override;
    PolymorphicIterator<HAtom> end_atoms() override;
    int nbonds() const override;
    HBond bond(int index) const override;
    HBond bond(HAtom atom1, HAtom atom2) const override;
    bool has_bond(HBond bond) const override;
    bool has_bond(HAtom atom1, HAtom atom2) const override;
    PolymorphicConstIterator<HBond> begin_bonds() const override;
    PolymorphicConstIterator<HBond> end_bonds() const override;
    PolymorphicIterator<HBond> begin_bonds() override;
    PolymorphicIterator<HBond> end_bonds() override;
    HMoleculeGraph graph() const override;
    using Molecule::graph;
    int atom_nconnections_nonmetal(int index) const override;
    int atom_nconnections_metal(int index) const override;
    int atom_nconnections_nonhydrogen(int index) const override;
    /// The neighbours' indices, in neighbour order.
    Hvector_int atom_connections(int index) const override;
    Hvector_int atom_connections_nonmetal(int index) const override;
    Hvector_int atom_connections_metal(int index) const override;
    Hvector_int atom_connections_nonhydrogen(int index) const override;
    int bond_index(int atom1, int atom2) const override;

    /// The graph itself, for the layers built on molecules.
    const ChemicalGraph<Atom, Bond>& chemical_graph() const { return graph_; }

protected:
    MoleculeGraphImpl() = default;
    /// Copies the typer only; the graph starts empty, and each concrete
    /// class decides how to fill it.
    MoleculeGraphImpl(const MoleculeGraphImpl& x);
    /// The same for a molecule of any kind: its typer is shared, the graph starts empty.
    explicit MoleculeGraphImpl(const Molecule& x);
    /// Empties the graph; nothing else.
    MoleculeGraphImpl& operator=(const MoleculeGraphImpl& x);

    /// The graph data of an atom or bond given to this molecule; throws
    /// std::runtime_error for one without.
    static THandle<AtomInGraph> atom_in_graph(const HAtom& atom);
    static THandle<BondInGraph> bond_in_graph(const HBond& bond);

    ChemicalGraph<Atom, Bond> graph_;
};

}  // namespace molcryst

#endif

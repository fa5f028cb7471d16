// ChemicalGraph: atoms and bonds joined into an ordered graph that owns them.
//
// The ownership rule of the molecular model lives here. An atom or bond in a
// graph is held by the graph's tables, and holds a handle to the graph and one
// to itself (its graph data). `clear`, which the destructor runs, resets every
// graph data and so breaks those cycles: an atom a caller still holds after
// its graph died is alive and free, and atoms never die while their graph
// lives. An atom belongs to at most one graph at a time.
#ifndef MOLCRYST_GRAPH_CHEMICALGRAPH_H
#define MOLCRYST_GRAPH_CHEMICALGRAPH_H

#include <stdexcept>
#include <vector>

#include "molcryst/graph/ChemicalGraphAtomData.h"
#include "molcryst/graph/ChemicalGraphBondData.h"
#include "molcryst/graph/OrderedGraph.h"

namespace molcryst {

/// Typed graph of atoms `A` and bonds `B`; `A::graph_data()` and
/// `B::graph_data()` give their ChemicalGraphAtomData and ChemicalGraphBondData.
template <class A, class B>
class ChemicalGraph {
public:
    typedef THandle<A> HAtomType;
    typedef THandle<B> HBondType;
    typedef OrderedGraph<HAtomType, HBondType> GraphType;
    typedef THandle<GraphType> HGraphType;
    typedef typename GraphType::node_iterator atom_iterator;
    typedef typename GraphType::const_node_iterator const_atom_iterator;
    typedef typename GraphType::edge_iterator bond_iterator;
    typedef typename GraphType::const_edge_iterator const_bond_iterator;
    typedef typename std::set<HAtomType>::const_iterator NeighbourIterator;

    ChemicalGraph() : graph_(new GraphType()) {}
    ChemicalGraph(const ChemicalGraph&) = delete;
    ChemicalGraph& operator=(const ChemicalGraph&) = delete;
    /// Frees every atom and bond.
    virtual ~ChemicalGraph() { clear(); }

    /// Adds a free atom and returns its index; an atom already here keeps its index.
    int add(const HAtomType& atom_in) {
        validate();
        HAtomType atom(atom_in);
        if (atom.unhand() == nullptr)
            throw std::invalid_argument("ChemicalGraph<AtomType, BondType>::add(HAtomType) atom is a null pointer");
        const HGraphType& owner = atom->graph_data().graph();
        if (owner.unhand() != nullptr && owner != graph_)
            throw std::domain_error(
                "ChemicalGraph<AtomType, BondType>::add(HAtomType) atom is already in another ChemicalGraph object");
        if (graph_->has_node(atom)) {
            if (owner != graph_)
                throw std::runtime_error(
                    "ChemicalGraph<AtomType, BondType>::add(HAtomType) mismatch between atom and graph data");
            return graph_->node_index(atom);
        }
        graph_->add_node(atom);
        atom->graph_data().set_graph(graph_, atom);
        validate();
        return natoms() - 1;
    }

    /// Adds an atom without looking for it first; it must be free.
    int unchecked_add(const HAtomType& atom_in) {
        validate();
        HAtomType atom(atom_in);
        if (atom.unhand() == nullptr)
            throw std::invalid_argument(
                "ChemicalGraph<AtomType, BondType>::unchecked_add(HAtomType) atom is a null pointer");
        if (atom->graph_data().graph().unhand() != nullptr)
            throw std::domain_error(
                "ChemicalGraph<AtomType, BondType>::unchecked_add(HAtomType) atom is already in a ChemicalGraph object");
        graph_->unchecked_add_node(atom);
        atom->graph_data().set_graph(graph_, atom);
        validate();
        return natoms() - 1;
    }

    /// Adds `bond` between the atoms at two indices, which must exist.
    int add(const HBondType& bond, int index1, int index2) {
        return add(bond, graph_->node(static_cast<unsigned int>(index1)),
                   graph_->node(static_cast<unsigned int>(index2)));
    }

    /// Adds `bond` between two atoms, adding free atoms too (atom1 first).
    /// The same bond between the same atoms again returns its index.
    int add(const HBondType& bond_in, const HAtomType& atom1_in, const HAtomType& atom2_in) {
        validate();
        HBondType bond(bond_in);
        HAtomType atom1(atom1_in), atom2(atom2_in);
        static const char* const head = "ChemicalGraph<AtomType, BondType>::add(HBondType, HAtomType, HAtomType) ";
        if (bond.unhand() == nullptr) throw std::invalid_argument(std::string(head) + "bond is a null pointer");
        const HGraphType& bond_owner = bond->graph_data().graph();
        if (bond_owner.unhand() != nullptr && bond_owner != graph_)
            throw std::domain_error(std::string(head) + "bond is already in another ChemicalGraph object");
        if (atom1.unhand() == nullptr) throw std::invalid_argument(std::string(head) + "atom1 is a null pointer");
        const HGraphType& owner1 = atom1->graph_data().graph();
        if (owner1.unhand() != nullptr && owner1 != graph_)
            throw std::domain_error(std::string(head) + "atom1 is already in another ChemicalGraph object");
        if (atom2.unhand() == nullptr) throw std::invalid_argument(std::string(head) + "atom2 is a null pointer");
        const HGraphType& owner2 = atom2->graph_data().graph();
        if (owner2.unhand() != nullptr && owner2 != graph_)
            throw std::domain_error(std::string(head) + "atom2 is already in another ChemicalGraph object");
        if (atom1 == atom2) throw std::invalid_argument(std::string(head) + "an atom cannot be bonded to itself");
        if (graph_->has_edge(atom1, atom2)) {
            HBondType there = graph_->edge(atom1, atom2);
            if (there != bond)
                throw std::domain_error(std::string(head) +
                                        "atom1 and atom2 are already in a different bond in this ChemicalGraph object");
            if (bond_owner != graph_ || owner1 != graph_ || owner2 != graph_)
                throw std::runtime_error(std::string(head) + "mismatch between atom, bond and graph data");
            return graph_->edge_index(bond);
        }
        if (graph_->has_edge(bond))
            throw std::domain_error(std::string(head) +
                                    "bond is already present in this ChemicalGraph object, but involving different atoms");
        graph_->add_edge(bond, atom1, atom2);
        bond->graph_data().set_graph(graph_, bond);
        if (atom1->graph_data().graph().unhand() == nullptr) atom1->graph_data().set_graph(graph_, atom1);
        if (atom2->graph_data().graph().unhand() == nullptr) atom2->graph_data().set_graph(graph_, atom2);
        validate();
        return nbonds() - 1;
    }

    /// Adds a free bond between two atoms already in this graph, without the
    /// duplicate tests of `add`.
    int unchecked_add(const HBondType& bond_in, const HAtomType& atom1_in, const HAtomType& atom2_in) {
        validate();
        HBondType bond(bond_in);
        HAtomType atom1(atom1_in), atom2(atom2_in);
        static const char* const head =
            "ChemicalGraph<AtomType, BondType>::unchecked_add(HBondType, HAtomType, HAtomType) ";
        if (bond.unhand() == nullptr) throw std::invalid_argument(std::string(head) + "bond is a null pointer");
        if (bond->graph_data().graph().unhand() != nullptr)
            throw std::domain_error(std::string(head) + "bond is already in another ChemicalGraph object");
        if (atom1.unhand() == nullptr) throw std::invalid_argument(std::string(head) + "atom1 is a null pointer");
        if (atom1->graph_data().graph() != graph_)
            throw std::domain_error(std::string(head) + "atom1 is not in this ChemicalGraph object");
        if (atom2.unhand() == nullptr) throw std::invalid_argument(std::string(head) + "atom2 is a null pointer");
        if (atom2->graph_data().graph() != graph_)
            throw std::domain_error(std::string(head) + "atom2 is not in this ChemicalGraph object");
        if (atom1 == atom2) throw std::invalid_argument(std::string(head) + "an atom cannot be bonded to itself");
        graph_->unchecked_add_edge(bond, atom1, atom2);
        bond->graph_data().set_graph(graph_, bond);
        validate();
        return nbonds() - 1;
    }

    /// Removes an atom of this graph with its bonds and frees them; an atom of
    /// another graph, or a free one, is ignored.
    void remove_atom(const HAtomType& atom_in) {
        validate();
        HAtomType atom(atom_in);
        if (atom.unhand() == nullptr)
            throw std::invalid_argument(
                "ChemicalGraph<AtomType, BondType>::remove_atom(HAtomType) atom is a null pointer");
        if (atom->graph_data().graph() != graph_) return;
        isolate(atom);
        graph_->remove_node(atom);
        atom->graph_data().set_graph(HGraphType(), HAtomType());
        validate();
    }

    /// Removes the atoms of this graph among `atoms`, with their bonds, and
    /// frees them, leaving everything as remove_atom of each in turn would:
    /// the survivors keep their order, atoms of another graph, free ones and
    /// repeats are ignored, and the bonds are freed in the same order. A null
    /// atom raises remove_atom's error before anything changes. The tables
    /// are filtered once, so the cost is n log n however many go. Returns
    /// the number of atoms removed.
    int remove_atoms(const std::vector<HAtomType>& atoms) {
        validate();
        for (const HAtomType& atom : atoms)
            if (atom.unhand() == nullptr)
                throw std::invalid_argument(
                    "ChemicalGraph<AtomType, BondType>::remove_atom(HAtomType) atom is a null pointer");
        std::vector<HAtomType> doomed;  // repeats included: freeing skips them
        for (const HAtomType& atom : atoms)
            if (atom->graph_data().graph() == graph_) doomed.push_back(atom);
        if (doomed.empty()) return 0;
        std::vector<HBondType> bonds;  // in the order remove_atom would free them
        graph_->remove_nodes(doomed, &bonds);
        // Only bonds can die here, as with remove_atom: the caller holds the
        // atoms. So atoms and bonds are freed apart, each in their order.
        for (HBondType& bond : bonds) {
            bond->graph_data().set_graph(HGraphType(), HBondType());
            bond = HBondType();  // a bond nobody else holds dies now
        }
        int count = 0;
        for (const HAtomType& atom : doomed) {
            if (atom->graph_data().graph() != graph_) continue;  // a repeat, freed already
            atom->graph_data().set_graph(HGraphType(), HAtomType());
            ++count;
        }
        validate();
        return count;
    }

    /// Removes a bond of this graph and frees it; a bond of another graph, or
    /// a free one, is ignored.
    void remove_bond(const HBondType& bond_in) {
        validate();
        HBondType bond(bond_in);
        if (bond.unhand() == nullptr)
            throw std::invalid_argument(
                "ChemicalGraph<AtomType, BondType>::remove_bond(HBondType) bond is a null pointer");
        if (bond->graph_data().graph() != graph_) return;
        graph_->remove_edge(bond);
        bond->graph_data().set_graph(HGraphType(), HBondType());
        validate();
    }

    /// Removes every bond of the atom, bond 0 first each time. A free atom
    /// raises the graph data's error; an atom of another graph is left alone.
    void isolate(const HAtomType& atom_in) {
        HAtomType atom(atom_in);
        if (atom.unhand() == nullptr)
            throw std::invalid_argument("ChemicalGraph<AtomType, BondType>::isolate(HAtomType) atom is a null pointer");
        ChemicalGraphAtomData<A, B>& data = atom->graph_data();
        if (data.graph().unhand() != nullptr && data.graph() != graph_) return;
        while (data.nbonds() != 0) remove_bond(data.bond(0));
    }

    /// Frees every atom, then every bond, and empties the graph.
    void clear() {
        for (atom_iterator a = graph_->begin_nodes(); a != graph_->end_nodes(); ++a)
            (*a)->graph_data().set_graph(HGraphType(), HAtomType());
        for (bond_iterator b = graph_->begin_edges(); b != graph_->end_edges(); ++b)
            (*b)->graph_data().set_graph(HGraphType(), HBondType());
        graph_->clear();
    }

    /// Gives the atoms new indices: `atoms` lists every atom of the graph
    /// exactly once, in the new order. Bonds keep their indices and ends.
    void reorder_atoms(const std::vector<HAtomType>& atoms) { graph_->reorder_nodes(atoms); }

    /// Gives the bonds new indices: `bonds` lists every bond of the graph
    /// exactly once, in the new order. Atoms keep their indices.
    void reorder_bonds(const std::vector<HBondType>& bonds) { graph_->reorder_edges(bonds); }

    int natoms() const { return static_cast<int>(graph_->nnodes()); }
    int nbonds() const { return static_cast<int>(graph_->nedges()); }

    bool has_atom(const HAtomType& atom) const {
        if (atom.unhand() == nullptr)
            throw std::invalid_argument("ChemicalGraph<AtomType, BondType>::has_atom(HAtomType) atom is a null pointer");
        return graph_->has_node(atom);
    }
    bool has_bond(const HBondType& bond) const {
        if (bond.unhand() == nullptr)
            throw std::invalid_argument("ChemicalGraph<AtomType, BondType>::has_bond(HBondType) bond is a null pointer");
        return graph_->has_edge(bond);
    }
    bool has_bond(const HAtomType& atom1, const HAtomType& atom2) const {
        if (atom1.unhand() == nullptr)
            throw std::invalid_argument(
                "ChemicalGraph<AtomType, BondType>::has_bond(HAtomType, HAtomType) atom1 is a null pointer");
        if (atom2.unhand() == nullptr)
            throw std::invalid_argument(
                "ChemicalGraph<AtomType, BondType>::has_bond(HAtomType, HAtomType) atom2 is a null pointer");
        return graph_->has_edge(atom1, atom2);
    }
    /// The bond between two atoms; none raises the graph's own error.
    HBondType bond(const HAtomType& atom1, const HAtomType& atom2) const {
        if (atom1.unhand() == nullptr)
            throw std::invalid_argument(
                "ChemicalGraph<AtomType, BondType>::bond(HAtomType, HAtomType) atom1 is a null pointer");
        if (atom2.unhand() == nullptr)
            throw std::invalid_argument(
                "ChemicalGraph<AtomType, BondType>::bond(HAtomType, HAtomType) atom2 is a null pointer");
        return graph_->edge(atom1, atom2);
    }

    /// The atom or bond with an index; std::out_of_range outside the tables.
    HAtomType atom(int index) const { return graph_->node(static_cast<unsigned int>(index)); }
    HBondType bond(int index) const { return graph_->edge(static_cast<unsigned int>(index)); }

    atom_iterator begin_atoms() { return graph_->begin_nodes(); }
    atom_iterator end_atoms() { return graph_->end_nodes(); }
    const_atom_iterator begin_atoms() const { return graph_->begin_nodes(); }
    const_atom_iterator end_atoms() const { return graph_->end_nodes(); }
    bond_iterator begin_bonds() { return graph_->begin_edges(); }
    bond_iterator end_bonds() { return graph_->end_edges(); }
    const_bond_iterator begin_bonds() const { return graph_->begin_edges(); }
    const_bond_iterator end_bonds() const { return graph_->end_edges(); }

    NeighbourIterator begin_neighbours(const HAtomType& atom) const { return graph_->node_begin_neighbours(atom); }
    NeighbourIterator end_neighbours(const HAtomType& atom) const { return graph_->node_end_neighbours(atom); }

    /// A separate topology over the same atoms and bonds, free to be edited
    /// or split; the ring caches go with it.
    HGraphType graph() const { return HGraphType(new GraphType(*graph_)); }

    /// The graph itself, for the layers that build on it.
    const GraphType& ordered_graph() const { return *graph_; }

    /// The connected parts; with more than one, this graph is cleared so
    /// that its atoms and bonds are free to join the parts.
    THandle<std::vector<HGraphType> > inplace_split() {
        THandle<std::vector<HGraphType> > parts = graph_->split();
        if (parts->size() > 1) clear();
        return parts;
    }

    /// Hook for consistency checks; does nothing.
    void validate() const {}

protected:
    HGraphType graph_;  // never null
};

}  // namespace molcryst

#endif

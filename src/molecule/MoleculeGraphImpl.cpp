#include "molcryst/molecule/MoleculeGraphImpl.h"

#include <stdexcept>

#include "molcryst/molecule/BondInGraph.h"

namespace molcryst {

MoleculeGraphImpl::MoleculeGraphImpl(const MoleculeGraphImpl& x) : Molecule(x) {}

MoleculeGraphImpl::MoleculeGraphImpl(const Molecule& x) : Molecule(x) {}

MoleculeGraphImpl& MoleculeGraphImpl::operator=(const MoleculeGraphImpl&) {
    graph_.clear();
    return *this;
}

MoleculeGraphImpl::~MoleculeGraphImpl() = default;

THandle<AtomInGraph> MoleculeGraphImpl::atom_in_graph(const HAtom& atom) {
    THandle<AtomInGraph> a = handle_dynamic_cast<AtomInGraph, Atom>(atom);
    if (a.unhand() == nullptr && atom.unhand() != nullptr)
        throw std::runtime_error("MoleculeGraphImpl - Illegal type of atom stored");
    return a;
}

THandle<BondInGraph> MoleculeGraphImpl::bond_in_graph(const HBond& bond) {
    THandle<BondInGraph> b = handle_dynamic_cast<BondInGraph, Bond>(bond);
    if (b.unhand() == nullptr && bond.unhand() != nullptr)
        throw std::runtime_error("MoleculeGraphImpl - Illegal type of bond stored");
    return b;
}

int MoleculeGraphImpl::ncomponents() const { return graph_.ordered_graph().ncomponents(); }
bool MoleculeGraphImpl::contiguous() const { return graph_.ordered_graph().contiguous(); }
int MoleculeGraphImpl::natoms() const { return graph_.natoms(); }
HAtom MoleculeGraphImpl::atom(int index) const { return graph_.atom(index); }
bool MoleculeGraphImpl::has_atom(HAtom atom) const { return graph_.has_atom(atom); }

PolymorphicConstIterator<HAtom> MoleculeGraphImpl::begin_atoms() const {
    return make_polymorphic_const_iterator<HAtom>(graph_.begin_atoms());
}
PolymorphicConstIterator<HAtom> MoleculeGraphImpl::end_atoms() const {
    return make_polymorphic_const_iterator<HAtom>(graph_.end_atoms());
}
PolymorphicIterator<HAtom> MoleculeGraphImpl::begin_atoms() {
    return make_polymorphic_iterator<HAtom>(graph_.begin_atoms());
}
PolymorphicIterator<HAtom> MoleculeGraphImpl::end_atoms() { return make_polymorphic_iterator<HAtom>(graph_.end_atoms()); }

int MoleculeGraphImpl::nbonds() const { return graph_.nbonds(); }
HBond MoleculeGraphImpl::bond(int index) const { return graph_.bond(index); }
HBond MoleculeGraphImpl::bond(HAtom atom1, HAtom atom2) const { return graph_.bond(atom1, atom2); }
bool MoleculeGraphImpl::has_bond(HBond bond) const { return graph_.has_bond(bond); }
bool MoleculeGraphImpl::has_bond(HAtom atom1, HAtom atom2) const { return graph_.has_bond(atom1, atom2); }

PolymorphicConstIterator<HBond> MoleculeGraphImpl::begin_bonds() const {
    return make_polymorphic_const_iterator<HBond>(graph_.begin_bonds());
}
PolymorphicConstIterator<HBond> MoleculeGraphImpl::end_bonds() const {
    return make_polymorphic_const_iterator<HBond>(graph_.end_bonds());
}
PolymorphicIterator<HBond> MoleculeGraphImpl::begin_bonds() {
    return make_polymorphic_iterator<HBond>(graph_.begin_bonds());
}
PolymorphicIterator<HBond> MoleculeGraphImpl::end_bonds() { return make_polymorphic_iterator<HBond>(graph_.end_bonds()); }

HMoleculeGraph MoleculeGraphImpl::graph() const { return graph_.graph(); }

namespace {

// The indices of the neighbours of the atom at `index` that `keep` accepts,
// in neighbour order.
template <class Keep>
Hvector_int neighbour_indices(const ChemicalGraph<Atom, Bond>& graph, int index, Keep keep) {
    const OrderedGraph<HAtom, HBond>& g = graph.ordered_graph();
    HAtom a = graph.atom(index);
    Hvector_int out(new std::vector<int>());
    for (ChemicalGraph<Atom, Bond>::NeighbourIterator n = g.node_begin_neighbours(a); n != g.node_end_neighbours(a);
         ++n)
        if (keep(**n)) out->push_back(g.node_index(*n));
    return out;
}

template <class Keep>
int neighbour_count(const ChemicalGraph<Atom, Bond>& graph, int index, Keep keep) {
    const OrderedGraph<HAtom, HBond>& g = graph.ordered_graph();
    HAtom a = graph.atom(index);
    int count = 0;
    for (ChemicalGraph<Atom, Bond>::NeighbourIterator n = g.node_begin_neighbours(a); n != g.node_end_neighbours(a);
         ++n)
        if (keep(**n)) ++count;
    return count;
}

bool any_atom(const Atom&) { return true; }
bool non_metal(const Atom& a) { return a.element().non_metal(); }
bool metal(const Atom& a) { return !a.element().non_metal(); }
bool non_hydrogen(const Atom& a) { return a.element().atomic_number() != 1; }

}  // namespace

int MoleculeGraphImpl::atom_nconnections_nonmetal(int index) const { return neighbour_count(graph_, index, non_metal); }
int MoleculeGraphImpl::atom_nconnections_metal(int index) const { return neighbour_count(graph_, index, metal); }
int MoleculeGraphImpl::atom_nconnections_nonhydrogen(int index) const {
    return neighbour_count(graph_, index, non_hydrogen);
}
Hvector_int MoleculeGraphImpl::atom_connections(int index) const { return neighbour_indices(graph_, index, any_atom); }
Hvector_int MoleculeGraphImpl::atom_connections_nonmetal(int index) const {
    return neighbour_indices(graph_, index, non_metal);
}
Hvector_int MoleculeGraphImpl::atom_connections_metal(int index) const {
    return neighbour_indices(graph_, index, metal);
}
Hvector_int MoleculeGraphImpl::atom_connections_nonhydrogen(int index) const {
    return neighbour_indices(graph_, index, non_hydrogen);
}

int MoleculeGraphImpl::bond_index(int atom1, int atom2) const {
    const OrderedGraph<HAtom, HBond>& g = graph_.ordered_graph();
    HAtom a1 = graph_.atom(atom1), a2 = graph_.atom(atom2);
    if (!g.has_edge(a1, a2)) return -1;
    return g.edge_index(g.edge(a1, a2));
}

}  // namespace molcryst

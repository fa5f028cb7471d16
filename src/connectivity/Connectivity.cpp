#include "molcryst/connectivity/Connectivity.h"

#include <string>

#include "molcryst/molecule/Atom.h"
#include "molcryst/molecule/Bond.h"
#include "molcryst/molecule/Molecule.h"

namespace molcryst {

// The one instantiation of the connectivity graph types.
template class Graph<HConnectivityAtom, HConnectivityBond>;
template class OrderedGraph<HConnectivityAtom, HConnectivityBond>;
template class ChemicalGraphAtomData<ConnectivityAtom, ConnectivityBond>;
template class ChemicalGraphBondData<ConnectivityAtom, ConnectivityBond>;
template class ChemicalGraph<ConnectivityAtom, ConnectivityBond>;

Connectivity::Connectivity(const Connectivity& other) : Base() { add(other); }

Connectivity& Connectivity::operator=(const Connectivity& other) {
    if (this == &other) return *this;
    clear();
    add(other);
    return *this;
}

Connectivity::Connectivity(const Molecule& molecule) {
    const int n = molecule.natoms();
    std::vector<HConnectivityAtom> atoms;
    atoms.reserve(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) {
        HAtom a = molecule.atom(i);
        atoms.push_back(HConnectivityAtom(new ConnectivityAtom(a->element(), a->formal_charge())));
        unchecked_add(atoms.back());
    }
    const int m = molecule.nbonds();
    for (int i = 0; i < m; ++i) {
        HBond b = molecule.bond(i);
        unchecked_add(HConnectivityBond(new ConnectivityBond(static_cast<int>(b->type()))),
                      atoms[static_cast<std::size_t>(b->atom1()->index())],
                      atoms[static_cast<std::size_t>(b->atom2()->index())]);
    }
}

Connectivity::Connectivity(const GraphType& graph) { add_graph(graph); }

void Connectivity::add(const Base& other) {
    // Atoms first, then bonds between the clones found by index offset. The
    // other graph may be this one: the counts are taken before anything is added.
    const int n = other.natoms(), m = other.nbonds();
    const int offset = natoms();
    std::vector<HConnectivityAtom> sources;
    sources.reserve(static_cast<std::size_t>(n));
    for (const_atom_iterator a = other.begin_atoms(); a != other.end_atoms(); ++a) sources.push_back(*a);
    std::vector<std::pair<HConnectivityBond, std::pair<int, int> > > bonds;
    bonds.reserve(static_cast<std::size_t>(m));
    for (const_bond_iterator b = other.begin_bonds(); b != other.end_bonds(); ++b)
        bonds.push_back(std::make_pair(*b, std::make_pair((*b)->atom1()->index(), (*b)->atom2()->index())));
    for (const HConnectivityAtom& a : sources) unchecked_add(a->clone());
    for (const auto& b : bonds)
        unchecked_add(b.first->clone(), atom(offset + b.second.first), atom(offset + b.second.second));
}

void Connectivity::add_graph(const GraphType& graph) {
    for (GraphType::const_node_iterator n = graph.begin_nodes(); n != graph.end_nodes(); ++n) add(*n);
    for (GraphType::const_edge_iterator e = graph.begin_edges(); e != graph.end_edges(); ++e)
        add(*e, graph.edge_node1(*e), graph.edge_node2(*e));
}

int Connectivity::formal_charge() const {
    int sum = 0;
    for (const_atom_iterator a = begin_atoms(); a != end_atoms(); ++a) sum += (*a)->formal_charge();
    return sum;
}

std::vector<HConnectivity> Connectivity::split() const {
    HConnectivity copy(new Connectivity(*this));
    std::vector<HConnectivity> parts = copy->inplace_split();
    parts.insert(parts.begin(), copy);
    return parts;
}

std::vector<HConnectivity> Connectivity::inplace_split() {
    THandle<std::vector<HGraphType> > parts = Base::inplace_split();
    std::vector<HConnectivity> others;
    // One part: inplace_split left this record as it was.
    if (parts->size() <= 1) return others;
    add_graph(*(*parts)[0]);
    for (std::size_t p = 1; p < parts->size(); ++p) others.push_back(HConnectivity(new Connectivity(*(*parts)[p])));
    return others;
}

bool Connectivity::operator==(const Connectivity& other) const {
    if (natoms() != other.natoms() || nbonds() != other.nbonds()) return false;
    const_atom_iterator b = other.begin_atoms();
    for (const_atom_iterator a = begin_atoms(); a != end_atoms(); ++a, ++b) {
        if (**a != **b) return false;
        if ((*a)->nbonds() != (*b)->nbonds()) return false;
    }
    const_bond_iterator d = other.begin_bonds();
    for (const_bond_iterator c = begin_bonds(); c != end_bonds(); ++c, ++d) {
        if (**c != **d) return false;
        if ((*c)->atom1()->index() != (*d)->atom1()->index()) return false;
        if ((*c)->atom2()->index() != (*d)->atom2()->index()) return false;
    }
    return true;
}

void Connectivity::print(std::ostream& out) const {
    out << "natoms: " << natoms() << "\n";
    for (const_atom_iterator a = begin_atoms(); a != end_atoms(); ++a) {
        (*a)->print(out);
        out << "\n";
    }
    out << "nbonds: " << nbonds() << "\n";
    for (const_bond_iterator b = begin_bonds(); b != end_bonds(); ++b) {
        (*b)->print(out);
        out << "\n";
    }
}

void Connectivity::write(Archive& ar) const {
    ar << natoms();
    for (const_atom_iterator a = begin_atoms(); a != end_atoms(); ++a) (*a)->write(ar);
    ar << nbonds();
    for (const_bond_iterator b = begin_bonds(); b != end_bonds(); ++b) {
        (*b)->write(ar);
        ar << (*b)->atom1()->index() << (*b)->atom2()->index();
    }
}

void Connectivity::read(Archive& ar) {
    std::vector<HConnectivityAtom> atoms;
    {
        Archive::Field field(ar, "Connectivity::read natoms");
        int n = 0;
        ar >> n;
        ar.check_count(n, 5, "atom count");  // an element byte and an int charge each
        atoms.reserve(static_cast<std::size_t>(n));
        for (int i = 0; i < n; ++i) {
            atoms.push_back(HConnectivityAtom(new ConnectivityAtom()));
            atoms.back()->read(ar);
        }
    }
    struct BondRecord {
        HConnectivityBond bond;
        int atom1, atom2;
    };
    std::vector<BondRecord> bonds;
    {
        Archive::Field field(ar, "Connectivity::read nbonds");
        int m = 0;
        ar >> m;
        ar.check_count(m, 12, "bond count");  // a type and two indices, ints each
        bonds.reserve(static_cast<std::size_t>(m));
        for (int i = 0; i < m; ++i) {
            BondRecord r{HConnectivityBond(new ConnectivityBond()), 0, 0};
            r.bond->read(ar);
            Archive::Field ends(ar, "Connectivity::read bond atoms");
            ar >> r.atom1 >> r.atom2;
            const int n = static_cast<int>(atoms.size());
            if (r.atom1 < 0 || r.atom1 >= n || r.atom2 < 0 || r.atom2 >= n)
                ar.read_error("bond " + std::to_string(i) + " joins atoms " + std::to_string(r.atom1) + " and " +
                              std::to_string(r.atom2) + " of " + std::to_string(n));
            if (r.atom1 == r.atom2) ar.read_error("bond " + std::to_string(i) + " joins an atom to itself");
            bonds.push_back(r);
        }
    }
    // A second bond between the same two atoms is found on a scratch graph,
    // so that the record is untouched when the archive is refused.
    {
        Connectivity scratch;
        for (const HConnectivityAtom& a : atoms) scratch.unchecked_add(a);
        for (std::size_t i = 0; i < bonds.size(); ++i) {
            const HConnectivityAtom& a1 = atoms[static_cast<std::size_t>(bonds[i].atom1)];
            const HConnectivityAtom& a2 = atoms[static_cast<std::size_t>(bonds[i].atom2)];
            if (scratch.has_bond(a1, a2)) {
                Archive::Field ends(ar, "Connectivity::read bond atoms");
                ar.read_error("bond " + std::to_string(i) + " repeats a bond between atoms " +
                              std::to_string(bonds[i].atom1) + " and " + std::to_string(bonds[i].atom2));
            }
            scratch.unchecked_add(bonds[i].bond, a1, a2);
        }
        scratch.clear();
    }
    clear();
    for (const HConnectivityAtom& a : atoms) unchecked_add(a);
    for (const BondRecord& r : bonds)
        unchecked_add(r.bond, atoms[static_cast<std::size_t>(r.atom1)], atoms[static_cast<std::size_t>(r.atom2)]);
}

Archive& operator<<(Archive& ar, const Connectivity& connectivity) {
    connectivity.write(ar);
    return ar;
}

Archive& operator>>(Archive& ar, Connectivity& connectivity) {
    connectivity.read(ar);
    return ar;
}

}  // namespace molcryst

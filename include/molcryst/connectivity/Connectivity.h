// Connectivity: a chemical graph without geometry, the record by which
// structures are stored, compared and indexed by topology.
//
// Besides the graph interface it holds the operations that only records of
// this kind have: copying a whole graph in, taking over the objects of an
// ordered graph, removing atoms by predicate, equality, print form and the
// archive layout.
#ifndef MOLCRYST_CONNECTIVITY_CONNECTIVITY_H
#define MOLCRYST_CONNECTIVITY_CONNECTIVITY_H

#include <ostream>
#include <vector>

#include "molcryst/connectivity/ConnectivityAtom.h"
#include "molcryst/connectivity/ConnectivityBond.h"
#include "molcryst/graph/ChemicalGraph.h"
#include "molcryst/support/Archive.h"
#include "molcryst/support/AtomPredicates.h"

namespace molcryst {

class Molecule;
class Connectivity;
typedef THandle<Connectivity> HConnectivity;

/// Atoms with element and charge, bonds with type, and nothing else.
class Connectivity : public ChemicalGraph<ConnectivityAtom, ConnectivityBond> {
public:
    typedef ChemicalGraph<ConnectivityAtom, ConnectivityBond> Base;
    using Base::add;
    using Base::remove_atoms;

    Connectivity() = default;
    /// Clones of the atoms and bonds of `other`, at the same indices.
    Connectivity(const Connectivity& other);
    /// Clears this record and takes clones of `other`'s atoms and bonds.
    Connectivity& operator=(const Connectivity& other);
    /// One atom per atom of the molecule with its element and formal charge,
    /// one bond per bond with its type, in the molecule's order.
    explicit Connectivity(const Molecule& molecule);
    /// Takes over the atoms and bonds of `graph`, which must be free, as add_graph.
    explicit Connectivity(const GraphType& graph);

    /// Clones every atom of `other` and adds the clones in index order, then
    /// clones each bond in index order and adds it between the clones of its
    /// ends, located by index offset.
    void add(const Base& other);
    /// Adds the atom and bond objects of `graph` themselves, not clones: each
    /// node in table order, then each edge between its two nodes.
    void add_graph(const GraphType& graph);
    /// Removes every atom for which `predicate` is true, with its bonds, and
    /// returns how many went. The predicate is asked of every atom before any
    /// goes, so that what it sees is the record as it was.
    template <class Predicate>
    int remove_atoms(Predicate predicate) {
        std::vector<HAtomType> doomed;
        for (const_atom_iterator a = begin_atoms(); a != end_atoms(); ++a)
            if (predicate(*a)) doomed.push_back(*a);
        return Base::remove_atoms(doomed);
    }

    /// The sum of the atoms' formal charges.
    int formal_charge() const;

    /// The connected parts of a copy: the copy, holding the first part, then
    /// the others as inplace_split gives them.
    std::vector<HConnectivity> split() const;
    /// Splits this record into its connected parts. This record keeps the
    /// part of its lowest-index atom; each other part, in the order of its
    /// lowest-index atom, becomes a new Connectivity, and those are returned
    /// (none for a connected record).
    std::vector<HConnectivity> inplace_split();

    /// Equal atom and bond counts; atoms equal at each index, with equal
    /// neighbour counts; bonds equal at each index, with ends at equal indices.
    bool operator==(const Connectivity& other) const;
    bool operator!=(const Connectivity& other) const { return !(*this == other); }

    /// "natoms: " and the count, each atom, "nbonds: " and the count, each
    /// bond, one to a line.
    void print(std::ostream& out) const;
    /// int atom count, each atom; int bond count, each bond with the int
    /// indices of atom1 and atom2.
    void write(Archive& ar) const;
    /// Reads everything before the record changes: on failure it is as it
    /// was. Bond ends outside the atoms, a bond of an atom to itself or a
    /// second bond between two atoms is a malformed archive.
    void read(Archive& ar);
};

Archive& operator<<(Archive& ar, const Connectivity& connectivity);
Archive& operator>>(Archive& ar, Connectivity& connectivity);

}  // namespace molcryst

#endif

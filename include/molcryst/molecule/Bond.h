// Bond: the abstract interface of everything that stands in a molecule as a bond.
#ifndef MOLCRYST_MOLECULE_BOND_H
#define MOLCRYST_MOLECULE_BOND_H

#include <ostream>

#include "molcryst/molecule/Atom.h"
#include "molcryst/molecule/BondType.h"

namespace molcryst {

/// Abstract bond. The base `set_type` throws std::runtime_error "Cannot modify".
class Bond {
public:
    virtual HBond clone() const = 0;
    virtual ~Bond();
    /// The ends in the order given when the bond joined its graph.
    virtual HAtom atom1() const = 0;
    virtual HAtom atom2() const = 0;
    virtual BondType type() const = 0;
    virtual void set_type(BondType);
    virtual int index() const = 0;
    virtual bool cyclic() const = 0;
    /// A single bond between two non-terminal atoms, on no ring.
    virtual bool rotatable() const;
    virtual bool archivable();
    /// "atom1: 0 (C1), atom2: 1 (O1), type: 2, cyclic: 0"
    virtual void print(std::ostream& out) const;
    virtual void write(Archive&) const;
    virtual void read(Archive&);
    virtual ChemicalGraphBondData<Atom, Bond>& graph_data();

    /// The end that is not `atom`.
    HAtom other_atom(HAtom atom) const;
    HAtom other_atom(const Atom& atom) const;
    /// True if either end has the index.
    bool contains(int atom_index) const;

    /// Bonds compare by type alone, whatever atoms they join.
    bool operator==(const Bond& other) const { return type() == other.type(); }
    bool operator!=(const Bond& other) const { return !(*this == other); }

protected:
    Bond() = default;
    Bond(const Bond&) = default;
    Bond& operator=(const Bond&) = default;
};

std::ostream& operator<<(std::ostream& out, const Bond& bond);

}  // namespace molcryst

#endif

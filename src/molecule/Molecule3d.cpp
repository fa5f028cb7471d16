#include "molcryst/molecule/Molecule3d.h"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <utility>

#include "molcryst/molecule/Atom3d.h"
#include "molcryst/molecule/Bond3d.h"
#include "molcryst/molecule/Site.h"
#include "molcryst/support/TARNLog.h"
#include "molcryst/support/VersionedArchive.h"

namespace molcryst {

Molecule3d::Molecule3d() { MOLCRYST_DEBUG_LINE(3, "Entered Molecule3d::Molecule3d() - " << this); }

Molecule3d::Molecule3d(Archive& ar) {
    MOLCRYST_DEBUG_LINE(3, "Entered Molecule3d::Molecule3d(Archive& ar) - " << this);
    read(ar);
}

Molecule3d::Molecule3d(const Molecule3d& x) : MoleculeGraphEditableImpl(x) {
    MOLCRYST_DEBUG_LINE(3, "Entered Molecule3d::Molecule3d(const Molecule3d& x) - " << this);
    copy(x);
}

Molecule3d::Molecule3d(const Molecule& x) : MoleculeGraphEditableImpl(x) { copy(x); }

Molecule3d::Molecule3d(const OrderedGraph<HAtom, HBond>& g) { add_graph(g); }

Molecule3d::Molecule3d(const Hvector_HAtom& atoms, const Hvector_HBondData& bonds) {
    MOLCRYST_DEBUG_LINE(3, "Entered Molecule3d::Molecule3d(" << ", atoms " << atoms->size() << ", bonds "
                                                            << bonds->size() << "- " << this);
    assign(atoms, bonds);
}

Molecule3d::~Molecule3d() { MOLCRYST_DEBUG_LINE(3, "Entered Molecule3d::~Molecule3d() - " << this); }

Molecule3d& Molecule3d::operator=(const Molecule3d& x) {
    if (this == &x) return *this;
    copy(x);  // first, so that a failed copy leaves the typer too
    Molecule::operator=(x);
    return *this;
}

HMolecule Molecule3d::clone() const { return HMolecule(new Molecule3d(*this)); }

void Molecule3d::copy(const Molecule& x) {
    if (&x == this) return;
    // Everything is copied before anything here changes: a source that fails
    // halfway (a view of atoms that are gone) leaves this molecule as it was.
    const int n = x.natoms();
    std::vector<HAtom> atoms;
    atoms.reserve(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) atoms.push_back(HAtom(new Atom3d(*x.atom(i))));
    const int m = x.nbonds();
    std::vector<HBond> bonds;
    std::vector<std::pair<int, int> > ends;
    bonds.reserve(static_cast<std::size_t>(m));
    ends.reserve(static_cast<std::size_t>(m));
    for (int i = 0; i < m; ++i) {
        HBond b = x.bond(i);
        bonds.push_back(HBond(new Bond3d(*b)));
        ends.push_back(std::make_pair(b->atom1()->index(), b->atom2()->index()));
    }
    clear();
    for (const HAtom& a : atoms) add(a);
    for (int i = 0; i < m; ++i)
        add(bonds[static_cast<std::size_t>(i)], ends[static_cast<std::size_t>(i)].first,
            ends[static_cast<std::size_t>(i)].second);
}

namespace {

// The first bond that cannot join `natoms` atoms: an end out of range, both
// ends on one atom, or a pair joined before.
struct BondFault {
    enum Kind { NONE, OUT_OF_RANGE, SELF, REPEATED } kind = NONE;
    int atom1 = 0, atom2 = 0;
};

BondFault find_bond_fault(const std::vector<THandle<BondData> >& bonds, std::size_t natoms) {
    std::set<std::pair<int, int> > pairs;
    for (const THandle<BondData>& b : bonds) {
        BondFault fault;
        fault.atom1 = b->atom1();
        fault.atom2 = b->atom2();
        if (fault.atom1 < 0 || fault.atom2 < 0 || static_cast<std::size_t>(fault.atom1) >= natoms ||
            static_cast<std::size_t>(fault.atom2) >= natoms)
            fault.kind = BondFault::OUT_OF_RANGE;
        else if (fault.atom1 == fault.atom2)
            fault.kind = BondFault::SELF;
        else if (!pairs.insert(std::minmax(fault.atom1, fault.atom2)).second)
            fault.kind = BondFault::REPEATED;
        if (fault.kind != BondFault::NONE) return fault;
    }
    return BondFault();
}

}  // namespace

void Molecule3d::assign(const Hvector_HAtom& atoms, const Hvector_HBondData& bonds) {
    // Checked before anything changes, so that a failure leaves this
    // molecule, and the atoms offered, as they were.
    std::set<const Atom*> seen;
    for (const HAtom& a : *atoms) {
        if (a.unhand() == nullptr)
            throw std::invalid_argument("ChemicalGraph<AtomType, BondType>::add(HAtomType) atom is a null pointer");
        const HMoleculeGraph& owner = atom_in_graph(a)->graph_data().graph();
        if (owner.unhand() != nullptr && owner.unhand() != &graph_.ordered_graph())
            throw std::domain_error(
                "ChemicalGraph<AtomType, BondType>::add(HAtomType) atom is already in another ChemicalGraph object");
        if (!seen.insert(a.unhand()).second)
            throw std::invalid_argument("Molecule3d::assign an atom is given twice");
    }
    const BondFault fault = find_bond_fault(*bonds, atoms->size());
    switch (fault.kind) {
        case BondFault::NONE:
            break;
        case BondFault::OUT_OF_RANGE:
            throw std::out_of_range("Molecule3d::assign bond between atoms " + std::to_string(fault.atom1) + " and " +
                                    std::to_string(fault.atom2) + " of " + std::to_string(atoms->size()));
        case BondFault::SELF:
            throw std::invalid_argument(
                "ChemicalGraph<AtomType, BondType>::add(HBondType, HAtomType, HAtomType) an atom cannot be bonded "
                "to itself");
        case BondFault::REPEATED:
            throw std::domain_error(
                "ChemicalGraph<AtomType, BondType>::add(HBondType, HAtomType, HAtomType) atom1 and atom2 are already "
                "in a different bond in this ChemicalGraph object");
    }
    fill(atoms, bonds);
}

void Molecule3d::fill(const Hvector_HAtom& atoms, const Hvector_HBondData& bonds) {
    clear();
    for (const HAtom& a : *atoms) add(a);
    for (const THandle<BondData>& b : *bonds) add(HBond(new Bond3d(b->type())), atom(b->atom1()), atom(b->atom2()));
}

Hvector_HMolecule Molecule3d::split() const {
    Molecule3d copy_of_this(*this);
    return copy_of_this.inplace_split();
}

Hvector_HMolecule Molecule3d::inplace_split() {
    THandle<std::vector<HMoleculeGraph> > parts = graph_.inplace_split();
    clear();
    Hvector_HMolecule molecules(new std::vector<HMolecule>());
    molecules->reserve(parts->size());
    for (const HMoleculeGraph& part : *parts) {
        Molecule3d* m = new Molecule3d(*part);
        HMolecule held(m);
        m->set_atom_typer(atom_typer());  // the parts are typed as the whole was
        molecules->push_back(held);
    }
    return molecules;
}

bool Molecule3d::archivable() { return true; }

void Molecule3d::write(Archive& ar) const {
    const int n = natoms();
    // An atom that leaves nothing in an archive (a view of another atom)
    // would make the record unreadable: refused before anything is written.
    for (int i = 0; i < n; ++i)
        if (!atom(i)->archivable())
            throw std::runtime_error("Molecule3d::write atom " + std::to_string(i) + " cannot be archived");
    ar << n;
    for (int i = 0; i < n; ++i) ar << atom(i);
    const int m = nbonds();
    ar << m;
    for (int i = 0; i < m; ++i) BondData(*bond(i)).write(ar);
    ar << std::string("        ");  // reserved name
}

namespace {

// Atoms, each as a new Atom3d read from the archive, whatever was written.
Hvector_HAtom read_atoms(Archive& ar) {
    Archive::Field field(ar, "Molecule3d::read atoms");
    int count = 0;
    ar >> count;
    ar.check_count(count, 1, "atom count");
    Hvector_HAtom atoms(new std::vector<HAtom>());
    for (int i = 0; i < count; ++i) {
        HAtom a(new Atom3d());
        a->read(ar);
        atoms->push_back(a);
    }
    return atoms;
}

// Bonds by atom indices; each must join two different atoms that exist, and
// no pair may be joined twice, or the file is corrupt.
Hvector_HBondData read_bonds(Archive& ar, std::size_t natoms) {
    Archive::Field field(ar, "Molecule3d::read bonds");
    Hvector_HBondData bonds(new std::vector<THandle<BondData> >());
    ar >> *bonds;
    const BondFault fault = find_bond_fault(*bonds, natoms);
    const std::string a1 = std::to_string(fault.atom1), a2 = std::to_string(fault.atom2);
    switch (fault.kind) {
        case BondFault::NONE:
            break;
        case BondFault::OUT_OF_RANGE:
            ar.read_error("bond between atoms " + a1 + " and " + a2 + " of " + std::to_string(natoms));
        case BondFault::SELF:
            ar.read_error("bond from atom " + a1 + " to itself");
        case BondFault::REPEATED:
            ar.read_error("atoms " + a1 + " and " + a2 + " bonded twice");
    }
    return bonds;
}

}  // namespace

void Molecule3d::read(Archive& ar) {
    if (VersionedArchive::is_versioned(ar) && VersionedArchive::version(ar) <= 1) {
        read_v1_format(ar, *this);
        return;
    }
    // Everything is read before the molecule changes: a failed read leaves it as it was.
    Hvector_HAtom atoms = read_atoms(ar);
    Hvector_HBondData bonds = read_bonds(ar, atoms->size());
    std::string reserved_name;
    {
        Archive::Field field(ar, "Molecule3d::read name");
        ar >> reserved_name;
    }
    fill(atoms, bonds);  // new atoms, bonds checked by read_bonds
}

void Molecule3d::read_v1_format(Archive& ar, Molecule& molecule) {
    Hvector_HAtom atoms = read_atoms(ar);
    Hvector_HBondData bonds = read_bonds(ar, atoms->size());
    {
        Archive::Field field(ar, "Molecule3d::read_v1_format alternative sites");
        int lists = 0;
        ar >> lists;
        ar.check_count(lists, 4, "site list count");
        for (int k = 0; k < lists; ++k) {
            int count = 0;
            ar >> count;
            ar.check_count(count, 1, "site count");
            for (int s = 0; s < count; ++s) {
                HSite site(new Site());
                site->read(ar);
                // The first site of each list is the atom's; the alternatives are dropped.
                if (s == 0 && static_cast<std::size_t>(k) < atoms->size()) (*atoms)[static_cast<std::size_t>(k)]->set_site(site);
            }
        }
    }
    {
        Archive::Field field(ar, "Molecule3d::read_v1_format index lists");
        int lists = 0;
        ar >> lists;
        ar.check_count(lists, 4, "index list count");
        for (int k = 0; k < lists; ++k) {
            int count = 0;
            ar >> count;
            ar.check_count(count, 4, "index count");
            for (int i = 0; i < count; ++i) {
                int discarded = 0;
                ar >> discarded;
            }
        }
    }
    {
        Archive::Field field(ar, "Molecule3d::read_v1_format trailing fields");
        int discarded_int = 0;
        std::string discarded_string;
        bool discarded_bool = false;
        ar >> discarded_int >> discarded_string >> discarded_bool;
    }
    // The atoms join a temporary molecule, are freed from it, and move in.
    Molecule3d temporary(atoms, bonds);
    HMoleculeGraph g = temporary.graph();
    temporary.clear();
    molecule.clear();
    molecule.add_graph(*g);
}

}  // namespace molcryst

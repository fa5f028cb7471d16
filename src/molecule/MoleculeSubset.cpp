#include "molcryst/molecule/MoleculeSubset.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>

#include "molcryst/molecule/Molecule3d.h"
#include "molcryst/molecule/ProxyAtom.h"
#include "molcryst/molecule/ProxyBond.h"

namespace molcryst {

namespace {

std::vector<int> first_indices(int n) {
    std::vector<int> indices(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) indices[static_cast<std::size_t>(i)] = i;
    return indices;
}

// A bad selection is the caller's error, or a corrupt file when it was read.
[[noreturn]] void selection_error(const Archive* ar, const std::string& problem) {
    if (ar != nullptr) ar->read_error(problem);
    throw std::invalid_argument("MoleculeSubset::create_atoms_and_bonds(atoms, bonds) " + problem);
}

}  // namespace

MoleculeSubset::MoleculeSubset(const HMolecule& parent) : parent_(parent) {
    if (parent_.unhand() == nullptr)
        throw std::invalid_argument("MoleculeSubset::MoleculeSubset(THandle<Molecule>) parent is a null pointer");
    // A view types its atoms as the molecule it shows does.
    set_atom_typer(parent_->atom_typer());
}

MoleculeSubset::MoleculeSubset(const MoleculeSubset& x) : MoleculeGraphImpl(x), parent_(x.parent_) {
    const std::vector<int> atoms = x.current_atom_selection();
    rebuild(parent_, atoms, x.current_bond_selection());
}

MoleculeSubset& MoleculeSubset::operator=(const MoleculeSubset& x) {
    if (this == &x) return *this;
    // A view whose chain of parents leads back to itself would hold itself alive.
    for (const Molecule* m = x.parent_.unhand(); m != nullptr;) {
        if (m == this) throw std::invalid_argument("MoleculeSubset::operator= a view cannot show itself");
        const MoleculeSubset* s = dynamic_cast<const MoleculeSubset*>(m);
        m = s != nullptr ? s->parent_.unhand() : nullptr;
    }
    const std::vector<int> atoms = x.current_atom_selection();
    rebuild(x.parent_, atoms, x.current_bond_selection());
    Molecule::operator=(x);
    return *this;
}

MoleculeSubset::~MoleculeSubset() {}

HMolecule MoleculeSubset::clone() const { return HMolecule(new MoleculeSubset(*this)); }

HMolecule MoleculeSubset::create_molecule() const {
    return HMolecule(new Molecule3d(static_cast<const Molecule&>(*this)));
}

Hvector_HMolecule MoleculeSubset::split() const { return create_molecule()->inplace_split(); }

void MoleculeSubset::select_all() {
    rebuild(parent_, first_indices(parent_->natoms()), first_indices(parent_->nbonds()));
}

void MoleculeSubset::select_3d() { select_atom_indices(parent_->atoms_with_sites()); }

void MoleculeSubset::select_atom_indices(const std::vector<int>& atoms) {
    rebuild(parent_, atoms, parent_->bond_subset(atoms));
}

void MoleculeSubset::select_bond_indices(const std::vector<int>& bonds) {
    rebuild(parent_, parent_->atom_subset(bonds), bonds);
}

void MoleculeSubset::select_atom_indices_only(const std::vector<int>& atoms) {
    rebuild(parent_, atoms, std::vector<int>());
}

void MoleculeSubset::select_atom_indices_from_current(const std::vector<int>& atoms) {
    // Only bonds already in the view survive: a narrowing never brings back
    // a parent bond that the current selection left out.
    const std::vector<int> bonds_here = bond_subset(atoms);
    std::vector<int> parent_atoms, parent_bonds;
    parent_atoms.reserve(atoms.size());
    parent_bonds.reserve(bonds_here.size());
    for (int i : atoms) parent_atoms.push_back(parent_atom_index(i));
    for (int b : bonds_here) parent_bonds.push_back(parent_bond_index(b));
    rebuild(parent_, parent_atoms, parent_bonds);
}

void MoleculeSubset::create_atoms_and_bonds(const std::vector<int>& atoms, const std::vector<int>& bonds) {
    rebuild(parent_, atoms, bonds);
}

void MoleculeSubset::rebuild(const HMolecule& parent, const std::vector<int>& atoms, const std::vector<int>& bonds,
                             const Archive* ar) {
    // Everything is looked up and checked first; the graph changes only then.
    std::vector<HAtom> parent_atoms;
    parent_atoms.reserve(atoms.size());
    // (parent index, index here), sorted by parent index, to find the proxies
    // of a bond's ends in O(log n) without a table the size of the parent.
    std::vector<std::pair<int, int> > here;
    here.reserve(atoms.size());
    for (std::size_t k = 0; k < atoms.size(); ++k) {
        parent_atoms.push_back(parent->atom(atoms[k]));
        here.push_back(std::make_pair(atoms[k], static_cast<int>(k)));
    }
    std::sort(here.begin(), here.end());
    for (std::size_t k = 1; k < here.size(); ++k)
        if (here[k].first == here[k - 1].first)
            selection_error(ar, "atom " + std::to_string(here[k].first) + " is selected twice");

    auto index_here = [&here](int parent_index) {
        auto found = std::lower_bound(here.begin(), here.end(), std::make_pair(parent_index, -1));
        return found != here.end() && found->first == parent_index ? found->second : -1;
    };
    std::vector<HBond> parent_bonds;
    std::vector<std::pair<int, int> > ends;
    parent_bonds.reserve(bonds.size());
    ends.reserve(bonds.size());
    for (int b : bonds) {
        HBond bond = parent->bond(b);
        const int end1 = index_here(bond->atom1()->index());
        const int end2 = index_here(bond->atom2()->index());
        if (end1 == -1 || end2 == -1 || end1 == end2)
            selection_error(ar, "bond " + std::to_string(b) + " joins an atom that is not selected");
        parent_bonds.push_back(bond);
        ends.push_back(std::make_pair(end1, end2));
    }
    std::vector<int> sorted_bonds(bonds);
    std::sort(sorted_bonds.begin(), sorted_bonds.end());
    for (std::size_t k = 1; k < sorted_bonds.size(); ++k)
        if (sorted_bonds[k] == sorted_bonds[k - 1])
            selection_error(ar, "bond " + std::to_string(sorted_bonds[k]) + " is selected twice");

    parent_ = parent;
    graph_.clear();
    // The proxies are new and the parent's bonds join distinct pairs of
    // atoms, so the graph's membership checks have nothing to find.
    for (const HAtom& a : parent_atoms) graph_.unchecked_add(HAtom(new ProxyAtom(a)));
    for (std::size_t k = 0; k < parent_bonds.size(); ++k)
        graph_.unchecked_add(HBond(new ProxyBond(parent_bonds[k])), graph_.atom(ends[k].first),
                             graph_.atom(ends[k].second));
}

int MoleculeSubset::parent_atom_index(int index) const {
    HAtom proxy = atom(index);
    const ProxyAtom* p = dynamic_cast<const ProxyAtom*>(proxy.unhand());
    HAtom parent_atom = p != nullptr ? p->parent_atom() : HAtom();
    if (parent_atom.unhand() == nullptr)
        throw std::runtime_error("MoleculeSubset::parent_atom_index - atom is no longer valid");
    if (!parent_->has_atom(parent_atom))
        throw std::runtime_error("MoleculeSubset::parent_atom_index - atom is no longer in the parent molecule");
    return parent_atom->index();
}

int MoleculeSubset::parent_bond_index(int index) const {
    HBond proxy = bond(index);
    const ProxyBond* p = dynamic_cast<const ProxyBond*>(proxy.unhand());
    HBond parent_bond = p != nullptr ? p->parent_bond() : HBond();
    if (parent_bond.unhand() == nullptr)
        throw std::runtime_error("MoleculeSubset::parent_bond_index - bond is no longer valid");
    if (!parent_->has_bond(parent_bond))
        throw std::runtime_error("MoleculeSubset::parent_bond_index - bond is no longer in the parent molecule");
    return parent_bond->index();
}

std::vector<int> MoleculeSubset::current_atom_selection() const {
    const int n = natoms();
    std::vector<int> selection;
    selection.reserve(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) selection.push_back(parent_atom_index(i));
    return selection;
}

std::vector<int> MoleculeSubset::current_bond_selection() const {
    const int m = nbonds();
    std::vector<int> selection;
    selection.reserve(static_cast<std::size_t>(m));
    for (int i = 0; i < m; ++i) selection.push_back(parent_bond_index(i));
    return selection;
}

void MoleculeSubset::print(std::ostream& out) const {
    out << "atom selection:";
    for (int i : current_atom_selection()) out << ' ' << i;
    out << "\nbond selection:";
    for (int i : current_bond_selection()) out << ' ' << i;
    out << "\n";
}

void MoleculeSubset::write(Archive& ar) const { ar << current_atom_selection() << current_bond_selection(); }

void MoleculeSubset::read(Archive& ar) {
    std::vector<int> atoms, bonds;
    {
        Archive::Field field(ar, "MoleculeSubset::read atom selection");
        ar >> atoms;
    }
    {
        Archive::Field field(ar, "MoleculeSubset::read bond selection");
        ar >> bonds;
    }
    Archive::Field field(ar, "MoleculeSubset::read selection");
    const int n = parent_->natoms(), m = parent_->nbonds();
    for (int i : atoms)
        if (i < 0 || i >= n)
            ar.read_error("atom index " + std::to_string(i) + " outside the parent's " + std::to_string(n) + " atoms");
    for (int b : bonds)
        if (b < 0 || b >= m)
            ar.read_error("bond index " + std::to_string(b) + " outside the parent's " + std::to_string(m) + " bonds");
    rebuild(parent_, atoms, bonds, &ar);
}

}  // namespace molcryst

#include "molcryst/molecule/MoleculeGraphEditableImpl.h"

#include <stdexcept>
#include <string>
#include <vector>

#include "molcryst/molecule/BondInGraph.h"

namespace molcryst {

MoleculeGraphEditableImpl::~MoleculeGraphEditableImpl() = default;

bool MoleculeGraphEditableImpl::editable() const { return true; }

int MoleculeGraphEditableImpl::add(HAtom atom) {
    atom_in_graph(atom);
    return graph_.add(atom);
}

int MoleculeGraphEditableImpl::unchecked_add(HAtom atom) {
    atom_in_graph(atom);
    return graph_.unchecked_add(atom);
}

int MoleculeGraphEditableImpl::add(HBond bond, int atom1, int atom2) {
    bond_in_graph(bond);
    return graph_.add(bond, atom1, atom2);
}

int MoleculeGraphEditableImpl::add(HBond bond, HAtom atom1, HAtom atom2) {
    bond_in_graph(bond);
    atom_in_graph(atom1);
    atom_in_graph(atom2);
    return graph_.add(bond, atom1, atom2);
}

int MoleculeGraphEditableImpl::unchecked_add(HBond bond, HAtom atom1, HAtom atom2) {
    bond_in_graph(bond);
    return graph_.unchecked_add(bond, atom1, atom2);
}

void MoleculeGraphEditableImpl::remove_atom(int index) { graph_.remove_atom(graph_.atom(index)); }
void MoleculeGraphEditableImpl::remove(HAtom atom) { graph_.remove_atom(atom); }
void MoleculeGraphEditableImpl::remove_bond(int index) { graph_.remove_bond(graph_.bond(index)); }
void MoleculeGraphEditableImpl::remove(HBond bond) { graph_.remove_bond(bond); }
void MoleculeGraphEditableImpl::isolate(HAtom atom) { graph_.isolate(atom); }
void MoleculeGraphEditableImpl::clear() { graph_.clear(); }
int MoleculeGraphEditableImpl::remove_atoms(const std::vector<HAtom>& atoms) { return graph_.remove_atoms(atoms); }

namespace {

// The permutation `order` completed by the indices it leaves out, in their
// old order; std::invalid_argument naming `method` for an index out of range
// or a `noun` listed twice.
std::vector<int> completed_order(const std::vector<int>& order, int n, const char* method, const char* noun) {
    std::vector<bool> listed(static_cast<std::size_t>(n), false);
    std::vector<int> full;
    full.reserve(static_cast<std::size_t>(n));
    for (int old_index : order) {
        if (old_index < 0 || old_index >= n)
            throw std::invalid_argument(std::string("MoleculeGraphEditableImpl::") + method + " index out of range");
        if (listed[static_cast<std::size_t>(old_index)])
            throw std::invalid_argument(std::string("MoleculeGraphEditableImpl::") + method + " " + noun +
                                        " listed twice");
        listed[static_cast<std::size_t>(old_index)] = true;
        full.push_back(old_index);
    }
    for (int i = 0; i < n; ++i)
        if (!listed[static_cast<std::size_t>(i)]) full.push_back(i);
    return full;
}

}  // namespace

void MoleculeGraphEditableImpl::reorder_atoms(const std::vector<int>& order) {
    std::vector<HAtom> atoms;
    for (int i : completed_order(order, natoms(), "reorder_atoms", "atom")) atoms.push_back(graph_.atom(i));
    graph_.reorder_atoms(atoms);
}

void MoleculeGraphEditableImpl::reorder_bonds(const std::vector<int>& order) {
    std::vector<HBond> bonds;
    for (int i : completed_order(order, nbonds(), "reorder_bonds", "bond")) bonds.push_back(graph_.bond(i));
    graph_.reorder_bonds(bonds);
}

}  // namespace molcryst

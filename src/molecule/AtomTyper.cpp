#include "molcryst/molecule/AtomTyper.h"

#include "molcryst/molecule/Molecule.h"

namespace molcryst {

AtomTyper::~AtomTyper() = default;

std::string AtomTyper::atom_type(const Molecule& molecule, int index) const { return atom_type(*molecule.atom(index)); }

std::string AtomTyper::bond_type(const Molecule& molecule, int index) const { return bond_type(*molecule.bond(index)); }

}  // namespace molcryst

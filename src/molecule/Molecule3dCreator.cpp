#include "molcryst/molecule/Molecule3dCreator.h"

#include "molcryst/molecule/Atom3d.h"
#include "molcryst/molecule/Bond3d.h"
#include "molcryst/molecule/Molecule3d.h"

namespace molcryst {

THandle<Molecule> Molecule3dCreator::create_molecule() const { return THandle<Molecule>(new Molecule3d()); }

int Molecule3dCreator::add_atom(Molecule& molecule, const Element& element) const {
    molecule.add(HAtom(new Atom3d(element, "", HSite())));
    return molecule.natoms() - 1;
}

int Molecule3dCreator::add_bond(Molecule& molecule, const BondData& bond) const {
    molecule.add(HBond(new Bond3d(bond.type())), bond.atom1(), bond.atom2());
    return molecule.nbonds() - 1;
}

std::vector<int> Molecule3dCreator::add_molecule(Molecule& molecule, const Molecule& x) const {
    return molecule.add(x);
}

}  // namespace molcryst

// Molecule3dCreator: the factory of Molecule3d, Atom3d and Bond3d.
#ifndef MOLCRYST_MOLECULE_MOLECULE3DCREATOR_H
#define MOLCRYST_MOLECULE_MOLECULE3DCREATOR_H

#include "molcryst/molecule/ChemicalCreationInterface.h"
#include "molcryst/molecule/Molecule.h"

namespace molcryst {

/// Makes empty Molecule3d objects, atoms without label or site, and Bond3d bonds.
class Molecule3dCreator : public ChemicalCreationInterface<Molecule> {
public:
    THandle<Molecule> create_molecule() const override;
    int add_atom(Molecule& molecule, const Element& element) const override;
    int add_bond(Molecule& molecule, const BondData& bond) const override;
    std::vector<int> add_molecule(Molecule& molecule, const Molecule& x) const override;
};

}  // namespace molcryst

#endif

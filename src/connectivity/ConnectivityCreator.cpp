#include "molcryst/connectivity/ConnectivityCreator.h"

namespace molcryst {

THandle<Connectivity> ConnectivityCreator::create_molecule() const { return THandle<Connectivity>(new Connectivity()); }

int ConnectivityCreator::add_atom(Connectivity& structure, const Element& element) const {
    structure.add(HConnectivityAtom(new ConnectivityAtom(element)));
    return structure.natoms() - 1;
}

int ConnectivityCreator::add_bond(Connectivity& structure, const BondData& bond) const {
    structure.add(HConnectivityBond(new ConnectivityBond(static_cast<int>(bond.type()))), bond.atom1(), bond.atom2());
    return structure.nbonds() - 1;
}

std::vector<int> ConnectivityCreator::add_molecule(Connectivity& structure, const Connectivity& x) const {
    const int first = structure.natoms();
    structure.add(static_cast<const Connectivity::Base&>(x));
    std::vector<int> added;
    for (int i = first; i < structure.natoms(); ++i) added.push_back(i);
    return added;
}

}  // namespace molcryst

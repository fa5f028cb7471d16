// ConnectivityCreator: builds connectivity records through the creation
// interface that molecules use, so generic builders serve both.
#ifndef MOLCRYST_CONNECTIVITY_CONNECTIVITYCREATOR_H
#define MOLCRYST_CONNECTIVITY_CONNECTIVITYCREATOR_H

#include <vector>

#include "molcryst/connectivity/Connectivity.h"
#include "molcryst/molecule/ChemicalCreationInterface.h"

namespace molcryst {

/// Makes empty Connectivity records and appends atoms and bonds to them.
class ConnectivityCreator : public ChemicalCreationInterface<Connectivity> {
public:
    THandle<Connectivity> create_molecule() const override;
    /// An atom of the element with charge 0; its index.
    int add_atom(Connectivity& structure, const Element& element) const override;
    /// A bond of the data's type between its two indices; its index.
    int add_bond(Connectivity& structure, const BondData& bond) const override;
    /// Clones of the atoms and bonds of `x`; the new atoms' indices.
    std::vector<int> add_molecule(Connectivity& structure, const Connectivity& x) const override;
};

}  // namespace molcryst

#endif

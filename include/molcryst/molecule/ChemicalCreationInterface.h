// ChemicalCreationInterface: a factory through which generic code builds
// structures of some family without naming the concrete class.
#ifndef MOLCRYST_MOLECULE_CHEMICALCREATIONINTERFACE_H
#define MOLCRYST_MOLECULE_CHEMICALCREATIONINTERFACE_H

#include <vector>

#include "molcryst/elements/Element.h"
#include "molcryst/molecule/BondData.h"
#include "molcryst/support/THandle.h"

namespace molcryst {

/// Builds structures of family `T` (molecules, connectivity records): empty
/// ones, atoms of an element, bonds between indices.
template <class T>
class ChemicalCreationInterface {
public:
    virtual ~ChemicalCreationInterface() = default;
    virtual THandle<T> create_molecule() const = 0;
    /// Adds an atom of the element; its index.
    virtual int add_atom(T& structure, const Element& element) const = 0;
    /// Adds a bond of the data's type between its two indices; its index.
    virtual int add_bond(T& structure, const BondData& bond) const = 0;
    /// Adds copies of the atoms and bonds of `x`; the new atoms' indices.
    virtual std::vector<int> add_molecule(T& structure, const T& x) const = 0;

protected:
    ChemicalCreationInterface() = default;
    ChemicalCreationInterface(const ChemicalCreationInterface&) = default;
    ChemicalCreationInterface& operator=(const ChemicalCreationInterface&) = default;
};

}  // namespace molcryst

#endif

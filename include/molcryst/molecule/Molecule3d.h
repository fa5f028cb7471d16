// Molecule3d: the concrete molecule, with copying and archives.
//
// Archive layout (current): atom count (int), each atom by its own write
// (Atom3d's layout), bond count (int), one packed BondData per bond in bond
// order, then a reserved name, always the string of eight blanks. Bonds are
// written by atom indices. A versioned archive of version 1 or less holds the
// older layout read by read_v1_format.
#ifndef MOLCRYST_MOLECULE_MOLECULE3D_H
#define MOLCRYST_MOLECULE_MOLECULE3D_H

#include <vector>

#include "molcryst/molecule/BondData.h"
#include "molcryst/molecule/MoleculeGraphEditableImpl.h"

namespace molcryst {

typedef THandle<std::vector<HAtom> > Hvector_HAtom;
typedef THandle<std::vector<THandle<BondData> > > Hvector_HBondData;

/// An editable, archivable molecule. A copy shares nothing with its source
/// but the typer: every atom becomes a plain Atom3d with its own site, every
/// bond a Bond3d.
class Molecule3d : public MoleculeGraphEditableImpl {
public:
    Molecule3d();
    explicit Molecule3d(Archive& ar);
    Molecule3d(const Molecule3d& x);
    explicit Molecule3d(const Molecule& x);
    /// Takes over the very atoms and bonds of a graph; they must be free of
    /// other molecules.
    explicit Molecule3d(const OrderedGraph<HAtom, HBond>& g);
    /// Takes over the atoms, which must be free, and adds a Bond3d for each BondData.
    Molecule3d(const Hvector_HAtom& atoms, const Hvector_HBondData& bonds);
    ~Molecule3d() override;
    Molecule3d& operator=(const Molecule3d& x);

    HMolecule clone() const override;
    /// Replaces the contents by copies of the atoms and bonds of `x`.
    void copy(const Molecule& x);
    /// Replaces the contents by the atoms themselves and new bonds.
    void assign(const Hvector_HAtom& atoms, const Hvector_HBondData& bonds);

    Hvector_HMolecule split() const override;
    Hvector_HMolecule inplace_split() override;
    bool archivable() override;
    /// Throws std::runtime_error, writing nothing, when an atom cannot be archived.
    void write(Archive& ar) const override;
    /// On failure the molecule is left as it was.
    void read(Archive& ar) override;

    /// The older layout: atoms, bonds, lists of alternative sites (the first
    /// of each is kept), then fields that are read and dropped.
    static void read_v1_format(Archive& ar, Molecule& molecule);

private:
    /// Clears, then adds the atoms and a Bond3d for each record, all checked before.
    void fill(const Hvector_HAtom& atoms, const Hvector_HBondData& bonds);
};

typedef THandle<Molecule3d> HMolecule3d;

}  // namespace molcryst

#endif

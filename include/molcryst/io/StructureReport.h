// StructureReport: what a deposited crystal structure holds, worked out from
// its asymmetric unit and spacegroup: the bonds (also those to symmetry
// images), the molecules grown whole by symmetry, and the hydrogen bonds.
#ifndef MOLCRYST_IO_STRUCTUREREPORT_H
#define MOLCRYST_IO_STRUCTUREREPORT_H

#include <memory>
#include <string>
#include <vector>

#include "molcryst/geometry/CrystalSymmetryTransformation.h"
#include "molcryst/io/CifBlock.h"
#include "molcryst/molecule/Molecule.h"

namespace molcryst {

/// A symmetry code in the form of a CIF: operator number in the block's list
/// (from 1), then the lattice translation plus 5 along a, b and c ("3_565");
/// an operator other than the first without translation is its number alone
/// ("2"). Translations beyond -5..4 are written in brackets ("2_5(10)5").
std::string symmetry_code(int op, const Vector<int, 3>& lattice);

class StructureReport {
public:
    /// A bond from an atom of the asymmetric unit (as deposited) to an atom
    /// at `symmetry`: a bond to an image is listed from both its ends.
    struct BondRow {
        int atom1, atom2;      // site indices
        int op;                // 0-based operator that places atom2
        Vector<int, 3> lattice;
        std::string symmetry;  // as symmetry_code
        double distance;       // Angstrom
    };
    /// A group of sites joined by bonds through any symmetry.
    struct MoleculeRow {
        std::vector<int> sites;   // ascending
        std::string formula;      // whole molecule, Hill order; one group of each disorder assembly
        int whole_atoms = 0;      // sites of the molecule grown whole; 0 when polymeric
        bool special_position = false;  // grown whole, it holds images of its own sites: it lies on a symmetry element
        bool polymeric = false;   // repeats by a lattice translation
    };
    /// D-H...A, the hydrogen and its donor as deposited, the acceptor at `symmetry`.
    struct HBondRow {
        int donor, hydrogen, acceptor;
        int op;
        Vector<int, 3> lattice;
        std::string symmetry;
        double d_a, h_a, angle;  // Angstrom, Angstrom, degrees
    };

    /// Works everything out; `block` must outlive the report.
    explicit StructureReport(const CifBlock& block);

    const CifBlock& block() const { return *block_; }
    const std::vector<BondRow>& bonds() const { return bonds_; }
    const std::vector<MoleculeRow>& molecules() const { return molecules_; }
    const std::vector<HBondRow>& hbonds() const { return hbonds_; }
    /// Sites that an operator other than the identity maps onto themselves.
    const std::vector<bool>& on_special_position() const { return on_special_; }
    /// One molecule per row of molecules(), grown whole by symmetry (a
    /// polymeric one as far as its first repeat), with bond types from the
    /// geometry rules; atom symmtags are site indices, sites carry their
    /// uncertainties and displacement parameters. Made on first asking.
    const std::vector<HMolecule>& whole_molecules() const;
    /// The same molecules cut back to one image of each site: the asymmetric
    /// unit, each molecule in one connected piece where symmetry allows.
    const std::vector<HMolecule>& asymmetric_molecules() const;

    struct Parts;  // the images of the sites in each molecule, and its bonds

private:
    class Builder;
    const CifBlock* block_;
    std::vector<BondRow> bonds_;
    std::vector<MoleculeRow> molecules_;
    std::vector<HBondRow> hbonds_;
    std::vector<bool> on_special_;
    std::shared_ptr<Parts> parts_;
    mutable std::vector<HMolecule> whole_;       // made on first asking
    mutable std::vector<HMolecule> asymmetric_;  // made on first asking
};

}  // namespace molcryst

#endif

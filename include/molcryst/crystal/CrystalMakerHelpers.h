// CrystalMakerHelpers: the free functions and predicates that go with
// CrystalMaker: which current molecule holds an atom or bond, the narrowing
// of a molecule to its sited atoms or to chosen atoms (without a copy when
// nothing is narrowed), symmetry tests inside one molecule, the axes of a
// change of cell, and the packing of a box.
#ifndef MOLCRYST_CRYSTAL_CRYSTALMAKERHELPERS_H
#define MOLCRYST_CRYSTAL_CRYSTALMAKERHELPERS_H

#include <vector>

#include "molcryst/crystal/CrystalMaker.h"
#include "molcryst/geometry/TransformedSolid.h"
#include "molcryst/molecule/Bond.h"

namespace molcryst {

namespace CrystalMakerHelpers {

/// The current molecule of `maker` that holds `atom` at the atom's own
/// index; a null handle if none (or for a null atom).
HMolecule molecule(const CrystalMaker& maker, HAtom atom);
/// The same for a bond.
HMolecule molecule(const CrystalMaker& maker, HBond bond);

/// `m` itself if every atom has a site; else a new Molecule3d copy of `m`
/// without the atoms that have none.
HMolecule lazy_select_3d(HMolecule m);
/// `m` itself if `atoms` has as many entries as `m` has atoms; else a new
/// MoleculeSubset of `m` selecting those atoms.
HMolecule lazy_subset(HMolecule m, const std::vector<int>& atoms);

/// Whether two sited atoms of one element in `molecule` are images of each
/// other in `cell` (fractional points within `tolerance`).
bool molecule_contains_symmetry_atoms(const Cell& cell, const Molecule& molecule, double tolerance);
/// False as soon as some current molecule contains symmetry atoms at 1e-05;
/// true otherwise, an empty maker included.
bool molecule_expansion_needed(const CrystalMaker& maker);

/// v[0] a + v[1] b + v[2] c, with the cell's edge vectors.
Vector<double, 3> transform_axis(const Vector<int, 3>& v, const Cell& cell);

/// `box` (fractional) widened by `tolerance` Angstrom across each face:
/// tolerance / a along a, and so on.
Box expand_packing_box(const Cell& cell, double tolerance, const Box& box);
/// The packing of a fractional box: every image of each current molecule
/// whose centroid lies in the box widened by 0.001 Angstrom, each distinct
/// centroid once, the first operator and translation owning it.
HCrystal create_packed_crystal(const CrystalMaker& maker, const Box& box);

/// The region searched around central atoms: the bounding box of the
/// orthogonal images of `fractional_points`, widened on every side by
/// `extent` + 1e-05, as an OrthogonalSolid. A non-finite extent throws
/// std::invalid_argument, since it would ask for endless images.
THandle<TransformedSolid> build_nonbonded_solid_region(const std::vector<Point>& fractional_points, const Cell& cell,
                                                      double extent);

/// True for an atom without a site.
struct AtomSiteLess {
    bool operator()(const HAtom& a) const { return !a->has_site(); }
};

/// True for an atom with no bonds.
struct AtomIsolatedPredicate {
    bool operator()(const HAtom& a) const { return a->nbonds() == 0; }
};

/// Atoms with a site before atoms without; for stable sorts.
struct AtomCompareNsites {
    bool operator()(const HAtom& a, const HAtom& b) const { return a->has_site() && !b->has_site(); }
};

/// Bonds with more ends that have a site first; for stable sorts.
struct BondCompareNsites {
    static int nsites(const HBond& b) { return (b->atom1()->has_site() ? 1 : 0) + (b->atom2()->has_site() ? 1 : 0); }
    bool operator()(const HBond& a, const HBond& b) const { return nsites(a) > nsites(b); }
};

}  // namespace CrystalMakerHelpers

}  // namespace molcryst

#endif

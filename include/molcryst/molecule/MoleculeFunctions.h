// MoleculeFunctions: free functions over molecules that complete what a
// deposited structure leaves out. Hydrogen counting works out from a valence
// table with chemical exceptions how many hydrogens each atom lacks and adds
// them as bonded atoms without coordinates; hydrogen site generation then
// places such hydrogens from the geometry already known around their parent
// (a case table on how many neighbours need positions and how many have
// them). The molecule builders make molecules of raw atom and bond lists.
//
// add_hydrogens_with_sites reads the cell and the symmetry tags of a
// CrystalMaker, a folder above this one: the header declares it only.
#ifndef MOLCRYST_MOLECULE_MOLECULEFUNCTIONS_H
#define MOLCRYST_MOLECULE_MOLECULEFUNCTIONS_H

#include <set>
#include <vector>

#include "molcryst/geometry/Point.h"
#include "molcryst/graph/OrderedGraph.h"
#include "molcryst/molecule/BondData.h"
#include "molcryst/molecule/Molecule.h"

namespace molcryst {

class Cell;
class CrystalMaker;
class Transformation;

// Hydrogen counting. A null molecule handle fails as any null handle does.

/// How many hydrogens atom `atom` lacks. An atom of unknown element throws
/// std::runtime_error "Calculate hydrogens::Unknown element found", a bond of
/// unknown type "Calculate hydrogens::Unknown bond type found"; metals and
/// noble gases lack none.
int calculate_hydrogens(THandle<Molecule> molecule, int atom);
/// What is left when the atom's bonds (in single precision: single 1,
/// double 2, triple 3, quadruple 4, aromatic and delocalised 1.5, pi 0, a
/// lone-pair bond of N or P to a metal 0) and its formal charge are set
/// against `valence`; never negative, rounded down.
int bondsum_calculation(THandle<Molecule> molecule, int atom, int valence);
/// Adds `count` hydrogens without sites, each by a single bond; a count of
/// 0 or less adds none.
void add_hydrogens(THandle<Molecule> molecule, int atom, int count);
/// Adds `count` hydrogens to the atom and, if it has a site, places every
/// hydrogen of the atom that has none in the maker's cell and gives each new
/// one a symmetry tag above every tag of the maker.
void add_hydrogens_with_sites(THandle<CrystalMaker> maker, THandle<Molecule> molecule, int atom, int count);
/// The same for `counts[k]` hydrogens on each atom `atoms[k]` in turn, with
/// the same result as one call per atom, but the maker's tags read once:
/// linear in the atoms where the calls one by one are quadratic. Lists of
/// different lengths throw std::invalid_argument.
void add_hydrogens_with_sites(THandle<CrystalMaker> maker, THandle<Molecule> molecule, const std::vector<int>& atoms,
                              const std::vector<int>& counts);
/// Every atom of every current molecule of the maker gets the hydrogens it
/// lacks, placed and tagged: the same as add_hydrogens_with_sites with the
/// calculated count for each atom in turn, molecule by molecule, but every
/// count is taken first, so that an atom that cannot be counted throws and
/// nothing changes, and the tags are read once. The number of hydrogens added.
int add_hydrogens_with_sites(THandle<CrystalMaker> maker);
/// Strips every hydrogen and adds the calculated number to each atom; a
/// molecule that is one hydrogen atom (a proton) is left alone.
void generate_hydrogens(THandle<Molecule> molecule);
/// The hydrogens bonded to the atoms, summed over the molecule.
int nhydrogens(THandle<Molecule> molecule);

// Hydrogen site generation, in orthogonal coordinates; each site is stored
// with its fractional point through `cell`.

/// Places the site-less neighbours of every atom with a site.
void generate_hydrogen_sites(const Cell& cell, THandle<Molecule> molecule);
/// Places the site-less neighbours of atom `atom`. A parent without a site
/// throws std::invalid_argument; a hydrogen parent is skipped.
void generate_hydrogen_sites(const Cell& cell, THandle<Molecule> molecule, int atom);

/// The atoms of the set in ring order, beginning with `start`, each next
/// one the first in set order bonded in `graph` to the last; throws
/// std::runtime_error "StereoMolecule: could not find connected ring" when
/// the set is not one closed ring through `start`.
THandle<std::vector<HAtom> > connected_ring(HAtom start, const std::set<HAtom>& ring,
                                            THandle<OrderedGraph<HAtom, HBond> > graph);

// Molecules from raw lists.

/// Gives each atom with a site a new site from its orthogonal point, moved
/// by `transformation` when it is not null, with the fractional point
/// through `cell`; occupancy and displacement parameters are kept.
void add_fractional(const Cell& cell, std::vector<HAtom>& atoms, THandle<Transformation> transformation);
/// Gives atom i a site at `points[i]` (orthogonal), then add_fractional,
/// then the connected molecules of the atoms and bonds. Fewer points than
/// atoms throws std::invalid_argument.
Hvector_HMolecule create_molecules(const Cell& cell, std::vector<HAtom>& atoms,
                                   const std::vector<THandle<BondData> >& bonds, std::vector<Point>& points,
                                   THandle<Transformation> transformation);
/// One Molecule3d per connected part of the atoms joined by the bonds, whose
/// ends are indices into `atoms`; an end outside the list throws
/// std::out_of_range.
Hvector_HMolecule create_molecules(std::vector<HAtom>& atoms, const std::vector<THandle<BondData> >& bonds);

}  // namespace molcryst

#endif

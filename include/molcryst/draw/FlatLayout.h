// FlatLayout: two-dimensional coordinates for a molecule known in three, so
// that a structure read from a crystal can be drawn as a chemical diagram.
//
// The layout is made by CoordGen, the coordinate generator of the major
// cheminformatics toolkits: rings as regular polygons, chains zig-zag,
// fragments side by side. This is the molcryst::draw target; the kernel
// does not need it.
#ifndef MOLCRYST_DRAW_FLATLAYOUT_H
#define MOLCRYST_DRAW_FLATLAYOUT_H

#include "molcryst/diagram/ChemicalDiagram.h"
#include "molcryst/diagram/ChemicalDiagramGenerator.h"
#include "molcryst/molecule/Molecule.h"

namespace molcryst {
namespace draw {

/// The mean bond length of a flat layout, in the units of the sites (Angstrom-like).
constexpr double flat_bond_length = 1.5;

/// A copy of `molecule` whose atoms stand in the plane z = 0, laid out as a
/// chemical drawing with a mean bond length of flat_bond_length. Terminal
/// hydrogens that a diagram folds into a count are not laid out: they take
/// the place of their heavy atom. Atoms without sites get sites. The
/// molecule itself is not changed.
HMolecule flat_copy(const Molecule& molecule);

/// The diagram of `molecule` laid out flat: flat_copy, then the generator
/// with `treatment`.
HChemicalDiagram flat_diagram(const Molecule& molecule,
                              ChemicalDiagramGenerator::TerminalHTreatment treatment =
                                  ChemicalDiagramGenerator::FoldTerminalHydrogens);

}  // namespace draw
}  // namespace molcryst

#endif

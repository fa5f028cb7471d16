// MolecularSurroundings: the neighbours of each molecule of a deposited
// structure, found by the kernel's non-bonded builders with two criteria:
// contacts shorter than the sum of the van der Waals radii, and hydrogen
// bonds. Each neighbour is a symmetry image of a molecule of the report,
// named by its CIF symmetry code.
#ifndef MOLCRYST_IO_MOLECULARSURROUNDINGS_H
#define MOLCRYST_IO_MOLECULARSURROUNDINGS_H

#include <string>
#include <vector>

namespace molcryst {

class StructureReport;

class MolecularSurroundings {
public:
    /// One neighbouring image: the molecule of the report it is an image of,
    /// how it is placed, and what joins it to the central molecule.
    struct Neighbour {
        int molecule;          // index into the report's molecules
        int op;                // 0-based operator of the block
        int lattice[3];        // lattice translation
        std::string symmetry;  // CIF symmetry code of op and lattice
        int contacts = 0;      // van der Waals contacts
        int hbonds = 0;        // hydrogen bonds, either way
        // The shortest van der Waals contact (or, with none, hydrogen bond):
        // site indices, the second at `symmetry`, and the distance.
        int atom1 = -1, atom2 = -1;
        double distance = 0.0;
    };

    /// For each molecule of the report, its neighbours by molecule and then
    /// by symmetry code. A polymeric molecule has no finite surroundings and
    /// gets an empty list.
    static std::vector<std::vector<Neighbour> > of(const StructureReport& report);
};

}  // namespace molcryst

#endif

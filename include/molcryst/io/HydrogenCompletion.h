// HydrogenCompletion: a deposited structure with the hydrogens it lacks.
// Each heavy atom is counted in its whole molecule, where every neighbour it
// has through symmetry stands beside it, with bond orders read from the
// geometry (BondOrderPerception), by the kernel's valence rules; the
// missing hydrogens are placed there by the kernel's site rules and carried
// back onto the deposited site as new atom sites of the block.
#ifndef MOLCRYST_IO_HYDROGENCOMPLETION_H
#define MOLCRYST_IO_HYDROGENCOMPLETION_H

#include <string>
#include <vector>

#include "molcryst/io/CifBlock.h"
#include "molcryst/molecule/Molecule.h"

namespace molcryst {

class StructureReport;

class HydrogenCompletion {
public:
    /// A hydrogen site added to the block.
    struct Added {
        int site;    // index of the new site in the completed block
        int parent;  // index of the atom it is bonded to
    };

    /// The block of `report` with a hydrogen site for every hydrogen that an
    /// atom lacks. New sites follow the deposited ones, labelled after their
    /// parent ("H" and what follows the parent's element symbol, then A, B,
    /// C when there are several; never a label already used), with the
    /// parent's occupancy and disorder, and Uiso 1.2 times the parent's
    /// (1.5 on methyl carbons and on oxygen). A halogen bonded to nothing is
    /// taken for a halide ion and gets none. An atom whose count cannot be
    /// made (an unknown bond, or no complete set of neighbours) or that lies
    /// on a special position gets none, and one line saying so goes to
    /// `warnings`, "FILE:LINE: ..." with the parent's line.
    static CifBlock complete(const StructureReport& report, const std::string& source, std::vector<Added>& added,
                             std::vector<std::string>& warnings);

};

}  // namespace molcryst

#endif

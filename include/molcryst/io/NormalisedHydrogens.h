// NormalisedHydrogens: a deposited structure with its hydrogens moved along
// their bonds to the standard neutron X-H distances of the kernel's
// HydrogenNormalisation. X-ray hydrogens sit too close to their parents, so
// hydrogen-bond geometry is usually compared with hydrogens normalised.
#ifndef MOLCRYST_IO_NORMALISEDHYDROGENS_H
#define MOLCRYST_IO_NORMALISEDHYDROGENS_H

#include <vector>

#include "molcryst/io/CifBlock.h"

namespace molcryst {

class StructureReport;

class NormalisedHydrogens {
public:
    /// A hydrogen site that was moved.
    struct Moved {
        int site;       // index of the hydrogen in the block
        int parent;     // index of the atom it is bonded to (possibly through symmetry)
        double before;  // X-H distance as deposited, Angstrom
        double after;   // X-H distance normalised, Angstrom
    };

    /// The block of `report` with each hydrogen site (symbol "H", so not
    /// deuterium) that has exactly one bond, to an atom of an element in the
    /// distance table (C, N, O), moved along that bond to the table's
    /// distance; the parent's image across symmetry is the one bonded. Only
    /// the fractional coordinates of those sites change; their standard
    /// uncertainties are dropped, since the positions are now computed.
    static CifBlock normalise(const StructureReport& report, std::vector<Moved>& moved);
};

}  // namespace molcryst

#endif

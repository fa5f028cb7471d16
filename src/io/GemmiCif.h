// The parts of gemmi that the readers use: its CIF parser (on PEGTL) and its
// spacegroup tables. Kept to the sources of molcryst::io, never a public header.
#ifndef MOLCRYST_SRC_IO_GEMMICIF_H
#define MOLCRYST_SRC_IO_GEMMICIF_H

#include <gemmi/cif.hpp>
#include <gemmi/symmetry.hpp>

#endif

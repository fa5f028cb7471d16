// Mol2Writer: a crystal picture as a Tripos mol2 file, the exchange format
// that molecular viewers and converters read. Atom and bond types are the
// library's SYBYL types; each molecule of the picture is one substructure,
// and the cell with its spacegroup number goes in a CRYSIN record.
#ifndef MOLCRYST_IO_MOL2WRITER_H
#define MOLCRYST_IO_MOL2WRITER_H

#include <iosfwd>
#include <string>

#include "molcryst/crystal/Crystal.h"

namespace molcryst {

/// Writes crystal pictures as Tripos mol2 text.
class Mol2Writer {
public:
    /// One MOLECULE record named `name` (blanks become underscores) holding
    /// every atom of `crystal` at its orthogonal point, numbered from 1 in
    /// molecule order, and every bond; no charges.
    static void write(std::ostream& out, const std::string& name, const Crystal& crystal);
    /// The same into a file; std::runtime_error if it cannot be written.
    static void write_file(const std::string& path, const std::string& name, const Crystal& crystal);
};

}  // namespace molcryst

#endif

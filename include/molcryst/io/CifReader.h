// CifReader: reads the crystal structures of a CIF file, every data block
// that has atom sites, through gemmi's CIF parser.
#ifndef MOLCRYST_IO_CIFREADER_H
#define MOLCRYST_IO_CIFREADER_H

#include <string>
#include <vector>

#include "molcryst/io/CifBlock.h"
#include "molcryst/io/CifError.h"

namespace molcryst {

/// The usable blocks of a file, and why the others were passed over.
struct CifDocument {
    std::string source;
    std::vector<CifBlock> blocks;
    std::vector<CifError> skipped;  // blocks with atom sites that could not be used
};

/// Reads CIF 1.1 (and the CIF 2 syntax gemmi accepts). A syntax error, an
/// unreadable file, or a file with no usable structure throws CifError; a
/// block that cannot be used is skipped and told in `skipped`.
class CifReader {
public:
    /// Limits that keep a hostile file from making the reader allocate or
    /// compute without bound.
    static constexpr long long max_file_bytes = 1LL << 30;
    static constexpr std::size_t max_atoms = 1000000;
    static constexpr double max_cell_length = 10000.0;  // Angstrom
    static constexpr double max_coordinate = 1000.0;    // in cell fractions

    static CifDocument read_file(const std::string& path);
    /// `text` is the file's contents; `source` names it in messages.
    static CifDocument read_text(const std::string& text, const std::string& source);
};

}  // namespace molcryst

#endif

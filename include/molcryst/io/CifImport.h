// CifImport: deposited crystal structures as the kernel keeps them, one
// CrystalMaker for each data block with atom sites.
#ifndef MOLCRYST_IO_CIFIMPORT_H
#define MOLCRYST_IO_CIFIMPORT_H

#include <string>
#include <vector>

#include "molcryst/crystal/CrystalMaker.h"
#include "molcryst/io/CifReader.h"

namespace molcryst {

class StructureReport;

/// One structure: the block's name and its asymmetric unit in a
/// CrystalMaker (3D molecules, selected), each molecule a connected piece
/// with bond types from the geometry rules and atom symmtags that number the
/// deposited sites.
struct ImportedStructure {
    std::string name;
    HCrystalMaker crystal_maker;
};

class CifImport {
public:
    /// Every usable block of the file. A file that cannot be read throws
    /// CifError; blocks that cannot be used are told in `skipped` (one line
    /// each) if it is not null.
    static std::vector<ImportedStructure> read_file(const std::string& path, std::vector<std::string>* skipped = nullptr);
    /// The same from the contents of a file; `source` names it in messages.
    static std::vector<ImportedStructure> read_text(const std::string& text, const std::string& source,
                                                    std::vector<std::string>* skipped = nullptr);
    /// The CrystalMaker of a report's block.
    static HCrystalMaker crystal_maker(const StructureReport& report);
};

}  // namespace molcryst

#endif

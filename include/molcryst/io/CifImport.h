// CifImport: deposited crystal structures as the kernel keeps them, one
// CrystalMaker for each data block with atom sites.
#ifndef MOLCRYST_IO_CIFIMPORT_H
#define MOLCRYST_IO_CIFIMPORT_H

#include <string>
#include <vector>

#include "molcryst/crystal/CrystalMaker.h"
#include "molcryst/edit/DisorderSelector.h"
#include "molcryst/io/CifReader.h"

namespace molcryst {

class StructureReport;

/// One structure: the block's name and its asymmetric unit in a
/// CrystalMaker (3D molecules, selected), each molecule a connected piece
/// with bond types from the geometry rules and atom symmtags that number the
/// deposited sites.
///
/// Disorder: in each molecule the groups of a disorder assembly become the
/// groups of a DisorderSelector (see fold_disorder). The molecule keeps the atoms of the group
/// with the lowest number; every other group gives those atoms, paired in
/// file order, its own sites and labels, and its atoms leave the molecule.
struct ImportedStructure {
    std::string name;
    HCrystalMaker crystal_maker;
    /// One per molecule of the maker's 3D list: the selector over its
    /// disorder states, null for an ordered molecule.
    std::vector<HDisorderSelector> disorder;
    /// "FILE:LINE: ..." for each assembly whose groups are kept as plain
    /// atoms: groups that do not pair atom for atom, or that fail the
    /// selector's checks (its message follows).
    std::vector<std::string> warnings;
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
    /// Folds the disorder of each of `molecules` (made from `block`, atom
    /// symmtags numbering its sites) into a DisorderSelector, as told above:
    /// one per molecule, null when it has no disorder group. A molecule made
    /// only of one later group of an assembly whose first group lies in one
    /// other molecule (a solvent over two sites) is folded into that one and
    /// leaves the list. Warnings name `source`.
    static std::vector<HDisorderSelector> fold_disorder(const CifBlock& block, std::vector<HMolecule>& molecules,
                                                        const std::string& source, std::vector<std::string>* warnings);
};

}  // namespace molcryst

#endif

#include "molcryst/io/CifImport.h"

#include "molcryst/io/StructureReport.h"

namespace molcryst {

namespace {

std::vector<ImportedStructure> import(const CifDocument& document, std::vector<std::string>* skipped) {
    std::vector<ImportedStructure> structures;
    for (const CifError& e : document.skipped)
        if (skipped != nullptr) skipped->push_back(e.what());
    for (const CifBlock& block : document.blocks) {
        try {
            StructureReport report(block);
            structures.push_back(ImportedStructure{block.name, CifImport::crystal_maker(report)});
        } catch (const std::runtime_error& e) {
            if (skipped != nullptr) skipped->push_back(CifError(document.source, block.line, e.what()).what());
        }
    }
    return structures;
}

}  // namespace

std::vector<ImportedStructure> CifImport::read_file(const std::string& path, std::vector<std::string>* skipped) {
    return import(CifReader::read_file(path), skipped);
}

std::vector<ImportedStructure> CifImport::read_text(const std::string& text, const std::string& source,
                                                    std::vector<std::string>* skipped) {
    return import(CifReader::read_text(text, source), skipped);
}

HCrystalMaker CifImport::crystal_maker(const StructureReport& report) {
    Hvector_HMolecule molecules3d(new vector_HMolecule(report.asymmetric_molecules()));
    HCrystalMaker maker(new CrystalMaker(report.block().cell, Hvector_HMolecule(), Hvector_HMolecule(), molecules3d));
    maker->select_3d();
    return maker;
}

}  // namespace molcryst

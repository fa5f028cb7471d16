#include "molcryst/io/CifImport.h"

#include <algorithm>
#include <map>
#include <stdexcept>

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
            ImportedStructure structure{block.name, CifImport::crystal_maker(report), {}, {}};
            structure.disorder =
                CifImport::fold_disorder(block, report.asymmetric_molecules(), document.source, &structure.warnings);
            structures.push_back(structure);
        } catch (const std::runtime_error& e) {
            if (skipped != nullptr) skipped->push_back(CifError(document.source, block.line, e.what()).what());
        }
    }
    return structures;
}

/// The atoms of each group of each assembly of one molecule, in site order.
struct MoleculeDisorder {
    std::vector<std::string> codes;                                     // assemblies by first site
    std::map<std::string, std::map<int, std::vector<HAtom> > > groups;  // code -> group number -> atoms
    std::map<std::string, int> line;                                    // of the assembly's first site
};

MoleculeDisorder disorder_of(const CifBlock& block, const Molecule& molecule) {
    std::vector<std::pair<int, HAtom> > atoms;
    for (int i = 0; i < molecule.natoms(); ++i) atoms.push_back(std::make_pair(molecule.atom(i)->symmtag(), molecule.atom(i)));
    std::stable_sort(atoms.begin(), atoms.end(),
                     [](const std::pair<int, HAtom>& a, const std::pair<int, HAtom>& b) { return a.first < b.first; });
    MoleculeDisorder d;
    for (const auto& entry : atoms) {
        if (entry.first < 0 || static_cast<std::size_t>(entry.first) >= block.atoms.size()) continue;
        const CifAtomSite& site = block.atoms[static_cast<std::size_t>(entry.first)];
        if (site.disorder_group == 0) continue;
        if (d.groups.count(site.disorder_assembly) == 0) {
            d.codes.push_back(site.disorder_assembly);
            d.line[site.disorder_assembly] = site.line;
        }
        d.groups[site.disorder_assembly][site.disorder_group].push_back(entry.second);
    }
    return d;
}

/// The groups of one assembly as site mappings of the first group's atoms;
/// null when a group does not pair with the first atom for atom (same count,
/// same elements in site order).
Hvector_HAtomSiteMapping assembly_mapping(const std::map<int, std::vector<HAtom> >& groups) {
    const std::vector<HAtom>& reference = groups.begin()->second;
    Hvector_HAtomSiteMapping mapping(new vector_HAtomSiteMapping());
    for (const auto& group : groups) {
        const std::vector<HAtom>& atoms = group.second;
        if (atoms.size() != reference.size()) return Hvector_HAtomSiteMapping();
        HAtomSiteMapping sites(new AtomSiteMapping());
        for (std::size_t k = 0; k < atoms.size(); ++k) {
            if (atoms[k]->element().code() != reference[k]->element().code()) return Hvector_HAtomSiteMapping();
            sites->add_site(reference[k], atoms[k]->site(), atoms[k]->label());
        }
        mapping->push_back(sites);
    }
    return mapping;
}

}  // namespace

std::vector<HDisorderSelector> CifImport::fold_disorder(const CifBlock& block, const std::vector<HMolecule>& molecules,
                                                        const std::string& source, std::vector<std::string>* warnings) {
    std::vector<HDisorderSelector> selectors;
    for (std::size_t m = 0; m < molecules.size(); ++m) {
        const HMolecule& molecule = molecules[m];
        const MoleculeDisorder d = disorder_of(block, *molecule);
        Hvector_Hvector_HAtomSiteMapping mapping(new vector_Hvector_HAtomSiteMapping());
        std::vector<HAtom> alternatives;  // atoms of the groups folded into the first
        for (const std::string& code : d.codes) {
            const std::map<int, std::vector<HAtom> >& groups = d.groups.at(code);
            const std::string where = "disorder assembly '" + (code.empty() ? std::string(".") : code) +
                                      "' of molecule " + std::to_string(m + 1);
            Hvector_HAtomSiteMapping assembly = assembly_mapping(groups);
            std::string fault;
            if (assembly.unhand() == nullptr) {
                fault = "its groups do not pair atom for atom";
            } else {
                try {
                    DisorderSelector(molecule, Hvector_Hvector_HAtomSiteMapping(new vector_Hvector_HAtomSiteMapping{assembly}));
                } catch (const std::runtime_error& e) {
                    fault = e.what();
                }
            }
            if (!fault.empty()) {
                if (warnings != nullptr)
                    warnings->push_back(CifError(source, d.line.at(code), where + " is kept as plain atoms: " + fault).what());
                continue;
            }
            mapping->push_back(assembly);
            for (auto group = std::next(groups.begin()); group != groups.end(); ++group)
                alternatives.insert(alternatives.end(), group->second.begin(), group->second.end());
        }
        if (mapping->empty()) {
            selectors.push_back(HDisorderSelector());
            continue;
        }
        // The assemblies passed one by one and hold disjoint atoms, so together they pass too.
        selectors.push_back(HDisorderSelector(new DisorderSelector(molecule, mapping)));
        molecule->remove_atoms(alternatives);
    }
    return selectors;
}

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

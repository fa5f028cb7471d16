#include "molcryst/io/CifImport.h"

#include <algorithm>
#include <map>
#include <set>
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
            std::vector<HMolecule> molecules = report.asymmetric_molecules();
            ImportedStructure structure{block.name, HCrystalMaker(), {}, {}};
            structure.disorder = CifImport::fold_disorder(block, molecules, document.source, &structure.warnings);
            structure.crystal_maker = HCrystalMaker(new CrystalMaker(
                block.cell, Hvector_HMolecule(), Hvector_HMolecule(), Hvector_HMolecule(new vector_HMolecule(molecules))));
            structure.crystal_maker->select_3d();
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

/// For each molecule that is only a later group of one assembly whose first
/// group lies in one other molecule, that molecule's index (its atoms handed
/// over to it); -1 for the others.
std::vector<int> fold_detached_groups(const CifBlock& block, const std::vector<HMolecule>& molecules,
                                      std::vector<MoleculeDisorder>& disorder) {
    std::map<std::string, int> first_group;                 // code -> lowest group number in the block
    std::map<std::string, std::set<std::size_t> > holders;  // code -> molecules with atoms of that group
    for (const CifAtomSite& site : block.atoms)
        if (site.disorder_group != 0) {
            auto found = first_group.emplace(site.disorder_assembly, site.disorder_group).first;
            found->second = std::min(found->second, site.disorder_group);
        }
    for (std::size_t m = 0; m < molecules.size(); ++m)
        for (const auto& assembly : disorder[m].groups)
            if (assembly.second.count(first_group[assembly.first])) holders[assembly.first].insert(m);
    std::vector<int> into(molecules.size(), -1);
    for (std::size_t m = 0; m < molecules.size(); ++m) {
        const MoleculeDisorder& d = disorder[m];
        if (d.codes.size() != 1) continue;
        const std::string& code = d.codes[0];
        const std::map<int, std::vector<HAtom> >& groups = d.groups.at(code);
        if (groups.size() != 1 || static_cast<int>(groups.begin()->second.size()) != molecules[m]->natoms()) continue;
        const int group = groups.begin()->first;
        if (group == first_group[code] || holders[code].size() != 1) continue;
        const std::size_t target = *holders[code].begin();
        std::vector<HAtom>& atoms = disorder[target].groups[code][group];
        atoms.insert(atoms.end(), groups.begin()->second.begin(), groups.begin()->second.end());
        std::stable_sort(atoms.begin(), atoms.end(),
                         [](const HAtom& a, const HAtom& b) { return a->symmtag() < b->symmtag(); });
        into[m] = static_cast<int>(target);
    }
    return into;
}

}  // namespace

std::vector<HDisorderSelector> CifImport::fold_disorder(const CifBlock& block, std::vector<HMolecule>& molecules,
                                                        const std::string& source, std::vector<std::string>* warnings) {
    std::vector<MoleculeDisorder> disorder;
    for (const HMolecule& molecule : molecules) disorder.push_back(disorder_of(block, *molecule));
    const std::vector<int> into = fold_detached_groups(block, molecules, disorder);
    std::vector<HDisorderSelector> selectors(molecules.size());
    std::vector<std::set<std::string> > folded(molecules.size());  // assemblies that became selector groups
    for (std::size_t m = 0; m < molecules.size(); ++m) {
        if (into[m] >= 0) continue;
        const HMolecule& molecule = molecules[m];
        const MoleculeDisorder& d = disorder[m];
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
            folded[m].insert(code);
            for (auto group = std::next(groups.begin()); group != groups.end(); ++group)
                for (const HAtom& atom : group->second)
                    if (molecule->has_atom(atom)) alternatives.push_back(atom);
        }
        if (mapping->empty()) continue;
        // The assemblies passed one by one and hold disjoint atoms, so together they pass too.
        selectors[m] = HDisorderSelector(new DisorderSelector(molecule, mapping));
        molecule->remove_atoms(alternatives);
    }
    // A molecule handed over leaves the list, unless its assembly stayed plain atoms.
    std::vector<HMolecule> kept;
    std::vector<HDisorderSelector> kept_selectors;
    for (std::size_t m = 0; m < molecules.size(); ++m) {
        if (into[m] >= 0 && folded[static_cast<std::size_t>(into[m])].count(disorder[m].codes[0])) continue;
        kept.push_back(molecules[m]);
        kept_selectors.push_back(selectors[m]);
    }
    molecules = kept;
    return kept_selectors;
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

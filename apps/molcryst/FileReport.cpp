// The report of one file: the text and JSON forms of what StructureReport
// finds in each structure, with what the options add.
#include "FileReport.h"

#include <climits>
#include <cmath>
#include <iomanip>
#include <iostream>
#include <memory>
#include <sstream>

#include "Clashes.h"
#include "HBondNetwork.h"
#include "NormalisedHydrogensReport.h"
#include "SavedCrystal.h"
#include "molcryst/io/CifDisorder.h"
#include "molcryst/io/CifImport.h"
#include "molcryst/io/CifReader.h"
#include "molcryst/io/HydrogenCompletion.h"
#include "molcryst/io/MolecularSurroundings.h"
#include "molcryst/io/NormalisedHydrogens.h"
#include "molcryst/io/StructureFormulae.h"
#include "molcryst/io/StructureReport.h"
#include "molcryst/support/StringFunctions.h"

namespace molcryst {
namespace app {

namespace {

using nlohmann::json;

const char* const axis_names[3] = {"a", "b", "c"};
const char* const angle_names[3] = {"alpha", "beta", "gamma"};

/// A number as deposited, with its standard uncertainty in brackets.
std::string with_su(const UncertainValue& v) {
    std::ostringstream out;
    v.print(out);
    return out.str();
}

double rounded(double value, int decimals) {
    const double f = std::pow(10.0, decimals);
    return std::round(value * f) / f;
}

std::string fixed(double value, int decimals) {
    std::ostringstream out;
    out << std::fixed << std::setprecision(decimals) << value;
    return out.str();
}

const std::string& label(const CifBlock& block, int site) { return block.atoms[site].label; }

/// What the options add to a block's report; null when not asked for.
struct Extras {
    const std::vector<HydrogenCompletion::Added>* added = nullptr;
    const std::vector<std::vector<MolecularSurroundings::Neighbour> >* surroundings = nullptr;
};

json surroundings_json(const CifBlock& block, const std::vector<MolecularSurroundings::Neighbour>& neighbours) {
    json list = json::array();
    for (const MolecularSurroundings::Neighbour& n : neighbours)
        list.push_back({{"molecule", n.molecule},
                        {"symmetry", n.symmetry},
                        {"contacts", n.contacts},
                        {"hbonds", n.hbonds},
                        {"closest",
                         {{"atom1", label(block, n.atom1)},
                          {"atom2", label(block, n.atom2)},
                          {"distance", rounded(n.distance, 4)}}}});
    return list;
}

json added_json(const CifBlock& block, const std::vector<HydrogenCompletion::Added>& added) {
    json list = json::array();
    for (const HydrogenCompletion::Added& h : added) {
        const CifAtomSite& a = block.atoms[static_cast<std::size_t>(h.site)];
        list.push_back({{"label", a.label},
                        {"parent", label(block, h.parent)},
                        {"x", rounded(a.fract[0].value(), 5)},
                        {"y", rounded(a.fract[1].value(), 5)},
                        {"z", rounded(a.fract[2].value(), 5)}});
    }
    return list;
}

json comparison_json(const StructureFormulae::Comparison& c) {
    if (c.status == StructureFormulae::Comparison::Absent) return nullptr;
    return {{"declared", c.declared},
            {"status", StructureFormulae::status_name(c.status)},
            {"scale", c.status == StructureFormulae::Comparison::Agrees ? json(rounded(c.scale, 4)) : json(nullptr)},
            {"detail", c.detail}};
}

json formulae_json(const StructureFormulae& f) {
    return {{"crystal", to_string(f.crystal_formula())},
            {"sum", to_string(f.sum_formula())},
            {"per", f.per_formula_unit() ? "formula unit" : "asymmetric unit"},
            {"declared_sum", comparison_json(f.sum_comparison())},
            {"declared_moiety", comparison_json(f.moiety_comparison())}};
}

void comparison_text(std::ostream& out, const char* what, const StructureFormulae::Comparison& c) {
    if (c.status == StructureFormulae::Comparison::Absent) return;
    out << "declared " << what << " '" << c.declared << "': ";
    if (c.status == StructureFormulae::Comparison::Agrees) {
        out << "agrees";
        if (std::fabs(c.scale - 1.0) > 1e-3) out << " (computed = " << rounded(c.scale, 4) << " x declared)";
    } else {
        out << (c.status == StructureFormulae::Comparison::Differs ? "MISMATCH: " : "unreadable: ") << c.detail;
    }
    out << "\n";
}

json block_json(const StructureReport& report, const Extras& extras) {
    const CifBlock& block = report.block();
    json b;
    b["name"] = block.name;
    json cell;
    for (int k = 0; k < 3; ++k) {
        cell[axis_names[k]] = block.lengths[k].value();
        cell[std::string(axis_names[k]) + "_su"] = block.lengths[k].standard_uncertainty();
        cell[angle_names[k]] = block.angles[k].value();
        cell[std::string(angle_names[k]) + "_su"] = block.angles[k].standard_uncertainty();
    }
    cell["volume"] = rounded(block.cell.volume(), 3);
    b["cell"] = cell;
    const Spacegroup& sg = block.cell.spacegroup();
    b["spacegroup"] = {{"name", sg.name()},
                       {"number", sg.number()},
                       {"crystal_system", Spacegroup::system_name(sg.system())},
                       {"operators", sg.noperators()},
                       {"symops", block.operator_triplets},
                       {"from", block.symmetry_source}};
    if (block.z > 0) {
        b["z"] = block.z;
        b["z_prime"] = rounded(static_cast<double>(block.z) / sg.noperators(), 4);
    } else {
        b["z"] = nullptr;
        b["z_prime"] = nullptr;
    }
    const StructureFormulae formulae(report);
    json molecules = json::array();
    for (std::size_t c = 0; c < report.molecules().size(); ++c) {
        const StructureReport::MoleculeRow& m = report.molecules()[c];
        json labels = json::array();
        for (int s : m.sites) labels.push_back(label(block, s));
        molecules.push_back({{"formula", m.formula},
                             {"chemical_formula", formulae.molecule_formulae()[c]},
                             {"atoms", static_cast<int>(m.sites.size())},
                             {"whole_atoms", m.polymeric ? json(nullptr) : json(m.whole_atoms)},
                             {"special_position", m.special_position},
                             {"polymeric", m.polymeric},
                             {"sites", labels}});
        if (extras.surroundings != nullptr)
            molecules.back()["surroundings"] =
                m.polymeric ? json(nullptr) : surroundings_json(block, (*extras.surroundings)[c]);
    }
    b["molecules"] = molecules;
    b["formulae"] = formulae_json(formulae);
    json bonds = json::array();
    for (const StructureReport::BondRow& r : report.bonds())
        bonds.push_back({{"atom1", label(block, r.atom1)},
                         {"atom2", label(block, r.atom2)},
                         {"symmetry", r.symmetry},
                         {"distance", rounded(r.distance, 4)}});
    b["bonds"] = bonds;
    json hbonds = json::array();
    for (const StructureReport::HBondRow& r : report.hbonds())
        hbonds.push_back({{"donor", label(block, r.donor)},
                          {"hydrogen", label(block, r.hydrogen)},
                          {"acceptor", label(block, r.acceptor)},
                          {"symmetry", r.symmetry},
                          {"d_a", rounded(r.d_a, 4)},
                          {"h_a", rounded(r.h_a, 4)},
                          {"angle", rounded(r.angle, 2)}});
    b["hbonds"] = hbonds;
    if (extras.added != nullptr) b["added_hydrogens"] = added_json(block, *extras.added);
    b["warnings"] = block.warnings;
    return b;
}

/// Columns padded to their widest entry, two blanks apart.
void table(std::ostream& out, const std::vector<std::vector<std::string> >& rows) {
    std::vector<std::size_t> width;
    for (const auto& row : rows)
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (width.size() <= i) width.push_back(0);
            width[i] = std::max(width[i], row[i].size());
        }
    for (const auto& row : rows) {
        std::string line = "  ";
        for (std::size_t i = 0; i < row.size(); ++i) {
            line += row[i];
            if (i + 1 < row.size()) line += std::string(width[i] - row[i].size() + 2, ' ');
        }
        out << line << "\n";
    }
}

void block_text(std::ostream& out, const StructureReport& report, const Extras& extras) {
    const CifBlock& block = report.block();
    const Spacegroup& sg = block.cell.spacegroup();
    out << "data_" << block.name << "\n";
    out << "cell: ";
    for (int k = 0; k < 3; ++k) out << axis_names[k] << " = " << with_su(block.lengths[k]) << ", ";
    for (int k = 0; k < 3; ++k) out << angle_names[k] << " = " << with_su(block.angles[k]) << ", ";
    out << "volume = " << fixed(block.cell.volume(), 1) << " A^3\n";
    out << "spacegroup: " << sg.name() << " (number " << sg.number() << ", " << Spacegroup::system_name(sg.system())
        << "), " << sg.noperators() << " operators from the " << block.symmetry_source << "\n";
    out << "Z = " << (block.z > 0 ? std::to_string(block.z) : "?")
        << ", Z' = " << (block.z > 0 ? fixed(static_cast<double>(block.z) / sg.noperators(), 2) : "?") << "\n";
    out << "molecules: " << report.molecules().size() << "\n";
    const StructureFormulae formulae(report);
    std::vector<std::vector<std::string> > rows{
        {"#", "formula", "residue", "atoms", "whole", "special position", "polymeric"}};
    int n = 0;
    for (const StructureReport::MoleculeRow& m : report.molecules()) {
        rows.push_back({std::to_string(n + 1), m.formula, formulae.molecule_formulae()[static_cast<std::size_t>(n)],
                        std::to_string(m.sites.size()), m.polymeric ? "-" : std::to_string(m.whole_atoms),
                        m.special_position ? "yes" : "no", m.polymeric ? "yes" : "no"});
        ++n;
    }
    table(out, rows);
    const char* per = formulae.per_formula_unit() ? "per formula unit" : "per asymmetric unit";
    out << "crystal formula: " << to_string(formulae.crystal_formula()) << " (" << per << ")\n";
    out << "sum formula: " << to_string(formulae.sum_formula()) << " (" << per << ")\n";
    comparison_text(out, "sum", formulae.sum_comparison());
    comparison_text(out, "moiety", formulae.moiety_comparison());
    out << "bonds: " << report.bonds().size() << "\n";
    rows.assign(1, {"atom1", "atom2", "symmetry", "distance"});
    for (const StructureReport::BondRow& r : report.bonds())
        rows.push_back({label(block, r.atom1), label(block, r.atom2), r.symmetry, fixed(r.distance, 4)});
    table(out, rows);
    out << "hydrogen bonds: " << report.hbonds().size() << "\n";
    rows.assign(1, {"donor", "hydrogen", "acceptor", "symmetry", "D...A", "H...A", "D-H...A"});
    for (const StructureReport::HBondRow& r : report.hbonds())
        rows.push_back({label(block, r.donor), label(block, r.hydrogen), label(block, r.acceptor), r.symmetry,
                        fixed(r.d_a, 3), fixed(r.h_a, 3), fixed(r.angle, 1)});
    table(out, rows);
    if (extras.added != nullptr) {
        out << "added hydrogens: " << extras.added->size() << "\n";
        rows.assign(1, {"label", "parent", "x", "y", "z"});
        for (const HydrogenCompletion::Added& h : *extras.added) {
            const CifAtomSite& a = block.atoms[static_cast<std::size_t>(h.site)];
            rows.push_back({a.label, label(block, h.parent), fixed(a.fract[0].value(), 4), fixed(a.fract[1].value(), 4),
                            fixed(a.fract[2].value(), 4)});
        }
        table(out, rows);
    }
    if (extras.surroundings != nullptr) {
        for (std::size_t c = 0; c < report.molecules().size(); ++c) {
            if (report.molecules()[c].polymeric) {
                out << "surroundings of molecule " << c + 1 << ": none (polymeric)\n";
                continue;
            }
            const std::vector<MolecularSurroundings::Neighbour>& list = (*extras.surroundings)[c];
            out << "surroundings of molecule " << c + 1 << ": " << list.size() << " neighbours\n";
            rows.assign(1, {"molecule", "symmetry", "contacts", "H-bonds", "closest", "distance"});
            for (const MolecularSurroundings::Neighbour& n : list)
                rows.push_back({std::to_string(n.molecule + 1), n.symmetry, std::to_string(n.contacts),
                                std::to_string(n.hbonds), label(block, n.atom1) + "..." + label(block, n.atom2),
                                fixed(n.distance, 3)});
            table(out, rows);
        }
    }
}

/// The number of states as text, or "" when a long long cannot hold it.
std::string count_of_states(const CifDisorder& disorder) {
    try {
        return std::to_string(disorder.nstates());
    } catch (const std::overflow_error&) {
        return "";
    }
}

/// The block in `state`; std::runtime_error naming the number of states when there is no such state.
CifBlock in_state(const CifDisorder& disorder, long long state) {
    try {
        return disorder.in_state(state);
    } catch (const std::out_of_range&) {
        throw std::runtime_error("no disorder state " + std::to_string(state) + ": the structure has " +
                                 count_of_states(disorder));
    }
}

std::string assembly_name(const std::string& code) { return code.empty() ? "." : code; }

/// The disorder assemblies of the block as deposited, and the state reported (-1: none asked).
json disorder_json(const CifDisorder& disorder, const CifBlock& block, long long state) {
    json assemblies = json::array();
    for (const CifDisorder::Assembly& a : disorder.assemblies()) {
        json groups = json::array();
        for (const CifDisorder::Group& g : a.groups) {
            json sites = json::array();
            for (int s : g.sites) sites.push_back(label(block, s));
            groups.push_back({{"group", g.group}, {"occupancy", g.occupancy}, {"sites", sites}});
        }
        assemblies.push_back({{"assembly", a.code}, {"groups", groups}});
    }
    const std::string count = count_of_states(disorder);
    json state_groups = nullptr;
    if (state >= 0) {
        state_groups = json::array();
        const std::vector<int> chosen = disorder.state(state);
        for (std::size_t a = 0; a < chosen.size(); ++a)
            state_groups.push_back(disorder.assemblies()[a].groups[static_cast<std::size_t>(chosen[a])].group);
    }
    return {{"assemblies", assemblies},
            {"states", count.empty() ? json(nullptr) : json(disorder.nstates())},
            {"state", state >= 0 ? json(state) : json(nullptr)},
            {"state_groups", state_groups}};
}

void disorder_text(std::ostream& out, const CifDisorder& disorder, const CifBlock& block, long long state) {
    if (disorder.assemblies().empty() && state < 0) return;  // an ordered structure says nothing of disorder
    const std::string count = count_of_states(disorder);
    out << "disorder assemblies: " << disorder.assemblies().size()
        << ", states: " << (count.empty() ? "more than " + std::to_string(LLONG_MAX) : count) << "\n";
    if (state >= 0) {
        out << "disorder state " << state << ":";
        const std::vector<int> chosen = disorder.state(state);
        for (std::size_t a = 0; a < chosen.size(); ++a)
            out << " " << assembly_name(disorder.assemblies()[a].code) << " group "
                << disorder.assemblies()[a].groups[static_cast<std::size_t>(chosen[a])].group;
        out << "\n";
    }
    std::vector<std::vector<std::string> > rows{{"assembly", "group", "occupancy", "sites"}};
    for (const CifDisorder::Assembly& a : disorder.assemblies())
        for (const CifDisorder::Group& g : a.groups) {
            std::ostringstream occupancy, sites;
            occupancy << g.occupancy;
            for (std::size_t k = 0; k < g.sites.size(); ++k) sites << (k ? " " : "") << label(block, g.sites[k]);
            rows.push_back({assembly_name(a.code), std::to_string(g.group), occupancy.str(), sites.str()});
        }
    if (!disorder.assemblies().empty()) table(out, rows);
}

}  // namespace

int report_file(const std::string& file, const ReportOptions& options, std::ostream& out, std::ostream& err,
                json& entry) {
    entry = nullptr;
    if (is_saved_crystal(file)) {
        json saved{{"file", file}};
        const int status = report_saved_crystal(file, options.json, options.clashes, out, err, saved);
        if (saved.contains("saved_crystal")) entry = saved;
        return status;
    }
    CifDocument cif;
    try {
        cif = CifReader::read_file(file);
    } catch (const CifError& e) {
        err << e.what() << "\n";
        return 1;
    }
    json result;
    result["file"] = file;
    result["blocks"] = json::array();
    json skipped = json::array();
    for (const CifError& e : cif.skipped) {
        err << "warning: " << e.what() << " (block skipped)\n";
        skipped.push_back(e.what());
    }
    for (const CifBlock& block : cif.blocks) {
        for (const std::string& w : block.warnings) err << "warning: " << w << "\n";
        try {
            // The disorder as deposited; the report on the state asked for, if any.
            const CifDisorder disorder(block);
            const CifBlock stated =
                options.disorder_state >= 0 ? in_state(disorder, options.disorder_state) : CifBlock();
            std::unique_ptr<StructureReport> report(new StructureReport(options.disorder_state >= 0 ? stated : block));
            Extras extras;
            std::vector<HydrogenCompletion::Added> added;
            std::unique_ptr<CifBlock> completed;
            if (options.add_hydrogens) {
                std::vector<std::string> warnings;
                completed.reset(new CifBlock(HydrogenCompletion::complete(*report, file, added, warnings)));
                for (const std::string& w : warnings) err << "warning: " << w << "\n";
                completed->warnings.insert(completed->warnings.end(), warnings.begin(), warnings.end());
                report.reset(new StructureReport(*completed));
                extras.added = &added;
            }
            std::vector<NormalisedHydrogens::Moved> normalised;
            std::unique_ptr<CifBlock> normalised_block;
            if (options.normalise_hydrogens) {
                normalised_block.reset(new CifBlock(NormalisedHydrogens::normalise(*report, normalised)));
                report.reset(new StructureReport(*normalised_block));
            }
            std::vector<std::vector<MolecularSurroundings::Neighbour> > surroundings;
            if (options.surroundings) {
                surroundings = MolecularSurroundings::of(*report);
                extras.surroundings = &surroundings;
            }
            if (options.json) {
                json b = block_json(*report, extras);
                b["disorder"] = disorder_json(disorder, block, options.disorder_state);
                if (options.normalise_hydrogens)
                    b["normalised_hydrogens"] = normalised_json(report->block(), normalised);
                if (options.expand)
                    b["hbond_network"] = network_json(expand_hbond_network(CifImport::crystal_maker(*report)));
                if (options.clashes) b["clashes"] = clashes_json(find_clashes(CifImport::crystal_maker(*report)));
                result["blocks"].push_back(b);
            } else {
                block_text(out, *report, extras);
                if (options.normalise_hydrogens) normalised_text(out, report->block(), normalised);
                disorder_text(out, disorder, block, options.disorder_state);
                if (options.expand) network_text(out, expand_hbond_network(CifImport::crystal_maker(*report)));
                if (options.clashes) clashes_text(out, find_clashes(CifImport::crystal_maker(*report)));
            }
        } catch (const std::exception& e) {
            const std::string line = CifError(file, block.line, e.what()).what();
            err << "warning: " << line << " (block skipped)\n";
            skipped.push_back(line);
        }
    }
    result["skipped"] = skipped;
    entry = result;
    return 0;
}

json report_document(const json& entries) {
    json document;
    document["molcryst"] = molcryst_version();
    document["files"] = entries;
    return document;
}

std::string report_line(const std::string& file, bool& failed) {
    ReportOptions options;
    options.json = true;
    std::ostringstream out, err;
    json entry;
    try {
        report_file(file, options, out, err, entry);
    } catch (const std::exception& e) {
        // report_file tells every fault of the file itself; this is one of the machine (memory, say).
        entry = nullptr;
        err << e.what() << "\n";
    }
    failed = entry.is_null();
    if (!failed) return json{{"file", file}, {"report", report_document(json::array({entry}))}}.dump();
    return json{{"file", file}, {"error", report_error(file, err.str())}}.dump();
}

std::string report_error(const std::string& file, const std::string& err) {
    std::istringstream lines(err);
    std::string error, warnings;
    for (std::string line; std::getline(lines, line);) {
        if (line.empty()) continue;
        std::string& to = line.compare(0, 9, "warning: ") == 0 ? warnings : error;
        to += (to.empty() ? "" : "; ") + line;
    }
    if (error.empty()) error = warnings.empty() ? file + ": no report" : warnings;
    return error;
}

const char* molcryst_version() { return MOLCRYST_VERSION; }

}  // namespace app
}  // namespace molcryst

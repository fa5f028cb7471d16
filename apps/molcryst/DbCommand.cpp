// molcryst db: an entry database of crystal structures, kept in a directory.
#include <CLI/CLI.hpp>

#include <filesystem>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <unordered_map>
#include <unordered_set>

#include "CellJson.h"
#include "Clashes.h"
#include "Commands.h"
#include "DbStructure.h"
#include "molcryst/connectivity/ArchiveDatabase.h"
#include "molcryst/connectivity/Order3AtomTopologyIndex.h"
#include "molcryst/io/CifImport.h"
#include "molcryst/support/StringFunctions.h"

namespace molcryst {
namespace app {

namespace {

typedef DatabaseEntry<CrystalMaker> StructureEntry;
typedef ArchiveDatabase<StructureEntry> StructureDatabase;

// DB names a directory; the database in it takes the directory's own name,
// so that "molcryst db add cod x.cif" writes cod/cod.adi and cod/cod_ID.ade.
struct DatabasePlace {
    std::string path, name;
};

DatabasePlace place_of(const std::string& database) {
    std::string path = database;
    while (path.size() > 1 && path.back() == '/') path.pop_back();
    const std::size_t slash = path.rfind('/');
    const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    return DatabasePlace{path, name};
}

// The database of an existing directory, or a line on `err` and false.
bool existing(const std::string& database, std::ostream& err) {
    const DatabasePlace place = place_of(database);
    if (place.name.empty() || place.name == "." || place.name == ".." ||
        !std::filesystem::exists(StructureDatabase::index_file_path(place.path, place.name))) {
        err << database << ": no database here (no " << place.name << ".adi)\n";
        return false;
    }
    return true;
}

nlohmann::json document(const std::string& database) {
    nlohmann::json d;
    d["molcryst"] = MOLCRYST_VERSION;
    d["database"] = database;
    return d;
}

// The duplicate key: the topology records, then the crystal formula.
std::string duplicate_key(const CrystalMaker& maker) {
    std::ostringstream key;
    key.precision(17);
    const CrystalTopologyIndex topology = crystal_topology_index_of(maker);
    for (const CrystalTopologyIndex::Record& r : topology.indices())
        key << r.index << ":" << r.multiplier << ";";
    key << "|" << to_string(crystal_formula_of(maker));
    return key.str();
}

}  // namespace

DbCommand::DbCommand(CLI::App& parent) {
    command_ = parent.add_subcommand("db", "Keep crystal structures in an entry database (a directory)");
    command_->require_subcommand(1);
    add_ = command_->add_subcommand("add", "Add one entry per data block of the CIF files, named after the block");
    add_->add_option("database", database_, "Database directory, made if missing")->required();
    add_->add_option("files", files_, "CIF files")->required();
    add_->add_flag("--json", json_, "Write JSON");
    list_ = command_->add_subcommand("list", "List the identifiers of the entries");
    list_->add_option("database", database_, "Database directory")->required();
    list_->add_flag("--json", json_, "Write JSON");
    show_ = command_->add_subcommand("show", "Report the structure stored under an identifier");
    show_->add_option("database", database_, "Database directory")->required();
    show_->add_option("identifier", identifier_, "Entry identifier")->required();
    show_->add_flag("--json", json_, "Write JSON");
    duplicates_ = command_->add_subcommand(
        "duplicates", "Group the entries with equal crystal topology index and equal formula");
    duplicates_->add_option("database", database_, "Database directory")->required();
    duplicates_->add_flag("--json", json_, "Write JSON");
}

bool DbCommand::chosen() const { return command_->parsed(); }

int DbCommand::run(std::ostream& out, std::ostream& err) const {
    try {
        if (add_->parsed()) return add(out, err);
        if (list_->parsed()) return list(out, err);
        if (show_->parsed()) return show(out, err);
        if (duplicates_->parsed()) return duplicates(out, err);
    } catch (const std::exception& e) {
        err << database_ << ": " << e.what() << "\n";
        return 1;
    }
    return 2;
}

int DbCommand::add(std::ostream& out, std::ostream& err) const {
    const DatabasePlace place = place_of(database_);
    if (place.name.empty() || place.name == "." || place.name == "..") {
        err << database_ << ": name a database directory\n";
        return 2;
    }
    std::error_code made;
    std::filesystem::create_directories(place.path, made);
    StructureDatabase db(place.path, place.name, 3);
    int status = 0;
    std::vector<THandle<StructureEntry> > entries;
    std::unordered_set<std::string> taken;  // identifiers of this run
    nlohmann::json added = nlohmann::json::array();
    std::vector<std::string> lines;
    for (const std::string& file : files_) {
        std::vector<ImportedStructure> structures;
        std::vector<std::string> skipped;
        try {
            structures = CifImport::read_file(file, &skipped);
        } catch (const CifError& e) {
            err << e.what() << "\n";
            status = 1;
            continue;
        }
        for (const std::string& s : skipped) err << s << "\n";
        for (const ImportedStructure& s : structures) {
            const std::string fault = detail::identifier_fault(s.name);
            if (!fault.empty()) {
                err << file << ": data_" << s.name << ": cannot name an entry: " << fault << " (block skipped)\n";
                status = 1;
                continue;
            }
            if (db.identifier_exists(DatabaseEntryIdentifier(s.name)) || !taken.insert(s.name).second) {
                err << file << ": data_" << s.name << ": " << database_ << " already holds an entry " << s.name
                    << " (block skipped)\n";
                status = 1;
                continue;
            }
            entries.push_back(THandle<StructureEntry>(new StructureEntry(DatabaseEntryIdentifier(s.name), s.crystal_maker)));
            added.push_back({{"id", s.name}, {"file", file}});
            lines.push_back("added " + s.name + " from " + file);
        }
    }
    // One write of the index for the whole run.
    db.append_all(entries);
    if (json_) {
        nlohmann::json d = document(database_);
        d["added"] = added;
        d["entries"] = db.size();
        out << d.dump(2) << "\n";
    } else {
        for (const std::string& line : lines) out << line << "\n";
        out << database_ << ": " << db.size() << " entries\n";
    }
    return status;
}

int DbCommand::list(std::ostream& out, std::ostream& err) const {
    if (!existing(database_, err)) return 1;
    const DatabasePlace place = place_of(database_);
    StructureDatabase db(place.path, place.name, 1);
    if (json_) {
        nlohmann::json d = document(database_);
        d["entries"] = nlohmann::json::array();
        for (int i = 0; i < db.size(); ++i) d["entries"].push_back(db.identifier(i).text());
        out << d.dump(2) << "\n";
    } else {
        for (int i = 0; i < db.size(); ++i) out << db.identifier(i) << "\n";
    }
    return 0;
}

int DbCommand::show(std::ostream& out, std::ostream& err) const {
    if (!existing(database_, err)) return 1;
    const DatabasePlace place = place_of(database_);
    StructureDatabase db(place.path, place.name, 1);
    StructureDatabase::IdentifierMatch match = StructureDatabase::NoMatch;
    const int nearest = db.nearest_entry(DatabaseEntryIdentifier(identifier_), match);
    if (match != StructureDatabase::ExactMatch) {
        // Identifiers are exact; the nearest one is offered, never taken.
        err << database_ << ": no entry " << identifier_;
        if (nearest >= 0)
            err << (match == StructureDatabase::CaseMatch ? " (but for case: " : " (nearest: ") << db.identifier(nearest)
                << ")";
        err << "\n";
        return 1;
    }
    const THandle<StructureEntry> entry = db.entry(nearest);
    const CrystalMaker& maker = *entry->data();
    const Cell& cell = maker.cell();
    const Spacegroup& sg = cell.spacegroup();
    const HConnectivityInfo info = connectivity_info_of(maker);
    const CrystalTopologyIndex topology(info, HTopologyIndex(new Order3AtomTopologyIndex()));
    const CrystalChemicalFormula formula = crystal_formula_of(maker);
    if (json_) {
        nlohmann::json e;
        e["id"] = entry->identifier().text();
        e["cell"] = cell_json(cell);
        e["spacegroup"] = spacegroup_json(sg);
        e["molecules"] = maker.nmolecules();
        e["atoms"] = maker.natoms();
        e["formula"] = to_string(formula);
        e["sum_formula"] = to_string(formula.sum_formula());
        nlohmann::json parts = nlohmann::json::array();
        for (int i = 0; i < info->nconnectivities(); ++i)
            parts.push_back({{"atoms", info->connectivity(i)->natoms()},
                             {"bonds", info->connectivity(i)->nbonds()},
                             {"multiplier", info->multiplier(i)}});
        e["connectivities"] = parts;
        nlohmann::json indices = nlohmann::json::array();
        for (const CrystalTopologyIndex::Record& r : topology.indices())
            indices.push_back({{"index", r.index}, {"multiplier", r.multiplier}});
        e["topology_indices"] = indices;
        nlohmann::json d = document(database_);
        d["entry"] = e;
        out << d.dump(2) << "\n";
        return 0;
    }
    out << "entry: " << entry->identifier() << "\n";
    out << "cell: a = " << decimal_text(cell.a(), 4) << ", b = " << decimal_text(cell.b(), 4)
        << ", c = " << decimal_text(cell.c(), 4) << ", alpha = " << decimal_text(cell.alpha().degrees(), 3)
        << ", beta = " << decimal_text(cell.beta().degrees(), 3)
        << ", gamma = " << decimal_text(cell.gamma().degrees(), 3) << ", volume = " << decimal_text(cell.volume(), 1)
        << " A^3\n";
    out << "spacegroup: " << sg.name() << " (number " << sg.number() << "), " << sg.noperators() << " operators\n";
    out << "asymmetric unit: " << maker.nmolecules() << " molecules, " << maker.natoms() << " atoms, "
        << "formula " << formula << "\n";
    out << "connectivities: " << info->nconnectivities() << "\n";
    for (int i = 0; i < info->nconnectivities(); ++i)
        out << "  " << info->connectivity(i)->natoms() << " atoms, " << info->connectivity(i)->nbonds()
            << " bonds, multiplier " << info->multiplier(i) << "\n";
    topology.print(out);
    return 0;
}

int DbCommand::duplicates(std::ostream& out, std::ostream& err) const {
    if (!existing(database_, err)) return 1;
    const DatabasePlace place = place_of(database_);
    StructureDatabase db(place.path, place.name, 1);
    int status = 0;
    // Entries grouped by key through a hash: one pass, never all pairs.
    std::unordered_map<std::string, std::size_t> group_of;
    std::vector<std::vector<std::string> > groups;  // in the order of each group's first entry
    for (int i = 0; i < db.size(); ++i) {
        THandle<StructureEntry> entry;
        try {
            entry = db.entry(i);
        } catch (const database_error& e) {
            err << database_ << ": " << e.what() << "\n";
            status = 1;
            continue;
        }
        const std::string key = duplicate_key(*entry->data());
        auto found = group_of.find(key);
        if (found == group_of.end()) {
            group_of.emplace(key, groups.size());
            groups.push_back({entry->identifier().text()});
        } else {
            groups[found->second].push_back(entry->identifier().text());
        }
    }
    nlohmann::json found = nlohmann::json::array();
    int ngroups = 0;
    for (const std::vector<std::string>& g : groups) {
        if (g.size() < 2) continue;
        ++ngroups;
        found.push_back(g);
        if (!json_) {
            for (std::size_t k = 0; k < g.size(); ++k) out << (k == 0 ? "" : " ") << g[k];
            out << "\n";
        }
    }
    if (json_) {
        nlohmann::json d = document(database_);
        d["entries"] = db.size();
        d["groups"] = found;
        out << d.dump(2) << "\n";
    } else {
        out << database_ << ": " << ngroups << " groups of duplicates among " << db.size() << " entries\n";
    }
    return status;
}

}  // namespace app
}  // namespace molcryst

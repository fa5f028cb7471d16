#include "SavedCrystal.h"

#include <iomanip>
#include <ostream>
#include <sstream>
#include <stdexcept>

#include "CellJson.h"
#include "Clashes.h"
#include "HBondNetwork.h"
#include "molcryst/support/VersionedArchive.h"

namespace molcryst {
namespace app {

namespace {

int natoms(const Crystal& c) {
    int n = 0;
    for (const HMolecule& m : *c.molecules()) n += m->natoms();
    return n;
}

}  // namespace

bool is_saved_crystal(const std::string& file) {
    return file.size() > 4 && file.compare(file.size() - 4, 4, ".mcr") == 0;
}

void save_crystal(const NewCrystal& crystal, const std::string& file) {
    Archive ar(file, Archive::write_mode);
    crystal.write(ar);
    ar.flush();
    if (std::ferror(ar.file())) throw std::runtime_error("cannot write the file");
}

NewCrystal read_saved_crystal(const std::string& file) {
    // The first int is the format version. A version 1 file is read through a
    // versioned archive, which tells the molecules their old layouts; the
    // current one through a plain archive, which nested readers take as current.
    int version = 0;
    {
        Archive peek(file, Archive::read_mode);
        Archive::Field field(peek, "format version");
        peek >> version;
    }
    NewCrystal crystal;
    if (version == 1) {
        VersionedArchive ar(file, Archive::read_mode);
        crystal.read(ar);
    } else {
        Archive ar(file, Archive::read_mode);
        crystal.read(ar);
    }
    return crystal;
}

int report_saved_crystal(const std::string& file, bool json, bool clashes, std::ostream& out, std::ostream& err,
                         nlohmann::json& entry) {
    NewCrystal crystal;
    try {
        crystal = read_saved_crystal(file);
    } catch (const std::exception& e) {
        err << file << ": " << e.what() << "\n";
        return 1;
    }
    const HCrystal shown = crystal.crystal_snapshot();
    const Cell& cell = shown->cell();
    const Spacegroup& sg = cell.spacegroup();
    std::vector<std::string> criteria;
    for (const HContactCriterion& c : crystal.contact_criteria()) criteria.push_back(c->class_name());
    const HBondNetwork network = summarise_hbond_network(crystal);
    std::vector<Clash> found;
    if (clashes) found = find_clashes(HCrystalMaker(new CrystalMaker(*crystal.crystal_maker())));
    if (json) {
        nlohmann::json s;
        s["cell"] = cell_json(cell);
        s["spacegroup"] = spacegroup_json(sg);
        s["molecules"] = shown->nmolecules();
        s["atoms"] = natoms(*shown);
        s["packing"] = crystal.packing();
        s["slicing"] = crystal.slicing();
        s["criteria"] = criteria;
        s["contacts"] = crystal.contacts()->size();
        s["hbond_network"] = network_json(network);
        if (clashes) s["clashes"] = clashes_json(found);
        entry["saved_crystal"] = s;
        return 0;
    }
    out << "saved crystal: " << file << "\n";
    out << "cell: a = " << decimal_text(cell.a(), 4) << ", b = " << decimal_text(cell.b(), 4)
        << ", c = " << decimal_text(cell.c(), 4) << ", alpha = " << decimal_text(cell.alpha().degrees(), 3)
        << ", beta = " << decimal_text(cell.beta().degrees(), 3)
        << ", gamma = " << decimal_text(cell.gamma().degrees(), 3) << ", volume = " << decimal_text(cell.volume(), 1)
        << " A^3\n";
    out << "spacegroup: " << sg.name() << " (number " << sg.number() << "), " << sg.noperators() << " operators\n";
    out << "picture: " << shown->nmolecules() << " molecules, " << natoms(*shown)
        << " atoms, packing: " << (crystal.packing() ? "yes" : "no")
        << ", slicing: " << (crystal.slicing() ? "yes" : "no") << "\n";
    out << "criteria:";
    for (const std::string& c : criteria) out << " " << c;
    out << (criteria.empty() ? " none\n" : "\n");
    out << "contacts: " << crystal.contacts()->size() << "\n";
    network_text(out, network);
    if (clashes) clashes_text(out, found);
    return 0;
}

}  // namespace app
}  // namespace molcryst

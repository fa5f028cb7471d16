// Disorder of deposited structures: the assemblies and groups read from real
// files, no bond between alternatives, the block in a chosen state, the
// import that folds each molecule's alternatives into a selector, and the
// warnings on occupancies.
#include "molcryst/io/CifDisorder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <string>
#include <vector>

#include "molcryst/io/CifImport.h"
#include "io/CifFiles.h"
#include "molcryst/io/CifReader.h"
#include "molcryst/io/StructureReport.h"
#include "molcryst/molecule/Site.h"

using namespace molcryst;
using molcryst::testing::cif_files;

namespace {

const std::string& directory = molcryst::testing::cif_directory;


/// "A: 1 0.767 3, 2 0.233 3; ..." : per assembly its groups with occupancy and number of sites.
std::string summary(const CifDisorder& d) {
    std::string text;
    for (const CifDisorder::Assembly& a : d.assemblies()) {
        text += (text.empty() ? "" : "; ") + a.code + ":";
        for (std::size_t g = 0; g < a.groups.size(); ++g) {
            std::ostringstream group;
            group << (g ? ", " : " ") << a.groups[g].group << " " << a.groups[g].occupancy << " " << a.groups[g].sites.size();
            text += group.str();
        }
    }
    return text;
}

bool alternatives(const CifAtomSite& a, const CifAtomSite& b) {
    return a.disorder_group != 0 && b.disorder_group != 0 && a.disorder_group != b.disorder_group &&
           a.disorder_assembly == b.disorder_assembly;
}

double distance(const HAtom& a, const HAtom& b) { return (a->site()->orth() - b->site()->orth()).length(); }

HAtom labelled(const Molecule& m, const std::string& label) {
    for (int i = 0; i < m.natoms(); ++i)
        if (m.atom(i)->label() == label) return m.atom(i);
    return HAtom();
}

std::string structure(const std::string& sites) {
    return "data_t\n_cell_length_a 10\n_cell_length_b 10\n_cell_length_c 10\n_cell_angle_alpha 90\n"
           "_cell_angle_beta 90\n_cell_angle_gamma 90\n_symmetry_space_group_name_H-M 'P 1'\n"
           "loop_\n_atom_site_label\n_atom_site_type_symbol\n_atom_site_fract_x\n_atom_site_fract_y\n"
           "_atom_site_fract_z\n_atom_site_occupancy\n_atom_site_disorder_assembly\n_atom_site_disorder_group\n" +
           sites;
}

}  // namespace

TEST(CifDisorder, RealStructuresKeepTheirAlternativesApartInEveryState) {
    int disordered = 0;
    for (const std::string& name : cif_files()) {
        const CifDocument doc = CifReader::read_file(directory + "/" + name);
        for (const CifBlock& block : doc.blocks) {
            const CifDisorder disorder(block);
            const StructureReport report(block);
            for (const StructureReport::BondRow& bond : report.bonds())
                EXPECT_FALSE(alternatives(block.atoms[bond.atom1], block.atoms[bond.atom2]))
                    << name << ": " << block.atoms[bond.atom1].label << "-" << block.atoms[bond.atom2].label;
            long long product = 1;
            for (const CifDisorder::Assembly& a : disorder.assemblies()) product *= static_cast<long long>(a.groups.size());
            EXPECT_EQ(disorder.nstates(), product) << name;
            if (disorder.assemblies().empty()) continue;
            ++disordered;
            // The last state holds of each assembly only its chosen group.
            const long long last = disorder.nstates() - 1;
            const std::vector<int> chosen = disorder.state(last);
            const CifBlock stated = disorder.in_state(last);
            std::size_t dropped = 0;
            for (std::size_t a = 0; a < chosen.size(); ++a)
                for (std::size_t g = 0; g < disorder.assemblies()[a].groups.size(); ++g)
                    if (static_cast<int>(g) != chosen[a]) dropped += disorder.assemblies()[a].groups[g].sites.size();
            EXPECT_EQ(stated.atoms.size(), block.atoms.size() - dropped) << name;
            EXPECT_TRUE(CifDisorder(stated).nstates() == 1) << name;
            EXPECT_NO_THROW(StructureReport{stated}) << name;
            EXPECT_THROW(disorder.in_state(last + 1), std::out_of_range);
        }
    }
    EXPECT_EQ(disordered, 5);

    const CifDocument phosphate = CifReader::read_file(directory + "/cod-2224635-melaminium-phosphate-hydrate.cif");
    EXPECT_EQ(summary(CifDisorder(phosphate.blocks[0])), "A: 1 0.767 3, 2 0.233 3");
    const CifDocument methyl = CifReader::read_file(directory + "/cod-2222274-benzimidazolyl-methoxyphenol.cif");
    EXPECT_EQ(summary(CifDisorder(methyl.blocks[0])), "A: 1 0.587 5, 2 0.413 5");
    // Equal occupancies: group 1 first. The iridium salt: six assemblies, CF3 rotors by the group pair.
    const CifDocument mof = CifReader::read_file(directory + "/cod-4343118-ba-dhtp-mof.cif");
    const CifDisorder equal(mof.blocks[0]);
    EXPECT_EQ(summary(equal), "A: 1 0.5 15, 2 0.5 15");
    EXPECT_EQ(equal.state(0), std::vector<int>{0});
    const CifDocument iridium = CifReader::read_file(directory + "/cod-7106028-ir-nhc-barf-zprime2.cif");
    const CifDisorder many(iridium.blocks[0]);
    EXPECT_EQ(many.nstates(), 2LL * 2 * 6 * 6 * 6 * 4);
    // Assembly '6' (0.46, 0.54) and '1' (0.602, 0.398): state 1 turns the first assembly only.
    EXPECT_EQ(many.state(0).at(0), 1);
    EXPECT_EQ(many.state(0).at(1), 0);
    EXPECT_EQ(many.state(1).at(0), 0);
    EXPECT_EQ(many.state(1).at(1), 0);
    EXPECT_EQ(many.state(2).at(1), 1);
}

TEST(CifImport, FoldsEachMoleculesAlternativesIntoASelector) {
    std::vector<std::string> skipped;
    const std::vector<ImportedStructure> imported =
        CifImport::read_file(directory + "/cod-2224635-melaminium-phosphate-hydrate.cif", &skipped);
    ASSERT_EQ(imported.size(), 1u);
    const ImportedStructure& s = imported[0];
    const vector_HMolecule& molecules = *s.crystal_maker->molecules3d();
    ASSERT_EQ(s.disorder.size(), molecules.size());
    EXPECT_TRUE(s.warnings.empty());
    int with_disorder = 0;
    for (std::size_t m = 0; m < molecules.size(); ++m) {
        if (s.disorder[m].unhand() == nullptr) continue;
        ++with_disorder;
        const Molecule& phosphate = *molecules[m];
        DisorderSelector& selector = *s.disorder[m];
        EXPECT_EQ(selector.molecule(), molecules[m]);
        EXPECT_EQ(selector.nsteps(), 2);
        // The molecule keeps group 1's atoms; group 2 is a mapping of them.
        EXPECT_EQ(labelled(phosphate, "O2B").unhand(), nullptr);
        const HAtom p = labelled(phosphate, "P1"), o = labelled(phosphate, "O2A");
        ASSERT_NE(o.unhand(), nullptr);
        const HSite deposited = o->site();
        selector.set(1);
        EXPECT_EQ(o->label(), "O2B");
        EXPECT_NEAR(distance(p, o), 1.4885, 1e-4);  // as the report finds P1-O2B
        EXPECT_NEAR(o->site()->occupancy().value(), 0.233, 1e-12);
        selector.start();  // the most probable state is the one deposited first
        EXPECT_EQ(o->label(), "O2A");
        EXPECT_EQ(o->site(), deposited);
        EXPECT_TRUE(selector.molecule()->has_atom(o));
    }
    EXPECT_EQ(with_disorder, 1);

    // Assemblies that cannot become selectors stay plain atoms, with the reason.
    const std::vector<ImportedStructure> iridium =
        CifImport::read_file(directory + "/cod-7106028-ir-nhc-barf-zprime2.cif", &skipped);
    ASSERT_FALSE(iridium[0].warnings.empty());
    EXPECT_NE(iridium[0].warnings[0].find(":150: disorder assembly '2' of molecule 4 is kept as plain atoms: "
                                          "DisorderSelector::validate_mapping the sum of site occupation factors is greater than 1.0"),
              std::string::npos)
        << iridium[0].warnings[0];
    const std::vector<ImportedStructure> zinc =
        CifImport::read_file(directory + "/cod-2238212-zn-dmit-hydroxyethylammonium.cif", &skipped);
    ASSERT_FALSE(zinc[0].warnings.empty());
    EXPECT_NE(zinc[0].warnings[0].find("disorder assembly 'A' of molecule 3 is kept as plain atoms: its groups do not pair atom for atom"),
              std::string::npos)
        << zinc[0].warnings[0];
    EXPECT_TRUE(skipped.empty());
}

TEST(CifDisorder, OccupanciesOutOfRangeOrOverfullAreToldAndTheStructureKept) {
    // A methanol CO over two orientations of its O, and a site of occupancy 1.5.
    const std::string text = structure(
        "C1 C 0.1 0.1 0.1 1 . .\n"
        "O1A O 0.24 0.1 0.1 0.7 . 1\n"
        "O1B O 0.1 0.24 0.1 0.6 . 2\n"
        "Cl1 Cl 0.6 0.6 0.6 1.5 . .\n");
    const CifDocument doc = CifReader::read_text(text, "t.cif");
    ASSERT_EQ(doc.blocks.size(), 1u);
    const CifBlock& block = doc.blocks[0];
    EXPECT_EQ(block.warnings, (std::vector<std::string>{"t.cif:9: atom 'Cl1': occupancy 1.5 is out of range (0 to 1)",
                                                         "t.cif:9: disorder assembly '.': the occupancies of its 2 groups sum to 1.3, over 1"}));
    EXPECT_DOUBLE_EQ(block.atoms[3].occupancy.value(), 1.5);
    const CifDisorder disorder(block);
    EXPECT_EQ(summary(disorder), ": 1 0.7 1, 2 0.6 1");
    const StructureReport report(block);
    ASSERT_EQ(report.bonds().size(), 2u);  // C1-O1A and C1-O1B, never O1A-O1B
    EXPECT_EQ(disorder.in_state(1).atoms.at(1).label, "O1B");

    std::vector<std::string> skipped;
    const std::vector<ImportedStructure> imported = CifImport::read_text(text, "t.cif", &skipped);
    ASSERT_EQ(imported.size(), 1u);
    EXPECT_EQ(imported[0].warnings,
              std::vector<std::string>{"t.cif:9: disorder assembly '.' of molecule 1 is kept as plain atoms: "
                                       "DisorderSelector::validate_mapping the sum of site occupation factors is greater than 1.0"});
    EXPECT_EQ(imported[0].disorder.at(0).unhand(), nullptr);

    // At 0.7 and 0.3 the same methanol steps: the O takes the other site and label.
    std::string fine = text;
    fine.replace(fine.find("0.1 0.24 0.1 0.6"), 16, "0.1 0.24 0.1 0.3");
    const std::vector<ImportedStructure> stepped = CifImport::read_text(fine, "t.cif", &skipped);
    const HDisorderSelector& selector = stepped[0].disorder.at(0);
    ASSERT_NE(selector.unhand(), nullptr);
    const Molecule& methanol = *selector->molecule();
    EXPECT_EQ(methanol.natoms(), 2);
    selector->set(1);
    EXPECT_EQ(methanol.atom(1)->label(), "O1B");
    EXPECT_NEAR(methanol.atom(1)->site()->frac()[1], 0.24, 1e-12);
    EXPECT_TRUE(skipped.empty());
}

TEST(CifImport, ASolventOverTwoSitesBecomesOneMoleculeWithTwoStates) {
    // An ordered C-O pair, and a water bonded to nothing at two places 0.6 A apart.
    const std::string text = structure(
        "C1 C 0.10 0.10 0.10 1 . .\n"
        "O1 O 0.24 0.10 0.10 1 . .\n"
        "O9A O 0.60 0.60 0.60 0.6 S 1\n"
        "H91A H 0.69 0.60 0.60 0.6 S 1\n"
        "H92A H 0.58 0.69 0.60 0.6 S 1\n"
        "O9B O 0.60 0.60 0.66 0.4 S 2\n"
        "H91B H 0.69 0.60 0.66 0.4 S 2\n"
        "H92B H 0.58 0.51 0.66 0.4 S 2\n");
    std::vector<std::string> skipped;
    const std::vector<ImportedStructure> imported = CifImport::read_text(text, "t.cif", &skipped);
    ASSERT_EQ(imported.size(), 1u);
    const vector_HMolecule& molecules = *imported[0].crystal_maker->molecules3d();
    ASSERT_EQ(molecules.size(), 2u);  // the second water is the first one's alternative
    ASSERT_EQ(imported[0].disorder.size(), 2u);
    EXPECT_EQ(imported[0].disorder[0].unhand(), nullptr);
    const HDisorderSelector& water = imported[0].disorder[1];
    ASSERT_NE(water.unhand(), nullptr);
    EXPECT_EQ(molecules[1]->natoms(), 3);
    EXPECT_EQ(water->nsteps(), 2);
    water->set(1);
    const HAtom o = labelled(*molecules[1], "O9B");
    ASSERT_NE(o.unhand(), nullptr);
    EXPECT_NEAR(o->site()->frac()[2], 0.66, 1e-12);
    EXPECT_NE(labelled(*molecules[1], "H92B").unhand(), nullptr);
    water->start();
    EXPECT_NEAR(o->site()->frac()[2], 0.60, 1e-12);
    EXPECT_TRUE(imported[0].warnings.empty());
    // The report keeps the two waters apart: no bond between the alternatives.
    const StructureReport report(CifReader::read_text(text, "t.cif").blocks[0]);
    EXPECT_EQ(report.molecules().size(), 3u);
    EXPECT_EQ(report.bonds().size(), 5u);
}

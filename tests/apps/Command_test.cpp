// The molcryst command as a user runs it: exit codes, messages, and the
// names of its JSON document.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "apps/CommandRun.h"

namespace {

using molcryst::testing::Outcome;
using molcryst::testing::run;

const std::string cifs = MOLCRYST_CIF_DIR;
const std::string melaminium = cifs + "/cod-2224635-melaminium-phosphate-hydrate.cif";

}  // namespace

TEST(Command, UsageHelpAndVersion) {
    Outcome version = run("--version");
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out.substr(0, 9), "molcryst ");
    Outcome help = run("report --help");
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("--json"), std::string::npos);
    EXPECT_EQ(run("").status, 2);               // no subcommand
    EXPECT_EQ(run("report").status, 2);         // no file
    EXPECT_EQ(run("report --frobnicate " + melaminium).status, 2);
    EXPECT_EQ(run("transmogrify x.cif").status, 2);
}

TEST(Command, ReportsAStructureAsText) {
    Outcome r = run("report " + melaminium);
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("data_2224635\n"), std::string::npos);
    EXPECT_NE(r.out.find("volume = 810.4 A^3"), std::string::npos);
    EXPECT_NE(r.out.find("spacegroup: P -1 (number 2, triclinic), 2 operators from the operators"), std::string::npos);
    EXPECT_NE(r.out.find("hydrogen bonds: "), std::string::npos);
    // Phosphate disorder: the alternative sites of one assembly never bond.
    EXPECT_EQ(r.err, "");
}

TEST(Command, JsonNamesStayAsDocumented) {
    Outcome r = run("report --json " + melaminium);
    ASSERT_EQ(r.status, 0) << r.err;
    const nlohmann::json doc = nlohmann::json::parse(r.out);
    const nlohmann::json& block = doc.at("files").at(0).at("blocks").at(0);
    EXPECT_NEAR(block.at("cell").at("volume").get<double>(), 810.4, 0.1);
    EXPECT_EQ(block.at("spacegroup").at("operators").get<int>(), 2);
    for (const char* key : {"formula", "atoms", "whole_atoms", "special_position", "polymeric"})
        EXPECT_TRUE(block.at("molecules").at(0).contains(key)) << key;
    for (const char* key : {"atom1", "atom2", "symmetry", "distance"})
        EXPECT_TRUE(block.at("bonds").at(0).contains(key)) << key;
    ASSERT_FALSE(block.at("hbonds").empty());
    for (const char* key : {"donor", "hydrogen", "acceptor", "symmetry", "d_a", "h_a", "angle"})
        EXPECT_TRUE(block.at("hbonds").at(0).contains(key)) << key;
}

TEST(Command, AFileThatCannotBeReadIsOneLineAndExitCodeOne) {
    const std::string bad = ::testing::TempDir() + "molcryst_bad.cif";
    std::ofstream(bad) << "data_x\n_cell_length_a 5\n_cell_length_b -6\nloop_\n_atom_site_label\n_atom_site_fract_x\n"
                          "_atom_site_fract_y\n_atom_site_fract_z\nO1 0 0 0\n";
    Outcome r = run("report " + bad + " " + melaminium + " /nonexistent/file.cif");
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.out.find("data_2224635"), std::string::npos);  // the good file is still reported
    EXPECT_EQ(r.err, bad + ":3: _cell_length_b is out of range: -6\n"
                     "/nonexistent/file.cif: cannot open the file: No such file or directory\n");
}

TEST(Command, ListsDisorderAssembliesAndReportsAChosenState) {
    Outcome text = run("report " + melaminium);
    ASSERT_EQ(text.status, 0) << text.err;
    EXPECT_NE(text.out.find("disorder assemblies: 1, states: 2\n"
                            "  assembly  group  occupancy  sites\n"
                            "  A         1      0.767      O2A O3A O4A\n"
                            "  A         2      0.233      O2B O3B O4B\n"),
              std::string::npos)
        << text.out;

    Outcome stated = run("report --json --disorder-state 1 " + melaminium);
    ASSERT_EQ(stated.status, 0) << stated.err;
    const nlohmann::json block = nlohmann::json::parse(stated.out).at("files").at(0).at("blocks").at(0);
    const nlohmann::json& disorder = block.at("disorder");
    EXPECT_EQ(disorder.at("states").get<int>(), 2);
    EXPECT_EQ(disorder.at("state").get<int>(), 1);
    EXPECT_EQ(disorder.at("state_groups"), nlohmann::json::array({2}));
    const nlohmann::json& group = disorder.at("assemblies").at(0).at("groups").at(1);
    EXPECT_EQ(disorder.at("assemblies").at(0).at("assembly").get<std::string>(), "A");
    EXPECT_EQ(group.at("group").get<int>(), 2);
    EXPECT_DOUBLE_EQ(group.at("occupancy").get<double>(), 0.233);
    EXPECT_EQ(group.at("sites"), nlohmann::json::array({"O2B", "O3B", "O4B"}));
    // In state 1 the phosphate holds the B oxygens only.
    bool o2b = false;
    for (const nlohmann::json& bond : block.at("bonds")) {
        EXPECT_NE(bond.at("atom2").get<std::string>(), "O2A");
        o2b = o2b || bond.at("atom2").get<std::string>() == "O2B";
    }
    EXPECT_TRUE(o2b);
    EXPECT_TRUE(nlohmann::json::parse(run("report --json " + melaminium).out)
                    .at("files").at(0).at("blocks").at(0).at("disorder").at("state").is_null());

    Outcome beyond = run("report --disorder-state 2 " + melaminium);
    EXPECT_EQ(beyond.status, 0);
    EXPECT_EQ(beyond.err, "warning: " + melaminium + ":15: no disorder state 2: the structure has 2 (block skipped)\n");
    EXPECT_EQ(run("report --disorder-state -1 " + melaminium).status, 2);
    EXPECT_EQ(run("report --disorder-state x " + melaminium).status, 2);
}

TEST(Command, AddsMissingHydrogensAndListsEachMoleculesSurroundings) {
    // Acetic acid without its hydrogens, as a dimer about the centre of P-1.
    const std::string bare = ::testing::TempDir() + "molcryst_acid.cif";
    std::ofstream(bare) << "data_acid\n_cell_length_a 10\n_cell_length_b 10\n_cell_length_c 10\n"
                           "_cell_angle_alpha 90\n_cell_angle_beta 90\n_cell_angle_gamma 90\n"
                           "loop_\n_symmetry_equiv_pos_as_xyz\n'x, y, z'\n'-x, -y, -z'\n"
                           "loop_\n_atom_site_label\n_atom_site_type_symbol\n_atom_site_fract_x\n"
                           "_atom_site_fract_y\n_atom_site_fract_z\n_atom_site_U_iso_or_equiv\n"
                           "C1 C 0.190 0.000 0.000 0.03\nO1 O 0.125 0.107 0.000 0.04\n"
                           "O2 O 0.120 -0.110 0.000 0.04\nC2 C 0.340 0.000 0.000 0.05\n";
    Outcome r = run("report --json --add-hydrogens --surroundings " + bare);
    ASSERT_EQ(r.status, 0) << r.err;
    const nlohmann::json block = nlohmann::json::parse(r.out).at("files").at(0).at("blocks").at(0);
    const nlohmann::json& added = block.at("added_hydrogens");
    ASSERT_EQ(added.size(), 4u);
    EXPECT_EQ(added.at(0).at("label"), "H2");  // the hydroxyl, named after O2
    EXPECT_EQ(added.at(0).at("parent"), "O2");
    for (int k = 1; k < 4; ++k) EXPECT_EQ(added.at(k).at("parent"), "C2");
    EXPECT_EQ(added.at(3).at("label"), "H2C");
    for (const char* key : {"x", "y", "z"}) EXPECT_TRUE(added.at(0).contains(key)) << key;
    EXPECT_EQ(block.at("molecules").at(0).at("formula"), "C2 H4 O2");
    // The partner of the dimer is the molecule's image by the inversion.
    const nlohmann::json& around = block.at("molecules").at(0).at("surroundings");
    bool dimer = false;
    for (const nlohmann::json& n : around) {
        for (const char* key : {"molecule", "symmetry", "contacts", "hbonds", "closest"})
            EXPECT_TRUE(n.contains(key)) << key;
        if (n.at("symmetry") == "2") {
            dimer = true;
            EXPECT_EQ(n.at("molecule"), 0);
            EXPECT_GT(n.at("contacts").get<int>(), 0);
            EXPECT_LT(n.at("closest").at("distance").get<double>(), 2.7);
        }
    }
    EXPECT_TRUE(dimer) << around.dump();
    // Without the options the fields are absent; the text names both parts.
    const nlohmann::json plain = nlohmann::json::parse(run("report --json " + bare).out);
    EXPECT_FALSE(plain.at("files").at(0).at("blocks").at(0).contains("added_hydrogens"));
    EXPECT_FALSE(plain.at("files").at(0).at("blocks").at(0).at("molecules").at(0).contains("surroundings"));
    Outcome text = run("report --add-hydrogens --surroundings " + bare);
    EXPECT_NE(text.out.find("added hydrogens: 4\n"), std::string::npos) << text.out;
    EXPECT_NE(text.out.find("surroundings of molecule 1: "), std::string::npos) << text.out;
}

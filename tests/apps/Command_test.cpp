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

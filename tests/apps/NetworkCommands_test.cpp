// report --expand, pack and convert on the shared COD structures.
#include <gtest/gtest.h>

#include <cstdio>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "apps/CommandRun.h"

namespace {

using molcryst::testing::Outcome;
using molcryst::testing::run;

const std::string cifs = std::string(MOLCRYST_CIF_DIR) + "/";

TEST(NetworkCommands, ReportExpandTellsHowFarTheHydrogenBondsReach) {
    // A hydrate whose hydrogen bonds join every molecule into a framework.
    Outcome r = run("report --expand " + cifs + "cod-4504659-5-fluorocytosine-hydrate.cif");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("hydrogen-bonded network: 28 molecules, 120 contacts, 52 left open\n"
                         "  polymeric in 3 dimensions along [0 1 0] [1 0 0] [1 0 1]\n"),
              std::string::npos)
        << r.out;

    // A chain along a, a finite cluster of ions and water, and no hydrogen bonds at all.
    Outcome j = run("report --expand --json " + cifs + "cod-2007300-acetamidonitrobenzyl-acetate.cif " + cifs +
                    "cod-8102326-cr-phen-aqua-chloride.cif " + cifs + "cod-2007008-androstene-diester-zprime2.cif");
    ASSERT_EQ(j.status, 0) << j.err;
    const nlohmann::json doc = nlohmann::json::parse(j.out);
    const nlohmann::json chain = doc.at("files").at(0).at("blocks").at(0).at("hbond_network");
    EXPECT_EQ(chain.at("molecules"), 1);
    EXPECT_EQ(chain.at("contacts"), 2);
    EXPECT_EQ(chain.at("open_contacts"), 2);
    EXPECT_EQ(chain.at("dimensions"), 1);
    EXPECT_EQ(chain.at("polymeric_directions"), nlohmann::json::parse("[[1, 0, 0]]"));
    const nlohmann::json cluster = doc.at("files").at(1).at("blocks").at(0).at("hbond_network");
    EXPECT_EQ(cluster.at("molecules"), 10);
    EXPECT_EQ(cluster.at("open_contacts"), 0);
    EXPECT_EQ(cluster.at("dimensions"), 0);
    EXPECT_TRUE(cluster.at("polymeric_directions").empty());
    const nlohmann::json none = doc.at("files").at(2).at("blocks").at(0).at("hbond_network");
    EXPECT_EQ(none.at("molecules"), 2);
    EXPECT_EQ(none.at("contacts"), 0);
    // Without --expand the report has no network.
    Outcome plain = run("report --json " + cifs + "cod-2007300-acetamidonitrobenzyl-acetate.cif");
    EXPECT_FALSE(nlohmann::json::parse(plain.out).at("files").at(0).at("blocks").at(0).contains("hbond_network"));
}

TEST(NetworkCommands, PackFillsABoxOfCells) {
    // P21/c with one molecule in the asymmetric unit: 4 per cell, 108 in 3 x 3 x 3.
    const std::string file = cifs + "cod-2015798-nitrobenzyl-thiazolidinone.cif";
    Outcome r = run("pack " + file + " --box 3,3,3");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out.substr(0, 76), "data_2015798: box 3 x 3 x 3 cells: 108 molecules, 4104 atoms, 4320 bonds\n  #");
    Outcome j = run("pack --json " + file + " --box 1,1,1");
    ASSERT_EQ(j.status, 0) << j.err;
    const nlohmann::json block = nlohmann::json::parse(j.out).at("blocks").at(0);
    EXPECT_EQ(block.at("molecules"), 4);
    EXPECT_EQ(block.at("centroids").size(), 4u);
    for (const auto& c : block.at("centroids"))
        for (int k = 0; k < 3; ++k) {
            EXPECT_GE(c.at(k).get<double>(), 0.0);
            EXPECT_LE(c.at(k).get<double>(), 1.0);
        }
    EXPECT_EQ(run("pack " + file).status, 2);                   // the box is required
    EXPECT_EQ(run("pack " + file + " --box 1,0,1").status, 2);  // and positive
    EXPECT_EQ(run("pack " + file + " --box 1,1").status, 2);
    Outcome missing = run("pack /nonexistent/file.cif --box 1,1,1");
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.err, "/nonexistent/file.cif: cannot open the file: No such file or directory\n");
}

TEST(NetworkCommands, ConvertWritesMol2ThatOpenBabelReads) {
    const std::string mol2 = ::testing::TempDir() + "molcryst_convert.mol2";
    std::remove(mol2.c_str());
    Outcome r = run("convert " + cifs + "cod-2015798-nitrobenzyl-thiazolidinone.cif " + mol2 + " --box 1,1,1");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "data_2015798: 4 molecules, 152 atoms written to " + mol2 + "\n");
    const std::string text = molcryst::testing::slurp(mol2);
    EXPECT_EQ(text.substr(0, 46), "@<TRIPOS>MOLECULE\n2015798\n152 160 4 0 0\nSMALL\n");
    EXPECT_NE(text.find("      1 S1           7.9924     2.4118     3.6263 S.3       1 MOL1      0.0000\n"),
              std::string::npos);
    EXPECT_NE(text.find("@<TRIPOS>CRYSIN\n   14.2230    7.9862   14.1156   90.0000   93.9080   90.0000    14     1\n"),
              std::string::npos);
    EXPECT_EQ(run("convert " + cifs + "cod-2015798-nitrobenzyl-thiazolidinone.cif /nonexistent/dir/x.mol2").status, 1);
    // Bond orders come from the geometry: the two benzene rings of each
    // molecule aromatic, the four N-O bonds of its two nitro groups and its C=O
    // double.
    int aromatic = 0, doubles = 0;
    std::istringstream bonds(text.substr(text.find("@<TRIPOS>BOND")));
    for (std::string line; std::getline(bonds, line);) {
        aromatic += line.size() > 3 && line.compare(line.size() - 3, 3, " ar") == 0 ? 1 : 0;
        doubles += line.size() > 2 && line.compare(line.size() - 2, 2, " 2") == 0 ? 1 : 0;
    }
    EXPECT_EQ(aromatic, 4 * 12);
    EXPECT_EQ(doubles, 4 * 5);

    if (std::system("command -v obabel >/dev/null 2>&1") != 0) {
        GTEST_SKIP() << "obabel is not installed: the mol2 file was not checked with Open Babel";
    }
    Outcome ob = molcryst::testing::run_program("obabel", "-imol2 " + mol2 + " -oxyz");
    ASSERT_EQ(ob.status, 0) << ob.err;
    EXPECT_EQ(ob.out.substr(0, 4), "152\n");
    EXPECT_EQ(ob.err, "1 molecule converted\n");
}

}  // namespace

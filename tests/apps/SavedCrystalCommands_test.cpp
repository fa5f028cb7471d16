// save, report on a saved crystal, and report --clashes, on the shared COD structures.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include "apps/CommandRun.h"

namespace {

using molcryst::testing::Outcome;
using molcryst::testing::run;
using molcryst::testing::slurp;

const std::string cifs = std::string(MOLCRYST_CIF_DIR) + "/";

TEST(SavedCrystalCommands, AnExpandedNetworkSavedReadsBackAsItWasGrown) {
    const std::string cif = cifs + "cod-4504659-5-fluorocytosine-hydrate.cif";
    const std::string saved = ::testing::TempDir() + "fluorocytosine.mcr";
    Outcome s = run("save " + cif + " " + saved + " --expand");
    ASSERT_EQ(s.status, 0) << s.err;
    EXPECT_EQ(s.out.rfind("saved data_4504659 to " + saved + ": ", 0), 0u) << s.out;

    // The network as report --expand grows it from the CIF file.
    Outcome grown = run("report --expand --json " + cif);
    ASSERT_EQ(grown.status, 0) << grown.err;
    const nlohmann::json network =
        nlohmann::json::parse(grown.out).at("files").at(0).at("blocks").at(0).at("hbond_network");
    Outcome back = run("report --json " + saved);
    ASSERT_EQ(back.status, 0) << back.err;
    const nlohmann::json entry = nlohmann::json::parse(back.out).at("files").at(0);
    EXPECT_EQ(entry.at("file"), saved);
    const nlohmann::json crystal = entry.at("saved_crystal");
    EXPECT_EQ(crystal.at("hbond_network"), network);
    EXPECT_EQ(crystal.at("criteria"), nlohmann::json::parse("[\"HBondCriterion\"]"));
    EXPECT_EQ(crystal.at("contacts"), network.at("contacts"));
    EXPECT_EQ(crystal.at("packing"), false);
    EXPECT_EQ(crystal.at("spacegroup").at("operators"), 4);
    Outcome text = run("report " + saved);
    ASSERT_EQ(text.status, 0) << text.err;
    EXPECT_NE(text.out.find("hydrogen-bonded network: 28 molecules, 120 contacts, 52 left open\n"), std::string::npos)
        << text.out;

    // Unexpanded: the asymmetric unit with its hanging hydrogen-bond partners.
    Outcome plain = run("save " + cif + " " + saved);
    ASSERT_EQ(plain.status, 0) << plain.err;
    const nlohmann::json unexpanded =
        nlohmann::json::parse(run("report --json " + saved).out).at("files").at(0).at("saved_crystal");
    EXPECT_LT(unexpanded.at("hbond_network").at("molecules"), network.at("molecules"));

    // A truncated file, and a CIF file named .mcr: one line, exit code 1, and
    // the other files still reported.
    const std::string bytes = slurp(saved);
    const std::string broken = ::testing::TempDir() + "broken.mcr";
    std::ofstream(broken, std::ios::binary) << bytes.substr(0, bytes.size() / 2);
    const std::string wrong = ::testing::TempDir() + "wrong.mcr";
    std::ofstream(wrong) << slurp(cif);
    Outcome bad = run("report " + broken + " " + wrong + " " + saved);
    EXPECT_EQ(bad.status, 1);
    EXPECT_EQ(bad.err.rfind(broken + ": ", 0), 0u) << bad.err;
    EXPECT_NE(bad.err.find("\n" + wrong + ": NewCrystalMemento::read - format version mismatch\n"), std::string::npos)
        << bad.err;
    EXPECT_NE(bad.out.find("saved crystal: " + saved), std::string::npos);
    EXPECT_EQ(run("save " + cif + " /nonexistent/dir/x.mcr").status, 1);
    std::remove(saved.c_str());
    std::remove(broken.c_str());
    std::remove(wrong.c_str());
}

TEST(SavedCrystalCommands, ClashesAreCloseContactsThatNoHydrogenBondExplains) {
    // In this hydrate two waters donate to each other, O51-H51...O31 and
    // O31-H32...O51: their hydrogens meet 1.31 A apart, which no hydrogen
    // bond explains. Its N-H...O and O-H...O bonds are not listed.
    Outcome found = run("report --clashes --json " + cifs + "cod-4504659-5-fluorocytosine-hydrate.cif");
    ASSERT_EQ(found.status, 0) << found.err;
    const nlohmann::json clashes = nlohmann::json::parse(found.out).at("files").at(0).at("blocks").at(0).at("clashes");
    ASSERT_FALSE(clashes.empty());
    EXPECT_EQ(clashes.at(0),
              nlohmann::json::parse(R"({"atom1": "H51", "atom2": "H32", "distance": 1.3083, "overlap": 1.0917})"));
    for (const nlohmann::json& c : clashes) {
        EXPECT_GE(c.at("overlap").get<double>(), 0.4);
        EXPECT_NE(c.at("atom1").get<std::string>().substr(0, 1) + c.at("atom2").get<std::string>().substr(0, 1), "OO");
    }
    Outcome text = run("report --clashes " + cifs + "cod-2015798-nitrobenzyl-thiazolidinone.cif");
    ASSERT_EQ(text.status, 0) << text.err;
    EXPECT_NE(text.out.find("clashes: "), std::string::npos);
    EXPECT_FALSE(nlohmann::json::parse(run("report --json " + cifs + "cod-2015798-nitrobenzyl-thiazolidinone.cif").out)
                     .at("files")
                     .at(0)
                     .at("blocks")
                     .at(0)
                     .contains("clashes"));
}

}  // namespace

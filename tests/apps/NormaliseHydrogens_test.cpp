// report --normalise-hydrogens on a real hydrate: the moved hydrogens at the
// standard distances, the hydrogen bonds kept with their donor-acceptor
// distances and shorter H...A, and the text table.
#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <string>

#include "apps/CommandRun.h"

using molcryst::testing::Outcome;
using molcryst::testing::run;

TEST(ReportCommand, NormaliseHydrogensShortensHydrogenBondsFromTheHydrogen) {
    const std::string file = std::string(MOLCRYST_CIF_DIR) + "/cod-4504659-5-fluorocytosine-hydrate.cif";
    const Outcome moved = run("report --json --normalise-hydrogens " + file);
    const Outcome plain = run("report --json " + file);
    ASSERT_EQ(moved.status, 0) << moved.err;
    ASSERT_EQ(plain.status, 0) << plain.err;
    const nlohmann::json block = nlohmann::json::parse(moved.out).at("files").at(0).at("blocks").at(0);
    const nlohmann::json before = nlohmann::json::parse(plain.out).at("files").at(0).at("blocks").at(0);
    EXPECT_FALSE(before.contains("normalised_hydrogens"));
    const nlohmann::json& list = block.at("normalised_hydrogens");
    ASSERT_EQ(list.size(), 18u);  // every hydrogen of the file
    const std::map<char, double> standard{{'C', 1.083}, {'N', 1.009}, {'O', 0.983}};
    for (const nlohmann::json& h : list) {
        const std::string parent = h.at("parent");
        EXPECT_EQ(h.at("after").get<double>(), standard.at(parent[0])) << h.dump();
        EXPECT_LT(h.at("before").get<double>(), h.at("after").get<double>()) << h.dump();
    }
    // The same hydrogen bonds: D...A unchanged, H...A shorter.
    std::map<std::string, nlohmann::json> old;
    for (const nlohmann::json& b : before.at("hbonds"))
        old[b.at("donor").get<std::string>() + b.at("hydrogen").get<std::string>() + b.at("acceptor").get<std::string>() +
            b.at("symmetry").get<std::string>()] = b;
    int matched = 0;
    for (const nlohmann::json& b : block.at("hbonds")) {
        const auto found = old.find(b.at("donor").get<std::string>() + b.at("hydrogen").get<std::string>() +
                                    b.at("acceptor").get<std::string>() + b.at("symmetry").get<std::string>());
        if (found == old.end()) continue;
        ++matched;
        EXPECT_EQ(b.at("d_a"), found->second.at("d_a"));
        EXPECT_LT(b.at("h_a").get<double>(), found->second.at("h_a").get<double>()) << b.dump();
    }
    EXPECT_GE(matched, 10);
    const Outcome text = run("report --normalise-hydrogens " + file);
    EXPECT_NE(text.out.find("normalised hydrogens: 18\nlabel  parent  before  after\n"), std::string::npos) << text.out;
}

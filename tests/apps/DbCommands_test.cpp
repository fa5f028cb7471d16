// db add, list, show and duplicates on the shared COD structures.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include "apps/CommandRun.h"

namespace {

using molcryst::testing::Outcome;
using molcryst::testing::run;
using molcryst::testing::slurp;

const std::string cifs = std::string(MOLCRYST_CIF_DIR) + "/";

// A fresh database directory path (not yet made) under the test's temporary directory.
std::string fresh_database(const std::string& name) {
    const std::string path = ::testing::TempDir() + "molcryst_db_test/" + name;
    std::filesystem::remove_all(path);
    return path;
}

std::string all_cifs() {
    std::string files;
    for (const auto& f : std::filesystem::directory_iterator(cifs))
        if (f.path().extension() == ".cif") files += " " + f.path().string();
    return files;
}

TEST(DbCommands, AddListShowAndAPlantedDuplicate) {
    const std::string db = fresh_database("cod");
    // The melaminium phosphate again, its data block renamed: the same structure under another name.
    const std::string planted = ::testing::TempDir() + "planted-melaminium.cif";
    {
        std::ofstream out(planted);
        std::string text = slurp(cifs + "cod-2224635-melaminium-phosphate-hydrate.cif");
        const std::size_t at = text.find("\ndata_2224635");
        ASSERT_NE(at, std::string::npos);
        text.replace(at, 13, "\ndata_melaminium-again");
        out << text;
    }
    Outcome add = run("db add --json " + db + all_cifs() + " " + planted);
    ASSERT_EQ(add.status, 0) << add.err;
    const nlohmann::json added = nlohmann::json::parse(add.out);
    EXPECT_EQ(added.at("entries"), 26);
    EXPECT_EQ(added.at("added").size(), 26u);
    EXPECT_EQ(added.at("added").back().at("id"), "melaminium-again");
    const std::string index = slurp(db + "/cod.adi");
    EXPECT_EQ(std::count(index.begin(), index.end(), '\n'), 26);
    EXPECT_EQ(index.substr(index.size() - 17), "melaminium-again\n");
    EXPECT_TRUE(std::filesystem::exists(db + "/cod_2224635.ade"));

    // Adding a file again skips its blocks, one line each, and changes nothing.
    Outcome again = run("db add " + db + " " + cifs + "cod-4504659-5-fluorocytosine-hydrate.cif");
    EXPECT_EQ(again.status, 1);
    EXPECT_NE(again.err.find("data_4504659: " + db + " already holds an entry 4504659 (block skipped)"),
              std::string::npos)
        << again.err;
    EXPECT_EQ(slurp(db + "/cod.adi"), index);

    Outcome list = run("db list " + db);
    ASSERT_EQ(list.status, 0) << list.err;
    EXPECT_EQ(list.out, index);
    EXPECT_EQ(nlohmann::json::parse(run("db list --json " + db).out).at("entries").size(), 26u);

    Outcome show = run("db show " + db + " 4504659");
    ASSERT_EQ(show.status, 0) << show.err;
    EXPECT_EQ(show.out.rfind("entry: 4504659\ncell: a = ", 0), 0u) << show.out;
    EXPECT_NE(show.out.find("nindices: "), std::string::npos);
    const nlohmann::json shown = nlohmann::json::parse(run("db show --json " + db + " 2224635").out).at("entry");
    const nlohmann::json twin = nlohmann::json::parse(run("db show --json " + db + " melaminium-again").out).at("entry");
    EXPECT_EQ(shown.at("spacegroup").at("number"), 2);
    EXPECT_EQ(shown.at("topology_indices"), twin.at("topology_indices"));
    EXPECT_EQ(shown.at("formula"), twin.at("formula"));
    EXPECT_EQ(shown.at("formula"), "3(H2 O1),2(C3 H7 N6),H1 O4 P1");
    EXPECT_EQ(shown.at("sum_formula"), "C6 H21 N12 O7 P1");
    // Two melaminium cations, one hydrogen phosphate, three waters: one record each, with multipliers.
    EXPECT_EQ(shown.at("connectivities"),
              nlohmann::json::parse("[{\"atoms\": 16, \"bonds\": 16, \"multiplier\": 2.0},"
                                    " {\"atoms\": 6, \"bonds\": 5, \"multiplier\": 1.0},"
                                    " {\"atoms\": 3, \"bonds\": 2, \"multiplier\": 3.0}]"));

    // Identifiers are exact; the nearest one is named.
    Outcome missing = run("db show " + db + " MELAMINIUM-AGAIN");
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.err, db + ": no entry MELAMINIUM-AGAIN (but for case: melaminium-again)\n");
    EXPECT_EQ(run("db show " + db + " 2224636").err, db + ": no entry 2224636 (nearest: 2231955)\n");

    Outcome duplicates = run("db duplicates " + db);
    ASSERT_EQ(duplicates.status, 0) << duplicates.err;
    EXPECT_EQ(duplicates.out, "2224635 melaminium-again\n" + db + ": 1 groups of duplicates among 26 entries\n");
    const nlohmann::json groups = nlohmann::json::parse(run("db duplicates --json " + db).out);
    EXPECT_EQ(groups.at("groups"), nlohmann::json::parse("[[\"2224635\", \"melaminium-again\"]]"));

    // A damaged entry is named, and the others are still grouped.
    {
        std::ofstream cut(db + "/cod_2007008.ade", std::ios::trunc);
        cut << "junk";
    }
    Outcome damaged = run("db duplicates " + db);
    EXPECT_EQ(damaged.status, 1);
    EXPECT_NE(damaged.err.find("cod_2007008.ade"), std::string::npos) << damaged.err;
    EXPECT_NE(damaged.out.find("2224635 melaminium-again\n"), std::string::npos);
    EXPECT_EQ(run("db show " + db + " 2007008").status, 1);
}

TEST(DbCommands, BadDatabasesAndIdentifiers) {
    const std::string nowhere = fresh_database("nowhere");
    Outcome list = run("db list " + nowhere);
    EXPECT_EQ(list.status, 1);
    EXPECT_EQ(list.err, nowhere + ": no database here (no nowhere.adi)\n");
    EXPECT_EQ(run("db duplicates --json " + nowhere).status, 1);
    EXPECT_EQ(run("db").status, 2);

    // A block whose name would leave the directory is refused by name.
    const std::string db = fresh_database("names");
    const std::string bad = ::testing::TempDir() + "bad-block-name.cif";
    {
        std::ofstream out(bad);
        std::string text = slurp(cifs + "cod-2205750-nitrothiophene-carbaldehyde.cif");
        const std::size_t at = text.find("\ndata_2205750");
        ASSERT_NE(at, std::string::npos);
        text.replace(at, 13, "\ndata_..%2fup");
        out << text;
    }
    Outcome add = run("db add " + db + " " + bad);
    EXPECT_EQ(add.status, 1);
    EXPECT_NE(add.err.find("data_..%2fup: cannot name an entry: it holds \"..\" (block skipped)"), std::string::npos)
        << add.err;
    EXPECT_EQ(add.out, db + ": 0 entries\n");
}

}  // namespace

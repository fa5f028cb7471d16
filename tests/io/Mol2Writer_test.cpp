#include "molcryst/io/Mol2Writer.h"

#include <gtest/gtest.h>

#include <sstream>

#include "molecule/TestMolecules.h"

namespace molcryst {
namespace {

// Atoms are numbered on through the molecules, bonds point at those numbers,
// and names never hold a blank.
TEST(Mol2Writer, NumbersAtomsAcrossMoleculesAndKeepsNamesOneToken) {
    HMolecule water = testing::water();
    HMolecule ion = testing::molecule("Na Na1 5 5 5");
    ion->atom(0)->set_label("");
    water->atom(1)->set_label("H 1");
    Crystal crystal(Cell(), Hvector_HMolecule(new vector_HMolecule{ion, water}));
    std::ostringstream out;
    Mol2Writer::write(out, "two parts", crystal);
    const std::string text = out.str();
    EXPECT_EQ(text.substr(0, 46), "@<TRIPOS>MOLECULE\ntwo_parts\n4 2 2 0 0\nSMALL\nNO");
    EXPECT_NE(text.find("      1 Na1          5.0000     5.0000     5.0000 "), std::string::npos) << text;
    EXPECT_NE(text.find("      3 H_1  "), std::string::npos) << text;
    EXPECT_NE(text.find("@<TRIPOS>BOND\n     1     2     3 1\n     2     2     4 1\n"), std::string::npos) << text;
    EXPECT_NE(text.find("     2 MOL2          2 GROUP 0 **** **** 0\n"), std::string::npos) << text;
    EXPECT_THROW(Mol2Writer::write_file("/nonexistent/dir/x.mol2", "x", crystal), std::runtime_error);
}

}  // namespace
}  // namespace molcryst

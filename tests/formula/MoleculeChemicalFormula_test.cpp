#include "molcryst/formula/MoleculeChemicalFormula.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "../common/ArchiveBytes.h"
#include "../common/ErrorText.h"
#include "../common/Text.h"
#include "molcryst/molecule/Molecule.h"
#include "molcryst/molecule/Molecule3dCreator.h"
#include "molcryst/support/Archive.h"

using namespace molcryst;
using molcryst::testing::error_text;
using molcryst::testing::printed;

namespace {

MoleculeChemicalFormula parsed(const std::string& text, bool D_is_H = true) {
    return MoleculeChemicalFormula(text, D_is_H);
}

}  // namespace

TEST(MoleculeChemicalFormula, ParsesAndPrintsTheRecordForms) {
    for (const char* text : {"C6 H6", "C2 H3 O2 -1", "(C2 H4)n", "(C2 H4 N1 +1)n", "C8 H10 N4 O2",
                             "C1 H4 N1 +1", "Cl1 -1", "H2 O1", "Cu1 +2", "C10 H8 Fe1", "Cl2 Cu1 -1"})
        EXPECT_EQ(printed(parsed(text)), text) << text;
    // Case is ignored on input, two letters make a symbol, counts of 1 may be left out.
    EXPECT_EQ(parsed("c6 h6"), parsed("C6 H6"));
    EXPECT_EQ(printed(parsed("CL2 CU")), "Cl2 Cu1");
    EXPECT_EQ(printed(parsed("Xx2")), "Unknown2");
    // Tokens must stand apart: C6H6 is one carbon with a rest that is not a count.
    EXPECT_EQ(printed(parsed("C6H6")), "C1");
    // Charges in either position, summed.
    EXPECT_EQ(parsed("O4 S1 2-").charge(), -2);
    EXPECT_EQ(parsed("O4 S1 -2").charge(), -2);
    EXPECT_EQ(parsed("N1 H4 +1").charge(), 1);
    EXPECT_EQ(parsed("N1 H4 1+").charge(), 1);
    EXPECT_EQ(printed(parsed("+2")), "+2");
    EXPECT_EQ(printed(parsed("")), "");
}

TEST(MoleculeChemicalFormula, PolymerMark) {
    const MoleculeChemicalFormula p = parsed("(C2 H4)n");
    EXPECT_TRUE(p.polymeric());
    EXPECT_EQ(p.nelements(), 2u);
    EXPECT_FALSE(parsed("(C2 H4)").polymeric());
    EXPECT_EQ(printed(parsed("(Cu1 Cl2 -1)n")), "(Cl2 Cu1 -1)n");
    // Only what stands between the first brackets is read; a bracket the wrong way round holds nothing.
    EXPECT_EQ(printed(parsed("C2 H6) O1")), "C2 H6");
    EXPECT_EQ(printed(parsed(")C(")), "");
}

TEST(MoleculeChemicalFormula, HydrogenAndDeuterium) {
    MoleculeChemicalFormula f = parsed("H2");
    f.add(Element("D"), 1);
    EXPECT_EQ(printed(f), "H3");
    f.set_D_is_H(false);
    EXPECT_EQ(printed(f), "H2 D1");
    EXPECT_EQ(f.natoms(), 3u);
    f.set_D_is_H(true);
    f.remove(Element("H"), 2);
    EXPECT_EQ(printed(f), "H1");
    f.set_D_is_H(false);
    EXPECT_EQ(printed(f), "D1");
    EXPECT_EQ(printed(parsed("C1 D4", false)), "C1 D4");
    EXPECT_EQ(printed(parsed("C1 D4", true)), "C1 H4");
    // Deuterium prints behind hydrogen, before the other elements, wherever it stands among the codes.
    EXPECT_EQ(printed(parsed("N1 D2 Xx1 Ac1 H1 C1", false)), "Unknown1 C1 H1 D2 Ac1 N1");
    EXPECT_EQ(printed(parsed("Zn1 D2 Xx1", false)), "Unknown1 D2 Zn1");
    EXPECT_EQ(printed(parsed("D2 C3", false)), "C3 D2");
}

TEST(MoleculeChemicalFormula, CountsWeightsAndComparison) {
    const MoleculeChemicalFormula caffeine = parsed("C8 H10 N4 O2");
    EXPECT_NEAR(caffeine.molecular_weight(), 194.19, 0.01);
    EXPECT_NEAR(parsed("C6 H12 O6").molecular_weight(), 180.16, 0.01);
    EXPECT_NEAR(parsed("Na1 Cl1").molecular_weight(), 58.44, 0.01);
    EXPECT_EQ(caffeine.natoms(), 24u);
    EXPECT_EQ(caffeine.nhydrogens(), 10u);
    EXPECT_EQ(caffeine.nnon_hydrogen_atoms(), 14u);
    EXPECT_EQ(caffeine.natoms(Element("N")), 4u);
    EXPECT_EQ(parsed("C2 H6 O1").nmost_frequent(), 6u);
    EXPECT_TRUE(caffeine.contains(parsed("C8 N4")));
    EXPECT_FALSE(caffeine.contains(parsed("C9")));
    EXPECT_FALSE(caffeine.contains(Element("S")));

    EXPECT_NE(parsed("C2 H3 O2 -1"), parsed("C2 H3 O2"));
    EXPECT_LT(parsed("H2 O1 S1"), parsed("C1 H2 O1 S1"));  // fewer elements
    EXPECT_LT(parsed("C1 O2"), parsed("H2 O1"));           // first smaller code: C before H
    EXPECT_LT(parsed("C1 H4"), parsed("C2 H2"));           // then the first smaller count
    EXPECT_FALSE(parsed("C1 H4") < parsed("C1 H4 -1"));
    EXPECT_GT(parsed("C2 H2"), parsed("C1 H4"));

    MoleculeChemicalFormula salt = parsed("N1 H4 +1") + parsed("Cl1 -1");
    EXPECT_EQ(printed(salt), "H4 Cl1 N1");
    salt.remove(Element("Cl"));
    salt.remove(Element("N"), 5);
    EXPECT_EQ(printed(salt), "H4");
}

TEST(MoleculeChemicalFormula, FromAMolecule) {
    const Molecule3dCreator creator;
    HMolecule m = creator.create_molecule();
    for (const char* e : {"C", "O", "O", "H", "H", "H"}) creator.add_atom(*m, Element(e));
    m->atom(2)->set_formal_charge(-1);
    EXPECT_EQ(printed(MoleculeChemicalFormula(m, true)), "C1 H3 O2 -1");
    EXPECT_EQ(error_text<std::invalid_argument>([] { MoleculeChemicalFormula(HMolecule(), true); }),
              "MoleculeChemicalFormula: Null handle passed as argument.");
}

TEST(MoleculeChemicalFormula, BadCountsAndChargesAreRefusedAndLeaveTheFormula) {
    MoleculeChemicalFormula f = parsed("C6 H6");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { f.init("C-2 H4", true); }),
              "MoleculeChemicalFormula: negative count in \"C-2\".");
    EXPECT_EQ(error_text<std::overflow_error>([&] { f.init("C2147483647 H2147483647 O2", true); }),
              "MoleculeChemicalFormula: more atoms than an unsigned int can count.");
    EXPECT_EQ(error_text<std::overflow_error>([&] { f.init("C99999999999", true); }),
              "MoleculeChemicalFormula: count out of range in \"C99999999999\".");
    EXPECT_EQ(error_text<std::overflow_error>([&] { f.init("C1 +2147483647 +1", true); }),
              "MoleculeChemicalFormula: charge out of the range of int.");
    EXPECT_EQ(error_text<std::overflow_error>([&] { f.init("C-99999999999", true); }),
              "MoleculeChemicalFormula: count out of range in \"C-99999999999\".");
    EXPECT_EQ(error_text<std::overflow_error>([&] { f.init("C1 99999999999-", true); }),
              "MoleculeChemicalFormula: charge out of the range of int.");
    EXPECT_EQ(printed(f), "C6 H6");
    // The largest count that fits is kept exactly.
    EXPECT_EQ(parsed("C2147483647").natoms(), 2147483647u);
}

TEST(MoleculeChemicalFormula, ArchiveLayout) {
    using namespace molcryst::testing;
    MoleculeChemicalFormula f = parsed("C2 H3 D1 O2 -1", false);
    f.set_polymeric(true);
    Archive ar = Archive::temporary();
    f.write(ar);
    // charge, D_is_H, deuterium, hydrogen, polymeric, element count, then (element, count) in code order
    const std::vector<unsigned char> expected = words({-1}) + std::vector<unsigned char>{0} + words({1, 3}) +
                                                std::vector<unsigned char>{1} + words({4}) +
                                                std::vector<unsigned char>{Element::C} + words({2}) +
                                                std::vector<unsigned char>{Element::H} + words({3}) +
                                                std::vector<unsigned char>{Element::D} + words({1}) +
                                                std::vector<unsigned char>{Element::O} + words({2});
    EXPECT_EQ(bytes_of(ar), expected);
    MoleculeChemicalFormula back(true);
    back.read(ar);
    EXPECT_EQ(back, f);
    EXPECT_TRUE(back.polymeric());
    EXPECT_FALSE(back.D_is_H());
    back.set_D_is_H(true);
    EXPECT_EQ(printed(back), "(C2 H4 O2 -1)n");

    for (std::size_t n = 0; n < expected.size(); ++n) {
        Archive cut = archive_of(std::vector<unsigned char>(expected.begin(), expected.begin() + n));
        MoleculeChemicalFormula g = parsed("N2");
        EXPECT_THROW(g.read(cut), std::runtime_error) << n;
        EXPECT_EQ(printed(g), "N2");
    }
    // Hydrogen shown that the true counts do not give, or a count of 0, is a damaged archive.
    for (const std::vector<unsigned char>& bad :
         {words({0}) + std::vector<unsigned char>{1} + words({0, 0}) + std::vector<unsigned char>{0} + words({1}) +
              std::vector<unsigned char>{Element::H} + words({5}),
          words({0}) + std::vector<unsigned char>{1} + words({0, 0}) + std::vector<unsigned char>{0} + words({1}) +
              std::vector<unsigned char>{Element::C} + words({0})}) {
        Archive damaged = archive_of(bad);
        MoleculeChemicalFormula g = parsed("N2");
        EXPECT_THROW(g.read(damaged), std::runtime_error);
        EXPECT_EQ(printed(g), "N2");
    }
    Archive huge = archive_of(words({0}) + std::vector<unsigned char>{1} + words({0, 0}) +
                              std::vector<unsigned char>{0} + words({0x7fffffff}));
    EXPECT_THROW(MoleculeChemicalFormula(true).read(huge), std::runtime_error);
}

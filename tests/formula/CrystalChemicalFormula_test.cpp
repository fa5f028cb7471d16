#include "molcryst/formula/CrystalChemicalFormula.h"

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>

#include "../common/ArchiveBytes.h"
#include "../common/ErrorText.h"
#include "../common/Text.h"
#include "molcryst/connectivity/Connectivity.h"
#include "molcryst/connectivity/ConnectivityInfo.h"
#include "molcryst/crystal/CrystalMaker.h"
#include "molcryst/geometry/Cell.h"
#include "molcryst/molecule/Molecule.h"
#include "molcryst/molecule/Molecule3dCreator.h"
#include "molcryst/support/Archive.h"
#include "crystal/CrystalTestSupport.h"

using namespace molcryst;
using molcryst::testing::error_text;
using molcryst::testing::printed;

namespace {

CrystalChemicalFormula parsed(const std::string& text) { return CrystalChemicalFormula(text, true); }

const char* const ill_formed = "CrystalChemicalFormula::CrystalChemicalFormula: Ill-formed string.";

}  // namespace

TEST(CrystalChemicalFormula, ResiduesAndTheirMultipliers) {
    const CrystalChemicalFormula benzene = parsed("C6 H6");
    ASSERT_EQ(benzene.nresidues(), 1);
    EXPECT_EQ(benzene.residue(0).multiplier, 1.0);
    EXPECT_EQ(printed(benzene), "C6 H6");

    const CrystalChemicalFormula hydrate = parsed("C6 H6,0.5(H2 O1),x(C2 H6 O1)");
    ASSERT_EQ(hydrate.nresidues(), 3);
    EXPECT_EQ(hydrate.residue(1).multiplier, 0.5);
    EXPECT_TRUE(hydrate.residue(2).unknown_multiplier);
    EXPECT_FALSE(hydrate.multipliers_known());
    EXPECT_EQ(printed(hydrate), "C6 H6,0.5(H2 O1),x(C2 H6 O1)");

    EXPECT_EQ(printed(parsed("2(H2 O1)")), "2(H2 O1)");
    EXPECT_EQ(parsed("2(H2 O1)").residue(0).multiplier, 2.0);
    // A moiety formula as CIF files give it: blanks after commas, counts of 1 left out.
    EXPECT_EQ(printed(parsed("C10 H8 N2 O4 2-, 2(Na 1+), 3(H2 O)")), "C10 H8 N2 O4 -2,2(Na1 +1),3(H2 O1)");
}

TEST(CrystalChemicalFormula, MultiplierText) {
    EXPECT_EQ(printed(parsed("0.33(C1)")), "0.33(C1)");
    EXPECT_EQ(printed(parsed("0.333(C1)")), "0.33(C1)");
    EXPECT_EQ(parsed("0.333(C1)").residue(0).multiplier, 0.333);
    EXPECT_EQ(printed(parsed("1.25(C1)")), "1.25(C1)");
    EXPECT_EQ(printed(parsed("0.07(C1)")), "0.07(C1)");
    EXPECT_EQ(printed(parsed("0.10(C1)")), "0.1(C1)");
    EXPECT_EQ(printed(parsed("12(C1)")), "12(C1)");
    EXPECT_EQ(printed(parsed("0(C1)")), "0(C1)");
    EXPECT_EQ(printed(parsed("1e20(C1)")), "1e+20(C1)");
}

TEST(CrystalChemicalFormula, Polymers) {
    const CrystalChemicalFormula p = parsed("(C2 H4)n");
    EXPECT_TRUE(p.polymeric());
    EXPECT_TRUE(p.residue(0).formula.polymeric());
    EXPECT_EQ(printed(p), "(C2 H4)n");
    // With a polymer in the crystal every residue is bracketed, others marked "x".
    EXPECT_EQ(printed(parsed("(Cu1 Cl2)n,2(H2 O1)")), "(Cl2 Cu1)n,2x(H2 O1)");
    EXPECT_EQ(printed(parsed("(C2 H4)n,H2 O1")), "(C2 H4)n,x(H2 O1)");
}

TEST(CrystalChemicalFormula, IllFormedTextIsRefused) {
    for (const char* text : {")C(", "(C", "2(H2 O1", "(H2 O1)x", "C6 H6,2(H2 O1)x", "-2(H2 O1)", "nan(C1)", "1e999(C1)"})
        EXPECT_EQ(error_text<std::invalid_argument>([&] { parsed(text); }), ill_formed) << text;
    CrystalChemicalFormula f = parsed("C6 H6");
    EXPECT_THROW(f.init("C1,(C", true), std::invalid_argument);
    EXPECT_EQ(printed(f), "C6 H6");
    EXPECT_EQ(parsed("").nresidues(), 0);
    // A multiplier behind the brackets; a number that is none counts 1.
    EXPECT_EQ(parsed("(H2 O1)2").residue(0).multiplier, 2.0);
    EXPECT_EQ(parsed("y(H2 O1)").residue(0).multiplier, 1.0);
    // Only a lower-case n marks a polymer.
    EXPECT_FALSE(parsed("(C2 H4)N").polymeric());
    EXPECT_EQ(parsed(" , ,").nresidues(), 0);
}

TEST(CrystalChemicalFormula, UnknownMultipliersTakeTheSubstitute) {
    CrystalChemicalFormula f = parsed("x(H2 O1)");
    EXPECT_EQ(printed(f), "x(H2 O1)");
    const double water = MoleculeChemicalFormula("H2 O1", true).molecular_weight();
    EXPECT_DOUBLE_EQ(f.molecular_weight_sum(), water);
    f.set_unknown_multiplier_substitute(3.0);
    EXPECT_DOUBLE_EQ(f.molecular_weight_sum(), 3.0 * water);
    // A new text keeps the substitute.
    CrystalChemicalFormula g = f;
    g.init("x(H2 O1)", true);
    EXPECT_EQ(g.residue(0).multiplier, 3.0);
    f.add_residue(MoleculeChemicalFormula("C2 H6 O1", true));
    EXPECT_EQ(f.residue(1).multiplier, 3.0);
    EXPECT_EQ(printed(f), "x(H2 O1),x(C2 H6 O1)");
    f.add_residue(MoleculeChemicalFormula("Na1 +1", true), 2.0);
    f.remove_residue(MoleculeChemicalFormula("H2 O1", true));
    f.remove_residue(0u);
    EXPECT_TRUE(f.multipliers_known());
    EXPECT_EQ(printed(f), "2(Na1 +1)");
    EXPECT_EQ(error_text<std::out_of_range>([&] { f.remove_residue(1u); }),
              "CrystalChemicalFormula::remove_residue: Index out of range.");
}

TEST(CrystalChemicalFormula, SumsOverResidues) {
    EXPECT_DOUBLE_EQ(parsed("C2 H3 O2 -1,0.5(Ca1 +2)").net_charge(), 0.0);
    // Copper sulfate pentahydrate, 249.69 g/mol.
    const CrystalChemicalFormula blue = parsed("Cu1 +2,O4 S1 -2,5(H2 O1)");
    EXPECT_NEAR(blue.molecular_weight_sum(), 249.69, 0.02);
    EXPECT_EQ(printed(blue.sum_formula()), "H10 Cu1 O9 S1");
    EXPECT_EQ(blue.nelements(), 4);
    EXPECT_TRUE(blue.at_least_one_residue_contains(Element("S")));
    EXPECT_TRUE(blue.at_least_one_residue_contains(MoleculeChemicalFormula("O4", true)));
    EXPECT_TRUE(blue.at_least_one_residue_equals(MoleculeChemicalFormula("H2 O1", true)));
    EXPECT_FALSE(blue.at_least_one_residue_equals(MoleculeChemicalFormula("H2 O2", true)));
    // Fractional occupancy: a half solvent molecule.
    EXPECT_EQ(printed(parsed("C6 H6,0.5(C1 H4 O1)").sum_formula()), "C6.5 H8 O0.5");
    EXPECT_NEAR(parsed("C6 H6").estimated_volume_sum(150.0),
                MoleculeChemicalFormula("C6 H6", true).estimated_volume(150.0), 1e-12);
}

TEST(CrystalChemicalFormula, SortingAndComparison) {
    CrystalChemicalFormula f = parsed("2(H2 O1),C6 H6,0.5(H2 O1),Na1 +1");
    f.sort_chemical_formulae();
    EXPECT_EQ(printed(f), "Na1 +1,C6 H6,0.5(H2 O1),2(H2 O1)");
    EXPECT_EQ(parsed("C6 H6,2(H2 O1)"), parsed("2(H2 O1),C6 H6"));
    EXPECT_FALSE(identical(parsed("C6 H6,2(H2 O1)"), parsed("2(H2 O1),C6 H6")));
    EXPECT_NE(parsed("C6 H6,2(H2 O1)"), parsed("C6 H6,2.001(H2 O1)"));
    EXPECT_TRUE(equals(parsed("C6 H6,2(H2 O1)"), parsed("C6 H6,2.001(H2 O1)"), 0.001, 1));
    EXPECT_FALSE(equals(parsed("C6 H6,2(H2 O1)"), parsed("C6 H6,2.002(H2 O1)"), 0.001, 1));
    EXPECT_FALSE(equals(parsed("C6 H6,2(H2 O1)"), parsed("C6 H6,x(H2 O1)"), 0.001, 1));
    EXPECT_TRUE(equals(parsed("C6 H6,2(H2 O1)"), parsed("C6 H6,x(H2 O1)"), 0.001, 0));
    EXPECT_TRUE(equals(parsed("x(H2 O1)"), parsed("x(H2 O1)"), 0.0, 1));
    EXPECT_FALSE(equals(parsed("2(H2 O1),C6 H6"), parsed("C6 H6,2(H2 O1)"), 0.001, 1));
    EXPECT_TRUE(is_equivalent(parsed("2(H2 O1),C6 H6"), parsed("C6 H6,2(H2 O1)"), 0.001, 1));
    EXPECT_TRUE(same_residues(parsed("2(H2 O1)"), parsed("H2 O1,H2 O1")));
    EXPECT_TRUE(same_residues(parsed("Cl1 -1"), parsed("Cl1")));
    EXPECT_FALSE(same_residues(parsed("Cl1,Na1"), parsed("Cl1")));
}

TEST(CrystalChemicalFormula, ArchiveLayoutAndRoundTrip) {
    using namespace molcryst::testing;
    CrystalChemicalFormula f = parsed("C6 H6,0.5(H2 O1),x(C2 H6 O1)");
    f.set_unknown_multiplier_substitute(2.0);
    Archive ar = Archive::temporary();
    f.write(ar);
    const std::vector<unsigned char> bytes = bytes_of(ar);
    Archive head = Archive::temporary();
    head << 2.0 << 3u << false << 1.0;
    MoleculeChemicalFormula("C6 H6", true).write(head);
    const std::vector<unsigned char> start = bytes_of(head);
    ASSERT_GE(bytes.size(), start.size());
    EXPECT_EQ(std::vector<unsigned char>(bytes.begin(), bytes.begin() + static_cast<long>(start.size())), start);

    CrystalChemicalFormula back;
    back.read(ar);
    EXPECT_TRUE(identical(back, f));
    EXPECT_FALSE(back.multipliers_known());
    EXPECT_EQ(back.residue(2).multiplier, 2.0);
    EXPECT_EQ(printed(back), "C6 H6,0.5(H2 O1),x(C2 H6 O1)");

    // A residue of a charge alone has no elements: the smallest residue there is, last in the file.
    const CrystalChemicalFormula bare = parsed("C1,+1");
    Archive small = Archive::temporary();
    bare.write(small);
    small.rewind();
    CrystalChemicalFormula bare_back;
    bare_back.read(small);
    EXPECT_TRUE(identical(bare_back, bare));

    // A multiplier that is no finite number is a damaged archive.
    Archive nan = Archive::temporary();
    nan << 1.0 << 1u << false << std::nan("");
    MoleculeChemicalFormula("C1", true).write(nan);
    nan.rewind();
    CrystalChemicalFormula g = parsed("N2");
    EXPECT_THROW(g.read(nan), std::runtime_error);
    EXPECT_EQ(printed(g), "N2");

    for (std::size_t n = 0; n < bytes.size(); ++n) {
        Archive cut = archive_of(std::vector<unsigned char>(bytes.begin(), bytes.begin() + static_cast<long>(n)));
        CrystalChemicalFormula g = parsed("N2");
        EXPECT_THROW(g.read(cut), std::runtime_error) << n;
        EXPECT_EQ(printed(g), "N2");
    }
}

TEST(CrystalChemicalFormula, FromConnectivityRecords) {
    const Molecule3dCreator creator;
    HMolecule acetate = creator.create_molecule();
    for (const char* e : {"C", "C", "O", "O", "H", "H", "H"}) creator.add_atom(*acetate, Element(e));
    acetate->atom(3)->set_formal_charge(-1);
    HMolecule water = creator.create_molecule();
    for (const char* e : {"O", "D", "H"}) creator.add_atom(*water, Element(e));
    const HConnectivity a(new Connectivity(*acetate)), w(new Connectivity(*water));
    EXPECT_EQ(printed(MoleculeChemicalFormula(a, true)), "C2 H3 O2 -1");
    EXPECT_EQ(printed(MoleculeChemicalFormula(w, false)), "H1 D1 O1");
    EXPECT_EQ(error_text<std::invalid_argument>([] { MoleculeChemicalFormula(HConnectivity(), true); }),
              "MoleculeChemicalFormula: Null handle passed as argument.");

    HConnectivityInfo info(new ConnectivityInfo());
    info->add_connectivity(a, 2.0);
    info->add_connectivity(w);
    const CrystalChemicalFormula f(info, true);
    EXPECT_EQ(printed(f), "2(C2 H3 O2 -1),x(H2 O1)");
    EXPECT_DOUBLE_EQ(f.net_charge(), -2.0);
    EXPECT_EQ(error_text<std::invalid_argument>([] { CrystalChemicalFormula(HConnectivityInfo(), true); }),
              "CrystalChemicalFormula: Null handle passed as argument.");
}

TEST(CrystalChemicalFormula, FromTheAsymmetricUnitOfAStructure) {
    using molcryst::testing::at_frac;
    const Cell cell = molcryst::testing::cell_of(Spacegroup());
    auto list = [](std::initializer_list<HMolecule> ms) { return Hvector_HMolecule(new vector_HMolecule(ms)); };
    // Matched methane and water, a water known from coordinates alone, and a
    // diagram-only molecule and an atom without a site, which the crystal leaves out.
    const HMolecule methane = at_frac(cell, "C C1 0 0 0; H H1 0.1 0 0; H H2 0 0.1 0; H H3 0 0 0.1; H H4 0.1 0.1 0.1");
    const HMolecule water = at_frac(cell, "O O1 0.5 0.5 0.5; H H5 0.6 0.5 0.5; H H6 0.5 0.6 0.5; N N1");
    const HMolecule water3d = at_frac(cell, "O O2 0.3 0.3 0.3; H H7 0.4 0.3 0.3; H H8 0.3 0.4 0.3");
    const HMolecule diagram = at_frac(cell, "S S1; S S2");
    const HCrystalMaker maker(new CrystalMaker(cell, list({methane, water}), list({diagram}), list({water3d})));
    EXPECT_EQ(printed(CrystalChemicalFormula(maker, true)), "C1 H4,2(H2 O1)");

    const char* const none = "CrystalChemicalFormula::CrystalChemicalFormula(): no crystal structure available.";
    EXPECT_EQ(error_text<std::invalid_argument>([] { CrystalChemicalFormula(HCrystalMaker(), true); }), none);
    const HCrystalMaker siteless(new CrystalMaker(cell, list({diagram}), list({}), list({})));
    EXPECT_EQ(error_text<std::invalid_argument>([&] { CrystalChemicalFormula(siteless, true); }), none);
}

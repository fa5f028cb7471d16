// The CIF reader: what it takes from a block, and one clear line for each
// way a file can be wrong.
#include "molcryst/io/CifReader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "molcryst/io/CifImport.h"
#include "molcryst/molecule/Site.h"

using namespace molcryst;

namespace {

/// A small block in P 21/c: the cell on lines 2-7, symmetry from line 8,
/// the atom loop from line 14 (from line 8 without symmetry).
std::string structure(const std::string& atoms = "C1 C 0.1 0.2 0.3 1\nO1 O2- 0.4(2) 0.5 0.6 0.5\n",
                      const std::string& symmetry = "loop_\n_symmetry_equiv_pos_as_xyz\nx,y,z\n-x,y+1/2,-z+1/2\n-x,-y,-z\nx,-y-1/2,z-1/2\n") {
    return "data_test\n"
           "_cell_length_a 10.123(4)\n_cell_length_b 11.5\n_cell_length_c 12\n"
           "_cell_angle_alpha 90\n_cell_angle_beta 104.5(2)\n_cell_angle_gamma 90\n" +
           symmetry +
           "loop_\n_atom_site_label\n_atom_site_type_symbol\n_atom_site_fract_x\n_atom_site_fract_y\n"
           "_atom_site_fract_z\n_atom_site_occupancy\n" +
           atoms;
}

/// `text` with the first `from` replaced by `to`.
std::string with(std::string text, const std::string& from, const std::string& to) {
    return text.replace(text.find(from), from.size(), to);
}

std::string error_of(const std::string& text) {
    try {
        CifReader::read_text(text, "t.cif");
    } catch (const CifError& e) {
        return e.what();
    }
    return "no error";
}

}  // namespace

TEST(CifReader, ReadsCellSymmetryAndSites) {
    CifDocument doc = CifReader::read_text(structure(), "t.cif");
    ASSERT_EQ(doc.blocks.size(), 1u);
    const CifBlock& b = doc.blocks[0];
    EXPECT_EQ(b.name, "test");
    EXPECT_DOUBLE_EQ(b.lengths[0].value(), 10.123);
    EXPECT_NEAR(b.lengths[0].standard_uncertainty(), 0.004, 1e-12);
    EXPECT_NEAR(b.angles[1].standard_uncertainty(), 0.2, 1e-12);
    EXPECT_EQ(b.cell.spacegroup().noperators(), 4);
    EXPECT_EQ(b.cell.spacegroup().number(), 14);
    EXPECT_EQ(b.symmetry_source, "operators");
    EXPECT_EQ(b.operator_triplets.at(3), "x,-y-1/2,z-1/2");
    ASSERT_EQ(b.atoms.size(), 2u);
    EXPECT_EQ(b.atoms[1].element.symbol(), "O");
    EXPECT_EQ(b.atoms[1].formal_charge, -2);
    EXPECT_NEAR(b.atoms[1].fract[0].standard_uncertainty(), 0.2, 1e-12);
    EXPECT_DOUBLE_EQ(b.atoms[1].occupancy.value(), 0.5);
    EXPECT_TRUE(b.warnings.empty());
}

TEST(CifReader, ElementsChargesAndDisplacementFromEveryForm) {
    const std::string text =
        "data_x\n_cell_length_a 5\n_cell_length_b 5\n_cell_length_c 5\n_cell_angle_alpha 90\n_cell_angle_beta 90\n"
        "_cell_angle_gamma 90\n_space_group_name_Hall '-P 1'\n"
        "loop_\n_atom_site_label\n_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\n"
        "_atom_site_U_iso_or_equiv\n_atom_site_disorder_assembly\n_atom_site_disorder_group\n"
        "Cl1 0 0 0 0.05 . .\nHO1 0.1 0 0 ? A 1\nCA 0.2 0 0 . A 2\nNa1 0.3 0 0 0.02 . -1\n"
        "loop_\n_atom_site_aniso_label\n_atom_site_aniso_U_11\n_atom_site_aniso_U_22\n_atom_site_aniso_U_33\n"
        "_atom_site_aniso_U_12\n_atom_site_aniso_U_13\n_atom_site_aniso_U_23\n"
        "Na1 0.01 0.02 0.03 0 0 0.001\nQ9 0.01 0.01 0.01 0 0 0\n";
    CifDocument doc = CifReader::read_text(text, "t.cif");
    const CifBlock& b = doc.blocks.at(0);
    EXPECT_EQ(b.symmetry_source, "Hall symbol");
    EXPECT_EQ(b.cell.spacegroup().noperators(), 2);
    // From labels: Cl is chlorine; a capital second letter starts the name.
    EXPECT_EQ(b.atoms[0].element.symbol(), "Cl");
    EXPECT_EQ(b.atoms[1].element.symbol(), "H");
    EXPECT_EQ(b.atoms[2].element.symbol(), "C");
    EXPECT_EQ(b.atoms[0].displacement, CifAtomSite::Uiso);
    EXPECT_EQ(b.atoms[1].displacement, CifAtomSite::NoDisplacement);
    EXPECT_EQ(b.atoms[3].displacement, CifAtomSite::Uaniso);
    EXPECT_DOUBLE_EQ(b.atoms[3].u_aniso[5].value(), 0.001);
    EXPECT_EQ(b.atoms[1].disorder_assembly, "A");
    EXPECT_EQ(b.atoms[2].disorder_group, 2);
    EXPECT_EQ(b.atoms[3].disorder_group, -1);
    ASSERT_EQ(b.warnings.size(), 2u);
    EXPECT_EQ(b.warnings[0], "t.cif:21: anisotropic parameters for an unknown atom 'Q9' are ignored");
    // Without an occupancy column both alternatives are whole sites.
    EXPECT_EQ(b.warnings[1], "t.cif:9: disorder assembly 'A': the occupancies of its 2 groups sum to 2, over 1");

    // Type symbols with charges, and B converted to U.
    const std::string charged = structure("Na1 Na1+ 0 0 0 1\nN1 N3- 0.1 0 0 1\nFe1 Fe 0.2 0 0 1\nS1 S- 0.3 0 0 1\n");
    CifDocument ions = CifReader::read_text(charged, "t.cif");
    std::vector<int> charges;
    for (const CifAtomSite& s : ions.blocks[0].atoms) charges.push_back(s.formal_charge);
    EXPECT_EQ(charges, (std::vector<int>{1, -3, 0, -1}));
}

TEST(CifReader, SymmetryFromANameAndContradictions) {
    CifDocument named = CifReader::read_text(structure("C1 C 0 0 0 1\n", "_symmetry_space_group_name_H-M 'P b c a'\n"), "t.cif");
    EXPECT_EQ(named.blocks[0].symmetry_source, "Hermann-Mauguin name");
    EXPECT_EQ(named.blocks[0].cell.spacegroup().noperators(), 8);
    EXPECT_EQ(named.blocks[0].cell.spacegroup().number(), 61);
    // The same operators with the name that describes them are consistent.
    EXPECT_EQ(error_of(structure("C1 C 0 0 0 1\n", "_symmetry_space_group_name_H-M 'P 1 21/c 1'\nloop_\n_symmetry_equiv_pos_as_xyz\nx,y,z\n-x,y+1/2,-z+1/2\n-x,-y,-z\nx,-y-1/2,z-1/2\n")),
              "no error");
}

TEST(CifReader, EveryFaultIsOneLineWithItsPlace) {
    const std::vector<std::pair<std::string, std::string> > cases = {
        {"", "t.cif: the file is empty"},
        {std::string("data_x\n\0\x01\x02", 10), "t.cif:2: not a CIF file: it holds binary data"},
        {"data_x\nloop_\n_a\n_b\n1 2 3\n", "t.cif:2: syntax error: Wrong number of values in the loop"},
        {"data_x\n_cell_length_a 5\n", "t.cif: no data block with atom sites"},
        {"data_x\nloop_\n_atom_site_label\n_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\nC1 0 0 0\n",
         "t.cif:1: no _cell_length_a: the cell is missing"},
        {with(structure(), "_cell_length_a 10.123(4)", "_cell_length_a ?"), "t.cif:2: _cell_length_a has no value"},
        {with(structure(), "_cell_length_b 11.5", "_cell_length_b 1e9"), "t.cif:3: _cell_length_b is out of range: 1e9"},
        {with(structure(), "_cell_length_b 11.5", "_cell_length_b -11.5"), "t.cif:3: _cell_length_b is out of range: -11.5"},
        {with(structure(), "_cell_length_b 11.5", "_cell_length_b abc"), "t.cif:3: _cell_length_b is not a number: 'abc'"},
        {with(structure(), "_cell_angle_beta 104.5(2)", "_cell_angle_beta 180"), "t.cif:6: _cell_angle_beta is out of range: 180"},
        {with(with(with(structure(), "_cell_angle_alpha 90", "_cell_angle_alpha 120"), "_cell_angle_gamma 90",
                   "_cell_angle_gamma 120"),
              "_cell_angle_beta 104.5(2)", "_cell_angle_beta 120"),
         "t.cif:1: the cell angles leave the cell no volume"},
        {with(structure(), "_cell_angle_gamma 90\n", ""), "t.cif:1: no _cell_angle_gamma: the cell is missing"},
        {structure("C1 C 0 0 0 1\n", "loop_\n_symmetry_equiv_pos_as_xyz\nx,y,z\n-x,y+1/2,-z+1/2\n"),
         "no error"},
        {structure("C1 C 0 0 0 1\n", "loop_\n_symmetry_equiv_pos_as_xyz\nx,y,z\n-x,y+1/2,z\n-x,-y,-z\n"),
         "t.cif:8: the symmetry operators do not form a group"},
        {structure("C1 C 0 0 0 1\n", "loop_\n_symmetry_equiv_pos_as_xyz\nx,y,z\nx,y,z+1\n"),
         "t.cif:8: the symmetry operator 'x,y,z+1' is listed twice"},
        {structure("C1 C 0 0 0 1\n", "loop_\n_symmetry_equiv_pos_as_xyz\nx,y,z\nx+q,y,z\n"),
         "t.cif:8: cannot read the symmetry operator 'x+q,y,z'"},
        {structure("C1 C 0 0 0 1\n", "_symmetry_space_group_name_H-M 'P 21/c'\nloop_\n_symmetry_equiv_pos_as_xyz\nx,y,z\n-x,-y,-z\n"),
         "t.cif:9: the symmetry operators contradict the Hermann-Mauguin name 'P 21/c'"},
        {structure("C1 C 0 0 0 1\n", "_symmetry_space_group_name_H-M 'Q 42'\n"),
         "t.cif:8: unknown spacegroup 'Q 42' and no symmetry operators"},
        {structure("C1 C 0 0 0 1\n", ""), "t.cif:1: no symmetry: no operators, Hall symbol or Hermann-Mauguin name"},
        {structure("C1 C ? 0 0 1\n"), "t.cif:14: atom 'C1': _atom_site_fract_x has no value"},
        {structure("C1 C 0 . 0 1\n"), "t.cif:14: atom 'C1': _atom_site_fract_y has no value"},
        {structure("C1 C 0 0 1e300 1\n"), "t.cif:14: atom 'C1': _atom_site_fract_z is out of range: 1e300"},
        {structure("C1 Xx 0 0 0 1\n"), "t.cif:14: atom 'C1': unknown element 'Xx'"},
        {structure("? C 0 0 0 1\n"), "t.cif:14: an atom site has no label"},
        {structure("C1 C 0 0 0 1\nC2 C 0 0\n"), "t.cif:14: syntax error: Wrong number of values in the loop"},
        {structure("C1 Cl1- 0 0 0 1\nC2 Uuu 0 0 0 1\n"), "t.cif:14: atom 'C2': unknown element 'Uuu'"},
        {structure("C1 C 0 0 0 1\nX9 ? 0 0 0 1\n"), "no error"},
    };
    for (const auto& c : cases) EXPECT_EQ(error_of(c.first), c.second) << c.first;
}

TEST(CifReader, AnUnusableBlockIsSkippedAndTheOthersRead) {
    std::string second = structure();
    second.replace(0, 9, "data_bad\n");
    second.replace(second.find("0.1 0.2 0.3"), 3, "?  ");
    CifDocument doc = CifReader::read_text(structure() + second, "t.cif");
    ASSERT_EQ(doc.blocks.size(), 1u);
    ASSERT_EQ(doc.skipped.size(), 1u);
    EXPECT_EQ(std::string(doc.skipped[0].what()), "t.cif:37: atom 'C1': _atom_site_fract_x has no value");
    EXPECT_EQ(doc.skipped[0].line(), 37);
    // A repeated label is kept, with a warning: deposited files have them.
    CifDocument twice = CifReader::read_text(structure("H1 H 0 0 0 1\nH1 H 0.5 0 0 1\n"), "t.cif");
    EXPECT_EQ(twice.blocks[0].atoms.size(), 2u);
    EXPECT_EQ(twice.blocks[0].warnings, std::vector<std::string>{"t.cif:14: duplicate atom label 'H1': both sites are kept"});
}

TEST(CifImport, EachBlockBecomesACrystalMakerOfItsAsymmetricUnit) {
    // Water on a general position in P 21/c: one molecule of three atoms,
    // its hydrogens bonded to the oxygen by distance.
    const std::string water = structure("O1 O 0.25 0.25 0.25 1\nH1 H 0.3214 0.2766 0.2576 1\nH2 H 0.2362 0.1687 0.2708 1\n");
    std::vector<std::string> skipped;
    std::vector<ImportedStructure> imported = CifImport::read_text(water, "t.cif", &skipped);
    ASSERT_EQ(imported.size(), 1u);
    EXPECT_TRUE(skipped.empty());
    const CrystalMaker& maker = *imported[0].crystal_maker;
    EXPECT_EQ(imported[0].name, "test");
    EXPECT_EQ(maker.cell().spacegroup().noperators(), 4);
    ASSERT_EQ(maker.nmolecules(), 1);
    const Molecule& m = *maker.molecule(0);
    EXPECT_EQ(m.natoms(), 3);
    EXPECT_EQ(m.nbonds(), 2);
    EXPECT_EQ(m.atom(1)->symmtag(), 1);
    EXPECT_NEAR(m.atom(0)->site()->frac()[0], 0.25, 1e-12);
    EXPECT_EQ(m.bond(0)->type(), SINGLE_BOND);  // O.3 to H: single by the geometry rules
    EXPECT_TRUE(m.atom(0)->site()->uncertainty().unhand() != nullptr);
}

// CrystalMaker: views and match levels, edits that split and join
// molecules, changes of cell, symmetry relations, the generated crystals,
// archive layout, print form, equality and lifetime lines.
#include "molcryst/crystal/CrystalMaker.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "common/ArchiveBytes.h"
#include "common/ErrorText.h"
#include "common/Text.h"
#include "crystal/CrystalTestSupport.h"
#include "molcryst/crystal/CrystalMakerHelpers.h"
#include "molcryst/geometry/FractionalSolid.h"
#include "molcryst/molecule/Bond3d.h"
#include "molcryst/molecule/MoleculeSubset.h"

using namespace molcryst;
using namespace molcryst::testing;
using namespace molcryst_test;

namespace {

Hvector_HMolecule list_of(std::vector<HMolecule> molecules) { return Hvector_HMolecule(new vector_HMolecule(molecules)); }

// The first label of each current molecule, joined by blanks.
std::string view_of(const CrystalMaker& maker) {
    std::string text;
    for (int i = 0; i < maker.nmolecules(); ++i)
        text += (i == 0 ? "" : " ") + (maker.molecule(i)->natoms() > 0 ? maker.molecule(i)->atom(0)->label() : "-");
    return text;
}

std::string labels_text(const Molecule& m) {
    std::string text;
    for (const std::string& label : labels_of(m)) text += (text.empty() ? "" : " ") + label;
    return text;
}

const Cell monoclinic = cell_of(p21_c());

}  // namespace

TEST(CrystalMaker, ViewsSelectionsAndMatchLevels) {
    CrystalMaker empty;
    EXPECT_EQ(empty.nmolecules(), 0);
    EXPECT_EQ(empty.selection(), CrystalMaker::SelectAll);
    EXPECT_EQ(empty.match_level(), CrystalMaker::NotMatched);
    EXPECT_TRUE(CrystalMakerHelpers::molecule_expansion_needed(empty));

    HMolecule a = at_frac(monoclinic, "C A1 0.1 0.1 0.1"), b = at_frac(monoclinic, "C B1 0.2 0.2 0.2"),
              c = at_frac(monoclinic, "C C1 0.3 0.3 0.3");
    Hvector_HMolecule matched = list_of({a});
    CrystalMaker maker(monoclinic, matched, list_of({b}), list_of({c}));
    EXPECT_EQ(maker.molecules(), matched);  // adopted, not copied
    EXPECT_EQ(maker.selection(), CrystalMaker::Select2d);
    EXPECT_EQ(view_of(maker), "A1 B1");
    const Hvector_HMolecule view = maker.current_molecules();
    maker.select_3d();
    EXPECT_EQ(view_of(maker), "A1 C1");
    maker.select_all();
    EXPECT_EQ(view_of(maker), "A1 B1 C1");
    maker.select_matched();
    EXPECT_EQ(view_of(maker), "A1");
    EXPECT_EQ(maker.current_molecules(), view);  // the same vector throughout
    EXPECT_EQ(maker.molecule(0), a);
    EXPECT_THROW(maker.molecule(1), std::out_of_range);
    EXPECT_EQ(maker.match_level(), CrystalMaker::PartiallyMatched);
    EXPECT_EQ(CrystalMaker(monoclinic, list_of({a}), Hvector_HMolecule(), nullptr).match_level(),
              CrystalMaker::FullyMatched);
    EXPECT_EQ(CrystalMaker(monoclinic, nullptr, list_of({b}), nullptr).match_level(), CrystalMaker::NotMatched);

    // A bad selection changes nothing.
    const CrystalMaker::Selection bad = static_cast<CrystalMaker::Selection>(4);
    EXPECT_EQ(error_text<std::invalid_argument>([&] { maker.select(bad); }), "Invalid Selection!");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { maker.add(b, bad); }), "Invalid Selection!");
    EXPECT_THROW(maker.add(HMolecule(), CrystalMaker::SelectAll), std::invalid_argument);
    EXPECT_EQ(maker.selection(), CrystalMaker::SelectMatched);
    EXPECT_EQ(maker.molecules2d()->size(), 1u);

    // add files by selection; SelectAll means matched. The view follows.
    HMolecule d = at_frac(monoclinic, "C D1 0.4 0.4 0.4"), e = at_frac(monoclinic, "C E1 0.5 0.5 0.5");
    maker.add(d, CrystalMaker::SelectAll);
    maker.add(e, CrystalMaker::Select3d);
    EXPECT_EQ(view_of(maker), "A1 D1");
    maker.select_all();
    EXPECT_EQ(view_of(maker), "A1 D1 B1 C1 E1");
    maker.remove(d);
    maker.remove(e);
    EXPECT_EQ(view_of(maker), "A1 B1 C1");
    EXPECT_EQ(maker.molecules()->size(), 1u);
    EXPECT_EQ(maker.molecules3d()->size(), 1u);
    EXPECT_EQ(maker.natoms(), 3);

    // Lookups go through the view only.
    c->atom(0)->set_symmtag(3);
    EXPECT_EQ(maker.find_molecule(0, 3), c);
    maker.select_2d();
    EXPECT_EQ(maker.find_molecule(0, 3).unhand(), nullptr);
    EXPECT_EQ(maker.find_molecule(0, -1), a);
    HMolecule where;
    int index = 7;
    EXPECT_TRUE(maker.find_atom(-1, b->atom(0)->site()->orth(), where, index));
    EXPECT_EQ(where, b);
    EXPECT_EQ(index, 0);
    EXPECT_FALSE(maker.find_atom(3, c->atom(0)->site()->orth(), where, index));
    EXPECT_EQ(index, -1);
}

TEST(CrystalMaker, AtomAndBondRemovalSplitsOnlyWhereAMoleculeMayFallApart) {
    // A ring C1..C6 with C7 on C1 and, unbonded to it, a water: two parts in
    // one molecule, so that every split shows.
    HMolecule ring = at_frac(monoclinic,
                             "C C1 0.10 0.10 0.10; C C2 0.20 0.10 0.10; C C3 0.25 0.18 0.10; C C4 0.20 0.26 0.10; "
                             "C C5 0.10 0.26 0.10; C C6 0.05 0.18 0.10; C C7 0.03 0.03 0.10; O O1 0.5 0.5 0.5; "
                             "H H1 0.55 0.5 0.5",
                             "C1-C2 C2-C3 C3-C4 C4-C5 C5-C6 C6-C1 C1-C7 O1-H1");
    HMolecule other = at_frac(monoclinic, "N N1 0.7 0.7 0.7");
    CrystalMaker maker(monoclinic, list_of({other}), nullptr, list_of({ring}));
    maker.select_all();
    maker.remove(atom_labelled(*ring, "C7"));  // a chain end: no split
    EXPECT_EQ(ring->ncomponents(), 2);
    maker.remove(atom_labelled(*ring, "C3"));  // in a ring, two bonds: no split
    EXPECT_EQ(ring->ncomponents(), 2);
    // Two bonds, no longer cyclic: split. The part of the lowest atom stays;
    // C4, left alone, and the water join the matched list, though the
    // molecule stands in the 3d list.
    maker.remove(atom_labelled(*ring, "C5"));
    EXPECT_EQ(labels_text(*ring), "C1 C2 C6");
    EXPECT_EQ(view_of(maker), "N1 C4 O1 C1");
    EXPECT_EQ(labels_text(*maker.molecule(2)), "O1 H1");
    EXPECT_EQ(bonds_of(*maker.molecule(2)), "O1-H1");

    // A molecule that already holds an isolated atom is not split.
    HMolecule chain = at_frac(monoclinic, "C C1 0.1 0.6 0.1; C C2 0.2 0.6 0.1; C C3 0.3 0.6 0.1; N N1 0.1 0.9 0.9",
                              "C1-C2 C2-C3");
    maker.add(chain, CrystalMaker::Select2d);
    maker.remove(atom_labelled(*chain, "C2"));
    EXPECT_EQ(labels_text(*chain), "C1 C3 N1");
    // A bond that is not cyclic splits its molecule; the piece goes to the
    // matched list whatever list the molecule is in.
    HMolecule pair = at_frac(monoclinic, "O O1 0.6 0.1 0.1; O O2 0.65 0.1 0.1", "O1-O2");
    maker.add(pair, CrystalMaker::Select3d);
    maker.remove(bond_between(*pair, "O1", "O2"));
    EXPECT_EQ(labels_text(*pair), "O1");
    EXPECT_EQ(maker.molecules()->back()->atom(0)->label(), "O2");
    // The last atom of a molecule takes the molecule out of every list.
    const std::size_t before = maker.molecules3d()->size();
    maker.remove(pair->atom(0));
    EXPECT_EQ(maker.molecules3d()->size(), before - 1);
    EXPECT_EQ(view_of(maker), "N1 C4 O1 O2 C1 C1");

    // An atom or bond outside the view is refused, and nothing changes.
    maker.select_matched();
    const std::string state = printed(maker);
    EXPECT_EQ(error_text<std::invalid_argument>([&] { maker.remove(chain->atom(0)); }),
              "CrystalMaker::remove(HAtom): atom is not in any of the currently-selected molecules");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { maker.remove(HAtom()); }),
              "CrystalMaker::remove(HAtom): atom is not in any of the currently-selected molecules");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { maker.remove(ring->bond(0)); }),
              "CrystalMaker::remove(HBond): bond is not in any of the currently-selected molecules");
    EXPECT_EQ(printed(maker), state);
}

TEST(CrystalMaker, BondingTwoMoleculesMovesAllAtomsIntoTheFirst) {
    HMolecule first = at_frac(monoclinic, "C C1 0.1 0.1 0.1; O O1", "C1-O1");
    HMolecule second = at_frac(monoclinic, "N N1 0.2 0.1 0.1; H H1 0.25 0.1 0.1", "N1-H1");
    CrystalMaker maker(monoclinic, list_of({first}), nullptr, list_of({second}));
    maker.select_3d();
    const std::string state = printed(maker);
    // Refusals come before any change.
    HAtom outsider = atom_at(Element::C, "X1", 0, 0, 0);
    EXPECT_EQ(error_text<std::invalid_argument>(
                  [&] { maker.add(HBond(new Bond3d(SINGLE_BOND)), outsider, second->atom(0)); }),
              "CrystalMaker::add(HBond, HAtom, HAtom): atom1 is not in any of the currently-selected molecules");
    EXPECT_EQ(error_text<std::invalid_argument>(
                  [&] { maker.add(HBond(new Bond3d(SINGLE_BOND)), first->atom(0), HAtom()); }),
              "CrystalMaker::add(HBond, HAtom, HAtom): atom2 is not in any of the currently-selected molecules");
    EXPECT_THROW(maker.add(HBond(), first->atom(0), second->atom(0)), std::invalid_argument);
    EXPECT_THROW(maker.add(second->bond(0), first->atom(0), second->atom(0)), std::domain_error);
    EXPECT_THROW(maker.add(HBond(new Bond3d(SINGLE_BOND)), first->atom(0), first->atom(0)), std::invalid_argument);
    EXPECT_EQ(printed(maker), state);

    maker.add(HBond(new Bond3d(SINGLE_BOND)), first->atom(0), second->atom(0));
    // The sited atoms of the second come before the siteless one of the
    // first; bonds with two sited ends before the one with one.
    EXPECT_EQ(labels_text(*first), "C1 N1 H1 O1");
    EXPECT_EQ(bonds_of(*first), "N1-H1 C1-N1 C1-O1");
    EXPECT_EQ(second->natoms(), 0);
    EXPECT_TRUE(maker.molecules3d()->empty());
    EXPECT_EQ(view_of(maker), "C1");
    // Within one molecule, a bond is added and the bonds are kept in order.
    maker.add(HBond(new Bond3d(SINGLE_BOND)), first->atom(2), first->atom(3));
    EXPECT_EQ(bonds_of(*first), "N1-H1 C1-N1 C1-O1 H1-O1");
    maker.add(HBond(new Bond3d(SINGLE_BOND)), first->atom(0), first->atom(2));
    EXPECT_EQ(bonds_of(*first), "N1-H1 C1-N1 C1-H1 C1-O1 H1-O1");
}

TEST(CrystalMaker, CellChangesKeepFractionalOrOrthogonalPoints) {
    HMolecule m = at_frac(monoclinic, "C C1 0.1 0.2 0.3; O O1 0.15 0.25 0.35; N N1", "C1-O1");
    HMolecule diagram = at_frac(monoclinic, "S S1 0.4 0.5 0.6");
    CrystalMaker maker(monoclinic, list_of({m}), list_of({diagram}), nullptr);
    const Cell bigger(12, 11, 12, Angle::from_degrees(90), Angle::from_degrees(100), Angle::from_degrees(90),
                      p21_c());
    maker.set_cell(bigger, CrystalMaker::KeepFractional);
    EXPECT_EQ(maker.cell(), bigger);
    EXPECT_EQ(place(m->atom(1)->site()->frac()), "(0.15, 0.25, 0.35)");
    const Point orth = bigger.orthogonal(Point(0.15, 0.25, 0.35));
    EXPECT_TRUE(equals(m->atom(1)->site()->orth(), orth, 1e-12));
    EXPECT_EQ(place(diagram->atom(0)->site()->frac()), "(0.4, 0.5, 0.6)");
    maker.set_cell(monoclinic, CrystalMaker::KeepOrthogonal);
    EXPECT_TRUE(equals(m->atom(1)->site()->orth(), orth, 1e-12));
    const Point frac = m->atom(1)->site()->frac();
    EXPECT_TRUE(equals(frac, monoclinic.fractional(orth), 1e-12));
    maker.set_cell(bigger, static_cast<CrystalMaker::CoordinatesToKeep>(7));  // anything but 1 keeps fractional
    EXPECT_EQ(m->atom(1)->site()->frac(), frac);

    // A fresh maker for the changes of axes.
    m = at_frac(monoclinic, "C C1 0.1 0.2 0.3; O O1 0.15 0.25 0.35; N N1", "C1-O1");
    diagram = at_frac(monoclinic, "S S1 0.4 0.5 0.6");
    maker = CrystalMaker(monoclinic, list_of({m}), list_of({diagram}), nullptr);
    m = maker.molecule(0);  // the assignment copied them
    diagram = maker.molecule(1);
    const Point start = m->atom(1)->site()->orth();
    // The identity still gives up the symmetry; in the standard orientation
    // nothing moves.
    maker.transform(Matrix<int, 3, 3>(1, 0, 0, 0, 1, 0, 0, 0, 1));
    EXPECT_EQ(maker.cell().spacegroup().name(), "P1");
    EXPECT_EQ(maker.cell().spacegroup().number(), -1);
    EXPECT_EQ(maker.cell().spacegroup().noperators(), 0);
    EXPECT_TRUE(equals(m->atom(1)->site()->orth(), start, 1e-9));
    EXPECT_EQ(place(m->atom(1)->site()->frac()), "(0.15, 0.25, 0.35)");
    // New axes b, c, a: fractional coordinates turn with them, distances stay.
    const double d = m->distance(0, 1);
    maker.transform(Matrix<int, 3, 3>(0, 1, 0, 0, 0, 1, 1, 0, 0));
    EXPECT_NEAR(maker.cell().a(), 11, 1e-9);
    EXPECT_NEAR(maker.cell().b(), 12, 1e-9);
    EXPECT_NEAR(maker.cell().c(), 10, 1e-9);
    EXPECT_EQ(place(m->atom(1)->site()->frac()), "(0.25, 0.35, 0.15)");
    EXPECT_EQ(place(diagram->atom(0)->site()->frac()), "(0.5, 0.6, 0.4)");
    EXPECT_NEAR(m->distance(0, 1), d, 1e-12);
    EXPECT_EQ(place(maker.cell().a_axis()), "(11, 0, 0)");

    // A left-handed or a flat set of axes is refused, and nothing changes.
    const std::string state = printed(maker);
    EXPECT_EQ(error_text<std::runtime_error>([&] { maker.transform(Matrix<int, 3, 3>(-1, 0, 0, 0, 1, 0, 0, 0, 1)); }),
              "CrystalMaker::transform(): determinant < 0.");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { maker.transform(Matrix<int, 3, 3>(1, 0, 0, 1, 0, 0, 0, 0, 1)); }),
              "CrystalMaker::transform(): the new axes span no volume.");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { maker.transform(Matrix<int, 3, 3>(1, 0, 0, 0, 1, 0, 1, 1, 0)); }),
              "CrystalMaker::transform(): the new axes span no volume.");
    EXPECT_THROW(maker.transform(Matrix<int, 3, 3>(1 << 21, 0, 0, 0, 1, 0, 0, 0, 1)), std::invalid_argument);
    EXPECT_EQ(printed(maker), state);
}

TEST(CrystalMaker, SymmetryRelationsByTagOrByCell) {
    HMolecule a = at_frac(monoclinic, "C C1 0.1 0.2 0.3; O O1 0.15 0.25 0.35", "C1-O1");
    const CrystalSymmetryTransformation screw(CrystalSymmetryOperator("-x,y+1/2,-z+1/2"), Vector<int, 3>(1, 0, 1));
    HMolecule b = a->create_molecule(screw, monoclinic);
    HMolecule c = at_frac(monoclinic, "C C1 0.6 0.2 0.3; O O1 0.65 0.25 0.35", "C1-O1");
    CrystalMaker maker(monoclinic, list_of({a, b, c}), list_of({c}), nullptr);
    maker.select_2d();
    EXPECT_TRUE(maker.is_symmetry_related(0, 1));  // the matched list, not the view
    EXPECT_FALSE(maker.is_symmetry_related(0, 2));
    EXPECT_TRUE(maker.is_symmetry_related(9, 9));  // the same index, no look
    EXPECT_THROW(maker.is_symmetry_related(0, 3), std::out_of_range);
    // Known tags decide alone: equal tags relate any atoms, unequal ones none.
    c->atom(1)->set_symmtag(4);
    a->atom(0)->set_symmtag(4);
    EXPECT_TRUE(maker.is_symmetry_related(0, 2));
    a->atom(1)->set_symmtag(7);
    b->atom(0)->set_symmtag(5);
    b->atom(1)->set_symmtag(6);
    EXPECT_FALSE(maker.is_symmetry_related(*a, *b));
    EXPECT_TRUE(maker.is_symmetry_related(*a, *a));

    // All listed atoms must have a partner; siteless ones are passed over.
    HMolecule image = a->create_molecule(screw, monoclinic);
    for (int i = 0; i < 2; ++i) image->atom(i)->set_symmtag(-1);
    image->add(atom_without_site(Element::N, "N1"));
    EXPECT_TRUE(maker.are_all_symmetry_related(*a, *image, {0, 1, 2}));
    image->atom(1)->site()->set_frac(Point(0.5, 0.5, 0.5), monoclinic);
    EXPECT_FALSE(maker.are_all_symmetry_related(*a, *image, {0, 1}));
    EXPECT_TRUE(maker.are_all_symmetry_related(*a, *image, {0}));

    // Symmetry atoms inside one molecule: a molecule across an inversion
    // centre holds them; the maker then needs no expansion.
    HMolecule across = at_frac(monoclinic, "C C1 0.45 0.5 0.5; C C2 0.55 0.5 0.5; N N1 0.4 0.5 0.5", "C1-C2 C1-N1");
    EXPECT_TRUE(CrystalMakerHelpers::molecule_contains_symmetry_atoms(monoclinic, *across, 1e-05));
    EXPECT_FALSE(CrystalMakerHelpers::molecule_contains_symmetry_atoms(monoclinic, *c, 1e-05));
    EXPECT_TRUE(CrystalMakerHelpers::molecule_expansion_needed(maker));
    maker.add(across, CrystalMaker::Select2d);
    EXPECT_FALSE(CrystalMakerHelpers::molecule_expansion_needed(maker));
}

TEST(CrystalMaker, GeneratedCrystals) {
    HMolecule m = at_frac(monoclinic, "C C1 0.1 0.2 0.3; O O1 0.15 0.25 0.35; N N1; H H1 0.05 0.2 0.3",
                          "C1-O1 C1-H1 C1-N1");
    HMolecule diagram = at_frac(monoclinic, "S S1 0.4 0.45 0.6");
    HMolecule unmatched = at_frac(monoclinic, "Cl Cl1 0.7 0.7 0.7");
    CrystalMaker maker(monoclinic, list_of({m}), list_of({diagram}), list_of({unmatched}));
    // The asymmetric unit: matched then unmatched 3d, sited atoms only.
    HCrystal asu = maker.create_crystal();
    ASSERT_EQ(asu->nmolecules(), 2);
    EXPECT_EQ(labels_text(*asu->molecule(0)), "C1 O1 H1");
    EXPECT_EQ(bonds_of(*asu->molecule(0)), "C1-O1 C1-H1");
    EXPECT_EQ(labels_text(*asu->molecule(1)), "Cl1");

    // The narrowing helpers copy only when they narrow.
    EXPECT_EQ(CrystalMakerHelpers::lazy_select_3d(unmatched), unmatched);
    HMolecule sited = CrystalMakerHelpers::lazy_select_3d(m);
    EXPECT_EQ(labels_text(*sited), "C1 O1 H1");
    EXPECT_EQ(m->natoms(), 4);
    EXPECT_EQ(CrystalMakerHelpers::lazy_subset(m, {3, 2, 1, 0}), m);
    HMolecule part = CrystalMakerHelpers::lazy_subset(m, {0, 3});
    EXPECT_NE(handle_dynamic_cast<MoleculeSubset>(part).unhand(), nullptr);
    EXPECT_EQ(bonds_of(*part), "C1-H1");

    // Images of the current view (Select2d: m and the diagram's molecule).
    const FractionalSolid unit(THandle<Solid>(new Box(Point(0, 0, 0), Point(1, 1, 1))));
    const IfCentroidIncluded<HAtom> by_centroid;
    HCrystal packed = maker.create_crystal(by_centroid, unit);
    EXPECT_EQ(packed->nmolecules(), 8);
    EXPECT_EQ(labels_text(*packed->molecule(3)), "C1 O1 H1");
    EXPECT_EQ(bonds_of(*packed->molecule(3)), "C1-O1 C1-H1");
    EXPECT_EQ(maker.create_crystal(1, by_centroid, unit)->nmolecules(), 4);
    HCrystal two = maker.create_crystal(0, {0, 1}, by_centroid, unit);
    ASSERT_EQ(two->nmolecules(), 4);
    EXPECT_EQ(bonds_of(*two->molecule(2)), "C1-O1");
    EXPECT_THROW(maker.create_crystal(2, by_centroid, unit), std::out_of_range);
    EXPECT_THROW(maker.create_crystal(0, {0, 2}, by_centroid, unit), std::invalid_argument);  // N1 has no site
    EXPECT_THROW(maker.create_crystal(0, {0, 9}, by_centroid, unit), std::out_of_range);

    // Which current molecule holds an atom or a bond.
    EXPECT_EQ(CrystalMakerHelpers::molecule(maker, m->atom(2)), m);
    EXPECT_EQ(CrystalMakerHelpers::molecule(maker, m->bond(1)), m);
    EXPECT_EQ(CrystalMakerHelpers::molecule(maker, unmatched->atom(0)).unhand(), nullptr);
    EXPECT_EQ(CrystalMakerHelpers::molecule(maker, HBond()).unhand(), nullptr);
    EXPECT_EQ(place(CrystalMakerHelpers::transform_axis(Vector<int, 3>(1, 0, 2), Cell())), "(1, 0, 2)");
}

TEST(CrystalMaker, ArchiveLayoutPrintFormAndEquality) {
    HMolecule a = at_frac(monoclinic, "C C1 0.1 0.2 0.3; O O1", "C1-O1");
    HMolecule b = at_frac(monoclinic, "S S1 0.4 0.5 0.6");
    HMolecule c = at_frac(monoclinic, "Cl Cl1 0.7 0.7 0.7");
    CrystalMaker maker(monoclinic, list_of({a}), list_of({}), list_of({b, c}));
    const std::vector<unsigned char> bytes = written(maker);
    const std::vector<unsigned char> blanks(8, ' ');
    EXPECT_EQ(bytes, written(monoclinic) + std::vector<unsigned char>{0} + words({8}) + blanks + words({1}) +
                         written(*a) + words({0}) + words({2}) + written(*b) + written(*c));

    // A Select2d archive keeps its 3d list, which the view leaves out.
    Archive ar = archive_of(bytes);
    CrystalMaker back(ar);
    EXPECT_EQ(back.selection(), CrystalMaker::Select2d);
    EXPECT_EQ(back.nmolecules(), 1);
    EXPECT_EQ(back.molecules3d()->size(), 2u);
    EXPECT_EQ(*(*back.molecules3d())[1], *c);
    EXPECT_EQ(back, maker);
    EXPECT_EQ(written(back), bytes);
    back.select_3d();
    EXPECT_EQ(back.nmolecules(), 3);
    EXPECT_NE(back, maker);

    // Print form, every line.
    EXPECT_EQ(printed(maker), "cell: " + printed(monoclinic) +
                                  "\nselection: 0\nmatched molecules: 1\nmolecule 0:\n" + printed(*a) +
                                  "unmatched molecules 2d: 0\nunmatched molecules 3d: 2\nmolecule 0:\n" + printed(*b) +
                                  "molecule 1:\n" + printed(*c) +
                                  "current molecules: 1 natoms: 2 nbonds: 1\nmolecule 0:\n" + printed(*a));

    // Equality looks at the cell and the view only; copies are deep.
    CrystalMaker copy(maker);
    EXPECT_NE(copy.molecule(0), a);
    EXPECT_EQ(copy, maker);
    copy.molecules3d()->clear();
    EXPECT_EQ(copy, maker);
    copy.molecule(0)->atom(0)->set_label("C9");
    EXPECT_NE(copy, maker);
    copy = maker;
    EXPECT_EQ(copy.molecules3d()->size(), 2u);
    EXPECT_NE((*copy.molecules3d())[0], b);
    const CrystalMaker& same = copy;
    copy = same;
    EXPECT_EQ(copy, maker);

    // Corrupt archives: a bad selection byte, a negative count, truncation;
    // the maker is left as it was.
    const std::string state = printed(back);
    std::vector<unsigned char> bad = bytes;
    const std::size_t selection_at = written(monoclinic).size();
    bad[selection_at] = 9;
    Archive bad_ar = archive_of(bad);
    EXPECT_EQ(error_text<std::runtime_error>([&] { back.read(bad_ar); }),
              "CrystalMaker::read selection: selection 9 is not 0 to 3");
    bad = bytes;
    bad[selection_at + 16] = 0xff;  // the matched count's high byte: negative
    Archive negative_ar = archive_of(bad);
    EXPECT_NE(error_text<std::runtime_error>([&] { back.read(negative_ar); }).find("CrystalMaker::read matched molecules"),
              std::string::npos);
    for (std::size_t n = 0; n < bytes.size(); n += 5) {
        Archive cut_ar = archive_of(cut(bytes, n));
        EXPECT_THROW(back.read(cut_ar), std::runtime_error) << n;
    }
    EXPECT_EQ(printed(back), state);
}

TEST(CrystalMaker, LifetimeLogLines) {
    const std::string log = log_of(3, [] { CrystalMaker x; });
    EXPECT_EQ(log.substr(0, 39), "Entered CrystalMaker::CrystalMaker() - ");
    EXPECT_NE(log.find("Entered CrystalMaker::~CrystalMaker() - "), std::string::npos);
    EXPECT_NE(log_of(3, [] { CrystalMaker x(monoclinic, nullptr, nullptr, nullptr); })
                  .find("Entered CrystalMaker::CrystalMaker(const Cell& cell, Hvector_HMolecule molecules, "
                        "Hvector_HMolecule molecules2d, Hvector_HMolecule molecules3d) - "),
              std::string::npos);
    CrystalMaker original;
    EXPECT_NE(log_of(3, [&] { CrystalMaker copy(original); }).find("Entered CrystalMaker::CrystalMaker(const CrystalMaker& x) - "),
              std::string::npos);
    Archive ar = Archive::temporary();
    original.write(ar);
    ar.rewind();
    EXPECT_NE(log_of(3, [&] { CrystalMaker read(ar); }).find("Entered CrystalMaker::CrystalMaker(Archive& ar) - "),
              std::string::npos);
}

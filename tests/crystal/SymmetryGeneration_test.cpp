// Symmetry generation in real spacegroups: images of molecules in general
// position and on symmetry elements (inversion centre, mirror, 2-fold axis),
// the first image owning a place, the two search routes of IfAnyIncluded,
// one point's distinct images, proxies as sources, and packing counts.
#include "molcryst/crystal/SymmetryGeneration.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "crystal/CrystalTestSupport.h"
#include "molcryst/crystal/CrystalMaker.h"
#include "molcryst/crystal/CrystalMakerHelpers.h"
#include "molcryst/crystal/SymmetryInclusionCondition.h"
#include "molcryst/geometry/FractionalSolid.h"
#include "molcryst/molecule/MoleculeSubset.h"
#include "molcryst/molecule/ProxyAtom.h"

using namespace molcryst;
using namespace molcryst::testing;
using namespace molcryst_test;

namespace {

FractionalSolid box_solid(const Point& a, const Point& b) { return FractionalSolid(THandle<Solid>(new Box(a, b))); }

std::vector<HAtom> atoms_of(const Molecule& m) { return CrystalMaker::create_atom_list(m); }

// The maker of one molecule, matched.
CrystalMaker maker_of(const Cell& cell, const HMolecule& m) {
    return CrystalMaker(cell, Hvector_HMolecule(new vector_HMolecule{m}), Hvector_HMolecule(), Hvector_HMolecule());
}

const IfAnyIncluded<HAtom> any_included;
const IfCentroidIncluded<HAtom> centroid_included;

}  // namespace

TEST(SymmetryGeneration, GeneralPositionGivesOneImagePerOperatorInTheCell) {
    const Spacegroup groups[] = {p_1bar(), p21_c(), c2_c(), pbca(), p212121(), r_3_hexagonal(), fm_3m()};
    for (const Spacegroup& group : groups) {
        SCOPED_TRACE(group.name());
        const Cell cell = cell_of(group);
        HMolecule m = at_frac(cell, "C C1 0.13 0.27 0.41; O O1 0.17 0.29 0.44; H H1 0.11 0.31 0.38", "C1-O1 C1-H1");
        const FractionalSolid unit = box_solid(Point(0, 0, 0), Point(1, 1, 1));
        SymmetryMappingLists<HAtom> lists = centroid_included.symmetry_generator(cell, atoms_of(*m), unit);
        ASSERT_EQ(static_cast<int>(lists->size()), group.noperators());
        std::vector<Point> centroids;
        for (const Hvector_HCrystalSymmetryMapping& list : *lists) {
            ASSERT_EQ(list->size(), 3u);
            std::vector<Point> targets;
            for (int k = 0; k < 3; ++k) {
                const HCrystalSymmetryMapping& mapping = (*list)[static_cast<std::size_t>(k)];
                EXPECT_EQ(mapping->source(), m->atom(k));
                EXPECT_EQ(mapping->target()->label(), m->atom(k)->label());
                const Point& frac = mapping->target()->site()->frac();
                EXPECT_TRUE(equals(frac, mapping->transformation().apply(m->atom(k)->site()->frac()), 1e-12));
                EXPECT_TRUE(equals(mapping->target()->site()->orth(), cell.orthogonal(frac), 1e-9));
                targets.push_back(frac);
            }
            const Point c = centroid(targets);
            EXPECT_TRUE(unit.contains(cell, c));
            for (const Point& other : centroids) EXPECT_FALSE(equals(other, c, 1e-6));
            centroids.push_back(c);
        }
        // Packing boxes: the unit cell, and eight cells.
        const CrystalMaker maker = maker_of(cell, m);
        EXPECT_EQ(CrystalMakerHelpers::create_packed_crystal(maker, Box(Point(0, 0, 0), Point(1, 1, 1)))->nmolecules(),
                  group.noperators());
        HCrystal eight = CrystalMakerHelpers::create_packed_crystal(maker, Box(Point(0, 0, 0), Point(2, 2, 2)));
        EXPECT_EQ(eight->nmolecules(), 8 * group.noperators());
        EXPECT_EQ(eight->nbonds(), 16 * group.noperators());
    }
}

TEST(SymmetryGeneration, InversionCentreImagesAppearOnce) {
    const Cell cell = cell_of(p21_c());
    // A centrosymmetric molecule about (1/2, 1/2, 1/2), an inversion centre,
    // at coordinates that images reproduce exactly.
    HMolecule whole = at_frac(cell,
                              "C C1 0.4375 0.53125 0.46875; C C2 0.5625 0.46875 0.53125; O O1 0.375 0.5625 0.4375; "
                              "O O2 0.625 0.4375 0.5625",
                              "C1-C2 C1-O1 C2-O2");
    const FractionalSolid box = box_solid(Point(0.25, 0.25, 0.25), Point(1.25, 1.25, 1.25));
    const std::string two_whole =
        "x,y,z: C1 (0.4375, 0.53125, 0.46875) C2 (0.5625, 0.46875, 0.53125) O1 (0.375, 0.5625, 0.4375) O2 (0.625, "
        "0.4375, 0.5625)\n"
        "-x+1,y+1/2,-z+3/2: C1 (0.5625, 1.03125, 1.03125) C2 (0.4375, 0.96875, 0.96875) O1 (0.625, 1.0625, 1.0625) "
        "O2 (0.375, 0.9375, 0.9375)\n";
    // By centroid: the inversion and the glide repeat the identity and the
    // screw axis, so two whole molecules.
    EXPECT_EQ(lists_text(*centroid_included.symmetry_generator(cell, atoms_of(*whole), box)), two_whole);
    // Point by point: the inversion's image loses every atom to the
    // identity's and vanishes; the glide's, likewise to the screw axis's.
    EXPECT_EQ(lists_text(*any_included.symmetry_generator(cell, atoms_of(*whole), box)), two_whole);
    // Half the molecule in the asymmetric unit: the inversion makes the other half.
    HMolecule half = at_frac(cell, "C C1 0.4375 0.53125 0.46875; O O1 0.375 0.5625 0.4375", "C1-O1");
    EXPECT_EQ(lists_text(*any_included.symmetry_generator(cell, atoms_of(*half), box)),
              "x,y,z: C1 (0.4375, 0.53125, 0.46875) O1 (0.375, 0.5625, 0.4375)\n"
              "-x+1,y+1/2,-z+3/2: C1 (0.5625, 1.03125, 1.03125) O1 (0.625, 1.0625, 1.0625)\n"
              "-x+1,-y+1,-z+1: C1 (0.5625, 0.46875, 0.53125) O1 (0.625, 0.4375, 0.5625)\n"
              "x,-y+3/2,z+1/2: C1 (0.4375, 0.96875, 0.96875) O1 (0.375, 0.9375, 0.9375)\n");
    // Where rounding leaves an image 1e-16 beside its twin, only the place at
    // its lower bound is compared: at 0.55 rather than 0.5625 the image of C2
    // sorts before C1 and behind another point of the same u, and survives.
    HMolecule rounded = at_frac(cell, "C C1 0.45 0.52 0.47; C C2 0.55 0.48 0.53", "C1-C2");
    EXPECT_EQ(lists_text(*any_included.symmetry_generator(cell, atoms_of(*rounded), box)),
              "x,y,z: C1 (0.45, 0.52, 0.47) C2 (0.55, 0.48, 0.53)\n"
              "-x+1,y+1/2,-z+3/2: C1 (0.55, 1.02, 1.03) C2 (0.45, 0.98, 0.97)\n"
              "-x+1,-y+1,-z+1: C2 (0.45, 0.52, 0.47)\n"
              "x,-y+3/2,z+1/2: C1 (0.45, 0.98, 0.97)\n");
    // One atom on the centre, in P-1: one mapping survives.
    const Cell triclinic = cell_of(p_1bar());
    HMolecule atom = at_frac(triclinic, "Ni Ni1 0.5 0.5 0.5");
    EXPECT_EQ(lists_text(*any_included.symmetry_generator(triclinic, atoms_of(*atom),
                                                           box_solid(Point(0, 0, 0), Point(1, 1, 1)))),
              "x,y,z: Ni1 (0.5, 0.5, 0.5)\n");
}

TEST(SymmetryGeneration, AtomsOnAMirrorOrATwofoldAxisAppearOnce) {
    // Fm-3m's mirror z = 0: a flat molecule in it is its own image.
    const Cell cubic = cell_of(fm_3m());
    HMolecule flat = at_frac(cubic, "C C1 0.11 0.23 0; O O1 0.15 0.27 0; N N1 0.08 0.19 0", "C1-O1 C1-N1");
    const FractionalSolid near_flat = box_solid(Point(0.05, 0.15, -0.05), Point(0.2, 0.3, 0.05));
    EXPECT_EQ(lists_text(*any_included.symmetry_generator(cubic, atoms_of(*flat), near_flat)),
              "x,y,z: C1 (0.11, 0.23, 0) O1 (0.15, 0.27, 0) N1 (0.08, 0.19, 0)\n");
    EXPECT_EQ(centroid_included.symmetry_generator(cubic, atoms_of(*flat), near_flat)->size(), 1u);
    // One atom in the mirror, one out of it: the mirror image keeps the one
    // out of it, a molecule of one atom and no bond.
    HMolecule leaning = at_frac(cubic, "C C1 0.11 0.23 0; O O1 0.15 0.27 0.03", "C1-O1");
    HCrystal crystal = maker_of(cubic, leaning).create_crystal(any_included, near_flat);
    ASSERT_EQ(crystal->nmolecules(), 2);
    EXPECT_EQ(labels_of(*crystal->molecule(1)), std::vector<std::string>{"O1"});
    EXPECT_EQ(place(crystal->molecule(1)->atom(0)->site()->frac()), "(0.15, 0.27, -0.03)");
    EXPECT_EQ(crystal->nbonds(), 1);

    // C2/c's twofold axis x = 0, z = 1/4.
    const Cell monoclinic = cell_of(c2_c());
    HMolecule on_axis = at_frac(monoclinic, "C C1 0 0.2 0.25; O O1 0.06 0.25 0.31; N N1 0.04 0.14 0.21",
                                "C1-O1 C1-N1");
    const FractionalSolid near_axis = box_solid(Point(-0.1, 0.1, 0.15), Point(0.1, 0.3, 0.35));
    EXPECT_EQ(lists_text(*any_included.symmetry_generator(monoclinic, atoms_of(*on_axis), near_axis)),
              "x,y,z: C1 (0, 0.2, 0.25) O1 (0.06, 0.25, 0.31) N1 (0.04, 0.14, 0.21)\n"
              "-x,y,-z+1/2: O1 (-0.06, 0.25, 0.19) N1 (-0.04, 0.14, 0.29)\n");
    crystal = maker_of(monoclinic, on_axis).create_crystal(any_included, near_axis);
    ASSERT_EQ(crystal->nmolecules(), 2);
    EXPECT_EQ(bonds_of(*crystal->molecule(1)), "");
    EXPECT_EQ(labels_of(*crystal->molecule(1)), (std::vector<std::string>{"O1", "N1"}));
    // By centroid, which is off the axis, both images are whole.
    crystal = maker_of(monoclinic, on_axis).create_crystal(centroid_included, near_axis);
    ASSERT_EQ(crystal->nmolecules(), 2);
    EXPECT_EQ(bonds_of(*crystal->molecule(1)), "C1-O1 C1-N1");
    // Asked for molecule 0 with all its atoms, a list that lost one still
    // gets only the bonds among its own atoms.
    crystal = maker_of(monoclinic, on_axis).create_crystal(0, any_included, near_axis);
    EXPECT_EQ(bonds_of(*crystal->molecule(1)), "");
}

namespace {

// The sorted-vector form of remove_duplicate_points, kept as the reference.
std::vector<Hvector_HCrystalSymmetryMapping> literal_remove_duplicate_points(
    const std::vector<Hvector_HCrystalSymmetryMapping>& lists, double tolerance) {
    std::vector<Hvector_HCrystalSymmetryMapping> result;
    std::vector<Point> sorted;
    for (const Hvector_HCrystalSymmetryMapping& list : lists) {
        Hvector_HCrystalSymmetryMapping kept(new vector_HCrystalSymmetryMapping());
        for (const HCrystalSymmetryMapping& m : *list) {
            const Point& p = m->target()->site()->frac();
            auto at = std::lower_bound(sorted.begin(), sorted.end(), p, PointCompareXYZ());
            if (at != sorted.end() && equals(*at, p, tolerance)) continue;
            sorted.insert(at, p);
            kept->push_back(m);
        }
        if (!kept->empty()) result.push_back(kept);
    }
    return result;
}

HCrystalSymmetryMapping mapping_to(const Point& frac, const std::string& label = "C1") {
    HAtom a = atom_at(Element::C, label, frac[0], frac[1], frac[2]);
    return HCrystalSymmetryMapping(new AtomSymmetryMapping(a, a, CrystalSymmetryTransformation()));
}

Hvector_HCrystalSymmetryMapping list_of(const std::vector<HCrystalSymmetryMapping>& mappings) {
    return Hvector_HCrystalSymmetryMapping(new vector_HCrystalSymmetryMapping(mappings));
}

}  // namespace

TEST(SymmetryGeneration, RemoveDuplicatePointsComparesTheLowerBoundOnly) {
    EXPECT_TRUE(remove_duplicate_points(vector_Hvector_HCrystalSymmetryMapping(), 1e-07)->empty());
    // The first list owns a place; a list that loses everything vanishes.
    HCrystalSymmetryMapping a = mapping_to(Point(0.1, 0.2, 0.3), "A"), b = mapping_to(Point(0.4, 0.5, 0.6), "B");
    // Each new point lies just before the kept one in x, y, z order, so
    // that the kept one is its lower bound.
    HCrystalSymmetryMapping a2 = mapping_to(Point(0.1 - 0.99e-7, 0.2 + 0.99e-7, 0.3 - 0.99e-7), "A2");
    HCrystalSymmetryMapping b2 = mapping_to(Point(0.4 - 1.01e-7, 0.5, 0.6), "B2");
    EXPECT_EQ(lists_text(*remove_duplicate_points(vector_Hvector_HCrystalSymmetryMapping{list_of({a, b}),
                                                                                          list_of({a2}), list_of({b2})},
                                                  1e-07)),
              "x,y,z: A (0.1, 0.2, 0.3) B (0.4, 0.5, 0.6)\n"
              "x,y,z: B2 (0.4, 0.5, 0.6)\n");
    // A point equal to a kept one that is not its lower bound stays: here
    // the lower bound of P is Q, a little further along x but far in y.
    HCrystalSymmetryMapping r = mapping_to(Point(0.1, 0.3, 0), "R"), q = mapping_to(Point(0.1 + 5e-8, 0, 0), "Q");
    HCrystalSymmetryMapping p = mapping_to(Point(0.1 + 2e-8, 0.3, 0), "P");
    EXPECT_EQ(remove_duplicate_points(vector_Hvector_HCrystalSymmetryMapping{list_of({r, q}), list_of({p})}, 1e-07)
                  ->size(),
              2u);

    // Crowded random places against the sorted-vector form: the same
    // mappings kept, in the same lists. Places lie on a grid of 0.6e-7 so
    // that near and exact coincidences abound; a tolerance of 0 keeps exact
    // repeats too.
    std::mt19937 random(15);
    std::uniform_int_distribution<int> step(0, 40);
    for (double tolerance : {1e-07, 0.0}) {
        vector_Hvector_HCrystalSymmetryMapping lists;
        for (int l = 0; l < 60; ++l) {
            vector_HCrystalSymmetryMapping list;
            for (int k = 0; k < 30; ++k)
                list.push_back(mapping_to(Point(0.5 + step(random) * 0.6e-7, 0.25 + (step(random) % 4) * 0.6e-7,
                                                (step(random) % 3) * 0.6e-7)));
            lists.push_back(list_of(list));
        }
        const std::vector<Hvector_HCrystalSymmetryMapping> expected = literal_remove_duplicate_points(lists, tolerance);
        SymmetryMappingLists<HAtom> got = remove_duplicate_points(lists, tolerance);
        ASSERT_EQ(got->size(), expected.size());
        for (std::size_t l = 0; l < expected.size(); ++l) EXPECT_EQ(*(*got)[l], *expected[l]) << l;
    }
}

TEST(SymmetryGeneration, BothSearchRoutesAndTheInclusionRules) {
    // Nine atoms take the box route, eight the point route; each must give
    // what the other route gives on the same atoms.
    const std::string atoms =
        "C C1 0.11 0.23 0.05; C C2 0.16 0.26 0.09; C C3 0.21 0.22 0.12; O O1 0.26 0.27 0.16; N N1 0.09 0.31 0.02; "
        "C C4 0.14 0.18 0.14; C C5 0.19 0.14 0.18; O O2 0.24 0.12 0.21; Cl Cl1 0.28 0.08 0.24";
    for (const Spacegroup& group : {p21_c(), fm_3m(), r_3_hexagonal()}) {
        SCOPED_TRACE(group.name());
        const Cell cell = cell_of(group);
        HMolecule nine = at_frac(cell, atoms);
        HMolecule eight = at_frac(cell, atoms.substr(0, atoms.rfind(';')));
        // A region that cuts through some images and misses others.
        const FractionalSolid region = box_solid(Point(-0.3, 0.1, -0.1), Point(0.3, 0.7, 0.3));
        for (const HMolecule& m : {nine, eight}) {
            const std::vector<HAtom> list = atoms_of(*m);
            const std::string by_points = lists_text(*remove_duplicate_points(
                *apply_symmetry(cell, find_symmetry_transformations(cell, list, region, SymmetryFunctions::AnyIncluded),
                                list),
                1e-07));
            THandle<Box> box(new Box());
            for (const HAtom& a : list) box->merge(a->site()->frac());
            const std::string by_box = lists_text(*remove_duplicate_points(
                *apply_symmetry_if(cell,
                                   find_symmetry_transformations(cell, FractionalSolid(box), region,
                                                                 SymmetryFunctions::AnyIncluded),
                                   list, region, SymmetryFunctions::AnyIncluded),
                1e-07));
            EXPECT_EQ(by_points, by_box);
            EXPECT_EQ(lists_text(*any_included.symmetry_generator(cell, list, region)), by_points);
            EXPECT_GT(std::count(by_points.begin(), by_points.end(), '\n'), 1);
        }
    }

    // One transformation, three rules: each point alone, any, all.
    const Cell cell = cell_of(p21_c());
    HMolecule m = at_frac(cell, "C C1 0.1 0.1 0.1; C C2 0.3 0.1 0.1; C C3 0.5 0.1 0.1");
    const FractionalSolid left = box_solid(Point(0, 0, 0), Point(0.35, 1, 1));
    const CrystalSymmetryTransformation identity;
    EXPECT_EQ(lists_text({apply_symmetry_if(cell, identity, atoms_of(*m), left, SymmetryFunctions::EachIncluded)}),
              "x,y,z: C1 (0.1, 0.1, 0.1) C2 (0.3, 0.1, 0.1)\n");
    EXPECT_EQ(apply_symmetry_if(cell, identity, atoms_of(*m), left, SymmetryFunctions::AnyIncluded)->size(), 3u);
    EXPECT_EQ(apply_symmetry_if(cell, identity, atoms_of(*m), left, SymmetryFunctions::AllIncluded)->size(), 0u);
    const std::vector<CrystalSymmetryTransformation> two = {identity,
                                                            CrystalSymmetryTransformation(CrystalSymmetryOperator(),
                                                                                          Vector<int, 3>(1, 0, 0))};
    SymmetryMappingLists<HAtom> kept = apply_symmetry_if(cell, two, atoms_of(*m), left, SymmetryFunctions::AnyIncluded);
    ASSERT_EQ(kept->size(), 2u);  // the empty result stays in its place
    EXPECT_EQ((*kept)[1]->size(), 0u);
}

TEST(SymmetryGeneration, OnePointsDistinctImagesAndCentroidsOutside) {
    // The origin of Fm-3m in the closed unit cube: 8 corners and 6 face centres.
    const Cell cubic = cell_of(fm_3m());
    const FractionalSolid unit = box_solid(Point(0, 0, 0), Point(1, 1, 1));
    std::vector<CrystalSymmetryTransformation> ts = find_symmetry_transformations<Point>(cubic, Point(0, 0, 0), unit);
    ASSERT_EQ(ts.size(), 14u);
    EXPECT_TRUE(ts[0].is_identity());  // the first operator and translation own the place
    EXPECT_EQ(find_symmetry_transformations<Point>(cubic, Point(0.12, 0.23, 0.37), unit).size(), 192u);

    // A centroid outside the region gives nothing, though an atom is inside.
    const Cell cell = cell_of(p_1bar());
    HMolecule m = at_frac(cell, "C C1 0.45 0.5 0.5; C C2 0.75 0.5 0.5");
    // The centroids are at u = 0.6 and, for the inversion's image, 0.4.
    const FractionalSolid left = box_solid(Point(0.42, 0.2, 0.2), Point(0.58, 0.8, 0.8));
    EXPECT_EQ(centroid_included.symmetry_generator(cell, atoms_of(*m), left)->size(), 0u);
    EXPECT_EQ(any_included.symmetry_generator(cell, atoms_of(*m), left)->size(), 2u);
    EXPECT_EQ(centroid_included.symmetry_generator(cell, std::vector<HAtom>(), left)->size(), 0u);

    // The packing box takes in a centroid on its far face, within 0.001 A
    // beyond it, and no further.
    const Cell p1(10, 12, 8, Angle::from_degrees(90), Angle::from_degrees(90), Angle::from_degrees(90));
    const Box half_box(Point(0, 0, 0), Point(1, 0.5, 1));
    for (double over : {0.0, 0.0009, 0.0011}) {
        HMolecule atom = at_frac(p1, "C C1 0.5 0.5 0.5");
        atom->atom(0)->site()->set_frac(Point(0.5, 0.5 + over / 12, 0.5), p1);
        EXPECT_EQ(CrystalMakerHelpers::create_packed_crystal(maker_of(p1, atom), half_box)->nmolecules(),
                  over < 0.001 ? 1 : 0)
            << over;
    }
}

TEST(SymmetryGeneration, ProxySourcesAndSitelessAtoms) {
    const Cell cell = cell_of(p21_c());
    HMolecule parent = at_frac(cell, "C C1 0.1 0.2 0.3; O O1 0.15 0.22 0.33", "C1-O1");
    MoleculeSubset view(parent);
    view.select_atom_indices({1});
    const CrystalSymmetryTransformation screw(CrystalSymmetryOperator("-x,y+1/2,-z+1/2"), Vector<int, 3>(1, 0, 0));
    SymmetryMappingList<HAtom> images = apply_symmetry(cell, screw, CrystalMaker::create_atom_list(view));
    ASSERT_EQ(images->size(), 1u);
    const HAtom target = (*images)[0]->target();
    // The image is of the parent atom, not of the proxy, and free of both molecules.
    EXPECT_EQ(handle_dynamic_cast<ProxyAtom>(target).unhand(), nullptr);
    EXPECT_EQ(target->label(), "O1");
    EXPECT_TRUE(is_free(target));
    EXPECT_NE(target->site(), parent->atom(1)->site());
    EXPECT_EQ(place(target->site()->frac()), "(0.85, 0.72, 0.17)");
    EXPECT_EQ(place(parent->atom(1)->site()->frac()), "(0.15, 0.22, 0.33)");

    // An atom without a site has no image and no place.
    HMolecule siteless = at_frac(cell, "C C1 0.1 0.2 0.3; O O1");
    EXPECT_THROW(apply_symmetry(cell, screw, atoms_of(*siteless)), std::invalid_argument);
    EXPECT_THROW(any_included.symmetry_generator(cell, atoms_of(*siteless), box_solid(Point(), Point(1, 1, 1))),
                 std::invalid_argument);
    EXPECT_THROW(CrystalMaker::create_points(*siteless), std::invalid_argument);
}

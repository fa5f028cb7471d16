#include "molcryst/crystal/NewCrystal.h"

#include <gtest/gtest.h>

#include <sstream>

#include "common/ErrorText.h"
#include "crystal/NewCrystalTestSupport.h"
#include "molcryst/molecule/Bond3d.h"
#include "molcryst/molecule/Site.h"
#include "molcryst/support/Archive.h"

namespace molcryst {
namespace {

using testing::CountingObserver;
using testing::error_text;

// One molecule at a general position of P21/c: four images in the unit cell.
HCrystalMaker p21c_maker() {
    const Cell cell = testing::cell_of(molcryst_test::p21_c());
    return testing::maker_of(cell, {testing::at_frac(cell, "O O1 0.1 0.2 0.3; C C1 0.2 0.25 0.35", "O1-C1")});
}

TEST(NewCrystal, ConstructionSelectsTheMakersThreeDimensionalViewAndShowsTheAsymmetricUnit) {
    HCrystalMaker maker = p21c_maker();
    maker->select_2d();
    NewCrystal crystal(maker);
    EXPECT_EQ(maker->selection(), CrystalMaker::Select3d);
    EXPECT_EQ(crystal.crystal_maker().unhand(), maker.unhand());
    EXPECT_EQ(crystal.crystal_snapshot()->nmolecules(), 1);
    EXPECT_EQ(crystal.contacts()->size(), 0u);
    EXPECT_TRUE(crystal.has_structure());
    EXPECT_TRUE(crystal.has_symmetry());
    EXPECT_FALSE(crystal.packing());
    EXPECT_FALSE(crystal.slicing());
    EXPECT_EQ(crystal.packing_box(), NewCrystal::default_packing_box());
    EXPECT_EQ(crystal.slicing_thickness(), 5);
    EXPECT_EQ(crystal.slicing_displacement(), 0);

    NewCrystal empty;
    EXPECT_FALSE(empty.has_structure());
    EXPECT_EQ(empty.crystal_snapshot()->nmolecules(), 0);
    EXPECT_EQ(empty.crystal_maker()->selection(), CrystalMaker::Select3d);
    EXPECT_TRUE(empty.box().empty());
}

TEST(NewCrystal, SettingsRebuildThePictureOnceAndOnlyWhenTheyChange) {
    NewCrystal crystal(p21c_maker());
    CountingObserver observer;
    crystal.connect(observer);

    crystal.set_packing(true);
    EXPECT_EQ(observer.count, 1);
    EXPECT_EQ(crystal.crystal_snapshot()->nmolecules(), 4);
    crystal.set_packing(true);
    EXPECT_EQ(observer.count, 1);

    const HCrystal packed = crystal.crystal_snapshot();
    crystal.set_packing_box(Box(Point(0, 0, 0), Point(3, 3, 3)));
    EXPECT_EQ(observer.count, 2);
    EXPECT_EQ(crystal.crystal_snapshot()->nmolecules(), 108);
    crystal.set_packing_box(Box(Point(0, 0, 0), Point(3, 3, 3)));
    EXPECT_EQ(observer.count, 2);
    crystal.set_packing_box(NewCrystal::default_packing_box());
    EXPECT_EQ(*crystal.crystal_snapshot(), *packed);

    // A slab of 2 A about the plane z = 6 A within the unit cell: the slice
    // has priority over packing, and only the images near z = 6 stay.
    crystal.set_slicing_plane(Plane(Vector<double, 3>(0, 0, 1), 6));
    EXPECT_EQ(observer.count, 3);  // the box change above
    crystal.set_slicing_thickness(2);
    EXPECT_EQ(observer.count, 3);  // slicing is off: nothing shown changes
    crystal.set_slicing(true);
    EXPECT_EQ(observer.count, 4);
    const HCrystal slice = crystal.crystal_snapshot();
    EXPECT_LT(slice->nmolecules(), 4);
    for (const HMolecule& m : *slice->molecules()) EXPECT_NEAR(m->centroid()[2], 6, 1.0);
    // Settings that leave the slice as it was still tell the observers.
    crystal.set_slicing_displacement(1e-9);
    EXPECT_EQ(observer.count, 5);
    crystal.set_slicing_displacement(1e-9);
    EXPECT_EQ(observer.count, 5);

    crystal.set_slicing(false);
    EXPECT_EQ(*crystal.crystal_snapshot(), *packed);
    crystal.set_packing(false);
    EXPECT_EQ(crystal.crystal_snapshot()->nmolecules(), 1);
    EXPECT_EQ(observer.count, 7);

    const Box box = crystal.box();
    EXPECT_EQ(box, crystal.crystal_snapshot()->molecule(0)->box());

    // Every setting back where it started: the view equals a fresh one.
    crystal.set_slicing_plane(Plane());
    crystal.set_slicing_thickness(NewCrystal::default_slicing_thickness());
    crystal.set_slicing_displacement(NewCrystal::default_slicing_displacement());
    const NewCrystal fresh(HCrystalMaker(new CrystalMaker(*crystal.crystal_maker())));
    EXPECT_EQ(testing::stdout_of([&] { EXPECT_TRUE(crystal == fresh); }), "");
    crystal.set_packing(true);
    EXPECT_EQ(testing::stdout_of([&] { EXPECT_FALSE(crystal == fresh); }),
              "operator==(NewCrystal,NewCrystal): crystal_snapshot differs 4 1\n");
}

TEST(NewCrystal, PackingBoxTakesInACentroidUpToAThousandthOfAnAngstromBeyondItsFaces) {
    const Cell cell = testing::box_cell(10, 11, 12, testing::p1());
    NewCrystal on_face(testing::maker_of(cell, {testing::at_frac(cell, "O O1 1 0.5 0.5")}));
    on_face.set_packing(true);
    EXPECT_EQ(on_face.crystal_snapshot()->nmolecules(), 2);  // at x = 0 and at x = 1
    NewCrystal beyond(testing::maker_of(cell, {testing::at_frac(cell, "O O1 1.00011 0.5 0.5")}));
    beyond.set_packing(true);
    EXPECT_EQ(beyond.crystal_snapshot()->nmolecules(), 1);
}

TEST(NewCrystal, CopiesAreDeepAndKeepSettingsCriteriaAndObservers) {
    NewCrystal crystal(p21c_maker());
    crystal.set_packing(true);
    crystal.set_slicing_plane(Plane(Vector<double, 3>(0, 1, 0), 2));
    crystal.set_slicing_thickness(3);
    crystal.add_contact_criterion(testing::oxygen_contacts(3.0));
    CountingObserver observer;
    crystal.connect(observer);

    NewCrystal copy(crystal);
    EXPECT_TRUE(copy == crystal);
    EXPECT_NE(copy.crystal_maker().unhand(), crystal.crystal_maker().unhand());
    EXPECT_NE(copy.crystal_snapshot().unhand(), crystal.crystal_snapshot().unhand());
    EXPECT_EQ(copy.slicing_thickness(), 3);
    EXPECT_EQ(copy.ncontact_criteria(), 1);
    EXPECT_EQ(copy.nobservers(), 1u);
    // The copy's contacts stand on the copy's molecules.
    for (const HMolecularContact& c : *copy.contacts()) {
        bool found = false;
        for (const HMolecule& m : *copy.crystal_snapshot()->molecules())
            found |= m.unhand() == c->molecule_from().unhand();
        EXPECT_TRUE(found);
    }

    NewCrystal other;
    other.connect(observer);
    other = crystal;
    EXPECT_EQ(observer.count, 1);
    EXPECT_TRUE(other == crystal);
    NewCrystal& same = other;  // self-assignment through a reference
    other = same;
    EXPECT_EQ(observer.count, 1);

    copy.set_slicing_thickness(4);
    EXPECT_EQ(testing::stdout_of([&] { EXPECT_FALSE(copy == crystal); }),
              "operator==(NewCrystal,NewCrystal): slicing_thickness differs\n");

    std::ostringstream printed;
    crystal.print(printed);
    EXPECT_EQ(printed.str().substr(0, 25), "packing: 1\npacking box: (");
    EXPECT_NE(printed.str().find("slicing thickness: 3\nslicing displacement: 0\ncontact criteria: "),
              std::string::npos);
}

TEST(NewCrystal, EditsOnImagesLandOnTheBaseStructureAndNotifyOnce) {
    NewCrystal crystal(p21c_maker());
    crystal.set_packing(true);
    CountingObserver observer;
    crystal.connect(observer);
    const HMolecule image = crystal.crystal_snapshot()->molecule(2);
    EXPECT_EQ(crystal.base_molecule(image->atom(0)).unhand(), crystal.crystal_maker()->molecule(0).unhand());
    EXPECT_EQ(crystal.base_atom(image->atom(1)).unhand(), crystal.crystal_maker()->molecule(0)->atom(1).unhand());
    EXPECT_EQ(crystal.base_bond(image->bond(0)).unhand(), crystal.crystal_maker()->molecule(0)->bond(0).unhand());

    // The bond type: once for a change, never for the same type.
    crystal.set_bond_type(image->bond(0), DOUBLE_BOND);
    EXPECT_EQ(observer.count, 1);
    EXPECT_EQ(crystal.crystal_maker()->molecule(0)->bond(0)->type(), DOUBLE_BOND);
    EXPECT_EQ(crystal.crystal_snapshot()->molecule(3)->bond(0)->type(), DOUBLE_BOND);
    crystal.set_bond_type(crystal.crystal_snapshot()->molecule(1)->bond(0), DOUBLE_BOND);
    EXPECT_EQ(observer.count, 1);

    // Removing an atom of an image removes the base atom: all images go with it.
    crystal.remove(crystal.crystal_snapshot()->molecule(3)->atom(1));
    EXPECT_EQ(observer.count, 2);
    EXPECT_EQ(crystal.crystal_maker()->natoms(), 1);
    EXPECT_EQ(crystal.crystal_snapshot()->natoms(), 4);
    EXPECT_TRUE(crystal.packing());

    // A molecule and a bond of nothing in this crystal.
    HMolecule stranger = testing::molecule("N N9 0 0 0; N N8 1 0 0", "N9-N8");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { crystal.remove(stranger); }),
              "NewCrystal::remove(HMolecule): molecule is not related to any of the molecules in this crystal");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { crystal.remove(stranger->atom(0)); }),
              "NewCrystal::remove(HAtom): atom is not related to any of the atoms in this crystal");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { crystal.remove(stranger->bond(0)); }),
              "NewCrystal::remove(HBond): bond is not related to any of the bonds in this crystal");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { crystal.set_bond_type(stranger->bond(0), SINGLE_BOND); }),
              "NewCrystal::set_bond_type(HBond, BondType): bond is not related to any of the bonds in this crystal");
    EXPECT_EQ(error_text<std::invalid_argument>(
                  [&] { crystal.add(HBond(new Bond3d()), stranger->atom(0), stranger->atom(1)); }),
              "NewCrystal::add(HBond, HAtom, HAtom): atom1 is not related to any of the atoms in this crystal");
    EXPECT_EQ(observer.count, 2);

    crystal.remove(crystal.crystal_snapshot()->molecule(1));
    EXPECT_EQ(observer.count, 3);
    EXPECT_FALSE(crystal.has_structure());
    EXPECT_EQ(crystal.crystal_snapshot()->nmolecules(), 0);
}

TEST(NewCrystal, BondsJoinAtomsOfOneImageOnlyAndHydrogensComeWithSites) {
    const Cell cell = testing::cell_of(molcryst_test::p21_c());
    HCrystalMaker maker = testing::maker_of(
        cell, {testing::at_frac(cell, "C C1 0.1 0.2 0.3"), testing::at_frac(cell, "O O1 0.2 0.2 0.3")});
    NewCrystal crystal(maker);
    crystal.set_packing(true);
    CountingObserver observer;
    crystal.connect(observer);
    const HCrystal shown = crystal.crystal_snapshot();
    // Image 1 of C1 and image 0 of O1 are as far apart as nothing in the asymmetric unit.
    HAtom c_image, o_image, c_base, o_base;
    for (const HMolecule& m : *shown->molecules()) {
        if (m->atom(0)->label() == "C1" && c_base.unhand() == nullptr)
            c_base = m->atom(0);
        else if (m->atom(0)->label() == "C1")
            c_image = m->atom(0);
        if (m->atom(0)->label() == "O1" && o_base.unhand() == nullptr) o_base = m->atom(0);
    }
    EXPECT_EQ(error_text<std::invalid_argument>([&] { crystal.add(HBond(new Bond3d()), c_image, o_base); }),
              "NewCrystal::add(HBond, HAtom, HAtom): Cannot join together two symmetry-related molecules.");
    EXPECT_EQ(observer.count, 0);
    EXPECT_EQ(maker->nmolecules(), 2);

    crystal.add(HBond(new Bond3d(SINGLE_BOND)), c_base, o_base);
    EXPECT_EQ(observer.count, 1);
    EXPECT_EQ(maker->nmolecules(), 1);
    EXPECT_EQ(crystal.crystal_snapshot()->nmolecules(), 4);
    EXPECT_EQ(crystal.crystal_snapshot()->nbonds(), 4);

    crystal.add_hydrogens(crystal.crystal_snapshot()->molecule(2)->atom(1), 1);
    EXPECT_EQ(observer.count, 2);
    EXPECT_EQ(maker->natoms(), 3);
    EXPECT_EQ(crystal.crystal_snapshot()->natoms(), 12);
    EXPECT_TRUE(maker->molecule(0)->atom(2)->has_site());
}

}  // namespace
}  // namespace molcryst

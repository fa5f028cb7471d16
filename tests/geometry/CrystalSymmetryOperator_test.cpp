#include "molcryst/geometry/CrystalSymmetryOperator.h"

#include <gtest/gtest.h>

#include "GeometryTestSupport.h"
#include "SymmetryTestGroups.h"
#include "common/Text.h"
#include "molcryst/geometry/CrystalSymmetryTransformation.h"
#include "molcryst/geometry/Spacegroup.h"

using namespace molcryst;
using molcryst::testing::error_text;
using molcryst::testing::printed;

namespace {
typedef Vector<double, 3> V3;
typedef Vector<int, 3> V3i;
}  // namespace

TEST(CrystalSymmetryOperator, TripletsReadAndPrintBack) {
    for (const char* text : {"x,y,z", "-x+1/2,y+1/2,-z+1/2", "x-y,x,z+1/6", "-y,x-y,z+2/3", "y,x,-z",
                             "-x+1,y-1/4,z+3/4", "-x,-y,-z"}) {
        EXPECT_EQ(CrystalSymmetryOperator(text).triplet(), text);
    }
    // Other spellings of the same operators.
    EXPECT_EQ(CrystalSymmetryOperator(" X , Y , Z ").triplet(), "x,y,z");
    EXPECT_EQ(CrystalSymmetryOperator("1/2-x, +y+0.5, -z+1/2").triplet(), "-x+1/2,y+1/2,-z+1/2");
    EXPECT_EQ(CrystalSymmetryOperator("-y+x,x,1/6+z").triplet(), "x-y,x,z+1/6");
    EXPECT_EQ(CrystalSymmetryOperator("x,y,z+0.125").triplet(), "x,y,z+1/8");
    EXPECT_EQ(CrystalSymmetryOperator("x,y,z+0.3").triplet(), "x,y,z+0.3");
    EXPECT_EQ(CrystalSymmetryOperator("2*x-y,x,z").rotation().row(1), V3i(2, -1, 0));

    const CrystalSymmetryOperator op("-x+1/2,y+1/2,-z+1/2");
    EXPECT_EQ(op.rotation(), (Matrix<int, 3, 3>(-1, 0, 0, 0, 1, 0, 0, 0, -1)));
    EXPECT_EQ(op.translation(), V3(0.5, 0.5, 0.5));
    EXPECT_EQ(printed(op), "-x+1/2,y+1/2,-z+1/2");
}

TEST(CrystalSymmetryOperator, BadTripletsAreRefused) {
    for (const char* text : {"", "x,y", "x,y,z,x", "x,,z", "x,y,q", "x+,y,z", "x++y,y,z", "x,y,z+1/0", "x,x,z",
                             "1/2x,y,z", "2x,y,z", "x,y,z 1", "x,y,z/2", "0.5x,y,z", "x,y,z+1e", "*x,y,z",
                             "x,y,1234567890123"}) {
        CrystalSymmetryOperator kept("-x,-y,-z");
        EXPECT_FALSE(CrystalSymmetryOperator::parse(text, kept)) << text;
        EXPECT_EQ(kept, CrystalSymmetryOperator("-x,-y,-z"));
        EXPECT_THROW(CrystalSymmetryOperator{std::string(text)}, std::invalid_argument) << text;
    }
    EXPECT_EQ(error_text<std::invalid_argument>([] { CrystalSymmetryOperator("x,y"); }),
              "CrystalSymmetryOperator::CrystalSymmetryOperator(const std::string&) cannot read \"x,y\"");
    EXPECT_THROW(CrystalSymmetryOperator(Matrix<int, 3, 3>(), V3()), std::invalid_argument);
}

TEST(CrystalSymmetryOperator, CompositionInverseAndComparison) {
    const CrystalSymmetryOperator screw("-x,y+1/2,-z+1/2");
    const CrystalSymmetryOperator inversion("-x,-y,-z");
    EXPECT_EQ((screw * inversion).triplet(), "x,-y+1/2,z+1/2");
    EXPECT_EQ((screw * screw).triplet(), "x,y+1,z");  // a screw twice is a lattice translation
    EXPECT_TRUE((screw * screw.inverse()).is_identity());
    const CrystalSymmetryOperator three("-y,x-y,z+1/3");
    EXPECT_TRUE(equals(three * three * three, CrystalSymmetryOperator("x,y,z+1"), 1e-12));
    EXPECT_TRUE(equals(three * three.inverse(), CrystalSymmetryOperator(), 1e-15));
    EXPECT_EQ(screw * Point(0.1, 0.2, 0.3), Point(-0.1, 0.7, 0.2));
    // Translations compare as they stand, not modulo the lattice.
    EXPECT_FALSE(equals(CrystalSymmetryOperator("x+1,y,z"), CrystalSymmetryOperator(), 1e-7));
    EXPECT_TRUE(equals(CrystalSymmetryOperator("x+0.5,y,z"), CrystalSymmetryOperator("x+1/2,y,z"), 1e-7));
    EXPECT_TRUE(CrystalSymmetryOperator("x+1/2,y+1/2,z").is_translation());
    EXPECT_FALSE(CrystalSymmetryOperator("x+1/2,y+1/2,z").is_identity());
}

TEST(CrystalSymmetryOperator, ArchiveRoundTripAndBadRotation) {
    const CrystalSymmetryOperator op("x-y,x,z+1/6");
    EXPECT_EQ(molcryst_test::round_trip(op), op);
    EXPECT_EQ(molcryst::testing::written(op).size(), 33u);

    std::vector<unsigned char> bytes(9, 0);  // the zero matrix
    const std::vector<unsigned char> translation = molcryst_test::image(0.0, 0.0, 0.0);
    bytes.insert(bytes.end(), translation.begin(), translation.end());
    EXPECT_EQ(molcryst_test::read_error<CrystalSymmetryOperator>(bytes),
              "CrystalSymmetryOperator::read: the rotation does not have determinant 1 or -1");
}

TEST(CrystalSymmetryTransformation, LatticeTranslationInverseAndPrint) {
    const CrystalSymmetryTransformation t(CrystalSymmetryOperator("-x+1/2,y+1/2,-z+1/2"), V3i(1, 0, -1));
    EXPECT_EQ(t.translation(), V3(1.5, 0.5, -0.5));
    EXPECT_EQ(t * Point(0.1, 0.2, 0.3), Point(1.4, 0.7, -0.8));
    EXPECT_EQ(printed(t), "-x+3/2,y+1/2,-z-1/2");

    const CrystalSymmetryTransformation u = t.inverse();
    EXPECT_TRUE(equals(u * (t * Point(0.1, 0.2, 0.3)), Point(0.1, 0.2, 0.3), 1e-15));
    EXPECT_TRUE((u * t).is_identity());
    EXPECT_TRUE((t * u).is_identity());
    EXPECT_FALSE(t.is_translational());
    EXPECT_TRUE(CrystalSymmetryTransformation(CrystalSymmetryOperator(), V3i(0, 1, 0)).is_translational());
    EXPECT_TRUE(CrystalSymmetryTransformation(CrystalSymmetryOperator("x+1/2,y+1/2,z")).is_translational());
    EXPECT_TRUE(CrystalSymmetryTransformation().is_identity());

    EXPECT_EQ(molcryst_test::round_trip(t), t);
}

TEST(Spacegroup, OperatorsNamesAndArchive) {
    const Spacegroup p1;
    EXPECT_EQ(p1.name(), "P1");
    EXPECT_EQ(p1.noperators(), 1);
    EXPECT_TRUE(p1.symmetry_operator(0).is_identity());
    // A spacegroup named without operators has none until they are added.
    Spacegroup bare("P1", -1, 0);
    EXPECT_EQ(bare.noperators(), 0);
    EXPECT_EQ(bare.system(), Spacegroup::Triclinic);
    bare.add_operator(CrystalSymmetryOperator());
    EXPECT_EQ(bare.noperators(), 1);
    EXPECT_THROW(Spacegroup("X", 1, 7), std::invalid_argument);
    EXPECT_THROW(bare.symmetry_operator(1), std::out_of_range);

    const Spacegroup c2c = molcryst_test::c2_c();
    EXPECT_TRUE(c2c.is_centrosymmetric());
    EXPECT_EQ(molcryst_test::round_trip(c2c), c2c);
    EXPECT_EQ(printed(molcryst_test::p21_c()),
              "P21/c (14, monoclinic): x,y,z; -x,y+1/2,-z+1/2; -x,-y,-z; x,-y+1/2,z+1/2");
    // Name, number, crystal system 9 (there is none), no operators.
    EXPECT_EQ(molcryst_test::read_error<Spacegroup>(molcryst_test::image(std::string("P1"), 1, 9, 0)),
              "Spacegroup::read: unknown crystal system 9");
}

TEST(Spacegroup, GeneratesWholeGroupsFromGenerators) {
    const Spacegroup c2c = Spacegroup::generate(
        "C2/c", 15, Spacegroup::Monoclinic,
        {CrystalSymmetryOperator("-x,y,-z+1/2"), CrystalSymmetryOperator("-x,-y,-z"), CrystalSymmetryOperator("x+1/2,y+1/2,z")});
    ASSERT_EQ(c2c.noperators(), 8);
    EXPECT_TRUE(c2c.symmetry_operator(0).is_identity());
    EXPECT_EQ(c2c.symmetry_operator(1).triplet(), "-x,y,-z+1/2");
    const Spacegroup listed = molcryst_test::c2_c();
    for (const CrystalSymmetryOperator& op : listed.operators()) {
        int found = 0;
        for (const CrystalSymmetryOperator& g : c2c.operators()) found += equals(op, g, 1e-12) ? 1 : 0;
        EXPECT_EQ(found, 1) << op;
    }
    EXPECT_EQ(molcryst_test::pm_3m().noperators(), 48);
    Spacegroup fm3m = Spacegroup::generate("Fm-3m", 225, Spacegroup::Cubic,
                                           {CrystalSymmetryOperator("-y,x,z"), CrystalSymmetryOperator("z,x,y"),
                                            CrystalSymmetryOperator("-x,-y,-z"), CrystalSymmetryOperator("x,y+1/2,z+1/2"),
                                            CrystalSymmetryOperator("x+1/2,y,z+1/2")});
    EXPECT_EQ(fm3m.noperators(), 192);
    // A translation by an irrational fraction never closes.
    EXPECT_THROW(Spacegroup::generate("", 0, Spacegroup::Triclinic, {CrystalSymmetryOperator("x+0.1414213562373095,y,z")}),
                 std::invalid_argument);
}

#include "molcryst/molecule/Site.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "common/ArchiveBytes.h"
#include "common/ErrorText.h"
#include "common/Text.h"
#include "geometry/SymmetryTestGroups.h"
#include "molcryst/support/VersionedArchive.h"

using namespace molcryst;
using namespace molcryst::testing;

namespace {
typedef Vector<double, 3> V3;
typedef Vector<int, 3> V3i;
typedef THandle<Array<Uncertainty, 3> > HUncertainties;

Angle deg(double d) { return Angle::from_degrees(d); }

Cell p21_c() { return Cell(10.0, 12.0, 8.0, deg(90), deg(100), deg(90), molcryst_test::p21_c()); }

HUncertainties uncertainties(int x, int y, int z) {
    HUncertainties u(new Array<Uncertainty, 3>());
    (*u)[0] = Uncertainty(x, 4);
    (*u)[1] = Uncertainty(y, 4);
    (*u)[2] = Uncertainty(z, 4);
    return u;
}

Site full_site(const Cell& cell) {
    Site s = Site::frac(Point(0.1, 0.2, 0.3), cell);
    s.set_occupancy(UncertainValue::parse("0.75(2)"));
    s.set_uncertainty(uncertainties(1, 2, 3));
    s.set_atomic_displacement_parameters(THandle<AtomicDisplacementParameters>(
        new AtomicDisplacementParameters(0.01, 0.02, 0.03, 0.004, 0.005, 0.006)));
    return s;
}

// A versioned archive of the given version over a temporary file.
struct VersionedFile {
    explicit VersionedFile(int version) : ar(std::tmpfile(), true) { ar.set_version(version); }
    VersionedArchive ar;
};
}  // namespace

TEST(Site, ConstructorsAndFrames) {
    const Cell cell = p21_c();
    const Site one(Point(1, 2, 3));
    EXPECT_EQ(one.orth(), Point(1, 2, 3));
    EXPECT_EQ(one.frac(), Point(1, 2, 3));
    EXPECT_EQ(one.occupancy(), UncertainValue(1.0));

    const Site f = Site::frac(Point(0.5, 0.25, 1.0), cell, 0.5);
    EXPECT_TRUE(equals(f.orth(), cell.orthogonal(Point(0.5, 0.25, 1.0)), 1e-14));
    EXPECT_EQ(f.occupancy(), UncertainValue(0.5));
    const Site o = Site::orth(Point(1, 2, 3), cell);
    EXPECT_TRUE(equals(o.frac(), cell.fractional(Point(1, 2, 3)), 1e-15));

    Site s(Point(1, 1, 1), Point(0, 0, 0), 1.0);
    s.set_orth(Point(5, 6, 0), cell);
    EXPECT_TRUE(equals(s.frac(), Point(0.5, 0.5, 0), 1e-15));
    s.set_frac(Point(0, 1, 0), cell);
    EXPECT_TRUE(equals(s.orth(), Point(0, 12, 0), 1e-14));
    s.set_coordinates(Point(7, 7, 7));
    EXPECT_EQ(s.orth(), Point(7, 7, 7));
    EXPECT_TRUE(equals(s.frac(), Point(0, 1, 0), 1e-15));  // left as it was
}

TEST(Site, CopiesAreDeepAndTheFullConstructorAdopts) {
    const Cell cell = p21_c();
    const Site original = full_site(cell);
    Site copy(original);
    EXPECT_EQ(copy, original);
    EXPECT_NE(copy.uncertainty().unhand(), original.uncertainty().unhand());
    EXPECT_NE(copy.atomic_displacement_parameters().unhand(), original.atomic_displacement_parameters().unhand());
    (*copy.uncertainty())[0] = Uncertainty(9, 4);
    EXPECT_NE(copy, original);
    copy = original;
    EXPECT_EQ(copy, original);

    const HUncertainties shared = uncertainties(1, 1, 1);
    const Site adopted(Point(), Point(), UncertainValue(1.0), shared);
    EXPECT_EQ(adopted.uncertainty().unhand(), shared.unhand());

    // Equality: null matches only null; objects compare by value.
    Site bare = original;
    bare.set_atomic_displacement_parameters(THandle<AtomicDisplacementParameters>());
    EXPECT_NE(bare, original);
    bare.set_atomic_displacement_parameters(THandle<AtomicDisplacementParameters>(
        new AtomicDisplacementParameters(*original.atomic_displacement_parameters())));
    EXPECT_EQ(bare, original);
    bare.set_uncertainty(HUncertainties());
    EXPECT_NE(bare, original);
}

TEST(Site, TransformMovesBothFramesUncertaintiesAndTensor) {
    const Cell cell = p21_c();
    const Site original = full_site(cell);
    const CrystalSymmetryTransformation screw(CrystalSymmetryOperator("-x,y+1/2,-z+1/2"), V3i(1, 0, 0));
    const Site image(original, screw, cell);
    EXPECT_TRUE(equals(image.frac(), Point(0.9, 0.7, 0.2), 1e-15));
    EXPECT_TRUE(equals(image.orth(), cell.orthogonal(Point(0.9, 0.7, 0.2)), 1e-14));
    EXPECT_EQ(image.occupancy(), original.occupancy());
    EXPECT_EQ(*image.uncertainty(), *original.uncertainty());  // a sign change keeps each uncertainty
    EXPECT_DOUBLE_EQ(image.atomic_displacement_parameters()->u(1, 2), -0.004);
    // The original's objects are untouched, even when shared.
    Site sharing(original.orth(), original.frac(), original.occupancy(), original.uncertainty(),
                 original.atomic_displacement_parameters());
    sharing.transform(screw, cell);
    EXPECT_DOUBLE_EQ(original.atomic_displacement_parameters()->u(1, 2), 0.004);

    // A permutation of the axes permutes the coordinate uncertainties.
    const Cell cubic(5, 5, 5, deg(90), deg(90), deg(90));
    Site s = Site::frac(Point(0.1, 0.2, 0.3), cubic);
    s.set_uncertainty(uncertainties(1, 2, 3));
    s.transform(CrystalSymmetryTransformation(CrystalSymmetryOperator("z,x,y")), cubic);
    EXPECT_EQ(s.frac(), Point(0.3, 0.1, 0.2));
    EXPECT_EQ((*s.uncertainty())[0], Uncertainty(3, 4));
    EXPECT_EQ((*s.uncertainty())[1], Uncertainty(1, 4));
}

TEST(Site, CurrentArchiveRoundTrip) {
    const Cell cell = p21_c();
    for (const Site& s : {full_site(cell), Site(Point(1, 2, 3))}) {
        Archive ar = Archive::temporary();
        s.write(ar);
        ar.rewind();
        EXPECT_EQ(Site(ar), s);
    }
    VersionedFile file(6);
    full_site(cell).write(file.ar);
    file.ar.rewind();
    EXPECT_EQ(Site(file.ar), full_site(cell));
}

TEST(Site, ReadsOlderVersions) {
    const Point orth(1, 2, 3), frac(0.1, 0.2, 0.3);
    // Version 3: no occupancy uncertainty, no displacement parameters.
    {
        VersionedFile file(3);
        file.ar << orth << frac << 0.5 << 1;
        uncertainties(4, 5, 6)->write(file.ar);
        file.ar.rewind();
        const Site s(file.ar);
        EXPECT_EQ(s.orth(), orth);
        EXPECT_EQ(s.frac(), frac);
        EXPECT_EQ(s.occupancy(), UncertainValue(0.5));
        EXPECT_FALSE(s.occupancy().uncertainty().known());
        ASSERT_NE(s.uncertainty().unhand(), nullptr);
        EXPECT_EQ((*s.uncertainty())[2], Uncertainty(6, 4));
        EXPECT_EQ(s.atomic_displacement_parameters().unhand(), nullptr);
        EXPECT_EQ(std::ftell(file.ar.file()), 24 + 24 + 8 + 4 + 15);  // all of it read, nothing more
    }
    // Version 4: the occupancy's uncertainty; a zero flag leaves no coordinate uncertainties.
    {
        VersionedFile file(4);
        file.ar << orth << frac << 0.5;
        Uncertainty(2, 2).write(file.ar);
        file.ar << 0;
        file.ar << 99;  // the next object's data
        file.ar.rewind();
        const Site s(file.ar);
        EXPECT_EQ(s.occupancy(), UncertainValue::parse("0.50(2)"));
        EXPECT_EQ(s.uncertainty().unhand(), nullptr);
        int next = 0;
        file.ar >> next;
        EXPECT_EQ(next, 99);
    }
    // Version 6 reads the displacement parameters too; a null handle is a 0.
    {
        VersionedFile file(6);
        file.ar << orth << frac << 0.5;
        Uncertainty().write(file.ar);
        file.ar << 0 << 1;
        AtomicDisplacementParameters(0.01, 0.02, 0.03, 0, 0, 0).write(file.ar);
        file.ar.rewind();
        const Site s(file.ar);
        ASSERT_NE(s.atomic_displacement_parameters().unhand(), nullptr);
        EXPECT_EQ(s.atomic_displacement_parameters()->u(3, 3), 0.03);
    }
    // Versions 1 and 2 hold the points and the occupancy alone.
    {
        VersionedFile file(1);
        file.ar << orth << frac << 0.25;
        file.ar.rewind();
        const Site s(file.ar);
        EXPECT_EQ(s.occupancy(), UncertainValue(0.25));
    }
}

TEST(Site, BadArchivesThrowAndLeaveTheSite) {
    const Cell cell = p21_c();
    const Site original = full_site(cell);
    VersionedFile file(0);
    file.ar << Point() << Point() << 1.0;
    file.ar.rewind();
    Site s = original;
    EXPECT_EQ(error_text<std::runtime_error>([&] { s.read(file.ar); }), "Site::read: unsupported archive version 0");
    EXPECT_EQ(s, original);

    // Ends inside the displacement parameters.
    const std::vector<unsigned char> bytes = written(original);
    Archive short_archive = archive_of(cut(bytes, bytes.size() - 12));
    s = Site(Point(4, 4, 4));
    EXPECT_EQ(error_text<std::runtime_error>([&] { s.read(short_archive); }),
              "UncertainValue::read: archive ends early reading double");
    EXPECT_EQ(s, Site(Point(4, 4, 4)));

    Archive empty = Archive::temporary();
    const std::string what = error_text<std::runtime_error>([&] { Site read(empty); });
    EXPECT_EQ(what.rfind("Site::read coordinates", 0), 0u) << what;
}

TEST(Site, Print) {
    Site s(Point(1, 2, 3), Point(0.1, 0.2, 0.3), 0.5);
    s.set_uncertainty(uncertainties(1, 2, 3));
    EXPECT_EQ(printed(s), "orth (1, 2, 3) frac (0.1, 0.2, 0.3) occupancy 0.5 uncertainty (0.0001, 0.0002, 0.0003)");
}

// Geometry edits: composites and collections (order, composition of relative
// edits, messages), molecule transformations, the atom functors and the
// clustering of molecules about a central one.
#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>

#include "common/ErrorText.h"
#include "molcryst/edit/AtomTransforms.h"
#include "molcryst/edit/ClusterMolecules.h"
#include "molcryst/edit/CompositeGeometryEdit.h"
#include "molcryst/edit/GeometryCollection.h"
#include "molcryst/edit/MoleculeCrystalSymmetryTransformation.h"
#include "molcryst/edit/MoleculeTransformation.h"
#include "molecule/TestMolecules.h"

using namespace molcryst;
using namespace molcryst::testing;

namespace {

/// Places the first atom of the molecule at a fixed point: an absolute edit.
class PlaceFirstAtom : public MoleculeGeometryEdit {
public:
    PlaceFirstAtom(const HMolecule& m, const Point& p) : MoleculeGeometryEdit(m), p_(p) {}
    void apply() const override { molecule_->atom(0)->site()->set_coordinates(p_); }
    bool is_absolute() const override { return true; }

private:
    Point p_;
};

HMoleculeGeometryEdit shift(const HMolecule& m, double x, double y, double z) {
    return HMoleculeGeometryEdit(
        new MoleculeTransformation(m, Transformation(Matrix<double, 3, 3>(1, 0, 0, 0, 1, 0, 0, 0, 1), Vector<double, 3>(x, y, z)), HCell()));
}

/// A quarter turn about z.
HMoleculeGeometryEdit quarter_turn(const HMolecule& m) {
    return HMoleculeGeometryEdit(new MoleculeTransformation(
        m, Transformation(Matrix<double, 3, 3>(0, -1, 0, 1, 0, 0, 0, 0, 1), Vector<double, 3>(0, 0, 0)), HCell()));
}

void expect_at(const HAtom& a, double x, double y, double z) {
    const Point& p = a->site()->orth();
    EXPECT_NEAR(p[0], x, 1e-12);
    EXPECT_NEAR(p[1], y, 1e-12);
    EXPECT_NEAR(p[2], z, 1e-12);
}

}  // namespace

TEST(CompositeGeometryEdit, AppliesMembersInOrderAndIsAbsoluteIfAnyMemberIs) {
    HMolecule m = water();
    HMolecule other = water();
    const Point o = m->atom(0)->site()->orth();

    CompositeGeometryEdit empty(m);
    EXPECT_FALSE(empty.is_absolute());
    empty.apply();
    EXPECT_EQ(m->atom(0)->site()->orth(), o);

    // Shift then turn differs from turn then shift: the members go in order.
    CompositeGeometryEdit shift_turn(m, {shift(m, 1, 0, 0), quarter_turn(m)});
    EXPECT_FALSE(shift_turn.is_absolute());
    shift_turn.apply();
    expect_at(m->atom(0), -o[1], o[0] + 1, o[2]);
    EXPECT_TRUE(CompositeGeometryEdit(m, {shift(m, 1, 0, 0), HMoleculeGeometryEdit(new PlaceFirstAtom(m, Point(0, 0, 0)))})
                    .is_absolute());

    EXPECT_EQ(error_text<std::invalid_argument>([] { CompositeGeometryEdit edit{HMolecule()}; }),
              "CompositeGeometryEdit::CompositeGeometryEdit: Invalid molecule.");
    EXPECT_EQ(error_text<std::invalid_argument>([] { CompositeGeometryEdit(HMolecule(), {}); }),
              "CompositeGeometryEdit::CompositeGeometryEdit(molecule, edit_data): Invalid molecule.");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { CompositeGeometryEdit(m, {shift(m, 1, 0, 0), HMoleculeGeometryEdit()}); }),
              "CompositeGeometryEdit::validate_edits: invalid MoleculeGeometryEdit object.");
    // An equal molecule is not the molecule: the handle decides.
    EXPECT_EQ(error_text<std::invalid_argument>([&] { CompositeGeometryEdit(m, {shift(other, 1, 0, 0)}); }),
              "CompositeGeometryEdit::validate_edits: invalid Molecule object.");
}

TEST(GeometryCollection, StepsComposeRelativeEditsAndTellTheirMessages) {
    HMolecule m = water();
    const Point o = m->atom(0)->site()->orth();
    GeometryCollection collection(m, {shift(m, 1, 0, 0), shift(m, 0, 2, 0), shift(m, 0, 0, 3)});
    EXPECT_EQ(collection.nsteps(), 3);
    EXPECT_FALSE(collection.done());
    EXPECT_EQ(error_text<std::runtime_error>([&] { collection.current_step(); }),
              "GeometryCollection::current_step: not identified current step.");
    EXPECT_EQ(error_text<std::runtime_error>([&] { collection.current_edit(); }),
              "GeometryCollection::current_edit: it has not been applied any of this' current edits to molecule.");

    collection.start();
    collection.next();
    collection.next();
    EXPECT_TRUE(collection.done());
    EXPECT_EQ(collection.current_step(), 2);
    EXPECT_EQ(collection.current_edit(), *collection.edit_it(2));
    expect_at(m->atom(0), o[0] + 1, o[1] + 2, o[2] + 3);
    EXPECT_EQ(error_text<std::runtime_error>([&] { collection.next(); }),
              "GeometryCollection::next no more steps in iteraction.");
    // set(i) applies edit i alone, to the molecule as it stands.
    collection.set(0);
    expect_at(m->atom(0), o[0] + 2, o[1] + 2, o[2] + 3);
    EXPECT_EQ(error_text<std::out_of_range>([&] { collection.set(3); }),
              "GeometryCollection::set: passed index is off range or collection is empty.");
    EXPECT_EQ(error_text<std::out_of_range>([&] { collection.set(-1); }),
              "GeometryCollection::set: passed index is off range or collection is empty.");
    EXPECT_EQ(collection.current_step(), 0);
    EXPECT_EQ(error_text<std::out_of_range>([&] { collection.edit_it(3); }),
              "GeometryCollection::edit_it: out of range index or empty collection.");

    GeometryCollection empty(m);
    EXPECT_TRUE(empty.done());
    EXPECT_EQ(error_text<std::out_of_range>([&] { empty.start(); }),
              "GeometryCollection::set: passed index is off range or collection is empty.");
    EXPECT_EQ(error_text<std::runtime_error>([&] { empty.current_step(); }),
              "GeometryCollection::current_step: not identified current step.");
    EXPECT_EQ(error_text<std::out_of_range>([&] { empty.edit_it(0); }),
              "GeometryCollection::edit_it: out of range index or empty collection.");

    EXPECT_EQ(error_text<std::invalid_argument>([] { GeometryCollection collection{HMolecule()}; }),
              "GeometryCollection::GeometryCollection(molecule): Invalid molecule.");
    EXPECT_EQ(error_text<std::invalid_argument>([] { GeometryCollection(HMolecule(), {}); }),
              "GeometryCollection::GeometryCollection(molecule): Invalid molecule.");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { GeometryCollection(m, {HMoleculeGeometryEdit()}); }),
              "GeometryCollection::validate_edits: HMoleculeGeometryEdit element is NULL.");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { GeometryCollection(m, {shift(water(), 1, 0, 0)}); }),
              "GeometryCollection::validate_edits: Wrong molecule in a MoleculeGeometryEdit object in this collection");
}

TEST(MoleculeTransformation, GivesNewSitesThroughTheCellAndKeepsSharedSitesInPlace) {
    HMolecule m = water();
    HSite shared = m->atom(0)->site();
    shared->set_occupancy(UncertainValue(0.5, Uncertainty(2, 2)));
    const Point o = shared->orth();
    HCell cell(new Cell(10.0, 20.0, 5.0, Angle::from_degrees(90), Angle::from_degrees(90), Angle::from_degrees(90)));
    m->add(atom_without_site(Element("C"), "C9"));
    MoleculeTransformation(m, Transformation(Matrix<double, 3, 3>(1, 0, 0, 0, 1, 0, 0, 0, 1), Vector<double, 3>(5, 0, 0)), cell)
        .apply();
    expect_at(m->atom(0), o[0] + 5, o[1], o[2]);
    EXPECT_NEAR(m->atom(0)->site()->frac()[0], (o[0] + 5) / 10.0, 1e-12);
    EXPECT_NEAR(m->atom(0)->site()->frac()[1], o[1] / 20.0, 1e-12);
    EXPECT_EQ(m->atom(0)->site()->occupancy().value(), 0.5);
    EXPECT_EQ(m->atom(0)->site()->occupancy().standard_uncertainty(), 0.02);
    EXPECT_EQ(shared->orth(), o);  // the old site object did not move
    EXPECT_FALSE(m->atom(3)->has_site());
    // Without a cell the fractional point is the orthogonal one.
    quarter_turn(m)->apply();
    EXPECT_EQ(m->atom(1)->site()->frac(), m->atom(1)->site()->orth());
}

TEST(MoleculeCrystalSymmetryTransformation, MovesTheSitesThemselvesInFractionalSpace) {
    HMolecule m = water();
    const Cell cell(10.0, 10.0, 10.0, Angle::from_degrees(90), Angle::from_degrees(90), Angle::from_degrees(90));
    for (int i = 0; i < m->natoms(); ++i) m->atom(i)->site()->set_orth(m->atom(i)->site()->orth(), cell);
    HSite site = m->atom(1)->site();
    const Point f = site->frac();
    const CrystalSymmetryTransformation inversion(CrystalSymmetryOperator("-x,-y,-z"), Vector<int, 3>(1, 0, 0));
    MoleculeCrystalSymmetryTransformation edit(m, inversion, cell);
    EXPECT_FALSE(edit.is_absolute());
    edit.apply();
    EXPECT_EQ(m->atom(1)->site(), site);  // the same site object, moved
    EXPECT_NEAR(site->frac()[0], 1.0 - f[0], 1e-12);
    EXPECT_NEAR(site->frac()[1], -f[1], 1e-12);
    EXPECT_NEAR(site->orth()[0], 10.0 * (1.0 - f[0]), 1e-9);
}

TEST(AtomTransforms, MoveSitesThroughTheUnitCubeAndPassOverAtomsWithoutSites) {
    HMolecule m = molecule("C C1 1 2 3; N N1");
    HAtom c = m->atom(0);
    AtomTranslation(Vector<double, 3>(1, 1, 1))(c);
    expect_at(c, 2, 3, 4);
    AtomProperRotation(Matrix<double, 3, 3>(0, -1, 0, 1, 0, 0, 0, 0, 1))(c);
    expect_at(c, -3, 2, 4);
    AtomMatrixTransform(THandle<Matrix<double, 3, 3> >(new Matrix<double, 3, 3>(2, 0, 0, 0, 2, 0, 0, 0, 2)))(c);
    expect_at(c, -6, 4, 8);
    EXPECT_EQ(c->site()->frac(), c->site()->orth());
    std::for_each(m->begin_atoms(), m->end_atoms(), AtomTranslation(Vector<double, 3>(1, 0, 0)));
    EXPECT_FALSE(m->atom(1)->has_site());
    expect_at(c, -5, 4, 8);
}

TEST(ClusterMolecules, MovesByTheNearestMatrixAndKeepsTiesInPlace) {
    HMolecule central = molecule("C C1 0 0 0");
    ClusterMolecules cluster(central);
    const Matrix<double, 3, 3> flip_x(-1, 0, 0, 0, 1, 0, 0, 0, 1), flip_y(1, 0, 0, 0, -1, 0, 0, 0, 1),
        flip_xy(-1, 0, 0, 0, -1, 0, 0, 0, 1);
    cluster.add_matrix(flip_y);
    cluster.add_matrix(flip_x);
    cluster.add_matrix(flip_xy);
    // Centroid (4, 1, 0): from the central centroid flip_y gives the same
    // distance, flip_x and flip_xy bring it no nearer either: it stays.
    HMolecule near = molecule("C C2 3 1 0; C C3 5 1 0");
    EXPECT_FALSE(cluster(near));
    expect_at(near->atom(0), 3, 1, 0);

    // Against a central molecule off the origin the first strictly better matrix wins.
    ClusterMolecules off(molecule("C C1 -4 -1 0"));
    off.add_matrix(flip_y);
    off.add_matrix(flip_xy);
    off.add_matrix(flip_x);
    EXPECT_TRUE(off(near));
    expect_at(near->atom(0), -3, -1, 0);
    expect_at(near->atom(1), -5, -1, 0);

    // A matrix better by less than 1e-06 is not taken.
    ClusterMolecules tie(molecule("C C1 0 0 0"));
    tie.add_matrix(Matrix<double, 3, 3>(1 - 1e-8, 0, 0, 0, 1, 0, 0, 0, 1));
    HMolecule far = molecule("C C4 10 0 0");
    EXPECT_FALSE(tie(far));
    expect_at(far->atom(0), 10, 0, 0);
}

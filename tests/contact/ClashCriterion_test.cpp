// Clash criterion: van der Waals overlaps between waters, dropped when a
// hydrogen bond explains them, with and without hydrogens; lone hydrogens,
// the crystal search, equality and copies.
#include "molcryst/contact/ClashCriterion.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <sstream>
#include <stdexcept>
#include <string>

#include "common/ErrorText.h"
#include "molcryst/crystal/Crystal.h"
#include "molecule/TestMolecules.h"

using namespace molcryst;
using namespace molcryst::testing;

namespace {

// A water whose hydrogen H1 points along +x at the second water's oxygen,
// 2.7 A away (O...O overlap 0.34 A, H...O 1.74 A), and one whose hydrogens
// both point away from it.
HMolecule3d donor_water() { return water(); }
HMolecule3d turned_water(double x) {
    return molecule("O O1 " + std::to_string(x) + " 0 0; H H1 " + std::to_string(x - 0.5859) + " 0.7570 0; H H2 " +
                        std::to_string(x - 0.5859) + " -0.7570 0",
                    "O1-H1 O1-H2");
}
HMolecule3d acceptor_water() {
    return molecule("O O1 2.7 0 0; H H1 3.2859 0.7570 0; H H2 3.2859 -0.7570 0", "O1-H1 O1-H2");
}

// "from>to" per contact, by labels, "; " between.
std::string pairs(const Hvector_HMolecularContact& contacts) {
    std::ostringstream out;
    for (const HMolecularContact& c : *contacts) {
        if (out.tellp() > 0) out << "; ";
        out << c->molecule_from()->atom(c->atom_from())->label() << ">"
            << c->molecule_to()->atom(c->atom_to())->label();
    }
    return out.str();
}

std::string clashes(const HMolecule& a, const HMolecule& b, const ContactCriterion& c) {
    return pairs(Crystal(Cell(), Hvector_HMolecule(new vector_HMolecule{a, b})).nonbonded_search(0, c));
}

HBondCriterion hbonds(bool no_hydrogens) {
    return HBondCriterion(0.0, -5.0, Angle::from_degrees(120), true, no_hydrogens, INTERMOLECULAR, 4, 999);
}

ClashCriterion clash(bool no_hydrogens) {
    return ClashCriterion(CombinedCriterion(true, 0.0, -5.0, INTERMOLECULAR, 4, 999, false), hbonds(no_hydrogens));
}

}  // namespace

TEST(ClashCriterion, OverlapsExplainedByHydrogenBondsAreDropped) {
    const HMolecule3d d = donor_water(), a = acceptor_water();
    const ClashCriterion c;
    // Every overlap, then those left: the O-H...O bond explains both the
    // O...O and the H...O overlap, through the hydrogen on the oxygen.
    EXPECT_EQ(clashes(d, a, c.combined_criterion()), "O1>O1; H1>O1");
    EXPECT_EQ(clashes(d, a, c), "");
    EXPECT_TRUE(c.find_contact(d, 0, a, 0)->empty());
    EXPECT_FALSE(c.is_not_hbound(d, d->atom(0), a, a->atom(0)));
    EXPECT_FALSE(c.is_not_hbound(a, a->atom(0), d, d->atom(0)));  // the hydrogen of either end counts

    // Turned so that no hydrogen points at the other oxygen, the O...O
    // overlap stays unexplained.
    const HMolecule3d t = turned_water(0.0);
    EXPECT_EQ(clashes(t, a, c), "O1>O1");
    const Hvector_HMolecularContact found = c.find_contact(t, 0, a, 0);
    ASSERT_EQ(found->size(), 1u);
    EXPECT_EQ((*found)[0]->type(), 2);  // the tag of the distance search, whatever the rule
    EXPECT_GT((*found)[0]->strength(), 0.3);

    // Without hydrogens, any donor-acceptor pair in range is a bond: the
    // turned pair is explained as well, and a hydrogen stands for its oxygen.
    EXPECT_EQ(clashes(t, a, clash(true)), "");
    EXPECT_TRUE(clash(true).is_not_hbound_when_using_hydrogen(t, t->atom(0), a, a->atom(0)));
    EXPECT_FALSE(clash(true).is_not_hbound(d, d->atom(1), a, a->atom(0)));

    // Two hydrogens are never explained with hydrogens used; without them
    // they stand for their oxygens, which are bonded.
    const HMolecule3d near = turned_water(2.9);  // its H1 and H2 2.31 A from ours
    const ClashCriterion with_h = clash(false);
    EXPECT_TRUE(with_h.is_not_hbound(d, d->atom(1), near, near->atom(1)));
    EXPECT_FALSE(clash(true).is_not_hbound(d, d->atom(1), near, near->atom(1)));
}

TEST(ClashCriterion, LoneHydrogensAreClashesEitherWay) {
    const HMolecule3d t = turned_water(0.0);
    const HMolecule3d lone = molecule("H H9 2.0 0 0");
    for (bool no_hydrogens : {false, true}) {
        SCOPED_TRACE(no_hydrogens);
        EXPECT_EQ(clashes(t, lone, clash(no_hydrogens)), "O1>H9");
        EXPECT_TRUE(clash(no_hydrogens).is_not_hbound(t, t->atom(0), lone, lone->atom(0)));
        EXPECT_TRUE(clash(no_hydrogens).is_not_hbound(lone, lone->atom(0), t, t->atom(0)));
    }
}

TEST(ClashCriterion, DefaultsEqualityCopiesAndRadius) {
    const ClashCriterion c;
    EXPECT_EQ(c, clash(false));
    EXPECT_NE(c, clash(true));
    EXPECT_EQ(c.contact_type(), 1);
    EXPECT_EQ(c.type(), INTERMOLECULAR);
    EXPECT_EQ(c.min_path(), 4);
    EXPECT_EQ(c.max_path(), 999);
    EXPECT_STREQ(c.class_name(), "ClashCriterion");
    EXPECT_TRUE(c.combined_criterion().vdw_corrected());
    EXPECT_NEAR(c.hbond_criterion().min_angle().degrees(), 120, 1e-12);
    EXPECT_DOUBLE_EQ(c.max_radius(), std::max(c.hbond_criterion().max_radius(), c.combined_criterion().max_radius()));

    ClashCriterion changed;
    changed.combined_criterion().set_vdw_corrected(false);
    EXPECT_NE(changed, c);
    EXPECT_FALSE(static_cast<const ContactCriterion&>(c) == c.combined_criterion());
    const HContactCriterion copy = changed.clone();
    EXPECT_TRUE(*copy == changed);
    ClashCriterion target;
    target.assign(*copy);
    EXPECT_EQ(target, changed);
    target.set_combined_criterion(c.combined_criterion());
    target.set_hbond_criterion(hbonds(true));
    EXPECT_EQ(target, clash(true));
    EXPECT_EQ(error_text<std::invalid_argument>([&] { target.assign(c.hbond_criterion()); }),
              "ClashCriterion::assign(const ContactCriterion&) the argument is not of the same class");
}

TEST(ClashCriterion, InsideAMoleculeOnlyThePairItselfIsPutToTheHydrogenBondRule) {
    // HO-C-C-C-OH folded so that H1 points at O2 1.8 A away: paths H1..O2 5
    // bonds (4 from the donor), O1..O2 5, H1..C3 4.
    const HMolecule3d m = molecule(
        "O O1 0 0 0; H H1 0.96 0 0; C C1 -0.5 1.3 0; C C2 0.5 2.4 0; C C3 2.0 2.2 0;"
        "O O2 2.76 0 0; H H2 3.2 -0.8 0",
        "O1-H1 O1-C1 C1-C2 C2-C3 C3-O2 O2-H2");
    const CombinedCriterion within(true, 0.0, -5.0, INTRAMOLECULAR, 4, 999, false);
    const ClashCriterion c(within,
                           HBondCriterion(0.0, -5.0, Angle::from_degrees(120), true, false, INTRAMOLECULAR, 4, 999));
    const int o1 = 0, h1 = 1, c3 = 4, o2 = 5;
    EXPECT_EQ(within.find_intramolecular_contact(*m, h1, o2)->size(), 1u);
    EXPECT_TRUE(c.find_intramolecular_contact(*m, h1, o2)->empty());   // the hydrogen bond itself
    EXPECT_EQ(c.find_intramolecular_contact(*m, h1, c3)->size(), 1u);  // carbon accepts nothing
    // Between the two oxygens the hydrogen on O1 is not asked, unlike
    // between molecules: the overlap stays a clash.
    EXPECT_EQ(within.find_intramolecular_contact(*m, o1, o2)->size(), 1u);
    EXPECT_EQ(c.find_intramolecular_contact(*m, o1, o2)->size(), 1u);
    EXPECT_FALSE(c.is_not_hbound(m, m->atom(o1), m, m->atom(o2)));
}

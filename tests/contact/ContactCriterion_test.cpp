// Contact criteria: the contacts they find inside one molecule and between
// molecules of a crystal, the strongest-only rule, element sets, search
// radii, print forms and archives, and the grid that skips far pairs.
#include "molcryst/contact/CombinedCriterion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "ContactRecord.h"
#include "common/ArchiveBytes.h"
#include "common/ErrorText.h"
#include "common/Text.h"
#include "molcryst/crystal/Crystal.h"
#include "molecule/TestMolecules.h"

using namespace molcryst;
using namespace molcryst::testing;

namespace {

typedef std::vector<int> V;

Hset_int set_of(const V& numbers) { return Hset_int(new std::set<int>(numbers.begin(), numbers.end())); }

// "from-to strength" per contact, "; " between; "-" for a contact without strength.
template <class Contacts>
std::string table(const Contacts& contacts) {
    std::ostringstream out;
    for (const auto& c : *contacts) {
        if (out.tellp() > 0) out << "; ";
        out << c->atom_from() << "-" << c->atom_to() << " ";
        if (c->has_strength())
            out << c->strength();
        else
            out << "-";
    }
    return out.str();
}

// Every record in full, groups included.
template <class Contacts>
std::string records(const Contacts& contacts) {
    std::string out;
    for (const auto& c : *contacts) out += record(*c) + "\n";
    return out;
}

// The table, and the first and last records in full, for long lists.
template <class Contacts>
std::string summary(const Contacts& contacts) {
    if (contacts->empty()) return "";
    return table(contacts) + "\n" + record(*contacts->front()) + "\n" + record(*contacts->back());
}

// N1-C1-C2-O1 in a line with a bend: C1 at the origin, C2 at 1.5 on x, O1 at
// 4.0 on x, N1 at 2.5 on y. Distances: C1-C2 1.5, C1-N1 2.5, C2-O1 2.5,
// C2-N1 2.915, C1-O1 4.0, N1-O1 4.717; paths 1, 1, 1, 2, 2, 3.
HMolecule chain() { return molecule("C C1 0 0 0; C C2 1.5 0 0; O O1 4.0 0 0; N N1 0 2.5 0", "N1-C1 C1-C2 C2-O1"); }

}  // namespace

TEST(ContactCriterion, DistanceTableBothEndsInclusiveWithPathLimitsAndTypes) {
    HMolecule m = chain();
    // Both ends of the range are found; every ordered pair is tried, each
    // contact records the whole groups, strength is minus the distance.
    const DistanceCriterion range(2.5, 1.5, INTRA_AND_INTERMOLECULAR, 0, 10, false);
    Hvector_HBasicContact found = m->nonbonded_search(range);
    EXPECT_EQ(table(found), "0-1 -1.5; 0-3 -2.5; 1-0 -1.5; 1-2 -2.5; 2-1 -2.5; 3-0 -2.5");
    EXPECT_EQ(record(*(*found)[1]), "contact from  atom 0 to  atom 3  Strength: -2.5\nsorted 0 1 2 3 | 0 1 2 3");

    // Path limits: two or three bonds apart, within 5.
    EXPECT_EQ(table(m->nonbonded_search(DistanceCriterion(5.0, 0, INTRAMOLECULAR, 2, 3, false))),
              "0-2 -4; 1-3 -2.91548; 2-0 -4; 2-3 -4.71699; 3-1 -2.91548; 3-2 -4.71699");
    EXPECT_EQ(table(m->nonbonded_search(DistanceCriterion(5.0, 0, INTRAMOLECULAR, 4, 3, false))), "");
    EXPECT_EQ(table(m->nonbonded_search(DistanceCriterion(5.0, 0, INTERMOLECULAR, 0, 10, false))), "");
    // A minimum above the maximum finds nothing, without complaint.
    EXPECT_EQ(table(m->nonbonded_search(DistanceCriterion(1.0, 2.0, INTRAMOLECULAR, 0, 10, false))), "");

    // The other overloads: one atom, two atoms, a set, two sets; an atom
    // without a site gives nothing and is left out of sets.
    m->add(atom_without_site(Element::S, "S1"));
    EXPECT_EQ(table(m->nonbonded_search(0, range)), "0-1 -1.5; 0-3 -2.5");
    EXPECT_EQ(table(m->nonbonded_search(1, 2, range)), "1-2 -2.5");
    EXPECT_EQ(table(m->nonbonded_search(4, range)), "");
    EXPECT_EQ(table(m->nonbonded_search(0, 4, range)), "");
    EXPECT_EQ(table(m->nonbonded_search(V{0, 1, 4}, range)), "0-1 -1.5; 1-0 -1.5");
    EXPECT_EQ(table(m->nonbonded_search(V{2, 4}, V{1, 4, 3}, range)), "2-1 -2.5");
    EXPECT_EQ(record(*(*m->nonbonded_search(V{2, 4}, V{1, 4, 3}, range))[0]),
              "contact from  atom 2 to  atom 1  Strength: -2.5\nsorted 2 | 1 3");
    EXPECT_EQ(table(range.find_intramolecular_contact(*m, V{}, V{0, 1})), "");
}

TEST(ContactCriterion, VdWOverlapsAndTypesBetweenMolecules) {
    // Two waters' oxygens 2.8 apart: 0.24 inside the sum of radii (3.04).
    Hvector_HMolecule list(new vector_HMolecule{molecule("O O1 0 0 0; H H1 0.96 0 0", "O1-H1"),
                                                molecule("O O2 0 0 2.8; H H2 0 0.96 2.8", "O2-H2")});
    Crystal crystal(Cell(), list);
    const VdWCriterion overlap(0.0, -1.0, INTERMOLECULAR, 0, 10, false);
    Hvector_HMolecularContact found = crystal.nonbonded_search(0, overlap);
    ASSERT_EQ(table(found), "0-0 0.24");
    EXPECT_EQ((*found)[0]->molecule_from(), crystal.molecule(0));
    EXPECT_EQ((*found)[0]->molecule_to(), crystal.molecule(1));
    EXPECT_EQ((*found)[0]->type(), 2);  // the tag of any criterion's contacts
    EXPECT_EQ(overlap.contact_type(), 1);
    // INTRA finds nothing between two molecules, and INTER nothing inside one.
    EXPECT_EQ(table(crystal.nonbonded_search(0, VdWCriterion(0.0, -1.0, INTRAMOLECULAR, 0, 10, false))), "");
    const VdWCriterion both(2.0, -2.0, INTRA_AND_INTERMOLECULAR, 1, 1, false);
    EXPECT_EQ(table(both.find_crystal_contact(crystal, 0, V{0, 1}, 0, V{0, 1})), "0-1 1.76; 1-0 1.76");
    EXPECT_EQ(table(overlap.find_crystal_contact(crystal, 0, V{0, 1}, 0, V{0, 1})), "");
    // Between two molecules an atom is paired with the atom of the same index.
    EXPECT_EQ(table(both.find_crystal_contact(crystal, 0, V{0}, 1, V{0})), "0-0 0.24");
    // Test against the type is by identity: equal molecules are two.
    EXPECT_TRUE(overlap.test_contact_type(list->at(0), HMolecule(new Molecule3d(*list->at(0)))));
    EXPECT_FALSE(overlap.test_contact_type(list->at(0), list->at(0)));
}

TEST(ContactCriterion, ElementSetsRadiiAndCombinedOrders) {
    DistanceCriterion d(3.0, 0.0, INTERMOLECULAR, 0, 0, false);
    d.add_from_elements("C, N ,Xx");  // the bad token is skipped in silence
    d.add_to_elements("D");
    EXPECT_EQ(d.from_elements(), "C,N");
    EXPECT_EQ(d.to_elements(), "H");  // number 1 reads as H, never D
    EXPECT_EQ(d.max_radius(), 3.0);

    EXPECT_EQ(VdWCriterion(0.5, 0, INTERMOLECULAR, 0, 0, false).max_radius(), 6.0);
    // The largest radius of each set, summed: C 1.7 and N 1.55.
    EXPECT_DOUBLE_EQ(VdWCriterion(0.5, 0, INTERMOLECULAR, 0, 0, false, set_of({6}), set_of({8, 7})).max_radius(),
                     3.75);
    EXPECT_EQ(CombinedCriterion(false, 0.5, 0, INTERMOLECULAR, 0, 0, false).max_radius(), 0.5);
    EXPECT_EQ(CombinedCriterion(true, 0.5, 0, INTERMOLECULAR, 0, 0, false).max_radius(), 6.0);

    // N in one molecule, O in another, 3 apart; from {7} to {8}.
    Hvector_HMolecule list(new vector_HMolecule{molecule("N N1 0 0 0"), molecule("O O1 3 0 0")});
    Crystal crystal(Cell(), list);
    const DistanceCriterion one_way(3.0, 0, INTERMOLECULAR, 0, 0, false, set_of({7}), set_of({8}));
    const CombinedCriterion both_ways(false, 3.0, 0, INTERMOLECULAR, 0, 0, false, set_of({7}), set_of({8}));
    EXPECT_EQ(table(crystal.nonbonded_search(0, one_way)), "0-0 -3");
    EXPECT_EQ(table(crystal.nonbonded_search(1, one_way)), "");
    EXPECT_EQ(table(crystal.nonbonded_search(0, both_ways)), "0-0 -3");
    EXPECT_EQ(table(crystal.nonbonded_search(1, both_ways)), "0-0 -3");
    EXPECT_TRUE(both_ways.valid_pair(crystal, 1, 0, 0, 0));
    EXPECT_FALSE(both_ways.valid_pair(list->at(0), 0, list->at(0), 0));  // N with N
    // vdW-corrected: 3 - (1.55 + 1.52).
    const CombinedCriterion vdw(true, 0.0, -1.0, INTERMOLECULAR, 0, 0, false, set_of({7}), set_of({8}));
    EXPECT_EQ(table(crystal.nonbonded_search(1, vdw)), "0-0 0.07");
    EXPECT_EQ(vdw.contact_type(), 1);
    EXPECT_EQ(both_ways.contact_type(), 2);
}

namespace {

// Contacts of preset strengths ("-" for none), to try the strongest-only rule.
class PresetCriterion : public DistanceCriterion {
public:
    PresetCriterion(bool strongest_only, std::map<std::pair<int, int>, std::string> strengths)
        : DistanceCriterion(1.0, 0.0, INTRA_AND_INTERMOLECULAR, 0, 10, strongest_only), strengths_(strengths) {}
    Hvector_HBasicContact find_intramolecular_contact(const Molecule&, int a, int b) const override {
        Hvector_HBasicContact out(new vector_HBasicContact());
        auto found = strengths_.find(std::make_pair(a, b));
        if (found == strengths_.end()) return out;
        if (found->second == "-")
            out->push_back(HBasicContact(new BasicContact(a, b)));
        else
            out->push_back(HBasicContact(new BasicContact(a, b, std::stod(found->second))));
        return out;
    }
    using DistanceCriterion::find_intramolecular_contact;

private:
    std::map<std::pair<int, int>, std::string> strengths_;
};

}  // namespace

TEST(ContactCriterion, StrongestOnlyKeepsTheFirstOfEqualsAndYieldsToContactsWithoutStrength) {
    HMolecule m = molecule("C C1 0 0 0; C C2 9 0 0; C C3 0 9 0; C C4 0 0 9");
    std::map<std::pair<int, int>, std::string> s = {{{0, 1}, "0.1"}, {{0, 2}, "0.5"}, {{1, 3}, "0.5"}};
    EXPECT_EQ(table(m->nonbonded_search(PresetCriterion(false, s))), "0-1 0.1; 0-2 0.5; 1-3 0.5");
    Hvector_HBasicContact best = m->nonbonded_search(PresetCriterion(true, s));
    EXPECT_EQ(records(best), "contact from  atom 0 to  atom 2  Strength: 0.5\nsorted 0 1 2 3 | 0 1 2 3\n");
    // Strengths at or below -1e9 never beat the starting value.
    EXPECT_EQ(table(m->nonbonded_search(PresetCriterion(true, {{{0, 1}, "-1e9"}}))), "");
    // Any contact without a strength is kept, each as found, and the strongest is dropped.
    s[{2, 0}] = "-";
    s[{3, 1}] = "-";
    EXPECT_EQ(table(m->nonbonded_search(PresetCriterion(true, s))), "2-0 -; 3-1 -");
    EXPECT_EQ(table(m->nonbonded_search(V{0, 1}, PresetCriterion(true, s))), "0-1 0.1");
}

TEST(ContactCriterion, PrintForms) {
    EXPECT_EQ(printed(DistanceCriterion(2.5, 1.5, INTRA_AND_INTERMOLECULAR, 1, 4, false, set_of({7, 6}))),
              "max tolerance: 2.5, min tolerance: 1.5, from atomic numbers: C,N, to atomic numbers: \n"
              "type: INTRA and INTER, max bond path: 4, min bond path: 1\n");
    EXPECT_EQ(printed(VdWCriterion(0.5, -1, INTERMOLECULAR, 1, 4, false, Hset_int(), set_of({1, 8}))),
              "VdWCriterion: max tolerance: 0.5, min tolerance: -1, from atomic numbers: , to atomic numbers: H,O\n"
              "type: INTER\n");
    EXPECT_EQ(printed(CombinedCriterion(true, 0.5, -1, INTRAMOLECULAR, 2, 3, false)),
              "vdw_corrected: 1 VdWCriterion: max tolerance: 0.5, min tolerance: -1, from atomic numbers: , to "
              "atomic numbers: \ntype: INTRA, max bond path: 3, min bond path: 2\n");
    EXPECT_EQ(printed(CombinedCriterion(false, 0.5, -1, INTERMOLECULAR, 2, 3, false)),
              "vdw_corrected: 0 max tolerance: 0.5, min tolerance: -1, from atomic numbers: , to atomic numbers: \n"
              "type: INTER\n");
    EXPECT_STREQ(CombinedCriterion(false, 0, 0, INTERMOLECULAR, 0, 0, false).class_name(), "CombinedCriterion");
}

TEST(ContactCriterion, ArchiveLayoutRoundTripAndEquality) {
    const VdWCriterion v(2.5, 1.5, INTRAMOLECULAR, 1, 4, true, set_of({8, 6}), set_of({1}));
    const std::vector<unsigned char> bytes = written(v);
    EXPECT_EQ(bytes, doubles({2.5, 1.5}) + words({2, 6, 8, 1, 1, 1, 4, 2}));

    // Read into a combined criterion: vdw_corrected and strongest_only stay.
    CombinedCriterion c(false, 9, 9, INTERMOLECULAR, 0, 0, false);
    Archive ar = archive_of(bytes);
    c.read(ar);
    EXPECT_FALSE(c.vdw_corrected());
    EXPECT_FALSE(c.strongest_only());
    EXPECT_EQ(printed(c),
              "vdw_corrected: 0 max tolerance: 2.5, min tolerance: 1.5, from atomic numbers: C,O, to atomic numbers: H\n"
              "type: INTRA, max bond path: 4, min bond path: 1\n");
    EXPECT_EQ(c, CombinedCriterion(false, 2.5, 1.5, INTRAMOLECULAR, 1, 4, true, set_of({6, 8}), set_of({1})));

    // Equality: strongest_only plays no part, the class and the flag do.
    const DistanceCriterion d(2.5, 1.5, INTRAMOLECULAR, 1, 4, false, set_of({8, 6}), set_of({1}));
    EXPECT_TRUE(v == VdWCriterion(2.5, 1.5, INTRAMOLECULAR, 1, 4, false, set_of({6, 8}), set_of({1})));
    EXPECT_FALSE(static_cast<const ContactCriterion&>(v) == d);
    EXPECT_FALSE(d == static_cast<const ContactCriterion&>(v));
    EXPECT_FALSE(v == VdWCriterion(2.5, 1.5, INTRAMOLECULAR, 1, 5, true, set_of({6, 8}), set_of({1})));
    EXPECT_NE(c, CombinedCriterion(true, 2.5, 1.5, INTRAMOLECULAR, 1, 4, true, set_of({6, 8}), set_of({1})));

    // Clones and assignments own their sets.
    HContactCriterion copy = d.clone();
    EXPECT_TRUE(*copy == d);
    static_cast<DistanceCriterion&>(*copy).add_to_elements("N");
    EXPECT_EQ(d.to_elements(), "H");
    DistanceCriterion target(0, 0, INTERMOLECULAR, 0, 0, false);
    target.assign(d);
    EXPECT_TRUE(target == d);
    EXPECT_EQ(error_text<std::invalid_argument>([&] { target.assign(v); }),
              "DistanceCriterion::assign(const ContactCriterion&) the argument is not of the same class");

    // Every truncation, and a type that no criterion writes, fail cleanly
    // and leave the criterion as it was.
    const std::string before = printed(target);
    for (std::size_t n = 0; n < bytes.size(); ++n) {
        Archive cut_ar = archive_of(cut(bytes, n));
        EXPECT_THROW(target.read(cut_ar), std::runtime_error) << n;
        EXPECT_EQ(printed(target), before);
    }
    std::vector<unsigned char> bad = bytes;
    bad[bad.size() - 4] = 7;
    Archive bad_ar = archive_of(bad);
    EXPECT_EQ(error_text<std::runtime_error>([&] { target.read(bad_ar); }),
              "ContactCriterion::read type: contact type 7 is not 1, 2 or 3");
    Archive huge_set = archive_of(doubles({1, 0}) + words({1000000}));
    EXPECT_EQ(error_text<std::runtime_error>([&] { target.read(huge_set); }).substr(0, 54),
              "DistanceCriterion::read from_atomic_numbers: set size ");
    EXPECT_EQ(printed(target), before);
}

namespace {

// The same rules through a subclass, which the group searches do not trust
// with a search radius, and whose path test asks the molecule each time: the
// literal walk over all pairs.
template <class C>
class Literal : public C {
public:
    using C::C;
    bool test_path(const Molecule& mol, int a, int b) const override {
        const int path = mol.shortest_path(a, b);
        return this->min_path() <= path && path <= this->max_path();
    }
};

// `n` atoms of C, N, O and H at random in a cube of side `side`, every
// fourth one bonded to the one before.
HMolecule random_molecule(std::mt19937& rng, int n, double side) {
    std::uniform_real_distribution<double> coordinate(0.0, side);
    const char* elements[4] = {"C", "N", "O", "H"};
    HMolecule m(new Molecule3d());
    for (int i = 0; i < n; ++i) {
        m->add(atom_at(elements[rng() % 4], "A" + std::to_string(i), coordinate(rng), coordinate(rng),
                       coordinate(rng)));
        if (i % 4 != 0) m->add(HBond(new Bond3d(SINGLE_BOND)), i - 1, i);
    }
    return m;
}

V indices(int n, int step = 1) {
    V out;
    for (int i = 0; i < n; i += step) out.push_back(i);
    return out;
}

bool found_some = false;  // whether a comparison had contacts to compare

template <class C, class... Args>
void expect_grid_as_literal(const Crystal& crystal, Args... args) {
    for (bool strongest : {false, true}) {
        const C fast(args..., strongest, set_of({6, 7, 8, 1}), Hset_int());
        const Literal<C> slow(args..., strongest, set_of({6, 7, 8, 1}), Hset_int());
        const int n0 = crystal.molecule(0)->natoms(), n1 = crystal.molecule(1)->natoms();
        // Groups in a shuffled order with repeats, so that order matters.
        V group0 = indices(n0);
        std::reverse(group0.begin() + n0 / 3, group0.end());
        group0.push_back(5);
        const V group1 = indices(n1, 2);
        const std::string inter = summary(fast.find_crystal_contact(crystal, 0, group0, 1, group1));
        EXPECT_EQ(inter, summary(slow.find_crystal_contact(crystal, 0, group0, 1, group1)));
        const std::string intra = summary(fast.find_crystal_contact(crystal, 0, group0, 0, group0));
        EXPECT_EQ(intra, summary(slow.find_crystal_contact(crystal, 0, group0, 0, group0)));
        const std::string inside = summary(crystal.molecule(1)->nonbonded_search(fast));
        EXPECT_EQ(inside, summary(crystal.molecule(1)->nonbonded_search(slow)));
        found_some = found_some || !inter.empty() || !intra.empty() || !inside.empty();
    }
}

}  // namespace

TEST(ContactCriterion, GridSearchFindsWhatTheWalkOverAllPairsFinds) {
    std::mt19937 rng(13);
    // Random: 0.1 atoms per cubic Angstrom. Dense: 48 atoms in 1.5 A, and a
    // cluster sitting on cell edges of the grid.
    for (double side : {10.6, 1.5}) {
        const int n = side > 2 ? 120 : 48;
        Hvector_HMolecule list(new vector_HMolecule{random_molecule(rng, n, side), random_molecule(rng, n - n / 5, side)});
        Crystal crystal(Cell(), list);
        expect_grid_as_literal<DistanceCriterion>(crystal, 3.5, 0.5, INTRA_AND_INTERMOLECULAR, 2, 3);
        expect_grid_as_literal<VdWCriterion>(crystal, 0.1, -0.8, INTRA_AND_INTERMOLECULAR, 0, 1);
        expect_grid_as_literal<CombinedCriterion>(crystal, true, 0.3, -9.0, INTERMOLECULAR, 0, 0);
        expect_grid_as_literal<CombinedCriterion>(crystal, false, 3.0, 0.0, INTRAMOLECULAR, -1, 2);
    }
    // Exact distances at the search radius itself: a simple cubic lattice of
    // spacing 2 with the radius 2 (and VdW with H only, 2 - 2.4 = -0.4).
    HMolecule lattice(new Molecule3d());
    for (int i = 0; i < 216; ++i) lattice->add(atom_at(Element::H, "H", 2.0 * (i % 6), 2.0 * (i / 6 % 6), 2.0 * (i / 36)));
    HMolecule other(new Molecule3d(*lattice));
    other->atom(0)->set_label("X");  // a different molecule at the same places
    Crystal crystal(Cell(), Hvector_HMolecule(new vector_HMolecule{lattice, other}));
    expect_grid_as_literal<DistanceCriterion>(crystal, 2.0, 2.0, INTRA_AND_INTERMOLECULAR, -1, -1);
    expect_grid_as_literal<VdWCriterion>(crystal, -0.4, -0.4, INTERMOLECULAR, 0, 0);
    // Each atom has six neighbours at 2, less those on the faces of the cube.
    EXPECT_EQ(DistanceCriterion(2.0, 2.0, INTERMOLECULAR, 0, 0, false)
                  .find_crystal_contact(crystal, 0, indices(216), 1, indices(216))
                  ->size(),
              216u * 6 - 6 * 36);
    EXPECT_TRUE(found_some);
}

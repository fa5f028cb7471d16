#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "molcryst/support/AtomPredicates.h"
#include "molcryst/support/BondPredicates.h"

using namespace molcryst;

namespace {

// Atom-like and bond-like types with just what the predicates ask of atoms.
struct FakeElement {
    int z;
    int code_value;
    int atomic_number() const { return z; }
    int code() const { return code_value; }
    bool non_metal() const { return z == 1 || z == 6 || z == 7 || z == 8; }
};
struct FakeBond;
struct FakeAtom {
    std::string label_;
    FakeElement element_;
    bool site_ = false;
    std::vector<THandle<FakeBond> > bonds_;
    std::string label() const { return label_; }
    FakeElement element() const { return element_; }
    bool has_site() const { return site_; }
    int nbonds() const { return static_cast<int>(bonds_.size()); }
    std::vector<THandle<FakeBond> >::const_iterator begin_bonds() const { return bonds_.begin(); }
    std::vector<THandle<FakeBond> >::const_iterator end_bonds() const { return bonds_.end(); }
};
typedef THandle<FakeAtom> HFakeAtom;
struct FakeBond {
    HFakeAtom a1, a2;
    int type_;
    HFakeAtom atom1() const { return a1; }
    HFakeAtom atom2() const { return a2; }
    int type() const { return type_; }
};
typedef THandle<FakeBond> HFakeBond;

const FakeElement H{1, 2}, C{6, 1}, N{7, 35}, Cu{29, 26};

// A small molecule; the destructor breaks the atom-bond handle cycles.
struct Mol {
    std::vector<HFakeAtom> atoms;
    std::vector<HFakeBond> bonds;
    HFakeAtom atom(const std::string& label, FakeElement e) {
        atoms.push_back(HFakeAtom(new FakeAtom{label, e, false, {}}));
        return atoms.back();
    }
    HFakeBond bond(const HFakeAtom& a, const HFakeAtom& b, int type) {
        bonds.push_back(HFakeBond(new FakeBond{a, b, type}));
        a->bonds_.push_back(bonds.back());
        b->bonds_.push_back(bonds.back());
        return bonds.back();
    }
    ~Mol() {
        for (const HFakeAtom& a : atoms) a->bonds_.clear();
    }
};

}  // namespace

TEST(AtomPredicates, SelectByLabelElementSiteAndTerminalHydrogen) {
    Mol m;
    HFakeAtom c1 = m.atom("C1", C), h1 = m.atom("H1", H), n1 = m.atom("N1", N), lone = m.atom("H9", H);
    c1->site_ = true;
    m.bond(c1, h1, 1);
    m.bond(c1, n1, 2);
    EXPECT_TRUE(AtomLabelPredicate<HFakeAtom>("N1")(n1));
    EXPECT_FALSE(AtomLabelPredicate<HFakeAtom>("N1")(c1));
    EXPECT_EQ(std::count_if(m.atoms.begin(), m.atoms.end(), AtomAtomicNumberPredicate<HFakeAtom>(1)), 2);
    EXPECT_TRUE(AtomElementCodePredicate<HFakeAtom>(35)(n1));
    EXPECT_EQ(std::count_if(m.atoms.begin(), m.atoms.end(), AtomHasSitePredicate<HFakeAtom>()), 1);
    EXPECT_TRUE(AtomTerminalHDPredicate<HFakeAtom>()(h1));
    EXPECT_FALSE(AtomTerminalHDPredicate<HFakeAtom>()(lone));
    EXPECT_TRUE(AtomAlwaysTruePredicate<HFakeAtom>()(lone));
    EXPECT_THROW(AtomLabelPredicate<HFakeAtom>("x")(HFakeAtom()), std::logic_error);
}

TEST(AtomPredicates, PolymericAtomsAndWhatHangsOnThem) {
    // Cu bridged by polymeric bonds, carrying a water-like O with two H;
    // a second bridge atom also bonded to a carbon.
    Mol m;
    HFakeAtom cu = m.atom("Cu1", Cu), bridge = m.atom("O1", {8, 70}), h1 = m.atom("H1", H), h2 = m.atom("H2", H);
    HFakeAtom cu2 = m.atom("Cu2", Cu), other = m.atom("O2", {8, 70}), h3 = m.atom("H3", H), c = m.atom("C1", C);
    HFakeAtom lone = m.atom("O3", {8, 70});
    m.bond(bridge, cu, 6);
    m.bond(bridge, cu2, 6);
    m.bond(bridge, h1, 1);
    m.bond(bridge, h2, 1);
    m.bond(other, cu2, 6);
    m.bond(other, h3, 1);
    m.bond(other, c, 1);

    AtomPolymericPredicate<HFakeAtom> polymeric;
    EXPECT_TRUE(polymeric(cu));
    EXPECT_FALSE(polymeric(bridge));
    EXPECT_FALSE(polymeric(lone));  // no bonds at all

    AtomPolymericTerminalHDPredicate<HFakeAtom> hanging;
    EXPECT_TRUE(hanging(h1));
    EXPECT_TRUE(hanging(h2));
    EXPECT_FALSE(hanging(h3));  // its neighbour also holds a carbon
    EXPECT_FALSE(hanging(cu));
    EXPECT_FALSE(hanging(c));
}

TEST(BondPredicates, SelectByTypeLabelsElementAndMetal) {
    Mol m;
    HFakeAtom c1 = m.atom("C1", C), n1 = m.atom("N1", N), cu = m.atom("Cu1", Cu), h1 = m.atom("H1", H);
    HFakeBond cn = m.bond(c1, n1, 2), ncu = m.bond(n1, cu, 9), ch = m.bond(c1, h1, 1);
    EXPECT_TRUE(BondTypePredicate<HFakeBond>(2)(cn));
    EXPECT_FALSE(BondTypePredicate<HFakeBond>(2)(ch));
    BondMultipleTypePredicate<HFakeBond> types;
    types.insert(1);
    types.insert(9);
    EXPECT_EQ(std::count_if(m.bonds.begin(), m.bonds.end(), types), 2);
    EXPECT_TRUE(BondAtomLabelsPredicate<HFakeBond>("N1", "C1")(cn));
    EXPECT_TRUE(BondAtomLabelsPredicate<HFakeBond>("C1", "N1")(cn));
    EXPECT_FALSE(BondAtomLabelsPredicate<HFakeBond>("C1", "C1")(cn));
    EXPECT_TRUE(BondAtomicNumberPredicate<HFakeBond>(1)(ch));
    EXPECT_FALSE(BondAtomicNumberPredicate<HFakeBond>(1)(cn));
    EXPECT_TRUE(BondMetalPredicate<HFakeBond>()(ncu));
    EXPECT_FALSE(BondMetalPredicate<HFakeBond>()(cn));
    EXPECT_TRUE(BondAlwaysTruePredicate<HFakeBond>()(cn));
    EXPECT_THROW(BondTypePredicate<HFakeBond>(1)(HFakeBond()), std::logic_error);
}

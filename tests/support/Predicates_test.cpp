#include <gtest/gtest.h>

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

std::string name(const HFakeAtom& a) { return a->label_; }
std::string name(const HFakeBond& b) { return b->a1->label_ + "-" + b->a2->label_; }

/// The names of the items that `selected` selects, in order.
template <class Items, class Predicate>
std::string which(const Items& items, Predicate selected) {
    std::string text;
    for (const auto& item : items)
        if (selected(item)) text += (text.empty() ? "" : " ") + name(item);
    return text;
}

}  // namespace

TEST(AtomPredicates, SelectByLabelElementSiteAndTerminalHydrogen) {
    Mol m;
    HFakeAtom c1 = m.atom("C1", C), h1 = m.atom("H1", H), n1 = m.atom("N1", N);
    m.atom("H9", H);
    c1->site_ = true;
    m.bond(c1, h1, 1);
    m.bond(c1, n1, 2);
    EXPECT_EQ(which(m.atoms, AtomLabelPredicate<HFakeAtom>("N1")), "N1");
    EXPECT_EQ(which(m.atoms, AtomAtomicNumberPredicate<HFakeAtom>(1)), "H1 H9");
    EXPECT_EQ(which(m.atoms, AtomElementCodePredicate<HFakeAtom>(35)), "N1");
    EXPECT_EQ(which(m.atoms, AtomHasSitePredicate<HFakeAtom>()), "C1");
    EXPECT_EQ(which(m.atoms, AtomTerminalHDPredicate<HFakeAtom>()), "H1");
    EXPECT_EQ(which(m.atoms, AtomAlwaysTruePredicate<HFakeAtom>()), "C1 H1 N1 H9");
    EXPECT_THROW(AtomLabelPredicate<HFakeAtom>("x")(HFakeAtom()), std::logic_error);
}

TEST(AtomPredicates, PolymericAtomsAndWhatHangsOnThem) {
    // Cu1 bridged to Cu2 by polymeric bonds through O1, which carries two H;
    // a second bridge atom O2 also holds a carbon; O3 has no bonds at all.
    Mol m;
    HFakeAtom cu = m.atom("Cu1", Cu), bridge = m.atom("O1", {8, 70}), h1 = m.atom("H1", H), h2 = m.atom("H2", H);
    HFakeAtom cu2 = m.atom("Cu2", Cu), other = m.atom("O2", {8, 70}), h3 = m.atom("H3", H), c = m.atom("C1", C);
    m.atom("O3", {8, 70});
    m.bond(bridge, cu, 6);
    m.bond(bridge, cu2, 6);
    m.bond(bridge, h1, 1);
    m.bond(bridge, h2, 1);
    m.bond(other, cu2, 6);
    m.bond(other, h3, 1);
    m.bond(other, c, 1);
    EXPECT_EQ(which(m.atoms, AtomPolymericPredicate<HFakeAtom>()), "Cu1 Cu2");
    EXPECT_EQ(which(m.atoms, AtomMetalPredicate<HFakeAtom>()), "Cu1 Cu2");
    EXPECT_EQ(which(m.atoms, AtomPolymericTerminalHDPredicate<HFakeAtom>()), "H1 H2");
}

TEST(BondPredicates, SelectByTypeLabelsElementAndMetal) {
    Mol m;
    HFakeAtom c1 = m.atom("C1", C), n1 = m.atom("N1", N), cu = m.atom("Cu1", Cu), h1 = m.atom("H1", H);
    m.bond(c1, n1, 2);
    m.bond(n1, cu, 9);
    m.bond(c1, h1, 1);
    BondMultipleTypePredicate<HFakeBond> types;
    types.insert(1);
    types.insert(9);
    EXPECT_EQ(which(m.bonds, BondTypePredicate<HFakeBond>(2)), "C1-N1");
    EXPECT_EQ(which(m.bonds, types), "N1-Cu1 C1-H1");
    EXPECT_EQ(which(m.bonds, BondAtomLabelsPredicate<HFakeBond>("N1", "C1")), "C1-N1");
    EXPECT_EQ(which(m.bonds, BondAtomLabelsPredicate<HFakeBond>("C1", "N1")), "C1-N1");
    EXPECT_EQ(which(m.bonds, BondAtomLabelsPredicate<HFakeBond>("C1", "C1")), "");
    EXPECT_EQ(which(m.bonds, BondAtomicNumberPredicate<HFakeBond>(1)), "C1-H1");
    EXPECT_EQ(which(m.bonds, BondMetalPredicate<HFakeBond>()), "N1-Cu1");
    EXPECT_EQ(which(m.bonds, BondAlwaysTruePredicate<HFakeBond>()), "C1-N1 N1-Cu1 C1-H1");
    EXPECT_THROW(BondTypePredicate<HFakeBond>(1)(HFakeBond()), std::logic_error);
}

#include "molcryst/connectivity/Connectivity.h"

#include <gtest/gtest.h>

#include <sstream>

#include "common/ArchiveBytes.h"
#include "common/ErrorText.h"
#include "molcryst/connectivity/ConnectivityCreator.h"
#include "molecule/TestMolecules.h"

namespace molcryst {
namespace {

using testing::archive_of;
using testing::bytes_of;
using testing::error_text;
using testing::words;

std::string printed(const Connectivity& c) {
    std::ostringstream out;
    c.print(out);
    return out.str();
}

// A connectivity "O-H" water and a separate sodium cation, by hand.
Connectivity water_and_sodium() {
    Connectivity c;
    HConnectivityAtom o(new ConnectivityAtom(Element::O)), h1(new ConnectivityAtom(Element::H)),
        h2(new ConnectivityAtom(Element::H)), na(new ConnectivityAtom(Element::Na, 1));
    c.add(HConnectivityBond(new ConnectivityBond(SINGLE_BOND)), o, h1);
    c.add(na);
    c.add(HConnectivityBond(new ConnectivityBond(SINGLE_BOND)), o, h2);
    return c;
}

TEST(Connectivity, FromMoleculeKeepsOrderElementsChargesAndBondTypes) {
    HMolecule3d acetate = testing::acetate();
    for (int i = 0; i < acetate->natoms(); ++i)
        if (acetate->atom(i)->label() == "O2") acetate->atom(i)->set_formal_charge(-1);
    Connectivity c(*acetate);
    ASSERT_EQ(c.natoms(), acetate->natoms());
    ASSERT_EQ(c.nbonds(), acetate->nbonds());
    for (int i = 0; i < c.natoms(); ++i) {
        EXPECT_EQ(c.atom(i)->element(), acetate->atom(i)->element());
        EXPECT_EQ(c.atom(i)->formal_charge(), acetate->atom(i)->formal_charge());
        EXPECT_EQ(c.atom(i)->nbonds(), acetate->atom(i)->nbonds());
        EXPECT_TRUE(c.atom(i)->is_in_connectivity());
    }
    for (int i = 0; i < c.nbonds(); ++i) {
        EXPECT_EQ(c.bond(i)->type(), acetate->bond(i)->type());
        EXPECT_EQ(c.bond(i)->atom1()->index(), acetate->bond(i)->atom1()->index());
        EXPECT_EQ(c.bond(i)->atom2()->index(), acetate->bond(i)->atom2()->index());
    }
    EXPECT_EQ(c.formal_charge(), -1);
    // Methyl carbon C1 carries three hydrogens; all isotopes or plain, the same here.
    const int c1 = testing::atom_index(*acetate, "C1");
    EXPECT_EQ(c.atom(c1)->nhydrogens(true), 3);
    EXPECT_EQ(c.atom(c1)->nhydrogens(false), 3);
    c.atom(c.atom(c1)->neighbours().front()->index());  // neighbours answer through the graph
    EXPECT_EQ(c, Connectivity(*acetate));
}

TEST(Connectivity, PrintForms) {
    Connectivity c;
    c.add(HConnectivityBond(new ConnectivityBond(DOUBLE_BOND)), HConnectivityAtom(new ConnectivityAtom(Element::C)),
          HConnectivityAtom(new ConnectivityAtom(Element::O, -1)));
    EXPECT_EQ(printed(c),
              "natoms: 2\nelement: C, formal_charge: 0\nelement: O, formal_charge: -1\n"
              "nbonds: 1\ntype: 2, atom1:  (0), atom2:  (1)\n");
    std::ostringstream free_bond;
    ConnectivityBond(AROMATIC_BOND).print(free_bond);
    EXPECT_EQ(free_bond.str(), "type: 5");
}

TEST(Connectivity, ArchiveLayoutAndRoundTrip) {
    Connectivity c = water_and_sodium();
    Archive ar = Archive::temporary();
    c.write(ar);
    const signed char o = Element::O, h = Element::H, na = Element::Na;
    std::vector<unsigned char> expected = words({4});
    auto atom = [&expected](signed char code, int charge) {
        expected.push_back(static_cast<unsigned char>(code));
        std::vector<unsigned char> w = words({charge});
        expected.insert(expected.end(), w.begin(), w.end());
    };
    // Atom order: o, h1 (added with the first bond), na, h2.
    atom(o, 0);
    atom(h, 0);
    atom(na, 1);
    atom(h, 0);
    std::vector<unsigned char> tail = words({2, SINGLE_BOND, 0, 1, SINGLE_BOND, 0, 3});
    expected.insert(expected.end(), tail.begin(), tail.end());
    EXPECT_EQ(bytes_of(ar), expected);

    Connectivity back;
    back.read(ar);
    EXPECT_EQ(back, c);
    EXPECT_EQ(printed(back), printed(c));
    EXPECT_EQ(back.atom(2)->formal_charge(), 1);
}

TEST(Connectivity, MalformedArchivesThrowRuntimeErrorAndLeaveTheRecord) {
    const Connectivity original = water_and_sodium();
    auto refused = [&original](const std::vector<unsigned char>& bytes) {
        Connectivity c(original);
        Archive ar = archive_of(bytes);
        std::string text = error_text<std::runtime_error>([&] { c.read(ar); });
        EXPECT_EQ(c, original) << text;
        return text;
    };
    auto two_carbons = [](std::vector<int> bond_words) {
        std::vector<unsigned char> b = words({2});
        for (int k = 0; k < 2; ++k) {
            b.push_back(static_cast<unsigned char>(Element::C));
            std::vector<unsigned char> w = words({0});
            b.insert(b.end(), w.begin(), w.end());
        }
        std::vector<unsigned char> w = words(bond_words);
        b.insert(b.end(), w.begin(), w.end());
        return b;
    };
    EXPECT_NE(refused(words({-1})).find("Connectivity::read natoms"), std::string::npos);
    EXPECT_NE(refused(words({1000000})).find("cannot fit"), std::string::npos);
    EXPECT_NE(refused(two_carbons({1, 1, 0, 2})).find("Connectivity::read bond atoms"), std::string::npos);
    EXPECT_NE(refused(two_carbons({1, 1, 1, 1})).find("to itself"), std::string::npos);
    EXPECT_NE(refused(two_carbons({2, 1, 0, 1, 1, 1, 0})).find("repeats a bond"), std::string::npos);
    EXPECT_NE(refused(two_carbons({1, 10, 0, 1})).find("ConnectivityBond::read type"), std::string::npos);
    EXPECT_NE(refused(two_carbons({1, 1, 0})).find("cannot fit"), std::string::npos);
    std::vector<unsigned char> cut = two_carbons({1, 1, 0, 1});
    cut.pop_back();
    EXPECT_NE(refused(cut), "no exception");
    std::vector<unsigned char> bad_element = words({1});
    bad_element.push_back(108);
    std::vector<unsigned char> charge = words({0, 0});
    bad_element.insert(bad_element.end(), charge.begin(), charge.end());
    EXPECT_NE(refused(bad_element).find("ConnectivityAtom::read element"), std::string::npos);
}

TEST(Connectivity, AddClonesAddGraphSharesAndCopiesAreIndependent) {
    Connectivity c = water_and_sodium();
    Connectivity twice;
    twice.add(c);
    twice.add(c);
    ASSERT_EQ(twice.natoms(), 8);
    ASSERT_EQ(twice.nbonds(), 4);
    EXPECT_EQ(twice.bond(2)->atom1()->index(), 4);  // found by index offset
    EXPECT_EQ(twice.bond(3)->atom2()->index(), 7);
    EXPECT_NE(twice.atom(0), c.atom(0));
    EXPECT_EQ(c.natoms(), 4);  // the source is untouched, its atoms still its own
    EXPECT_EQ(c.atom(0)->graph_data().graph(), c.atom(1)->graph_data().graph());

    Connectivity copy(c);
    EXPECT_EQ(copy, c);
    copy.atom(0)->set_formal_charge(2);
    EXPECT_EQ(c.atom(0)->formal_charge(), 0);
    EXPECT_NE(copy, c);
    copy = c;
    EXPECT_EQ(copy, c);

    // add_graph takes the very objects: the free parts of a split graph.
    THandle<Connectivity::GraphType> topology = c.graph();
    c.clear();
    Connectivity shared;
    shared.add_graph(*topology);
    EXPECT_EQ(shared.natoms(), 4);
    EXPECT_EQ(shared.atom(0), topology->node(0u));
    EXPECT_EQ(shared.bond(1), topology->edge(1u));

    // ConnectivityCreator builds through the creation interface.
    ConnectivityCreator creator;
    HConnectivity built = creator.create_molecule();
    EXPECT_EQ(creator.add_atom(*built, Element::N), 0);
    EXPECT_EQ(creator.add_atom(*built, Element::N), 1);
    EXPECT_EQ(creator.add_bond(*built, BondData(0, 1, TRIPLE_BOND)), 0);
    EXPECT_EQ(creator.add_molecule(*built, *built), (std::vector<int>{2, 3}));
    EXPECT_EQ(built->bond(1)->type(), TRIPLE_BOND);
    EXPECT_EQ(built->bond(1)->atom1()->index(), 2);
}

TEST(Connectivity, EqualityLooksAtIndicesChargesAndEnds) {
    Connectivity a = water_and_sodium();
    EXPECT_EQ(a, water_and_sodium());
    Connectivity charged = water_and_sodium();
    charged.atom(3)->set_formal_charge(-1);
    EXPECT_NE(a, charged);
    Connectivity retyped = water_and_sodium();
    retyped.bond(0)->set_type(DOUBLE_BOND);
    EXPECT_NE(a, retyped);
    // The same atoms and bond types with the hydrogen at another index.
    Connectivity reordered;
    HConnectivityAtom o(new ConnectivityAtom(Element::O)), h1(new ConnectivityAtom(Element::H)),
        h2(new ConnectivityAtom(Element::H)), na(new ConnectivityAtom(Element::Na, 1));
    reordered.add(o);
    reordered.add(h1);
    reordered.add(na);
    reordered.add(h2);
    reordered.add(HConnectivityBond(new ConnectivityBond(SINGLE_BOND)), h1, o);
    reordered.add(HConnectivityBond(new ConnectivityBond(SINGLE_BOND)), o, h2);
    EXPECT_NE(a, reordered);  // bond 0 runs the other way
    EXPECT_EQ(a.natoms(), reordered.natoms());
}

TEST(Connectivity, SplitKeepsTheFirstPartAndReturnsTheOthers) {
    Connectivity c = water_and_sodium();
    std::vector<HConnectivity> parts = c.split();
    ASSERT_EQ(parts.size(), 2u);
    EXPECT_EQ(parts[0]->natoms(), 3);
    EXPECT_EQ(parts[0]->nbonds(), 2);
    EXPECT_EQ(parts[1]->natoms(), 1);
    EXPECT_EQ(parts[1]->atom(0)->element(), Element(Element::Na));
    EXPECT_EQ(c.natoms(), 4);  // split works on a copy

    HConnectivityAtom sodium = c.atom(2);
    std::vector<HConnectivity> others = c.inplace_split();
    ASSERT_EQ(others.size(), 1u);
    EXPECT_EQ(c.natoms(), 3);
    EXPECT_EQ(others[0]->atom(0), sodium);  // the same object, now in the new record
    EXPECT_EQ(sodium->graph_data().graph(), others[0]->atom(0)->graph_data().graph());
    EXPECT_EQ(c.bond(1)->atom2()->index(), 2);
    EXPECT_TRUE(c.inplace_split().empty());  // connected: nothing else
    EXPECT_EQ(c.natoms(), 3);
}

TEST(Connectivity, RemoveAtomsByPredicate) {
    Connectivity c(*testing::acetic_acid());
    const int before = c.natoms();
    EXPECT_EQ(c.remove_atoms(AtomTerminalHDPredicate<HConnectivityAtom>()), 4);
    EXPECT_EQ(c.natoms(), before - 4);
    for (int i = 0; i < c.natoms(); ++i) EXPECT_NE(c.atom(i)->element(), Element(Element::H));

    // A metal held by polymeric bonds only, and a hydrogen hanging on a bridge.
    Connectivity chain;
    HConnectivityAtom cu(new ConnectivityAtom(Element::Cu)), o1(new ConnectivityAtom(Element::O)),
        o2(new ConnectivityAtom(Element::O)), h(new ConnectivityAtom(Element::H));
    chain.add(HConnectivityBond(new ConnectivityBond(POLYMERIC_BOND)), cu, o1);
    chain.add(HConnectivityBond(new ConnectivityBond(POLYMERIC_BOND)), cu, o2);
    chain.add(HConnectivityBond(new ConnectivityBond(SINGLE_BOND)), o1, h);
    EXPECT_EQ(chain.remove_atoms(AtomPolymericPredicate<HConnectivityAtom>()), 2);  // cu and o2
    EXPECT_EQ(chain.natoms(), 2);
    EXPECT_FALSE(cu->is_in_connectivity());
}

TEST(Connectivity, RingSizesOtherAtomAndMessages) {
    // Cyclohexane carbons with a methyl: ring members answer 6, the methyl 0.
    Connectivity c;
    std::vector<HConnectivityAtom> ring;
    for (int i = 0; i < 6; ++i) ring.push_back(HConnectivityAtom(new ConnectivityAtom(Element::C)));
    for (int i = 0; i < 6; ++i) c.add(HConnectivityBond(new ConnectivityBond(SINGLE_BOND)), ring[i], ring[(i + 1) % 6]);
    HConnectivityAtom methyl(new ConnectivityAtom(Element::C));
    HConnectivityBond stem(new ConnectivityBond(SINGLE_BOND));
    c.add(stem, ring[0], methyl);
    EXPECT_EQ(ring[3]->smallest_ring_size(), 6);
    EXPECT_TRUE(ring[3]->cyclic());
    EXPECT_EQ(methyl->smallest_ring_size(), 0);
    EXPECT_EQ(c.bond(2)->smallest_ring_size(), 6);
    EXPECT_EQ(stem->smallest_ring_size(), 0);
    EXPECT_FALSE(stem->cyclic());
    EXPECT_EQ(stem->other_atom(methyl), ring[0]);
    EXPECT_EQ(stem->other_atom(ring[0]), methyl);
    EXPECT_EQ(error_text<std::invalid_argument>([&] { stem->other_atom(ring[2]); }),
              "ChemicalGraphBondData<AtomType, BondType>::other_atom(HAtomType) atom is not in this bond");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { stem->other_atom(HConnectivityAtom()); }),
              "ChemicalGraphBondData<AtomType, BondType>::other_atom(HAtomType) atom is a null pointer");

    ConnectivityAtom free_atom(Element::C);
    EXPECT_FALSE(free_atom.is_in_connectivity());
    EXPECT_EQ(error_text<std::runtime_error>([&] { free_atom.nhydrogens(true); }),
              "ConnectivityAtom::nhydrogens cannot work when graph() == 0");
    EXPECT_EQ(error_text<std::runtime_error>([&] { free_atom.smallest_ring_size(); }),
              "ChemicalGraphAtomData<AtomType, BondType>::smallest_ring_size cannot work when graph_ == 0");
    ConnectivityBond free_bond;
    EXPECT_EQ(error_text<std::runtime_error>([&] { free_bond.other_atom(methyl); }),
              "ChemicalGraphBondData<AtomType, BondType>::other_atom cannot work when graph_ == 0");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { free_bond.set_type(10); }),
              "ConnectivityBond::set_type: Illegal bond type.");
    EXPECT_EQ(free_bond.type(), UNKNOWN_BOND);
    free_bond.set_type(9);
    EXPECT_EQ(free_bond.type(), PI_BOND);

    // A clone is free and equal; the graph's destruction frees what a caller holds.
    HConnectivityAtom clone = ring[1]->clone();
    EXPECT_FALSE(clone->is_in_connectivity());
    EXPECT_EQ(*clone, *ring[1]);
    c.clear();
    EXPECT_FALSE(ring[1]->is_in_connectivity());
}

}  // namespace
}  // namespace molcryst

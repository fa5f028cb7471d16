// Views of molecules: selections, their own indices and connectivity, live
// forwarding to the parent, copies, parent edits, archives, what views refuse,
// and the walk over atoms with sites.
#include "molcryst/molecule/MoleculeSubset.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "TestMolecules.h"
#include "common/ArchiveBytes.h"
#include "common/ErrorText.h"
#include "common/Text.h"
#include "molcryst/geometry/GeometryFunctions.h"
#include "molcryst/molecule/MoleculeAtomSiteIterator.h"
#include "molcryst/molecule/ProxyAtom.h"
#include "molcryst/molecule/ProxyBond.h"

using namespace molcryst;
using namespace molcryst::testing;

namespace {

typedef std::vector<int> V;
typedef std::vector<std::string> Labels;

// A three-membered carbon ring with a hydroxyl on C2 whose hydrogen has no site:
//   atoms 0 C1, 1 C2, 2 O1, 3 H1 (no site), 4 C3
//   bonds 0 C1-C2, 1 C2-O1, 2 O1-H1, 3 C2=C3, 4 C3-C1
HMolecule ring_with_hydroxyl() {
    return molecule("C C1 0 0 0; C C2 1.5 0 0; O O1 2.2 1.2 0; H H1; C C3 0.75 1.3 0", "C1-C2 C2-O1 O1-H1 C2=C3 C3-C1");
}

ProxyAtom& proxy(const HAtom& a) { return dynamic_cast<ProxyAtom&>(*a); }

// The atom selection, " |", the bond selection: "0 1 4 | 3 0".
std::string selection(const MoleculeSubset& s) {
    std::string text;
    for (int i : s.current_atom_selection()) text += std::to_string(i) + " ";
    text += "|";
    for (int i : s.current_bond_selection()) text += " " + std::to_string(i);
    return text;
}

}  // namespace

TEST(MoleculeSubset, AtomsHaveTheirOwnIndicesAndNeighbours) {
    HMolecule parent = ring_with_hydroxyl();
    MoleculeSubset s(parent);
    EXPECT_FALSE(s.editable());
    EXPECT_EQ(printed(s), "atom selection:\nbond selection:\n");

    // Atoms in the order given; the parent's bonds among them in bond order.
    s.select_atom_indices(V{4, 1, 2});
    EXPECT_EQ(labels_of(s), (Labels{"C3", "C2", "O1"}));
    EXPECT_EQ(selection(s), "4 1 2 | 1 3");
    EXPECT_EQ(s.parent_atom_index(0), 4);
    EXPECT_EQ(s.parent_bond_index(1), 3);
    HAtom c3 = s.atom(0);
    EXPECT_EQ(c3->index(), 0);
    EXPECT_EQ(parent->atom(4)->index(), 4);
    EXPECT_EQ(c3->nbonds(), 1);  // C3-C1 is not in the view
    EXPECT_EQ(c3->neighbours().front(), s.atom(1));
    EXPECT_FALSE(c3->cyclic());
    EXPECT_TRUE(parent->atom(4)->cyclic());
    EXPECT_EQ(s.bond(1)->atom2(), c3);
    EXPECT_FALSE(s.has_atom(parent->atom(4)));
    // Neighbour order follows the handles' order, not the selection: compare as sets.
    V connections = *s.atom_connections(1);
    std::sort(connections.begin(), connections.end());
    EXPECT_EQ(connections, (V{0, 2}));
    EXPECT_EQ(error_text<std::out_of_range>([&] { s.parent_atom_index(3); }), "IndexedTable::at Illegal index: 3");

    // By bonds: the atoms at their ends ascending, the bonds as given. C3-C1
    // joins two selected atoms but was not selected, so the ring is open.
    s.select_bond_indices(V{3, 0});
    EXPECT_EQ(printed(s), "atom selection: 0 1 4\nbond selection: 3 0\n");
    EXPECT_FALSE(s.has_bond(s.atom(0), s.atom(2)));
    EXPECT_FALSE(s.atom(0)->cyclic());
    EXPECT_EQ(s.ncomponents(), 1);
    s.select_atom_indices_only(V{0, 1, 4});
    EXPECT_EQ(s.ncomponents(), 3);
    s.select_3d();
    EXPECT_EQ(selection(s), "0 1 2 4 | 0 1 3 4");
    EXPECT_TRUE(s.atom(0)->cyclic());
    s.select_all();
    EXPECT_EQ(selection(s), "0 1 2 3 4 | 0 1 2 3 4");
}

TEST(MoleculeSubset, IsALiveViewOfItsParent) {
    HMolecule parent = ring_with_hydroxyl();
    MoleculeSubset s(parent);
    s.select_atom_indices(V{0, 1});
    EXPECT_EQ(s.atom_typer(), parent->atom_typer());
    parent->atom(1)->site()->set_coordinates(Point(3, 0, 0));
    parent->atom(0)->set_label("C9");
    parent->bond(0)->set_type(TRIPLE_BOND);
    EXPECT_DOUBLE_EQ(s.bond_length(0), 3.0);
    EXPECT_EQ(s.atom(0)->label(), "C9");
    EXPECT_EQ(s.bond(0)->type(), TRIPLE_BOND);
    // Edits are refused as by any read-only molecule, here and in the parent.
    EXPECT_EQ(error_text<std::runtime_error>([&] { s.add(*parent); }),
              "Molecule::add this molecule can not be edited.");
    EXPECT_EQ(parent->natoms(), 5);
}

TEST(MoleculeSubset, CreateMoleculeAndSplitGiveFreeCopies) {
    HMolecule parent = ring_with_hydroxyl();
    MoleculeSubset s(parent);
    s.select_all();
    HMolecule copy = s.create_molecule();
    ASSERT_NE(dynamic_cast<Molecule3d*>(copy.unhand()), nullptr);
    EXPECT_TRUE(*copy == *parent);
    EXPECT_EQ(copy->atom_typer(), parent->atom_typer());
    copy->atom(0)->site()->set_coordinates(Point(9, 9, 9));
    EXPECT_EQ(parent->atom(0)->site()->orth(), Point(0, 0, 0));

    // By indices, with or without sites, the atoms are plain ones: proxies
    // would stay live views of the parent and leave nothing in an archive.
    HMolecule made = s.create_molecule(V{2, 3});
    for (int i = 0; i < made->natoms(); ++i) EXPECT_EQ(dynamic_cast<ProxyAtom*>(made->atom(i).unhand()), nullptr);
    parent->atom(3)->set_label("H9");
    EXPECT_EQ(labels_of(*made), (Labels{"O1", "H1"}));
    Archive in = archive_of(written(*made));
    EXPECT_EQ(Molecule3d(in).natoms(), 2);

    // O1-H9 and a lone C3: two parts, in the view's order; the view stays whole.
    s.select_atom_indices(V{4, 3, 2});
    HMolecule part_copy = s.create_molecule();
    EXPECT_EQ(labels_of(*part_copy), (Labels{"C3", "H9", "O1"}));
    EXPECT_EQ(part_copy->bond(0)->atom1()->index(), 2);
    Hvector_HMolecule parts = s.split();
    ASSERT_EQ(parts->size(), 2u);
    EXPECT_EQ(labels_of(*(*parts)[0]), (Labels{"C3"}));
    EXPECT_EQ(labels_of(*(*parts)[1]), (Labels{"H9", "O1"}));
    EXPECT_EQ((*parts)[1]->nbonds(), 1);
    EXPECT_EQ(s.natoms(), 3);
    EXPECT_NE((*parts)[0]->atom(0)->site(), parent->atom(4)->site());
}

TEST(MoleculeSubset, NarrowingCopiesClonesAndParentEdits) {
    HMolecule parent = ring_with_hydroxyl();
    MoleculeSubset s(parent);
    s.select_bond_indices(V{3, 0});  // C1, C2, C3 joined by C2-C3 and C1-C2

    // Narrowing keeps only bonds of the view: C3-C1 is not brought back.
    MoleculeSubset narrow(s);
    narrow.select_atom_indices_from_current(V{2, 0});
    EXPECT_EQ(selection(narrow), "4 0 |");
    narrow = s;
    narrow.select_atom_indices_from_current(V{2, 1});
    EXPECT_EQ(error_text<std::out_of_range>([&] { narrow.select_atom_indices_from_current(V{2}); }),
              "IndexedTable::at Illegal index: 2");
    EXPECT_EQ(selection(narrow), "4 1 | 3");

    // Copies, clones and assignments: same parent and selection, proxies of their own.
    MoleculeSubset copy(s);
    EXPECT_NE(copy.atom(0), s.atom(0));
    EXPECT_EQ(proxy(copy.atom(0)).parent_atom(), parent->atom(0));
    s.select_atom_indices_only(V{2});
    HMolecule cloned = copy.clone();
    MoleculeSubset* c = dynamic_cast<MoleculeSubset*>(cloned.unhand());
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(c->parent(), parent);
    EXPECT_EQ(selection(*c), "0 1 4 | 3 0");
    MoleculeSubset other{ring_with_hydroxyl()};
    other = copy;
    const MoleculeSubset& same = other;
    other = same;
    EXPECT_EQ(other.parent(), parent);
    EXPECT_EQ(selection(other), "0 1 4 | 3 0");

    // A view of a view indexes into the view.
    MoleculeSubset inner(HMolecule(new MoleculeSubset(copy)));
    inner.select_atom_indices(V{2, 1});
    EXPECT_EQ(selection(inner), "2 1 | 0");
    EXPECT_EQ(inner.bond(0)->type(), DOUBLE_BOND);

    // Parent indices follow edits of the parent; an atom that left it is
    // still shown, but has no parent index any more.
    MoleculeSubset tail(parent);
    tail.select_atom_indices(V{4, 3, 2});
    parent->remove_atom(1);
    EXPECT_EQ(selection(tail), "3 2 1 | 0");  // O1-H1; C2's bonds went with it
    EXPECT_EQ(copy.atom(1)->label(), "C2");
    const std::string gone = " is no longer in the parent molecule";
    EXPECT_EQ(error_text<std::runtime_error>([&] { copy.parent_atom_index(1); }),
              "MoleculeSubset::parent_atom_index - atom" + gone);
    EXPECT_EQ(error_text<std::runtime_error>([&] { copy.parent_bond_index(0); }),
              "MoleculeSubset::parent_bond_index - bond" + gone);
    EXPECT_EQ(error_text<std::runtime_error>([&] { MoleculeSubset again(copy); }),
              "MoleculeSubset::parent_atom_index - atom" + gone);

    // A proxy marked dead by hand has no parent index either.
    proxy(tail.atom(0)).set_parent_atom(HAtom());
    EXPECT_EQ(error_text<std::runtime_error>([&] { tail.parent_atom_index(0); }),
              "MoleculeSubset::parent_atom_index - atom is no longer valid");
    dynamic_cast<ProxyBond&>(*tail.bond(0)).set_parent_bond(HBond());
    EXPECT_EQ(error_text<std::runtime_error>([&] { tail.parent_bond_index(0); }),
              "MoleculeSubset::parent_bond_index - bond is no longer valid");
}

TEST(MoleculeSubset, BadSelectionsThrowAndLeaveTheViewAsItWas) {
    HMolecule parent = ring_with_hydroxyl();
    EXPECT_EQ(error_text<std::invalid_argument>([&] { MoleculeSubset none{HMolecule()}; }),
              "MoleculeSubset::MoleculeSubset(THandle<Molecule>) parent is a null pointer");
    MoleculeSubset s(parent);
    s.select_atom_indices(V{1, 2});
    struct Case {
        V atoms, bonds;
        std::string message;
    };
    const std::string head = "MoleculeSubset::create_atoms_and_bonds(atoms, bonds) ";
    const std::string range = "IndexedTable::at Illegal index: ";
    for (const Case& c : {Case{{0, 1, 0}, {}, head + "atom 0 is selected twice"},
                          Case{{0, 1}, {1}, head + "bond 1 joins an atom that is not selected"},
                          Case{{0, 1}, {0, 0}, head + "bond 0 is selected twice"}, Case{{0, 5}, {}, range + "5"},
                          Case{{0, 1}, {5}, range + "5"}}) {
        auto create = [&] { s.create_atoms_and_bonds(c.atoms, c.bonds); };
        EXPECT_EQ(c.message.find(range) == 0 ? error_text<std::out_of_range>(create)
                                             : error_text<std::invalid_argument>(create),
                  c.message);
    }
    EXPECT_EQ(error_text<std::invalid_argument>([&] {
                  s.select_bond_indices(V{2, 2});
              }),
              head + "bond 2 is selected twice");
    EXPECT_EQ(error_text<std::out_of_range>([&] { s.select_atom_indices_only(V{-1}); }), range + "4294967295");
    EXPECT_EQ(error_text<std::out_of_range>([&] { s.select_atom_indices(V{7}); }), range + "7");
    EXPECT_EQ(selection(s), "1 2 | 1");
    EXPECT_EQ(s.atom(0)->index(), 0);
}

TEST(MoleculeSubset, ArchiveHoldsBothSelectionsAndRefusesBadOnes) {
    HMolecule parent = ring_with_hydroxyl();
    MoleculeSubset s(parent);
    s.select_bond_indices(V{3, 0});
    const std::vector<unsigned char> bytes = written(s);
    EXPECT_EQ(bytes, words({3, 0, 1, 4, 2, 3, 0}));
    EXPECT_EQ(written(MoleculeSubset(parent)), words({0, 0}));

    MoleculeSubset back(parent);
    Archive ar = archive_of(bytes);
    back.read(ar);
    EXPECT_EQ(selection(back), "0 1 4 | 3 0");
    EXPECT_EQ(back.bond(0)->atom1()->index(), 1);
    EXPECT_TRUE(*back.create_molecule() == *s.create_molecule());

    // Every bad archive throws std::runtime_error and leaves `back` as it was.
    const std::string sel = "MoleculeSubset::read selection: ";
    const std::pair<V, std::string> cases[] = {
        {{2, 0, 5, 0}, sel + "atom index 5 outside the parent's 5 atoms"},
        {{1, -1, 0}, sel + "atom index -1 outside the parent's 5 atoms"},
        {{2, 0, 1, 1, 5}, sel + "bond index 5 outside the parent's 5 bonds"},
        {{2, 0, 0, 0}, sel + "atom 0 is selected twice"},
        {{2, 0, 1, 2, 0, 0}, sel + "bond 0 is selected twice"},
        {{2, 0, 1, 1, 1}, sel + "bond 1 joins an atom that is not selected"},
        {{-1}, "MoleculeSubset::read atom selection: negative element count -1 in archive"},
        {{3, 0, 1}, "MoleculeSubset::read atom selection: element count 3 cannot fit in the 8 bytes left in archive"},
        {{1, 0, 1000000},
         "MoleculeSubset::read bond selection: element count 1000000 cannot fit in the 0 bytes left in archive"},
        {{1, 0}, "MoleculeSubset::read bond selection: archive ends early reading int"},
    };
    for (const auto& c : cases) {
        Archive bad = archive_of(words(c.first));
        EXPECT_EQ(error_text<std::runtime_error>([&] { back.read(bad); }), c.second);
        EXPECT_EQ(selection(back), "0 1 4 | 3 0");
    }
    for (std::size_t n = 0; n < bytes.size(); ++n) {
        Archive part = archive_of(cut(bytes, n));
        EXPECT_THROW(back.read(part), std::runtime_error) << n;
        EXPECT_EQ(selection(back), "0 1 4 | 3 0");
    }
}

// Views and proxies may not stand for themselves (a cycle of handles never
// freed, a proxy forwarding for ever); a copy from a broken view, or a write
// of a view's atoms, fails before anything changes.
TEST(MoleculeSubset, RefusalsLeaveEverythingAsItWas) {
    HMolecule parent = ring_with_hydroxyl();
    HMolecule outer(new MoleculeSubset(parent));
    MoleculeSubset& view = static_cast<MoleculeSubset&>(*outer);
    view.select_all();
    MoleculeSubset view_of_view(outer);
    view_of_view.select_all();
    EXPECT_THROW(view = view_of_view, std::invalid_argument);
    EXPECT_EQ(view.parent(), parent);
    EXPECT_EQ(view.natoms(), 5);
    THandle<ProxyAtom> first = handle_dynamic_cast<ProxyAtom>(view.atom(0));
    EXPECT_THROW(first->set_parent_atom(first), std::invalid_argument);
    EXPECT_THROW(first->set_parent_atom(view_of_view.atom(0)), std::invalid_argument);  // a proxy of this proxy
    EXPECT_EQ(first->parent_atom(), parent->atom(0));

    Molecule3d holder;
    holder.add(view.atom(0)->clone());
    Archive ar = Archive::temporary();
    EXPECT_THROW(holder.write(ar), std::runtime_error);
    EXPECT_TRUE(bytes_of(ar).empty());

    proxy(view.atom(1)).set_parent_atom(HAtom());
    Molecule3d target(*ring_with_hydroxyl());
    const Molecule3d before(target);
    EXPECT_THROW(target.copy(view), std::runtime_error);
    EXPECT_TRUE(target == before);
}

TEST(MoleculeAtomSiteIterator, WalksTheAtomsWithSitesOnly) {
    HMolecule3d m = molecule("H H0; C C1 1 0 0; H H2; C C3 3 3 0; C C4 2 0 3; H H5");
    const MoleculeAtomSiteIterator end;
    V seen;
    for (MoleculeAtomSiteIterator i(*m); i != end; ++i) {
        seen.push_back(i.index());
        EXPECT_EQ(*i, i.atom()->site()->orth());
    }
    EXPECT_EQ(seen, (V{1, 3, 4}));
    EXPECT_EQ(centroid(MoleculeAtomSiteIterator(*m), end), Point(2, 1, 1));

    MoleculeAtomSiteIterator a(*m), b(*m);
    EXPECT_EQ((a++).index(), 1);
    EXPECT_EQ(a->x(), 3.0);
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a == ++b);
    ++ ++ ++a;  // the end stays the end
    EXPECT_TRUE(a == end);
    EXPECT_EQ(error_text<std::out_of_range>([&] { *a; }), "MoleculeAtomSiteIterator::operator* - past the end");
    EXPECT_EQ(error_text<std::out_of_range>([&] { end.atom(); }), "MoleculeAtomSiteIterator::atom - past the end");

    // Iterators of two molecules meet only at the end.
    const Molecule3d same(*m), unsited(*molecule("H H0")), empty;
    EXPECT_FALSE(MoleculeAtomSiteIterator(*m) == MoleculeAtomSiteIterator(same));
    EXPECT_TRUE(MoleculeAtomSiteIterator(unsited) == end);
    EXPECT_TRUE(MoleculeAtomSiteIterator(empty) == MoleculeAtomSiteIterator(unsited));
    EXPECT_EQ(centroid(MoleculeAtomSiteIterator(empty), end), Point());

    // Through a view, with the parent's hydrogen left out of the walk.
    MoleculeSubset s{ring_with_hydroxyl()};
    s.select_atom_indices(V{3, 2});
    seen.clear();
    for (MoleculeAtomSiteIterator i(s); i != end; ++i) seen.push_back(i.index());
    EXPECT_EQ(seen, (V{1}));
    EXPECT_EQ(centroid(MoleculeAtomSiteIterator(s), end), Point(2.2, 1.2, 0));
}

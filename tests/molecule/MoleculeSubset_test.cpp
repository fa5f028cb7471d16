// Views of molecules: selections, their own indices and connectivity, live
// forwarding to the parent, read-only editing, copies, archives, and the walk
// over atoms with sites.
#include "molcryst/molecule/MoleculeSubset.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <sstream>
#include <string>
#include <vector>

#include "common/ArchiveBytes.h"
#include "common/ErrorText.h"
#include "molcryst/geometry/GeometryFunctions.h"
#include "molcryst/molecule/Atom3d.h"
#include "molcryst/molecule/Bond3d.h"
#include "molcryst/molecule/Molecule3d.h"
#include "molcryst/molecule/MoleculeAtomSiteIterator.h"
#include "molcryst/molecule/ProxyAtom.h"
#include "molcryst/molecule/ProxyBond.h"
#include "molcryst/molecule/Site.h"

using namespace molcryst;
using molcryst::testing::error_text;
using molcryst::testing::archive_of;
using molcryst::testing::bytes_of;

namespace {

HAtom atom_at(const Element& e, const std::string& label, double x, double y, double z) {
    return HAtom(new Atom3d(e, label, HSite(new Site(Point(x, y, z)))));
}

// A three-membered carbon ring C1-C2-C3 with a hydroxyl on C2 whose hydrogen
// has no site:
//   atoms 0 C1, 1 C2, 2 O1, 3 H1 (no site), 4 C3
//   bonds 0 C1-C2, 1 C2-O1, 2 O1-H1, 3 C2-C3, 4 C3-C1
HMolecule ring_with_hydroxyl() {
    Molecule3d* m = new Molecule3d();
    HMolecule held(m);
    m->add(atom_at(Element::C, "C1", 0, 0, 0));
    m->add(atom_at(Element::C, "C2", 1.5, 0, 0));
    m->add(atom_at(Element::O, "O1", 2.2, 1.2, 0));
    m->add(HAtom(new Atom3d(Element::H, "H1", HSite())));
    m->add(atom_at(Element::C, "C3", 0.75, 1.3, 0));
    m->add(HBond(new Bond3d(SINGLE_BOND)), 0, 1);
    m->add(HBond(new Bond3d(SINGLE_BOND)), 1, 2);
    m->add(HBond(new Bond3d(SINGLE_BOND)), 2, 3);
    m->add(HBond(new Bond3d(DOUBLE_BOND)), 1, 4);
    m->add(HBond(new Bond3d(SINGLE_BOND)), 4, 0);
    return held;
}

std::vector<std::string> labels_of(const Molecule& m) {
    std::vector<std::string> labels;
    for (int i = 0; i < m.natoms(); ++i) labels.push_back(m.atom(i)->label());
    return labels;
}

std::vector<unsigned char> le32(int v) {
    unsigned int u = static_cast<unsigned int>(v);
    return {static_cast<unsigned char>(u), static_cast<unsigned char>(u >> 8), static_cast<unsigned char>(u >> 16),
            static_cast<unsigned char>(u >> 24)};
}

std::vector<unsigned char> ints(const std::vector<int>& values) {
    std::vector<unsigned char> out;
    for (int v : values) {
        std::vector<unsigned char> b = le32(v);
        out.insert(out.end(), b.begin(), b.end());
    }
    return out;
}

typedef std::vector<int> V;

}  // namespace

TEST(MoleculeSubset, AtomsHaveTheirOwnIndicesAndNeighbours) {
    HMolecule parent = ring_with_hydroxyl();
    MoleculeSubset s(parent);
    EXPECT_EQ(s.natoms(), 0);
    EXPECT_FALSE(s.editable());
    EXPECT_EQ(s.parent(), parent);

    // Atoms in the order given; the parent's bonds among them in bond order.
    s.select_atom_indices(V{4, 1, 2});
    EXPECT_EQ(labels_of(s), (std::vector<std::string>{"C3", "C2", "O1"}));
    EXPECT_EQ(s.current_atom_selection(), (V{4, 1, 2}));
    EXPECT_EQ(s.current_bond_selection(), (V{1, 3}));
    EXPECT_EQ(s.parent_atom_index(0), 4);
    EXPECT_EQ(s.parent_bond_index(1), 3);
    HAtom c3 = s.atom(0);
    EXPECT_EQ(c3->index(), 0);
    EXPECT_EQ(parent->atom(4)->index(), 4);
    EXPECT_EQ(c3->nbonds(), 1);  // C3-C1 is not in the view
    EXPECT_EQ(parent->atom(4)->nbonds(), 2);
    EXPECT_EQ(c3->neighbours().front(), s.atom(1));
    EXPECT_FALSE(c3->cyclic());
    EXPECT_TRUE(parent->atom(4)->cyclic());
    EXPECT_EQ(s.bond(1)->atom2(), c3);
    EXPECT_EQ(s.bond(1)->type(), DOUBLE_BOND);
    EXPECT_FALSE(s.has_atom(parent->atom(4)));
    EXPECT_TRUE(s.has_bond(s.atom(1), s.atom(2)));
    // Neighbour order follows the handles' order, not the selection: compare as sets.
    V connections = *s.atom_connections(1);
    std::sort(connections.begin(), connections.end());
    EXPECT_EQ(connections, (V{0, 2}));
    EXPECT_EQ(error_text<std::out_of_range>([&] { s.parent_atom_index(3); }), "IndexedTable::at Illegal index: 3");

    // By bonds: the atoms at their ends ascending, the bonds as given. C3-C1
    // joins two selected atoms but was not selected, so the ring is open.
    s.select_bond_indices(V{3, 0});
    EXPECT_EQ(s.current_atom_selection(), (V{0, 1, 4}));
    EXPECT_EQ(s.current_bond_selection(), (V{3, 0}));
    EXPECT_EQ(s.bond_index(0, 2), -1);
    EXPECT_FALSE(s.has_bond(s.atom(0), s.atom(2)));
    EXPECT_FALSE(s.atom(0)->cyclic());
    EXPECT_EQ(s.ncomponents(), 1);

    s.select_atom_indices_only(V{0, 1, 4});
    EXPECT_EQ(s.natoms(), 3);
    EXPECT_EQ(s.nbonds(), 0);
    EXPECT_EQ(s.ncomponents(), 3);

    s.select_3d();
    EXPECT_EQ(s.current_atom_selection(), (V{0, 1, 2, 4}));
    EXPECT_EQ(s.current_bond_selection(), (V{0, 1, 3, 4}));
    EXPECT_TRUE(s.atom(0)->cyclic());

    s.select_all();
    EXPECT_EQ(s.current_atom_selection(), (V{0, 1, 2, 3, 4}));
    EXPECT_EQ(s.current_bond_selection(), (V{0, 1, 2, 3, 4}));

    std::ostringstream out;
    s.select_bond_indices(V{3, 0});
    s.print(out);
    EXPECT_EQ(out.str(), "atom selection: 0 1 4\nbond selection: 3 0\n");
    std::ostringstream empty;
    MoleculeSubset(parent).print(empty);
    EXPECT_EQ(empty.str(), "atom selection:\nbond selection:\n");
}

TEST(MoleculeSubset, IsALiveReadOnlyView) {
    HMolecule parent = ring_with_hydroxyl();
    MoleculeSubset s(parent);
    s.select_atom_indices(V{0, 1});
    EXPECT_EQ(s.atom_typer(), parent->atom_typer());

    // Moving a parent atom moves it in the view; so does a new label.
    parent->atom(1)->site()->set_coordinates(Point(3, 0, 0));
    parent->atom(0)->set_label("C9");
    EXPECT_DOUBLE_EQ(s.distance(0, 1), 3.0);
    EXPECT_DOUBLE_EQ(s.bond_length(0), 3.0);
    EXPECT_EQ(s.atom(0)->label(), "C9");
    parent->bond(0)->set_type(TRIPLE_BOND);
    EXPECT_EQ(s.bond(0)->type(), TRIPLE_BOND);

    EXPECT_EQ(error_text<std::runtime_error>([&] { s.atom(0)->set_label("X"); }),
              "Atom::set_label Cannot modify this atom");
    EXPECT_EQ(error_text<std::runtime_error>([&] { s.bond(0)->set_type(SINGLE_BOND); }),
              "Bond::set_type Cannot modify this bond");

    // The base refusals stand; nothing is changed, here or in the parent.
    const std::string tail = " this molecule can not be edited.";
    EXPECT_EQ(error_text<std::runtime_error>([&] { s.add(HAtom(new Atom3d())); }), "Molecule::add" + tail);
    EXPECT_EQ(error_text<std::runtime_error>([&] { s.add(*parent); }), "Molecule::add" + tail);
    EXPECT_EQ(error_text<std::runtime_error>([&] { s.remove(s.atom(0)); }), "Molecule::remove" + tail);
    EXPECT_EQ(error_text<std::runtime_error>([&] { s.remove_bond(0); }), "Molecule::remove_bond" + tail);
    EXPECT_EQ(error_text<std::runtime_error>([&] { s.clear(); }), "Molecule::clear" + tail);
    EXPECT_EQ(error_text<std::runtime_error>([&] { s.sort_atoms(); }), "Molecule::sort_atoms" + tail);
    EXPECT_EQ(error_text<std::runtime_error>([&] { s.inplace_split(); }), "Molecule::inplace_split" + tail);
    EXPECT_EQ(s.natoms(), 2);
    EXPECT_EQ(s.nbonds(), 1);
    EXPECT_EQ(parent->natoms(), 5);
    EXPECT_FALSE(s.archivable());
}

TEST(MoleculeSubset, CreateMoleculeAndSplitGiveFreeCopies) {
    HMolecule parent = ring_with_hydroxyl();
    MoleculeSubset s(parent);
    s.select_all();
    HMolecule copy = s.create_molecule();
    ASSERT_NE(dynamic_cast<Molecule3d*>(copy.unhand()), nullptr);
    EXPECT_TRUE(*copy == *parent);
    EXPECT_EQ(copy->atom_typer(), parent->atom_typer());
    for (int i = 0; i < copy->natoms(); ++i) {
        EXPECT_NE(dynamic_cast<Atom3d*>(copy->atom(i).unhand()), nullptr);
        if (copy->atom(i)->has_site()) {
            EXPECT_NE(copy->atom(i)->site(), parent->atom(i)->site());
        }
    }
    copy->atom(0)->site()->set_coordinates(Point(9, 9, 9));
    EXPECT_EQ(parent->atom(0)->site()->orth(), Point(0, 0, 0));

    // O1-H1 and a lone C3: two parts, in the view's order; the view stays whole.
    s.select_atom_indices(V{4, 3, 2});
    HMolecule part_copy = s.create_molecule();
    EXPECT_EQ(labels_of(*part_copy), (std::vector<std::string>{"C3", "H1", "O1"}));
    EXPECT_EQ(part_copy->bond(0)->atom1()->index(), 2);
    Hvector_HMolecule parts = s.split();
    ASSERT_EQ(parts->size(), 2u);
    EXPECT_EQ(labels_of(*(*parts)[0]), (std::vector<std::string>{"C3"}));
    EXPECT_EQ(labels_of(*(*parts)[1]), (std::vector<std::string>{"H1", "O1"}));
    EXPECT_EQ((*parts)[1]->nbonds(), 1);
    EXPECT_EQ(s.natoms(), 3);
    EXPECT_EQ(s.nbonds(), 1);
    EXPECT_NE((*parts)[0]->atom(0)->site(), parent->atom(4)->site());
}

TEST(MoleculeSubset, NarrowingCopiesClonesAndParentEdits) {
    HMolecule parent = ring_with_hydroxyl();
    MoleculeSubset s(parent);
    s.select_bond_indices(V{3, 0});  // C1, C2, C3 joined by C2-C3 and C1-C2

    // Narrowing keeps only bonds of the view: C3-C1 is not brought back.
    MoleculeSubset narrow(s);
    narrow.select_atom_indices_from_current(V{2, 0});
    EXPECT_EQ(narrow.current_atom_selection(), (V{4, 0}));
    EXPECT_EQ(narrow.nbonds(), 0);
    narrow = s;
    narrow.select_atom_indices_from_current(V{2, 1});
    EXPECT_EQ(narrow.current_atom_selection(), (V{4, 1}));
    EXPECT_EQ(narrow.current_bond_selection(), (V{3}));
    EXPECT_EQ(error_text<std::out_of_range>([&] { narrow.select_atom_indices_from_current(V{2}); }),
              "IndexedTable::at Illegal index: 2");
    EXPECT_EQ(narrow.current_atom_selection(), (V{4, 1}));

    // Copies and clones: same parent and selection, proxies of their own.
    MoleculeSubset copy(s);
    EXPECT_EQ(copy.parent(), parent);
    EXPECT_EQ(copy.current_atom_selection(), s.current_atom_selection());
    EXPECT_EQ(copy.current_bond_selection(), s.current_bond_selection());
    EXPECT_NE(copy.atom(0), s.atom(0));
    EXPECT_EQ(dynamic_cast<ProxyAtom&>(*copy.atom(0)).parent_atom(), parent->atom(0));
    s.select_atom_indices_only(V{2});
    EXPECT_EQ(copy.natoms(), 3);
    HMolecule cloned = copy.clone();
    MoleculeSubset* c = dynamic_cast<MoleculeSubset*>(cloned.unhand());
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(c->current_bond_selection(), (V{3, 0}));
    EXPECT_EQ(c->parent(), parent);

    HMolecule other_parent = ring_with_hydroxyl();
    MoleculeSubset other(other_parent);
    other.select_all();
    other = copy;
    EXPECT_EQ(other.parent(), parent);
    EXPECT_EQ(other.current_atom_selection(), (V{0, 1, 4}));
    other = other;
    EXPECT_EQ(other.nbonds(), 2);

    // A view of a view indexes into the view.
    HMolecule view(new MoleculeSubset(copy));
    MoleculeSubset inner(view);
    inner.select_atom_indices(V{2, 1});
    EXPECT_EQ(inner.current_bond_selection(), (V{0}));
    EXPECT_EQ(inner.atom(0)->label(), "C3");
    EXPECT_EQ(inner.bond(0)->type(), DOUBLE_BOND);

    // Parent indices follow edits of the parent; an atom that left it is
    // still shown, but has no parent index any more.
    MoleculeSubset tail(parent);
    tail.select_atom_indices(V{4, 3, 2});
    parent->remove_atom(1);
    EXPECT_EQ(tail.current_atom_selection(), (V{3, 2, 1}));
    EXPECT_EQ(tail.current_bond_selection(), (V{0}));  // O1-H1; C2's bonds went with it
    s.select_atom_indices(V{0, 1});
    EXPECT_EQ(s.current_atom_selection(), (V{0, 1}));
    EXPECT_EQ(copy.atom(1)->label(), "C2");
    EXPECT_EQ(error_text<std::runtime_error>([&] { copy.parent_atom_index(1); }),
              "MoleculeSubset::parent_atom_index - atom is no longer in the parent molecule");
    EXPECT_EQ(error_text<std::runtime_error>([&] { copy.parent_bond_index(0); }),
              "MoleculeSubset::parent_bond_index - bond is no longer in the parent molecule");
    EXPECT_EQ(error_text<std::runtime_error>([&] { MoleculeSubset again(copy); }),
              "MoleculeSubset::parent_atom_index - atom is no longer in the parent molecule");

    // A proxy marked dead by hand has no parent index either.
    dynamic_cast<ProxyAtom&>(*tail.atom(0)).set_parent_atom(HAtom());
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
    const std::string head = "MoleculeSubset::create_atoms_and_bonds(atoms, bonds) ";
    EXPECT_EQ(error_text<std::invalid_argument>([&] {
                  s.create_atoms_and_bonds(V{0, 1, 0}, V{});
              }),
              head + "atom 0 is selected twice");
    EXPECT_EQ(error_text<std::invalid_argument>([&] {
                  s.create_atoms_and_bonds(V{0, 1}, V{1});
              }),
              head + "bond 1 joins an atom that is not selected");
    EXPECT_EQ(error_text<std::invalid_argument>([&] {
                  s.create_atoms_and_bonds(V{0, 1}, V{0, 0});
              }),
              head + "bond 0 is selected twice");
    EXPECT_EQ(error_text<std::invalid_argument>([&] {
                  s.select_bond_indices(V{2, 2});
              }),
              head + "bond 2 is selected twice");
    EXPECT_EQ(error_text<std::out_of_range>([&] {
                  s.create_atoms_and_bonds(V{0, 5}, V{});
              }),
              "IndexedTable::at Illegal index: 5");
    EXPECT_EQ(error_text<std::out_of_range>([&] { s.select_atom_indices_only(V{-1}); }),
              "IndexedTable::at Illegal index: 4294967295");
    EXPECT_EQ(error_text<std::out_of_range>([&] {
                  s.create_atoms_and_bonds(V{0, 1}, V{5});
              }),
              "IndexedTable::at Illegal index: 5");
    EXPECT_EQ(error_text<std::out_of_range>([&] { s.select_atom_indices(V{7}); }), "IndexedTable::at Illegal index: 7");
    EXPECT_EQ(s.current_atom_selection(), (V{1, 2}));
    EXPECT_EQ(s.current_bond_selection(), (V{1}));
    EXPECT_EQ(s.atom(0)->index(), 0);
}

TEST(MoleculeSubset, ArchiveHoldsBothSelectionsAndRefusesBadOnes) {
    HMolecule parent = ring_with_hydroxyl();
    MoleculeSubset s(parent);
    s.select_bond_indices(V{3, 0});
    Archive ar = Archive::temporary();
    s.write(ar);
    std::vector<unsigned char> bytes = bytes_of(ar);
    EXPECT_EQ(bytes, ints(V{3, 0, 1, 4, 2, 3, 0}));

    MoleculeSubset back(parent);
    back.read(ar);
    EXPECT_EQ(back.current_atom_selection(), (V{0, 1, 4}));
    EXPECT_EQ(back.current_bond_selection(), (V{3, 0}));
    EXPECT_EQ(back.bond(0)->atom1()->index(), 1);
    EXPECT_TRUE(*back.create_molecule() == *s.create_molecule());

    MoleculeSubset empty(parent);
    Archive nothing = Archive::temporary();
    empty.write(nothing);
    EXPECT_EQ(bytes_of(nothing), ints(V{0, 0}));

    // Every bad archive throws std::runtime_error and leaves `back` as it was.
    struct Case {
        std::vector<int> words;
        std::string message;
    };
    const std::string sel = "MoleculeSubset::read selection: ";
    const Case cases[] = {
        {{2, 0, 5, 0}, sel + "atom index 5 outside the parent's 5 atoms"},
        {{1, -1, 0}, sel + "atom index -1 outside the parent's 5 atoms"},
        {{2, 0, 1, 1, 5}, sel + "bond index 5 outside the parent's 5 bonds"},
        {{2, 0, 0, 0}, sel + "atom 0 is selected twice"},
        {{2, 0, 1, 2, 0, 0}, sel + "bond 0 is selected twice"},
        {{2, 0, 1, 1, 1}, sel + "bond 1 joins an atom that is not selected"},
        {{-1}, "MoleculeSubset::read atom selection: negative element count -1 in archive"},
        {{3, 0, 1},
         "MoleculeSubset::read atom selection: element count 3 cannot fit in the 8 bytes left in "
         "archive"},
        {{1, 0, 1000000},
         "MoleculeSubset::read bond selection: element count 1000000 cannot fit in the 0 bytes "
         "left "
         "in archive"},
        {{1, 0}, "MoleculeSubset::read bond selection: archive ends early reading int"},
    };
    for (const Case& c : cases) {
        Archive bad = archive_of(ints(c.words));
        EXPECT_EQ(error_text<std::runtime_error>([&] { back.read(bad); }), c.message);
        EXPECT_EQ(back.current_atom_selection(), (V{0, 1, 4}));
        EXPECT_EQ(back.nbonds(), 2);
    }
    // Cut anywhere, the good archive fails cleanly.
    for (std::size_t n = 0; n < bytes.size(); ++n) {
        Archive cut = archive_of(std::vector<unsigned char>(bytes.begin(), bytes.begin() + static_cast<long>(n)));
        EXPECT_THROW(back.read(cut), std::runtime_error) << n;
    }
    EXPECT_EQ(back.current_bond_selection(), (V{3, 0}));
}

TEST(MoleculeAtomSiteIterator, WalksTheAtomsWithSitesOnly) {
    Molecule3d m;
    m.add(HAtom(new Atom3d(Element::H, "H0", HSite())));
    m.add(atom_at(Element::C, "C1", 1, 0, 0));
    m.add(HAtom(new Atom3d(Element::H, "H2", HSite())));
    m.add(atom_at(Element::C, "C3", 3, 3, 0));
    m.add(atom_at(Element::C, "C4", 2, 0, 3));
    m.add(HAtom(new Atom3d(Element::H, "H5", HSite())));

    std::vector<int> seen;
    MoleculeAtomSiteIterator end;
    for (MoleculeAtomSiteIterator i(m); i != end; ++i) {
        seen.push_back(i.index());
        EXPECT_EQ(*i, i.atom()->site()->orth());
    }
    EXPECT_EQ(seen, (V{1, 3, 4}));
    EXPECT_EQ(centroid(MoleculeAtomSiteIterator(m), end), Point(2, 1, 1));
    EXPECT_EQ(centroid(MoleculeAtomSiteIterator(m), end), m.centroid());

    MoleculeAtomSiteIterator a(m), b(m);
    EXPECT_TRUE(a == b);
    MoleculeAtomSiteIterator old = a++;
    EXPECT_EQ(old.index(), 1);
    EXPECT_EQ(a.index(), 3);
    EXPECT_EQ(a->x(), 3.0);
    EXPECT_FALSE(a == b);
    ++b;
    EXPECT_TRUE(a == b);
    ++a;
    ++a;
    EXPECT_TRUE(a == end);
    ++a;  // the end stays the end
    EXPECT_TRUE(a == end);
    EXPECT_EQ(error_text<std::out_of_range>([&] { *a; }), "MoleculeAtomSiteIterator::operator* - past the end");
    EXPECT_EQ(error_text<std::out_of_range>([&] { end.atom(); }), "MoleculeAtomSiteIterator::atom - past the end");

    // Iterators of two molecules meet only at the end.
    Molecule3d same(m);
    EXPECT_FALSE(MoleculeAtomSiteIterator(m) == MoleculeAtomSiteIterator(same));
    Molecule3d unsited, empty;
    unsited.add(HAtom(new Atom3d(Element::H, "H0", HSite())));
    EXPECT_TRUE(MoleculeAtomSiteIterator(unsited) == end);
    EXPECT_TRUE(MoleculeAtomSiteIterator(empty) == MoleculeAtomSiteIterator(unsited));
    EXPECT_EQ(centroid(MoleculeAtomSiteIterator(empty), end), Point());

    // Through a view, with the parent's hydrogen left out of the walk.
    HMolecule parent = ring_with_hydroxyl();
    MoleculeSubset s(parent);
    s.select_atom_indices(V{3, 2});
    std::vector<int> in_view;
    for (MoleculeAtomSiteIterator i(s); i != end; ++i) in_view.push_back(i.index());
    EXPECT_EQ(in_view, (V{1}));
    EXPECT_EQ(centroid(MoleculeAtomSiteIterator(s), end), Point(2.2, 1.2, 0));
}

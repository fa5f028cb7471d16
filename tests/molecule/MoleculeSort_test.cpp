// Renumbering atoms: the exact depth-first order of sort_atoms (start atom,
// ascending neighbours at every level, a walk that resumes where a deeper one
// left off, other components left behind), reorder_atoms with a partial
// order, and a chain of a million atoms walked without recursion.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TestMolecules.h"
#include "common/ArchiveBytes.h"
#include "common/ErrorText.h"
#include "molcryst/molecule/Molecule.h"

using namespace molcryst;
using namespace molcryst::testing;

namespace {

typedef std::vector<std::string> Labels;

// The molecule of `atoms` and `bonds` as molecule() reads them, its atom
// objects made forwards or backwards, so that the graph's own neighbour
// order (by address) runs with the indices in one build and against them in
// the other: only a walk that sorts by index gives one answer for both.
Molecule3d build(const std::string& atoms, const std::string& bonds, bool made_backwards) {
    HMolecule3d drawn = molecule(atoms);
    const int n = drawn->natoms();
    std::vector<HAtom> made(static_cast<std::size_t>(n));
    for (int k = 0; k < n; ++k) {
        const int i = made_backwards ? n - 1 - k : k;
        made[static_cast<std::size_t>(i)] = drawn->atom(i)->clone();
    }
    Molecule3d m;
    for (const HAtom& a : made) m.add(a);
    add_bonds(m, bonds);
    return m;
}

}  // namespace

TEST(MoleculeSort, DepthFirstFromTheFirstHeaviestAtomInAscendingIndexOrder) {
    // Component A: the ring O2-C3-N7-C9, C5 on O2, O6 on C5, C1 on N7; O2 and
    // O6 tie for heaviest and the first wins. Component B: C0-H4-C8.
    const Labels sorted = {"O2", "C3", "N7", "C1", "C9", "C5", "O6", "C0", "H4", "C8"};
    const std::string ends = "O2-C3 C3-N7 N7-C9 C9-O2 O2-C5 C5-O6 N7-C1 C0-H4 H4-C8";
    for (bool backwards : {false, true}) {
        Molecule3d m = build("C C0; C C1; O O2; C C3; H H4; C C5; O O6; N N7; C C8; C C9", ends, backwards);
        std::vector<HBond> bonds;
        for (int i = 0; i < m.nbonds(); ++i) bonds.push_back(m.bond(i));
        m.sort_atoms();
        // O2's neighbours are C3, C5, C9. From C3 the walk reaches N7, then C1
        // and C9 (ascending), so C9 is taken below N7 and skipped when O2's
        // own scan comes back to it. A walk that marked all of O2's neighbours
        // at once would give O2 C3 N7 C1 C5 O6 C9; a breadth-first one O2 C3 C5 C9 ...
        EXPECT_EQ(labels_of(m), sorted) << (backwards ? "atoms made backwards" : "atoms made forwards");
        EXPECT_EQ(bonds_of(m), ends);
        for (int i = 0; i < m.nbonds(); ++i) {
            EXPECT_EQ(m.bond(i), bonds[static_cast<std::size_t>(i)]);
            EXPECT_EQ(m.bond(i)->index(), i);
        }
        for (int i = 0; i < m.natoms(); ++i) EXPECT_EQ(m.atom(i)->index(), i);
        EXPECT_EQ(m.bond_index(0, 1), 0);  // O2-C3, now atoms 0 and 1
        EXPECT_EQ(m.bond_index(1, 2), 1);  // C3-N7
        EXPECT_EQ(m.bond_index(8, 9), 8);  // H4-C8 behind the walked component
        EXPECT_EQ(m.bond_index(0, 2), -1);

        // Sorting again changes nothing: the order is a fixed point.
        m.sort_atoms();
        EXPECT_EQ(labels_of(m), sorted);
    }
}

TEST(MoleculeSort, StartsAtTheFirstAtomOnATieAndLeavesAnIsolatedHeavyAtomAlone) {
    for (bool backwards : {false, true}) {
        // All carbon: the start is atom 0, in the middle of the chain d-a-e-b-c.
        Molecule3d chain = build("C a; C b; C c; C d; C e", "d-a a-e e-b b-c", backwards);
        chain.sort_atoms();
        EXPECT_EQ(labels_of(chain), (Labels{"a", "d", "e", "b", "c"}));

        // A salt: the heaviest atom, a bromide, is bonded to nothing, so it
        // alone moves to the front and the cation keeps its order behind it.
        Molecule3d salt = build("N N1; H H1; H H2; Br Br1; H H3; H H4", "N1-H1 N1-H2 N1-H3 N1-H4", backwards);
        salt.sort_atoms();
        EXPECT_EQ(labels_of(salt), (Labels{"Br1", "N1", "H1", "H2", "H3", "H4"}));
        EXPECT_EQ(salt.bond_index(1, 4), 2);
    }
    Molecule3d empty;
    empty.sort_atoms();
    EXPECT_EQ(empty.natoms(), 0);
}

TEST(MoleculeSort, ReorderAtomsWithAPartialOrderKeepsBondsAndArchivesByTheNewIndices) {
    const std::string ends = "C1-C2 C2-O1 O1-H6 C1-H1 C1-H2 C1-H3 C2-H4 C2-H5";
    Molecule3d m = build("C C1; C C2; O O1; H H1; H H2; H H3; H H4; H H5; H H6", ends, false);
    // Listed atoms first, in the order listed; the rest in their old order.
    m.reorder_atoms({8, 2, 1});
    const Labels reordered = {"H6", "O1", "C2", "C1", "H1", "H2", "H3", "H4", "H5"};
    EXPECT_EQ(labels_of(m), reordered);
    EXPECT_EQ(bonds_of(m), ends);
    EXPECT_EQ(m.bond_index(0, 1), 2);  // H6-O1 is still bond 2
    EXPECT_EQ(m.bond_index(3, 2), 0);  // C1-C2 still bond 0
    EXPECT_EQ(m.bond(0)->atom1()->index(), 3);
    EXPECT_EQ((*m.atom_connections(1)).size(), 2u);

    // An empty order changes nothing, nor does a bad one.
    const std::vector<int> none, twice = {0, 0}, outside = {9};
    m.reorder_atoms(none);
    EXPECT_EQ(error_text<std::invalid_argument>([&] { m.reorder_atoms(twice); }),
              "MoleculeGraphEditableImpl::reorder_atoms atom listed twice");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { m.reorder_atoms(outside); }),
              "MoleculeGraphEditableImpl::reorder_atoms index out of range");
    EXPECT_EQ(labels_of(m), reordered);

    // Bonds are archived by atom index: what comes back is the renumbered molecule.
    Archive ar = archive_of(written(m));
    Molecule3d back(ar);
    EXPECT_TRUE(back == m);
    EXPECT_EQ(bonds_of(back), ends);
}

TEST(MoleculeSort, AChainOfAMillionAtomsIsWalkedWithoutRecursion) {
    // The chain runs through the even indices upwards and the odd ones back
    // down, 0-2-4-...-999998-999999-999997-...-1, and starts at the nitrogen,
    // atom 0: the walk is a million levels deep.
    const int n = 1000000;
    Molecule3d m;
    std::vector<HAtom> made;
    made.reserve(n);
    for (int i = 0; i < n; ++i) {
        made.push_back(HAtom(new Atom3d(Element(i == 0 ? Element::N : Element::C), "", HSite())));
        m.unchecked_add(made.back());
    }
    std::vector<int> path;
    path.reserve(n);
    for (int i = 0; i < n; i += 2) path.push_back(i);
    for (int i = n - 1; i > 0; i -= 2) path.push_back(i);
    for (int k = 1; k < n; ++k)
        m.unchecked_add(HBond(new Bond3d(SINGLE_BOND)), made[static_cast<std::size_t>(path[k - 1])],
                        made[static_cast<std::size_t>(path[k])]);

    m.sort_atoms();

    ASSERT_EQ(m.natoms(), n);
    int misplaced = 0;
    for (int k = 0; k < n; ++k)
        if (m.atom(k) != made[static_cast<std::size_t>(path[k])]) ++misplaced;
    EXPECT_EQ(misplaced, 0);
    // Bond k still joins the k-th and (k+1)-th atoms of the path, now numbered k and k+1.
    EXPECT_EQ(m.bond_index(0, 1), 0);
    EXPECT_EQ(m.bond_index(n - 2, n - 1), n - 2);
    EXPECT_EQ(m.bond(n / 2)->atom1()->index(), n / 2);
}

// Removing many atoms at once: the batch removal behind remove_hydrogens and
// remove_atoms must leave the molecule, its ring answers and the removed
// atoms and bonds exactly as removing the atoms one by one would.
#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "TestMolecules.h"
#include "common/ErrorText.h"
#include "common/Text.h"
#include "molcryst/molecule/MoleculeSubset.h"
#include "molcryst/support/AtomPredicates.h"

using namespace molcryst;
using namespace molcryst::testing;

namespace {

// A chain of `units` six-membered aromatic rings a-f joined by methylene
// bridges m, with what remove_hydrogens must leave alone mixed in: every
// fifth unit has a deuterium for a ring hydrogen (terminal, so it goes),
// every seventh a lone hydrogen (not bonded), every eleventh a hydrogen x
// bridging two ring carbons and a hydrogen molecule y-z (both ends terminal:
// both go). '#' in a name stands for the unit, '$' for the one before.
Molecule3d polymer(int units) {
    std::string atoms, bonds;
    for (int u = 0; u < units; ++u) {
        std::string a = "C a#; C b#; C c#; C d#; C e#; C f#; H hb#; " + std::string(u % 5 == 0 ? "D" : "H") +
                        " hc#; H he#; H hf#; C m#; H hm#; H hn#;" + (u % 7 == 0 ? "H lone#;" : "") +
                        (u % 11 == 0 ? "H x#; H y#; H z#;" : "");
        std::string b = "a#:b# b#:c# c#:d# d#:e# e#:f# f#:a# " + std::string(u > 0 ? "m$-a# " : "") +
                        "b#-hb# c#-hc# e#-he# f#-hf# d#-m# m#-hm# m#-hn# " + (u % 11 == 0 ? "a#-x# d#-x# y#-z# " : "");
        for (std::string* text : {&a, &b}) {
            for (std::size_t at; (at = text->find('#')) != std::string::npos;) text->replace(at, 1, std::to_string(u));
            for (std::size_t at; (at = text->find('$')) != std::string::npos;)
                text->replace(at, 1, std::to_string(u - 1));
        }
        atoms += a;
        bonds += b;
    }
    return *molecule(atoms, bonds);
}

// The rings of the basic ring set as sorted atom indices, then each atom's
// smallest ring size; asking fills the ring caches.
std::string ring_answers(const Molecule3d& m) {
    std::deque<std::set<HAtom> > rings;
    m.chemical_graph().ordered_graph().basic_ring_set(rings);
    std::vector<std::vector<int> > by_index;
    for (const std::set<HAtom>& ring : rings) {
        std::vector<int> indices;
        for (const HAtom& a : ring) indices.push_back(a->index());
        std::sort(indices.begin(), indices.end());
        by_index.push_back(indices);
    }
    std::sort(by_index.begin(), by_index.end());
    std::ostringstream out;
    for (const std::vector<int>& ring : by_index) {
        for (int i : ring) out << i << ",";
        out << " ";
    }
    out << "|";
    for (int i = 0; i < m.natoms(); ++i) out << " " << m.atom(i)->graph_data().smallest_ring_size();
    return out.str();
}

// Every atom and bond answers its own position in the tables.
void expect_indices_consistent(const Molecule& m) {
    for (int i = 0; i < m.natoms(); ++i) EXPECT_EQ(m.atom(i)->index(), i);
    for (int i = 0; i < m.nbonds(); ++i) EXPECT_EQ(m.bond(i)->index(), i);
}

}  // namespace

TEST(MoleculeRemove, RemoveHydrogensEqualsRemovingThemOneByOne) {
    Molecule3d batch = polymer(120);
    Molecule3d in_turn(batch);  // new atoms at the same indices
    ASSERT_TRUE(batch == in_turn);
    ASSERT_GT(batch.natoms(), 1500);
    EXPECT_EQ(ring_answers(in_turn), ring_answers(batch));  // the ring caches are filled

    // The hydrogens that go and their bonds, kept to check that they end free.
    const AtomTerminalHDPredicate<HAtom> terminal;
    std::vector<HAtom> hydrogens, twins;
    std::vector<HBond> bonds;
    for (int i = 0; i < batch.natoms(); ++i) {
        if (!terminal(batch.atom(i))) continue;
        hydrogens.push_back(batch.atom(i));
        twins.push_back(in_turn.atom(i));
        for (const HBond& b : batch.atom(i)->bonds()) bonds.push_back(b);
    }
    for (const HAtom& h : twins) in_turn.remove(h);

    EXPECT_EQ(batch.remove_hydrogens(), static_cast<int>(hydrogens.size()));
    EXPECT_TRUE(batch == in_turn);
    EXPECT_EQ(printed(batch), printed(in_turn));
    EXPECT_EQ(ring_answers(batch), ring_answers(in_turn));
    expect_indices_consistent(batch);
    // What stays: carbons, the lone hydrogens and the bridging ones.
    EXPECT_EQ(batch.natoms(), 120 * 7 + 18 + 11);
    EXPECT_EQ(batch.nbonds(), 120 * 7 + 119 + 11 * 2);

    for (const HAtom& h : hydrogens) {
        EXPECT_TRUE(is_free(h));
        EXPECT_FALSE(batch.has_atom(h));
    }
    for (const HBond& b : bonds) EXPECT_TRUE(is_free(b));
    // A freed atom and bond may join another molecule.
    Molecule3d other;
    EXPECT_EQ(other.add(bonds.front(), hydrogens[0], hydrogens[1]), 0);
    EXPECT_EQ(hydrogens[1]->index(), 1);
}

TEST(MoleculeRemove, RemoveAtomsIgnoresWhatRemoveIgnores) {
    Molecule3d batch = polymer(3);
    Molecule3d in_turn(batch);
    Molecule3d elsewhere = polymer(1);
    const HAtom stranger = elsewhere.atom(4);
    const HAtom loose = atom_at(Element::N, "N9", 0, 0, 0);
    // Out of index order, with a repeat, an atom of another molecule and a free one.
    const std::vector<int> chosen = {20, 3, -1, 0, 20, -2, 31};
    std::vector<HAtom> atoms, twins;
    for (int i : chosen) {
        atoms.push_back(i == -1 ? stranger : i == -2 ? loose : batch.atom(i));
        twins.push_back(i == -1 ? stranger : i == -2 ? loose : in_turn.atom(i));
    }
    EXPECT_EQ(ring_answers(in_turn), ring_answers(batch));
    for (const HAtom& a : twins) in_turn.remove(a);

    EXPECT_EQ(batch.remove_atoms(atoms), 4);
    EXPECT_TRUE(batch == in_turn);
    EXPECT_EQ(ring_answers(batch), ring_answers(in_turn));
    expect_indices_consistent(batch);
    EXPECT_EQ(stranger->index(), 4);
    EXPECT_EQ(elsewhere.natoms(), 17);
    EXPECT_TRUE(is_free(loose));
    for (const HAtom& a : atoms) EXPECT_FALSE(batch.has_atom(a));

    // Through the base class, and with a braced list, the batch is still chosen.
    Molecule& base = batch;
    const HAtom first = batch.atom(0), last = batch.atom(batch.natoms() - 1);
    EXPECT_EQ(base.remove_atoms({last, first}), 2);
    in_turn.remove(in_turn.atom(in_turn.natoms() - 1));
    in_turn.remove(in_turn.atom(0));
    EXPECT_TRUE(batch == in_turn);
    EXPECT_EQ(batch.remove_atoms(std::vector<HAtom>()), 0);
    EXPECT_TRUE(batch == in_turn);
    // A predicate still goes to the template, which judges every atom first.
    auto plain_hydrogen = [](const HAtom& a) { return a->element() == Element(Element::H); };
    std::vector<HAtom> hydrogens;
    for (int i = 0; i < in_turn.natoms(); ++i)
        if (plain_hydrogen(in_turn.atom(i))) hydrogens.push_back(in_turn.atom(i));
    for (const HAtom& h : hydrogens) in_turn.remove(h);
    EXPECT_EQ(batch.remove_atoms(plain_hydrogen), static_cast<int>(hydrogens.size()));
    EXPECT_TRUE(batch == in_turn);
    EXPECT_EQ(batch.natoms(), 43 - 6 - 20);
}

TEST(MoleculeRemove, RefusalsLeaveTheMoleculeAsItWas) {
    Molecule3d m = polymer(2);
    const Molecule3d copy(m);
    const HAtom first = m.atom(0);
    // A null atom anywhere in the list is refused before any atom goes, with
    // the message of removing it alone.
    const std::string null_error = error_text<std::invalid_argument>([&] { m.remove(HAtom()); });
    EXPECT_EQ(error_text<std::invalid_argument>([&] { m.remove_atoms({first, HAtom(), m.atom(1)}); }), null_error);
    EXPECT_TRUE(m == copy);
    EXPECT_EQ(first->index(), 0);
    EXPECT_EQ(first->nbonds(), 3);

    // A read-only view refuses as remove(HAtom) does, but only when there is
    // something to remove by predicate.
    MoleculeSubset view(HMolecule(new Molecule3d(copy)));
    view.select_all();
    const std::string refusal = "Molecule::remove this molecule can not be edited.";
    EXPECT_EQ(error_text<std::runtime_error>([&] { view.remove_atoms({view.atom(0)}); }), refusal);
    EXPECT_EQ(error_text<std::runtime_error>([&] { view.remove_atoms(std::vector<HAtom>()); }), refusal);
    EXPECT_EQ(error_text<std::runtime_error>([&] { view.remove_atoms([](const HAtom&) { return true; }); }), refusal);
    EXPECT_EQ(view.remove_atoms([](const HAtom&) { return false; }), 0);
    EXPECT_EQ(view.natoms(), copy.natoms());
}

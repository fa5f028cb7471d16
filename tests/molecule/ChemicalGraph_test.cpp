// The chemical graph with the molecule's own atoms and bonds: the ownership
// rule, the order of checks in add, and indices after removal.
#include "molcryst/graph/ChemicalGraph.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "TestMolecules.h"
#include "common/ErrorText.h"

using namespace molcryst;
using molcryst::testing::error_text;
using molcryst::testing::is_free;

namespace {

typedef ChemicalGraph<Atom, Bond> CG;

HAtom atom(const std::string& label, const char* element = "C") {
    return HAtom(new Atom3d(Element(element), label, HSite()));
}
HBond bond(BondType type = SINGLE_BOND) { return HBond(new Bond3d(type)); }

const std::string add_atom = "ChemicalGraph<AtomType, BondType>::add(HAtomType) ";
const std::string add_bond = "ChemicalGraph<AtomType, BondType>::add(HBondType, HAtomType, HAtomType) ";
const std::string unchecked_bond = "ChemicalGraph<AtomType, BondType>::unchecked_add(HBondType, HAtomType, HAtomType) ";

// Counts live Atom3d objects through a subclass, to see exactly when atoms die.
struct CountedAtom : Atom3d {
    static int alive;
    explicit CountedAtom(const std::string& label) : Atom3d(Element("C"), label, HSite()) { ++alive; }
    ~CountedAtom() override { --alive; }
};
int CountedAtom::alive = 0;

}  // namespace

TEST(ChemicalGraph, OwnershipRuleEndToEnd) {
    CountedAtom::alive = 0;
    HAtom kept;
    {
        CG g;
        kept = HAtom(new CountedAtom("C1"));
        g.add(bond(), kept, HAtom(new CountedAtom("C2")));
        g.add(bond(), HAtom(new CountedAtom("C3")), g.atom(1));
        // Atoms the caller dropped live while their graph lives.
        EXPECT_EQ(CountedAtom::alive, 3);
        EXPECT_EQ(kept->index(), 0);
        EXPECT_EQ(g.atom(2)->nbonds(), 1);
        EXPECT_EQ(g.atom(1)->nbonds(), 2);
        EXPECT_EQ(kept->graph_data().self(), kept);
    }
    // The graph is gone: the kept atom is alive and free, the others are freed.
    EXPECT_EQ(CountedAtom::alive, 1);
    EXPECT_EQ(kept.use_count(), 1);
    EXPECT_EQ(kept->label(), "C1");
    EXPECT_EQ(error_text<std::runtime_error>([&] { kept->index(); }),
              "ChemicalGraphAtomData<AtomType, BondType>::index cannot work when graph_ == 0");
    EXPECT_EQ(error_text<std::runtime_error>([&] { kept->graph_data().self(); }),
              "ChemicalGraphAtomData<AtomType, BondType>::self No pointer available - this atom is not in a graph");
    kept = HAtom();
    EXPECT_EQ(CountedAtom::alive, 0);
}

TEST(ChemicalGraph, AddAtomChecksInOrder) {
    CG g, other;
    HAtom a = atom("C1"), b = atom("C2");
    EXPECT_EQ(g.add(a), 0);
    EXPECT_EQ(g.add(a), 0);  // re-adding is not an error
    EXPECT_EQ(g.natoms(), 1);
    EXPECT_EQ(error_text<std::invalid_argument>([&] { g.add(HAtom()); }), add_atom + "atom is a null pointer");
    EXPECT_EQ(error_text<std::domain_error>([&] { other.add(a); }),
              add_atom + "atom is already in another ChemicalGraph object");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { g.unchecked_add(HAtom()); }),
              "ChemicalGraph<AtomType, BondType>::unchecked_add(HAtomType) atom is a null pointer");
    EXPECT_EQ(error_text<std::domain_error>([&] { g.unchecked_add(a); }),
              "ChemicalGraph<AtomType, BondType>::unchecked_add(HAtomType) atom is already in a ChemicalGraph object");
    EXPECT_EQ(g.unchecked_add(b), 1);
    EXPECT_EQ(b->index(), 1);
    EXPECT_EQ(other.natoms(), 0);
}

TEST(ChemicalGraph, AddBondChecksInOrderAndChangesNothingOnFailure) {
    CG g, other;
    HAtom a = atom("C1"), b = atom("C2"), c = atom("C3"), foreign = atom("X1");
    HBond ab = bond(), ab2 = bond(), outsider = bond();
    other.add(outsider, foreign, atom("X2"));

    EXPECT_EQ(g.add(ab, a, b), 0);
    EXPECT_EQ(a->index(), 0);  // free atoms join in the order given
    EXPECT_EQ(b->index(), 1);
    EXPECT_EQ(g.add(ab, a, b), 0);  // the same bond again
    EXPECT_EQ(g.add(ab, b, a), 0);

    EXPECT_EQ(error_text<std::invalid_argument>([&] { g.add(HBond(), a, c); }), add_bond + "bond is a null pointer");
    EXPECT_EQ(error_text<std::domain_error>([&] { g.add(outsider, a, c); }),
              add_bond + "bond is already in another ChemicalGraph object");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { g.add(ab2, HAtom(), c); }), add_bond + "atom1 is a null pointer");
    EXPECT_EQ(error_text<std::domain_error>([&] { g.add(ab2, foreign, c); }),
              add_bond + "atom1 is already in another ChemicalGraph object");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { g.add(ab2, c, HAtom()); }), add_bond + "atom2 is a null pointer");
    EXPECT_EQ(error_text<std::domain_error>([&] { g.add(ab2, c, foreign); }),
              add_bond + "atom2 is already in another ChemicalGraph object");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { g.add(ab2, c, c); }),
              add_bond + "an atom cannot be bonded to itself");
    EXPECT_EQ(error_text<std::domain_error>([&] { g.add(ab2, b, a); }),
              add_bond + "atom1 and atom2 are already in a different bond in this ChemicalGraph object");
    EXPECT_EQ(error_text<std::domain_error>([&] { g.add(ab, a, c); }),
              add_bond + "bond is already present in this ChemicalGraph object, but involving different atoms");
    // The failures left everything as it was: c and ab2 are still free.
    EXPECT_EQ(g.natoms(), 2);
    EXPECT_EQ(g.nbonds(), 1);
    EXPECT_TRUE(is_free(c));
    EXPECT_TRUE(is_free(ab2));

    EXPECT_EQ(g.add(c), 2);
    EXPECT_EQ(g.add(ab2, 2, 0), 1);  // by index
    EXPECT_EQ(error_text<std::out_of_range>([&] { g.add(bond(), 0, 5); }), "IndexedTable::at Illegal index: 5");
}

TEST(ChemicalGraph, UncheckedAddBondNeedsAtomsOfThisGraph) {
    CG g, other;
    HAtom a = atom("C1"), b = atom("C2"), free_atom = atom("C3"), foreign = atom("X1");
    g.add(a);
    g.add(b);
    other.add(foreign);
    HBond placed = bond();
    other.add(placed, foreign, atom("X2"));
    HBond ab = bond();
    EXPECT_EQ(error_text<std::invalid_argument>([&] { g.unchecked_add(HBond(), a, b); }),
              unchecked_bond + "bond is a null pointer");
    EXPECT_EQ(error_text<std::domain_error>([&] { g.unchecked_add(placed, a, b); }),
              unchecked_bond + "bond is already in another ChemicalGraph object");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { g.unchecked_add(ab, HAtom(), b); }),
              unchecked_bond + "atom1 is a null pointer");
    EXPECT_EQ(error_text<std::domain_error>([&] { g.unchecked_add(ab, free_atom, b); }),
              unchecked_bond + "atom1 is not in this ChemicalGraph object");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { g.unchecked_add(ab, a, HAtom()); }),
              unchecked_bond + "atom2 is a null pointer");
    EXPECT_EQ(error_text<std::domain_error>([&] { g.unchecked_add(ab, a, foreign); }),
              unchecked_bond + "atom2 is not in this ChemicalGraph object");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { g.unchecked_add(ab, a, a); }),
              unchecked_bond + "an atom cannot be bonded to itself");
    EXPECT_EQ(g.unchecked_add(ab, a, b), 0);
    EXPECT_EQ(ab->atom1(), a);
    EXPECT_EQ(ab->atom2(), b);
}

TEST(ChemicalGraph, RemovalFreesAndIndicesCloseUp) {
    CG g, other;
    std::vector<HAtom> atoms;
    for (int i = 0; i < 5; ++i) atoms.push_back(atom("C" + std::to_string(i + 1)));
    std::vector<HBond> bonds;
    for (int i = 0; i < 4; ++i) {
        bonds.push_back(bond());
        g.add(bonds.back(), atoms[i], atoms[i + 1]);
    }
    HAtom stranger = atom("X1");
    other.add(stranger);
    g.remove_atom(stranger);  // another graph's atom: ignored
    g.remove_atom(atom("Y1"));  // a free atom: ignored
    EXPECT_EQ(other.natoms(), 1);

    g.remove_atom(atoms[1]);
    EXPECT_EQ(g.natoms(), 4);
    EXPECT_EQ(g.nbonds(), 2);
    EXPECT_EQ(atoms[2]->index(), 1);
    EXPECT_EQ(atoms[4]->index(), 3);
    EXPECT_EQ(bonds[2]->index(), 0);
    // The removed atom and its bonds are free; the atom's chemistry still answers.
    EXPECT_TRUE(is_free(atoms[1]));
    EXPECT_EQ(atoms[1]->label(), "C2");
    EXPECT_EQ(error_text<std::runtime_error>([&] { bonds[0]->atom1(); }),
              "ChemicalGraphBondData<AtomType, BondType>::atom1 cannot work when graph_ == 0");
    EXPECT_EQ(error_text<std::runtime_error>([&] { bonds[1]->index(); }),
              "ChemicalGraphBondData<AtomType, BondType>::index cannot work when graph_ == 0");

    g.remove_bond(bonds[3]);
    EXPECT_EQ(atoms[4]->nbonds(), 0);
    EXPECT_EQ(g.natoms(), 4);
    g.isolate(atoms[2]);
    EXPECT_EQ(g.nbonds(), 0);
}

TEST(ChemicalGraph, NullHandlesAreRefusedNamingTheCallAndTheArgument) {
    CG g;
    HAtom c = atom("C1");
    g.add(c);
    const std::pair<std::function<void()>, std::string> calls[] = {
        {[&] { g.remove_atom(HAtom()); }, "remove_atom(HAtomType) atom"},
        {[&] { g.remove_bond(HBond()); }, "remove_bond(HBondType) bond"},
        {[&] { g.isolate(HAtom()); }, "isolate(HAtomType) atom"},
        {[&] { g.has_bond(HAtom(), c); }, "has_bond(HAtomType, HAtomType) atom1"},
        {[&] { g.bond(c, HAtom()); }, "bond(HAtomType, HAtomType) atom2"},
        {[&] { g.has_atom(HAtom()); }, "has_atom(HAtomType) atom"},
        {[&] { g.has_bond(HBond()); }, "has_bond(HBondType) bond"},
    };
    for (const auto& call : calls)
        EXPECT_EQ(error_text<std::invalid_argument>(call.first),
                  "ChemicalGraph<AtomType, BondType>::" + call.second + " is a null pointer");
}

TEST(ChemicalGraph, QueriesNeighboursAndBondsOfAnAtom) {
    // A carbon with three neighbours: bonds come in neighbour (handle) order.
    CG g;
    HAtom c = atom("C1"), o = atom("O1", "O"), n = atom("N1", "N"), h = atom("H1", "H");
    HBond co = bond(DOUBLE_BOND), cn = bond(), ch = bond();
    g.add(co, c, o);
    g.add(cn, c, n);
    g.add(ch, c, h);
    EXPECT_TRUE(g.has_bond(n, c));
    EXPECT_EQ(g.bond(n, c), cn);
    EXPECT_EQ(error_text<std::invalid_argument>([&] { g.bond(o, n); }),
              "Graph::edge:  no edge between the two specified nodes");

    std::deque<HAtom> around = c->neighbours();
    std::deque<HBond> bonds = c->bonds();
    ASSERT_EQ(around.size(), 3u);
    ASSERT_EQ(bonds.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(bonds[i]->other_atom(c), around[i]);
        EXPECT_EQ(c->graph_data().bond(static_cast<int>(i)), bonds[i]);
    }
    std::size_t walked = 0;
    for (PolymorphicConstIterator<HBond> b = c->begin_bonds(); b != c->end_bonds(); ++b) EXPECT_EQ(*b, bonds[walked++]);
    EXPECT_EQ(walked, 3u);
    EXPECT_EQ(error_text<std::invalid_argument>([&] { c->graph_data().bond(3); }),
              "ChemicalGraphAtomData<AtomType, BondType>::bond Illegal bond_index");
    EXPECT_EQ(c->nhydrogens(true), 1);
    EXPECT_EQ(c->nhydrogens(false), 1);
    EXPECT_EQ(g.graph()->nnodes(), 4u);
}

TEST(ChemicalGraph, InplaceSplitFreesAtomsForTheParts) {
    CG g;
    HAtom a = atom("C1"), b = atom("C2"), c = atom("C3"), d = atom("C4");
    g.add(bond(), a, b);
    g.add(bond(), c, d);
    THandle<std::vector<CG::HGraphType> > parts = g.inplace_split();
    ASSERT_EQ(parts->size(), 2u);
    EXPECT_EQ(g.natoms(), 0);
    EXPECT_TRUE(is_free(a));
    EXPECT_EQ((*parts)[0]->node(0), a);
    EXPECT_EQ((*parts)[1]->node(1), d);

    CG single;
    single.add(bond(), a, b);
    EXPECT_EQ(single.inplace_split()->size(), 1u);
    EXPECT_EQ(single.natoms(), 2);  // one part: the graph keeps its atoms
}

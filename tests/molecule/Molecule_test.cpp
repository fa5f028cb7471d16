// The abstract molecule: connection queries, geometry, whole-molecule edits,
// editability of read-only molecules, validation and the print form.
#include "molcryst/molecule/Molecule.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "TestMolecules.h"
#include "common/ErrorText.h"
#include "common/Text.h"
#include "molcryst/geometry/Cell.h"
#include "molcryst/geometry/CrystalSymmetryTransformation.h"
#include "molcryst/geometry/GeometryFunctions.h"
#include "molcryst/molecule/MoleculeGraphImpl.h"

using namespace molcryst;
using namespace molcryst::testing;

namespace {

// A chain A-B-C-D whose torsion is +60 degrees, its bonds stored in mixed
// directions (B->A, C->B, C->D), and a fifth atom E on D.
HMolecule3d torsion_chain() {
    return molecule("C A 1 0 0; C B 0 0 0; C C 0 0 1.5; C D 0.5 0.8660254037844386 1.5; C E 5 5 5", "B-A C-B C-D D-E");
}

// A molecule that can only be read, standing for views of other molecules.
// Its contents are set up through the protected graph; `bond` and
// `has_bond` on atom pairs are the base versions.
class ReadOnlyMolecule : public MoleculeGraphImpl {
public:
    explicit ReadOnlyMolecule(const Molecule& source) {
        for (int i = 0; i < source.natoms(); ++i) graph_.add(HAtom(new Atom3d(*source.atom(i))));
        for (int i = 0; i < source.nbonds(); ++i) {
            HBond b = source.bond(i);
            graph_.add(HBond(new Bond3d(*b)), b->atom1()->index(), b->atom2()->index());
        }
    }
    HMolecule clone() const override { return HMolecule(new ReadOnlyMolecule(*this)); }
    Hvector_HMolecule split() const override { return Hvector_HMolecule(new vector_HMolecule()); }
    HBond bond(HAtom a, HAtom b) const override { return Molecule::bond(a, b); }
    bool has_bond(HAtom a, HAtom b) const override { return Molecule::has_bond(a, b); }
    using MoleculeGraphImpl::bond;
    using MoleculeGraphImpl::has_bond;

    // Extra entries shown after the stored ones, to build inconsistent views.
    std::vector<HAtom> extra_atoms;
    std::vector<HBond> extra_bonds;
    int natoms() const override { return MoleculeGraphImpl::natoms() + static_cast<int>(extra_atoms.size()); }
    HAtom atom(int i) const override {
        const int n = MoleculeGraphImpl::natoms();
        return i < n ? MoleculeGraphImpl::atom(i) : extra_atoms.at(static_cast<std::size_t>(i - n));
    }
    int nbonds() const override { return MoleculeGraphImpl::nbonds() + static_cast<int>(extra_bonds.size()); }
    HBond bond(int i) const override {
        const int n = MoleculeGraphImpl::nbonds();
        return i < n ? MoleculeGraphImpl::bond(i) : extra_bonds.at(static_cast<std::size_t>(i - n));
    }

private:
    ReadOnlyMolecule(const ReadOnlyMolecule& x) : MoleculeGraphImpl(x) {}
};

}  // namespace

TEST(Molecule, EveryEditOfAReadOnlyMoleculeNamesItself) {
    const Molecule3d source(*water());
    ReadOnlyMolecule m(source);
    EXPECT_FALSE(m.editable());
    const HAtom free_atom = atom_at("C", "C9", 0, 0, 0);
    const HBond free_bond(new Bond3d(SINGLE_BOND));
    const std::vector<int> order = {2, 1, 0};
    const std::pair<const char*, std::function<void()> > cases[] = {
        {"add", [&] { m.add(free_atom); }},
        {"unchecked_add", [&] { m.unchecked_add(free_atom); }},
        {"add", [&] { m.add(free_bond, 0, 1); }},
        {"add", [&] { m.add(free_bond, m.atom(0), free_atom); }},
        {"unchecked_add", [&] { m.unchecked_add(free_bond, m.atom(1), m.atom(2)); }},
        {"remove_atom", [&] { m.remove_atom(0); }},
        {"remove", [&] { m.remove(m.atom(0)); }},
        {"remove_bond", [&] { m.remove_bond(0); }},
        {"remove", [&] { m.remove(m.bond(0)); }},
        {"isolate", [&] { m.isolate(m.atom(0)); }},
        {"clear", [&] { m.clear(); }},
        {"reorder_atoms", [&] { m.reorder_atoms(order); }},
        {"inplace_split", [&] { m.inplace_split(); }},
        {"merge", [&] { m.merge(HMolecule(new Molecule3d(source))); }},
        {"add", [&] { m.add(source); }},
        {"remove_hydrogens", [&] { m.remove_hydrogens(); }},
        {"sort_atoms", [&] { m.sort_atoms(); }},
        {"add_graph", [&] { m.add_graph(OrderedGraph<HAtom, HBond>()); }},
        {"remove_graph", [&] { m.remove_graph(OrderedGraph<HAtom, HBond>()); }},
    };
    for (const auto& c : cases)
        EXPECT_EQ(error_text<std::runtime_error>(c.second),
                  std::string("Molecule::") + c.first + " this molecule can not be edited.");
    EXPECT_EQ(m.natoms(), 3);
    EXPECT_EQ(m.nbonds(), 2);
    EXPECT_FALSE(m.archivable());
}

TEST(Molecule, BaseBondLookupByAtomsChecksEachArgumentInTurn) {
    ReadOnlyMolecule m(*water());
    const HAtom o = m.atom(0), h1 = m.atom(1), h2 = m.atom(2), stranger = atom_at("C", "X", 0, 0, 0);
    EXPECT_EQ(m.bond(h1, o), m.bond(0));
    EXPECT_EQ(m.bond(o, h2), m.bond(1));
    EXPECT_TRUE(m.has_bond(o, h1));
    EXPECT_FALSE(m.has_bond(h1, h2));
    EXPECT_FALSE(m.has_bond(o, stranger));
    const std::pair<std::function<void()>, std::string> cases[] = {
        {[&] { m.bond(HAtom(), o); }, "atom1 is a null pointer"},
        {[&] { m.bond(stranger, o); }, "atom1 is not in this molecule"},
        {[&] { m.bond(o, HAtom()); }, "atom2 is a null pointer"},
        {[&] { m.bond(o, stranger); }, "atom2 is not in this molecule"},
        {[&] { m.bond(o, o); }, "atom1 and atom2 are the same"},
        {[&] { m.bond(h1, h2); }, "no bond between atom1 and atom2 in this molecule"},
        {[&] { m.has_bond(HAtom(), o); }, "atom1 is a null pointer"},
        {[&] { m.has_bond(o, HAtom()); }, "atom2 is a null pointer"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(error_text<std::invalid_argument>(c.first), "Molecule::bond(HAtom, HAtom) " + c.second);
}

TEST(Molecule, ConnectionQueriesFilterNeighboursByKind) {
    // A bridging hydride between two iron atoms, and a methyl group on one.
    HMolecule3d m =
        molecule("Fe Fe1 0 0 0; Fe Fe2 3 0 0; H H1 1.5 1 0; C C1 -2 0 0; H H2 -2.5 1 0", "Fe1-H1 Fe2-H1 Fe1-C1 C1-H2");
    auto sorted = [](Hvector_int v) {
        std::sort(v->begin(), v->end());
        return *v;
    };
    EXPECT_EQ(sorted(m->atom_connections(2)), (std::vector<int>{0, 1}));
    EXPECT_EQ(sorted(m->atom_connections_metal(2)), (std::vector<int>{0, 1}));
    EXPECT_TRUE(m->atom_connections_nonmetal(2)->empty());
    EXPECT_EQ(sorted(m->atom_connections_nonmetal(0)), (std::vector<int>{2, 3}));
    EXPECT_EQ(sorted(m->atom_connections_nonhydrogen(0)), (std::vector<int>{3}));
    EXPECT_EQ(m->atom_nconnections_metal(2), 2);
    EXPECT_EQ(m->atom_nconnections_nonmetal(0), 2);
    EXPECT_EQ(m->atom_nconnections_nonhydrogen(3), 1);

    // The connections come in neighbour order, the order of the atom's own list.
    std::vector<int> in_order;
    for (const HAtom& a : m->atom(0)->neighbours()) in_order.push_back(a->index());
    EXPECT_EQ(*m->atom_connections(0), in_order);
}

TEST(Molecule, AdjacencyPathsAndSubsets) {
    Molecule3d m(*torsion_chain());
    m.add(atom_without_site("N", "N1"));
    THandle<ResizableArray2D<bool> > matrix = m.adjacency_matrix();
    ASSERT_EQ(matrix->rows(), 6u);
    for (unsigned int i = 0; i < 6; ++i) {
        EXPECT_FALSE((*matrix)[i][i]);
        for (unsigned int j = 0; j < 6; ++j) {
            EXPECT_EQ((*matrix)[i][j], (*matrix)[j][i]);
            EXPECT_EQ((*matrix)[i][j], m.bond_index(static_cast<int>(i), static_cast<int>(j)) != -1);
        }
    }
    std::vector<Hvector_int> list = m.adjacency_list();
    ASSERT_EQ(list.size(), 6u);
    EXPECT_TRUE(list[5]->empty());

    EXPECT_EQ(m.shortest_path(0, 4), 4);
    EXPECT_EQ(m.shortest_path(2, 2), 0);
    EXPECT_EQ(m.shortest_path(0, 5), -1);
    EXPECT_EQ(m.bond_index(1, 0), 0);
    EXPECT_EQ(m.bond_index(0, 1), 0);
    EXPECT_EQ(m.bond_index(0, 2), -1);
    EXPECT_EQ(m.bond_subset({3, 2, 1}), (std::vector<int>{1, 2}));
    EXPECT_EQ(m.atom_subset({3, 1}), (std::vector<int>{1, 2, 3, 4}));
    EXPECT_EQ(m.atoms_with_sites(), (std::vector<int>{0, 1, 2, 3, 4}));
    EXPECT_EQ(m.atoms_with_sites({5, 2}), (std::vector<int>{2}));
    EXPECT_EQ(m.ncomponents(), 2);
    EXPECT_FALSE(m.contiguous());
}

TEST(Molecule, GeometryQueriesOnSites) {
    HMolecule3d w = water();
    const double r = 0.9572;
    EXPECT_NEAR(w->distance(0, 1), r, 1e-12);
    EXPECT_NEAR(w->angle(1, 0, 2).degrees(), 104.52, 1e-9);
    EXPECT_NEAR(w->bond_length(1, 0), r, 1e-12);
    EXPECT_EQ(w->bond_length(1, 2), 0.0);  // not bonded: 0, not the distance
    EXPECT_NEAR(w->bond_length(1), r, 1e-12);
    EXPECT_NEAR(w->vector(0)[0], r, 1e-12);  // O to H1
    EXPECT_NEAR(w->vector(1, 0)[0], -r, 1e-12);
    EXPECT_NEAR(w->bond_angle(0, 1).degrees(), 104.52, 1e-9);
    EXPECT_NEAR(w->average_bond_angle(0).degrees(), 104.52, 1e-9);
    EXPECT_EQ(w->average_bond_angle(1).degrees(), 0.0);

    HMolecule3d chain = torsion_chain();
    EXPECT_EQ(chain->bond_angle(0, 2).degrees(), 0.0);  // no shared atom
    EXPECT_NEAR(chain->torsion_angle(0, 1, 2, 3).degrees(), 60.0, 1e-9);
    EXPECT_NEAR(chain->torsion_angle(0, 1, 2).degrees(), 60.0, 1e-9);  // bonds b->a, c->b, c->d
    EXPECT_NEAR(chain->torsion_angle(2, 1, 0).degrees(), 60.0, 1e-9);  // the same chain read backwards
    EXPECT_TRUE(chain->valid_torsion(0, 1, 2, 3, Angle::from_degrees(5)));
    EXPECT_TRUE(chain->valid_torsion(0, 1, 2, Angle::from_degrees(5)));
    EXPECT_EQ(error_text<std::invalid_argument>([&] { chain->torsion_angle(0, 1, 0); }),
              "Molecule::torsion_angle(a,b,c): repeated bond");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { chain->torsion_angle(0, 2, 3); }),
              "Molecule3d::torsion_angle(i,j,k): bonds not connected");

    // Atoms without sites are left out of centroids, boxes and planes only.
    chain->add(atom_without_site("N", "N1"));
    Point c = chain->centroid({0, 1, 5});
    EXPECT_NEAR(c[0], 0.5, 1e-12);
    EXPECT_NEAR(c[2], 0.0, 1e-12);
    EXPECT_EQ(chain->box().minimum(), Point(0, 0, 0));
    EXPECT_EQ(chain->box().maximum(), Point(5, 5, 5));
    Plane p = chain->mean_plane({0, 1, 2, 5});
    EXPECT_NEAR(std::fabs(p.normal()[1]), 1.0, 1e-9);  // the three points lie in y = 0
    EXPECT_THROW(chain->distance(0, 5), std::logic_error);
}

TEST(Molecule, FormalChargeAndFindAtom) {
    HMolecule3d m = water();
    m->atom(0)->set_formal_charge(-1);
    m->atom(2)->set_formal_charge(2);
    EXPECT_EQ(m->formal_charge(), 1);

    m->atom(1)->set_symmtag(5);
    int index = -1;
    EXPECT_TRUE(m->find_atom(5, Point(0.9572 + 5e-6, -5e-6, 0), index));
    EXPECT_EQ(index, 1);
    EXPECT_FALSE(m->find_atom(5, Point(0.9572 + 2e-5, 0, 0), index));
    EXPECT_FALSE(m->find_atom(-1, Point(0.9572, 0, 0), index));  // wrong tag
    EXPECT_TRUE(m->find_atom(-1, Point(0, 0, 0), index));
    EXPECT_EQ(index, 0);
}

TEST(Molecule, MergeMatchesAtomsBySymmetryTagAndPosition) {
    Molecule3d a(*water());
    // The second molecule repeats O1 and H1 (same tags, positions within
    // tolerance) and brings a new atom bonded to O1, plus the O1-H1 bond
    // again. K1 makes the sizes differ: the log counts this molecule's.
    HMolecule b =
        molecule("K K1 -9 0 0; H H1copy 0.9572 0 1e-6; O O1copy 0 0 0; Na Na1 -2.5 0 0", "H1copy-O1copy O1copy-Na1");
    const std::string log = log_of(3, [&] { a.merge(b); });
    ASSERT_EQ(a.natoms(), 5);
    EXPECT_EQ(labels_of(a), (std::vector<std::string>{"O1", "H1", "H2", "K1", "Na1"}));
    EXPECT_NE(a.atom(4), b->atom(3));  // a copy, not the atom itself
    EXPECT_EQ(bonds_of(a), "O1-H1 O1-H2 O1-Na1");
    EXPECT_NE(log.find("Molecule::merge entered natoms=3 nbonds=2"), std::string::npos) << log;
    EXPECT_NE(log.find("Molecule::merge completed natoms=5 nbonds=3"), std::string::npos) << log;

    // A different symmetry tag at the same place is another atom.
    HMolecule c = molecule("O O1image 0 0 0");
    c->atom(0)->set_symmtag(2);
    a.merge(c);
    EXPECT_EQ(a.natoms(), 6);

    // Two bonded atoms that both match one atom here: their bond is dropped.
    Molecule3d here(*molecule("O O1 0 0 0"));
    here.merge(molecule("Na Na1 5 0 0; O O1a 0 0 0; O O1b 0 0 2e-6", "O1a-O1b"));
    EXPECT_EQ(labels_of(here), (std::vector<std::string>{"O1", "Na1"}));
    EXPECT_EQ(bonds_of(here), "");
}

TEST(Molecule, AddCopiesAndGraphsMoveTheAtomsThemselves) {
    Molecule3d a(*water()), b(*torsion_chain());
    EXPECT_EQ(a.add(b), (std::vector<int>{3, 4, 5, 6, 7}));
    EXPECT_EQ(bonds_of(a), "O1-H1 O1-H2 B-A C-B C-D D-E");
    EXPECT_EQ(a.bond_index(4, 3), 2);
    EXPECT_NE(a.atom(3), b.atom(0));

    // A graph of selected atoms and bonds holds the molecule's own atoms.
    HMoleculeGraph oxygen = a.graph<AtomAtomicNumberPredicate<HAtom>, BondAlwaysTruePredicate<HBond> >(
        AtomAtomicNumberPredicate<HAtom>(8), BondAlwaysTruePredicate<HBond>());
    EXPECT_EQ(oxygen->nnodes(), 1u);
    EXPECT_EQ(oxygen->nedges(), 0u);
    EXPECT_EQ(oxygen->node(0), a.atom(0));

    HMoleculeGraph g = b.graph();
    EXPECT_EQ(error_text<std::domain_error>([&] { Molecule3d taken(*g); }),
              "ChemicalGraph<AtomType, BondType>::add(HAtomType) atom is already in another ChemicalGraph object");
    b.clear();
    Molecule3d taken(*g);
    EXPECT_EQ(taken.natoms(), 5);
    EXPECT_EQ(taken.atom(2), g->node(2));
    taken.remove_graph(*g);
    EXPECT_EQ(taken.natoms(), 0);
    EXPECT_EQ(taken.nbonds(), 0);
}

TEST(Molecule, CreateMoleculeFromIndicesAndBySymmetry) {
    HMolecule3d chain = torsion_chain();
    HMolecule part = chain->create_molecule({3, 2, 4});
    EXPECT_EQ(labels_of(*part), (std::vector<std::string>{"D", "C", "E"}));
    EXPECT_EQ(bonds_of(*part), "C-D D-E");
    EXPECT_NE(part->atom(0)->site(), chain->atom(3)->site());

    // An inversion through the origin in a 10 Angstrom cubic cell.
    Cell cell(10, 10, 10, Angle::from_degrees(90), Angle::from_degrees(90), Angle::from_degrees(90));
    HMolecule3d w = molecule("O O1; H H1", "O1-H1");
    w->atom(0)->set_site(HSite(new Site(Site::frac(Point(0.1, 0.2, 0.3), cell))));
    w->atom(1)->set_site(HSite(new Site(Site::frac(Point(0.19, 0.2, 0.3), cell))));
    CrystalSymmetryTransformation inversion(CrystalSymmetryOperator("-x,-y,-z"), Vector<int, 3>(1, 0, 0));
    HMolecule image = w->create_molecule(inversion, cell);
    ASSERT_EQ(image->natoms(), 2);
    EXPECT_NEAR(image->atom(0)->site()->frac()[0], 0.9, 1e-12);
    EXPECT_NEAR(image->atom(0)->site()->orth()[1], -2.0, 1e-12);
    EXPECT_NEAR(w->atom(0)->site()->frac()[0], 0.1, 1e-12);  // the source stays
    EXPECT_EQ(bonds_of(*image), "O1-H1");
}

TEST(Molecule, ValidateAtLevelFourFindsBrokenViews) {
    const Molecule3d source(*water());
    ReadOnlyMolecule ok(source);
    ok.validate(4);

    ReadOnlyMolecule twice(source);
    twice.extra_atoms.push_back(twice.atom(1));
    twice.validate(3);  // nothing checked below level 4
    EXPECT_EQ(error_text<std::runtime_error>([&] { twice.validate(4); }), "Molecule::validate: An atom appears twice.");

    const HMolecule3d other = water();
    ReadOnlyMolecule foreign(source);
    foreign.extra_bonds.push_back(other->bond(0));
    EXPECT_EQ(error_text<std::runtime_error>([&] { foreign.validate(4); }), "Molecule::validate: illegal bond.");

    ReadOnlyMolecule repeated(source);
    repeated.extra_bonds.push_back(repeated.bond(0));
    EXPECT_EQ(error_text<std::runtime_error>([&] { repeated.validate(4); }),
              "Molecule::validate: A bond appears twice.");
}

TEST(Molecule, PrintListsAtomsWithCoordinatesThenBonds) {
    const std::string text = printed(*molecule("O O1 0 0 0; H H1", "O1-H1"));
    EXPECT_EQ(text.rfind("atoms: 2, bonds: 1\n0: ", 0), 0u) << text;
    EXPECT_EQ(text.find("fract: "), text.rfind("fract: "));  // only the atom with a site
    EXPECT_NE(text.find(", orthog: "), std::string::npos);
    EXPECT_NE(text.find("\n1: element: H"), std::string::npos);
    EXPECT_NE(text.find("\n0: atom1: 0 (O1), atom2: 1 (H1), type: 1"), std::string::npos) << text;
}

TEST(Molecule, EqualityNeedsSameAtomsBondsAndEnds) {
    HMolecule3d a = water(), b = water();
    EXPECT_TRUE(*a == *b);
    b->atom(2)->set_label("H3");
    EXPECT_FALSE(*a == *b);

    // The same bond with its ends swapped is not equal; nor is another type.
    HMolecule3d c = molecule("O O1 0 0 0; H H1 1 0 0", "O1-H1"), d = molecule("O O1 0 0 0; H H1 1 0 0", "H1-O1");
    EXPECT_TRUE(*c->atom(0) == *d->atom(0));
    EXPECT_FALSE(*c == *d);
    d->remove_bond(0);
    add_bonds(*d, "O1=H1");
    EXPECT_NE(*d, *c);
}

// The abstract molecule: connection queries, geometry, whole-molecule edits,
// editability of read-only molecules, validation and the print form.
#include "molcryst/molecule/Molecule.h"

#include <gtest/gtest.h>

#include "common/ErrorText.h"

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "molcryst/geometry/Cell.h"
#include "molcryst/geometry/CrystalSymmetryTransformation.h"
#include "molcryst/geometry/GeometryFunctions.h"
#include "molcryst/molecule/Atom3d.h"
#include "molcryst/molecule/Bond3d.h"
#include "molcryst/molecule/Molecule3d.h"
#include "molcryst/molecule/MoleculeGraphImpl.h"
#include "molcryst/molecule/Site.h"
#include "molcryst/support/TARNLog.h"

using namespace molcryst;
using molcryst::testing::error_text;

namespace {

const double pi = 3.14159265358979323846;

HAtom atom_at(const Element& e, const std::string& label, double x, double y, double z) {
    return HAtom(new Atom3d(e, label, HSite(new Site(Point(x, y, z)))));
}

HAtom atom_without_site(const Element& e, const std::string& label) { return HAtom(new Atom3d(e, label, HSite())); }

int bond(Molecule& m, int a, int b, BondType type = SINGLE_BOND) { return m.add(HBond(new Bond3d(type)), a, b); }

// Water with a bond angle of 104.52 degrees: O 0, H1 1, H2 2.
Molecule3d water() {
    Molecule3d m;
    const double r = 0.9572, theta = 104.52 * pi / 180.0;
    m.add(atom_at(Element::O, "O1", 0, 0, 0));
    m.add(atom_at(Element::H, "H1", r, 0, 0));
    m.add(atom_at(Element::H, "H2", r * std::cos(theta), r * std::sin(theta), 0));
    bond(m, 0, 1);
    bond(m, 0, 2);
    return m;
}

// A chain a-b-c-d whose torsion is +60 degrees, with its bonds stored in
// mixed directions: b->a, c->b, c->d.
Molecule3d torsion_chain() {
    Molecule3d m;
    m.add(atom_at(Element::C, "A", 1, 0, 0));
    m.add(atom_at(Element::C, "B", 0, 0, 0));
    m.add(atom_at(Element::C, "C", 0, 0, 1.5));
    m.add(atom_at(Element::C, "D", std::cos(pi / 3), std::sin(pi / 3), 1.5));
    m.add(atom_at(Element::C, "E", 5, 5, 5));
    bond(m, 1, 0);
    bond(m, 2, 1);
    bond(m, 2, 3);
    bond(m, 3, 4);
    return m;
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
    Molecule3d source = water();
    ReadOnlyMolecule m(source);
    EXPECT_FALSE(m.editable());
    const HAtom free_atom = atom_at(Element::C, "C9", 0, 0, 0);
    const HBond free_bond(new Bond3d(SINGLE_BOND));
    const std::string tail = " this molecule can not be edited.";
    struct Case {
        const char* name;
        std::function<void()> edit;
    };
    const std::vector<Case> cases = {
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
        {"reorder_atoms", [&] { m.reorder_atoms(std::vector<int>{2, 1, 0}); }},
        {"inplace_split", [&] { m.inplace_split(); }},
        {"merge", [&] { m.merge(HMolecule(new Molecule3d(source))); }},
        {"add", [&] { m.add(source); }},
        {"remove_hydrogens", [&] { m.remove_hydrogens(); }},
        {"sort_atoms", [&] { m.sort_atoms(); }},
        {"add_graph", [&] { m.add_graph(OrderedGraph<HAtom, HBond>()); }},
        {"remove_graph", [&] { m.remove_graph(OrderedGraph<HAtom, HBond>()); }},
    };
    for (const Case& c : cases)
        EXPECT_EQ(error_text<std::runtime_error>(c.edit), std::string("Molecule::") + c.name + tail) << c.name;
    EXPECT_EQ(m.natoms(), 3);
    EXPECT_EQ(m.nbonds(), 2);
    EXPECT_FALSE(m.archivable());
}

TEST(Molecule, BaseBondLookupByAtomsChecksEachArgumentInTurn) {
    Molecule3d source = water();
    ReadOnlyMolecule m(source);
    const HAtom o = m.atom(0), h1 = m.atom(1), h2 = m.atom(2), stranger = atom_at(Element::C, "X", 0, 0, 0);
    const std::string head = "Molecule::bond(HAtom, HAtom) ";
    EXPECT_EQ(m.bond(h1, o), m.bond(0));
    EXPECT_EQ(m.bond(o, h2), m.bond(1));
    EXPECT_EQ(error_text<std::invalid_argument>([&] { m.bond(HAtom(), o); }), head + "atom1 is a null pointer");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { m.bond(stranger, o); }), head + "atom1 is not in this molecule");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { m.bond(o, HAtom()); }), head + "atom2 is a null pointer");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { m.bond(o, stranger); }), head + "atom2 is not in this molecule");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { m.bond(o, o); }), head + "atom1 and atom2 are the same");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { m.bond(h1, h2); }),
              head + "no bond between atom1 and atom2 in this molecule");

    EXPECT_TRUE(m.has_bond(o, h1));
    EXPECT_FALSE(m.has_bond(h1, h2));
    EXPECT_FALSE(m.has_bond(o, stranger));
    EXPECT_EQ(error_text<std::invalid_argument>([&] { m.has_bond(HAtom(), o); }), head + "atom1 is a null pointer");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { m.has_bond(o, HAtom()); }), head + "atom2 is a null pointer");
}

TEST(Molecule, ConnectionQueriesFilterNeighboursByKind) {
    // A bridging hydride between two iron atoms, and a methyl group on one.
    Molecule3d m;
    m.add(atom_at(Element::Fe, "Fe1", 0, 0, 0));
    m.add(atom_at(Element::Fe, "Fe2", 3, 0, 0));
    m.add(atom_at(Element::H, "H1", 1.5, 1, 0));
    m.add(atom_at(Element::C, "C1", -2, 0, 0));
    m.add(atom_at(Element::H, "H2", -2.5, 1, 0));
    bond(m, 0, 2);
    bond(m, 1, 2);
    bond(m, 0, 3);
    bond(m, 3, 4);

    auto sorted = [](Hvector_int v) {
        std::sort(v->begin(), v->end());
        return *v;
    };
    EXPECT_EQ(sorted(m.atom_connections(2)), (std::vector<int>{0, 1}));
    EXPECT_EQ(sorted(m.atom_connections_metal(2)), (std::vector<int>{0, 1}));
    EXPECT_TRUE(m.atom_connections_nonmetal(2)->empty());
    EXPECT_EQ(sorted(m.atom_connections_nonmetal(0)), (std::vector<int>{2, 3}));
    EXPECT_EQ(sorted(m.atom_connections_nonhydrogen(0)), (std::vector<int>{3}));
    EXPECT_EQ(m.atom_nconnections_metal(2), 2);
    EXPECT_EQ(m.atom_nconnections_nonmetal(0), 2);
    EXPECT_EQ(m.atom_nconnections_nonhydrogen(3), 1);

    // The connections come in neighbour order, the order of the atom's own list.
    std::deque<HAtom> neighbours = m.atom(0)->neighbours();
    std::vector<int> in_order;
    for (const HAtom& a : neighbours) in_order.push_back(a->index());
    EXPECT_EQ(*m.atom_connections(0), in_order);

    // The bridging hydrogen stays; the terminal one goes.
    EXPECT_EQ(m.remove_hydrogens(), 1);
    EXPECT_EQ(m.natoms(), 4);
    EXPECT_EQ(m.atom(2)->label(), "H1");
}

TEST(Molecule, RemoveHydrogensTakesOnlyTerminalOnes) {
    Molecule3d bonded = water();
    EXPECT_EQ(bonded.remove_hydrogens(), 2);
    EXPECT_EQ(bonded.natoms(), 1);

    Molecule3d loose;
    loose.add(atom_at(Element::O, "O1", 0, 0, 0));
    loose.add(atom_at(Element::H, "H1", 1, 0, 0));
    loose.add(atom_at(Element::D, "D1", 0, 1, 0));
    EXPECT_EQ(loose.remove_hydrogens(), 0);  // not bonded, so not terminal

    // H2: both atoms are terminal, and both go, judged before either is removed.
    Molecule3d h2;
    h2.add(atom_at(Element::H, "H1", 0, 0, 0));
    h2.add(atom_at(Element::D, "D1", 0.74, 0, 0));
    bond(h2, 0, 1);
    EXPECT_EQ(h2.remove_hydrogens(), 2);
    EXPECT_EQ(h2.natoms(), 0);
}

TEST(Molecule, AdjacencyPathsAndSubsets) {
    Molecule3d m = torsion_chain();
    m.add(atom_without_site(Element::N, "N1"));
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
    Molecule3d w = water();
    const double r = 0.9572;
    EXPECT_NEAR(w.distance(0, 1), r, 1e-12);
    EXPECT_NEAR(w.angle(1, 0, 2).degrees(), 104.52, 1e-9);
    EXPECT_NEAR(w.bond_length(1, 0), r, 1e-12);
    EXPECT_EQ(w.bond_length(1, 2), 0.0);  // not bonded: 0, not the distance
    EXPECT_NEAR(w.bond_length(1), r, 1e-12);
    Vector<double, 3> v = w.vector(0);  // O to H1
    EXPECT_NEAR(v[0], r, 1e-12);
    EXPECT_NEAR(w.vector(1, 0)[0], -r, 1e-12);
    EXPECT_NEAR(w.bond_angle(0, 1).degrees(), 104.52, 1e-9);
    EXPECT_NEAR(w.average_bond_angle(0).degrees(), 104.52, 1e-9);
    EXPECT_EQ(w.average_bond_angle(1).degrees(), 0.0);

    Molecule3d chain = torsion_chain();
    EXPECT_EQ(chain.bond_angle(0, 2).degrees(), 0.0);  // no shared atom
    EXPECT_NEAR(chain.torsion_angle(0, 1, 2, 3).degrees(), 60.0, 1e-9);
    EXPECT_NEAR(chain.torsion_angle(0, 1, 2).degrees(), 60.0, 1e-9);  // bonds b->a, c->b, c->d
    EXPECT_NEAR(chain.torsion_angle(2, 1, 0).degrees(), 60.0, 1e-9);  // the same chain read backwards
    EXPECT_TRUE(chain.valid_torsion(0, 1, 2, 3, Angle::from_degrees(5)));
    EXPECT_TRUE(chain.valid_torsion(0, 1, 2, Angle::from_degrees(5)));
    EXPECT_EQ(error_text<std::invalid_argument>([&] { chain.torsion_angle(0, 1, 0); }),
              "Molecule::torsion_angle(a,b,c): repeated bond");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { chain.torsion_angle(0, 2, 3); }),
              "Molecule3d::torsion_angle(i,j,k): bonds not connected");

    // Atoms without sites are left out of centroids, boxes and planes only.
    chain.add(atom_without_site(Element::N, "N1"));
    Point c = chain.centroid({0, 1, 5});
    EXPECT_NEAR(c[0], 0.5, 1e-12);
    EXPECT_NEAR(c[2], 0.0, 1e-12);
    Box b = chain.box();
    EXPECT_EQ(b.minimum(), Point(0, 0, 0));
    EXPECT_EQ(b.maximum(), Point(5, 5, 5));
    Plane p = chain.mean_plane({0, 1, 2, 5});
    EXPECT_NEAR(std::fabs(p.normal()[1]), 1.0, 1e-9);  // the three points lie in y = 0
    EXPECT_THROW(chain.distance(0, 5), std::logic_error);
}

TEST(Molecule, FormalChargeAndFindAtom) {
    Molecule3d m = water();
    m.atom(0)->set_formal_charge(-1);
    m.atom(2)->set_formal_charge(2);
    EXPECT_EQ(m.formal_charge(), 1);

    m.atom(1)->set_symmtag(5);
    int index = -1;
    EXPECT_TRUE(m.find_atom(5, Point(0.9572 + 5e-6, -5e-6, 0), index));
    EXPECT_EQ(index, 1);
    EXPECT_FALSE(m.find_atom(5, Point(0.9572 + 2e-5, 0, 0), index));
    EXPECT_FALSE(m.find_atom(-1, Point(0.9572, 0, 0), index));  // wrong tag
    EXPECT_TRUE(m.find_atom(-1, Point(0, 0, 0), index));
    EXPECT_EQ(index, 0);
}

TEST(Molecule, MergeMatchesAtomsBySymmetryTagAndPosition) {
    Molecule3d a = water();
    // The second molecule repeats O1 and H1 (same tags, positions within
    // tolerance) and brings a new atom bonded to O1, plus the O1-H1 bond again.
    HMolecule b(new Molecule3d());
    b->add(atom_at(Element::K, "K1", -9, 0, 0));  // makes the sizes differ: the log counts this molecule's
    b->add(atom_at(Element::H, "H1copy", 0.9572, 0, 1e-6));
    b->add(atom_at(Element::O, "O1copy", 0, 0, 0));
    b->add(atom_at(Element::Na, "Na1", -2.5, 0, 0));
    bond(*b, 1, 2);
    bond(*b, 2, 3);

    std::ostringstream log;
    TARNLog::set_stream(&log);
    const int saved = TARNLog::level_;
    TARNLog::level_ = 3;
    a.merge(b);
    TARNLog::level_ = saved;
    TARNLog::set_stream(nullptr);

    ASSERT_EQ(a.natoms(), 5);
    EXPECT_EQ(a.atom(3)->label(), "K1");
    EXPECT_EQ(a.atom(4)->label(), "Na1");
    EXPECT_NE(a.atom(4), b->atom(3));  // a copy, not the atom itself
    EXPECT_EQ(a.nbonds(), 3);
    EXPECT_EQ(a.bond_index(0, 4), 2);
    EXPECT_NE(log.str().find("Molecule::merge entered natoms=3 nbonds=2"), std::string::npos) << log.str();
    EXPECT_NE(log.str().find("Molecule::merge completed natoms=5 nbonds=3"), std::string::npos) << log.str();

    // A different symmetry tag at the same place is another atom.
    HMolecule c(new Molecule3d());
    c->add(atom_at(Element::O, "O1image", 0, 0, 0));
    c->atom(0)->set_symmtag(2);
    a.merge(c);
    EXPECT_EQ(a.natoms(), 6);
}

TEST(Molecule, AddCopiesAndGraphsMoveTheAtomsThemselves) {
    Molecule3d a = water();
    Molecule3d b = torsion_chain();
    std::vector<int> added = a.add(b);
    EXPECT_EQ(added, (std::vector<int>{3, 4, 5, 6, 7}));
    EXPECT_EQ(a.nbonds(), 6);
    EXPECT_EQ(a.bond_index(4, 3), 2);  // b's bond 0 ran from its atom 1 to its atom 0
    EXPECT_EQ(a.bond(2)->atom1(), a.atom(4));
    EXPECT_NE(a.atom(3), b.atom(0));

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

TEST(Molecule, GraphOfSelectedAtomsAndBonds) {
    Molecule3d w = water();
    HMoleculeGraph heavy = w.graph<AtomAtomicNumberPredicate<HAtom>, BondAlwaysTruePredicate<HBond> >(
        AtomAtomicNumberPredicate<HAtom>(8), BondAlwaysTruePredicate<HBond>());
    EXPECT_EQ(heavy->nnodes(), 1u);
    EXPECT_EQ(heavy->nedges(), 0u);
    HMoleculeGraph all = w.graph();
    EXPECT_EQ(all->nnodes(), 3u);
    EXPECT_EQ(all->nedges(), 2u);
    EXPECT_EQ(all->node(1), w.atom(1));
}

TEST(Molecule, CreateMoleculeFromIndicesAndBySymmetry) {
    Molecule3d chain = torsion_chain();
    HMolecule part = chain.create_molecule({3, 2, 4});
    ASSERT_EQ(part->natoms(), 3);
    EXPECT_EQ(part->atom(0)->label(), "D");
    ASSERT_EQ(part->nbonds(), 2);  // c-d and d-e, renumbered
    EXPECT_EQ(part->bond(0)->atom1()->index(), 1);
    EXPECT_EQ(part->bond(0)->atom2()->index(), 0);
    EXPECT_EQ(part->bond(1)->atom1()->index(), 0);
    EXPECT_EQ(part->bond(1)->atom2()->index(), 2);
    EXPECT_NE(part->atom(0)->site(), chain.atom(3)->site());

    // An inversion through the origin in a 10 Angstrom cubic cell.
    Cell cell(10, 10, 10, Angle::from_degrees(90), Angle::from_degrees(90), Angle::from_degrees(90));
    Molecule3d w;
    w.add(HAtom(new Atom3d(Element::O, "O1", HSite(new Site(Site::frac(Point(0.1, 0.2, 0.3), cell))))));
    w.add(HAtom(new Atom3d(Element::H, "H1", HSite(new Site(Site::frac(Point(0.19, 0.2, 0.3), cell))))));
    bond(w, 0, 1);
    CrystalSymmetryTransformation inversion(CrystalSymmetryOperator("-x,-y,-z"), Vector<int, 3>(1, 0, 0));
    HMolecule image = w.create_molecule(inversion, cell);
    ASSERT_EQ(image->natoms(), 2);
    EXPECT_NEAR(image->atom(0)->site()->frac()[0], 0.9, 1e-12);
    EXPECT_NEAR(image->atom(0)->site()->orth()[1], -2.0, 1e-12);
    EXPECT_NEAR(w.atom(0)->site()->frac()[0], 0.1, 1e-12);  // the source stays
    EXPECT_EQ(image->nbonds(), 1);
    EXPECT_EQ(image->bond_index(0, 1), 0);
}

TEST(Molecule, SortAtomsWalksDepthFirstFromTheHeaviestAtom) {
    // Component one: C0-C1, C1-N2, N2-C3; component two: S4-C5 ... the sulfur
    // is the heaviest, so only its component is walked; the rest follows in
    // its old order.
    Molecule3d m;
    m.add(atom_at(Element::C, "C0", 0, 0, 0));
    m.add(atom_at(Element::C, "C1", 1, 0, 0));
    m.add(atom_at(Element::N, "N2", 2, 0, 0));
    m.add(atom_at(Element::C, "C3", 3, 0, 0));
    m.add(atom_at(Element::C, "C4", 9, 0, 0));
    m.add(atom_at(Element::S, "S5", 10, 0, 0));
    m.add(atom_at(Element::C, "C6", 11, 0, 0));
    m.add(atom_at(Element::O, "O7", 12, 0, 0));
    bond(m, 0, 1);
    bond(m, 1, 2);
    bond(m, 2, 3);
    bond(m, 5, 7);
    bond(m, 4, 5);
    bond(m, 5, 6);
    bond(m, 6, 7);
    std::vector<HBond> bonds;
    for (int i = 0; i < m.nbonds(); ++i) bonds.push_back(m.bond(i));
    m.sort_atoms();
    std::vector<std::string> labels;
    for (int i = 0; i < m.natoms(); ++i) labels.push_back(m.atom(i)->label());
    // From S5: C4 (lowest index), back; C6, then O7 from C6; O7's other neighbour S5 is done.
    EXPECT_EQ(labels, (std::vector<std::string>{"S5", "C4", "C6", "O7", "C0", "C1", "N2", "C3"}));
    for (int i = 0; i < m.nbonds(); ++i) EXPECT_EQ(m.bond(i), bonds[static_cast<std::size_t>(i)]);
    EXPECT_EQ(m.bond(3)->atom1()->label(), "S5");

    Molecule3d empty;
    empty.sort_atoms();
    EXPECT_EQ(error_text<std::invalid_argument>([&] { m.reorder_atoms({0, 0}); }),
              "MoleculeGraphEditableImpl::reorder_atoms atom listed twice");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { m.reorder_atoms({8}); }),
              "MoleculeGraphEditableImpl::reorder_atoms index out of range");
    EXPECT_EQ(m.atom(0)->label(), "S5");
}

TEST(Molecule, ValidateAtLevelFourFindsBrokenViews) {
    Molecule3d source = water();
    ReadOnlyMolecule ok(source);
    ok.validate(4);
    ok.validate(3);

    ReadOnlyMolecule twice(source);
    twice.extra_atoms.push_back(twice.atom(1));
    twice.validate(3);  // nothing checked below level 4
    EXPECT_EQ(error_text<std::runtime_error>([&] { twice.validate(4); }), "Molecule::validate: An atom appears twice.");

    Molecule3d other = water();
    ReadOnlyMolecule foreign(source);
    foreign.extra_bonds.push_back(other.bond(0));
    EXPECT_EQ(error_text<std::runtime_error>([&] { foreign.validate(4); }), "Molecule::validate: illegal bond.");

    ReadOnlyMolecule repeated(source);
    repeated.extra_bonds.push_back(repeated.bond(0));
    EXPECT_EQ(error_text<std::runtime_error>([&] { repeated.validate(4); }),
              "Molecule::validate: A bond appears twice.");
}

TEST(Molecule, PrintListsAtomsWithCoordinatesThenBonds) {
    Molecule3d m;
    m.add(atom_at(Element::O, "O1", 0, 0, 0));
    m.add(atom_without_site(Element::H, "H1"));
    bond(m, 0, 1);
    std::ostringstream out;
    out << m;
    const std::string text = out.str();
    EXPECT_EQ(text.rfind("atoms: 2, bonds: 1\n0: ", 0), 0u) << text;
    EXPECT_EQ(text.find("fract: "), text.rfind("fract: "));  // only the atom with a site
    EXPECT_NE(text.find(", orthog: "), std::string::npos);
    EXPECT_NE(text.find("\n1: element: H"), std::string::npos);
    EXPECT_NE(text.find("\n0: atom1: 0 (O1), atom2: 1 (H1), type: 1"), std::string::npos) << text;
}

TEST(Molecule, EqualityNeedsSameAtomsBondsAndEnds) {
    Molecule3d a = water();
    Molecule3d b = water();
    EXPECT_TRUE(a == b);
    b.atom(2)->set_label("H3");
    EXPECT_FALSE(a == b);

    // The same bonds with their ends swapped are not equal.
    Molecule3d c;
    c.add(atom_at(Element::O, "O1", 0, 0, 0));
    c.add(atom_at(Element::H, "H1", 1, 0, 0));
    Molecule3d d;
    d.add(c.atom(0)->clone());
    d.add(c.atom(1)->clone());
    bond(c, 0, 1);
    bond(d, 1, 0);
    EXPECT_TRUE(*c.atom(0) == *d.atom(0));
    EXPECT_FALSE(c == d);
    d.bond(0)->set_type(DOUBLE_BOND);
    EXPECT_NE(d, c);
}

TEST(Molecule, TyperIsSharedByCopiesAndReplaceable) {
    Molecule3d a = water();
    ASSERT_NE(a.atom_typer().unhand(), nullptr);
    EXPECT_EQ(a.atom_typer()->name(), "SybylAtomTyper");
    Molecule3d b(a);
    EXPECT_EQ(b.atom_typer(), a.atom_typer());
    Molecule3d fresh;
    EXPECT_NE(fresh.atom_typer(), a.atom_typer());
}

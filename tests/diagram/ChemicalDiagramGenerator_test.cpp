// The generator: which atoms become nodes, where they stand, what they carry.
#include <gtest/gtest.h>

#include "molcryst/diagram/ChemicalDiagramGenerator.h"
#include "molcryst/molecule/Atom3d.h"
#include "molcryst/molecule/Bond3d.h"
#include "molcryst/molecule/Molecule3d.h"

namespace molcryst {
namespace {

HAtom sited(const Element& e, const char* label, double x, double y, double z = 0.0) {
    return HAtom(new Atom3d(e, label, HSite(new Site(Point(x, y, z)))));
}

HAtom unsited(const Element& e, const char* label) { return HAtom(new Atom3d(e, label, HSite())); }

// Methane: C first, then four hydrogens, `nsited` of them with sites.
HMolecule methane(int nsited) {
    HMolecule m(new Molecule3d());
    m->add(sited(Element::C, "C1", 1.0, 2.0, 5.0));
    const double xy[4][2] = {{2, 2}, {0, 2}, {1, 3}, {1, 1}};
    for (int i = 0; i < 4; ++i) {
        const std::string label = "H" + std::to_string(i + 1);
        m->add(i < nsited ? sited(Element::H, label.c_str(), xy[i][0], xy[i][1]) : unsited(Element::H, label.c_str()));
        m->add(HBond(new Bond3d(SINGLE_BOND)), 0, i + 1);
    }
    return m;
}

const DiagramAtom& diagram_atom(const ChemicalDiagram& d, int i) { return dynamic_cast<const DiagramAtom&>(*d.atom(i)); }

TEST(ChemicalDiagramGenerator, TerminalHydrogensFoldOrStay) {
    HMolecule m = methane(4);
    m->atom(0)->set_formal_charge(1);
    ChemicalDiagramGenerator folding;
    HChemicalDiagram d = folding.create_chemical_diagram(m);
    ASSERT_EQ(1, d->nnodes());
    EXPECT_EQ(0, d->nedges());
    EXPECT_EQ(4, d->atom(0)->nterminal_hydrogens());
    EXPECT_EQ(0, d->atom(0)->formal_charge());  // a lone atom carries no charge over
    EXPECT_EQ(1.0, d->atom(0)->position().x());
    EXPECT_EQ(2.0, d->atom(0)->position().y());
    EXPECT_EQ("C", d->atom(0)->centre_label());
    EXPECT_TRUE(folding.atom_match().empty());  // nor enters the map

    ChemicalDiagramGenerator keeping;
    keeping.set_h_treatment(ChemicalDiagramGenerator::KeepSitedTerminalHydrogens);
    d = keeping.create_chemical_diagram(m);
    EXPECT_EQ(5, d->nnodes());
    EXPECT_EQ(4, d->nedges());
    EXPECT_EQ(0, d->atom(0)->nterminal_hydrogens());
    EXPECT_EQ(1, d->formal_charge());  // bonded atoms keep their charge
    const std::map<HAtom, HDiagramAtom> match = keeping.atom_match();
    EXPECT_EQ(5u, match.size());
    EXPECT_EQ(HDiagramNode(match.at(m->atom(0))), d->atom(0));
    EXPECT_EQ(Element(Element::H), diagram_atom(*d, 1).element());

    ChemicalDiagramGenerator partly;
    partly.set_h_treatment(ChemicalDiagramGenerator::KeepSitedTerminalHydrogens);
    d = partly.create_chemical_diagram(methane(2));
    EXPECT_EQ(3, d->nnodes());
    EXPECT_EQ(2, d->nedges());
    EXPECT_EQ(2, d->atom(0)->nterminal_hydrogens());
    EXPECT_EQ(0, ChemicalDiagramGenerator().create_chemical_diagram(methane(2))->nedges());
}

TEST(ChemicalDiagramGenerator, HydrogenMoleculeIonsAndMissingSites) {
    HMolecule h2(new Molecule3d());
    h2->add(sited(Element::H, "H1", 0, 0));
    h2->add(sited(Element::H, "H2", 0.74, 0));
    h2->add(HBond(new Bond3d(SINGLE_BOND)), 0, 1);
    for (int treatment = 0; treatment < 2; ++treatment) {
        ChemicalDiagramGenerator g;
        g.set_h_treatment(static_cast<ChemicalDiagramGenerator::TerminalHTreatment>(treatment));
        HChemicalDiagram d = g.create_chemical_diagram(h2);
        EXPECT_EQ(2, d->nnodes());
        EXPECT_EQ(1, d->nedges());
    }

    // A salt: the chloride comes in as a lone atom, without its charge.
    HMolecule salt(new Molecule3d());
    salt->add(sited(Element::N, "N1", 0, 0));
    salt->add(sited(Element::C, "C1", 1.5, 0));
    salt->add(sited(Element::Cl, "Cl1", 4, 0));
    salt->add(unsited(Element::O, "O1"));
    salt->add(HBond(new Bond3d(TRIPLE_BOND)), 0, 1);
    salt->atom(2)->set_formal_charge(-1);
    ChemicalDiagramGenerator g;
    HChemicalDiagram d = g.create_chemical_diagram(salt);
    ASSERT_EQ(3, d->nnodes());
    EXPECT_EQ(TRIPLE_BOND, d->bond(0)->type());
    EXPECT_EQ("Cl", d->atom(2)->left_label());
    EXPECT_EQ("", d->atom(2)->top_right_label());

    // Bonded atoms without sites are left out; a lone one is the null-handle
    // failure, before the diagram changes.
    HMolecule blind(new Molecule3d());
    blind->add(unsited(Element::C, "C1"));
    blind->add(unsited(Element::O, "O1"));
    blind->add(HBond(new Bond3d(DOUBLE_BOND)), 0, 1);
    EXPECT_EQ(0, ChemicalDiagramGenerator().create_chemical_diagram(blind)->nnodes());
    HMolecule lone(new Molecule3d());
    lone->add(unsited(Element::Na, "Na1"));
    ChemicalDiagramGenerator lone_generator;
    EXPECT_ANY_THROW(lone_generator.create_chemical_diagram(lone));
    EXPECT_ANY_THROW(lone_generator.create_chemical_diagram(HMolecule()));
    HChemicalDiagram empty = lone_generator.create_chemical_diagram(HMolecule(new Molecule3d()));
    EXPECT_EQ(0, empty->nnodes());
}

}  // namespace
}  // namespace molcryst

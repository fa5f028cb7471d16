// Pictures: flat layouts of molecules known in three dimensions, and their SVG.
#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "draw/ParsedSvg.h"
#include "molcryst/diagram/DiagramCircle.h"
#include "molcryst/diagram/DiagramFrame.h"
#include "molcryst/diagram/DiagramSymbol.h"
#include "molcryst/draw/FlatLayout.h"
#include "molcryst/draw/SvgWriter.h"
#include "molcryst/molecule/Atom3d.h"
#include "molcryst/molecule/Bond3d.h"
#include "molcryst/molecule/Molecule3d.h"
#ifdef MOLCRYST_CIF_DIR
#include "molcryst/io/BondOrderPerception.h"
#include "molcryst/io/CifReader.h"
#include "molcryst/io/StructureReport.h"
#endif

namespace molcryst {
namespace {

// Caffeine with all its hydrogens, every atom at the origin: the layout
// owes nothing to the coordinates it is given.
HMolecule caffeine() {
    HMolecule m(new Molecule3d());
    const char* heavy[] = {"N", "C", "N", "C", "C", "C", "N", "C", "N", "O", "O", "C", "C", "C"};
    //                    0 N7  1 C8 2 N9 3 C4 4 C5 5 C6 6 N1 7 C2 8 N3 9 O6 10 O2 11 C10 12 C12 13 C14
    for (const char* e : heavy) m->add(HAtom(new Atom3d(Element(e), e, HSite(new Site(Point(0, 0, 0))))));
    const int bonds[][3] = {{0, 1, 1},  {1, 2, 2},  {2, 3, 1},  {3, 4, 2},  {4, 0, 1},
                            {4, 5, 1},  {5, 9, 2},  {5, 6, 1},  {6, 7, 1},  {7, 10, 2},
                            {7, 8, 1},  {8, 3, 1},  {6, 11, 1}, {8, 12, 1}, {0, 13, 1}};
    for (const auto& b : bonds) m->add(HBond(new Bond3d(static_cast<BondType>(b[2]))), b[0], b[1]);
    const int carriers[] = {1, 11, 11, 11, 12, 12, 12, 13, 13, 13};
    for (int c : carriers) {
        const int h = m->add(HAtom(new Atom3d(Element::H, "H", HSite(new Site(Point(0, 0, 0))))));
        m->add(HBond(new Bond3d(SINGLE_BOND)), c, h);
    }
    return m;
}

TEST(FlatLayout, CaffeineLiesFlatWithStandardBondsAndTheMoleculeStaysAsItWas) {
    HMolecule m = caffeine();
    HMolecule flat = draw::flat_copy(*m);
    ASSERT_EQ(m->natoms(), flat->natoms());
    double shortest = 1e9, longest = 0.0;
    for (int i = 0; i < flat->nbonds(); ++i) {
        const HBond b = flat->bond(i);
        EXPECT_EQ(0.0, b->atom1()->site()->orth()[2]);
        if (b->atom1()->element().atomic_number() == 1 || b->atom2()->element().atomic_number() == 1) continue;
        const double l = distance(b->atom1()->site()->orth(), b->atom2()->site()->orth());
        shortest = std::min(shortest, l);
        longest = std::max(longest, l);
    }
    EXPECT_GT(shortest, 0.8 * draw::flat_bond_length);
    EXPECT_LT(longest, 1.2 * draw::flat_bond_length);
    EXPECT_EQ(0.0, m->atom(0)->site()->orth()[0]);  // the source keeps its sites

    // Atoms that no two lie on top of each other.
    HChemicalDiagram d = draw::flat_diagram(*m);
    ASSERT_EQ(14, d->nnodes());
    ASSERT_EQ(15, d->nedges());
    EXPECT_EQ(3, d->atom(11)->nterminal_hydrogens());
    for (int i = 0; i < d->nnodes(); ++i)
        for (int j = i + 1; j < d->nnodes(); ++j)
            EXPECT_GT(distance(d->atom(i)->position(), d->atom(j)->position()), 0.5 * draw::flat_bond_length);
}

TEST(SvgWriter, CaffeineIsWellFormedWithALabelPerAtomAndLinesPerBond) {
    HChemicalDiagram d = draw::flat_diagram(*caffeine());
    draw::SvgWriter writer;
    writer.set_title("caffeine & co <test>");
    writer.set_show_all_carbons(true);
    const Parsed all = parse(writer.svg(*d));
    ASSERT_TRUE(all.well_formed) << all.error;
    EXPECT_EQ(14u, all.label_boxes.size());
    EXPECT_EQ(15, all.bonds);
    EXPECT_EQ(0, overlapping_labels(all));
    EXPECT_NE(std::string::npos, all.texts.find("caffeine & co <test>"));

    // As chemists draw it: the ring carbons are corners, methyls are labelled.
    writer.set_show_all_carbons(false);
    const std::string svg = writer.svg(*d);
    const Parsed skeletal = parse(svg);
    ASSERT_TRUE(skeletal.well_formed) << skeletal.error;
    EXPECT_EQ(14u - 5u, skeletal.label_boxes.size());  // C8, C4, C5, C6 and C2 are corners
    EXPECT_EQ(15, skeletal.bonds);
    EXPECT_EQ(0, overlapping_labels(skeletal));
    EXPECT_NE(std::string::npos, svg.find(">H<tspan"));  // CH3 with a subscript 3
    EXPECT_EQ(std::string::npos, svg.find("nan"));
}

TEST(SvgWriter, SymbolsCirclesFramesAndChargesDraw) {
    ChemicalDiagram d;
    std::set<HDiagramNode> ring;
    std::vector<HDiagramNode> atoms;
    for (int i = 0; i < 6; ++i) {
        HDiagramAtom a(new DiagramAtom(Element::C));
        a->set_position(Point2d(1.5 * std::cos(i * 1.0471975511965976), 1.5 * std::sin(i * 1.0471975511965976)));
        atoms.push_back(a);
        ring.insert(a);
    }
    for (int i = 0; i < 6; ++i) d.add(HDiagramEdge(new DiagramBond(AROMATIC_BOND)), atoms[i], atoms[(i + 1) % 6]);
    d.add(HDiagramNode(new DiagramCircle(ring)));
    HDiagramAtom o(new DiagramAtom(Element::O, -1));
    o->set_position(Point2d(3.0, 0.0));
    d.add(HDiagramEdge(new DiagramBond()), atoms[0], o);
    THandle<DiagramSymbol> symbol(new DiagramSymbol());
    symbol->set_centre_label("CF<sub>3</sub>");
    symbol->set_position(Point2d(-3.0, 0.0));
    d.add(HDiagramEdge(new DiagramBond()), atoms[3], HDiagramNode(symbol));
    d.add(HDiagramNode(new DiagramFrame(atoms)));
    const std::string svg = draw::SvgWriter().svg(d);
    const Parsed p = parse(svg);
    ASSERT_TRUE(p.well_formed) << p.error;
    EXPECT_EQ(1, p.rings);
    EXPECT_EQ(8, p.bonds);
    EXPECT_EQ(2u, p.label_boxes.size());  // the oxide and the symbol; the ring's carbons are corners
    EXPECT_NE(std::string::npos, svg.find("&#8722;"));  // its charge
    EXPECT_NE(std::string::npos, svg.find("class=\"symbol\""));
    EXPECT_NE(std::string::npos, p.texts.find("CF"));
    EXPECT_NE(std::string::npos, svg.find("class=\"frame\""));

    // An empty diagram is still a picture.
    EXPECT_TRUE(parse(draw::SvgWriter().svg(ChemicalDiagram())).well_formed);
}

// A COOH symbol (labels "COO", "OOC", "COO" and one hydrogen) on a carbon
// to its left, to its right, then between two.
TEST(SvgWriter, SymbolReadsAwayFromItsBondsWithItsAnchorLetterOnItsPoint) {
    ChemicalDiagram d;
    HDiagramAtom c(new DiagramAtom(Element::N));
    c->set_position(Point2d(0.0, 0.0));
    THandle<DiagramSymbol> symbol(new DiagramSymbol());
    symbol->set_left_label("COO");
    symbol->set_right_label("OOC");
    symbol->set_centre_label("CO<sub>2</sub>");
    symbol->set_nterminal_hydrogens(1);
    symbol->set_position(Point2d(1.5, 0.0));
    d.add(HDiagramEdge(new DiagramBond()), c, HDiagramNode(symbol));
    draw::SvgWriter writer;  // bonds 40 px, letters 16.8 px high, a capital about 10.4 px wide
    const double half_letter = 0.31 * 0.42 * writer.bond_length();

    Parsed p = parse(writer.svg(d));
    ASSERT_TRUE(p.well_formed) << p.error;
    ASSERT_EQ(1u, p.symbol_texts.size());
    EXPECT_EQ("COOH", p.symbol_texts[0]);
    // The C centred on the point (a bond right of the N), the text to its right.
    const std::vector<double> right_of_bond = p.symbol_boxes[0];
    const double bond = writer.bond_length();
    EXPECT_NEAR(half_letter, bond - (right_of_bond[0] - p.label_boxes[0][0] - p.label_boxes[0][2] / 2), 0.05);
    EXPECT_NEAR(4.0 * 2 * half_letter, right_of_bond[2], 0.05);

    symbol->set_position(Point2d(-1.5, 0.0));
    p = parse(writer.svg(d));
    EXPECT_EQ("HOOC", p.symbol_texts[0]);
    // Now the last letter, the C, on the point: the box ends half a letter right of it.
    double n_centre = 0.0, symbol_right = 0.0;
    for (const std::vector<double>& box : p.label_boxes) {
        if (box == p.symbol_boxes[0])
            symbol_right = box[0] + box[2];
        else
            n_centre = box[0] + box[2] / 2;
    }
    EXPECT_NEAR(half_letter, symbol_right - (n_centre - bond), 0.05);

    HDiagramAtom o(new DiagramAtom(Element::O));
    o->set_position(Point2d(-3.0, 0.0));
    d.add(HDiagramEdge(new DiagramBond()), HDiagramNode(symbol), o);
    p = parse(writer.svg(d));
    EXPECT_EQ("CO2\xe2\x80\x8bH", p.symbol_texts[0]);  // a zero-width space ends the subscript
    EXPECT_EQ(0, overlapping_labels(p));
    EXPECT_EQ(2, p.bonds);
}

#ifdef MOLCRYST_CIF_DIR
TEST(SvgWriter, MetalComplexFromACifDrawsEveryMoleculeWithoutClashingLabels) {
    const CifDocument doc = CifReader::read_file(std::string(MOLCRYST_CIF_DIR) + "/cod-8102326-cr-phen-aqua-chloride.cif");
    ASSERT_EQ(1u, doc.blocks.size());
    const StructureReport report(doc.blocks[0]);
    bool metal_seen = false;
    for (const HMolecule& m : report.asymmetric_molecules()) {
        BondOrderPerception::perceive(*m);
        HChemicalDiagram d = draw::flat_diagram(*m);
        draw::SvgWriter writer;
        writer.set_show_all_carbons(true);
        const Parsed p = parse(writer.svg(*d));
        ASSERT_TRUE(p.well_formed) << p.error;
        int heavy = 0;
        for (int i = 0; i < m->natoms(); ++i) heavy += m->atom(i)->element().atomic_number() != 1 ? 1 : 0;
        for (int i = 0; i < m->natoms(); ++i) metal_seen = metal_seen || m->atom(i)->element().symbol() == "Cr";
        EXPECT_EQ(static_cast<std::size_t>(heavy), p.label_boxes.size());
        EXPECT_EQ(d->nedges(), p.bonds);
        EXPECT_EQ(0, overlapping_labels(p));
    }
    EXPECT_TRUE(metal_seen);
}
#endif

}  // namespace
}  // namespace molcryst

// Substituents found in diagrams of whole molecules, folded into symbols and
// unfolded again; the pictures of folded molecules.
#include "molcryst/draw/SubstituentRecogniser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "draw/ParsedSvg.h"
#include "molcryst/diagram/ChemicalDiagramGenerator.h"
#include "molcryst/diagram/DiagramAtom.h"
#include "molcryst/diagram/DiagramSymbol.h"
#include "molcryst/diagram/DiagramSymbolCatalogue.h"
#include "molcryst/draw/FlatLayout.h"
#include "molcryst/draw/MetalRings.h"
#include "molcryst/draw/SvgWriter.h"
#include "molcryst/molecule/Atom3d.h"
#include "molcryst/molecule/Bond3d.h"
#include "molcryst/molecule/Molecule3d.h"
#ifdef MOLCRYST_CIF_DIR
#include <dirent.h>

#include "molcryst/io/BondOrderPerception.h"
#include "molcryst/io/CifReader.h"
#include "molcryst/io/StructureReport.h"
#endif

namespace molcryst {
namespace {

// A molecule written atom by atom, heavy atoms with their hydrogens as real
// atoms, and its diagram as the drawing code makes it.
class Sketch {
public:
    Sketch() : m_(new Molecule3d()) {}
    // A heavy atom with `nh` hydrogens; its number among the heavy atoms.
    int atom(const char* element, int nh = 0, int charge = 0) {
        const int a = m_->add(HAtom(new Atom3d(Element(element), element, HSite(new Site(Point(0, 0, 0))))));
        m_->atom(a)->set_formal_charge(charge);
        for (int i = 0; i < nh; ++i) {
            const int h = m_->add(HAtom(new Atom3d(Element::H, "H", HSite(new Site(Point(0, 0, 0))))));
            m_->add(HBond(new Bond3d(SINGLE_BOND)), a, h);
        }
        heavy_.push_back(a);
        return static_cast<int>(heavy_.size()) - 1;
    }
    void bond(int a, int b, BondType type = SINGLE_BOND) {
        m_->add(HBond(new Bond3d(type)), heavy_[static_cast<std::size_t>(a)], heavy_[static_cast<std::size_t>(b)]);
    }
    // A benzene ring of aromatic bonds on `ipso`: the five other carbons,
    // each with a hydrogen unless listed in `bare`; returned round the ring.
    std::vector<int> ring_on(int ipso, std::set<int> bare = {}) {
        std::vector<int> r(1, ipso);
        for (int i = 1; i < 6; ++i) {
            r.push_back(atom("C", bare.count(i) != 0 ? 0 : 1));
            bond(r[static_cast<std::size_t>(i - 1)], r.back(), AROMATIC_BOND);
        }
        bond(r.back(), ipso, AROMATIC_BOND);
        return r;
    }
    // The diagram, laid out flat; nodes[i] is heavy atom i.
    HChemicalDiagram diagram(std::vector<HDiagramNode>* nodes = nullptr) const {
        const HMolecule flat = draw::flat_copy(*m_);
        ChemicalDiagramGenerator generator;
        HChemicalDiagram d = generator.create_chemical_diagram(flat);
        if (nodes != nullptr) {
            const std::map<HAtom, HDiagramAtom> match = generator.atom_match();
            nodes->clear();
            for (int a : heavy_) nodes->push_back(HDiagramNode(match.at(flat->atom(a))));
        }
        return d;
    }

private:
    HMolecule m_;
    std::vector<int> heavy_;
};

// Keeps a picture for a person to look at when MOLCRYST_TEST_PICTURES names a folder.
void keep(const std::string& svg, const std::string& name) {
    const char* folder = std::getenv("MOLCRYST_TEST_PICTURES");
    if (folder != nullptr) std::ofstream(std::string(folder) + "/" + name + ".svg") << svg;
}

std::vector<int> codes_of(const std::vector<draw::SubstituentMatch>& matches) {
    std::vector<int> codes;
    for (const draw::SubstituentMatch& m : matches) codes.push_back(m.code);
    return codes;
}

// The bonds among a match's nodes as pairs of template points.
std::set<std::pair<int, int> > bonds_among(const ChemicalDiagram& d, const std::vector<HDiagramNode>& nodes) {
    std::set<std::pair<int, int> > pairs;
    for (std::size_t i = 0; i < nodes.size(); ++i)
        for (std::size_t j = i + 1; j < nodes.size(); ++j)
            if (d.has_edge(nodes[i], nodes[j])) pairs.insert(std::make_pair(static_cast<int>(i), static_cast<int>(j)));
    return pairs;
}

std::set<std::pair<int, int> > sorted_pairs(const std::vector<std::pair<int, int> >& bonds) {
    std::set<std::pair<int, int> > pairs;
    for (const std::pair<int, int>& b : bonds)
        pairs.insert(std::make_pair(std::min(b.first, b.second), std::max(b.first, b.second)));
    return pairs;
}

// The graph as objects: every node with its neighbours, every edge with its ends.
struct Topology {
    std::map<const DiagramNode*, std::set<const DiagramNode*> > neighbours;
    std::map<const DiagramEdge*, std::set<const DiagramNode*> > ends;
    bool operator==(const Topology& o) const { return neighbours == o.neighbours && ends == o.ends; }
};

Topology topology(const ChemicalDiagram& d) {
    Topology t;
    for (ChemicalDiagram::const_node_iterator n = d.begin_nodes(); n != d.end_nodes(); ++n) {
        std::set<const DiagramNode*>& s = t.neighbours[n->unhand()];
        for (const HDiagramNode& m : (*n)->neighbours()) s.insert(m.unhand());
    }
    for (ChemicalDiagram::const_edge_iterator e = d.begin_edges(); e != d.end_edges(); ++e)
        t.ends[e->unhand()] = {(*e)->node1().unhand(), (*e)->node2().unhand()};
    return t;
}

TEST(SubstituentRecogniser, PatternsLieOnTheCatalogueTemplates) {
    const std::vector<int> codes = draw::SubstituentRecogniser::supported_codes();
    std::vector<int> expected;
    for (const DiagramSymbolCatalogue::Entry& e : DiagramSymbolCatalogue::entries())
        if (e.code != 3 && e.code != 21) expected.push_back(e.code);  // the cyclopentadienyls
    EXPECT_EQ(expected, codes);
    for (int code : codes) {
        const DiagramSymbolCatalogue::Entry* e = DiagramSymbolCatalogue::find(code);
        const std::vector<std::pair<int, int> > bonds = draw::SubstituentRecogniser::pattern_bonds(code);
        const int n = static_cast<int>(e->points.size());
        // Every bond one template bond long, and every point reached from the anchor.
        std::set<int> reached = {0};
        for (std::size_t pass = 0; pass < bonds.size(); ++pass)
            for (const std::pair<int, int>& b : bonds) {
                ASSERT_LT(b.first, n) << e->name;
                ASSERT_LT(b.second, n) << e->name;
                const double l = distance(e->points[static_cast<std::size_t>(b.first)],
                                          e->points[static_cast<std::size_t>(b.second)]);
                EXPECT_NEAR(1.0, l, 0.03) << e->name << " " << b.first << "-" << b.second;
                if (reached.count(b.first) != 0 || reached.count(b.second) != 0) {
                    reached.insert(b.first);
                    reached.insert(b.second);
                }
            }
        EXPECT_EQ(static_cast<std::size_t>(n), reached.size()) << e->name;
        EXPECT_EQ(bonds.size(), sorted_pairs(bonds).size()) << e->name;
    }
    EXPECT_TRUE(draw::SubstituentRecogniser::pattern_bonds(3).empty());
}

// A benzene ring with six different substituents: tert-butyl, methoxy,
// nitro (N+ O-), carboxylate (COO-), trifluoromethyl and phenyl.
TEST(SubstituentRecogniser, DecoratedBenzeneFoldsEveryGroupInTemplateOrderAndUnfoldsToTheSameGraph) {
    Sketch s;
    std::vector<int> core;
    for (int i = 0; i < 6; ++i) core.push_back(s.atom("C"));
    for (int i = 0; i < 6; ++i)
        s.bond(core[static_cast<std::size_t>(i)], core[static_cast<std::size_t>((i + 1) % 6)], AROMATIC_BOND);
    const int tbu = s.atom("C");
    s.bond(core[0], tbu);
    for (int i = 0; i < 3; ++i) s.bond(tbu, s.atom("C", 3));
    const int o = s.atom("O");
    s.bond(core[1], o);
    s.bond(o, s.atom("C", 3));
    const int nitro = s.atom("N", 0, 1);
    s.bond(core[2], nitro);
    s.bond(nitro, s.atom("O"), DOUBLE_BOND);
    s.bond(nitro, s.atom("O", 0, -1));
    const int carboxylate = s.atom("C");
    s.bond(core[3], carboxylate);
    s.bond(carboxylate, s.atom("O"), AROMATIC_BOND);
    s.bond(carboxylate, s.atom("O", 0, -1), AROMATIC_BOND);
    const int cf3 = s.atom("C");
    s.bond(core[4], cf3);
    for (int i = 0; i < 3; ++i) s.bond(cf3, s.atom("F"));
    const int ipso = s.atom("C");
    s.bond(core[5], ipso);
    s.ring_on(ipso);

    std::vector<HDiagramNode> nodes;
    HChemicalDiagram d = s.diagram(&nodes);
    const draw::SubstituentRecogniser recogniser;
    const std::vector<draw::SubstituentMatch> found = recogniser.find(*d);
    EXPECT_EQ((std::vector<int>{5, 35, 16, 9, 6, 1}), codes_of(found));  // by anchor
    for (const draw::SubstituentMatch& m : found) {
        // The anchor hangs on the core; the order of the nodes has exactly the
        // bonds of the template.
        EXPECT_EQ(sorted_pairs(draw::SubstituentRecogniser::pattern_bonds(m.code)), bonds_among(*d, m.nodes)) << m.code;
        int outside = 0;
        for (const HDiagramNode& n : m.nodes[0]->neighbours())
            if (std::find(m.nodes.begin(), m.nodes.end(), n) == m.nodes.end()) {
                ++outside;
                EXPECT_NE(core.end(),
                          std::find(core.begin(), core.end(),
                                    static_cast<int>(std::find(nodes.begin(), nodes.end(), n) - nodes.begin())));
            }
        EXPECT_EQ(1, outside) << m.code;
    }
    EXPECT_EQ(nodes[static_cast<std::size_t>(tbu)], found[0].nodes[0]);
    EXPECT_EQ(nodes[static_cast<std::size_t>(ipso)], found[5].nodes[0]);

    const Topology before = topology(*d);
    EXPECT_EQ(6, recogniser.fold(*d));
    EXPECT_EQ(12, d->nnodes());
    EXPECT_EQ(12, d->nedges());
    std::multiset<std::string> labels;
    for (ChemicalDiagram::const_node_iterator n = d->begin_nodes(); n != d->end_nodes(); ++n)
        if (const DiagramSymbol* symbol = dynamic_cast<const DiagramSymbol*>(n->unhand())) {
            labels.insert(symbol->centre_label());
            EXPECT_EQ(symbol->centre_label() == "COO" ? -1 : 0, symbol->formal_charge()) << symbol->centre_label();
            EXPECT_EQ(1, (*n)->nedges());
        }
    EXPECT_EQ((std::multiset<std::string>{"Bu<sup>t</sup>", "MeO", "NO<sub>2</sub>", "COO", "CF<sub>3</sub>", "Ph"}),
              labels);
    for (int c : core) EXPECT_EQ(3, nodes[static_cast<std::size_t>(c)]->nedges());
    EXPECT_TRUE(recogniser.find(*d).empty());  // nothing left to fold

    // The picture: every symbol readable, the charge shown, no label on another.
    const std::string svg = draw::SvgWriter().svg(*d);
    keep(svg, "decorated-benzene");
    const Parsed p = parse(svg);
    ASSERT_TRUE(p.well_formed) << p.error;
    EXPECT_EQ(6u, p.symbol_boxes.size());
    EXPECT_EQ(12, p.bonds);
    EXPECT_EQ(0, overlapping_labels(p));
    std::string texts;
    for (const std::string& t : p.symbol_texts) texts += t + " ";
    for (const char* t : {"Ph", "CF3", "NO2", "Bu", "COO\xe2\x88\x92"})
        EXPECT_NE(std::string::npos, texts.find(t)) << t << " in " << texts;

    // Unfolded: the very same objects with the same neighbours, twice over.
    d->expand_symbol_groups();
    EXPECT_TRUE(before == topology(*d));
    // Expanded, the atoms still belong to their groups: nothing is offered twice.
    EXPECT_TRUE(recogniser.find(*d).empty());
    EXPECT_EQ(0, recogniser.fold(*d));
    EXPECT_TRUE(before == topology(*d));
    d->contract_symbol_groups();
    EXPECT_EQ(12, d->nnodes());
    d->expand_symbol_groups();
    EXPECT_TRUE(before == topology(*d));
}

TEST(SubstituentRecogniser, LargerGroupsWinAndEverySymbolKeepsAnAtomToHangOn) {
    const draw::SubstituentRecogniser recogniser;
    {  // ethyl acrylate: ethoxycarbonyl, not ethoxy or ethyl
        Sketch s;
        const int c1 = s.atom("C", 2), c2 = s.atom("C", 1), c = s.atom("C"), oe = s.atom("O"), oc = s.atom("O");
        const int ch2 = s.atom("C", 2), ch3 = s.atom("C", 3);
        s.bond(c1, c2, DOUBLE_BOND);
        s.bond(c2, c);
        s.bond(c, oc, DOUBLE_BOND);
        s.bond(c, oe);
        s.bond(oe, ch2);
        s.bond(ch2, ch3);
        std::vector<HDiagramNode> n;
        HChemicalDiagram d = s.diagram(&n);
        const std::vector<draw::SubstituentMatch> found = recogniser.find(*d);
        ASSERT_EQ(1u, found.size());
        EXPECT_EQ(31, found[0].code);
        EXPECT_EQ((std::vector<HDiagramNode>{n[c], n[oe], n[oc], n[ch2], n[ch3]}), found[0].nodes);
    }
    {  // methyl 4-methylbenzoate: p-tolyl over phenyl and methoxycarbonyl,
       // whose carbon the tolyl hangs on; the methoxy may still fold
        Sketch s;
        const int ipso = s.atom("C");
        const std::vector<int> r = s.ring_on(ipso, {3});
        s.bond(r[3], s.atom("C", 3));
        const int c = s.atom("C"), oc = s.atom("O"), oe = s.atom("O");
        s.bond(ipso, c);
        s.bond(c, oc, DOUBLE_BOND);
        s.bond(c, oe);
        s.bond(oe, s.atom("C", 3));
        HChemicalDiagram d = s.diagram();
        EXPECT_EQ((std::vector<int>{25, 35}), codes_of(recogniser.find(*d)));
    }
    {  // acetic acid: COOH with the hydrogen's oxygen second; the carboxylic
       // group wins over the acetyl of the same size by its lower code
        Sketch s;
        const int me = s.atom("C", 3), c = s.atom("C"), oc = s.atom("O"), oh = s.atom("O", 1);
        s.bond(me, c);
        s.bond(c, oc, DOUBLE_BOND);
        s.bond(c, oh);
        std::vector<HDiagramNode> n;
        HChemicalDiagram d = s.diagram(&n);
        const std::vector<draw::SubstituentMatch> found = recogniser.find(*d);
        ASSERT_EQ(1u, found.size());
        EXPECT_EQ(9, found[0].code);
        EXPECT_EQ((std::vector<HDiagramNode>{n[c], n[oh], n[oc]}), found[0].nodes);
        recogniser.fold(*d);
        for (ChemicalDiagram::const_node_iterator k = d->begin_nodes(); k != d->end_nodes(); ++k)
            if (dynamic_cast<const DiagramSymbol*>(k->unhand()) != nullptr) {
                EXPECT_EQ(1, (*k)->nterminal_hydrogens());
            }
    }
    {  // biphenyl: one Ph, on the ring of the lower indices; benzene: none
        Sketch s;
        const int a = s.atom("C"), b = s.atom("C");
        s.bond(a, b);
        s.ring_on(b);
        s.ring_on(a);
        std::vector<HDiagramNode> n;
        HChemicalDiagram d = s.diagram(&n);
        const std::vector<draw::SubstituentMatch> found = recogniser.find(*d);
        ASSERT_EQ(1u, found.size());
        EXPECT_EQ(1, found[0].code);
        EXPECT_EQ(n[a], found[0].nodes[0]);
        Sketch benzene;
        benzene.ring_on(benzene.atom("C", 1));
        EXPECT_TRUE(recogniser.find(*benzene.diagram()).empty());
    }
    {  // propylamine keeps its chain; ethylamine folds its ethyl; a
       // cyclohexene ring is no phenyl; hexafluoroethane gives one CF3
        Sketch propyl;
        const int p1 = propyl.atom("C", 3), p2 = propyl.atom("C", 2), p3 = propyl.atom("C", 2);
        propyl.bond(p1, p2);
        propyl.bond(p2, p3);
        propyl.bond(p3, propyl.atom("N", 2));
        EXPECT_TRUE(recogniser.find(*propyl.diagram()).empty());
        Sketch ethyl;
        const int e1 = ethyl.atom("C", 3), e2 = ethyl.atom("C", 2);
        ethyl.bond(e1, e2);
        ethyl.bond(e2, ethyl.atom("N", 2));
        EXPECT_EQ((std::vector<int>{4}), codes_of(recogniser.find(*ethyl.diagram())));
        Sketch ene;
        const int ipso = ene.atom("C"), o1 = ene.atom("C", 1), o2 = ene.atom("C", 2), m1 = ene.atom("C", 1),
                  m2 = ene.atom("C", 2), pa = ene.atom("C", 2);
        ene.bond(ipso, o1, DOUBLE_BOND);
        ene.bond(o1, m1);
        ene.bond(m1, pa, DOUBLE_BOND);
        ene.bond(pa, m2);
        ene.bond(m2, o2);
        ene.bond(o2, ipso);
        ene.bond(ipso, ene.atom("N", 2));
        EXPECT_TRUE(recogniser.find(*ene.diagram()).empty());
        Sketch c2f6;
        const int c1 = c2f6.atom("C"), c2 = c2f6.atom("C");
        c2f6.bond(c1, c2);
        for (int c : {c1, c2})
            for (int i = 0; i < 3; ++i) c2f6.bond(c, c2f6.atom("F"));
        EXPECT_EQ((std::vector<int>{6}), codes_of(recogniser.find(*c2f6.diagram())));
    }
    {  // triphenylphosphine on gold, not three phenyls; Boc on an amine, not a tert-butyl
        Sketch s;
        const int au = s.atom("Au"), p = s.atom("P");
        s.bond(au, s.atom("Cl"));
        s.bond(au, p);
        std::vector<int> ipso;
        for (int i = 0; i < 3; ++i) {
            ipso.push_back(s.atom("C"));
            s.bond(p, ipso.back());
            s.ring_on(ipso.back());
        }
        const int n = s.atom("N", 2), c = s.atom("C"), oc = s.atom("O"), oe = s.atom("O"), q = s.atom("C");
        s.bond(n, c);
        s.bond(c, oc, DOUBLE_BOND);
        s.bond(c, oe);
        s.bond(oe, q);
        for (int i = 0; i < 3; ++i) s.bond(q, s.atom("C", 3));
        s.bond(au, n);
        std::vector<HDiagramNode> nodes;
        HChemicalDiagram d = s.diagram(&nodes);
        const std::vector<draw::SubstituentMatch> found = recogniser.find(*d);
        EXPECT_EQ((std::vector<int>{7, 32}), codes_of(found));
        ASSERT_EQ(2u, found.size());
        EXPECT_EQ(19u, found[0].nodes.size());
        EXPECT_EQ(sorted_pairs(draw::SubstituentRecogniser::pattern_bonds(7)), bonds_among(*d, found[0].nodes));
        EXPECT_EQ(sorted_pairs(draw::SubstituentRecogniser::pattern_bonds(32)), bonds_among(*d, found[1].nodes));
        EXPECT_EQ(2, recogniser.fold(*d));
        EXPECT_EQ(5, d->nnodes());  // Au, Cl, N and the two symbols
    }
    {  // free ions fold whole, a carbonyl only on a metal
        Sketch s;
        const int b = s.atom("B", 0, -1), cl = s.atom("Cl"), n = s.atom("N", 0, 1);
        for (int i = 0; i < 4; ++i) {
            s.bond(b, s.atom("F"));
            s.bond(cl, s.atom("O"), i == 0 ? SINGLE_BOND : DOUBLE_BOND);
            s.bond(n, s.atom("C", 3));
        }
        const int cr = s.atom("Cr");
        for (int i = 0; i < 2; ++i) {
            const int c = s.atom("C");
            s.bond(cr, c);
            s.bond(c, s.atom("O"), TRIPLE_BOND);
        }
        const int acyl = s.atom("C"), ring = s.atom("C");  // a benzoyl radical: no carbonyl symbol
        s.bond(acyl, s.atom("O"), DOUBLE_BOND);
        s.bond(acyl, ring);
        s.ring_on(ring, {1, 2, 3, 4, 5});
        HChemicalDiagram d = s.diagram();
        EXPECT_EQ((std::vector<int>{19, 18, 10, 12, 12}), codes_of(recogniser.find(*d)));
        EXPECT_EQ(5, recogniser.fold(*d));
        const Parsed p = parse(draw::SvgWriter().svg(*d));
        ASSERT_TRUE(p.well_formed) << p.error;
        EXPECT_EQ(0, overlapping_labels(p));
    }
}

// Three rings a metal binds through every atom: the two of a ferrocene and
// the toluene of a chromium tricarbonyl, whose ring must stay a ring.
TEST(MetalRings, SandwichedRingsBecomeOnePiBondToTheirCircleDrawnToTheRim) {
    Sketch s;
    const int fe = s.atom("Fe");
    std::vector<std::vector<int> > cp(2);
    for (std::vector<int>& ring : cp) {
        for (int i = 0; i < 5; ++i) ring.push_back(s.atom("C", 1));
        for (int i = 0; i < 5; ++i) {
            s.bond(ring[static_cast<std::size_t>(i)], ring[static_cast<std::size_t>((i + 1) % 5)],
                   i % 2 == 0 ? DOUBLE_BOND : SINGLE_BOND);
            s.bond(fe, ring[static_cast<std::size_t>(i)]);
        }
    }
    const int cr = s.atom("Cr");
    const int ipso = s.atom("C");
    const std::vector<int> arene = s.ring_on(ipso);
    s.bond(ipso, s.atom("C", 3));
    for (int a : arene) s.bond(cr, a);
    for (int i = 0; i < 3; ++i) {
        const int c = s.atom("C");
        s.bond(cr, c);
        s.bond(c, s.atom("O"), TRIPLE_BOND);
    }
    // A chelate ring and a metal on two atoms of a ring are no pi rings.
    const int zn = s.atom("Zn"), n1 = s.atom("N", 2), n2 = s.atom("N", 2), ca = s.atom("C", 2), cb = s.atom("C", 2);
    s.bond(zn, n1);
    s.bond(n1, ca);
    s.bond(ca, cb);
    s.bond(cb, n2);
    s.bond(n2, zn);
    const int pt = s.atom("Pt"), e1 = s.atom("C", 2), e2 = s.atom("C", 2);
    s.bond(e1, e2, DOUBLE_BOND);
    s.bond(pt, e1);
    s.bond(pt, e2);

    std::vector<HDiagramNode> n;
    HChemicalDiagram d = s.diagram(&n);
    const std::vector<draw::MetalRings::Ring> rings = draw::MetalRings::find(*d);
    ASSERT_EQ(3u, rings.size());
    EXPECT_EQ(n[fe], rings[0].metal);
    EXPECT_EQ(n[fe], rings[1].metal);
    EXPECT_EQ(n[cr], rings[2].metal);
    EXPECT_EQ(5u, rings[0].atoms.size());
    EXPECT_EQ(n[cp[0][0]], rings[0].atoms[0]);
    EXPECT_EQ(n[cp[1][0]], rings[1].atoms[0]);
    for (const draw::MetalRings::Ring& r : rings)  // round the ring
        for (std::size_t i = 0; i < r.atoms.size(); ++i)
            EXPECT_TRUE(d->has_edge(r.atoms[i], r.atoms[(i + 1) % r.atoms.size()]));

    const Topology before = topology(*d);
    const int nedges = d->nedges();
    EXPECT_EQ(3, draw::MetalRings::fold(*d));
    EXPECT_EQ(3u, d->pi_groups().size());
    EXPECT_EQ(2, n[fe]->nedges());  // one pi bond to each circle
    EXPECT_EQ(nedges - 10 - 6 + 3, d->nedges());
    for (const HDiagramEdge& e : n[fe]->edges()) EXPECT_EQ(PI_BOND, e->type());
    EXPECT_EQ(AROMATIC_BOND, d->edge(n[cp[0][0]], n[cp[0][1]])->type());

    // The arene stays a ring under its circle; the carbonyls fold.
    EXPECT_EQ((std::vector<int>{12, 12, 12}), codes_of(draw::SubstituentRecogniser().find(*d)));
    EXPECT_EQ(3, draw::SubstituentRecogniser().fold(*d));

    const std::string svg = draw::SvgWriter().svg(*d);
    keep(svg, "metal-rings");
    const Parsed p = parse(svg);
    ASSERT_TRUE(p.well_formed) << p.error;
    ASSERT_EQ(3u, p.circles.size());
    EXPECT_EQ(0, overlapping_labels(p));
    // Each pi bond ends just outside its circle's rim, not at its centre.
    int at_rim = 0;
    for (const std::vector<double>& c : p.circles)
        for (const std::vector<double>& l : p.dashed_lines)
            for (int end = 0; end < 2; ++end) {
                const double dx = l[static_cast<std::size_t>(2 * end)] - c[0];
                const double dy = l[static_cast<std::size_t>(2 * end + 1)] - c[1];
                const double r = std::sqrt(dx * dx + dy * dy);
                if (r < 2.0 * c[2]) {
                    EXPECT_GT(r, c[2]);
                    EXPECT_LT(r, c[2] + 8.0);
                    ++at_rim;
                }
            }
    EXPECT_EQ(3, at_rim);

    d->expand_symbol_groups();
    d->expand_pi_groups();
    const Topology after = topology(*d);
    for (const std::pair<const DiagramNode* const, std::set<const DiagramNode*> >& k : before.neighbours) {
        ASSERT_EQ(1u, after.neighbours.count(k.first));
        EXPECT_EQ(k.second, after.neighbours.at(k.first));
    }
    EXPECT_EQ(PI_BOND, d->edge(n[fe], n[cp[1][2]])->type());
}

#ifdef MOLCRYST_CIF_DIR
// Every shared structure drawn as `molcryst draw --symbols` draws it.
TEST(SubstituentRecogniser, EverySharedStructureFoldsDrawsAndUnfolds) {
    DIR* dir = opendir(MOLCRYST_CIF_DIR);
    ASSERT_NE(nullptr, dir);
    std::set<std::string> names;
    while (dirent* entry = readdir(dir)) {
        const std::string name = entry->d_name;
        if (name.size() > 4 && name.compare(name.size() - 4, 4, ".cif") == 0) names.insert(name);
    }
    closedir(dir);
    ASSERT_EQ(25u, names.size());
    std::map<int, int> folded;  // code -> count over all structures
    int rings = 0;
    for (const std::string& name : names) {
        const CifDocument doc = CifReader::read_file(std::string(MOLCRYST_CIF_DIR) + "/" + name);
        const StructureReport report(doc.blocks.at(0));
        Molecule3d all;
        for (const HMolecule& m : report.asymmetric_molecules()) {
            BondOrderPerception::perceive(*m);
            all.add(*m);
        }
        HChemicalDiagram d = draw::flat_diagram(all);
        const Topology before = topology(*d);
        rings += draw::MetalRings::fold(*d);
        for (const draw::SubstituentMatch& m : draw::SubstituentRecogniser().find(*d)) ++folded[m.code];
        draw::SubstituentRecogniser().fold(*d);
        const Parsed p = parse(draw::SvgWriter().svg(*d));
        ASSERT_TRUE(p.well_formed) << name << ": " << p.error;
        EXPECT_EQ(d->nedges(), p.bonds) << name;
        d->expand_symbol_groups();
        d->expand_pi_groups();
        EXPECT_EQ(before.neighbours.size() + d->pi_groups().size(), topology(*d).neighbours.size()) << name;
    }
    // What the drawings of these structures show folded.
    EXPECT_GE(rings, 2);       // the fluorobenzenes on iridium
    EXPECT_GE(folded[22], 8);  // isopropyls of the carbenes
    EXPECT_GE(folded[6], 6);   // CF3 of the borates
    EXPECT_EQ(4, folded[16]);  // nitro groups of 2007300, 2015798 (two) and 2205750
    EXPECT_EQ(1, folded[15]);  // Co-NCS
    EXPECT_EQ(1, folded[39]);  // the acetate of 2007300
    EXPECT_EQ(1, folded[46]);  // the oxalurate's carbamoyl
}
#endif

}  // namespace
}  // namespace molcryst

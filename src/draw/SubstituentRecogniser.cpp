#include "molcryst/draw/SubstituentRecogniser.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "molcryst/diagram/DiagramAtom.h"
#include "molcryst/diagram/DiagramCircle.h"

namespace molcryst {
namespace draw {

namespace {

// What a bond between two template points must be.
enum BondKind {
    ANY_BOND,       // any type: the elements and counts already pin the group (N3, NCS, NO2)
    SINGLE,         // type 1
    MULTIPLE,       // a carbonyl: double, aromatic or delocalised (a carboxylate's C-O)
    RING_AROMATIC,  // a benzene ring bond: single, double, aromatic or delocalised, see aromatic_rings
    RING_SATURATED  // a cyclohexane ring bond: single
};

struct PatternAtom {
    int element;    // tarn code
    int hydrogens;  // folded terminal hydrogens; -1 for any
};

struct PatternBond {
    int a, b;
    BondKind kind;
};

// Which atom the anchor may hang on.
enum OutsideRule {
    OUTSIDE_ANY,
    OUTSIDE_METAL,     // a carbonyl ligand: C=O on a carbon stands for an acyl, not "CO"
    OUTSIDE_NOT_ALKYL  // an ethyl ends a chain: CH3CH2 on a CH2 or CH3 is part of a longer alkyl
};

bool allows(BondKind kind, int type) {
    switch (kind) {
        case ANY_BOND:
            return type != PI_BOND;
        case SINGLE:
        case RING_SATURATED:
            return type == SINGLE_BOND;
        case MULTIPLE:
            return type == DOUBLE_BOND || type == AROMATIC_BOND || type == DELOCALISED_BOND;
        case RING_AROMATIC:
            return type == SINGLE_BOND || type == DOUBLE_BOND || type == AROMATIC_BOND || type == DELOCALISED_BOND;
    }
    return false;
}

// The diagram as the search reads it: per node index, its element (-1 for
// a node that is not an atom), hydrogen count and bonded neighbours.
struct Topology {
    struct Neighbour {
        int node;
        int type;
    };
    std::vector<HDiagramNode> nodes;
    std::vector<int> element;
    std::vector<int> hydrogens;
    std::vector<bool> metal;
    std::vector<std::vector<Neighbour> > neighbours;

    explicit Topology(const ChemicalDiagram& d) {
        std::unordered_map<const DiagramNode*, int> index;
        for (ChemicalDiagram::const_node_iterator n = d.begin_nodes(); n != d.end_nodes(); ++n) {
            index[n->unhand()] = static_cast<int>(nodes.size());
            nodes.push_back(*n);
            const DiagramAtom* atom = dynamic_cast<const DiagramAtom*>(n->unhand());
            element.push_back(atom == nullptr ? -1 : static_cast<int>(atom->element().code()));
            hydrogens.push_back(atom == nullptr ? 0 : atom->nterminal_hydrogens());
            metal.push_back(atom != nullptr && atom->element().atomic_number() > 0 && !atom->element().non_metal());
        }
        neighbours.resize(nodes.size());
        for (ChemicalDiagram::const_edge_iterator e = d.begin_edges(); e != d.end_edges(); ++e) {
            const int a = index.at((*e)->node1().unhand()), b = index.at((*e)->node2().unhand());
            const int type = static_cast<int>((*e)->type());
            neighbours[static_cast<std::size_t>(a)].push_back(Neighbour{b, type});
            neighbours[static_cast<std::size_t>(b)].push_back(Neighbour{a, type});
        }
    }
    int degree(int i) const { return static_cast<int>(neighbours[static_cast<std::size_t>(i)].size()); }
    // The type of the bond i-j, or -1 for none.
    int bond_type(int i, int j) const {
        for (const Neighbour& n : neighbours[static_cast<std::size_t>(i)])
            if (n.node == j) return n.type;
        return -1;
    }
};

struct Pattern {
    int code = 0;
    std::vector<PatternAtom> atoms;
    std::vector<PatternBond> bonds;
    int outside = 1;  // bonds leaving the anchor: 1, or 0 for a free ion
    OutsideRule rule = OUTSIDE_ANY;
    // Benzene rings, as cycles of points: every ring atom needs a ring bond
    // that is not single, which tells a phenyl from a cyclohexenyl.
    std::vector<std::vector<int> > aromatic_rings;

    // Derived: the search order (a walk from the anchor along bonds), the
    // point each is reached from, and the degree of each point.
    std::vector<int> order, parent, degree;

    explicit Pattern(int c) : code(c) {}
    Pattern& at(const char* element, int h) {
        atoms.push_back(PatternAtom{static_cast<int>(Element(element).code()), h});
        return *this;
    }
    Pattern& bond(int a, int b, BondKind kind = SINGLE) {
        bonds.push_back(PatternBond{a, b, kind});
        return *this;
    }
    // Bonds round `cycle`, aromatic or saturated.
    Pattern& ring(const std::vector<int>& cycle, bool aromatic) {
        for (std::size_t i = 0; i < cycle.size(); ++i)
            bond(cycle[i], cycle[(i + 1) % cycle.size()], aromatic ? RING_AROMATIC : RING_SATURATED);
        if (aromatic) aromatic_rings.push_back(cycle);
        return *this;
    }
    Pattern& free_ion() {
        outside = 0;
        return *this;
    }
    Pattern& outside_rule(OutsideRule r) {
        rule = r;
        return *this;
    }
    Pattern& finish() {
        const std::size_t n = atoms.size();
        degree.assign(n, 0);
        for (const PatternBond& b : bonds) {
            ++degree[static_cast<std::size_t>(b.a)];
            ++degree[static_cast<std::size_t>(b.b)];
        }
        parent.assign(n, -1);
        std::vector<bool> seen(n, false);
        order.assign(1, 0);
        seen[0] = true;
        for (std::size_t k = 0; k < order.size(); ++k)
            for (const PatternBond& b : bonds) {
                const int from = order[k];
                const int to = b.a == from ? b.b : (b.b == from ? b.a : -1);
                if (to < 0 || seen[static_cast<std::size_t>(to)]) continue;
                seen[static_cast<std::size_t>(to)] = true;
                parent[static_cast<std::size_t>(to)] = from;
                order.push_back(to);
            }
        return *this;
    }
};

// A six-membered ring in the catalogue's phenyl order: ipso, ortho, ortho',
// meta (next to ortho), meta', para; round the ring that is 0 1 3 5 4 2.
Pattern& benzene(Pattern& p, int ipso, int o1, int o2, int m1, int m2, int para, bool aromatic = true) {
    return p.ring({ipso, o1, m1, para, m2, o2}, aromatic);
}

// The first `count` points of a plain phenyl-shaped ring: carbons with one
// hydrogen, the ipso without.
Pattern& carbons(Pattern& p, const std::vector<int>& hydrogens) {
    for (int h : hydrogens) p.at("C", h);
    return p;
}

// Three rings on a centre, as the catalogue's triphenyl templates lay them
// out: centre 0; ipso carbons 1-3; orthos 4,5 / 6,7 / 8,9; metas 10,11 /
// 12,13 / 14,15 (each next to the ortho of the same rank); paras 16-18.
Pattern three_rings(int code, const char* centre, bool aromatic) {
    Pattern p(code);
    p.at(centre, 0);
    const int h = aromatic ? 1 : 2;
    p.at("C", 0).at("C", 0).at("C", 0);
    if (!aromatic) {
        // The ipso carbons of cyclohexyls keep one hydrogen.
        p.atoms[1].hydrogens = p.atoms[2].hydrogens = p.atoms[3].hydrogens = 1;
    }
    for (int i = 4; i < 19; ++i) p.at("C", h);
    for (int r = 0; r < 3; ++r) {
        p.bond(0, 1 + r);
        benzene(p, 1 + r, 4 + 2 * r, 5 + 2 * r, 10 + 2 * r, 11 + 2 * r, 16 + r, aromatic);
    }
    return p.finish();
}

std::vector<Pattern> make_patterns() {
    std::vector<Pattern> all;
    auto add = [&all](Pattern& p) { all.push_back(p.finish()); };

    {  // 1 phenyl
        Pattern p(1);
        carbons(p, {0, 1, 1, 1, 1, 1});
        add(benzene(p, 0, 1, 2, 3, 4, 5));
    }
    // 2 pyridyl: 3- and 4-pyridyl. A 2-pyridyl keeps its atoms: its
    // nitrogen, next to the bond, is where the ring chelates or takes a
    // hydrogen bond, and "Py" would hide that.
    for (int n_at : {3, 5}) {
        Pattern p(2);
        for (int i = 0; i < 6; ++i) {
            if (i == n_at)
                p.at("N", 0);
            else
                p.at("C", i == 0 ? 0 : 1);
        }
        add(benzene(p, 0, 1, 2, 3, 4, 5));
    }
    {  // 4 ethyl
        Pattern p(4);
        p.at("C", 2).at("C", 3).bond(0, 1).outside_rule(OUTSIDE_NOT_ALKYL);
        add(p);
    }
    {  // 5 tert-butyl
        Pattern p(5);
        p.at("C", 0).at("C", 3).at("C", 3).at("C", 3).bond(0, 1).bond(0, 2).bond(0, 3);
        add(p);
    }
    {  // 6 trifluoromethyl
        Pattern p(6);
        p.at("C", 0).at("F", 0).at("F", 0).at("F", 0).bond(0, 1).bond(0, 2).bond(0, 3);
        add(p);
    }
    {  // 7 triphenylphosphine
        Pattern p = three_rings(7, "P", true);
        all.push_back(p);
    }
    {  // 8 aldehyde
        Pattern p(8);
        p.at("C", 1).at("O", 0).bond(0, 1, MULTIPLE);
        add(p);
    }
    // 9 carboxylic: COOH with the hydrogen on the second point, or COO-
    for (int h : {1, 0}) {
        Pattern p(9);
        p.at("C", 0).at("O", h).at("O", 0).bond(0, 1, ANY_BOND).bond(0, 2, ANY_BOND);
        add(p);
    }
    {  // 10 tetramethylammonium, the free cation
        Pattern p(10);
        p.at("N", 0);
        for (int i = 1; i <= 4; ++i) p.at("C", 3).bond(0, i);
        add(p.free_ion());
    }
    {  // 11 acetyl: C, O, CH3
        Pattern p(11);
        p.at("C", 0).at("O", 0).at("C", 3).bond(0, 1, MULTIPLE).bond(0, 2);
        add(p);
    }
    {  // 12 carbonyl, a metal's CO ligand
        Pattern p(12);
        p.at("C", 0).at("O", 0).bond(0, 1, ANY_BOND).outside_rule(OUTSIDE_METAL);
        add(p);
    }
    {  // 13 cyano
        Pattern p(13);
        p.at("C", 0).at("N", 0).bond(0, 1, ANY_BOND);
        add(p);
    }
    {  // 14 thiocyanato, bound by S
        Pattern p(14);
        p.at("S", 0).at("C", 0).at("N", 0).bond(0, 1, ANY_BOND).bond(1, 2, ANY_BOND);
        add(p);
    }
    {  // 15 isothiocyanato, bound by N
        Pattern p(15);
        p.at("N", 0).at("C", 0).at("S", 0).bond(0, 1, ANY_BOND).bond(1, 2, ANY_BOND);
        add(p);
    }
    {  // 16 nitro
        Pattern p(16);
        p.at("N", 0).at("O", 0).at("O", 0).bond(0, 1, ANY_BOND).bond(0, 2, ANY_BOND);
        add(p);
    }
    {  // 17 sulfonato
        Pattern p(17);
        p.at("S", 0).at("O", 0).at("O", 0).at("O", 0).bond(0, 1, ANY_BOND).bond(0, 2, ANY_BOND).bond(0, 3, ANY_BOND);
        add(p);
    }
    {  // 18 perchlorate and 19 tetrafluoroborate, free anions
        Pattern p(18);
        p.at("Cl", 0);
        for (int i = 1; i <= 4; ++i) p.at("O", 0).bond(0, i, ANY_BOND);
        add(p.free_ion());
        Pattern q(19);
        q.at("B", 0);
        for (int i = 1; i <= 4; ++i) q.at("F", 0).bond(0, i);
        add(q.free_ion());
    }
    {  // 22 isopropyl
        Pattern p(22);
        p.at("C", 1).at("C", 3).at("C", 3).bond(0, 1).bond(0, 2);
        add(p);
    }
    {  // 23 dimethylamino
        Pattern p(23);
        p.at("N", 0).at("C", 3).at("C", 3).bond(0, 1).bond(0, 2);
        add(p);
    }
    {  // 24 trimethylsilyl
        Pattern p(24);
        p.at("Si", 0).at("C", 3).at("C", 3).at("C", 3).bond(0, 1).bond(0, 2).bond(0, 3);
        add(p);
    }
    {  // 25 para-tolyl
        Pattern p(25);
        carbons(p, {0, 1, 1, 1, 1, 0, 3});
        add(benzene(p, 0, 1, 2, 3, 4, 5).bond(5, 6));
    }
    {  // 26 para-tosyl: S, ipso, O, O, orthos, metas, para, CH3
        Pattern p(26);
        p.at("S", 0).at("C", 0).at("O", 0).at("O", 0);
        carbons(p, {1, 1, 1, 1, 0, 3});
        p.bond(0, 1).bond(0, 2, ANY_BOND).bond(0, 3, ANY_BOND).bond(8, 9);
        add(benzene(p, 1, 4, 5, 6, 7, 8));
    }
    {  // 27 meta-tolyl: the methyl (6) on the first meta carbon
        Pattern p(27);
        carbons(p, {0, 1, 1, 0, 1, 1, 3});
        add(benzene(p, 0, 1, 2, 3, 4, 5).bond(3, 6));
    }
    {  // 28 ortho-tolyl: ipso, ortho, ortho', meta, CH3 (on the ortho), meta', para
        Pattern p(28);
        carbons(p, {0, 0, 1, 1, 3, 1, 1});
        add(benzene(p, 0, 1, 2, 3, 5, 6).bond(1, 4));
    }
    {  // 29 cyclohexyl
        Pattern p(29);
        carbons(p, {1, 2, 2, 2, 2, 2});
        add(benzene(p, 0, 1, 2, 3, 4, 5, false));
    }
    {  // 30 methoxycarbonyl: C, O (ester), O (carbonyl), CH3
        Pattern p(30);
        p.at("C", 0).at("O", 0).at("O", 0).at("C", 3).bond(0, 1).bond(0, 2, MULTIPLE).bond(1, 3);
        add(p);
    }
    {  // 31 ethoxycarbonyl
        Pattern p(31);
        p.at("C", 0).at("O", 0).at("O", 0).at("C", 2).at("C", 3).bond(0, 1).bond(0, 2, MULTIPLE).bond(1, 3).bond(3, 4);
        add(p);
    }
    {  // 32 tert-butoxycarbonyl
        Pattern p(32);
        p.at("C", 0).at("O", 0).at("O", 0).at("C", 0).at("C", 3).at("C", 3).at("C", 3);
        p.bond(0, 1).bond(0, 2, MULTIPLE).bond(1, 3).bond(3, 4).bond(3, 5).bond(3, 6);
        add(p);
    }
    {  // 33 azido
        Pattern p(33);
        p.at("N", 0).at("N", 0).at("N", 0).bond(0, 1, ANY_BOND).bond(1, 2, ANY_BOND);
        add(p);
    }
    {  // 34 nitrosyl, on a metal or a carbon
        Pattern p(34);
        p.at("N", 0).at("O", 0).bond(0, 1, ANY_BOND);
        add(p);
    }
    {  // 35 methoxy
        Pattern p(35);
        p.at("O", 0).at("C", 3).bond(0, 1);
        add(p);
    }
    {  // 36 ethoxy
        Pattern p(36);
        p.at("O", 0).at("C", 2).at("C", 3).bond(0, 1).bond(1, 2);
        add(p);
    }
    {  // 37 mesityl: ipso, ortho, ortho', meta, CH3, meta', CH3, para, CH3
        Pattern p(37);
        carbons(p, {0, 0, 0, 1, 3, 1, 3, 0, 3});
        add(benzene(p, 0, 1, 2, 3, 5, 7).bond(1, 4).bond(2, 6).bond(7, 8));
    }
    {  // 38 pentafluorophenyl: ipso, ortho, ortho', meta, F, meta', F, para, F, F, F
        Pattern p(38);
        p.at("C", 0).at("C", 0).at("C", 0).at("C", 0).at("F", 0).at("C", 0).at("F", 0).at("C", 0);
        p.at("F", 0).at("F", 0).at("F", 0);
        add(benzene(p, 0, 1, 2, 3, 5, 7).bond(1, 4).bond(2, 6).bond(3, 8).bond(5, 9).bond(7, 10));
    }
    {  // 39 acetato: O, C, O (carbonyl), CH3
        Pattern p(39);
        p.at("O", 0).at("C", 0).at("O", 0).at("C", 3).bond(0, 1).bond(1, 2, MULTIPLE).bond(1, 3);
        add(p);
    }
    all.push_back(three_rings(40, "C", true));   // triphenylmethyl
    all.push_back(three_rings(41, "P", false));  // tricyclohexylphosphine
    {                                            // 42 trimethylphosphine
        Pattern p(42);
        p.at("P", 0).at("C", 3).at("C", 3).at("C", 3).bond(0, 1).bond(0, 2).bond(0, 3);
        add(p);
    }
    {  // 43 triethylphosphine: P, three CH2, their CH3 in the same order
        Pattern p(43);
        p.at("P", 0).at("C", 2).at("C", 2).at("C", 2).at("C", 3).at("C", 3).at("C", 3);
        p.bond(0, 1).bond(0, 2).bond(0, 3).bond(1, 4).bond(2, 5).bond(3, 6);
        add(p);
    }
    {  // 44 trimethyl phosphite
        Pattern p(44);
        p.at("P", 0).at("O", 0).at("O", 0).at("O", 0).at("C", 3).at("C", 3).at("C", 3);
        p.bond(0, 1).bond(0, 2).bond(0, 3).bond(1, 4).bond(2, 5).bond(3, 6);
        add(p);
    }
    {  // 45 triethyl phosphite
        Pattern p(45);
        p.at("P", 0).at("O", 0).at("O", 0).at("O", 0).at("C", 2).at("C", 2).at("C", 2);
        p.at("C", 3).at("C", 3).at("C", 3);
        p.bond(0, 1).bond(0, 2).bond(0, 3).bond(1, 4).bond(2, 5).bond(3, 6).bond(4, 7).bond(5, 8).bond(6, 9);
        add(p);
    }
    {  // 46 carbamoyl: C, O, NH2
        Pattern p(46);
        p.at("C", 0).at("O", 0).at("N", 2).bond(0, 1, MULTIPLE).bond(0, 2, ANY_BOND);
        add(p);
    }
    {  // 47 benzoyl: C, ipso, O, then the ring: ipso 1, ortho 3 and 4, meta 5 and 6, para 7
        Pattern p(47);
        p.at("C", 0).at("C", 0).at("O", 0);
        carbons(p, {1, 1, 1, 1, 1});
        p.bond(0, 1).bond(0, 2, MULTIPLE);
        add(benzene(p, 1, 3, 4, 5, 6, 7));
    }
    {  // 48 benzyl: CH2, ipso, orthos, metas, para
        Pattern p(48);
        p.at("C", 2);
        carbons(p, {0, 1, 1, 1, 1, 1});
        add(benzene(p, 1, 2, 3, 4, 5, 6).bond(0, 1));
    }
    return all;
}

const std::vector<Pattern>& patterns() {
    static const std::vector<Pattern> table = make_patterns();
    return table;
}

// Complete matches of one pattern with the anchor on one node, found by
// extending a partial match point by point in the pattern's search order.
class Search {
public:
    Search(const Pattern& p, const Topology& t) : p_(p), t_(t), image_(p.atoms.size(), -1) {}

    // The best match anchored at `anchor`, empty for none: the one whose
    // points, in template order, carry the most hydrogens first (the H of a
    // COOH on the second point), then the lowest node indices.
    std::vector<int> best(int anchor) {
        best_.clear();
        used_.clear();
        if (!fits(0, anchor)) return best_;
        if (t_.degree(anchor) != p_.degree[0] + p_.outside) return best_;
        image_.assign(p_.atoms.size(), -1);
        image_[0] = anchor;
        used_.push_back(anchor);
        budget_ = 4096;  // mappings of one anchor; symmetric groups have at most 48
        extend(1);
        return best_;
    }

private:
    bool fits(int point, int node) const {
        const PatternAtom& a = p_.atoms[static_cast<std::size_t>(point)];
        if (t_.element[static_cast<std::size_t>(node)] != a.element) return false;
        if (a.hydrogens >= 0 && t_.hydrogens[static_cast<std::size_t>(node)] != a.hydrogens) return false;
        return point == 0 || t_.degree(node) == p_.degree[static_cast<std::size_t>(point)];
    }

    // The pattern's bonds between `point` and the points matched before it.
    bool bonds_hold(int point) const {
        for (const PatternBond& b : p_.bonds) {
            const int other = b.a == point ? b.b : (b.b == point ? b.a : -1);
            if (other < 0 || image_[static_cast<std::size_t>(other)] < 0) continue;
            const int type =
                t_.bond_type(image_[static_cast<std::size_t>(point)], image_[static_cast<std::size_t>(other)]);
            if (type < 0 || !allows(b.kind, type)) return false;
        }
        return true;
    }

    void extend(std::size_t k) {
        if (budget_ <= 0) return;
        if (k == p_.order.size()) {
            --budget_;
            complete();
            return;
        }
        const int point = p_.order[k];
        const int from = image_[static_cast<std::size_t>(p_.parent[static_cast<std::size_t>(point)])];
        for (const Topology::Neighbour& n : t_.neighbours[static_cast<std::size_t>(from)]) {
            if (std::find(used_.begin(), used_.end(), n.node) != used_.end()) continue;
            if (!fits(point, n.node)) continue;
            image_[static_cast<std::size_t>(point)] = n.node;
            if (bonds_hold(point)) {
                used_.push_back(n.node);
                extend(k + 1);
                used_.pop_back();
            }
            image_[static_cast<std::size_t>(point)] = -1;
        }
    }

    void complete() {
        // Every ring atom of a benzene needs a ring bond that is not single.
        for (const std::vector<int>& ring : p_.aromatic_rings)
            for (std::size_t i = 0; i < ring.size(); ++i) {
                const int here = image_[static_cast<std::size_t>(ring[i])];
                const int next = image_[static_cast<std::size_t>(ring[(i + 1) % ring.size()])];
                const int prev = image_[static_cast<std::size_t>(ring[(i + ring.size() - 1) % ring.size()])];
                if (t_.bond_type(here, next) == SINGLE_BOND && t_.bond_type(here, prev) == SINGLE_BOND) return;
            }
        // The anchor's bond out of the group, and the atom it reaches.
        if (p_.outside == 1) {
            int outside = -1, type = 0;
            for (const Topology::Neighbour& n : t_.neighbours[static_cast<std::size_t>(image_[0])])
                if (std::find(image_.begin(), image_.end(), n.node) == image_.end()) {
                    outside = n.node;
                    type = n.type;
                }
            if (outside < 0) return;
            // Every group hangs by a single bond (or one of unknown order): a
            // methoxy oxygen double-bonded to its carbon is no methoxy.
            if (type != SINGLE_BOND && type != POLYMERIC_BOND && type != UNKNOWN_BOND) return;
            const std::size_t o = static_cast<std::size_t>(outside);
            if (p_.rule == OUTSIDE_METAL && !t_.metal[o]) return;
            if (p_.rule == OUTSIDE_NOT_ALKYL && t_.element[o] == static_cast<int>(Element::C) && t_.hydrogens[o] >= 2)
                return;
        }
        if (best_.empty() || better()) best_ = image_;
    }

    bool better() const {
        for (std::size_t i = 0; i < image_.size(); ++i) {
            const int h1 = t_.hydrogens[static_cast<std::size_t>(image_[i])];
            const int h2 = t_.hydrogens[static_cast<std::size_t>(best_[i])];
            if (h1 != h2) return h1 > h2;
        }
        return image_ < best_;
    }

    const Pattern& p_;
    const Topology& t_;
    std::vector<int> image_;
    std::vector<int> used_;
    std::vector<int> best_;
    int budget_ = 0;
};

}  // namespace

std::vector<int> SubstituentRecogniser::supported_codes() {
    std::vector<int> codes;
    for (const Pattern& p : patterns()) codes.push_back(p.code);
    std::sort(codes.begin(), codes.end());
    codes.erase(std::unique(codes.begin(), codes.end()), codes.end());
    return codes;
}

std::vector<std::pair<int, int> > SubstituentRecogniser::pattern_bonds(int code) {
    std::vector<std::pair<int, int> > out;
    for (const Pattern& p : patterns()) {
        if (p.code != code) continue;
        for (const PatternBond& b : p.bonds) out.push_back(std::make_pair(b.a, b.b));
        break;
    }
    return out;
}

std::vector<SubstituentMatch> SubstituentRecogniser::find(const ChemicalDiagram& diagram) const {
    const Topology t(diagram);
    struct Candidate {
        int code;
        std::vector<int> nodes;
    };
    std::vector<Candidate> candidates;
    for (const Pattern& p : patterns()) {
        Search search(p, t);
        for (int i = 0; i < static_cast<int>(t.nodes.size()); ++i) {
            std::vector<int> nodes = search.best(i);
            if (!nodes.empty()) candidates.push_back(Candidate{p.code, std::move(nodes)});
        }
    }
    std::stable_sort(candidates.begin(), candidates.end(), [](const Candidate& a, const Candidate& b) {
        if (a.nodes.size() != b.nodes.size()) return a.nodes.size() > b.nodes.size();
        if (a.code != b.code) return a.code < b.code;
        return a.nodes < b.nodes;
    });

    // Folded atoms, and the atoms that folded groups hang on: neither may
    // join another group.
    std::vector<bool> taken(t.nodes.size(), false), kept(t.nodes.size(), false);
    // Atoms of groups the diagram already has (standing expanded) stay
    // theirs, and the atoms of a ring drawn with its circle (a metal's
    // arene) stay in the ring, lest the circle and its pi bond fold away.
    for (const HDiagramSymbolGroup& g : diagram.symbol_groups())
        for (std::size_t i = 0; i < t.nodes.size(); ++i)
            if (g->has_node(t.nodes[i])) taken[i] = true;
    for (const HDiagramNode& n : t.nodes)
        if (const DiagramCircle* circle = dynamic_cast<const DiagramCircle*>(n.unhand()))
            for (std::size_t i = 0; i < t.nodes.size(); ++i)
                if (circle->has_node(t.nodes[i])) taken[i] = true;
    std::vector<std::pair<int, SubstituentMatch> > chosen;
    for (const Candidate& c : candidates) {
        bool free = true;
        for (int n : c.nodes) free = free && !taken[static_cast<std::size_t>(n)] && !kept[static_cast<std::size_t>(n)];
        int outside = -1;
        for (const Topology::Neighbour& n : t.neighbours[static_cast<std::size_t>(c.nodes[0])])
            if (std::find(c.nodes.begin(), c.nodes.end(), n.node) == c.nodes.end()) outside = n.node;
        if (outside >= 0 && taken[static_cast<std::size_t>(outside)]) free = false;
        if (!free) continue;
        for (int n : c.nodes) taken[static_cast<std::size_t>(n)] = true;
        if (outside >= 0) kept[static_cast<std::size_t>(outside)] = true;
        SubstituentMatch m;
        m.code = c.code;
        for (int n : c.nodes) m.nodes.push_back(t.nodes[static_cast<std::size_t>(n)]);
        chosen.push_back(std::make_pair(c.nodes[0], std::move(m)));
    }
    std::sort(chosen.begin(), chosen.end(),
              [](const std::pair<int, SubstituentMatch>& a, const std::pair<int, SubstituentMatch>& b) {
                  return a.first < b.first;
              });
    std::vector<SubstituentMatch> out;
    for (std::pair<int, SubstituentMatch>& c : chosen) out.push_back(std::move(c.second));
    return out;
}

int SubstituentRecogniser::fold(ChemicalDiagram& diagram) const {
    const std::vector<SubstituentMatch> matches = find(diagram);
    for (const SubstituentMatch& m : matches) diagram.add_group_symbol(m.nodes, m.code);
    if (!matches.empty()) diagram.contract_symbol_groups();
    return static_cast<int>(matches.size());
}

}  // namespace draw
}  // namespace molcryst

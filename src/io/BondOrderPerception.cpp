#include "molcryst/io/BondOrderPerception.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <vector>

#include "molcryst/geometry/Plane.h"
#include "molcryst/molecule/Site.h"

namespace molcryst {

namespace {

// Longest triple and double bond between two elements (atomic numbers, the
// smaller first), Angstrom; pairs not listed are single.
struct OrderLimits {
    double triple, dbl;
};

const std::map<std::pair<int, int>, OrderLimits>& order_limits() {
    static const std::map<std::pair<int, int>, OrderLimits> limits = {
        {{6, 6}, {1.25, 1.37}},  {{6, 7}, {1.20, 1.30}}, {{6, 8}, {0.0, 1.28}},  {{6, 16}, {0.0, 1.70}},
        {{7, 7}, {1.15, 1.30}},  {{7, 8}, {0.0, 1.28}},  {{8, 16}, {0.0, 1.50}}, {{8, 15}, {0.0, 1.53}},
        {{6, 15}, {0.0, 1.67}},  {{7, 16}, {0.0, 1.58}}, {{8, 34}, {0.0, 1.66}}, {{6, 34}, {0.0, 1.84}}};
    return limits;
}

// A ring that reads as aromatic from its geometry: flat within 0.1 A, every
// atom with at most three neighbours, every bond short (up to 1.45 A between
// C, N and O, 1.76 A to S), as no saturated ring is.
bool flat_conjugated_ring(const std::set<HAtom>& ring) {
    std::vector<Point> points;
    for (const HAtom& a : ring) {
        if (a->nbonds() > 3 || !a->has_site()) return false;
        points.push_back(a->site()->orth());
    }
    const Plane plane(points);
    for (const Point& p : points)
        if (std::fabs(plane.signed_distance(p)) > 0.1) return false;
    for (const HAtom& a : ring)
        for (const HAtom& b : a->neighbours()) {
            if (ring.count(b) == 0 || a.unhand() > b.unhand()) continue;
            const bool sulphur = a->element().atomic_number() == 16 || b->element().atomic_number() == 16;
            if (distance(a->site()->orth(), b->site()->orth()) > (sulphur ? 1.76 : 1.45)) return false;
        }
    return true;
}

}  // namespace

void BondOrderPerception::perceive(Molecule& molecule) {
    const HMoleculeGraph graph = molecule.graph();
    for (int b = 0; b < molecule.nbonds(); ++b) {
        const HBond bond = molecule.bond(b);
        const HAtom a = bond->atom1(), c = bond->atom2();
        BondType type = SINGLE_BOND;
        if (a->element().non_metal() && c->element().non_metal() && a->has_site() && c->has_site()) {
            std::set<HAtom> ring;
            const int size = bond->cyclic() ? graph->edge_smallest_ring(a, c, ring) : 0;
            if ((size == 5 || size == 6) && flat_conjugated_ring(ring)) {
                type = AROMATIC_BOND;
            } else {
                int za = a->element().atomic_number(), zc = c->element().atomic_number();
                if (za > zc) std::swap(za, zc);
                const auto limits = order_limits().find(std::make_pair(za, zc));
                const double d = distance(a->site()->orth(), c->site()->orth());
                if (limits != order_limits().end()) {
                    if (d <= limits->second.triple)
                        type = TRIPLE_BOND;
                    else if (d <= limits->second.dbl)
                        type = DOUBLE_BOND;
                }
            }
        }
        bond->set_type(type);
    }
    // A carbon with two oxygens on nothing else, both double by length, is a
    // carboxylate: its charge is spread over both bonds.
    for (int i = 0; i < molecule.natoms(); ++i) {
        const HAtom c = molecule.atom(i);
        if (c->element().atomic_number() != 6) continue;
        std::vector<HBond> terminal;
        for (const HBond& b : c->bonds()) {
            const HAtom o = b->atom1() == c ? b->atom2() : b->atom1();
            if (o->element().atomic_number() == 8 && o->nbonds() == 1 && b->type() == DOUBLE_BOND) terminal.push_back(b);
        }
        if (terminal.size() == 2)
            for (const HBond& b : terminal) b->set_type(AROMATIC_BOND);
    }
}

}  // namespace molcryst

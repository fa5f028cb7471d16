#include "Clashes.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <iomanip>
#include <ostream>
#include <set>
#include <sstream>
#include <tuple>

#include "molcryst/contact/BondDistanceLimit.h"
#include "molcryst/contact/ClashCriterion.h"
#include "molcryst/crystal/NewCrystal.h"
#include "molcryst/molecule/Site.h"

namespace molcryst {
namespace app {

std::string decimal_text(double value, int decimals) {
    std::ostringstream out;
    out << std::fixed << std::setprecision(decimals) << value;
    return out.str();
}

namespace {

// The bonds of the deposited atoms through symmetry: for each symmetry tag,
// the tags it is bonded to and where, as an operator and a lattice
// translation applied to the partner. Two atoms within their bonding
// distance are bonded, hydrogens never to each other, as in the report.
class PeriodicBonds {
public:
    explicit PeriodicBonds(const CrystalMaker& maker) : cell_(maker.cell()) {
        for (int i = 0; i < maker.nmolecules(); ++i) {
            const HMolecule m = maker.molecule(i);
            for (int k = 0; k < m->natoms(); ++k)
                if (m->atom(k)->has_site() && m->atom(k)->symmtag() >= 0) atoms_[m->atom(k)->symmtag()] = m->atom(k);
        }
        const std::vector<CrystalSymmetryOperator>& ops = cell_.spacegroup().operators();
        for (const auto& s : atoms_)
            for (const auto& t : atoms_) {
                const Element& es = s.second->element();
                const Element& et = t.second->element();
                if (es.atomic_number() == 1 && et.atomic_number() == 1) continue;
                const double limit = BondDistanceLimit::limit(es, et);
                const Point& ps = s.second->site()->frac();
                for (std::size_t op = 0; op < ops.size(); ++op) {
                    // The nearest lattice image is enough: bonds are far shorter than half a cell.
                    const Point moved = ops[op] * t.second->site()->frac();
                    Vector<int, 3> lattice;
                    for (int x = 0; x < 3; ++x) lattice[x] = static_cast<int>(std::lround(ps[x] - moved[x]));
                    const Point at(moved + Vector<double, 3>(lattice));
                    const double d = distance(cell_.orthogonal(ps), cell_.orthogonal(at));
                    if (d > 0.4 && d <= limit) bonds_[s.first].push_back(Bond{t.first, static_cast<int>(op), lattice});
                }
            }
    }

    // Whether `b` is within three bonds of `a`, through any symmetry.
    bool joined(const HAtom& a, const HAtom& b) const {
        std::vector<Node> frontier{Node{a->symmtag(), a->site()->frac()}};
        for (int depth = 0; depth < 3 && !frontier.empty(); ++depth) {
            std::vector<Node> next;
            for (const Node& n : frontier)
                for (const Node& m : partners(n)) {
                    if (m.tag == b->symmtag() && equals(m.frac, b->site()->frac(), 1e-3)) return true;
                    next.push_back(m);
                }
            frontier.swap(next);
        }
        return false;
    }

private:
    struct Bond {
        int tag, op;
        Vector<int, 3> lattice;
    };
    struct Node {
        int tag;
        Point frac;
    };

    // The atoms bonded to an image of a deposited atom: its bonds as
    // deposited, carried by the operator and translation that place it.
    std::vector<Node> partners(const Node& n) const {
        std::vector<Node> found;
        const auto atom = atoms_.find(n.tag);
        const auto bonds = bonds_.find(n.tag);
        if (atom == atoms_.end() || bonds == bonds_.end()) return found;
        const std::vector<CrystalSymmetryOperator>& ops = cell_.spacegroup().operators();
        for (const CrystalSymmetryOperator& op : ops) {
            const Point placed = op * atom->second->site()->frac();
            const Vector<double, 3> shift(std::round(n.frac[0] - placed[0]), std::round(n.frac[1] - placed[1]),
                                          std::round(n.frac[2] - placed[2]));
            if (!equals(Point(placed + shift), n.frac, 1e-3)) continue;
            for (const Bond& bond : bonds->second) {
                const Point partner = ops[static_cast<std::size_t>(bond.op)] * atoms_.at(bond.tag)->site()->frac();
                found.push_back(Node{bond.tag, Point(op * Point(partner + Vector<double, 3>(bond.lattice)) + shift)});
            }
            break;
        }
        return found;
    }

    Cell cell_;
    std::map<int, HAtom> atoms_;
    std::map<int, std::vector<Bond> > bonds_;
};

}  // namespace

std::vector<Clash> find_clashes(const HCrystalMaker& maker) {
    // Overlaps of clash_overlap or more between molecules, hydrogen bonds by
    // the default rule that report uses for its hydrogen-bond list.
    const ClashCriterion criterion(
        CombinedCriterion(true, -clash_overlap, -5.0, INTERMOLECULAR, 4, 999, false),
        HBondCriterion(0.0, -5.0, Angle::from_degrees(120.0), true, false, INTRA_AND_INTERMOLECULAR, 3, 999));
    NewCrystal crystal(maker);
    crystal.set_contact_criterion(criterion.clone());
    // Each neighbour brought in whole, so that both ends of a clash have
    // their bonds; the stand-in atoms at the new rim are passed over.
    crystal.expand_all_contacts();
    // A molecule split by symmetry (on a special position, or a polymer)
    // meets its own images: pairs joined by three bonds or fewer through
    // any symmetry are bonds and angles, not clashes.
    const PeriodicBonds bonds(*maker);
    std::vector<Clash> clashes;
    std::set<std::tuple<std::string, std::string, long long> > seen;  // either way round, to 1e-4 A
    for (const HMolecularContact& c : *crystal.contacts()) {
        if (crystal.expandable(c)) continue;
        const HAtom a = c->molecule_from()->atom(c->atom_from());
        const HAtom b = c->molecule_to()->atom(c->atom_to());
        if (bonds.joined(a, b)) continue;
        Clash clash;
        clash.atom1 = a->label();
        clash.atom2 = b->label();
        clash.distance = distance(a->site()->orth(), b->site()->orth());
        clash.overlap = a->element().vdw_radius() + b->element().vdw_radius() - clash.distance;
        const long long key = std::llround(clash.distance * 1e4);
        if (!seen.insert(std::make_tuple(std::min(clash.atom1, clash.atom2), std::max(clash.atom1, clash.atom2), key))
                 .second)
            continue;
        clashes.push_back(clash);
    }
    std::stable_sort(clashes.begin(), clashes.end(),
                     [](const Clash& x, const Clash& y) { return x.overlap > y.overlap; });
    return clashes;
}

nlohmann::json clashes_json(const std::vector<Clash>& clashes) {
    nlohmann::json list = nlohmann::json::array();
    for (const Clash& c : clashes)
        list.push_back({{"atom1", c.atom1},
                        {"atom2", c.atom2},
                        {"distance", std::round(c.distance * 1e4) / 1e4},
                        {"overlap", std::round(c.overlap * 1e4) / 1e4}});
    return list;
}

void clashes_text(std::ostream& out, const std::vector<Clash>& clashes) {
    out << "clashes: " << clashes.size() << " (overlaps of " << decimal_text(clash_overlap, 1)
        << " A or more that no hydrogen bond explains)\n";
    for (const Clash& c : clashes)
        out << "  " << c.atom1 << "..." << c.atom2 << "  " << decimal_text(c.distance, 3) << "  overlap "
            << decimal_text(c.overlap, 3) << "\n";
}

}  // namespace app
}  // namespace molcryst

#include "Clashes.h"

#include <algorithm>
#include <cmath>
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

// Atoms within two bonds of `a`, with their number of bonds from it.
std::vector<std::pair<HAtom, int> > within_two_bonds(const HAtom& a) {
    std::vector<std::pair<HAtom, int> > near{{a, 0}};
    for (const HAtom& n : a->neighbours()) {
        near.emplace_back(n, 1);
        for (const HAtom& m : n->neighbours())
            if (m != a) near.emplace_back(m, 2);
    }
    return near;
}

// Whether atoms `a` and `b` of two molecules are joined by three bonds or
// fewer, one of them a bond between the molecules (two atoms within bonding
// distance, hydrogens never bonded to each other): a molecule split by
// symmetry (on a special position, or a polymer) meets its own images there,
// and those pairs are bonds and angles, not clashes.
bool joined_through_symmetry(const HAtom& a, const HAtom& b) {
    const std::vector<std::pair<HAtom, int> > near_a = within_two_bonds(a), near_b = within_two_bonds(b);
    for (const auto& x : near_a)
        for (const auto& y : near_b) {
            if (x.second + y.second > 2 || !x.first->has_site() || !y.first->has_site()) continue;
            if (x.first->element().atomic_number() == 1 && y.first->element().atomic_number() == 1) continue;
            if (distance(x.first->site()->orth(), y.first->site()->orth()) <=
                BondDistanceLimit::limit(x.first->element(), y.first->element()))
                return true;
        }
    return false;
}

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
    std::vector<Clash> clashes;
    std::set<std::tuple<std::string, std::string, long long> > seen;  // either way round, to 1e-4 A
    for (const HMolecularContact& c : *crystal.contacts()) {
        if (crystal.expandable(c)) continue;
        const HAtom a = c->molecule_from()->atom(c->atom_from());
        const HAtom b = c->molecule_to()->atom(c->atom_to());
        if (joined_through_symmetry(a, b)) continue;
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

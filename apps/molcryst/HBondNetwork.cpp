#include "HBondNetwork.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <numeric>
#include <ostream>

#include "molcryst/contact/HBondCriterion.h"
#include "molcryst/crystal/NewCrystal.h"
#include "molcryst/molecule/Site.h"

namespace molcryst {
namespace app {

namespace {

// The translation as the shortest whole lattice vector along it (a centring
// translation doubled), first non-zero entry positive.
bool lattice_direction(const Vector<double, 3>& t, Vector<int, 3>& v) {
    for (int scale : {1, 2, 3, 4, 6}) {
        bool whole = true;
        for (int i = 0; i < 3; ++i) {
            const double x = t[i] * scale;
            v[i] = static_cast<int>(std::lround(x));
            whole = whole && std::fabs(x - v[i]) < 1e-6;
        }
        if (whole) break;
        if (scale == 6) return false;
    }
    const int g = std::gcd(std::gcd(std::abs(v[0]), std::abs(v[1])), std::abs(v[2]));
    if (g == 0) return false;
    const int first = v[0] != 0 ? v[0] : v[1] != 0 ? v[1] : v[2];
    for (int i = 0; i < 3; ++i) v[i] = v[i] / g * (first < 0 ? -1 : 1);
    return true;
}

int rank(const std::vector<Vector<int, 3> >& vs) {
    if (vs.empty()) return 0;
    auto cross = [](const Vector<int, 3>& a, const Vector<int, 3>& b) {
        return Vector<long, 3>(static_cast<long>(a[1]) * b[2] - static_cast<long>(a[2]) * b[1],
                               static_cast<long>(a[2]) * b[0] - static_cast<long>(a[0]) * b[2],
                               static_cast<long>(a[0]) * b[1] - static_cast<long>(a[1]) * b[0]);
    };
    int r = 1;
    for (std::size_t i = 0; i < vs.size(); ++i)
        for (std::size_t j = i + 1; j < vs.size(); ++j) {
            const Vector<long, 3> n = cross(vs[i], vs[j]);
            if (n[0] == 0 && n[1] == 0 && n[2] == 0) continue;
            r = 2;
            for (const Vector<int, 3>& w : vs)
                if (n[0] * w[0] + n[1] * w[1] + n[2] * w[2] != 0) return 3;
        }
    return r;
}

}  // namespace

HContactCriterion default_hbond_criterion() {
    return HContactCriterion(
        new HBondCriterion(0.0, -5.0, Angle::from_degrees(120.0), true, false, INTRA_AND_INTERMOLECULAR, 3, 999));
}

HBondNetwork expand_hbond_network(const HCrystalMaker& maker) {
    NewCrystal crystal(maker);
    crystal.add_contact_criterion(default_hbond_criterion());
    crystal.expand_fully();
    crystal.notify();
    return summarise_hbond_network(crystal);
}

HBondNetwork summarise_hbond_network(const NewCrystal& crystal) {
    const HCrystalMaker& maker = crystal.crystal_maker();

    // A one-atom molecule is whole only if its stored molecule has one sited
    // atom; else it stands in for a neighbour not shown.
    std::map<int, int> sited_atoms_by_tag;
    for (const HMolecule& m : *maker->current_molecules()) {
        const int n = static_cast<int>(m->atoms_with_sites().size());
        for (int i = 0; i < m->natoms(); ++i) sited_atoms_by_tag[m->atom(i)->symmtag()] = n;
    }
    const HCrystal shown = crystal.crystal_snapshot();
    std::vector<HMolecule> whole;
    for (const HMolecule& m : *shown->molecules())
        if (m->natoms() > 1 || (m->natoms() == 1 && sited_atoms_by_tag[m->atom(0)->symmtag()] == 1)) whole.push_back(m);

    HBondNetwork network;
    network.molecules = static_cast<int>(whole.size());
    const Hvector_HMolecularContact contacts = crystal.contacts();
    network.contacts = static_cast<int>(contacts->size());
    const Cell& cell = shown->cell();
    for (const HMolecularContact& c : *contacts) {
        if (!crystal.expandable(c)) continue;
        ++network.open;
        const HAtom to = c->molecule_to()->atom(c->atom_to());
        const Point p = to->site()->frac();
        for (const HMolecule& m : whole)
            for (int i = 0; i < m->natoms(); ++i) {
                const HAtom a = m->atom(i);
                if (a->symmtag() != to->symmtag() || equals(a->site()->frac(), p, 1e-4)) continue;
                const HCrystalSymmetryTransformation t = cell.symmetry_relation(a->site()->frac(), p, 1e-07);
                Vector<int, 3> v;
                if (t.unhand() == nullptr || !t->is_translational() || !lattice_direction(t->translation(), v))
                    continue;
                if (std::find(network.directions.begin(), network.directions.end(), v) == network.directions.end())
                    network.directions.push_back(v);
            }
    }
    // Of all repeats found, the shortest that are independent: a basis of
    // the directions in which the network is polymeric.
    auto length = [&](const Vector<int, 3>& v) { return cell.orthogonal(Point(Vector<double, 3>(v))).length(); };
    std::stable_sort(network.directions.begin(), network.directions.end(),
                     [&](const Vector<int, 3>& a, const Vector<int, 3>& b) { return length(a) < length(b); });
    std::vector<Vector<int, 3> > basis;
    for (const Vector<int, 3>& v : network.directions) {
        basis.push_back(v);
        if (rank(basis) < static_cast<int>(basis.size())) basis.pop_back();
    }
    network.directions = basis;
    network.dimensions = rank(basis);
    return network;
}

nlohmann::json network_json(const HBondNetwork& network) {
    nlohmann::json directions = nlohmann::json::array();
    for (const Vector<int, 3>& v : network.directions) directions.push_back({v[0], v[1], v[2]});
    return {{"molecules", network.molecules},
            {"contacts", network.contacts},
            {"open_contacts", network.open},
            {"polymeric_directions", directions},
            {"dimensions", network.dimensions}};
}

void network_text(std::ostream& out, const HBondNetwork& network) {
    out << "hydrogen-bonded network: " << network.molecules << " molecules, " << network.contacts << " contacts, "
        << network.open << " left open\n";
    if (network.directions.empty()) {
        out << "  finite\n";
        return;
    }
    out << "  polymeric in " << network.dimensions << (network.dimensions == 1 ? " dimension" : " dimensions")
        << " along";
    for (const Vector<int, 3>& v : network.directions) out << " [" << v[0] << " " << v[1] << " " << v[2] << "]";
    out << "\n";
}

}  // namespace app
}  // namespace molcryst

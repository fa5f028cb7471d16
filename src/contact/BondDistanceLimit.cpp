#include "molcryst/contact/BondDistanceLimit.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

#include "PairGrid.h"
#include "molcryst/crystal/CrystalSymmetryMapping.h"
#include "molcryst/edit/DisorderAtom.h"
#include "molcryst/molecule/Site.h"
#include "molcryst/support/Archive.h"

namespace molcryst {

namespace {

struct TunedPair {
    Element::TARNCode a, b;
    double limit;
};

// Pairs whose limit is set by hand. Hydrogen to hydrogen and to deuterium
// is 1.41, and deuterium to deuterium is taken alike, deuterium being
// hydrogen; the rest of the rows agree with the rule and are listed so that
// the table cannot drift from them.
const TunedPair tuned_pairs[] = {
    {Element::C, Element::C, 1.81},   {Element::C, Element::H, 1.36},   {Element::H, Element::H, 1.41},
    {Element::H, Element::D, 1.41},   {Element::D, Element::D, 1.41},   {Element::C, Element::O, 1.81},
    {Element::N, Element::O, 1.81},   {Element::H, Element::O, 1.36},   {Element::Cl, Element::Cl, 2.18},
    {Element::C, Element::Br, 2.34},  {Element::C, Element::Al, 2.48},  {Element::Cu, Element::O, 2.8},
    {Element::Fe, Element::Fe, 3.13}, {Element::Ce, Element::Ce, 3.21}, {Element::Ag, Element::Ag, 3.23},
};

// Elements that never bond: no covalent radius known, or no element at all.
const Element::TARNCode never_bonded[] = {
    Element::Unknown, Element::At, Element::Bk, Element::Cf, Element::Cm, Element::Es, Element::Fm, Element::Fr,
    Element::Lr,      Element::Md, Element::No, Element::Rn, Element::X,  Element::Z,  Element::Zz,
};

// Alkali, alkaline-earth and lanthanide metals: between two of them the
// limit is the radii's sum less 0.45, so that the short metal-metal contacts
// of their salts do not read as bonds.
const Element::TARNCode electropositive[] = {
    Element::Li, Element::Na, Element::K,  Element::Rb, Element::Cs, Element::Be, Element::Mg,
    Element::Ca, Element::Sr, Element::Ba, Element::Ra, Element::La, Element::Ce, Element::Pr,
    Element::Nd, Element::Pm, Element::Sm, Element::Eu, Element::Gd, Element::Tb, Element::Dy,
    Element::Ho, Element::Er, Element::Tm, Element::Yb, Element::Lu,
};

// Coordination radii of the electropositive metals, in Angstrom: the radii
// their bonds to oxygen, nitrogen, carbon and the halogens have in crystals.
double coordination_radius(Element::TARNCode code) {
    switch (code) {
        case Element::Li: return 1.28;
        case Element::Na: return 1.66;
        case Element::K: return 2.03;
        case Element::Rb: return 2.20;
        case Element::Cs: return 2.44;
        case Element::Be: return 0.96;
        case Element::Mg: return 1.41;
        case Element::Ca: return 1.76;
        case Element::Sr: return 1.95;
        case Element::Ba: return 2.15;
        case Element::Ra: return 2.21;
        case Element::La: return 2.07;
        case Element::Ce: return 2.04;
        case Element::Pr: return 2.03;
        case Element::Nd: return 2.01;
        case Element::Pm: return 1.99;
        case Element::Sm: return 1.98;
        case Element::Eu: return 1.98;
        case Element::Gd: return 1.96;
        case Element::Tb: return 1.94;
        case Element::Dy: return 1.92;
        case Element::Ho: return 1.92;
        case Element::Er: return 1.89;
        case Element::Tm: return 1.90;
        case Element::Yb: return 1.87;
        case Element::Lu: return 1.87;
        default: return 0.0;
    }
}

// To two decimals, as the tuned rows are written: 0.68 + 0.68 + 0.45 is 1.81, not 1.8100000000000002.
double hundredths(double x) { return std::round(x * 100.0) / 100.0; }

BondDistanceLimit::Table build_table() {
    const int n = Element::ncodes_;
    bool never[Element::ncodes_] = {};
    bool metal[Element::ncodes_] = {};
    for (Element::TARNCode c : never_bonded) never[c] = true;
    for (Element::TARNCode c : electropositive) metal[c] = true;
    BondDistanceLimit::Table table;
    for (int i = 0; i < n; ++i) {
        table[static_cast<std::size_t>(i)].fill(0.0);
        for (int j = i; j < n; ++j) {
            if (never[i] || never[j]) continue;
            const double sum = Element::covalent_radii_[static_cast<std::size_t>(i)] +
                               Element::covalent_radii_[static_cast<std::size_t>(j)];
            double limit = metal[i] && metal[j] ? sum - 0.45 : sum + 0.45;
            // An electropositive metal bonds to anything but hydrogen at the
            // length of its coordination: there its radius is its coordination
            // radius, not the small covalent one (Na-O 2.79, not 2.10).
            const int other = metal[i] ? j : i;
            if (metal[i] != metal[j] && Element::atomic_numbers_[static_cast<std::size_t>(other)] != 1)
                limit = std::max(limit, coordination_radius(static_cast<Element::TARNCode>(metal[i] ? i : j)) +
                                            Element::covalent_radii_[static_cast<std::size_t>(other)] + 0.45);
            table[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)] = hundredths(limit);
        }
    }
    for (const TunedPair& p : tuned_pairs)
        table[static_cast<std::size_t>(std::min(p.a, p.b))][static_cast<std::size_t>(std::max(p.a, p.b))] = p.limit;
    return table;
}

// The largest limit between an element of `a` and one of `b` (flags by code).
double largest_limit(const bool (&a)[Element::ncodes_], const bool (&b)[Element::ncodes_]) {
    const BondDistanceLimit::Table& table = BondDistanceLimit::bond_limits();
    double largest = 0.0;
    for (int i = 0; i < Element::ncodes_; ++i) {
        if (!a[i]) continue;
        for (int j = 0; j < Element::ncodes_; ++j)
            if (b[j]) largest = std::max(largest, table[std::min(i, j)][std::max(i, j)]);
    }
    return largest;
}

void check_atoms(const std::vector<HAtom>& atoms, const char* function) {
    for (std::size_t k = 0; k < atoms.size(); ++k)
        if (atoms[k].unhand() == nullptr)
            throw std::invalid_argument(std::string(function) + " atom " + std::to_string(k) + " is a null pointer");
}

// The sited atoms' orthogonal points, which of them the grid can hold, and
// which it cannot (sited, but not finite or far out); elements present.
struct Places {
    explicit Places(const std::vector<HAtom>& atoms) : points(atoms.size()), member(atoms.size(), 0) {
        for (std::size_t k = 0; k < atoms.size(); ++k) {
            const HSite& site = atoms[k]->site();
            if (site.unhand() == nullptr) continue;
            points[k] = site->orth();
            elements[atoms[k]->element().code()] = true;
            if (contact_detail::PairGrid::usable(points[k]))
                member[k] = 1;
            else
                loose.push_back(static_cast<int>(k));
            sited.push_back(static_cast<int>(k));
        }
    }
    std::vector<Point> points;
    std::vector<char> member;
    std::vector<int> loose;
    std::vector<int> sited;
    bool elements[Element::ncodes_] = {};
};

// The grid's reach: a shade over the largest limit, so that rounding in the
// grid's cells never loses a pair at the limit itself; the bond test after
// it is exact.
double grid_reach(double largest) { return largest * (1.0 + 1e-12); }

}  // namespace

BondDistanceLimit::BondDistanceLimit(double min_distance, bool hydrogens_may_bond)
    : min_distance_(min_distance), hydrogens_may_bond_(hydrogens_may_bond) {}

const BondDistanceLimit::Table& BondDistanceLimit::bond_limits() {
    static const Table table = build_table();
    return table;
}

double BondDistanceLimit::limit(const Element& a, const Element& b) {
    const int i = a.code(), j = b.code();
    return bond_limits()[static_cast<std::size_t>(std::min(i, j))][static_cast<std::size_t>(std::max(i, j))];
}

bool BondDistanceLimit::is_a_bond(THandle<Atom> a, THandle<Atom> b) const {
    if (a.unhand() == nullptr)
        throw std::invalid_argument("BondDistanceLimit::is_a_bond(HAtom, HAtom) atom1 is a null pointer");
    if (b.unhand() == nullptr)
        throw std::invalid_argument("BondDistanceLimit::is_a_bond(HAtom, HAtom) atom2 is a null pointer");
    const HSite& sa = a->site();
    const HSite& sb = b->site();
    if (sa.unhand() == nullptr || sb.unhand() == nullptr) return false;
    const double d = distance(sa->orth(), sb->orth());
    if (d <= min_distance_) return false;
    const Element ea = a->element(), eb = b->element();
    if (!hydrogens_may_bond_ && ea.atomic_number() == 1 && eb.atomic_number() == 1) return false;
    return d <= limit(ea, eb);
}

bool BondDistanceLimit::is_a_bond(THandle<DisorderAtom> a, THandle<DisorderAtom> b) const {
    if (a.unhand() == nullptr)
        throw std::invalid_argument("BondDistanceLimit::is_a_bond(HDisorderAtom, HDisorderAtom) atom1 is a null pointer");
    if (b.unhand() == nullptr)
        throw std::invalid_argument("BondDistanceLimit::is_a_bond(HDisorderAtom, HDisorderAtom) atom2 is a null pointer");
    if (a->group() != 0 && b->group() != 0 && a->assembly() == b->assembly() && a->group() != b->group()) return false;
    return is_a_bond(a->parent_atom(), b->parent_atom());
}

bool BondDistanceLimit::is_a_bond(THandle<CrystalSymmetryMapping<THandle<Atom> > > a,
                                  THandle<CrystalSymmetryMapping<THandle<Atom> > > b) const {
    if (a.unhand() == nullptr)
        throw std::invalid_argument(
            "BondDistanceLimit::is_a_bond(HCrystalSymmetryMapping, HCrystalSymmetryMapping) mapping1 is a null "
            "pointer");
    if (b.unhand() == nullptr)
        throw std::invalid_argument(
            "BondDistanceLimit::is_a_bond(HCrystalSymmetryMapping, HCrystalSymmetryMapping) mapping2 is a null "
            "pointer");
    return is_a_bond(a->target(), b->target());
}

std::vector<std::pair<int, int> > BondDistanceLimit::bonded_pairs(const std::vector<HAtom>& atoms) const {
    check_atoms(atoms, "BondDistanceLimit::bonded_pairs(const std::vector<HAtom>&)");
    std::vector<std::pair<int, int> > pairs;
    const Places places(atoms);
    const contact_detail::PairGrid grid(places.points, places.member,
                                        grid_reach(largest_limit(places.elements, places.elements)));
    std::vector<int> near, candidates;
    for (int i : places.sited) {
        candidates.clear();
        if (places.member[static_cast<std::size_t>(i)]) {
            grid.near(places.points[static_cast<std::size_t>(i)], near);
            for (int j : near)
                if (j > i) candidates.push_back(j);
            for (int j : places.loose)
                if (j > i) candidates.push_back(j);
            std::sort(candidates.begin(), candidates.end());
        } else {  // a point the grid cannot hold is tried against all
            for (int j : places.sited)
                if (j > i) candidates.push_back(j);
        }
        for (int j : candidates)
            if (is_a_bond(atoms[static_cast<std::size_t>(i)], atoms[static_cast<std::size_t>(j)]))
                pairs.push_back(std::make_pair(i, j));
    }
    return pairs;
}

std::vector<std::pair<int, int> > BondDistanceLimit::bonded_pairs(const std::vector<HAtom>& from,
                                                                  const std::vector<HAtom>& to) const {
    static const char* const function =
        "BondDistanceLimit::bonded_pairs(const std::vector<HAtom>&, const std::vector<HAtom>&)";
    check_atoms(from, function);
    check_atoms(to, function);
    std::vector<std::pair<int, int> > pairs;
    const Places sources(from), targets(to);
    const contact_detail::PairGrid grid(targets.points, targets.member,
                                        grid_reach(largest_limit(sources.elements, targets.elements)));
    std::vector<int> candidates;
    for (int i : sources.sited) {
        const Point& p = sources.points[static_cast<std::size_t>(i)];
        if (sources.member[static_cast<std::size_t>(i)]) {
            grid.near(p, candidates);
            candidates.insert(candidates.end(), targets.loose.begin(), targets.loose.end());
            std::sort(candidates.begin(), candidates.end());
        } else {
            candidates = targets.sited;
        }
        for (int j : candidates)
            if (is_a_bond(from[static_cast<std::size_t>(i)], to[static_cast<std::size_t>(j)]))
                pairs.push_back(std::make_pair(i, j));
    }
    return pairs;
}

void BondDistanceLimit::write(Archive& ar) const { ar << min_distance_ << hydrogens_may_bond_; }

void BondDistanceLimit::read(Archive& ar) {
    Archive::Field field(ar, "BondDistanceLimit::read");
    double min_distance = 0;
    bool hydrogens_may_bond = false;
    ar >> min_distance >> hydrogens_may_bond;
    min_distance_ = min_distance;
    hydrogens_may_bond_ = hydrogens_may_bond;
}

}  // namespace molcryst

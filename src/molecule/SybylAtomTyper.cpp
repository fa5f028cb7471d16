#include "molcryst/molecule/SybylAtomTyper.h"

#include <algorithm>
#include <deque>

#include "molcryst/geometry/GeometryFunctions.h"
#include "molcryst/molecule/Atom.h"
#include "molcryst/molecule/Bond.h"
#include "molcryst/molecule/Site.h"
#include "molcryst/support/AtomPredicates.h"
#include "molcryst/support/BondPredicates.h"

namespace molcryst {

namespace {

int type_of(const HBond& bond) { return static_cast<int>(bond->type()); }

int atomic_number(const Atom& atom) { return atom.element().atomic_number(); }
int atomic_number(const HAtom& atom) { return atom->element().atomic_number(); }

bool same_atom(const HAtom& a, const Atom& b) { return a.unhand() == &b; }

bool all_of_type(const std::deque<HBond>& bonds, int type) {
    return std::all_of(bonds.begin(), bonds.end(), [type](const HBond& b) { return type_of(b) == type; });
}

long count_of_type(const std::deque<HBond>& bonds, int type) {
    return std::count_if(bonds.begin(), bonds.end(), [type](const HBond& b) { return type_of(b) == type; });
}

// The only neighbour of an oxygen, or null when it has none or several. Both
// carboxylate tests want exactly one neighbour: an acid's hydroxyl oxygen,
// with its hydrogen present, is never a carboxylate oxygen.
HAtom sole_neighbour(const Atom& oxygen) {
    std::deque<HAtom> around = oxygen.neighbours();
    if (around.size() != 1) return HAtom();
    return around.front();
}

// X is carbon with three bonds or phosphorus with more than one, and carries
// another oxygen or sulphur with a single bond besides `oxygen`.
bool carboxylate_centre(const Atom& oxygen, const HAtom& x) {
    const int z = atomic_number(x);
    if (!((z == 6 && x->nbonds() == 3) || (z == 15 && x->nbonds() > 1))) return false;
    std::deque<HAtom> around = x->neighbours();
    for (const HAtom& other : around) {
        if (same_atom(other, oxygen)) continue;
        const int zo = atomic_number(other);
        if ((zo == 8 || zo == 16) && other->nbonds() == 1) return true;
    }
    return false;
}

bool is_carboxylate_protonation_state_unknown(const Atom& atom) {
    HAtom x = sole_neighbour(atom);
    if (x.unhand() == nullptr) return false;
    return carboxylate_centre(atom, x);
}

// With hydrogens known, three terminal atoms on a four-bonded sulphur also
// make a carboxylate-like oxygen: so a sulphonate's oxygens type as "O.co2".
bool is_carboxylate_protonation_state_known(const Atom& atom) {
    HAtom x = sole_neighbour(atom);
    if (x.unhand() == nullptr) return false;
    const int z = atomic_number(x);
    if ((z == 6 && x->nbonds() == 3) || (z == 15 && x->nbonds() > 1)) return carboxylate_centre(atom, x);
    if (z == 16 && x->nbonds() == 4) {
        std::deque<HAtom> around = x->neighbours();
        long terminal = std::count_if(around.begin(), around.end(), [](const HAtom& a) { return a->nbonds() == 1; });
        return terminal == 3;
    }
    return false;
}

// The neighbours of `atom` that are not metals, in graph order.
std::deque<HAtom> nonmetal_neighbours(const Atom& atom) {
    std::deque<HAtom> around = atom.neighbours();
    auto first_nonmetal = std::stable_partition(around.begin(), around.end(), AtomMetalPredicate<HAtom>());
    return std::deque<HAtom>(first_nonmetal, around.end());
}

long count_element(const std::deque<HAtom>& atoms, int z) {
    return std::count_if(atoms.begin(), atoms.end(), AtomAtomicNumberPredicate<HAtom>(z));
}

}  // namespace

SybylAtomTyper::SybylAtomTyper(OxygenProtonationTreatment treatment) : oxygen_treatment_(treatment) {}

std::string SybylAtomTyper::name() const { return "SybylAtomTyper"; }

std::string SybylAtomTyper::atom_type(const Atom& atom) const {
    switch (is_atom_2d_ruled(atom)) {
        case 0:
            return calc_2d_ruled_atom_type(atom);
        case 1:
            return calc_3d_ruled_atom_type(atom);
        default:
            return guess_atom_sybyl_type(atom);
    }
}

std::string SybylAtomTyper::bond_type(const Bond& bond) const {
    switch (static_cast<int>(bond.type())) {
        case 0:
            return calc_bond_type(bond);
        case 1:
            return "1";
        case 2:
            return "2";
        case 3:
            return "3";
        case 5:
            return "ar";
        default:  // quadruple and everything above aromatic
            return "un";
    }
}

int SybylAtomTyper::is_atom_2d_ruled(const Atom& atom) const {
    std::deque<HBond> bonds = atom.bonds();
    if (bonds.empty()) return 2;
    if (count_of_type(bonds, UNKNOWN_BOND) > 0) return 1;
    return 0;
}

std::string SybylAtomTyper::calc_2d_ruled_atom_type(const Atom& atom) const {
    switch (atomic_number(atom)) {
        case 1:
            return "H";
        case 6:
            return type_carbon_2d(atom);
        case 7:
            return type_nitrogen_2d(atom);
        case 8:
            return type_oxygen_2d(atom);
        case 16:
            return type_sulphur_2d(atom);
        default:
            return type_other_atom(atom);
    }
}

std::string SybylAtomTyper::calc_3d_ruled_atom_type(const Atom& atom) const {
    switch (atomic_number(atom)) {
        case 1:
            return "H";
        case 6:
            return type_carbon_3d(atom);
        case 7:
            return type_nitrogen_3d(atom);
        case 8:
            return type_oxygen_3d(atom);
        case 16:
            return type_sulphur_3d(atom);
        default:
            return type_other_atom(atom);
    }
}

std::string SybylAtomTyper::guess_atom_sybyl_type(const Atom& atom) const {
    switch (atomic_number(atom)) {
        case 1:
            return "H";
        case 6:
            return "C.3";
        case 7:
            return "N.3";
        case 8:
            return "O.3";
        case 16:
            return "S.3";
        default:
            return type_other_atom(atom);
    }
}

std::string SybylAtomTyper::type_other_atom(const Atom& atom) const {
    switch (atomic_number(atom)) {
        case 15:
            return "P.3";
        case 22:
            return atom.nbonds() > 4 ? "Ti.oh" : "Ti.th";
        case 24:
            return atom.nbonds() > 4 ? "Cr.oh" : "Cr.th";
        case 27:
            return "Co.oh";
        case 44:
            return "Ru.oh";
        default:
            return atom.element().symbol();
    }
}

std::string SybylAtomTyper::type_carbon_2d(const Atom& atom) const {
    std::deque<HBond> bonds = atom.bonds();
    const size_t n = bonds.size();
    if (n > 3 && all_of_type(bonds, SINGLE_BOND)) return "C.3";
    if (n == 3) {
        // Three trivalent nitrogens make a guanidinium-like cation, unless
        // one of them is a nitro nitrogen: a nitroguanidine isn't a cation.
        std::deque<HAtom> around = atom.neighbours();
        bool cation = true;
        for (const HAtom& x : around) {
            if (atomic_number(x) != 7 || x->nbonds() != 3) {
                cation = false;
                break;
            }
            std::deque<HAtom> outer = x->neighbours();
            if (count_element(outer, 8) == 2) {
                cation = false;
                break;
            }
        }
        if (cation) return "C.cat";
    }
    if (n > 1 && count_of_type(bonds, AROMATIC_BOND) > 1) return "C.ar";
    if ((n == 1 || n == 2) && count_of_type(bonds, TRIPLE_BOND) > 0) return "C.1";
    return "C.2";
}

std::string SybylAtomTyper::type_nitrogen_2d(const Atom& atom) const {
    std::deque<HBond> bonds = atom.bonds();
    auto first_other = std::stable_partition(bonds.begin(), bonds.end(), BondMetalPredicate<HBond>());
    const long m = first_other - bonds.begin();
    const std::deque<HBond> others(first_other, bonds.end());
    const size_t n = others.size();
    std::deque<HAtom> around;
    for (const HBond& b : others) around.push_back(b->other_atom(atom));

    if (n == 4 && all_of_type(others, SINGLE_BOND)) return "N.4";
    if (n > 1 && count_of_type(others, AROMATIC_BOND) > 1) return "N.ar";
    if (n == 1 && type_of(others[0]) == TRIPLE_BOND) return "N.1";
    if (n == 2) {
        const int t1 = type_of(others[0]), t2 = type_of(others[1]);
        if ((t1 == 2 && t2 == 2) || (t1 == 1 && t2 == 3) || (t1 == 3 && t2 == 1)) return "N.1";
    }
    if (n == 3 || (n == 2 && all_of_type(others, SINGLE_BOND))) {
        // Amide: a neighbouring carbon doubly bonded to oxygen or sulphur.
        for (const HAtom& x : around) {
            if (atomic_number(x) != 6) continue;
            std::deque<HBond> xbonds = x->bonds();
            for (const HBond& xb : xbonds) {
                if (type_of(xb) != DOUBLE_BOND) continue;
                const int z = atomic_number(xb->other_atom(*x));
                if (z == 8 || z == 16) return "N.am";
            }
        }
    }
    if (n == 3) {
        if (!all_of_type(others, SINGLE_BOND)) return "N.pl3";
        bool unsaturated = false, hydrogen = false;
        for (const HAtom& x : around) {
            std::deque<HBond> xbonds = x->bonds();
            const bool multiple = std::any_of(xbonds.begin(), xbonds.end(), [](const HBond& b) {
                const int t = type_of(b);
                return t == DOUBLE_BOND || t == TRIPLE_BOND || t == AROMATIC_BOND || t == DELOCALISED_BOND;
            });
            if (multiple)
                unsaturated = true;
            else if (atomic_number(x) == 1)
                hydrogen = true;
            if (unsaturated && hydrogen) return "N.pl3";
        }
        if (unsaturated) {
            bool ok = true;
            Angle average = average_bond_angle(atom, ok);
            // A third of 350 degrees: the valence angles of a nearly planar nitrogen.
            if (ok && average.degrees() >= 350.0 / 3.0) return "N.pl3";
        }
        return "N.3";
    }
    if ((n == 0 || n == 1) && m == 1) {
        switch (type_of(bonds[0])) {
            case TRIPLE_BOND:
                return "N.1";
            case DOUBLE_BOND:
                return "N.2";
            default:
                return "N.3";
        }
    }
    if (n == 1) {
        const int h = atom.nhydrogens(true);
        if (h == 3) return "N.4";
        if (h == 1) return "N.2";
        const HAtom& x = around[0];
        if (atomic_number(x) == 6) {
            std::string t = atom_type(*x);
            if (t == "C.ar" || t == "C.2") return "N.pl3";
        }
        return "N.3";
    }
    return "N.2";
}

std::string SybylAtomTyper::type_oxygen_2d(const Atom& atom) const {
    if (is_carboxylate(atom)) return "O.co2";
    std::deque<HBond> bonds = atom.bonds();
    if (bonds.size() > 1 && all_of_type(bonds, SINGLE_BOND)) return "O.3";
    return "O.2";
}

std::string SybylAtomTyper::type_sulphur_2d(const Atom& atom) const {
    const std::deque<HAtom> around = nonmetal_neighbours(atom);
    const size_t n = around.size();
    const long terminal_oxygens = std::count_if(around.begin(), around.end(), [](const HAtom& x) {
        return atomic_number(x) == 8 && x->nbonds() == 1;
    });
    if (n == 3 && terminal_oxygens == 1) return "S.o";
    if (n == 4 && terminal_oxygens == 2) return "S.o2";
    std::deque<HBond> bonds = atom.bonds();
    if (n > 1 && all_of_type(bonds, SINGLE_BOND)) return "S.3";
    if (n == 1) {
        // The bond to the one non-metal neighbour.
        for (const HBond& b : bonds) {
            if (b->other_atom(atom) != around[0]) continue;
            if (type_of(b) != SINGLE_BOND) return "S.2";
            break;
        }
        return atom.nbonds() == 2 ? "S.2" : "S.3";
    }
    return "S.2";
}

std::string SybylAtomTyper::type_carbon_3d(const Atom& atom) const {
    std::deque<HAtom> around = atom.neighbours();
    const size_t n = around.size();
    if (n > 3 || n == 0) return "C.3";
    if (n == 1) {
        const double d = distance(atom.site()->orth(), around[0]->site()->orth());
        if (d <= 1.22) return "C.1";
        if (d <= 1.41) return "C.2";
        return "C.3";
    }
    bool ok = true;
    const double a = average_bond_angle(atom, ok).degrees();
    if (a <= 115.0) return "C.3";
    if (a <= 160.0) return "C.2";
    return "C.1";
}

std::string SybylAtomTyper::type_nitrogen_3d(const Atom& atom) const {
    const std::deque<HAtom> around = nonmetal_neighbours(atom);
    switch (around.size()) {
        case 4:
            return "N.4";
        case 0:
            return "N.1";
        case 1: {
            const HAtom& x = around[0];
            if (atom.has_site() && x->has_site() && distance(atom.site()->orth(), x->site()->orth()) <= 1.2)
                return "N.1";
            return "N.3";
        }
        case 3: {
            AtomAtomicNumberPredicate<HAtom> is_carbon(6), is_oxygen(8), is_sulphur(16);
            for (const HAtom& x : around) {
                if (!is_carbon(x)) continue;
                std::deque<HAtom> outer = x->neighbours();
                if (std::any_of(outer.begin(), outer.end(), [&](const HAtom& y) {
                        return (is_oxygen(y) || is_sulphur(y)) && y->nbonds() == 1;
                    }))
                    return "N.am";
            }
            bool ok = true;
            // 350 degrees against a mean angle: kept as it stands, so this
            // path gives "N.pl3" only for impossible geometry.
            return average_bond_angle(atom, ok).degrees() >= 350.0 ? "N.pl3" : "N.3";
        }
        case 2: {
            bool ok = true;
            return average_bond_angle(atom, ok).degrees() >= 160.0 ? "N.1" : "N.2";
        }
        default:
            // More than four non-metal neighbours: the element's guess.
            return "N.3";
    }
}

std::string SybylAtomTyper::type_oxygen_3d(const Atom& atom) const {
    if (is_carboxylate(atom)) return "O.co2";
    if (atom.nbonds() != 1) return "O.3";
    return "O.2";
}

std::string SybylAtomTyper::type_sulphur_3d(const Atom& atom) const {
    const std::deque<HAtom> around = nonmetal_neighbours(atom);
    const size_t n = around.size();
    const long oxygens = count_element(around, 8);
    if (n == 3 && oxygens == 1) return "S.o";
    if (n == 4 && oxygens > 1) return "S.o2";
    if (n > 1) return "S.3";
    return "S.2";
}

bool SybylAtomTyper::is_carboxylate(const Atom& atom) const {
    if (oxygen_treatment_ == HYDROGENS_KNOWN) return is_carboxylate_protonation_state_known(atom);
    return is_carboxylate_protonation_state_unknown(atom);
}

std::string SybylAtomTyper::calc_bond_type(const Bond& bond) const {
    const HAtom ends[2] = {bond.atom1(), bond.atom2()};
    for (const HAtom& end : ends) {
        std::deque<HBond> bonds = end->bonds();
        if (count_of_type(bonds, UNKNOWN_BOND) != static_cast<long>(bonds.size())) return "un";
    }
    return calc_3d_ruled_bond_type(bond);
}

std::string SybylAtomTyper::calc_3d_ruled_bond_type(const Bond& bond) const {
    const std::string t1 = atom_type(*bond.atom1());
    const std::string t2 = atom_type(*bond.atom2());
    static const char* const single_types[] = {"H", "C.3", "S.3", "O.3", "N.4", "N.3", "F", "Cl", "Br"};
    for (const char* t : single_types)
        if (t1 == t || t2 == t) return "1";
    if ((t1 == "O.2" && t2 == "C.2") || (t1 == "C.2" && t2 == "O.2")) return "2";
    return "un";
}

Angle SybylAtomTyper::average_bond_angle(const Atom& atom, bool& ok) const {
    ok = true;
    if (!atom.has_site() || atom.nbonds() <= 1) {
        ok = false;
        return Angle();
    }
    const Point apex = atom.site()->orth();
    std::deque<HAtom> around = atom.neighbours();
    double sum = 0.0;  // radians
    int npairs = 0;
    for (size_t i = 0; i < around.size(); ++i) {
        if (!around[i]->has_site()) continue;
        for (size_t j = i + 1; j < around.size(); ++j) {
            if (!around[j]->has_site()) continue;
            sum += angle(around[i]->site()->orth(), apex, around[j]->site()->orth(), 1e-07).radians();
            ++npairs;
        }
    }
    // No pair of neighbours with sites: no angle to average, as for a lone bond.
    if (npairs == 0) {
        ok = false;
        return Angle();
    }
    return Angle::from_radians(sum / npairs);
}

}  // namespace molcryst

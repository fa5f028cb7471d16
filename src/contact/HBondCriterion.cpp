#include "molcryst/contact/HBondCriterion.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <map>
#include <stdexcept>
#include <typeinfo>
#include <unordered_map>
#include <utility>

#include "molcryst/elements/Element.h"
#include "molcryst/geometry/GeometryFunctions.h"
#include "molcryst/molecule/Atom.h"
#include "molcryst/molecule/Bond.h"
#include "molcryst/molecule/Molecule.h"
#include "molcryst/molecule/Site.h"
#include "molcryst/support/Archive.h"
#include "molcryst/support/AtomPredicates.h"
#include "molcryst/support/BondPredicates.h"

namespace molcryst {

typedef HBondCriterion HB;
typedef std::deque<HBond> Bonds;

// What one group search has worked out about its atoms: their bits, their
// donor types (asked again by each hydrogen on a donor) and whether its
// pairs of molecules are equal. Atoms and molecules do not change during a
// search; the handles held keep each address from being reused by another atom.
struct HBondCriterion::Cache {
    std::unordered_map<const Atom*, std::pair<HAtom, int> > bits;
    std::unordered_map<const Atom*, std::pair<HAtom, DonorAtomType> > donor_types;
    std::map<std::pair<const Molecule*, const Molecule*>, bool> equal_molecules;
};

namespace {

// ---------------------------------------------------------------- bonds

int type_of(const HBond& bond) { return static_cast<int>(bond->type()); }

// The single set S: unknown, single and polymeric bonds.
bool is_single(int type) { return type == 0 || type == 1 || type == 6; }

// The multiple set M: double, triple, quadruple and aromatic bonds.
bool is_multiple(int type) { return type >= 2 && type <= 5; }

HAtom other_end(const HBond& bond, const Atom& atom) {
    HAtom first = bond->atom1();
    if (first.unhand() == &atom) return bond->atom2();
    return first;
}

int atomic_number(const HAtom& atom) { return atom->element().atomic_number(); }

bool is_metal(const HAtom& atom) { return !atom->element().non_metal(); }

// Whether any bond of `atom` has a type outside S.
bool has_non_single_bond(const Atom& atom) {
    for (const HBond& b : atom.bonds())
        if (!is_single(type_of(b))) return true;
    return false;
}

bool has_multiple_bond(const Atom& atom) {
    for (const HBond& b : atom.bonds())
        if (is_multiple(type_of(b))) return true;
    return false;
}

// The angle at `apex` between the ends `a` and `b`, in degrees.
double degrees_at(const Atom& apex, const Atom& a, const Atom& b) {
    return angle(a.site()->orth(), apex.site()->orth(), b.site()->orth(), 1e-07).degrees();
}

// The sum of the three angles at `atom` between pairs of `neighbours`, in
// degrees, or -1 when the atom or one of them has no site.
double angle_sum_at(const Atom& atom, const std::vector<HAtom>& neighbours) {
    if (!atom.has_site() || neighbours.size() != 3) return -1.0;
    for (const HAtom& n : neighbours)
        if (!n->has_site()) return -1.0;
    return degrees_at(atom, *neighbours[0], *neighbours[1]) + degrees_at(atom, *neighbours[0], *neighbours[2]) +
           degrees_at(atom, *neighbours[1], *neighbours[2]);
}

// ----------------------------------------------------- donor classification

// The first steps that the three donor rules share: the bonds with the metal
// bonds moved to the front, their number, the hydrogens among the rest and
// the formal charge.
struct DonorView {
    Bonds bonds;
    int nm = 0;
    int nH = 0;
    int q = 0;

    explicit DonorView(const Atom& atom) : bonds(atom.bonds()), q(atom.formal_charge()) {
        // A stable partition: each part keeps the atom's bond order, which
        // decides the "first non-metal bond" below.
        BondMetalPredicate<HBond> metal;
        std::stable_partition(bonds.begin(), bonds.end(), metal);
        nm = static_cast<int>(std::count_if(bonds.begin(), bonds.end(), metal));
        BondAtomicNumberPredicate<HBond> hydrogen(1);
        nH = static_cast<int>(std::count_if(bonds.begin() + nm, bonds.end(), hydrogen));
    }

    bool metal_bond_not_single() const {
        for (int i = 0; i < nm; ++i)
            if (!is_single(type_of(bonds[static_cast<std::size_t>(i)]))) return true;
        return false;
    }
};

HB::DonorAtomType n_donor_type(const Atom& atom) {
    const DonorView v(atom);
    const int q = v.q, nH = v.nH;
    const int score = HB::connectivity_score(atom, v.bonds, true, true);
    if (v.nm > 0) {
        if (nH > 0) return HB::DONOR_METAL_BOUND_N;
        if (q < 0) return HB::NOT_DONOR;
        if (v.metal_bond_not_single()) return HB::NOT_DONOR;
        if (score >= 30) return HB::NOT_DONOR;
        if (score != 20) return HB::DONOR_METAL_BOUND_N;
        const std::size_t first = static_cast<std::size_t>(v.nm);
        if (v.bonds.size() - first == 2) {
            for (std::size_t i = first; i < v.bonds.size(); ++i)
                if (has_multiple_bond(*other_end(v.bonds[i], atom))) return HB::NOT_DONOR;
            return HB::DONOR_METAL_BOUND_N;
        }
        if (v.nm != 1) return HB::DONOR_METAL_BOUND_N;
        // A score of 20 leaves at least one non-metal bond.
        const HBond& b = v.bonds[first];
        if (type_of(b) != 2) return HB::DONOR_METAL_BOUND_N;
        const HAtom x = other_end(b, atom);
        int nsingle = 0;
        for (const HBond& xb : x->bonds()) {
            const int t = type_of(xb);
            if ((t == 0 || t == 1) && atomic_number(other_end(xb, *x)) != 1) ++nsingle;
        }
        return nsingle < 2 ? HB::NOT_DONOR : HB::DONOR_METAL_BOUND_N;
    }

    if (nH == 0 && (score > 30 || (score == 30 && q <= 0) || (score == 20 && q < 0))) return HB::NOT_DONOR;
    // The bonds to atoms other than hydrogen, by type.
    std::vector<HAtom> heavy;
    int n1 = 0, n5 = 0, n2 = 0, nx = 0;
    for (const HBond& b : v.bonds) {
        HAtom x = other_end(b, atom);
        if (atomic_number(x) == 1) continue;
        heavy.push_back(x);
        const int t = type_of(b);
        if (is_single(t))
            ++n1;
        else if (t == 5)
            ++n5;
        else if (t == 2)
            ++n2;
        else
            ++nx;
    }
    const int total = n1 + n5 + n2 + nx;
    if (total < 3) {
        if (n5 == 2 && (nH > 0 || q > 0)) return HB::DONOR_AROMATIC_N;  // no ring size is asked
        if (n1 < 3) {
            for (const HAtom& x : heavy)
                for (const HBond& xb : x->bonds()) {
                    const int z = atomic_number(other_end(xb, *x));
                    if ((z == 8 || z == 16) && type_of(xb) == 2) return HB::DONOR_AMIDE_N;
                }
        }
        if (total == 1 && nH < 2 && q < 1 && n2 == 1) return HB::DONOR_IMINE_N;
    }
    const int sum = score + 10 * nH;
    if (n1 == total && total < 4 && (q > 0 || sum > 30)) return HB::DONOR_AMMONIUM_N;
    bool conjugated = false;  // some heavy neighbour has a bond outside S
    for (const HAtom& x : heavy)
        if (has_non_single_bond(*x)) conjugated = true;
    if (n1 == total && total <= 2 && q == 0 && sum < 40) {
        if (!conjugated) return HB::DONOR_PYRAMIDAL_N;
        if (sum == 30 && atom.nbonds() == 3) {
            const std::deque<HAtom> all = atom.neighbours();
            const double s = angle_sum_at(atom, std::vector<HAtom>(all.begin(), all.end()));
            if (s >= 0.0 && s < 350.0) return HB::DONOR_PYRAMIDAL_N;
        }
    }
    if (total < 3) {
        if (n2 == 0) {
            // "Any neighbour" read as the heavy neighbours, as in the pyramidal test above.
            if (sum < 40 && n1 == total && conjugated) return HB::DONOR_PLANAR_N;
        } else if (q > 0 || (nH == 2 && total == 1)) {
            return HB::DONOR_PLANAR_N;
        }
    }
    return HB::DONOR_UNCLASSIFIED_N;
}

HB::DonorAtomType o_donor_type(const Atom& atom) {
    const DonorView v(atom);
    const int q = v.q, nH = v.nH;
    const int score = HB::connectivity_score(atom, v.bonds, true, true);
    if (v.nm > 0) {
        if (nH > 0) return HB::DONOR_METAL_BOUND_O;
        if (q < 0 && score > 0) return HB::NOT_DONOR;
        if (score > 15) return HB::NOT_DONOR;
        if (v.metal_bond_not_single()) return HB::NOT_DONOR;
        if (score == 10 && has_non_single_bond(*other_end(v.bonds[static_cast<std::size_t>(v.nm)], atom)))
            return HB::NOT_DONOR;
        return HB::DONOR_METAL_BOUND_O;
    }
    if (score > 20 || (score == 20 && q <= 0) || (score == 10 && q < 0)) return HB::NOT_DONOR;
    if (score == 0 && (q == 0 || nH == 2)) return HB::DONOR_WATER_O;
    if (score == 10 && (q == 0 || nH == 1)) return HB::DONOR_HYDROXYL_O;
    return HB::DONOR_UNCLASSIFIED_O;
}

HB::DonorAtomType s_donor_type(const Atom& atom) {
    const DonorView v(atom);
    const int q = v.q, nH = v.nH;
    if (v.nm > 0) {
        if (nH > 0) return HB::DONOR_METAL_BOUND_S;
        if (v.metal_bond_not_single()) return HB::NOT_DONOR;
        const int score = HB::connectivity_score(atom, v.bonds, true, true);
        if (q < 0 && score > 0) return HB::NOT_DONOR;
        if (score > 14) return HB::NOT_DONOR;
        if (score == 10)
            for (std::size_t i = static_cast<std::size_t>(v.nm); i < v.bonds.size(); ++i)
                if (has_non_single_bond(*other_end(v.bonds[i], atom))) return HB::NOT_DONOR;
        return HB::DONOR_METAL_BOUND_S;
    }
    if (nH == 0) {
        const int score = HB::connectivity_score(atom, v.bonds, true, true);
        if (score > 20 || (score == 20 && q <= 0) || (score == 10 && q < 0)) return HB::NOT_DONOR;
    }
    return HB::DONOR_NON_METAL_BOUND_S;
}

// -------------------------------------------------- acceptor classification

// The bonds with those to atoms other than hydrogen moved to the front
// (each part in the atom's order), and the two counts.
struct AcceptorView {
    Bonds bonds;
    int heavy = 0;
    int nH = 0;
    int q = 0;

    explicit AcceptorView(const Atom& atom) : bonds(atom.bonds()), q(atom.formal_charge()) {
        const auto not_hydrogen = [&atom](const HBond& b) { return atomic_number(other_end(b, atom)) != 1; };
        std::stable_partition(bonds.begin(), bonds.end(), not_hydrogen);
        heavy = static_cast<int>(std::count_if(bonds.begin(), bonds.end(), not_hydrogen));
        nH = static_cast<int>(bonds.size()) - heavy;
    }

    std::vector<HAtom> heavy_neighbours(const Atom& atom) const {
        std::vector<HAtom> out;
        for (int i = 0; i < heavy; ++i) out.push_back(other_end(bonds[static_cast<std::size_t>(i)], atom));
        return out;
    }
};

HB::AcceptorAtomType n_acceptor_type(const Atom& atom) {
    const AcceptorView v(atom);
    const int q = v.q, nH = v.nH, heavy = v.heavy;
    const int s0 = HB::connectivity_score(atom, v.bonds, false, true);
    if (s0 + 10 * nH == 0 || s0 + 10 * nH > 30) return HB::NON_ACCEPTOR;
    if (q > 0) return HB::NON_ACCEPTOR;
    BondMetalPredicate<HBond> metal;
    const long nmet = std::count_if(v.bonds.begin(), v.bonds.end(), metal);

    // A planar or linear nitrogen, or one whose lone pair is conjugated, accepts nothing.
    const std::vector<HAtom> x = v.heavy_neighbours(atom);
    if (heavy == 3 && angle_sum_at(atom, x) > 355.0) return HB::NON_ACCEPTOR;
    if (heavy == 2) {
        if (atom.has_site() && x[0]->has_site() && x[1]->has_site() && degrees_at(atom, *x[0], *x[1]) > 175.0)
            return HB::NON_ACCEPTOR;
        if (s0 == 20 && q == 0 && (has_non_single_bond(*x[0]) || has_non_single_bond(*x[1]))) return HB::NON_ACCEPTOR;
    }
    if (heavy == 1 && s0 == 10 && q == 0 && has_non_single_bond(*x[0])) return HB::NON_ACCEPTOR;

    if (nmet > 0) return HB::ACCEPTOR_METAL_BOUND_N;
    const int s = HB::connectivity_score(atom, v.bonds, true, true);
    if (heavy == 1) {
        if ((s == 30 && nH == 0) || (q < 0 && s > 14)) return HB::ACCEPTOR_TERMINAL_N;
        if (nH == 1 && q <= 0 && 14 < s && s < 30) return HB::ACCEPTOR_TWO_COORDINATE_N;
        if (s == 20 && q == 0) return HB::ACCEPTOR_TWO_COORDINATE_N;
        if (s == 10 && nH <= 2 && q <= 0) return HB::ACCEPTOR_THREE_COORDINATE_N;
        return HB::ACCEPTOR_UNCLASSIFIED_N;
    }
    if (heavy == 2) {
        const int t0 = type_of(v.bonds[0]), t1 = type_of(v.bonds[1]);
        if (nH == 0 && q <= 0 && t0 == 5 && t1 == 5) return HB::ACCEPTOR_AROMATIC_N;
        if (t0 != 9 && t1 != 9 && nH == 0 && q == 0 && 24 < s && s < 40) return HB::ACCEPTOR_TWO_COORDINATE_N;
        if (s == 20 && nH <= 1 && q <= 0) return HB::ACCEPTOR_THREE_COORDINATE_N;
        return HB::ACCEPTOR_UNCLASSIFIED_N;
    }
    if (heavy == 3 && s == 30 && nH == 0 && q <= 0) return HB::ACCEPTOR_THREE_COORDINATE_N;
    return HB::ACCEPTOR_UNCLASSIFIED_N;
}

HB::AcceptorAtomType o_acceptor_type(const Atom& atom) {
    const AcceptorView v(atom);
    const int q = v.q, nH = v.nH, heavy = v.heavy;
    const int s0 = HB::connectivity_score(atom, v.bonds, false, true);
    if (s0 + 10 * nH > 30) return HB::NON_ACCEPTOR;
    if (std::any_of(v.bonds.begin(), v.bonds.end(), BondMetalPredicate<HBond>())) return HB::ACCEPTOR_METAL_BOUND_O;
    if (heavy == 0 && (nH == 0 || nH == 2 || (q == 0 && nH == 1))) return HB::ACCEPTOR_WATER_O;
    if (heavy == 1) {
        const int s = HB::connectivity_score(atom, v.bonds, true, true);
        if (nH == 0 && (s > 10 || (q < 0 && s == 10))) {
            const HAtom x = other_end(v.bonds[0], atom);
            if (atomic_number(x) == 6) {
                // Another oxygen with one bond on the same carbon: a carboxylate.
                for (const HAtom& y : x->neighbours())
                    if (y.unhand() != &atom && atomic_number(y) == 8 && y->nbonds() == 1)
                        return HB::ACCEPTOR_CARBOXYLATE_O;
            }
            return HB::ACCEPTOR_TERMINAL_O;
        }
        if (s == 10 && (nH == 1 || (nH == 0 && q == 0))) return HB::ACCEPTOR_HYDROXYL_O;
    }
    if (heavy == 2 && nH == 0 && q == 0) return HB::ACCEPTOR_BRIDGING_O;
    return HB::ACCEPTOR_UNCLASSIFIED_O;
}

HB::AcceptorAtomType s_acceptor_type(const Atom& atom) {
    const Bonds bonds = atom.bonds();
    const int q = atom.formal_charge();
    int nH = 0;
    bool metal_neighbour = false;
    for (const HBond& b : bonds) {
        const HAtom x = other_end(b, atom);
        if (atomic_number(x) == 1) ++nH;
        if (is_metal(x)) metal_neighbour = true;
    }
    const int s0 = HB::connectivity_score(atom, bonds, false, true);
    if (s0 + 10 * nH > 30) return HB::NON_ACCEPTOR;
    if (metal_neighbour) return HB::ACCEPTOR_METAL_BOUND_S;
    const int s = HB::connectivity_score(atom, bonds, true, true);
    if (nH == 0 && atom.neighbours().size() == 1 && (s > 10 || (q < 0 && s == 10))) return HB::ACCEPTOR_TERMINAL_S;
    return HB::ACCEPTOR_UNCLASSIFIED_S;
}

// F, Cl, Br and I: bound to a metal, alone, or anything else; `first` is
// the metal bound type, followed by the ion and the unclassified one.
HB::AcceptorAtomType halogen_acceptor_type(const Atom& atom, HB::AcceptorAtomType first) {
    const std::deque<HAtom> neighbours = atom.neighbours();
    if (std::any_of(neighbours.begin(), neighbours.end(), AtomMetalPredicate<HAtom>())) return first;
    if (neighbours.empty()) return static_cast<HB::AcceptorAtomType>(first + 1);
    return static_cast<HB::AcceptorAtomType>(first + 2);
}

// ------------------------------------------------------------ the tables

template <class Properties, class Type>
std::vector<Properties> make_table(const std::vector<std::pair<const char*, int> >& rows) {
    std::vector<Properties> table;
    for (std::size_t i = 0; i < rows.size(); ++i)
        table.push_back(Properties(static_cast<Type>(i), rows[i].first, rows[i].second));
    return table;
}

template <class Properties, class Type>
Type type_named(const std::vector<Properties>& table, const std::string& name, Type none) {
    for (const Properties& p : table)
        if (p.name == name) return p.type;
    return none;
}

template <class Properties>
void set_range(std::vector<Properties>& table, int first, int last, HB::PropertySetting setting) {
    for (int i = std::max(first, 0); i <= last && i < static_cast<int>(table.size()); ++i)
        table[static_cast<std::size_t>(i)].setting = setting;
}

bool is_donor_element(int z) { return z == 7 || z == 8 || z == 16; }
bool is_acceptor_element(int z) { return z == 7 || z == 8 || z == 9 || z == 16 || z == 17 || z == 35 || z == 53; }

double vdw_radius_of(Element::TARNCode code) { return Element(code).vdw_radius(); }

}  // namespace

// ---------------------------------------------------------- type switches

HBondCriterion::AtomTypeProperties::~AtomTypeProperties() {}

bool HBondCriterion::AtomTypeProperties::operator==(const AtomTypeProperties& other) const {
    return setting == other.setting && name == other.name;
}

bool HBondCriterion::AtomTypeProperties::operator!=(const AtomTypeProperties& other) const {
    return !AtomTypeProperties::operator==(other);
}

std::ostream& HBondCriterion::AtomTypeProperties::print(std::ostream& os) const {
    os << (setting == SET ? "set " : "unset ") << name;
    return os;
}

void HBondCriterion::AtomTypeProperties::write(Archive& ar) const { ar << static_cast<int>(setting) << name; }

void HBondCriterion::AtomTypeProperties::read(Archive& ar) {
    int value = 0;
    std::string text;
    {
        Archive::Field field(ar, "HBondCriterion::AtomTypeProperties::read setting");
        ar >> value;
        // Only -1, 0 and 1 are ever written.
        if (value < BRACKET || value > SET) ar.read_error("setting " + std::to_string(value) + " is not -1, 0 or 1");
    }
    {
        Archive::Field field(ar, "HBondCriterion::AtomTypeProperties::read name");
        ar >> text;
    }
    setting = value;
    name = text;
}

HBondCriterion::DonorAtomTypeProperties::~DonorAtomTypeProperties() {}

bool HBondCriterion::DonorAtomTypeProperties::operator==(const DonorAtomTypeProperties& other) const {
    return type == other.type && AtomTypeProperties::operator==(other);
}

bool HBondCriterion::DonorAtomTypeProperties::operator!=(const DonorAtomTypeProperties& other) const {
    return !DonorAtomTypeProperties::operator==(other);
}

HBondCriterion::AcceptorAtomTypeProperties::~AcceptorAtomTypeProperties() {}

bool HBondCriterion::AcceptorAtomTypeProperties::operator==(const AcceptorAtomTypeProperties& other) const {
    return type == other.type && AtomTypeProperties::operator==(other);
}

bool HBondCriterion::AcceptorAtomTypeProperties::operator!=(const AcceptorAtomTypeProperties& other) const {
    return !AcceptorAtomTypeProperties::operator==(other);
}

std::ostream& operator<<(std::ostream& os, const HBondCriterion::AtomTypeProperties& properties) {
    return properties.print(os);
}

const std::vector<HBondCriterion::DonorAtomTypeProperties>& HBondCriterion::default_donors() {
    static const std::vector<DonorAtomTypeProperties> table = make_table<DonorAtomTypeProperties, DonorAtomType>({
        {"+nitrogen", -1},
        {"metal bound N", 1},
        {"imine N", 1},
        {"aromatic (6-ring) N", 1},
        {"amide or thioamide N", 1},
        {"planar N", 1},
        {"pyramidal N", 1},
        {"ammonium N (NH4+, RNH3+ etc.)", 1},
        {"unclassified N", 1},
        {"-nitrogen", -1},
        {"+oxygen", -1},
        {"metal bound O", 1},
        {"water O", 1},
        {"hydroxyl O", 1},
        {"unclassified O", 1},
        {"-oxygen", -1},
        {"+sulphur", -1},
        {"metal bound S", 1},
        {"non metal bound S", 1},
        {"-sulphur", -1},
        {"not donor", -1},
    });
    return table;
}

const std::vector<HBondCriterion::AcceptorAtomTypeProperties>& HBondCriterion::default_acceptors() {
    static const std::vector<AcceptorAtomTypeProperties> table =
        make_table<AcceptorAtomTypeProperties, AcceptorAtomType>({
            {"+nitrogen", -1},
            {"metal bound N", 1},
            {"terminal N (cyano, etc.)", 1},
            {"aromatic (6-ring) N", 1},
            {"other 2-coordinate N", 1},
            {"3-coordinate N", 1},
            {"unclassified N", 1},
            {"-nitrogen", -1},
            {"+oxygen", -1},
            {"metal bound O", 1},
            {"carboxylate O", 1},
            {"other terminal O (C=O, S=O ...)", 1},
            {"water O", 1},
            {"hydroxyl O", 1},
            {"bridging O (ether, etc.)", 1},
            {"unclassified O", 1},
            {"-oxygen", -1},
            {"+sulphur", -1},
            {"metal bound S", 1},
            {"terminal S", 1},
            {"unclassified S", 1},
            {"-sulphur", -1},
            {"+fluorine", -1},
            {"metal bound F", 1},
            {"fluoride ion (F-)", 1},
            {"unclassified F", 0},
            {"-fluorine", -1},
            {"+chlorine", -1},
            {"metal bound Cl", 1},
            {"chloride ion (Cl-)", 1},
            {"unclassified Cl", 1},
            {"-chlorine", -1},
            {"+bromine", -1},
            {"metal bound Br", 1},
            {"bromide ion (Br-)", 1},
            {"unclassified Br", 1},
            {"-bromine", -1},
            {"+iodine", -1},
            {"metal bound I", 1},
            {"iodide ion (I-)", 1},
            {"unclassified I", 1},
            {"-iodine", -1},
            {"non acceptor", -1},
        });
    return table;
}

// -------------------------------------------------------------- criterion

HBondCriterion::HBondCriterion(double max_distance, double min_distance, const Angle& min_angle, bool vdw_corrected,
                               bool no_hydrogens, ContactType type, int min_path, int max_path)
    : ContactCriterion(type, min_path, max_path, false),
      donors_(default_donors()),
      acceptors_(default_acceptors()),
      max_distance_(max_distance),
      min_distance_(min_distance),
      min_angle_(min_angle),
      no_hydrogens_(no_hydrogens),
      vdw_corrected_(vdw_corrected) {}

// A copy starts with no search of its own under way.
HBondCriterion::HBondCriterion(const HBondCriterion& other)
    : ContactCriterion(other),
      donors_(other.donors_),
      acceptors_(other.acceptors_),
      max_distance_(other.max_distance_),
      min_distance_(other.min_distance_),
      min_angle_(other.min_angle_),
      no_hydrogens_(other.no_hydrogens_),
      vdw_corrected_(other.vdw_corrected_) {}

HBondCriterion& HBondCriterion::operator=(const HBondCriterion& other) {
    if (this == &other) return *this;
    ContactCriterion::operator=(other);
    donors_ = other.donors_;
    acceptors_ = other.acceptors_;
    max_distance_ = other.max_distance_;
    min_distance_ = other.min_distance_;
    min_angle_ = other.min_angle_;
    no_hydrogens_ = other.no_hydrogens_;
    vdw_corrected_ = other.vdw_corrected_;
    // What a search under way has worked out no longer holds for these switches.
    if (cache_) cache_.reset(new Cache());
    return *this;
}

HBondCriterion::~HBondCriterion() {}

HContactCriterion HBondCriterion::clone() const { return HContactCriterion(new HBondCriterion(*this)); }

HBondCriterion& HBondCriterion::assign(const ContactCriterion& other) {
    if (typeid(other) != typeid(*this)) assign_type_error("assign(const ContactCriterion&)");
    return *this = static_cast<const HBondCriterion&>(other);
}

const char* HBondCriterion::class_name() const { return "HBondCriterion"; }

// Iodine is the largest acceptor, sulphur the largest donor atom and a
// hydrogen the tested donor end when hydrogens are used.
double HBondCriterion::max_radius() const {
    if (!vdw_corrected_) return max_distance_;
    return max_distance_ + vdw_radius_of(Element::I) + vdw_radius_of(no_hydrogens_ ? Element::S : Element::H);
}

// Every pair test measures the distance between the two atoms of the pair
// themselves (the hydrogen, not its donor, when hydrogens are used), so
// max_distance bounds it outright; with the radii subtracted, the bound
// holds while no atom that may stand at an end is larger than the radius
// max_radius takes for that end. The switches "not donor" and "non
// acceptor" set to 1 would admit any element.
bool HBondCriterion::radius_bounds_reach() const {
    if (typeid(*this) != typeid(HBondCriterion)) return false;
    if (!vdw_corrected_) return true;
    const double donor_end = vdw_radius_of(no_hydrogens_ ? Element::S : Element::H);
    const double acceptor_end = vdw_radius_of(Element::I);
    const bool any_donor = donors_[NOT_DONOR].setting == SET;
    const bool any_acceptor = acceptors_[NON_ACCEPTOR].setting == SET;
    for (int code = 0; code < Element::ncodes_; ++code) {
        const int z = Element::atomic_numbers_[static_cast<std::size_t>(code)];
        const double r = Element::vdw_radii_[static_cast<std::size_t>(code)];
        const bool classified = z != 1 && z != 6;
        const bool donor = no_hydrogens_ ? classified && (any_donor || is_donor_element(z)) : z == 1;
        const bool acceptor = classified && (any_acceptor || is_acceptor_element(z));
        if (donor && !(r <= donor_end)) return false;
        if (acceptor && !(r <= acceptor_end)) return false;
    }
    return true;
}

int HBondCriterion::path_search_depth() const {
    if (no_hydrogens_ || max_path() == INT_MAX) return max_path();
    return max_path() + 1;
}

void HBondCriterion::begin_group_search() const {
    if (search_depth_++ == 0) cache_.reset(new Cache());
}

void HBondCriterion::end_group_search() const {
    if (--search_depth_ == 0) cache_.reset();
}

// ---------------------------------------------------------- classification

int HBondCriterion::connectivity_score(const Atom& atom, const std::deque<HBond>& bonds, bool skip_metals,
                                       bool skip_hydrogens) {
    int score = 0;
    for (const HBond& b : bonds) {
        const HAtom x = other_end(b, atom);
        if (skip_hydrogens && atomic_number(x) == 1) continue;
        if (skip_metals && is_metal(x)) continue;
        switch (type_of(b)) {
            case 0:
            case 1:
            case 6:
                score += 10;
                break;
            case 2:
                score += 20;
                break;
            case 3:
                score += 30;
                break;
            case 4:
                score += 40;
                break;
            case 5:
            case 7:
                score += 15;
                break;
            default:
                break;
        }
    }
    return score;
}

HBondCriterion::DonorAtomType HBondCriterion::donor_atom_type(const Atom& atom) {
    switch (atom.element().atomic_number()) {
        case 7:
            return n_donor_type(atom);
        case 8:
            return o_donor_type(atom);
        case 16:
            return s_donor_type(atom);
        default:
            return NOT_DONOR;
    }
}

HBondCriterion::AcceptorAtomType HBondCriterion::acceptor_atom_type(const Atom& atom) {
    switch (atom.element().atomic_number()) {
        case 7:
            return n_acceptor_type(atom);
        case 8:
            return o_acceptor_type(atom);
        case 9:
            return halogen_acceptor_type(atom, ACCEPTOR_METAL_BOUND_F);
        case 16:
            return s_acceptor_type(atom);
        case 17:
            return halogen_acceptor_type(atom, ACCEPTOR_METAL_BOUND_CL);
        case 35:
            return halogen_acceptor_type(atom, ACCEPTOR_METAL_BOUND_BR);
        case 53:
            return halogen_acceptor_type(atom, ACCEPTOR_METAL_BOUND_I);
        default:
            return NON_ACCEPTOR;
    }
}

HBondCriterion::DonorAtomType HBondCriterion::cached_donor_type(const HAtom& atom) const {
    if (cache_) {
        auto found = cache_->donor_types.find(atom.unhand());
        if (found != cache_->donor_types.end()) return found->second.second;
    }
    ++nclassified_;
    const DonorAtomType type = donor_atom_type(*atom);
    if (cache_) cache_->donor_types.emplace(atom.unhand(), std::make_pair(atom, type));
    return type;
}

int HBondCriterion::hbond_type(const Atom& atom) const {
    const int z = atom.element().atomic_number();
    if (z == 1) {
        // A hydrogen counts through the one atom it hangs on.
        const std::deque<HAtom> neighbours = atom.neighbours();
        if (neighbours.size() != 1 || atomic_number(neighbours[0]) == 6) return 0;
        return donors_[static_cast<std::size_t>(cached_donor_type(neighbours[0]))].setting == SET ? 1 : 0;
    }
    if (z == 6) return 0;
    nclassified_ += 2;
    int bits = 0;
    if (donors_[static_cast<std::size_t>(donor_atom_type(atom))].setting == SET) bits |= 4;
    if (acceptors_[static_cast<std::size_t>(acceptor_atom_type(atom))].setting == SET) bits |= 2;
    return bits;
}

int HBondCriterion::cached_hbond_type(const HAtom& atom) const {
    if (!cache_) return hbond_type(*atom);
    auto found = cache_->bits.find(atom.unhand());
    if (found != cache_->bits.end()) return found->second.second;
    const int bits = hbond_type(*atom);
    cache_->bits.emplace(atom.unhand(), std::make_pair(atom, bits));
    return bits;
}

bool HBondCriterion::test_atom(const Molecule& mol, int atom) const {
    const int bits = cached_hbond_type(mol.atom(atom));
    return (bits & (no_hydrogens_ ? 6 : 3)) != 0;
}

bool HBondCriterion::test_atom_from(const Molecule& mol, int atom) const { return test_atom(mol, atom); }
bool HBondCriterion::test_atom_to(const Molecule& mol, int atom) const { return test_atom(mol, atom); }

bool HBondCriterion::is_donor(const Atom& atom) const {
    if ((hbond_type(atom) & 4) == 0) return false;
    return no_hydrogens_ || atom.nhydrogens(true) >= 1;
}

bool HBondCriterion::is_acceptor(const Atom& atom) const { return (hbond_type(atom) & 2) != 0; }

bool HBondCriterion::is_donatable_hydrogen(const Atom& atom) const {
    return atom.element().atomic_number() == 1 && (hbond_type(atom) & 1) != 0;
}

bool HBondCriterion::is_hydrogen_bonding_atom(const Atom& atom) const { return hbond_type(atom) != 0; }

// ----------------------------------------------------------------- switches

void HBondCriterion::set_alphadonor(DonorAtomType type, PropertySetting setting) {
    set_range(donors_, type, type, setting);
}

void HBondCriterion::set_alphadonor(DonorAtomType first, DonorAtomType last, PropertySetting setting) {
    set_range(donors_, first, last, setting);
}

void HBondCriterion::set_alphadonor(const std::set<DonorAtomType>& types, PropertySetting setting) {
    for (DonorAtomType t : types) set_range(donors_, t, t, setting);
}

void HBondCriterion::set_acceptor(AcceptorAtomType type, PropertySetting setting) {
    set_range(acceptors_, type, type, setting);
}

void HBondCriterion::set_acceptor(AcceptorAtomType first, AcceptorAtomType last, PropertySetting setting) {
    set_range(acceptors_, first, last, setting);
}

void HBondCriterion::set_acceptor(const std::set<AcceptorAtomType>& types, PropertySetting setting) {
    for (AcceptorAtomType t : types) set_range(acceptors_, t, t, setting);
}

HBondCriterion::DonorAtomType HBondCriterion::string_to_donor_atom_type(const std::string& name) const {
    return type_named(donors_, name, NOT_DONOR);
}

HBondCriterion::AcceptorAtomType HBondCriterion::string_to_acceptor_atom_type(const std::string& name) const {
    return type_named(acceptors_, name, NON_ACCEPTOR);
}

// -------------------------------------------------------------- pair tests

bool HBondCriterion::molecules_equal(const Molecule& m1, const Molecule& m2) const {
    if (!cache_) return m1 == m2;
    const auto key = std::make_pair(&m1, &m2);
    auto found = cache_->equal_molecules.find(key);
    if (found != cache_->equal_molecules.end()) return found->second;
    const bool equal = m1 == m2;
    cache_->equal_molecules.emplace(key, equal);
    return equal;
}

bool HBondCriterion::within_distance_limits(const Molecule& m1, int atom1, const Molecule& m2, int atom2,
                                            double d) const {
    double v = d;
    if (vdw_corrected_) v -= m1.atom(atom1)->element().vdw_radius() + m2.atom(atom2)->element().vdw_radius();
    return !(v > max_distance_ || v < min_distance_);
}

HBasicContact HBondCriterion::find_contact_with_Hatom(const Molecule& mh, int hydrogen, const Molecule& ma,
                                                      int acceptor) const {
    const HAtom h = mh.atom(hydrogen);
    const HAtom a = ma.atom(acceptor);
    const Point& ph = h->site()->orth();
    const Point& pa = a->site()->orth();
    const double d = distance(ph, pa);
    const std::deque<HAtom> parents = h->neighbours();
    if (parents.size() != 1) return HBasicContact();
    if (!within_distance_limits(mh, hydrogen, ma, acceptor, d)) return HBasicContact();
    // A donor without a site gives no angle to test, and so no contact.
    if (!parents[0]->has_site()) return HBasicContact();
    const Angle dha = angle(parents[0]->site()->orth(), ph, pa, 1e-07);
    if (!(dha >= min_angle_ || dha <= -min_angle_)) return HBasicContact();
    if (molecules_equal(mh, ma) && !test_path(mh, hydrogen, acceptor)) return HBasicContact();
    return HBasicContact(new BasicContact(hydrogen, acceptor, d));
}

HBasicContact HBondCriterion::find_contact_without_Hatom(const Molecule& md, int donor, const Molecule& ma,
                                                         int acceptor) const {
    const double d = distance(md.atom(donor)->site()->orth(), ma.atom(acceptor)->site()->orth());
    if (!within_distance_limits(md, donor, ma, acceptor, d)) return HBasicContact();
    if (molecules_equal(md, ma) && !test_path(md, donor, acceptor)) return HBasicContact();
    return HBasicContact(new BasicContact(donor, acceptor, d));
}

HBasicContact HBondCriterion::find_pair(const Molecule& m1, int atom1, const Molecule& m2, int atom2) const {
    const int t1 = cached_hbond_type(m1.atom(atom1));
    const int t2 = cached_hbond_type(m2.atom(atom2));
    const int donor_bit = no_hydrogens_ ? 4 : 1;
    if ((t1 & donor_bit) != 0 && (t2 & 2) != 0)
        return no_hydrogens_ ? find_contact_without_Hatom(m1, atom1, m2, atom2)
                             : find_contact_with_Hatom(m1, atom1, m2, atom2);
    if ((t2 & donor_bit) != 0 && (t1 & 2) != 0) {
        HBasicContact c = no_hydrogens_ ? find_contact_without_Hatom(m2, atom2, m1, atom1)
                                        : find_contact_with_Hatom(m2, atom2, m1, atom1);
        if (c.unhand() != nullptr) c->switch_groups();  // read from atom1 to atom2
        return c;
    }
    return HBasicContact();
}

Hvector_HMolecularContact HBondCriterion::find_contact(const HMolecule& m1, int atom1, const HMolecule& m2,
                                                       int atom2) const {
    Hvector_HMolecularContact result(new vector_HMolecularContact());
    if (!test_contact_type(m1, m2)) return result;
    const HBasicContact c = find_pair(*m1, atom1, *m2, atom2);
    if (c.unhand() != nullptr) result->push_back(HMolecularContact(new MolecularContact(*c, m1, m2, 3)));
    return result;
}

// Inside one molecule the type test is that of a molecule with itself:
// intermolecular criteria find nothing.
Hvector_HBasicContact HBondCriterion::find_intramolecular_contact(const Molecule& mol, int atom1, int atom2) const {
    Hvector_HBasicContact result(new vector_HBasicContact());
    if (type() == INTERMOLECULAR) return result;
    const HBasicContact c = find_pair(mol, atom1, mol, atom2);
    if (c.unhand() != nullptr) result->push_back(c);
    return result;
}

// A hydrogen is any atom of atomic number 1, deuterium included.
bool HBondCriterion::test_path(const Molecule& mol, int atom1, int atom2) const {
    int path = path_length(mol, atom1, atom2);
    if (!no_hydrogens_ &&
        (mol.atom(atom1)->element().atomic_number() == 1 || mol.atom(atom2)->element().atomic_number() == 1))
        --path;
    return min_path() <= path && path <= max_path();
}

// ------------------------------------------------------- print and archive

// The angle is printed as its value in degrees: the Angle's own print form
// would say "degrees" twice.
std::ostream& HBondCriterion::print(std::ostream& os) const {
    os << "Contacts must be closer than " << max_distance_ << " + sum of vdw radii Angstroms\n";
    if (no_hydrogens_)
        os << "D-H ... A angle tolerance ignored: " << min_angle_.degrees() << " degrees\n";
    else
        os << "D-H ... A angle must be greater than " << min_angle_.degrees() << " degrees\n";
    const std::vector<DonorAtomTypeProperties>& donors = default_donors();
    for (std::size_t i = 0; i < donors_.size(); ++i)
        if (donors_[i] != donors[i]) donors_[i].print(os);
    const std::vector<AcceptorAtomTypeProperties>& acceptors = default_acceptors();
    for (std::size_t i = 0; i < acceptors_.size(); ++i)
        if (acceptors_[i] != acceptors[i]) acceptors_[i].print(os);
    return ContactCriterion::print(os);
}

void HBondCriterion::write(Archive& ar) const {
    ar << max_distance_ << min_distance_ << (vdw_corrected_ ? 1 : 0) << (no_hydrogens_ ? 1 : 0);
    min_angle_.write(ar);
    ContactCriterion::write(ar);
}

void HBondCriterion::read(Archive& ar) {
    // Everything into locals and a copy of the base part: a failed read
    // changes nothing.
    double max_distance = 0.0, min_distance = 0.0, radians = 0.0;
    int vdw_corrected = 0, no_hydrogens = 0;
    {
        Archive::Field field(ar, "HBondCriterion::read max_distance and min_distance");
        ar >> max_distance >> min_distance;
    }
    {
        Archive::Field field(ar, "HBondCriterion::read vdw_corrected");
        ar >> vdw_corrected;
    }
    {
        Archive::Field field(ar, "HBondCriterion::read no_hydrogens");
        ar >> no_hydrogens;
    }
    {
        Archive::Field field(ar, "HBondCriterion::read min_angle");
        ar >> radians;
        if (!std::isfinite(radians)) ar.read_error("the angle is not a finite number");
    }
    HBondCriterion base_part(*this);
    base_part.ContactCriterion::read(ar);
    ContactCriterion::operator=(base_part);
    max_distance_ = max_distance;
    min_distance_ = min_distance;
    vdw_corrected_ = vdw_corrected != 0;
    no_hydrogens_ = no_hydrogens != 0;
    min_angle_ = Angle::from_radians(radians);
}

bool HBondCriterion::operator==(const ContactCriterion& other) const {
    if (typeid(other) != typeid(*this)) return false;
    return *this == static_cast<const HBondCriterion&>(other);
}

bool HBondCriterion::operator==(const HBondCriterion& other) const {
    if (min_distance_ != other.min_distance_ || max_distance_ != other.max_distance_) return false;
    if (min_angle_ != other.min_angle_ || no_hydrogens_ != other.no_hydrogens_) return false;
    if (!equals(other)) return false;
    for (std::size_t i = 0; i < donors_.size(); ++i)
        if (donors_[i] != other.donors_[i]) return false;
    for (std::size_t i = 0; i < acceptors_.size(); ++i)
        if (acceptors_[i] != other.acceptors_[i]) return false;
    return true;
}

}  // namespace molcryst

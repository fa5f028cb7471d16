#include "molcryst/molecule/MoleculeFunctions.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>

#include "molcryst/crystal/CrystalMaker.h"
#include "molcryst/geometry/Angle.h"
#include "molcryst/geometry/Cell.h"
#include "molcryst/geometry/GeometryFunctions.h"
#include "molcryst/geometry/Plane.h"
#include "molcryst/geometry/Transformation.h"
#include "molcryst/molecule/Atom3d.h"
#include "molcryst/molecule/Bond3d.h"
#include "molcryst/molecule/Molecule3d.h"
#include "molcryst/molecule/Site.h"
#include "molcryst/support/TARNLog.h"

namespace molcryst {

namespace {

typedef Vector<double, 3> Vec;

const double tolerance = 1e-07;
const Angle tetrahedral = Angle::acos(-1.0 / 3.0);

// ---------------------------------------------------------------- counting

// Bond types that make a nitrogen or phosphorus part of a conjugated or
// multiply bonded system, so that its bond to a metal is a real bond.
bool unsaturated(BondType type) {
    switch (type) {
        case DOUBLE_BOND:
        case TRIPLE_BOND:
        case QUADRUPLE_BOND:
        case AROMATIC_BOND:
        case DELOCALISED_BOND:
        case PI_BOND:
            return true;
        default:
            return false;
    }
}

BondType bond_type(const Molecule& m, int a, int b) { return m.bond(m.atom(a), m.atom(b))->type(); }

bool n_or_p(const Element& e) { return e.atomic_number() == 7 || e.atomic_number() == 15; }

// Whether the single bond from `donor` (an N or P on exactly one metal) to
// its metal is a lone pair given: the donor and its non-metal neighbours are
// saturated, or a non-metal neighbour ends there.
bool dative_donor(const Molecule& m, int donor) {
    const int nheavy = m.atom_nconnections_nonhydrogen(donor);
    if (nheavy == 1) return true;
    bool simple = true;
    // Each list is held by its handle: a loop over the temporary would dangle.
    const Hvector_int heavy = m.atom_connections_nonhydrogen(donor);
    for (int n : *heavy)
        if (unsaturated(bond_type(m, donor, n))) simple = false;
    if (!simple) return false;
    const Hvector_int nonmetal = m.atom_connections_nonmetal(donor);
    for (int n : *nonmetal) {
        std::vector<int> beyond = *m.atom_connections_nonhydrogen(n);
        beyond.erase(std::remove(beyond.begin(), beyond.end(), donor), beyond.end());
        if (beyond.empty()) return true;
        for (int b : beyond)
            if (unsaturated(bond_type(m, n, b))) simple = false;
    }
    return simple;
}

// The boron rule: a boron whose heavy neighbours and itself form a cage of
// ring bonds among borons and carbons, with no other atom met before the
// first boron, carries one hydrogen whatever its bond sum.
bool boron_in_cage(const Molecule& m, int atom) {
    std::vector<int> heavy = *m.atom_connections_nonhydrogen(atom);
    heavy.push_back(atom);
    for (int b : m.bond_subset(heavy))
        if (!m.bond(b)->cyclic()) return false;
    for (int a : heavy) {
        if (m.atom(a)->element().atomic_number() == 5) break;
        return false;
    }
    for (int a : heavy) {
        const int z = m.atom(a)->element().atomic_number();
        if (z != 5 && z != 6) return false;
    }
    return true;
}

// ---------------------------------------------------------------- placement

// X-H lengths by the parent's element, Angstrom.
double hydrogen_bond_length(const Element& parent) {
    static const std::map<int, double> lengths = {{Element::C, 1.083}, {Element::N, 1.009}, {Element::O, 0.983}};
    const auto it = lengths.find(parent.code());
    if (it != lengths.end()) return it->second;
    return parent.atomic_number() > 8 ? 1.4 : 1.0;
}

Point position(const HAtom& a) { return a->site()->orth(); }

// The neighbours of an atom in the order of their indices. The graph keeps
// them in the order of their handles, which follows where they were
// allocated: placement that read them so would differ from run to run.
std::vector<HAtom> neighbours_by_index(const Atom& atom) {
    const std::deque<HAtom> around = atom.neighbours();
    std::vector<HAtom> sorted(around.begin(), around.end());
    std::stable_sort(sorted.begin(), sorted.end(), [](const HAtom& a, const HAtom& b) {
        return (a.unhand() != nullptr ? a->index() : -1) < (b.unhand() != nullptr ? b->index() : -1);
    });
    return sorted;
}

// A unit vector along `v`; `fallback` when `v` is too short to have a
// direction (two atoms on one spot), so that no coordinate becomes NaN.
Vec unit_or(Vec v, const Vec& fallback) {
    const double length = v.length();
    if (!(length >= tolerance) || !std::isfinite(length)) return fallback;
    return v /= length;
}

void create_site_from_orth(HAtom atom, const Cell& cell, const Point& p) {
    atom->set_site(HSite(new Site(Site::orth(p, cell, 1.0))));
}

void set_atom_orth(HAtom atom, const Cell& cell, const Point& p) { create_site_from_orth(atom, cell, p); }

void set_internal_coordinates(HAtom atom, const Cell& cell, const Point& a, double distance, const Point& b,
                              const Angle& angle, const Point& c, const Angle& torsion) {
    set_atom_orth(atom, cell, internal_to_orthogonal(a, distance, b, angle, c, torsion, tolerance));
}

void set_bond_vector(const Cell& cell, const HAtom& centre, HAtom hydrogen, const Vec& vector, double length) {
    Vec v = vector;
    v.set_length(length);
    set_atom_orth(hydrogen, cell, Point(position(centre) + v));
}

// Puts the hydrogen so that other-centre-hydrogen makes `angle`, in a plane
// chosen with the x axis (or y, when the bond lies near x).
void set_bond_angle(const Cell& cell, const Point& other, const Point& centre, HAtom hydrogen, const Angle& angle,
                    double length) {
    const Vec v = unit_or(other - centre, Vec(1.0, 0.0, 0.0));
    Vec n = cross(v, Vec(1.0, 0.0, 0.0));
    if (n.length() < 0.1) n = cross(v, Vec(0.0, 1.0, 0.0));
    n.normalise(tolerance);
    Vec d = n * sin(angle) + v * cos(angle);
    d.set_length(length);
    set_atom_orth(hydrogen, cell, Point(centre + d));
}

// The half-opening of the empty cone around `vector`: the smallest angle
// between it and the direction to any of the atoms.
Angle min_conic_angle(const Point& centre, const Vec& vector, const std::vector<HAtom>& atoms) {
    Angle smallest = Angle::from_degrees(180.0);
    for (const HAtom& a : atoms) {
        const Angle x = angle(vector, Vec(position(a) - centre), tolerance);
        if (x < smallest) smallest = x;
    }
    return smallest;
}

// The direction in which a hydrogen on `centre` sees most room among the
// anchors: the candidate with the widest empty cone, the first on ties.
Vec largest_gap(const Point& centre, const std::vector<HAtom>& anchors) {
    Vec best(1.0, 0.0, 0.0);
    Angle widest = min_conic_angle(centre, best, anchors);
    std::string best_label = "Default vector";
    auto consider = [&](const Vec& v, const std::string& label) {
        const Angle a = min_conic_angle(centre, v, anchors);
        if (a > widest) {
            widest = a;
            best = v;
            best_label = label;
        }
    };
    std::vector<Vec> units;
    for (const HAtom& a : anchors) {
        const Vec u = unit_or(position(a) - centre, Vec());
        units.push_back(u);
        if (u.length() == 0.0) continue;
        consider(u, "positive vector to " + a->label());
        consider(-u, "negative vector to " + a->label());
    }
    for (std::size_t i = 0; i < anchors.size(); ++i) {
        for (std::size_t j = i + 1; j < anchors.size(); ++j) {
            Vec sum = units[i] + units[j];
            if (sum.length() < tolerance) continue;
            sum.normalise(0.0);
            const std::string names = anchors[i]->label() + " and " + anchors[j]->label();
            consider(sum, "positive vector between " + names);
            consider(-sum, "negative vector between " + names);
        }
    }
    std::vector<Point> points;
    for (const HAtom& a : anchors) points.push_back(position(a));
    const Vec normal = Plane(points).normal();
    consider(normal, "normal vector");
    consider(-normal, "negative normal vector");
    MOLCRYST_DEBUG_LINE(4, "largest_gap: " << best_label);
    return best;
}

// The first neighbour of `anchor` outside `list` that has a site.
HAtom find_neighbouring_anchor(const Molecule& molecule, const HAtom& anchor, const std::vector<HAtom>& list) {
    if (anchor.unhand() == nullptr || !molecule.has_atom(anchor)) {
        std::cout << "Assumption error in find_neighbouring_anchor " << std::endl;
        return HAtom();
    }
    for (const HAtom& n : neighbours_by_index(*anchor)) {
        if (n.unhand() == nullptr) {
            std::cout << "Assumption error in find_neighbouring_anchor " << std::endl;
            continue;
        }
        if (std::find(list.begin(), list.end(), n) != list.end()) continue;
        if (n->has_site()) return n;
    }
    return HAtom();
}

// The reference point of a torsion: a sited neighbour of the anchor, or
// else a point made from the bond d alone. That point is the cross product
// taken as a coordinate, not added to the parent: any point off the line
// serves, since only the torsion's zero depends on it.
Point reference_point(const HAtom& neighbour, const Vec& d) {
    if (neighbour.unhand() != nullptr) return position(neighbour);
    Vec r = cross(d, Vec(0.0, 1.0, 0.0));
    if (!(r.length() >= tolerance)) r = cross(d, Vec(0.0, 0.0, 1.0));
    return Point(r);
}

// Hydrogens about the axis of the largest gap: one on the axis, several on
// a cone around it.
void general_rule(const Cell& cell, const Point& p, const std::vector<HAtom>& anchors,
                  const std::vector<HAtom>& hydrogens, double length) {
    const Vec g = largest_gap(p, anchors);
    const Point q(p - g);
    const Point r = reference_point(HAtom(), Vec(p - q));
    const int nh = static_cast<int>(hydrogens.size());
    Angle a = Angle::from_degrees(180.0);
    if (nh > 1) {
        a = tetrahedral;
        for (const HAtom& anchor : anchors) {
            const Angle x = angle(position(anchor), p, q, tolerance);
            if (x > a) a = x;
        }
        a *= 1.1;
    }
    const double step = 360.0 / nh;
    double torsion = step / 2.0;
    for (const HAtom& h : hydrogens) {
        set_internal_coordinates(h, cell, p, length, q, a, r, Angle::from_degrees(torsion));
        torsion += step;
    }
}

void place_hydrogens(const Cell& cell, const Molecule& molecule, const HAtom& parent,
                     const std::vector<HAtom>& anchors, const std::vector<HAtom>& hydrogens) {
    const int na = static_cast<int>(anchors.size());
    const int nh = static_cast<int>(hydrogens.size());
    const double length = hydrogen_bond_length(parent->element());
    const Point p = position(parent);
    const std::vector<HAtom> parent_only(1, parent);
    // The reference for torsions about the bond to the first anchor.
    auto anchor_reference = [&]() {
        return reference_point(find_neighbouring_anchor(molecule, anchors[0], parent_only),
                               Vec(position(anchors[0]) - p));
    };
    const Angle deg0 = Angle::from_degrees(0.0);
    if (nh == 1 && na == 0) {
        set_bond_vector(cell, parent, hydrogens[0], Vec(1.0, 0.0, 0.0), length);
    } else if (nh == 1 && na == 1) {
        const bool triple = molecule.bond(parent, anchors[0])->type() == TRIPLE_BOND;
        set_bond_angle(cell, position(anchors[0]), p, hydrogens[0], Angle::from_degrees(triple ? 180.0 : 120.0),
                       length);
    } else if (nh == 1 && (na == 2 || na == 3)) {
        Vec s;
        for (const HAtom& a : anchors) s += unit_or(position(a) - p, Vec());
        if (s.length() > 0.6) {
            s.set_length(length);
            set_atom_orth(hydrogens[0], cell, Point(p - s));
        } else {
            general_rule(cell, p, anchors, hydrogens, length);
        }
    } else if (nh == 2 && na == 0) {
        set_bond_vector(cell, parent, hydrogens[0], Vec(0.0, 1.0, 0.0), length);
        set_bond_angle(cell, position(hydrogens[0]), p, hydrogens[1], tetrahedral, length);
    } else if (nh == 2 && na == 1) {
        const Point r = anchor_reference();
        const Angle angle = Angle::from_degrees(120.0);
        set_internal_coordinates(hydrogens[0], cell, p, length, position(anchors[0]), angle, r,
                                 Angle::from_degrees(180.0));
        set_internal_coordinates(hydrogens[1], cell, p, length, position(anchors[0]), angle, r, deg0);
    } else if (nh == 2 && na == 2) {
        const Vec u1 = unit_or(position(anchors[0]) - p, Vec());
        const Vec u2 = unit_or(position(anchors[1]) - p, Vec());
        const Point m(p + (u1 + u2) / 2.0);
        Angle angle = Angle::from_degrees(180.0);
        angle -= tetrahedral / 2.0;
        set_internal_coordinates(hydrogens[0], cell, p, length, m, angle, position(anchors[0]),
                                 Angle::from_degrees(90.0));
        set_internal_coordinates(hydrogens[1], cell, p, length, m, angle, position(anchors[0]),
                                 Angle::from_degrees(-90.0));
    } else if (nh == 3) {
        const Point a = na > 0 ? position(anchors[0]) : Point(p + Vec(length, 0.0, 0.0));
        const Point r = na > 0 ? anchor_reference() : reference_point(HAtom(), Vec(a - p));
        const double torsions[3] = {60.0, 180.0, 300.0};
        for (int k = 0; k < 3; ++k)
            set_internal_coordinates(hydrogens[static_cast<std::size_t>(k)], cell, p, length, a, tetrahedral, r,
                                     Angle::from_degrees(torsions[k]));
    } else if (nh == 4 && na == 0) {
        const Point a(p + Vec(length, 0.0, 0.0));
        const Point b(p + Vec(0.0, 1.0, 0.0));
        set_atom_orth(hydrogens[0], cell, a);
        const double torsions[3] = {30.0, 150.0, 270.0};
        for (int k = 0; k < 3; ++k)
            set_internal_coordinates(hydrogens[static_cast<std::size_t>(k + 1)], cell, p, length, a, tetrahedral, b,
                                     Angle::from_degrees(torsions[k]));
    } else {
        general_rule(cell, p, anchors, hydrogens, length);
    }
}

}  // namespace

int bondsum_calculation(THandle<Molecule> molecule, int atom, int valence) {
    const Molecule& m = *molecule;
    const Element element = m.atom(atom)->element();
    float sum = 0.0f;
    const Hvector_int around = m.atom_connections(atom);
    for (int j : *around) {
        const BondType type = bond_type(m, atom, j);
        float contribution = 0.0f;
        switch (type) {
            case UNKNOWN_BOND:
                throw std::runtime_error("Calculate bondsum::Unknown bond type found");
            case SINGLE_BOND:
            case POLYMERIC_BOND: {
                contribution = 1.0f;
                const Element other = m.atom(j)->element();
                int donor = -1;
                if (n_or_p(element) && !other.non_metal())
                    donor = atom;
                else if (n_or_p(other) && !element.non_metal())
                    donor = j;
                if (donor != -1 && m.atom_nconnections_metal(donor) == 1 && dative_donor(m, donor))
                    contribution = 0.0f;
                break;
            }
            case DOUBLE_BOND:
                contribution = 2.0f;
                break;
            case TRIPLE_BOND:
                contribution = 3.0f;
                break;
            case QUADRUPLE_BOND:
                contribution = 4.0f;
                break;
            case AROMATIC_BOND:
            case DELOCALISED_BOND:
                contribution = 1.5f;
                break;
            case PI_BOND:
                contribution = 0.0f;
                break;
            default:
                throw std::runtime_error("Calculate_bondsum: unable to identify bond type");
        }
        sum += contribution;
    }
    const float x = static_cast<float>(valence) - sum + static_cast<float>(m.atom(atom)->formal_charge());
    if (x < 1.0f) return 0;
    if (x == std::floor(x)) return static_cast<int>(x);
    return static_cast<int>(x - 0.5f);
}

int calculate_hydrogens(THandle<Molecule> molecule, int atom) {
    const Molecule& m = *molecule;
    const Element element = m.atom(atom)->element();
    const int z = element.atomic_number();
    if (z == 0) throw std::runtime_error("Calculate hydrogens::Unknown element found");
    const Hvector_int around = m.atom_connections(atom);
    for (int j : *around)
        if (bond_type(m, atom, j) == UNKNOWN_BOND)
            throw std::runtime_error("Calculate hydrogens::Unknown bond type found");
    if (!element.non_metal()) return 0;
    switch (z) {
        case 1:
        case 9:
        case 17:
        case 35:
        case 53:
        case 85:
            return bondsum_calculation(molecule, atom, 1);
        case 2:
        case 10:
        case 18:
        case 36:
        case 54:
        case 86:
            return 0;
        case 8: {
            // An oxygen on nothing but one metal by a single bond is a water
            // ligand. The first listed neighbour decides the bond type.
            if (m.atom_nconnections_nonhydrogen(atom) == 1 && m.atom_nconnections_metal(atom) == 1 &&
                bond_type(m, atom, around->front()) == SINGLE_BOND)
                return bondsum_calculation(molecule, atom, 3);
            return bondsum_calculation(molecule, atom, 2);
        }
        case 16:
        case 34:
        case 52:
            return bondsum_calculation(molecule, atom, 2);
        case 7:
        case 15:
        case 33:
            return bondsum_calculation(molecule, atom, 3);
        case 6:
        case 14:
            return bondsum_calculation(molecule, atom, 4);
        case 5:
            return boron_in_cage(m, atom) ? 1 : bondsum_calculation(molecule, atom, 3);
        default:
            return 0;
    }
}

void add_hydrogens(THandle<Molecule> molecule, int atom, int count) {
    for (int k = 0; k < count; ++k) {
        HAtom h(new Atom3d(Element(Element::H), "H", HSite()));
        const int index = molecule->natoms();
        molecule->add(h);
        molecule->add(HBond(new Bond3d(SINGLE_BOND)), atom, index);
    }
}

void generate_hydrogens(THandle<Molecule> molecule) {
    if (molecule->natoms() == 1 && molecule->atom(0)->element().atomic_number() == 1) return;
    molecule->remove_hydrogens();
    for (int i = 0; i < molecule->natoms(); ++i) add_hydrogens(molecule, i, calculate_hydrogens(molecule, i));
}

int nhydrogens(THandle<Molecule> molecule) {
    int total = 0;
    const int n = molecule->natoms();
    for (int i = 0; i < n; ++i) total += molecule->atom(i)->nhydrogens(true);
    return total;
}

namespace {

// The largest symmetry tag of the maker's atoms, -1 for a maker without
// atoms; `holds` tells whether `molecule` is one of its molecules.
int largest_tag(const CrystalMaker& maker, const Molecule* molecule, bool& holds) {
    bool seen = false;
    int tag = -1;
    holds = false;
    for (const Hvector_HMolecule* list : {&maker.molecules(), &maker.molecules2d(), &maker.molecules3d()}) {
        for (const HMolecule& m : **list) {
            holds = holds || m.unhand() == molecule;
            const int n = m->natoms();
            for (int k = 0; k < n; ++k) {
                const int t = m->atom(k)->symmtag();
                if (!seen || t > tag) tag = t;
                seen = true;
            }
        }
    }
    return tag;
}

// Adds and places the hydrogens of one atom; `tag` is the last tag given.
void add_placed_hydrogens(const Cell& cell, THandle<Molecule> molecule, int atom, int count, int& tag) {
    add_hydrogens(molecule, atom, count);
    const HAtom parent = molecule->atom(atom);
    std::vector<HAtom> hydrogens;
    for (const HAtom& n : neighbours_by_index(*parent))
        if (n->element().atomic_number() == 1) hydrogens.push_back(n);
    if (!parent->has_site()) return;
    generate_hydrogen_sites(cell, molecule, atom);
    for (const HAtom& h : hydrogens)
        if (h->symmtag() == -1) h->set_symmtag(++tag);
}

}  // namespace

void add_hydrogens_with_sites(THandle<CrystalMaker> maker, THandle<Molecule> molecule, int atom, int count) {
    bool holds = false;
    int tag = largest_tag(*maker, molecule.unhand(), holds);
    add_placed_hydrogens(maker->cell(), molecule, atom, count, tag);
}

void add_hydrogens_with_sites(THandle<CrystalMaker> maker, THandle<Molecule> molecule, const std::vector<int>& atoms,
                              const std::vector<int>& counts) {
    if (atoms.size() != counts.size())
        throw std::invalid_argument(
            "add_hydrogens_with_sites(HCrystalMaker, HMolecule, atoms, counts) the lists differ in length");
    bool holds = false;
    const int first = largest_tag(*maker, molecule.unhand(), holds);
    int tag = first;
    for (std::size_t k = 0; k < atoms.size(); ++k) {
        // One call at a time reads the tags afresh: they go on from the new
        // hydrogens only when the molecule is one of the maker's.
        if (!holds) tag = first;
        add_placed_hydrogens(maker->cell(), molecule, atoms[k], counts[k], tag);
    }
}

int add_hydrogens_with_sites(THandle<CrystalMaker> maker) {
    // Every count first: an atom that cannot be counted throws before anything changes.
    const Hvector_HMolecule view = maker->current_molecules();
    std::vector<std::vector<int> > atoms(view->size()), counts(view->size());
    for (std::size_t m = 0; m < view->size(); ++m) {
        const HMolecule& molecule = (*view)[m];
        const int n = molecule->natoms();
        for (int i = 0; i < n; ++i) {
            const int count = calculate_hydrogens(molecule, i);
            if (count <= 0) continue;
            atoms[m].push_back(i);
            counts[m].push_back(count);
        }
    }
    bool holds = false;
    int tag = largest_tag(*maker, nullptr, holds);
    int added = 0;
    for (std::size_t m = 0; m < view->size(); ++m)
        for (std::size_t k = 0; k < atoms[m].size(); ++k) {
            add_placed_hydrogens(maker->cell(), (*view)[m], atoms[m][k], counts[m][k], tag);
            added += counts[m][k];
        }
    return added;
}

void generate_hydrogen_sites(const Cell& cell, THandle<Molecule> molecule) {
    const int n = molecule->natoms();
    for (int i = 0; i < n; ++i)
        if (molecule->atom(i)->has_site()) generate_hydrogen_sites(cell, molecule, i);
}

void generate_hydrogen_sites(const Cell& cell, THandle<Molecule> molecule, int atom) {
    const HAtom parent = molecule->atom(atom);
    if (!parent->has_site())
        throw std::invalid_argument("Cannot calculate coordinates for hydrogens bonded to atom " + parent->label() +
                                    " (" + std::to_string(atom) + ")" +
                                    " because it does not have position information. (generate_hydrogen_sites)");
    if (parent->element().atomic_number() == 1) return;
    std::vector<HAtom> anchors, hydrogens;
    for (const HAtom& n : neighbours_by_index(*parent)) (n->has_site() ? anchors : hydrogens).push_back(n);
    if (hydrogens.empty()) return;
    place_hydrogens(cell, *molecule, parent, anchors, hydrogens);
}

THandle<std::vector<HAtom> > connected_ring(HAtom start, const std::set<HAtom>& ring,
                                            THandle<OrderedGraph<HAtom, HBond> > graph) {
    THandle<std::vector<HAtom> > order(new std::vector<HAtom>(1, start));
    std::set<HAtom> used;
    used.insert(start);
    while (true) {
        const HAtom last = order->back();
        HAtom next;
        for (const HAtom& a : ring) {
            if (used.count(a) != 0) continue;
            if (graph->has_edge(last, a)) {
                next = a;
                break;
            }
        }
        if (next.unhand() == nullptr) break;
        order->push_back(next);
        used.insert(next);
    }
    bool all_used = true;
    for (const HAtom& a : ring) all_used = all_used && used.count(a) != 0;
    if (!all_used || !graph->has_edge(order->back(), start))
        throw std::runtime_error("StereoMolecule: could not find connected ring");
    return order;
}

void add_fractional(const Cell& cell, std::vector<HAtom>& atoms, THandle<Transformation> transformation) {
    for (HAtom& a : atoms) {
        if (!a->has_site()) continue;
        const HSite old = a->site();
        Point p = old->orth();
        if (transformation.unhand() != nullptr) p = *transformation * p;
        a->set_site(HSite(new Site(p, cell.fractional(p), old->occupancy(), THandle<Array<Uncertainty, 3> >(),
                                   old->atomic_displacement_parameters())));
    }
}

Hvector_HMolecule create_molecules(const Cell& cell, std::vector<HAtom>& atoms,
                                   const std::vector<THandle<BondData> >& bonds, std::vector<Point>& points,
                                   THandle<Transformation> transformation) {
    if (points.size() < atoms.size())
        throw std::invalid_argument("create_molecules(cell, atoms, bonds, points, transformation) " +
                                    std::to_string(points.size()) + " points for " + std::to_string(atoms.size()) +
                                    " atoms");
    for (std::size_t i = 0; i < atoms.size(); ++i) atoms[i]->set_site(HSite(new Site(points[i])));
    add_fractional(cell, atoms, transformation);
    return create_molecules(atoms, bonds);
}

Hvector_HMolecule create_molecules(std::vector<HAtom>& atoms, const std::vector<THandle<BondData> >& bonds) {
    const int n = static_cast<int>(atoms.size());
    for (const THandle<BondData>& b : bonds)
        if (b->atom1() < 0 || b->atom1() >= n || b->atom2() < 0 || b->atom2() >= n)
            throw std::out_of_range("create_molecules(atoms, bonds) bond between atoms " + std::to_string(b->atom1()) +
                                    " and " + std::to_string(b->atom2()) + " of " + std::to_string(n));
    OrderedGraph<HAtom, HBond> graph;
    for (const HAtom& a : atoms) graph.add_node(a);
    for (const THandle<BondData>& b : bonds)
        graph.add_edge(HBond(new Bond3d(b->type())), graph.node(static_cast<unsigned int>(b->atom1())),
                       graph.node(static_cast<unsigned int>(b->atom2())));
    Hvector_HMolecule molecules(new vector_HMolecule());
    const auto parts = graph.split();
    for (const auto& part : *parts) molecules->push_back(HMolecule(new Molecule3d(*part)));
    return molecules;
}

}  // namespace molcryst

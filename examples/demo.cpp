// The molcryst demo: builds a small example and prints what the library did
// with it. Run by the README's first command.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <map>
#include <sstream>
#include <utility>
#include <string>
#include <vector>

#include <molcryst/molcryst.h>

using namespace molcryst;

namespace {

/// A labelled node for the example graph.
struct Centre {
    explicit Centre(const std::string& label) : label_(label) {}
    std::string label_;
};
typedef THandle<Centre> HCentre;

/// The print form of anything with one.
template <class T>
std::string to_text(const T& x) {
    std::ostringstream out;
    out << x;
    return out.str();
}

std::string labels(const std::vector<HCentre>& nodes) {
    std::string text;
    for (const HCentre& n : nodes) text += (text.empty() ? "" : " ") + n->label_;
    return text;
}

void show_handles() {
    std::cout << "Handles\n";
    HCentre a(new Centre("C1"));
    std::cout << "  one handle to C1: use count " << a.use_count() << "\n";
    {
        HCentre b = a;
        std::cout << "  a copy shares it: use count " << a.use_count() << "\n";
    }
    std::cout << "  the copy is gone: use count " << a.use_count() << "\n";
    HCentre null;
    try {
        null->label_ = "x";
    } catch (const std::logic_error& e) {
        std::cout << "  dereferencing a null handle: " << e.what() << "\n";
    }
}

void show_archive() {
    std::cout << "Archive round trip\n";
    Archive out = Archive::temporary();
    std::vector<int> ring_sizes = {6, 6, 5};
    out << std::string("benzene") << 3.5 << ring_sizes << DatabaseEntryIdentifier("ABCDEF01");
    out.rewind();
    std::string name;
    double value = 0;
    std::vector<int> sizes;
    DatabaseEntryIdentifier id;
    out >> name >> value >> sizes >> id;
    std::cout << "  read back: \"" << name << "\", " << value << ", " << sizes.size() << " ring sizes, entry "
              << id << "\n";
}

void show_graph() {
    // Two components: a six-membered ring with a two-atom side chain, and a pair.
    std::cout << "Graph\n";
    Graph<HCentre, int> graph;
    std::vector<HCentre> ring;
    for (int i = 1; i <= 6; ++i) ring.push_back(HCentre(new Centre("C" + std::to_string(i))));
    int edge = 0;
    for (int i = 0; i < 6; ++i) graph.add_edge(++edge, ring[i], ring[(i + 1) % 6]);
    HCentre c7(new Centre("C7")), o1(new Centre("O1"));
    graph.add_edge(++edge, ring[0], c7);
    graph.add_edge(++edge, c7, o1);
    HCentre na(new Centre("Na1")), cl(new Centre("Cl1"));
    graph.add_edge(++edge, na, cl);

    std::deque<std::set<HCentre> > parts;
    std::cout << "  " << graph.nnodes() << " nodes, " << graph.nedges() << " edges, " << graph.components(parts)
              << " components of sizes";
    for (const std::set<HCentre>& part : parts) std::cout << " " << part.size();
    std::cout << "\n";

    std::vector<HCentre> side;
    graph.nodes_one_side(c7, ring[0], side);
    std::cout << "  nodes on the C7 side of C1-C7: " << labels(side) << "\n";
    bool acyclic = graph.nodes_one_side(ring[0], ring[1], side);
    std::cout << "  C1-C2 is " << (acyclic ? "not " : "") << "on a ring\n";

    std::vector<HCentre> path;
    graph.shortest_path(o1, ring[3], path);
    std::cout << "  shortest path O1 to C4: " << labels(path) << "\n";
    std::cout << "  path from O1 to Na1 exists: " << (graph.shortest_path(o1, na, path) ? "yes" : "no") << "\n";
}

// ---------------------------------------------------------------------------
// Molecules with coordinates, built the way a reader of structure files would.

const double pi = 3.14159265358979323846;

/// Adds an atom at `p`; its index.
int add_atom(Molecule& m, const Element& e, const std::string& label, const Point& p) {
    return m.add(HAtom(new Atom3d(e, label, HSite(new Site(p)))));
}

void add_bond(Molecule& m, int a, int b, BondType type) { m.add(HBond(new Bond3d(type)), a, b); }

Point position(const Molecule& m, int atom) { return m.atom(atom)->site()->orth(); }

/// The point `length` from `atom`, on the far side of `centre`.
Point outward(const Point& atom, const Point& centre, double length) {
    Vector<double, 3> d = atom - centre;
    return Point(atom + d * (length / d.length()));
}

/// Adds `n` hydrogens to `centre`, staggered about its bond to `neighbour`,
/// with `reference` fixing the first torsion; tetrahedral angles.
void add_hydrogens(Molecule& m, int centre, int neighbour, int reference, int n, double length,
                   const std::string& stem) {
    for (int k = 0; k < n; ++k) {
        Point h = internal_to_orthogonal(position(m, centre), length, position(m, neighbour),
                                         Angle::from_degrees(109.47), position(m, reference),
                                         Angle::from_degrees(180.0 + 120.0 * k));
        add_bond(m, centre, add_atom(m, Element::H, stem + std::to_string(k + 1), h), SINGLE_BOND);
    }
}

/// Caffeine, flat, with its methyl hydrogens: a regular hexagon fused to a
/// regular pentagon, bonds in one Kekule form.
HMolecule caffeine() {
    HMolecule m(new Molecule3d());
    const double s = 1.39;
    const char* six_labels[6] = {"N1", "C2", "N3", "C4", "C5", "C6"};
    const Element six_elements[6] = {Element::N, Element::C, Element::N, Element::C, Element::C, Element::C};
    Point hexagon_centre(0, 0, 0);
    for (int k = 0; k < 6; ++k) {
        const double a = (90.0 + 60.0 * k) * pi / 180.0;
        add_atom(*m, six_elements[k], six_labels[k], Point(s * std::cos(a), s * std::sin(a), 0));
    }
    // The pentagon shares the C4-C5 edge and lies outside the hexagon.
    const Point c4 = position(*m, 3), c5 = position(*m, 4);
    const Point middle((c4 + c5) * 0.5);
    const double apothem = s / (2 * std::tan(36 * pi / 180)), radius = s / (2 * std::sin(36 * pi / 180));
    const Point pentagon_centre = outward(middle, hexagon_centre, apothem);
    const Vector<double, 3> from_centre = c5 - pentagon_centre;
    const double start = std::atan2(from_centre[1], from_centre[0]);
    auto vertex = [&](double angle) {
        return Point(pentagon_centre[0] + radius * std::cos(angle), pentagon_centre[1] + radius * std::sin(angle), 0);
    };
    // Walk from C5 away from C4.
    const double step = distance(vertex(start + 0.4 * pi), c4) < 1e-3 ? -0.4 * pi : 0.4 * pi;
    const char* five_labels[3] = {"N7", "C8", "N9"};
    const Element five_elements[3] = {Element::N, Element::C, Element::N};
    for (int k = 1; k <= 3; ++k)
        add_atom(*m, five_elements[k - 1], five_labels[k - 1], vertex(start + step * k));
    const int n1 = 0, c2 = 1, n3 = 2, c4i = 3, c5i = 4, c6 = 5, n7 = 6, c8 = 7, n9 = 8;
    add_bond(*m, n1, c2, SINGLE_BOND);
    add_bond(*m, c2, n3, SINGLE_BOND);
    add_bond(*m, n3, c4i, SINGLE_BOND);
    add_bond(*m, c4i, c5i, DOUBLE_BOND);
    add_bond(*m, c5i, c6, SINGLE_BOND);
    add_bond(*m, c6, n1, SINGLE_BOND);
    add_bond(*m, c5i, n7, SINGLE_BOND);
    add_bond(*m, n7, c8, SINGLE_BOND);
    add_bond(*m, c8, n9, DOUBLE_BOND);
    add_bond(*m, n9, c4i, SINGLE_BOND);
    // Carbonyl oxygens, methyl groups and the one ring hydrogen, each on
    // the outward bisector of its ring atom.
    add_bond(*m, c2, add_atom(*m, Element::O, "O2", outward(position(*m, c2), hexagon_centre, 1.22)), DOUBLE_BOND);
    add_bond(*m, c6, add_atom(*m, Element::O, "O6", outward(position(*m, c6), hexagon_centre, 1.22)), DOUBLE_BOND);
    const int methyl_on[3] = {n1, n3, n7};
    const Point centres[3] = {hexagon_centre, hexagon_centre, pentagon_centre};
    const int references[3] = {c2, c2, c8};
    for (int k = 0; k < 3; ++k) {
        const std::string label = "C1" + std::to_string(k);
        const int c = add_atom(*m, Element::C, label, outward(position(*m, methyl_on[k]), centres[k], 1.47));
        add_bond(*m, methyl_on[k], c, SINGLE_BOND);
        add_hydrogens(*m, c, methyl_on[k], references[k], 3, 1.09, "H1" + std::to_string(k));
    }
    add_bond(*m, c8, add_atom(*m, Element::H, "H8", outward(position(*m, c8), pentagon_centre, 1.08)), SINGLE_BOND);
    return m;
}

/// One acetic acid molecule, the hydroxyl hydrogen syn to the carbonyl.
void add_acetic_acid(Molecule& m, const std::string& tag) {
    const int c = add_atom(m, Element::C, "C1" + tag, Point(0, 0, 0));
    const int o1 = add_atom(m, Element::O, "O1" + tag, Point(1.21, 0, 0));
    const int o2 = add_atom(m, Element::O, "O2" + tag,
                            Point(1.31 * std::cos(122 * pi / 180), 1.31 * std::sin(122 * pi / 180), 0));
    const int methyl = add_atom(m, Element::C, "C2" + tag,
                                Point(1.50 * std::cos(-118 * pi / 180), 1.50 * std::sin(-118 * pi / 180), 0));
    const Point h = internal_to_orthogonal(position(m, o2), 0.97, position(m, c), Angle::from_degrees(107),
                                           position(m, o1), Angle::from_degrees(0));
    const int ho = add_atom(m, Element::H, "H1" + tag, h);
    add_bond(m, c, o1, DOUBLE_BOND);
    add_bond(m, c, o2, SINGLE_BOND);
    add_bond(m, c, methyl, SINGLE_BOND);
    add_bond(m, o2, ho, SINGLE_BOND);
    add_hydrogens(m, methyl, c, o1, 3, 1.09, "H2" + tag);
}

/// Two acetic acid molecules joined by a pair of O-H...O hydrogen bonds
/// about a centre of inversion: one structure, two components.
HMolecule acetic_acid_dimer() {
    Molecule3d first;
    add_acetic_acid(first, "A");
    // Put the second molecule's carbonyl oxygen 1.65 A beyond the first's
    // hydroxyl hydrogen, and invert everything through the midpoint.
    const Point o_h = position(first, 2), h = position(first, 4), o_c = position(first, 1);
    const Point acceptor = outward(h, o_h, 1.65);
    const Point centre((o_c + acceptor) * 0.5);
    HMolecule m(new Molecule3d(first));
    Molecule3d second;
    add_acetic_acid(second, "B");
    for (int i = 0; i < second.natoms(); ++i)
        second.atom(i)->site()->set_coordinates(Point(centre * 2.0 - second.atom(i)->site()->orth()));
    m->add(second);
    return m;
}

/// cis-Diammine-bis(dimethyl sulphide)platinum(II), square planar.
HMolecule platinum_complex() {
    HMolecule m(new Molecule3d());
    const int pt = add_atom(*m, Element::Pt, "Pt1", Point(0, 0, 0));
    const int n1 = add_atom(*m, Element::N, "N1", Point(2.05, 0, 0));
    const int n2 = add_atom(*m, Element::N, "N2", Point(0, 2.05, 0));
    const int s1 = add_atom(*m, Element::S, "S1", Point(-2.30, 0, 0));
    const int s2 = add_atom(*m, Element::S, "S2", Point(0, -2.30, 0));
    for (int donor : {n1, n2, s1, s2}) add_bond(*m, pt, donor, SINGLE_BOND);
    add_hydrogens(*m, n1, pt, n2, 3, 1.01, "HN1");
    add_hydrogens(*m, n2, pt, n1, 3, 1.01, "HN2");
    // Two methyls on each sulphur, 1.81 A away at 105 degrees to the metal,
    // one above the plane and one below.
    int carbon = 0;
    for (int s : {s1, s2}) {
        for (int side = 0; side < 2; ++side) {
            const Point c = internal_to_orthogonal(position(*m, s), 1.81, position(*m, pt), Angle::from_degrees(105),
                                                   position(*m, s == s1 ? n2 : n1),
                                                   Angle::from_degrees(side == 0 ? 60 : -60));
            const std::string label = "C" + std::to_string(++carbon);
            const int ci = add_atom(*m, Element::C, label, c);
            add_bond(*m, s, ci, SINGLE_BOND);
            add_hydrogens(*m, ci, s, pt, 3, 1.09, "H" + label);
        }
    }
    return m;
}

std::string join_types(const Molecule& m, bool skip_hydrogens) {
    std::string text;
    for (int i = 0; i < m.natoms(); ++i) {
        if (skip_hydrogens && m.atom(i)->element().atomic_number() == 1) continue;
        text += (text.empty() ? "" : " ") + m.atom(i)->label() + "=" + m.atom_sybyl_type(i);
    }
    return text;
}

void show_rings(const Molecule& m) {
    HMoleculeGraph g = m.graph();
    std::deque<std::set<HAtom> > rings;
    g->basic_ring_set(rings);
    std::cout << "  rings:";
    for (const std::set<HAtom>& ring : rings) {
        std::vector<std::string> names;
        for (const HAtom& a : ring) names.push_back(a->label());
        std::sort(names.begin(), names.end());
        std::cout << " [" << ring.size() << ":";
        for (const std::string& name : names) std::cout << " " << name;
        std::cout << "]";
    }
    std::deque<int> bounds;
    std::deque<std::set<HAtom> > assembly_rings;
    const int assemblies = g->ring_assemblies(assembly_rings, bounds);
    std::cout << (rings.empty() ? " none" : "") << "; ring assemblies: " << assemblies << "\n";
}

void show_molecule(const std::string& name, const Molecule& m) {
    std::cout << name << ": " << m.natoms() << " atoms, " << m.nbonds() << " bonds, " << m.ncomponents()
              << (m.ncomponents() == 1 ? " component" : " components") << ", charge " << m.formal_charge() << "\n";
    show_rings(m);
    std::cout << "  SYBYL types (heavy atoms): " << join_types(m, true) << "\n";
}

void show_molecules() {
    std::cout << "Molecules\n";
    HMolecule caffeine_molecule = caffeine();
    HMolecule dimer = acetic_acid_dimer();
    HMolecule complex = platinum_complex();
    show_molecule("caffeine", *caffeine_molecule);
    std::cout << "  bond types:";
    for (int i = 0; i < 10; ++i) std::cout << " " << caffeine_molecule->bond_sybyl_type(i);
    std::cout << " (ring bonds)\n";
    // With every bond of unknown type the types come from distances and angles.
    Molecule3d guessed(*caffeine_molecule);
    for (int i = 0; i < guessed.nbonds(); ++i) guessed.bond(i)->set_type(UNKNOWN_BOND);
    std::cout << "  from geometry alone: " << join_types(guessed, true) << "\n";
    show_molecule("acetic acid dimer", *dimer);
    show_molecule("platinum complex", *complex);

    // Without their acidic hydrogens the acids read as carboxylates.
    Molecule3d anions(*dimer);
    anions.remove_atoms([](const HAtom& a) { return a->label() == "H1A" || a->label() == "H1B"; });
    std::cout << "acetate pair (acidic hydrogens removed): " << join_types(anions, true) << "\n";

    std::cout << "Splitting the dimer\n";
    Hvector_HMolecule parts = dimer->split();
    for (const HMolecule& part : *parts)
        std::cout << "  part of " << part->natoms() << " atoms, first " << part->atom(0)->label() << ", centroid "
                  << part->centroid() << "\n";
    // The hydrogen bond O2A-H1A...O1B as a contact record between the parts.
    MolecularContact hbond((*parts)[0], 4, (*parts)[1], 1, 3);
    std::cout << "  H...O distance " << distance(hbond.molecule_from()->atom(4)->site()->orth(),
                                                   hbond.molecule_to()->atom(1)->site()->orth())
              << " A; ";
    hbond.print(std::cout);
    MolecularContact reversed(hbond);
    reversed.switch_groups();
    std::cout << "  the contact equals its reversal: " << (reversed == hbond ? "yes" : "no") << "\n";

    std::cout << "Archive round trip\n";
    Archive ar = Archive::temporary();
    const HMolecule all[3] = {caffeine_molecule, dimer, complex};
    for (const HMolecule& m : all) m->write(ar);
    ar.rewind();
    for (const HMolecule& m : all) {
        Molecule3d back(ar);
        std::cout << "  " << back.natoms() << " atoms, " << back.nbonds() << " bonds read back, equal: "
                  << (back == *m ? "yes" : "no") << "\n";
    }

    std::cout << "Subset view of caffeine's ring atoms\n";
    MoleculeSubset rings(caffeine_molecule);
    rings.select_atom_indices({0, 1, 2, 3, 4, 5, 6, 7, 8});
    std::cout << "  " << rings.natoms() << " atoms, " << rings.nbonds() << " bonds; view atom 6 is parent atom "
              << rings.parent_atom_index(6) << " (" << rings.atom(6)->label() << ") with " << rings.atom(6)->nbonds()
              << " bonds here, " << caffeine_molecule->atom(6)->nbonds() << " in the parent\n";
    std::cout << "  centroid " << centroid(MoleculeAtomSiteIterator(rings), MoleculeAtomSiteIterator()) << "\n";
    caffeine_molecule->atom(7)->site()->set_coordinates(Point(0, 0, 1));
    std::cout << "  after moving C8 in the parent, the view sees " << rings.atom(7)->site()->orth() << "\n";
    try {
        rings.atom(0)->set_label("X");
    } catch (const std::runtime_error& e) {
        std::cout << "  relabelling through the view: " << e.what() << "\n";
    }
    try {
        rings.remove_atom(0);
    } catch (const std::runtime_error& e) {
        std::cout << "  removing through the view: " << e.what() << "\n";
    }
    HMolecule copy = rings.create_molecule();
    std::cout << "  as a molecule of its own: " << copy->natoms() << " atoms, editable: "
              << (copy->editable() ? "yes" : "no") << "\n";
}


// ---------------------------------------------------------------------------
// A crystal built by hand: one acetic acid molecule and its image through a
// centre of inversion, and the contacts a van der Waals criterion finds.

void show_contacts() {
    std::cout << "Contacts in a crystal\n";
    const Cell cell(7.2, 5.6, 6.3, Angle::from_degrees(90), Angle::from_degrees(104), Angle::from_degrees(90),
                    Spacegroup("P-1", 2, Spacegroup::Triclinic, std::vector<std::string>{"x,y,z", "-x,-y,-z"}));
    // Place the molecule so that the centre of its hydrogen-bonded ring
    // (between O1 and the point 1.65 A beyond H1) sits at (1/2, 1/2, 1/2).
    HMolecule acid(new Molecule3d());
    add_acetic_acid(*acid, "");
    const Point acceptor = outward(position(*acid, 4), position(*acid, 2), 1.65);
    const Point ring_centre((position(*acid, 1) + acceptor) * 0.5);
    const Vector<double, 3> shift = cell.orthogonal(Point(0.5, 0.5, 0.5)) - ring_centre;
    for (int i = 0; i < acid->natoms(); ++i)
        acid->atom(i)->site()->set_orth(Point(position(*acid, i) + shift), cell);

    Crystal crystal(cell, Hvector_HMolecule(new vector_HMolecule{acid}));
    const CrystalSymmetryTransformation inversion(CrystalSymmetryOperator("-x,-y,-z"), Vector<int, 3>(1, 1, 1));
    std::cout << "  cell " << cell << "\n";
    std::cout << "  the inversion image merged as molecule " << crystal.merge(acid, inversion);
    std::cout << ", merged again: molecule " << crystal.merge(acid, inversion) << " (" << crystal.nmolecules()
              << " molecules)\n";

    const VdWCriterion criterion(0.0, -2.0, INTERMOLECULAR, 0, 0, false);
    std::cout << "  criterion: " << criterion;
    std::cout << "  search radius " << criterion.max_radius() << " A; contacts from molecule 0 to molecule 1:\n";
    Hvector_HMolecularContact contacts = crystal.nonbonded_search(0, criterion);
    for (const HMolecularContact& c : *contacts) {
        const HAtom from = c->molecule_from()->atom(c->atom_from()), to = c->molecule_to()->atom(c->atom_to());
        std::printf("    %-3s ... %-3s  distance %.3f A, %.3f A inside the van der Waals radii\n",
                    from->label().c_str(), to->label().c_str(),
                    distance(from->site()->orth(), to->site()->orth()), c->strength());
    }
    VdWCriterion strongest(criterion);
    strongest.set_strongest_only(true);
    Hvector_HMolecularContact best = crystal.nonbonded_search(0, strongest);
    const HMolecularContact& c = (*best)[0];
    std::cout << "  strongest only: " << c->molecule_from()->atom(c->atom_from())->label() << " ... "
              << c->molecule_to()->atom(c->atom_to())->label() << "\n";
}

// ---------------------------------------------------------------------------
// Diglycine cobalt(II) dichloride dihydrate, P21/c, Z = 2: the cobalt sits on
// an inversion centre, so the asymmetric unit holds half the complex; the
// carboxylate bridges to the next cobalt and makes a chain. Coordinates from
// K. Stenzel and M. Fleck, Acta Cryst. E60 (2004) m1470 (COD 2204271).
void show_crystal() {
    std::cout << "Crystal\n";
    const Spacegroup p21_c("P21/c", 14, Spacegroup::Monoclinic,
                           std::vector<std::string>{"x,y,z", "-x,y+1/2,-z+1/2", "-x,-y,-z", "x,-y-1/2,z-1/2"});
    const Cell cell(10.568, 5.988, 8.844, Angle::from_degrees(90), Angle::from_degrees(91.55), Angle::from_degrees(90),
                    p21_c);
    struct SiteRow {
        const char* element;
        const char* label;
        double u, v, w;
    };
    const SiteRow rows[] = {
        {"Co", "Co", 0.5, 0.0, 0.5},           {"O", "O1", 0.65086, 0.36581, 0.88140},
        {"O", "O2", 0.55048, 0.1680, 0.70159}, {"C", "C1", 0.64769, 0.2505, 0.76336},
        {"C", "C2", 0.77360, 0.2165, 0.68777}, {"H", "H1C", 0.782, 0.074, 0.657},
        {"H", "H2C", 0.772, 0.311, 0.603},     {"N", "N", 0.88136, 0.2833, 0.78734},
        {"H", "H1N", 0.865, 0.419, 0.827},     {"H", "H2N", 0.952, 0.298, 0.730},
        {"H", "H3N", 0.900, 0.179, 0.857},     {"O", "O1W", 0.38810, 0.2699, 0.43828},
        {"H", "H1W", 0.316, 0.285, 0.456},     {"H", "H2W", 0.406, 0.316, 0.369},
        {"Cl", "Cl", 1.11073, 0.28327, 0.55838},
    };
    // The asymmetric unit as one molecule, bonded by distance, then split
    // into its connected parts.
    HMolecule asu(new Molecule3d());
    for (const SiteRow& r : rows)
        asu->add(HAtom(new Atom3d(Element(r.element), r.label, HSite(new Site(Site::frac(Point(r.u, r.v, r.w), cell))))));
    const BondDistanceLimit rule(0.4, false);
    for (const std::pair<int, int>& p : rule.bonded_pairs(CrystalMaker::create_atom_list(*asu)))
        asu->add(HBond(new Bond3d(SINGLE_BOND)), p.first, p.second);
    CrystalMaker maker(cell, Hvector_HMolecule(new vector_HMolecule{asu}), nullptr, nullptr);
    maker.split_molecule(asu);
    std::cout << "  asymmetric unit: " << maker.natoms() << " atoms, " << maker.nbonds() << " bonds in "
              << maker.nmolecules() << " molecules of";
    for (int i = 0; i < maker.nmolecules(); ++i) std::cout << " " << maker.molecule(i)->natoms();
    // No molecule holds two images of one atom: the half complex is to be
    // completed by symmetry.
    std::cout << " atoms; to be completed by symmetry: "
              << (CrystalMakerHelpers::molecule_expansion_needed(maker) ? "yes" : "no") << "\n";

    // The unit cell, filled by centroid.
    HCrystal packed = CrystalMakerHelpers::create_packed_crystal(maker, Box(Point(0, 0, 0), Point(1, 1, 1)));
    std::map<int, int> by_size;
    for (const HMolecule& m : *packed->molecules()) ++by_size[m->natoms()];
    std::cout << "  unit cell: " << packed->nmolecules() << " molecules, " << packed->natoms() << " atoms:";
    for (const auto& entry : by_size) std::cout << " " << entry.second << " of " << entry.first << " atoms;";
    std::cout << "\n";

    // The neighbours of the asymmetric unit: images with an atom within
    // 3 A of its box, the atoms on the inversion centre once.
    std::vector<HAtom> own = CrystalMaker::create_atom_list(*asu);
    Box around;
    for (const HAtom& a : own) around.merge(a->site()->frac());
    around.expand(3 / cell.a(), 3 / cell.b(), 3 / cell.c());
    const FractionalSolid region(THandle<Solid>(new Box(around)));
    std::vector<HAtom> images;
    std::vector<CrystalSymmetryTransformation> routes;
    int dropped = 0;
    for (int i = 0; i < maker.nmolecules(); ++i) {
        const std::vector<HAtom> atoms = CrystalMaker::create_atom_list(*maker.molecule(i));
        SymmetryMappingLists<HAtom> lists = IfAnyIncluded<HAtom>().symmetry_generator(cell, atoms, region);
        for (const Hvector_HCrystalSymmetryMapping& list : *lists) {
            if ((*list)[0]->transformation().is_identity()) continue;
            if (list->size() < atoms.size()) dropped += static_cast<int>(atoms.size() - list->size());
            for (const HCrystalSymmetryMapping& m : *list) {
                images.push_back(m->target());
                routes.push_back(m->transformation());
            }
        }
    }
    own.clear();
    for (int i = 0; i < maker.nmolecules(); ++i)
        for (const HAtom& a : CrystalMaker::create_atom_list(*maker.molecule(i))) own.push_back(a);
    std::cout << "  " << images.size() << " image atoms around it; " << dropped
              << " fell on places already taken (the cobalt's own images)\n";
    std::cout << "  bonds that cross the asymmetric unit (published: Co-O1W 2.0673, Co-O1 2.0924, Co-O2 2.1031):\n";
    for (const std::pair<int, int>& p : rule.bonded_pairs(own, images)) {
        const HAtom& a = own[static_cast<std::size_t>(p.first)];
        const HAtom& b = images[static_cast<std::size_t>(p.second)];
        std::printf("    %-3s - %-3s %-22s %.4f A\n", a->label().c_str(), b->label().c_str(),
                    ("[" + to_text(routes[static_cast<std::size_t>(p.second)]) + "]").c_str(),
                    distance(a->site()->orth(), b->site()->orth()));
    }
}

/// A cyclic water trimer: oxygens 2.85 A apart at the corners of a triangle,
/// each water giving one hydrogen to the next and holding the other out of
/// the plane.
Hvector_HMolecule water_trimer() {
    const double pi = std::acos(-1.0);
    const double r = 2.85 / std::sqrt(3.0);
    Point oxygens[3];
    for (int k = 0; k < 3; ++k)
        oxygens[k] = Point(r * std::cos(pi / 2 + 2 * pi * k / 3), r * std::sin(pi / 2 + 2 * pi * k / 3), 0);
    Hvector_HMolecule waters(new vector_HMolecule());
    for (int k = 0; k < 3; ++k) {
        const Point& o = oxygens[k];
        const Vector<double, 3> u = Vector<double, 3>(oxygens[(k + 1) % 3] - o).unit();  // towards the next oxygen
        // Perpendicular to u: away from the ring's centre and upwards.
        Vector<double, 3> away = Vector<double, 3>(u[1], -u[0], 0).unit();
        if (away[0] * o[0] + away[1] * o[1] < 0) away = away * -1.0;
        const Vector<double, 3> w = Vector<double, 3>(away * 0.6 + Vector<double, 3>(0, 0, 0.8)).unit();
        const double hoh = 104.5 * pi / 180;
        const std::string n = std::to_string(k + 1);
        HMolecule m(new Molecule3d());
        const int oi = add_atom(*m, Element::O, "O" + n, o);
        const int h1 = add_atom(*m, Element::H, "H" + n + "A", Point(o + u * 0.96));
        const int h2 =
            add_atom(*m, Element::H, "H" + n + "B", Point(o + (u * std::cos(hoh) + w * std::sin(hoh)) * 0.96));
        m->add(HBond(new Bond3d(SINGLE_BOND)), oi, h1);
        m->add(HBond(new Bond3d(SINGLE_BOND)), oi, h2);
        waters->push_back(m);
    }
    return waters;
}

/// The hydrogen bonds between the molecules of `crystal`. A search from each
/// molecule finds every bond twice, once from each side; each is shown once,
/// from the side of its hydrogen.
void show_hydrogen_bonds(const std::string& name, const Crystal& crystal, const HBondCriterion& c) {
    int nfound = 0;
    std::vector<std::string> lines;
    for (int i = 0; i < crystal.nmolecules(); ++i) {
        const Hvector_HMolecularContact found = crystal.nonbonded_search(i, c);
        nfound += static_cast<int>(found->size());
        for (const HMolecularContact& contact : *found) {
            const HAtom h = contact->molecule_from()->atom(contact->atom_from());
            if (h->element().atomic_number() != 1) continue;
            const HAtom acceptor = contact->molecule_to()->atom(contact->atom_to());
            const HAtom donor = h->neighbours().front();
            char line[256];
            std::snprintf(
                line, sizeof line, "    %s-%s...%s  H...A %.3f A, D-H...A %.1f degrees; %s to %s\n",
                donor->label().c_str(), h->label().c_str(), acceptor->label().c_str(), contact->strength(),
                angle(donor->site()->orth(), h->site()->orth(), acceptor->site()->orth()).degrees(),
                HBondCriterion::default_donors()[HBondCriterion::donor_atom_type(*donor)].name.c_str(),
                HBondCriterion::default_acceptors()[HBondCriterion::acceptor_atom_type(*acceptor)].name.c_str());
            lines.push_back(line);
        }
    }
    std::cout << "  " << name << ": " << lines.size() << " hydrogen bonds (" << nfound
              << " contacts, each bond seen from both molecules)\n";
    for (const std::string& line : lines) std::cout << line;
}

void show_hbonds() {
    std::cout << "Hydrogen bonds\n";
    // The library's own defaults: between molecules, the H...A distance at
    // most the sum of the two van der Waals radii, D-H...A at least 120 degrees.
    const HBondCriterion c(0.0, -5.0, Angle::from_degrees(120), true, false, INTERMOLECULAR, 4, 999);
    c.print(std::cout);
    show_hydrogen_bonds("acetic acid dimer", Crystal(Cell(), acetic_acid_dimer()->split()), c);
    show_hydrogen_bonds("water trimer", Crystal(Cell(), water_trimer()), c);
    // Ethers have no hydrogen to give.
    Hvector_HMolecule ethers(new vector_HMolecule());
    for (double z : {0.0, 3.0}) {
        HMolecule m(new Molecule3d());
        add_atom(*m, Element::C, "C1", Point(0, 0, z));
        add_atom(*m, Element::O, "O1", Point(1.41, 0, z));
        add_atom(*m, Element::C, "C2", Point(1.9153, 1.3163, z));
        m->add(HBond(new Bond3d(SINGLE_BOND)), 0, 1);
        m->add(HBond(new Bond3d(SINGLE_BOND)), 1, 2);
        ethers->push_back(m);
    }
    const Crystal ether_pair(Cell(), ethers);
    std::cout << "  two dimethyl ethers 3 A apart: " << ether_pair.nonbonded_search(0, c)->size()
              << " hydrogen bonds\n";
}

}  // namespace

int main() {
    show_handles();
    show_archive();
    show_graph();
    show_molecules();
    show_contacts();
    show_crystal();
    show_hbonds();
    return 0;
}

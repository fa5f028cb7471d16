#include "molcryst/molecule/Molecule.h"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <utility>

#include "molcryst/geometry/GeometryFunctions.h"
#include "molcryst/molecule/Atom3d.h"
#include "molcryst/molecule/Bond3d.h"
#include "molcryst/molecule/BondData.h"
#include "molcryst/molecule/Molecule3d.h"
#include "molcryst/molecule/Site.h"
#include "molcryst/molecule/SybylAtomTyper.h"
#include "molcryst/support/TARNLog.h"

namespace molcryst {

namespace {

// Positions of merged atoms that match within this distance in every
// coordinate are the same atom.
const double merge_tolerance = 1e-05;

const Point& position_of(const HAtom& atom) {
    const HSite& site = atom->site();
    if (site.unhand() == nullptr) HandleCommon::null_handle_error();
    return site->orth();
}

std::vector<Point> positions_of(const Molecule& m, const std::vector<int>& atoms) {
    std::vector<Point> points;
    points.reserve(atoms.size());
    for (int i : atoms) points.push_back(position_of(m.atom(i)));
    return points;
}

std::vector<int> all_indices(int n) {
    std::vector<int> indices(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) indices[static_cast<std::size_t>(i)] = i;
    return indices;
}

}  // namespace

Molecule::Molecule() : atom_typer_(new SybylAtomTyper(SybylAtomTyper::HYDROGENS_MAY_BE_MISSING)) {
    MOLCRYST_DEBUG_LINE(3, "Entered Molecule::Molecule() - " << this);
}

Molecule::Molecule(const Molecule& x) : atom_typer_(x.atom_typer_) {
    MOLCRYST_DEBUG_LINE(3, "Entered Molecule::Molecule(const Molecule& x) - " << this);
}

Molecule& Molecule::operator=(const Molecule& x) {
    atom_typer_ = x.atom_typer_;
    return *this;
}

Molecule::~Molecule() { MOLCRYST_DEBUG_LINE(3, "Entered Molecule::~Molecule() - " << this); }

int Molecule::ncomponents() const { return graph()->ncomponents(); }
bool Molecule::contiguous() const { return graph()->contiguous(); }

HBond Molecule::bond(HAtom atom1, HAtom atom2) const {
    static const char* const head = "Molecule::bond(HAtom, HAtom) ";
    if (atom1.unhand() == nullptr) throw std::invalid_argument(std::string(head) + "atom1 is a null pointer");
    if (!has_atom(atom1)) throw std::invalid_argument(std::string(head) + "atom1 is not in this molecule");
    if (atom2.unhand() == nullptr) throw std::invalid_argument(std::string(head) + "atom2 is a null pointer");
    if (!has_atom(atom2)) throw std::invalid_argument(std::string(head) + "atom2 is not in this molecule");
    if (atom1 == atom2) throw std::invalid_argument(std::string(head) + "atom1 and atom2 are the same");
    std::deque<HBond> bonds1 = atom1->bonds();
    std::deque<HBond> bonds2 = atom2->bonds();
    for (const HBond& b : bonds1)
        if (std::find(bonds2.begin(), bonds2.end(), b) != bonds2.end()) return b;
    throw std::invalid_argument(std::string(head) + "no bond between atom1 and atom2 in this molecule");
}

bool Molecule::has_bond(HAtom atom1, HAtom atom2) const {
    static const char* const head = "Molecule::bond(HAtom, HAtom) ";
    if (atom1.unhand() == nullptr) throw std::invalid_argument(std::string(head) + "atom1 is a null pointer");
    if (atom2.unhand() == nullptr) throw std::invalid_argument(std::string(head) + "atom2 is a null pointer");
    if (!has_atom(atom1) || !has_atom(atom2) || atom1 == atom2) return false;
    std::deque<HBond> bonds1 = atom1->bonds();
    std::deque<HBond> bonds2 = atom2->bonds();
    for (const HBond& b : bonds1)
        if (std::find(bonds2.begin(), bonds2.end(), b) != bonds2.end()) return true;
    return false;
}

HMoleculeGraph Molecule::graph() const {
    return graph<AtomAlwaysTruePredicate<HAtom>, BondAlwaysTruePredicate<HBond> >();
}

int Molecule::atom_nconnections_nonmetal(int index) const {
    return static_cast<int>(atom_connections_nonmetal(index)->size());
}
int Molecule::atom_nconnections_metal(int index) const { return static_cast<int>(atom_connections_metal(index)->size()); }
int Molecule::atom_nconnections_nonhydrogen(int index) const {
    return static_cast<int>(atom_connections_nonhydrogen(index)->size());
}

Hvector_int Molecule::atom_connections_nonmetal(int index) const {
    Hvector_int all = atom_connections(index);
    Hvector_int kept(new std::vector<int>());
    for (int i : *all)
        if (atom(i)->element().non_metal()) kept->push_back(i);
    return kept;
}

Hvector_int Molecule::atom_connections_metal(int index) const {
    Hvector_int all = atom_connections(index);
    Hvector_int kept(new std::vector<int>());
    for (int i : *all)
        if (!atom(i)->element().non_metal()) kept->push_back(i);
    return kept;
}

Hvector_int Molecule::atom_connections_nonhydrogen(int index) const {
    Hvector_int all = atom_connections(index);
    Hvector_int kept(new std::vector<int>());
    for (int i : *all)
        if (atom(i)->element().atomic_number() != 1) kept->push_back(i);
    return kept;
}

std::string Molecule::bond_sybyl_type(int index) const {
    SybylAtomTyper sybyl(SybylAtomTyper::HYDROGENS_MAY_BE_MISSING);
    if (atom_typer_->name() != sybyl.name()) return sybyl.bond_type(*bond(index));
    return custom_bond_type(index);
}

Hvector_HMolecule Molecule::inplace_split() { editable_error("inplace_split"); }

bool Molecule::editable() const { return false; }

void Molecule::merge(const HMolecule& x_in) {
    check_editable("merge");
    HMolecule x(x_in);
    MOLCRYST_DEBUG_LINE(3, "Molecule::merge entered natoms=" << natoms() << " nbonds=" << nbonds());
    const int n = x->natoms();
    std::vector<int> mapped(static_cast<std::size_t>(n), -1);
    for (int i = 0; i < n; ++i) {
        HAtom a = x->atom(i);
        int here = -1;
        if (a->has_site() && find_atom(a->symmtag(), a->site()->orth(), here)) {
            mapped[static_cast<std::size_t>(i)] = here;
        } else {
            mapped[static_cast<std::size_t>(i)] = add(a->clone());
        }
    }
    const int m = x->nbonds();
    for (int i = 0; i < m; ++i) {
        HBond b = x->bond(i);
        const int a1 = mapped[static_cast<std::size_t>(b->atom1()->index())];
        const int a2 = mapped[static_cast<std::size_t>(b->atom2()->index())];
        // Two bonded atoms of x can both stand on one atom here; their bond is then dropped.
        if (a1 != a2 && bond_index(a1, a2) == -1) add(b->clone(), a1, a2);
    }
    MOLCRYST_DEBUG_LINE(3, "Molecule::merge completed natoms=" << natoms() << " nbonds=" << nbonds());
}

std::vector<int> Molecule::add(const Molecule& x) {
    check_editable("add");
    const int n = x.natoms();
    std::vector<int> added;
    added.reserve(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) added.push_back(add(x.atom(i)->clone()));
    const int m = x.nbonds();
    for (int i = 0; i < m; ++i) {
        HBond b = x.bond(i);
        add(b->clone(), added[static_cast<std::size_t>(b->atom1()->index())],
            added[static_cast<std::size_t>(b->atom2()->index())]);
    }
    return added;
}

int Molecule::remove_hydrogens() {
    check_editable("remove_hydrogens");
    return remove_atoms(AtomTerminalHDPredicate<HAtom>());
}

void Molecule::sort_atoms() {
    check_editable("sort_atoms");
    const int n = natoms();
    if (n == 0) return;
    int start = 0;
    int heaviest = atom(0)->element().atomic_number();
    for (int i = 1; i < n; ++i) {
        const int z = atom(i)->element().atomic_number();
        if (z > heaviest) {
            heaviest = z;
            start = i;
        }
    }
    // Depth first from the heaviest atom, neighbours taken in ascending
    // index at every level, on an explicit stack: a frame resumes its scan
    // of neighbours exactly where the deeper walk interrupted it.
    std::vector<int> order(1, start);
    std::vector<bool> flags(static_cast<std::size_t>(n), false);
    flags[static_cast<std::size_t>(start)] = true;
    struct Frame {
        std::vector<int> neighbours;
        std::size_t next;
    };
    std::vector<Frame> stack;
    auto push = [&](int atom_index) {
        Hvector_int connections = atom_connections(atom_index);
        Frame frame{std::vector<int>(connections->begin(), connections->end()), 0};
        std::sort(frame.neighbours.begin(), frame.neighbours.end());
        stack.push_back(std::move(frame));
    };
    push(start);
    while (!stack.empty()) {
        Frame& top = stack.back();
        if (top.next == top.neighbours.size()) {
            stack.pop_back();
            continue;
        }
        const int i = top.neighbours[top.next++];
        if (flags[static_cast<std::size_t>(i)]) continue;
        flags[static_cast<std::size_t>(i)] = true;
        order.push_back(i);
        push(i);
    }
    reorder_atoms(order);
}

int Molecule::add(HAtom) { editable_error("add"); }
int Molecule::unchecked_add(HAtom) { editable_error("unchecked_add"); }
int Molecule::add(HBond, int, int) { editable_error("add"); }
int Molecule::add(HBond, HAtom, HAtom) { editable_error("add"); }
int Molecule::unchecked_add(HBond, HAtom, HAtom) { editable_error("unchecked_add"); }
void Molecule::remove_atom(int) { editable_error("remove_atom"); }
void Molecule::remove(HAtom) { editable_error("remove"); }
void Molecule::remove_bond(int) { editable_error("remove_bond"); }
void Molecule::remove(HBond) { editable_error("remove"); }
void Molecule::isolate(HAtom) { editable_error("isolate"); }
void Molecule::clear() { editable_error("clear"); }
bool Molecule::archivable() { return false; }
void Molecule::write(Archive&) const {}
void Molecule::read(Archive&) {}
void Molecule::reorder_atoms(const std::vector<int>&) { editable_error("reorder_atoms"); }
void Molecule::reorder_bonds(const std::vector<int>&) { editable_error("reorder_bonds"); }
// Named as remove(HAtom) is: the batch stands for a series of those.
int Molecule::remove_atoms(const std::vector<HAtom>&) { editable_error("remove"); }

void Molecule::print(std::ostream& out) const {
    const int n = natoms();
    const int m = nbonds();
    out << "atoms: " << n << ", bonds: " << m << "\n";
    for (int i = 0; i < n; ++i) {
        HAtom a = atom(i);
        out << i << ": ";
        a->print(out);
        out << "\n";
        if (a->has_site()) out << "fract: " << a->site()->frac() << ", orthog: " << a->site()->orth() << "\n";
    }
    for (int i = 0; i < m; ++i) {
        out << i << ": ";
        bond(i)->print(out);
        out << "\n";
    }
}

void Molecule::check_editable(const char* name) const {
    if (!editable()) editable_error(name);
}

void Molecule::editable_error(const char* name) const {
    throw std::runtime_error(std::string("Molecule::") + name + " this molecule can not be edited.");
}

std::vector<Hvector_int> Molecule::adjacency_list() const {
    const int n = natoms();
    std::vector<Hvector_int> list;
    list.reserve(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) list.push_back(atom_connections(i));
    return list;
}

THandle<ResizableArray2D<bool> > Molecule::adjacency_matrix() const {
    const unsigned int n = static_cast<unsigned int>(natoms());
    THandle<ResizableArray2D<bool> > matrix(new ResizableArray2D<bool>(n, n, false));
    const int m = nbonds();
    for (int i = 0; i < m; ++i) {
        HBond b = bond(i);
        const unsigned int a = static_cast<unsigned int>(b->atom1()->index());
        const unsigned int c = static_cast<unsigned int>(b->atom2()->index());
        (*matrix)[a][c] = true;
        (*matrix)[c][a] = true;
    }
    return matrix;
}

int Molecule::shortest_path(int atom1, int atom2) const {
    return molcryst::shortest_path(adjacency_list(), atom1, atom2);
}

std::vector<int> Molecule::bond_subset(const std::vector<int>& atoms) const {
    std::vector<bool> in(static_cast<std::size_t>(natoms()), false);
    for (int i : atoms) {
        atom(i);  // an index out of range throws here
        in[static_cast<std::size_t>(i)] = true;
    }
    std::vector<int> bonds;
    const int m = nbonds();
    for (int i = 0; i < m; ++i) {
        HBond b = bond(i);
        if (in[static_cast<std::size_t>(b->atom1()->index())] && in[static_cast<std::size_t>(b->atom2()->index())])
            bonds.push_back(i);
    }
    return bonds;
}

std::vector<int> Molecule::atom_subset(const std::vector<int>& bonds) const {
    std::set<int> atoms;
    for (int i : bonds) {
        HBond b = bond(i);
        atoms.insert(b->atom1()->index());
        atoms.insert(b->atom2()->index());
    }
    return std::vector<int>(atoms.begin(), atoms.end());
}

std::vector<int> Molecule::atoms_with_sites() const { return atoms_with_sites(all_indices(natoms())); }

std::vector<int> Molecule::atoms_with_sites(const std::vector<int>& atoms) const {
    std::vector<int> kept;
    for (int i : atoms)
        if (atom(i)->has_site()) kept.push_back(i);
    return kept;
}

double Molecule::distance(int atom1, int atom2) const {
    return molcryst::distance(position_of(atom(atom1)), position_of(atom(atom2)));
}

Vector<double, 3> Molecule::vector(int atom1, int atom2) const {
    return position_of(atom(atom2)) - position_of(atom(atom1));
}

Vector<double, 3> Molecule::vector(int bond_index_) const {
    HBond b = bond(bond_index_);
    return position_of(b->atom2()) - position_of(b->atom1());
}

Angle Molecule::angle(int atom1, int apex, int atom3) const {
    return molcryst::angle(position_of(atom(atom1)), position_of(atom(apex)), position_of(atom(atom3)));
}

double Molecule::bond_length(int atom1, int atom2) const {
    if (bond_index(atom1, atom2) == -1) return 0.0;
    return distance(atom1, atom2);
}

double Molecule::bond_length(int bond_index_) const {
    HBond b = bond(bond_index_);
    return molcryst::distance(position_of(b->atom1()), position_of(b->atom2()));
}

Angle Molecule::bond_angle(int bond1, int bond2) const {
    HBond b1 = bond(bond1), b2 = bond(bond2);
    const int a1 = b1->atom1()->index(), a2 = b1->atom2()->index();
    const int c1 = b2->atom1()->index(), c2 = b2->atom2()->index();
    if (a1 == c1) return angle(a2, a1, c2);
    if (a1 == c2) return angle(a2, a1, c1);
    if (a2 == c1) return angle(a1, a2, c2);
    if (a2 == c2) return angle(a1, a2, c1);
    return Angle();
}

Angle Molecule::average_bond_angle(int atom_index) const {
    Hvector_int neighbours = atom_connections(atom_index);
    const std::size_t k = neighbours->size();
    if (k < 2) return Angle();
    Angle sum;
    int pairs = 0;
    for (std::size_t i = 0; i < k; ++i)
        for (std::size_t j = i + 1; j < k; ++j) {
            sum += angle((*neighbours)[i], atom_index, (*neighbours)[j]);
            ++pairs;
        }
    return sum / static_cast<double>(pairs);
}

Angle Molecule::torsion_angle(int atom1, int atom2, int atom3, int atom4) const {
    return molcryst::torsion_angle(position_of(atom(atom1)), position_of(atom(atom2)), position_of(atom(atom3)),
                                   position_of(atom(atom4)));
}

namespace {

// The three bond vectors of a chain of bonds a-b-c, each turned to run head
// to tail; false when the bonds form no chain.
bool chain_vectors(const Molecule& m, int a, int b, int c, Vector<double, 3> v[3]) {
    if (a == b || b == c || a == c) throw std::invalid_argument("Molecule::torsion_angle(a,b,c): repeated bond");
    HBond bonds[3] = {m.bond(a), m.bond(b), m.bond(c)};
    int ends[3][2];
    for (int k = 0; k < 3; ++k) {
        ends[k][0] = bonds[k]->atom1()->index();
        ends[k][1] = bonds[k]->atom2()->index();
    }
    // The middle bond decides the direction: its first end must be shared
    // with the first bond and its second with the third.
    for (int flip = 0; flip < 2; ++flip) {
        const int from = ends[1][flip], to = ends[1][1 - flip];
        const bool first_ok = ends[0][0] == from || ends[0][1] == from;
        const bool third_ok = ends[2][0] == to || ends[2][1] == to;
        if (!first_ok || !third_ok) continue;
        const int start = ends[0][0] == from ? ends[0][1] : ends[0][0];
        const int end = ends[2][0] == to ? ends[2][1] : ends[2][0];
        v[0] = m.vector(start, from);
        v[1] = m.vector(from, to);
        v[2] = m.vector(to, end);
        return true;
    }
    return false;
}

}  // namespace

Angle Molecule::torsion_angle(int bond1, int bond2, int bond3) const {
    Vector<double, 3> v[3];
    if (!chain_vectors(*this, bond1, bond2, bond3, v))
        throw std::invalid_argument("Molecule3d::torsion_angle(i,j,k): bonds not connected");
    return molcryst::torsion_angle(v[0], v[1], v[2]);
}

bool Molecule::valid_torsion(int atom1, int atom2, int atom3, int atom4, const Angle& limit) const {
    return molcryst::valid_torsion(position_of(atom(atom1)), position_of(atom(atom2)), position_of(atom(atom3)),
                                   position_of(atom(atom4)), limit);
}

bool Molecule::valid_torsion(int bond1, int bond2, int bond3, const Angle& limit) const {
    Vector<double, 3> v[3];
    if (!chain_vectors(*this, bond1, bond2, bond3, v))
        throw std::invalid_argument("Molecule3d::torsion_angle(i,j,k): bonds not connected");
    return molcryst::valid_torsion(v[0], v[1], v[2], limit);
}

Point Molecule::centroid() const { return centroid(all_indices(natoms())); }

Point Molecule::centroid(const std::vector<int>& atoms) const {
    return molcryst::centroid(positions_of(*this, atoms_with_sites(atoms)));
}

Box Molecule::box() const { return box(all_indices(natoms())); }

Box Molecule::box(const std::vector<int>& atoms) const {
    Box b;
    for (const Point& p : positions_of(*this, atoms_with_sites(atoms))) b.merge(p);
    return b;
}

Plane Molecule::mean_plane() const { return mean_plane(all_indices(natoms())); }

Plane Molecule::mean_plane(const std::vector<int>& atoms) const {
    return Plane(positions_of(*this, atoms_with_sites(atoms)));
}

int Molecule::formal_charge() const {
    int charge = 0;
    const int n = natoms();
    for (int i = 0; i < n; ++i) charge += atom(i)->formal_charge();
    return charge;
}

bool Molecule::find_atom(int symmtag, const Point& position, int& index) const {
    const int n = natoms();
    for (int i = 0; i < n; ++i) {
        HAtom a = atom(i);
        if (!a->has_site() || a->symmtag() != symmtag) continue;
        if (equals(a->site()->orth(), position, merge_tolerance)) {
            index = i;
            return true;
        }
    }
    return false;
}

void Molecule::add_graph(const OrderedGraph<HAtom, HBond>& g) {
    check_editable("add_graph");
    for (OrderedGraph<HAtom, HBond>::const_node_iterator a = g.begin_nodes(); a != g.end_nodes(); ++a) add(*a);
    for (OrderedGraph<HAtom, HBond>::const_edge_iterator b = g.begin_edges(); b != g.end_edges(); ++b)
        add(*b, g.edge_node1(*b), g.edge_node2(*b));
}

void Molecule::remove_graph(const OrderedGraph<HAtom, HBond>& g) {
    check_editable("remove_graph");
    for (OrderedGraph<HAtom, HBond>::const_edge_iterator b = g.begin_edges(); b != g.end_edges(); ++b) remove(*b);
    for (OrderedGraph<HAtom, HBond>::const_node_iterator a = g.begin_nodes(); a != g.end_nodes(); ++a) remove(*a);
}

namespace {

// A copy of the atom that lives on its own: an atom whose clone still
// forwards to another atom (a view), and so shares its site or leaves
// nothing in an archive, is copied as a plain atom instead.
HAtom independent_copy(const HAtom& atom) {
    HAtom copy = atom->clone();
    if (!copy->archivable() || (copy->has_site() && copy->site() == atom->site())) copy = HAtom(new Atom3d(*atom));
    return copy;
}

}  // namespace

HMolecule Molecule::create_molecule(const std::vector<int>& atoms) const {
    Hvector_HAtom copies(new std::vector<HAtom>());
    std::vector<int> renumbered(static_cast<std::size_t>(natoms()), -1);
    for (std::size_t k = 0; k < atoms.size(); ++k) {
        HAtom a = atom(atoms[k]);
        copies->push_back(independent_copy(a));
        int& slot = renumbered[static_cast<std::size_t>(atoms[k])];
        if (slot == -1) slot = static_cast<int>(k);
    }
    Hvector_HBondData bonds(new std::vector<THandle<BondData> >());
    for (int i : bond_subset(atoms)) {
        HBond b = bond(i);
        bonds->push_back(THandle<BondData>(new BondData(renumbered[static_cast<std::size_t>(b->atom1()->index())],
                                                        renumbered[static_cast<std::size_t>(b->atom2()->index())],
                                                        b->type())));
    }
    return HMolecule(new Molecule3d(copies, bonds));
}

HMolecule Molecule::create_molecule(const CrystalSymmetryTransformation& t, const Cell& cell) const {
    Hvector_HAtom copies(new std::vector<HAtom>());
    const int n = natoms();
    for (int i = 0; i < n; ++i) {
        HAtom copy = independent_copy(atom(i));
        if (copy->has_site()) copy->site()->transform(t, cell);
        copies->push_back(copy);
    }
    Hvector_HBondData bonds(new std::vector<THandle<BondData> >());
    const int m = nbonds();
    for (int i = 0; i < m; ++i) bonds->push_back(THandle<BondData>(new BondData(*bond(i))));
    return HMolecule(new Molecule3d(copies, bonds));
}

void Molecule::validate(int level) const {
    if (level != 4) return;
    const int n = natoms();
    std::set<const Atom*> seen;
    for (int i = 0; i < n; ++i)
        if (!seen.insert(atom(i).unhand()).second) throw std::runtime_error("Molecule::validate: An atom appears twice.");
    std::set<std::pair<int, int> > pairs;
    const int m = nbonds();
    for (int i = 0; i < m; ++i) {
        HBond b = bond(i);
        HAtom a1 = b->atom1(), a2 = b->atom2();
        if (a1.unhand() == nullptr || a2.unhand() == nullptr || !has_atom(a1) || !has_atom(a2))
            throw std::runtime_error("Molecule::validate: illegal bond.");
        const int i1 = a1->index(), i2 = a2->index();
        if (i1 < 0 || i1 >= n || i2 < 0 || i2 >= n) throw std::runtime_error("Molecule::validate: illegal bond.");
        if (!pairs.insert(std::make_pair(std::min(i1, i2), std::max(i1, i2))).second)
            throw std::runtime_error("Molecule::validate: A bond appears twice.");
    }
}

std::string Molecule::atom_sybyl_type(int index) const {
    static const SybylAtomTyper sybyl(SybylAtomTyper::HYDROGENS_MAY_BE_MISSING);
    return sybyl.atom_type(*atom(index));
}

std::string Molecule::custom_atom_type(int index) const { return atom_typer_->atom_type(*this, index); }

std::string Molecule::custom_bond_type(int index) const { return atom_typer_->bond_type(*this, index); }

bool operator==(const Molecule& a, const Molecule& b) {
    const int n = a.natoms();
    if (n != b.natoms()) return false;
    for (int i = 0; i < n; ++i)
        if (!(*a.atom(i) == *b.atom(i))) return false;
    const int m = a.nbonds();
    if (m != b.nbonds()) return false;
    for (int i = 0; i < m; ++i) {
        HBond x = a.bond(i), y = b.bond(i);
        if (!(*x == *y)) return false;
        if (x->atom1()->index() != y->atom1()->index() || x->atom2()->index() != y->atom2()->index()) return false;
    }
    return true;
}

bool operator!=(const Molecule& a, const Molecule& b) { return !(a == b); }

std::ostream& operator<<(std::ostream& out, const Molecule& molecule) {
    molecule.print(out);
    return out;
}

}  // namespace molcryst

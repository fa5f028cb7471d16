#include "molcryst/crystal/CrystalMaker.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "molcryst/crystal/CrystalMakerHelpers.h"
#include "molcryst/geometry/GeometryFunctions.h"
#include "molcryst/molecule/Bond.h"
#include "molcryst/molecule/BondData.h"
#include "molcryst/molecule/Molecule3d.h"
#include "molcryst/molecule/MoleculeSubset.h"
#include "molcryst/molecule/Site.h"
#include "molcryst/support/Archive.h"
#include "molcryst/support/TARNLog.h"
#include "MoleculeListSearch.h"

namespace molcryst {

namespace {

const double symmetry_tolerance = 1e-07;

Hvector_HMolecule list_or_empty(const Hvector_HMolecule& list) {
    return list.unhand() != nullptr ? list : Hvector_HMolecule(new vector_HMolecule());
}

bool valid_selection(int s) { return s >= CrystalMaker::Select2d && s <= CrystalMaker::SelectMatched; }

void append(vector_HMolecule& to, const vector_HMolecule& from) { to.insert(to.end(), from.begin(), from.end()); }

// Whether two atoms are images of each other: by their tags when both are
// known, else by the cell's symmetry.
bool atoms_related(const Cell& cell, const Atom& x, const Atom& y) {
    if (x.symmtag() == -1 || y.symmtag() == -1)
        return cell.is_symmetry_related(x.site()->frac(), y.site()->frac(), symmetry_tolerance);
    return x.symmtag() == y.symmtag();
}

// Every sited atom of the three lists, in list order, then atom order.
template <class F>
void for_each_site(const Hvector_HMolecule* const (&lists)[3], F f) {
    for (const Hvector_HMolecule* list : lists)
        for (const HMolecule& m : **list) {
            const int n = m->natoms();
            for (int i = 0; i < n; ++i) {
                HSite site = m->atom(i)->site();
                if (site.unhand() != nullptr) f(*site);
            }
        }
}

// The stable order that puts `before` elements first, as reorder_* takes it;
// empty when nothing moves.
template <class Handle, class Compare>
std::vector<int> stable_order(const std::vector<Handle>& items, Compare before) {
    std::vector<int> order(items.size());
    for (std::size_t k = 0; k < order.size(); ++k) order[k] = static_cast<int>(k);
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
        return before(items[static_cast<std::size_t>(a)], items[static_cast<std::size_t>(b)]);
    });
    for (std::size_t k = 0; k < order.size(); ++k)
        if (order[k] != static_cast<int>(k)) return order;
    return std::vector<int>();
}

void sort_atoms_by_sites(Molecule& m) {
    std::vector<HAtom> atoms;
    for (int i = 0; i < m.natoms(); ++i) atoms.push_back(m.atom(i));
    const std::vector<int> order = stable_order(atoms, CrystalMakerHelpers::AtomCompareNsites());
    if (!order.empty()) m.reorder_atoms(order);
}

void sort_bonds_by_sites(Molecule& m) {
    std::vector<HBond> bonds;
    for (int i = 0; i < m.nbonds(); ++i) bonds.push_back(m.bond(i));
    const std::vector<int> order = stable_order(bonds, CrystalMakerHelpers::BondCompareNsites());
    if (!order.empty()) m.reorder_bonds(order);
}

bool holds_isolated_atom(const Molecule& m) {
    const CrystalMakerHelpers::AtomIsolatedPredicate isolated;
    for (int i = 0; i < m.natoms(); ++i)
        if (isolated(m.atom(i))) return true;
    return false;
}

void erase_handle(vector_HMolecule& list, const HMolecule& m) {
    list.erase(std::remove(list.begin(), list.end(), m), list.end());
}

}  // namespace

CrystalMaker::CrystalMaker()
    : current_molecules_(new vector_HMolecule()),
      selection_(SelectAll),
      molecules_(new vector_HMolecule()),
      molecules2d_(new vector_HMolecule()),
      molecules3d_(new vector_HMolecule()) {
    MOLCRYST_DEBUG_LINE(3, "Entered CrystalMaker::CrystalMaker() - " << static_cast<const void*>(this));
}

CrystalMaker::CrystalMaker(const Cell& cell, Hvector_HMolecule molecules, Hvector_HMolecule molecules2d,
                           Hvector_HMolecule molecules3d)
    : cell_(cell),
      current_molecules_(new vector_HMolecule()),
      selection_(Select2d),
      molecules_(list_or_empty(molecules)),
      molecules2d_(list_or_empty(molecules2d)),
      molecules3d_(list_or_empty(molecules3d)) {
    MOLCRYST_DEBUG_LINE(3,
                        "Entered CrystalMaker::CrystalMaker(const Cell& cell, Hvector_HMolecule molecules, "
                        "Hvector_HMolecule molecules2d, Hvector_HMolecule molecules3d) - "
                            << static_cast<const void*>(this));
    select(Select2d);
}

CrystalMaker::CrystalMaker(Archive& ar)
    : current_molecules_(new vector_HMolecule()),
      selection_(SelectAll),
      molecules_(new vector_HMolecule()),
      molecules2d_(new vector_HMolecule()),
      molecules3d_(new vector_HMolecule()) {
    MOLCRYST_DEBUG_LINE(3, "Entered CrystalMaker::CrystalMaker(Archive& ar) - " << static_cast<const void*>(this));
    read(ar);
}

CrystalMaker::CrystalMaker(const CrystalMaker& x)
    : cell_(x.cell_),
      current_molecules_(new vector_HMolecule()),
      selection_(x.selection_),
      molecules_(deepcopy<Molecule, Molecule3d>(x.molecules_)),
      molecules2d_(deepcopy<Molecule, Molecule3d>(x.molecules2d_)),
      molecules3d_(deepcopy<Molecule, Molecule3d>(x.molecules3d_)) {
    MOLCRYST_DEBUG_LINE(3, "Entered CrystalMaker::CrystalMaker(const CrystalMaker& x) - "
                               << static_cast<const void*>(this));
    select(x.selection_);
}

CrystalMaker& CrystalMaker::operator=(const CrystalMaker& x) {
    if (this == &x) return *this;
    // Copies first: a failure leaves this maker as it was.
    Hvector_HMolecule molecules = deepcopy<Molecule, Molecule3d>(x.molecules_);
    Hvector_HMolecule molecules2d = deepcopy<Molecule, Molecule3d>(x.molecules2d_);
    Hvector_HMolecule molecules3d = deepcopy<Molecule, Molecule3d>(x.molecules3d_);
    cell_ = x.cell_;
    molecules_ = molecules;
    molecules2d_ = molecules2d;
    molecules3d_ = molecules3d;
    select(x.selection_);
    return *this;
}

CrystalMaker::~CrystalMaker() {
    MOLCRYST_DEBUG_LINE(3, "Entered CrystalMaker::~CrystalMaker() - " << static_cast<const void*>(this));
}

// Range-checked: an index is the caller's to get right, and a bad one must not crash.
HMolecule CrystalMaker::molecule(int index) const {
    if (index < 0 || index >= nmolecules()) throw std::out_of_range("CrystalMaker::molecule(int) index out of range");
    return (*current_molecules_)[static_cast<std::size_t>(index)];
}

int CrystalMaker::natoms() const {
    int n = 0;
    for (const HMolecule& m : *current_molecules_) n += m->natoms();
    return n;
}

int CrystalMaker::nbonds() const {
    int n = 0;
    for (const HMolecule& m : *current_molecules_) n += m->nbonds();
    return n;
}

HMolecule CrystalMaker::find_molecule(int index, int symmtag) const {
    return crystal_detail::find_molecule(*current_molecules_, index, symmtag);
}

bool CrystalMaker::find_atom(int symmtag, const Point& p, HMolecule& molecule, int& index) const {
    return crystal_detail::find_atom(*current_molecules_, symmtag, p, molecule, index);
}

void CrystalMaker::select(Selection s) {
    if (!valid_selection(s)) throw std::invalid_argument("Invalid Selection!");
    vector_HMolecule& view = *current_molecules_;
    view.clear();
    append(view, *molecules_);
    if (s == Select2d || s == SelectAll) append(view, *molecules2d_);
    if (s == Select3d || s == SelectAll) append(view, *molecules3d_);
    selection_ = s;
}

CrystalMaker::MatchLevel CrystalMaker::match_level() const {
    const bool unmatched = !molecules2d_->empty() || !molecules3d_->empty();
    if (molecules_->empty()) return NotMatched;
    return unmatched ? PartiallyMatched : FullyMatched;
}

Hvector_HMolecule& CrystalMaker::list_for(Selection s) {
    if (!valid_selection(s)) throw std::invalid_argument("Invalid Selection!");
    if (s == Select2d) return molecules2d_;
    if (s == Select3d) return molecules3d_;
    return molecules_;
}

void CrystalMaker::add(HMolecule m, Selection s) {
    Hvector_HMolecule& list = list_for(s);
    if (m.unhand() == nullptr)
        throw std::invalid_argument("CrystalMaker::add(HMolecule, Selection) molecule is a null pointer");
    list->push_back(m);
    select(selection_);
}

void CrystalMaker::remove(HMolecule m) {
    if (m.unhand() == nullptr) throw std::invalid_argument("CrystalMaker::remove(HMolecule) molecule is a null pointer");
    erase_handle(*molecules_, m);
    erase_handle(*molecules2d_, m);
    erase_handle(*molecules3d_, m);
    erase_handle(*current_molecules_, m);
}

void CrystalMaker::add(HBond bond, HAtom atom1, HAtom atom2) {
    HMolecule m1 = CrystalMakerHelpers::molecule(*this, atom1);
    if (m1.unhand() == nullptr)
        throw std::invalid_argument(
            "CrystalMaker::add(HBond, HAtom, HAtom): atom1 is not in any of the currently-selected molecules");
    HMolecule m2 = CrystalMakerHelpers::molecule(*this, atom2);
    if (m2.unhand() == nullptr)
        throw std::invalid_argument(
            "CrystalMaker::add(HBond, HAtom, HAtom): atom2 is not in any of the currently-selected molecules");
    if (m1 == m2) {
        m1->add(bond, atom1, atom2);  // refuses a bad bond before any change
    } else {
        // What the molecule would refuse after the merge is refused before it.
        if (bond.unhand() == nullptr)
            throw std::invalid_argument("CrystalMaker::add(HBond, HAtom, HAtom) bond is a null pointer");
        if (bond->graph_data().graph().unhand() != nullptr)
            throw std::domain_error("CrystalMaker::add(HBond, HAtom, HAtom) bond is already in a molecule");
        m1->check_editable("add_graph");
        m2->check_editable("clear");
        const bool m1_has_siteless = m1->atoms_with_sites().size() != static_cast<std::size_t>(m1->natoms());
        remove(m2);
        HMoleculeGraph g = m2->graph();
        m2->clear();
        m1->add_graph(*g);
        m1->add(bond, atom1, atom2);
        if (m1_has_siteless) sort_atoms_by_sites(*m1);
    }
    sort_bonds_by_sites(*m1);
}

void CrystalMaker::remove(HAtom atom) {
    HMolecule m = CrystalMakerHelpers::molecule(*this, atom);
    if (m.unhand() == nullptr)
        throw std::invalid_argument(
            "CrystalMaker::remove(HAtom): atom is not in any of the currently-selected molecules");
    m->check_editable("remove");
    const int nbonds = atom->nbonds();
    const bool may_split = !(nbonds == 1 || (atom->cyclic() && nbonds == 2) || holds_isolated_atom(*m));
    m->remove(atom);
    if (may_split) split_molecule(m);
    if (m->natoms() == 0) remove(m);
}

void CrystalMaker::remove(HBond bond) {
    HMolecule m = CrystalMakerHelpers::molecule(*this, bond);
    if (m.unhand() == nullptr)
        throw std::invalid_argument(
            "CrystalMaker::remove(HBond): bond is not in any of the currently-selected molecules");
    m->check_editable("remove");
    const bool may_split = !(bond->cyclic() || holds_isolated_atom(*m));
    m->remove(bond);
    if (may_split) split_molecule(m);
}

void CrystalMaker::split_molecule(HMolecule m) {
    if (m.unhand() == nullptr)
        throw std::invalid_argument("CrystalMaker::split_molecule(HMolecule) molecule is a null pointer");
    if (m->ncomponents() < 2) return;
    m->check_editable("remove_graph");
    THandle<std::vector<HMoleculeGraph> > parts = m->graph()->split();
    for (std::size_t k = 1; k < parts->size(); ++k) {
        const OrderedGraph<HAtom, HBond>& part = *(*parts)[k];
        m->remove_graph(part);
        add(HMolecule(new Molecule3d(part)), SelectMatched);
    }
}

void CrystalMaker::set_cell(const Cell& cell, CoordinatesToKeep keep) {
    cell_ = cell;
    const Hvector_HMolecule* const lists[3] = {&molecules_, &molecules2d_, &molecules3d_};
    if (keep == KeepOrthogonal)
        for_each_site(lists, [&](Site& s) { s.set_orth(s.orth(), cell_); });
    else
        for_each_site(lists, [&](Site& s) { s.set_frac(s.frac(), cell_); });
}

void CrystalMaker::transform(const Matrix<int, 3, 3>& m) {
    // Entries beyond 2^20 would overflow the integer determinant; no change
    // of axes has them.
    const long long bound = 1LL << 20;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            if (m(i, j) > bound || m(i, j) < -bound)
                throw std::invalid_argument("CrystalMaker::transform(): matrix element out of range.");
    auto e = [&](int i, int j) { return static_cast<long long>(m(i, j)); };
    const long long det = e(0, 0) * (e(1, 1) * e(2, 2) - e(1, 2) * e(2, 1)) -
                          e(0, 1) * (e(1, 0) * e(2, 2) - e(1, 2) * e(2, 0)) +
                          e(0, 2) * (e(1, 0) * e(2, 1) - e(1, 1) * e(2, 0));
    if (det < 0) throw std::runtime_error("CrystalMaker::transform(): determinant < 0.");
    const Vector<double, 3> a = CrystalMakerHelpers::transform_axis(m.row(1), cell_);
    const Vector<double, 3> b = CrystalMakerHelpers::transform_axis(m.row(2), cell_);
    const Vector<double, 3> c = CrystalMakerHelpers::transform_axis(m.row(3), cell_);
    // A zero determinant passes the test above; the new axes then define no
    // rotation or no cell, which is refused here, before anything changes.
    Matrix<double, 3, 3> r;
    Cell cell;
    try {
        r = align_two_vectors(a, b, Vector<double, 3>(1, 0, 0), Vector<double, 3>(0, 1, 0));
        cell = Cell(r * a, r * b, r * c, Spacegroup("P1", -1, 0));
    } catch (const std::invalid_argument&) {
        throw std::invalid_argument("CrystalMaker::transform(): the new axes span no volume.");
    }
    const Hvector_HMolecule* const lists[3] = {&molecules_, &molecules2d_, &molecules3d_};
    for_each_site(lists, [&](Site& s) { s.set_orth(Point(r * s.orth()), cell_); });
    set_cell(cell, KeepOrthogonal);
}

bool CrystalMaker::is_symmetry_related(int i, int j) const {
    if (i == j) return true;
    const int n = static_cast<int>(molecules_->size());
    if (i < 0 || i >= n || j < 0 || j >= n)
        throw std::out_of_range("CrystalMaker::is_symmetry_related(int, int) index out of range");
    return is_symmetry_related(*(*molecules_)[static_cast<std::size_t>(i)],
                               *(*molecules_)[static_cast<std::size_t>(j)]);
}

bool CrystalMaker::is_symmetry_related(const Molecule& a, const Molecule& b) const {
    if (a == b) return true;
    const std::vector<int> sited_a = a.atoms_with_sites();
    const std::vector<int> sited_b = b.atoms_with_sites();
    for (int i : sited_a) {
        HAtom x = a.atom(i);
        for (int j : sited_b)
            if (atoms_related(cell_, *x, *b.atom(j))) return true;
    }
    return false;
}

bool CrystalMaker::are_all_symmetry_related(const Molecule& a, const Molecule& b,
                                            const std::vector<int>& atoms_of_b) const {
    if (a == b) return true;
    const std::vector<int> sited_a = a.atoms_with_sites();
    for (int j : atoms_of_b) {
        HAtom y = b.atom(j);
        if (!y->has_site()) continue;
        bool partner = false;
        for (int i : sited_a)
            if ((partner = atoms_related(cell_, *a.atom(i), *y))) break;
        if (!partner) return false;
    }
    return true;
}

std::vector<HAtom> CrystalMaker::create_atom_list(const Molecule& m) {
    std::vector<HAtom> atoms;
    const int n = m.natoms();
    atoms.reserve(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) atoms.push_back(m.atom(i));
    return atoms;
}

std::vector<Point> CrystalMaker::create_points(const Molecule& m) {
    std::vector<Point> points;
    const int n = m.natoms();
    points.reserve(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) {
        HAtom a = m.atom(i);
        if (!a->has_site())
            throw std::invalid_argument("CrystalMaker::create_points(const Molecule&) atom " + std::to_string(i) +
                                        " has no site");
        points.push_back(a->site()->frac());
    }
    return points;
}

Hvector_HMolecule CrystalMaker::create_molecule(HMolecule source,
                                                const std::vector<Hvector_HCrystalSymmetryMapping>& lists,
                                                bool /*all_atoms*/) const {
    Hvector_HMolecule result(new vector_HMolecule());
    result->reserve(lists.size());
    const int n = source->natoms();
    // The source's own bonds, shared by every list that maps all its atoms.
    Hvector_HBondData all_bonds;
    for (const Hvector_HCrystalSymmetryMapping& list : lists) {
        Hvector_HAtom targets(new std::vector<HAtom>());
        std::vector<int> indices;
        targets->reserve(list->size());
        indices.reserve(list->size());
        for (const HCrystalSymmetryMapping& mapping : *list) {
            targets->push_back(mapping->target());
            indices.push_back(mapping->source()->index());
        }
        Hvector_HBondData bonds;
        // A list that lost atoms on a symmetry element takes the subset path,
        // even where the caller said all atoms are mapped: the source's bond
        // indices would point past or at the wrong targets.
        if (n != static_cast<int>(indices.size())) {
            HMoleculeSubset subset(new MoleculeSubset(source));
            subset->select_atom_indices(indices);
            bonds = Hvector_HBondData(new std::vector<THandle<BondData> >());
            for (int i = 0; i < subset->nbonds(); ++i)
                bonds->push_back(THandle<BondData>(new BondData(*subset->bond(i))));
        } else {
            if (all_bonds.unhand() == nullptr) {
                all_bonds = Hvector_HBondData(new std::vector<THandle<BondData> >());
                for (int i = 0; i < source->nbonds(); ++i)
                    all_bonds->push_back(THandle<BondData>(new BondData(*source->bond(i))));
            }
            bonds = all_bonds;
        }
        result->push_back(HMolecule(new Molecule3d(targets, bonds)));
    }
    return result;
}

HCrystal CrystalMaker::create_crystal() const {
    Hvector_HMolecule molecules(new vector_HMolecule());
    for (const Hvector_HMolecule* list : {&molecules_, &molecules3d_})
        for (const HMolecule& m : **list) molecules->push_back(m->create_molecule(m->atoms_with_sites()));
    return HCrystal(new Crystal(cell_, molecules));
}

void CrystalMaker::append_images(const HMolecule& m, const SymmetryInclusionCondition<HAtom>& condition,
                                 const TransformedSolid& solid, bool all_atoms, vector_HMolecule& out) const {
    SymmetryMappingLists<HAtom> lists = condition.symmetry_generator(cell_, create_atom_list(*m), solid);
    Hvector_HMolecule images = create_molecule(m, *lists, all_atoms);
    append(out, *images);
}

HCrystal CrystalMaker::create_crystal(const SymmetryInclusionCondition<HAtom>& condition,
                                      const TransformedSolid& solid) const {
    Hvector_HMolecule molecules(new vector_HMolecule());
    for (const HMolecule& current : *current_molecules_) {
        HMolecule m = CrystalMakerHelpers::lazy_select_3d(current);
        if (m->natoms() == 0) continue;
        append_images(m, condition, solid, false, *molecules);
    }
    return HCrystal(new Crystal(cell_, molecules));
}

HCrystal CrystalMaker::create_crystal(int i, const SymmetryInclusionCondition<HAtom>& condition,
                                      const TransformedSolid& solid) const {
    Hvector_HMolecule molecules(new vector_HMolecule());
    append_images(CrystalMakerHelpers::lazy_select_3d(molecule(i)), condition, solid, true, *molecules);
    return HCrystal(new Crystal(cell_, molecules));
}

HCrystal CrystalMaker::create_crystal(int i, const std::vector<int>& atoms,
                                      const SymmetryInclusionCondition<HAtom>& condition,
                                      const TransformedSolid& solid) const {
    Hvector_HMolecule molecules(new vector_HMolecule());
    append_images(CrystalMakerHelpers::lazy_subset(molecule(i), atoms), condition, solid, false, *molecules);
    return HCrystal(new Crystal(cell_, molecules));
}

void CrystalMaker::write(Archive& ar) const {
    cell_.write(ar);
    ar << static_cast<char>(selection_);
    ar << std::string(8, ' ');  // reserved
    for (const Hvector_HMolecule* list : {&molecules_, &molecules2d_, &molecules3d_}) {
        ar << static_cast<unsigned int>((*list)->size());
        for (const HMolecule& m : **list) m->write(ar);
    }
}

void CrystalMaker::read(Archive& ar) {
    // Into locals: a failed read leaves the maker as it was.
    Cell cell;
    {
        Archive::Field field(ar, "CrystalMaker::read cell");
        cell.read(ar);
    }
    char selection = 0;
    {
        Archive::Field field(ar, "CrystalMaker::read selection");
        ar >> selection;
        if (!valid_selection(selection))
            ar.read_error("selection " + std::to_string(static_cast<int>(selection)) + " is not 0 to 3");
    }
    {
        Archive::Field field(ar, "CrystalMaker::read reserved text");
        std::string reserved;
        ar >> reserved;
    }
    static const char* const fields[3] = {"CrystalMaker::read matched molecules",
                                          "CrystalMaker::read unmatched molecules 2d",
                                          "CrystalMaker::read unmatched molecules 3d"};
    Hvector_HMolecule lists[3];
    for (int k = 0; k < 3; ++k) {
        Archive::Field field(ar, fields[k]);
        int count = 0;
        ar >> count;
        ar.check_count(count, 4, "molecule count");
        lists[k] = Hvector_HMolecule(new vector_HMolecule());
        for (int i = 0; i < count; ++i) {
            HMolecule m(new Molecule3d());
            m->read(ar);
            lists[k]->push_back(m);
        }
    }
    cell_ = cell;
    molecules_ = lists[0];
    molecules2d_ = lists[1];
    molecules3d_ = lists[2];
    select(static_cast<Selection>(selection));
}

namespace {

void print_list(std::ostream& os, const vector_HMolecule& list) {
    for (std::size_t k = 0; k < list.size(); ++k) {
        os << "molecule " << k << ":\n";
        list[k]->print(os);
    }
}

}  // namespace

void CrystalMaker::print(std::ostream& os) const {
    os << "cell: " << cell_ << "\n";
    os << "selection: " << static_cast<int>(selection_) << "\n";
    os << "matched molecules: " << molecules_->size() << "\n";
    print_list(os, *molecules_);
    os << "unmatched molecules 2d: " << molecules2d_->size() << "\n";
    print_list(os, *molecules2d_);
    os << "unmatched molecules 3d: " << molecules3d_->size() << "\n";
    print_list(os, *molecules3d_);
    os << "current molecules: " << nmolecules() << " natoms: " << natoms() << " nbonds: " << nbonds() << "\n";
    print_list(os, *current_molecules_);
}

bool operator==(const CrystalMaker& a, const CrystalMaker& b) {
    if (a.cell() != b.cell() || a.nmolecules() != b.nmolecules()) return false;
    for (int i = 0; i < a.nmolecules(); ++i)
        if (*a.molecule(i) != *b.molecule(i)) return false;
    return true;
}

bool operator!=(const CrystalMaker& a, const CrystalMaker& b) { return !(a == b); }

std::ostream& operator<<(std::ostream& os, const CrystalMaker& maker) {
    maker.print(os);
    return os;
}

}  // namespace molcryst

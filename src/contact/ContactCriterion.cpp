#include "molcryst/contact/ContactCriterion.h"

#include <climits>
#include <cmath>
#include <deque>
#include <stdexcept>
#include <string>
#include <typeinfo>

#include "PairGrid.h"
#include "molcryst/crystal/Crystal.h"
#include "molcryst/molecule/Site.h"
#include "molcryst/support/Archive.h"

namespace molcryst {

using contact_detail::PairGrid;

const char* contact_type_name(ContactType type) {
    switch (type) {
        case INTERMOLECULAR:
            return "INTER";
        case INTRAMOLECULAR:
            return "INTRA";
        case INTRA_AND_INTERMOLECULAR:
            return "INTRA and INTER";
    }
    return "";
}

// Paths from one first atom at a time, over an adjacency list and component
// numbers made once for the molecule of a group search. The walk stops past
// max_path, so its cost is that of the neighbourhood the limits look at.
struct ContactCriterion::PathCache {
    const Molecule* molecule = nullptr;
    std::vector<Hvector_int> adjacency;
    std::vector<int> component;  // per atom; filled on first use
    std::vector<int> depth;      // per atom, -1 when not reached from `source`
    std::vector<int> reached;    // the atoms whose depth is set
    int source = -1;
    int limit = INT_MAX;  // depth at which the walk stops

    void prepare(const Molecule& mol, int max_path) {
        molecule = &mol;
        adjacency = mol.adjacency_list();
        const std::size_t n = adjacency.size();
        depth.assign(n, -1);
        limit = max_path < 0 ? 0 : max_path;
        // Components by breadth-first walks, iteratively: no recursion.
        component.assign(n, -1);
        int count = 0;
        std::deque<int> queue;
        for (std::size_t start = 0; start < n; ++start) {
            if (component[start] != -1) continue;
            component[start] = count;
            queue.push_back(static_cast<int>(start));
            while (!queue.empty()) {
                const int node = queue.front();
                queue.pop_front();
                const std::vector<int>* next = adjacency[static_cast<std::size_t>(node)].unhand();
                if (next == nullptr) continue;
                for (int k : *next) {
                    if (k < 0 || static_cast<std::size_t>(k) >= n || component[static_cast<std::size_t>(k)] != -1)
                        continue;
                    component[static_cast<std::size_t>(k)] = count;
                    queue.push_back(k);
                }
            }
            ++count;
        }
    }

    void walk_from(int from) {
        for (int k : reached) depth[static_cast<std::size_t>(k)] = -1;
        reached.clear();
        source = from;
        depth[static_cast<std::size_t>(from)] = 0;
        reached.push_back(from);
        for (std::size_t head = 0; head < reached.size(); ++head) {
            const int node = reached[head];
            const int d = depth[static_cast<std::size_t>(node)];
            if (d >= limit) continue;
            const std::vector<int>* next = adjacency[static_cast<std::size_t>(node)].unhand();
            if (next == nullptr) continue;
            for (int k : *next) {
                if (k < 0 || static_cast<std::size_t>(k) >= depth.size() || depth[static_cast<std::size_t>(k)] != -1)
                    continue;
                depth[static_cast<std::size_t>(k)] = d + 1;
                reached.push_back(k);
            }
        }
    }
};

// Installs a path cache on the criterion for the length of one group search
// of one molecule, unless one is in place already.
struct PathCacheScope {
    PathCacheScope(const ContactCriterion& c, const Molecule* mol) : criterion(c) {
        if (c.path_cache_ != nullptr || mol == nullptr) return;
        cache.reset(new ContactCriterion::PathCache());
        cache->molecule = mol;
        c.path_cache_ = cache.get();
    }
    ~PathCacheScope() {
        if (cache) criterion.path_cache_ = nullptr;
    }
    PathCacheScope(const PathCacheScope&) = delete;
    PathCacheScope& operator=(const PathCacheScope&) = delete;

    const ContactCriterion& criterion;
    std::unique_ptr<ContactCriterion::PathCache> cache;
};

ContactCriterion::ContactCriterion(ContactType type, int min_path, int max_path, bool strongest_only)
    : type_(type), min_path_(min_path), max_path_(max_path), strongest_only_(strongest_only) {}

ContactCriterion::ContactCriterion(const ContactCriterion& other)
    : type_(other.type_),
      min_path_(other.min_path_),
      max_path_(other.max_path_),
      strongest_only_(other.strongest_only_) {}

ContactCriterion& ContactCriterion::operator=(const ContactCriterion& other) {
    type_ = other.type_;
    min_path_ = other.min_path_;
    max_path_ = other.max_path_;
    strongest_only_ = other.strongest_only_;
    return *this;
}

ContactCriterion::~ContactCriterion() {}

const char* ContactCriterion::class_name() const { return "ContactCriterion"; }

bool ContactCriterion::radius_bounds_reach() const { return false; }

int ContactCriterion::path_search_depth() const { return max_path_; }

void ContactCriterion::begin_group_search() const {}
void ContactCriterion::end_group_search() const {}

// Brackets one group search with begin_group_search and end_group_search.
struct GroupSearchScope {
    explicit GroupSearchScope(const ContactCriterion& c) : criterion(c) { criterion.begin_group_search(); }
    ~GroupSearchScope() { criterion.end_group_search(); }
    GroupSearchScope(const GroupSearchScope&) = delete;
    GroupSearchScope& operator=(const GroupSearchScope&) = delete;

    const ContactCriterion& criterion;
};

void ContactCriterion::assign_type_error(const char* method) const {
    throw std::invalid_argument(std::string(class_name()) + "::" + method +
                                " the argument is not of the same class");
}

Hvector_HMolecularContact ContactCriterion::find_crystal_contact(const Crystal& crystal, int mol1, int atom1, int mol2,
                                                                 int atom2) const {
    return find_contact(crystal.molecule(mol1), atom1, crystal.molecule(mol2), atom2);
}

bool ContactCriterion::test_atom_from(const Molecule&, int) const { return true; }
bool ContactCriterion::test_atom_to(const Molecule&, int) const { return true; }

bool ContactCriterion::test_group_from(const Molecule& mol, const std::vector<int>& atoms) const {
    for (int a : atoms)
        if (test_atom_from(mol, a)) return true;
    return false;
}

bool ContactCriterion::test_group_to(const Molecule& mol, const std::vector<int>& atoms) const {
    for (int a : atoms)
        if (test_atom_to(mol, a)) return true;
    return false;
}

bool ContactCriterion::test_contact_type(const HMolecule& m1, const HMolecule& m2) const {
    if (type_ == INTRA_AND_INTERMOLECULAR) return true;
    if (type_ == INTERMOLECULAR) return m1.unhand() != m2.unhand();
    return m1.unhand() == m2.unhand();
}

int ContactCriterion::path_length(const Molecule& mol, int atom1, int atom2) const {
    PathCache* cache = path_cache_;
    const int n = mol.natoms();
    if (cache == nullptr || cache->molecule != &mol || atom1 < 0 || atom1 >= n || atom2 < 0 || atom2 >= n)
        return mol.shortest_path(atom1, atom2);
    if (cache->adjacency.empty() && n > 0) cache->prepare(mol, path_search_depth());
    if (static_cast<int>(cache->adjacency.size()) != n) return mol.shortest_path(atom1, atom2);
    if (cache->source != atom1) cache->walk_from(atom1);
    const int d = cache->depth[static_cast<std::size_t>(atom2)];
    if (d != -1) return d;
    if (cache->component[static_cast<std::size_t>(atom1)] != cache->component[static_cast<std::size_t>(atom2)])
        return -1;
    return cache->limit + 1;  // connected, but farther than the walk went: beyond max_path
}

bool ContactCriterion::test_path(const Molecule& mol, int atom1, int atom2) const {
    const int path = path_length(mol, atom1, atom2);
    return min_path_ <= path && path <= max_path_;
}

std::ostream& ContactCriterion::print(std::ostream& os) const {
    os << "type: ";
    const char* name = contact_type_name(type_);
    if (*name != '\0')
        os << name;
    else
        os << static_cast<int>(type_);  // not a type of the enumeration: its number
    if ((static_cast<int>(type_) & 2) != 0) os << ", max bond path: " << max_path_ << ", min bond path: " << min_path_;
    os << "\n";
    return os;
}

void ContactCriterion::write(Archive& ar) const { ar << min_path_ << max_path_ << static_cast<int>(type_); }

void ContactCriterion::read(Archive& ar) {
    int min_path = 0, max_path = 0, type = 0;
    {
        Archive::Field field(ar, "ContactCriterion::read min_path and max_path");
        ar >> min_path >> max_path;
    }
    {
        Archive::Field field(ar, "ContactCriterion::read type");
        ar >> type;
        // A type outside 1 to 3 was never written by a criterion: the file is corrupt.
        if (type < INTERMOLECULAR || type > INTRA_AND_INTERMOLECULAR)
            ar.read_error("contact type " + std::to_string(type) + " is not 1, 2 or 3");
    }
    min_path_ = min_path;
    max_path_ = max_path;
    type_ = static_cast<ContactType>(type);
}

bool ContactCriterion::equals(const ContactCriterion& other) const {
    return min_path_ == other.min_path_ && max_path_ == other.max_path_ && type_ == other.type_ &&
           typeid(*this) == typeid(other);
}

bool ContactCriterion::operator==(const ContactCriterion& other) const { return equals(other); }

bool ContactCriterion::test_atom_from(const Crystal& crystal, int mol, int atom) const {
    return test_atom_from(*crystal.molecule(mol), atom);
}

bool ContactCriterion::test_atom_to(const Crystal& crystal, int mol, int atom) const {
    return test_atom_to(*crystal.molecule(mol), atom);
}

bool ContactCriterion::test_group_from(const Crystal& crystal, int mol, const std::vector<int>& atoms) const {
    return test_group_from(*crystal.molecule(mol), atoms);
}

bool ContactCriterion::test_group_to(const Crystal& crystal, int mol, const std::vector<int>& atoms) const {
    return test_group_to(*crystal.molecule(mol), atoms);
}

namespace {

// Below this many pairs the full walk is cheaper than building a grid.
const long long grid_threshold = 1024;

// Slack on the search radius for the rounding of the criteria's sums.
const double reach_slack = 1e-6;

// The orthogonal points of `atoms` of `mol`; false when an index is out of
// range or an atom has no usable site, and the full walk must be taken.
bool points_of(const Molecule& mol, const std::vector<int>& atoms, std::vector<Point>& points) {
    const int n = mol.natoms();
    points.clear();
    points.reserve(atoms.size());
    for (int a : atoms) {
        if (a < 0 || a >= n) return false;
        HAtom atom = mol.atom(a);
        if (!atom->has_site()) return false;
        points.push_back(atom->site()->orth());
        if (!PairGrid::usable(points.back())) return false;
    }
    return true;
}

// The walk over pairs that both group searches share. `Ops` gives from(a),
// to(b) and find(a, b). With a grid, only the b's within reach of each a are
// visited, still in the order of atoms2, and the to test is read from the
// flags made at the start.
template <class Contact, class Ops>
THandle<std::vector<THandle<Contact> > > walk_pairs(bool strongest_only, const std::vector<int>& atoms1,
                                                     const std::vector<int>& atoms2, bool same_molecule,
                                                     const Ops& ops, const Molecule* grid_mol1,
                                                     const Molecule* grid_mol2, double reach) {
    typedef THandle<std::vector<THandle<Contact> > > Result;
    Result result(new std::vector<THandle<Contact> >());
    const std::size_t n2 = atoms2.size();
    std::vector<char> flag(n2, 0);
    for (std::size_t j = 0; j < n2; ++j) flag[j] = ops.to(atoms2[j]) ? 1 : 0;

    std::unique_ptr<PairGrid> grid;
    std::vector<Point> points1, points2;
    if (grid_mol1 != nullptr && static_cast<long long>(atoms1.size()) * static_cast<long long>(n2) >= grid_threshold &&
        points_of(*grid_mol1, atoms1, points1) && points_of(*grid_mol2, atoms2, points2))
        grid.reset(new PairGrid(points2, flag, reach));

    THandle<Contact> best;
    double best_strength = -1e9;
    std::vector<int> near;
    for (std::size_t i = 0; i < atoms1.size(); ++i) {
        const int a = atoms1[i];
        if (!ops.from(a)) continue;
        std::size_t count = n2;
        if (grid) {
            grid->near(points1[i], near);
            count = near.size();
        }
        for (std::size_t k = 0; k < count; ++k) {
            const std::size_t j = grid ? static_cast<std::size_t>(near[k]) : k;
            const int b = atoms2[j];
            if (grid || !strongest_only) {
                if (!flag[j]) continue;
            } else if (!ops.to(b)) {
                continue;
            }
            if (same_molecule && a == b) continue;
            Result found = ops.find(a, b);
            for (const THandle<Contact>& contact : *found) {
                if (!strongest_only) {
                    contact->set_from(atoms1, a);
                    contact->set_to(atoms2, b);
                    result->push_back(contact);
                } else if (!contact->has_strength()) {
                    contact->set_from(atoms1, a);
                    contact->set_to(atoms2, b);
                    result->push_back(contact);
                } else if (contact->strength() > best_strength) {
                    contact->set_from(atoms1, a);
                    contact->set_to(atoms2, b);
                    best = THandle<Contact>(new Contact(*contact));
                    best_strength = contact->strength();
                }
            }
        }
    }
    if (strongest_only && result->empty() && best.unhand() != nullptr) result->push_back(best);
    return result;
}

struct CrystalPairOps {
    const ContactCriterion& c;
    const Crystal& crystal;
    int mol1, mol2;
    bool from(int a) const { return c.test_atom_from(crystal, mol1, a); }
    bool to(int b) const { return c.test_atom_to(crystal, mol2, b); }
    Hvector_HMolecularContact find(int a, int b) const { return c.find_crystal_contact(crystal, mol1, a, mol2, b); }
};

struct MoleculePairOps {
    const ContactCriterion& c;
    const Molecule& mol;
    bool from(int a) const { return c.test_atom_from(mol, a); }
    bool to(int b) const { return c.test_atom_to(mol, b); }
    Hvector_HBasicContact find(int a, int b) const { return c.find_intramolecular_contact(mol, a, b); }
};

}  // namespace

Hvector_HMolecularContact ContactCriterion::find_crystal_contact(const Crystal& crystal, int mol1,
                                                                 const std::vector<int>& atoms1, int mol2,
                                                                 const std::vector<int>& atoms2) const {
    const HMolecule m1 = crystal.molecule(mol1);
    const HMolecule m2 = crystal.molecule(mol2);
    const double radius = max_radius();
    const bool bounded = radius_bounds_reach() && std::isfinite(radius) && std::fabs(radius) < 1e6;
    GroupSearchScope search(*this);
    PathCacheScope paths(*this, m1.unhand());  // paths are asked of the first molecule
    CrystalPairOps ops{*this, crystal, mol1, mol2};
    return walk_pairs<MolecularContact>(strongest_only_, atoms1, atoms2, mol1 == mol2, ops,
                                        bounded ? m1.unhand() : nullptr, m2.unhand(), radius + reach_slack);
}

Hvector_HBasicContact ContactCriterion::find_intramolecular_contact(const Molecule& mol,
                                                                    const std::vector<int>& atoms1,
                                                                    const std::vector<int>& atoms2) const {
    const double radius = max_radius();
    const bool bounded = radius_bounds_reach() && std::isfinite(radius) && std::fabs(radius) < 1e6;
    GroupSearchScope search(*this);
    PathCacheScope paths(*this, &mol);
    MoleculePairOps ops{*this, mol};
    return walk_pairs<BasicContact>(strongest_only_, atoms1, atoms2, true, ops, bounded ? &mol : nullptr, &mol,
                                    radius + reach_slack);
}

std::ostream& operator<<(std::ostream& os, const ContactCriterion& criterion) { return criterion.print(os); }

}  // namespace molcryst

#include "molcryst/crystal/Crystal.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <stdexcept>
#include <string>
#include <unordered_map>

#include "molcryst/contact/ContactCriterion.h"
#include "molcryst/molecule/Bond.h"
#include "molcryst/molecule/Molecule3d.h"
#include "molcryst/molecule/Site.h"
#include "molcryst/support/Archive.h"
#include "molcryst/support/TARNLog.h"
#include "MoleculeListSearch.h"

namespace molcryst {

namespace {

const double merge_tolerance = 1e-05;

// Whether `b` describes the same atoms as `a`, atom by atom in the same
// order: images of one molecule keep the order of their source.
bool molecules_match_for_merge(const Molecule& a, const Molecule& b, double tolerance) {
    const int n = a.natoms();
    if (n != b.natoms() || a.nbonds() != b.nbonds()) return false;
    for (int i = 0; i < n; ++i) {
        HAtom x = a.atom(i), y = b.atom(i);
        if (x->has_site() != y->has_site()) return false;
        if (x->has_site() && !equals(x->site()->frac(), y->site()->frac(), tolerance)) return false;
        if (x->element() != y->element() || x->formal_charge() != y->formal_charge() || x->radius() != y->radius() ||
            x->label() != y->label() || x->symmtag() != y->symmtag())
            return false;
    }
    const int m = a.nbonds();
    for (int i = 0; i < m; ++i)
        if (*a.bond(i) != *b.bond(i)) return false;
    return true;
}

std::vector<int> all_atoms(const Molecule& m) {
    std::vector<int> atoms(static_cast<std::size_t>(m.natoms()));
    for (std::size_t k = 0; k < atoms.size(); ++k) atoms[k] = static_cast<int>(k);
    return atoms;
}

Hvector_HMolecule list_or_empty(const Hvector_HMolecule& list) {
    return list.unhand() != nullptr ? list : Hvector_HMolecule(new vector_HMolecule());
}

Hvector_HMolecularContact list_or_empty(const Hvector_HMolecularContact& list) {
    return list.unhand() != nullptr ? list : Hvector_HMolecularContact(new vector_HMolecularContact());
}

}  // namespace

// Stored molecules bucketed by atom count, bond count, the index of the
// first sited atom and that atom's fractional point rounded to cells of
// 1e-4, ten times the merge tolerance: a match lies in the same or a
// neighbouring cell. Molecules whose point cannot be bucketed (not finite,
// or huge) are always candidates. Stored molecules are taken not to move
// once merged; the list is checked for removals and replacements at its end.
struct Crystal::MergeIndex {
    struct Key {
        int natoms, nbonds, first;
        std::int64_t x, y, z;
        bool operator==(const Key& o) const {
            return natoms == o.natoms && nbonds == o.nbonds && first == o.first && x == o.x && y == o.y && z == o.z;
        }
    };
    struct KeyHash {
        std::size_t operator()(const Key& k) const {
            std::size_t h = static_cast<std::size_t>(k.natoms) * 1000003u ^ static_cast<std::size_t>(k.nbonds) * 10007u;
            h ^= static_cast<std::size_t>(k.first) * 31u;
            h ^= static_cast<std::size_t>(k.x * 73856093LL ^ k.y * 19349663LL ^ k.z * 83492791LL);
            return h;
        }
    };

    static constexpr double cell = 1e-4;

    std::unordered_map<Key, std::vector<int>, KeyHash> buckets;
    std::vector<int> unbucketed;
    std::size_t indexed = 0;             // molecules_[0, indexed) are in
    const Molecule* last = nullptr;      // molecules_[indexed - 1] when indexed

    // The key of `m`; false when its point cannot be bucketed.
    static bool key_of(const Molecule& m, Key& key) {
        key = Key{m.natoms(), m.nbonds(), -1, 0, 0, 0};
        for (int i = 0; i < key.natoms; ++i) {
            HAtom a = m.atom(i);
            if (!a->has_site()) continue;
            key.first = i;
            const Point& p = a->site()->frac();
            std::int64_t* cells[3] = {&key.x, &key.y, &key.z};
            for (int k = 0; k < 3; ++k) {
                if (!std::isfinite(p[k]) || std::fabs(p[k]) > 1e9) return false;
                *cells[k] = static_cast<std::int64_t>(std::floor(p[k] / cell));
            }
            return true;
        }
        return true;
    }

    void add(const Molecule& m, int index) {
        Key key;
        if (key_of(m, key))
            buckets[key].push_back(index);
        else
            unbucketed.push_back(index);
    }

    // Every stored index that could match `m`, ascending; `m` must have a key.
    std::vector<int> candidates(const Key& key) const {
        std::vector<int> out(unbucketed);
        for (std::int64_t dx = -1; dx <= 1; ++dx)
            for (std::int64_t dy = -1; dy <= 1; ++dy)
                for (std::int64_t dz = -1; dz <= 1; ++dz) {
                    Key near = key;
                    near.x += dx;
                    near.y += dy;
                    near.z += dz;
                    auto found = buckets.find(near);
                    if (found != buckets.end()) out.insert(out.end(), found->second.begin(), found->second.end());
                }
        std::sort(out.begin(), out.end());
        return out;
    }
};

Crystal::Crystal() : molecules_(new vector_HMolecule()), contacts_(new vector_HMolecularContact()) {
    MOLCRYST_DEBUG_LINE(3, "Entered Crystal::Crystal() -" << static_cast<const void*>(this));
}

Crystal::Crystal(Archive& ar) : molecules_(new vector_HMolecule()), contacts_(new vector_HMolecularContact()) {
    MOLCRYST_DEBUG_LINE(3, "Entered Crystal::Crystal(Archive& ar) - " << static_cast<const void*>(this));
    read(ar);
}

Crystal::Crystal(const Cell& cell, Hvector_HMolecule molecules)
    : cell_(cell), molecules_(list_or_empty(molecules)), contacts_(new vector_HMolecularContact()) {
    MOLCRYST_DEBUG_LINE(3, "Entered Crystal::Crystal(const Cell& cell, Hvector_HMolecule molecules) - "
                               << static_cast<const void*>(this));
    check_atoms_have_sites();
}

Crystal::Crystal(const Cell& cell, Hvector_HMolecule molecules, Hvector_HMolecularContact contacts)
    : cell_(cell), molecules_(list_or_empty(molecules)), contacts_(list_or_empty(contacts)) {
    MOLCRYST_DEBUG_LINE(3,
                        "Entered Crystal::Crystal(const Cell& cell, Hvector_HMolecule molecules, "
                        "Hvector_HMolecularContact contacts) - "
                            << static_cast<const void*>(this));
    check_atoms_have_sites();
}

namespace {

// Copies of the molecules as Molecule3d, and of the contacts with their ends
// moved onto the copies. An end that is not one of the molecules is copied
// once too, so that the copy shares nothing with its source.
void deep_copy(const vector_HMolecule& molecules, const vector_HMolecularContact& contacts, vector_HMolecule& out,
               vector_HMolecularContact& out_contacts) {
    std::map<const Molecule*, HMolecule> copy_of;
    out.reserve(molecules.size());
    for (const HMolecule& m : molecules) {
        HMolecule copy(new Molecule3d(*m));
        copy_of.insert(std::make_pair(m.unhand(), copy));
        out.push_back(copy);
    }
    auto end_copy = [&](const HMolecule& m) {
        if (m.unhand() == nullptr) return HMolecule();
        auto found = copy_of.find(m.unhand());
        if (found != copy_of.end()) return found->second;
        HMolecule copy(new Molecule3d(*m));
        copy_of.insert(std::make_pair(m.unhand(), copy));
        return copy;
    };
    out_contacts.reserve(contacts.size());
    for (const HMolecularContact& c : contacts) {
        HMolecularContact copy(new MolecularContact(*c));
        copy->set_molecule_from(end_copy(c->molecule_from()));
        copy->set_molecule_to(end_copy(c->molecule_to()));
        out_contacts.push_back(copy);
    }
}

}  // namespace

Crystal::Crystal(const Crystal& x)
    : cell_(x.cell_), molecules_(new vector_HMolecule()), contacts_(new vector_HMolecularContact()) {
    MOLCRYST_DEBUG_LINE(3, "Entered Crystal::Crystal(const Crystal& x) - " << static_cast<const void*>(this));
    deep_copy(*x.molecules_, *x.contacts_, *molecules_, *contacts_);
}

Crystal& Crystal::operator=(const Crystal& x) {
    if (this == &x) return *this;
    Hvector_HMolecule molecules(new vector_HMolecule());
    Hvector_HMolecularContact contacts(new vector_HMolecularContact());
    deep_copy(*x.molecules_, *x.contacts_, *molecules, *contacts);
    cell_ = x.cell_;
    molecules_ = molecules;
    contacts_ = contacts;
    invalidate_merge_index();
    return *this;
}

Crystal::~Crystal() { MOLCRYST_DEBUG_LINE(3, "Entered Crystal::~Crystal() - " << static_cast<const void*>(this)); }

HCrystal Crystal::create_shallow_copy() const {
    return HCrystal(new Crystal(cell_, Hvector_HMolecule(new vector_HMolecule(*molecules_)),
                                Hvector_HMolecularContact(new vector_HMolecularContact(*contacts_))));
}

int Crystal::natoms() const {
    int n = 0;
    for (const HMolecule& m : *molecules_) n += m->natoms();
    return n;
}

int Crystal::nbonds() const {
    int n = 0;
    for (const HMolecule& m : *molecules_) n += m->nbonds();
    return n;
}

// Range-checked: an index is the caller's to get right, and a bad one must not crash.
HMolecule Crystal::molecule(int index) const {
    if (index < 0 || index >= nmolecules()) throw std::out_of_range("Crystal::molecule(int) index out of range");
    return (*molecules_)[static_cast<std::size_t>(index)];
}

HMolecularContact Crystal::contact(int index) const {
    if (index < 0 || index >= ncontacts()) throw std::out_of_range("Crystal::contact(int) index out of range");
    return HMolecularContact(new MolecularContact(*(*contacts_)[static_cast<std::size_t>(index)]));
}

Point Crystal::centroid() const {
    double x = 0, y = 0, z = 0;
    long long n = 0;
    for (const HMolecule& m : *molecules_) {
        const int count = m->natoms();
        for (int i = 0; i < count; ++i) {
            HAtom a = m->atom(i);
            if (!a->has_site()) continue;
            const Point& p = a->site()->orth();
            x += p[0];
            y += p[1];
            z += p[2];
            ++n;
        }
    }
    if (n == 0) return Point();
    return Point(x / static_cast<double>(n), y / static_cast<double>(n), z / static_cast<double>(n));
}

HMolecule Crystal::find_molecule(int index, int symmtag) const {
    return crystal_detail::find_molecule(*molecules_, index, symmtag);
}

bool Crystal::find_atom(int symmtag, const Point& p, HMolecule& molecule, int& index) const {
    return crystal_detail::find_atom(*molecules_, symmtag, p, molecule, index);
}

Hvector_HMolecularContact Crystal::nonbonded_search(int i, const std::vector<int>& atoms_i, int j,
                                                    const std::vector<int>& atoms_j,
                                                    const ContactCriterion& c) const {
    if (!c.test_group_to(*this, j, atoms_j) || !c.test_group_from(*this, i, atoms_i))
        return Hvector_HMolecularContact(new vector_HMolecularContact());
    return c.find_crystal_contact(*this, i, atoms_i, j, atoms_j);
}

Hvector_HMolecularContact Crystal::nonbonded_search(int i, const std::vector<int>& atoms_i,
                                                    const ContactCriterion& c) const {
    Hvector_HMolecularContact result(new vector_HMolecularContact());
    molecule(i);  // an index out of range throws here, before any search
    const int n = nmolecules();
    for (int j = 0; j < n; ++j) {
        if (j == i || !c.test_group_from(*this, i, atoms_i)) continue;
        Hvector_HMolecularContact found = nonbonded_search(i, atoms_i, j, all_atoms(*molecule(j)), c);
        result->insert(result->end(), found->begin(), found->end());
    }
    return result;
}

Hvector_HMolecularContact Crystal::nonbonded_search(int i, const ContactCriterion& c) const {
    return nonbonded_search(i, all_atoms(*molecule(i)), c);
}

void Crystal::check_atoms_have_sites() const {
    for (const HMolecule& m : *molecules_) check_atoms_have_sites(m);
}

void Crystal::check_atoms_have_sites(HMolecule m) const {
    const int n = m->natoms();
    for (int i = 0; i < n; ++i)
        if (!m->atom(i)->has_site()) throw std::runtime_error("Trying to add siteless atom to Crystal");
}

Crystal::MergeIndex& Crystal::merge_index() const {
    const std::size_t n = molecules_->size();
    MergeIndex* index = merge_index_.get();
    if (index != nullptr && (index->indexed > n ||
                             (index->indexed > 0 && (*molecules_)[index->indexed - 1].unhand() != index->last)))
        index = nullptr;  // the list lost or replaced molecules: start again
    if (index == nullptr) {
        merge_index_.reset(new MergeIndex());
        index = merge_index_.get();
    }
    for (; index->indexed < n; ++index->indexed)
        index->add(*(*molecules_)[index->indexed], static_cast<int>(index->indexed));
    index->last = n > 0 ? (*molecules_)[n - 1].unhand() : nullptr;
    return *index;
}

void Crystal::invalidate_merge_index() { merge_index_.reset(); }

int Crystal::merge(HMolecule m) {
    check_atoms_have_sites(m);
    MOLCRYST_DEBUG_LINE(3, "Crystal::merge(HMolecule) entered - nmolecules = " << nmolecules());
    MergeIndex& index = merge_index();
    MergeIndex::Key key;
    std::vector<int> candidates;
    if (MergeIndex::key_of(*m, key)) {
        candidates = index.candidates(key);
    } else {  // a point that cannot be bucketed is compared with everything
        candidates.resize(molecules_->size());
        for (std::size_t k = 0; k < candidates.size(); ++k) candidates[k] = static_cast<int>(k);
    }
    for (int k : candidates) {
        if (molecules_match_for_merge(*(*molecules_)[static_cast<std::size_t>(k)], *m, merge_tolerance)) {
            MOLCRYST_DEBUG_LINE(3, "Crystal::merge(HMolecule) done - no change made");
            return k;
        }
    }
    molecules_->push_back(m);
    index.add(*m, nmolecules() - 1);
    index.indexed = molecules_->size();
    index.last = m.unhand();
    MOLCRYST_DEBUG_LINE(3, "Crystal::merge(HMolecule) done    - nmolecules = " << nmolecules());
    return nmolecules() - 1;
}

int Crystal::merge(HMolecule m, const CrystalSymmetryTransformation& t) {
    check_atoms_have_sites(m);
    return merge(m->create_molecule(t, cell_));
}

int Crystal::merge(HMolecularContact c) {
    MOLCRYST_DEBUG_LINE(3, "Crystal::merge(HMolecularContact) entered - nmolecules " << nmolecules()
                                                                                     << " ncontacts = " << ncontacts());
    const int n = ncontacts();
    for (int k = 0; k < n; ++k) {
        if (*(*contacts_)[static_cast<std::size_t>(k)] == *c) {
            MOLCRYST_DEBUG_LINE(3, "Crystal::merge(HMolecularContact) done - no change made");
            return k;
        }
    }
    merge(c->molecule_from());
    if (c->intermolecular()) merge(c->molecule_to());
    contacts_->push_back(c);
    MOLCRYST_DEBUG_LINE(3, "Crystal::merge(HMolecularContact) done - nmolecules " << nmolecules() << " ncontacts = "
                                                                                  << ncontacts());
    return ncontacts() - 1;
}

std::vector<int> Crystal::merge(HCrystal other) {
    std::vector<int> indices;
    // Over the molecules as they stand now: merging a crystal into itself adds nothing.
    const vector_HMolecule molecules = *other->molecules_;
    for (const HMolecule& m : molecules) indices.push_back(merge(m));
    return indices;
}

std::vector<int> Crystal::merge(HCrystal other, const CrystalSymmetryTransformation& t) {
    std::vector<int> indices;
    const vector_HMolecule molecules = *other->molecules_;
    for (const HMolecule& m : molecules) indices.push_back(merge(m, t));
    return indices;
}

int Crystal::remove(HMolecule m) {
    const int n = nmolecules();
    for (int k = 0; k < n; ++k) {
        if (*(*molecules_)[static_cast<std::size_t>(k)] == *m) {
            remove(k);
            return k;
        }
    }
    return -1;
}

void Crystal::remove(int index) {
    if (index < 0 || index >= nmolecules()) throw std::out_of_range("Crystal::remove(int) index out of range");
    molecules_->erase(molecules_->begin() + index);
    invalidate_merge_index();
}

int Crystal::remove(HMolecularContact c) {
    const int n = ncontacts();
    for (int k = 0; k < n; ++k) {
        if (*(*contacts_)[static_cast<std::size_t>(k)] == *c) {
            contacts_->erase(contacts_->begin() + k);
            return k;
        }
    }
    return -1;
}

void Crystal::clear_contacts() { contacts_->clear(); }

bool Crystal::operator==(const Crystal& other) const {
    if (cell_ != other.cell_ || nmolecules() != other.nmolecules() || ncontacts() != other.ncontacts()) return false;
    for (std::size_t k = 0; k < molecules_->size(); ++k)
        if (*(*molecules_)[k] != *(*other.molecules_)[k]) return false;
    for (std::size_t k = 0; k < contacts_->size(); ++k)
        if (!(*(*contacts_)[k] == *(*other.contacts_)[k])) return false;
    return true;
}

void Crystal::write(Archive& ar) const {
    cell_.write(ar);
    ar << static_cast<unsigned int>(molecules_->size());
    for (const HMolecule& m : *molecules_) m->write(ar);
    write_contacts_(ar);
}

void Crystal::write_contacts_(Archive& ar) const {
    std::map<const Molecule*, int> position;
    for (std::size_t k = 0; k < molecules_->size(); ++k)
        position.insert(std::make_pair((*molecules_)[k].unhand(), static_cast<int>(k)));
    auto position_of = [&](const HMolecule& m) {
        auto found = position.find(m.unhand());
        return found != position.end() ? found->second : 0;
    };
    ar << static_cast<unsigned int>(contacts_->size());
    for (const HMolecularContact& c : *contacts_) {
        c->write(ar);
        ar << position_of(c->molecule_from()) << position_of(c->molecule_to());
    }
}

void Crystal::read(Archive& ar) {
    // Into locals: a failed read leaves the crystal as it was.
    Cell cell;
    {
        Archive::Field field(ar, "Crystal::read cell");
        cell.read(ar);
    }
    vector_HMolecule molecules;
    {
        Archive::Field field(ar, "Crystal::read molecules");
        unsigned int count = 0;
        ar >> count;
        ar.check_count(count, 4, "molecule count");
        for (unsigned int k = 0; k < count; ++k) {
            HMolecule m(new Molecule3d());
            m->read(ar);
            const int n = m->natoms();
            for (int i = 0; i < n; ++i)
                if (!m->atom(i)->has_site())
                    ar.read_error("atom " + std::to_string(i) + " of molecule " + std::to_string(k) +
                                  " has no site");
            molecules.push_back(m);
        }
    }
    vector_HMolecularContact contacts;
    read_contacts_(ar, molecules, contacts);
    cell_ = cell;
    molecules_ = Hvector_HMolecule(new vector_HMolecule());
    molecules_->swap(molecules);
    contacts_ = Hvector_HMolecularContact(new vector_HMolecularContact());
    contacts_->swap(contacts);
    invalidate_merge_index();
}

void Crystal::read_contacts_(Archive& ar, const vector_HMolecule& molecules,
                             vector_HMolecularContact& contacts) const {
    Archive::Field field(ar, "Crystal::read contacts");
    int count = 0;
    ar >> count;
    ar.check_count(count, 4, "contact count");
    for (int k = 0; k < count; ++k) {
        HMolecularContact c(new MolecularContact());
        c->read(ar);
        Archive::Field ends(ar, "Crystal::read contact molecules");
        int from = 0, to = 0;
        ar >> from >> to;
        const int n = static_cast<int>(molecules.size());
        if (from < 0 || from >= n || to < 0 || to >= n)
            ar.read_error("contact " + std::to_string(k) + " joins molecules " + std::to_string(from) + " and " +
                          std::to_string(to) + " of " + std::to_string(n));
        c->set_molecule_from(molecules[static_cast<std::size_t>(from)]);
        c->set_molecule_to(molecules[static_cast<std::size_t>(to)]);
        contacts.push_back(c);
    }
}

void Crystal::print(std::ostream& os) const {
    os << "cell: " << cell_ << "\n";
    for (std::size_t k = 0; k < molecules_->size(); ++k) {
        os << "crystal molecule: " << k << "\n";
        (*molecules_)[k]->print(os);
    }
    for (std::size_t k = 0; k < contacts_->size(); ++k) {
        os << "contact: " << k << "\n";
        (*contacts_)[k]->print(os);
    }
}

std::ostream& operator<<(std::ostream& os, const Crystal& crystal) {
    crystal.print(os);
    return os;
}

}  // namespace molcryst

// The contact layer of NewCrystal: base contacts of the asymmetric unit, one
// list per criterion, replicated by symmetry onto every molecule shown, each
// ending on a hanging atom; and the expansion that replaces hanging atoms by
// whole neighbours. Failures here are logged and answered with false.
#include <algorithm>
#include <array>
#include <cmath>
#include <deque>
#include <iomanip>
#include <iostream>
#include <map>

#include "NewCrystalPrivate.h"
#include "molcryst/contact/BasicContact.h"
#include "molcryst/molecule/Bond3d.h"
#include "molcryst/molecule/MoleculeSubset.h"
#include "molcryst/molecule/Site.h"
#include "molcryst/support/TARNLog.h"

namespace molcryst {

namespace {

const double relation_tolerance = 1e-07;  // symmetry relations
const double position_tolerance = 1e-04;  // contact ends, overlapping atoms

// The orthogonal point of a contact end; false for a group anchor or an atom without a site.
bool end_point(const HMolecule& m, int atom, Point& p) {
    if (m.unhand() == nullptr || atom < 0 || atom >= m->natoms()) return false;
    HAtom a = m->atom(atom);
    if (!a->has_site()) return false;
    p = a->site()->orth();
    return true;
}

bool from_point(const MolecularContact& c, Point& p) { return end_point(c.molecule_from(), c.atom_from(), p); }
bool to_point(const MolecularContact& c, Point& p) { return end_point(c.molecule_to(), c.atom_to(), p); }

// The index of `atom` in `m` by handle; -1 if it is not there.
int index_in(const Molecule& m, const HAtom& atom) {
    const int n = m.natoms();
    for (int i = 0; i < n; ++i)
        if (m.atom(i).unhand() == atom.unhand()) return i;
    return -1;
}

bool same_molecule(const HMolecule& a, const HMolecule& b) {
    return a.unhand() == b.unhand() || (a.unhand() != nullptr && b.unhand() != nullptr && *a == *b);
}

bool is_suppressed(const Atom& a) {
    const std::string label = a.label();
    return !label.empty() && label.back() == '?';
}

double vdw_radius(const HMolecule& m, int atom) { return m->atom(atom)->element().vdw_radius(); }

}  // namespace

// Contact ends in cells of 0.01 Angstrom: ends within the 1e-04 tolerance
// lie in the same or a neighbouring cell.
struct NewCrystalPrivate::ContactEnds {
    typedef std::array<long long, 3> Key;
    const vector_HMolecularContact* list = nullptr;
    std::size_t indexed = 0;
    std::map<Key, std::vector<std::size_t> > from, to;

    static bool key_of(const Point& p, Key& key) {
        for (int i = 0; i < 3; ++i) {
            const double x = std::floor(p[i] / 0.01);
            if (!(std::fabs(x) < 1e15)) return false;
            key[static_cast<std::size_t>(i)] = static_cast<long long>(x);
        }
        return true;
    }
    void add(const MolecularContact& c, std::size_t k) {
        Point p;
        Key key;
        if (from_point(c, p) && key_of(p, key)) from[key].push_back(k);
        if (to_point(c, p) && key_of(p, key)) to[key].push_back(k);
    }
    // The indices in `grid` near `p`, ascending.
    static std::vector<std::size_t> near(const std::map<Key, std::vector<std::size_t> >& grid, const Point& p) {
        std::vector<std::size_t> found;
        Key key;
        if (!key_of(p, key)) return found;
        for (long long dx = -1; dx <= 1; ++dx)
            for (long long dy = -1; dy <= 1; ++dy)
                for (long long dz = -1; dz <= 1; ++dz) {
                    auto cell = grid.find(Key{{key[0] + dx, key[1] + dy, key[2] + dz}});
                    if (cell != grid.end()) found.insert(found.end(), cell->second.begin(), cell->second.end());
                }
        std::sort(found.begin(), found.end());
        return found;
    }
};

NewCrystalPrivate::ContactEnds& NewCrystalPrivate::contact_ends() const {
    const vector_HMolecularContact* list = contacts_.unhand();
    if (contact_ends_ == nullptr || contact_ends_->list != list || contact_ends_->indexed > list->size()) {
        contact_ends_.reset(new ContactEnds());
        contact_ends_->list = list;
    }
    for (std::size_t k = contact_ends_->indexed; k < list->size(); ++k) contact_ends_->add(*(*list)[k], k);
    contact_ends_->indexed = list->size();
    return *contact_ends_;
}

void NewCrystalPrivate::drop_contact_ends() const { contact_ends_.reset(); }

void NewCrystalPrivate::erase_contact(std::size_t index) {
    contacts_->erase(contacts_->begin() + static_cast<std::ptrdiff_t>(index));
    drop_contact_ends();
}

Hvector_HMolecularContact NewCrystalPrivate::contacts() const {
    if (contacts_.unhand() == nullptr) rebuild_contacts();
    return contacts_;
}

vector_HMolecularContact NewCrystalPrivate::contacts(const HMolecule& m) const {
    vector_HMolecularContact found;
    for (const HMolecularContact& c : *contacts())
        if (same_molecule(c->molecule_from(), m) || same_molecule(c->molecule_to(), m)) found.push_back(c);
    return found;
}

vector_HMolecularContact NewCrystalPrivate::contacts(const HMolecule& m, const HAtom& atom) const {
    vector_HMolecularContact found;
    const int k = index_in(*m, atom);
    if (k < 0) {
        std::cout << "Could not find atom in molecule " << static_cast<const void*>(m.unhand()) << std::endl;
        return found;
    }
    for (const HMolecularContact& c : *contacts())
        if ((c->atom_from() == k && same_molecule(c->molecule_from(), m)) ||
            (c->atom_to() == k && same_molecule(c->molecule_to(), m)))
            found.push_back(c);
    return found;
}

bool NewCrystalPrivate::contains_suppressed_atoms(const Molecule& m) {
    const int n = m.natoms();
    for (int i = 0; i < n; ++i)
        if (!is_suppressed(*m.atom(i))) return false;
    return true;  // every atom suppressed, or no atom at all
}

void NewCrystalPrivate::calculate_base_contacts() const {
    for (const auto& entry : criteria_) {
        if (entry.second->calculated) continue;
        entry.second->contacts = calculate_base_contacts(*entry.first);
        entry.second->calculated = true;
    }
}

Hvector_HMolecularContact NewCrystalPrivate::calculate_base_contacts(const ContactCriterion& criterion) const {
    Hvector_HMolecularContact base(new vector_HMolecularContact());
    const int n = crystal_maker_->nmolecules();
    for (int i = 0; i < n; ++i) {
        if (contains_suppressed_atoms(*crystal_maker_->molecule(i))) {
            MOLCRYST_DEBUG_LINE(2,
                                "NewCrystalPrivate::calculate_base_contacts Skipping contacts to 'suppressed' atoms");
            continue;
        }
        const Crystal fill(*crystal_maker_->create_nonbonded_fill(i, criterion));  // deep: contacts of our own
        for (const HMolecularContact& c : *fill.contacts()) {
            HMolecule to = c->molecule_to();
            if (contains_suppressed_atoms(*to)) continue;
            int to_index = c->atom_to();
            // A neighbour is cut down to its contact atom; a contact within
            // one molecule keeps that molecule at both ends.
            if (to->natoms() > 1 && to.unhand() != c->molecule_from().unhand()) {
                MoleculeSubset subset(to);
                subset.select_atom_indices(std::vector<int>(1, to_index));
                to = subset.create_molecule();
                to_index = 0;
            }
            base->push_back(
                HMolecularContact(new MolecularContact(c->molecule_from(), c->atom_from(), to, to_index, c->type())));
        }
    }
    return base;
}

bool NewCrystalPrivate::filter_contact(const MolecularContact& c) const {
    if (contact_filter_.unhand() == nullptr) return true;
    Point p, q;
    if (!from_point(c, p) || !to_point(c, q)) return false;
    const double d = (q - p).length();
    const double n =
        contact_filter_->normalisation_factor(*c.molecule_from(), c.atom_from(), *c.molecule_to(), c.atom_to());
    return contact_filter_->min_tolerance() <= d - n && d - n <= contact_filter_->max_tolerance();
}

vector_HMolecularContact NewCrystalPrivate::filter_contacts(const vector_HMolecularContact& contacts) const {
    vector_HMolecularContact kept;
    for (const HMolecularContact& c : contacts)
        if (filter_contact(*c)) kept.push_back(c);
    return kept;
}

// What the replicated lists hold, by exact position: molecules equal by
// operator== have equal sites, so an equal hanging atom is looked for only
// among those whose first atom stands at the same orthogonal point; and two
// contacts are equal only if their anchors stand at the same two points
// (between molecules), or if they share anchors and an equal from molecule
// (one within a molecule, one between). Everything else is compared with
// every entry, so the answers are those of a walk over the lists.
struct NewCrystalPrivate::ReplicationIndex {
    typedef std::array<double, 4> Place;  // orthogonal point and a count
    std::map<Place, std::vector<std::size_t> > molecules;
    std::vector<std::size_t> unkeyed_molecules;
    std::map<std::array<double, 6>, std::vector<std::size_t> > between;   // by the two anchor points, ordered
    std::map<std::array<double, 6>, std::vector<std::size_t> > anchored;  // by from molecule and anchors
    std::vector<std::size_t> unkeyed_contacts;

    /// Indexes what the lists hold already.
    ReplicationIndex(const vector_HMolecule& list, const vector_HMolecularContact& contacts) {
        for (std::size_t k = 0; k < list.size(); ++k) enter(*list[k], k);
        for (std::size_t k = 0; k < contacts.size(); ++k) enter(*contacts[k], k);
    }

    static bool finite_place(const Point& p, double count, Place& key) {
        for (int i = 0; i < 3; ++i) {
            if (!std::isfinite(p[i])) return false;
            key[static_cast<std::size_t>(i)] = p[i] + 0.0;  // -0 and +0 compare equal
        }
        key[3] = count;
        return true;
    }
    static bool key_of(const Molecule& m, Place& key) {
        return m.natoms() > 0 && m.atom(0)->has_site() && finite_place(m.atom(0)->site()->orth(), m.natoms(), key);
    }
    static bool between_key(const MolecularContact& c, std::array<double, 6>& key) {
        Point p, q;
        Place a, b;
        if (!from_point(c, p) || !to_point(c, q) || !finite_place(p, 0, a) || !finite_place(q, 0, b)) return false;
        if (b < a) std::swap(a, b);
        key = {{a[0], a[1], a[2], b[0], b[1], b[2]}};
        return true;
    }
    static bool anchored_key(const MolecularContact& c, std::array<double, 6>& key) {
        Place m;
        if (c.molecule_from().unhand() == nullptr || !key_of(*c.molecule_from(), m)) return false;
        key = {{m[0], m[1], m[2], m[3], static_cast<double>(std::min(c.atom_from(), c.atom_to())),
                static_cast<double>(std::max(c.atom_from(), c.atom_to()))}};
        return true;
    }

    void enter(const Molecule& m, std::size_t k) {
        Place key;
        (key_of(m, key) ? molecules[key] : unkeyed_molecules).push_back(k);
    }
    void enter(const MolecularContact& c, std::size_t k) {
        std::array<double, 6> b, a;
        const bool inter = c.intermolecular();
        if ((inter && !between_key(c, b)) || !anchored_key(c, a)) {
            unkeyed_contacts.push_back(k);
            return;
        }
        if (inter) between[b].push_back(k);
        anchored[a].push_back(k);
    }

    HMolecule find_or_add(const HMolecule& m, vector_HMolecule& list) {
        Place key;
        std::vector<std::size_t> candidates = unkeyed_molecules;
        if (key_of(*m, key)) {
            auto found = molecules.find(key);
            if (found != molecules.end())
                candidates.insert(candidates.end(), found->second.begin(), found->second.end());
        } else {
            candidates.resize(list.size());
            for (std::size_t k = 0; k < list.size(); ++k) candidates[k] = k;
        }
        std::sort(candidates.begin(), candidates.end());  // the first equal one in list order
        for (std::size_t k : candidates)
            if (*list[k] == *m) return list[k];
        enter(*m, list.size());
        list.push_back(m);
        return m;
    }

    /// Appends `c` unless an equal contact is there.
    void add_unless_present(const HMolecularContact& c, vector_HMolecularContact& contacts) {
        std::array<double, 6> b, a;
        std::vector<std::size_t> candidates = unkeyed_contacts;
        const bool inter = c->intermolecular();
        if ((inter && !between_key(*c, b)) || !anchored_key(*c, a)) {
            candidates.resize(contacts.size());
            for (std::size_t k = 0; k < contacts.size(); ++k) candidates[k] = k;
        } else {
            for (auto* grid : {inter ? &between : nullptr, &anchored}) {
                if (grid == nullptr) continue;
                auto found = grid->find(grid == &between ? b : a);
                if (found != grid->end())
                    candidates.insert(candidates.end(), found->second.begin(), found->second.end());
            }
        }
        for (std::size_t k : candidates)
            if (*contacts[k] == *c) return;
        enter(*c, contacts.size());
        contacts.push_back(c);
    }
};

vector_HMolecularContact NewCrystalPrivate::active_base_contacts() const {
    calculate_base_contacts();
    vector_HMolecularContact filtered;
    for (const auto& entry : criteria_) {
        if (!entry.second->active || entry.second->contacts.unhand() == nullptr) continue;
        const vector_HMolecularContact kept = filter_contacts(*entry.second->contacts);
        filtered.insert(filtered.end(), kept.begin(), kept.end());
    }
    return filtered;
}

void NewCrystalPrivate::replicate_base_contacts(const HCrystal& crystal, vector_HMolecularContact& contacts,
                                                vector_HMolecule& molecules) const {
    const vector_HMolecularContact base = active_base_contacts();
    if (base.empty()) return;
    ReplicationIndex index(molecules, contacts);
    for (const HMolecule& m : *crystal->molecules())
        for (const HMolecularContact& c : base)
            replicate_base_contact(m, *c, crystal->cell(), contacts, molecules, index);
}

void NewCrystalPrivate::replicate_base_contacts(const HMolecule& m, const Cell& cell,
                                                vector_HMolecularContact& contacts, vector_HMolecule& molecules) const {
    ReplicationIndex index(molecules, contacts);
    for (const HMolecularContact& c : active_base_contacts())
        replicate_base_contact(m, *c, cell, contacts, molecules, index);
}

void NewCrystalPrivate::replicate_base_contacts(const HMolecule& m, const std::vector<int>& atoms, const Cell& cell,
                                                vector_HMolecularContact& contacts, vector_HMolecule& molecules) const {
    ReplicationIndex index(molecules, contacts);
    for (const HMolecularContact& c : active_base_contacts()) {
        const int from = c->atom_from();
        if (std::find(atoms.begin(), atoms.end(), from) == atoms.end()) continue;
        if (from < 0 || from >= m->natoms() || from >= c->molecule_from()->natoms()) continue;
        HAtom base = c->molecule_from()->atom(from);
        HAtom shown = m->atom(from);
        if (!base->has_site() || !shown->has_site() ||
            !cell.is_symmetry_related(base->site()->frac(), shown->site()->frac(), relation_tolerance))
            continue;
        replicate_base_contact(m, *c, cell, contacts, molecules, index);
    }
}

void NewCrystalPrivate::replicate_base_contact(const HMolecule& m, const MolecularContact& c, const Cell& cell,
                                               vector_HMolecularContact& contacts, vector_HMolecule& molecules,
                                               ReplicationIndex& index) const {
    const int from = c.atom_from();
    if (from < 0 || from >= m->natoms() || from >= c.molecule_from()->natoms()) return;
    HAtom shown = m->atom(from);
    HAtom base = c.molecule_from()->atom(from);
    if (shown->symmtag() != base->symmtag() || !shown->has_site() || !base->has_site()) return;
    HCrystalSymmetryTransformation t =
        cell.symmetry_relation(base->site()->frac(), shown->site()->frac(), relation_tolerance);
    if (t.unhand() == nullptr) return;
    HMolecule to = m;
    if (c.intermolecular()) to = index.find_or_add(c.molecule_to()->create_molecule(*t, cell), molecules);
    index.add_unless_present(HMolecularContact(new MolecularContact(m, from, to, c.atom_to(), c.type())), contacts);
}

void NewCrystalPrivate::add_contact(const HMolecularContact& c) {
    Point p, q;
    if (from_point(*c, p) && to_point(*c, q)) {
        const ContactEnds& ends = contact_ends();
        for (std::size_t k : ContactEnds::near(ends.from, p)) {
            Point p2, q2;
            const MolecularContact& x = *(*contacts_)[k];
            if (from_point(x, p2) && to_point(x, q2) && equals(p, p2, position_tolerance) &&
                equals(q, q2, position_tolerance))
                return;
        }
    }
    contacts_->push_back(c);
}

bool NewCrystalPrivate::add(const vector_HMolecularContact& contacts, const vector_HMolecule& molecules) {
    Crystal& shown = *crystal_snapshot();
    if (contacts_.unhand() == nullptr) contacts_ = Hvector_HMolecularContact(new vector_HMolecularContact());
    bool changed = false;
    for (const HMolecule& m : molecules) {
        const int n = shown.nmolecules();
        if (shown.merge(m) >= n) changed = true;
    }
    // An end already shown is replaced by the shown molecule, so that every
    // contact stands on molecules of the picture.
    auto settle = [&](const HMolecule& m) {
        const int n = shown.nmolecules();
        const int k = shown.merge(m);
        if (k >= n) changed = true;
        return shown.molecule(k);
    };
    for (const HMolecularContact& c : contacts) {
        c->set_molecule_from(settle(c->molecule_from()));
        c->set_molecule_to(settle(c->molecule_to()));
        add_contact(c);
    }
    if (changed) invalidate_box();
    return changed;
}

void NewCrystalPrivate::calculate_contact_extremities(const vector_HMolecularContact& contacts, double& min,
                                                      double& max, double& min_vdw, double& max_vdw) const {
    min = 1e10;
    max = -1e10;
    min_vdw = 1e10;
    max_vdw = -1e10;
    for (const HMolecularContact& c : contacts) {
        Point p, q;
        if (!from_point(*c, p) || !to_point(*c, q)) continue;
        const double d = (q - p).length();
        const double vdw =
            d - vdw_radius(c->molecule_from(), c->atom_from()) - vdw_radius(c->molecule_to(), c->atom_to());
        min = std::min(min, d);
        max = std::max(max, d);
        min_vdw = std::min(min_vdw, vdw);
        max_vdw = std::max(max_vdw, vdw);
    }
}

void NewCrystalPrivate::calculate_base_contact_extremities(double& min, double& max, double& min_vdw,
                                                           double& max_vdw) const {
    calculate_base_contacts();
    vector_HMolecularContact all;
    for (const auto& entry : criteria_)
        if (entry.second->active && entry.second->contacts.unhand() != nullptr)
            all.insert(all.end(), entry.second->contacts->begin(), entry.second->contacts->end());
    calculate_contact_extremities(all, min, max, min_vdw, max_vdw);
}

void NewCrystalPrivate::calculate_current_contact_extremities(double& min, double& max, double& min_vdw,
                                                              double& max_vdw) const {
    calculate_contact_extremities(*contacts(), min, max, min_vdw, max_vdw);
}

HMolecularContact NewCrystalPrivate::first_reverse_contact(const MolecularContact& c) const {
    Point p, q;
    if (contacts_.unhand() == nullptr || !from_point(c, p) || !to_point(c, q)) return HMolecularContact();
    const ContactEnds& ends = contact_ends();
    for (std::size_t k : ContactEnds::near(ends.to, p)) {
        const HMolecularContact& r = (*contacts_)[k];
        Point p2, q2;
        if (from_point(*r, q2) && to_point(*r, p2) && equals(p, p2, position_tolerance) &&
            equals(q, q2, position_tolerance))
            return r;
    }
    return HMolecularContact();
}

bool NewCrystalPrivate::expandable(const HMolecularContact& c) const {
    contacts();
    return c->intermolecular() && first_reverse_contact(*c).unhand() == nullptr;
}

bool NewCrystalPrivate::expandable(const vector_HMolecularContact& contacts) const {
    for (const HMolecularContact& c : contacts)
        if (expandable(c)) return true;
    return false;
}

bool NewCrystalPrivate::expandable(const HMolecule& m, const HAtom& atom) const {
    return expandable(contacts(m, atom));
}
bool NewCrystalPrivate::expandable(const HMolecule& m) const { return expandable(contacts(m)); }
bool NewCrystalPrivate::expandable() const { return expandable(vector_HMolecularContact(*contacts())); }

bool NewCrystalPrivate::expand_contact(const HMolecularContact& c) {
    // Expansion never throws, not even for a contact that was never set up.
    if (c.unhand() == nullptr || c->molecule_from().unhand() == nullptr || c->molecule_to().unhand() == nullptr) {
        TARNLog::start_error_line() << "NewCrystalPrivate::expand_contact - No such base molecule";
        TARNLog::end_error_line();
        return false;
    }
    calculate_base_contacts();
    if (!expandable(c)) return false;
    MOLCRYST_DEBUG_LINE(
        2, "NewCrystalPrivate::expand_contact expanding contact at " << static_cast<const void*>(c.unhand()));
    const int from = c->atom_from();
    const int to = c->atom_to();
    if (from < 0 || from >= c->molecule_from()->natoms()) {
        TARNLog::start_error_line() << "NewCrystalPrivate::expand_contact - Illegal symm_from_index " << from;
        TARNLog::end_error_line();
        return false;
    }
    if (to < 0 || to >= c->molecule_to()->natoms()) {
        TARNLog::start_error_line() << "NewCrystalPrivate::expand_contact - Illegal " << to;
        TARNLog::end_error_line();
        return false;
    }
    HAtom from_atom = c->molecule_from()->atom(from);
    HAtom to_atom = c->molecule_to()->atom(to);
    if (!from_atom->has_site() || !to_atom->has_site()) return false;
    const Cell& cell = crystal_maker_->cell();
    const double base_dist = (to_atom->site()->orth() - from_atom->site()->orth()).length();
    const int from_tag = from_atom->symmtag();
    const int to_tag = to_atom->symmtag();

    HMolecule base = crystal_maker_->find_molecule(from, from_tag);
    if (base.unhand() == nullptr || !base->atom(from)->has_site()) {
        TARNLog::start_error_line() << "NewCrystalPrivate::expand_contact - No such base molecule";
        TARNLog::end_error_line();
        return false;
    }
    const Point base_point = base->atom(from)->site()->frac();
    const Point from_frac = from_atom->site()->frac();
    HCrystalSymmetryTransformation t1 = cell.symmetry_relation(base_point, from_frac, relation_tolerance);
    if (t1.unhand() == nullptr) {
        MOLCRYST_DEBUG_LINE(2, "NewCrystalPrivate::expand_contact - Cannot find base_from_2_symm_from_symmop");
        return false;
    }
    // Checks that only report: the relation found must carry the base atom
    // onto the shown one, and keep the length of the contact.
    const Point carried = t1->apply(base_point);
    if (!equals(carried, from_frac, position_tolerance)) {
        std::cout << "discrepancy: " << std::setw(8) << carried << " " << std::setw(8) << from_frac << std::endl;
    }
    const Point to_in_base = cell.orthogonal(t1->inverse().apply(to_atom->site()->frac()));
    const double symm_dist = (to_in_base - base->atom(from)->site()->orth()).length();
    if (std::fabs(symm_dist - base_dist) >= 0.0001) {
        std::cout << "discrepancy in distance "
                  << "  symm_dist-base_dist = " << symm_dist - base_dist << "  base_dist = " << base_dist
                  << "  symm_dist = " << symm_dist << std::endl;
    }

    // The molecule that holds the to atom's tag: the last one that has it wins.
    HMolecule cm_to;
    HAtom cm_to_atom;
    for (const HMolecule& m : *crystal_maker_->current_molecules()) {
        const int n = m->natoms();
        for (int i = 0; i < n; ++i) {
            if (m->atom(i)->symmtag() == to_tag) {
                cm_to = m;
                cm_to_atom = m->atom(i);
                break;
            }
        }
    }
    if (cm_to.unhand() == nullptr || !cm_to_atom->has_site()) {
        TARNLog::start_error_line() << "NewCrystalPrivate::expand_contact - Cannot find cm_to_mol";
        TARNLog::end_error_line();
        return false;
    }
    HCrystalSymmetryTransformation t2 =
        cell.symmetry_relation(cm_to_atom->site()->frac(), to_atom->site()->frac(), relation_tolerance);
    if (t2.unhand() == nullptr) {
        MOLCRYST_DEBUG_LINE(2, "NewCrystalPrivate::expand_contact - Cannot find hcm_to_2_symm_to_symmop");
        std::cout << cm_to_atom->site()->frac() << " " << to_atom->site()->frac() << std::endl;
        return false;
    }
    MoleculeSubset sited(cm_to->create_molecule(*t2, cell));
    sited.select_3d();
    HMolecule new_mol = sited.create_molecule();

    Crystal& shown = *crystal_snapshot();
    const int before = shown.nmolecules();
    const bool is_new = shown.merge(new_mol) >= before;
    vector_HMolecularContact contacts;
    vector_HMolecule molecules;
    replicate_base_contacts(new_mol, cell, contacts, molecules);
    const bool changed = add(contacts, molecules) || is_new;
    if (changed) {
        invalidate_box();
        validate(validation_level_);
    }
    return changed;
}

bool NewCrystalPrivate::contains_translational_equivalents(const Crystal& crystal, const Atom& atom,
                                                           const Point& p) const {
    const CrystalSymmetryOperator identity;
    const int tag = atom.symmtag();
    for (const HMolecule& m : *crystal.molecules()) {
        const int n = m->natoms();
        for (int i = 0; i < n; ++i) {
            HAtom a = m->atom(i);
            if (a->symmtag() != tag || !a->has_site()) continue;
            const Point q = a->site()->frac();
            if (equals(q, p, position_tolerance)) continue;
            HCrystalSymmetryTransformation t = crystal.cell().symmetry_relation(q, p, relation_tolerance);
            if (t.unhand() == nullptr) {
                std::cout << "Assumption failure: two atoms with same symmtag are not related" << std::endl;
                continue;
            }
            if (equals(t->symmetry_operator(), identity, relation_tolerance) || t->is_translational()) return true;
        }
    }
    return false;
}

bool NewCrystalPrivate::expand_fully() {
    if (contacts()->empty()) return false;
    bool changed = false;
    std::deque<HMolecularContact> queue;
    std::map<HMolecularContact, bool> queued, done;
    for (const HMolecularContact& c : *contacts_) {
        queue.push_back(c);
        queued[c] = true;
    }
    while (!queue.empty()) {
        HMolecularContact c = queue.front();
        queue.pop_front();
        if (done[c]) continue;
        done[c] = true;
        HAtom from_atom = c->molecule_from()->atom(c->atom_from());
        HAtom to_atom = c->molecule_to()->atom(c->atom_to());
        if (!to_atom->has_site()) continue;
        MOLCRYST_DEBUG_LINE(2, "NewCrystal::expand_fully processing contact between atoms "
                                   << from_atom->label() << " " << to_atom->label() << " - "
                                   << (from_atom->has_site() ? from_atom->site()->orth() : Point()) << " and "
                                   << to_atom->site()->orth());
        MOLCRYST_DEBUG_LINE(2, "NewCrystal::expand_fully contacts left in queue = " << queue.size());
        const Crystal& shown = *crystal_snapshot();
        if (contains_translational_equivalents(shown, *to_atom, to_atom->site()->frac())) {
            MOLCRYST_DEBUG_LINE(2, "NewCrystal::expand_fully Skipping polymeric expansion");
            continue;
        }
        const int nmolecules = shown.nmolecules();
        const int natoms = shown.natoms();
        const int nbonds = shown.nbonds();
        const std::size_t ncontacts = contacts_->size();
        if (expand_contact(c)) changed = true;
        if (shown.nmolecules() == nmolecules && shown.natoms() == natoms && shown.nbonds() == nbonds &&
            contacts_->size() == ncontacts) {
            MOLCRYST_DEBUG_LINE(2, "NewCrystal::expand_fully - Expansion of contact did not change crystal");
            continue;
        }
        for (const HMolecularContact& x : *contacts_) {
            if (done[x] || queued[x]) continue;
            queue.push_back(x);
            queued[x] = true;
        }
        MOLCRYST_DEBUG_LINE(
            2, "NewCrystal::expand_fully - Finished this contact - contacts left in queue = " << queue.size());
    }
    return changed;
}

bool NewCrystalPrivate::find_contacts(const HMolecule& m) {
    calculate_base_contacts();
    vector_HMolecularContact contacts;
    vector_HMolecule molecules;
    replicate_base_contacts(m, crystal_maker_->cell(), contacts, molecules);
    return add(contacts, molecules);
}

bool NewCrystalPrivate::find_contacts(const HMolecule& m, const HAtom& atom) {
    calculate_base_contacts();
    const int k = index_in(*m, atom);
    if (k < 0) {
        TARNLog::start_error_line() << "NewCrystalPrivate::find_contacts Unable to find atom "
                                    << static_cast<const void*>(atom.unhand());
        TARNLog::end_error_line();
        return false;
    }
    vector_HMolecularContact contacts;
    vector_HMolecule molecules;
    replicate_base_contacts(m, std::vector<int>(1, k), crystal_maker_->cell(), contacts, molecules);
    return add(contacts, molecules);
}

bool NewCrystalPrivate::remove_contact(const HMolecularContact& c) {
    contacts();
    auto position = [&](const HMolecularContact& x) {
        return static_cast<std::size_t>(std::find(contacts_->begin(), contacts_->end(), x) - contacts_->begin());
    };
    if (position(c) == contacts_->size()) {
        std::cout << "Problem deleting " << static_cast<const void*>(c.unhand());
        for (const HMolecule& m : {c->molecule_from(), c->molecule_to()})
            std::cout << " " << static_cast<const void*>(m.unhand()) << " (" << m->natoms() << " atoms) "
                      << "(centroid: " << m->centroid() << ")";
        std::cout << std::endl;
    }
    bool changed = false;
    if (!expandable(c)) {
        // Both ends are whole molecules: the contact goes with its reverse, nothing leaves the picture.
        HMolecularContact reverse = first_reverse_contact(*c);
        if (position(c) < contacts_->size()) {
            erase_contact(position(c));
            changed = true;
        }
        if (reverse.unhand() != nullptr && position(reverse) < contacts_->size()) {
            erase_contact(position(reverse));
            changed = true;
        }
        return changed;
    }
    if (position(c) < contacts_->size()) {
        erase_contact(position(c));
        changed = true;
    }
    for (const HMolecularContact& x : *contacts_)
        if (x->molecule_to().unhand() == c->molecule_to().unhand()) return changed;
    if (crystal_snapshot()->remove(c->molecule_to()) >= 0) {
        invalidate_box();
        changed = true;
    }
    return changed;
}

bool NewCrystalPrivate::delete_hanging_contacts() {
    contacts();
    bool changed = false;
    Hvector_HMolecularContact kept(new vector_HMolecularContact());
    std::vector<HMolecule> hanging;
    for (const HMolecularContact& c : *contacts_) {
        if (expandable(c))
            hanging.push_back(c->molecule_to());
        else
            kept->push_back(c);
    }
    for (const HMolecule& m : hanging) {
        crystal_snapshot()->remove(m);
        changed = true;
    }
    contacts_ = kept;
    drop_contact_ends();
    if (changed) invalidate_box();
    return changed;
}

bool NewCrystalPrivate::is_hanging_atom(const HMolecule& m, const HAtom& atom) const {
    std::cout << "NewCrystalPrivate::is_hanging_atom natoms = " << m->natoms() << std::endl;
    if (m->natoms() != 1) return false;
    const bool e = expandable(m, atom);
    std::cout << "NewCrystalPrivate::is_hanging_atom expandable = " << e << std::endl;
    return e;
}

bool NewCrystalPrivate::delete_molecule(const HMolecule& m) {
    contacts();
    Crystal& shown = *crystal_snapshot();
    const int before = shown.nmolecules();
    vector_HMolecularContact at_from, at_to, others;
    for (const HMolecularContact& c : *contacts_) {
        if (same_molecule(c->molecule_from(), m))
            at_from.push_back(c);
        else if (same_molecule(c->molecule_to(), m))
            at_to.push_back(c);
        else
            others.push_back(c);
    }
    const bool contact_left = !at_from.empty() || !at_to.empty();
    auto erase = [&](const HMolecularContact& c) {
        auto k = std::find(contacts_->begin(), contacts_->end(), c);
        if (k != contacts_->end()) erase_contact(static_cast<std::size_t>(k - contacts_->begin()));
    };
    for (const HMolecularContact& c : at_from) {
        erase(c);
        const HMolecule& to = c->molecule_to();
        if (c->atom_to() >= 0 && c->atom_to() < to->natoms() && contacts(to, to->atom(c->atom_to())).empty())
            shown.remove(to);
    }
    for (const HMolecularContact& c : at_to) erase(c);
    shown.remove(m);
    const bool changed = shown.nmolecules() < before || contact_left;
    if (changed) invalidate_box();
    return changed;
}

HCrystal NewCrystalPrivate::convert_contacts_to_bonds() {
    const vector_HMolecularContact present = *contacts();
    for (const HMolecularContact& c : present) {
        HMolecule m1 = c->molecule_from();
        HMolecule m2 = c->molecule_to();
        HAtom to_atom = m2->atom(c->atom_to());
        if (!to_atom->has_site()) continue;
        // find_atom looks atoms up by orthogonal point.
        const Point p = to_atom->site()->orth();
        const int tag = to_atom->symmtag();
        int index = -1;
        if (!m1->find_atom(tag, p, index)) {
            m1->merge(m2);
            if (!m1->find_atom(tag, p, index)) {
                TARNLog::start_error_line() << "Failed to find contact in mol2 ";
                TARNLog::end_error_line();
                continue;
            }
        }
        if (m1->bond_index(c->atom_from(), index) == -1)
            m1->add(HBond(new Bond3d(UNKNOWN_BOND)), c->atom_from(), index);
    }
    vector_HMolecule joined;
    auto overlaps = [](const Molecule& a, const Molecule& b) {
        for (int i = 0; i < a.natoms(); ++i) {
            HAtom x = a.atom(i);
            if (!x->has_site()) continue;
            for (int j = 0; j < b.natoms(); ++j) {
                HAtom y = b.atom(j);
                if (y->has_site() && x->symmtag() == y->symmtag() &&
                    equals(x->site()->frac(), y->site()->frac(), position_tolerance))
                    return true;
            }
        }
        return false;
    };
    for (const HMolecule& m : *crystal_snapshot()->molecules()) {
        auto into = std::find_if(joined.begin(), joined.end(), [&](const HMolecule& x) { return overlaps(*x, *m); });
        if (into != joined.end())
            (*into)->merge(m);
        else
            joined.push_back(m);
    }
    return HCrystal(new Crystal(crystal_maker_->cell(), Hvector_HMolecule(new vector_HMolecule(joined))));
}

}  // namespace molcryst

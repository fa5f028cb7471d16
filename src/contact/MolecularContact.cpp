#include "molcryst/contact/MolecularContact.h"

#include <ostream>
#include <utility>

#include "molcryst/geometry/Cell.h"
#include "molcryst/molecule/Site.h"
#include "molcryst/support/Archive.h"

namespace molcryst {

namespace {

// Molecule equality through the handles: a null handle raises the
// null-handle error rather than comparing equal to another null.
bool same_molecule(const HMolecule& a, const HMolecule& b) { return *a == *b; }

bool same_groups_in_place(const BasicContact& a, const BasicContact& b) {
    return a.sorted_from() == b.sorted_from() && a.sorted_to() == b.sorted_to();
}

bool same_groups_crosswise(const BasicContact& a, const BasicContact& b) {
    return a.sorted_from() == b.sorted_to() && a.sorted_to() == b.sorted_from();
}

// "<label> - (x, y, z)" with the orthogonal coordinates in fixed notation.
void print_atom(std::ostream& os, const Molecule& molecule, int index) {
    HAtom atom = molecule.atom(index);
    const Point p = atom->site()->orth();
    os << atom->label() << " - ";
    // Fixed notation at the stream's own precision; the caller's format is restored after.
    const std::ios_base::fmtflags flags = os.flags();
    os.setf(std::ios_base::fixed, std::ios_base::floatfield);
    os << p;
    os.flags(flags);
}

// The from end opens its group with "group [", the to end with "group ";
// neither closes it.
void print_end(std::ostream& os, const Molecule& molecule, int atom, const std::vector<int>& group,
               const char* group_opening) {
    if (atom == -1) {
        os << group_opening;
        for (int index : group) {
            print_atom(os, molecule, index);
            os << ", ";
        }
    } else {
        os << " atom ";
        print_atom(os, molecule, atom);
    }
}

Point frac_of(const HMolecule& molecule, int atom) { return molecule->atom(atom)->site()->frac(); }
Point orth_of(const HMolecule& molecule, int atom) { return molecule->atom(atom)->site()->orth(); }

}  // namespace

MolecularContact::MolecularContact() : BasicContact(0, 0) {}

MolecularContact::MolecularContact(HMolecule m1, int from, HMolecule m2, int to, NonBondType type)
    : BasicContact(from, to), molecule_from_(m1), molecule_to_(m2), type_(type) {}

MolecularContact::MolecularContact(HMolecule m1, int from, HMolecule m2, int to, double strength,
                                   NonBondType type)
    : BasicContact(from, to, strength), molecule_from_(m1), molecule_to_(m2), type_(type) {}

MolecularContact::MolecularContact(HMolecule m1, int from, const std::vector<int>& group_from,
                                   HMolecule m2, int to, const std::vector<int>& group_to,
                                   NonBondType type)
    : BasicContact(from, group_from, to, group_to),
      molecule_from_(m1),
      molecule_to_(m2),
      type_(type) {}

MolecularContact::MolecularContact(HMolecule m1, int from, const std::vector<int>& group_from,
                                   HMolecule m2, int to, const std::vector<int>& group_to,
                                   double strength, NonBondType type)
    : BasicContact(from, group_from, to, group_to, strength),
      molecule_from_(m1),
      molecule_to_(m2),
      type_(type) {}

MolecularContact::MolecularContact(const BasicContact& contact, HMolecule m1, HMolecule m2,
                                   NonBondType type)
    : BasicContact(contact), molecule_from_(m1), molecule_to_(m2), type_(type) {}

MolecularContact::~MolecularContact() {}

void MolecularContact::switch_groups() {
    BasicContact::switch_groups();
    std::swap(molecule_from_, molecule_to_);
}

bool MolecularContact::intermolecular() const {
    const Molecule& from = *molecule_from_;
    const Molecule& to = *molecule_to_;
    if (&from == &to) return false;
    return !(from == to);
}

void MolecularContact::print(std::ostream& os) const {
    os << (intermolecular() ? "Intermolecular contact between" : "Intramolecular contact between");
    os << " Molecule " << static_cast<const void*>(molecule_from_.unhand()) << " ";
    print_end(os, *molecule_from_, atom_from(), group_from(), "group [");
    os << " and "
       << " Molecule " << static_cast<const void*>(molecule_to_.unhand()) << " ";
    print_end(os, *molecule_to_, atom_to(), group_to(), "group ");
    if (has_strength()) os << "  Strength: " << strength();
    os << "\n";
}

void MolecularContact::write(Archive& ar) const {
    BasicContact::write(ar);
    ar << static_cast<int>(type_);
}

void MolecularContact::read(Archive& ar) {
    // The base record goes into a copy, so that a type missing at the end
    // leaves this contact as it was.
    BasicContact record(*this);
    record.BasicContact::read(ar);
    int type = 0;
    {
        Archive::Field field(ar, "MolecularContact::read type");
        ar >> type;
    }
    BasicContact::operator=(record);
    type_ = type;
}

bool operator==(const MolecularContact& a, const MolecularContact& b) {
    if (!(static_cast<const BasicContact&>(a) == static_cast<const BasicContact&>(b))) return false;
    const bool a_inter = a.intermolecular();
    const bool b_inter = b.intermolecular();
    if (a_inter != b_inter) return same_molecule(a.molecule_from(), b.molecule_from());
    if (!a_inter) return false;  // intramolecular contacts are never folded together
    // Indices before molecules: the molecule comparison walks every atom. Both
    // molecules of each contact were dereferenced above, so the order changes
    // no result.
    const bool in_place = a.atom_from() == b.atom_from() && a.atom_to() == b.atom_to() &&
                          (a.atom_from() != -1 || a.sorted_from() == b.sorted_from()) &&
                          (a.atom_to() != -1 || a.sorted_to() == b.sorted_to()) &&
                          same_molecule(a.molecule_from(), b.molecule_from()) &&
                          same_molecule(a.molecule_to(), b.molecule_to());
    if (in_place) return true;
    return a.atom_from() == b.atom_to() && a.atom_to() == b.atom_from() &&
           (a.atom_from() != -1 || a.sorted_from() == b.sorted_to()) &&
           (a.atom_to() != -1 || a.sorted_to() == b.sorted_from()) &&
           same_molecule(a.molecule_from(), b.molecule_to()) &&
           same_molecule(a.molecule_to(), b.molecule_from());
}

bool contacts_between_same_groups(const MolecularContact& a, const MolecularContact& b) {
    if (same_molecule(a.molecule_from(), b.molecule_from()) &&
        same_molecule(a.molecule_to(), b.molecule_to())) {
        if (same_molecule(a.molecule_from(), a.molecule_to()))
            return same_groups_in_place(a, b) || same_groups_crosswise(a, b);
        return same_groups_in_place(a, b);
    }
    if (same_molecule(a.molecule_from(), b.molecule_to()) &&
        same_molecule(a.molecule_to(), b.molecule_from()))
        return same_groups_crosswise(a, b);
    return false;
}

bool is_symmetry_related(const Cell& cell, const MolecularContact& a, const MolecularContact& b,
                         double tolerance) {
    const Point p1 = frac_of(a.molecule_from(), a.atom_from());
    const Point p2 = frac_of(a.molecule_to(), a.atom_to());
    const Point q1 = frac_of(b.molecule_from(), b.atom_from());
    const Point q2 = frac_of(b.molecule_to(), b.atom_to());
    return (cell.is_symmetry_related(p1, q1, tolerance) &&
            cell.is_symmetry_related(p2, q2, tolerance)) ||
           (cell.is_symmetry_related(p1, q2, tolerance) &&
            cell.is_symmetry_related(p2, q1, tolerance));
}

bool equivalent_contacts(const MolecularContact& a, const MolecularContact& b, double tolerance) {
    const Point u1 = orth_of(a.molecule_from(), a.atom_from());
    const Point u2 = orth_of(a.molecule_to(), a.atom_to());
    const Point v1 = orth_of(b.molecule_from(), b.atom_from());
    const Point v2 = orth_of(b.molecule_to(), b.atom_to());
    return (equals(u1, v1, tolerance) && equals(u2, v2, tolerance)) ||
           (equals(u1, v2, tolerance) && equals(u2, v1, tolerance));
}

}  // namespace molcryst

#include "molcryst/contact/BasicContact.h"

#include <algorithm>
#include <ostream>
#include <stdexcept>
#include <utility>

#include "molcryst/support/Archive.h"

namespace molcryst {

namespace {

std::vector<int> sorted_copy(const std::vector<int>& group) {
    std::vector<int> out(group);
    std::sort(out.begin(), out.end());
    return out;
}

void print_end(std::ostream& os, int atom, const std::vector<int>& group) {
    if (atom == -1) {
        os << "group [";
        for (int index : group) os << index << ", ";
        os << "]";
    } else {
        os << " atom " << atom;
    }
}

}  // namespace

BasicContact::BasicContact(int from, int to)
    : atom_from_(from),
      group_from_(1, from),
      sorted_from_(1, from),
      atom_to_(to),
      group_to_(1, to),
      sorted_to_(1, to) {}

BasicContact::BasicContact(int from, int to, double strength) : BasicContact(from, to) {
    strength_ = strength;
    has_strength_ = true;
}

BasicContact::BasicContact(int from, const std::vector<int>& group_from, int to,
                           const std::vector<int>& group_to)
    : atom_from_(from),
      group_from_(group_from),
      sorted_from_(sorted_copy(group_from)),
      atom_to_(to),
      group_to_(group_to),
      sorted_to_(sorted_copy(group_to)) {}

BasicContact::BasicContact(int from, const std::vector<int>& group_from, int to,
                           const std::vector<int>& group_to, double strength)
    : BasicContact(from, group_from, to, group_to) {
    strength_ = strength;
    has_strength_ = true;
}

BasicContact::~BasicContact() {}

double BasicContact::strength() const {
    if (!has_strength_)
        throw std::runtime_error("BasicContact - attempt to access unset contact strength");
    return strength_;
}

void BasicContact::set_from(const std::vector<int>& group, int atom) {
    std::vector<int> sorted = sorted_copy(group);
    group_from_ = group;
    sorted_from_.swap(sorted);
    atom_from_ = atom;
}

void BasicContact::set_to(const std::vector<int>& group, int atom) {
    std::vector<int> sorted = sorted_copy(group);
    group_to_ = group;
    sorted_to_.swap(sorted);
    atom_to_ = atom;
}

void BasicContact::switch_groups() {
    std::swap(atom_from_, atom_to_);
    group_from_.swap(group_to_);
    sorted_from_.swap(sorted_to_);
}

bool BasicContact::operator==(const BasicContact& other) const {
    if (atom_from_ == other.atom_from_ && atom_to_ == other.atom_to_) {
        if (atom_from_ != -1 && atom_to_ != -1) return true;
        if (atom_from_ != -1) return sorted_to_ == other.sorted_to_;
        if (atom_to_ != -1) return sorted_from_ == other.sorted_from_;
        return (sorted_from_ == other.sorted_from_ && sorted_to_ == other.sorted_to_) ||
               (sorted_from_ == other.sorted_to_ && sorted_to_ == other.sorted_from_);
    }
    if (atom_from_ == other.atom_to_ && atom_to_ == other.atom_from_) {
        if (atom_from_ != -1 && atom_to_ != -1) return true;
        if (atom_from_ != -1) return sorted_to_ == other.sorted_from_;
        // Both anchors -1 cannot reach here: they would have matched in place.
        return sorted_from_ == other.sorted_to_;
    }
    return false;
}

void BasicContact::print(std::ostream& os) const {
    os << "contact from ";
    print_end(os, atom_from_, group_from_);
    os << " to ";
    print_end(os, atom_to_, group_to_);
    if (has_strength_) os << "  Strength: " << strength_;
    os << "\n";
}

void BasicContact::write(Archive& ar) const {
    ar << atom_from_ << atom_to_ << group_from_ << group_to_ << has_strength_;
    ar << (has_strength_ ? strength_ : 0.0);
}

void BasicContact::read(Archive& ar) {
    // Into locals first: a failed read leaves the contact as it was.
    int from = 0, to = 0;
    std::vector<int> group_from, group_to;
    bool has = false;
    double strength = 0.0;
    {
        Archive::Field field(ar, "BasicContact::read atom_from and atom_to");
        ar >> from >> to;
    }
    {
        Archive::Field field(ar, "BasicContact::read group_from");
        ar >> group_from;
    }
    {
        Archive::Field field(ar, "BasicContact::read group_to");
        ar >> group_to;
    }
    {
        Archive::Field field(ar, "BasicContact::read strength");
        ar >> has >> strength;
    }
    std::vector<int> sorted_from = sorted_copy(group_from);
    std::vector<int> sorted_to = sorted_copy(group_to);
    atom_from_ = from;
    atom_to_ = to;
    group_from_.swap(group_from);
    group_to_.swap(group_to);
    sorted_from_.swap(sorted_from);
    sorted_to_.swap(sorted_to);
    has_strength_ = has;
    strength_ = has ? strength : 0.0;
}

std::ostream& operator<<(std::ostream& os, const BasicContact& contact) {
    contact.print(os);
    return os;
}

}  // namespace molcryst

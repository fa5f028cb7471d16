// BasicContact: a non-bonded contact between two atoms, or two groups of
// atoms, named by atom index alone inside an unnamed pair of molecules. It is
// what a contact search inside one molecule returns.
//
// Each end is an anchor atom and a group. A single-atom end has the atom as
// its anchor and as its only group member; a group end has the anchor -1 and
// the group's indices in the order given. Each group is kept sorted beside
// its given order, so that ends compare by membership.
//
// Archive layout: atom_from (int), atom_to (int), group_from and group_to
// (vectors of int), has_strength (bool), strength (double, 0 when unset).
// The sorted groups are derived again on reading.
#ifndef MOLCRYST_CONTACT_BASICCONTACT_H
#define MOLCRYST_CONTACT_BASICCONTACT_H

#include <iosfwd>
#include <vector>

#include "molcryst/support/THandle.h"

namespace molcryst {

class Archive;

/// A contact between two atoms or groups of atoms, by index; see the banner.
class BasicContact {
public:
    /// Two single atoms, strength unset.
    BasicContact(int from, int to);
    /// Two single atoms with a strength.
    BasicContact(int from, int to, double strength);
    /// Two ends with their groups; an anchor of -1 makes the end a group.
    BasicContact(int from, const std::vector<int>& group_from, int to,
                 const std::vector<int>& group_to);
    BasicContact(int from, const std::vector<int>& group_from, int to,
                 const std::vector<int>& group_to, double strength);
    BasicContact(const BasicContact& other) = default;
    BasicContact& operator=(const BasicContact& other) = default;

    virtual ~BasicContact();
    /// Exchanges the from and the to end; the strength stays.
    virtual void switch_groups();
    /// One line: "contact from <end> to <end>", the strength if set, a newline.
    virtual void print(std::ostream& os) const;
    virtual void write(Archive& ar) const;
    /// Reads the layout of the banner; on failure throws std::runtime_error
    /// and leaves the contact as it was.
    virtual void read(Archive& ar);

    /// Throws std::runtime_error when no strength was given or read.
    double strength() const;
    bool has_strength() const { return has_strength_; }

    int atom_from() const { return atom_from_; }
    int atom_to() const { return atom_to_; }
    const std::vector<int>& group_from() const { return group_from_; }
    const std::vector<int>& group_to() const { return group_to_; }
    /// The groups in ascending order.
    const std::vector<int>& sorted_from() const { return sorted_from_; }
    const std::vector<int>& sorted_to() const { return sorted_to_; }

    /// Replace an end. The atom is not checked against the group.
    void set_from(const std::vector<int>& group, int atom);
    void set_to(const std::vector<int>& group, int atom);

    /// The same contact in either direction. Anchors are compared first; a
    /// group end is then compared by membership, an atom end by its anchor
    /// alone. Strength plays no part.
    bool operator==(const BasicContact& other) const;

private:
    int atom_from_;
    std::vector<int> group_from_;
    std::vector<int> sorted_from_;
    int atom_to_;
    std::vector<int> group_to_;
    std::vector<int> sorted_to_;
    double strength_ = 0.0;  // meaningful only when has_strength_
    bool has_strength_ = false;
};

typedef THandle<BasicContact> HBasicContact;
typedef std::vector<HBasicContact> vector_HBasicContact;
typedef THandle<vector_HBasicContact> Hvector_HBasicContact;

/// The contact's print form.
std::ostream& operator<<(std::ostream& os, const BasicContact& contact);

}  // namespace molcryst

#endif

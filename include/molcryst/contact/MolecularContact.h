// MolecularContact: a BasicContact together with the two molecules whose
// atoms it joins, and a tag saying what kind of rule found it.
//
// The molecules are held by handle and are not archived with the contact:
// whoever holds the molecules (a crystal) writes their positions beside it
// and sets them again after reading. A default contact has null molecules,
// and every query that looks at the molecules raises the null-handle error
// until they are set.
//
// Archive layout: the BasicContact record, then the type (int).
#ifndef MOLCRYST_CONTACT_MOLECULARCONTACT_H
#define MOLCRYST_CONTACT_MOLECULARCONTACT_H

#include <iosfwd>
#include <vector>

#include "molcryst/contact/BasicContact.h"
#include "molcryst/molecule/Molecule.h"

namespace molcryst {

class Cell;

/// What found a contact: 0 a crystal builder or a restored state, 1 a van der
/// Waals rule, 2 a distance rule, 3 a hydrogen-bond rule; -1 asks the
/// builders to take the whole to group. Archived as int.
typedef int NonBondType;

/// A contact between atoms or groups of two molecules, or of one molecule
/// with itself.
class MolecularContact : public BasicContact {
public:
    /// Anchor atoms 0 and 0, null molecules, type 0: to be filled by read.
    MolecularContact();
    MolecularContact(HMolecule m1, int from, HMolecule m2, int to, NonBondType type);
    MolecularContact(HMolecule m1, int from, HMolecule m2, int to, double strength,
                     NonBondType type);
    /// A strength without a type would silently become the type: refused.
    MolecularContact(HMolecule m1, int from, HMolecule m2, int to, double strength) = delete;
    MolecularContact(HMolecule m1, int from, const std::vector<int>& group_from, HMolecule m2,
                     int to, const std::vector<int>& group_to, NonBondType type);
    MolecularContact(HMolecule m1, int from, const std::vector<int>& group_from, HMolecule m2,
                     int to, const std::vector<int>& group_to, double strength, NonBondType type);
    MolecularContact(HMolecule m1, int from, const std::vector<int>& group_from, HMolecule m2,
                     int to, const std::vector<int>& group_to, double strength) = delete;
    /// The record of `contact` between the atoms of `m1` and `m2`.
    MolecularContact(const BasicContact& contact, HMolecule m1, HMolecule m2, NonBondType type);
    MolecularContact(const MolecularContact& other) = default;
    MolecularContact& operator=(const MolecularContact& other) = default;

    ~MolecularContact() override;
    /// Exchanges the ends, molecules included.
    void switch_groups() override;
    /// One line: "Intermolecular contact between" or "Intramolecular contact
    /// between", each molecule's address and each end's labels and
    /// orthogonal coordinates, then the strength if set.
    void print(std::ostream& os) const override;
    /// The base record, then the type; the molecules are not written.
    void write(Archive& ar) const override;
    /// On failure throws std::runtime_error and leaves the contact as it was.
    void read(Archive& ar) override;
    /// False when both ends lie in one molecule: the same object, or two
    /// molecules equal by the molecule's operator==.
    virtual bool intermolecular() const;

    const HMolecule& molecule_from() const { return molecule_from_; }
    const HMolecule& molecule_to() const { return molecule_to_; }
    void set_molecule_from(const HMolecule& molecule) { molecule_from_ = molecule; }
    void set_molecule_to(const HMolecule& molecule) { molecule_to_ = molecule; }
    NonBondType type() const { return type_; }
    void set_type(NonBondType type) { type_ = type; }

private:
    HMolecule molecule_from_;
    HMolecule molecule_to_;
    NonBondType type_ = 0;
};

typedef THandle<MolecularContact> HMolecularContact;
typedef std::vector<HMolecularContact> vector_HMolecularContact;
typedef THandle<vector_HMolecularContact> Hvector_HMolecularContact;

/// The same contact between equal molecules, in either direction. Two
/// intramolecular contacts are never equal, not even a contact and itself,
/// so that merging never folds contacts inside one molecule together. When
/// one contact is intermolecular and the other not, only the from molecules
/// are compared beside the BasicContact records.
bool operator==(const MolecularContact& a, const MolecularContact& b);

/// Whether two contacts join the same groups of equal molecules, whatever
/// their anchor atoms: in place, or crosswise with the ends exchanged. Within
/// one molecule either direction will do.
bool contacts_between_same_groups(const MolecularContact& a, const MolecularContact& b);

/// Whether the anchor atoms of `a` are images of those of `b` under the
/// symmetry of `cell`, in either direction, each pair tested on its own.
/// Group contacts (anchor -1) must not be passed.
bool is_symmetry_related(const Cell& cell, const MolecularContact& a, const MolecularContact& b,
                         double tolerance);

/// Whether the anchor atoms of `a` and `b` stand at the same orthogonal
/// places within `tolerance`, in either direction. Group contacts (anchor -1)
/// must not be passed.
bool equivalent_contacts(const MolecularContact& a, const MolecularContact& b, double tolerance);

}  // namespace molcryst

#endif

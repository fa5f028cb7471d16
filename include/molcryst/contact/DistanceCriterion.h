// DistanceCriterion: two atoms make a contact when the distance between
// their sites lies in [min_tolerance, max_tolerance], both ends included.
// The contact's strength is the negated tested value, so the closer pair is
// the stronger. Subclasses test the distance less a normalisation (the sum
// of van der Waals radii for VdWCriterion).
//
// The atoms allowed at each end are named by atomic number; an empty set
// allows every atom. Sets are copied with the criterion.
//
// Archive layout: max_tolerance (double), min_tolerance (double), the from
// set (unsigned int size, then each atomic number as int, ascending), the to
// set likewise, then the ContactCriterion layout.
#ifndef MOLCRYST_CONTACT_DISTANCECRITERION_H
#define MOLCRYST_CONTACT_DISTANCECRITERION_H

#include <set>
#include <string>

#include "molcryst/contact/ContactCriterion.h"

namespace molcryst {

typedef THandle<std::set<int> > Hset_int;

/// A contact by plain distance; see the banner.
class DistanceCriterion : public ContactCriterion {
public:
    /// Null sets become new empty ones.
    DistanceCriterion(double max_tolerance, double min_tolerance, ContactType type, int min_path, int max_path,
                      bool strongest_only, Hset_int from = Hset_int(), Hset_int to = Hset_int());
    /// Copies the element sets: the copy is independent of the original.
    DistanceCriterion(const DistanceCriterion& other);
    DistanceCriterion& operator=(const DistanceCriterion& other);
    ~DistanceCriterion() override;

    using ContactCriterion::find_crystal_contact;
    using ContactCriterion::find_intramolecular_contact;
    using ContactCriterion::test_atom_from;
    using ContactCriterion::test_atom_to;

    HContactCriterion clone() const override;
    DistanceCriterion& assign(const ContactCriterion& other) override;
    const char* class_name() const override;
    /// max_tolerance.
    double max_radius() const override;
    Hvector_HMolecularContact find_contact(const HMolecule& m1, int atom1, const HMolecule& m2,
                                           int atom2) const override;
    Hvector_HBasicContact find_intramolecular_contact(const Molecule& mol, int atom1, int atom2) const override;
    /// Whether the atom's atomic number is in the from set, or the set is empty.
    bool test_atom_from(const Molecule& mol, int atom) const override;
    bool test_atom_to(const Molecule& mol, int atom) const override;
    /// "max tolerance: ..., min tolerance: ..., from atomic numbers: ..., to
    /// atomic numbers: ...", a line end, then the base's print.
    std::ostream& print(std::ostream& os) const override;
    void write(Archive& ar) const override;
    void read(Archive& ar) override;
    bool operator==(const ContactCriterion& other) const override;
    bool operator==(const DistanceCriterion& other) const;

    /// What is subtracted from the distance before it is tested: 0 here.
    virtual double normalisation_factor(const Molecule& m1, int atom1, const Molecule& m2, int atom2) const;
    /// The tag of what found a contact: 2, a distance rule.
    virtual NonBondType contact_type() const;
    /// The one place where the distance is tested: no or one contact, with
    /// the strength -(distance - normalisation_factor).
    virtual Hvector_HBasicContact find_contact_private_(const Molecule& m1, int atom1, const Molecule& m2,
                                                        int atom2) const;

    const Hset_int& from_atomic_numbers() const { return from_atomic_numbers_; }
    const Hset_int& to_atomic_numbers() const { return to_atomic_numbers_; }
    /// The symbols of the set joined by ",", in ascending atomic number; number 1 is "H".
    std::string from_elements() const;
    std::string to_elements() const;
    /// Adds the elements named in `text`, separated by blanks or commas;
    /// names that are not elements are skipped in silence.
    void add_from_elements(const std::string& text);
    void add_to_elements(const std::string& text);

    double max_tolerance() const { return max_tolerance_; }
    double min_tolerance() const { return min_tolerance_; }

protected:
    /// Bounded when the class is exactly this one.
    bool radius_bounds_reach() const override;

private:
    double max_tolerance_;  // Angstrom
    double min_tolerance_;  // Angstrom
    Hset_int from_atomic_numbers_;  // never null
    Hset_int to_atomic_numbers_;    // never null
};

typedef THandle<DistanceCriterion> HDistanceCriterion;

}  // namespace molcryst

#endif

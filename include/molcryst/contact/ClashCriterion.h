// ClashCriterion: atoms closer than their van der Waals radii allow, less the
// pairs that a hydrogen bond explains.
//
// The search itself is that of the CombinedCriterion member; each pair it
// finds is then put to the HBondCriterion member, and dropped if a hydrogen
// bond accounts for it. With hydrogens, a pair of heavy atoms is explained by
// a hydrogen on either one bonding to the other; without them, a hydrogen
// stands for the atom it hangs on. What is left is a list of close contacts
// that chemistry does not explain: overlapping disordered parts, misplaced
// hydrogens, wrong symmetry.
//
// Archive layout: that of ContactCriterion; the two members are not archived,
// and ContactCriterionArchiver refuses this class.
#ifndef MOLCRYST_CONTACT_CLASHCRITERION_H
#define MOLCRYST_CONTACT_CLASHCRITERION_H

#include "molcryst/contact/CombinedCriterion.h"
#include "molcryst/contact/HBondCriterion.h"

namespace molcryst {

class Atom;

/// Van der Waals overlaps that no hydrogen bond explains; see the banner.
class ClashCriterion : public ContactCriterion {
public:
    /// Overlaps of any depth between molecules (tolerances 0 and -5 on the
    /// radii sum), hydrogen bonds by the library's defaults; paths 4 to 999.
    ClashCriterion();
    ClashCriterion(const CombinedCriterion& combined, const HBondCriterion& hbond);
    ClashCriterion(const ClashCriterion& other) = default;
    ClashCriterion& operator=(const ClashCriterion& other) = default;
    ~ClashCriterion() override;

    using ContactCriterion::find_crystal_contact;
    using ContactCriterion::find_intramolecular_contact;
    using ContactCriterion::operator!=;

    HContactCriterion clone() const override;
    ClashCriterion& assign(const ContactCriterion& other) override;
    const char* class_name() const override;
    /// The larger of the two members' radii.
    double max_radius() const override;
    /// The combined member's contacts that is_not_hbound keeps.
    Hvector_HMolecularContact find_contact(const HMolecule& m1, int atom1, const HMolecule& m2,
                                           int atom2) const override;
    /// The combined member's contacts for which the hydrogen-bond member finds nothing.
    Hvector_HBasicContact find_intramolecular_contact(const Molecule& mol, int atom1, int atom2) const override;
    bool operator==(const ContactCriterion& other) const override;
    /// Both members equal.
    bool operator==(const ClashCriterion& other) const;
    bool operator!=(const ClashCriterion& other) const { return !(*this == other); }

    /// 1, a van der Waals rule.
    NonBondType contact_type() const { return 1; }

    HBondCriterion& hbond_criterion() { return hbond_criterion_; }
    const HBondCriterion& hbond_criterion() const { return hbond_criterion_; }
    CombinedCriterion& combined_criterion() { return combined_criterion_; }
    const CombinedCriterion& combined_criterion() const { return combined_criterion_; }
    void set_hbond_criterion(const HBondCriterion& criterion) { hbond_criterion_ = criterion; }
    void set_combined_criterion(const CombinedCriterion& criterion) { combined_criterion_ = criterion; }

    /// Whether no hydrogen bond explains the pair `x` (of `m1`) and `y` (of
    /// `m2`): by hydrogens, or by their parent atoms with `no_hydrogens`.
    bool is_not_hbound(const HMolecule& m1, const THandle<Atom>& x, const HMolecule& m2, const THandle<Atom>& y) const;
    /// Two hydrogens: never bound. One: the pair itself. None: every
    /// hydrogen on either atom towards the other.
    bool is_not_hbound_when_using_hydrogen(const HMolecule& m1, const THandle<Atom>& x, const HMolecule& m2,
                                           const THandle<Atom>& y) const;
    /// A hydrogen stands for its first neighbour; one without neighbours is never bound.
    bool is_not_hbound_when_not_using_hydrogen(const HMolecule& m1, const THandle<Atom>& x, const HMolecule& m2,
                                               const THandle<Atom>& y) const;

protected:
    /// Bounded as the combined member is: a clash is one of its contacts.
    bool radius_bounds_reach() const override;

private:
    bool hbonded(const HMolecule& m1, const THandle<Atom>& x, const HMolecule& m2, const THandle<Atom>& y) const;

    HBondCriterion hbond_criterion_;
    CombinedCriterion combined_criterion_;
};

typedef THandle<ClashCriterion> HClashCriterion;

}  // namespace molcryst

#endif

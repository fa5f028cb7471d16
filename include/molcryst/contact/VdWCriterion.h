// VdWCriterion: a DistanceCriterion whose range applies to the distance less
// the sum of the two elements' van der Waals radii, so that a negative
// value is an overlap and an overlap has a positive strength. The radii are
// those of the element tables, never an atom's own radius.
//
// Archive layout: that of DistanceCriterion.
#ifndef MOLCRYST_CONTACT_VDWCRITERION_H
#define MOLCRYST_CONTACT_VDWCRITERION_H

#include "molcryst/contact/DistanceCriterion.h"

namespace molcryst {

/// A contact by distance less the van der Waals radii.
class VdWCriterion : public DistanceCriterion {
public:
    VdWCriterion(double max_tolerance, double min_tolerance, ContactType type, int min_path, int max_path,
                 bool strongest_only, Hset_int from = Hset_int(), Hset_int to = Hset_int());
    ~VdWCriterion() override;

    HContactCriterion clone() const override;
    VdWCriterion& assign(const ContactCriterion& other) override;
    const char* class_name() const override;
    /// The largest radius allowed at each end (2.75, the largest in the
    /// table, for an empty set) summed, plus max_tolerance.
    double max_radius() const override;
    /// "VdWCriterion: ", then the print of DistanceCriterion.
    std::ostream& print(std::ostream& os) const override;
    bool operator==(const ContactCriterion& other) const override;
    bool operator==(const VdWCriterion& other) const;
    /// The sum of the two elements' van der Waals radii.
    double normalisation_factor(const Molecule& m1, int atom1, const Molecule& m2, int atom2) const override;
    /// 1, a van der Waals rule.
    NonBondType contact_type() const override;

protected:
    bool radius_bounds_reach() const override;
    /// max_radius() with the van der Waals sum.
    double vdw_max_radius() const;
    /// Whether every element whose atomic number an end allows has a radius
    /// no larger than the one max_radius takes for that end.
    bool vdw_radii_bounded() const;
};

typedef THandle<VdWCriterion> HVdWCriterion;

}  // namespace molcryst

#endif

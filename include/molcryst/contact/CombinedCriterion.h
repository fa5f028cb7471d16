// CombinedCriterion: a VdWCriterion when `vdw_corrected` is true and a
// DistanceCriterion otherwise, with the two element sets applied to both
// orders of a pair: (from, to) or (to, from) will do.
//
// Archive layout: that of DistanceCriterion; `vdw_corrected` is not
// archived, and read leaves it as it was.
#ifndef MOLCRYST_CONTACT_COMBINEDCRITERION_H
#define MOLCRYST_CONTACT_COMBINEDCRITERION_H

#include "molcryst/contact/VdWCriterion.h"

namespace molcryst {

/// Either rule by a flag, symmetric in its element sets.
class CombinedCriterion : public VdWCriterion {
public:
    CombinedCriterion(bool vdw_corrected, double max_tolerance, double min_tolerance, ContactType type,
                      int min_path, int max_path, bool strongest_only, Hset_int from = Hset_int(),
                      Hset_int to = Hset_int());
    ~CombinedCriterion() override;

    HContactCriterion clone() const override;
    CombinedCriterion& assign(const ContactCriterion& other) override;
    const char* class_name() const override;
    double max_radius() const override;
    /// Empty unless valid_pair holds; then as DistanceCriterion.
    Hvector_HMolecularContact find_contact(const HMolecule& m1, int atom1, const HMolecule& m2,
                                           int atom2) const override;
    Hvector_HBasicContact find_intramolecular_contact(const Molecule& mol, int atom1, int atom2) const override;
    /// Whether the atom is allowed at either end.
    bool test_atom_from(const Molecule& mol, int atom) const override;
    bool test_atom_to(const Molecule& mol, int atom) const override;
    /// "vdw_corrected: " and the flag, a blank, then the print of the rule in force.
    std::ostream& print(std::ostream& os) const override;
    bool operator==(const ContactCriterion& other) const override;
    bool operator==(const CombinedCriterion& other) const;
    double normalisation_factor(const Molecule& m1, int atom1, const Molecule& m2, int atom2) const override;
    NonBondType contact_type() const override;

    using DistanceCriterion::find_crystal_contact;
    using DistanceCriterion::find_intramolecular_contact;
    using DistanceCriterion::test_atom_from;
    using DistanceCriterion::test_atom_to;

    /// (from(a) and to(b)) or (to(a) and from(b)), by the sets of DistanceCriterion.
    bool valid_pair(const Crystal& crystal, int mol1, int atom1, int mol2, int atom2) const;
    bool valid_pair(const HMolecule& m1, int atom1, const HMolecule& m2, int atom2) const;
    bool valid_pair(const Molecule& mol, int atom1, int atom2) const;

    bool vdw_corrected() const { return vdw_corrected_; }
    void set_vdw_corrected(bool vdw_corrected) { vdw_corrected_ = vdw_corrected; }

protected:
    bool radius_bounds_reach() const override;

private:
    bool valid_pair(const Molecule& m1, int atom1, const Molecule& m2, int atom2) const;

    bool vdw_corrected_;
};

typedef THandle<CombinedCriterion> HCombinedCriterion;

}  // namespace molcryst

#endif

#include "molcryst/contact/CombinedCriterion.h"

#include <typeinfo>

#include "molcryst/crystal/Crystal.h"

namespace molcryst {

CombinedCriterion::CombinedCriterion(bool vdw_corrected, double max_tolerance, double min_tolerance,
                                     ContactType type, int min_path, int max_path, bool strongest_only, Hset_int from,
                                     Hset_int to)
    : VdWCriterion(max_tolerance, min_tolerance, type, min_path, max_path, strongest_only, from, to),
      vdw_corrected_(vdw_corrected) {}

CombinedCriterion::~CombinedCriterion() {}

HContactCriterion CombinedCriterion::clone() const { return HContactCriterion(new CombinedCriterion(*this)); }

CombinedCriterion& CombinedCriterion::assign(const ContactCriterion& other) {
    if (typeid(other) != typeid(*this)) assign_type_error("assign(const ContactCriterion&)");
    return *this = static_cast<const CombinedCriterion&>(other);
}

const char* CombinedCriterion::class_name() const { return "CombinedCriterion"; }

double CombinedCriterion::max_radius() const {
    return vdw_corrected_ ? vdw_max_radius() : DistanceCriterion::max_radius();
}

bool CombinedCriterion::radius_bounds_reach() const {
    return typeid(*this) == typeid(CombinedCriterion) && (!vdw_corrected_ || vdw_radii_bounded());
}

bool CombinedCriterion::valid_pair(const Molecule& m1, int atom1, const Molecule& m2, int atom2) const {
    return (DistanceCriterion::test_atom_from(m1, atom1) && DistanceCriterion::test_atom_to(m2, atom2)) ||
           (DistanceCriterion::test_atom_to(m1, atom1) && DistanceCriterion::test_atom_from(m2, atom2));
}

bool CombinedCriterion::valid_pair(const Crystal& crystal, int mol1, int atom1, int mol2, int atom2) const {
    return valid_pair(*crystal.molecule(mol1), atom1, *crystal.molecule(mol2), atom2);
}

bool CombinedCriterion::valid_pair(const HMolecule& m1, int atom1, const HMolecule& m2, int atom2) const {
    return valid_pair(*m1, atom1, *m2, atom2);
}

bool CombinedCriterion::valid_pair(const Molecule& mol, int atom1, int atom2) const {
    return valid_pair(mol, atom1, mol, atom2);
}

Hvector_HMolecularContact CombinedCriterion::find_contact(const HMolecule& m1, int atom1, const HMolecule& m2,
                                                          int atom2) const {
    if (!valid_pair(m1, atom1, m2, atom2)) return Hvector_HMolecularContact(new vector_HMolecularContact());
    return DistanceCriterion::find_contact(m1, atom1, m2, atom2);
}

Hvector_HBasicContact CombinedCriterion::find_intramolecular_contact(const Molecule& mol, int atom1,
                                                                     int atom2) const {
    if (!valid_pair(mol, atom1, atom2)) return Hvector_HBasicContact(new vector_HBasicContact());
    return DistanceCriterion::find_intramolecular_contact(mol, atom1, atom2);
}

bool CombinedCriterion::test_atom_from(const Molecule& mol, int atom) const {
    return DistanceCriterion::test_atom_from(mol, atom) || DistanceCriterion::test_atom_to(mol, atom);
}

bool CombinedCriterion::test_atom_to(const Molecule& mol, int atom) const {
    return CombinedCriterion::test_atom_from(mol, atom);
}

std::ostream& CombinedCriterion::print(std::ostream& os) const {
    os << "vdw_corrected: " << vdw_corrected_ << " ";
    return vdw_corrected_ ? VdWCriterion::print(os) : DistanceCriterion::print(os);
}

bool CombinedCriterion::operator==(const ContactCriterion& other) const {
    if (typeid(other) != typeid(*this)) return false;
    return *this == static_cast<const CombinedCriterion&>(other);
}

bool CombinedCriterion::operator==(const CombinedCriterion& other) const {
    return vdw_corrected_ == other.vdw_corrected_ && DistanceCriterion::operator==(other);
}

double CombinedCriterion::normalisation_factor(const Molecule& m1, int atom1, const Molecule& m2, int atom2) const {
    return vdw_corrected_ ? VdWCriterion::normalisation_factor(m1, atom1, m2, atom2)
                          : DistanceCriterion::normalisation_factor(m1, atom1, m2, atom2);
}

NonBondType CombinedCriterion::contact_type() const { return vdw_corrected_ ? 1 : 2; }

}  // namespace molcryst

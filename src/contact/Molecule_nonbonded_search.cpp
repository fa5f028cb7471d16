// Molecule::nonbonded_search, the molecule's face of the contact search. It
// lives with the criteria, which sit above molecules.
#include "molcryst/contact/ContactCriterion.h"
#include "molcryst/molecule/Molecule.h"

namespace molcryst {

namespace {

Hvector_HBasicContact nothing() { return Hvector_HBasicContact(new vector_HBasicContact()); }

}  // namespace

Hvector_HBasicContact Molecule::nonbonded_search(const ContactCriterion& criterion) const {
    const std::vector<int> atoms = atoms_with_sites();
    return criterion.find_intramolecular_contact(*this, atoms, atoms);
}

Hvector_HBasicContact Molecule::nonbonded_search(int atom, const ContactCriterion& criterion) const {
    const std::vector<int> one = atoms_with_sites(std::vector<int>(1, atom));
    if (one.empty()) return nothing();
    return criterion.find_intramolecular_contact(*this, one, atoms_with_sites());
}

Hvector_HBasicContact Molecule::nonbonded_search(int atom1, int atom2, const ContactCriterion& criterion) const {
    const std::vector<int> one = atoms_with_sites(std::vector<int>(1, atom1));
    const std::vector<int> other = atoms_with_sites(std::vector<int>(1, atom2));
    if (one.empty() || other.empty()) return nothing();
    return criterion.find_intramolecular_contact(*this, one, other);
}

Hvector_HBasicContact Molecule::nonbonded_search(const std::vector<int>& atoms,
                                                 const ContactCriterion& criterion) const {
    const std::vector<int> sited = atoms_with_sites(atoms);
    return criterion.find_intramolecular_contact(*this, sited, sited);
}

Hvector_HBasicContact Molecule::nonbonded_search(const std::vector<int>& atoms1, const std::vector<int>& atoms2,
                                                 const ContactCriterion& criterion) const {
    return criterion.find_intramolecular_contact(*this, atoms_with_sites(atoms1), atoms_with_sites(atoms2));
}

}  // namespace molcryst

#include "molcryst/edit/MoleculeTransformation.h"

#include "molcryst/molecule/Site.h"

namespace molcryst {

MoleculeTransformation::MoleculeTransformation(const HMolecule& molecule, const Transformation& transformation,
                                               const HCell& cell)
    : MoleculeGeometryEdit(molecule),
      transformation_(transformation),
      frac_from_orth_(cell.unhand() != nullptr ? cell->frac_from_orth() : Cell().frac_from_orth()) {}

void MoleculeTransformation::apply() const {
    const Molecule& molecule = *molecule_;
    for (auto it = molecule.begin_atoms(), end = molecule.end_atoms(); it != end; ++it) {
        const HAtom& atom = *it;
        if (!atom->has_site()) continue;
        const HSite old = atom->site();
        const Point p = transformation_ * old->orth();
        const Point f(frac_from_orth_ * p);
        atom->set_site(HSite(new Site(p, f, old->occupancy(), THandle<Array<Uncertainty, 3> >())));
    }
}

}  // namespace molcryst

#include "molcryst/edit/HydrogenNormalisation.h"

#include <cmath>
#include <stdexcept>

#include "molcryst/crystal/CrystalMaker.h"
#include "molcryst/molecule/Site.h"

namespace molcryst {

HydrogenNormalisation::HydrogenNormalisation() : MoleculeGeometryEdit(HMolecule()) { reset_normalisation_data(); }

HydrogenNormalisation::HydrogenNormalisation(const HMolecule& molecule, const HCell& cell)
    : MoleculeGeometryEdit(molecule), cell_(cell) {
    reset_normalisation_data();
}

void HydrogenNormalisation::set_molecule_and_cell(const HMolecule& molecule, const HCell& cell) {
    molecule_ = molecule;
    cell_ = cell;
}

void HydrogenNormalisation::reset_normalisation_data() {
    distances_.clear();
    distances_[Element("C")] = 1.083;
    distances_[Element("N")] = 1.009;
    distances_[Element("O")] = 0.983;
}

void HydrogenNormalisation::add(const Element& element, double distance) { distances_[element] = distance; }

void HydrogenNormalisation::remove(const Element& element) { distances_.erase(element); }

void HydrogenNormalisation::apply() const {
    if (molecule_.unhand() == nullptr || cell_.unhand() == nullptr)
        throw std::runtime_error("HydrogenNormalisation::apply: Cannot normalise this object's molecule.");
    apply(*molecule_, *cell_);
}

void HydrogenNormalisation::apply(const Molecule& molecule, const Cell& cell) const { normalise_atoms(molecule, cell); }

void HydrogenNormalisation::apply(const CrystalMaker& maker) const {
    // The list is copied: a handle to it keeps the molecules alive whatever the maker does.
    const Hvector_HMolecule molecules = maker.current_molecules();
    if (molecules.unhand() == nullptr) return;
    for (const HMolecule& m : *molecules)
        if (m.unhand() != nullptr) apply(*m, maker.cell());
}

void HydrogenNormalisation::normalise_atoms(const Molecule& molecule, const Cell& cell) const {
    if (distances_.empty()) return;
    const int nbonds = molecule.nbonds();
    for (int i = 0; i < nbonds; ++i) {
        const HBond bond = molecule.bond(i);
        HAtom first = bond->atom1();
        HAtom second = bond->atom2();
        if (!first->has_site() || !second->has_site()) continue;
        for (int pass = 0; pass < 2; ++pass) {
            if (first->element().symbol() == "H" && first->nbonds() == 1 &&
                distances_.find(second->element()) != distances_.end()) {
                normalise_distance(cell, first, second, (first->site()->orth() - second->site()->orth()).length());
                break;
            }
            std::swap(first, second);
        }
    }
}

void HydrogenNormalisation::normalise_distance(const Cell& cell, HAtom& hydrogen, const HAtom& anchor,
                                               double distance) const {
    if (std::fabs(distance) < 1e-07)
        throw std::runtime_error("HydrogenNormalisation::normalise_distance: Cannot scale a zero distance.");
    // An anchor element outside the table leaves the hydrogen where it is.
    const DistanceMap::const_iterator found = distances_.find(anchor->element());
    if (found == distances_.end()) return;
    const double scale = found->second / distance;
    const Point a = anchor->site()->orth();
    const Vector<double, 3> v = hydrogen->site()->orth() - a;
    // A copy keeps occupancy, uncertainties and displacement parameters; the
    // old site may be shared and is not touched.
    HSite moved(new Site(*hydrogen->site()));
    moved->set_orth(a + v * scale, cell);
    hydrogen->set_site(moved);
}

}  // namespace molcryst

#include "molcryst/edit/StoredGeometry.h"

#include <sstream>
#include <stdexcept>

namespace molcryst {

namespace {

HSite copy_of(const HSite& site) { return site.unhand() == nullptr ? HSite() : HSite(new Site(*site)); }

}  // namespace

StoredGeometry::StoredGeometry(const HMolecule& molecule) : MoleculeGeometryEdit(molecule) {
    if (molecule.unhand() == nullptr) throw std::invalid_argument("StoredGeometry::StoredGeometry: Invalid molecule.");
    for (auto it = molecule->begin_atoms(), end = molecule->end_atoms(); it != end; ++it)
        sites_[*it] = copy_of((*it)->site());
}

StoredGeometry::StoredGeometry(const HMolecule& molecule, const std::vector<HSite>& sites)
    : MoleculeGeometryEdit(molecule) {
    if (molecule.unhand() == nullptr) throw std::invalid_argument("StoredGeometry::StoredGeometry: Invalid molecule.");
    const int natoms = molecule->natoms();
    if (static_cast<std::size_t>(natoms) != sites.size()) {
        std::ostringstream text;
        text << "StoredGeometry::StoredGeometry: Number of atoms (" << natoms << ") does not match number of sites ("
             << sites.size() << ")";
        throw std::invalid_argument(text.str());
    }
    for (int i = 0; i < natoms; ++i) sites_[molecule->atom(i)] = copy_of(sites[static_cast<std::size_t>(i)]);
}

void StoredGeometry::apply() const {
    // A molecule taken away by load_molecule leaves nothing to restore to.
    if (molecule_.unhand() == nullptr) throw std::runtime_error("StoredGeometry::apply: no molecule");
    const Molecule& molecule = *molecule_;
    if (static_cast<std::size_t>(molecule.natoms()) != sites_.size())
        throw std::runtime_error("StoredGeometry::apply: The molecule has been edited, so this StoredGeometry is invalid");
    for (const auto& entry : sites_)
        if (!molecule.has_atom(entry.first))
            throw std::runtime_error("StoredGeometry::apply:  at least one atom in is no longer in the molecule.");
    // Fresh copies each time, so that the record survives what is done to the atoms after.
    for (const auto& entry : sites_) entry.first->set_site(copy_of(entry.second));
}

HSite StoredGeometry::site(const HAtom& atom) const {
    const auto found = sites_.find(atom);
    return found == sites_.end() ? HSite() : found->second;
}

}  // namespace molcryst

// StoredGeometry: a snapshot of the site of every atom of a molecule, an
// absolute edit that brings the molecule back to that geometry.
#ifndef MOLCRYST_EDIT_STOREDGEOMETRY_H
#define MOLCRYST_EDIT_STOREDGEOMETRY_H

#include <map>
#include <vector>

#include "molcryst/edit/MoleculeGeometryEdit.h"
#include "molcryst/molecule/Site.h"

namespace molcryst {

/// Deep copies of sites by atom; nothing done to the atoms later reaches them.
class StoredGeometry : public MoleculeGeometryEdit {
public:
    /// A copy of each atom's present site (an atom without one is stored
    /// without one). A null molecule throws std::invalid_argument.
    explicit StoredGeometry(const HMolecule& molecule);
    /// Copies of `sites`, one per atom by atom index. A null molecule, or
    /// counts that differ, throw std::invalid_argument.
    StoredGeometry(const HMolecule& molecule, const std::vector<HSite>& sites);

    /// Gives every atom a fresh copy of its stored site, after checking that
    /// the molecule still has the stored atoms and no others
    /// (std::runtime_error otherwise, the molecule unchanged).
    void apply() const override;
    bool is_absolute() const override { return true; }

    int nsites() const { return static_cast<int>(sites_.size()); }
    /// The stored site of `atom`; null when none is stored.
    HSite site(const HAtom& atom) const;

private:
    std::map<HAtom, HSite> sites_;  // copies; null for an atom stored without a site
};

typedef THandle<StoredGeometry> HStoredGeometry;

}  // namespace molcryst

#endif

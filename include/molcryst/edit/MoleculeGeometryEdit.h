// MoleculeGeometryEdit: a prepared change of the coordinates of the atoms of
// one molecule. Applying an edit moves atoms (or gives them other sites); it
// never adds or removes atoms or bonds. Conformers, disorder states and
// normalised hydrogens are all made of edits.
#ifndef MOLCRYST_EDIT_MOLECULEGEOMETRYEDIT_H
#define MOLCRYST_EDIT_MOLECULEGEOMETRYEDIT_H

#include <vector>

#include "molcryst/molecule/Molecule.h"
#include "molcryst/support/THandle.h"

namespace molcryst {

/// An edit of the geometry of one molecule, held by handle.
class MoleculeGeometryEdit {
public:
    explicit MoleculeGeometryEdit(const HMolecule& molecule) : molecule_(molecule) {}
    virtual ~MoleculeGeometryEdit();

    /// Changes the coordinates of the molecule's atoms.
    virtual void apply() const = 0;
    /// True when applying sets coordinates whatever they are now; false when
    /// it moves what is there, so that the order of a series of edits matters.
    virtual bool is_absolute() const = 0;

    const HMolecule& molecule() const { return molecule_; }
    /// Points the edit at another molecule.
    void load_molecule(const HMolecule& molecule) { molecule_ = molecule; }

protected:
    HMolecule molecule_;
};

typedef THandle<MoleculeGeometryEdit> HMoleculeGeometryEdit;
typedef std::vector<HMoleculeGeometryEdit> vector_HMoleculeGeometryEdit;

}  // namespace molcryst

#endif

// MoleculeGeometrySelector: a cursor over a series of geometry edits of one
// molecule. Moving the cursor applies the edit it lands on.
#ifndef MOLCRYST_EDIT_MOLECULEGEOMETRYSELECTOR_H
#define MOLCRYST_EDIT_MOLECULEGEOMETRYSELECTOR_H

#include "molcryst/edit/MoleculeGeometryEdit.h"

namespace molcryst {

/// Steps through edits of one molecule: start() applies the first, next()
/// the following one, set(i) edit i.
class MoleculeGeometrySelector {
public:
    explicit MoleculeGeometrySelector(const HMolecule& molecule) : molecule_(molecule) {}
    virtual ~MoleculeGeometrySelector();

    /// Applies the first step.
    virtual void start() = 0;
    /// Applies the step after the current one.
    virtual void next() = 0;
    /// True when next() has nowhere to go.
    virtual bool done() const = 0;
    /// Applies step `i`, counted from 0.
    virtual void set(int i) = 0;
    virtual int nsteps() const = 0;
    /// The step applied last.
    virtual int current_step() const = 0;
    /// The edit of the step applied last.
    virtual HMoleculeGeometryEdit current_edit() const = 0;

    const HMolecule& molecule() const { return molecule_; }
    void set_molecule(const HMolecule& molecule) { molecule_ = molecule; }

protected:
    HMolecule molecule_;
};

typedef THandle<MoleculeGeometrySelector> HMoleculeGeometrySelector;

}  // namespace molcryst

#endif

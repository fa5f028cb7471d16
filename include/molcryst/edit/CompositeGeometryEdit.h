// CompositeGeometryEdit: several edits of one molecule applied as one, in
// their order.
#ifndef MOLCRYST_EDIT_COMPOSITEGEOMETRYEDIT_H
#define MOLCRYST_EDIT_COMPOSITEGEOMETRYEDIT_H

#include "molcryst/edit/MoleculeGeometryEdit.h"

namespace molcryst {

/// A series of edits of the same molecule (the very object, by handle).
class CompositeGeometryEdit : public MoleculeGeometryEdit {
public:
    /// No members. A null molecule throws std::invalid_argument.
    explicit CompositeGeometryEdit(const HMolecule& molecule);
    /// The members, checked by validate_edits; a null molecule throws
    /// std::invalid_argument.
    CompositeGeometryEdit(const HMolecule& molecule, const vector_HMoleculeGeometryEdit& edits);

    /// Applies the members in order.
    void apply() const override;
    /// True if any member is absolute.
    bool is_absolute() const override;

    vector_HMoleculeGeometryEdit::const_iterator begin_edits() const { return edits_.begin(); }
    vector_HMoleculeGeometryEdit::const_iterator end_edits() const { return edits_.end(); }

    /// Each edit must be non-null and act on this composite's molecule;
    /// std::invalid_argument otherwise.
    void validate_edits(const vector_HMoleculeGeometryEdit& edits) const;

private:
    vector_HMoleculeGeometryEdit edits_;
};

typedef THandle<CompositeGeometryEdit> HCompositeGeometryEdit;

}  // namespace molcryst

#endif

// DisorderState: one state of a disordered molecule, one alternative (group)
// of each disordered region (assembly), applied by giving the atoms the
// alternative's sites and labels.
#ifndef MOLCRYST_EDIT_DISORDERSTATE_H
#define MOLCRYST_EDIT_DISORDERSTATE_H

#include "molcryst/edit/AtomSiteMapping.h"
#include "molcryst/edit/MoleculeGeometryEdit.h"

namespace molcryst {

/// One group per assembly, applied in order.
class DisorderState : public MoleculeGeometryEdit {
public:
    /// No groups. A null molecule throws std::invalid_argument.
    explicit DisorderState(const HMolecule& molecule);
    /// The groups, checked by validate_edit_data; a null molecule throws
    /// std::invalid_argument.
    DisorderState(const HMolecule& molecule, const vector_HAtomSiteMapping& edit_data);

    /// validate_edit_data, then each group's apply, in order.
    void apply() const override;
    bool is_absolute() const override { return false; }

    const vector_HAtomSiteMapping& edit_data() const { return edit_data_; }
    /// Takes the groups unchecked: apply checks them.
    void set_edit_data(const vector_HAtomSiteMapping& edit_data) { edit_data_ = edit_data; }

    /// The held groups must be non-null and non-empty, their atoms in the
    /// molecule (by handle), with non-null sites of non-zero occupancy that
    /// agree within a group to three standard uncertainties, and no atom in
    /// two groups; std::runtime_error otherwise.
    void validate_edit_data() const;

private:
    static void validate(const HMolecule& molecule, const vector_HAtomSiteMapping& edit_data);

    vector_HAtomSiteMapping edit_data_;
};

typedef THandle<DisorderState> HDisorderState;

}  // namespace molcryst

#endif

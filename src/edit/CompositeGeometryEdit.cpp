#include "molcryst/edit/CompositeGeometryEdit.h"

#include <stdexcept>

namespace molcryst {

CompositeGeometryEdit::CompositeGeometryEdit(const HMolecule& molecule) : MoleculeGeometryEdit(molecule) {
    if (molecule.unhand() == nullptr)
        throw std::invalid_argument("CompositeGeometryEdit::CompositeGeometryEdit: Invalid molecule.");
}

CompositeGeometryEdit::CompositeGeometryEdit(const HMolecule& molecule, const vector_HMoleculeGeometryEdit& edits)
    : MoleculeGeometryEdit(molecule) {
    if (molecule.unhand() == nullptr)
        throw std::invalid_argument(
            "CompositeGeometryEdit::CompositeGeometryEdit(molecule, edit_data): Invalid molecule.");
    validate_edits(edits);
    edits_ = edits;
}

void CompositeGeometryEdit::apply() const {
    for (const HMoleculeGeometryEdit& edit : edits_) edit->apply();
}

bool CompositeGeometryEdit::is_absolute() const {
    for (const HMoleculeGeometryEdit& edit : edits_)
        if (edit->is_absolute()) return true;
    return false;
}

void CompositeGeometryEdit::validate_edits(const vector_HMoleculeGeometryEdit& edits) const {
    for (const HMoleculeGeometryEdit& edit : edits) {
        if (edit.unhand() == nullptr)
            throw std::invalid_argument("CompositeGeometryEdit::validate_edits: invalid MoleculeGeometryEdit object.");
        if (!(edit->molecule() == molecule_))
            throw std::invalid_argument("CompositeGeometryEdit::validate_edits: invalid Molecule object.");
    }
}

}  // namespace molcryst

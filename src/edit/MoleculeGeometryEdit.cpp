#include "molcryst/edit/MoleculeGeometryEdit.h"

#include "molcryst/edit/MoleculeGeometrySelector.h"

namespace molcryst {

MoleculeGeometryEdit::~MoleculeGeometryEdit() = default;

MoleculeGeometrySelector::~MoleculeGeometrySelector() = default;

}  // namespace molcryst

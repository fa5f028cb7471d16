#include "molcryst/edit/MoleculeCrystalSymmetryTransformation.h"

#include <algorithm>

#include "molcryst/edit/AtomTransforms.h"

namespace molcryst {

void MoleculeCrystalSymmetryTransformation::apply() const {
    std::for_each(molecule_->begin_atoms(), molecule_->end_atoms(),
                  AtomCrystalSymmetryTransformation(transformation_, cell_));
}

}  // namespace molcryst

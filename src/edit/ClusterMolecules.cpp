#include "molcryst/edit/ClusterMolecules.h"

#include <algorithm>

#include "molcryst/edit/AtomTransforms.h"

namespace molcryst {

ClusterMolecules::ClusterMolecules(const HMolecule& central) : centroid_(central->centroid()) {}

bool ClusterMolecules::operator()(const HMolecule& molecule) const {
    const Point c = molecule->centroid();
    double best = (c - centroid_).length();
    const Matrix<double, 3, 3>* chosen = nullptr;
    for (const Matrix<double, 3, 3>& m : matrices_) {
        const double d = (Point(m * c) - centroid_).length();
        // The margin lets the present place (the identity) win ties.
        if (d < best - 1e-06) {
            best = d;
            chosen = &m;
        }
    }
    if (chosen == nullptr) return false;
    std::for_each(molecule->begin_atoms(), molecule->end_atoms(),
                  AtomMatrixTransform(THandle<Matrix<double, 3, 3> >(new Matrix<double, 3, 3>(*chosen))));
    return true;
}

}  // namespace molcryst

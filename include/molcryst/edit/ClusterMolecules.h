// ClusterMolecules: gathers molecules around a central one. Given matrices
// (symmetry rotations in orthogonal space, say), it moves each molecule it is
// called on by the matrix that brings its centroid nearest to the central
// molecule's centroid, or leaves it where it is when none does better.
#ifndef MOLCRYST_EDIT_CLUSTERMOLECULES_H
#define MOLCRYST_EDIT_CLUSTERMOLECULES_H

#include <vector>

#include "molcryst/geometry/Matrix.h"
#include "molcryst/geometry/Point.h"
#include "molcryst/molecule/Molecule.h"

namespace molcryst {

/// Moves molecules towards a central one by the best of a list of matrices.
class ClusterMolecules {
public:
    /// Keeps the centroid of `central` as it is now.
    explicit ClusterMolecules(const HMolecule& central);

    void add_matrix(const Matrix<double, 3, 3>& matrix) { matrices_.push_back(matrix); }
    const std::vector<Matrix<double, 3, 3> >& matrices() const { return matrices_; }
    const Point& centroid() const { return centroid_; }

    /// Moves `molecule` by the first matrix that brings its centroid nearer
    /// to the central one by more than 1e-06 Angstrom than where it stands
    /// and than every earlier matrix; so ties keep the molecule in place.
    /// Returns whether it moved.
    bool operator()(const HMolecule& molecule) const;

private:
    Point centroid_;
    std::vector<Matrix<double, 3, 3> > matrices_;
};

}  // namespace molcryst

#endif

// Function objects that move one atom, for std::for_each over a molecule's
// atoms. Each moves the atom's site in place; an atom without a site is left
// alone. The three orthogonal moves set the fractional point through the unit
// cube (a default Cell), so it equals the orthogonal one afterwards.
#ifndef MOLCRYST_EDIT_ATOMTRANSFORMS_H
#define MOLCRYST_EDIT_ATOMTRANSFORMS_H

#include "molcryst/geometry/Cell.h"
#include "molcryst/geometry/CrystalSymmetryTransformation.h"
#include "molcryst/geometry/Matrix.h"
#include "molcryst/geometry/Vector.h"
#include "molcryst/molecule/Atom.h"

namespace molcryst {

/// orth -> M orth, with M held by handle (shared between copies of the functor).
class AtomMatrixTransform {
public:
    explicit AtomMatrixTransform(const THandle<Matrix<double, 3, 3> >& matrix) : matrix_(matrix) {}
    void operator()(const HAtom& atom) const;
    const THandle<Matrix<double, 3, 3> >& matrix() const { return matrix_; }

private:
    THandle<Matrix<double, 3, 3> > matrix_;
};

/// orth -> orth + v.
class AtomTranslation {
public:
    explicit AtomTranslation(const Vector<double, 3>& translation) : translation_(translation) {}
    void operator()(const HAtom& atom) const;

private:
    Vector<double, 3> translation_;  // Angstrom
};

/// orth -> R orth, R a rotation about the origin.
class AtomProperRotation {
public:
    explicit AtomProperRotation(const Matrix<double, 3, 3>& rotation) : rotation_(rotation) {}
    void operator()(const HAtom& atom) const;

private:
    Matrix<double, 3, 3> rotation_;
};

/// frac -> R frac + t in `cell`, t the whole translation of the transformation.
/// Holds references: the transformation and the cell must outlive the functor.
class AtomCrystalSymmetryTransformation {
public:
    AtomCrystalSymmetryTransformation(const CrystalSymmetryTransformation& transformation, const Cell& cell)
        : transformation_(transformation), cell_(cell) {}
    void operator()(const HAtom& atom) const;

private:
    const CrystalSymmetryTransformation& transformation_;
    const Cell& cell_;
};

}  // namespace molcryst

#endif

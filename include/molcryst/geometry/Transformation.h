// Transformation: an affine map of three-dimensional space, held as a 4 by 4
// matrix whose last row is (0, 0, 0, 1): a 3 by 3 linear part and a
// translation. Points are moved by both, vectors by the linear part alone.
#ifndef MOLCRYST_GEOMETRY_TRANSFORMATION_H
#define MOLCRYST_GEOMETRY_TRANSFORMATION_H

#include <iosfwd>

#include "molcryst/geometry/Angle.h"
#include "molcryst/geometry/Matrix.h"
#include "molcryst/geometry/Point.h"

namespace molcryst {

/// An affine transformation x -> M x + t.
class Transformation {
public:
    /// The identity.
    Transformation();
    /// The first three rows of the matrix, row by row: each row three
    /// coefficients of the linear part and then the translation component.
    Transformation(double m11, double m12, double m13, double t1, double m21, double m22, double m23, double t2,
                   double m31, double m32, double m33, double t3);
    Transformation(const Matrix<double, 3, 3>& linear, const Vector<double, 3>& translation);

    /// Makes the linear part the rotation by `angle` about `axis` through the
    /// origin, counter-clockwise when the axis points at the viewer; the
    /// translation stays. A zero axis throws std::invalid_argument.
    void set_rot(const Vector<double, 3>& axis, const Angle& angle);
    void set_translation(const Vector<double, 3>& translation);

    const Matrix<double, 4, 4>& matrix() const { return m_; }
    Matrix<double, 3, 3> linear() const;
    Vector<double, 3> translation() const;

    /// The inverse map; a singular linear part throws std::domain_error.
    Transformation inverse() const;

    bool operator==(const Transformation& t) const { return m_ == t.m_; }
    bool operator!=(const Transformation& t) const { return !(*this == t); }

    /// The 4 by 4 matrix, rows separated by semicolons.
    void print(std::ostream& os) const;

private:
    Matrix<double, 4, 4> m_;
};

/// The point moved: M p + t.
Point operator*(const Transformation& t, const Point& p);
/// The vector turned: M v, no translation.
Vector<double, 3> operator*(const Transformation& t, const Vector<double, 3>& v);
/// The composition: b first, then a.
Transformation operator*(const Transformation& a, const Transformation& b);
std::ostream& operator<<(std::ostream& os, const Transformation& t);

}  // namespace molcryst

#endif

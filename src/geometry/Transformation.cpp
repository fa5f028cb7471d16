#include "molcryst/geometry/Transformation.h"

#include <cmath>
#include <ostream>
#include <stdexcept>

namespace molcryst {

Transformation::Transformation() : m_(Matrix<double, 4, 4>::identity()) {}

Transformation::Transformation(double m11, double m12, double m13, double t1, double m21, double m22, double m23,
                               double t2, double m31, double m32, double m33, double t3)
    : m_(Matrix<double, 4, 4>::identity()) {
    const double values[12] = {m11, m12, m13, t1, m21, m22, m23, t2, m31, m32, m33, t3};
    for (int i = 0; i < 12; ++i) m_[i] = values[i];
}

Transformation::Transformation(const Matrix<double, 3, 3>& linear, const Vector<double, 3>& translation)
    : m_(Matrix<double, 4, 4>::identity()) {
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) m_(i, j) = linear(i, j);
        m_(i, 3) = translation[i];
    }
}

void Transformation::set_rot(const Vector<double, 3>& axis, const Angle& angle) {
    const double length = axis.length();
    if (!(length > 0.0) || !std::isfinite(length))
        throw std::invalid_argument("Transformation::set_rot(const Vector<double,3>&, const Angle&) zero axis");
    const Vector<double, 3> u = axis / length;
    const double c = cos(angle);
    const double s = sin(angle);
    const double k = 1.0 - c;
    // Rodrigues' rotation formula.
    m_(0, 0) = c + u[0] * u[0] * k;
    m_(0, 1) = u[0] * u[1] * k - u[2] * s;
    m_(0, 2) = u[0] * u[2] * k + u[1] * s;
    m_(1, 0) = u[1] * u[0] * k + u[2] * s;
    m_(1, 1) = c + u[1] * u[1] * k;
    m_(1, 2) = u[1] * u[2] * k - u[0] * s;
    m_(2, 0) = u[2] * u[0] * k - u[1] * s;
    m_(2, 1) = u[2] * u[1] * k + u[0] * s;
    m_(2, 2) = c + u[2] * u[2] * k;
}

void Transformation::set_translation(const Vector<double, 3>& translation) {
    for (int i = 0; i < 3; ++i) m_(i, 3) = translation[i];
}

Matrix<double, 3, 3> Transformation::linear() const {
    Matrix<double, 3, 3> l;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) l(i, j) = m_(i, j);
    return l;
}

Vector<double, 3> Transformation::translation() const { return Vector<double, 3>(m_(0, 3), m_(1, 3), m_(2, 3)); }

Transformation Transformation::inverse() const {
    const Matrix<double, 3, 3> l = linear().inverse();
    return Transformation(l, -(l * translation()));
}

void Transformation::print(std::ostream& os) const { m_.print(os); }

Point operator*(const Transformation& t, const Point& p) {
    const Matrix<double, 4, 4>& m = t.matrix();
    Point r;
    for (int i = 0; i < 3; ++i) r[i] = m(i, 0) * p[0] + m(i, 1) * p[1] + m(i, 2) * p[2] + m(i, 3);
    return r;
}

Vector<double, 3> operator*(const Transformation& t, const Vector<double, 3>& v) {
    const Matrix<double, 4, 4>& m = t.matrix();
    Vector<double, 3> r;
    for (int i = 0; i < 3; ++i) r[i] = m(i, 0) * v[0] + m(i, 1) * v[1] + m(i, 2) * v[2];
    return r;
}

Transformation operator*(const Transformation& a, const Transformation& b) {
    return Transformation(a.linear() * b.linear(), a.linear() * b.translation() + a.translation());
}

std::ostream& operator<<(std::ostream& os, const Transformation& t) {
    t.print(os);
    return os;
}

}  // namespace molcryst

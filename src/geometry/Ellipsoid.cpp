#include "molcryst/geometry/Ellipsoid.h"

#include <cmath>
#include <ostream>
#include <stdexcept>

#include "molcryst/geometry/Matrix.h"

namespace molcryst {

Ellipsoid::Ellipsoid(const Point& centre, const Vector<double, 3>& axis1, const Vector<double, 3>& axis2,
                     const Vector<double, 3>& axis3)
    : centre_(centre) {
    axes_[0] = axis1;
    axes_[1] = axis2;
    axes_[2] = axis3;
}

double Ellipsoid::volume() const {
    Matrix<double, 3, 3> m;
    for (int i = 0; i < 3; ++i) m.set_column(i + 1, axes_[i]);
    return 4.0 / 3.0 * 3.14159265358979323846 * std::fabs(m.determinant());
}

bool Ellipsoid::contains(const Point& p) const {
    Matrix<double, 3, 3> m;
    for (int i = 0; i < 3; ++i) m.set_column(i + 1, axes_[i]);
    const Vector<double, 3> d = p - centre_;
    try {
        // The coefficients s of d in the axes: inside when |s| <= 1.
        const Vector<double, 3> s = m.inverse() * d;
        return s.length2() <= 1.0;
    } catch (const std::domain_error&) {
        return d.length2() == 0.0;
    }
}

bool Ellipsoid::operator==(const Ellipsoid& e) const { return centre_ == e.centre_ && axes_ == e.axes_; }

void Ellipsoid::print(std::ostream& os) const {
    os << "centre " << centre_ << " axes " << axes_[0] << ' ' << axes_[1] << ' ' << axes_[2];
}

std::ostream& operator<<(std::ostream& os, const Ellipsoid& e) {
    e.print(os);
    return os;
}

}  // namespace molcryst

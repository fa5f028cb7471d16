#include "molcryst/geometry/Quaternion.h"

#include <cmath>
#include <ostream>
#include <stdexcept>

namespace molcryst {

Quaternion::Quaternion(const Vector<double, 3>& axis, const Angle& angle) {
    const double length = axis.length();
    if (!(length > 0.0) || !std::isfinite(length))
        throw std::invalid_argument("Quaternion::Quaternion(const Vector<double,3>&, const Angle&) zero axis");
    const double half = 0.5 * angle.radians();
    const double s = std::sin(half) / length;
    w_ = std::cos(half);
    x_ = axis[0] * s;
    y_ = axis[1] * s;
    z_ = axis[2] * s;
}

double Quaternion::norm() const { return std::sqrt(w_ * w_ + x_ * x_ + y_ * y_ + z_ * z_); }

Quaternion& Quaternion::normalise() {
    const double n = norm();
    if (!(n > 0.0) || !std::isfinite(n)) throw std::domain_error("Quaternion::normalise() zero quaternion");
    w_ /= n;
    x_ /= n;
    y_ /= n;
    z_ /= n;
    return *this;
}

Matrix<double, 3, 3> Quaternion::rotation_matrix() const {
    const double n2 = w_ * w_ + x_ * x_ + y_ * y_ + z_ * z_;
    const double s = n2 > 0.0 ? 2.0 / n2 : 0.0;
    const double xx = x_ * x_ * s, yy = y_ * y_ * s, zz = z_ * z_ * s;
    const double xy = x_ * y_ * s, xz = x_ * z_ * s, yz = y_ * z_ * s;
    const double wx = w_ * x_ * s, wy = w_ * y_ * s, wz = w_ * z_ * s;
    return Matrix<double, 3, 3>(1.0 - yy - zz, xy - wz, xz + wy,
                                xy + wz, 1.0 - xx - zz, yz - wx,
                                xz - wy, yz + wx, 1.0 - xx - yy);
}

void Quaternion::rotate(Vector<double, 3>& v) const { v = rotation_matrix() * v; }

void Quaternion::print(std::ostream& os) const { os << '(' << w_ << ", " << x_ << ", " << y_ << ", " << z_ << ')'; }

Quaternion operator*(const Quaternion& a, const Quaternion& b) {
    return Quaternion(a.w() * b.w() - a.x() * b.x() - a.y() * b.y() - a.z() * b.z(),
                      a.w() * b.x() + a.x() * b.w() + a.y() * b.z() - a.z() * b.y(),
                      a.w() * b.y() - a.x() * b.z() + a.y() * b.w() + a.z() * b.x(),
                      a.w() * b.z() + a.x() * b.y() - a.y() * b.x() + a.z() * b.w());
}

std::ostream& operator<<(std::ostream& os, const Quaternion& q) {
    q.print(os);
    return os;
}

}  // namespace molcryst

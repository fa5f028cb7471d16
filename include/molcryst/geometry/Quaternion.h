// Quaternion: a rotation in three dimensions as a unit quaternion
// w + xi + yj + zk, for turning directions without building matrices.
#ifndef MOLCRYST_GEOMETRY_QUATERNION_H
#define MOLCRYST_GEOMETRY_QUATERNION_H

#include <iosfwd>

#include "molcryst/geometry/Angle.h"
#include "molcryst/geometry/Matrix.h"

namespace molcryst {

/// A rotation as a quaternion; products compose rotations, the right-hand one first.
class Quaternion {
public:
    /// No rotation: (1, 0, 0, 0).
    Quaternion() = default;
    Quaternion(double w, double x, double y, double z) : w_(w), x_(x), y_(y), z_(z) {}
    /// The rotation by `angle` about `axis`, counter-clockwise when the axis
    /// points at the viewer (the right-hand rule). A zero axis throws std::invalid_argument.
    Quaternion(const Vector<double, 3>& axis, const Angle& angle);

    double w() const { return w_; }
    double x() const { return x_; }
    double y() const { return y_; }
    double z() const { return z_; }

    double norm() const;
    Quaternion conjugate() const { return Quaternion(w_, -x_, -y_, -z_); }
    /// Scales to unit norm; a zero quaternion throws std::domain_error.
    Quaternion& normalise();

    /// Rotates `v` in place, as q v q^-1 (the quaternion need not be of unit norm).
    void rotate(Vector<double, 3>& v) const;
    /// The same rotation as a matrix.
    Matrix<double, 3, 3> rotation_matrix() const;

    bool operator==(const Quaternion& q) const { return w_ == q.w_ && x_ == q.x_ && y_ == q.y_ && z_ == q.z_; }
    bool operator!=(const Quaternion& q) const { return !(*this == q); }

    /// "(w, x, y, z)".
    void print(std::ostream& os) const;

private:
    double w_ = 1.0;
    double x_ = 0.0;
    double y_ = 0.0;
    double z_ = 0.0;
};

/// The Hamilton product: the rotation b, then a.
Quaternion operator*(const Quaternion& a, const Quaternion& b);
std::ostream& operator<<(std::ostream& os, const Quaternion& q);

}  // namespace molcryst

#endif

#include "molcryst/geometry/Plane.h"

#include <cmath>
#include <ostream>
#include <stdexcept>

#include "molcryst/geometry/GeometryFunctions.h"
#include "molcryst/geometry/Jacobi.h"

namespace molcryst {

Plane::Plane() : normal_(0.0, 0.0, 1.0) {}

Plane::Plane(const Vector<double, 3>& normal, double distance) : normal_(normal), distance_(distance) {
    const double length = normal.length();
    if (!(length > 0.0) || !std::isfinite(length))
        throw std::invalid_argument("Plane::Plane(const Vector<double,3>&, double) the normal has zero length");
    normal_ /= length;
}

Plane::Plane(const std::vector<Point>& points) : normal_(0.0, 0.0, 1.0) {
    if (points.empty()) return;
    const Point c = centroid(points);
    Matrix<double, 3, 3> scatter;
    for (const Point& p : points) {
        const Vector<double, 3> d = p - c;
        for (int i = 0; i < 3; ++i)
            for (int j = 0; j < 3; ++j) scatter(i, j) += d[i] * d[j];
    }
    Vector<double, 3> values;
    Matrix<double, 3, 3> vectors;
    Jacobi<3>(scatter, values, vectors);
    // The least eigenvalue; on a tie the later axis, so that a single point
    // (all eigenvalues 0, eigenvectors the axes) gives a normal along z.
    int least = 0;
    for (int i = 1; i < 3; ++i)
        if (values[i] <= values[least]) least = i;
    normal_ = vectors.column(least + 1);
    normal_.normalise(0.0);
    distance_ = normal_.dot(c);
    bool flip = distance_ < 0.0;
    if (distance_ == 0.0) {
        int largest = 0;
        for (int i = 1; i < 3; ++i)
            if (std::fabs(normal_[i]) > std::fabs(normal_[largest])) largest = i;
        flip = normal_[largest] < 0.0;
    }
    if (flip) {
        normal_ = -normal_;
        distance_ = -distance_;
    }
}

void Plane::print(std::ostream& os) const { os << "normal " << normal_ << " distance " << distance_; }

void Plane::write(Archive& ar) const { ar << normal_ << distance_; }

void Plane::read(Archive& ar) {
    Archive::Field field(ar, "Plane::read");
    Vector<double, 3> normal;
    double distance = 0.0;
    ar >> normal >> distance;
    const double length = normal.length();
    if (!std::isfinite(length) || !std::isfinite(distance)) ar.read_error("a value is not a finite number");
    if (std::fabs(length - 1.0) > 1e-6) ar.read_error("the normal is not a unit vector");
    normal_ = normal;
    distance_ = distance;
}

std::ostream& operator<<(std::ostream& os, const Plane& p) {
    p.print(os);
    return os;
}

Archive& operator<<(Archive& ar, const Plane& p) {
    p.write(ar);
    return ar;
}

Archive& operator>>(Archive& ar, Plane& p) {
    p.read(ar);
    return ar;
}

}  // namespace molcryst

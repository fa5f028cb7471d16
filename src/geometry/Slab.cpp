#include "molcryst/geometry/Slab.h"

#include <cmath>
#include <limits>
#include <stdexcept>

namespace molcryst {

Slab::Slab(const Plane& plane, double thickness) : plane_(plane), thickness_(thickness) {
    if (!(thickness >= 0.0)) throw std::invalid_argument("Slab::Slab(const Plane&, double) negative thickness");
}

bool Slab::contains(const Point& p) const { return std::fabs(plane_.signed_distance(p)) <= 0.5 * thickness_; }

Box Slab::bounding_box() const {
    const double infinity = std::numeric_limits<double>::infinity();
    Point lower(-infinity, -infinity, -infinity);
    Point upper(infinity, infinity, infinity);
    const Vector<double, 3>& n = plane_.normal();
    for (int axis = 0; axis < 3; ++axis) {
        if (n[(axis + 1) % 3] != 0.0 || n[(axis + 2) % 3] != 0.0) continue;
        // The normal is +-1 along this axis: n[axis] * x lies within d +- t/2.
        const double a = (plane_.distance() - 0.5 * thickness_) / n[axis];
        const double b = (plane_.distance() + 0.5 * thickness_) / n[axis];
        lower[axis] = std::fmin(a, b);
        upper[axis] = std::fmax(a, b);
    }
    return Box(lower, upper);
}

}  // namespace molcryst

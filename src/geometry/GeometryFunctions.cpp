#include "molcryst/geometry/GeometryFunctions.h"

#include <cmath>
#include <deque>
#include <stdexcept>

namespace molcryst {

namespace {
const double pi = 3.14159265358979323846;

// A unit vector perpendicular to the unit vector u.
Vector<double, 3> perpendicular(const Vector<double, 3>& u) {
    Vector<double, 3> n = cross(u, Vector<double, 3>(1.0, 0.0, 0.0));
    if (n.length() < 0.5) n = cross(u, Vector<double, 3>(0.0, 1.0, 0.0));
    n.normalise(0.0);
    return n;
}
}  // namespace

Angle angle(const Vector<double, 3>& u, const Vector<double, 3>& v, double tolerance) {
    const double lu = u.length();
    const double lv = v.length();
    if (!(lu >= tolerance) || !(lv >= tolerance) || lu == 0.0 || lv == 0.0) return Angle();
    // atan2 of sine and cosine stays accurate near 0 and 180 degrees, where acos does not.
    return Angle::atan2(cross(u, v).length(), u.dot(v));
}

Angle angle(const Point& a, const Point& b, const Point& c, double tolerance) {
    return angle(a - b, c - b, tolerance);
}

Angle torsion_angle(const Vector<double, 3>& b1, const Vector<double, 3>& b2, const Vector<double, 3>& b3,
                    double tolerance) {
    const double l1 = b1.length();
    const double l2 = b2.length();
    const double l3 = b3.length();
    if (!(l1 >= tolerance && l2 >= tolerance && l3 >= tolerance) || l1 == 0.0 || l2 == 0.0 || l3 == 0.0)
        return Angle();
    const Vector<double, 3> n1 = cross(b1, b2);
    const Vector<double, 3> n2 = cross(b2, b3);
    if (!(n1.length() >= tolerance * l1 * l2) || !(n2.length() >= tolerance * l2 * l3) || n1.length() == 0.0 ||
        n2.length() == 0.0)
        return Angle();
    const Angle t = Angle::atan2(l2 * b1.dot(n2), n1.dot(n2));
    // A trans chain whose sine comes out as -0 would read -180 degrees.
    return t.radians() <= -pi ? Angle::from_radians(pi) : t;
}

Angle torsion_angle(const Point& a, const Point& b, const Point& c, const Point& d, double tolerance) {
    return torsion_angle(b - a, c - b, d - c, tolerance);
}

bool valid_torsion(const Vector<double, 3>& b1, const Vector<double, 3>& b2, const Vector<double, 3>& b3,
                   const Angle& limit, double tolerance) {
    const double l1 = b1.length();
    const double l2 = b2.length();
    const double l3 = b3.length();
    if (!(l1 >= tolerance && l2 >= tolerance && l3 >= tolerance) || l1 == 0.0 || l2 == 0.0 || l3 == 0.0)
        return false;
    const double straight = pi;
    for (const Angle& joint : {angle(-b1, b2, tolerance), angle(-b2, b3, tolerance)}) {
        const double a = joint.radians();
        if (!(straight - a > limit.radians()) || !(a > limit.radians())) return false;
    }
    return true;
}

bool valid_torsion(const Point& a, const Point& b, const Point& c, const Point& d, const Angle& limit,
                   double tolerance) {
    return valid_torsion(b - a, c - b, d - c, limit, tolerance);
}

Point centroid(const std::vector<Point>& points) { return centroid(points.begin(), points.end()); }

Matrix<double, 3, 3> align_two_vectors(const Vector<double, 3>& a1, const Vector<double, 3>& b1,
                                       const Vector<double, 3>& a2, const Vector<double, 3>& b2) {
    // Orthonormal frames (e1, e2, e3) of each pair: e1 along a, e3 normal to
    // the pair, e2 completing the right-handed set on the side of b. The
    // rotation takes the first frame onto the second.
    auto frame = [](const Vector<double, 3>& a, const Vector<double, 3>& b) {
        Matrix<double, 3, 3> f;
        try {
            const Vector<double, 3> e1 = a.unit(1e-300);
            const Vector<double, 3> e3 = cross(e1, b.unit(1e-300)).unit();
            f.set_column(1, e1);
            f.set_column(2, cross(e3, e1));
            f.set_column(3, e3);
        } catch (const std::domain_error&) {
            throw std::invalid_argument(
                "align_two_vectors(const Vector<double,3>&, const Vector<double,3>&, const Vector<double,3>&, "
                "const Vector<double,3>&) a pair of vectors is parallel");
        }
        return f;
    };
    const Matrix<double, 3, 3> from = frame(a1, b1);
    const Matrix<double, 3, 3> to = frame(a2, b2);
    return to * from.transpose();
}

Point internal_to_orthogonal(const Point& a, double distance, const Point& b, const Angle& angle, const Point& c,
                             const Angle& torsion, double tolerance) {
    Vector<double, 3> bc = a - b;
    if (!(bc.length() >= tolerance) || bc.length() == 0.0) {
        bc = Vector<double, 3>(1.0, 0.0, 0.0);
    } else {
        bc.normalise(0.0);
    }
    Vector<double, 3> n = cross(Vector<double, 3>(b - c), bc);
    if (!(n.length() >= tolerance) || n.length() == 0.0) {
        n = perpendicular(bc);
    } else {
        n.normalise(0.0);
    }
    const Vector<double, 3> m = cross(n, bc);
    const double along = -distance * cos(angle);
    const double across = distance * sin(angle);
    return Point(a + bc * along + m * (across * cos(torsion)) + n * (across * sin(torsion)));
}

int shortest_path(const std::vector<THandle<std::vector<int> > >& adjacency, int from, int to) {
    const int n = static_cast<int>(adjacency.size());
    const char* message = "shortest_path(const std::vector<THandle<std::vector<int> > >&, int, int) node out of range";
    if (from < 0 || from >= n || to < 0 || to >= n) throw std::out_of_range(message);
    if (from == to) return 0;
    std::vector<int> depth(static_cast<std::size_t>(n), -1);
    std::deque<int> queue;
    depth[static_cast<std::size_t>(from)] = 0;
    queue.push_back(from);
    while (!queue.empty()) {
        const int node = queue.front();
        queue.pop_front();
        const std::vector<int>* neighbours = adjacency[static_cast<std::size_t>(node)].unhand();
        if (neighbours == nullptr) continue;
        for (int next : *neighbours) {
            if (next < 0 || next >= n) throw std::out_of_range(message);
            if (depth[static_cast<std::size_t>(next)] != -1) continue;
            depth[static_cast<std::size_t>(next)] = depth[static_cast<std::size_t>(node)] + 1;
            if (next == to) return depth[static_cast<std::size_t>(next)];
            queue.push_back(next);
        }
    }
    return -1;
}

}  // namespace molcryst

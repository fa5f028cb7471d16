// Free functions of molecular geometry: distances, valence and torsion
// angles, centroids, placing an atom from internal coordinates, aligning
// directions, and the breadth-first path length on an adjacency list.
//
// Angles and torsions of degenerate input (coincident points, a linear chain)
// are undefined: they come back as 0 rather than throwing, and valid_torsion
// tells beforehand whether a torsion means anything.
#ifndef MOLCRYST_GEOMETRY_GEOMETRYFUNCTIONS_H
#define MOLCRYST_GEOMETRY_GEOMETRYFUNCTIONS_H

#include <vector>

#include "molcryst/geometry/Angle.h"
#include "molcryst/geometry/Matrix.h"
#include "molcryst/geometry/Point.h"
#include "molcryst/support/THandle.h"

namespace molcryst {

/// The angle a-b-c at the apex b, in [0, 180] degrees. If either arm is
/// shorter than `tolerance`, 0.
Angle angle(const Point& a, const Point& b, const Point& c, double tolerance = 1e-07);

/// The angle between two directions, in [0, 180] degrees; 0 if either is
/// shorter than `tolerance`.
Angle angle(const Vector<double, 3>& u, const Vector<double, 3>& v, double tolerance = 1e-07);

/// The torsion angle a-b-c-d in (-180, 180] degrees, by the crystallographic
/// convention: looking along b to c, the angle from a to d, positive when the
/// near bond must turn clockwise to eclipse the far one. 0 if the torsion is
/// undefined: a bond shorter than `tolerance`, or a joint whose sine is below it.
Angle torsion_angle(const Point& a, const Point& b, const Point& c, const Point& d, double tolerance = 1e-07);

/// The torsion of the chain of bond vectors b1 (a to b), b2 (b to c), b3 (c to d).
Angle torsion_angle(const Vector<double, 3>& b1, const Vector<double, 3>& b2, const Vector<double, 3>& b3,
                    double tolerance = 1e-07);

/// Whether the torsion a-b-c-d is defined: every bond at least `tolerance`
/// long, and neither valence angle a-b-c nor b-c-d within `limit` of a
/// straight line, at 180 degrees or folded back at 0.
bool valid_torsion(const Point& a, const Point& b, const Point& c, const Point& d, const Angle& limit,
                   double tolerance = 1e-07);

/// valid_torsion on the chain of bond vectors b1, b2, b3.
bool valid_torsion(const Vector<double, 3>& b1, const Vector<double, 3>& b2, const Vector<double, 3>& b3,
                   const Angle& limit, double tolerance = 1e-07);

/// The mean of the points; the origin when there are none.
template <class Iterator>
Point centroid(Iterator begin, Iterator end) {
    Vector<double, 3> sum;
    int n = 0;
    for (; begin != end; ++begin, ++n) {
        const Vector<double, 3>& p = *begin;
        sum += p;
    }
    if (n == 0) return Point();
    return Point(sum / static_cast<double>(n));
}

/// The mean of the points; the origin when there are none.
Point centroid(const std::vector<Point>& points);

/// The rotation that turns `a1` onto the direction of `a2` and brings `b1`
/// into the plane of `a2` and `b2`, on the side of `b2`. Lengths do not
/// matter. A pair whose vectors are parallel (or zero) defines no rotation:
/// std::invalid_argument.
Matrix<double, 3, 3> align_two_vectors(const Vector<double, 3>& a1, const Vector<double, 3>& b1,
                                       const Vector<double, 3>& a2, const Vector<double, 3>& b2);

/// The position d with |d - a| = `distance`, angle d-a-b = `angle` and
/// torsion d-a-b-c = `torsion`: an atom placed from internal coordinates on
/// its neighbour a and the reference points b and c. When c lies on the line
/// a-b (within `tolerance`), any direction perpendicular to that line stands
/// in for the missing reference.
Point internal_to_orthogonal(const Point& a, double distance, const Point& b, const Angle& angle, const Point& c,
                             const Angle& torsion, double tolerance = 1e-07);

/// The number of edges on a shortest path from node `from` to node `to` in
/// an adjacency list (entry i lists the neighbours of node i; a null entry
/// has none), by breadth-first search: 0 from a node to itself, -1 when no
/// path exists. A node index outside the list throws std::out_of_range.
int shortest_path(const std::vector<THandle<std::vector<int> > >& adjacency, int from, int to);

}  // namespace molcryst

#endif

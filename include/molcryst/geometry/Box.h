// Box: an axis-aligned box, the packing region of a crystal view and the
// bounding box of molecules. A Box is a Solid.
//
// Bounds are inclusive. The empty box, which merging grows from, has lower
// bounds +infinity and upper bounds -infinity.
//
// Archive layout (48 bytes): the lower corner, then the upper corner, each as
// three doubles.
#ifndef MOLCRYST_GEOMETRY_BOX_H
#define MOLCRYST_GEOMETRY_BOX_H

#include <iosfwd>

#include "molcryst/geometry/Matrix.h"
#include "molcryst/geometry/Solid.h"
#include "molcryst/support/Archive.h"

namespace molcryst {

/// An axis-aligned box between two corners; polymorphic.
class Box : public Solid {
public:
    /// The empty box: it contains nothing, and merging into it gives the merged item.
    Box();
    /// The box with these two opposite corners, in either order.
    Box(const Point& a, const Point& b);

    const Point& minimum() const { return minimum_; }
    const Point& maximum() const { return maximum_; }

    /// True when some lower bound is above its upper bound.
    bool empty() const;
    /// True when no bound is infinite (an empty box is not finite).
    bool is_finite() const;
    /// The middle point; the corners' mean.
    Point centre() const;
    /// The edge lengths.
    Vector<double, 3> size() const;

    /// Moves every face outwards by `d` (inwards for negative `d`).
    Box& expand(double d) { return expand(d, d, d); }
    /// Moves the two faces across x outwards by `dx`, and so on.
    Box& expand(double dx, double dy, double dz);
    /// Grows the box to hold `b` too.
    Box& merge(const Box& b);
    /// Grows the box to hold `p` too.
    Box& merge(const Point& p);

    /// The common part of the two boxes; empty when they do not meet.
    Box intersection(const Box& b) const;
    /// Whether the two boxes share at least one point, boundaries included.
    bool overlaps(const Box& b) const;

    bool contains(const Point& p) const override;
    Box bounding_box() const override;

    virtual void write(Archive& ar) const;
    /// Reads the layout above; a bound that is not a number throws std::runtime_error.
    virtual void read(Archive& ar);
    /// "(x0, y0, z0) (x1, y1, z1)", lower corner first; "empty" for the empty box.
    virtual void print(std::ostream& os) const;

private:
    Point minimum_;
    Point maximum_;
};

/// The bounding box of the image of `box` under x -> m x + t, by interval
/// arithmetic: each lower bound is the least value that a sum of the form
/// m(i,0) x + m(i,1) y + m(i,2) z + t[i] takes over the box, evaluated in
/// that order, so that the image of every point of the box, computed the
/// same way, lies inside even after rounding. Zero coefficients ignore
/// infinite bounds; the empty box stays empty.
Box transform_box(const Matrix<double, 3, 3>& m, const Vector<double, 3>& t, const Box& box);

/// All six bounds equal by ==.
bool operator==(const Box& a, const Box& b);
bool operator!=(const Box& a, const Box& b);
std::ostream& operator<<(std::ostream& os, const Box& b);
Archive& operator<<(Archive& ar, const Box& b);
Archive& operator>>(Archive& ar, Box& b);

}  // namespace molcryst

#endif

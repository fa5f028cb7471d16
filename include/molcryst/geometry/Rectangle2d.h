// Rectangle2d: an axis-aligned rectangle in the plane of a chemical diagram,
// such as the frame drawn around a repeated group.
#ifndef MOLCRYST_GEOMETRY_RECTANGLE2D_H
#define MOLCRYST_GEOMETRY_RECTANGLE2D_H

#include <iosfwd>

#include "molcryst/geometry/Point2d.h"

namespace molcryst {

/// The rectangle between a lower-left and an upper-right corner.
class Rectangle2d {
public:
    /// The zero rectangle: both corners at the origin.
    Rectangle2d() = default;
    /// The rectangle with corners (x1, y1) and (x2, y2), in either order.
    Rectangle2d(double x1, double y1, double x2, double y2);

    double x_min() const { return x_min_; }
    double y_min() const { return y_min_; }
    double x_max() const { return x_max_; }
    double y_max() const { return y_max_; }
    double width() const { return x_max_ - x_min_; }
    double height() const { return y_max_ - y_min_; }
    Point2d bottom_left() const { return Point2d(x_min_, y_min_); }
    Point2d top_right() const { return Point2d(x_max_, y_max_); }
    /// The mean of the two corners.
    Point2d centre() const { return Point2d(0.5 * (x_min_ + x_max_), 0.5 * (y_min_ + y_max_)); }

    /// Whether `p` lies inside, edges included.
    bool contains(const Point2d& p) const;
    /// Grows the rectangle to hold `p` too.
    Rectangle2d& merge(const Point2d& p);

    bool operator==(const Rectangle2d& r) const;
    bool operator!=(const Rectangle2d& r) const { return !(*this == r); }

    /// "(x_min, y_min) (x_max, y_max)".
    void print(std::ostream& os) const;

private:
    double x_min_ = 0.0;
    double y_min_ = 0.0;
    double x_max_ = 0.0;
    double y_max_ = 0.0;
};

std::ostream& operator<<(std::ostream& os, const Rectangle2d& r);

}  // namespace molcryst

#endif

#include "molcryst/geometry/Rectangle2d.h"

#include <algorithm>
#include <ostream>

namespace molcryst {

Rectangle2d::Rectangle2d(double x1, double y1, double x2, double y2)
    : x_min_(std::min(x1, x2)), y_min_(std::min(y1, y2)), x_max_(std::max(x1, x2)), y_max_(std::max(y1, y2)) {}

bool Rectangle2d::contains(const Point2d& p) const {
    return x_min_ <= p[0] && p[0] <= x_max_ && y_min_ <= p[1] && p[1] <= y_max_;
}

Rectangle2d& Rectangle2d::merge(const Point2d& p) {
    x_min_ = std::min(x_min_, p[0]);
    y_min_ = std::min(y_min_, p[1]);
    x_max_ = std::max(x_max_, p[0]);
    y_max_ = std::max(y_max_, p[1]);
    return *this;
}

bool Rectangle2d::operator==(const Rectangle2d& r) const {
    return x_min_ == r.x_min_ && y_min_ == r.y_min_ && x_max_ == r.x_max_ && y_max_ == r.y_max_;
}

void Rectangle2d::print(std::ostream& os) const {
    os << '(' << x_min_ << ", " << y_min_ << ") (" << x_max_ << ", " << y_max_ << ')';
}

std::ostream& operator<<(std::ostream& os, const Rectangle2d& r) {
    r.print(os);
    return os;
}

}  // namespace molcryst

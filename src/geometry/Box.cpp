#include "molcryst/geometry/Box.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <ostream>

namespace molcryst {

namespace {
const double infinity = std::numeric_limits<double>::infinity();
}

Box::Box() : minimum_(infinity, infinity, infinity), maximum_(-infinity, -infinity, -infinity) {}

Box::Box(const Point& a, const Point& b) {
    for (int i = 0; i < 3; ++i) {
        minimum_[i] = std::min(a[i], b[i]);
        maximum_[i] = std::max(a[i], b[i]);
    }
}

bool Box::empty() const {
    for (int i = 0; i < 3; ++i)
        if (!(minimum_[i] <= maximum_[i])) return true;
    return false;
}

bool Box::is_finite() const {
    for (int i = 0; i < 3; ++i)
        if (!std::isfinite(minimum_[i]) || !std::isfinite(maximum_[i])) return false;
    return !empty();
}

Point Box::centre() const { return Point((minimum_ + maximum_) * 0.5); }

Vector<double, 3> Box::size() const { return maximum_ - minimum_; }

Box& Box::expand(double dx, double dy, double dz) {
    const double d[3] = {dx, dy, dz};
    for (int i = 0; i < 3; ++i) {
        minimum_[i] -= d[i];
        maximum_[i] += d[i];
    }
    return *this;
}

Box& Box::merge(const Box& b) {
    if (b.empty()) return *this;
    for (int i = 0; i < 3; ++i) {
        minimum_[i] = std::min(minimum_[i], b.minimum_[i]);
        maximum_[i] = std::max(maximum_[i], b.maximum_[i]);
    }
    return *this;
}

Box& Box::merge(const Point& p) {
    for (int i = 0; i < 3; ++i) {
        minimum_[i] = std::min(minimum_[i], p[i]);
        maximum_[i] = std::max(maximum_[i], p[i]);
    }
    return *this;
}

Box Box::intersection(const Box& b) const {
    Box r;
    for (int i = 0; i < 3; ++i) {
        r.minimum_[i] = std::max(minimum_[i], b.minimum_[i]);
        r.maximum_[i] = std::min(maximum_[i], b.maximum_[i]);
    }
    if (r.empty()) return Box();
    return r;
}

bool Box::overlaps(const Box& b) const {
    for (int i = 0; i < 3; ++i) {
        if (!(std::max(minimum_[i], b.minimum_[i]) <= std::min(maximum_[i], b.maximum_[i]))) return false;
    }
    return true;
}

bool Box::contains(const Point& p) const {
    return minimum_[0] <= p[0] && p[0] <= maximum_[0] && minimum_[1] <= p[1] && p[1] <= maximum_[1] &&
           minimum_[2] <= p[2] && p[2] <= maximum_[2];
}

Box Box::bounding_box() const { return *this; }

void Box::write(Archive& ar) const {
    ar << minimum_ << maximum_;
}

void Box::read(Archive& ar) {
    Archive::Field field(ar, "Box::read");
    Point lower;
    Point upper;
    ar >> lower >> upper;
    for (int i = 0; i < 3; ++i) {
        if (std::isnan(lower[i]) || std::isnan(upper[i])) ar.read_error("a bound is not a number");
    }
    minimum_ = lower;
    maximum_ = upper;
}

void Box::print(std::ostream& os) const {
    if (empty()) {
        os << "empty";
        return;
    }
    os << minimum_ << ' ' << maximum_;
}

Box transform_box(const Matrix<double, 3, 3>& m, const Vector<double, 3>& t, const Box& box) {
    if (box.empty()) return Box();
    Point lower;
    Point upper;
    for (int i = 0; i < 3; ++i) {
        double lo = 0.0;
        double hi = 0.0;
        for (int j = 0; j < 3; ++j) {
            const double f = m(i, j);
            if (f == 0.0) continue;
            const double a = f * box.minimum()[j];
            const double b = f * box.maximum()[j];
            lo += std::min(a, b);
            hi += std::max(a, b);
        }
        lower[i] = lo + t[i];
        upper[i] = hi + t[i];
    }
    return Box(lower, upper);
}

bool operator==(const Box& a, const Box& b) { return a.minimum() == b.minimum() && a.maximum() == b.maximum(); }

bool operator!=(const Box& a, const Box& b) { return !(a == b); }

std::ostream& operator<<(std::ostream& os, const Box& b) {
    b.print(os);
    return os;
}

Archive& operator<<(Archive& ar, const Box& b) {
    b.write(ar);
    return ar;
}

Archive& operator>>(Archive& ar, Box& b) {
    b.read(ar);
    return ar;
}

}  // namespace molcryst

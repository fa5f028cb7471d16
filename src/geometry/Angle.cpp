#include "molcryst/geometry/Angle.h"

#include <algorithm>
#include <cmath>
#include <ostream>

#include "molcryst/support/Archive.h"

namespace molcryst {

namespace {
const double pi = 3.14159265358979323846;
const double radians_per_degree = pi / 180.0;
const double degrees_per_radian = 180.0 / pi;

double clamp_unit(double v) { return std::isnan(v) ? v : std::min(1.0, std::max(-1.0, v)); }
}  // namespace

Angle::Angle(double value, Unit unit) : radians_(unit == Degrees ? value * radians_per_degree : value) {}

Angle Angle::from_degrees(double degrees) { return Angle(degrees, Degrees); }

Angle Angle::acos(double c) { return from_radians(std::acos(clamp_unit(c))); }

Angle Angle::asin(double s) { return from_radians(std::asin(clamp_unit(s))); }

Angle Angle::atan2(double y, double x) { return from_radians(std::atan2(y, x)); }

double Angle::degrees() const { return radians_ * degrees_per_radian; }

void Angle::print(std::ostream& os) const { os << degrees() << " degrees"; }

void Angle::write(Archive& ar) const { ar << radians_; }

void Angle::read(Archive& ar) {
    Archive::Field field(ar, "Angle::read radians");
    double value = 0.0;
    ar >> value;
    if (!std::isfinite(value)) ar.read_error("the angle is not a finite number");
    radians_ = value;
}

double sin(const Angle& a) { return std::sin(a.radians()); }
double cos(const Angle& a) { return std::cos(a.radians()); }
double tan(const Angle& a) { return std::tan(a.radians()); }

std::ostream& operator<<(std::ostream& os, const Angle& a) {
    a.print(os);
    return os;
}

Archive& operator<<(Archive& ar, const Angle& a) {
    a.write(ar);
    return ar;
}

Archive& operator>>(Archive& ar, Angle& a) {
    a.read(ar);
    return ar;
}

}  // namespace molcryst

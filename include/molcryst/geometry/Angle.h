// Angle: an angle by value, made from and read in degrees or radians.
//
// Held in radians. Archive layout: one `double`, the angle in radians
// (8 bytes). Print form: the value in degrees followed by " degrees".
#ifndef MOLCRYST_GEOMETRY_ANGLE_H
#define MOLCRYST_GEOMETRY_ANGLE_H

#include <iosfwd>

namespace molcryst {

class Archive;

/// An angle; arithmetic and comparison work on its value in radians.
class Angle {
public:
    enum Unit { Degrees = 0, Radians = 1 };

    /// Zero.
    Angle() = default;
    Angle(double value, Unit unit);

    static Angle from_degrees(double degrees);
    static Angle from_radians(double radians) { return Angle(radians, Radians); }

    /// The angle whose cosine is `c`; `c` is clamped to [-1, 1] first, so
    /// that a cosine a rounding error beyond 1 still gives 0 rather than NaN.
    static Angle acos(double c);
    /// The angle whose sine is `s`, `s` clamped to [-1, 1].
    static Angle asin(double s);
    /// The angle of the point (x, y) from the x axis, in [-180, 180] degrees.
    static Angle atan2(double y, double x);

    double degrees() const;
    double radians() const { return radians_; }

    Angle& operator+=(const Angle& a) {
        radians_ += a.radians_;
        return *this;
    }
    Angle& operator-=(const Angle& a) {
        radians_ -= a.radians_;
        return *this;
    }
    Angle& operator*=(double f) {
        radians_ *= f;
        return *this;
    }
    Angle& operator/=(double f) {
        radians_ /= f;
        return *this;
    }

    bool operator==(const Angle& a) const { return radians_ == a.radians_; }
    bool operator!=(const Angle& a) const { return radians_ != a.radians_; }
    bool operator<(const Angle& a) const { return radians_ < a.radians_; }
    bool operator<=(const Angle& a) const { return radians_ <= a.radians_; }
    bool operator>(const Angle& a) const { return radians_ > a.radians_; }
    bool operator>=(const Angle& a) const { return radians_ >= a.radians_; }

    /// The value in degrees and " degrees".
    void print(std::ostream& os) const;
    /// One double: radians.
    void write(Archive& ar) const;
    /// One double: radians; a value that is not finite throws std::runtime_error.
    void read(Archive& ar);

private:
    double radians_ = 0.0;  // radians
};

inline Angle operator+(const Angle& a) { return a; }
inline Angle operator-(const Angle& a) { return Angle::from_radians(-a.radians()); }
inline Angle operator+(const Angle& a, const Angle& b) { return Angle::from_radians(a.radians() + b.radians()); }
inline Angle operator-(const Angle& a, const Angle& b) { return Angle::from_radians(a.radians() - b.radians()); }
inline Angle operator*(const Angle& a, double f) { return Angle::from_radians(a.radians() * f); }
inline Angle operator*(double f, const Angle& a) { return Angle::from_radians(a.radians() * f); }
inline Angle operator/(const Angle& a, double f) { return Angle::from_radians(a.radians() / f); }

double sin(const Angle& a);
double cos(const Angle& a);
double tan(const Angle& a);

std::ostream& operator<<(std::ostream& os, const Angle& a);
Archive& operator<<(Archive& ar, const Angle& a);
Archive& operator>>(Archive& ar, Angle& a);

}  // namespace molcryst

#endif

// Uncertainty: the standard uncertainty of a measured value, kept as it is
// written in crystallography: the digits in parentheses and the decimal place
// of their last digit, so that "0.0123(12)" prints back exactly as it was read.
//
// Archive layout (5 bytes): `int` digits, -1 when unknown; `signed char`
// decimals, the power of ten of the last digit negated (3 for "1.234(5)").
#ifndef MOLCRYST_GEOMETRY_UNCERTAINTY_H
#define MOLCRYST_GEOMETRY_UNCERTAINTY_H

#include <iosfwd>

#include "molcryst/support/Archive.h"

namespace molcryst {

/// A standard uncertainty: `digits` units of the `decimals`-th decimal place.
class Uncertainty {
public:
    /// Decimal places an uncertainty may have: the last digit lies between
    /// 10^-max_decimals and 10^-min_decimals.
    static constexpr int min_decimals = -100;
    static constexpr int max_decimals = 100;

    /// Unknown: the value was given without an uncertainty.
    Uncertainty() = default;
    /// `digits` (0 or more) in the units of 10^-decimals: Uncertainty(12, 4)
    /// is 0.0012. Bad arguments throw std::invalid_argument.
    Uncertainty(int digits, int decimals);

    bool known() const { return digits_ >= 0; }
    /// The digits written in parentheses; -1 when unknown.
    int digits() const { return digits_; }
    /// Decimal place of the last digit; 0 when unknown.
    int decimals() const { return decimals_; }
    /// The standard uncertainty as a number; 0 when unknown.
    double value() const;

    /// The uncertainty of the sum of c[k] x[k] over n independent values x[k]
    /// with uncertainties u[k], given at the finest decimal place among the
    /// terms that count (c[k] not 0). Unknown if any such term is unknown or
    /// none counts.
    static Uncertainty combine(const double* c, const Uncertainty* u, int n);

    bool operator==(const Uncertainty& u) const { return digits_ == u.digits_ && decimals_ == u.decimals_; }
    bool operator!=(const Uncertainty& u) const { return !(*this == u); }

    /// The standard uncertainty with its decimal places ("0.0012"), or "?" when unknown.
    void print(std::ostream& os) const;
    void write(Archive& ar) const;
    /// Reads the layout above; impossible values throw std::runtime_error.
    void read(Archive& ar);

private:
    int digits_ = -1;   // digits in parentheses; -1 unknown
    int decimals_ = 0;  // [min_decimals, max_decimals]; 0 when unknown
};

std::ostream& operator<<(std::ostream& os, const Uncertainty& u);
Archive& operator<<(Archive& ar, const Uncertainty& u);
Archive& operator>>(Archive& ar, Uncertainty& u);

template <>
struct ArchiveMinSize<Uncertainty> {
    static constexpr std::size_t value = 5;
};

}  // namespace molcryst

#endif

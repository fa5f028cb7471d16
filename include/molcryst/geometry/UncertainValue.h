// UncertainValue: a measured number with its standard uncertainty, read and
// written in the crystallographic notation "1.234(5)".
//
// Archive layout (13 bytes): `double` value, then the Uncertainty layout.
#ifndef MOLCRYST_GEOMETRY_UNCERTAINVALUE_H
#define MOLCRYST_GEOMETRY_UNCERTAINVALUE_H

#include <iosfwd>
#include <string>
#include <utility>

#include "molcryst/geometry/Uncertainty.h"

namespace molcryst {

/// A double with an Uncertainty.
class UncertainValue {
public:
    /// 0 with unknown uncertainty.
    UncertainValue() = default;
    /// A bare value, its uncertainty unknown.
    UncertainValue(double value) : value_(value) {}  // NOLINT: a number is an uncertain value
    UncertainValue(double value, const Uncertainty& uncertainty) : value_(value), uncertainty_(uncertainty) {}

    double value() const { return value_; }
    const Uncertainty& uncertainty() const { return uncertainty_; }
    /// The standard uncertainty as a number; 0 when unknown.
    double standard_uncertainty() const { return uncertainty_.value(); }
    void set_value(double value) { value_ = value; }
    void set_uncertainty(const Uncertainty& uncertainty) { uncertainty_ = uncertainty; }

    /// Reads "1.234(5)", "0.0123(12)", "-7(2)", "1.5e-3(2)" or a bare number
    /// such as "1.234"; blanks around the text are allowed. On text that is
    /// not such a number: with `ok` given, *ok is false and the result is
    /// UncertainValue(); with `ok` null, std::invalid_argument.
    static UncertainValue parse(const std::string& text, bool* ok = nullptr);

    /// The interval of the value plus and minus |k| standard uncertainties,
    /// lower end first; both ends are the value when the uncertainty is unknown.
    std::pair<double, double> range(double k) const;

    bool operator==(const UncertainValue& v) const { return value_ == v.value_ && uncertainty_ == v.uncertainty_; }
    bool operator!=(const UncertainValue& v) const { return !(*this == v); }

    /// "1.234(5)": the value rounded to the decimal place of the uncertainty,
    /// then its digits. Without an uncertainty the value alone, as the stream
    /// writes a double.
    void print(std::ostream& os) const;
    void write(Archive& ar) const;
    /// Reads the layout above; a value that is not finite throws std::runtime_error.
    void read(Archive& ar);

private:
    double value_ = 0.0;
    Uncertainty uncertainty_;
};

std::ostream& operator<<(std::ostream& os, const UncertainValue& v);
Archive& operator<<(Archive& ar, const UncertainValue& v);
Archive& operator>>(Archive& ar, UncertainValue& v);

template <>
struct ArchiveMinSize<UncertainValue> {
    static constexpr std::size_t value = 13;
};

}  // namespace molcryst

#endif

#include "molcryst/geometry/UncertainValue.h"

#include <cmath>
#include <cstdlib>
#include <ostream>
#include <sstream>
#include <stdexcept>

namespace molcryst {

namespace {

bool is_digit(char c) { return c >= '0' && c <= '9'; }
bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// The grammar: [sign] digits [. digits] [e [sign] digits] [( digits )], with at
// least one digit in the mantissa. Every piece is bounded before it is
// converted, so that no text can overflow an int.
bool parse_text(const std::string& text, UncertainValue& result) {
    std::size_t begin = 0;
    std::size_t end = text.size();
    while (begin < end && is_blank(text[begin])) ++begin;
    while (end > begin && is_blank(text[end - 1])) --end;

    std::size_t i = begin;
    if (i < end && (text[i] == '+' || text[i] == '-')) ++i;
    std::size_t mantissa_digits = 0;
    while (i < end && is_digit(text[i])) ++i, ++mantissa_digits;
    int fraction_digits = 0;
    if (i < end && text[i] == '.') {
        ++i;
        while (i < end && is_digit(text[i])) {
            ++i;
            ++mantissa_digits;
            if (++fraction_digits > 1000) return false;
        }
    }
    if (mantissa_digits == 0) return false;
    int exponent = 0;
    if (i < end && (text[i] == 'e' || text[i] == 'E')) {
        ++i;
        int sign = 1;
        if (i < end && (text[i] == '+' || text[i] == '-')) {
            if (text[i] == '-') sign = -1;
            ++i;
        }
        std::size_t exponent_digits = 0;
        while (i < end && is_digit(text[i])) {
            if (++exponent_digits > 4) return false;
            exponent = exponent * 10 + (text[i] - '0');
            ++i;
        }
        if (exponent_digits == 0) return false;
        exponent *= sign;
    }
    const std::size_t number_end = i;

    Uncertainty uncertainty;
    if (i < end && text[i] == '(') {
        ++i;
        int digits = 0;
        std::size_t count = 0;
        while (i < end && is_digit(text[i])) {
            if (++count > 9) return false;
            digits = digits * 10 + (text[i] - '0');
            ++i;
        }
        if (count == 0 || i >= end || text[i] != ')') return false;
        ++i;
        const int decimals = fraction_digits - exponent;
        if (decimals < Uncertainty::min_decimals || decimals > Uncertainty::max_decimals) return false;
        uncertainty = Uncertainty(digits, decimals);
    }
    if (i != end) return false;

    const std::string number = text.substr(begin, number_end - begin);
    char* stop = nullptr;
    const double value = std::strtod(number.c_str(), &stop);
    if (stop != number.c_str() + number.size() || !std::isfinite(value)) return false;
    result = UncertainValue(value, uncertainty);
    return true;
}

}  // namespace

UncertainValue UncertainValue::parse(const std::string& text, bool* ok) {
    UncertainValue result;
    const bool good = parse_text(text, result);
    if (ok != nullptr) {
        *ok = good;
        return good ? result : UncertainValue();
    }
    if (!good)
        throw std::invalid_argument("UncertainValue::parse(const std::string&, bool*) cannot read \"" + text + "\"");
    return result;
}

std::pair<double, double> UncertainValue::range(double k) const {
    const double spread = std::fabs(k) * uncertainty_.value();
    return std::make_pair(value_ - spread, value_ + spread);
}

void UncertainValue::print(std::ostream& os) const {
    if (!uncertainty_.known()) {
        os << value_;
        return;
    }
    std::ostringstream text;
    text.setf(std::ios::fixed, std::ios::floatfield);
    const int decimals = uncertainty_.decimals();
    if (decimals >= 0) {
        text.precision(decimals);
        text << value_ << '(' << uncertainty_.digits() << ')';
    } else {
        // The last digit stands left of the point: round the value to it.
        const double unit = std::pow(10.0, -decimals);
        text.precision(0);
        text << std::round(value_ / unit) * unit << '(' << uncertainty_.digits();
        if (uncertainty_.digits() != 0) text << std::string(static_cast<std::size_t>(-decimals), '0');
        text << ')';
    }
    os << text.str();
}

void UncertainValue::write(Archive& ar) const {
    ar << value_;
    uncertainty_.write(ar);
}

void UncertainValue::read(Archive& ar) {
    Archive::Field field(ar, "UncertainValue::read");
    double value = 0.0;
    ar >> value;
    if (!std::isfinite(value)) ar.read_error("the value is not a finite number");
    Uncertainty uncertainty;
    uncertainty.read(ar);
    value_ = value;
    uncertainty_ = uncertainty;
}

std::ostream& operator<<(std::ostream& os, const UncertainValue& v) {
    v.print(os);
    return os;
}

Archive& operator<<(Archive& ar, const UncertainValue& v) {
    v.write(ar);
    return ar;
}

Archive& operator>>(Archive& ar, UncertainValue& v) {
    v.read(ar);
    return ar;
}

}  // namespace molcryst

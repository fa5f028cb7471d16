#include "molcryst/geometry/Uncertainty.h"

#include <cmath>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace molcryst {

Uncertainty::Uncertainty(int digits, int decimals) : digits_(digits), decimals_(decimals) {
    if (digits < 0 || decimals < min_decimals || decimals > max_decimals)
        throw std::invalid_argument("Uncertainty::Uncertainty(int, int) digits or decimals out of range");
}

double Uncertainty::value() const {
    if (!known()) return 0.0;
    // Dividing by an exact power of ten keeps 5 at the third place exactly 0.005.
    if (decimals_ >= 0) return digits_ / std::pow(10.0, decimals_);
    return digits_ * std::pow(10.0, -decimals_);
}

Uncertainty Uncertainty::combine(const double* c, const Uncertainty* u, int n) {
    double variance = 0.0;
    int decimals = min_decimals;
    bool any = false;
    for (int k = 0; k < n; ++k) {
        if (c[k] == 0.0) continue;
        if (!u[k].known()) return Uncertainty();
        any = true;
        const double s = c[k] * u[k].value();
        variance += s * s;
        if (u[k].decimals() > decimals) decimals = u[k].decimals();
    }
    if (!any || !std::isfinite(variance)) return Uncertainty();
    const double su = std::sqrt(variance);
    // Coarser places until the digits fit an int.
    for (; decimals >= min_decimals; --decimals) {
        const double digits = std::round(decimals >= 0 ? su * std::pow(10.0, decimals) : su / std::pow(10.0, -decimals));
        if (digits < 2147483647.0) return Uncertainty(static_cast<int>(digits), decimals);
    }
    return Uncertainty();
}

void Uncertainty::print(std::ostream& os) const {
    if (!known()) {
        os << '?';
        return;
    }
    std::ostringstream text;
    if (decimals_ > 0) {
        text.setf(std::ios::fixed, std::ios::floatfield);
        text.precision(decimals_);
        text << value();
    } else {
        text << digits_;
        if (digits_ != 0) text << std::string(static_cast<std::size_t>(-decimals_), '0');
    }
    os << text.str();
}

void Uncertainty::write(Archive& ar) const {
    ar << digits_;
    ar << static_cast<signed char>(decimals_);
}

void Uncertainty::read(Archive& ar) {
    Archive::Field field(ar, "Uncertainty::read");
    int digits = 0;
    signed char decimals = 0;
    ar >> digits >> decimals;
    if (digits < -1) ar.read_error("negative digits " + std::to_string(digits));
    if (decimals < min_decimals || decimals > max_decimals)
        ar.read_error("decimal place out of range " + std::to_string(decimals));
    if (digits == -1 && decimals != 0) ar.read_error("an unknown uncertainty with a decimal place");
    digits_ = digits;
    decimals_ = decimals;
}

std::ostream& operator<<(std::ostream& os, const Uncertainty& u) {
    u.print(os);
    return os;
}

Archive& operator<<(Archive& ar, const Uncertainty& u) {
    u.write(ar);
    return ar;
}

Archive& operator>>(Archive& ar, Uncertainty& u) {
    u.read(ar);
    return ar;
}

}  // namespace molcryst

#include "molcryst/geometry/CrystalSymmetryOperator.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ostream>
#include <stdexcept>

namespace molcryst {

namespace {

// Rotation elements are archived as signed chars.
const int largest_element = 127;

bool valid_rotation(const Matrix<int, 3, 3>& r) {
    for (int i = 0; i < 9; ++i)
        if (r[i] < -largest_element || r[i] > largest_element) return false;
    const long long det = static_cast<long long>(r(0, 0)) * (r(1, 1) * r(2, 2) - r(1, 2) * r(2, 1)) -
                          static_cast<long long>(r(0, 1)) * (r(1, 0) * r(2, 2) - r(1, 2) * r(2, 0)) +
                          static_cast<long long>(r(0, 2)) * (r(1, 0) * r(2, 1) - r(1, 1) * r(2, 0));
    return det == 1 || det == -1;
}

bool finite(const Vector<double, 3>& t) {
    return std::isfinite(t[0]) && std::isfinite(t[1]) && std::isfinite(t[2]);
}

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// An unsigned integer of at most 9 digits at s[i]; advances i.
bool read_integer(const std::string& s, std::size_t& i, long long& value) {
    std::size_t count = 0;
    value = 0;
    while (i < s.size() && is_digit(s[i])) {
        if (++count > 9) return false;
        value = value * 10 + (s[i] - '0');
        ++i;
    }
    return count > 0;
}

// One expression of a triplet, blanks removed and in lower case: a sum of
// terms, each a signed integer multiple of x, y or z or a signed constant.
bool parse_row(const std::string& s, int row[3], double& constant) {
    if (s.empty()) return false;
    std::size_t i = 0;
    bool first = true;
    while (i < s.size()) {
        int sign = 1;
        if (s[i] == '+' || s[i] == '-') {
            sign = s[i] == '-' ? -1 : 1;
            ++i;
        } else if (!first) {
            return false;
        }
        first = false;

        bool has_number = false;
        bool integral = true;
        double number = 1.0;
        long long integer = 1;
        if (i < s.size() && (is_digit(s[i]) || s[i] == '.')) {
            has_number = true;
            // The extent of the literal: digits, a decimal part, an exponent.
            const std::size_t start = i;
            std::size_t digits = 0;
            while (i < s.size() && is_digit(s[i])) ++i, ++digits;
            if (i < s.size() && s[i] == '.') {
                integral = false;
                ++i;
                while (i < s.size() && is_digit(s[i])) ++i, ++digits;
            }
            if (digits == 0 || digits > 40) return false;
            if (i + 1 < s.size() && s[i] == 'e' &&
                (is_digit(s[i + 1]) || ((s[i + 1] == '+' || s[i + 1] == '-') && i + 2 < s.size() && is_digit(s[i + 2])))) {
                integral = false;
                i += 2;
                std::size_t exponent_digits = 0;
                while (i < s.size() && is_digit(s[i])) {
                    if (++exponent_digits > 3) return false;
                    ++i;
                }
            }
            if (!integral) {
                number = std::strtod(s.substr(start, i - start).c_str(), nullptr);
            } else {
                std::size_t j = start;
                if (!read_integer(s, j, integer)) return false;
                number = static_cast<double>(integer);
                if (i < s.size() && s[i] == '/') {
                    ++i;
                    long long denominator = 0;
                    if (!read_integer(s, i, denominator) || denominator == 0) return false;
                    integral = false;
                    number = static_cast<double>(integer) / static_cast<double>(denominator);
                }
            }
            if (i < s.size() && s[i] == '*') {
                ++i;
                if (i >= s.size() || (s[i] != 'x' && s[i] != 'y' && s[i] != 'z')) return false;
            }
        }
        if (i < s.size() && (s[i] == 'x' || s[i] == 'y' || s[i] == 'z')) {
            if (!integral || integer > largest_element) return false;
            row[s[i] - 'x'] += sign * static_cast<int>(integer);
            if (row[s[i] - 'x'] < -largest_element || row[s[i] - 'x'] > largest_element) return false;
            ++i;
        } else {
            if (!has_number) return false;
            constant += sign * number;
        }
    }
    return true;
}

}  // namespace

CrystalSymmetryOperator::CrystalSymmetryOperator() : rotation_(Matrix<int, 3, 3>::identity()) {}

CrystalSymmetryOperator::CrystalSymmetryOperator(const Matrix<int, 3, 3>& rotation, const Vector<double, 3>& translation)
    : rotation_(rotation), translation_(translation) {
    if (!valid_rotation(rotation) || !finite(translation))
        throw std::invalid_argument(
            "CrystalSymmetryOperator::CrystalSymmetryOperator(const Matrix<int,3,3>&, const Vector<double,3>&) "
            "not a symmetry operation");
}

CrystalSymmetryOperator::CrystalSymmetryOperator(const std::string& triplet) : CrystalSymmetryOperator() {
    if (!parse(triplet, *this))
        throw std::invalid_argument(
            "CrystalSymmetryOperator::CrystalSymmetryOperator(const std::string&) cannot read \"" + triplet + "\"");
}

bool CrystalSymmetryOperator::parse(const std::string& triplet, CrystalSymmetryOperator& result) {
    std::string rows[3];
    int row = 0;
    for (char c : triplet) {
        if (c == ' ' || c == '\t' || c == '\r' || c == '\n') continue;
        if (c == ',') {
            if (++row > 2) return false;
            continue;
        }
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        rows[row] += c;
    }
    if (row != 2) return false;
    Matrix<int, 3, 3> rotation;
    Vector<double, 3> translation;
    for (int i = 0; i < 3; ++i) {
        int coefficients[3] = {0, 0, 0};
        double constant = 0.0;
        if (!parse_row(rows[i], coefficients, constant)) return false;
        for (int j = 0; j < 3; ++j) rotation(i, j) = coefficients[j];
        translation[i] = constant;
    }
    if (!valid_rotation(rotation) || !finite(translation)) return false;
    result.rotation_ = rotation;
    result.translation_ = translation;
    return true;
}

CrystalSymmetryOperator CrystalSymmetryOperator::inverse() const {
    const Matrix<int, 3, 3> r = rotation_.inverse();
    const Vector<double, 3> t = -(Matrix<double, 3, 3>(r) * translation_);
    return CrystalSymmetryOperator(r, t);
}

bool CrystalSymmetryOperator::is_identity() const {
    return is_translation() && translation_[0] == 0.0 && translation_[1] == 0.0 && translation_[2] == 0.0;
}

bool CrystalSymmetryOperator::is_translation() const { return rotation_ == Matrix<int, 3, 3>::identity(); }

std::string fraction_text(double value) {
    if (value == 0.0) return "0";
    // The denominators of the translations of every spacegroup.
    for (int d : {1, 2, 3, 4, 6, 8, 12}) {
        const double scaled = value * d;
        const double n = std::round(scaled);
        if (std::fabs(scaled - n) < 1e-9 && std::fabs(n) < 1e9) {
            const long long numerator = static_cast<long long>(n);
            if (d == 1) return std::to_string(numerator);
            return std::to_string(numerator) + "/" + std::to_string(d);
        }
    }
    char buffer[64];
    for (int precision = 1; precision <= 17; ++precision) {
        std::snprintf(buffer, sizeof buffer, "%.*g", precision, value);
        if (std::strtod(buffer, nullptr) == value) break;
    }
    return buffer;
}

std::string CrystalSymmetryOperator::triplet() const {
    std::string out;
    for (int i = 0; i < 3; ++i) {
        std::string expression;
        for (int j = 0; j < 3; ++j) {
            const int c = rotation_(i, j);
            if (c == 0) continue;
            if (c > 0 && !expression.empty()) expression += '+';
            if (c == -1) {
                expression += '-';
            } else if (c != 1) {
                expression += std::to_string(c);
            }
            expression += static_cast<char>('x' + j);
        }
        const double t = translation_[i];
        if (t != 0.0) {
            const std::string text = fraction_text(t);
            if (text[0] != '-' && !expression.empty()) expression += '+';
            expression += text;
        }
        if (expression.empty()) expression = "0";
        if (i != 0) out += ',';
        out += expression;
    }
    return out;
}

void CrystalSymmetryOperator::print(std::ostream& os) const { os << triplet(); }

void CrystalSymmetryOperator::write(Archive& ar) const {
    for (int i = 0; i < 9; ++i) ar << static_cast<signed char>(rotation_[i]);
    ar << translation_;
}

void CrystalSymmetryOperator::read(Archive& ar) {
    Archive::Field field(ar, "CrystalSymmetryOperator::read");
    Matrix<int, 3, 3> rotation;
    for (int i = 0; i < 9; ++i) {
        signed char element = 0;
        ar >> element;
        rotation[i] = element;
    }
    Vector<double, 3> translation;
    ar >> translation;
    if (!valid_rotation(rotation)) ar.read_error("the rotation does not have determinant 1 or -1");
    if (!finite(translation)) ar.read_error("the translation is not finite");
    rotation_ = rotation;
    translation_ = translation;
}

bool operator==(const CrystalSymmetryOperator& a, const CrystalSymmetryOperator& b) {
    return a.rotation() == b.rotation() && a.translation() == b.translation();
}

bool operator!=(const CrystalSymmetryOperator& a, const CrystalSymmetryOperator& b) { return !(a == b); }

bool equals(const CrystalSymmetryOperator& a, const CrystalSymmetryOperator& b, double tolerance) {
    return a.rotation() == b.rotation() && equals(a.translation(), b.translation(), tolerance);
}

CrystalSymmetryOperator operator*(const CrystalSymmetryOperator& a, const CrystalSymmetryOperator& b) {
    const Matrix<double, 3, 3> ra(a.rotation());
    return CrystalSymmetryOperator(a.rotation() * b.rotation(), ra * b.translation() + a.translation());
}

std::ostream& operator<<(std::ostream& os, const CrystalSymmetryOperator& s) {
    s.print(os);
    return os;
}

Archive& operator<<(Archive& ar, const CrystalSymmetryOperator& s) {
    s.write(ar);
    return ar;
}

Archive& operator>>(Archive& ar, CrystalSymmetryOperator& s) {
    s.read(ar);
    return ar;
}

}  // namespace molcryst

#include "molcryst/molecule/AtomicDisplacementParameters.h"

#include <cmath>
#include <ostream>
#include <stdexcept>

#include "molcryst/geometry/Jacobi.h"
#include "molcryst/molecule/Site.h"
#include "molcryst/support/StringFunctions.h"

namespace molcryst {

namespace {

const double pi = 3.14159265358979323846;

// Probability that a three-dimensional standard normal variable lies within r
// of the origin: the Maxwell distribution function.
double maxwell_cdf(double r) { return std::erf(r / std::sqrt(2.0)) - std::sqrt(2.0 / pi) * r * std::exp(-0.5 * r * r); }

// Its quantile by bisection, to the last bits of a double.
double maxwell_quantile(double p) {
    double lo = 0.0;
    double hi = 10.0;
    for (int i = 0; i < 200 && hi - lo > 1e-15; ++i) {
        const double mid = 0.5 * (lo + hi);
        if (maxwell_cdf(mid) < p)
            lo = mid;
        else
            hi = mid;
    }
    return 0.5 * (lo + hi);
}

// Entry p for each integer percent 1 to 99; entry 0 unused.
const Array<double, 100>& level_table() {
    static const Array<double, 100> table = [] {
        Array<double, 100> t;
        for (int p = 1; p <= 99; ++p) t[p] = maxwell_quantile(p / 100.0);
        return t;
    }();
    return table;
}

}  // namespace

AtomicDisplacementParameters::AtomicDisplacementParameters(const UncertainValue& u11, const UncertainValue& u22,
                                                           const UncertainValue& u33, const UncertainValue& u12,
                                                           const UncertainValue& u13, const UncertainValue& u23) {
    u_[0] = u11;
    u_[1] = u22;
    u_[2] = u33;
    u_[3] = u12;
    u_[4] = u13;
    u_[5] = u23;
}

AtomicDisplacementParameters::AtomicDisplacementParameters(const UncertainValue& u_iso, const Cell& cell) {
    const Matrix<double, 3, 3> u = u_star_to_u_cif(u_cart_to_u_star(u_iso_to_u_cart(u_iso.value()), cell), cell);
    u_[0] = u(0, 0);
    u_[1] = u(1, 1);
    u_[2] = u(2, 2);
    u_[3] = u(0, 1);
    u_[4] = u(0, 2);
    u_[5] = u(1, 2);
}

AtomicDisplacementParameters::~AtomicDisplacementParameters() = default;

void AtomicDisplacementParameters::write(Archive& ar) const { u_.write(ar); }

void AtomicDisplacementParameters::read(Archive& ar) {
    Archive::Field field(ar, "AtomicDisplacementParameters::read");
    Array<UncertainValue, 6> u;
    u.read(ar);
    u_ = u;
}

void AtomicDisplacementParameters::print(std::ostream& os) const {
    static const char* const names[6] = {"u11", "u22", "u33", "u12", "u13", "u23"};
    for (int i = 0; i < 6; ++i) os << (i == 0 ? "" : " ") << names[i] << ' ' << u_[i];
}

AtomicDisplacementParameters::TensorElement AtomicDisplacementParameters::indices_to_enum(int i, int j) {
    if (i < 1 || i > 3 || j < 1 || j > 3)
        throw std::out_of_range("Illegal AtomicDisplacementParameters indices (" + to_string(i) + "," + to_string(j) +
                                ")");
    if (i == j) return static_cast<TensorElement>(i - 1);
    const int sum = i + j;  // 3 for (1,2), 4 for (1,3), 5 for (2,3)
    return static_cast<TensorElement>(sum);
}

Matrix<double, 3, 3> AtomicDisplacementParameters::u_matrix() const {
    return Matrix<double, 3, 3>(u_[0].value(), u_[3].value(), u_[4].value(),
                                u_[3].value(), u_[1].value(), u_[5].value(),
                                u_[4].value(), u_[5].value(), u_[2].value());
}

double AtomicDisplacementParameters::u_equivalent(const Cell& cell) const {
    return u_star_to_u_cart(u_cif_to_u_star(u_matrix(), cell), cell).trace() / 3.0;
}

double AtomicDisplacementParameters::probability_scale(int percent) {
    if (percent < 1 || percent > 99)
        throw std::out_of_range("AtomicDisplacementParameters::probability_scale(int) percent out of range");
    return level_table()[percent];
}

Ellipsoid AtomicDisplacementParameters::ellipsoid(const Cell& cell, const Site& site, double probability) const {
    Matrix<double, 3, 3> u_cart = u_star_to_u_cart(u_cif_to_u_star(u_matrix(), cell), cell);
    u_cart.make_symmetric();
    Vector<double, 3> values;
    Matrix<double, 3, 3> vectors;
    Jacobi<3>(u_cart, values, vectors);
    if (!(probability >= 0.5001 && probability <= 99.4999))
        throw std::invalid_argument("AtomicDisplacementParameters::ellipsoid() invalid probability level.");
    const double scale = level_table()[static_cast<int>(probability + 0.5)];
    for (int i = 0; i < 3; ++i) {
        if (!(values[i] > 0.0))
            throw std::runtime_error(std::string("AtomicDisplacementParameters::ellipsoid(): eigen values must be "
                                                 "positive. ") +
                                     "(Value is " + to_string(values[i]) + ")");
    }
    Vector<double, 3> axes[3];
    for (int i = 0; i < 3; ++i) {
        axes[i] = vectors.column(i + 1);
        axes[i].set_length(std::sqrt(values[i]) * scale);
    }
    return Ellipsoid(site.orth(), axes[0], axes[1], axes[2]);
}

AtomicDisplacementParameters AtomicDisplacementParameters::transformed(const Matrix<int, 3, 3>& rotation,
                                                                       const Cell& cell) const {
    // Element (i, j) of U(cif) after the rotation, as a sum over the six
    // stored elements (k, l), k <= l: U* = N U N picks up n_k n_l, rotates as
    // R U* R^T, and returns to U(cif) by dividing by n_i n_j.
    const double n[3] = {cell.a_star_axis().length(), cell.b_star_axis().length(), cell.c_star_axis().length()};
    static const int first[6] = {0, 1, 2, 0, 0, 1};
    static const int second[6] = {0, 1, 2, 1, 2, 2};
    Array<UncertainValue, 6> result;
    for (int e = 0; e < 6; ++e) {
        const int i = first[e];
        const int j = second[e];
        double c[6];
        Uncertainty su[6];
        double value = 0.0;
        for (int f = 0; f < 6; ++f) {
            const int k = first[f];
            const int l = second[f];
            double r = rotation(i, k) * rotation(j, l);
            if (k != l) r += rotation(i, l) * rotation(j, k);
            c[f] = r == 0.0 ? 0.0 : r * ((n[k] * n[l]) / (n[i] * n[j]));
            su[f] = u_[f].uncertainty();
            value += c[f] * u_[f].value();
        }
        result[e] = UncertainValue(value, Uncertainty::combine(c, su, 6));
    }
    return AtomicDisplacementParameters(result);
}

bool operator==(const AtomicDisplacementParameters& a, const AtomicDisplacementParameters& b) {
    return a.u() == b.u();
}

bool operator!=(const AtomicDisplacementParameters& a, const AtomicDisplacementParameters& b) { return !(a == b); }

bool equals(const AtomicDisplacementParameters& a, const AtomicDisplacementParameters& b, double tolerance) {
    for (int i = 0; i < 6; ++i)
        if (!(std::fabs(a.u()[i].value() - b.u()[i].value()) < tolerance)) return false;
    return true;
}

AtomicDisplacementParameters strip_uncertainties(const AtomicDisplacementParameters& a) {
    Array<UncertainValue, 6> bare;
    for (int i = 0; i < 6; ++i) bare[i] = UncertainValue(a.u()[i].value());
    return AtomicDisplacementParameters(bare);
}

std::ostream& operator<<(std::ostream& os, const AtomicDisplacementParameters& a) {
    a.print(os);
    return os;
}

Matrix<double, 3, 3> create_N_matrix(const Cell& cell) {
    Matrix<double, 3, 3> n;
    n(0, 0) = cell.a_star_axis().length();
    n(1, 1) = cell.b_star_axis().length();
    n(2, 2) = cell.c_star_axis().length();
    return n;
}

Matrix<double, 3, 3> u_cif_to_u_star(const Matrix<double, 3, 3>& u, const Cell& cell) {
    const Matrix<double, 3, 3> n = create_N_matrix(cell);
    return n * u * n.transpose();
}

Matrix<double, 3, 3> u_star_to_u_cif(const Matrix<double, 3, 3>& u_star, const Cell& cell) {
    const Matrix<double, 3, 3> n = create_N_matrix(cell);
    return n.inverse() * u_star * n.transpose().inverse();
}

Matrix<double, 3, 3> u_star_to_u_cart(const Matrix<double, 3, 3>& u_star, const Cell& cell) {
    const Matrix<double, 3, 3>& a = cell.orth_from_frac();
    return a * u_star * a.transpose();
}

Matrix<double, 3, 3> u_cart_to_u_star(const Matrix<double, 3, 3>& u_cart, const Cell& cell) {
    const Matrix<double, 3, 3>& a = cell.orth_from_frac();
    return a.inverse() * u_cart * a.transpose().inverse();
}

Matrix<double, 3, 3> u_iso_to_u_cart(double u) { return Matrix<double, 3, 3>::identity() * u; }

}  // namespace molcryst

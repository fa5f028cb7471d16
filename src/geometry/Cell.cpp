#include "molcryst/geometry/Cell.h"

#include <cfloat>
#include <cmath>
#include <ostream>
#include <stdexcept>

#include "molcryst/geometry/GeometryFunctions.h"

namespace molcryst {

namespace {

// The integer nearest to |d| < 2^51, ties to even, as std::nearbyint gives it
// in the default rounding mode: adding and taking away 1.5 * 2^52 leaves no
// bits below the units. The library call would cost more than the rest of
// the test. Where doubles are evaluated in wider registers the trick fails,
// and the library does it.
inline double nearest_integer(double d) {
#if defined(FLT_EVAL_METHOD) && FLT_EVAL_METHOD == 0
    const double shift = 6755399441055744.0;
    return (d + shift) - shift;
#else
    return std::nearbyint(d);
#endif
}

}  // namespace

Cell::Cell() : a_axis_(1.0, 0.0, 0.0), b_axis_(0.0, 1.0, 0.0), c_axis_(0.0, 0.0, 1.0) {
    derive_matrices();
    derive_operator_table();
}

Cell::Cell(const Vector<double, 3>& a, const Vector<double, 3>& b, const Vector<double, 3>& c,
           const Spacegroup& spacegroup)
    : a_axis_(a), b_axis_(b), c_axis_(c), spacegroup_(spacegroup) {
    if (!spans_volume(a, b, c))
        throw std::invalid_argument(
            "Cell::Cell(const Vector<double,3>&, const Vector<double,3>&, const Vector<double,3>&, const "
            "Spacegroup&) the axes span no volume");
    derive_matrices();
    derive_operator_table();
}

Cell::Cell(double a, double b, double c, const Angle& alpha, const Angle& beta, const Angle& gamma,
           const Spacegroup& spacegroup)
    : spacegroup_(spacegroup) {
    const char* message =
        "Cell::Cell(double, double, double, const Angle&, const Angle&, const Angle&, const Spacegroup&) "
        "no cell has these parameters";
    if (!(a > 0.0) || !(b > 0.0) || !(c > 0.0) || !std::isfinite(a) || !std::isfinite(b) || !std::isfinite(c))
        throw std::invalid_argument(message);
    const double ca = cos(alpha);
    const double cb = cos(beta);
    const double cg = cos(gamma);
    const double sg = sin(gamma);
    // The squared volume of the unit-edged cell: 0 when the three angles
    // close no cell, and beyond rounding only when they do.
    const double v2 = 1.0 - ca * ca - cb * cb - cg * cg + 2.0 * ca * cb * cg;
    if (!(v2 > 1e-12) || !(sg > 0.0)) throw std::invalid_argument(message);
    a_axis_ = Vector<double, 3>(a, 0.0, 0.0);
    b_axis_ = Vector<double, 3>(b * cg, b * sg, 0.0);
    c_axis_ = Vector<double, 3>(c * cb, c * (ca - cb * cg) / sg, c * std::sqrt(v2) / sg);
    if (!spans_volume(a_axis_, b_axis_, c_axis_)) throw std::invalid_argument(message);
    derive_matrices();
    derive_operator_table();
}

bool Cell::spans_volume(const Vector<double, 3>& a, const Vector<double, 3>& b, const Vector<double, 3>& c) {
    const double scale = a.length() * b.length() * c.length();
    const double v = std::fabs(a.dot(cross(b, c)));
    return std::isfinite(scale) && std::isfinite(v) && scale > 0.0 && v > 1e-10 * scale;
}

void Cell::derive_matrices() {
    orth_from_frac_.set_column(1, a_axis_);
    orth_from_frac_.set_column(2, b_axis_);
    orth_from_frac_.set_column(3, c_axis_);
    frac_from_orth_ = orth_from_frac_.inverse();
}

void Cell::derive_operator_table() {
    operator_table_.clear();
    operator_table_.reserve(12 * spacegroup_.operators().size());
    for (const CrystalSymmetryOperator& op : spacegroup_.operators()) {
        for (int i = 0; i < 9; ++i) operator_table_.push_back(op.rotation()[i]);
        for (int i = 0; i < 3; ++i) operator_table_.push_back(op.translation()[i]);
    }
}

Angle Cell::alpha() const { return angle(b_axis_, c_axis_, 0.0); }
Angle Cell::beta() const { return angle(a_axis_, c_axis_, 0.0); }
Angle Cell::gamma() const { return angle(a_axis_, b_axis_, 0.0); }

double Cell::volume() const { return std::fabs(orth_from_frac_.determinant()); }

int Cell::find_relation(const Point& p, const Point& q, double tolerance, Vector<int, 3>& lattice) const {
    const int n = static_cast<int>(operator_table_.size() / 12);
    const double* op = operator_table_.data();
    for (int k = 0; k < n; ++k, op += 12) {
        // Component by component, so that most operators are rejected on x.
        // The image is R p + t evaluated as CrystalSymmetryOperator::apply does.
        int i = 0;
        for (; i < 3; ++i) {
            const double* r = op + 3 * i;
            const double image = r[0] * p[0] + r[1] * p[1] + r[2] * p[2] + op[9 + i];
            const double d = q[i] - image;
            // Beyond 1e9 the points are no lattice translation apart that an
            // int could hold; NaN fails here too.
            if (!(std::fabs(d) < 1e9)) break;
            const double whole = nearest_integer(d);
            if (!(std::fabs(d - whole) < tolerance)) break;
            lattice[i] = static_cast<int>(whole);
        }
        if (i == 3) return k;
    }
    return -1;
}

bool Cell::is_symmetry_related(const Point& p, const Point& q, double tolerance) const {
    Vector<int, 3> lattice;
    return find_relation(p, q, tolerance, lattice) >= 0;
}

THandle<CrystalSymmetryTransformation> Cell::symmetry_relation(const Point& p, const Point& q,
                                                               double tolerance) const {
    Vector<int, 3> lattice;
    const int k = find_relation(p, q, tolerance, lattice);
    if (k < 0) return THandle<CrystalSymmetryTransformation>();
    return THandle<CrystalSymmetryTransformation>(
        new CrystalSymmetryTransformation(spacegroup_.operators()[static_cast<std::size_t>(k)], lattice));
}

void Cell::print(std::ostream& os) const {
    os << "a " << a() << " b " << b() << " c " << c() << " alpha " << alpha().degrees() << " beta "
       << beta().degrees() << " gamma " << gamma().degrees() << ' ' << spacegroup_;
}

void Cell::write(Archive& ar) const {
    ar << a_axis_ << b_axis_ << c_axis_;
    spacegroup_.write(ar);
}

void Cell::read(Archive& ar) {
    Vector<double, 3> a;
    Vector<double, 3> b;
    Vector<double, 3> c;
    {
        Archive::Field field(ar, "Cell::read axes");
        ar >> a >> b >> c;
        if (!spans_volume(a, b, c)) ar.read_error("the axes span no volume");
    }
    Spacegroup spacegroup;
    spacegroup.read(ar);
    a_axis_ = a;
    b_axis_ = b;
    c_axis_ = c;
    derive_matrices();
    spacegroup_ = spacegroup;
    derive_operator_table();
}

bool operator==(const Cell& a, const Cell& b) {
    return a.a_axis() == b.a_axis() && a.b_axis() == b.b_axis() && a.c_axis() == b.c_axis() &&
           a.spacegroup() == b.spacegroup();
}

bool operator!=(const Cell& a, const Cell& b) { return !(a == b); }

std::ostream& operator<<(std::ostream& os, const Cell& c) {
    c.print(os);
    return os;
}

Archive& operator<<(Archive& ar, const Cell& c) {
    c.write(ar);
    return ar;
}

Archive& operator>>(Archive& ar, Cell& c) {
    c.read(ar);
    return ar;
}

}  // namespace molcryst

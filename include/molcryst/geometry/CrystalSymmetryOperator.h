// CrystalSymmetryOperator: one symmetry operation of a spacegroup, acting on
// fractional coordinates as x' = R x + t, with R an integer matrix of
// determinant 1 or -1 and t a fractional translation.
//
// Text form: the triplet "-x+1/2,y+1/2,-z+1/2", one expression per row.
// Archive layout (33 bytes): the nine elements of R row by row as signed
// chars, then t as three doubles.
#ifndef MOLCRYST_GEOMETRY_CRYSTALSYMMETRYOPERATOR_H
#define MOLCRYST_GEOMETRY_CRYSTALSYMMETRYOPERATOR_H

#include <iosfwd>
#include <string>

#include "molcryst/geometry/Matrix.h"
#include "molcryst/geometry/Point.h"
#include "molcryst/support/Archive.h"

namespace molcryst {

/// x -> R x + t in fractional coordinates.
class CrystalSymmetryOperator {
public:
    /// The identity "x,y,z".
    CrystalSymmetryOperator();
    /// A rotation whose determinant is not 1 or -1, or a translation that is
    /// not finite, throws std::invalid_argument.
    CrystalSymmetryOperator(const Matrix<int, 3, 3>& rotation, const Vector<double, 3>& translation);
    /// From the triplet form: three comma-separated expressions in x, y, z
    /// (either case) with integer coefficients and constant terms written as
    /// fractions ("1/2") or decimals ("0.5"), blanks anywhere; "-y+x+1/2",
    /// "1/2-y" and "2*x" are read too. Text that is not an operator throws
    /// std::invalid_argument.
    explicit CrystalSymmetryOperator(const std::string& triplet);

    /// Reads the triplet form into `result`; false, with `result` untouched, if it is not one.
    static bool parse(const std::string& triplet, CrystalSymmetryOperator& result);

    const Matrix<int, 3, 3>& rotation() const { return rotation_; }
    const Vector<double, 3>& translation() const { return translation_; }

    /// R p + t.
    Point apply(const Point& p) const {
        const Matrix<int, 3, 3>& r = rotation_;
        return Point(r(0, 0) * p[0] + r(0, 1) * p[1] + r(0, 2) * p[2] + translation_[0],
                     r(1, 0) * p[0] + r(1, 1) * p[1] + r(1, 2) * p[2] + translation_[1],
                     r(2, 0) * p[0] + r(2, 1) * p[1] + r(2, 2) * p[2] + translation_[2]);
    }

    /// The operation undone: R^-1, -R^-1 t.
    CrystalSymmetryOperator inverse() const;
    /// True for rotation I and translation exactly 0.
    bool is_identity() const;
    /// True when the rotation is the identity (a pure translation, centring included).
    bool is_translation() const;

    /// The triplet form, terms in the order x, y, z, then the constant as a
    /// fraction of denominator 2, 3, 4, 6, 8 or 12 ("+1/2", "-2/3"), a whole
    /// number ("+1"), or else the shortest decimal that reads back the same.
    std::string triplet() const;

    /// The triplet form.
    void print(std::ostream& os) const;
    void write(Archive& ar) const;
    /// Reads the layout above; a rotation that is not of determinant +-1 or a
    /// translation that is not finite throws std::runtime_error.
    void read(Archive& ar);

private:
    Matrix<int, 3, 3> rotation_;
    Vector<double, 3> translation_;  // fractional
};

/// Exactly equal rotations and translations.
bool operator==(const CrystalSymmetryOperator& a, const CrystalSymmetryOperator& b);
bool operator!=(const CrystalSymmetryOperator& a, const CrystalSymmetryOperator& b);
/// Equal rotations, and translations equal to within `tolerance` in each
/// component (strictly less). Translations are compared as they stand, not
/// modulo lattice vectors: "x+1,y,z" is not "x,y,z".
bool equals(const CrystalSymmetryOperator& a, const CrystalSymmetryOperator& b, double tolerance = 1e-07);
/// The composition: b first, then a. R = Ra Rb, t = Ra tb + ta.
CrystalSymmetryOperator operator*(const CrystalSymmetryOperator& a, const CrystalSymmetryOperator& b);
/// R p + t.
inline Point operator*(const CrystalSymmetryOperator& s, const Point& p) { return s.apply(p); }

/// Text for one fractional number as in a triplet: a whole number or a
/// fraction of denominator 2, 3, 4, 6, 8 or 12 when the number is one to
/// within 1e-9, otherwise the shortest decimal that reads back exactly.
std::string fraction_text(double value);

std::ostream& operator<<(std::ostream& os, const CrystalSymmetryOperator& s);
Archive& operator<<(Archive& ar, const CrystalSymmetryOperator& s);
Archive& operator>>(Archive& ar, CrystalSymmetryOperator& s);

template <>
struct ArchiveMinSize<CrystalSymmetryOperator> {
    static constexpr std::size_t value = 33;
};

}  // namespace molcryst

#endif

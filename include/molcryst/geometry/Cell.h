// Cell: the unit cell of a crystal, its three edge vectors in orthogonal
// (Angstrom) space and its spacegroup. It converts between fractional and
// orthogonal coordinates and answers whether two fractional points are
// images of each other under the symmetry of the crystal.
//
// A Cell is made from its edge vectors in any orientation, or from a, b, c,
// alpha, beta, gamma in the standard orientation: a along x, b in the xy
// plane, c completing a right-handed set.
//
// Archive layout: the a, b and c edge vectors (nine doubles), then the
// spacegroup. The conversion matrices are derived again on reading.
#ifndef MOLCRYST_GEOMETRY_CELL_H
#define MOLCRYST_GEOMETRY_CELL_H

#include <iosfwd>

#include "molcryst/geometry/Angle.h"
#include "molcryst/geometry/CrystalSymmetryTransformation.h"
#include "molcryst/geometry/Spacegroup.h"

namespace molcryst {

/// Cell edges, conversion matrices and spacegroup.
class Cell {
public:
    /// The unit cube in P1 (see Spacegroup()): fractional and orthogonal
    /// coordinates coincide.
    Cell();
    /// The cell with these edge vectors (Angstrom). Axes that span no volume
    /// throw std::invalid_argument.
    Cell(const Vector<double, 3>& a, const Vector<double, 3>& b, const Vector<double, 3>& c,
         const Spacegroup& spacegroup = Spacegroup());
    /// The cell with these edge lengths (Angstrom) and angles in the standard
    /// orientation. Lengths that are not positive, or angles that close no
    /// cell, throw std::invalid_argument.
    Cell(double a, double b, double c, const Angle& alpha, const Angle& beta, const Angle& gamma,
         const Spacegroup& spacegroup = Spacegroup());

    const Vector<double, 3>& a_axis() const { return a_axis_; }
    const Vector<double, 3>& b_axis() const { return b_axis_; }
    const Vector<double, 3>& c_axis() const { return c_axis_; }
    /// The reciprocal axes, a* = (b x c) / V and so on: the rows of the
    /// orthogonal-to-fractional matrix.
    Vector<double, 3> a_star_axis() const { return frac_from_orth_.row(1); }
    Vector<double, 3> b_star_axis() const { return frac_from_orth_.row(2); }
    Vector<double, 3> c_star_axis() const { return frac_from_orth_.row(3); }

    double a() const { return a_axis_.length(); }
    double b() const { return b_axis_.length(); }
    double c() const { return c_axis_.length(); }
    /// The angle between b and c.
    Angle alpha() const;
    /// The angle between a and c.
    Angle beta() const;
    /// The angle between a and b.
    Angle gamma() const;
    /// Cubic Angstrom, positive whatever the handedness of the axes.
    double volume() const;

    /// Fractional to orthogonal: the matrix whose columns are the edge vectors.
    const Matrix<double, 3, 3>& orth_from_frac() const { return orth_from_frac_; }
    /// Orthogonal to fractional: the inverse.
    const Matrix<double, 3, 3>& frac_from_orth() const { return frac_from_orth_; }
    Point orthogonal(const Point& fractional) const { return Point(orth_from_frac_ * fractional); }
    Point fractional(const Point& orthogonal) const { return Point(frac_from_orth_ * orthogonal); }

    const Spacegroup& spacegroup() const { return spacegroup_; }

    /// Whether some operator of the spacegroup, with some lattice
    /// translation, carries the fractional point `p` onto `q`, every
    /// component within `tolerance` (strictly less). Allocates nothing.
    bool is_symmetry_related(const Point& p, const Point& q, double tolerance = 1e-07) const;
    /// The transformation that does it: the first operator in the
    /// spacegroup's order that fits, with the nearest lattice translation;
    /// a null handle when there is none.
    THandle<CrystalSymmetryTransformation> symmetry_relation(const Point& p, const Point& q,
                                                             double tolerance = 1e-07) const;

    /// "a 10 b 12 c 8 alpha 90 beta 100 gamma 90 " then the spacegroup's print.
    void print(std::ostream& os) const;
    void write(Archive& ar) const;
    /// Reads the layout above; axes that span no volume throw std::runtime_error.
    void read(Archive& ar);

private:
    /// Index of the first operator relating p to q, with the lattice
    /// translation in `lattice`; -1 if none.
    int find_relation(const Point& p, const Point& q, double tolerance, Vector<int, 3>& lattice) const;
    static bool spans_volume(const Vector<double, 3>& a, const Vector<double, 3>& b, const Vector<double, 3>& c);
    void derive_matrices();
    void derive_operator_table();

    Vector<double, 3> a_axis_;
    Vector<double, 3> b_axis_;
    Vector<double, 3> c_axis_;
    Matrix<double, 3, 3> orth_from_frac_;
    Matrix<double, 3, 3> frac_from_orth_;
    Spacegroup spacegroup_;
    // Each operator as twelve doubles, rotation row by row and translation,
    // in the spacegroup's order: the relation search reads them without
    // converting integers.
    std::vector<double> operator_table_;
};

typedef THandle<Cell> HCell;

/// Same edge vectors and the same spacegroup.
bool operator==(const Cell& a, const Cell& b);
bool operator!=(const Cell& a, const Cell& b);
std::ostream& operator<<(std::ostream& os, const Cell& c);
Archive& operator<<(Archive& ar, const Cell& c);
Archive& operator>>(Archive& ar, Cell& c);

}  // namespace molcryst

#endif

// AtomicDisplacementParameters: the anisotropic displacement tensor of an
// atom, held as U(cif) with uncertainties, and its conversions: to the
// equivalent isotropic value and to the thermal ellipsoid at a probability.
//
// Archive layout: the six elements u11, u22, u33, u12, u13, u23 in that
// order, each an UncertainValue; no count.
#ifndef MOLCRYST_MOLECULE_ATOMICDISPLACEMENTPARAMETERS_H
#define MOLCRYST_MOLECULE_ATOMICDISPLACEMENTPARAMETERS_H

#include <iosfwd>

#include "molcryst/geometry/Array.h"
#include "molcryst/geometry/Cell.h"
#include "molcryst/geometry/Ellipsoid.h"
#include "molcryst/geometry/UncertainValue.h"
#include "molcryst/support/THandle.h"

namespace molcryst {

class Site;

/// The symmetric tensor U(cif) by its six independent elements.
class AtomicDisplacementParameters {
public:
    /// Position of each element in the array, in archive and print order.
    enum TensorElement { u11 = 0, u22 = 1, u33 = 2, u12 = 3, u13 = 4, u23 = 5 };

    /// All six elements 0.
    AtomicDisplacementParameters() = default;
    explicit AtomicDisplacementParameters(const Array<UncertainValue, 6>& u) : u_(u) {}
    AtomicDisplacementParameters(const UncertainValue& u11, const UncertainValue& u22, const UncertainValue& u33,
                                 const UncertainValue& u12, const UncertainValue& u13, const UncertainValue& u23);
    /// The isotropic tensor u times the identity in Cartesian space, carried
    /// into U(cif) for `cell`. The conversion works on the bare value; the
    /// elements carry no uncertainty.
    AtomicDisplacementParameters(const UncertainValue& u_iso, const Cell& cell);
    AtomicDisplacementParameters(const AtomicDisplacementParameters&) = default;
    AtomicDisplacementParameters& operator=(const AtomicDisplacementParameters&) = default;
    virtual ~AtomicDisplacementParameters();

    virtual void write(Archive& ar) const;
    virtual void read(Archive& ar);
    /// "u11 0.0123(4) u22 ... u23 ...".
    virtual void print(std::ostream& os) const;

    /// Position of element (i, j), indices 1 to 3 in either order. An index
    /// outside 1 to 3 throws std::out_of_range.
    static TensorElement indices_to_enum(int i, int j);

    /// The value of element (i, j), 1 to 3 in either order.
    double u(int i, int j) const { return u_[indices_to_enum(i, j)].value(); }
    Uncertainty u_uncertainty(int i, int j) const { return u_[indices_to_enum(i, j)].uncertainty(); }
    void set_u(int i, int j, const UncertainValue& value) { u_[indices_to_enum(i, j)] = value; }
    /// The six elements in archive order.
    const Array<UncertainValue, 6>& u() const { return u_; }

    /// The symmetric matrix of the values.
    Matrix<double, 3, 3> u_matrix() const;
    /// U(eq): a third of the trace of the Cartesian tensor.
    double u_equivalent(const Cell& cell) const;
    /// The thermal ellipsoid about the site's orthogonal point within which
    /// the atom lies with `probability` percent, 0.5001 to 99.4999. A
    /// probability outside throws std::invalid_argument; a tensor that is
    /// not positive definite, std::runtime_error with the offending eigenvalue.
    Ellipsoid ellipsoid(const Cell& cell, const Site& site, double probability) const;

    /// The parameters of the symmetry image under `rotation` (acting on
    /// fractional coordinates): U* becomes R U* R^T. Uncertainties follow as
    /// for independent elements.
    AtomicDisplacementParameters transformed(const Matrix<int, 3, 3>& rotation, const Cell& cell) const;

    /// Entry p (1 to 99) of the level table: the radius within which a
    /// three-dimensional standard normal variable lies with probability p
    /// percent. Outside 1 to 99 std::out_of_range.
    static double probability_scale(int percent);

private:
    Array<UncertainValue, 6> u_;
};

typedef THandle<AtomicDisplacementParameters> HAtomicDisplacementParameters;

/// Values and uncertainties equal.
bool operator==(const AtomicDisplacementParameters& a, const AtomicDisplacementParameters& b);
bool operator!=(const AtomicDisplacementParameters& a, const AtomicDisplacementParameters& b);
/// Every value within `tolerance` (strictly less); uncertainties are not compared.
bool equals(const AtomicDisplacementParameters& a, const AtomicDisplacementParameters& b, double tolerance);
/// A copy with the bare values.
AtomicDisplacementParameters strip_uncertainties(const AtomicDisplacementParameters& a);
std::ostream& operator<<(std::ostream& os, const AtomicDisplacementParameters& a);

/// diag(|a*|, |b*|, |c*|).
Matrix<double, 3, 3> create_N_matrix(const Cell& cell);
/// N U N^T.
Matrix<double, 3, 3> u_cif_to_u_star(const Matrix<double, 3, 3>& u, const Cell& cell);
/// N^-1 U* N^-T.
Matrix<double, 3, 3> u_star_to_u_cif(const Matrix<double, 3, 3>& u_star, const Cell& cell);
/// A U* A^T, A the fractional-to-orthogonal matrix.
Matrix<double, 3, 3> u_star_to_u_cart(const Matrix<double, 3, 3>& u_star, const Cell& cell);
/// A^-1 U A^-T.
Matrix<double, 3, 3> u_cart_to_u_star(const Matrix<double, 3, 3>& u_cart, const Cell& cell);
/// u times the identity.
Matrix<double, 3, 3> u_iso_to_u_cart(double u);

}  // namespace molcryst

#endif

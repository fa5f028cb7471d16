// CrystalSymmetryTransformation: a spacegroup operator followed by a lattice
// translation, x -> R x + t + n, the full description of where a symmetry
// image of an atom lies in the crystal.
//
// Print form: the triplet with the whole translation t + n ("-x+3/2,y,-z").
// Archive layout (45 bytes): the operator's layout, then n as three ints.
#ifndef MOLCRYST_GEOMETRY_CRYSTALSYMMETRYTRANSFORMATION_H
#define MOLCRYST_GEOMETRY_CRYSTALSYMMETRYTRANSFORMATION_H

#include <iosfwd>

#include "molcryst/geometry/CrystalSymmetryOperator.h"
#include "molcryst/support/THandle.h"

namespace molcryst {

/// An operator with an added lattice translation.
class CrystalSymmetryTransformation {
public:
    /// The identity with no lattice translation.
    CrystalSymmetryTransformation() = default;
    CrystalSymmetryTransformation(const CrystalSymmetryOperator& op, const Vector<int, 3>& lattice_translation)
        : operator_(op), lattice_translation_(lattice_translation) {}
    explicit CrystalSymmetryTransformation(const CrystalSymmetryOperator& op) : operator_(op) {}

    const CrystalSymmetryOperator& symmetry_operator() const { return operator_; }
    const Matrix<int, 3, 3>& rotation() const { return operator_.rotation(); }
    /// The lattice translation n added to the operator.
    const Vector<int, 3>& lattice_translation() const { return lattice_translation_; }
    /// The whole translation: the operator's fractional part plus n.
    Vector<double, 3> translation() const {
        return operator_.translation() + Vector<double, 3>(lattice_translation_);
    }

    /// R p + (t + n).
    Point apply(const Point& p) const;

    /// The transformation undone. Its operator is the inverse operator
    /// (R^-1, -R^-1 t) and its lattice translation -R^-1 n, so that a
    /// transformation and its inverse compose to the identity.
    CrystalSymmetryTransformation inverse() const;

    /// True when the rotation is the identity: the image is the same object
    /// moved by a lattice or centring translation.
    bool is_translational() const { return operator_.is_translation(); }
    /// True when the rotation is the identity and the whole translation is 0.
    bool is_identity() const;

    /// The triplet with the whole translation.
    void print(std::ostream& os) const;
    void write(Archive& ar) const;
    void read(Archive& ar);

private:
    CrystalSymmetryOperator operator_;
    Vector<int, 3> lattice_translation_;
};

typedef THandle<CrystalSymmetryTransformation> HCrystalSymmetryTransformation;

/// The same operator and the same lattice translation.
bool operator==(const CrystalSymmetryTransformation& a, const CrystalSymmetryTransformation& b);
bool operator!=(const CrystalSymmetryTransformation& a, const CrystalSymmetryTransformation& b);
/// R p + (t + n).
inline Point operator*(const CrystalSymmetryTransformation& s, const Point& p) { return s.apply(p); }
/// The composition: b first, then a.
CrystalSymmetryTransformation operator*(const CrystalSymmetryTransformation& a,
                                        const CrystalSymmetryTransformation& b);

std::ostream& operator<<(std::ostream& os, const CrystalSymmetryTransformation& s);
Archive& operator<<(Archive& ar, const CrystalSymmetryTransformation& s);
Archive& operator>>(Archive& ar, CrystalSymmetryTransformation& s);

template <>
struct ArchiveMinSize<CrystalSymmetryTransformation> {
    static constexpr std::size_t value = 45;
};

}  // namespace molcryst

#endif

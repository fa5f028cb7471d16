#include "molcryst/geometry/CrystalSymmetryTransformation.h"

#include <ostream>

namespace molcryst {

Point CrystalSymmetryTransformation::apply(const Point& p) const {
    const Matrix<int, 3, 3>& r = operator_.rotation();
    const Vector<double, 3> t = translation();
    return Point(r(0, 0) * p[0] + r(0, 1) * p[1] + r(0, 2) * p[2] + t[0],
                 r(1, 0) * p[0] + r(1, 1) * p[1] + r(1, 2) * p[2] + t[1],
                 r(2, 0) * p[0] + r(2, 1) * p[1] + r(2, 2) * p[2] + t[2]);
}

CrystalSymmetryTransformation CrystalSymmetryTransformation::inverse() const {
    const CrystalSymmetryOperator op = operator_.inverse();
    return CrystalSymmetryTransformation(op, -(op.rotation() * lattice_translation_));
}

bool CrystalSymmetryTransformation::is_identity() const {
    const Vector<double, 3> t = translation();
    return is_translational() && t[0] == 0.0 && t[1] == 0.0 && t[2] == 0.0;
}

void CrystalSymmetryTransformation::print(std::ostream& os) const {
    os << CrystalSymmetryOperator(operator_.rotation(), translation()).triplet();
}

void CrystalSymmetryTransformation::write(Archive& ar) const {
    operator_.write(ar);
    ar << lattice_translation_;
}

void CrystalSymmetryTransformation::read(Archive& ar) {
    CrystalSymmetryOperator op;
    op.read(ar);
    Archive::Field field(ar, "CrystalSymmetryTransformation::read lattice translation");
    Vector<int, 3> lattice;
    ar >> lattice;
    operator_ = op;
    lattice_translation_ = lattice;
}

bool operator==(const CrystalSymmetryTransformation& a, const CrystalSymmetryTransformation& b) {
    return a.symmetry_operator() == b.symmetry_operator() && a.lattice_translation() == b.lattice_translation();
}

bool operator!=(const CrystalSymmetryTransformation& a, const CrystalSymmetryTransformation& b) { return !(a == b); }

CrystalSymmetryTransformation operator*(const CrystalSymmetryTransformation& a,
                                        const CrystalSymmetryTransformation& b) {
    // a(b(x)) = Ra (Rb x + tb + nb) + ta + na: the operators compose, and the
    // lattice parts carry through Ra.
    return CrystalSymmetryTransformation(a.symmetry_operator() * b.symmetry_operator(),
                                         a.rotation() * b.lattice_translation() + a.lattice_translation());
}

std::ostream& operator<<(std::ostream& os, const CrystalSymmetryTransformation& s) {
    s.print(os);
    return os;
}

Archive& operator<<(Archive& ar, const CrystalSymmetryTransformation& s) {
    s.write(ar);
    return ar;
}

Archive& operator>>(Archive& ar, CrystalSymmetryTransformation& s) {
    s.read(ar);
    return ar;
}

}  // namespace molcryst

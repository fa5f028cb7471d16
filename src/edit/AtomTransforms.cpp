#include "molcryst/edit/AtomTransforms.h"

#include "molcryst/molecule/Site.h"

namespace molcryst {

namespace {
// The unit cube: the orthogonal moves keep the fractional point equal to the orthogonal one.
const Cell& unit_cell() {
    static const Cell cell;
    return cell;
}
}  // namespace

void AtomMatrixTransform::operator()(const HAtom& atom) const {
    if (!atom->has_site()) return;
    const HSite site = atom->site();
    site->set_orth(Point(*matrix_ * site->orth()), unit_cell());
}

void AtomTranslation::operator()(const HAtom& atom) const {
    if (!atom->has_site()) return;
    const HSite site = atom->site();
    site->set_orth(Point(site->orth() + translation_), unit_cell());
}

void AtomProperRotation::operator()(const HAtom& atom) const {
    if (!atom->has_site()) return;
    const HSite site = atom->site();
    site->set_orth(Point(rotation_ * site->orth()), unit_cell());
}

void AtomCrystalSymmetryTransformation::operator()(const HAtom& atom) const {
    if (!atom->has_site()) return;
    const HSite site = atom->site();
    const Matrix<int, 3, 3>& r = transformation_.rotation();
    const Point& f = site->frac();
    const Vector<double, 3> t = transformation_.translation();
    Point moved;
    for (int i = 0; i < 3; ++i) moved[i] = r(i, 0) * f[0] + r(i, 1) * f[1] + r(i, 2) * f[2] + t[i];
    site->set_frac(moved, cell_);
}

}  // namespace molcryst

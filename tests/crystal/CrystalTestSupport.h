// Test helpers for the crystal tests: molecules written at fractional
// coordinates, cells of the shared spacegroups, and mapping lists read back
// as text.
#ifndef MOLCRYST_TESTS_CRYSTAL_CRYSTALTESTSUPPORT_H
#define MOLCRYST_TESTS_CRYSTAL_CRYSTALTESTSUPPORT_H

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "common/Text.h"
#include "geometry/SymmetryTestGroups.h"
#include "molcryst/crystal/CrystalSymmetryMapping.h"
#include "molcryst/geometry/Cell.h"
#include "molecule/TestMolecules.h"

namespace molcryst {
namespace testing {

/// A cell of `s` with edges 10, 11, 12 A and the angles its system allows.
inline Cell cell_of(const Spacegroup& s) {
    const Angle right = Angle::from_degrees(90);
    switch (s.system()) {
        case Spacegroup::Triclinic:
            return Cell(10, 11, 12, Angle::from_degrees(80), Angle::from_degrees(95), Angle::from_degrees(100), s);
        case Spacegroup::Monoclinic:
            return Cell(10, 11, 12, right, Angle::from_degrees(105), right, s);
        case Spacegroup::Trigonal:
        case Spacegroup::Hexagonal:
            return Cell(10, 10, 12, right, right, Angle::from_degrees(120), s);
        case Spacegroup::Cubic:
            return Cell(10, 10, 10, right, right, right, s);
        default:
            return Cell(10, 11, 12, right, right, right, s);
    }
}

/// A Molecule3d of the atoms "Element Label u v w; ..." at fractional
/// coordinates of `c` ("Element Label" for an atom without a site), and bonds "A-B ...".
inline HMolecule3d at_frac(const Cell& c, const std::string& atoms, const std::string& bonds = "") {
    HMolecule3d m = molecule(atoms, bonds);
    for (int i = 0; i < m->natoms(); ++i)
        if (m->atom(i)->has_site()) m->atom(i)->set_site(HSite(new Site(Site::frac(m->atom(i)->site()->orth(), c))));
    return m;
}

/// The fractional point of a mapping's target, rounded to 1e-6, as "(u, v, w)".
inline std::string place(const Point& p) {
    std::ostringstream out;
    auto r = [](double x) { return std::round(x * 1e6) / 1e6 + 0.0; };
    out << "(" << r(p[0]) << ", " << r(p[1]) << ", " << r(p[2]) << ")";
    return out.str();
}

/// Each list as "transformation: label place label place ...", one per line.
inline std::string lists_text(const std::vector<Hvector_HCrystalSymmetryMapping>& lists) {
    std::ostringstream out;
    for (const Hvector_HCrystalSymmetryMapping& list : lists) {
        out << (list->empty() ? std::string("(empty)") : printed((*list)[0]->transformation())) << ":";
        for (const HCrystalSymmetryMapping& m : *list)
            out << " " << m->target()->label() << " " << place(m->target()->site()->frac());
        out << "\n";
    }
    return out.str();
}

}  // namespace testing
}  // namespace molcryst

#endif

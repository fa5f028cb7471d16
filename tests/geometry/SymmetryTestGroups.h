// Spacegroups the symmetry tests share, with their operators in the order of
// the International Tables.
#ifndef MOLCRYST_TESTS_GEOMETRY_SYMMETRYTESTGROUPS_H
#define MOLCRYST_TESTS_GEOMETRY_SYMMETRYTESTGROUPS_H

#include "molcryst/geometry/Spacegroup.h"

namespace molcryst_test {

inline molcryst::Spacegroup p_1bar() {
    return molcryst::Spacegroup("P-1", 2, molcryst::Spacegroup::Triclinic,
                                std::vector<std::string>{"x,y,z", "-x,-y,-z"});
}

inline molcryst::Spacegroup p21_c() {
    return molcryst::Spacegroup("P21/c", 14, molcryst::Spacegroup::Monoclinic,
                                std::vector<std::string>{"x,y,z", "-x,y+1/2,-z+1/2", "-x,-y,-z", "x,-y+1/2,z+1/2"});
}

inline molcryst::Spacegroup c2_c() {
    return molcryst::Spacegroup("C2/c", 15, molcryst::Spacegroup::Monoclinic,
                                std::vector<std::string>{"x,y,z", "-x,y,-z+1/2", "-x,-y,-z", "x,-y,z+1/2",
                                                         "x+1/2,y+1/2,z", "-x+1/2,y+1/2,-z+1/2",
                                                         "-x+1/2,-y+1/2,-z", "x+1/2,-y+1/2,z+1/2"});
}

/// Pm-3m, 48 operators, generated from a fourfold axis, a threefold axis and the inversion.
inline molcryst::Spacegroup pm_3m() {
    using molcryst::CrystalSymmetryOperator;
    return molcryst::Spacegroup::generate(
        "Pm-3m", 221, molcryst::Spacegroup::Cubic,
        {CrystalSymmetryOperator("-y,x,z"), CrystalSymmetryOperator("z,x,y"), CrystalSymmetryOperator("-x,-y,-z")});
}

}  // namespace molcryst_test

#endif

// Spacegroups the symmetry tests share, with their operators in the order of
// the International Tables.
#ifndef MOLCRYST_TESTS_GEOMETRY_SYMMETRYTESTGROUPS_H
#define MOLCRYST_TESTS_GEOMETRY_SYMMETRYTESTGROUPS_H

#include <string>
#include <vector>

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

inline molcryst::Spacegroup p212121() {
    return molcryst::Spacegroup("P212121", 19, molcryst::Spacegroup::Orthorhombic,
                                std::vector<std::string>{"x,y,z", "-x+1/2,-y,z+1/2", "-x,y+1/2,-z+1/2",
                                                         "x+1/2,-y+1/2,-z"});
}

inline molcryst::Spacegroup pbca() {
    return molcryst::Spacegroup("Pbca", 61, molcryst::Spacegroup::Orthorhombic,
                                std::vector<std::string>{"x,y,z", "-x+1/2,-y,z+1/2", "-x,y+1/2,-z+1/2",
                                                         "x+1/2,-y+1/2,-z", "-x,-y,-z", "x+1/2,y,-z+1/2",
                                                         "x,-y+1/2,z+1/2", "-x+1/2,y+1/2,z"});
}

/// R-3 in hexagonal axes, 18 operators: the six of -3 and the two rhombohedral centrings.
inline molcryst::Spacegroup r_3_hexagonal() {
    std::vector<std::string> triplets;
    const char* const centrings[3][3] = {{"", "", ""}, {"+2/3", "+1/3", "+1/3"}, {"+1/3", "+2/3", "+2/3"}};
    const char* const rotations[6][3] = {{"x", "y", "z"},    {"-y", "x-y", "z"},  {"-x+y", "-x", "z"},
                                         {"-x", "-y", "-z"}, {"y", "-x+y", "-z"}, {"x-y", "x", "-z"}};
    for (const auto& t : centrings)
        for (const auto& r : rotations)
            triplets.push_back(std::string(r[0]) + t[0] + "," + r[1] + t[1] + "," + r[2] + t[2]);
    return molcryst::Spacegroup("R-3", 148, molcryst::Spacegroup::Trigonal, triplets);
}

/// Fm-3m, 192 operators: Pm-3m's generators and the two face centrings.
inline molcryst::Spacegroup fm_3m() {
    using molcryst::CrystalSymmetryOperator;
    return molcryst::Spacegroup::generate(
        "Fm-3m", 225, molcryst::Spacegroup::Cubic,
        {CrystalSymmetryOperator("-y,x,z"), CrystalSymmetryOperator("z,x,y"), CrystalSymmetryOperator("-x,-y,-z"),
         CrystalSymmetryOperator("x,y+1/2,z+1/2"), CrystalSymmetryOperator("x+1/2,y,z+1/2")});
}

}  // namespace molcryst_test

#endif

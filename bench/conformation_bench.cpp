// Torsion setting on alkane chains: one torsion set on a chain of 200 atoms
// (C66H134) about bonds that leave sides of different sizes to turn, and on
// chains of growing length about a bond near one end, so that the cost is
// seen to follow the side that moves, not the molecule. Also a conformation
// of 10^4 torsions applied at once, and a stored geometry restored.
#include <benchmark/benchmark.h>

#include <string>

#include <molcryst/molcryst.h>

using namespace molcryst;

namespace {

/// A zigzag CnH2n+2; carbons C0.., each with two hydrogens above and below
/// the plane (and one more at each end).
HMolecule alkane(int ncarbons) {
    HMolecule m(new Molecule3d());
    for (int i = 0; i < ncarbons; ++i)
        m->add(HAtom(new Atom3d(Element::C, "C" + std::to_string(i), HSite(new Site(Point(1.26 * i, 0.89 * (i % 2), 0))))));
    for (int i = 1; i < ncarbons; ++i) m->add(HBond(new Bond3d(SINGLE_BOND)), i - 1, i);
    for (int i = 0; i < ncarbons; ++i) {
        const double y = i % 2 ? 1.5 : -0.6;
        const int nh = i == 0 || i == ncarbons - 1 ? 3 : 2;
        for (int k = 0; k < nh; ++k) {
            const double x = 1.26 * i + (k == 2 ? (i == 0 ? -0.9 : 0.9) : 0.0);
            const double z = k == 2 ? 0.0 : (k == 0 ? 0.9 : -0.9);
            m->add(HAtom(new Atom3d(Element::H, "H", HSite(new Site(Point(x, k == 2 ? 0.89 * (i % 2) : y, z))))));
            m->add(HBond(new Bond3d(SINGLE_BOND)), i, m->natoms() - 1);
        }
    }
    return m;
}

/// The torsion C(k-1)-C(k)-C(k+1)-C(k+2).
TorsionAngleSetting about_bond(const HMolecule& m, int k, double degrees) {
    return TorsionAngleSetting(m, k - 1, k, k + 1, k + 2, Angle::from_degrees(degrees));
}

// One torsion on C66H134 about bond k: the smaller side holds 3k + 4 atoms
// (up to the middle of the chain).
void BM_SetTorsion200(benchmark::State& state) {
    const HMolecule m = alkane(66);
    const int k = static_cast<int>(state.range(0));
    const ConformationSetting setting(m, HCell());
    const TorsionAngleSetting a = about_bond(m, k, 60.0), b = about_bond(m, k, 180.0);
    bool flip = false;
    for (auto _ : state) {
        setting.set_torsion(flip ? a : b);
        flip = !flip;
    }
    state.counters["moved"] = 3 * k + 4;
}
BENCHMARK(BM_SetTorsion200)->Arg(1)->Arg(5)->Arg(20)->Arg(32);

// A torsion about bond 2 (10 atoms turn) on chains of growing length.
void BM_SetTorsionNearEnd(benchmark::State& state) {
    const HMolecule m = alkane(static_cast<int>(state.range(0)));
    const ConformationSetting setting(m, HCell());
    const TorsionAngleSetting a = about_bond(m, 2, 60.0), b = about_bond(m, 2, 180.0);
    bool flip = false;
    for (auto _ : state) {
        setting.set_torsion(flip ? a : b);
        flip = !flip;
    }
    state.counters["atoms"] = m->natoms();
}
BENCHMARK(BM_SetTorsionNearEnd)->Arg(66)->Arg(666)->Arg(6666);

// 10^4 torsions in one edit on C66H134, cycling over every rotatable C-C bond.
void BM_Apply10000Torsions(benchmark::State& state) {
    const HMolecule m = alkane(66);
    Hvector_HTorsionAngleSetting torsions(new vector_HTorsionAngleSetting());
    for (int i = 0; i < 10000; ++i) {
        const int k = 1 + i % 63;
        torsions->push_back(HTorsionAngleSetting(new TorsionAngleSetting(about_bond(m, k, i % 2 ? 60.0 : 180.0))));
    }
    const ConformationSetting setting(m, torsions, HCell());
    const StoredGeometry start(m);
    for (auto _ : state) {
        setting.apply();
        start.apply();
    }
}
BENCHMARK(BM_Apply10000Torsions)->Unit(benchmark::kMillisecond);

// Restoring every site of C66H134 from a stored geometry.
void BM_StoredGeometryApply200(benchmark::State& state) {
    const HMolecule m = alkane(66);
    const StoredGeometry start(m);
    for (auto _ : state) start.apply();
}
BENCHMARK(BM_StoredGeometryApply200);

}  // namespace

// Costs of growing an asymmetric unit: packing boxes by centroid and by any
// atom, the removal of images on places already taken, and the bonds between
// images.
//
// Molecules are random walks of 1.5 A steps (C, N, O and H in turn, each atom
// bonded to the one before), placed in general position. Fm-3m packs one
// 60-atom molecule into its unit cell (192 images); P21/c packs four
// molecules of 50 atoms into boxes of 1 to 64 cells.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include <molcryst/molcryst.h>

using namespace molcryst;

namespace {

HMolecule walk(const Cell& cell, const Point& start_frac, int n, unsigned seed) {
    std::mt19937 random(seed);
    std::normal_distribution<double> step(0.0, 1.0);
    const Element elements[] = {Element::C, Element::C, Element::N, Element::O, Element::H};
    HMolecule m(new Molecule3d());
    Point p = cell.orthogonal(start_frac);
    for (int i = 0; i < n; ++i) {
        HSite site(new Site(Site::orth(p, cell)));
        m->add(HAtom(new Atom3d(elements[i % 5], "A" + std::to_string(i + 1), site)));
        if (i > 0) m->add(HBond(new Bond3d(SINGLE_BOND)), i - 1, i);
        Vector<double, 3> d(step(random), step(random), step(random));
        p = Point(p + d * (1.5 / d.length()));
    }
    return m;
}

Spacegroup fm_3m() {
    return Spacegroup::generate("Fm-3m", 225, Spacegroup::Cubic,
                                {CrystalSymmetryOperator("-y,x,z"), CrystalSymmetryOperator("z,x,y"),
                                 CrystalSymmetryOperator("-x,-y,-z"), CrystalSymmetryOperator("x,y+1/2,z+1/2"),
                                 CrystalSymmetryOperator("x+1/2,y,z+1/2")});
}

Spacegroup p21_c() {
    return Spacegroup("P21/c", 14, Spacegroup::Monoclinic,
                      std::vector<std::string>{"x,y,z", "-x,y+1/2,-z+1/2", "-x,-y,-z", "x,-y+1/2,z+1/2"});
}

CrystalMaker cubic_maker() {
    const Cell cell(30, 30, 30, Angle::from_degrees(90), Angle::from_degrees(90), Angle::from_degrees(90), fm_3m());
    Hvector_HMolecule list(new vector_HMolecule{walk(cell, Point(0.13, 0.21, 0.07), 60, 1)});
    return CrystalMaker(cell, list, nullptr, nullptr);
}

CrystalMaker monoclinic_maker() {
    const Cell cell(14, 16, 18, Angle::from_degrees(90), Angle::from_degrees(100), Angle::from_degrees(90), p21_c());
    Hvector_HMolecule list(new vector_HMolecule{
        walk(cell, Point(0.1, 0.1, 0.1), 50, 2), walk(cell, Point(0.6, 0.15, 0.3), 50, 3),
        walk(cell, Point(0.3, 0.6, 0.2), 50, 4), walk(cell, Point(0.7, 0.7, 0.4), 50, 5)});
    return CrystalMaker(cell, list, nullptr, nullptr);
}

void report(benchmark::State& state, const Crystal& crystal) {
    state.counters["images"] = crystal.nmolecules();
    state.counters["atoms"] = crystal.natoms();
    state.counters["images/s"] =
        benchmark::Counter(crystal.nmolecules(), benchmark::Counter::kIsIterationInvariantRate);
}

void BM_PackFm3mUnitCell(benchmark::State& state) {
    const CrystalMaker maker = cubic_maker();
    const Box unit(Point(0, 0, 0), Point(1, 1, 1));
    HCrystal crystal;
    for (auto _ : state) {
        crystal = CrystalMakerHelpers::create_packed_crystal(maker, unit);
        benchmark::DoNotOptimize(crystal.unhand());
    }
    report(state, *crystal);
}
BENCHMARK(BM_PackFm3mUnitCell)->Unit(benchmark::kMillisecond);

// Any atom inside the unit cell, with the removal of taken places.
void BM_AnyAtomFm3mUnitCell(benchmark::State& state) {
    const CrystalMaker maker = cubic_maker();
    const FractionalSolid unit(THandle<Solid>(new Box(Point(0, 0, 0), Point(1, 1, 1))));
    HCrystal crystal;
    for (auto _ : state) {
        crystal = maker.create_crystal(IfAnyIncluded<HAtom>(), unit);
        benchmark::DoNotOptimize(crystal.unhand());
    }
    report(state, *crystal);
}
BENCHMARK(BM_AnyAtomFm3mUnitCell)->Unit(benchmark::kMillisecond);

// Boxes of 1, 8 and 64 cells.
void BM_PackP21cBox(benchmark::State& state) {
    const CrystalMaker maker = monoclinic_maker();
    const double edge = static_cast<double>(state.range(0));
    const Box box(Point(0, 0, 0), Point(edge, edge, edge));
    HCrystal crystal;
    for (auto _ : state) {
        crystal = CrystalMakerHelpers::create_packed_crystal(maker, box);
        benchmark::DoNotOptimize(crystal.unhand());
    }
    report(state, *crystal);
}
BENCHMARK(BM_PackP21cBox)->Arg(1)->Arg(2)->Arg(4)->Unit(benchmark::kMillisecond);

// Mapping lists of ten images each, one atom per mapping, on distinct
// random places: every claim is a lower-bound search and an insertion.
vector_Hvector_HCrystalSymmetryMapping scattered_mappings(int n) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> u(0.0, 4.0);
    vector_Hvector_HCrystalSymmetryMapping lists;
    for (int k = 0; k < n; ++k) {
        if (k % 10 == 0) lists.push_back(Hvector_HCrystalSymmetryMapping(new vector_HCrystalSymmetryMapping()));
        HAtom a(new Atom3d(Element::C, "C", HSite(new Site(Point(u(random), u(random), u(random))))));
        lists.back()->push_back(HCrystalSymmetryMapping(new AtomSymmetryMapping(a, a, CrystalSymmetryTransformation())));
    }
    return lists;
}

void BM_RemoveDuplicatePoints(benchmark::State& state) {
    const vector_Hvector_HCrystalSymmetryMapping lists = scattered_mappings(static_cast<int>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(remove_duplicate_points(lists, 1e-07).unhand());
}
BENCHMARK(BM_RemoveDuplicatePoints)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

// The same by insertion into one sorted vector, for comparison.
void BM_RemoveDuplicatePointsSortedVector(benchmark::State& state) {
    const vector_Hvector_HCrystalSymmetryMapping lists = scattered_mappings(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        std::vector<Point> sorted;
        vector_Hvector_HCrystalSymmetryMapping result;
        for (const Hvector_HCrystalSymmetryMapping& list : lists) {
            Hvector_HCrystalSymmetryMapping kept(new vector_HCrystalSymmetryMapping());
            for (const HCrystalSymmetryMapping& m : *list) {
                const Point& p = m->target()->site()->frac();
                auto at = std::lower_bound(sorted.begin(), sorted.end(), p, PointCompareXYZ());
                if (at != sorted.end() && equals(*at, p, 1e-07)) continue;
                sorted.insert(at, p);
                kept->push_back(m);
            }
            if (!kept->empty()) result.push_back(kept);
        }
        benchmark::DoNotOptimize(result.data());
    }
}
BENCHMARK(BM_RemoveDuplicatePointsSortedVector)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

std::vector<HAtom> packed_atoms(int cells) {
    const double edge = static_cast<double>(cells);
    HCrystal crystal = CrystalMakerHelpers::create_packed_crystal(monoclinic_maker(),
                                                                  Box(Point(0, 0, 0), Point(edge, edge, edge)));
    std::vector<HAtom> atoms;
    for (const HMolecule& m : *crystal->molecules())
        for (int i = 0; i < m->natoms(); ++i) atoms.push_back(m->atom(i));
    return atoms;
}

// Bonds among all atoms of packed P21/c boxes of 1, 8 and 64 cells.
void BM_BondedPairsGrid(benchmark::State& state) {
    const std::vector<HAtom> atoms = packed_atoms(static_cast<int>(state.range(0)));
    const BondDistanceLimit rule(0.4, false);
    std::size_t found = 0;
    for (auto _ : state) found = rule.bonded_pairs(atoms).size();
    state.counters["atoms"] = static_cast<double>(atoms.size());
    state.counters["bonds"] = static_cast<double>(found);
}
BENCHMARK(BM_BondedPairsGrid)->Arg(1)->Arg(2)->Arg(4)->Unit(benchmark::kMillisecond);

void BM_BondedPairsAllPairs(benchmark::State& state) {
    const std::vector<HAtom> atoms = packed_atoms(static_cast<int>(state.range(0)));
    const BondDistanceLimit rule(0.4, false);
    for (auto _ : state) {
        std::size_t found = 0;
        for (std::size_t i = 0; i < atoms.size(); ++i)
            for (std::size_t j = i + 1; j < atoms.size(); ++j) found += rule.is_a_bond(atoms[i], atoms[j]) ? 1 : 0;
        benchmark::DoNotOptimize(found);
    }
    state.counters["atoms"] = static_cast<double>(atoms.size());
}
BENCHMARK(BM_BondedPairsAllPairs)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

}  // namespace

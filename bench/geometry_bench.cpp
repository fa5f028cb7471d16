// Costs of the symmetry layer as crystal code calls it: the symmetry relation
// between two fractional points, tried for every atom pair, and the search for
// the symmetry images of a molecule in packing boxes of 1, 8 and 1000 cells.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <new>
#include <random>
#include <vector>

#include <molcryst/molcryst.h>

using namespace molcryst;

namespace {
std::uint64_t allocations = 0;
}  // namespace

// Every heap allocation of the program passes here, so that a benchmark can
// count those made inside its timed loop.
[[gnu::noinline]] void* operator new(std::size_t size) {
    ++allocations;
    if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* p) noexcept { std::free(p); }
[[gnu::noinline]] void operator delete(void* p, std::size_t) noexcept { std::free(p); }

namespace {

constexpr std::size_t pool_size = 1024;  // point pairs cycled through by the relation benchmarks

Angle deg(double d) { return Angle::from_degrees(d); }

// The three groups of the table: 1, 4 and 48 operators.
Spacegroup group(int which) {
    switch (which) {
        case 0:
            return Spacegroup();
        case 1:
            return Spacegroup("P21/c", 14, Spacegroup::Monoclinic,
                              std::vector<std::string>{"x,y,z", "-x,y+1/2,-z+1/2", "-x,-y,-z", "x,-y+1/2,z+1/2"});
        default:
            return Spacegroup::generate("Pm-3m", 221, Spacegroup::Cubic,
                                        {CrystalSymmetryOperator("-y,x,z"), CrystalSymmetryOperator("z,x,y"),
                                         CrystalSymmetryOperator("-x,-y,-z")});
    }
}

Cell cell_of(int which) { return Cell(10.0, 11.0, 12.0, deg(90), deg(which == 1 ? 100 : 90), deg(90), group(which)); }

// Pairs of fractional points. Related pairs take a random operator and
// lattice translation, so that on average half the operators are tried;
// unrelated pairs make every operator fail.
std::vector<std::pair<Point, Point> > pairs(const Cell& cell, bool related) {
    std::mt19937 random(2024);
    std::uniform_real_distribution<double> u(0.0, 1.0);
    std::uniform_int_distribution<int> lattice(-2, 2);
    const std::vector<CrystalSymmetryOperator>& ops = cell.spacegroup().operators();
    std::uniform_int_distribution<int> pick(0, static_cast<int>(ops.size()) - 1);
    std::vector<std::pair<Point, Point> > out;
    for (std::size_t i = 0; i < pool_size; ++i) {
        const Point p(u(random), u(random), u(random));
        Point q(u(random), u(random), u(random));
        if (related) {
            q = ops[static_cast<std::size_t>(pick(random))] * p;
            q += Vector<double, 3>(lattice(random), lattice(random), lattice(random));
        }
        out.push_back(std::make_pair(p, q));
    }
    return out;
}

void BM_IsSymmetryRelated(benchmark::State& state) {
    const Cell cell = cell_of(static_cast<int>(state.range(0)));
    const std::vector<std::pair<Point, Point> > pool = pairs(cell, state.range(1) != 0);
    std::size_t i = 0;
    std::uint64_t allocated = 0;
    for (auto _ : state) {
        const std::pair<Point, Point>& pq = pool[i++ % pool_size];
        const std::uint64_t before = allocations;
        benchmark::DoNotOptimize(cell.is_symmetry_related(pq.first, pq.second, 1e-7));
        allocated += allocations - before;
    }
    state.counters["allocs/call"] = benchmark::Counter(static_cast<double>(allocated) / state.iterations());
}
BENCHMARK(BM_IsSymmetryRelated)->ArgsProduct({{0, 1, 2}, {1, 0}})->ArgNames({"group", "related"});

void BM_SymmetryRelation(benchmark::State& state) {
    const Cell cell = cell_of(static_cast<int>(state.range(0)));
    const std::vector<std::pair<Point, Point> > pool = pairs(cell, state.range(1) != 0);
    std::size_t i = 0;
    for (auto _ : state) {
        const std::pair<Point, Point>& pq = pool[i++ % pool_size];
        benchmark::DoNotOptimize(cell.symmetry_relation(pq.first, pq.second, 1e-7));
    }
}
BENCHMARK(BM_SymmetryRelation)->ArgsProduct({{0, 1, 2}, {1, 0}})->ArgNames({"group", "related"});

// A molecule of 20 atoms within about 3 Angstrom of a point inside the cell.
std::vector<Point> molecule(const Cell& cell) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> u(-1.5, 1.5);
    std::vector<Point> atoms;
    const Point centre = cell.orthogonal(Point(0.3, 0.6, 0.2));
    for (int k = 0; k < 20; ++k) atoms.push_back(cell.fractional(Point(centre + Vector<double, 3>(u(random), u(random), u(random)))));
    return atoms;
}

// The packing box of n cells along each axis: 1, 8 or 1000 cells.
Box packing_box(int n) { return Box(Point(0, 0, 0), Point(n, n, n)).expand(0.001 / 10.0); }

void BM_FindTranslation(benchmark::State& state) {
    const Cell cell = cell_of(1);
    const std::vector<Point> atoms = molecule(cell);
    const Box box = packing_box(static_cast<int>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(find_translation(atoms, box));
}
BENCHMARK(BM_FindTranslation)->Arg(1)->Arg(2)->Arg(10)->ArgName("cells_per_edge");

void BM_FindSymmetryTransformationsAtoms(benchmark::State& state) {
    const Cell cell = cell_of(static_cast<int>(state.range(1)));
    const std::vector<Point> atoms = molecule(cell);
    const FractionalSolid region(THandle<Solid>(new Box(packing_box(static_cast<int>(state.range(0))))));
    std::size_t found = 0;
    for (auto _ : state) {
        const std::vector<CrystalSymmetryTransformation> t =
            find_symmetry_transformations(cell, atoms, region, SymmetryFunctions::AnyIncluded);
        found = t.size();
        benchmark::DoNotOptimize(t.data());
    }
    state.counters["images"] = static_cast<double>(found);
}
BENCHMARK(BM_FindSymmetryTransformationsAtoms)
    ->ArgsProduct({{1, 2, 10}, {1, 2}})
    ->ArgNames({"cells_per_edge", "group"})
    ->Unit(benchmark::kMicrosecond);

void BM_FindSymmetryTransformationsBox(benchmark::State& state) {
    const Cell cell = cell_of(static_cast<int>(state.range(1)));
    Box extent;
    for (const Point& p : molecule(cell)) extent.merge(p);
    const FractionalSolid from(THandle<Solid>(new Box(extent)));
    const FractionalSolid region(THandle<Solid>(new Box(packing_box(static_cast<int>(state.range(0))))));
    std::size_t found = 0;
    for (auto _ : state) {
        const std::vector<CrystalSymmetryTransformation> t =
            find_symmetry_transformations(cell, from, region, SymmetryFunctions::AnyIncluded);
        found = t.size();
        benchmark::DoNotOptimize(t.data());
    }
    state.counters["images"] = static_cast<double>(found);
}
BENCHMARK(BM_FindSymmetryTransformationsBox)
    ->ArgsProduct({{1, 2, 10}, {1, 2}})
    ->ArgNames({"cells_per_edge", "group"})
    ->Unit(benchmark::kMicrosecond);

}  // namespace

// Costs of contact searches and of merging molecules into a Crystal.
//
// Searches: a random molecular liquid of C, N, O and H at 0.1 atoms per
// cubic Angstrom, split into two molecules of n/2 atoms; one group search
// from all atoms of the first to all atoms of the second, keeping the
// strongest contact (in the all-contacts mode every contact records copies
// of both whole groups, so that the output itself grows as n^2 and would
// hide the search). The distance criterion reaches 3.5 A; the van der Waals
// one, with both ends restricted to C, N, O and H, reaches 3.4 + 0.1 A. The
// grid search is set against the walk over all pairs, which a subclass of
// the criterion gets.
//
// Merging: 10^4 lattice images of a three-atom molecule merged into an empty
// crystal, then merged again (each found); through the crystal's lookup
// against a loop comparing with every stored molecule in order.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <unordered_map>
#include <vector>

#include <molcryst/contact/DistanceCriterion.h>
#include <molcryst/contact/VdWCriterion.h>
#include <molcryst/crystal/Crystal.h>
#include <molcryst/molecule/Atom3d.h>
#include <molcryst/molecule/Bond3d.h>
#include <molcryst/molecule/Molecule3d.h>
#include <molcryst/molecule/Site.h>

using namespace molcryst;

namespace {

const double density = 0.1;  // atoms per cubic Angstrom

// A subclass: the group searches do not trust it with a radius.
template <class C>
class Literal : public C {
public:
    using C::C;
};

Hset_int organic() { return Hset_int(new std::set<int>{1, 6, 7, 8}); }

struct Liquid {
    HCrystal crystal;
    std::vector<int> atoms0, atoms1;
    long long pairs_within = 0;  // pairs of the two halves within 3.5 A
};

Liquid liquid(int n) {
    std::mt19937 rng(2024);
    const double side = std::cbrt(n / density);
    std::uniform_real_distribution<double> coordinate(0.0, side);
    const Element elements[4] = {Element::C, Element::N, Element::O, Element::H};
    HMolecule halves[2] = {HMolecule(new Molecule3d()), HMolecule(new Molecule3d())};
    for (int i = 0; i < n; ++i)
        halves[i % 2]->unchecked_add(HAtom(new Atom3d(elements[rng() % 4], "",
                                                      HSite(new Site(Point(coordinate(rng), coordinate(rng),
                                                                           coordinate(rng)))))));
    Liquid out;
    out.crystal = HCrystal(new Crystal(Cell(), Hvector_HMolecule(new vector_HMolecule{halves[0], halves[1]})));
    for (int i = 0; i < halves[0]->natoms(); ++i) out.atoms0.push_back(i);
    for (int i = 0; i < halves[1]->natoms(); ++i) out.atoms1.push_back(i);
    // Pairs within reach, counted once through cells of 3.5 A.
    const double r = 3.5 + 1e-6;
    std::unordered_map<long long, std::vector<Point> > cells;
    auto key = [&](long long x, long long y, long long z) { return (x * 1000 + y) * 1000 + z; };
    for (int i = 0; i < halves[1]->natoms(); ++i) {
        const Point& p = halves[1]->atom(i)->site()->orth();
        cells[key(static_cast<long long>(p[0] / r), static_cast<long long>(p[1] / r),
                  static_cast<long long>(p[2] / r))]
            .push_back(p);
    }
    for (int i = 0; i < halves[0]->natoms(); ++i) {
        const Point& p = halves[0]->atom(i)->site()->orth();
        const long long x = static_cast<long long>(p[0] / r), y = static_cast<long long>(p[1] / r),
                        z = static_cast<long long>(p[2] / r);
        for (long long dx = -1; dx <= 1; ++dx)
            for (long long dy = -1; dy <= 1; ++dy)
                for (long long dz = -1; dz <= 1; ++dz) {
                    auto found = cells.find(key(x + dx, y + dy, z + dz));
                    if (found == cells.end()) continue;
                    for (const Point& q : found->second) out.pairs_within += distance(p, q) <= r ? 1 : 0;
                }
    }
    return out;
}

template <class Criterion>
void search(benchmark::State& state, const Criterion& criterion, bool grid) {
    const Liquid l = liquid(static_cast<int>(state.range(0)));
    std::size_t found = 0;
    for (auto _ : state) {
        Hvector_HMolecularContact contacts = criterion.find_crystal_contact(*l.crystal, 0, l.atoms0, 1, l.atoms1);
        found = contacts->size();
        benchmark::DoNotOptimize(found);
    }
    const double pairs = grid ? static_cast<double>(l.pairs_within)
                              : static_cast<double>(l.atoms0.size()) * static_cast<double>(l.atoms1.size());
    state.counters["pairs_tested"] = pairs;
    state.counters["pairs_per_s"] = benchmark::Counter(pairs, benchmark::Counter::kIsIterationInvariantRate);
}

void BM_DistanceSearch_Grid(benchmark::State& state) {
    search(state, DistanceCriterion(3.5, 0.0, INTERMOLECULAR, 0, 0, true), true);
}
void BM_DistanceSearch_AllPairs(benchmark::State& state) {
    search(state, Literal<DistanceCriterion>(3.5, 0.0, INTERMOLECULAR, 0, 0, true), false);
}
void BM_VdWSearch_Grid(benchmark::State& state) {
    search(state, VdWCriterion(0.1, -10.0, INTERMOLECULAR, 0, 0, true, organic(), organic()), true);
}
void BM_VdWSearch_AllPairs(benchmark::State& state) {
    search(state, Literal<VdWCriterion>(0.1, -10.0, INTERMOLECULAR, 0, 0, true, organic(), organic()), false);
}

BENCHMARK(BM_DistanceSearch_Grid)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DistanceSearch_AllPairs)->RangeMultiplier(10)->Range(1000, 10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_VdWSearch_Grid)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_VdWSearch_AllPairs)->RangeMultiplier(10)->Range(1000, 10000)->Unit(benchmark::kMillisecond);

// Images of a methanol-like molecule at lattice translations of a 10 A cube.
std::vector<HMolecule> images(int n) {
    std::vector<HMolecule> out;
    const Cell cell(10, 10, 10, Angle::from_degrees(90), Angle::from_degrees(90), Angle::from_degrees(90));
    HMolecule base(new Molecule3d());
    base->add(HAtom(new Atom3d(Element::C, "C1", HSite(new Site(Site::frac(Point(0.10, 0.20, 0.30), cell))))));
    base->add(HAtom(new Atom3d(Element::O, "O1", HSite(new Site(Site::frac(Point(0.24, 0.22, 0.31), cell))))));
    base->add(HAtom(new Atom3d(Element::H, "H1", HSite(new Site(Site::frac(Point(0.27, 0.30, 0.33), cell))))));
    base->add(HBond(new Bond3d(SINGLE_BOND)), 0, 1);
    base->add(HBond(new Bond3d(SINGLE_BOND)), 1, 2);
    const int side = static_cast<int>(std::ceil(std::cbrt(n)));
    for (int k = 0; k < n; ++k)
        out.push_back(base->create_molecule(
            CrystalSymmetryTransformation(CrystalSymmetryOperator(), Vector<int, 3>(k % side, k / side % side, k / (side * side))),
            cell));
    return out;
}

// The comparison of merge, written out for the loop over every stored molecule.
bool same_atoms(const Molecule& a, const Molecule& b) {
    if (a.natoms() != b.natoms() || a.nbonds() != b.nbonds()) return false;
    for (int i = 0; i < a.natoms(); ++i) {
        HAtom x = a.atom(i), y = b.atom(i);
        if (!equals(x->site()->frac(), y->site()->frac(), 1e-05) || x->element() != y->element() ||
            x->formal_charge() != y->formal_charge() || x->radius() != y->radius() || x->label() != y->label() ||
            x->symmtag() != y->symmtag())
            return false;
    }
    for (int i = 0; i < a.nbonds(); ++i)
        if (*a.bond(i) != *b.bond(i)) return false;
    return true;
}

void BM_Merge_Lookup(benchmark::State& state) {
    const std::vector<HMolecule> list = images(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        Crystal crystal;
        for (int round = 0; round < 2; ++round)
            for (const HMolecule& m : list) benchmark::DoNotOptimize(crystal.merge(m));
    }
}

void BM_Merge_EveryStored(benchmark::State& state) {
    const std::vector<HMolecule> list = images(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        std::vector<HMolecule> stored;
        for (int round = 0; round < 2; ++round)
            for (const HMolecule& m : list) {
                std::size_t k = 0;
                while (k < stored.size() && !same_atoms(*stored[k], *m)) ++k;
                if (k == stored.size()) stored.push_back(m);
                benchmark::DoNotOptimize(k);
            }
    }
}

BENCHMARK(BM_Merge_Lookup)->RangeMultiplier(10)->Range(100, 10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Merge_EveryStored)->RangeMultiplier(10)->Range(100, 10000)->Unit(benchmark::kMillisecond);

}  // namespace

// Costs of completing molecules with hydrogens and of finding what
// surrounds a molecule in a crystal.
//
// Hydrogens: n-decane chains (ten carbons, zig-zag, 22 hydrogens missing
// each) in a CrystalMaker; every carbon counted and its hydrogens placed,
// either by one call per atom (each reads the maker's tags afresh) or by the
// one call for the whole maker. Surroundings: compact random-walk molecules
// (1.5 A steps kept inside a sphere of 18 A^3 per atom, no two atoms closer
// than 1.3 A; C, C, N, O, H in turn) in general position of P21/c (Z = 4)
// and of Fm-3m (192 operators), in cells of about 18 A^3 per atom, their
// neighbours by van der Waals contact, whole or cut down to the contact atoms.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include <molcryst/molcryst.h>

using namespace molcryst;

namespace {

const Angle right = Angle::from_degrees(90);

HMolecule decane(const Cell& cell, const Point& start, int tag) {
    HMolecule m(new Molecule3d());
    for (int i = 0; i < 10; ++i) {
        const Point p(start[0] + 1.26 * i, start[1] + (i % 2 == 0 ? 0.0 : 0.89), start[2]);
        HAtom a(new Atom3d(Element::C, "C" + std::to_string(i + 1), HSite(new Site(Site::orth(p, cell)))));
        a->set_symmtag(tag + i);
        m->add(a);
        if (i > 0) m->add(HBond(new Bond3d(SINGLE_BOND)), i - 1, i);
    }
    return m;
}

// `chains` decanes side by side in a large P1 cell.
HCrystalMaker decanes(int chains) {
    const Cell cell(200, 200, 200, right, right, right, Spacegroup());
    Hvector_HMolecule list(new vector_HMolecule());
    for (int k = 0; k < chains; ++k)
        list->push_back(decane(cell, Point(5.0 + 15.0 * (k % 10), 5.0 + 4.0 * ((k / 10) % 40), 5.0 + 4.0 * (k / 400)),
                               10 * k));
    HCrystalMaker maker(new CrystalMaker(cell, Hvector_HMolecule(), Hvector_HMolecule(), list));
    maker->select_3d();
    return maker;
}

void BM_AddHydrogensWithSites(benchmark::State& state) {
    const bool whole_maker = state.range(1) != 0;
    long long hydrogens = 0;
    for (auto _ : state) {
        state.PauseTiming();
        HCrystalMaker maker = decanes(static_cast<int>(state.range(0)) / 10);
        state.ResumeTiming();
        if (whole_maker) {
            add_hydrogens_with_sites(maker);
        } else {
            for (int i = 0; i < maker->nmolecules(); ++i) {
                const HMolecule m = maker->molecule(i);
                for (int a = 0; a < 10; ++a) add_hydrogens_with_sites(maker, m, a, calculate_hydrogens(m, a));
            }
        }
        state.PauseTiming();
        hydrogens = maker->natoms() - state.range(0);
        maker = HCrystalMaker();
        state.ResumeTiming();
    }
    state.counters["hydrogens"] = static_cast<double>(hydrogens);
    state.counters["heavy atoms/s"] =
        benchmark::Counter(static_cast<double>(state.range(0)), benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(BM_AddHydrogensWithSites)
    ->ArgsProduct({{1000, 10000}, {0, 1}})
    ->ArgNames({"atoms", "whole_maker"})
    ->Unit(benchmark::kMillisecond);

HMolecule walk(const Cell& cell, const Point& start_frac, int n, unsigned seed) {
    std::mt19937 random(seed);
    std::normal_distribution<double> step(0.0, 1.0);
    const Element elements[] = {Element::C, Element::C, Element::N, Element::O, Element::H};
    const double radius = std::cbrt(3.0 * 18.0 * n / (4.0 * 3.14159265358979));
    const Point centre = cell.orthogonal(start_frac);
    HMolecule m(new Molecule3d());
    std::vector<Point> placed;
    Point p = centre;
    for (int i = 0; i < n; ++i) {
        HAtom a(new Atom3d(elements[i % 5], "A" + std::to_string(i + 1), HSite(new Site(Site::orth(p, cell)))));
        a->set_symmtag(i);
        m->add(a);
        placed.push_back(p);
        if (i > 0) m->add(HBond(new Bond3d(SINGLE_BOND)), i - 1, i);
        // The next step stays in the sphere and off the atoms already placed.
        Point next = p;
        for (int attempt = 0; attempt < 200; ++attempt) {
            Vector<double, 3> d(step(random), step(random), step(random));
            next = Point(p + d * (1.5 / d.length()));
            bool free = distance(next, centre) <= radius;
            for (const Point& q : placed) free = free && distance(next, q) >= 1.3;
            if (free) break;
        }
        p = next;
    }
    return m;
}

HCrystalMaker maker_of(const Cell& cell, int atoms) {
    Hvector_HMolecule list(new vector_HMolecule{walk(cell, Point(0.13, 0.21, 0.07), atoms, 7)});
    HCrystalMaker maker(new CrystalMaker(cell, Hvector_HMolecule(), Hvector_HMolecule(), list));
    maker->select_3d();
    return maker;
}

Cell p21c_cell(int atoms) {
    // Four molecules of about 18 A^3 per atom; the cell grows with them.
    const double scale = std::cbrt(atoms / 50.0);
    return Cell(14 * scale, 16 * scale, 18 * scale, right, Angle::from_degrees(100), right,
                Spacegroup("P21/c", 14, Spacegroup::Monoclinic,
                           std::vector<std::string>{"x,y,z", "-x,y+1/2,-z+1/2", "-x,-y,-z", "x,-y+1/2,z+1/2"}));
}

Cell fm3m_cell() {
    // 192 molecules of 50 atoms at about 18 A^3 per atom.
    return Cell(56, 56, 56, right, right, right,
                Spacegroup::generate("Fm-3m", 225, Spacegroup::Cubic,
                                     {CrystalSymmetryOperator("-y,x,z"), CrystalSymmetryOperator("z,x,y"),
                                      CrystalSymmetryOperator("-x,-y,-z"), CrystalSymmetryOperator("x,y+1/2,z+1/2"),
                                      CrystalSymmetryOperator("x+1/2,y,z+1/2")}));
}

void surroundings(benchmark::State& state, const HCrystalMaker& maker, bool whole) {
    const VdWCriterion criterion(0.5, -5.0, INTERMOLECULAR, 1, 999, false);
    HCrystal crystal;
    for (auto _ : state) {
        crystal = whole ? maker->create_nonbonded_molecule(0, criterion) : maker->create_nonbonded_fill(0, criterion);
        benchmark::DoNotOptimize(crystal.unhand());
    }
    state.counters["molecules"] = crystal->nmolecules();
    state.counters["contacts"] = crystal->ncontacts();
    state.counters["atoms"] = crystal->natoms();
}

void BM_SurroundingsP21c(benchmark::State& state) {
    const int atoms = static_cast<int>(state.range(0));
    surroundings(state, maker_of(p21c_cell(atoms), atoms), state.range(1) != 0);
}
BENCHMARK(BM_SurroundingsP21c)
    ->ArgsProduct({{25, 50, 100, 200}, {0, 1}})
    ->ArgNames({"atoms", "whole"})
    ->Unit(benchmark::kMillisecond);

void BM_SurroundingsFm3m(benchmark::State& state) {
    surroundings(state, maker_of(fm3m_cell(), 50), state.range(0) != 0);
}
BENCHMARK(BM_SurroundingsFm3m)->Arg(0)->Arg(1)->ArgName("whole")->Unit(benchmark::kMillisecond);

}  // namespace

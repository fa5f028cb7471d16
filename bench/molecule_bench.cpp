// Costs of whole-molecule operations on Molecule3d: copying, writing and
// reading archives, splitting into components, sort_atoms, reorder_atoms and
// remove_hydrogens.
//
// The molecule is a polymer of para-linked benzene rings and methylene
// bridges, (-C6H4-CH2-)n, every atom with a site; one ring hydrogen near the
// middle is a chlorine, so that sort_atoms starts its walk mid-chain and runs
// along both arms. A molecule of any size is a prefix of the chain: every atom
// is bonded to an earlier one, so a prefix is one connected molecule.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <vector>

#include <molcryst/elements/Element.h>
#include <molcryst/molecule/Atom3d.h>
#include <molcryst/molecule/Bond3d.h>
#include <molcryst/molecule/Molecule3d.h>
#include <molcryst/molecule/Site.h>
#include <molcryst/support/Archive.h>
#include <molcryst/support/AtomPredicates.h>

using namespace molcryst;

namespace {

// Atoms per repeat unit: ring carbons 0-5, ring hydrogens 6-9 on carbons 1,
// 2, 4 and 5, the bridge carbon 10 on carbon 3, its hydrogens 11 and 12.
const int unit_size = 13;

// Appends the first `n` atoms of the chain to `m`, and the bonds among them;
// the ring hydrogen `chlorine` (an atom index, or -1) is a chlorine.
void add_chain(Molecule3d& m, int n, int chlorine) {
    const int base = m.natoms();
    auto add_atom = [&](int k, const Element& element, double x, double y, double z) {
        if (k >= n) return;
        m.unchecked_add(
            HAtom(new Atom3d(k == chlorine ? Element(Element::Cl) : element, "", HSite(new Site(Point(x, y, z))))));
    };
    auto add_bond = [&](int a, int b, BondType type) {
        if (a < n && b < n) m.unchecked_add(HBond(new Bond3d(type)), m.atom(base + a), m.atom(base + b));
    };
    const double pi = 3.14159265358979;
    for (int u = 0; u * unit_size < n; ++u) {
        const int first = u * unit_size;
        const double x0 = 5.3 * u;
        for (int r = 0; r < 6; ++r)
            add_atom(first + r, Element::C, x0 + 1.4 * (1 - std::cos(pi * r / 3)), 1.4 * std::sin(pi * r / 3), 0.0);
        const int ring_h[4] = {1, 2, 4, 5};
        for (int h = 0; h < 4; ++h) {
            const int r = ring_h[h];
            add_atom(first + 6 + h, Element::H, x0 + 1.4 - 2.48 * std::cos(pi * r / 3), 2.48 * std::sin(pi * r / 3),
                     0.0);
        }
        add_atom(first + 10, Element::C, x0 + 4.3, 0.0, 0.0);
        add_atom(first + 11, Element::H, x0 + 4.3, 0.6, 0.9);
        add_atom(first + 12, Element::H, x0 + 4.3, 0.6, -0.9);
        if (u > 0) add_bond(first - unit_size + 10, first, SINGLE_BOND);
        for (int r = 1; r < 6; ++r) add_bond(first + r - 1, first + r, AROMATIC_BOND);
        add_bond(first + 5, first, AROMATIC_BOND);
        for (int h = 0; h < 4; ++h) add_bond(first + ring_h[h], first + 6 + h, SINGLE_BOND);
        add_bond(first + 3, first + 10, SINGLE_BOND);
        add_bond(first + 10, first + 11, SINGLE_BOND);
        add_bond(first + 10, first + 12, SINGLE_BOND);
    }
}

// One chain of n atoms, with a chlorine on the ring hydrogen nearest the middle.
HMolecule3d chain(int n) {
    HMolecule3d m(new Molecule3d());
    const int middle_unit = (n / 2) / unit_size;
    add_chain(*m, n, middle_unit * unit_size + 6 < n ? middle_unit * unit_size + 6 : -1);
    return m;
}

// 1000 identical chains of n / 1000 atoms each, one after the other.
HMolecule3d thousand_components(int n) {
    HMolecule3d m(new Molecule3d());
    for (int c = 0; c < 1000; ++c) add_chain(*m, n / 1000, -1);
    return m;
}

// A permutation of 0..n-1, the same for every run.
std::vector<int> random_order(int n) {
    std::vector<int> order(static_cast<std::size_t>(n));
    std::iota(order.begin(), order.end(), 0);
    std::mt19937 random(12345);
    std::shuffle(order.begin(), order.end(), random);
    return order;
}

void BM_MoleculeCopy(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    HMolecule3d m = chain(n);
    for (auto _ : state) {
        Molecule3d* copy = new Molecule3d(*m);
        benchmark::DoNotOptimize(copy->nbonds());
        state.PauseTiming();
        delete copy;
        state.ResumeTiming();
    }
    state.SetComplexityN(n);
}
BENCHMARK(BM_MoleculeCopy)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond)->Complexity();

// The packed bond record holds atom indices of 14 bits, so a molecule with
// bonds archives at most 16384 atoms.
void archive_sizes(benchmark::internal::Benchmark* b) { b->Arg(1000)->Arg(10000)->Arg(16384); }

void BM_MoleculeArchiveWrite(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    HMolecule3d m = chain(n);
    Archive ar = Archive::temporary();
    for (auto _ : state) {
        ar.rewind();
        m->write(ar);
        ar.flush();
    }
    state.SetComplexityN(n);
}
BENCHMARK(BM_MoleculeArchiveWrite)->Apply(archive_sizes)->Unit(benchmark::kMillisecond)->Complexity();

void BM_MoleculeArchiveRead(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    Archive ar = Archive::temporary();
    chain(n)->write(ar);
    for (auto _ : state) {
        ar.rewind();
        Molecule3d* read = new Molecule3d(ar);
        benchmark::DoNotOptimize(read->nbonds());
        state.PauseTiming();
        if (read->natoms() != n) state.SkipWithError("wrong atom count read back");
        delete read;
        state.ResumeTiming();
    }
    state.SetComplexityN(n);
}
BENCHMARK(BM_MoleculeArchiveRead)->Apply(archive_sizes)->Unit(benchmark::kMillisecond)->Complexity();

// split() copies the molecule and cuts the copy into its 1000 parts.
void BM_MoleculeSplit(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    HMolecule3d m = thousand_components(n);
    for (auto _ : state) {
        Hvector_HMolecule* parts = new Hvector_HMolecule(m->split());
        benchmark::DoNotOptimize((*parts)->size());
        state.PauseTiming();
        if ((*parts)->size() != 1000) state.SkipWithError("wrong number of parts");
        delete parts;
        state.ResumeTiming();
    }
    state.SetComplexityN(n);
}
BENCHMARK(BM_MoleculeSplit)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond)->Complexity();

// sort_atoms on the chain with its atoms first put in random order, as a
// structure read from a file may hold them; the shuffle is not timed.
void BM_MoleculeSortAtoms(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    HMolecule3d m = chain(n);
    const std::vector<int> order = random_order(n);
    for (auto _ : state) {
        state.PauseTiming();
        m->reorder_atoms(order);
        state.ResumeTiming();
        m->sort_atoms();
    }
    state.SetComplexityN(n);
}
BENCHMARK(BM_MoleculeSortAtoms)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond)->Complexity();

void BM_MoleculeReorderAtoms(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    HMolecule3d m = chain(n);
    const std::vector<int> order = random_order(n);
    for (auto _ : state) m->reorder_atoms(order);
    state.SetComplexityN(n);
}
BENCHMARK(BM_MoleculeReorderAtoms)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond)->Complexity();

// remove_hydrogens on a fresh copy each time (the copy is not timed): 6 atoms
// in 13 go, with their bonds.
void BM_MoleculeRemoveHydrogens(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    HMolecule3d m = chain(n);
    for (auto _ : state) {
        state.PauseTiming();
        Molecule3d* copy = new Molecule3d(*m);
        state.ResumeTiming();
        benchmark::DoNotOptimize(copy->remove_hydrogens());
        state.PauseTiming();
        delete copy;
        state.ResumeTiming();
    }
    state.SetComplexityN(n);
}
BENCHMARK(BM_MoleculeRemoveHydrogens)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond)->Complexity();

// The same hydrogens removed one by one through remove(HAtom), as
// remove_hydrogens did before it removed them in one pass: each removal
// renumbers the index tables, so the cost is quadratic and 10^5 atoms would
// take minutes.
void BM_MoleculeRemoveHydrogensOneByOne(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    HMolecule3d m = chain(n);
    const AtomTerminalHDPredicate<HAtom> terminal;
    for (auto _ : state) {
        state.PauseTiming();
        Molecule3d* copy = new Molecule3d(*m);
        state.ResumeTiming();
        std::vector<HAtom> doomed;
        for (int i = 0; i < copy->natoms(); ++i)
            if (terminal(copy->atom(i))) doomed.push_back(copy->atom(i));
        for (const HAtom& a : doomed) copy->remove(a);
        state.PauseTiming();
        doomed.clear();
        delete copy;
        state.ResumeTiming();
    }
}
BENCHMARK(BM_MoleculeRemoveHydrogensOneByOne)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace

// Costs of the chemical graph with the molecule's atoms and bonds: building
// by checked add and by unchecked_add, walking every atom's neighbours and
// bonds, and asking every atom of a ring-rich graph whether it is cyclic.
#include <benchmark/benchmark.h>

#include <vector>

#include <molcryst/elements/Element.h>
#include <molcryst/graph/ChemicalGraph.h>
#include <molcryst/molecule/Atom3d.h>
#include <molcryst/molecule/Bond3d.h>

using namespace molcryst;

namespace {

typedef ChemicalGraph<Atom, Bond> CG;

// Fused six-membered rings in a strip (a polyacene), every atom cyclic:
// atoms 4k..4k+3 with rungs, about 1.25 bonds per atom.
std::vector<std::pair<int, int> > strip_bonds(int natoms) {
    std::vector<std::pair<int, int> > bonds;
    int rungs = natoms / 2;
    for (int r = 0; r < rungs; ++r) {
        int top = 2 * r, bottom = 2 * r + 1;
        if (r % 2 == 0) bonds.push_back({top, bottom});
        if (r + 1 < rungs) {
            bonds.push_back({top, top + 2});
            bonds.push_back({bottom, bottom + 2});
        }
    }
    return bonds;
}

std::vector<HAtom> make_atoms(int n) {
    std::vector<HAtom> atoms;
    atoms.reserve(n);
    for (int i = 0; i < n; ++i) atoms.push_back(HAtom(new Atom3d(Element(Element::C), "C", HSite())));
    return atoms;
}

// Builds the strip of n atoms with checked add or with unchecked_add; only
// the building is timed, not the making or freeing of atoms and bonds.
void build_strip(benchmark::State& state, bool checked) {
    int n = static_cast<int>(state.range(0));
    std::vector<std::pair<int, int> > pairs = strip_bonds(n);
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<HAtom> atoms = make_atoms(n);
        std::vector<HBond> bonds;
        for (std::size_t i = 0; i < pairs.size(); ++i) bonds.push_back(HBond(new Bond3d(AROMATIC_BOND)));
        state.ResumeTiming();
        {
            CG g;
            for (const HAtom& a : atoms) checked ? g.add(a) : g.unchecked_add(a);
            for (std::size_t i = 0; i < pairs.size(); ++i) {
                const HAtom& a1 = atoms[pairs[i].first];
                const HAtom& a2 = atoms[pairs[i].second];
                checked ? g.add(bonds[i], a1, a2) : g.unchecked_add(bonds[i], a1, a2);
            }
            benchmark::DoNotOptimize(g.nbonds());
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
    state.SetComplexityN(n);
}

void BM_ChemicalGraphBuildChecked(benchmark::State& state) { build_strip(state, true); }
BENCHMARK(BM_ChemicalGraphBuildChecked)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond)->Complexity();

void BM_ChemicalGraphBuildUnchecked(benchmark::State& state) { build_strip(state, false); }
BENCHMARK(BM_ChemicalGraphBuildUnchecked)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond)->Complexity();

struct Built {
    CG g;
    explicit Built(int n) {
        std::vector<HAtom> atoms = make_atoms(n);
        for (const HAtom& a : atoms) g.unchecked_add(a);
        for (const auto& p : strip_bonds(n)) g.unchecked_add(HBond(new Bond3d(AROMATIC_BOND)), atoms[p.first], atoms[p.second]);
    }
};

// Through the atoms' own interface: polymorphic iterators over neighbours and bonds.
void BM_ChemicalGraphWalkNeighboursAndBonds(benchmark::State& state) {
    int n = static_cast<int>(state.range(0));
    Built built(n);
    for (auto _ : state) {
        long count = 0;
        for (CG::const_atom_iterator a = built.g.begin_atoms(); a != built.g.end_atoms(); ++a) {
            PolymorphicConstIterator<HAtom> end_n = (*a)->end_neighbours();
            for (PolymorphicConstIterator<HAtom> i = (*a)->begin_neighbours(); i != end_n; ++i) count += (*i)->formal_charge() + 1;
            PolymorphicConstIterator<HBond> end_b = (*a)->end_bonds();
            for (PolymorphicConstIterator<HBond> i = (*a)->begin_bonds(); i != end_b; ++i) count += (*i)->type();
        }
        benchmark::DoNotOptimize(count);
    }
    state.SetComplexityN(n);
}
BENCHMARK(BM_ChemicalGraphWalkNeighboursAndBonds)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond)->Complexity();

// Atom::cyclic on every atom, starting from an empty ring cache each time.
void BM_ChemicalGraphCyclicEveryAtom(benchmark::State& state) {
    int n = static_cast<int>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        Built* built = new Built(n);
        state.ResumeTiming();
        int cyclic = 0;
        for (CG::const_atom_iterator a = built->g.begin_atoms(); a != built->g.end_atoms(); ++a) cyclic += (*a)->cyclic();
        benchmark::DoNotOptimize(cyclic);
        state.PauseTiming();
        delete built;
        state.ResumeTiming();
    }
    state.SetComplexityN(n);
}
BENCHMARK(BM_ChemicalGraphCyclicEveryAtom)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond)->Complexity();

}  // namespace

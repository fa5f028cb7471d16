// Disorder states of one molecule of 300 atoms: building the selector (its
// checks over every group), setting a state by its number, reading the number
// back, and stepping through every state. The molecule is a chain of 300
// carbons 1.5 A apart; each assembly disorders 6 consecutive atoms over two
// groups (occupancies 0.6 and 0.4, a second site 0.4 A off).
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include <molcryst/molcryst.h>

using namespace molcryst;

namespace {

const int natoms = 300;
const int atoms_per_assembly = 6;

struct Disordered {
    HMolecule molecule;
    Hvector_Hvector_HAtomSiteMapping mapping;
};

Disordered disordered(int nassemblies, int ngroups) {
    Disordered d;
    d.molecule = HMolecule(new Molecule3d());
    for (int i = 0; i < natoms; ++i)
        d.molecule->add(HAtom(new Atom3d(Element::C, "C" + std::to_string(i + 1), HSite(new Site(Point(1.5 * i, 0, 0))))));
    d.mapping = Hvector_Hvector_HAtomSiteMapping(new vector_Hvector_HAtomSiteMapping());
    for (int a = 0; a < nassemblies; ++a) {
        Hvector_HAtomSiteMapping groups(new vector_HAtomSiteMapping());
        for (int g = 0; g < ngroups; ++g) {
            HAtomSiteMapping group(new AtomSiteMapping());
            const double occupancy = g == 0 ? 0.6 : 0.4 / (ngroups - 1);
            for (int k = 0; k < atoms_per_assembly; ++k) {
                const HAtom atom = d.molecule->atom(a * atoms_per_assembly + k);
                const Point p = atom->site()->orth();
                group->add_site(atom, HSite(new Site(Point(p[0], 0.4 * g, 0), Point(p[0], 0.4 * g, 0), occupancy)),
                                atom->label() + std::string(1, static_cast<char>('A' + g)));
            }
            groups->push_back(group);
        }
        d.mapping->push_back(groups);
    }
    return d;
}

void BM_DisorderSelectorBuild(benchmark::State& state) {
    const Disordered d = disordered(static_cast<int>(state.range(0)), 2);
    for (auto _ : state) {
        DisorderSelector selector(d.molecule, d.mapping);
        benchmark::DoNotOptimize(selector.first_step().data());
    }
}
BENCHMARK(BM_DisorderSelectorBuild)->Arg(5)->Arg(10)->Arg(20)->Arg(30)->Unit(benchmark::kMicrosecond);

/// set(i) over states spread across the whole range: the groups of every
/// assembly are checked and applied.
void BM_DisorderSelectorSet(benchmark::State& state) {
    const Disordered d = disordered(static_cast<int>(state.range(0)), 2);
    DisorderSelector selector(d.molecule, d.mapping);
    const int n = selector.nsteps();
    int i = 0;
    for (auto _ : state) {
        selector.set(i);
        i = static_cast<int>((static_cast<long long>(i) + 2654435761LL) % n);
    }
}
BENCHMARK(BM_DisorderSelectorSet)->Arg(5)->Arg(10)->Arg(20)->Arg(30)->Unit(benchmark::kMicrosecond);

/// current_step and nsteps at the last state.
void BM_DisorderSelectorCurrentStep(benchmark::State& state) {
    const Disordered d = disordered(static_cast<int>(state.range(0)), 2);
    DisorderSelector selector(d.molecule, d.mapping);
    selector.set(selector.nsteps() - 1);
    for (auto _ : state) {
        benchmark::DoNotOptimize(selector.current_step());
        benchmark::DoNotOptimize(selector.nsteps());
    }
}
BENCHMARK(BM_DisorderSelectorCurrentStep)->Arg(5)->Arg(10)->Arg(20)->Arg(30)->Unit(benchmark::kMicrosecond);

/// start() then next() till done(): every state of 5 assemblies of 2 or 3
/// groups (32 or 243 states); time for the whole sweep.
void BM_DisorderSelectorStepThrough(benchmark::State& state) {
    const Disordered d = disordered(5, static_cast<int>(state.range(0)));
    DisorderSelector selector(d.molecule, d.mapping);
    for (auto _ : state) {
        selector.start();
        while (!selector.done()) selector.next();
    }
    state.counters["states"] = selector.nsteps();
}
BENCHMARK(BM_DisorderSelectorStepThrough)->Arg(2)->Arg(3)->Unit(benchmark::kMicrosecond);

}  // namespace

// Formulae: parsing and printing batches of real-looking residue and crystal
// formulae, and one formula of growing length to show the parser linear.
#include <benchmark/benchmark.h>

#include <sstream>
#include <string>
#include <vector>

#include "molcryst/formula/CrystalChemicalFormula.h"

using namespace molcryst;

namespace {

// A pool of formulae as crystal records hold them, cycled to the batch size.
const std::vector<std::string>& residue_pool() {
    static const std::vector<std::string> pool{
        "C6 H6", "C8 H10 N4 O2", "C2 H3 O2 -1", "(C2 H4)n", "C12 H16 N4 Ni1 O4 +2", "H2 O1", "Cl1 -1",
        "C52 H46 N2 O10", "C10 H8 Fe1", "C32 H12 B1 F24 -1", "(Cl2 Cu1 -1)n", "C4 H4 F1 N3 O1", "Na1 +1",
        "C26 H38 O10", "C6 S10 Zn1 -2", "H1 O4 P1 -2"};
    return pool;
}

const std::vector<std::string>& crystal_pool() {
    static const std::vector<std::string> pool{
        "C6 H6,0.5(H2 O1),x(C2 H6 O1)", "C12 H16 N4 Ni1 O4 +2,2(C7 H4 N1 O3 S1 -1),4(H2 O1)",
        "2(C3 H7 N6 +1),H1 O4 P1 -2,3(H2 O1)", "(C4 H14 Co1 N2 O6)n,2x(Cl1)", "C4 H4 F1 N3 O1,2.5(H2 O1)",
        "C33 H43 F1 Ir1 N2 +1,C32 H12 B1 F24 -1", "C52 H46 N2 O10", "0.33(C1 H4 O1),C21 H16 Br2 O8"};
    return pool;
}

template <class F>
void parse(benchmark::State& state, const std::vector<std::string>& pool) {
    const std::size_t n = static_cast<std::size_t>(state.range(0));
    for (auto _ : state)
        for (std::size_t i = 0; i < n; ++i) {
            F f(pool[i % pool.size()], true);
            benchmark::DoNotOptimize(f);
        }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * n));
}

template <class F>
void print(benchmark::State& state, const std::vector<std::string>& pool) {
    const std::size_t n = static_cast<std::size_t>(state.range(0));
    std::vector<F> formulae;
    for (const std::string& text : pool) formulae.emplace_back(text, true);
    for (auto _ : state) {
        std::ostringstream out;
        for (std::size_t i = 0; i < n; ++i) {
            formulae[i % formulae.size()].print(out);
            out << '\n';
        }
        benchmark::DoNotOptimize(out.str());
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * n));
}

void ParseMoleculeFormulae(benchmark::State& state) { parse<MoleculeChemicalFormula>(state, residue_pool()); }
void PrintMoleculeFormulae(benchmark::State& state) { print<MoleculeChemicalFormula>(state, residue_pool()); }
void ParseCrystalFormulae(benchmark::State& state) { parse<CrystalChemicalFormula>(state, crystal_pool()); }
void PrintCrystalFormulae(benchmark::State& state) { print<CrystalChemicalFormula>(state, crystal_pool()); }

// One crystal formula of n residues: the cost of a text grows with its length only.
void ParseLongCrystalFormula(benchmark::State& state) {
    std::string text;
    for (int i = 0; i < state.range(0); ++i) text += (i ? "," : "") + std::string("0.5(C2 H6 O1 N") + std::to_string(i % 9 + 1) + ")";
    for (auto _ : state) {
        CrystalChemicalFormula f(text, true);
        benchmark::DoNotOptimize(f);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

}  // namespace

BENCHMARK(ParseMoleculeFormulae)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(PrintMoleculeFormulae)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(ParseCrystalFormulae)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(PrintCrystalFormulae)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(ParseLongCrystalFormula)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

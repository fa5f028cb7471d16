// Saved crystal views: a NewCrystal expanded fully along its hydrogen bonds
// from real structures (frameworks of thousands of atoms among them), saved
// and read back, against building the same picture from the CIF file.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "molcryst/contact/HBondCriterion.h"
#include "molcryst/crystal/NewCrystal.h"
#include "molcryst/io/CifImport.h"
#include "molcryst/support/Archive.h"

using namespace molcryst;

namespace {

const char* const networks[] = {
    "cod-4343118-ba-dhtp-mof.cif",                         // a metal-organic framework
    "cod-4504659-5-fluorocytosine-hydrate.cif",            // a hydrate, 3D network
    "cod-2224635-melaminium-phosphate-hydrate.cif",        // a salt hydrate, 3D network
    "cod-1000000-pentanediammonium-aluminophosphate.cif",  // a layered framework salt
};

std::string path(int k) { return std::string(MOLCRYST_CIF_DIR) + "/" + networks[k]; }

// From the file to the expanded picture with its contacts, as report --expand does.
NewCrystal built(const std::string& file) {
    NewCrystal crystal(CifImport::read_file(file).at(0).crystal_maker);
    crystal.add_contact_criterion(HContactCriterion(
        new HBondCriterion(0.0, -5.0, Angle::from_degrees(120.0), true, false, INTRA_AND_INTERMOLECULAR, 3, 999)));
    crystal.expand_fully();
    crystal.notify();
    return crystal;
}

int natoms(const Crystal& c) {
    int n = 0;
    for (const HMolecule& m : *c.molecules()) n += m->natoms();
    return n;
}

void label(benchmark::State& state, const NewCrystal& crystal) {
    state.SetLabel(std::string(networks[state.range(0)]).substr(4, 7));
    state.counters["atoms"] = natoms(*crystal.crystal_snapshot());
    state.counters["contacts"] = static_cast<double>(crystal.contacts()->size());
}

void BM_BuildFromCif(benchmark::State& state) {
    const std::string file = path(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        NewCrystal crystal = built(file);
        benchmark::DoNotOptimize(crystal.contacts()->size());
    }
    label(state, built(file));
}
BENCHMARK(BM_BuildFromCif)->DenseRange(0, 3)->Unit(benchmark::kMillisecond);

void BM_Save(benchmark::State& state) {
    const NewCrystal crystal = built(path(static_cast<int>(state.range(0))));
    std::size_t bytes = 0;
    for (auto _ : state) {
        Archive ar = Archive::temporary();
        crystal.write(ar);
        ar.rewind();
        bytes = ar.bytes_left();
    }
    label(state, crystal);
    state.counters["kB"] = static_cast<double>(bytes) / 1024.0;
}
BENCHMARK(BM_Save)->DenseRange(0, 3)->Unit(benchmark::kMillisecond);

// Reading the saved view back, with its picture and contacts in hand.
void BM_Read(benchmark::State& state) {
    const NewCrystal crystal = built(path(static_cast<int>(state.range(0))));
    Archive ar = Archive::temporary();
    crystal.write(ar);
    for (auto _ : state) {
        ar.rewind();
        NewCrystal back;
        back.read(ar);
        benchmark::DoNotOptimize(back.crystal_snapshot()->nmolecules());
        benchmark::DoNotOptimize(back.contacts()->size());
    }
    label(state, crystal);
}
BENCHMARK(BM_Read)->DenseRange(0, 3)->Unit(benchmark::kMillisecond);

}  // namespace

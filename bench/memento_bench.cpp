// Saved crystal views: a NewCrystal expanded fully along its hydrogen bonds
// from real structures, and packed boxes of up to twelve thousand atoms,
// saved and read back, against building the same picture from the CIF file.
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

// Cases 0 to 3: the networks above, grown by expand_fully as report --expand
// grows them. Cases 4 to 6: the 110-atom molecule of a P21/c structure
// packed in boxes of 1, 2 and 3 cells a side, with its hydrogen bonds: the
// large pictures.
const int ncases = 7;

std::string case_file(int k) {
    return std::string(MOLCRYST_CIF_DIR) + "/" + (k < 4 ? networks[k] : "cod-7052819-calixdiquinone-receptor.cif");
}

// From the file to the picture with its contacts.
NewCrystal built(int k) {
    NewCrystal crystal(CifImport::read_file(case_file(k)).at(0).crystal_maker);
    crystal.add_contact_criterion(HContactCriterion(
        new HBondCriterion(0.0, -5.0, Angle::from_degrees(120.0), true, false, INTRA_AND_INTERMOLECULAR, 3, 999)));
    if (k < 4) {
        crystal.expand_fully();
    } else {
        const double n = k - 3;
        crystal.set_packing_box(Box(Point(0, 0, 0), Point(n, n, n)));
        crystal.set_packing(true);
    }
    crystal.notify();
    return crystal;
}

int natoms(const Crystal& c) {
    int n = 0;
    for (const HMolecule& m : *c.molecules()) n += m->natoms();
    return n;
}

void label(benchmark::State& state, const NewCrystal& crystal) {
    const int k = static_cast<int>(state.range(0));
    state.SetLabel(k < 4 ? std::string(networks[k]).substr(4, 7) : "7052819 box " + std::to_string(k - 3));
    state.counters["atoms"] = natoms(*crystal.crystal_snapshot());
    state.counters["contacts"] = static_cast<double>(crystal.contacts()->size());
}

void BM_BuildFromCif(benchmark::State& state) {
    const int k = static_cast<int>(state.range(0));
    for (auto _ : state) {
        NewCrystal crystal = built(k);
        benchmark::DoNotOptimize(crystal.contacts()->size());
    }
    label(state, built(k));
}
BENCHMARK(BM_BuildFromCif)->DenseRange(0, ncases - 1)->Unit(benchmark::kMillisecond);

void BM_Save(benchmark::State& state) {
    const NewCrystal crystal = built(static_cast<int>(state.range(0)));
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
BENCHMARK(BM_Save)->DenseRange(0, ncases - 1)->Unit(benchmark::kMillisecond);

// Reading the saved view back, with its picture and contacts in hand.
void BM_Read(benchmark::State& state) {
    const NewCrystal crystal = built(static_cast<int>(state.range(0)));
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
BENCHMARK(BM_Read)->DenseRange(0, ncases - 1)->Unit(benchmark::kMillisecond);

}  // namespace

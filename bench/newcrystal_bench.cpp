// The crystal view on real structures: the hydrogen-bonded network grown by
// expand_fully from the asymmetric unit with the default hydrogen-bond rule
// (base contacts, then the breadth-first expansion), and the packing of an
// n x n x n box of a four-molecule P21/c cell, bare and with hydrogen bonds
// replicated onto every molecule.
#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

#include "molcryst/contact/HBondCriterion.h"
#include "molcryst/crystal/NewCrystal.h"
#include "molcryst/io/CifImport.h"

using namespace molcryst;

namespace {

const char* const networks[] = {
    "cod-4343118-ba-dhtp-mof.cif",                         // a metal-organic framework
    "cod-4504659-5-fluorocytosine-hydrate.cif",            // a hydrate, 3D network
    "cod-2224635-melaminium-phosphate-hydrate.cif",        // a salt hydrate, 3D network
    "cod-2204271-co-glycine-chloride-polymer.cif",         // a polymeric salt
    "cod-1000000-pentanediammonium-aluminophosphate.cif",  // a layered framework salt
    "cod-8102326-cr-phen-aqua-chloride.cif",               // a finite cluster
};

HCrystalMaker maker_of(const std::string& file) {
    return CifImport::read_file(std::string(MOLCRYST_CIF_DIR) + "/" + file).at(0).crystal_maker;
}

HContactCriterion hbond() {
    return HContactCriterion(
        new HBondCriterion(0.0, -5.0, Angle::from_degrees(120.0), true, false, INTRA_AND_INTERMOLECULAR, 3, 999));
}

// Whole molecules of the picture: hanging atoms are one-atom stand-ins for
// atoms of larger molecules.
int whole_molecules(const CrystalMaker& maker, const Crystal& shown) {
    std::map<int, std::size_t> sited;
    for (const HMolecule& m : *maker.current_molecules())
        for (int i = 0; i < m->natoms(); ++i) sited[m->atom(i)->symmtag()] = m->atoms_with_sites().size();
    int n = 0;
    for (const HMolecule& m : *shown.molecules())
        n += m->natoms() > 1 || (m->natoms() == 1 && sited[m->atom(0)->symmtag()] == 1) ? 1 : 0;
    return n;
}

// Base contacts alone (range(1) 0), or with the expansion (1), from a fresh view each time.
void BM_ExpandFully(benchmark::State& state) {
    const std::string file = networks[state.range(0)];
    const HCrystalMaker maker = maker_of(file);
    int molecules = 0, contacts = 0;
    for (auto _ : state) {
        NewCrystal crystal(HCrystalMaker(new CrystalMaker(*maker)));
        crystal.add_contact_criterion(hbond());
        if (state.range(1) != 0) crystal.expand_fully();
        crystal.notify();
        molecules = whole_molecules(*crystal.crystal_maker(), *crystal.crystal_snapshot());
        contacts = static_cast<int>(crystal.contacts()->size());
    }
    state.SetLabel(file.substr(4, 7));
    state.counters["molecules"] = molecules;
    state.counters["contacts"] = contacts;
    state.counters["molecules/s"] = benchmark::Counter(molecules, benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(BM_ExpandFully)->ArgsProduct({{0, 1, 2, 3, 4, 5}, {0, 1}})->Unit(benchmark::kMillisecond);

// P21/c, one molecule of 110 atoms in the asymmetric unit, four per cell,
// each with six intramolecular hydrogen bonds.
HCrystalMaker p21c_maker() { return maker_of("cod-7052819-calixdiquinone-receptor.cif"); }

// The packing of an n x n x n box; with range(1) the hydrogen bonds too.
void BM_PackBox(benchmark::State& state) {
    const double n = static_cast<double>(state.range(0));
    const HCrystalMaker maker = p21c_maker();
    int molecules = 0, contacts = 0;
    for (auto _ : state) {
        NewCrystal crystal(HCrystalMaker(new CrystalMaker(*maker)));
        if (state.range(1) != 0) crystal.add_contact_criterion(hbond());
        crystal.set_packing_box(Box(Point(0, 0, 0), Point(n, n, n)));
        crystal.set_packing(true);
        molecules = crystal.crystal_snapshot()->nmolecules();
        contacts = static_cast<int>(crystal.contacts()->size());
    }
    state.counters["shown"] = molecules;
    state.counters["contacts"] = contacts;
    state.counters["molecules/s"] = benchmark::Counter(molecules, benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(BM_PackBox)->ArgsProduct({{1, 2, 3, 4, 6}, {0, 1}})->Unit(benchmark::kMillisecond);

}  // namespace

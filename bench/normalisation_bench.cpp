// Hydrogen normalisation of the shared COD structures: the kernel edit on
// each structure's CrystalMaker (asymmetric unit), timed over all 25 files,
// and the report's normalised block, which places each hydrogen against the
// image of its parent that it is bonded to.
#include <benchmark/benchmark.h>

#include <fstream>
#include <string>
#include <vector>

#include <molcryst/molcryst.h>

#include "molcryst/io/CifImport.h"
#include "molcryst/io/CifReader.h"
#include "molcryst/io/NormalisedHydrogens.h"
#include "molcryst/io/StructureReport.h"

using namespace molcryst;

namespace {

std::vector<CifBlock> blocks() {
    std::vector<CifBlock> all;
    std::ifstream checks(std::string(MOLCRYST_CIF_DIR) + "/CHECKS.txt");
    std::string line;
    while (std::getline(checks, line))
        if (line.compare(0, 4, "cod-") == 0 && line.find(" | V calc") != std::string::npos) {
            const CifDocument d = CifReader::read_file(std::string(MOLCRYST_CIF_DIR) + "/" + line.substr(0, line.find(" |")));
            all.insert(all.end(), d.blocks.begin(), d.blocks.end());
        }
    return all;
}

void BM_NormaliseCrystalMakers(benchmark::State& state) {
    const std::vector<CifBlock> all = blocks();
    std::vector<HCrystalMaker> makers;
    int hydrogens = 0;
    for (const CifBlock& b : all) {
        makers.push_back(CifImport::crystal_maker(StructureReport(b)));
        for (const CifAtomSite& a : b.atoms) hydrogens += a.element.symbol() == "H";
    }
    const HydrogenNormalisation normalise;
    for (auto _ : state)
        for (const HCrystalMaker& m : makers) normalise.apply(*m);
    state.counters["structures"] = static_cast<double>(makers.size());
    state.counters["H sites"] = hydrogens;
}
BENCHMARK(BM_NormaliseCrystalMakers)->Unit(benchmark::kMillisecond);

void BM_NormalisedReportBlocks(benchmark::State& state) {
    const std::vector<CifBlock> all = blocks();
    std::vector<std::unique_ptr<StructureReport> > reports;
    for (const CifBlock& b : all) reports.emplace_back(new StructureReport(b));
    std::vector<NormalisedHydrogens::Moved> moved;
    std::size_t total = 0;
    for (auto _ : state)
        for (const auto& r : reports) {
            benchmark::DoNotOptimize(NormalisedHydrogens::normalise(*r, moved));
            total += moved.size();
        }
    state.counters["moved"] = static_cast<double>(total) / static_cast<double>(state.iterations());
}
BENCHMARK(BM_NormalisedReportBlocks)->Unit(benchmark::kMillisecond);

}  // namespace

// Reading and reporting real structures: gemmi's bare parse of each file,
// the reader (parse and checks), and the whole report (bonds through
// symmetry, molecules grown whole, hydrogen bonds); and a generated P1 cell
// of 2 x 10^4 atoms, acetic acid molecules on a lattice.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <dirent.h>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gemmi/cif.hpp>

#include "molcryst/io/CifReader.h"
#include "molcryst/io/StructureReport.h"

using namespace molcryst;

namespace {

std::vector<std::string> file_names() {
    std::vector<std::string> names;
    DIR* dir = opendir(MOLCRYST_CIF_DIR);
    if (dir == nullptr) return names;
    while (dirent* entry = readdir(dir)) {
        const std::string name = entry->d_name;
        if (name.size() > 4 && name.compare(name.size() - 4, 4, ".cif") == 0) names.push_back(name);
    }
    closedir(dir);
    std::sort(names.begin(), names.end());
    return names;
}

std::string slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

/// A P1 cell of n x n x n acetic acid molecules (8 atoms each) 5 A apart.
std::string generated_p1(int n) {
    std::ostringstream out;
    const double a = 5.0 * n;
    out << "data_generated\n_cell_length_a " << a << "\n_cell_length_b " << a << "\n_cell_length_c " << a
        << "\n_cell_angle_alpha 90\n_cell_angle_beta 90\n_cell_angle_gamma 90\n"
        << "loop_\n_symmetry_equiv_pos_as_xyz\nx,y,z\n"
        << "loop_\n_atom_site_label\n_atom_site_type_symbol\n_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\n";
    // Acetic acid in Angstrom: methyl C, carboxyl C, =O, -O-H, three methyl H.
    const double atoms[8][3] = {{0, 0, 0},        {1.50, 0, 0},     {2.12, 1.05, 0}, {2.12, -1.15, 0},
                                {3.08, -1.08, 0}, {-0.36, 1.02, 0}, {-0.36, -0.51, 0.88}, {-0.36, -0.51, -0.88}};
    const char* elements[8] = {"C", "C", "O", "O", "H", "H", "H", "H"};
    int label = 0;
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j)
            for (int k = 0; k < n; ++k)
                for (int m = 0; m < 8; ++m) {
                    ++label;
                    out << elements[m] << label << " " << elements[m] << " " << (5.0 * i + 1.0 + atoms[m][0]) / a << " "
                        << (5.0 * j + 1.5 + atoms[m][1]) / a << " " << (5.0 * k + 1.0 + atoms[m][2]) / a << "\n";
                }
    return out.str();
}

void Parse(benchmark::State& state, const std::string& name) {
    const std::string text = slurp(std::string(MOLCRYST_CIF_DIR) + "/" + name);
    for (auto _ : state) {
        gemmi::cif::Document doc = gemmi::cif::read_memory(text.data(), text.size(), "bench");
        benchmark::DoNotOptimize(doc.blocks.size());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long long>(text.size()));
}

void Read(benchmark::State& state, const std::string& name) {
    const std::string text = slurp(std::string(MOLCRYST_CIF_DIR) + "/" + name);
    for (auto _ : state) benchmark::DoNotOptimize(CifReader::read_text(text, name).blocks.size());
}

void Report(benchmark::State& state, const std::string& name) {
    const std::string text = name.empty() ? generated_p1(static_cast<int>(state.range(0)))
                                          : slurp(std::string(MOLCRYST_CIF_DIR) + "/" + name);
    std::size_t atoms = 0, bonds = 0, hbonds = 0;
    for (auto _ : state) {
        CifDocument doc = CifReader::read_text(text, "bench");
        StructureReport report(doc.blocks[0]);
        atoms = doc.blocks[0].atoms.size();
        bonds = report.bonds().size();
        hbonds = report.hbonds().size();
    }
    state.counters["atoms"] = static_cast<double>(atoms);
    state.counters["bonds"] = static_cast<double>(bonds);
    state.counters["hbonds"] = static_cast<double>(hbonds);
}

void GeneratedParse(benchmark::State& state) {
    const std::string text = generated_p1(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        gemmi::cif::Document doc = gemmi::cif::read_memory(text.data(), text.size(), "bench");
        benchmark::DoNotOptimize(doc.blocks.size());
    }
}

const int registered = [] {
    for (const std::string& name : file_names()) {
        const std::string stem = name.substr(4, name.find('-', 4) - 4);
        benchmark::RegisterBenchmark(("Parse/" + stem).c_str(), Parse, name)->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark(("Read/" + stem).c_str(), Read, name)->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark(("Report/" + stem).c_str(), Report, name)->Unit(benchmark::kMicrosecond);
    }
    // 14^3 molecules of 8 atoms: 21952 atoms.
    benchmark::RegisterBenchmark("GeneratedP1/Parse", GeneratedParse)->Arg(7)->Arg(14)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("GeneratedP1/Report", Report, std::string())->Arg(7)->Arg(14)->Unit(benchmark::kMillisecond);
    return 0;
}();

}  // namespace

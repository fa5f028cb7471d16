// Chemical diagrams: generating a molecule's diagram, folding and unfolding
// groups, and (with the CIF import) laying out and drawing real structures.
#include <benchmark/benchmark.h>

#include <cmath>
#include <set>
#include <vector>

#include "molcryst/diagram/ChemicalDiagram.h"
#include "molcryst/diagram/ChemicalDiagramGenerator.h"
#include "molcryst/diagram/DiagramSymbol.h"
#include "molcryst/molecule/Atom3d.h"
#include "molcryst/molecule/Bond3d.h"
#include "molcryst/molecule/Molecule3d.h"
#ifdef MOLCRYST_CIF_DIR
#include <dirent.h>

#include "molcryst/draw/FlatLayout.h"
#include "molcryst/draw/SvgWriter.h"
#include "molcryst/io/BondOrderPerception.h"
#include "molcryst/io/CifReader.h"
#include "molcryst/io/StructureReport.h"
#endif

namespace molcryst {
namespace {

// A drug-like chain of `nheavy` heavy atoms: a backbone with an oxygen on
// every third atom, each carbon with its hydrogens, all with flat sites.
HMolecule chain(int nheavy) {
    HMolecule m(new Molecule3d());
    std::vector<int> carbons;
    for (int i = 0; i < nheavy; ++i) {
        const bool oxygen = i % 3 == 2;
        const int a = m->add(HAtom(new Atom3d(oxygen ? Element::O : Element::C, "X",
                                              HSite(new Site(Point(1.3 * i, (i % 2) * 0.75, 0.0))))));
        if (oxygen) {
            m->add(HBond(new Bond3d(DOUBLE_BOND)), carbons.back(), a);  // a carbonyl on the last carbon
        } else {
            if (!carbons.empty()) m->add(HBond(new Bond3d(SINGLE_BOND)), carbons.back(), a);
            carbons.push_back(a);
            const int h = m->add(HAtom(new Atom3d(Element::H, "H", HSite(new Site(Point(1.3 * i, -1.0, 0.0))))));
            m->add(HBond(new Bond3d(SINGLE_BOND)), a, h);
        }
    }
    return m;
}

// Folds the listed nodes into one symbol, keeping the bonds to the outside.
class FoldGroup : public DiagramSymbolGroup {
public:
    FoldGroup(const std::vector<HDiagramNode>& nodes, ChemicalDiagram& diagram)
        : DiagramSymbolGroup("fold", "", "", "", std::vector<Point2d>(nodes.size()), 0, DiagramSymbol::HydrogenDefault) {
        HDiagramNode symbol(new DiagramSymbol(nodes));
        const std::set<HDiagramNode> members(nodes.begin(), nodes.end());
        for (const HDiagramNode& m : members) {
            add_node_match(m, symbol);
            for (const HDiagramNode& b : m->neighbours()) {
                if (members.count(b) != 0) continue;
                HDiagramEdge e = diagram.edge(m, b);
                add_edge_match(e, HDiagramNode(), m, e, HDiagramNode(), symbol);
            }
        }
        for (const HDiagramEdge& e : diagram.graph()->nodes_to_edges(members))
            add_edge_match(e, e->node1(), e->node2(), HDiagramEdge(), HDiagramNode(), HDiagramNode());
    }
};

void BM_GenerateDiagram(benchmark::State& state) {
    const HMolecule m = chain(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        ChemicalDiagramGenerator generator;
        HChemicalDiagram d = generator.create_chemical_diagram(m);
        benchmark::DoNotOptimize(d->nnodes());
    }
    state.counters["atoms"] = m->natoms();
}
BENCHMARK(BM_GenerateDiagram)->Arg(100)->Arg(500)->Arg(2000)->Unit(benchmark::kMicrosecond);

// 100 groups of two atoms (a carbon and its carbonyl oxygen) spread over a
// diagram of the given size, contracted and expanded as the diagram's
// symbol groups.
void BM_ContractExpand100Groups(benchmark::State& state) {
    const HMolecule m = chain(static_cast<int>(state.range(0)));
    ChemicalDiagramGenerator generator;
    HChemicalDiagram d = generator.create_chemical_diagram(m);
    const int step = d->nnodes() / 100;
    for (int g = 0; g < 100; ++g) {
        // The first oxygen in this group's share of the nodes, with its carbon.
        HDiagramNode o;
        for (int i = g * step; i < d->nnodes() && o.unhand() == nullptr; ++i)
            if (d->atom(i)->centre_label() == "O") o = d->atom(i);
        const HDiagramNode c = o->neighbours().front();
        d->add_symbol_group(HDiagramSymbolGroup(new FoldGroup({c, o}, *d)));
    }
    for (auto _ : state) {
        d->contract_symbol_groups();
        d->expand_symbol_groups();
    }
    state.counters["nodes"] = d->nnodes();
}
BENCHMARK(BM_ContractExpand100Groups)->Arg(500)->Arg(2000)->Arg(8000)->Unit(benchmark::kMicrosecond);

#ifdef MOLCRYST_CIF_DIR
// Every molecule of the asymmetric unit of each shared structure, laid out
// flat and drawn; reading the file is not timed.
void BM_LayoutAndSvg(benchmark::State& state, const std::string& path) {
    const CifDocument doc = CifReader::read_file(path);
    const StructureReport report(doc.blocks.at(0));
    std::vector<HMolecule> molecules = report.asymmetric_molecules();
    int atoms = 0;
    for (const HMolecule& mol : molecules) {
        BondOrderPerception::perceive(*mol);
        atoms += mol->natoms();
    }
    draw::SvgWriter writer;
    for (auto _ : state) {
        std::size_t bytes = 0;
        for (const HMolecule& mol : molecules) bytes += writer.svg(*draw::flat_diagram(*mol)).size();
        benchmark::DoNotOptimize(bytes);
    }
    state.counters["atoms"] = atoms;
    state.counters["molecules"] = static_cast<double>(molecules.size());
}

const int registered = [] {
    DIR* dir = opendir(MOLCRYST_CIF_DIR);
    std::set<std::string> names;
    if (dir != nullptr) {
        while (dirent* entry = readdir(dir)) {
            const std::string name = entry->d_name;
            if (name.size() > 4 && name.compare(name.size() - 4, 4, ".cif") == 0) names.insert(name);
        }
        closedir(dir);
    }
    for (const std::string& name : names)
        benchmark::RegisterBenchmark(("BM_LayoutAndSvg/" + name.substr(0, name.size() - 4)).c_str(), BM_LayoutAndSvg,
                                     std::string(MOLCRYST_CIF_DIR) + "/" + name)
            ->Unit(benchmark::kMillisecond);
    return 0;
}();
#endif

}  // namespace
}  // namespace molcryst

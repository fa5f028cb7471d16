// Entry databases of up to ten thousand entries: adding them one at a time
// and all at once, opening the database, looking identifiers up, and finding
// the duplicates among all entries by crystal topology index.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <unordered_map>
#include <vector>

#include "molcryst/connectivity/ArchiveDatabase.h"
#include "molcryst/connectivity/CrystalTopologyIndex.h"
#include "molcryst/connectivity/Order3AtomTopologyIndex.h"

using namespace molcryst;

namespace {

typedef DatabaseEntry<ConnectivityInfo> InfoEntry;
typedef ArchiveDatabase<InfoEntry> InfoDatabase;

std::string directory(const std::string& what, int n) {
    return (std::filesystem::temp_directory_path() /
            ("molcryst_database_bench_" + std::to_string(::getpid()) + "_" + what + "_" + std::to_string(n)))
        .string();
}

void fresh(const std::string& dir) {
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
}

// Entry i: a ring of 6 carbons with a side chain of i % 97 atoms, a
// hydroxyl at its end, and two waters: about 20 atoms on average, and each
// topology shared by about n / 97 entries.
THandle<InfoEntry> entry(int i) {
    HConnectivity c(new Connectivity());
    for (int k = 0; k < 6; ++k) c->add(HConnectivityAtom(new ConnectivityAtom(Element::C)));
    for (int k = 0; k < 6; ++k) c->add(HConnectivityBond(new ConnectivityBond(AROMATIC_BOND)), k, (k + 1) % 6);
    int last = 0;
    for (int k = 0; k < i % 97 % 24; ++k) {
        const int next = c->add(HConnectivityAtom(new ConnectivityAtom(Element::C)));
        c->add(HConnectivityBond(new ConnectivityBond(SINGLE_BOND)), last, next);
        last = next;
    }
    const int o = c->add(HConnectivityAtom(new ConnectivityAtom(i % 97 < 48 ? Element::O : Element::N)));
    c->add(HConnectivityBond(new ConnectivityBond(SINGLE_BOND)), last, o);
    HConnectivity water(new Connectivity());
    water->add(HConnectivityBond(new ConnectivityBond(SINGLE_BOND)), HConnectivityAtom(new ConnectivityAtom(Element::O)),
               HConnectivityAtom(new ConnectivityAtom(Element::H)));
    water->add(HConnectivityBond(new ConnectivityBond(SINGLE_BOND)), water->atom(0),
               HConnectivityAtom(new ConnectivityAtom(Element::H)));
    HConnectivityInfo info(new ConnectivityInfo());
    info->add_connectivity(c, 1.0);
    info->add_connectivity(water, 2.0 + i % 97 / 24);
    return THandle<InfoEntry>(new InfoEntry(DatabaseEntryIdentifier("REFCODE" + std::to_string(100000 + i)), info));
}

std::vector<THandle<InfoEntry> > entries(int n) {
    std::vector<THandle<InfoEntry> > out;
    for (int i = 0; i < n; ++i) out.push_back(entry(i));
    return out;
}

// A database of n entries made once per size, for the reading benchmarks.
const std::string& filled(int n) {
    static std::unordered_map<int, std::string> made;
    auto found = made.find(n);
    if (found != made.end()) return found->second;
    const std::string dir = directory("filled", n);
    fresh(dir);
    InfoDatabase(dir, "bench", 3).append_all(entries(n));
    return made.emplace(n, dir).first->second;
}

void BM_AppendOneAtATime(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    const std::vector<THandle<InfoEntry> > all = entries(n);
    const std::string dir = directory("append", n);
    for (auto _ : state) {
        state.PauseTiming();
        fresh(dir);
        state.ResumeTiming();
        InfoDatabase db(dir, "bench", 3);
        for (const THandle<InfoEntry>& e : all) db.append(e);
    }
    std::filesystem::remove_all(dir);
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(BM_AppendOneAtATime)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_AppendAll(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    const std::vector<THandle<InfoEntry> > all = entries(n);
    const std::string dir = directory("bulk", n);
    for (auto _ : state) {
        state.PauseTiming();
        fresh(dir);
        state.ResumeTiming();
        InfoDatabase db(dir, "bench", 3);
        db.append_all(all);
    }
    std::filesystem::remove_all(dir);
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(BM_AppendAll)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_Open(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    const std::string& dir = filled(n);
    for (auto _ : state) {
        InfoDatabase db(dir, "bench", 1);
        benchmark::DoNotOptimize(db.size());
    }
}
BENCHMARK(BM_Open)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

void BM_LookUp(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    InfoDatabase db(filled(n), "bench", 1);
    std::vector<DatabaseEntryIdentifier> ids;
    for (int i = 0; i < 1000; ++i) ids.push_back(DatabaseEntryIdentifier("REFCODE" + std::to_string(100000 + (i * 7919) % n)));
    std::size_t k = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(db.index(ids[k]));
        k = (k + 1) % ids.size();
    }
}
BENCHMARK(BM_LookUp)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kNanosecond);

void BM_ReadEntry(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    InfoDatabase db(filled(n), "bench", 1);
    int i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(db.entry(i));
        i = (i + 7919) % n;
    }
}
BENCHMARK(BM_ReadEntry)->Arg(10000)->Unit(benchmark::kMicrosecond);

// Every entry read, its crystal topology index worked out, and entries with
// equal indices grouped through a hash: one pass, never all pairs.
void BM_FindDuplicates(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    InfoDatabase db(filled(n), "bench", 1);
    const HTopologyIndex order3(new Order3AtomTopologyIndex());
    std::size_t ngroups = 0;
    for (auto _ : state) {
        std::unordered_map<std::string, std::vector<int> > groups;
        for (int i = 0; i < db.size(); ++i) {
            const CrystalTopologyIndex index(db.entry(i)->data(), order3);
            std::string key;
            for (const CrystalTopologyIndex::Record& r : index.indices())
                key += std::to_string(r.index) + ":" + std::to_string(r.multiplier) + ";";
            groups[key].push_back(i);
        }
        ngroups = groups.size();
    }
    state.counters["groups"] = static_cast<double>(ngroups);
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(BM_FindDuplicates)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace

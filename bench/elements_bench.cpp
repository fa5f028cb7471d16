// Costs of naming elements: Element(const std::string&), the case-blind lookup
// that every atom read from a file goes through, and the exact
// Element::atomic_symbol_to_tarn_code, on a mix of symbols as a structure file
// holds them. Each lookup must allocate nothing beyond its string argument;
// the allocs/lookup counter says whether it does. Two plain implementations
// stand beside them for comparison: a std::map keyed by an upper-cased string
// copy, and a scan of the symbol table.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <map>
#include <new>
#include <string>
#include <vector>

#include <molcryst/elements/Element.h>
#include <molcryst/support/StringFunctions.h>

using namespace molcryst;

namespace {
std::uint64_t allocations = 0;
}  // namespace

// Every heap allocation of the program passes here, so that a benchmark can
// count those made inside its timed loop. Kept out of line: inlined, GCC takes
// the malloc and free inside for a mismatched new and delete.
[[gnu::noinline]] void* operator new(std::size_t size) {
    ++allocations;
    if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* p) noexcept { std::free(p); }
[[gnu::noinline]] void operator delete(void* p, std::size_t) noexcept { std::free(p); }

namespace {

constexpr std::size_t pool_size = 4096;  // names cycled through by every benchmark

// Names as the atoms of organic and metal-organic structures give them: mostly
// C, H, N and O, some halogens, sulfur, phosphorus and metals, in the cases
// that files use. `with_misses` adds names that are not exact symbols
// (upper-cased two-letter symbols, "Unknown", a mistyped "Xx"), which the
// exact lookup answers with code 0.
std::vector<std::string> mixed_names(bool with_misses) {
    struct Weighted {
        const char* name;
        int weight;
    };
    static const Weighted common[] = {
        {"C", 40}, {"H", 35}, {"O", 8}, {"N", 6}, {"Cl", 2}, {"S", 2}, {"F", 1}, {"Br", 1},
        {"P", 1},  {"Cu", 1}, {"Fe", 1}, {"Zn", 1}, {"Na", 1}, {"D", 1}, {"Co", 1}, {"Pt", 1},
    };
    static const Weighted case_variants[] = {{"CL", 1}, {"cl", 1}, {"BR", 1}, {"c", 1}, {"h", 1}, {"Unknown", 1}};
    static const Weighted misses[] = {{"CL", 1}, {"BR", 1}, {"Unknown", 1}, {"Xx", 1}, {"c", 1}, {"ZN", 1}};
    std::vector<const char*> urn;
    for (const Weighted& w : common)
        for (int i = 0; i < w.weight; ++i) urn.push_back(w.name);
    for (const Weighted& w : with_misses ? misses : case_variants) urn.push_back(w.name);

    std::vector<std::string> names;
    names.reserve(pool_size);
    std::uint32_t state = 12345;  // fixed seed: every run looks up the same sequence
    for (std::size_t i = 0; i < pool_size; ++i) {
        state = state * 1664525u + 1013904223u;
        names.push_back(urn[(state >> 8) % urn.size()]);
    }
    return names;
}

template <class Lookup>
void run_lookups(benchmark::State& state, const std::vector<std::string>& names, Lookup lookup) {
    const std::size_t n = static_cast<std::size_t>(state.range(0));
    std::uint64_t allocated = 0;
    for (auto _ : state) {
        std::uint64_t before = allocations;
        int sum = 0;
        for (std::size_t i = 0; i < n; ++i) sum += lookup(names[i & (pool_size - 1)]);
        allocated += allocations - before;
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * n));
    state.counters["allocs/lookup"] =
        benchmark::Counter(static_cast<double>(allocated) / static_cast<double>(state.iterations() * n));
    state.SetComplexityN(static_cast<std::int64_t>(n));
}

void BM_ElementFromString(benchmark::State& state) {
    std::vector<std::string> names = mixed_names(false);
    run_lookups(state, names, [](const std::string& s) { return static_cast<int>(Element(s).code()); });
}

void BM_ElementFromCString(benchmark::State& state) {
    std::vector<std::string> names = mixed_names(false);
    run_lookups(state, names, [](const std::string& s) { return static_cast<int>(Element(s.c_str()).code()); });
}

void BM_ElementAtomicSymbolToCode(benchmark::State& state) {
    std::vector<std::string> names = mixed_names(true);
    run_lookups(state, names,
                [](const std::string& s) { return static_cast<int>(Element::atomic_symbol_to_tarn_code(s)); });
}

// For comparison: a map from upper-cased symbol to code, looked up through an
// upper-cased copy of the name.
void BM_ElementBaselineStringMap(benchmark::State& state) {
    std::vector<std::string> names = mixed_names(false);
    std::map<std::string, int> map;
    for (int c = 1; c < Element::ncodes_; ++c) map.emplace(toupper(Element::table_[c]), c);
    run_lookups(state, names, [&map](const std::string& s) {
        std::string upper = toupper(s);
        if (upper == "UNKNOWN") return 0;
        auto found = map.find(upper);
        return found == map.end() ? -1 : found->second;
    });
}

// For comparison: the exact lookup as a scan of the symbol table in code order.
void BM_ElementBaselineScan(benchmark::State& state) {
    std::vector<std::string> names = mixed_names(true);
    run_lookups(state, names, [](const std::string& s) {
        for (int c = 0; c < Element::ncodes_; ++c)
            if (Element::table_[c] == s) return c;
        return 0;
    });
}

}  // namespace

#define ELEMENT_LOOKUP_SIZES RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMicrosecond)->Complexity()
BENCHMARK(BM_ElementFromString)->ELEMENT_LOOKUP_SIZES;
BENCHMARK(BM_ElementFromCString)->ELEMENT_LOOKUP_SIZES;
BENCHMARK(BM_ElementAtomicSymbolToCode)->ELEMENT_LOOKUP_SIZES;
BENCHMARK(BM_ElementBaselineStringMap)->ELEMENT_LOOKUP_SIZES;
BENCHMARK(BM_ElementBaselineScan)->ELEMENT_LOOKUP_SIZES;

// Costs of the hydrogen-bond search on a crystal picture: many copies of
// water, acetamide and acetic acid, each turned at random and set at a point
// of a cubic grid 4.6 A apart with a little jitter, no two atoms of two
// copies nearer than 1.6 A. The picture is about one copy in 6.7 atoms.
//
// BM_HBondSearchPicture: every hydrogen bond of the picture, held as one
// molecule whose components are the copies, in one group search.
// BM_HBondSearchOneMolecule: the hydrogen bonds of one copy with each of the
// others, the picture held as a Crystal of separate molecules.
// BM_HBondClassify: the types of every atom, worked out afresh each time.
// BM_HBondSearchLiteral: the group search of the first benchmark without
// the grid or the types kept during the search.
#include <benchmark/benchmark.h>
#include <molcryst/contact/HBondCriterion.h>
#include <molcryst/crystal/Crystal.h>
#include <molcryst/molecule/Molecule3d.h>
#include <molcryst/molecule/Site.h>

#include <cmath>
#include <random>
#include <unordered_map>
#include <vector>

// The test molecules, written once for the tests.
#include "../tests/molecule/TestMolecules.h"

using namespace molcryst;

namespace {

const double spacing = 4.6;  // between grid points, Angstrom
const double closest = 1.6;  // the least distance between atoms of two copies

// Where atoms have been placed, by cells of side `closest`.
class Occupied {
public:
    bool clear(const Point& p) const {
        const long long x = cell(p[0]), y = cell(p[1]), z = cell(p[2]);
        for (long long dx = -1; dx <= 1; ++dx)
            for (long long dy = -1; dy <= 1; ++dy)
                for (long long dz = -1; dz <= 1; ++dz) {
                    auto found = cells_.find(key(x + dx, y + dy, z + dz));
                    if (found == cells_.end()) continue;
                    for (const Point& q : found->second)
                        if (distance(p, q) < closest) return false;
                }
        return true;
    }
    void add(const Point& p) { cells_[key(cell(p[0]), cell(p[1]), cell(p[2]))].push_back(p); }

private:
    static long long cell(double v) { return static_cast<long long>(std::floor(v / closest)); }
    static long long key(long long x, long long y, long long z) { return (x * 4096 + y) * 4096 + z; }
    std::unordered_map<long long, std::vector<Point> > cells_;
};

// The copies as separate molecules, at least `natoms` atoms in all.
std::vector<HMolecule3d> copies(int natoms) {
    const HMolecule3d parts[3] = {testing::water(), testing::acetamide(), testing::acetic_acid()};
    std::mt19937 rng(14);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    const int side = static_cast<int>(std::ceil(std::cbrt(natoms / 6.0))) + 1;
    Occupied occupied;
    std::vector<HMolecule3d> out;
    int placed = 0;
    for (int g = 0; placed < natoms && g < side * side * side; ++g) {
        const Molecule& part = *parts[out.size() % 3];
        const Point centre(spacing * (g % side) + 0.3 * unit(rng), spacing * (g / side % side) + 0.3 * unit(rng),
                           spacing * (g / side / side) + 0.3 * unit(rng));
        for (int attempt = 0; attempt < 20; ++attempt) {
            // A random turn: a unit quaternion.
            double q[4];
            double norm = 0;
            std::normal_distribution<double> normal;
            for (double& v : q) {
                v = normal(rng);
                norm += v * v;
            }
            for (double& v : q) v /= std::sqrt(norm);
            const double w = q[0], x = q[1], y = q[2], z = q[3];
            const double r[3][3] = {{1 - 2 * (y * y + z * z), 2 * (x * y - w * z), 2 * (x * z + w * y)},
                                    {2 * (x * y + w * z), 1 - 2 * (x * x + z * z), 2 * (y * z - w * x)},
                                    {2 * (x * z - w * y), 2 * (y * z + w * x), 1 - 2 * (x * x + y * y)}};
            std::vector<Point> points;
            bool ok = true;
            for (int i = 0; i < part.natoms() && ok; ++i) {
                const Point& p = part.atom(i)->site()->orth();
                Point t(centre[0], centre[1], centre[2]);
                for (int k = 0; k < 3; ++k) t[k] += r[k][0] * p[0] + r[k][1] * p[1] + r[k][2] * p[2];
                ok = occupied.clear(t);
                points.push_back(t);
            }
            if (!ok) continue;
            HMolecule3d copy(new Molecule3d(part));
            for (int i = 0; i < copy->natoms(); ++i) {
                copy->atom(i)->set_site(HSite(new Site(points[static_cast<std::size_t>(i)])));
                occupied.add(points[static_cast<std::size_t>(i)]);
            }
            out.push_back(copy);
            placed += copy->natoms();
            break;
        }
    }
    return out;
}

// The copies as one molecule.
HMolecule3d picture(const std::vector<HMolecule3d>& parts) {
    HMolecule3d m(new Molecule3d());
    for (const HMolecule3d& part : parts) {
        const int first = m->natoms();
        for (int i = 0; i < part->natoms(); ++i) m->add(part->atom(i)->clone());
        for (int j = 0; j < part->nbonds(); ++j) {
            const HBond bond = part->bond(j);
            m->add(HBond(new Bond3d(bond->type())), first + bond->atom1()->index(), first + bond->atom2()->index());
        }
    }
    return m;
}

// The library's defaults for a search between molecules; inside the one
// molecule of the picture, two copies are -1 bonds apart, -2 counted from a
// hydrogen's donor, so the least path is -2 there.
HBondCriterion criterion(ContactType type, int min_path) {
    return HBondCriterion(0.0, -5.0, Angle::from_degrees(120), true, false, type, min_path, 999);
}

// The same rules with nothing kept during a search and no search radius.
class Literal : public HBondCriterion {
public:
    using HBondCriterion::HBondCriterion;

protected:
    void begin_group_search() const override {}
    void end_group_search() const override {}
};

void sizes(benchmark::internal::Benchmark* b) { b->Arg(1000)->Arg(10000)->Arg(100000); }

// Each contact of a group search keeps both groups, sorted and as given: in
// one search over a whole picture that is two copies of the picture per
// hydrogen bond, about 16 GB at 10^5 atoms, so that size is left out here.
void picture_sizes(benchmark::internal::Benchmark* b) { b->Arg(1000)->Arg(3000)->Arg(10000)->Arg(30000); }

void BM_HBondSearchPicture(benchmark::State& state) {
    const HMolecule3d m = picture(copies(static_cast<int>(state.range(0))));
    const HBondCriterion c = criterion(INTRA_AND_INTERMOLECULAR, -2);
    std::size_t found = 0;
    const long long before = c.nclassified();
    for (auto _ : state) found = m->nonbonded_search(c)->size();
    state.counters["atoms"] = m->natoms();
    state.counters["hbonds"] = static_cast<double>(found);
    state.counters["classified/s"] =
        benchmark::Counter(static_cast<double>(c.nclassified() - before), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_HBondSearchPicture)->Apply(picture_sizes)->Unit(benchmark::kMillisecond);

void BM_HBondSearchOneMolecule(benchmark::State& state) {
    const std::vector<HMolecule3d> parts = copies(static_cast<int>(state.range(0)));
    Hvector_HMolecule list(new vector_HMolecule(parts.begin(), parts.end()));
    const Crystal crystal(Cell(), list);
    const HBondCriterion c = criterion(INTERMOLECULAR, 4);
    // The first molecule from the middle of the picture on that makes a hydrogen bond.
    int middle = static_cast<int>(parts.size() / 2);
    while (middle + 1 < crystal.nmolecules() && crystal.nonbonded_search(middle, c)->empty()) ++middle;
    std::size_t found = 0;
    for (auto _ : state) found = crystal.nonbonded_search(middle, c)->size();
    state.counters["molecules"] = static_cast<double>(parts.size());
    state.counters["hbonds"] = static_cast<double>(found);
}
BENCHMARK(BM_HBondSearchOneMolecule)->Apply(sizes)->Unit(benchmark::kMillisecond);

void BM_HBondClassify(benchmark::State& state) {
    const HMolecule3d m = picture(copies(static_cast<int>(state.range(0))));
    const HBondCriterion c = criterion(INTRA_AND_INTERMOLECULAR, -2);
    int sum = 0;
    const long long before = c.nclassified();
    for (auto _ : state)
        for (int i = 0; i < m->natoms(); ++i) sum += c.hbond_type(*m->atom(i));
    benchmark::DoNotOptimize(sum);
    state.SetItemsProcessed(static_cast<long long>(state.iterations()) * m->natoms());
    state.counters["classified/s"] =
        benchmark::Counter(static_cast<double>(c.nclassified() - before), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_HBondClassify)->Apply(sizes)->Unit(benchmark::kMillisecond);

void BM_HBondSearchLiteral(benchmark::State& state) {
    const HMolecule3d m = picture(copies(static_cast<int>(state.range(0))));
    const Literal c(0.0, -5.0, Angle::from_degrees(120), true, false, INTRA_AND_INTERMOLECULAR, -2, 999);
    std::size_t found = 0;
    for (auto _ : state) found = m->nonbonded_search(c)->size();
    state.counters["hbonds"] = static_cast<double>(found);
}
BENCHMARK(BM_HBondSearchLiteral)->Arg(300)->Arg(1000)->Unit(benchmark::kMillisecond);

}  // namespace

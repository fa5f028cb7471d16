#include "molcryst/crystal/SymmetryGeneration.h"

#include <cmath>
#include <cstdint>
#include <set>
#include <stdexcept>
#include <unordered_map>

#include "molcryst/crystal/SymmetryInclusionCondition.h"
#include "molcryst/molecule/ProxyAtom.h"
#include "molcryst/molecule/Site.h"

namespace molcryst {

HAtom SymmetryGenerator<HAtom>::target(const HAtom& source, const CrystalSymmetryTransformation& t,
                                       const Cell& cell) const {
    const HSite& site = source->site();
    if (site.unhand() == nullptr)
        throw std::invalid_argument(
            "SymmetryGenerator<HAtom>::target(const HAtom&, const CrystalSymmetryTransformation&, const Cell&) "
            "the atom has no site");
    // A proxy stands for another atom: the image is of that atom, at the proxy's site.
    HProxyAtom proxy = handle_dynamic_cast<ProxyAtom>(source);
    const HAtom& original = proxy.unhand() != nullptr ? proxy->parent_atom() : source;
    HAtom image = original->clone();
    // The clone's own copy of the site is moved in place when it is a copy
    // of the source's; otherwise the image gets a new site.
    const HSite& own = image->site();
    if (own.unhand() != nullptr && own != site && own != original->site() && *own == *site)
        own->transform(t, cell);
    else
        image->set_site(HSite(new Site(*site, t, cell)));
    return image;
}

const Point& SymmetryGenerator<HAtom>::fractional_point(const HAtom& atom) {
    const HSite& site = atom->site();
    if (site.unhand() == nullptr)
        throw std::invalid_argument("SymmetryGenerator<HAtom>::fractional_point(const HAtom&) the atom has no site");
    return site->frac();
}

namespace symmetry_detail {

namespace {

// Accepted image points bucketed in cubes twice as wide as the tolerance, so
// that a point is compared only with those in its own and the 26 neighbouring
// cubes: every point within the tolerance lies there, rounding included. Points that cannot be
// bucketed (not finite, or far out) are compared with all accepted points.
class AcceptedPoints {
public:
    explicit AcceptedPoints(double tolerance)
        : tolerance_(tolerance), width_(2 * tolerance), bucketed_(tolerance > 0) {}

    // True, and `p` accepted, unless an accepted point equals it.
    bool accept(const Point& p) {
        Key key;
        if (bucketed_ && key_of(p, key)) {
            for (std::int64_t dx = -1; dx <= 1; ++dx)
                for (std::int64_t dy = -1; dy <= 1; ++dy)
                    for (std::int64_t dz = -1; dz <= 1; ++dz) {
                        auto found = cells_.find(Key{key.x + dx, key.y + dy, key.z + dz});
                        if (found == cells_.end()) continue;
                        for (const Point& q : found->second)
                            if (equals(q, p, tolerance_)) return false;
                    }
            for (const Point& q : loose_)
                if (equals(q, p, tolerance_)) return false;
            cells_[key].push_back(p);
            return true;
        }
        // Not bucketed: compared with everything, and kept loose.
        for (const auto& cell : cells_)
            for (const Point& q : cell.second)
                if (equals(q, p, tolerance_)) return false;
        for (const Point& q : loose_)
            if (equals(q, p, tolerance_)) return false;
        loose_.push_back(p);
        return true;
    }

private:
    struct Key {
        std::int64_t x, y, z;
        bool operator==(const Key& o) const { return x == o.x && y == o.y && z == o.z; }
    };
    struct KeyHash {
        std::size_t operator()(const Key& k) const {
            return static_cast<std::size_t>(k.x * 73856093LL ^ k.y * 19349663LL ^ k.z * 83492791LL);
        }
    };

    bool key_of(const Point& p, Key& key) const {
        std::int64_t* cells[3] = {&key.x, &key.y, &key.z};
        for (int k = 0; k < 3; ++k) {
            const double c = std::floor(p[k] / width_);
            if (!std::isfinite(c) || std::fabs(c) > 1e15) return false;
            *cells[k] = static_cast<std::int64_t>(c);
        }
        return true;
    }

    double tolerance_;
    double width_;
    bool bucketed_;
    std::unordered_map<Key, std::vector<Point>, KeyHash> cells_;
    std::vector<Point> loose_;
};

}  // namespace

std::vector<CrystalSymmetryTransformation> point_transformations(const Cell& cell, const Point& p,
                                                                 const TransformedSolid& solid) {
    std::vector<CrystalSymmetryTransformation> result;
    const Box box = solid.fractional_box(cell);
    AcceptedPoints accepted(1e-07);
    for (const CrystalSymmetryOperator& op : cell.spacegroup().operators()) {
        const Point image = op.apply(p);
        const TranslationRange range = find_translation(image, box);
        if (range.empty()) continue;
        for (int x = range.lower[0]; x <= range.upper[0]; ++x)
            for (int y = range.lower[1]; y <= range.upper[1]; ++y)
                for (int z = range.lower[2]; z <= range.upper[2]; ++z) {
                    const Point q(image + Vector<double, 3>(x, y, z));
                    if (solid.contains(cell, q) && accepted.accept(q))
                        result.push_back(CrystalSymmetryTransformation(op, Vector<int, 3>(x, y, z)));
                }
    }
    return result;
}

struct PlaceRegister::Places {
    std::multiset<Point, PointCompareXYZ> points;
};

PlaceRegister::PlaceRegister(double tolerance) : tolerance_(tolerance), places_(new Places()) {}

PlaceRegister::~PlaceRegister() = default;

bool PlaceRegister::claim(const Point& p) {
    std::multiset<Point, PointCompareXYZ>& points = places_->points;
    auto at = points.lower_bound(p);
    if (at != points.end() && equals(*at, p, tolerance_)) return false;
    // Inserted just before its lower bound, where a sorted vector would put it.
    points.insert(at, p);
    return true;
}

}  // namespace symmetry_detail

template SymmetryMappingList<HAtom> apply_symmetry<HAtom>(const Cell&, const CrystalSymmetryTransformation&,
                                                           const std::vector<HAtom>&);
template SymmetryMappingLists<HAtom> apply_symmetry<HAtom>(const Cell&,
                                                            const std::vector<CrystalSymmetryTransformation>&,
                                                            const std::vector<HAtom>&);
template SymmetryMappingList<HAtom> apply_symmetry_if<HAtom>(const Cell&, const CrystalSymmetryTransformation&,
                                                              const std::vector<HAtom>&, const TransformedSolid&,
                                                              SymmetryFunctions::Condition);
template SymmetryMappingLists<HAtom> apply_symmetry_if<HAtom>(const Cell&,
                                                               const std::vector<CrystalSymmetryTransformation>&,
                                                               const std::vector<HAtom>&, const TransformedSolid&,
                                                               SymmetryFunctions::Condition);
template SymmetryMappingLists<HAtom> remove_duplicate_points<HAtom>(const std::vector<SymmetryMappingList<HAtom> >&,
                                                                     double);
template class IfAnyIncluded<HAtom>;
template class IfCentroidIncluded<HAtom>;

}  // namespace molcryst

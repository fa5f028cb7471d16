// PairGrid: a private helper of the group searches of ContactCriterion. It
// buckets points into cubic cells as wide as a search radius, so that the
// points within that radius of a query are found among 27 cells instead of
// the whole list. Members are named by their position in the caller's list
// and come back in ascending order, the order of the full walk.
#ifndef MOLCRYST_SRC_CONTACT_PAIRGRID_H
#define MOLCRYST_SRC_CONTACT_PAIRGRID_H

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "molcryst/geometry/Point.h"

namespace molcryst {
namespace contact_detail {

class PairGrid {
public:
    /// Whether a point's coordinates can be bucketed: finite and within 1e9 Angstrom.
    static bool usable(const Point& p);

    /// Buckets `points[j]` for each j with `member[j]`; every point must be
    /// usable. `reach` must be finite; with no positive reach nothing is near.
    PairGrid(const std::vector<Point>& points, const std::vector<char>& member, double reach);

    /// The members within `reach` of `p` (distance <= reach), ascending.
    void near(const Point& p, std::vector<int>& out) const;

    /// Pairs looked at by near() so far, inside the 27 cells.
    long long npairs_examined() const { return examined_; }

private:
    struct Cell {
        std::int64_t x, y, z;
        bool operator==(const Cell& o) const { return x == o.x && y == o.y && z == o.z; }
    };
    struct CellHash {
        std::size_t operator()(const Cell& c) const {
            return static_cast<std::size_t>(c.x * 73856093LL ^ c.y * 19349663LL ^ c.z * 83492791LL);
        }
    };
    Cell cell_of(const Point& p) const;

    /// The range in order_ of a cell; empty when the cell holds nothing.
    std::pair<int, int> members_of(const Cell& c) const;

    const std::vector<Point>& points_;
    double reach_;
    double cell_size_;
    std::vector<int> order_;  // members grouped by cell, ascending inside each
    // Cells of a box no larger than a few per member are an array, indexed
    // from `low_` over `extent_`; sparse ones a hash map.
    bool dense_ = false;
    Cell low_{0, 0, 0}, extent_{0, 0, 0};
    std::vector<std::pair<int, int> > dense_cells_;
    std::unordered_map<Cell, std::pair<int, int>, CellHash> cells_;  // cell -> range in order_
    mutable long long examined_ = 0;
};

}  // namespace contact_detail
}  // namespace molcryst

#endif

#include "PairGrid.h"

#include <algorithm>
#include <cmath>

namespace molcryst {
namespace contact_detail {

bool PairGrid::usable(const Point& p) {
    for (int k = 0; k < 3; ++k)
        if (!std::isfinite(p[k]) || std::fabs(p[k]) > 1e9) return false;
    return true;
}

PairGrid::PairGrid(const std::vector<Point>& points, const std::vector<char>& member, double reach)
    : points_(points), reach_(reach), cell_size_(reach > 0 ? reach : 1.0) {
    if (!(reach_ > 0)) return;
    std::vector<std::pair<Cell, int> > keyed;
    for (std::size_t j = 0; j < points.size(); ++j)
        if (member[j]) keyed.push_back(std::make_pair(cell_of(points[j]), static_cast<int>(j)));
    std::stable_sort(keyed.begin(), keyed.end(), [](const std::pair<Cell, int>& a, const std::pair<Cell, int>& b) {
        if (a.first.x != b.first.x) return a.first.x < b.first.x;
        if (a.first.y != b.first.y) return a.first.y < b.first.y;
        return a.first.z < b.first.z;
    });
    order_.reserve(keyed.size());
    cells_.reserve(keyed.size());
    for (std::size_t k = 0; k < keyed.size(); ++k) {
        if (k == 0 || !(keyed[k].first == keyed[k - 1].first))
            cells_[keyed[k].first] = std::make_pair(static_cast<int>(k), static_cast<int>(k));
        ++cells_[keyed[k].first].second;
        order_.push_back(keyed[k].second);
    }
}

PairGrid::Cell PairGrid::cell_of(const Point& p) const {
    return Cell{static_cast<std::int64_t>(std::floor(p[0] / cell_size_)),
                static_cast<std::int64_t>(std::floor(p[1] / cell_size_)),
                static_cast<std::int64_t>(std::floor(p[2] / cell_size_))};
}

void PairGrid::near(const Point& p, std::vector<int>& out) const {
    out.clear();
    if (cells_.empty()) return;
    const Cell centre = cell_of(p);
    for (std::int64_t dx = -1; dx <= 1; ++dx)
        for (std::int64_t dy = -1; dy <= 1; ++dy)
            for (std::int64_t dz = -1; dz <= 1; ++dz) {
                auto found = cells_.find(Cell{centre.x + dx, centre.y + dy, centre.z + dz});
                if (found == cells_.end()) continue;
                examined_ += found->second.second - found->second.first;
                for (int k = found->second.first; k < found->second.second; ++k) {
                    const int j = order_[static_cast<std::size_t>(k)];
                    if (distance(p, points_[static_cast<std::size_t>(j)]) <= reach_) out.push_back(j);
                }
            }
    std::sort(out.begin(), out.end());
}

}  // namespace contact_detail
}  // namespace molcryst

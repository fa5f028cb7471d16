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
    for (const auto& entry : keyed) order_.push_back(entry.second);
    if (keyed.empty()) return;
    Cell high = keyed.front().first;
    low_ = high;
    for (const auto& entry : keyed) {
        low_ = Cell{std::min(low_.x, entry.first.x), std::min(low_.y, entry.first.y), std::min(low_.z, entry.first.z)};
        high = Cell{std::max(high.x, entry.first.x), std::max(high.y, entry.first.y), std::max(high.z, entry.first.z)};
    }
    extent_ = Cell{high.x - low_.x + 1, high.y - low_.y + 1, high.z - low_.z + 1};
    const double ncells = static_cast<double>(extent_.x) * static_cast<double>(extent_.y) * static_cast<double>(extent_.z);
    dense_ = ncells <= 4.0 * static_cast<double>(keyed.size()) + 4096.0;
    if (dense_) dense_cells_.assign(static_cast<std::size_t>(ncells), std::make_pair(0, 0));
    for (std::size_t k = 0; k < keyed.size(); ++k) {
        const Cell& c = keyed[k].first;
        std::pair<int, int>* range;
        if (dense_)
            range = &dense_cells_[static_cast<std::size_t>(((c.x - low_.x) * extent_.y + (c.y - low_.y)) * extent_.z +
                                                           (c.z - low_.z))];
        else
            range = &cells_[c];
        if (k == 0 || !(c == keyed[k - 1].first)) *range = std::make_pair(static_cast<int>(k), static_cast<int>(k));
        ++range->second;
    }
}

std::pair<int, int> PairGrid::members_of(const Cell& c) const {
    if (dense_) {
        const std::int64_t x = c.x - low_.x, y = c.y - low_.y, z = c.z - low_.z;
        if (x < 0 || y < 0 || z < 0 || x >= extent_.x || y >= extent_.y || z >= extent_.z) return std::make_pair(0, 0);
        return dense_cells_[static_cast<std::size_t>((x * extent_.y + y) * extent_.z + z)];
    }
    auto found = cells_.find(c);
    return found != cells_.end() ? found->second : std::make_pair(0, 0);
}

PairGrid::Cell PairGrid::cell_of(const Point& p) const {
    return Cell{static_cast<std::int64_t>(std::floor(p[0] / cell_size_)),
                static_cast<std::int64_t>(std::floor(p[1] / cell_size_)),
                static_cast<std::int64_t>(std::floor(p[2] / cell_size_))};
}

void PairGrid::near(const Point& p, std::vector<int>& out) const {
    out.clear();
    if (order_.empty()) return;
    const Cell centre = cell_of(p);
    for (std::int64_t dx = -1; dx <= 1; ++dx)
        for (std::int64_t dy = -1; dy <= 1; ++dy)
            for (std::int64_t dz = -1; dz <= 1; ++dz) {
                const std::pair<int, int> range = members_of(Cell{centre.x + dx, centre.y + dy, centre.z + dz});
                examined_ += range.second - range.first;
                for (int k = range.first; k < range.second; ++k) {
                    const int j = order_[static_cast<std::size_t>(k)];
                    if (distance(p, points_[static_cast<std::size_t>(j)]) <= reach_) out.push_back(j);
                }
            }
    std::sort(out.begin(), out.end());
}

}  // namespace contact_detail
}  // namespace molcryst

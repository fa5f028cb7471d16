// IndexedTable: a sequence of distinct values, each with a stable index found
// by value in logarithmic time.
//
// Removal costs one erase and renumbers nothing: the stored positions are
// hints. An `index` that finds its hint stale looks below it, as far as the
// removals since the last renumbering reach, and rewrites them all when many
// removals have gathered.
// Removing many values at once goes through `remove_if` or `remove_values`,
// which filter the sequence in one pass and renumber once.
#ifndef MOLCRYST_SUPPORT_INDEXEDTABLE_H
#define MOLCRYST_SUPPORT_INDEXEDTABLE_H

#include <algorithm>
#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace molcryst {

/// Values in index order with a self-repairing map from value to index.
template <class V>
class IndexedTable {
public:
    typedef typename std::deque<V>::iterator iterator;
    typedef typename std::deque<V>::const_iterator const_iterator;

    /// Appends `v` unless it is there already; returns its index either way.
    unsigned int add(const V& v) {
        if (positions_.insert(std::make_pair(v, static_cast<unsigned int>(values_.size()))).second)
            values_.push_back(v);
        return index(v);
    }

    /// The value with index `i`; std::out_of_range outside the table.
    const V& at(unsigned int i) const {
        if (static_cast<long long>(i) < first_index_ ||
            static_cast<long long>(i) >= first_index_ + static_cast<long long>(values_.size()))
            throw std::out_of_range("IndexedTable::at Illegal index: " + std::to_string(i));
        return values_[i - first_index_];
    }

    /// The index of `v`; std::invalid_argument when it is not in the table.
    unsigned int index(const V& v) const {
        typename std::map<V, unsigned int>::iterator found = positions_.find(v);
        if (found == positions_.end()) throw std::invalid_argument("IndexedTable::index(Value): Unknown value.");
        if (found->second < values_.size() && values_[found->second] == v) return found->second + first_index_;
        // Each removal since the positions were last exact moved later values
        // down one place, so the value lies at most that many places below its
        // hint. While few removals have gathered, a look below the hint is far
        // cheaper than rewriting every position; a run of removals (a group
        // folded out of a diagram) then costs no renumbering each.
        if (stale_ <= values_.size() / 8) {
            const std::size_t top = std::min<std::size_t>(found->second, values_.size());
            for (std::size_t k = 1; k <= stale_ && k <= top; ++k)
                if (values_[top - k] == v) {
                    found->second = static_cast<unsigned int>(top - k);
                    return found->second + first_index_;
                }
        }
        refresh();
        return found->second + first_index_;
    }

    /// Removes `v`, found by `index`.
    void remove_value(const V& v) { remove(values_.begin() + (index(v) - first_index_)); }

    /// Removes the value at `position`; later values shift down by one.
    void remove(iterator position) {
        positions_.erase(*position);
        values_.erase(position);
        ++stale_;
    }

    /// Removes every value for which `doomed(value)` is true, judged before
    /// any is removed; the others keep their order and close the gaps, as
    /// `remove_value` of each in turn would leave them. One pass and one
    /// renumbering, whatever the number removed. Returns that number.
    template <class Predicate>
    unsigned int remove_if(Predicate doomed) {
        // Judged first, so that a predicate that throws leaves the table as it was.
        std::vector<bool> marked(values_.size(), false);
        std::size_t count = 0;
        for (std::size_t i = 0; i < values_.size(); ++i)
            if (doomed(static_cast<const V&>(values_[i]))) {
                marked[i] = true;
                ++count;
            }
        if (count == 0) return 0;
        std::size_t kept = 0;
        for (std::size_t i = 0; i < values_.size(); ++i) {
            if (marked[i]) {
                positions_.erase(values_[i]);
                continue;
            }
            if (kept != i) values_[kept] = std::move(values_[i]);
            ++kept;
        }
        values_.erase(values_.begin() + static_cast<std::ptrdiff_t>(kept), values_.end());
        renumber(values_);  // the map now holds exactly the values kept
        stale_ = 0;
        return static_cast<unsigned int>(count);
    }

    /// Removes the values of the table that are in `values`, as `remove_if`
    /// does; the others in `values` are ignored. Returns the number removed.
    unsigned int remove_values(const std::set<V>& values) {
        if (values.empty()) return 0;
        return remove_if([&values](const V& v) { return values.count(v) != 0; });
    }

    void clear() {
        stale_ = 0;
        values_.clear();
        positions_.clear();
    }

    /// Gives the values the order of `values`, as `clear` and then `add` of
    /// each would. When `values` holds exactly the values of the table, each
    /// once, the map keeps its entries and only their positions are
    /// rewritten, from one walk in key order: no allocation, and no search per
    /// value through a map that may be scattered over the heap.
    void reorder(const std::vector<V>& values) {
        if (values.size() == values_.size() && renumber(values)) {
            values_.assign(values.begin(), values.end());
            stale_ = 0;
            return;
        }
        clear();
        for (const V& v : values) add(v);
    }

    unsigned int size() const { return static_cast<unsigned int>(values_.size()); }
    int first_index() const { return first_index_; }
    bool contains(const V& v) const { return positions_.count(v) != 0; }

    iterator begin() { return values_.begin(); }
    iterator end() { return values_.end(); }
    const_iterator begin() const { return values_.begin(); }
    const_iterator end() const { return values_.end(); }

    /// The values in index order.
    const std::deque<V>& values() const { return values_; }

private:
    // Writes each value's new position into the map if `values` (a vector or
    // a deque) is a permutation of the keys; false, with the map's positions
    // partly rewritten, if it is not.
    template <class Sequence>
    bool renumber(const Sequence& values) {
        typedef std::pair<const V*, unsigned int> Entry;
        std::vector<Entry> by_key;
        by_key.reserve(values.size());
        for (std::size_t i = 0; i < values.size(); ++i)
            by_key.push_back(Entry(&values[i], static_cast<unsigned int>(i)));
        const std::less<V> less;
        std::sort(by_key.begin(), by_key.end(),
                  [&less](const Entry& a, const Entry& b) { return less(*a.first, *b.first); });
        typename std::vector<Entry>::const_iterator e = by_key.begin();
        for (typename std::map<V, unsigned int>::iterator p = positions_.begin(); p != positions_.end(); ++p, ++e) {
            if (less(p->first, *e->first) || less(*e->first, p->first)) return false;
            p->second = e->second;
        }
        return true;
    }

    void refresh() const {
        stale_ = 0;
        unsigned int position = 0;
        for (const V& v : values_) positions_[v] = position++;
    }

    std::deque<V> values_;
    int first_index_ = 0;
    mutable std::map<V, unsigned int> positions_;  // hints, repaired by index()
    mutable std::size_t stale_ = 0;  // removals since every position was last exact
};

}  // namespace molcryst

#endif

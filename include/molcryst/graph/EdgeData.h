// EdgeData: an edge of a Graph as the unordered pair of its end nodes.
#ifndef MOLCRYST_GRAPH_EDGEDATA_H
#define MOLCRYST_GRAPH_EDGEDATA_H

#include <cstdint>
#include <stdexcept>
#include <type_traits>

#include "molcryst/support/THandle.h"

namespace molcryst {

/// The raw value of a node identifier: the address for a handle, the value
/// for an integer. Edge pairs are ordered and checked by it.
template <class T>
std::uintptr_t raw_identifier(const THandle<T>& h) {
    return reinterpret_cast<std::uintptr_t>(h.unhand());
}
template <class T, class = typename std::enable_if<std::is_integral<T>::value>::type>
long long raw_identifier(T value) {
    return static_cast<long long>(value);
}

/// The two end nodes of an edge, in the order given when it was made.
/// Equality ignores that order. Pairs order as handles do: by their higher
/// end, then by their lower end, the greater raw value counting as less.
template <class Tn, class Te>
class EdgeData {
public:
    /// Throws std::invalid_argument when the two ends are the same node.
    EdgeData(const Tn& id1, const Tn& id2) : id1_(id1), id2_(id2) {
        if (raw_identifier(id1) == raw_identifier(id2))
            throw std::invalid_argument("EdgeData::EdgeData - invalid edge: id1 equals id2");
    }

    const Tn& id1() const { return id1_; }
    const Tn& id2() const { return id2_; }

    bool operator==(const EdgeData& other) const {
        return (raw_identifier(id1_) == raw_identifier(other.id1_) && raw_identifier(id2_) == raw_identifier(other.id2_)) ||
               (raw_identifier(id1_) == raw_identifier(other.id2_) && raw_identifier(id2_) == raw_identifier(other.id1_));
    }
    bool operator!=(const EdgeData& other) const { return !(*this == other); }

    bool operator<(const EdgeData& other) const {
        auto a1 = raw_identifier(id1_), a2 = raw_identifier(id2_);
        auto b1 = raw_identifier(other.id1_), b2 = raw_identifier(other.id2_);
        auto a_high = a1 > a2 ? a1 : a2, a_low = a1 > a2 ? a2 : a1;
        auto b_high = b1 > b2 ? b1 : b2, b_low = b1 > b2 ? b2 : b1;
        if (a_high != b_high) return a_high > b_high;
        return a_low > b_low;
    }

private:
    Tn id1_;
    Tn id2_;
};

}  // namespace molcryst

#endif

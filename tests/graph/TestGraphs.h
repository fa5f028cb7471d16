// Test helpers for the graph tests: labelled node and edge identifiers, and
// graphs built from numbered nodes and a list of edges.
#ifndef MOLCRYST_TESTS_GRAPH_TESTGRAPHS_H
#define MOLCRYST_TESTS_GRAPH_TESTGRAPHS_H

#include <algorithm>
#include <initializer_list>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "molcryst/support/THandle.h"

namespace molcryst {
namespace testing {

struct Node {
    std::string label;
};
struct Edge {
    std::string label;
};
typedef THandle<Node> HNode;
typedef THandle<Edge> HEdge;
typedef std::vector<std::pair<int, int> > EdgeList;

inline HNode node(const std::string& label) { return HNode(new Node{label}); }
inline HEdge edge(const std::string& label) { return HEdge(new Edge{label}); }

/// The labels of `items` (handles), separated by spaces.
template <class Items>
std::string labels(const Items& items) {
    std::string text;
    for (const auto& item : items) text += (text.empty() ? "" : " ") + item->label;
    return text;
}

/// The edges of a ring of `size` nodes numbered from `first`.
inline EdgeList cycle(int first, int size) {
    EdgeList out;
    for (int i = 0; i < size; ++i) out.push_back({first + i, first + (i + 1) % size});
    return out;
}

inline EdgeList join(EdgeList a, const EdgeList& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

/// A graph of type `G` on nodes labelled a, b, ... (n26, n27, ... past z),
/// all added first in that order, then joined by `edges` in the order listed,
/// each edge labelled by its ends ("ab"). With a nonzero seed the handles are
/// shuffled before they are numbered, so that the neighbour order (descending
/// address) bears no relation to the numbering.
template <class G>
struct Numbered {
    std::vector<HNode> n;
    std::vector<HEdge> e;
    G g;
    Numbered(int count, const EdgeList& edges, unsigned int shuffle_seed = 0) {
        for (int i = 0; i < count; ++i) n.push_back(HNode(new Node()));
        if (shuffle_seed != 0) std::shuffle(n.begin(), n.end(), std::mt19937(shuffle_seed));
        for (int i = 0; i < count; ++i) {
            n[i]->label = i < 26 ? std::string(1, static_cast<char>('a' + i)) : "n" + std::to_string(i);
            g.add_node(n[i]);
        }
        for (const auto& pair : edges) {
            e.push_back(edge(n[pair.first]->label + n[pair.second]->label));
            g.add_edge(e.back(), n[pair.first], n[pair.second]);
        }
    }
    std::set<HNode> nodes(std::initializer_list<int> indices) const {
        std::set<HNode> out;
        for (int i : indices) out.insert(n[i]);
        return out;
    }
};

}  // namespace testing
}  // namespace molcryst

#endif

// GraphMatch: pairs of nodes and of edges between two graphs, kept both ways.
#ifndef MOLCRYST_DIAGRAM_GRAPHMATCH_H
#define MOLCRYST_DIAGRAM_GRAPHMATCH_H

#include <map>
#include <stdexcept>
#include <utility>

namespace molcryst {

/// A many-to-many match between the nodes and edges of graph 1 and graph 2.
/// Either side of a pair may be a null identifier: something that exists in
/// one graph only.
template <class Tn1, class Te1, class Tn2, class Te2>
class GraphMatch {
public:
    typedef std::multimap<Tn1, Tn2> NodeMatches;
    typedef std::multimap<Te1, Te2> EdgeMatches;
    typedef typename NodeMatches::const_iterator node_match_iterator;
    typedef typename EdgeMatches::const_iterator edge_match_iterator;

    /// Enters (n1, n2) unless the pair is known already.
    void add_node_match(const Tn1& n1, const Tn2& n2) {
        if (has_pair(nodes1_, n1, n2) || has_pair(nodes2_, n2, n1)) return;
        nodes1_.insert(std::make_pair(n1, n2));
        nodes2_.insert(std::make_pair(n2, n1));
    }
    /// Enters (e1, e2) unless the pair is known already.
    void add_edge_match(const Te1& e1, const Te2& e2) {
        if (has_pair(edges1_, e1, e2) || has_pair(edges2_, e2, e1)) return;
        edges1_.insert(std::make_pair(e1, e2));
        edges2_.insert(std::make_pair(e2, e1));
    }

    std::size_t nnode_matches() const { return nodes1_.size(); }
    std::size_t nedge_matches() const { return edges1_.size(); }
    node_match_iterator begin_node_matches() const { return nodes1_.begin(); }
    node_match_iterator end_node_matches() const { return nodes1_.end(); }
    edge_match_iterator begin_edge_matches() const { return edges1_.begin(); }
    edge_match_iterator end_edge_matches() const { return edges1_.end(); }

    /// Whether `n` stands on either side of a node match.
    bool has_node1(const Tn1& n) const { return nodes1_.count(n) != 0; }
    bool has_node2(const Tn2& n) const { return nodes2_.count(n) != 0; }
    bool has_edge1(const Te1& e) const { return edges1_.count(e) != 0; }
    bool has_edge2(const Te2& e) const { return edges2_.count(e) != 0; }

    /// How many graph-2 nodes `n1` matches.
    int graph2_nnodes(const Tn1& n1) const { return static_cast<int>(nodes1_.count(n1)); }
    /// The one graph-2 node that `n1` matches.
    Tn2 graph2_node(const Tn1& n1) const {
        if (graph2_nnodes(n1) != 1) throw std::runtime_error("node1 does not match exactly 1 node in graph2");
        return nodes1_.find(n1)->second;
    }

    void clear() {
        nodes1_.clear();
        nodes2_.clear();
        edges1_.clear();
        edges2_.clear();
    }

private:
    template <class Map, class K, class V>
    static bool has_pair(const Map& map, const K& key, const V& value) {
        std::pair<typename Map::const_iterator, typename Map::const_iterator> range = map.equal_range(key);
        for (typename Map::const_iterator i = range.first; i != range.second; ++i)
            if (i->second == value) return true;
        return false;
    }

    NodeMatches nodes1_;
    std::multimap<Tn2, Tn1> nodes2_;
    EdgeMatches edges1_;
    std::multimap<Te2, Te1> edges2_;
};

}  // namespace molcryst

#endif

// NodeData: what a Graph keeps for one node.
#ifndef MOLCRYST_GRAPH_NODEDATA_H
#define MOLCRYST_GRAPH_NODEDATA_H

#include <list>
#include <set>

namespace molcryst {

/// A node's identifier, its adjacent nodes (in the identifiers' own order,
/// descending address for handles) and the scratch path of the searches,
/// which is empty outside a search.
template <class Tn>
class NodeData {
public:
    NodeData() = default;
    explicit NodeData(const Tn& id) : id_(id) {}

    const Tn& id() const { return id_; }

    const std::set<Tn>& neighbours() const { return neighbours_; }
    typename std::set<Tn>::const_iterator begin_neighbours() const { return neighbours_.begin(); }
    typename std::set<Tn>::const_iterator end_neighbours() const { return neighbours_.end(); }
    int degree() const { return static_cast<int>(neighbours_.size()); }
    void add_neighbour(const Tn& n) { neighbours_.insert(n); }
    void remove_neighbour(const Tn& n) { neighbours_.erase(n); }
    bool has_neighbour(const Tn& n) const { return neighbours_.count(n) != 0; }

    /// Appends `n` to the scratch path.
    void add_to_path(const Tn& n) { path_.push_back(n); }
    std::list<Tn>& path() { return path_; }
    const std::list<Tn>& path() const { return path_; }

private:
    Tn id_{};
    std::set<Tn> neighbours_;
    std::list<Tn> path_;
};

}  // namespace molcryst

#endif

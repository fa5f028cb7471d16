#include "molcryst/diagram/DiagramNode.h"

#include <ostream>

#include "molcryst/diagram/DiagramEdge.h"

namespace molcryst {

template class Graph<HDiagramNode, HDiagramEdge>;
template class OrderedGraph<HDiagramNode, HDiagramEdge>;

DiagramNode::DiagramNode() = default;

DiagramNode::DiagramNode(const DiagramNode&) {}

DiagramNode::~DiagramNode() = default;

std::string DiagramNode::top_right_label() const { return std::string(); }

std::string DiagramNode::top_left_label() const { return std::string(); }

std::pair<std::string, std::string> DiagramNode::side_label() const {
    return std::pair<std::string, std::string>();
}

void DiagramNode::print(std::ostream&) const {}

void DiagramNode::set_graph(const HDiagramGraph& graph, const HDiagramNode& self) {
    if (graph.unhand() != nullptr && self.unhand() == nullptr)
        throw std::invalid_argument("DiagramNode::set_graphgraph is non-zero: self cannot be zero");
    if (graph.unhand() == nullptr && self.unhand() != nullptr)
        throw std::invalid_argument("DiagramNode::set_graphgraph is zero: self cannot be non-zero");
    if (self.unhand() != nullptr && self.unhand() != this)
        throw std::invalid_argument("DiagramNode::set_graphself does not point to this DiagramNode object");
    graph_ = graph;
    self_ = self;
}

HDiagramNode DiagramNode::self() const {
    if (self_.unhand() == nullptr)
        throw std::runtime_error("DiagramNode::self No pointer available - this atom is not in a graph");
    return self_;
}

const DiagramGraph& DiagramNode::checked(const char* method) const {
    if (graph_.unhand() == nullptr)
        throw std::runtime_error(std::string("DiagramNode::") + method + " cannot work when graph_ == 0");
    return *graph_;
}

int DiagramNode::index() const { return checked("index").node_index(self_); }

std::deque<HDiagramNode> DiagramNode::neighbours() const {
    const DiagramGraph& g = checked("neighbours");
    return std::deque<HDiagramNode>(g.node_begin_neighbours(self_), g.node_end_neighbours(self_));
}

DiagramNode::NeighbourIterator DiagramNode::begin_neighbours() const {
    return checked("begin_neighbours").node_begin_neighbours(self_);
}

DiagramNode::NeighbourIterator DiagramNode::end_neighbours() const {
    return checked("end_neighbours").node_end_neighbours(self_);
}

int DiagramNode::nedges() const { return checked("nedges").degree_node(self_); }

std::deque<HDiagramEdge> DiagramNode::edges() const {
    const DiagramGraph& g = checked("edges");
    std::deque<HDiagramEdge> result;
    for (NeighbourIterator n = g.node_begin_neighbours(self_); n != g.node_end_neighbours(self_); ++n)
        result.push_back(g.edge(self_, *n));
    return result;
}

bool DiagramNode::cyclic() const { return checked("cyclic").is_node_cyclic(self_, nullptr); }

int DiagramNode::nbonds() const { return is_in_diagram() ? nedges() : 0; }

std::ostream& operator<<(std::ostream& out, const DiagramNode& node) {
    node.print(out);
    return out;
}

}  // namespace molcryst

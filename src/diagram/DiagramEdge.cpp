#include "molcryst/diagram/DiagramEdge.h"

#include <ostream>
#include <stdexcept>

namespace molcryst {

DiagramEdge::DiagramEdge(BondType type) : type_(UNKNOWN_BOND) { set_type(type); }

DiagramEdge::DiagramEdge(Archive& ar) : type_(UNKNOWN_BOND) { read(ar); }

DiagramEdge::DiagramEdge(const DiagramEdge& other) : type_(other.type_), tooltip_text_(other.tooltip_text_) {}

DiagramEdge& DiagramEdge::operator=(const DiagramEdge& other) {
    type_ = other.type_;
    tooltip_text_ = other.tooltip_text_;
    return *this;
}

DiagramEdge::~DiagramEdge() = default;

DiagramEdge* DiagramEdge::clone() const { return new DiagramEdge(*this); }

bool DiagramEdge::highlighted() const { return false; }

void DiagramEdge::set_type(BondType type) {
    if (static_cast<int>(type) < 0 || static_cast<int>(type) > 9)
        throw std::invalid_argument("DiagramEdge::set_type: Illegal edge type.");
    type_ = type;
}

void DiagramEdge::write(Archive& ar) const { ar << static_cast<int>(type_); }

void DiagramEdge::read(Archive& ar) {
    Archive::Field field(ar, "DiagramEdge::read type");
    unsigned int value = 0;
    ar >> value;
    // Stored as read: the layout carries no check, and set_type is not involved.
    type_ = static_cast<BondType>(static_cast<int>(value));
}

void DiagramEdge::set_graph(const HDiagramGraph& graph, const HDiagramEdge& self) {
    if (graph.unhand() != nullptr && self.unhand() == nullptr)
        throw std::invalid_argument("DiagramEdge::set_graphgraph is non-zero: self cannot be zero");
    if (graph.unhand() == nullptr && self.unhand() != nullptr)
        throw std::invalid_argument("DiagramEdge::set_graphgraph is zero: self cannot be non-zero");
    if (self.unhand() != nullptr && self.unhand() != this)
        throw std::invalid_argument("DiagramEdge::set_graphself does not point to this DiagramEdge object");
    graph_ = graph;
    self_ = self;
}

HDiagramEdge DiagramEdge::self() const {
    if (self_.unhand() == nullptr)
        throw std::runtime_error("DiagramEdge::self No pointer available - this node is not in a graph");
    return self_;
}

const DiagramGraph& DiagramEdge::checked(const char* method) const {
    if (graph_.unhand() == nullptr)
        throw std::runtime_error(std::string("DiagramEdge::") + method + " cannot work when graph_ == 0");
    return *graph_;
}

int DiagramEdge::index() const { return checked("index").edge_index(self_); }

HDiagramNode DiagramEdge::node1() const { return checked("node1").edge_node1(self_); }

HDiagramNode DiagramEdge::node2() const { return checked("node2").edge_node2(self_); }

HDiagramNode DiagramEdge::other_node(HDiagramNode node) const {
    const DiagramGraph& g = checked("other_node");
    if (node.unhand() == nullptr)
        throw std::invalid_argument("DiagramEdge::other_node(HDiagramNode) node is a null pointer");
    const HDiagramNode n1 = g.edge_node1(self_);
    const HDiagramNode n2 = g.edge_node2(self_);
    if (node == n1) return n2;
    if (node == n2) return n1;
    throw std::runtime_error("DiagramEdge::other_node(HDiagramNode) node is not in this edge");
}

bool DiagramEdge::cyclic() const { return checked("cyclic").is_edge_cyclic(self_, nullptr); }

bool DiagramEdge::operator==(const DiagramEdge& other) const {
    return type_ == other.type_ && tooltip_text_ == other.tooltip_text_ && is_in_diagram() == other.is_in_diagram();
}

void DiagramEdge::print_ends(std::ostream& out) const {
    if (!is_in_diagram()) {
        out << ", not in current diagram";
        return;
    }
    const HDiagramNode n1 = node1(), n2 = node2();
    out << ", node1: " << n1->class_name() << " index: " << n1->index() << " address: "
        << static_cast<const void*>(n1.unhand()) << ", node2: " << n2->class_name() << " index: " << n2->index()
        << " address: " << static_cast<const void*>(n2.unhand());
}

void DiagramEdge::print(std::ostream& out) const {
    out << "type: " << static_cast<int>(type_);
    print_ends(out);
}

std::ostream& operator<<(std::ostream& out, const DiagramEdge& edge) {
    edge.print(out);
    return out;
}

}  // namespace molcryst

#include "molcryst/diagram/DiagramCompositeEdge.h"

#include <algorithm>
#include <ostream>

namespace molcryst {

DiagramCompositeEdge::DiagramCompositeEdge(BondType type) : DiagramEdge(type) {}

DiagramCompositeEdge::DiagramCompositeEdge(const std::vector<HDiagramEdge>& edges, BondType type)
    : DiagramEdge(type), edges_(edges) {}

DiagramCompositeEdge::~DiagramCompositeEdge() = default;

bool DiagramCompositeEdge::highlighted() const {
    for (const HDiagramEdge& e : edges_)
        if (e->highlighted()) return true;
    return false;
}

bool DiagramCompositeEdge::has_edge(HDiagramEdge edge) const {
    return std::find(edges_.begin(), edges_.end(), edge) != edges_.end();
}

void DiagramCompositeEdge::add_edge(HDiagramEdge edge) {
    if (edge.unhand() != nullptr) edges_.push_back(edge);
}

bool DiagramCompositeEdge::operator==(const DiagramCompositeEdge& other) const {
    return type() == other.type() && edges_ == other.edges_ && is_in_diagram() == other.is_in_diagram();
}

void DiagramCompositeEdge::print(std::ostream& out) const {
    out << "type: " << static_cast<int>(type()) << ", edges: " << edges_.size();
    print_ends(out);
}

}  // namespace molcryst

#include "molcryst/diagram/DiagramPiGroup.h"

#include "molcryst/diagram/ChemicalDiagram.h"
#include "molcryst/diagram/DiagramCompositeEdge.h"

namespace molcryst {

DiagramPiGroup::DiagramPiGroup(HDiagramNode centre, THandle<DiagramCircle> circle, const ChemicalDiagram& diagram) {
    const HDiagramEdge composite(new DiagramCompositeEdge(PI_BOND));
    const HDiagramNode ring(circle);
    for (const HDiagramNode& a : circle->atoms())
        if (diagram.has_edge(centre, a))
            add_edge_match(diagram.edge(centre, a), HDiagramNode(), a, composite, HDiagramNode(), ring);
    circle_node_ = circle;
}

DiagramPiGroup::~DiagramPiGroup() = default;

bool DiagramPiGroup::has_node(HDiagramNode node) const {
    if (circle_node_.unhand() == nullptr) return false;
    return node.unhand() == circle_node_.unhand() || circle_node_->has_node(node);
}

bool DiagramPiGroup::other_has_edge(HDiagramEdge edge, const ChemicalDiagram& diagram) const {
    for (const HDiagramPiGroup& other : diagram.pi_groups())
        if (other.unhand() != this && other->expanded() && other->has_edge(edge)) return true;
    return false;
}

}  // namespace molcryst

#include "molcryst/diagram/DiagramCompositeNode.h"

#include <algorithm>

namespace molcryst {

DiagramCompositeNode::DiagramCompositeNode() = default;

DiagramCompositeNode::DiagramCompositeNode(const std::vector<HDiagramNode>& nodes) : nodes_(nodes) {}

DiagramCompositeNode::~DiagramCompositeNode() = default;

bool DiagramCompositeNode::has_node(HDiagramNode node) const {
    return std::find(nodes_.begin(), nodes_.end(), node) != nodes_.end();
}

void DiagramCompositeNode::add_node(HDiagramNode node) {
    if (node.unhand() != nullptr) nodes_.push_back(node);
}

}  // namespace molcryst

// DiagramCompositeNode: a node that stands for a list of other nodes (a
// frame around repeated units, a symbol for a substituent).
#ifndef MOLCRYST_DIAGRAM_DIAGRAMCOMPOSITENODE_H
#define MOLCRYST_DIAGRAM_DIAGRAMCOMPOSITENODE_H

#include <vector>

#include "molcryst/diagram/DiagramNode.h"

namespace molcryst {

/// A node with member nodes, in the order they were given.
class DiagramCompositeNode : public DiagramNode {
public:
    DiagramCompositeNode();
    explicit DiagramCompositeNode(const std::vector<HDiagramNode>& nodes);
    ~DiagramCompositeNode() override;

    bool has_node(HDiagramNode node) const override;
    virtual const std::vector<HDiagramNode>& nodes() const { return nodes_; }
    /// Adds a member; a null handle is ignored.
    virtual void add_node(HDiagramNode node);

private:
    std::vector<HDiagramNode> nodes_;
};

}  // namespace molcryst

#endif

// DiagramPiGroup: a centre (a metal) bonded to every atom of an aromatic
// ring, its many pi bonds folded into one bond to the ring's circle.
#ifndef MOLCRYST_DIAGRAM_DIAGRAMPIGROUP_H
#define MOLCRYST_DIAGRAM_DIAGRAMPIGROUP_H

#include "molcryst/diagram/DiagramCircle.h"
#include "molcryst/diagram/DiagramGroup.h"

namespace molcryst {

/// A pi group. Contracted, one composite edge of type PI_BOND joins the
/// centre to the circle; expanded, the separate bonds to the ring atoms. A
/// bond that another expanded pi group still needs is left in place.
class DiagramPiGroup : public DiagramGroup {
public:
    /// Matches every bond from `centre` to an atom of `circle` with one new
    /// composite edge from the centre to the circle. Starts expanded.
    DiagramPiGroup(HDiagramNode centre, THandle<DiagramCircle> circle, const ChemicalDiagram& diagram);
    ~DiagramPiGroup() override;

    /// The circle, or a node of its ring.
    bool has_node(HDiagramNode node) const override;
    /// Whether another pi group of the diagram, standing expanded, has `edge`.
    bool other_has_edge(HDiagramEdge edge, const ChemicalDiagram& diagram) const override;

    THandle<DiagramCircle> circle_node() const { return circle_node_; }

private:
    THandle<DiagramCircle> circle_node_;
};

typedef THandle<DiagramPiGroup> HDiagramPiGroup;

}  // namespace molcryst

#endif

// DiagramCompositeEdge: one edge that stands for several, such as the single
// bond from a metal to a ring circle that replaces the bonds to each ring atom.
#ifndef MOLCRYST_DIAGRAM_DIAGRAMCOMPOSITEEDGE_H
#define MOLCRYST_DIAGRAM_DIAGRAMCOMPOSITEEDGE_H

#include <vector>

#include "molcryst/diagram/DiagramEdge.h"

namespace molcryst {

/// An edge with member edges; highlighted when any member is.
class DiagramCompositeEdge : public DiagramEdge {
public:
    explicit DiagramCompositeEdge(BondType type = SINGLE_BOND);
    DiagramCompositeEdge(const std::vector<HDiagramEdge>& edges, BondType type);
    ~DiagramCompositeEdge() override;

    DiagramEdge* clone() const override { return new DiagramCompositeEdge(*this); }
    bool highlighted() const override;
    void print(std::ostream& out) const override;

    const std::vector<HDiagramEdge>& edges() const { return edges_; }
    bool has_edge(HDiagramEdge edge) const;
    /// Adds a member; a null handle is ignored.
    void add_edge(HDiagramEdge edge);

    bool operator==(const DiagramCompositeEdge& other) const;
    bool operator!=(const DiagramCompositeEdge& other) const { return !(*this == other); }

private:
    std::vector<HDiagramEdge> edges_;
};

}  // namespace molcryst

#endif

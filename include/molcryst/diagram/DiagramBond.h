// DiagramBond: a bond of a chemical diagram, which a viewer can highlight.
#ifndef MOLCRYST_DIAGRAM_DIAGRAMBOND_H
#define MOLCRYST_DIAGRAM_DIAGRAMBOND_H

#include "molcryst/diagram/DiagramEdge.h"

namespace molcryst {

/// A plain bond between two diagram nodes.
class DiagramBond : public DiagramEdge {
public:
    explicit DiagramBond(BondType type = SINGLE_BOND) : DiagramEdge(type) {}
    explicit DiagramBond(Archive& ar) : DiagramEdge(ar) {}

    DiagramEdge* clone() const override { return new DiagramBond(*this); }
    bool highlighted() const override { return highlighted_; }
    virtual void set_highlighted(bool highlighted) { highlighted_ = highlighted; }

private:
    bool highlighted_ = false;
};

typedef THandle<DiagramBond> HDiagramBond;

}  // namespace molcryst

#endif

// DiagramFormulaGroup: atoms folded into a formula text at a chosen point.
//
// The kind exists so that a diagram keeps its groups of this kind in a set of
// their own; its matches are made by the code that recognises such a group.
#ifndef MOLCRYST_DIAGRAM_DIAGRAMFORMULAGROUP_H
#define MOLCRYST_DIAGRAM_DIAGRAMFORMULAGROUP_H

#include "molcryst/diagram/DiagramGroup.h"

namespace molcryst {

/// A group of the diagram's FormulaGroup set.
class DiagramFormulaGroup : public DiagramGroup {};

typedef THandle<DiagramFormulaGroup> HDiagramFormulaGroup;

}  // namespace molcryst

#endif

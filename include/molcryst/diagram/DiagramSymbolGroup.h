// DiagramSymbolGroup: a known substituent folded into one symbol node.
//
// The kind exists so that a diagram keeps its groups of this kind in a set of
// their own; its matches are made by the code that recognises such a group.
#ifndef MOLCRYST_DIAGRAM_DIAGRAMSYMBOLGROUP_H
#define MOLCRYST_DIAGRAM_DIAGRAMSYMBOLGROUP_H

#include "molcryst/diagram/DiagramGroup.h"

namespace molcryst {

/// A group of the diagram's SymbolGroup set.
class DiagramSymbolGroup : public DiagramGroup {};

typedef THandle<DiagramSymbolGroup> HDiagramSymbolGroup;

}  // namespace molcryst

#endif

// DiagramPiGroup: a metal bonded to every atom of a ring, folded into one bond to the ring's circle.
//
// The kind exists so that a diagram keeps its groups of this kind in a set of
// their own; its matches are made by the code that recognises such a group.
#ifndef MOLCRYST_DIAGRAM_DIAGRAMPIGROUP_H
#define MOLCRYST_DIAGRAM_DIAGRAMPIGROUP_H

#include "molcryst/diagram/DiagramGroup.h"

namespace molcryst {

/// A group of the diagram's PiGroup set.
class DiagramPiGroup : public DiagramGroup {};

typedef THandle<DiagramPiGroup> HDiagramPiGroup;

}  // namespace molcryst

#endif

// DiagramMultipleGroup: repeated units shown once, inside a frame with a
// multiplier: identical ligands on a centre, or repeat units of a chain.
//
// The kinds exist so that a diagram keeps ligand and repeat groups in sets
// of their own; their matches are made by the code that recognises them.
#ifndef MOLCRYST_DIAGRAM_DIAGRAMMULTIPLEGROUP_H
#define MOLCRYST_DIAGRAM_DIAGRAMMULTIPLEGROUP_H

#include "molcryst/diagram/DiagramGroup.h"

namespace molcryst {

/// A group of several units of equal length shown as one.
class DiagramMultipleGroup : public DiagramGroup {};

/// Identical ligands on one centre.
class DiagramLigandGroup : public DiagramMultipleGroup {};

/// Repeat units of a chain.
class DiagramRepeatGroup : public DiagramMultipleGroup {};

typedef THandle<DiagramLigandGroup> HDiagramLigandGroup;
typedef THandle<DiagramRepeatGroup> HDiagramRepeatGroup;

}  // namespace molcryst

#endif

// DiagramRepeatGroup: repeat units of a chain shown once, in a frame with
// their number.
#ifndef MOLCRYST_DIAGRAM_DIAGRAMREPEATGROUP_H
#define MOLCRYST_DIAGRAM_DIAGRAMREPEATGROUP_H

#include "molcryst/diagram/DiagramMultipleGroup.h"

namespace molcryst {

/// Repeat units of a chain: contracted, one unit in a frame with the number
/// of units, the chain's ends bonded to it.
class DiagramRepeatGroup : public DiagramMultipleGroup {
public:
    DiagramRepeatGroup(const Units& units, ChemicalDiagram& diagram);
    ~DiagramRepeatGroup() override;
    /// The chain's bonds to the outside move to the clones.
    void set_attachment_bonds(const Units& units, const UnitAtoms& atoms, const std::set<HDiagramEdge>& group_edges,
                              ChemicalDiagram& diagram) override;
    /// Bonds between units leave the diagram on contraction.
    void set_inter_unit_bonds(const Units& units, const UnitAtoms& atoms, const std::set<HDiagramEdge>& group_edges,
                              ChemicalDiagram& diagram) override;
};

typedef THandle<DiagramRepeatGroup> HDiagramRepeatGroup;

}  // namespace molcryst

#endif

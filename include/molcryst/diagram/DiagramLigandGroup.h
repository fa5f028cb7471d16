// DiagramLigandGroup: identical ligands on one centre shown once, in a frame
// with their number.
#ifndef MOLCRYST_DIAGRAM_DIAGRAMLIGANDGROUP_H
#define MOLCRYST_DIAGRAM_DIAGRAMLIGANDGROUP_H

#include "molcryst/diagram/DiagramMultipleGroup.h"

namespace molcryst {

/// Identical ligands on one centre: contracted, one ligand in a frame with
/// the number of ligands, bonded to the centre by composite edges.
class DiagramLigandGroup : public DiagramMultipleGroup {
public:
    DiagramLigandGroup(const Units& units, ChemicalDiagram& diagram);
    ~DiagramLigandGroup() override;
    /// Gathers the bonds to the centre, per atom of unit 0, into one composite edge.
    void set_attachment_bonds(const Units& units, const UnitAtoms& atoms, const std::set<HDiagramEdge>& group_edges,
                              ChemicalDiagram& diagram) override;
    /// Ligands are not bonded to each other: nothing.
    void set_inter_unit_bonds(const Units& units, const UnitAtoms& atoms, const std::set<HDiagramEdge>& group_edges,
                              ChemicalDiagram& diagram) override;
};

typedef THandle<DiagramLigandGroup> HDiagramLigandGroup;

}  // namespace molcryst

#endif

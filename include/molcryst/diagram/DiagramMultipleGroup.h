// DiagramMultipleGroup: repeated units shown once, inside a DiagramFrame
// that carries their number: the common part of identical ligands on a
// centre (DiagramLigandGroup) and repeat units of a chain (DiagramRepeatGroup).
//
// Contracted, the diagram shows clones of the atoms of the first unit inside
// the frame, bonded by composite edges that hold the corresponding bond of
// every unit; ring circles, pi groups and symbol groups of the first unit get
// counterparts in the frame. Expanding gives back every node, edge and group
// of the units.
#ifndef MOLCRYST_DIAGRAM_DIAGRAMMULTIPLEGROUP_H
#define MOLCRYST_DIAGRAM_DIAGRAMMULTIPLEGROUP_H

#include <map>
#include <set>
#include <vector>

#include "molcryst/diagram/DiagramFrame.h"
#include "molcryst/diagram/DiagramGroup.h"
#include "molcryst/diagram/DiagramPiGroup.h"
#include "molcryst/diagram/DiagramSymbolGroup.h"

namespace molcryst {

/// A group of units of equal length, atoms in corresponding order. Unequal
/// lengths or no unit at all are refused with std::invalid_argument.
class DiagramMultipleGroup : public DiagramGroup {
public:
    typedef THandle<std::vector<HDiagramNode> > Unit;
    typedef std::vector<Unit> Units;
    /// What set_atoms notes of each atom of the units.
    struct UnitAtom {
        HDiagramNode clone;        // its clone in the frame
        HDiagramNode counterpart;  // the atom of unit 0 in its place
        int unit = 0;              // its unit's number
    };
    typedef std::map<HDiagramNode, UnitAtom> UnitAtoms;

    DiagramMultipleGroup();
    ~DiagramMultipleGroup() override;

    void expand(ChemicalDiagram& diagram) override;
    void contract(ChemicalDiagram& diagram) override;
    void clear() override;

    /// Matches the units against one frame of clones; the group stays expanded.
    virtual void set_atoms(const Units& units, ChemicalDiagram& diagram);
    /// Matches the bonds from the units to the rest of the diagram.
    virtual void set_attachment_bonds(const Units& units, const UnitAtoms& atoms,
                                      const std::set<HDiagramEdge>& group_edges, ChemicalDiagram& diagram) = 0;
    /// Matches the bonds between different units.
    virtual void set_inter_unit_bonds(const Units& units, const UnitAtoms& atoms,
                                      const std::set<HDiagramEdge>& group_edges, ChemicalDiagram& diagram) = 0;

    /// The frame; null before set_atoms.
    THandle<DiagramFrame> frame() const { return frame_; }
    /// The symbol and pi groups of the units, out of the diagram while contracted.
    const std::set<HDiagramSymbolGroup>& unit_symbol_groups() const { return unit_symbol_groups_; }
    const std::set<HDiagramPiGroup>& unit_pi_groups() const { return unit_pi_groups_; }
    /// The groups made for the frame, in the diagram while contracted.
    const std::set<HDiagramSymbolGroup>& frame_symbol_groups() const { return frame_symbol_groups_; }
    const std::set<HDiagramPiGroup>& frame_pi_groups() const { return frame_pi_groups_; }

protected:
    const UnitAtoms& unit_atoms() const { return unit_atoms_; }
    /// Refuses no units, a null or empty unit, units of unequal length, and
    /// nodes that are not in the diagram or are given twice, with
    /// std::invalid_argument naming `where`.
    static void check_units(const Units& units, const ChemicalDiagram& diagram, const char* where);

private:
    void make_frame_groups(ChemicalDiagram& diagram);
    void restore_groups(ChemicalDiagram& diagram, const std::set<HDiagramSymbolGroup>& symbols,
                        const std::set<HDiagramPiGroup>& pis, bool contract_them);
    void withdraw_groups(ChemicalDiagram& diagram, const std::set<HDiagramSymbolGroup>& symbols,
                         const std::set<HDiagramPiGroup>& pis);

    std::set<HDiagramSymbolGroup> unit_symbol_groups_;
    std::set<HDiagramSymbolGroup> frame_symbol_groups_;
    std::set<HDiagramPiGroup> unit_pi_groups_;
    std::set<HDiagramPiGroup> frame_pi_groups_;
    THandle<DiagramFrame> frame_;
    UnitAtoms unit_atoms_;
    std::map<HDiagramNode, HDiagramNode> circle_clones_;  // circle of the units -> its circle in the frame
    std::map<HDiagramPiGroup, HDiagramNode> pi_centres_;  // pi group of the units -> its centre outside them
    bool frame_groups_made_ = false;
};

}  // namespace molcryst

#endif

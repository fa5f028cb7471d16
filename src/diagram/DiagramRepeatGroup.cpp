#include "molcryst/diagram/DiagramRepeatGroup.h"

#include "molcryst/diagram/ChemicalDiagram.h"

namespace molcryst {

DiagramRepeatGroup::DiagramRepeatGroup(const Units& units, ChemicalDiagram& diagram) { set_atoms(units, diagram); }

DiagramRepeatGroup::~DiagramRepeatGroup() = default;

void DiagramRepeatGroup::set_attachment_bonds(const Units&, const UnitAtoms& atoms,
                                              const std::set<HDiagramEdge>& group_edges, ChemicalDiagram&) {
    // The chain's ends move to the clones. Two ends bonded to one outside
    // node at the same clone (a ring of units) cannot both: the second
    // leaves on contraction.
    std::set<std::pair<HDiagramNode, HDiagramNode> > attached;
    for (UnitAtoms::const_iterator a = atoms.begin(); a != atoms.end(); ++a)
        for (const HDiagramEdge& e : a->first->edges()) {
            if (group_edges.count(e) != 0) continue;
            const HDiagramNode outside = e->other_node(a->first);
            if (attached.insert(std::make_pair(outside, a->second.clone)).second)
                add_edge_match(e, HDiagramNode(), a->first, e, HDiagramNode(), a->second.clone);
            else
                add_edge_match(e, e->node1(), e->node2(), HDiagramEdge(), HDiagramNode(), HDiagramNode());
        }
}

void DiagramRepeatGroup::set_inter_unit_bonds(const Units&, const UnitAtoms& atoms,
                                              const std::set<HDiagramEdge>& group_edges, ChemicalDiagram&) {
    for (const HDiagramEdge& e : group_edges)
        if (atoms.at(e->node1()).unit != atoms.at(e->node2()).unit)
            add_edge_match(e, e->node1(), e->node2(), HDiagramEdge(), HDiagramNode(), HDiagramNode());
}

}  // namespace molcryst

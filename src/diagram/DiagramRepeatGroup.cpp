#include "molcryst/diagram/DiagramRepeatGroup.h"

#include <vector>

#include "molcryst/diagram/ChemicalDiagram.h"

namespace molcryst {

DiagramRepeatGroup::DiagramRepeatGroup(const Units& units, ChemicalDiagram& diagram) { set_atoms(units, diagram); }

DiagramRepeatGroup::~DiagramRepeatGroup() = default;

void DiagramRepeatGroup::set_attachment_bonds(const Units&, const UnitAtoms& atoms,
                                              const std::set<HDiagramEdge>& group_edges, ChemicalDiagram&) {
    // The chain's ends move to the clones.
    std::vector<Attachment> attachments;
    for (UnitAtoms::const_iterator a = atoms.begin(); a != atoms.end(); ++a)
        for (const HDiagramEdge& e : a->first->edges())
            if (group_edges.count(e) == 0)
                attachments.push_back(Attachment{e, a->first, e->other_node(a->first), a->second.clone});
    add_attachments(attachments);
}

void DiagramRepeatGroup::set_inter_unit_bonds(const Units&, const UnitAtoms& atoms,
                                              const std::set<HDiagramEdge>& group_edges, ChemicalDiagram&) {
    for (const HDiagramEdge& e : group_edges)
        if (atoms.at(e->node1()).unit != atoms.at(e->node2()).unit)
            add_inner_edge(e);
}

}  // namespace molcryst

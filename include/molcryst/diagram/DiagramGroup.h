// DiagramGroup: a reversible rewrite of a chemical diagram.
//
// A group holds two graphs that never stand in the diagram together: the
// expanded graph (graph 1, the full structure) and the contracted graph
// (graph 2, say one symbol node), matched node to node and edge to edge.
// Every node and edge of both is held by handle, in the diagram or not, so
// expand and contract move the very same objects in and out: nothing is
// lost, and handles held elsewhere stay valid. Both swaps cost in
// proportion to the group's matches.
#ifndef MOLCRYST_DIAGRAM_DIAGRAMGROUP_H
#define MOLCRYST_DIAGRAM_DIAGRAMGROUP_H

#include <map>
#include <set>
#include <utility>
#include <vector>

#include "molcryst/diagram/DiagramEdge.h"
#include "molcryst/diagram/DiagramNode.h"
#include "molcryst/diagram/GraphMatch.h"

namespace molcryst {

class ChemicalDiagram;

/// The match type of every diagram group.
typedef GraphMatch<HDiagramNode, HDiagramEdge, HDiagramNode, HDiagramEdge> DiagramGraphMatch;

/// A group of a diagram; it starts expanded, the diagram showing its full structure.
///
/// An edge match (e1, e2) records the ends of each side: a null end means
/// the outside of the group, the node at the far end of an attachment bond,
/// found when the group swaps (by `other_node`) because another group may
/// have swapped it meanwhile. An attachment bond that keeps its identity is
/// matched to itself, with (null, inside) ends on both sides.
class DiagramGroup {
public:
    typedef std::pair<HDiagramNode, HDiagramNode> NodePair;

    DiagramGroup();
    DiagramGroup(const DiagramGroup& other);
    DiagramGroup& operator=(const DiagramGroup& other);

    virtual ~DiagramGroup();
    /// Puts the expanded graph in the diagram in place of the contracted one.
    virtual void expand(ChemicalDiagram& diagram);
    /// Puts the contracted graph in the diagram in place of the expanded one,
    /// leaving the edges that another group still needs.
    virtual void contract(ChemicalDiagram& diagram);
    virtual bool expanded() const { return expanded_; }
    virtual bool has_node(HDiagramNode node) const;
    virtual bool has_edge(HDiagramEdge edge) const;
    /// Whether another group still needs `edge`; none does here.
    virtual bool other_has_edge(HDiagramEdge edge, const ChemicalDiagram& diagram) const;
    /// Forgets every match; the state stays.
    virtual void clear();

    void set_expanded(bool expanded) { expanded_ = expanded; }
    const DiagramGraphMatch& matches() const { return matches_; }
    void add_node_match(HDiagramNode n1, HDiagramNode n2);
    /// Matches e1 (ends a, b in graph 1) with e2 (ends c, d in graph 2).
    void add_edge_match(HDiagramEdge e1, HDiagramNode a, HDiagramNode b, HDiagramEdge e2, HDiagramNode c,
                        HDiagramNode d);
    /// The outside nodes of the group as it stands now.
    THandle<std::set<HDiagramNode> > current_attachment_nodes() const;

protected:
    /// A bond from a node of the group to a node outside it, and the node of
    /// the contracted graph that it is to end at.
    struct Attachment {
        HDiagramEdge edge;
        HDiagramNode inside;
        HDiagramNode outside;
        HDiagramNode contracted_end;
    };
    /// Matches bonds to the outside. The only bond between an outside node
    /// and a contracted end keeps its identity and moves; several (a chelate)
    /// fold into one composite edge of the first one's type. Either way the
    /// outside node is found when the group swaps, never stored.
    void add_attachments(const std::vector<Attachment>& bonds);
    /// Matches a bond among the group's own nodes: it leaves on contraction.
    void add_inner_edge(const HDiagramEdge& edge);
    /// Whether one of the diagram's symbol groups holds `node`.
    static bool held_by_symbol_group(const ChemicalDiagram& diagram, const HDiagramNode& node);

private:
    bool expanded_ = true;
    DiagramGraphMatch matches_;
    std::map<HDiagramEdge, NodePair> edge1_nodes_;
    std::map<HDiagramEdge, NodePair> edge2_nodes_;
};

typedef THandle<DiagramGroup> HDiagramGroup;

}  // namespace molcryst

#endif

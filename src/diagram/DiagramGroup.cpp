#include "molcryst/diagram/DiagramGroup.h"

#include "molcryst/diagram/ChemicalDiagram.h"
#include "molcryst/diagram/DiagramCompositeEdge.h"
#include "molcryst/support/TARNLog.h"

namespace molcryst {

namespace {

bool is_null(const HDiagramNode& n) { return n.unhand() == nullptr; }
bool is_null(const HDiagramEdge& e) { return e.unhand() == nullptr; }

// The far end of an attachment edge, given its recorded ends, of which the
// null one stands for the outside. Null for an inner edge, or for an edge
// that is not in the diagram and so has no ends to ask.
HDiagramNode outside_end(const HDiagramEdge& edge, const DiagramGroup::NodePair& ends) {
    if (!edge->is_in_diagram()) {
        MOLCRYST_DEBUG_LINE(3, "DiagramGroup: no outside end for an edge not in the diagram: "
                                   << static_cast<const void*>(edge.unhand()));
        return HDiagramNode();
    }
    if (is_null(ends.first) && !is_null(ends.second)) return edge->other_node(ends.second);
    if (!is_null(ends.first) && is_null(ends.second)) return edge->other_node(ends.first);
    return HDiagramNode();
}

}  // namespace

DiagramGroup::DiagramGroup() = default;
DiagramGroup::DiagramGroup(const DiagramGroup& other) = default;
DiagramGroup& DiagramGroup::operator=(const DiagramGroup& other) = default;
DiagramGroup::~DiagramGroup() = default;

void DiagramGroup::add_node_match(HDiagramNode n1, HDiagramNode n2) { matches_.add_node_match(n1, n2); }

void DiagramGroup::add_edge_match(HDiagramEdge e1, HDiagramNode a, HDiagramNode b, HDiagramEdge e2, HDiagramNode c,
                                  HDiagramNode d) {
    matches_.add_edge_match(e1, e2);
    if (!is_null(a) || !is_null(b)) edge1_nodes_[e1] = NodePair(a, b);
    if (!is_null(c) || !is_null(d)) edge2_nodes_[e2] = NodePair(c, d);
}

void DiagramGroup::add_attachments(const std::vector<Attachment>& bonds) {
    std::map<NodePair, std::vector<const Attachment*> > between;
    std::vector<NodePair> order;
    for (const Attachment& a : bonds) {
        const NodePair ends(a.outside, a.contracted_end);
        std::vector<const Attachment*>& list = between[ends];
        if (list.empty()) order.push_back(ends);
        list.push_back(&a);
    }
    for (const NodePair& ends : order) {
        const std::vector<const Attachment*>& list = between[ends];
        if (list.size() == 1) {
            add_edge_match(list[0]->edge, HDiagramNode(), list[0]->inside, list[0]->edge, HDiagramNode(),
                           ends.second);
            continue;
        }
        THandle<DiagramCompositeEdge> composite(new DiagramCompositeEdge(list[0]->edge->type()));
        for (const Attachment* a : list) {
            composite->add_edge(a->edge);
            add_edge_match(a->edge, HDiagramNode(), a->inside, HDiagramEdge(composite), HDiagramNode(), ends.second);
        }
    }
}

void DiagramGroup::add_inner_edge(const HDiagramEdge& edge) {
    add_edge_match(edge, edge->node1(), edge->node2(), HDiagramEdge(), HDiagramNode(), HDiagramNode());
}

bool DiagramGroup::held_by_symbol_group(const ChemicalDiagram& diagram, const HDiagramNode& node) {
    return diagram.symbol_group_of(node).unhand() != nullptr;
}

bool DiagramGroup::has_node(HDiagramNode node) const { return matches_.has_node1(node) || matches_.has_node2(node); }

bool DiagramGroup::has_edge(HDiagramEdge edge) const { return matches_.has_edge1(edge) || matches_.has_edge2(edge); }

bool DiagramGroup::other_has_edge(HDiagramEdge, const ChemicalDiagram&) const { return false; }

void DiagramGroup::clear() {
    matches_.clear();
    edge1_nodes_.clear();
    edge2_nodes_.clear();
}

void DiagramGroup::expand(ChemicalDiagram& diagram) {
    if (expanded_) return;
    MOLCRYST_DEBUG_LINE(2, "Expanding group: nnode_matches: " << matches_.nnode_matches()
                                                               << " nedge_matches: " << matches_.nedge_matches());
    typedef DiagramGraphMatch::edge_match_iterator EdgeIterator;
    typedef DiagramGraphMatch::node_match_iterator NodeIterator;
    // Edges first, while the ends of attachment bonds can still be asked of the graph.
    for (EdgeIterator m = matches_.begin_edge_matches(); m != matches_.end_edge_matches(); ++m) {
        const HDiagramEdge& e1 = m->first;
        const HDiagramEdge& e2 = m->second;
        HDiagramNode outside;
        if (!is_null(e2)) {
            outside = outside_end(e2, edge2_nodes_[e2]);
            if (e1 == e2) diagram.remove(e2);
        }
        if (!is_null(e1) && !diagram.has_edge(e1)) {
            const NodePair ends = edge1_nodes_[e1];
            if (!is_null(ends.first) && !is_null(ends.second))
                diagram.add(e1, ends.first, ends.second);
            else if (is_null(ends.first) && !is_null(ends.second) && !is_null(outside))
                diagram.add(e1, outside, ends.second);
        }
    }
    for (EdgeIterator m = matches_.begin_edge_matches(); m != matches_.end_edge_matches(); ++m)
        if (!is_null(m->second) && m->second != m->first) diagram.remove(m->second);
    for (NodeIterator m = matches_.begin_node_matches(); m != matches_.end_node_matches(); ++m) {
        if (!is_null(m->second)) diagram.remove(m->second);
        if (!is_null(m->first) && !diagram.has_node(m->first)) diagram.add(m->first);
    }
    expanded_ = true;
}

void DiagramGroup::contract(ChemicalDiagram& diagram) {
    if (!expanded_) return;
    MOLCRYST_DEBUG_LINE(2, "DiagramGroup::contract group: "
                               << " nnode_matches: " << matches_.nnode_matches()
                               << " nedge_matches: " << matches_.nedge_matches());
    typedef DiagramGraphMatch::edge_match_iterator EdgeIterator;
    typedef DiagramGraphMatch::node_match_iterator NodeIterator;
    for (EdgeIterator m = matches_.begin_edge_matches(); m != matches_.end_edge_matches(); ++m) {
        const HDiagramEdge& e1 = m->first;
        const HDiagramEdge& e2 = m->second;
        HDiagramNode outside;
        if (!is_null(e1)) {
            if (other_has_edge(e1, diagram)) {
                MOLCRYST_DEBUG_LINE(3, "DiagramGroup::contract group skipping edge: "
                                           << static_cast<const void*>(e1.unhand()));
                continue;
            }
            outside = outside_end(e1, edge1_nodes_[e1]);
            if (e1 == e2) diagram.remove(e1);
        }
        if (is_null(e2)) continue;
        if (!diagram.has_edge(e2)) {
            const NodePair ends = edge2_nodes_[e2];
            if (!is_null(ends.first) && !is_null(ends.second))
                diagram.add(e2, ends.first, ends.second);
            else if (is_null(ends.first) && !is_null(ends.second) && !is_null(outside))
                diagram.add(e2, outside, ends.second);
            else if (!is_null(ends.first) && is_null(ends.second) && !is_null(outside))
                diagram.add(e2, ends.first, outside);
        } else {
            MOLCRYST_DEBUG_LINE(3, "DiagramGroup::contract group skipping edge already in diagram: "
                                       << static_cast<const void*>(e2.unhand()));
        }
    }
    for (EdgeIterator m = matches_.begin_edge_matches(); m != matches_.end_edge_matches(); ++m) {
        const HDiagramEdge& e1 = m->first;
        if (is_null(e1) || e1 == m->second) continue;
        if (other_has_edge(e1, diagram)) {
            MOLCRYST_DEBUG_LINE(3, "DiagramGroup::contract group skipping edge: "
                                       << static_cast<const void*>(e1.unhand()));
            continue;
        }
        diagram.remove(e1);
    }
    for (NodeIterator m = matches_.begin_node_matches(); m != matches_.end_node_matches(); ++m) {
        if (!is_null(m->first)) diagram.remove(m->first);
        if (!is_null(m->second) && !diagram.has_node(m->second)) diagram.add(m->second);
    }
    expanded_ = false;
}

THandle<std::set<HDiagramNode> > DiagramGroup::current_attachment_nodes() const {
    THandle<std::set<HDiagramNode> > result(new std::set<HDiagramNode>());
    for (DiagramGraphMatch::edge_match_iterator m = matches_.begin_edge_matches(); m != matches_.end_edge_matches();
         ++m) {
        const HDiagramEdge& edge = expanded_ ? m->first : m->second;
        if (is_null(edge)) continue;
        const std::map<HDiagramEdge, NodePair>& ends = expanded_ ? edge1_nodes_ : edge2_nodes_;
        std::map<HDiagramEdge, NodePair>::const_iterator found = ends.find(edge);
        if (found == ends.end()) continue;
        const HDiagramNode outside = outside_end(edge, found->second);
        if (!is_null(outside)) result->insert(outside);
    }
    return result;
}

}  // namespace molcryst

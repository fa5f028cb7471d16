#include "molcryst/diagram/DiagramFormulaGroup.h"

#include <vector>

#include "molcryst/diagram/ChemicalDiagram.h"
#include "molcryst/diagram/DiagramCircle.h"
#include "molcryst/diagram/DiagramFrame.h"

namespace molcryst {

namespace {

bool in_symbol_group(const ChemicalDiagram& diagram, const HDiagramNode& node) {
    for (const HDiagramSymbolGroup& s : diagram.symbol_groups())
        if (s->has_node(node)) return true;
    return false;
}

}  // namespace

DiagramFormulaGroup::DiagramFormulaGroup(const std::vector<HDiagramNode>& nodes, const Point2d& point,
                                         const std::string& text, ChemicalDiagram& diagram) {
    set_atoms(nodes, point, text, diagram);
}

DiagramFormulaGroup::~DiagramFormulaGroup() = default;

void DiagramFormulaGroup::clear() {
    symbol_groups_.clear();
    pi_groups_.clear();
    DiagramGroup::clear();
}

void DiagramFormulaGroup::set_atoms(const std::vector<HDiagramNode>& nodes, const Point2d& point,
                                    const std::string& text, ChemicalDiagram& diagram) {
    clear();
    if (nodes.empty()) return;
    // Every node must be the diagram's, once: standing in it, or folded
    // into one of its symbol groups, which the formula expands first.
    std::set<HDiagramNode> members;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (nodes[i].unhand() == nullptr || !(diagram.has_node(nodes[i]) || in_symbol_group(diagram, nodes[i])))
            throw std::invalid_argument("DiagramFormulaGroup::set_atoms node " + std::to_string(i) +
                                        " is not in the diagram");
        if (!members.insert(nodes[i]).second)
            throw std::invalid_argument("DiagramFormulaGroup::set_atoms node " + std::to_string(i) +
                                        " is given twice");
    }
    formula_node_ = THandle<DiagramSymbol>(new DiagramSymbol(nodes));
    formula_node_->set_position(point);
    formula_node_->set_left_label(text);
    formula_node_->set_centre_label(text);
    formula_node_->set_right_label(text);
    const HDiagramNode formula(formula_node_);
    for (const HDiagramNode& n : members) add_node_match(n, formula);

    // Circles and frames over the atoms go with them.
    std::vector<HDiagramNode> covering;
    for (ChemicalDiagram::const_node_iterator n = diagram.begin_nodes(); n != diagram.end_nodes(); ++n) {
        if (dynamic_cast<DiagramCircle*>(n->unhand()) == nullptr && dynamic_cast<DiagramFrame*>(n->unhand()) == nullptr)
            continue;
        for (const HDiagramNode& m : nodes)
            if ((*n)->has_node(m)) {
                covering.push_back(*n);
                break;
            }
    }
    for (const HDiagramNode& c : covering) add_node_match(c, HDiagramNode());

    // Groups over the atoms stand expanded, so that every atom is present
    // when the formula takes them out.
    const std::vector<HDiagramPiGroup> pis(diagram.pi_groups().begin(), diagram.pi_groups().end());
    for (const HDiagramPiGroup& pi : pis)
        for (const HDiagramNode& m : nodes)
            if (pi->has_node(m)) {
                pi->expand(diagram);
                pi_groups_.insert(pi);
                break;
            }
    const std::vector<HDiagramSymbolGroup> symbols(diagram.symbol_groups().begin(), diagram.symbol_groups().end());
    for (const HDiagramSymbolGroup& s : symbols)
        for (const HDiagramNode& m : nodes)
            if (s->has_node(m)) {
                s->expand(diagram);
                symbol_groups_.insert(s);
                break;
            }

    std::set<HDiagramNode> attached;
    for (const HDiagramNode& m : members)
        for (const HDiagramNode& b : m->neighbours()) {
            if (members.count(b) != 0) continue;
            const HDiagramEdge e = diagram.edge(m, b);
            if (attached.insert(b).second)
                add_edge_match(e, HDiagramNode(), m, e, HDiagramNode(), formula);
            else  // a second bond to the same outside node waits out the contraction
                add_edge_match(e, m, b, HDiagramEdge(), HDiagramNode(), HDiagramNode());
        }
    for (const HDiagramEdge& e : diagram.graph()->nodes_to_edges(members))
        add_edge_match(e, e->node1(), e->node2(), HDiagramEdge(), HDiagramNode(), HDiagramNode());
}

void DiagramFormulaGroup::expand(ChemicalDiagram& diagram) {
    if (expanded()) return;
    DiagramGroup::expand(diagram);
    for (const HDiagramSymbolGroup& s : symbol_groups_) diagram.add_symbol_group(s);
    for (const HDiagramPiGroup& pi : pi_groups_) diagram.add_pi_group(pi);
}

void DiagramFormulaGroup::contract(ChemicalDiagram& diagram) {
    if (!expanded()) return;
    for (const HDiagramSymbolGroup& s : symbol_groups_) {
        s->expand(diagram);
        diagram.remove_symbol_group(s);
    }
    for (const HDiagramPiGroup& pi : pi_groups_) {
        pi->expand(diagram);
        diagram.remove_pi_group(pi);
    }
    DiagramGroup::contract(diagram);
}

}  // namespace molcryst

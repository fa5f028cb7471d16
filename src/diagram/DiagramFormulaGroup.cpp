#include "molcryst/diagram/DiagramFormulaGroup.h"

#include <vector>

#include "molcryst/diagram/ChemicalDiagram.h"
#include "molcryst/diagram/DiagramCircle.h"
#include "molcryst/diagram/DiagramFrame.h"

namespace molcryst {

DiagramFormulaGroup::DiagramFormulaGroup(const std::vector<HDiagramNode>& nodes, const Point2d& point,
                                         const std::string& text, ChemicalDiagram& diagram) {
    set_atoms(nodes, point, text, diagram);
}

DiagramFormulaGroup::~DiagramFormulaGroup() = default;

void DiagramFormulaGroup::clear() {
    formula_node_ = THandle<DiagramSymbol>();
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
        if (nodes[i].unhand() == nullptr || !(diagram.has_node(nodes[i]) || held_by_symbol_group(diagram, nodes[i])))
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

    // Groups over the atoms stand expanded, so that every atom is present
    // when the formula takes them out: symbol groups first, since a folded
    // symbol holds its ring's pi groups.
    const std::vector<HDiagramSymbolGroup> symbols(diagram.symbol_groups().begin(), diagram.symbol_groups().end());
    for (const HDiagramSymbolGroup& s : symbols)
        for (const HDiagramNode& m : nodes)
            if (s->has_node(m)) {
                s->expand(diagram);
                symbol_groups_.insert(s);
                break;
            }
    const std::vector<HDiagramPiGroup> pis(diagram.pi_groups().begin(), diagram.pi_groups().end());
    for (const HDiagramPiGroup& pi : pis)
        for (const HDiagramNode& m : nodes)
            if (pi->has_node(m)) {
                pi->expand(diagram);
                pi_groups_.insert(pi);
                break;
            }

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

    std::vector<Attachment> attachments;
    for (const HDiagramNode& m : members)
        for (const HDiagramNode& b : m->neighbours())
            if (members.count(b) == 0) attachments.push_back(Attachment{diagram.edge(m, b), m, b, formula});
    add_attachments(attachments);
    for (const HDiagramEdge& e : diagram.graph()->nodes_to_edges(members)) add_inner_edge(e);
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

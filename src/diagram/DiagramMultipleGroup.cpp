#include "molcryst/diagram/DiagramMultipleGroup.h"

#include <stdexcept>
#include <string>
#include <vector>

#include "molcryst/diagram/ChemicalDiagram.h"
#include "molcryst/diagram/DiagramCircle.h"
#include "molcryst/diagram/DiagramCompositeEdge.h"

namespace molcryst {

DiagramMultipleGroup::DiagramMultipleGroup() = default;
DiagramMultipleGroup::~DiagramMultipleGroup() = default;

void DiagramMultipleGroup::check_units(const Units& units, const ChemicalDiagram& diagram, const char* where) {
    const std::string w(where);
    if (units.empty()) throw std::invalid_argument(w + " no units");
    std::set<HDiagramNode> seen;
    for (std::size_t u = 0; u < units.size(); ++u) {
        if (units[u].unhand() == nullptr || units[u]->empty())
            throw std::invalid_argument(w + " unit " + std::to_string(u) + " is empty");
        if (units[u]->size() != units[0]->size())
            throw std::invalid_argument(w + " unit " + std::to_string(u) + " differs in length from unit 0");
        for (const HDiagramNode& n : *units[u]) {
            if (n.unhand() == nullptr || !(diagram.has_node(n) || held_by_symbol_group(diagram, n)))
                throw std::invalid_argument(w + " a node of unit " + std::to_string(u) + " is not in the diagram");
            if (!seen.insert(n).second)
                throw std::invalid_argument(w + " a node of unit " + std::to_string(u) + " is given twice");
        }
    }
}

void DiagramMultipleGroup::clear() {
    unit_symbol_groups_.clear();
    frame_symbol_groups_.clear();
    unit_pi_groups_.clear();
    frame_pi_groups_.clear();
    frame_ = THandle<DiagramFrame>();
    unit_atoms_.clear();
    circle_clones_.clear();
    pi_centres_.clear();
    frame_groups_made_ = false;
    DiagramGroup::clear();
}

void DiagramMultipleGroup::set_atoms(const Units& units, ChemicalDiagram& diagram) {
    check_units(units, diagram, "DiagramMultipleGroup::set_atoms");
    clear();
    const std::size_t n = units.size(), m = units[0]->size();
    frame_ = THandle<DiagramFrame>(new DiagramFrame());
    frame_->set_multiplier(static_cast<int>(n));
    add_node_match(HDiagramNode(), HDiagramNode(frame_));

    std::set<HDiagramNode> atoms;
    for (const Unit& unit : units) atoms.insert(unit->begin(), unit->end());
    // Symbol groups over the units stand expanded (which may give pi groups
    // back to the diagram), then the pi groups.
    const std::vector<HDiagramSymbolGroup> symbols(diagram.symbol_groups().begin(), diagram.symbol_groups().end());
    for (const HDiagramSymbolGroup& s : symbols)
        for (const HDiagramNode& a : atoms)
            if (s->has_node(a)) {
                s->expand(diagram);
                unit_symbol_groups_.insert(s);
                break;
            }
    const std::vector<HDiagramPiGroup> pis(diagram.pi_groups().begin(), diagram.pi_groups().end());
    for (const HDiagramPiGroup& pi : pis)
        for (const HDiagramNode& a : atoms)
            if (pi->has_node(a)) {
                pi->expand(diagram);
                unit_pi_groups_.insert(pi);
                // Its centre: the end of a pi bond that is not a ring atom.
                for (DiagramGraphMatch::edge_match_iterator e = pi->matches().begin_edge_matches();
                     e != pi->matches().end_edge_matches(); ++e) {
                    if (e->first.unhand() == nullptr || !diagram.has_edge(e->first)) continue;
                    const HDiagramNode n1 = e->first->node1(), n2 = e->first->node2();
                    const HDiagramNode centre = pi->circle_node()->has_node(n1) ? n2 : n1;
                    if (atoms.count(centre) == 0) pi_centres_[pi] = centre;
                    break;
                }
                break;
            }

    for (std::size_t j = 0; j < m; ++j) {
        const HDiagramNode first = (*units[0])[j];
        const HDiagramNode clone = first->clone();
        for (std::size_t u = 0; u < n; ++u) {
            const HDiagramNode a = (*units[u])[j];
            UnitAtom& noted = unit_atoms_[a];
            noted.clone = clone;
            noted.counterpart = first;
            noted.unit = static_cast<int>(u);
            add_node_match(a, clone);
        }
        frame_->add_node(clone);
    }

    // Ring circles over the units: one circle of clones each, circles over
    // corresponding rings sharing it.
    std::map<std::set<HDiagramNode>, HDiagramNode> circle_of_clones;
    for (ChemicalDiagram::const_node_iterator c = diagram.begin_nodes(); c != diagram.end_nodes(); ++c) {
        const DiagramCircle* circle = dynamic_cast<const DiagramCircle*>(c->unhand());
        if (circle == nullptr) continue;
        std::set<HDiagramNode> clones;
        for (const HDiagramNode& a : circle->atoms()) {
            UnitAtoms::const_iterator found = unit_atoms_.find(a);
            if (found != unit_atoms_.end()) clones.insert(found->second.clone);
        }
        if (clones.empty()) continue;
        HDiagramNode& shared = circle_of_clones[clones];
        if (shared.unhand() == nullptr) {
            shared = HDiagramNode(new DiagramCircle(clones));
            frame_->add_node(shared);
        }
        add_node_match(*c, shared);
        circle_clones_[*c] = shared;
    }

    const std::set<HDiagramEdge> group_edges = diagram.graph()->nodes_to_edges(atoms);
    set_inter_unit_bonds(units, unit_atoms_, group_edges, diagram);
    set_attachment_bonds(units, unit_atoms_, group_edges, diagram);

    // The bonds of unit 0 between the clones, each holding its counterpart in every unit.
    std::map<HDiagramNode, std::size_t> place;
    for (std::size_t j = 0; j < m; ++j) place[(*units[0])[j]] = j;
    for (const HDiagramEdge& e : group_edges) {
        const HDiagramNode a = e->node1(), b = e->node2();
        if (unit_atoms_[a].unit != 0 || unit_atoms_[b].unit != 0) continue;
        const std::size_t ja = place[a], jb = place[b];
        THandle<DiagramCompositeEdge> composite(new DiagramCompositeEdge(e->type()));
        const HDiagramEdge composite_edge(composite);
        for (std::size_t u = 0; u < n; ++u) {
            const HDiagramNode au = (*units[u])[ja], bu = (*units[u])[jb];
            if (!diagram.has_edge(au, bu)) continue;
            const HDiagramEdge eu = diagram.edge(au, bu);
            composite->add_edge(eu);
            add_edge_match(eu, au, bu, composite_edge, unit_atoms_[a].clone, unit_atoms_[b].clone);
        }
    }
    // A bond among the units that has found no place (units that differ)
    // leaves on contraction and comes back on expansion.
    for (const HDiagramEdge& e : group_edges)
        if (!matches().has_edge1(e))
            add_edge_match(e, e->node1(), e->node2(), HDiagramEdge(), HDiagramNode(), HDiagramNode());
}

void DiagramMultipleGroup::withdraw_groups(ChemicalDiagram& diagram, const std::set<HDiagramSymbolGroup>& symbols,
                                           const std::set<HDiagramPiGroup>& pis) {
    for (const HDiagramSymbolGroup& s : symbols) {
        s->expand(diagram);
        diagram.remove_symbol_group(s);
    }
    for (const HDiagramPiGroup& pi : pis) {
        pi->expand(diagram);
        diagram.remove_pi_group(pi);
    }
}

void DiagramMultipleGroup::restore_groups(ChemicalDiagram& diagram, const std::set<HDiagramSymbolGroup>& symbols,
                                          const std::set<HDiagramPiGroup>& pis, bool contract_them) {
    for (const HDiagramPiGroup& pi : pis) {
        diagram.add_pi_group(pi);
        if (contract_them) pi->contract(diagram);
    }
    for (const HDiagramSymbolGroup& s : symbols) {
        diagram.add_symbol_group(s);
        if (contract_them) s->contract(diagram);
    }
}

void DiagramMultipleGroup::make_frame_groups(ChemicalDiagram& diagram) {
    frame_groups_made_ = true;
    // A pi group from a centre outside the units to a ring of unit 0 gets
    // its counterpart on the cloned ring, in the diagram and expanded for
    // the moment, so that a symbol over the ring can take it over below.
    for (const HDiagramPiGroup& pi : unit_pi_groups_) {
        std::map<HDiagramPiGroup, HDiagramNode>::const_iterator centre = pi_centres_.find(pi);
        std::map<HDiagramNode, HDiagramNode>::const_iterator circle = circle_clones_.find(pi->circle_node());
        if (centre == pi_centres_.end() || circle == circle_clones_.end()) continue;
        // Corresponding rings of several units (the two rings of a
        // sandwich) share one cloned ring and so one pi group.
        bool made_already = false;
        for (const HDiagramPiGroup& made : frame_pi_groups_)
            if (HDiagramNode(made->circle_node()) == circle->second) made_already = true;
        if (made_already || !diagram.has_node(centre->second)) continue;
        HDiagramPiGroup made(new DiagramPiGroup(centre->second, handle_static_cast<DiagramCircle>(circle->second), diagram));
        frame_pi_groups_.insert(made);
        diagram.add_pi_group(made);
    }
    // A symbol group on unit 0 gets its counterpart on the clones.
    for (const HDiagramSymbolGroup& s : unit_symbol_groups_) {
        if (s->symbol_node().unhand() == nullptr) continue;
        std::vector<HDiagramNode> clones;
        for (const HDiagramNode& a : s->symbol_node()->nodes()) {
            UnitAtoms::const_iterator found = unit_atoms_.find(a);
            if (found == unit_atoms_.end() || found->second.unit != 0) break;
            clones.push_back(found->second.clone);
        }
        if (clones.size() != s->symbol_node()->nodes().size()) continue;
        HDiagramSymbolGroup made(s->clone());
        made->set_atoms(clones, diagram);
        frame_symbol_groups_.insert(made);
        if (made->symbol_node().unhand() != nullptr) frame_->add_node(HDiagramNode(made->symbol_node()));
    }
    restore_groups(diagram, frame_symbol_groups_, frame_pi_groups_, true);
}

void DiagramMultipleGroup::expand(ChemicalDiagram& diagram) {
    if (expanded()) return;
    withdraw_groups(diagram, frame_symbol_groups_, frame_pi_groups_);
    DiagramGroup::expand(diagram);
    restore_groups(diagram, unit_symbol_groups_, unit_pi_groups_, false);
}

void DiagramMultipleGroup::contract(ChemicalDiagram& diagram) {
    if (!expanded()) return;
    withdraw_groups(diagram, unit_symbol_groups_, unit_pi_groups_);
    DiagramGroup::contract(diagram);
    if (!frame_groups_made_)
        make_frame_groups(diagram);
    else
        restore_groups(diagram, frame_symbol_groups_, frame_pi_groups_, true);
}

}  // namespace molcryst

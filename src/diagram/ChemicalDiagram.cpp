#include "molcryst/diagram/ChemicalDiagram.h"

#include <cmath>
#include <deque>
#include <ostream>
#include <stdexcept>
#include <vector>

#include "molcryst/diagram/DiagramAtom.h"
#include "molcryst/diagram/DiagramCircle.h"
#include "molcryst/diagram/DiagramSymbolCatalogue.h"
#include "molcryst/support/TARNLog.h"
#include "molcryst/geometry/GeometryFunctions.h"

namespace molcryst {

bool ChemicalDiagram::init_ = false;
PolymorphicFactory<DiagramNode, PolymorphicFactoryTypeExtractor<DiagramNode> > ChemicalDiagram::node_factory_;
std::map<int, std::string> ChemicalDiagram::tarn_symbols_;
PolymorphicFactory<DiagramSymbolGroup, DiagramSymbolNameExtractor> ChemicalDiagram::symbol_factory_;

ChemicalDiagram::ChemicalDiagram() : graph_(new DiagramGraph()) {
    init();
    validate();
}

ChemicalDiagram::ChemicalDiagram(const ChemicalDiagram& other) : Subject(other), graph_(new DiagramGraph()) {
    init();
    add(other);
}

ChemicalDiagram& ChemicalDiagram::operator=(const ChemicalDiagram& other) {
    if (this == &other) return *this;
    clear();
    add(other);
    return *this;
}

ChemicalDiagram::~ChemicalDiagram() { clear(); }

void ChemicalDiagram::init() {
    if (init_) return;
    init_ = true;
    // The node kinds file their prototypes as they are first made.
    DiagramAtom::init();
    for (const DiagramSymbolCatalogue::Entry& e : DiagramSymbolCatalogue::entries()) {
        HDiagramSymbolGroup prototype(new DiagramSymbolGroup(e.name, e.left_label, e.right_label, e.centre_label,
                                                             e.points, e.code, e.hydrogen_position));
        symbol_factory_.register_class(prototype);
        tarn_symbols_[e.code] = e.name;
    }
}

void ChemicalDiagram::node_factory_register_class(const char* name, HDiagramNode prototype) {
    node_factory_.register_class(name, prototype);
}

void ChemicalDiagram::add(const ChemicalDiagram& other) {
    validate();
    // Snapshots first: `other` may be this diagram.
    const std::vector<HDiagramNode> nodes(other.begin_nodes(), other.end_nodes());
    const std::vector<HDiagramEdge> edges(other.begin_edges(), other.end_edges());
    std::map<HDiagramNode, HDiagramNode> clone_of;
    for (const HDiagramNode& n : nodes) {
        HDiagramNode copy = n->clone();
        clone_of.insert(std::make_pair(n, copy));
        add(copy);
    }
    for (const HDiagramEdge& e : edges) {
        HDiagramEdge copy(e->clone());
        add(copy, clone_of[other.graph_->edge_node1(e)], clone_of[other.graph_->edge_node2(e)]);
    }
    validate();
}

void ChemicalDiagram::add(HDiagramNode node) {
    validate();
    if (node.unhand() == nullptr)
        throw std::invalid_argument("ChemicalDiagram::add(HDiagramNode) node is a null pointer");
    if (node->graph().unhand() != nullptr && node->graph() != graph_)
        throw std::domain_error("ChemicalDiagram::add(HDiagramNode) node is already in another ChemicalDiagram object");
    if (graph_->has_node(node)) {
        if (node->graph() != graph_)
            throw std::runtime_error("ChemicalDiagram::add(HDiagramNode) mismatch between node and graph data");
        return;
    }
    graph_->add_node(node);
    node->set_graph(graph_, node);
    if (dynamic_cast<DiagramCircle*>(node.unhand()) != nullptr) circles_.insert(node);
    validate();
}

void ChemicalDiagram::add(HDiagramEdge edge, HDiagramNode node1, HDiagramNode node2) {
    static const std::string where = "ChemicalDiagram::add(HDiagramEdge, HDiagramNode, HDiagramNode) ";
    validate();
    if (edge.unhand() == nullptr) throw std::invalid_argument(where + "edge is a null pointer");
    if (edge->graph().unhand() != nullptr && edge->graph() != graph_)
        throw std::domain_error(where + "edge is already in another ChemicalDiagram object");
    if (node1.unhand() == nullptr) throw std::invalid_argument(where + "node1 is a null pointer");
    if (node1->graph().unhand() != nullptr && node1->graph() != graph_)
        throw std::domain_error(where + "node1 is already in another ChemicalDiagram object");
    if (node2.unhand() == nullptr) throw std::invalid_argument(where + "node2 is a null pointer");
    if (node2->graph().unhand() != nullptr && node2->graph() != graph_)
        throw std::domain_error(where + "node2 is already in another ChemicalDiagram object");
    if (node1 == node2) throw std::invalid_argument(where + "an node cannot be bonded to itself");
    if (graph_->has_edge(node1, node2)) {
        if (graph_->edge(node1, node2) == edge) {
            if (edge->graph() != graph_ || node1->graph() != graph_ || node2->graph() != graph_)
                throw std::runtime_error(where + "mismatch between node, edge and graph data");
            return;
        }
        throw std::domain_error(where + "node1 and node2 are already in a different edge in this ChemicalDiagram object");
    }
    if (graph_->has_edge(edge))
        throw std::domain_error(where + "edge is already present in this ChemicalDiagram object, but involving different nodes");
    graph_->add_edge(edge, node1, node2);
    edge->set_graph(graph_, edge);
    for (const HDiagramNode& n : {node1, node2})
        if (n->graph().unhand() == nullptr) {
            n->set_graph(graph_, n);
            if (dynamic_cast<DiagramCircle*>(n.unhand()) != nullptr) circles_.insert(n);
        }
    validate();
}

void ChemicalDiagram::remove(HDiagramNode node) {
    validate();
    if (node.unhand() == nullptr)
        throw std::invalid_argument("ChemicalDiagram::remove(HDiagramNode) node is a null pointer");
    if (node->graph() != graph_) return;
    isolate(node);
    graph_->remove_node(node);
    node->set_graph(HDiagramGraph(), HDiagramNode());
    circles_.erase(node);
    validate();
}

void ChemicalDiagram::remove(HDiagramEdge edge) {
    validate();
    if (edge.unhand() == nullptr)
        throw std::invalid_argument("ChemicalDiagram::remove(HDiagramEdge) edge is a null pointer");
    if (edge->graph() != graph_) return;
    graph_->remove_edge(edge);
    edge->set_graph(HDiagramGraph(), HDiagramEdge());
    validate();
}

void ChemicalDiagram::isolate(HDiagramNode node) {
    if (node.unhand() == nullptr)
        throw std::invalid_argument("ChemicalDiagram::isolate(HDiagramNode) node is a null pointer");
    if (node->graph() != graph_) return;  // a free node has no edges here
    const std::deque<HDiagramEdge> edges = node->edges();
    for (const HDiagramEdge& e : edges) remove(e);
}

void ChemicalDiagram::clear() {
    validate();
    for (DiagramGraph::node_iterator n = graph_->begin_nodes(); n != graph_->end_nodes(); ++n)
        (*n)->set_graph(HDiagramGraph(), HDiagramNode());
    for (DiagramGraph::edge_iterator e = graph_->begin_edges(); e != graph_->end_edges(); ++e)
        (*e)->set_graph(HDiagramGraph(), HDiagramEdge());
    graph_->clear();
    pi_groups_.clear();
    symbol_groups_.clear();
    symbol_member_.clear();
    circles_.clear();
    ligand_groups_.clear();
    repeat_groups_.clear();
    validate();
}

bool ChemicalDiagram::has_node(HDiagramNode node) const {
    if (node.unhand() == nullptr)
        throw std::invalid_argument("ChemicalDiagram::has_node(HDiagramNode) node is a null pointer");
    return node->graph() == graph_;
}

bool ChemicalDiagram::has_edge(HDiagramEdge edge) const {
    if (edge.unhand() == nullptr)
        throw std::invalid_argument("ChemicalDiagram::has_edge(HDiagramEdge) edge is a null pointer");
    return edge->graph() == graph_;
}

HDiagramEdge ChemicalDiagram::edge(HDiagramNode node1, HDiagramNode node2) const {
    if (node1.unhand() == nullptr)
        throw std::invalid_argument("ChemicalDiagram::edge(HDiagramNode, HDiagramNode) node1 is a null pointer");
    if (node2.unhand() == nullptr)
        throw std::invalid_argument("ChemicalDiagram::edge(HDiagramNode, HDiagramNode) node2 is a null pointer");
    return graph_->edge(node1, node2);
}

bool ChemicalDiagram::has_edge(HDiagramNode node1, HDiagramNode node2) const {
    if (node1.unhand() == nullptr)
        throw std::invalid_argument("ChemicalDiagram::has_edge(HDiagramNode, HDiagramNode) node1 is a null pointer");
    if (node2.unhand() == nullptr)
        throw std::invalid_argument("ChemicalDiagram::has_edge(HDiagramNode, HDiagramNode) node2 is a null pointer");
    return graph_->has_edge(node1, node2);
}

int ChemicalDiagram::formal_charge() const {
    int sum = 0;
    for (const_node_iterator n = begin_nodes(); n != end_nodes(); ++n) sum += (*n)->formal_charge();
    return sum;
}

void ChemicalDiagram::translate(const Point2d& offset) {
    for (const_node_iterator n = begin_nodes(); n != end_nodes(); ++n) {
        DiagramAtom* atom = dynamic_cast<DiagramAtom*>(n->unhand());
        if (atom != nullptr)
            atom->set_position(Point2d(atom->position().x() + offset.x(), atom->position().y() + offset.y()));
    }
}

Point2d ChemicalDiagram::diagram_centroid() const {
    std::vector<Point> points;
    points.reserve(static_cast<std::size_t>(nnodes()));
    for (const_node_iterator n = begin_nodes(); n != end_nodes(); ++n) {
        const Point2d p = (*n)->position();
        points.push_back(Point(p.x(), p.y(), 0.0));
    }
    const Point c = centroid(points);
    return Point2d(c[0], c[1]);
}

bool ChemicalDiagram::is_visible_carbon(HDiagramNode node) const {
    const DiagramAtom* atom = dynamic_cast<const DiagramAtom*>(node.unhand());
    if (atom == nullptr) return true;
    if (atom->element().symbol() != "C") return true;
    const int n = atom->nedges();
    if (n <= 1) return true;
    if (n >= 3) return false;
    const std::deque<HDiagramEdge> edges = atom->edges();
    if (edges[0]->type() == TRIPLE_BOND || edges[1]->type() == TRIPLE_BOND) return true;
    if (edges[0]->type() != edges[1]->type()) return false;
    const Point2d a = edges[0]->other_node(node)->position();
    const Point2d b = atom->position();
    const Point2d c = edges[1]->other_node(node)->position();
    const double degrees =
        angle(Point(a.x(), a.y(), 0.0), Point(b.x(), b.y(), 0.0), Point(c.x(), c.y(), 0.0), 1e-07).radians() *
        57.29577951308232;
    // A straight chain would hide the atom's place.
    return degrees < 1.0 || degrees > 179.0;
}

bool ChemicalDiagram::is_right_bonded_node(HDiagramNode node) const {
    if (node->nedges() == 0) return true;
    const Point2d here = node->position();
    bool left = false, right = false;
    double left_y = 0.0, right_y = 0.0;
    for (const HDiagramEdge& e : node->edges()) {
        const Point2d p = e->other_node(node)->position();
        if (std::fabs(p.x()) < 1e-07 && std::fabs(p.y()) < 1e-07) continue;  // no usable position
        if (p.x() > here.x()) {
            right = true;
            right_y = p.y();
        } else {
            left = true;
            left_y = p.y();
        }
    }
    if (!left) return !right;
    if (!right) return true;
    if (!(here.y() < right_y)) return !(left_y < right_y);
    return !(left_y > right_y);
}

void ChemicalDiagram::print(std::ostream& out) const {
    out << "nnodes: " << nnodes() << "\n";
    for (const_node_iterator n = begin_nodes(); n != end_nodes(); ++n) {
        (*n)->print(out);
        out << "\n";
    }
    out << "nedges: " << nedges() << "\n";
    for (const_edge_iterator e = begin_edges(); e != end_edges(); ++e) {
        (*e)->print(out);
        out << "\n";
    }
}

void ChemicalDiagram::add_pi_group(HDiagramPiGroup group) { pi_groups_.insert(group); }

void ChemicalDiagram::add_symbol_group(HDiagramSymbolGroup group) {
    symbol_groups_.insert(group);
    if (group.unhand() == nullptr) return;
    for (DiagramGraphMatch::node_match_iterator m = group->matches().begin_node_matches();
         m != group->matches().end_node_matches(); ++m)
        if (m->first.unhand() != nullptr) symbol_member_[m->first] = group;
}

void ChemicalDiagram::remove_pi_group(HDiagramPiGroup group) { pi_groups_.erase(group); }

void ChemicalDiagram::remove_symbol_group(HDiagramSymbolGroup group) {
    symbol_groups_.erase(group);
    if (group.unhand() == nullptr) return;
    for (DiagramGraphMatch::node_match_iterator m = group->matches().begin_node_matches();
         m != group->matches().end_node_matches(); ++m) {
        std::map<HDiagramNode, HDiagramSymbolGroup>::iterator found = symbol_member_.find(m->first);
        if (found != symbol_member_.end() && found->second == group) symbol_member_.erase(found);
    }
}

HDiagramSymbolGroup ChemicalDiagram::symbol_group_of(HDiagramNode node) const {
    std::map<HDiagramNode, HDiagramSymbolGroup>::const_iterator found = symbol_member_.find(node);
    return found == symbol_member_.end() ? HDiagramSymbolGroup() : found->second;
}

void ChemicalDiagram::add_group_symbol(const std::vector<HDiagramNode>& nodes, int code) {
    add_group_symbol(nodes, tarn_symbols_[code]);
}

void ChemicalDiagram::add_group_symbol(const std::vector<HDiagramNode>& nodes, const std::string& type) {
    static const std::string where = "ChemicalDiagram::add_group_symbol(nodes, type) ";
    if (type.empty()) throw std::invalid_argument(where + "type is an empty string");
    HDiagramSymbolGroup group = symbol_factory_.create(type.c_str());
    if (group.unhand() == nullptr) HandleCommon::null_handle_error();
    // Two symbols cannot stand for one atom: the second contraction would
    // take the atom from the first.
    for (const HDiagramNode& n : nodes)
        if (symbol_group_of(n).unhand() != nullptr)
            throw std::invalid_argument(where + "a node is already in another symbol group");
    group->set_atoms(nodes, *this);
    add_symbol_group(group);
}

void ChemicalDiagram::add_ligand_group(const std::vector<THandle<std::vector<HDiagramNode> > >& units) {
    ligand_groups_.insert(HDiagramLigandGroup(new DiagramLigandGroup(units, *this)));
}

void ChemicalDiagram::add_repeat_group(const std::vector<THandle<std::vector<HDiagramNode> > >& units) {
    repeat_groups_.insert(HDiagramRepeatGroup(new DiagramRepeatGroup(units, *this)));
}

void ChemicalDiagram::add_formula_group(const std::vector<HDiagramNode>& nodes, const Point2d& point,
                                        const std::string& text) {
    formula_groups_.insert(HDiagramFormulaGroup(new DiagramFormulaGroup(nodes, point, text, *this)));
}

void ChemicalDiagram::derive_aromatic_rings() {
    if (nedges() == 0) return;
    DiagramGraph aromatic;
    for (const_edge_iterator e = begin_edges(); e != end_edges(); ++e)
        if ((*e)->type() == AROMATIC_BOND) aromatic.add_edge(*e, (*e)->node1(), (*e)->node2());
    std::deque<std::set<HDiagramNode> > rings;
    aromatic.basic_ring_set(rings);
    std::set<std::set<HDiagramNode> > seen;
    for (const std::set<HDiagramNode>& ring : rings) {
        const std::size_t n = ring.size();
        if (aromatic.nodes_to_edges(ring).size() != n) continue;  // a chord among its atoms
        if (!seen.insert(ring).second) continue;
        THandle<DiagramCircle> circle(new DiagramCircle(ring));
        add(HDiagramNode(circle));
        std::set<HDiagramNode> centres;
        for (const HDiagramNode& u : ring)
            for (const HDiagramNode& v : u->neighbours())
                if (graph_->edge(u, v)->type() == PI_BOND) centres.insert(v);
        for (const HDiagramNode& v : centres) {
            std::size_t count = 0;
            for (const HDiagramNode& u : ring) {
                if (!graph_->has_edge(v, u) || graph_->edge(v, u)->type() != PI_BOND) break;
                ++count;
            }
            if (count != n) continue;
            MOLCRYST_DEBUG_LINE(2, "Found pi-bonded circle: size " << n);
            pi_groups_.insert(HDiagramPiGroup(new DiagramPiGroup(v, circle, *this)));
        }
    }
}

namespace {

// Swaps every group of `groups` in set order. A group's swap may edit the
// diagram's own sets (a symbol group takes its pi groups out), so the walk
// goes over a snapshot.
template <class Group>
bool swap_groups(const std::set<THandle<Group> >& groups, ChemicalDiagram& diagram, bool expand) {
    const std::vector<THandle<Group> > snapshot(groups.begin(), groups.end());
    for (const THandle<Group>& g : snapshot) {
        if (expand)
            g->expand(diagram);
        else
            g->contract(diagram);
    }
    return !snapshot.empty();
}

}  // namespace

void ChemicalDiagram::expand_symbol_groups() {
    if (swap_groups(symbol_groups_, *this, true)) set_changed();
    notify();
}

void ChemicalDiagram::contract_symbol_groups() {
    if (swap_groups(symbol_groups_, *this, false)) set_changed();
    notify();
}

void ChemicalDiagram::expand_ligand_groups() {
    if (swap_groups(ligand_groups_, *this, true)) set_changed();
    notify();
}

void ChemicalDiagram::contract_ligand_groups() {
    if (swap_groups(ligand_groups_, *this, false)) set_changed();
    notify();
}

void ChemicalDiagram::expand_pi_groups() {
    if (swap_groups(pi_groups_, *this, true)) set_changed();
    notify();
}

void ChemicalDiagram::contract_pi_groups() {
    if (swap_groups(pi_groups_, *this, false)) set_changed();
    notify();
}

std::ostream& operator<<(std::ostream& out, const ChemicalDiagram& diagram) {
    diagram.print(out);
    return out;
}

}  // namespace molcryst

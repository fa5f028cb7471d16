#include "molcryst/diagram/DiagramSymbolGroup.h"

#include <cmath>
#include <stdexcept>
#include <vector>

#include "molcryst/diagram/ChemicalDiagram.h"
#include "molcryst/diagram/DiagramAtom.h"
#include "molcryst/diagram/DiagramCircle.h"
#include "molcryst/geometry/Transformation.h"

namespace molcryst {

DiagramSymbolGroup::DiagramSymbolGroup(const std::string& name, const std::string& left, const std::string& right,
                                       const std::string& centre, const std::vector<Point2d>& points, int code,
                                       DiagramSymbol::HydrogenPosition position)
    : tarn_symbol_(code),
      hydrogen_position_(position),
      symbol_name_(new std::string(name)),
      left_label_(new std::string(left)),
      right_label_(new std::string(right)),
      centre_label_(new std::string(centre)),
      template_(new std::vector<Point2d>(points)) {}

DiagramSymbolGroup::DiagramSymbolGroup(const DiagramSymbolGroup& other) = default;

DiagramSymbolGroup::~DiagramSymbolGroup() = default;

DiagramSymbolGroup* DiagramSymbolGroup::clone() const { return new DiagramSymbolGroup(*this); }

const Point2d& DiagramSymbolGroup::template_point(int i) const { return (*template_)[static_cast<std::size_t>(i)]; }

THandle<DiagramSymbol> DiagramSymbolGroup::create_symbol(const std::vector<HDiagramNode>& nodes) {
    if (nodes.empty()) return THandle<DiagramSymbol>();
    THandle<DiagramSymbol> symbol(new DiagramSymbol(nodes));
    switch (tarn_symbol_) {
        // Groups whose anchor may carry the hydrogens (an NH of a pyridyl,
        // a PH of a phosphine...) show them on the symbol.
        case 2: case 7: case 23: case 35: case 36: case 39: case 40: case 41: case 42: case 43:
            symbol->set_nterminal_hydrogens(nodes[0]->nterminal_hydrogens());
            break;
        case 9:  // a carboxylic acid: COOH
            if (nodes[1]->nterminal_hydrogens() == 1 || nodes[2]->nterminal_hydrogens() == 1)
                symbol->set_nterminal_hydrogens(1);
            break;
        default:
            symbol->set_nterminal_hydrogens(0);
    }
    symbol->set_hydrogen_position(hydrogen_position_);
    symbol->set_left_label(*left_label_);
    symbol->set_right_label(*right_label_);
    symbol->set_centre_label(*centre_label_);
    return symbol;
}

void DiagramSymbolGroup::clear() {
    symbol_node_ = THandle<DiagramSymbol>();
    pi_groups_.clear();
    DiagramGroup::clear();
}

void DiagramSymbolGroup::set_atoms(const std::vector<HDiagramNode>& nodes, ChemicalDiagram& diagram) {
    clear();
    if (static_cast<int>(nodes.size()) != ntemplate_points())
        throw std::runtime_error(symbol_name() + "  DiagramSymbolGroup::set_atoms, wrong number of atoms supplied");
    if (nodes[0].unhand() == nullptr || !diagram.has_node(nodes[0])) return;
    // The rest must be atoms of the diagram, each given once: the layout
    // below moves them and the swaps take them out of the graph.
    std::set<HDiagramNode> members;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const HDiagramNode& n = nodes[i];
        if (n.unhand() == nullptr || dynamic_cast<DiagramAtom*>(n.unhand()) == nullptr || !diagram.has_node(n))
            throw std::invalid_argument(symbol_name() + "  DiagramSymbolGroup::set_atoms, node " + std::to_string(i) +
                                        " is not an atom of the diagram");
        if (!members.insert(n).second)
            throw std::invalid_argument(symbol_name() + "  DiagramSymbolGroup::set_atoms, node " + std::to_string(i) +
                                        " is given twice");
    }

    // A ring circle touching the group goes out with it.
    const std::vector<HDiagramNode> circles(diagram.circles().begin(), diagram.circles().end());
    for (const HDiagramNode& c : circles)
        for (const HDiagramNode& m : nodes)
            if (c->has_node(m)) {
                add_node_match(c, HDiagramNode());
                members.insert(c);
                break;
            }
    const std::vector<HDiagramPiGroup> pis(diagram.pi_groups().begin(), diagram.pi_groups().end());
    for (const HDiagramPiGroup& pi : pis) {
        for (const HDiagramNode& m : members)
            if (pi->has_node(m)) {
                pi->contract(diagram);
                pi_groups_.insert(pi);
                break;
            }
    }

    symbol_node_ = create_symbol(nodes);
    symbol_node_->set_position(nodes[0]->position());
    const HDiagramNode symbol(symbol_node_);

    int noutside = 0;
    double sumx = 0.0, sumy = 0.0, length = 0.0;
    HDiagramNode first_outside;
    std::vector<Attachment> attachments;
    for (const HDiagramNode& m : members) {
        add_node_match(m, symbol);
        for (const HDiagramNode& b : m->neighbours()) {
            if (members.count(b) != 0) continue;
            if (first_outside.unhand() == nullptr) first_outside = b;
            attachments.push_back(Attachment{diagram.edge(m, b), m, b, symbol});
            ++noutside;
            const Point2d p = b->position();
            sumx += p.x();
            sumy += p.y();
            length += distance(p, m->position());
        }
    }
    add_attachments(attachments);

    // The template, scaled to two thirds of the mean outside bond and turned
    // to point away from the outside neighbours.
    const Point2d anchor = nodes[0]->position();
    double a = 50.0, b = 0.0;
    if (noutside > 0) {
        const double n = static_cast<double>(noutside);
        const double k = (length / n) * 0.6667;
        Vector<double, 3> v(anchor.x() - sumx / n, anchor.y() - sumy / n, 0.0);
        double dy = v[1];
        if (v.length() < 1e-07) {
            const Point2d f = first_outside->position();
            v = Vector<double, 3>(anchor.x() - f.x(), anchor.y() - f.y(), 0.0);
            dy = v[1];
            v = cross(v, Vector<double, 3>(1.0, 1.0, 0.0));
            if (v.length() < 1e-07) v = Vector<double, 3>(1.0, 0.0, 0.0);
        }
        v.normalise(1e-07);
        const double c = v.dot(Vector<double, 3>(1.0, 0.0, 0.0));
        double s = std::sqrt(1.0 - c * c);
        if (dy > 0.0) s = -s;
        a = k * c;
        b = k * s;
    }
    const Transformation t(a, b, 0.0, anchor.x(), -b, a, 0.0, anchor.y(), 0.0, 0.0, 1.0, 0.0);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const Point2d& q = template_point(static_cast<int>(i));
        const Point p = t * Point(q.x(), q.y(), 0.0);
        static_cast<DiagramAtom*>(nodes[i].unhand())->set_position(Point2d(p[0], p[1]));
    }

    for (const HDiagramEdge& e : diagram.graph()->nodes_to_edges(members)) add_inner_edge(e);
}

void DiagramSymbolGroup::expand(ChemicalDiagram& diagram) {
    if (expanded()) return;
    DiagramGroup::expand(diagram);
    for (const HDiagramPiGroup& pi : pi_groups_) diagram.add_pi_group(pi);
}

void DiagramSymbolGroup::contract(ChemicalDiagram& diagram) {
    if (!expanded()) return;
    for (const HDiagramPiGroup& pi : pi_groups_) {
        pi->contract(diagram);
        diagram.remove_pi_group(pi);
    }
    DiagramGroup::contract(diagram);
}

}  // namespace molcryst

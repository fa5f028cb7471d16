#include "molcryst/diagram/DiagramCircle.h"

#include <cmath>
#include <limits>
#include <ostream>

#include "molcryst/diagram/ChemicalDiagram.h"

namespace molcryst {

bool DiagramCircle::init_ = false;
const std::string DiagramCircle::label_;

DiagramCircle::DiagramCircle() { init(); }

DiagramCircle::DiagramCircle(const std::set<HDiagramNode>& atoms) : atoms_(atoms) { init(); }

DiagramCircle::~DiagramCircle() = default;

void DiagramCircle::init() {
    if (init_) return;
    init_ = true;
    HDiagramNode prototype(new DiagramCircle());
    ChemicalDiagram::node_factory_register_class(prototype->class_name(), prototype);
}

HDiagramNode DiagramCircle::clone() const { return HDiagramNode(new DiagramCircle(*this)); }

Point2d DiagramCircle::position() const {
    if (atoms_.empty()) return Point2d();
    double x = 0.0, y = 0.0;
    for (const HDiagramNode& a : atoms_) {
        const Point2d p = a->position();
        x += p.x();
        y += p.y();
    }
    const double n = static_cast<double>(atoms_.size());
    return Point2d(x / n, y / n);
}

double DiagramCircle::radius() const {
    if (atoms_.size() < 2) return 0.0;
    const Point2d centre = position();
    double nearest = std::numeric_limits<double>::max();
    for (const HDiagramNode& a : atoms_) nearest = std::min(nearest, distance(centre, a->position()));
    const double n = static_cast<double>(atoms_.size());
    return nearest * std::sin(3.141592653589793 * (0.5 - 1.0 / n));
}

bool DiagramCircle::highlighted() const {
    if (!is_in_diagram()) return false;
    const DiagramGraph& g = *graph();
    // Ring atoms that a group has taken out of the diagram have no edges to judge.
    std::set<HDiagramNode> present;
    for (const HDiagramNode& a : atoms_)
        if (g.has_node(a)) present.insert(a);
    const std::set<HDiagramEdge> edges = g.nodes_to_edges(present);
    if (edges.empty()) return false;
    for (const HDiagramEdge& e : edges)
        if (!e->highlighted()) return false;
    return true;
}

bool DiagramCircle::operator==(const DiagramCircle& other) const {
    const Point2d p = position(), q = other.position();
    return p.x() == q.x() && p.y() == q.y() && radius() == other.radius() &&
           is_in_diagram() == other.is_in_diagram() && atoms_ == other.atoms_;
}

void DiagramCircle::print(std::ostream& out) const {
    const Point2d p = position();
    out << "position: (" << p.x() << ", " << p.y() << "), radius: " << radius()
        << ", formal_charge: " << formal_charge_ << ", highlighted: " << highlighted()
        << ", nodes: " << atoms_.size();
}

}  // namespace molcryst

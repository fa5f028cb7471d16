#include "molcryst/diagram/DiagramFrame.h"

#include <ostream>

#include "molcryst/diagram/ChemicalDiagram.h"

namespace molcryst {

bool DiagramFrame::init_ = false;
const std::string DiagramFrame::label_;

DiagramFrame::DiagramFrame() { init(); }

DiagramFrame::DiagramFrame(const std::vector<HDiagramNode>& nodes) : DiagramCompositeNode(nodes) { init(); }

void DiagramFrame::init() {
    if (init_) return;
    init_ = true;
    HDiagramNode prototype(new DiagramFrame());
    ChemicalDiagram::node_factory_register_class(prototype->class_name(), prototype);
}

HDiagramNode DiagramFrame::clone() const { return HDiagramNode(new DiagramFrame(*this)); }

Rectangle2d DiagramFrame::rectangle() const {
    if (!is_in_diagram()) return Rectangle2d();
    const DiagramGraph& g = *graph();
    Rectangle2d box;
    bool first = true;
    for (const HDiagramNode& member : nodes()) {
        if (!g.has_node(member)) continue;  // contracted away
        const Point2d p = member->position();
        if (first) {
            box = Rectangle2d(p.x(), p.y(), p.x(), p.y());
            first = false;
        } else {
            box.merge(p);
        }
    }
    return box;
}

Point2d DiagramFrame::position() const { return rectangle().centre(); }

bool DiagramFrame::operator==(const DiagramFrame& other) const {
    const Point2d p = position(), q = other.position();
    return multiplier_ == other.multiplier_ && formal_charge_ == other.formal_charge_ &&
           nterminal_hydrogens() == other.nterminal_hydrogens() && p.x() == q.x() && p.y() == q.y() &&
           rectangle() == other.rectangle() && highlighted() == other.highlighted() &&
           is_in_diagram() == other.is_in_diagram();
}

void DiagramFrame::print(std::ostream& out) const {
    const Point2d p = position();
    out << "position: (" << p.x() << ", " << p.y() << "), rectangle: " << rectangle()
        << ", multiplier: " << multiplier_ << ", formal_charge: " << formal_charge_
        << ", nterminal_hydrogens: " << nterminal_hydrogens() << ", highlighted: " << highlighted();
}

}  // namespace molcryst

#include "molcryst/diagram/DiagramSymbol.h"

#include <ostream>

#include "molcryst/diagram/ChemicalDiagram.h"

namespace molcryst {

bool DiagramSymbol::init_ = false;

DiagramSymbol::DiagramSymbol() { init(); }

DiagramSymbol::DiagramSymbol(const std::vector<HDiagramNode>& nodes) : DiagramCompositeNode(nodes) { init(); }

void DiagramSymbol::init() {
    if (init_) return;
    init_ = true;
    HDiagramNode prototype(new DiagramSymbol());
    ChemicalDiagram::node_factory_register_class(prototype->class_name(), prototype);
}

HDiagramNode DiagramSymbol::clone() const { return HDiagramNode(new DiagramSymbol(*this)); }

int DiagramSymbol::formal_charge() const {
    int sum = 0;
    for (const HDiagramNode& n : nodes()) sum += n->formal_charge();
    return sum;
}

bool DiagramSymbol::highlighted() const {
    for (const HDiagramNode& n : nodes())
        if (n->highlighted()) return true;
    return false;
}

bool DiagramSymbol::operator==(const DiagramSymbol& other) const {
    return position_.x() == other.position_.x() && position_.y() == other.position_.y() &&
           formal_charge() == other.formal_charge() && nterminal_hydrogens_ == other.nterminal_hydrogens_ &&
           left_label_ == other.left_label_ && right_label_ == other.right_label_ &&
           centre_label_ == other.centre_label_ && is_in_diagram() == other.is_in_diagram();
}

void DiagramSymbol::print(std::ostream& out) const {
    out << "xy: (" << position_.x() << ", " << position_.y() << "), left_label: " << left_label_
        << ", right_label: " << right_label_ << ", centre_label: " << centre_label_
        << ", formal_charge: " << formal_charge() << ", nterminal_hydrogens: " << nterminal_hydrogens_
        << ", highlighted: " << highlighted();
}

}  // namespace molcryst

#include "molcryst/diagram/DiagramAtom.h"

#include <ostream>

#include "molcryst/diagram/ChemicalDiagram.h"

namespace molcryst {

bool DiagramAtom::init_ = false;

// The default element is carbon, the commonest atom of a drawing.
DiagramAtom::DiagramAtom() : element_(Element::C) { init(); }

DiagramAtom::DiagramAtom(const Element& element, int formal_charge) : element_(element), formal_charge_(formal_charge) {
    init();
}

void DiagramAtom::init() {
    if (init_) return;
    init_ = true;
    HDiagramNode prototype(new DiagramAtom());
    ChemicalDiagram::node_factory_register_class(prototype->class_name(), prototype);
}

HDiagramNode DiagramAtom::clone() const { return HDiagramNode(new DiagramAtom(*this)); }

std::string DiagramAtom::left_label() const { return Element::table_[element_.code()]; }

std::string DiagramAtom::top_right_label() const {
    if (formal_charge_ == 0) return std::string();
    std::string text = formal_charge_ > 0 ? "+" : "-";
    const int magnitude = formal_charge_ > 0 ? formal_charge_ : -formal_charge_;
    if (magnitude >= 2) text += std::to_string(magnitude);
    return text;
}

std::pair<std::string, std::string> DiagramAtom::side_label() const {
    if (nterminal_hydrogens_ < 1) return std::pair<std::string, std::string>();
    if (nterminal_hydrogens_ == 1) return std::make_pair(std::string("H"), std::string());
    return std::make_pair(std::string("H"), std::to_string(nterminal_hydrogens_));
}

std::deque<HDiagramBond> DiagramAtom::bonds() const {
    std::deque<HDiagramBond> result;
    for (const HDiagramEdge& e : edges()) {
        HDiagramBond bond = handle_dynamic_cast<DiagramBond>(e);
        if (bond.unhand() != nullptr) result.push_back(bond);
    }
    return result;
}

bool DiagramAtom::operator==(const DiagramAtom& other) const {
    return element_ == other.element_ && formal_charge_ == other.formal_charge_ &&
           position_.x() == other.position_.x() && position_.y() == other.position_.y() &&
           nterminal_hydrogens_ == other.nterminal_hydrogens_ && highlighted_ == other.highlighted_ &&
           is_in_diagram() == other.is_in_diagram();
}

void DiagramAtom::print(std::ostream& out) const {
    out << "element: " << left_label() << ", formal_charge: " << formal_charge_
        << ", h_count: " << nterminal_hydrogens_ << ", xy: (" << position_.x() << ", " << position_.y()
        << "), highlighted: " << highlighted_;
    if (is_in_diagram())
        out << ", neighbours: " << nedges();
    else
        out << ", diagram unavailable";
}

}  // namespace molcryst

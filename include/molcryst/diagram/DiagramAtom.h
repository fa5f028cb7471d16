// DiagramAtom: an atom of a chemical diagram, drawn as its element symbol
// with a hydrogen count and a charge.
#ifndef MOLCRYST_DIAGRAM_DIAGRAMATOM_H
#define MOLCRYST_DIAGRAM_DIAGRAMATOM_H

#include <deque>

#include "molcryst/diagram/DiagramBond.h"
#include "molcryst/diagram/DiagramNode.h"
#include "molcryst/elements/Element.h"

namespace molcryst {

/// An atom at a point of the drawing. Terminal hydrogens folded into the
/// atom are a count, drawn as a suffix ("H", "H" with subscript "3").
class DiagramAtom : public DiagramNode {
public:
    /// A carbon at the origin.
    DiagramAtom();
    explicit DiagramAtom(const Element& element, int formal_charge = 0);

    HDiagramNode clone() const override;
    const char* class_name() const override { return "DiagramAtom"; }
    int formal_charge() const override { return formal_charge_; }
    int nterminal_hydrogens() const override { return nterminal_hydrogens_; }
    /// The element's symbol.
    std::string left_label() const override;
    std::string centre_label() const override { return left_label(); }
    std::string right_label() const override { return left_label(); }
    /// The charge: "" for 0, "+" or "-", then the magnitude when it is 2 or more ("-2").
    std::string top_right_label() const override;
    /// ("H", "") for one terminal hydrogen, ("H", "n") for n of 2 or more, else empty.
    std::pair<std::string, std::string> side_label() const override;
    Point2d position() const override { return position_; }
    bool highlighted() const override { return highlighted_; }
    bool has_node(HDiagramNode) const override { return false; }
    void print(std::ostream& out) const override;

    const Element& element() const { return element_; }
    void set_element(const Element& element) { element_ = element; }
    void set_formal_charge(int charge) { formal_charge_ = charge; }
    void set_nterminal_hydrogens(int n) { nterminal_hydrogens_ = n; }
    void set_highlighted(bool highlighted) { highlighted_ = highlighted; }
    void set_position(const Point2d& position) { position_ = position; }
    /// The incident edges that are plain bonds; composite edges are left out.
    std::deque<HDiagramBond> bonds() const;
    /// Registers the prototype with the node factory, once.
    static void init();

    bool operator==(const DiagramAtom& other) const;
    bool operator!=(const DiagramAtom& other) const { return !(*this == other); }

private:
    static bool init_;

    Element element_;
    int formal_charge_ = 0;
    Point2d position_;
    int nterminal_hydrogens_ = 0;
    bool highlighted_ = false;
};

typedef THandle<DiagramAtom> HDiagramAtom;

}  // namespace molcryst

#endif

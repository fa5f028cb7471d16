// DiagramCircle: the inner circle of an aromatic ring, placed and sized from
// the ring's atoms.
#ifndef MOLCRYST_DIAGRAM_DIAGRAMCIRCLE_H
#define MOLCRYST_DIAGRAM_DIAGRAMCIRCLE_H

#include <set>

#include "molcryst/diagram/DiagramNode.h"

namespace molcryst {

/// A ring circle: centred on the mean of its atoms, with the inner radius of
/// the regular polygon through the nearest of them. It has no label.
class DiagramCircle : public DiagramNode {
public:
    DiagramCircle();
    explicit DiagramCircle(const std::set<HDiagramNode>& atoms);
    ~DiagramCircle() override;

    HDiagramNode clone() const override;
    const char* class_name() const override { return "DiagramCircle"; }
    int formal_charge() const override { return formal_charge_; }
    int nterminal_hydrogens() const override { return 0; }
    std::string left_label() const override { return label_; }
    std::string centre_label() const override { return label_; }
    std::string right_label() const override { return label_; }
    /// The mean of the atoms' positions; the origin for no atoms.
    Point2d position() const override;
    /// True when every edge among the ring's atoms is highlighted (and there is one).
    bool highlighted() const override;
    bool has_node(HDiagramNode node) const override { return atoms_.count(node) != 0; }
    void print(std::ostream& out) const override;
    virtual void add_node(HDiagramNode node) { atoms_.insert(node); }

    void set_formal_charge(int charge) { formal_charge_ = charge; }
    /// 0 for fewer than two atoms; else the inner radius of the regular polygon.
    double radius() const;
    const std::set<HDiagramNode>& atoms() const { return atoms_; }
    static void init();

    bool operator==(const DiagramCircle& other) const;
    bool operator!=(const DiagramCircle& other) const { return !(*this == other); }

private:
    static bool init_;
    static const std::string label_;

    int formal_charge_ = 0;
    std::set<HDiagramNode> atoms_;
};

}  // namespace molcryst

#endif

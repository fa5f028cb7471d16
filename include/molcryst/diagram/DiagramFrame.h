// DiagramFrame: the bracket drawn around one of several identical units,
// with the number of units as its multiplier.
#ifndef MOLCRYST_DIAGRAM_DIAGRAMFRAME_H
#define MOLCRYST_DIAGRAM_DIAGRAMFRAME_H

#include "molcryst/diagram/DiagramCompositeNode.h"
#include "molcryst/geometry/Rectangle2d.h"

namespace molcryst {

/// A frame around the members that stand in the diagram; it has no label.
class DiagramFrame : public DiagramCompositeNode {
public:
    DiagramFrame();
    explicit DiagramFrame(const std::vector<HDiagramNode>& nodes);

    HDiagramNode clone() const override;
    const char* class_name() const override { return "DiagramFrame"; }
    int formal_charge() const override { return formal_charge_; }
    int nterminal_hydrogens() const override { return 0; }
    std::string left_label() const override { return label_; }
    std::string centre_label() const override { return label_; }
    std::string right_label() const override { return label_; }
    /// The middle of rectangle().
    Point2d position() const override;
    bool highlighted() const override { return false; }
    void print(std::ostream& out) const override;

    int multiplier() const { return multiplier_; }
    void set_multiplier(int multiplier) { multiplier_ = multiplier; }
    void set_formal_charge(int charge) { formal_charge_ = charge; }
    /// The bounding box of the members that the frame's graph still has; the
    /// zero rectangle outside a diagram or with no such member.
    Rectangle2d rectangle() const;
    static void init();

    bool operator==(const DiagramFrame& other) const;
    bool operator!=(const DiagramFrame& other) const { return !(*this == other); }

private:
    static bool init_;
    static const std::string label_;

    int multiplier_ = 1;
    int formal_charge_ = 0;
};

}  // namespace molcryst

#endif

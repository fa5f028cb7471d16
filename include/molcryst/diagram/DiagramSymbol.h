// DiagramSymbol: a text that stands for a group of atoms ("Ph", "CF<sub>3</sub>").
#ifndef MOLCRYST_DIAGRAM_DIAGRAMSYMBOL_H
#define MOLCRYST_DIAGRAM_DIAGRAMSYMBOL_H

#include "molcryst/diagram/DiagramCompositeNode.h"

namespace molcryst {

/// A symbol node: three stored labels (markup included), a position of its
/// own and a hydrogen count; its charge is the sum over its members.
class DiagramSymbol : public DiagramCompositeNode {
public:
    /// Where drawing code puts the hydrogens of a symbol; nothing in the library reads it.
    enum HydrogenPosition { HydrogenDefault = 1, HydrogenAtSecondAtom = 2 };

    DiagramSymbol();
    explicit DiagramSymbol(const std::vector<HDiagramNode>& nodes);

    HDiagramNode clone() const override;
    const char* class_name() const override { return "DiagramSymbol"; }
    int formal_charge() const override;
    int nterminal_hydrogens() const override { return nterminal_hydrogens_; }
    std::string left_label() const override { return left_label_; }
    std::string centre_label() const override { return centre_label_; }
    std::string right_label() const override { return right_label_; }
    Point2d position() const override { return position_; }
    /// True when any member is highlighted.
    bool highlighted() const override;
    void print(std::ostream& out) const override;

    void set_left_label(const std::string& label) { left_label_ = label; }
    void set_centre_label(const std::string& label) { centre_label_ = label; }
    void set_right_label(const std::string& label) { right_label_ = label; }
    void set_position(const Point2d& position) { position_ = position; }
    void set_nterminal_hydrogens(int n) { nterminal_hydrogens_ = n; }
    HydrogenPosition hydrogen_position() const { return hydrogen_position_; }
    void set_hydrogen_position(HydrogenPosition position) { hydrogen_position_ = position; }
    static void init();

    bool operator==(const DiagramSymbol& other) const;
    bool operator!=(const DiagramSymbol& other) const { return !(*this == other); }

private:
    static bool init_;

    Point2d position_;
    int nterminal_hydrogens_ = 0;
    HydrogenPosition hydrogen_position_ = HydrogenDefault;
    std::string left_label_;
    std::string right_label_;
    std::string centre_label_;
};

}  // namespace molcryst

#endif

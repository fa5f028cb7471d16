// DiagramEdge: an edge of a chemical diagram, a bond or a composite of bonds.
//
// Archive layout (no version): the type as a four-byte integer. The tooltip
// is not archived.
#ifndef MOLCRYST_DIAGRAM_DIAGRAMEDGE_H
#define MOLCRYST_DIAGRAM_DIAGRAMEDGE_H

#include <iosfwd>
#include <string>

#include "molcryst/diagram/DiagramNode.h"
#include "molcryst/molecule/BondType.h"
#include "molcryst/support/Archive.h"

namespace molcryst {

/// An edge of a chemical diagram: a bond type (0 to 9; 3 triple, 5 aromatic,
/// 9 a pi bond from a metal to a ring) and a tooltip text. Copies carry the
/// values, never the place in a diagram.
class DiagramEdge {
public:
    /// An edge of `type`; std::invalid_argument outside 0 to 9.
    explicit DiagramEdge(BondType type = SINGLE_BOND);
    /// An edge read from `ar`, with an empty tooltip.
    explicit DiagramEdge(Archive& ar);
    DiagramEdge(const DiagramEdge& other);
    /// Copies type and tooltip; membership stays.
    DiagramEdge& operator=(const DiagramEdge& other);

    virtual ~DiagramEdge();
    /// A new free copy, for the caller to wrap in a handle.
    virtual DiagramEdge* clone() const;
    virtual bool highlighted() const;
    virtual void print(std::ostream& out) const;
    virtual void write(Archive& ar) const;
    virtual void read(Archive& ar);

    BondType type() const { return type_; }
    void set_type(BondType type);
    const std::string& tooltip_text() const { return tooltip_text_; }
    void set_tooltip_text(const std::string& text) { tooltip_text_ = text; }

    bool is_in_diagram() const { return graph_.unhand() != nullptr; }
    const HDiagramGraph& graph() const { return graph_; }
    void set_graph(const HDiagramGraph& graph, const HDiagramEdge& self);
    HDiagramEdge self() const;
    int index() const;
    HDiagramNode node1() const;
    HDiagramNode node2() const;
    /// The end that is not `node`.
    HDiagramNode other_node(HDiagramNode node) const;
    bool cyclic() const;
    HDiagramNode atom1() const { return node1(); }
    HDiagramNode atom2() const { return node2(); }
    HDiagramNode other_atom(HDiagramNode node) const { return other_node(node); }

    bool operator==(const DiagramEdge& other) const;
    bool operator!=(const DiagramEdge& other) const { return !(*this == other); }

protected:
    // Prints the two ends, or that the edge is in no diagram.
    void print_ends(std::ostream& out) const;

private:
    const DiagramGraph& checked(const char* method) const;

    BondType type_;
    std::string tooltip_text_;
    HDiagramGraph graph_;
    HDiagramEdge self_;
};

std::ostream& operator<<(std::ostream& out, const DiagramEdge& edge);

}  // namespace molcryst

#endif

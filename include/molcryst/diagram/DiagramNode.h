// DiagramNode: a node of a two-dimensional chemical diagram (an atom, a ring
// circle, a frame or a symbol), and the graph type the diagram stands on.
//
// A node knows the graph it stands in and the handle under which that graph
// knows it. Both are null while the node is free; a node that a group has
// taken out of the diagram is free, and comes back unchanged.
#ifndef MOLCRYST_DIAGRAM_DIAGRAMNODE_H
#define MOLCRYST_DIAGRAM_DIAGRAMNODE_H

#include <deque>
#include <iosfwd>
#include <set>
#include <string>
#include <utility>

#include "molcryst/geometry/Point2d.h"
#include "molcryst/graph/OrderedGraph.h"
#include "molcryst/support/THandle.h"

namespace molcryst {

class DiagramNode;
class DiagramEdge;
typedef THandle<DiagramNode> HDiagramNode;
typedef THandle<DiagramEdge> HDiagramEdge;

/// The graph of a diagram: nodes and edges by handle, with stable indices.
typedef OrderedGraph<HDiagramNode, HDiagramEdge> DiagramGraph;
typedef THandle<DiagramGraph> HDiagramGraph;

// The diagram graph is instantiated once, in DiagramNode.cpp.
extern template class Graph<HDiagramNode, HDiagramEdge>;
extern template class OrderedGraph<HDiagramNode, HDiagramEdge>;

/// A node of a chemical diagram. Copies are free: they carry the values of
/// a node but not its place in a diagram.
class DiagramNode {
public:
    typedef std::set<HDiagramNode>::const_iterator NeighbourIterator;

    DiagramNode();
    /// The copy is in no diagram.
    DiagramNode(const DiagramNode& other);
    /// Does nothing: a node keeps its place, and its values, whatever is assigned to it.
    DiagramNode& operator=(const DiagramNode&) { return *this; }

    virtual ~DiagramNode();
    virtual HDiagramNode clone() const = 0;
    virtual const char* class_name() const = 0;
    virtual int formal_charge() const = 0;
    virtual int nterminal_hydrogens() const = 0;
    /// The main text when bonds arrive from the right.
    virtual std::string left_label() const = 0;
    /// The main text when bonds arrive from both sides.
    virtual std::string centre_label() const = 0;
    /// The main text when bonds arrive from the left.
    virtual std::string right_label() const = 0;
    /// The superscript after the main text: a charge.
    virtual std::string top_right_label() const;
    virtual std::string top_left_label() const;
    /// The hydrogen suffix: base text and subscript.
    virtual std::pair<std::string, std::string> side_label() const;
    virtual Point2d position() const = 0;
    virtual bool highlighted() const = 0;
    /// Whether this node stands for `node` (a circle for its ring atoms, a composite for its members).
    virtual bool has_node(HDiagramNode node) const = 0;
    virtual void print(std::ostream& out) const;

    bool is_in_diagram() const { return graph_.unhand() != nullptr; }
    const HDiagramGraph& graph() const { return graph_; }
    /// Joins the node to `graph` under `self`, or frees it with two nulls.
    void set_graph(const HDiagramGraph& graph, const HDiagramNode& self);
    /// The handle under which the diagram knows this node; std::runtime_error when free.
    HDiagramNode self() const;
    int index() const;
    std::deque<HDiagramNode> neighbours() const;
    NeighbourIterator begin_neighbours() const;
    NeighbourIterator end_neighbours() const;
    int nedges() const;
    /// The incident edges, in the order of the neighbours.
    std::deque<HDiagramEdge> edges() const;
    bool cyclic() const;
    /// nedges() in a diagram, 0 outside one.
    int nbonds() const;

protected:
    // Throws the "cannot work when graph_ == 0" failure for `method` when free.
    const DiagramGraph& checked(const char* method) const;

private:
    HDiagramGraph graph_;
    HDiagramNode self_;
};

std::ostream& operator<<(std::ostream& out, const DiagramNode& node);

}  // namespace molcryst

#endif

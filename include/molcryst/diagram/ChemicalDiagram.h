// ChemicalDiagram: a two-dimensional chemical drawing as a graph of its own.
//
// The diagram owns an ordered graph of nodes (atoms, ring circles, frames,
// symbols) and edges (bonds, composite edges), and five sets of groups that
// can fold parts of it into symbols, pi bonds, frames or formulae and unfold
// them again. It knows nothing of molecules (ChemicalDiagramGenerator makes
// a diagram from one) and is a Subject, so that a viewer can observe it; the
// bulk expand and contract operations notify.
#ifndef MOLCRYST_DIAGRAM_CHEMICALDIAGRAM_H
#define MOLCRYST_DIAGRAM_CHEMICALDIAGRAM_H

#include <iosfwd>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "molcryst/diagram/DiagramEdge.h"
#include "molcryst/diagram/DiagramFormulaGroup.h"
#include "molcryst/diagram/DiagramLigandGroup.h"
#include "molcryst/diagram/DiagramNode.h"
#include "molcryst/diagram/DiagramPiGroup.h"
#include "molcryst/diagram/DiagramRepeatGroup.h"
#include "molcryst/diagram/DiagramSymbolGroup.h"
#include "molcryst/diagram/PolymorphicFactory.h"
#include "molcryst/support/ResizableArray2D.h"
#include "molcryst/support/Subject.h"

namespace molcryst {

/// A chemical diagram. Copies hold clones of the nodes and edges as they
/// stand now, contracted or not, and no group.
class ChemicalDiagram : public Subject {
public:
    typedef DiagramGraph::const_node_iterator const_node_iterator;
    typedef DiagramGraph::const_edge_iterator const_edge_iterator;

    ChemicalDiagram();
    ChemicalDiagram(const ChemicalDiagram& other);
    ChemicalDiagram& operator=(const ChemicalDiagram& other);
    /// Frees every node and edge for another diagram.
    ~ChemicalDiagram() override;

    /// Adds clones of the nodes and edges of `other`, in index order.
    void add(const ChemicalDiagram& other);
    /// Adds a node; adding it twice is harmless.
    void add(HDiagramNode node);
    /// Adds `edge` between two nodes, adding the nodes too.
    void add(HDiagramEdge edge, HDiagramNode node1, HDiagramNode node2);
    /// Takes a node and its edges out; a node of no or another diagram is left alone.
    void remove(HDiagramNode node);
    void remove(HDiagramEdge edge);
    /// Removes every edge of `node`; the node stays.
    void isolate(HDiagramNode node);
    /// Frees every node and edge and forgets the pi, symbol, ligand and
    /// repeat groups; formula groups stay.
    void clear();

    int nnodes() const { return static_cast<int>(graph_->nnodes()); }
    int nedges() const { return static_cast<int>(graph_->nedges()); }
    int natoms() const { return nnodes(); }
    int nbonds() const { return nedges(); }
    /// The node of index `i`, of any kind.
    HDiagramNode atom(int i) const { return graph_->node(static_cast<unsigned int>(i)); }
    HDiagramEdge bond(int i) const { return graph_->edge(static_cast<unsigned int>(i)); }
    const_node_iterator begin_nodes() const { return graph_->begin_nodes(); }
    const_node_iterator end_nodes() const { return graph_->end_nodes(); }
    const_edge_iterator begin_edges() const { return graph_->begin_edges(); }
    const_edge_iterator end_edges() const { return graph_->end_edges(); }

    bool has_node(HDiagramNode node) const;
    bool has_edge(HDiagramEdge edge) const;
    /// The edge between two nodes; std::invalid_argument when there is none.
    HDiagramEdge edge(HDiagramNode node1, HDiagramNode node2) const;
    bool has_edge(HDiagramNode node1, HDiagramNode node2) const;
    HDiagramEdge bond(HDiagramNode node1, HDiagramNode node2) const { return edge(node1, node2); }
    bool has_bond(HDiagramNode node1, HDiagramNode node2) const { return has_edge(node1, node2); }

    const HDiagramGraph& graph() const { return graph_; }
    THandle<ResizableArray2D<bool> > adjacency_matrix() const { return graph_->adjacency_matrix(); }

    /// The sum of the nodes' charges.
    int formal_charge() const;
    /// Moves every DiagramAtom by `offset`; circles and frames follow, symbols stay.
    void translate(const Point2d& offset);
    /// The centroid of all nodes' positions.
    Point2d diagram_centroid() const;
    /// Whether drawing code must label `node`: false for a carbon in a bend
    /// of two bonds or with three or more.
    bool is_visible_carbon(HDiagramNode node) const;
    /// Whether the bonds of `node` leave it to the left, so that its label
    /// reads from the right.
    bool is_right_bonded_node(HDiagramNode node) const;
    /// "nnodes: n", each node, "nedges: n", each edge, one a line.
    void print(std::ostream& out) const;
    /// Consistency hook run around every mutator; it checks nothing, so that it costs nothing.
    void validate() const {}

    // Groups. Bulk operations swap every group of a set, in set order, then
    // mark the diagram changed if the set has any, and notify.
    void add_pi_group(HDiagramPiGroup group);
    void add_symbol_group(HDiagramSymbolGroup group);
    void remove_pi_group(HDiagramPiGroup group);
    void remove_symbol_group(HDiagramSymbolGroup group);
    int n_symbol_groups() const { return static_cast<int>(symbol_groups_.size()); }
    int n_ligand_groups() const { return static_cast<int>(ligand_groups_.size()); }
    int n_repeat_groups() const { return static_cast<int>(repeat_groups_.size()); }
    const std::set<HDiagramPiGroup>& pi_groups() const { return pi_groups_; }
    const std::set<HDiagramSymbolGroup>& symbol_groups() const { return symbol_groups_; }
    const std::set<HDiagramLigandGroup>& ligand_groups() const { return ligand_groups_; }
    const std::set<HDiagramRepeatGroup>& repeat_groups() const { return repeat_groups_; }
    const std::set<HDiagramFormulaGroup>& formula_groups() const { return formula_groups_; }
    /// A symbol group of the catalogue over `nodes` (atoms in template
    /// order), by code or by name; see DiagramSymbolGroup::set_atoms. A node
    /// already in another symbol group is refused before anything changes.
    void add_group_symbol(const std::vector<HDiagramNode>& nodes, int code);
    void add_group_symbol(const std::vector<HDiagramNode>& nodes, const std::string& type);
    /// Identical ligands on one centre, `units[u][j]` the j-th atom of unit u.
    void add_ligand_group(const std::vector<THandle<std::vector<HDiagramNode> > >& units);
    /// Repeat units of a chain, as add_ligand_group.
    void add_repeat_group(const std::vector<THandle<std::vector<HDiagramNode> > >& units);
    /// `nodes` shown as the formula `text` at `point`.
    void add_formula_group(const std::vector<HDiagramNode>& nodes, const Point2d& point, const std::string& text);
    /// Circles for the aromatic rings (rings of type-5 edges without a
    /// chord), and a pi group for each centre pi-bonded to a whole ring.
    void derive_aromatic_rings();
    /// The ring circles standing in the diagram, so that a group finds those
    /// over its atoms without a walk over every node.
    const std::set<HDiagramNode>& circles() const { return circles_; }
    /// The symbol group of the diagram's set whose expanded graph has
    /// `node`; null for none.
    HDiagramSymbolGroup symbol_group_of(HDiagramNode node) const;
    void expand_symbol_groups();
    void contract_symbol_groups();
    void expand_ligand_groups();
    void contract_ligand_groups();
    void expand_pi_groups();
    void contract_pi_groups();

    /// Fills the process-wide tables (node prototypes, symbol names) once.
    static void init();
    /// Files a node prototype under `name`.
    static void node_factory_register_class(const char* name, HDiagramNode prototype);

    static PolymorphicFactory<DiagramNode, PolymorphicFactoryTypeExtractor<DiagramNode> > node_factory_;
    /// The catalogue's symbol group prototypes, by name.
    static PolymorphicFactory<DiagramSymbolGroup, DiagramSymbolNameExtractor> symbol_factory_;
    /// The names of the catalogue's symbol groups, by code.
    static std::map<int, std::string> tarn_symbols_;

private:
    static bool init_;

    HDiagramGraph graph_;
    std::set<HDiagramPiGroup> pi_groups_;
    std::set<HDiagramSymbolGroup> symbol_groups_;
    std::set<HDiagramLigandGroup> ligand_groups_;
    std::set<HDiagramRepeatGroup> repeat_groups_;
    std::set<HDiagramFormulaGroup> formula_groups_;
    std::set<HDiagramNode> circles_;
    std::map<HDiagramNode, HDiagramSymbolGroup> symbol_member_;  // expanded node -> its symbol group
};

typedef THandle<ChemicalDiagram> HChemicalDiagram;

std::ostream& operator<<(std::ostream& out, const ChemicalDiagram& diagram);

}  // namespace molcryst

#endif

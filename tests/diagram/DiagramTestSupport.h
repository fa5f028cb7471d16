// Test helpers for diagrams: building one by hand, and the graph as it
// stands, to compare before and after a round of contraction and expansion.
#ifndef MOLCRYST_TESTS_DIAGRAM_DIAGRAMTESTSUPPORT_H
#define MOLCRYST_TESTS_DIAGRAM_DIAGRAMTESTSUPPORT_H

#include <map>
#include <set>
#include <tuple>
#include <utility>

#include "molcryst/diagram/ChemicalDiagram.h"
#include "molcryst/diagram/DiagramAtom.h"
#include "molcryst/diagram/DiagramBond.h"

namespace molcryst {
namespace testing {

/// Nodes, and each edge with its ends and type: the very objects, so that
/// equal snapshots mean nothing was replaced.
typedef std::tuple<DiagramNode*, DiagramNode*, int> EdgeRecord;
struct Snapshot {
    std::set<DiagramNode*> nodes;
    std::map<DiagramEdge*, EdgeRecord> edges;
    bool operator==(const Snapshot& o) const { return nodes == o.nodes && edges == o.edges; }
};

inline Snapshot snapshot(const ChemicalDiagram& d) {
    Snapshot s;
    for (ChemicalDiagram::const_node_iterator n = d.begin_nodes(); n != d.end_nodes(); ++n) s.nodes.insert(n->unhand());
    for (ChemicalDiagram::const_edge_iterator e = d.begin_edges(); e != d.end_edges(); ++e) {
        DiagramNode* a = (*e)->node1().unhand();
        DiagramNode* b = (*e)->node2().unhand();
        if (b < a) std::swap(a, b);
        s.edges[e->unhand()] = EdgeRecord(a, b, static_cast<int>((*e)->type()));
    }
    return s;
}

inline HDiagramNode atom(ChemicalDiagram& d, const Element& e, double x, double y, int hydrogens = 0) {
    HDiagramAtom a(new DiagramAtom(e));
    a->set_position(Point2d(x, y));
    a->set_nterminal_hydrogens(hydrogens);
    d.add(HDiagramNode(a));
    return a;
}

inline HDiagramEdge bond(ChemicalDiagram& d, const HDiagramNode& a, const HDiagramNode& b,
                         BondType t = SINGLE_BOND) {
    HDiagramEdge e(new DiagramBond(t));
    d.add(e, a, b);
    return e;
}

}  // namespace testing
}  // namespace molcryst

#endif

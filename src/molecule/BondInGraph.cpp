#include "molcryst/molecule/BondInGraph.h"

namespace molcryst {

HAtom BondInGraph::atom1() const { return graph_data_.atom1(); }
HAtom BondInGraph::atom2() const { return graph_data_.atom2(); }
int BondInGraph::index() const { return graph_data_.index(); }
bool BondInGraph::cyclic() const { return graph_data_.cyclic(); }
BondGraphData& BondInGraph::graph_data() { return graph_data_; }

}  // namespace molcryst

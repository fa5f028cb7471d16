// BondInGraph: the layer of bonds that finds its ends, index and rings
// through the chemical graph the bond belongs to.
#ifndef MOLCRYST_MOLECULE_BONDINGRAPH_H
#define MOLCRYST_MOLECULE_BONDINGRAPH_H

#include "molcryst/molecule/AtomInGraph.h"

namespace molcryst {

/// A bond with graph data. A copy is in no graph.
class BondInGraph : public Bond {
public:
    HAtom atom1() const override;
    HAtom atom2() const override;
    int index() const override;
    bool cyclic() const override;
    BondGraphData& graph_data() override;
    const BondGraphData& graph_data() const { return graph_data_; }

protected:
    BondInGraph() = default;
    BondInGraph(const BondInGraph& other) : Bond(other) {}
    BondInGraph& operator=(const BondInGraph&) { return *this; }

private:
    BondGraphData graph_data_;
};

}  // namespace molcryst

#endif

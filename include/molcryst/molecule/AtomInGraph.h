// AtomInGraph: the layer of atoms that answers every question about position
// in a molecule by asking the chemical graph the atom belongs to.
#ifndef MOLCRYST_MOLECULE_ATOMINGRAPH_H
#define MOLCRYST_MOLECULE_ATOMINGRAPH_H

#include "molcryst/graph/ChemicalGraph.h"
#include "molcryst/molecule/Atom.h"
#include "molcryst/molecule/Bond.h"

namespace molcryst {

// The molecular graph types are instantiated once, in the molecule library.
extern template class Graph<HAtom, HBond>;
extern template class OrderedGraph<HAtom, HBond>;
extern template class ChemicalGraphAtomData<Atom, Bond>;
extern template class ChemicalGraphBondData<Atom, Bond>;
extern template class ChemicalGraph<Atom, Bond>;

typedef ChemicalGraphAtomData<Atom, Bond> AtomGraphData;
typedef ChemicalGraphBondData<Atom, Bond> BondGraphData;

/// An atom with graph data. A copy is in no graph: membership is never copied.
class AtomInGraph : public Atom {
public:
    int index() const override;
    int nbonds() const override;
    bool cyclic() const override;
    int nhydrogens(bool all_isotopes) const override;
    PolymorphicConstIterator<HAtom> begin_neighbours() const override;
    PolymorphicConstIterator<HAtom> end_neighbours() const override;
    std::deque<HAtom> neighbours() const override;
    PolymorphicConstIterator<HBond> begin_bonds() const override;
    PolymorphicConstIterator<HBond> end_bonds() const override;
    std::deque<HBond> bonds() const override;
    AtomGraphData& graph_data() override;
    const AtomGraphData& graph_data() const { return graph_data_; }

protected:
    AtomInGraph() = default;
    AtomInGraph(const AtomInGraph& other) : Atom(other) {}
    AtomInGraph& operator=(const AtomInGraph&) { return *this; }

private:
    AtomGraphData graph_data_;
};

}  // namespace molcryst

#endif

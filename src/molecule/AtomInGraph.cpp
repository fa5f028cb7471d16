#include "molcryst/molecule/AtomInGraph.h"

#include "molcryst/molecule/Site.h"

namespace molcryst {

// The one instantiation of the molecular graph types.
template class Graph<HAtom, HBond>;
template class OrderedGraph<HAtom, HBond>;
template class ChemicalGraphAtomData<Atom, Bond>;
template class ChemicalGraphBondData<Atom, Bond>;
template class ChemicalGraph<Atom, Bond>;

int AtomInGraph::index() const { return graph_data_.index(); }
int AtomInGraph::nbonds() const { return graph_data_.nbonds(); }
bool AtomInGraph::cyclic() const { return graph_data_.cyclic(); }

int AtomInGraph::nhydrogens(bool all_isotopes) const {
    int count = 0;
    AtomGraphData::NeighbourIterator end = graph_data_.end_neighbours();
    for (AtomGraphData::NeighbourIterator n = graph_data_.begin_neighbours(); n != end; ++n) {
        Element e = (*n)->element();
        if (all_isotopes ? e.atomic_number() == 1 : e.code() == 2) ++count;
    }
    return count;
}

PolymorphicConstIterator<HAtom> AtomInGraph::begin_neighbours() const {
    return make_polymorphic_const_iterator<HAtom>(graph_data_.begin_neighbours(), graph_data_.end_neighbours());
}
PolymorphicConstIterator<HAtom> AtomInGraph::end_neighbours() const {
    AtomGraphData::NeighbourIterator end = graph_data_.end_neighbours();
    return make_polymorphic_const_iterator<HAtom>(end, end);
}
std::deque<HAtom> AtomInGraph::neighbours() const { return graph_data_.neighbours(); }

PolymorphicConstIterator<HBond> AtomInGraph::begin_bonds() const {
    return make_polymorphic_const_iterator<HBond>(graph_data_.begin_bonds(), graph_data_.end_bonds());
}
PolymorphicConstIterator<HBond> AtomInGraph::end_bonds() const {
    AtomGraphData::BondIterator end = graph_data_.end_bonds();
    return make_polymorphic_const_iterator<HBond>(end, end);
}
std::deque<HBond> AtomInGraph::bonds() const { return graph_data_.bonds(); }

AtomGraphData& AtomInGraph::graph_data() { return graph_data_; }

}  // namespace molcryst

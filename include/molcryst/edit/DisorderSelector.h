// DisorderSelector: steps through the states of a disordered molecule. Each
// assembly (one disordered region) holds groups (its alternatives); a state
// picks one group of each assembly, and the states are all the combinations,
// most probable first.
//
// States are numbered like digits of a mixed-radix number: assembly 0 changes
// fastest, and within an assembly groups come by falling occupancy, equal
// occupancies in their given order. Step i is worked out from i and back, so
// the number of states, which grows as a product, is never listed unless
// steps() is asked for.
#ifndef MOLCRYST_EDIT_DISORDERSELECTOR_H
#define MOLCRYST_EDIT_DISORDERSELECTOR_H

#include <vector>

#include "molcryst/edit/AtomSiteMapping.h"
#include "molcryst/edit/DisorderState.h"
#include "molcryst/edit/MoleculeGeometrySelector.h"

namespace molcryst {

/// A selector over the disorder states of one molecule.
class DisorderSelector : public MoleculeGeometrySelector {
public:
    /// `mapping` holds, per assembly, its groups; it is checked by
    /// validate_mapping. A null molecule or mapping throws std::invalid_argument.
    DisorderSelector(const HMolecule& molecule, const Hvector_Hvector_HAtomSiteMapping& mapping);

    /// Replaces the mapping, checked as in the constructor, and forgets the
    /// current state; a null mapping throws std::invalid_argument.
    void set_mapping(const Hvector_Hvector_HAtomSiteMapping& mapping);
    const Hvector_Hvector_HAtomSiteMapping& mapping() const { return mapping_; }

    void start() override;
    /// The first state if none is set, else the following one;
    /// std::runtime_error when done().
    void next() override;
    /// False while no state is set; then true at the last state.
    bool done() const override;
    /// Gives every assembly the group of state `i`; std::out_of_range
    /// outside 0 .. nsteps() - 1.
    void set(int i) override;
    /// The product of the group counts; std::overflow_error when it exceeds an int.
    int nsteps() const override;
    /// The number of the state set last; std::runtime_error when none is,
    /// std::overflow_error when it exceeds an int.
    int current_step() const override;
    /// The DisorderState that every step reuses.
    HMoleculeGeometryEdit current_edit() const override { return state_; }

    /// Per assembly, the group index of the state set last; empty when none is.
    const std::vector<int>& current_step_element() const { return current_step_element_; }
    /// Per assembly, the group index of state 0, the most probable.
    const std::vector<int>& first_step() const { return first_step_; }
    /// Per assembly, the group index of state `i`; std::out_of_range as set.
    std::vector<int> step(int i) const;
    /// Every state, one row each, state 0 first. The table has nsteps() rows:
    /// std::overflow_error as nsteps, and std::length_error beyond 2^24 entries.
    std::vector<std::vector<int> > steps() const;

    int nassemblies() const { return static_cast<int>(order_.size()); }
    /// Per assembly, per group, the occupancy of the group's first atom.
    std::vector<std::vector<double> > group_occupancies() const;
    /// Per assembly, its group indices by falling occupancy; of equal
    /// occupancies the lower index first.
    std::vector<std::vector<int> > ordered_mapping() const;
    /// The indices of `occupancies` by falling value, equal values in their
    /// given order: the order of the groups of one assembly.
    static std::vector<int> by_falling_occupancy(const std::vector<double>& occupancies);
    /// Per assembly, the group of the current state.
    vector_HAtomSiteMapping current_edit_data() const;

    /// Checks a mapping for this molecule; std::runtime_error, with the
    /// first fault found, otherwise.
    void validate_mapping(const Hvector_Hvector_HAtomSiteMapping& mapping) const;

private:
    void build();
    /// The number of states, or 2^64 - 1 when it is that many or more.
    unsigned long long count() const { return count_; }

    Hvector_Hvector_HAtomSiteMapping mapping_;
    HDisorderState state_;
    std::vector<int> first_step_;
    std::vector<int> current_step_element_;  // empty when no state is set
    std::vector<std::vector<int> > order_;   // per assembly, groups by falling occupancy
    std::vector<std::vector<int> > rank_;    // per assembly, group index -> place in order_
    std::vector<unsigned long long> radix_;  // per assembly, product of the earlier group counts
    unsigned long long count_ = 0;           // product of all group counts, saturated
};

typedef THandle<DisorderSelector> HDisorderSelector;

}  // namespace molcryst

#endif

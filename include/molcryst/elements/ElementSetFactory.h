// ElementSetFactory: the library's knowledge of the periodic table. It builds
// the standard families (groups, transition rows, blocks, metals, non-metals)
// from three constant tables, and keeps a registry of named element sets
// under two-character names.
#ifndef MOLCRYST_ELEMENTS_ELEMENTSETFACTORY_H
#define MOLCRYST_ELEMENTS_ELEMENTSETFACTORY_H

#include <array>
#include <map>
#include <set>
#include <string>

#include "molcryst/elements/Element.h"
#include "molcryst/elements/ElementSet.h"

namespace molcryst {

/// Families of elements, and a registry of named sets. The families are
/// built afresh on each call and never touch the registry.
///
/// The registry starts with 31 sets under old-style group names: "1A" to "8A"
/// for the main groups, "3B" to "2B" (with "8X", "8Y", "8Z" and "8B") for
/// the transition groups, "1R" to "3R", "TR", "LN", "AN", "1M" to "4M", "HD"
/// and "AA". Two are irregular on purpose: "AA" is every code but H (it keeps
/// D and the unknowns), and "4A" is group 14 without C.
class ElementSetFactory {
public:
    /// Members per group, groups 1 to 18.
    static const std::array<int, 18> group_size_;
    /// Members per transition row, rows 1 to 4.
    static const std::array<int, 4> d_block_row_size_;
    /// Groups 1, 2, 13, 14, 15, 16, 17 and 18, in periods; code 0 fills the ends.
    static const std::array<std::array<Element::TARNCode, 7>, 8> main_group_;
    /// Transition rows 1 to 4; column 0 is group 3 and column 9 group 12.
    static const std::array<std::array<Element::TARNCode, 10>, 4> transition_;
    /// The lanthanides Ce to Lu, then the actinides Th to Lr.
    static const std::array<Element::TARNCode, 28> f_block_;

    /// A factory with the standard sets registered.
    ElementSetFactory();

    /// Group `g`, 1 to 18. Group 1 leaves out hydrogen; group 3 has La and Ac.
    /// Out of range throws std::out_of_range.
    static ElementSet group(int g);
    static ElementSet halogens();  // group 17
    static ElementSet noble();     // group 18
    /// Groups 1 and 2.
    static ElementSet s_block_metals();
    /// The members of groups 13 to 18 that are not non-metals: Al, Ga, In,
    /// Tl, Ge, Sn, Pb, Sb, Bi, Po.
    static ElementSet p_block_metals();
    /// Groups 1 and 2 and the p-block metals.
    static ElementSet main_group_metals();
    /// Transition row `r`, 1 to 4; row 4 is Ac alone. Out of range throws
    /// std::out_of_range.
    static ElementSet transition_row(int r);
    /// Rows 1 to 4, so Ac is a transition metal.
    static ElementSet transition_metals();
    /// Ce to Lu; La is a transition metal.
    static ElementSet lanthanides();
    /// Th to Lr; Ac is a transition metal.
    static ElementSet actinides();
    static ElementSet metals();
    /// Groups 13 to 18 without the p-block metals, and H and D.
    static ElementSet non_metals();
    /// H and D.
    static ElementSet hydrogens();
    /// Every code of atomic number 0: Unknown, X, Z, Zz.
    static ElementSet unknown();
    /// Metals, non-metals and unknowns: every code.
    static ElementSet all();
    /// Every code but H, D and the unknowns.
    static ElementSet non_hydrogens();

    /// Registers `set` under `name`, replacing any set of that name.
    void register_set(const std::string& name, const ElementSet& set);
    /// True if a set is registered under `name` (case counts).
    bool registered(const std::string& name) const;
    /// A copy of the set registered under `name`; an unknown name throws
    /// std::invalid_argument.
    ElementSet create_set(const std::string& name) const;
    /// Names of the registered sets that hold `e`.
    std::set<std::string> find(const Element& e) const;
    /// Names of the registered sets equal to `set`, order aside.
    std::set<std::string> find(const ElementSet& set) const;
    /// Every registered name.
    std::set<std::string> all_sets() const;

private:
    std::map<std::string, ElementSet> sets_;
};

}  // namespace molcryst

#endif

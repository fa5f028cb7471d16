// Function objects that select atoms, for std::find_if, std::count_if and
// the removal of atoms from molecules. Each is a template on the handle type,
// so that it serves molecule atoms and connectivity atoms alike: it needs
// only `label()`, `element()` (with `atomic_number()`, `code()`, `non_metal()`),
// `has_site()`, `nbonds()`, `begin_bonds()`/`end_bonds()` and, on bonds,
// `atom1()`, `atom2()` and `type()`.
// A null handle given to any of them goes to HandleCommon::null_handle_error.
#ifndef MOLCRYST_SUPPORT_ATOMPREDICATES_H
#define MOLCRYST_SUPPORT_ATOMPREDICATES_H

#include <string>

#include "molcryst/support/THandle.h"

namespace molcryst {

namespace detail {
/// Bond type 6, the polymeric bond.
constexpr int polymeric_bond_type = 6;

template <class B>
int bond_type_value(const B& bond) {
    return static_cast<int>(bond->type());
}

/// The end of `bond` that is not `atom`.
template <class B, class H>
auto other_end(const B& bond, const H& atom) -> decltype(bond->atom1()) {
    if (static_cast<const void*>(bond->atom1().unhand()) == static_cast<const void*>(atom.unhand()))
        return bond->atom2();
    return bond->atom1();
}
}  // namespace detail

/// True for an atom whose label equals the string.
template <class H>
class AtomLabelPredicate {
public:
    explicit AtomLabelPredicate(const std::string& label) : label_(label) {}
    bool operator()(const H& atom) const { return atom->label() == label_; }

private:
    std::string label_;
};

/// True for an atom of the given atomic number.
template <class H>
class AtomAtomicNumberPredicate {
public:
    explicit AtomAtomicNumberPredicate(int atomic_number) : atomic_number_(atomic_number) {}
    bool operator()(const H& atom) const { return atom->element().atomic_number() == atomic_number_; }

private:
    int atomic_number_;
};

/// True for an atom of the given element code.
template <class H>
class AtomElementCodePredicate {
public:
    template <class Code>
    explicit AtomElementCodePredicate(Code code) : code_(static_cast<int>(code)) {}
    bool operator()(const H& atom) const { return static_cast<int>(atom->element().code()) == code_; }

private:
    int code_;
};

/// True for an atom that is not a non-metal; the pseudo-elements count as
/// metals here, as they do for bonds.
template <class H>
struct AtomMetalPredicate {
    bool operator()(const H& atom) const { return !atom->element().non_metal(); }
};

/// True for an atom with a site.
template <class H>
struct AtomHasSitePredicate {
    bool operator()(const H& atom) const { return atom->has_site(); }
};

/// True for a hydrogen or deuterium atom with exactly one bond.
template <class H>
struct AtomTerminalHDPredicate {
    bool operator()(const H& atom) const { return atom->element().atomic_number() == 1 && atom->nbonds() == 1; }
};

/// True for an atom that has bonds, all of them polymeric (type 6).
template <class H>
struct AtomPolymericPredicate {
    bool operator()(const H& atom) const {
        if (atom->nbonds() == 0) return false;
        auto end = atom->end_bonds();
        for (auto b = atom->begin_bonds(); b != end; ++b)
            if (detail::bond_type_value(*b) != detail::polymeric_bond_type) return false;
        return true;
    }
};

/// True for a hydrogen or deuterium whose one neighbour holds nothing but
/// polymeric bonds and single bonds to such terminal hydrogens: what hangs on
/// a polymeric bridge.
template <class H>
struct AtomPolymericTerminalHDPredicate {
    bool operator()(const H& atom) const {
        if (atom->nbonds() != 1 || atom->element().atomic_number() != 1) return false;
        auto x = detail::other_end(*atom->begin_bonds(), atom);
        auto end = x->end_bonds();
        for (auto b = x->begin_bonds(); b != end; ++b) {
            int type = detail::bond_type_value(*b);
            if (type == detail::polymeric_bond_type) continue;
            if (type != 1) return false;
            auto y = detail::other_end(*b, x);
            if (y->element().atomic_number() != 1 || y->nbonds() != 1) return false;
        }
        return true;
    }
};

/// Always true.
template <class H>
struct AtomAlwaysTruePredicate {
    bool operator()(const H&) const { return true; }
};

}  // namespace molcryst

#endif

// ProxyAtom: an atom that stands in one molecule for an atom of another.
//
// An atom belongs to one chemical graph at most, so a view of part of a
// molecule cannot hold the molecule's own atoms. It holds proxies instead:
// each has graph data of its own (index, neighbours and rings in the view)
// and forwards all chemistry to the atom it stands for.
#ifndef MOLCRYST_MOLECULE_PROXYATOM_H
#define MOLCRYST_MOLECULE_PROXYATOM_H

#include <string>

#include "molcryst/molecule/AtomInGraph.h"

namespace molcryst {

/// A live, read-only view of another atom. Element, charge, radius, label,
/// symmetry tag and site are the parent's (the site is the very same object,
/// so a move of the parent shows here at once); position in a molecule is the
/// proxy's own. No setter is overridden, so every set operation raises the
/// "Cannot modify this atom" error. A proxy whose parent has been set to the
/// null handle is dead: its chemistry queries throw std::runtime_error
/// "ProxyAtom::<name> - atom is no longer valid".
class ProxyAtom : public AtomInGraph {
public:
    /// A proxy of `parent`, in no graph. The proxy keeps its parent alive.
    explicit ProxyAtom(const HAtom& parent);
    /// A proxy of the same parent, in no graph.
    ProxyAtom(const ProxyAtom& other);
    /// Takes the other's parent; graph membership stays as it was.
    ProxyAtom& operator=(const ProxyAtom& other);
    ~ProxyAtom() override;

    /// A new proxy of the same parent, in no graph.
    HAtom clone() const override;
    Element element() const override;
    int formal_charge() const override;
    double radius() const override;
    std::string label() const override;
    int symmtag() const override;
    HSite site() const override;
    bool has_site() const override;

    const HAtom& parent_atom() const { return parent_atom_; }
    /// Points the proxy at another atom; the null handle marks it dead.
    /// A parent that is, or stands for, this proxy itself would make a cycle
    /// of handles and endless forwarding: std::invalid_argument.
    void set_parent_atom(const HAtom& parent);

private:
    /// The parent, or std::runtime_error naming `method` when there is none.
    const Atom& parent(const char* method) const;

    HAtom parent_atom_;  // null once the proxy has been marked dead
};

typedef THandle<ProxyAtom> HProxyAtom;

}  // namespace molcryst

#endif

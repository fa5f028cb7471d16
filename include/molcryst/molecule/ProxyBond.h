// ProxyBond: a bond that stands in one molecule for a bond of another.
#ifndef MOLCRYST_MOLECULE_PROXYBOND_H
#define MOLCRYST_MOLECULE_PROXYBOND_H

#include "molcryst/molecule/BondInGraph.h"

namespace molcryst {

/// A live, read-only view of another bond: the type is the parent's, the
/// ends, index and rings are those of the graph the proxy is in. `set_type`
/// is not overridden, so it raises "Bond::set_type Cannot modify this bond".
/// With a null parent, `type()` throws std::runtime_error
/// "ProxyBond::type - bond is no longer valid".
class ProxyBond : public BondInGraph {
public:
    /// A proxy of `parent`, in no graph. The proxy keeps its parent alive.
    explicit ProxyBond(const HBond& parent);
    /// A proxy of the same parent, in no graph.
    ProxyBond(const ProxyBond& other);
    /// Takes the other's parent; graph membership stays as it was.
    ProxyBond& operator=(const ProxyBond& other);
    ~ProxyBond() override;

    /// A new proxy of the same parent, in no graph.
    HBond clone() const override;
    BondType type() const override;

    const HBond& parent_bond() const { return parent_bond_; }
    /// Points the proxy at another bond; the null handle marks it dead.
    /// A parent that is, or stands for, this proxy itself: std::invalid_argument.
    void set_parent_bond(const HBond& parent);

private:
    HBond parent_bond_;  // null once the proxy has been marked dead
};

typedef THandle<ProxyBond> HProxyBond;

}  // namespace molcryst

#endif

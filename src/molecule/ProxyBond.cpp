#include "molcryst/molecule/ProxyBond.h"

#include <stdexcept>

namespace molcryst {

ProxyBond::ProxyBond(const HBond& parent) : parent_bond_(parent) {}

ProxyBond::ProxyBond(const ProxyBond& other) : BondInGraph(other), parent_bond_(other.parent_bond_) {}

ProxyBond& ProxyBond::operator=(const ProxyBond& other) {
    BondInGraph::operator=(other);
    parent_bond_ = other.parent_bond_;
    return *this;
}

ProxyBond::~ProxyBond() {}

void ProxyBond::set_parent_bond(const HBond& parent) {
    for (const Bond* b = parent.unhand(); b != nullptr;) {
        if (b == this) throw std::invalid_argument("ProxyBond::set_parent_bond - a bond cannot stand for itself");
        const ProxyBond* p = dynamic_cast<const ProxyBond*>(b);
        b = p != nullptr ? p->parent_bond_.unhand() : nullptr;
    }
    parent_bond_ = parent;
}

HBond ProxyBond::clone() const { return HBond(new ProxyBond(*this)); }

BondType ProxyBond::type() const {
    if (parent_bond_.unhand() == nullptr) throw std::runtime_error("ProxyBond::type - bond is no longer valid");
    return parent_bond_->type();
}

}  // namespace molcryst

#include "molcryst/molecule/ProxyAtom.h"

#include <stdexcept>

#include "molcryst/molecule/Site.h"

namespace molcryst {

ProxyAtom::ProxyAtom(const HAtom& parent) : parent_atom_(parent) {}

ProxyAtom::ProxyAtom(const ProxyAtom& other) : AtomInGraph(other), parent_atom_(other.parent_atom_) {}

ProxyAtom& ProxyAtom::operator=(const ProxyAtom& other) {
    AtomInGraph::operator=(other);
    parent_atom_ = other.parent_atom_;
    return *this;
}

ProxyAtom::~ProxyAtom() {}

void ProxyAtom::set_parent_atom(const HAtom& parent) {
    // Walk the chain of proxies behind the new parent, without recursion.
    for (const Atom* a = parent.unhand(); a != nullptr;) {
        if (a == this) throw std::invalid_argument("ProxyAtom::set_parent_atom - an atom cannot stand for itself");
        const ProxyAtom* p = dynamic_cast<const ProxyAtom*>(a);
        a = p != nullptr ? p->parent_atom_.unhand() : nullptr;
    }
    parent_atom_ = parent;
}

HAtom ProxyAtom::clone() const { return HAtom(new ProxyAtom(*this)); }

const Atom& ProxyAtom::parent(const char* method) const {
    if (parent_atom_.unhand() == nullptr)
        throw std::runtime_error(std::string("ProxyAtom::") + method + " - atom is no longer valid");
    return *parent_atom_;
}

Element ProxyAtom::element() const { return parent("element").element(); }
int ProxyAtom::formal_charge() const { return parent("formal_charge").formal_charge(); }
double ProxyAtom::radius() const { return parent("radius").radius(); }
std::string ProxyAtom::label() const { return parent("label").label(); }
int ProxyAtom::symmtag() const { return parent("symmtag").symmtag(); }
HSite ProxyAtom::site() const { return parent("site").site(); }
bool ProxyAtom::has_site() const { return parent("has_site").has_site(); }

}  // namespace molcryst

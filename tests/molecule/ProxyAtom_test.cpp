// Proxies: forwarding to the parent, refusing every setter, dead proxies, and
// one atom shown in two graphs at once.
#include "molcryst/molecule/ProxyAtom.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

#include "TestMolecules.h"
#include "common/ErrorText.h"
#include "molcryst/graph/ChemicalGraph.h"
#include "molcryst/molecule/ProxyBond.h"

using namespace molcryst;
using namespace molcryst::testing;

TEST(ProxyAtom, ForwardsChemistryAndRefusesEverySetter) {
    HAtom parent = atom_at("N", "N1", 1, 2, 3);
    parent->set_formal_charge(1);
    parent->set_symmtag(4);
    ProxyAtom proxy(parent);
    EXPECT_EQ(proxy.element().code(), Element(Element::N).code());
    EXPECT_EQ(proxy.formal_charge(), 1);
    EXPECT_EQ(proxy.radius(), parent->radius());
    EXPECT_EQ(proxy.symmtag(), 4);
    EXPECT_EQ(proxy.site(), parent->site());  // the very site, not a copy
    EXPECT_TRUE(proxy == *parent);
    EXPECT_FALSE(proxy.archivable());

    // Changes to the parent show at once, and the proxy keeps it alive.
    parent->set_label("N7");
    parent->set_site(HSite());
    EXPECT_EQ(proxy.label(), "N7");
    EXPECT_FALSE(proxy.has_site());
    HAtom held = parent;
    parent = HAtom();
    EXPECT_EQ(proxy.label(), "N7");

    // Every setter is the unmodifiable atom's own refusal.
    EXPECT_THROW(proxy.set_element(Element::C), std::runtime_error);
    EXPECT_THROW(proxy.set_formal_charge(0), std::runtime_error);
    EXPECT_THROW(proxy.set_radius(1.0), std::runtime_error);
    EXPECT_EQ(error_text<std::runtime_error>([&] { proxy.set_label("X"); }), "Atom::set_label Cannot modify this atom");
    EXPECT_THROW(proxy.set_symmtag(0), std::runtime_error);
    EXPECT_THROW(proxy.set_site(HSite()), std::runtime_error);
    EXPECT_EQ(held->label(), "N7");
}

TEST(ProxyAtom, ClonesAreProxiesOfTheSameParentInNoGraph) {
    ChemicalGraph<Atom, Bond> parents, proxies;
    HAtom c = atom_without_site("C", "C1"), o = atom_without_site("O", "O1");
    HBond co(new Bond3d(DOUBLE_BOND));
    parents.add(co, c, o);
    // The parents stay in their graph while their proxies join another.
    HAtom pc(new ProxyAtom(c)), po(new ProxyAtom(o));
    HBond pco(new ProxyBond(co));
    proxies.add(po);
    proxies.add(pco, pc, po);
    EXPECT_EQ(c->index(), 0);
    EXPECT_EQ(pc->index(), 1);

    HAtom copy = pc->clone();
    EXPECT_EQ(dynamic_cast<ProxyAtom&>(*copy).parent_atom(), c);
    EXPECT_TRUE(is_free(copy));
    HBond bond_copy = pco->clone();
    EXPECT_EQ(dynamic_cast<ProxyBond&>(*bond_copy).parent_bond(), co);
    EXPECT_FALSE(proxies.has_bond(bond_copy));

    // A bond seen through a proxy refuses a new type; its parent takes one,
    // and the proxy shows it.
    EXPECT_EQ(error_text<std::runtime_error>([&] { pco->set_type(SINGLE_BOND); }),
              "Bond::set_type Cannot modify this bond");
    co->set_type(TRIPLE_BOND);
    EXPECT_EQ(pco->type(), TRIPLE_BOND);
}

TEST(ProxyAtom, DeadProxiesNameTheQuery) {
    ProxyAtom atom(atom_without_site("C", "C1"));
    atom.set_parent_atom(HAtom());
    const std::pair<const char*, std::function<void()> > queries[] = {
        {"element", [&] { atom.element(); }},
        {"formal_charge", [&] { atom.formal_charge(); }},
        {"radius", [&] { atom.radius(); }},
        {"label", [&] { atom.label(); }},
        {"symmtag", [&] { atom.symmtag(); }},
        {"site", [&] { atom.site(); }},
        {"has_site", [&] { atom.has_site(); }},
        {"label", [&] { atom.clone()->label(); }},  // clones of a dead proxy are dead too
    };
    for (const auto& q : queries)
        EXPECT_EQ(error_text<std::runtime_error>(q.second),
                  std::string("ProxyAtom::") + q.first + " - atom is no longer valid");

    ProxyBond bond(HBond(new Bond3d(SINGLE_BOND)));
    bond.set_parent_bond(HBond());
    EXPECT_EQ(error_text<std::runtime_error>([&] { bond.type(); }), "ProxyBond::type - bond is no longer valid");
}

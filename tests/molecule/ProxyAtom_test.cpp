// Proxies: forwarding to the parent, refusing every setter, dead proxies, and
// one atom shown in two graphs at once.
#include "molcryst/molecule/ProxyAtom.h"

#include <gtest/gtest.h>

#include "common/ErrorText.h"

#include <string>

#include "molcryst/graph/ChemicalGraph.h"
#include "molcryst/molecule/Atom3d.h"
#include "molcryst/molecule/Bond3d.h"
#include "molcryst/molecule/ProxyBond.h"
#include "molcryst/molecule/Site.h"

using namespace molcryst;
using molcryst::testing::error_text;

TEST(ProxyAtom, ForwardsChemistryAndRefusesEverySetter) {
    HAtom parent(new Atom3d(Element::N, "N1", HSite(new Site(Point(1, 2, 3)))));
    parent->set_formal_charge(1);
    parent->set_symmtag(4);
    ProxyAtom proxy(parent);
    EXPECT_EQ(proxy.element().code(), Element(Element::N).code());
    EXPECT_EQ(proxy.formal_charge(), 1);
    EXPECT_EQ(proxy.radius(), parent->radius());
    EXPECT_EQ(proxy.label(), "N1");
    EXPECT_EQ(proxy.symmtag(), 4);
    EXPECT_TRUE(proxy.has_site());
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

    EXPECT_EQ(error_text<std::runtime_error>([&] { proxy.set_element(Element::C); }),
              "Atom::set_element Cannot modify this atom");
    EXPECT_EQ(error_text<std::runtime_error>([&] { proxy.set_formal_charge(0); }),
              "Atom::set_formal_charge Cannot modify this atom");
    EXPECT_EQ(error_text<std::runtime_error>([&] { proxy.set_radius(1.0); }),
              "Atom::set_radius Cannot modify this atom");
    EXPECT_EQ(error_text<std::runtime_error>([&] { proxy.set_label("X"); }), "Atom::set_label Cannot modify this atom");
    EXPECT_EQ(error_text<std::runtime_error>([&] { proxy.set_symmtag(0); }),
              "Atom::set_symmtag Cannot modify this atom");
    EXPECT_EQ(error_text<std::runtime_error>([&] { proxy.set_site(HSite()); }),
              "Atom::set_site Cannot modify this atom");
    EXPECT_EQ(held->label(), "N7");
}

TEST(ProxyAtom, ClonesAreProxiesOfTheSameParentInNoGraph) {
    ChemicalGraph<Atom, Bond> parents, proxies;
    HAtom c(new Atom3d(Element::C, "C1", HSite())), o(new Atom3d(Element::O, "O1", HSite()));
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
    EXPECT_EQ(error_text<std::runtime_error>([&] { copy->index(); }),
              "ChemicalGraphAtomData<AtomType, BondType>::index cannot work when graph_ == 0");
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
    ProxyAtom atom(HAtom(new Atom3d(Element::C, "C1", HSite())));
    atom.set_parent_atom(HAtom());
    const char* const names[] = {"element", "formal_charge", "radius", "label", "symmtag", "site", "has_site"};
    const std::string texts[] = {
        error_text<std::runtime_error>([&] { atom.element(); }),
        error_text<std::runtime_error>([&] { atom.formal_charge(); }),
        error_text<std::runtime_error>([&] { atom.radius(); }),
        error_text<std::runtime_error>([&] { atom.label(); }),
        error_text<std::runtime_error>([&] { atom.symmtag(); }),
        error_text<std::runtime_error>([&] { atom.site(); }),
        error_text<std::runtime_error>([&] { atom.has_site(); }),
    };
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(texts[i], std::string("ProxyAtom::") + names[i] + " - atom is no longer valid");

    ProxyBond bond(HBond(new Bond3d(SINGLE_BOND)));
    bond.set_parent_bond(HBond());
    EXPECT_EQ(error_text<std::runtime_error>([&] { bond.type(); }), "ProxyBond::type - bond is no longer valid");
    // Clones of a dead proxy are dead too.
    EXPECT_EQ(error_text<std::runtime_error>([&] { atom.clone()->label(); }),
              "ProxyAtom::label - atom is no longer valid");
}

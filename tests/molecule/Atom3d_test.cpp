#include "molcryst/molecule/Atom3d.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "TestMolecules.h"
#include "common/ArchiveBytes.h"
#include "common/ErrorText.h"
#include "common/Text.h"
#include "molcryst/graph/ChemicalGraph.h"
#include "molcryst/molecule/BondData.h"
#include "molcryst/molecule/ProteinAtom.h"
#include "molcryst/support/VersionedArchive.h"

using namespace molcryst;
using namespace molcryst::testing;

TEST(Atom3d, DefaultsAndSettersThatTrimWrapOrLeaveTheRest) {
    Atom3d plain;
    EXPECT_EQ(plain.element().code(), Element::Unknown);
    EXPECT_EQ(plain.radius(), 0.0);
    EXPECT_EQ(plain.symmtag(), -1);
    EXPECT_FALSE(plain.has_site());

    Atom3d n(Element("N"), "  N1 ", HSite());
    EXPECT_EQ(n.label(), "  N1 ");  // the constructor keeps the label as given
    EXPECT_EQ(n.radius(), Element("N").covalent_radius());
    n.set_label(" \tN1\t ");
    EXPECT_EQ(n.label(), "N1");
    n.set_formal_charge(70000);
    EXPECT_EQ(n.formal_charge(), 70000 - 65536);
    n.set_element(Element("O"));
    EXPECT_EQ(n.radius(), Element("N").covalent_radius());  // set_element changes the element alone
    EXPECT_EQ(printed(Atom3d(Element("N"), "N1", HSite())),
              "element: N, formal_charge: 0, radius: 0.68, label: N1, symmtag: -1, site: none");
}

TEST(Atom3d, CopiesAreEqualFreeAndOwnTheirSites) {
    ChemicalGraph<Atom, Bond> g;
    HSite site(new Site(Point(1, 2, 3)));
    HAtom a(new Atom3d(Element("C"), "C1", site));
    g.add(HBond(new Bond3d(SINGLE_BOND)), a, atom_without_site(Element("O"), "O1"));
    HAtom clone = a->clone();
    Atom3d copy(static_cast<const Atom3d&>(*a));
    Atom3d from_atom(static_cast<const Atom&>(*a));
    Atom3d assigned;
    assigned = static_cast<const Atom3d&>(*a);
    EXPECT_TRUE(*clone == *a);
    EXPECT_TRUE(is_free(clone));
    EXPECT_EQ(error_text<std::runtime_error>([&] { assigned.nbonds(); }),
              "ChemicalGraphAtomData<AtomType, BondType>::nbonds cannot work when graph_ == 0");

    // The constructor shares the site it is given; copies have their own.
    site->set_coordinates(Point(4, 5, 6));
    EXPECT_EQ(a->site()->orth(), Point(4, 5, 6));
    for (const Atom* c :
         {clone.unhand(), static_cast<Atom*>(&copy), static_cast<Atom*>(&from_atom), static_cast<Atom*>(&assigned)})
        EXPECT_EQ(c->site()->orth(), Point(1, 2, 3));
    EXPECT_FALSE(copy == *a);  // sites now differ
    clone->set_site(site);
    EXPECT_EQ(clone->site().unhand(), site.unhand());  // set_site shares
    clone->set_symmtag(5);
    EXPECT_FALSE(*clone == *a);
    EXPECT_FALSE(copy == Atom3d(Element("C"), "C1", HSite()));  // one has a site, the other not
}

TEST(Bond, TypesEqualityRotatabilityAndOtherAtom) {
    // A C1-C2-C3=O1 chain on a C4-C5:C6 ring.
    HMolecule3d m = molecule("C C1; C C2; C C3; O O1; C C4; C C5; C C6", "C1-C2 C2-C3 C3=O1 C4-C5 C5:C6 C6-C4 C6-C1");
    HBond b12 = bond_between(*m, "C1", "C2"), b23 = bond_between(*m, "C2", "C3"), b3o = bond_between(*m, "C3", "O1");
    HAtom c1 = atom_labelled(*m, "C1"), c2 = atom_labelled(*m, "C2"), o1 = atom_labelled(*m, "O1");
    EXPECT_TRUE(b23->rotatable());
    EXPECT_FALSE(b3o->rotatable());                           // terminal, and double
    EXPECT_FALSE(bond_between(*m, "C4", "C5")->rotatable());  // on a ring
    EXPECT_FALSE(bond_between(*m, "C5", "C6")->rotatable());  // aromatic
    EXPECT_TRUE(*b12 == *b23);                                // equal types, different atoms
    EXPECT_TRUE(*b12 != *b3o);

    EXPECT_EQ(b12->other_atom(c1), c2);
    EXPECT_EQ(b12->other_atom(*c2), c1);
    EXPECT_EQ(error_text<std::invalid_argument>([&] { b12->other_atom(HAtom()); }),
              "Bond::other_atom(HAtom) atom is a null pointer");
    EXPECT_EQ(error_text<std::runtime_error>([&] { b12->other_atom(o1); }),
              "Bond::other_atom(HAtom) atom is not in this bond");
    EXPECT_EQ(error_text<std::runtime_error>([&] { b12->other_atom(*o1); }),
              "Bond::other_atom(const Atom& atom) atom is not in this bond");
    EXPECT_TRUE(b23->contains(2));
    EXPECT_FALSE(b23->contains(3));

    EXPECT_EQ(printed(*b3o), "atom1: 2 (C3), atom2: 3 (O1), type: 2, cyclic: 0");
    EXPECT_EQ(printed(*bond_between(*m, "C4", "C5")), "atom1: 4 (C4), atom2: 5 (C5), type: 1, cyclic: 1");

    for (int bad : {10, -1})
        EXPECT_EQ(error_text<std::invalid_argument>([&] { b12->set_type(static_cast<BondType>(bad)); }),
                  "Bond3d::set_type: Illegal bond type.");
    b12->set_type(PI_BOND);
    EXPECT_EQ(b12->type(), PI_BOND);
}

TEST(Bond3d, ArchivedTypeOutsideTheKindsRoundTripsAsStored) {
    // An archive may hold any integer; it is kept and written back unchanged.
    Archive ar = archive_of(words({1000}));
    Bond3d bond;
    bond.read(ar);
    EXPECT_EQ(static_cast<int>(bond.type()), 1000);
    Archive out = Archive::temporary();
    bond.write(out);
    EXPECT_EQ(bytes_of(out), words({1000}));
}

TEST(Atom, BaseSettersCannotModify) {
    // A read-only atom: a class that overrides no setter.
    struct ReadOnly : Atom3d {
        ReadOnly() : Atom3d(Element("C"), "C1", HSite()) {}
        void set_label(const std::string& l) override { Atom::set_label(l); }
        void set_formal_charge(int c) override { Atom::set_formal_charge(c); }
        void set_radius(double r) override { Atom::set_radius(r); }
        void set_symmtag(int t) override { Atom::set_symmtag(t); }
        void set_element(const Element& e) override { Atom::set_element(e); }
        void set_site(const HSite& s) override { Atom::set_site(s); }
    } atom;
    const auto refusal = [](const char* setter) { return std::string("Atom::") + setter + " Cannot modify this atom"; };
    EXPECT_EQ(error_text<std::runtime_error>([&] { atom.set_label("x"); }), refusal("set_label"));
    EXPECT_EQ(error_text<std::runtime_error>([&] { atom.set_formal_charge(1); }), refusal("set_formal_charge"));
    EXPECT_EQ(error_text<std::runtime_error>([&] { atom.set_radius(1); }), refusal("set_radius"));
    EXPECT_EQ(error_text<std::runtime_error>([&] { atom.set_symmtag(1); }), refusal("set_symmtag"));
    EXPECT_EQ(error_text<std::runtime_error>([&] { atom.set_element(Element("N")); }), refusal("set_element"));
    EXPECT_EQ(error_text<std::runtime_error>([&] { atom.set_site(HSite()); }), refusal("set_site"));
}

TEST(Atom3d, ArchiveLayoutFieldByFieldAndRoundTrips) {
    Atom3d atom(Element("Cl"), "Cl1", HSite());
    atom.set_formal_charge(-1);
    atom.set_radius(0.5);
    atom.set_symmtag(7);
    std::vector<unsigned char> expected{static_cast<unsigned char>(Element::Cl), 0xFF, 0xFF};  // code, short -1
    expected.insert(expected.end(), {0, 0, 0, 0, 0, 0, 0xE0, 0x3F});                           // 0.5
    expected.insert(expected.end(), {3, 0, 0, 0, 'C', 'l', '1'});                              // label
    expected.insert(expected.end(), 8 + 24, 0);  // two reserved ints, a reserved vector
    for (unsigned char b : words({7})) expected.push_back(b);
    expected.push_back(0);  // no site
    EXPECT_EQ(written(atom), expected);

    Archive ar = archive_of(expected);
    Atom3d back;
    back.read(ar);
    EXPECT_TRUE(back == atom);
    Atom3d sited(Element("S"), "S1", HSite(new Site(Point(0.5, -1.5, 2.25))));
    Archive with_site = archive_of(written(sited));
    back.read(with_site);
    EXPECT_TRUE(back == sited);
    EXPECT_NE(back.site().unhand(), sited.site().unhand());

    // Every truncation throws and leaves the atom as it was.
    for (std::size_t n = 0; n < expected.size(); ++n) {
        Archive short_archive = archive_of(cut(expected, n));
        Atom3d target(Element("N"), "N9", HSite());
        EXPECT_THROW(target.read(short_archive), std::runtime_error) << n;
        EXPECT_EQ(target.label(), "N9");
    }
}

TEST(Atom3d, VersionOneArchivesTrimTheLabelAndKeepTheSite) {
    VersionedArchive ar(std::tmpfile(), true);
    ar.set_version(1);
    Element("O").write(ar);
    ar << static_cast<unsigned short>(99) << static_cast<short>(-2) << 1.25 << std::string(" O1 ") << 0 << 0;
    ar << 0.0 << 0.0 << 0.0 << 3 << true;
    ar.rewind();
    Atom3d atom(Element("C"), "C1", HSite());
    atom.read(ar);
    EXPECT_EQ(atom.element(), Element("O"));
    EXPECT_EQ(atom.formal_charge(), -2);
    EXPECT_EQ(atom.radius(), 1.25);
    EXPECT_EQ(atom.label(), "O1");
    EXPECT_EQ(atom.symmtag(), 3);
    EXPECT_FALSE(atom.has_site());
}

TEST(BondData, PacksIntoOneUnsignedIntAtItsLimits) {
    Archive ar = Archive::temporary();
    BondData(16383, 16383, PI_BOND).write(ar);
    BondData(1, 16384, SINGLE_BOND).write(ar);  // too large: spills into atom1
    ar.rewind();
    BondData a, b;
    ar >> a >> b;
    EXPECT_EQ(a, BondData(16383, 16383, PI_BOND));
    EXPECT_EQ(b.atom1(), 2);
    EXPECT_EQ(b.atom2(), 0);
    EXPECT_NE(BondData(1, 2, SINGLE_BOND), BondData(2, 1, SINGLE_BOND));  // order matters
}

TEST(ProteinAtom, ResidueCodesAndDerivedFlag) {
    EXPECT_EQ(ProteinAtom::residue_identity("ALA"), 1);
    EXPECT_EQ(ProteinAtom::residue_identity("xxLYSxx"), 12);
    EXPECT_EQ(ProteinAtom::residue_identity("HISCYS"), 5);  // CYS is looked for first
    EXPECT_EQ(ProteinAtom::residue_identity("HOH"), 0);
    ProteinAtom ca(Element("C"), "CA", "GLY", HSite());
    EXPECT_EQ(ca.residue_code(), 8);
    EXPECT_FALSE(ca.residue_flag());
    // Copies derive the code again; the copy from an Atom takes the residue alone.
    const HAtom clone = ca.clone();
    const ProteinAtom* copy = dynamic_cast<ProteinAtom*>(clone.unhand());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->residue_code(), 8);
    ProteinAtom from_atom(static_cast<const Atom&>(ca));
    EXPECT_EQ(from_atom.residue(), "GLY");
    EXPECT_EQ(from_atom.residue_code(), 0);
    ProteinAtom from_plain(static_cast<const Atom&>(Atom3d(Element("C"), "C1", HSite())));
    EXPECT_EQ(from_plain.residue(), "");
}

#include "molcryst/molecule/Atom3d.h"

#include <gtest/gtest.h>

#include "common/ArchiveBytes.h"
#include "common/ErrorText.h"

#include <unistd.h>

#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "molcryst/graph/ChemicalGraph.h"
#include "molcryst/molecule/Bond3d.h"
#include "molcryst/molecule/BondData.h"
#include "molcryst/molecule/ProteinAtom.h"
#include "molcryst/molecule/Site.h"
#include "molcryst/support/VersionedArchive.h"

using namespace molcryst;
using molcryst::testing::error_text;
using molcryst::testing::archive_of;
using molcryst::testing::bytes_of;

namespace {

std::vector<unsigned char> le32(int v) {
    unsigned int u = static_cast<unsigned int>(v);
    return {static_cast<unsigned char>(u), static_cast<unsigned char>(u >> 8), static_cast<unsigned char>(u >> 16),
            static_cast<unsigned char>(u >> 24)};
}

}  // namespace

TEST(Atom3d, DefaultsSettersAndTheUnmodifiableBase) {
    Atom3d plain;
    EXPECT_EQ(plain.element().code(), Element::TARNCode(0));
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
    EXPECT_EQ(n.label(), "N1");
    EXPECT_EQ(n.radius(), Element("N").covalent_radius());  // set_element changes the element alone
    EXPECT_TRUE(n.archivable());
}

TEST(Atom3d, CopiesAreEqualFreeAndOwnTheirSites) {
    ChemicalGraph<Atom, Bond> g;
    HAtom a(new Atom3d(Element("C"), "C1", HSite()));
    g.add(HBond(new Bond3d(SINGLE_BOND)), a, HAtom(new Atom3d(Element("O"), "O1", HSite())));
    HAtom copy = a->clone();
    EXPECT_TRUE(*copy == *a);
    EXPECT_EQ(error_text<std::runtime_error>([&] { copy->index(); }),
              "ChemicalGraphAtomData<AtomType, BondType>::index cannot work when graph_ == 0");
    Atom3d assigned;
    assigned = static_cast<const Atom3d&>(*a);
    EXPECT_EQ(error_text<std::runtime_error>([&] { assigned.nbonds(); }),
              "ChemicalGraphAtomData<AtomType, BondType>::nbonds cannot work when graph_ == 0");
    copy->set_symmtag(5);
    EXPECT_FALSE(*copy == *a);
}

TEST(Bond, TypesEqualityRotatabilityAndOtherAtom) {
    // C1-C2-C3-O1 chain and a C4-C5-C6 ring.
    ChemicalGraph<Atom, Bond> g;
    std::vector<HAtom> a;
    for (const char* label : {"C1", "C2", "C3", "O1", "C4", "C5", "C6"})
        a.push_back(HAtom(new Atom3d(Element(label[0] == 'O' ? "O" : "C"), label, HSite())));
    HBond b12(new Bond3d(SINGLE_BOND)), b23(new Bond3d(SINGLE_BOND)), b3o(new Bond3d(DOUBLE_BOND));
    HBond r1(new Bond3d(SINGLE_BOND)), r2(new Bond3d(AROMATIC_BOND)), r3(new Bond3d(SINGLE_BOND));
    g.add(b12, a[0], a[1]);
    g.add(b23, a[1], a[2]);
    g.add(b3o, a[2], a[3]);
    g.add(r1, a[4], a[5]);
    g.add(r2, a[5], a[6]);
    g.add(r3, a[6], a[4]);
    g.add(HBond(new Bond3d(SINGLE_BOND)), a[6], a[0]);

    EXPECT_TRUE(b23->rotatable());
    EXPECT_FALSE(b3o->rotatable());  // terminal, and double
    EXPECT_FALSE(r1->rotatable());   // on a ring
    EXPECT_FALSE(r2->rotatable());   // aromatic
    EXPECT_TRUE(*b12 == *b23);       // equal types, different atoms
    EXPECT_TRUE(*b12 != *b3o);

    EXPECT_EQ(b12->other_atom(a[0]), a[1]);
    EXPECT_EQ(b12->other_atom(*a[1]), a[0]);
    EXPECT_EQ(error_text<std::invalid_argument>([&] { b12->other_atom(HAtom()); }),
              "Bond::other_atom(HAtom) atom is a null pointer");
    EXPECT_EQ(error_text<std::runtime_error>([&] { b12->other_atom(a[3]); }),
              "Bond::other_atom(HAtom) atom is not in this bond");
    EXPECT_EQ(error_text<std::runtime_error>([&] { b12->other_atom(*a[3]); }),
              "Bond::other_atom(const Atom& atom) atom is not in this bond");
    EXPECT_TRUE(b23->contains(2));
    EXPECT_FALSE(b23->contains(3));

    std::ostringstream out;
    b3o->print(out);
    EXPECT_EQ(out.str(), "atom1: 2 (C3), atom2: 3 (O1), type: 2, cyclic: 0");
    std::ostringstream ring;
    r1->print(ring);
    EXPECT_EQ(ring.str(), "atom1: 4 (C4), atom2: 5 (C5), type: 1, cyclic: 1");

    EXPECT_EQ(error_text<std::invalid_argument>([&] { b12->set_type(static_cast<BondType>(10)); }),
              "Bond3d::set_type: Illegal bond type.");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { b12->set_type(static_cast<BondType>(-1)); }),
              "Bond3d::set_type: Illegal bond type.");
    b12->set_type(PI_BOND);
    EXPECT_EQ(b12->type(), PI_BOND);
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
    EXPECT_EQ(error_text<std::runtime_error>([&] { atom.set_label("x"); }), "Atom::set_label Cannot modify this atom");
    EXPECT_EQ(error_text<std::runtime_error>([&] { atom.set_formal_charge(1); }),
              "Atom::set_formal_charge Cannot modify this atom");
    EXPECT_EQ(error_text<std::runtime_error>([&] { atom.set_radius(1); }), "Atom::set_radius Cannot modify this atom");
    EXPECT_EQ(error_text<std::runtime_error>([&] { atom.set_symmtag(1); }), "Atom::set_symmtag Cannot modify this atom");
    EXPECT_EQ(error_text<std::runtime_error>([&] { atom.set_element(Element("N")); }),
              "Atom::set_element Cannot modify this atom");
    EXPECT_EQ(error_text<std::runtime_error>([&] { atom.set_site(HSite()); }), "Atom::set_site Cannot modify this atom");
}

TEST(Atom3d, ArchiveLayoutFieldByField) {
    Atom3d atom(Element("Cl"), "Cl1", HSite());
    atom.set_formal_charge(-1);
    atom.set_radius(0.5);
    atom.set_symmtag(7);
    Archive ar = Archive::temporary();
    atom.write(ar);
    std::vector<unsigned char> expected;
    expected.push_back(static_cast<unsigned char>(Element("Cl").code()));
    expected.insert(expected.end(), {0xFF, 0xFF});                                 // short -1
    expected.insert(expected.end(), {0, 0, 0, 0, 0, 0, 0xE0, 0x3F});               // 0.5
    expected.insert(expected.end(), {3, 0, 0, 0, 'C', 'l', '1'});                  // label
    expected.insert(expected.end(), 8, 0);                                         // two reserved ints
    expected.insert(expected.end(), 24, 0);                                        // reserved vector
    std::vector<unsigned char> tag = le32(7);
    expected.insert(expected.end(), tag.begin(), tag.end());
    expected.push_back(0);  // no site
    EXPECT_EQ(bytes_of(ar), expected);

    Atom3d back;
    back.read(ar);
    EXPECT_TRUE(back == atom);

    // Every truncation throws and leaves the atom as it was.
    for (std::size_t n = 0; n < expected.size(); ++n) {
        Archive cut = Archive::temporary();
        cut.write_bytes(expected.data(), n);
        cut.rewind();
        Atom3d target(Element("N"), "N9", HSite());
        EXPECT_THROW(target.read(cut), std::runtime_error) << n;
        EXPECT_EQ(target.label(), "N9");
    }
}

TEST(Atom3d, VersionOneArchivesTrimTheLabelAndKeepTheSite) {
    char name[] = "/tmp/molcryst_atom_XXXXXX";
    int fd = mkstemp(name);
    ASSERT_GE(fd, 0);
    close(fd);
    {
        VersionedArchive out(name, Archive::create_mode);
        Element("O").write(out);
        out << static_cast<unsigned short>(99) << static_cast<short>(-2) << 1.25 << std::string(" O1 ") << 0 << 0;
        out << 0.0 << 0.0 << 0.0 << 3 << true;
    }
    VersionedArchive in(name, Archive::read_mode);
    in.set_version(1);
    Atom3d atom(Element("C"), "C1", HSite());
    atom.read(in);
    std::remove(name);
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
    ProteinAtom copy(ca);
    EXPECT_EQ(copy.residue(), "GLY");
    EXPECT_EQ(copy.residue_code(), 8);
    ProteinAtom from_atom(static_cast<const Atom&>(ca));
    EXPECT_EQ(from_atom.residue(), "GLY");
    ProteinAtom from_plain(static_cast<const Atom&>(Atom3d(Element("C"), "C1", HSite())));
    EXPECT_EQ(from_plain.residue(), "");
    EXPECT_NE(dynamic_cast<ProteinAtom*>(ca.clone().unhand()), nullptr);
}

TEST(Atom3d, SitesAreCopiedDeeplyButSharedBySetSite) {
    HSite site(new Site(Point(1, 2, 3)));
    Atom3d a1(Element("C"), "C1", site);
    Atom3d a2(a1);
    HAtom a3 = a1.clone();
    Atom3d a4(static_cast<const Atom&>(a1));
    EXPECT_TRUE(a2 == a1);
    site->set_coordinates(Point(4, 5, 6));
    EXPECT_EQ(a1.site()->orth(), Point(4, 5, 6));  // the constructor shares the site
    for (const Atom* copy : {static_cast<const Atom*>(&a2), static_cast<const Atom*>(a3.unhand()), static_cast<const Atom*>(&a4)})
        EXPECT_EQ(copy->site()->orth(), Point(1, 2, 3));
    EXPECT_FALSE(a2 == a1);  // sites now differ

    Atom3d b1(Element("O"), "O1", HSite()), b2(Element("O"), "O2", HSite());
    HSite shared(new Site(Point(0, 0, 0)));
    b1.set_site(shared);
    b2.set_site(shared);
    shared->set_coordinates(Point(1, 1, 1));
    EXPECT_EQ(b1.site()->orth(), b2.site()->orth());
    EXPECT_FALSE(b1 == Atom3d(Element("O"), "O1", HSite()));  // one has a site, the other not

    std::ostringstream out;
    Atom3d(Element("N"), "N1", HSite()).print(out);
    EXPECT_EQ(out.str(), "element: N, formal_charge: 0, radius: 0.68, label: N1, symmtag: -1, site: none");
}

TEST(Atom3d, ArchiveRoundTripWithSite) {
    Atom3d atom(Element("S"), "S1", HSite(new Site(Point(0.5, -1.5, 2.25))));
    Archive ar = Archive::temporary();
    atom.write(ar);
    ar.rewind();
    Atom3d back;
    back.read(ar);
    EXPECT_TRUE(back == atom);
    EXPECT_NE(back.site().unhand(), atom.site().unhand());
}

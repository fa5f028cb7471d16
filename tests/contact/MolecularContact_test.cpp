// Contacts between molecules: when two contacts are one, when they join the
// same groups, when they are images of each other, and their print form and
// archive.
#include "molcryst/contact/MolecularContact.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "ContactRecord.h"
#include "common/ArchiveBytes.h"
#include "common/ErrorText.h"
#include "common/Text.h"
#include "molcryst/geometry/Cell.h"
#include "molecule/TestMolecules.h"

using namespace molcryst;
using namespace molcryst::testing;

namespace {

typedef std::vector<int> V;

// Atoms as molecule() reads them, their coordinates fractional in `cell`.
HMolecule molecule_in(const Cell& cell, const std::string& atoms) {
    HMolecule m = molecule(atoms);
    for (int i = 0; i < m->natoms(); ++i)
        m->atom(i)->set_site(HSite(new Site(Site::frac(m->atom(i)->site()->frac(), cell))));
    return m;
}

HMolecule copy_of(const HMolecule& m) { return HMolecule(new Molecule3d(*m)); }

std::string address(const HMolecule& m) { return printed(static_cast<const void*>(m.unhand())); }

struct Molecules {
    HMolecule m1 = molecule("C C1 0 0 0; C C2 1.5 0 0");
    HMolecule m1_copy = copy_of(m1);  // equal to m1, another object
    HMolecule m2 = molecule("O O1 1.23456 -2 3.5; O O2 0 4 0");
    HMolecule m3 = molecule("N N1 9 9 9; N N2 8 8 8");
};

}  // namespace

TEST(MolecularContact, TypeStrengthSwitchingAndIntermolecular) {
    Molecules m;
    // A lone number after the ends is the type, never a strength.
    EXPECT_FALSE(MolecularContact(m.m1, 0, m.m2, 1, 3).has_strength());
    EXPECT_EQ(MolecularContact(m.m1, 0, m.m2, 1, -1.5, 2).strength(), -1.5);
    MolecularContact c(m.m1, -1, V{1, 0}, m.m2, 0, V{0}, 2.0, 3);
    const MolecularContact original(c);
    c.switch_groups();
    EXPECT_EQ(c.molecule_from(), m.m2);
    EXPECT_EQ(c.molecule_to(), m.m1);
    EXPECT_EQ(c.type(), 3);
    EXPECT_EQ(record(BasicContact(c)), record(BasicContact(0, V{0}, -1, V{1, 0}, 2.0)));
    c.switch_groups();
    EXPECT_EQ(record(c), record(original));

    // One molecule is the same object, or two equal molecules.
    EXPECT_TRUE(c.intermolecular());
    EXPECT_FALSE(MolecularContact(m.m1, 0, m.m1, 1, 0).intermolecular());
    EXPECT_FALSE(MolecularContact(m.m1, 0, m.m1_copy, 1, 0).intermolecular());
}

TEST(MolecularContact, EqualityRules) {
    Molecules m;
    // Intermolecular: in place, and with the ends exchanged, between equal
    // molecules whether or not they are the same objects.
    const MolecularContact a(m.m1, 0, m.m2, 1, 0);
    EXPECT_TRUE(a == MolecularContact(m.m1, 0, m.m2, 1, 3.0, 2));
    EXPECT_TRUE(a == MolecularContact(m.m2, 1, m.m1, 0, 0));
    EXPECT_TRUE(a == MolecularContact(m.m2, 1, m.m1_copy, 0, 0));
    EXPECT_FALSE(a == MolecularContact(m.m3, 0, m.m2, 1, 0));
    EXPECT_FALSE(a == MolecularContact(m.m1, 1, m.m2, 0, 0));  // atoms swapped but not molecules

    // Intramolecular contacts are never equal, not even to themselves,
    // though their records are.
    const MolecularContact intra(m.m1, 0, m.m1, 1, 0);
    EXPECT_FALSE(intra == intra);
    EXPECT_TRUE(static_cast<const BasicContact&>(intra) == static_cast<const BasicContact&>(intra));
    EXPECT_FALSE(intra == MolecularContact(m.m1_copy, 0, m.m1_copy, 1, 0));

    // One inter- and one intramolecular: only the from molecules count,
    // whatever the to molecules are.
    EXPECT_TRUE(a == intra);
    EXPECT_TRUE(intra == a);
    EXPECT_TRUE(MolecularContact(m.m1, 0, m.m3, 1, 0) == intra);
    EXPECT_FALSE(MolecularContact(m.m3, 0, m.m1, 1, 0) == MolecularContact(m.m1, 0, m.m1, 1, 0));
    // ... and the records must still agree.
    EXPECT_FALSE(a == MolecularContact(m.m1, 0, m.m1, 0, 0));

    // Groups: in place and crosswise with the molecules.
    const MolecularContact g(m.m1, -1, V{0, 1}, m.m2, -1, V{1}, 0);
    EXPECT_TRUE(g == MolecularContact(m.m1, -1, V{1, 0}, m.m2, -1, V{1}, 0));
    EXPECT_TRUE(g == MolecularContact(m.m2, -1, V{1}, m.m1, -1, V{1, 0}, 0));
    // The records match crosswise, but the molecules only in place: the
    // groups have to follow their molecules.
    EXPECT_FALSE(g == MolecularContact(m.m1, -1, V{1}, m.m2, -1, V{0, 1}, 0));
    const MolecularContact ag(m.m1, 0, V{0}, m.m2, -1, V{0, 1}, 0);
    EXPECT_TRUE(ag == MolecularContact(m.m2, -1, V{1, 0}, m.m1, 0, V{0}, 0));
    EXPECT_FALSE(ag == MolecularContact(m.m2, -1, V{1}, m.m1, 0, V{0}, 0));
}

TEST(MolecularContact, DefaultContactsMustBeFilledBeforeComparing) {
    const MolecularContact a, b;
    EXPECT_EQ(error_text<std::logic_error>([&] { (void)(a == b); }),
              "HandleCommon::null_handle_error attempt to dereference a null handle");
    EXPECT_THROW(a.intermolecular(), std::logic_error);

    Molecules m;
    MolecularContact filled;
    filled.set_molecule_from(m.m1);
    filled.set_molecule_to(m.m2);
    EXPECT_TRUE(filled == MolecularContact(m.m2, 0, m.m1_copy, 0, 0));
}

TEST(MolecularContact, ContactsBetweenSameGroups) {
    Molecules m;
    const MolecularContact a(m.m1, 0, V{0, 1}, m.m2, 1, V{1, 0}, 0);
    // Anchors play no part, only membership and molecules.
    EXPECT_TRUE(contacts_between_same_groups(a, MolecularContact(m.m1, 1, V{1, 0}, m.m2, 0, V{0, 1}, 0)));
    EXPECT_TRUE(contacts_between_same_groups(a, MolecularContact(m.m1_copy, -1, V{0, 1}, m.m2, -1, V{0, 1}, 0)));
    EXPECT_FALSE(contacts_between_same_groups(a, MolecularContact(m.m1, 0, V{0}, m.m2, 1, V{0, 1}, 0)));
    // Ends exchanged with the molecules.
    EXPECT_TRUE(contacts_between_same_groups(a, MolecularContact(m.m2, 1, V{1, 0}, m.m1, 0, V{0, 1}, 0)));
    EXPECT_FALSE(contacts_between_same_groups(a, MolecularContact(m.m2, 1, V{1}, m.m1, 0, V{0, 1}, 0)));
    // Different molecules.
    EXPECT_FALSE(contacts_between_same_groups(a, MolecularContact(m.m3, 0, V{0, 1}, m.m2, 1, V{1, 0}, 0)));

    // Between two molecules, molecules in place with groups crosswise is no match...
    const MolecularContact b(m.m1, 0, V{0}, m.m2, 1, V{1}, 0);
    const MolecularContact b_cross(m.m1, 1, V{1}, m.m2, 0, V{0}, 0);
    EXPECT_FALSE(contacts_between_same_groups(b, b_cross));
    // ... but inside one molecule either direction will do.
    const MolecularContact intra(m.m1, 0, V{0}, m.m1, 1, V{1}, 0);
    EXPECT_TRUE(contacts_between_same_groups(intra, MolecularContact(m.m1_copy, 1, V{1}, m.m1, 0, V{0}, 0)));
    EXPECT_TRUE(contacts_between_same_groups(intra, intra));
    EXPECT_FALSE(contacts_between_same_groups(intra, MolecularContact(m.m1, 1, V{1}, m.m1, 1, V{1}, 0)));
}

TEST(MolecularContact, SymmetryRelatedAndEquivalentContacts) {
    const Spacegroup p21_c("P21/c", 14, Spacegroup::Monoclinic,
                           std::vector<std::string>{"x,y,z", "-x,y+1/2,-z+1/2", "-x,-y,-z", "x,-y+1/2,z+1/2"});
    const Cell cell(10.0, 12.0, 8.0, Angle::from_degrees(90), Angle::from_degrees(100), Angle::from_degrees(90), p21_c);
    // A donor molecule and an acceptor, and their images: the donor under
    // the 2-fold screw axis (-x, y+1/2, -z+1/2) plus a cell along a, the
    // acceptor under the inversion plus a cell along each axis.
    const HMolecule donor = molecule_in(cell, "O O1 0.10 0.20 0.30; H H1 0.15 0.25 0.35");
    const HMolecule acceptor = molecule_in(cell, "N N1 0.40 0.10 0.20");
    const HMolecule donor_screw = molecule_in(cell, "O O1 0.90 0.70 0.20; H H1 0.85 0.75 0.15");
    const HMolecule acceptor_inverted = molecule_in(cell, "N N1 0.60 0.90 0.80");
    const HMolecule acceptor_off = molecule_in(cell, "N N1 0.60001 0.90 0.80");

    const MolecularContact a(donor, 1, acceptor, 0, 3);
    EXPECT_TRUE(is_symmetry_related(cell, a, a, 1e-07));
    // Each pair by its own operator: no one operator maps the whole contact.
    const MolecularContact b(donor_screw, 1, acceptor_inverted, 0, 3);
    EXPECT_TRUE(is_symmetry_related(cell, a, b, 1e-07));
    MolecularContact b_switched(b);
    b_switched.switch_groups();
    EXPECT_TRUE(is_symmetry_related(cell, a, b_switched, 1e-07));
    EXPECT_TRUE(is_symmetry_related(cell, b_switched, a, 1e-07));
    // The anchor atoms are what count: O1 is no image of H1.
    EXPECT_FALSE(is_symmetry_related(cell, a, MolecularContact(donor_screw, 0, acceptor_inverted, 0, 3), 1e-07));
    // The tolerance is passed on.
    const MolecularContact off(donor_screw, 1, acceptor_off, 0, 3);
    EXPECT_FALSE(is_symmetry_related(cell, a, off, 1e-07));
    EXPECT_TRUE(is_symmetry_related(cell, a, off, 1e-04));
    // In P1 the images are not related.
    const Cell p1(10.0, 12.0, 8.0, Angle::from_degrees(90), Angle::from_degrees(100), Angle::from_degrees(90));
    EXPECT_FALSE(is_symmetry_related(p1, a, b, 1e-07));

    // The same places in space, from other molecules and in either direction.
    const MolecularContact copy(copy_of(donor), 1, copy_of(acceptor), 0, 0);
    EXPECT_TRUE(equivalent_contacts(a, copy, 1e-04));
    MolecularContact copy_switched(copy);
    copy_switched.switch_groups();
    EXPECT_TRUE(equivalent_contacts(a, copy_switched, 1e-04));
    EXPECT_FALSE(equivalent_contacts(a, b, 1e-04));
    // 2e-05 of a 10 Angstrom axis is 2e-04 Angstrom.
    const MolecularContact moved(donor, 1, molecule_in(cell, "N N1 0.40002 0.10 0.20"), 0, 0);
    EXPECT_FALSE(equivalent_contacts(a, moved, 1e-04));
    EXPECT_TRUE(equivalent_contacts(a, moved, 1e-03));
}

TEST(MolecularContact, PrintForms) {
    Molecules m;
    const std::string m1 = address(m.m1), m2 = address(m.m2);
    EXPECT_EQ(printed(MolecularContact(m.m1, 1, m.m2, 0, 2.75, 3)),
              "Intermolecular contact between Molecule " + m1 +
                  "  atom C2 - (1.500000, 0.000000, 0.000000) and  Molecule " + m2 +
                  "  atom O1 - (1.234560, -2.000000, 3.500000)  Strength: 2.75\n");
    // The from group opens with a bracket, the to group without; neither closes.
    EXPECT_EQ(printed(MolecularContact(m.m1, -1, V{1, 0}, m.m2, -1, V{0}, 0)),
              "Intermolecular contact between Molecule " + m1 +
                  " group [C2 - (1.500000, 0.000000, 0.000000), C1 - (0.000000, 0.000000, 0.000000),  and  "
                  "Molecule " +
                  m2 + " group O1 - (1.234560, -2.000000, 3.500000), \n");
    // Coordinates follow the stream's precision; the strength its whole format.
    std::ostringstream os;
    os.precision(3);
    os << MolecularContact(m.m1, 0, m.m1, 1, 0.123456, 0) << 0.5;
    EXPECT_EQ(os.str(), "Intramolecular contact between Molecule " + m1 +
                            "  atom C1 - (0.000, 0.000, 0.000) and  Molecule " + m1 +
                            "  atom C2 - (1.500, 0.000, 0.000)  Strength: 0.123\n0.5");
}

TEST(MolecularContact, ArchiveRoundTripAndBadInput) {
    Molecules m;
    Archive ar = Archive::temporary();
    ar << HMolecularContact(new MolecularContact(m.m1, -1, V{1, 0}, m.m2, 1, V{1}, -1));
    const std::vector<unsigned char> good = bytes_of(ar);
    std::vector<unsigned char> expected = written(BasicContact(-1, V{1, 0}, 1, V{1}));
    for (unsigned char c : words({-1})) expected.push_back(c);
    EXPECT_EQ(good, expected);  // the record and the type; no molecules

    HMolecularContact back;
    ar >> back;
    EXPECT_EQ(back->type(), -1);
    EXPECT_EQ(record(BasicContact(*back)), record(BasicContact(-1, V{1, 0}, 1, V{1})));
    EXPECT_EQ(back->molecule_from().unhand(), nullptr);
    back->set_molecule_from(m.m1_copy);
    back->set_molecule_to(m.m2);
    EXPECT_TRUE(*back == MolecularContact(m.m1, -1, V{0, 1}, m.m2, 1, V{1}, 0));

    // A record cut anywhere, the type included, leaves the contact whole.
    const MolecularContact before(m.m3, 0, V{0}, m.m2, 1, V{1}, 4.0, 2);
    for (std::size_t n = 0; n < good.size(); ++n) {
        MolecularContact c(before);
        Archive part = archive_of(cut(good, n));
        EXPECT_THROW(c.read(part), std::runtime_error) << n;
        EXPECT_EQ(record(c), record(before));
        EXPECT_EQ(c.type(), 2);
    }
}

// Crystal: merging molecules and contacts (first match, tolerance, log
// lines), copies, searches, lookups, archive layout and print form.
#include "molcryst/crystal/Crystal.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "common/ArchiveBytes.h"
#include "common/ErrorText.h"
#include "common/Text.h"
#include "molcryst/contact/VdWCriterion.h"
#include "molcryst/geometry/Spacegroup.h"
#include "molcryst/support/StringFunctions.h"
#include "molecule/TestMolecules.h"

using namespace molcryst;
using namespace molcryst::testing;

namespace {

// A cell of 10 x 12 x 8 A, P-1.
Cell cell() {
    return Cell(10, 12, 8, Angle::from_degrees(90), Angle::from_degrees(100), Angle::from_degrees(90),
                Spacegroup("P-1", 2, Spacegroup::Triclinic, std::vector<std::string>{"x,y,z", "-x,-y,-z"}));
}

// Atoms "Element Label u v w" at fractional coordinates of `c`.
HMolecule at_frac(const Cell& c, const std::string& atoms, const std::string& bonds = "") {
    HMolecule m = molecule(atoms, bonds);
    for (int i = 0; i < m->natoms(); ++i)
        m->atom(i)->set_site(HSite(new Site(Site::frac(m->atom(i)->site()->orth(), c))));
    return m;
}

HMolecule copy_of(const HMolecule& m) { return HMolecule(new Molecule3d(*m)); }

// A copy whose first atom is moved by `du` along a.
HMolecule shifted(const Cell& c, const HMolecule& m, double du) {
    HMolecule copy = copy_of(m);
    Point p = copy->atom(0)->site()->frac();
    p[0] += du;
    copy->atom(0)->site()->set_frac(p, c);
    return copy;
}

HMolecule methanol(const Cell& c) {
    return at_frac(c, "C C1 0.20 0.25 0.30; O O1 0.30 0.30 0.32; H H1 0.33 0.36 0.35", "C1-O1 O1-H1");
}

Hvector_HMolecule list_of(std::vector<HMolecule> molecules) { return Hvector_HMolecule(new vector_HMolecule(molecules)); }

}  // namespace

TEST(Crystal, MergeKeepsTheFirstMatchWithinTheStrictTolerance) {
    const Cell c = cell();
    Crystal crystal(c, list_of({}));
    HMolecule m = methanol(c);
    EXPECT_EQ(log_of(3, [&] { EXPECT_EQ(crystal.merge(m), 0); }),
              "Crystal::merge(HMolecule) entered - nmolecules = 0\n"
              "Crystal::merge(HMolecule) done    - nmolecules = 1\n");
    EXPECT_EQ(log_of(3, [&] { EXPECT_EQ(crystal.merge(m), 0); }),
              "Crystal::merge(HMolecule) entered - nmolecules = 1\n"
              "Crystal::merge(HMolecule) done - no change made\n");
    // Just under 1e-05 in one fractional component merges, just over does not.
    EXPECT_EQ(crystal.merge(shifted(c, m, 0.99e-5)), 0);
    EXPECT_EQ(crystal.merge(shifted(c, m, 1.01e-5)), 1);
    // Any difference of label, element, order or bonds is another molecule.
    HMolecule relabelled = copy_of(m);
    relabelled->atom(2)->set_label("H2");
    EXPECT_EQ(crystal.merge(relabelled), 2);
    EXPECT_EQ(crystal.merge(at_frac(c, "O O1 0.30 0.30 0.32; C C1 0.20 0.25 0.30; H H1 0.33 0.36 0.35",
                                    "C1-O1 O1-H1")),
              3);
    HMolecule double_bond = copy_of(m);
    double_bond->bond(0)->set_type(DOUBLE_BOND);
    EXPECT_EQ(crystal.merge(double_bond), 4);
    EXPECT_EQ(crystal.nmolecules(), 5);

    // The inversion image, twice by two routes: once stored.
    const CrystalSymmetryTransformation inversion(CrystalSymmetryOperator("-x,-y,-z"), Vector<int, 3>(1, 1, 1));
    EXPECT_EQ(crystal.merge(m, inversion), 5);
    EXPECT_EQ(crystal.merge(at_frac(c, "C C1 0.80 0.75 0.70; O O1 0.70 0.70 0.68; H H1 0.67 0.64 0.65",
                                    "C1-O1 O1-H1")),
              5);

    // With equal molecules stored twice (adopted as given), the first wins,
    // also after removals renumber the list.
    Crystal twice(c, list_of({copy_of(m), methanol(c), copy_of(m)}));
    EXPECT_EQ(twice.merge(methanol(c)), 0);
    twice.remove(0);
    EXPECT_EQ(twice.merge(methanol(c)), 0);
    EXPECT_EQ(twice.remove(m), 0);
    EXPECT_EQ(twice.merge(methanol(c)), 0);
    EXPECT_EQ(twice.remove(relabelled), -1);
    EXPECT_EQ(twice.nmolecules(), 1);
    // Molecules appended to the adopted list from outside are seen too.
    crystal.molecules()->push_back(relabelled);
    EXPECT_EQ(crystal.merge(copy_of(relabelled)), 2);
    HMolecule late = shifted(c, m, 0.25);
    crystal.molecules()->push_back(late);
    EXPECT_EQ(crystal.merge(copy_of(late)), 7);

    // Merging crystals: one index per molecule, contacts not taken.
    HCrystal other(new Crystal(c, list_of({m, shifted(c, m, 0.5)})));
    other->merge(HMolecularContact(new MolecularContact(other->molecule(0), 0, other->molecule(1), 0, 0)));
    EXPECT_EQ(crystal.merge(other), (std::vector<int>{0, 8}));
    EXPECT_EQ(crystal.merge(other, inversion), (std::vector<int>{5, 9}));
    EXPECT_EQ(crystal.ncontacts(), 0);
}

TEST(Crystal, SitelessAtomsAreRefused) {
    const Cell c = cell();
    HMolecule siteless = molecule("C C1 0 0 0; O O1");
    EXPECT_EQ(error_text<std::runtime_error>([&] { Crystal(c, list_of({methanol(c), siteless})); }),
              "Trying to add siteless atom to Crystal");
    Crystal crystal(c, list_of({methanol(c)}));
    EXPECT_EQ(error_text<std::runtime_error>([&] { crystal.merge(siteless); }),
              "Trying to add siteless atom to Crystal");
    EXPECT_EQ(error_text<std::runtime_error>([&] { crystal.merge(siteless, CrystalSymmetryTransformation()); }),
              "Trying to add siteless atom to Crystal");
    EXPECT_EQ(crystal.nmolecules(), 1);
    EXPECT_THROW(crystal.merge(HMolecule()), std::logic_error);
    EXPECT_THROW(crystal.molecule(1), std::out_of_range);
    EXPECT_THROW(crystal.remove(-1), std::out_of_range);
}

TEST(Crystal, ContactMergeCopiesAndLookups) {
    const Cell c = cell();
    HMolecule a = methanol(c), b = shifted(c, a, 0.3);
    Crystal crystal(c, list_of({}));
    HMolecularContact contact(new MolecularContact(a, 1, b, 2, -2.5, 2));
    EXPECT_EQ(log_of(3, [&] { EXPECT_EQ(crystal.merge(contact), 0); }),
              "Crystal::merge(HMolecularContact) entered - nmolecules 0 ncontacts = 0\n"
              "Crystal::merge(HMolecule) entered - nmolecules = 0\n"
              "Crystal::merge(HMolecule) done    - nmolecules = 1\n"
              "Crystal::merge(HMolecule) entered - nmolecules = 1\n"
              "Crystal::merge(HMolecule) done    - nmolecules = 2\n"
              "Crystal::merge(HMolecularContact) done - nmolecules 2 ncontacts = 1\n");
    // The same contact seen from the other end, between equal molecules.
    HMolecularContact reverse(new MolecularContact(copy_of(b), 2, copy_of(a), 1, 2));
    EXPECT_EQ(log_of(3, [&] { EXPECT_EQ(crystal.merge(reverse), 0); }),
              "Crystal::merge(HMolecularContact) entered - nmolecules 2 ncontacts = 1\n"
              "Crystal::merge(HMolecularContact) done - no change made\n");
    // An intramolecular contact merges its one molecule.
    EXPECT_EQ(crystal.merge(HMolecularContact(new MolecularContact(a, 0, copy_of(a), 2, 2))), 1);
    EXPECT_EQ(crystal.nmolecules(), 2);
    EXPECT_NE(crystal.contact(0), crystal.contact(0));  // a new copy each time
    EXPECT_EQ(crystal.contact(0)->strength(), -2.5);

    // A shallow copy shares molecules but not lists; a deep copy shares nothing.
    HCrystal shallow = crystal.create_shallow_copy();
    shallow->merge(shifted(c, a, 0.6));
    shallow->clear_contacts();
    EXPECT_EQ(crystal.nmolecules(), 2);
    EXPECT_EQ(crystal.ncontacts(), 2);
    EXPECT_EQ(shallow->molecule(0), crystal.molecule(0));
    Crystal deep(crystal);
    EXPECT_NE(deep.molecule(0), crystal.molecule(0));
    EXPECT_EQ(*deep.molecule(0), *crystal.molecule(0));
    EXPECT_NE((*deep.contacts())[0]->molecule_to(), b);
    EXPECT_EQ(printed(*(*deep.contacts())[0]->molecule_to()), printed(*b));
    deep = *shallow;
    EXPECT_EQ(deep.nmolecules(), 3);
    EXPECT_EQ(deep.merge(shifted(c, a, 0.6)), 2);  // the merge lookup follows the assignment
    EXPECT_EQ(deep.remove(HMolecularContact(new MolecularContact(a, 1, b, 2, 0))), -1);
    EXPECT_EQ(crystal.remove(HMolecularContact(new MolecularContact(b, 2, a, 1, 0))), 0);
    EXPECT_EQ(crystal.ncontacts(), 1);

    // Lookups by symmetry tag and place; centroid of all sites.
    crystal.molecule(1)->atom(1)->set_symmtag(7);
    EXPECT_EQ(crystal.find_molecule(1, 7), crystal.molecule(1));
    EXPECT_EQ(crystal.find_molecule(3, -1).unhand(), nullptr);
    EXPECT_EQ(crystal.find_molecule(-1, -1).unhand(), nullptr);
    HMolecule where;
    int index = 5;
    EXPECT_TRUE(crystal.find_atom(7, crystal.molecule(1)->atom(1)->site()->orth(), where, index));
    EXPECT_EQ(where, crystal.molecule(1));
    EXPECT_EQ(index, 1);
    EXPECT_FALSE(crystal.find_atom(8, Point(), where, index));
    EXPECT_EQ(index, -1);
    EXPECT_EQ(printed(Crystal().centroid()), printed(Point()));
    const Point mean = (a->centroid() + b->centroid()) * 0.5;
    EXPECT_TRUE(equals(crystal.centroid(), mean, 1e-12));
    EXPECT_EQ(crystal.natoms(), 6);
    EXPECT_EQ(crystal.nbonds(), 4);
}

TEST(Crystal, SearchesBetweenInversionRelatedMolecules) {
    const Cell c = cell();
    HMolecule m = methanol(c);
    const CrystalSymmetryTransformation inversion(CrystalSymmetryOperator("-x,-y,-z"), Vector<int, 3>(1, 1, 1));
    Crystal crystal(c, list_of({m, m->create_molecule(inversion, c)}));
    // The two hydroxyl hydrogens face each other across the centre at (0.5, 0.5, 0.5).
    crystal.molecule(0)->atom(2)->site()->set_frac(Point(0.47, 0.47, 0.47), c);
    crystal.molecule(1)->atom(2)->site()->set_frac(Point(0.53, 0.53, 0.53), c);
    const VdWCriterion criterion(0.5, -2.0, INTERMOLECULAR, 0, 0, false);
    const std::string h_h = to_string(-(crystal.molecule(0)->atom(2)->site()->orth() -
                                        crystal.molecule(1)->atom(2)->site()->orth())
                                           .length() +
                                      2.4);
    Hvector_HMolecularContact found = crystal.nonbonded_search(0, criterion);
    ASSERT_EQ(found->size(), 1u);
    EXPECT_EQ((*found)[0]->atom_from(), 2);
    EXPECT_EQ((*found)[0]->atom_to(), 2);
    EXPECT_EQ(to_string((*found)[0]->strength()), h_h);
    EXPECT_EQ(crystal.nonbonded_search(1, criterion)->size(), 1u);
    // The pair form asks both groups first.
    const VdWCriterion from_carbon(0.5, -2.0, INTERMOLECULAR, 0, 0, false, Hset_int(new std::set<int>{6}));
    EXPECT_EQ(crystal.nonbonded_search(0, std::vector<int>{1, 2}, 1, std::vector<int>{2}, from_carbon)->size(), 0u);
    EXPECT_EQ(crystal.nonbonded_search(0, std::vector<int>{2}, 1, std::vector<int>{2}, criterion)->size(), 1u);
}

TEST(Crystal, ArchiveLayoutRoundTripAndPrintForm) {
    const Cell c = cell();
    HMolecule a = methanol(c), b = shifted(c, a, 0.3), outsider = shifted(c, a, 0.6);
    Crystal crystal(c, list_of({a, b}));
    HMolecularContact ab(new MolecularContact(a, 1, b, 2, -2.5, 2));
    HMolecularContact foreign(new MolecularContact(outsider, 0, b, 1, 1));
    crystal.contacts()->push_back(ab);
    crystal.contacts()->push_back(foreign);
    const std::vector<unsigned char> bytes = written(crystal);
    EXPECT_EQ(bytes, written(c) + words({2}) + written(*a) + written(*b) + words({2}) + written(*ab) +
                         words({0, 1}) + written(*foreign) + words({0, 1}));

    Crystal back;
    Archive ar = archive_of(bytes);
    back.read(ar);
    EXPECT_EQ(back.nmolecules(), 2);
    EXPECT_EQ(*back.molecule(1), *b);
    EXPECT_EQ((*back.contacts())[0]->molecule_to(), back.molecule(1));
    EXPECT_EQ((*back.contacts())[1]->molecule_from(), back.molecule(0));  // the outsider became molecule 0
    EXPECT_EQ(written(back), bytes);

    EXPECT_EQ(printed(crystal), "cell: " + printed(c) + "\ncrystal molecule: 0\n" + printed(*a) +
                                    "crystal molecule: 1\n" + printed(*b) + "contact: 0\n" + printed(*ab) +
                                    "contact: 1\n" + printed(*foreign));

    // Truncations, a contact end past the molecules and a siteless atom fail
    // cleanly and leave the crystal as it was.
    const std::string before = printed(back);
    for (std::size_t n = 0; n < bytes.size(); n += 7) {
        Archive cut_ar = archive_of(cut(bytes, n));
        EXPECT_THROW(back.read(cut_ar), std::runtime_error) << n;
    }
    std::vector<unsigned char> bad = bytes;
    bad[bad.size() - 4] = 2;
    Archive bad_ar = archive_of(bad);
    EXPECT_EQ(error_text<std::runtime_error>([&] { back.read(bad_ar); }),
              "Crystal::read contact molecules: contact 1 joins molecules 0 and 2 of 2");
    HMolecule siteless = molecule("C C1");
    Archive siteless_ar = archive_of(written(c) + words({1}) + written(*siteless) + words({0}));
    EXPECT_EQ(error_text<std::runtime_error>([&] { back.read(siteless_ar); }),
              "Crystal::read molecules: atom 0 of molecule 0 has no site");
    EXPECT_EQ(printed(back), before);
}

TEST(Crystal, LifetimeLogLines) {
    const std::string log = log_of(3, [] { Crystal x; });
    EXPECT_EQ(log.substr(0, 28), "Entered Crystal::Crystal() -");
    EXPECT_NE(log.find("Entered Crystal::~Crystal() - "), std::string::npos);
    Crystal original(cell(), list_of({}));
    EXPECT_NE(log_of(3, [&] { Crystal copy(original); }).find("Entered Crystal::Crystal(const Crystal& x) - "),
              std::string::npos);
    Archive ar = Archive::temporary();
    original.write(ar);
    ar.rewind();
    EXPECT_NE(log_of(3, [&] { Crystal read(ar); }).find("Entered Crystal::Crystal(Archive& ar) - "),
              std::string::npos);
}

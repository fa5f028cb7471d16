// The concrete molecule: copies, archives in both layouts, splits, and the creator.
#include "molcryst/molecule/Molecule3d.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "TestMolecules.h"
#include "common/ArchiveBytes.h"
#include "common/ErrorText.h"
#include "common/Text.h"
#include "molcryst/molecule/Molecule3dCreator.h"
#include "molcryst/molecule/ProteinAtom.h"
#include "molcryst/support/VersionedArchive.h"

using namespace molcryst;
using namespace molcryst::testing;

namespace {

// A bond class of its own, to show that copies and archives keep types, not classes.
class MarkedBond : public Bond3d {
public:
    explicit MarkedBond(BondType t) : Bond3d(t) {}
    HBond clone() const override { return HBond(new MarkedBond(*this)); }
};

// Formaldehyde (bond 1, H1 to C1, a MarkedBond) and a separate ammonium ion.
Molecule3d two_components() {
    HMolecule3d m = molecule(
        "C C1 0 0 0; O O1 1.21 0 0; N N1 5 5 5; H H1 -0.55 0.94 0; H H2 5.5 5.8 5; H H3 -0.55 -0.94 0", "C1=O1");
    m->add(HBond(new MarkedBond(SINGLE_BOND)), 3, 0);
    add_bonds(*m, "N1-H2 C1-H3");
    m->atom(2)->set_formal_charge(1);
    m->atom(1)->set_symmtag(7);
    return *m;
}

// The end of every molecule record: the reserved name, length 8 and eight blanks.
std::vector<unsigned char> name_record() {
    std::vector<unsigned char> name = words({8});
    name.insert(name.end(), 8, ' ');
    return name;
}

}  // namespace

TEST(Molecule3d, CopiesShareNothingButTheTyper) {
    Molecule3d a = two_components();
    Molecule3d b(a);
    EXPECT_TRUE(a == b);
    EXPECT_EQ(b.atom_typer(), a.atom_typer());
    EXPECT_NE(Molecule3d().atom_typer(), a.atom_typer());
    for (int i = 0; i < a.natoms(); ++i) {
        EXPECT_NE(a.atom(i), b.atom(i));
        EXPECT_NE(a.atom(i)->site(), b.atom(i)->site());
    }
    for (int i = 0; i < a.nbonds(); ++i) EXPECT_NE(a.bond(i), b.bond(i));
    EXPECT_EQ(handle_dynamic_cast<MarkedBond>(b.bond(1)).unhand(), nullptr);  // every copy is a Bond3d

    b.atom(0)->site()->set_coordinates(Point(9, 9, 9));
    EXPECT_EQ(a.atom(0)->site()->orth(), Point(0, 0, 0));
    EXPECT_FALSE(a == b);

    Molecule3d c;
    c = a;
    EXPECT_TRUE(c == a);
    const Molecule3d& same = c;
    c = same;  // self-assignment keeps the contents
    EXPECT_EQ(c.natoms(), 6);

    HMolecule d = a.clone();
    EXPECT_TRUE(*d == a);
    EXPECT_NE(d->atom(0), a.atom(0));

    // Atoms of other classes are copied as plain ones.
    Molecule3d p;
    p.add(HAtom(new ProteinAtom(Element::N, "N", "GLY", HSite(new Site(Point(0, 0, 0))))));
    const Molecule3d copy(static_cast<const Molecule&>(p));
    EXPECT_EQ(handle_dynamic_cast<ProteinAtom>(copy.atom(0)).unhand(), nullptr);
    EXPECT_NE(handle_dynamic_cast<Atom3d>(copy.atom(0)).unhand(), nullptr);
}

TEST(Molecule3d, ArchiveRoundTripKeepsOrderLabelsChargesAndBondTypes) {
    Molecule3d a = two_components();
    std::vector<unsigned char> bytes = written(a);
    ASSERT_GE(bytes.size(), 12u);
    EXPECT_EQ(std::vector<unsigned char>(bytes.end() - 12, bytes.end()), name_record());

    Archive ar = archive_of(bytes);
    Molecule3d b(ar);
    EXPECT_EQ(ar.bytes_left(), 0u);
    EXPECT_TRUE(a == b);  // charges, tags, labels, bond types and directions
    EXPECT_EQ(handle_dynamic_cast<MarkedBond>(b.bond(1)).unhand(), nullptr);

    // An empty molecule survives too, and reading replaces what was there.
    Archive empty = archive_of(written(Molecule3d()));
    b.read(empty);
    EXPECT_EQ(b.natoms(), 0);
}

TEST(Molecule3d, TruncatedOrCorruptArchivesThrowAndLeaveTheMoleculeAlone) {
    const Molecule3d a = two_components();
    const std::vector<unsigned char> bytes = written(a);
    for (std::size_t n = 0; n < bytes.size(); ++n) {
        Archive ar = archive_of(cut(bytes, n));
        Molecule3d target = two_components();
        EXPECT_THROW(target.read(ar), std::runtime_error) << n;
        EXPECT_TRUE(target == a) << n;
    }

    // Two carbons and the given bond records: atom1 in the top 14 bits,
    // atom2 in the next 14, the type in the low 4.
    auto with_bonds = [](std::vector<int> packed) {
        std::vector<unsigned char> b = written(*molecule("C C1 0 0 0; C C2 1.5 0 0"));
        b.resize(b.size() - 16);  // drop the bond count 0 and the name
        packed.insert(packed.begin(), static_cast<int>(packed.size()));
        for (unsigned char c : words(packed)) b.push_back(c);
        for (unsigned char c : name_record()) b.push_back(c);
        return b;
    };
    auto pack = [](int a1, int a2, int t) { return (a1 << 18) + (a2 << 4) + t; };
    Archive good = archive_of(with_bonds({pack(0, 1, 2)}));
    EXPECT_EQ(Molecule3d(good).bond(0)->type(), DOUBLE_BOND);
    // An atom out of range, a bond of an atom to itself, a bond twice.
    for (const std::vector<int>& bad : {std::vector<int>{pack(0, 2, 1)}, std::vector<int>{pack(1, 1, 1)},
                                        std::vector<int>{pack(0, 1, 1), pack(1, 0, 1)}}) {
        Archive ar = archive_of(with_bonds(bad));
        Molecule3d target = two_components();
        EXPECT_EQ(error_text<std::runtime_error>([&] { target.read(ar); }).rfind("Molecule3d::read bonds", 0), 0u);
        EXPECT_TRUE(target == a);
    }
    // A count far beyond the file is refused before anything is allocated.
    for (int count : {-1, 0x7fffffff}) {
        Archive ar = archive_of(words({count}));
        EXPECT_THROW(Molecule3d m(ar), std::runtime_error);
    }
}

TEST(Molecule3d, VersionOneArchiveKeepsTheFirstAlternativeSite) {
    std::FILE* file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    {
        VersionedArchive ar(file, false);
        ar.set_version(1);
        ar << 2;  // atoms, in the older atom layout
        const char* labels[2] = {"O1", "H1"};
        const Element elements[2] = {Element::O, Element::H};
        for (int i = 0; i < 2; ++i) {
            elements[i].write(ar);
            ar << static_cast<unsigned short>(0) << static_cast<short>(i == 0 ? -1 : 0) << 0.7 << std::string(labels[i])
               << 0 << 0 << 0.0 << 0.0 << 0.0 << (i + 3) << false;
        }
        ar << 1;  // bonds
        ar << ((0u << 18) + (1u << 4) + 1u);
        ar << 2;  // alternative sites: two for O1, none for H1
        ar << 2;
        ar << Point(1, 2, 3) << Point(0.1, 0.2, 0.3) << 1.0;
        ar << Point(7, 8, 9) << Point(0.7, 0.8, 0.9) << 0.5;
        ar << 0;
        ar << 1 << 3 << 10 << 11 << 12;  // index lists, dropped
        ar << 42 << std::string("name") << true;
        ar << 99;  // what follows the molecule
    }
    std::rewind(file);
    VersionedArchive in(file, false);
    in.set_version(1);
    Molecule3d m;
    m.add(atom_at("C", "old", 0, 0, 0));
    m.read(in);
    int after = 0;
    in >> after;
    EXPECT_EQ(after, 99);
    std::fclose(file);

    ASSERT_EQ(m.natoms(), 2);
    EXPECT_EQ(m.atom(0)->label(), "O1");
    EXPECT_EQ(m.atom(0)->formal_charge(), -1);
    EXPECT_EQ(m.atom(1)->symmtag(), 4);
    ASSERT_TRUE(m.atom(0)->has_site());
    EXPECT_EQ(m.atom(0)->site()->orth(), Point(1, 2, 3));
    EXPECT_EQ(m.atom(0)->site()->occupancy().value(), 1.0);
    EXPECT_FALSE(m.atom(1)->has_site());
    ASSERT_EQ(m.nbonds(), 1);
    EXPECT_EQ(m.bond(0)->type(), SINGLE_BOND);
    EXPECT_EQ(m.bond(0)->atom1(), m.atom(0));
}

TEST(Molecule3d, SplitCopiesWhileInplaceSplitHandsOverTheAtoms) {
    Molecule3d m = two_components();
    std::vector<HAtom> atoms;
    for (int i = 0; i < m.natoms(); ++i) atoms.push_back(m.atom(i));

    Hvector_HMolecule copies = m.split();
    ASSERT_EQ(copies->size(), 2u);
    EXPECT_EQ(m.natoms(), 6);
    EXPECT_EQ(labels_of(*(*copies)[0]), (std::vector<std::string>{"C1", "O1", "H1", "H3"}));  // in their old order
    EXPECT_EQ(labels_of(*(*copies)[1]), (std::vector<std::string>{"N1", "H2"}));
    EXPECT_NE((*copies)[0]->atom(0), atoms[0]);
    EXPECT_EQ((*copies)[0]->nbonds(), 3);

    Hvector_HMolecule parts = m.inplace_split();
    EXPECT_EQ(m.natoms(), 0);
    EXPECT_EQ(m.nbonds(), 0);
    ASSERT_EQ(parts->size(), 2u);
    EXPECT_EQ((*parts)[0]->atom(0), atoms[0]);
    EXPECT_EQ((*parts)[0]->atom(3), atoms[5]);
    EXPECT_EQ((*parts)[1]->atom(1), atoms[4]);
    EXPECT_EQ((*parts)[1]->bond(0)->atom2(), atoms[4]);
    EXPECT_EQ(atoms[4]->index(), 1);
    EXPECT_TRUE((*parts)[0]->editable());

    // One component goes the same way, and the molecule ends empty.
    Molecule3d single(*molecule("C C1 0 0 0"));
    Hvector_HMolecule one = single.inplace_split();
    ASSERT_EQ(one->size(), 1u);
    EXPECT_EQ(single.natoms(), 0);
    EXPECT_EQ((*one)[0]->atom(0)->label(), "C1");
}

TEST(Molecule3d, AssignTakesTheAtomsThemselvesOrNothing) {
    Hvector_HAtom atoms(new std::vector<HAtom>{atom_at("N", "N1", 0, 0, 0), atom_at("N", "N2", 1.1, 0, 0)});
    Hvector_HBondData bonds(new std::vector<THandle<BondData> >{THandle<BondData>(new BondData(1, 0, TRIPLE_BOND))});
    const std::string log = log_of(3, [&] {
        Molecule3d m(atoms, bonds);
        EXPECT_EQ(m.atom(1), (*atoms)[1]);
        EXPECT_EQ(m.bond(0)->atom1(), (*atoms)[1]);
        EXPECT_EQ(m.bond(0)->type(), TRIPLE_BOND);
        // The atoms belong to m now: another molecule cannot take them.
        EXPECT_THROW(Molecule3d other(atoms, bonds), std::domain_error);
    });
    EXPECT_NE(log.find("Entered Molecule3d::Molecule3d(, atoms 2, bonds 1- 0x"), std::string::npos) << log;
    EXPECT_NE(log.find("Entered Molecule::Molecule() - 0x"), std::string::npos);
    EXPECT_NE(log.find("Entered Molecule3d::~Molecule3d() - 0x"), std::string::npos);
    EXPECT_NE(log.find("Entered Molecule::~Molecule() - 0x"), std::string::npos);
    EXPECT_TRUE(is_free((*atoms)[0]));  // freed when the molecule died

    // A bond to an atom that isn't there: the molecule keeps its atoms and
    // the atoms offered stay free.
    Molecule3d m = two_components();
    const Molecule3d before(m);
    (*bonds)[0] = THandle<BondData>(new BondData(0, 5, SINGLE_BOND));
    EXPECT_ANY_THROW(m.assign(atoms, bonds));
    EXPECT_TRUE(m == before);
    EXPECT_TRUE(is_free((*atoms)[0]));
    EXPECT_TRUE(is_free((*atoms)[1]));
}

TEST(Molecule3d, OnlyAtomsAndBondsWithGraphDataCanBeStored) {
    // An atom class that answers chemistry but has no place in a graph.
    class LooseAtom : public Atom {
    public:
        HAtom clone() const override { return HAtom(new LooseAtom()); }
        Element element() const override { return Element::C; }
        int formal_charge() const override { return 0; }
        double radius() const override { return 0.7; }
        std::string label() const override { return "L"; }
        int symmtag() const override { return -1; }
        HSite site() const override { return HSite(); }
        bool has_site() const override { return false; }
        int index() const override { return 0; }
        int nbonds() const override { return 0; }
        bool cyclic() const override { return false; }
        PolymorphicConstIterator<HAtom> begin_neighbours() const override { return {}; }
        PolymorphicConstIterator<HAtom> end_neighbours() const override { return {}; }
        std::deque<HAtom> neighbours() const override { return {}; }
        PolymorphicConstIterator<HBond> begin_bonds() const override { return {}; }
        PolymorphicConstIterator<HBond> end_bonds() const override { return {}; }
        std::deque<HBond> bonds() const override { return {}; }
    };
    Molecule3d m;
    EXPECT_EQ(error_text<std::runtime_error>([&] { m.add(HAtom(new LooseAtom())); }),
              "MoleculeGraphImpl - Illegal type of atom stored");
    EXPECT_EQ(m.natoms(), 0);
    EXPECT_EQ(error_text<std::invalid_argument>([&] { m.add(HAtom()); }),
              "ChemicalGraph<AtomType, BondType>::add(HAtomType) atom is a null pointer");
}

TEST(Molecule3d, CreatorBuildsMoleculesWithoutNamingTheClass) {
    Molecule3dCreator creator;
    const ChemicalCreationInterface<Molecule>& factory = creator;
    HMolecule m = factory.create_molecule();
    EXPECT_NE(dynamic_cast<Molecule3d*>(m.unhand()), nullptr);
    EXPECT_EQ(factory.add_atom(*m, Element::C), 0);
    EXPECT_EQ(factory.add_atom(*m, Element::O), 1);
    EXPECT_EQ(m->atom(1)->label(), "");
    EXPECT_FALSE(m->atom(1)->has_site());
    EXPECT_EQ(factory.add_bond(*m, BondData(1, 0, DOUBLE_BOND)), 0);
    EXPECT_EQ(m->bond(0)->atom1(), m->atom(1));
    EXPECT_EQ(m->bond(0)->type(), DOUBLE_BOND);
    EXPECT_EQ(factory.add_molecule(*m, two_components()), (std::vector<int>{2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(m->nbonds(), 5);
}

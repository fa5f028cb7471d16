// The concrete molecule: copies, archives in both layouts, splits, and the creator.
#include "molcryst/molecule/Molecule3d.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "common/ArchiveBytes.h"
#include "common/ErrorText.h"
#include "molcryst/molecule/Atom3d.h"
#include "molcryst/molecule/Bond3d.h"
#include "molcryst/molecule/Molecule3dCreator.h"
#include "molcryst/molecule/ProteinAtom.h"
#include "molcryst/molecule/Site.h"
#include "molcryst/support/TARNLog.h"
#include "molcryst/support/VersionedArchive.h"

using namespace molcryst;
using molcryst::testing::error_text;
using molcryst::testing::archive_of;
using molcryst::testing::bytes_of;

namespace {

HAtom atom_at(const Element& e, const std::string& label, double x, double y, double z) {
    return HAtom(new Atom3d(e, label, HSite(new Site(Point(x, y, z)))));
}

// A bond class of its own, to show that archives keep types, not classes.
class MarkedBond : public Bond3d {
public:
    explicit MarkedBond(BondType t) : Bond3d(t) {}
    HBond clone() const override { return HBond(new MarkedBond(*this)); }
};

// Formaldehyde and a separate ammonium ion: two components.
Molecule3d two_components() {
    Molecule3d m;
    m.add(atom_at(Element::C, "C1", 0, 0, 0));
    m.add(atom_at(Element::O, "O1", 1.21, 0, 0));
    m.add(atom_at(Element::N, "N1", 5, 5, 5));
    m.add(atom_at(Element::H, "H1", -0.55, 0.94, 0));
    m.add(atom_at(Element::H, "H2", 5.5, 5.8, 5));
    m.add(atom_at(Element::H, "H3", -0.55, -0.94, 0));
    m.atom(2)->set_formal_charge(1);
    m.atom(1)->set_symmtag(7);
    m.add(HBond(new Bond3d(DOUBLE_BOND)), 0, 1);
    m.add(HBond(new MarkedBond(SINGLE_BOND)), 3, 0);
    m.add(HBond(new Bond3d(SINGLE_BOND)), 2, 4);
    m.add(HBond(new Bond3d(SINGLE_BOND)), 0, 5);
    return m;
}

std::vector<unsigned char> le32(int v) {
    unsigned int u = static_cast<unsigned int>(v);
    return {static_cast<unsigned char>(u), static_cast<unsigned char>(u >> 8), static_cast<unsigned char>(u >> 16),
            static_cast<unsigned char>(u >> 24)};
}

std::vector<unsigned char> archived(const Molecule& m) {
    Archive ar = Archive::temporary();
    m.write(ar);
    return bytes_of(ar);
}

}  // namespace

TEST(Molecule3d, CopiesShareNothingButTheTyper) {
    Molecule3d a = two_components();
    Molecule3d b(a);
    EXPECT_TRUE(a == b);
    EXPECT_EQ(b.atom_typer(), a.atom_typer());
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
    c = c;  // self-assignment keeps the contents
    EXPECT_EQ(c.natoms(), 6);

    HMolecule d = a.clone();
    EXPECT_TRUE(*d == a);
    EXPECT_NE(d->atom(0), a.atom(0));
}

TEST(Molecule3d, CopyingProteinAtomsGivesPlainAtoms) {
    Molecule3d p;
    p.add(HAtom(new ProteinAtom(Element::N, "N", "GLY", HSite(new Site(Point(0, 0, 0))))));
    p.add(HAtom(new ProteinAtom(Element::C, "CA", "GLY", HSite(new Site(Point(1.45, 0, 0))))));
    p.add(HBond(new Bond3d(SINGLE_BOND)), 0, 1);
    Molecule3d copy(static_cast<const Molecule&>(p));
    ASSERT_EQ(copy.natoms(), 2);
    EXPECT_EQ(handle_dynamic_cast<ProteinAtom>(copy.atom(0)).unhand(), nullptr);
    EXPECT_NE(handle_dynamic_cast<Atom3d>(copy.atom(0)).unhand(), nullptr);
    EXPECT_EQ(copy.atom(1)->label(), "CA");
    EXPECT_EQ(copy.bond_index(0, 1), 0);
}

TEST(Molecule3d, ArchiveRoundTripKeepsOrderLabelsChargesAndBondTypes) {
    Molecule3d a = two_components();
    std::vector<unsigned char> bytes = archived(a);
    // The reserved name closes the record: length 8 and eight blanks.
    ASSERT_GE(bytes.size(), 12u);
    std::vector<unsigned char> tail(bytes.end() - 12, bytes.end());
    std::vector<unsigned char> expected = le32(8);
    expected.insert(expected.end(), 8, ' ');
    EXPECT_EQ(tail, expected);

    Archive ar = archive_of(bytes);
    Molecule3d b(ar);
    EXPECT_EQ(ar.bytes_left(), 0u);
    EXPECT_TRUE(a == b);
    EXPECT_EQ(b.atom(2)->formal_charge(), 1);
    EXPECT_EQ(b.atom(1)->symmtag(), 7);
    EXPECT_EQ(b.atom(3)->label(), "H1");
    EXPECT_EQ(b.bond(0)->type(), DOUBLE_BOND);
    EXPECT_EQ(b.bond(1)->atom1()->label(), "H1");  // the bond's own direction is kept
    EXPECT_EQ(handle_dynamic_cast<MarkedBond>(b.bond(1)).unhand(), nullptr);

    // An empty molecule survives too, and reading replaces what was there.
    Molecule3d empty;
    Archive ar2 = archive_of(archived(empty));
    b.read(ar2);
    EXPECT_EQ(b.natoms(), 0);
}

TEST(Molecule3d, TruncatedOrCorruptArchivesThrowAndLeaveTheMoleculeAlone) {
    Molecule3d a = two_components();
    const std::vector<unsigned char> bytes = archived(a);
    for (std::size_t n = 0; n < bytes.size(); ++n) {
        Archive ar = archive_of(std::vector<unsigned char>(bytes.begin(), bytes.begin() + static_cast<long>(n)));
        Molecule3d target = two_components();
        EXPECT_THROW(target.read(ar), std::runtime_error) << n;
        EXPECT_TRUE(target == a) << n;
    }

    // Bond records: atom1 in the top 14 bits, atom2 in the next 14, type in the low 4.
    auto with_bonds = [](const std::vector<unsigned int>& packed) {
        Molecule3d two;
        two.add(atom_at(Element::C, "C1", 0, 0, 0));
        two.add(atom_at(Element::C, "C2", 1.5, 0, 0));
        std::vector<unsigned char> b = archived(two);
        b.resize(b.size() - 16);  // drop the bond count 0 and the name
        std::vector<unsigned char> count = le32(static_cast<int>(packed.size()));
        b.insert(b.end(), count.begin(), count.end());
        for (unsigned int p : packed) {
            std::vector<unsigned char> v = le32(static_cast<int>(p));
            b.insert(b.end(), v.begin(), v.end());
        }
        std::vector<unsigned char> name = le32(8);
        name.insert(name.end(), 8, ' ');
        b.insert(b.end(), name.begin(), name.end());
        return b;
    };
    auto pack = [](unsigned int a1, unsigned int a2, unsigned int t) { return (a1 << 18) + (a2 << 4) + t; };
    {
        Archive ar = archive_of(with_bonds({pack(0, 1, 2)}));
        Molecule3d ok(ar);
        EXPECT_EQ(ok.bond(0)->type(), DOUBLE_BOND);
    }
    const std::vector<std::vector<unsigned int> > bad = {
        {pack(0, 2, 1)}, {pack(1, 1, 1)}, {pack(0, 1, 1), pack(1, 0, 1)}};
    for (const std::vector<unsigned int>& b : bad) {
        Archive ar = archive_of(with_bonds(b));
        Molecule3d target = two_components();
        EXPECT_THROW(target.read(ar), std::runtime_error);
        EXPECT_EQ(target.natoms(), 6);
    }
    {
        Archive ar = archive_of(with_bonds({pack(0, 2, 1)}));
        EXPECT_EQ(error_text<std::runtime_error>([&] { Molecule3d m(ar); }).rfind("Molecule3d::read bonds", 0), 0u);
    }
    // A count far beyond the file is refused before anything is allocated.
    for (int count : {-1, 0x7fffffff}) {
        Archive ar = archive_of(le32(count));
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
            ar << static_cast<unsigned short>(0) << static_cast<short>(i == 0 ? -1 : 0) << 0.7
               << std::string(labels[i]) << 0 << 0 << 0.0 << 0.0 << 0.0 << (i + 3) << false;
        }
        ar << 1;                 // bonds
        ar << ((0u << 18) + (1u << 4) + 1u);
        ar << 2;                 // alternative sites: two for O1, none for H1
        ar << 2;
        ar << Point(1, 2, 3) << Point(0.1, 0.2, 0.3) << 1.0;
        ar << Point(7, 8, 9) << Point(0.7, 0.8, 0.9) << 0.5;
        ar << 0;
        ar << 1 << 3 << 10 << 11 << 12;  // index lists, dropped
        ar << 42 << std::string("name") << true;
        ar << 99;                // what follows the molecule
    }
    std::rewind(file);
    VersionedArchive in(file, false);
    in.set_version(1);
    Molecule3d m;
    m.add(atom_at(Element::C, "old", 0, 0, 0));
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
    EXPECT_EQ((*copies)[0]->natoms(), 4);  // C1 O1 H1 H3, in their old order
    EXPECT_EQ((*copies)[0]->atom(2)->label(), "H1");
    EXPECT_EQ((*copies)[1]->atom(0)->label(), "N1");
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
    Molecule3d single;
    single.add(atom_at(Element::C, "C1", 0, 0, 0));
    Hvector_HMolecule one = single.inplace_split();
    ASSERT_EQ(one->size(), 1u);
    EXPECT_EQ(single.natoms(), 0);
    EXPECT_EQ((*one)[0]->atom(0)->label(), "C1");
}

TEST(Molecule3d, AssignTakesTheAtomsThemselves) {
    Hvector_HAtom atoms(new std::vector<HAtom>{atom_at(Element::N, "N1", 0, 0, 0), atom_at(Element::N, "N2", 1.1, 0, 0)});
    Hvector_HBondData bonds(new std::vector<THandle<BondData> >{THandle<BondData>(new BondData(1, 0, TRIPLE_BOND))});
    std::ostringstream log;
    TARNLog::set_stream(&log);
    const int saved = TARNLog::level_;
    TARNLog::level_ = 3;
    {
        Molecule3d m(atoms, bonds);
        EXPECT_EQ(m.atom(1), (*atoms)[1]);
        EXPECT_EQ(m.bond(0)->atom1(), (*atoms)[1]);
        EXPECT_EQ(m.bond(0)->type(), TRIPLE_BOND);
        // The atoms belong to m now: another molecule cannot take them.
        EXPECT_THROW(Molecule3d other(atoms, bonds), std::domain_error);
    }
    TARNLog::level_ = saved;
    TARNLog::set_stream(nullptr);
    const std::string text = log.str();
    EXPECT_NE(text.find("Entered Molecule3d::Molecule3d(, atoms 2, bonds 1- 0x"), std::string::npos) << text;
    EXPECT_NE(text.find("Entered Molecule::Molecule() - 0x"), std::string::npos);
    EXPECT_NE(text.find("Entered Molecule3d::~Molecule3d() - 0x"), std::string::npos);
    EXPECT_NE(text.find("Entered Molecule::~Molecule() - 0x"), std::string::npos);
    EXPECT_EQ((*atoms)[0]->graph_data().graph().unhand(), nullptr);  // freed when the molecule died
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
    std::vector<int> added = factory.add_molecule(*m, two_components());
    EXPECT_EQ(added, (std::vector<int>{2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(m->nbonds(), 5);
}

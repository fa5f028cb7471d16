// Saved crystal views: expanded, packed and sliced pictures come back with
// one object per molecule wherever it appears, settings, criteria and filter
// intact; the pool, the rebuilt contacts, both format versions, and damaged,
// future or inconsistent archives refused without a change.
#include "molcryst/crystal/NewCrystalMemento.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "common/ArchiveBytes.h"
#include "common/ErrorText.h"
#include "common/Text.h"
#include "crystal/NewCrystalTestSupport.h"
#include "molcryst/contact/ClashCriterion.h"
#include "molcryst/crystal/NewCrystal.h"
#include "molcryst/molecule/Molecule3d.h"
#include "molcryst/molecule/Site.h"
#include "molcryst/support/VersionedArchive.h"

using namespace molcryst;
using namespace molcryst::testing;

namespace {

std::vector<unsigned char> saved(const NewCrystal& crystal) {
    Archive ar = Archive::temporary();
    crystal.write(ar);
    return bytes_of(ar);
}

NewCrystal restored(const std::vector<unsigned char>& bytes) {
    Archive ar = archive_of(bytes);
    NewCrystal crystal;
    crystal.read(ar);
    return crystal;
}

// Every contact end must be a molecule of the picture, by object; the
// picture holds no molecule twice. Returns the labels "from>to" of the contacts.
std::string checked_contacts(const NewCrystal& crystal) {
    std::map<const Molecule*, int> shown;
    for (const HMolecule& m : *crystal.crystal_snapshot()->molecules()) ++shown[m.unhand()];
    for (const auto& entry : shown) EXPECT_EQ(entry.second, 1);
    std::string out;
    for (const HMolecularContact& c : *crystal.contacts()) {
        EXPECT_EQ(shown.count(c->molecule_from().unhand()), 1u);
        EXPECT_EQ(shown.count(c->molecule_to().unhand()), 1u);
        out += c->molecule_from()->atom(c->atom_from())->label() + ">" + c->molecule_to()->atom(c->atom_to())->label() +
               "(" + std::to_string(c->molecule_to()->natoms()) + ") ";
    }
    return out;
}

std::string picture(const NewCrystal& crystal) {
    std::string out;
    for (const HMolecule& m : *crystal.crystal_snapshot()->molecules()) {
        for (int i = 0; i < m->natoms(); ++i) out += m->atom(i)->label() + printed(m->atom(i)->site()->orth()) + " ";
        out += "| ";
    }
    return out;
}

NewCrystal expanded_chain() {
    NewCrystal crystal(screw_chain_maker());
    crystal.add_contact_criterion(oxygen_contacts(2.5));
    crystal.expand_all_contacts();
    crystal.expand_all_contacts();
    return crystal;
}

}  // namespace

TEST(NewCrystalMemento, ExpandedPicturesComeBackWithOneObjectPerMolecule) {
    const NewCrystal crystal = expanded_chain();
    const std::string contacts = checked_contacts(crystal);
    ASSERT_GE(crystal.crystal_snapshot()->nmolecules(), 3);
    ASSERT_FALSE(crystal.contacts()->empty());

    const NewCrystal back = restored(saved(crystal));
    EXPECT_EQ(picture(back), picture(crystal));
    EXPECT_EQ(checked_contacts(back), contacts);
    EXPECT_EQ(back.expandable(), crystal.expandable());
    // Rebuilt from their atoms: type 0 and no strength, whatever they were.
    for (const HMolecularContact& c : *back.contacts()) {
        EXPECT_EQ(c->type(), 0);
        EXPECT_THROW(c->strength(), std::runtime_error);
    }
    ASSERT_EQ(back.ncontact_criteria(), 1);
    EXPECT_TRUE(*back.contact_criteria()[0] == *crystal.contact_criteria()[0]);
    EXPECT_TRUE(*back.crystal_maker() == *crystal.crystal_maker());
    // The restored view goes on: expanding the hanging ends once more.
    NewCrystal further = back;
    EXPECT_EQ(further.expand_all_contacts(), crystal.expandable());

    // The memento of the restored view equals the first, and saves to the same bytes.
    EXPECT_EQ(NewCrystalMemento(back), NewCrystalMemento(crystal));
    EXPECT_EQ(saved(back), saved(crystal));
}

TEST(NewCrystalMemento, PackedAndSlicedPicturesKeepTheirSettingsAndFilter) {
    NewCrystal packed(dimer_maker());
    packed.set_packing(true);
    packed.set_packing_box(Box(Point(0, 0, 0), Point(2, 1, 1)));
    packed.add_contact_criterion(oxygen_contacts(3.0));
    packed.set_contact_filter_distances(1.0, 2.9);
    NewCrystal sliced(chain_maker());
    sliced.set_slicing(true);
    sliced.set_slicing_plane(Plane(Vector<double, 3>(0, 1, 0), 2));
    sliced.set_slicing_thickness(3.5);
    sliced.set_slicing_displacement(0.25);
    for (const NewCrystal* crystal : {&packed, &sliced}) {
        const NewCrystal back = restored(saved(*crystal));
        EXPECT_EQ(back.packing(), crystal->packing());
        EXPECT_EQ(back.packing_box(), crystal->packing_box());
        EXPECT_EQ(back.slicing(), crystal->slicing());
        EXPECT_EQ(back.slicing_plane(), crystal->slicing_plane());
        EXPECT_EQ(back.slicing_thickness(), crystal->slicing_thickness());
        EXPECT_EQ(back.slicing_displacement(), crystal->slicing_displacement());
        EXPECT_EQ(picture(back), picture(*crystal));
        EXPECT_EQ(checked_contacts(back), checked_contacts(*crystal));
        ASSERT_EQ(back.contact_filter().unhand() != nullptr, crystal->contact_filter().unhand() != nullptr);
        if (back.contact_filter().unhand() != nullptr) {
            EXPECT_TRUE(*back.contact_filter() == *crystal->contact_filter());
        }
        // The settings rebuild the same picture from the maker.
        NewCrystal rebuilt = back;
        rebuilt.rebuild_snapshot();
        EXPECT_EQ(picture(rebuilt), picture(*crystal));
    }
    EXPECT_GT(packed.crystal_snapshot()->nmolecules(), 2);
}

TEST(NewCrystalMemento, PoolHoldsEachMoleculeOnceAndContactsLoseTheirDetail) {
    const HCrystalMaker maker = dimer_maker();
    maker->select_3d();
    const HMolecule own = maker->molecule(0);
    const HMolecule hanging(new Molecule3d());
    hanging->add(HAtom(own->atom(0)->clone()));
    const HCrystal snapshot(new Crystal(maker->cell(), Hvector_HMolecule(new vector_HMolecule{own, hanging})));
    HMolecularContact contact(new MolecularContact(own, 0, hanging, 0, 2.58, 7));
    const Hvector_HMolecularContact contacts(new vector_HMolecularContact{contact});

    NewCrystalMemento m;
    m.set_crystal(maker, snapshot, contacts);
    EXPECT_EQ(m.base_molecules().size(), 2u);  // the maker's molecule is the picture's
    EXPECT_EQ(m.crystal_snapshot_indices(), (std::vector<int>{0, 1}));
    EXPECT_NE(m.crystal_maker().unhand(), maker.unhand());
    ASSERT_EQ(m.contact_mementos().size(), 1u);
    EXPECT_EQ(m.contact_mementos()[0].contact_.strength(), 2.58);
    const HCrystal picture_back = m.crystal_snapshot();
    const Hvector_HMolecularContact back = m.contacts();
    ASSERT_EQ(back->size(), 1u);
    EXPECT_EQ((*back)[0]->molecule_to().unhand(), picture_back->molecule(1).unhand());
    EXPECT_EQ((*back)[0]->type(), 0);
    EXPECT_FALSE((*back)[0]->has_strength());
    EXPECT_TRUE(picture_back->contacts()->empty());

    // No contacts and no picture: an empty list and an empty crystal.
    NewCrystalMemento bare;
    bare.set_crystal(maker, HCrystal(), Hvector_HMolecularContact());
    EXPECT_EQ(bare.crystal_snapshot()->nmolecules(), 0);
    EXPECT_TRUE(bare.contacts()->empty());

    // Equality walks the fields and names the first difference.
    NewCrystalMemento other = m;
    EXPECT_EQ(other, m);
    other.set_slicing_thickness(m.slicing_thickness() + 5e-08);
    EXPECT_EQ(other, m);
    other.set_slicing_displacement(1);
    EXPECT_EQ(stdout_of([&] { EXPECT_NE(other, m); }),
              "operator==(NewCrystalMemento,NewCrystalMemento): slicing_displacement differs\n");
    EXPECT_EQ(stdout_of([&] { EXPECT_NE(bare, m); }),
              "operator==(NewCrystalMemento,NewCrystalMemento): base_molecules_ size differs\n");
    const std::string text = printed(m);
    EXPECT_EQ(text.rfind("crystal_maker: ", 0), 0u);
    EXPECT_NE(text.find("\nbase_molecules: 2\n"), std::string::npos);
    EXPECT_NE(text.find("\ncrystal_snapshot_indices: 0 1 \npacked: 0\n"), std::string::npos);
    EXPECT_NE(text.find("\ncontact_filter_: none\ncontact_mementos_ 1\n0 1 contact"), std::string::npos);
}

namespace {

// A water in the older molecule layout, as Molecule3d reads it from a version 1 archive.
std::vector<unsigned char> v1_water() {
    Archive ar = Archive::temporary();
    ar << 2;
    const char* labels[2] = {"O1", "H1"};
    const Element elements[2] = {Element::O, Element::H};
    for (int i = 0; i < 2; ++i) {
        elements[i].write(ar);
        ar << static_cast<unsigned short>(0) << static_cast<short>(0) << 0.7 << std::string(labels[i]) << 0 << 0 << 0.0
           << 0.0 << 0.0 << i << false;
    }
    ar << 1 << ((0u << 18) + (1u << 4) + 1u);  // one single bond
    ar << 2 << 1 << Point(1, 2, 3) << Point(0.1, 0.2, 0.3) << 1.0 << 1 << Point(1.9, 2, 3) << Point(0.19, 0.2, 0.3)
       << 1.0;
    ar << 0 << 42 << std::string("name") << true;
    return bytes_of(ar);
}

// A whole memento from its parts: the pool's molecules, the picture's
// positions and the contacts as (from, to, atom from, atom to).
std::vector<unsigned char> memento_bytes(int version, const std::vector<unsigned char>& molecule, int npool,
                                         const std::vector<int>& picture,
                                         const std::vector<std::vector<int> >& contacts,
                                         const std::vector<unsigned char>& criteria = words({0})) {
    CrystalMaker maker;  // no molecules: the same bytes in either version
    std::vector<unsigned char> b = words({version}) + written(maker) + words({npool});
    for (int i = 0; i < npool; ++i) b = b + molecule;
    b = b + words({static_cast<int>(picture.size())}) + words(picture) + std::vector<unsigned char>{0} +
        written(NewCrystal::default_packing_box()) + std::vector<unsigned char>{0} + written(Plane()) +
        doubles({5, 0}) + criteria + std::vector<unsigned char>{0} + words({static_cast<int>(contacts.size())});
    for (const std::vector<int>& c : contacts) b = b + words({c[0], c[1]}) + written(BasicContact(c[2], c[3], 2.0));
    return b;
}

std::vector<unsigned char> v2_water() { return written(*water()); }

}  // namespace

TEST(NewCrystalMemento, BothVersionsReadAndBadArchivesLeaveTheObjectAsItWas) {
    // Version 2 from any archive; version 1 from a versioned one only.
    NewCrystalMemento m;
    Archive v2 = archive_of(memento_bytes(2, v2_water(), 2, {1, 0}, {{0, 1, 1, 0}}));
    m.read(v2);
    EXPECT_EQ(m.base_molecules().size(), 2u);

    const std::vector<unsigned char> old = memento_bytes(1, v1_water(), 1, {0}, {{0, 0, 0, 1}});
    Archive plain = archive_of(old);
    const NewCrystalMemento before = m;
    EXPECT_EQ(error_text<std::runtime_error>([&] { m.read(plain); }),
              "NewCrystalMemento::read - Use a VersionedArchive object to read old formats");
    std::FILE* file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    {
        VersionedArchive versioned(file, false);
        versioned.write_bytes(old.data(), old.size());
        versioned.rewind();
        m.read(versioned);
        EXPECT_EQ(versioned.version(), 1);
    }
    std::fclose(file);
    ASSERT_EQ(m.base_molecules().size(), 1u);
    const HCrystal water_back = m.crystal_snapshot();
    EXPECT_EQ(water_back->molecule(0)->atom(1)->label(), "H1");
    EXPECT_EQ(water_back->molecule(0)->atom(1)->site()->orth(), Point(1.9, 2, 3));

    // A future version, positions outside the pool, atoms outside their
    // molecules, an unknown criterion and every truncation: refused, the
    // memento unchanged.
    m = before;
    const std::string kept = printed(m);
    const std::vector<unsigned char> good = memento_bytes(2, v2_water(), 2, {1, 0}, {{0, 1, 1, 0}});
    const std::vector<std::pair<std::vector<unsigned char>, std::string> > bad = {
        {memento_bytes(3, v2_water(), 2, {1, 0}, {}), "NewCrystalMemento::read - format version mismatch"},
        {memento_bytes(2, v2_water(), 2, {2}, {}),
         "NewCrystalMemento::read crystal_snapshot_indices: snapshot index 2 is outside the pool of 2 molecules"},
        {memento_bytes(2, v2_water(), 2, {-1}, {}),
         "NewCrystalMemento::read crystal_snapshot_indices: snapshot index -1 is outside the pool of 2 molecules"},
        {memento_bytes(2, v2_water(), 2, {0}, {{0, 5, 0, 0}}),
         "NewCrystalMemento::read contact_mementos: contact to index 5 is outside the pool of 2 molecules"},
        {memento_bytes(2, v2_water(), 2, {0}, {{0, 1, 3, 0}}),
         "NewCrystalMemento::read contact_mementos: contact from atom 3 is outside its molecule of 3 atoms"},
        {memento_bytes(2, v2_water(), 1, {0}, {},
                       words({1, 4}) + std::vector<unsigned char>{'B', 'o', 'n', 'd'} + words({0, 0, 0})),
         "Unrecognised contact definition: Bond"},
    };
    for (const auto& entry : bad) {
        Archive ar = archive_of(entry.first);
        EXPECT_EQ(error_text<std::runtime_error>([&] { m.read(ar); }), entry.second);
        EXPECT_EQ(printed(m), kept);
    }
    for (std::size_t n = 0; n < good.size(); n += 3) {
        Archive ar = archive_of(cut(good, n));
        EXPECT_THROW(m.read(ar), std::runtime_error) << n;
        EXPECT_EQ(printed(m), kept);
    }

    // A view refuses a damaged archive and keeps its picture; one with a
    // criterion that cannot be archived refuses to save and writes nothing.
    NewCrystal crystal = expanded_chain();
    const std::string shown = picture(crystal);
    std::vector<unsigned char> damaged = saved(crystal);
    damaged.resize(damaged.size() / 2);
    Archive ar = archive_of(damaged);
    EXPECT_THROW(crystal.read(ar), std::runtime_error);
    EXPECT_EQ(picture(crystal), shown);
    crystal.add_contact_criterion(HContactCriterion(new ClashCriterion()));
    Archive out = Archive::temporary();
    EXPECT_EQ(error_text<std::runtime_error>([&] { crystal.write(out); }),
              "Unrecognised contact definition: ClashCriterion");
    EXPECT_TRUE(bytes_of(out).empty());
}

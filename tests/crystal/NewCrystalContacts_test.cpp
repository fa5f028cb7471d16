#include <gtest/gtest.h>

#include "common/Text.h"
#include "crystal/NewCrystalTestSupport.h"
#include "molcryst/crystal/NewCrystal.h"
#include "molcryst/molecule/Site.h"

namespace molcryst {
namespace {

using testing::CountingObserver;

// A distance rule that counts how often a builder asks for its reach: once
// per pair of molecules searched, so a count that stays put means the base
// contacts came from the cache.
class CountingCriterion : public DistanceCriterion {
public:
    explicit CountingCriterion(double max)
        : DistanceCriterion(max, 0, INTERMOLECULAR, 0, 999, false, Hset_int(new std::set<int>{8}),
                            Hset_int(new std::set<int>{8})) {}
    double max_radius() const override {
        ++calls;
        return DistanceCriterion::max_radius();
    }
    mutable int calls = 0;
};

// Whether a contact is expandable, by a walk over all shown contacts: it
// joins two molecules and no contact runs back from its to atom to its from
// atom. The view finds reverse contacts through a grid; this is the plain rule.
bool expandable_by_scan(const NewCrystal& crystal, const MolecularContact& c) {
    if (!c.intermolecular()) return false;
    const Point from = c.molecule_from()->atom(c.atom_from())->site()->orth();
    const Point to = c.molecule_to()->atom(c.atom_to())->site()->orth();
    for (const HMolecularContact& r : *crystal.contacts())
        if (equals(r->molecule_to()->atom(r->atom_to())->site()->orth(), from, 1e-04) &&
            equals(r->molecule_from()->atom(r->atom_from())->site()->orth(), to, 1e-04))
            return false;
    return true;
}

void expect_expandable_as_scanned(const NewCrystal& crystal) {
    for (const HMolecularContact& c : *crystal.contacts())
        EXPECT_EQ(crystal.expandable(c), expandable_by_scan(crystal, *c));
}

int nfull(const Crystal& c) { return c.nmolecules() - testing::nhanging(c); }

TEST(NewCrystalContacts, CriteriaShowHangingAtomsAndKeepTheirBaseContactsCached) {
    NewCrystal crystal(testing::dimer_maker());
    CountingObserver observer;
    crystal.connect(observer);
    THandle<CountingCriterion> criterion(new CountingCriterion(3.0));

    crystal.add_contact_criterion(criterion);
    EXPECT_EQ(observer.count, 1);
    EXPECT_EQ(crystal.ncontact_criteria(), 1);
    ASSERT_EQ(crystal.contacts()->size(), 1u);
    const HMolecularContact c = (*crystal.contacts())[0];
    EXPECT_EQ(c->molecule_from().unhand(), crystal.crystal_snapshot()->molecule(0).unhand());
    EXPECT_EQ(c->molecule_to()->natoms(), 1);
    EXPECT_EQ(c->molecule_to()->atom(0)->label(), "O1");
    EXPECT_NEAR(c->molecule_to()->atom(0)->site()->frac()[0], -0.1, 1e-12);
    EXPECT_EQ(testing::nhanging(*crystal.crystal_snapshot()), 1);
    EXPECT_TRUE(crystal.expandable(c));
    EXPECT_TRUE(crystal.expandable());
    const int calls = criterion->calls;
    EXPECT_GT(calls, 0);
    // A second criterion that finds the same contacts adds none: equal
    // contacts are shown once.
    const HContactCriterion twin = testing::oxygen_contacts(3.0);
    crystal.add_contact_criterion(twin);
    EXPECT_EQ(crystal.ncontact_criteria(), 2);
    EXPECT_EQ(crystal.contacts()->size(), 1u);
    crystal.remove_contact_criterion(twin);
    EXPECT_EQ(observer.count, 1);

    // Added twice: one entry. Removed: no contacts, the cache kept.
    crystal.add_contact_criterion(criterion);
    EXPECT_EQ(crystal.ncontact_criteria(), 1);
    EXPECT_EQ(observer.count, 1);
    crystal.remove_contact_criterion(criterion);
    EXPECT_EQ(observer.count, 2);
    EXPECT_EQ(crystal.ncontact_criteria(), 0);
    EXPECT_EQ(crystal.contacts()->size(), 0u);
    EXPECT_EQ(crystal.crystal_snapshot()->nmolecules(), 1);
    crystal.add_contact_criterion(criterion);
    EXPECT_EQ(crystal.contacts()->size(), 1u);
    EXPECT_EQ(criterion->calls, calls);

    // Unknown criteria change nothing; an edited criterion is recalculated.
    const HContactCriterion stranger = testing::oxygen_contacts(9.0);
    crystal.remove_contact_criterion(stranger);
    EXPECT_EQ(crystal.ncontact_criteria(), 1);
    EXPECT_EQ(testing::log_of(0, [&] { crystal.update_contact_criterion(stranger); }).substr(0, 45),
              "NewCrystal::update_contact_criterion: contact");
    crystal.update_contact_criterion(criterion);
    EXPECT_GT(criterion->calls, calls);

    // An edit keeps the criteria and recomputes them, with one notification.
    const int before = observer.count;
    crystal.set_bond_type(crystal.crystal_snapshot()->molecule(0)->bond(0), DOUBLE_BOND);
    EXPECT_EQ(observer.count, before + 1);
    EXPECT_EQ(crystal.ncontact_criteria(), 1);
    EXPECT_EQ(crystal.contacts()->size(), 1u);

    crystal.clear_contact_criteria();
    EXPECT_EQ(crystal.contacts()->size(), 0u);
    crystal.set_contact_criterion(criterion);
    EXPECT_EQ(crystal.contact_criteria(), std::vector<HContactCriterion>{criterion});

    // Atoms whose labels end in "?" are suppressed: a molecule of nothing
    // else gives no contacts and takes none.
    const Cell cell = testing::box_cell(10, 11, 12, molcryst_test::p_1bar());
    NewCrystal suppressed(
        testing::maker_of(cell, {testing::at_frac(cell, "O O1? 0.1 0.05 0.05; C C1? 0.22 0.05 0.05", "O1?-C1?")}));
    suppressed.add_contact_criterion(criterion);
    EXPECT_EQ(suppressed.contacts()->size(), 0u);
    NewCrystal partly(
        testing::maker_of(cell, {testing::at_frac(cell, "O O1 0.1 0.05 0.05; C C1? 0.22 0.05 0.05", "O1-C1?")}));
    partly.add_contact_criterion(criterion);
    EXPECT_EQ(partly.contacts()->size(), 1u);
}

TEST(NewCrystalContacts, ContactsAreReplicatedOntoEveryMoleculeShownAndFilteredByDistance) {
    NewCrystal crystal(testing::chain_maker());
    crystal.add_contact_criterion(testing::oxygen_contacts(3.0));
    // One molecule, two screw neighbours at 2.87 A.
    EXPECT_EQ(crystal.contacts()->size(), 2u);
    crystal.set_packing(true);
    // A column of three cells along b around the screw axis.
    crystal.set_packing_box(Box(Point(-0.5, 0, -0.5), Point(0.5, 3, 0.5)));
    const HCrystal shown = crystal.crystal_snapshot();
    const int full = nfull(*shown);
    EXPECT_EQ(full, 6);
    // Each molecule has its two contacts; the neighbours inside the box are
    // shown whole, so only the two ends of the column remain expandable.
    EXPECT_EQ(crystal.contacts()->size(), 12u);
    int expandable = 0;
    for (const HMolecularContact& c : *crystal.contacts()) {
        EXPECT_EQ(crystal.contacts(c->molecule_from()).size() >= 2, true);
        expandable += crystal.expandable(c) ? 1 : 0;
    }
    EXPECT_EQ(expandable, 2);
    expect_expandable_as_scanned(crystal);

    double base_min, base_max, base_min_vdw, base_max_vdw, min, max, min_vdw, max_vdw;
    crystal.calculate_contact_extremities(base_min, base_max, base_min_vdw, base_max_vdw, min, max, min_vdw, max_vdw);
    EXPECT_NEAR(base_min, std::sqrt(1 + 6.25 + 1), 1e-9);
    EXPECT_NEAR(max, base_max, 1e-9);
    EXPECT_NEAR(min_vdw, base_min - 2 * Element("O").vdw_radius(), 1e-9);

    // A filter hides contacts beyond its range, and the neighbours with them.
    crystal.set_contact_filter_distances(0, 2.5);
    EXPECT_EQ(crystal.contacts()->size(), 0u);
    crystal.set_contact_filter_tolerances(-1, 0);
    EXPECT_EQ(crystal.contacts()->size(), 12u);
    crystal.set_contact_filter_tolerances(-1, -1);
    EXPECT_EQ(crystal.contacts()->size(), 0u);
    crystal.reset_contacts();
    EXPECT_EQ(crystal.contact_filter().unhand(), nullptr);
    EXPECT_EQ(crystal.contacts()->size(), 12u);
}

TEST(NewCrystalContacts, ExpandingAContactGrowsOneNeighbourWithItsOwnContacts) {
    // Every change checks the picture: contacts on shown molecules, no molecule twice.
    NewCrystal::set_validation_level(1);
    struct Reset {
        ~Reset() { NewCrystal::set_validation_level(0); }
    } reset;
    NewCrystal crystal(testing::chain_maker());
    crystal.add_contact_criterion(testing::oxygen_contacts(3.0));
    CountingObserver observer;
    crystal.connect(observer);
    const HMolecularContact c = (*crystal.contacts())[0];
    ASSERT_TRUE(crystal.expand_contact(c));
    EXPECT_EQ(observer.count, 1);
    const HCrystal shown = crystal.crystal_snapshot();
    EXPECT_EQ(nfull(*shown), 2);
    // The neighbour brings a contact back to the first molecule and one onward.
    EXPECT_EQ(crystal.contacts()->size(), 4u);
    EXPECT_FALSE(crystal.expandable(c));
    EXPECT_FALSE(crystal.expand_contact(c));
    EXPECT_EQ(observer.count, 1);
    EXPECT_FALSE(crystal.expand_contacts(vector_HMolecularContact()));
    EXPECT_EQ(observer.count, 1);

    // Expanding all that is left: both ends of the three-molecule column grow.
    EXPECT_EQ(testing::log_of(0, [&] { EXPECT_TRUE(crystal.expand_all_contacts()); }), "");
    EXPECT_EQ(observer.count, 2);
    EXPECT_EQ(nfull(*crystal.crystal_snapshot()), 4);
    expect_expandable_as_scanned(crystal);

    // Hanging contacts deleted: only contacts between whole molecules stay.
    EXPECT_TRUE(crystal.delete_hanging_contacts());
    // The hanging atoms of contacts between whole molecules stay.
    EXPECT_EQ(testing::nhanging(*crystal.crystal_snapshot()), 4);
    EXPECT_FALSE(crystal.expandable());
    EXPECT_EQ(crystal.contacts()->size(), 6u);
    // Deleting a contact between whole molecules takes its reverse too.
    EXPECT_TRUE(crystal.delete_contact((*crystal.contacts())[0]));
    EXPECT_EQ(crystal.contacts()->size(), 4u);
    EXPECT_EQ(nfull(*crystal.crystal_snapshot()), 4);
}

TEST(NewCrystalContacts, ExpandFullyStopsAtAFiniteDimer) {
    NewCrystal crystal(testing::dimer_maker());
    crystal.expand_fully();  // no contacts: returns at once
    EXPECT_FALSE(crystal.changed());
    crystal.add_contact_criterion(testing::oxygen_contacts(3.0));
    CountingObserver observer;
    crystal.connect(observer);
    crystal.expand_fully();
    EXPECT_EQ(observer.count, 0);
    EXPECT_TRUE(crystal.changed());
    crystal.notify();
    EXPECT_EQ(observer.count, 1);
    EXPECT_EQ(nfull(*crystal.crystal_snapshot()), 2);
    EXPECT_EQ(crystal.contacts()->size(), 2u);
    EXPECT_FALSE(crystal.expandable());
    // Again: nothing to do.
    crystal.expand_fully();
    EXPECT_FALSE(crystal.changed());
}

TEST(NewCrystalContacts, ExpandFullyStopsAChainAtItsLatticeRepeat) {
    // Both screw neighbours of this chain hang at one lattice translation
    // from each other: the guard sees the repeat before anything grows.
    NewCrystal short_chain(testing::chain_maker());
    short_chain.add_contact_criterion(testing::oxygen_contacts(3.0));
    short_chain.expand_fully();
    EXPECT_EQ(nfull(*short_chain.crystal_snapshot()), 1);
    EXPECT_FALSE(short_chain.changed());

    NewCrystal crystal(testing::screw_chain_maker());
    crystal.add_contact_criterion(testing::oxygen_contacts(2.5));
    ASSERT_EQ(crystal.contacts()->size(), 2u);
    crystal.expand_fully();
    const HCrystal shown = crystal.crystal_snapshot();
    // The molecule and one screw image: the image's next neighbour is the
    // molecule moved by b, and the other neighbour of the molecule is the
    // image moved by -b.
    EXPECT_EQ(nfull(*shown), 2);
    int expandable = 0;
    for (const HMolecularContact& c : *crystal.contacts()) {
        if (!crystal.expandable(c)) continue;
        ++expandable;
        const HAtom to = c->molecule_to()->atom(c->atom_to());
        int repeats = 0;
        for (const HMolecule& m : *shown->molecules())
            for (int i = 0; i < m->natoms() && m->natoms() > 1; ++i) {
                if (m->atom(i)->symmtag() != to->symmtag()) continue;
                const Point d = to->site()->frac() - m->atom(i)->site()->frac();
                repeats += equals(d, Point(0, 1, 0), 1e-9) || equals(d, Point(0, -1, 0), 1e-9) ? 1 : 0;
            }
        EXPECT_EQ(repeats, 1);
    }
    EXPECT_EQ(expandable, 2);
    // Nothing new on a second pass.
    crystal.notify();
    crystal.expand_fully();
    EXPECT_FALSE(crystal.changed());
}

TEST(NewCrystalContacts, ExpansionFailuresReturnFalseAndLeaveThePictureAlone) {
    NewCrystal crystal(testing::chain_maker());
    crystal.add_contact_criterion(testing::oxygen_contacts(3.0));
    const HCrystal before(new Crystal(*crystal.crystal_snapshot()));
    const HMolecularContact c = (*crystal.contacts())[0];

    // An anchor outside its molecule.
    HMolecularContact bad(new MolecularContact(c->molecule_from(), 7, c->molecule_to(), 0, 2));
    EXPECT_EQ(testing::log_of(0, [&] { EXPECT_FALSE(crystal.expand_contact(bad)); }),
              "NewCrystalPrivate::expand_contact - Illegal symm_from_index 7\n");
    EXPECT_EQ(
        testing::log_of(0, [&] { EXPECT_FALSE(crystal.expand_contact(HMolecularContact(new MolecularContact()))); }),
        "NewCrystalPrivate::expand_contact - No such base molecule\n");
    // An intramolecular contact is never expandable.
    HMolecularContact inside(new MolecularContact(c->molecule_from(), 0, c->molecule_from(), 1, 2));
    EXPECT_FALSE(crystal.expandable(inside));
    EXPECT_FALSE(crystal.expand_contact(inside));
    // A to atom whose tag is in no stored molecule.
    HMolecule lost = c->molecule_to()->create_molecule(std::vector<int>{0});
    lost->atom(0)->set_symmtag(42);
    HMolecularContact orphan(new MolecularContact(c->molecule_from(), 0, lost, 0, 2));
    EXPECT_EQ(testing::log_of(0, [&] { EXPECT_FALSE(crystal.expand_contact(orphan)); }),
              "NewCrystalPrivate::expand_contact - Cannot find cm_to_mol\n");
    EXPECT_EQ(*crystal.crystal_snapshot(), *before);

    // An atom that is not in the molecule asked about.
    const HMolecule m = crystal.crystal_snapshot()->molecule(0);
    EXPECT_EQ(testing::stdout_of([&] { EXPECT_TRUE(crystal.contacts(m, lost->atom(0)).empty()); }).substr(0, 32),
              "Could not find atom in molecule ");
    EXPECT_EQ(crystal.contacts(m, m->atom(0)).size(), 2u);
    EXPECT_TRUE(crystal.contacts(m, m->atom(1)).empty());
    EXPECT_EQ(*crystal.crystal_snapshot(), *before);
}

TEST(NewCrystalContacts, DeletingAMoleculeTakesItsContactsAndTheirHangingAtoms) {
    NewCrystal crystal(testing::chain_maker());
    crystal.add_contact_criterion(testing::oxygen_contacts(3.0));
    const HMolecule m = crystal.crystal_snapshot()->molecule(0);
    EXPECT_TRUE(crystal.delete_molecule(m));
    EXPECT_EQ(crystal.crystal_snapshot()->nmolecules(), 0);
    EXPECT_EQ(crystal.contacts()->size(), 0u);
    EXPECT_EQ(testing::log_of(0, [&] { EXPECT_FALSE(crystal.delete_molecule(m)); }).substr(0, 51),
              "NewCrystal::delete_molecule - did not delete molecu");

    // Finding contacts again shows them without expanding.
    crystal.reset_contacts();
    const HMolecule again = crystal.crystal_snapshot()->molecule(0);
    crystal.delete_hanging_contacts();
    EXPECT_EQ(crystal.contacts()->size(), 0u);
    EXPECT_TRUE(crystal.find_contacts(again));
    EXPECT_EQ(crystal.contacts()->size(), 2u);
}

TEST(NewCrystalContacts, ContactsBecomeBondsOfOneMolecule) {
    NewCrystal crystal(testing::dimer_maker());
    crystal.add_contact_criterion(testing::oxygen_contacts(3.0));
    crystal.expand_fully();
    crystal.convert_contacts_to_bonds();
    const HCrystal shown = crystal.crystal_snapshot();
    ASSERT_EQ(nfull(*shown), 1);
    EXPECT_EQ(shown->molecule(0)->natoms(), 4);
    EXPECT_EQ(shown->molecule(0)->nbonds(), 3);
}

}  // namespace
}  // namespace molcryst

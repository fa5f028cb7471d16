// Disorder: a tert-butyl group in two orientations and a water over two
// sites stepped through state by state; the numbering of states against the
// full table, also where the count no longer fits; every validation message
// in its order; disorder atoms and the bond test on them.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "common/ErrorText.h"
#include "molcryst/contact/BondDistanceLimit.h"
#include "molcryst/edit/DisorderAtom.h"
#include "molcryst/edit/DisorderSelector.h"
#include "molecule/TestMolecules.h"

using namespace molcryst;
using namespace molcryst::testing;

namespace {

const double pi = 3.14159265358979323846;

HSite site_at(double x, double y, double z, const UncertainValue& occupancy) {
    return HSite(new Site(Point(x, y, z), Point(x, y, z), occupancy, THandle<Array<Uncertainty, 3> >()));
}

/// A methyl carbon of a tert-butyl group on C1 at the origin, the group's
/// axis along z, at `azimuth` degrees.
Point methyl(double azimuth) {
    const double tilt = (180.0 - 109.47) * pi / 180.0, a = azimuth * pi / 180.0;
    return Point(1.53 * std::sin(tilt) * std::cos(a), 1.53 * std::sin(tilt) * std::sin(a), -1.53 * std::cos(tilt));
}

HAtomSiteMapping group_of(const std::vector<HAtom>& atoms, const std::vector<HSite>& sites,
                          const std::vector<std::string>& labels) {
    HAtomSiteMapping g(new AtomSiteMapping());
    for (std::size_t i = 0; i < atoms.size(); ++i) g->add_site(atoms[i], sites[i], i < labels.size() ? labels[i] : "");
    return g;
}

Hvector_Hvector_HAtomSiteMapping mapping_of(const std::vector<std::vector<HAtomSiteMapping> >& assemblies) {
    Hvector_Hvector_HAtomSiteMapping m(new vector_Hvector_HAtomSiteMapping());
    for (const auto& groups : assemblies) m->push_back(Hvector_HAtomSiteMapping(new vector_HAtomSiteMapping(groups)));
    return m;
}

/// A tert-butyl group (C0, C1 and the methyls C2 C3 C4) and a water O5 that
/// is not bonded to it. Assembly 0: the methyls at azimuths 0/120/240 (group
/// 0, "A", occupancy 0.35) or 60/180/300 (group 1, "B", 0.65). Assembly 1:
/// the water at two places, 0.5 each.
struct Fragment {
    HMolecule molecule;
    std::vector<HAtom> methyls;
    HAtom water;
    Hvector_Hvector_HAtomSiteMapping mapping;

    Fragment() {
        const Point a0 = methyl(0), a1 = methyl(120), a2 = methyl(240);
        std::ostringstream text;
        text << "C C0 0 0 1.53; C C1 0 0 0; C C2A " << a0[0] << " " << a0[1] << " " << a0[2] << "; C C3A " << a1[0] << " "
             << a1[1] << " " << a1[2] << "; C C4A " << a2[0] << " " << a2[1] << " " << a2[2] << "; O O5A 4 0 0";
        molecule = molcryst::testing::molecule(text.str(), "C0-C1 C1-C2A C1-C3A C1-C4A");
        for (int i = 2; i <= 4; ++i) molecule->atom(i)->site()->set_occupancy(UncertainValue(0.35, Uncertainty(2, 2)));
        molecule->atom(5)->site()->set_occupancy(0.5);
        methyls = {molecule->atom(2), molecule->atom(3), molecule->atom(4)};
        water = molecule->atom(5);
        std::vector<HSite> b;
        for (double azimuth : {60.0, 180.0, 300.0}) {
            const Point p = methyl(azimuth);
            b.push_back(site_at(p[0], p[1], p[2], UncertainValue(0.65, Uncertainty(2, 2))));
        }
        HAtomSiteMapping group_a = group_of(methyls, {methyls[0]->site(), methyls[1]->site(), methyls[2]->site()}, {});
        HAtomSiteMapping group_b = group_of(methyls, b, {"C2B", "C3B", "C4B"});
        HAtomSiteMapping water_1 = group_of({water}, {water->site()}, {""});
        HAtomSiteMapping water_2 = group_of({water}, {site_at(4.6, 0.3, 0, 0.5)}, {"O5B"});
        mapping = mapping_of({{group_a, group_b}, {water_1, water_2}});
    }
};

std::vector<int> row(int a, int b) { return std::vector<int>{a, b}; }

/// An assembly of `n` groups of one atom each, occupancies 1/n.
std::vector<HAtomSiteMapping> groups_of_one(const HAtom& atom, int n) {
    std::vector<HAtomSiteMapping> groups;
    for (int g = 0; g < n; ++g) groups.push_back(group_of({atom}, {site_at(g, 0, 0, 1.0 / n)}, {""}));
    return groups;
}

}  // namespace

TEST(DisorderSelector, StepsThroughAFragmentMostProbableFirstAndComesBackToTheOrderedState) {
    Fragment f;
    const Point a_place = f.methyls[0]->site()->orth();
    DisorderSelector selector(f.molecule, f.mapping);
    EXPECT_EQ(selector.nsteps(), 4);
    EXPECT_EQ(selector.ordered_mapping(), (std::vector<std::vector<int> >{{1, 0}, {0, 1}}));
    // Orientation B (0.65) first; of the two equal water sites the first.
    EXPECT_EQ(selector.steps(), (std::vector<std::vector<int> >{row(1, 0), row(0, 0), row(1, 1), row(0, 1)}));
    EXPECT_EQ(selector.first_step(), row(1, 0));
    EXPECT_FALSE(selector.done());  // no state is set yet
    EXPECT_TRUE(selector.current_step_element().empty());
    EXPECT_EQ(error_text<std::runtime_error>([&] { selector.current_step(); }),
              "DisorderSelector::current_step: not identified current step.");

    selector.next();  // with no state set, next is start
    EXPECT_EQ(selector.current_step(), 0);
    EXPECT_EQ(f.methyls[0]->label(), "C2B");
    EXPECT_NEAR(f.methyls[0]->site()->orth()[0], methyl(60)[0], 1e-12);
    EXPECT_EQ(f.molecule->atom(0)->site()->orth(), Point(0, 0, 1.53));  // the ordered part stays
    EXPECT_EQ(f.water->label(), "O5A");

    selector.next();
    EXPECT_EQ(f.methyls[0]->label(), "C2A");
    EXPECT_EQ(f.methyls[0]->site()->orth(), a_place);
    selector.next();
    EXPECT_EQ(f.water->label(), "O5B");
    EXPECT_EQ(f.water->site()->orth(), Point(4.6, 0.3, 0));
    EXPECT_EQ(f.methyls[2]->label(), "C4B");
    EXPECT_FALSE(selector.done());
    selector.next();
    EXPECT_TRUE(selector.done());
    EXPECT_EQ(selector.current_step(), 3);
    EXPECT_EQ(selector.current_step_element(), row(0, 1));
    EXPECT_EQ(error_text<std::runtime_error>([&] { selector.next(); }),
              "DisorderSelector::next no more steps in iteraction.");
    // The bonds never change: only sites and labels do.
    EXPECT_EQ(bonds_of(*f.molecule), "C0-C1 C1-C2A C1-C3A C1-C4A");

    // State 1 is the geometry the molecule was built with: every atom on its first site again.
    selector.set(1);
    for (std::size_t k = 0; k < 3; ++k) {
        EXPECT_EQ(f.methyls[k]->site(), (*(*f.mapping)[0])[0]->site(f.methyls[k]));
        EXPECT_EQ(f.methyls[k]->label(), std::string("C") + static_cast<char>('2' + k) + "A");
    }
    EXPECT_EQ(f.methyls[0]->site()->orth(), a_place);
    EXPECT_EQ(f.water->label(), "O5A");
    HDisorderState state = handle_dynamic_cast<DisorderState>(selector.current_edit());
    ASSERT_NE(state.unhand(), nullptr);
    EXPECT_FALSE(state->is_absolute());
    EXPECT_EQ(state->edit_data().size(), 2u);
    EXPECT_EQ(state->edit_data()[0], (*(*f.mapping)[0])[0]);

    EXPECT_EQ(error_text<std::out_of_range>([&] { selector.set(4); }), "DisorderSelector::set: passed index is off range");
    EXPECT_EQ(error_text<std::out_of_range>([&] { selector.set(-1); }), "DisorderSelector::set: passed index is off range");
    EXPECT_EQ(selector.current_step(), 1);
    selector.start();
    EXPECT_EQ(selector.current_step(), 0);

    // A site spoiled after the fact fails the step before anything moves.
    (*(*f.mapping)[1])[1]->add_site(f.water, site_at(0, 0, 0, 0.0));
    EXPECT_EQ(error_text<std::runtime_error>([&] { selector.set(2); }),
              "DisorderState::validate_edit_data a site occupation factor in AtomSiteMapping is 0.0.");
    EXPECT_EQ(selector.current_step(), 0);
    EXPECT_EQ(f.methyls[0]->label(), "C2B");
}

TEST(DisorderSelector, NumbersStatesByMixedRadixLikeTheTable) {
    HMolecule m = molecule("C C1 0 0 0; C C2 1.5 0 0; C C3 3 0 0");
    // Assembly 0: three groups 0.2, 0.5, 0.3; assembly 1: two equal groups.
    std::vector<HAtomSiteMapping> first = {group_of({m->atom(0)}, {site_at(0, 0, 0, 0.2)}, {""}),
                                           group_of({m->atom(0)}, {site_at(0, 1, 0, 0.5)}, {""}),
                                           group_of({m->atom(0)}, {site_at(0, 2, 0, 0.3)}, {""})};
    DisorderSelector selector(m, mapping_of({first, groups_of_one(m->atom(1), 2)}));
    EXPECT_EQ(selector.group_occupancies(), (std::vector<std::vector<double> >{{0.2, 0.5, 0.3}, {0.5, 0.5}}));
    EXPECT_EQ(selector.ordered_mapping(), (std::vector<std::vector<int> >{{1, 2, 0}, {0, 1}}));
    const std::vector<std::vector<int> > table = selector.steps();
    ASSERT_EQ(table.size(), 6u);
    // Assembly 0 changes every step, assembly 1 every third.
    EXPECT_EQ(table, (std::vector<std::vector<int> >{row(1, 0), row(2, 0), row(0, 0), row(1, 1), row(2, 1), row(0, 1)}));
    for (int i = 0; i < 6; ++i) {
        selector.set(i);
        EXPECT_EQ(selector.current_step_element(), table[static_cast<std::size_t>(i)]);
        EXPECT_EQ(selector.current_step(), i);
        EXPECT_EQ(selector.done(), i == 5);
    }

    // Thirty assemblies of two groups: 2^30 states, each found from its number and back.
    HMolecule big(new Molecule3d());
    std::vector<std::vector<HAtomSiteMapping> > assemblies;
    for (int a = 0; a < 32; ++a) {
        big->add(atom_at(Element("C"), "C" + std::to_string(a), a, 0, 0));
        assemblies.push_back(groups_of_one(big->atom(a), 2));
    }
    DisorderSelector thirty(big, mapping_of(std::vector<std::vector<HAtomSiteMapping> >(assemblies.begin(), assemblies.begin() + 30)));
    EXPECT_EQ(thirty.nsteps(), 1 << 30);
    thirty.set((1 << 30) - 1);
    EXPECT_EQ(thirty.current_step(), (1 << 30) - 1);
    EXPECT_TRUE(thirty.done());
    thirty.set(0x2AAAAAAA);
    EXPECT_EQ(thirty.current_step(), 0x2AAAAAAA);
    EXPECT_EQ(thirty.current_step_element()[1], 1);
    EXPECT_EQ(thirty.current_step_element()[0], 0);
    EXPECT_EQ(error_text<std::length_error>([&] { thirty.steps(); }),
              "DisorderSelector::steps: too many states to list; ask step(i) for one");

    // Thirty-two: 2^32 states, more than an int holds.
    DisorderSelector all(big, mapping_of(assemblies));
    EXPECT_EQ(error_text<std::overflow_error>([&] { all.nsteps(); }),
              "DisorderSelector::nsteps the number of states does not fit in an int");
    EXPECT_THROW(all.steps(), std::overflow_error);
    all.set(INT_MAX);
    EXPECT_EQ(all.current_step(), INT_MAX);
    EXPECT_FALSE(all.done());
    EXPECT_EQ(error_text<std::overflow_error>([&] { all.next(); }),
              "DisorderSelector::next the number of the next state does not fit in an int");
    EXPECT_EQ(all.current_step(), INT_MAX);
}

TEST(DisorderSelector, ValidatesMappingsInOrderAndChangesNothingWhenOneFails) {
    Fragment f;
    const HAtom c0 = f.molecule->atom(0), c1 = f.molecule->atom(1);
    auto one = [](const HAtom& a, double occupancy) { return group_of({a}, {site_at(0, 0, 0, occupancy)}, {""}); };
    auto message = [&](const Hvector_Hvector_HAtomSiteMapping& mapping) {
        return error_text<std::runtime_error>([&] { DisorderSelector(f.molecule, mapping); });
    };
    const std::string who = "DisorderSelector::validate_mapping ";

    EXPECT_EQ(error_text<std::invalid_argument>([&] { DisorderSelector(HMolecule(), f.mapping); }),
              "DisorderSelector::DisorderSelector: Invalid molecule.");
    EXPECT_EQ(error_text<std::invalid_argument>([&] { DisorderSelector(f.molecule, Hvector_Hvector_HAtomSiteMapping()); }),
              "DisorderSelector::DisorderSelector: Invalid mapping.");
    EXPECT_EQ(message(mapping_of({})), who + "mapping is empty.");
    Hvector_Hvector_HAtomSiteMapping with_null(new vector_Hvector_HAtomSiteMapping{Hvector_HAtomSiteMapping()});
    EXPECT_EQ(message(with_null), who + "a mapping element is NULL.");
    EXPECT_EQ(message(mapping_of({{}})), who + "a mapping element is empty.");
    // An atom of another molecule, even one equal to an atom of this one.
    Fragment other;
    EXPECT_EQ(message(mapping_of({{one(other.molecule->atom(0), 0.5)}})), who + "an atom in AtomSiteMapping is not in molecule.");
    EXPECT_EQ(message(mapping_of({{one(c0, 0.5), HAtomSiteMapping()}})), who + "an AtomSiteMapping is NULL.");
    EXPECT_EQ(message(mapping_of({{one(c0, 0.5), HAtomSiteMapping(new AtomSiteMapping())}})),
              who + "an AtomSiteMapping is empty.");
    EXPECT_EQ(message(mapping_of({{group_of({c0}, {HSite()}, {"X"})}})), who + "a site in AtomSiteMapping is NULL.");
    EXPECT_EQ(message(mapping_of({{one(c0, 0.0)}})), who + "a site occupation factor in AtomSiteMapping is 0.0.");
    // 0.50(1) and 0.52(1) agree within three standard uncertainties; 0.50(1) and 0.60(1) do not.
    const UncertainValue half(0.50, Uncertainty(1, 2)), near_half(0.52, Uncertainty(1, 2)), sixty(0.60, Uncertainty(1, 2));
    EXPECT_NO_THROW(DisorderSelector(f.molecule, mapping_of({{group_of({c0, c1}, {site_at(0, 0, 0, half), site_at(1, 0, 0, near_half)}, {"", ""})}})));
    EXPECT_EQ(message(mapping_of({{group_of({c0, c1}, {site_at(0, 0, 0, half), site_at(1, 0, 0, sixty)}, {"", ""})}})),
              who + "site occupation factor is different for different atoms in an AtomSiteMapping.");
    EXPECT_EQ(message(mapping_of({{group_of({c0, c1}, {site_at(0, 0, 0, 0.5), site_at(1, 0, 0, 0.5)}, {"", ""}), one(c0, 0.5)}})),
              who + "AtomSiteMapping elements for same group have different number of atoms.");
    // Above 1 by the last bit already fails; and the sum is told before foreign atoms.
    EXPECT_NO_THROW(DisorderSelector(f.molecule, mapping_of({{one(c0, 0.5), one(c0, 0.5)}})));
    EXPECT_EQ(message(mapping_of({{one(c0, 0.5), one(c0, std::nextafter(1.0, 2.0) - 0.5)}})),
              who + "the sum of site occupation factors is greater than 1.0");
    EXPECT_EQ(message(mapping_of({{one(c0, 0.5), one(c1, 0.6)}})),
              who + "the sum of site occupation factors is greater than 1.0");
    EXPECT_EQ(message(mapping_of({{one(c0, 0.5), one(c1, 0.5)}})),
              who + "AtomSiteMapping elements for same group have different atoms.");
    // Shared atoms are told after every assembly's own faults.
    EXPECT_EQ(message(mapping_of({{one(c0, 0.5)}, {one(c0, 0.5)}, {one(c1, 0.0)}})),
              who + "a site occupation factor in AtomSiteMapping is 0.0.");
    EXPECT_EQ(message(mapping_of({{one(c0, 0.5)}, {one(c0, 0.5)}})), who + "found atom shared by two disordered groups.");

    DisorderSelector selector(f.molecule, f.mapping);
    selector.set(2);
    EXPECT_EQ(error_text<std::invalid_argument>([&] { selector.set_mapping(Hvector_Hvector_HAtomSiteMapping()); }),
              "DisorderSelector::set_mapping: Invalid mapping.");
    EXPECT_THROW(selector.set_mapping(mapping_of({{one(c0, 0.5)}, {one(c0, 0.5)}})), std::runtime_error);
    EXPECT_EQ(selector.mapping(), f.mapping);
    EXPECT_EQ(selector.current_step(), 2);
    selector.set_mapping(mapping_of({{one(c0, 0.5), one(c0, 0.25)}}));
    EXPECT_TRUE(selector.current_step_element().empty());
    EXPECT_EQ(selector.nsteps(), 2);
}

TEST(DisorderState, AppliesItsGroupsAfterTheSameChecks) {
    Fragment f;
    const HAtom c0 = f.molecule->atom(0);
    auto message = [&](const vector_HAtomSiteMapping& data) {
        return error_text<std::runtime_error>([&] { DisorderState(f.molecule, data); });
    };
    const std::string who = "DisorderState::validate_edit_data ";
    EXPECT_EQ(error_text<std::invalid_argument>([] { DisorderState state{HMolecule()}; }),
              "DisorderState::DisorderState: Invalid molecule.");
    EXPECT_EQ(error_text<std::invalid_argument>([] { DisorderState(HMolecule(), vector_HAtomSiteMapping()); }),
              "DisorderState::DisorderState(mol, edit_data): Invalid molecule.");
    EXPECT_EQ(message({HAtomSiteMapping()}), who + "an edit_data element is NULL.");
    EXPECT_EQ(message({HAtomSiteMapping(new AtomSiteMapping())}), who + "an AtomSiteMapping is empty.");
    EXPECT_EQ(message({group_of({water()->atom(0)}, {site_at(0, 0, 0, 1.0)}, {""})}),
              who + "an atom in AtomSiteMapping is not in molecule.");
    EXPECT_EQ(message({group_of({c0}, {HSite()}, {""})}), who + "a site in AtomSiteMapping is NULL.");
    EXPECT_EQ(message({group_of({c0}, {site_at(0, 0, 0, 0.0)}, {""})}), who + "a site occupation factor in AtomSiteMapping is 0.0.");
    EXPECT_EQ(message({group_of({c0, f.molecule->atom(1)}, {site_at(0, 0, 0, 0.3), site_at(0, 0, 0, 0.6)}, {"", ""})}),
              who + "site occupation factor is different for different atoms in an AtomSiteMapping.");
    EXPECT_EQ(message({group_of({c0}, {site_at(0, 0, 0, 0.3)}, {""}), group_of({c0}, {site_at(0, 0, 0, 0.3)}, {""})}),
              who + "found atom shared by two disordered groups.");

    // A state holds any one group per assembly; the sum of occupancies is no concern of it.
    DisorderState state(f.molecule, {(*(*f.mapping)[0])[1], (*(*f.mapping)[1])[1]});
    state.apply();
    EXPECT_EQ(f.methyls[1]->label(), "C3B");
    EXPECT_EQ(f.water->site()->orth(), Point(4.6, 0.3, 0));
    DisorderState empty(f.molecule);
    empty.apply();
    // Groups taken unchecked are checked on apply, before anything moves.
    empty.set_edit_data({(*(*f.mapping)[1])[0], HAtomSiteMapping()});
    EXPECT_EQ(error_text<std::runtime_error>([&] { empty.apply(); }), who + "an edit_data element is NULL.");
    EXPECT_EQ(f.water->label(), "O5B");
}

TEST(AtomSiteMapping, KeepsOneSiteAndLabelPerAtom) {
    HMolecule m = water();
    const HAtom o = m->atom(0), h = m->atom(1);
    AtomSiteMapping mapping;
    const HSite s1 = site_at(1, 0, 0, 1.0), s2 = site_at(2, 0, 0, 1.0);
    mapping.add_site(o, s1);
    EXPECT_EQ(mapping.label(o), "O1");  // an empty label is the atom's own
    mapping.add_site(o, s2, "O1B");    // mapped anew
    EXPECT_EQ(mapping.natoms(), 1);
    EXPECT_EQ(mapping.site(o), s2);
    EXPECT_EQ(mapping.label(o), "O1B");
    EXPECT_EQ(mapping.site(h).unhand(), nullptr);
    EXPECT_EQ(mapping.label(h), "");
    mapping.add_site(h, s1);
    mapping.apply();
    EXPECT_EQ(o->site(), s2);
    EXPECT_EQ(o->label(), "O1B");
    mapping.remove_site(o);
    EXPECT_FALSE(mapping.contains(o));
    mapping.clear();
    EXPECT_TRUE(mapping.empty());
    EXPECT_EQ(AtomSiteMapping({o, h}, {s1, s2}).site(h), s2);
    EXPECT_THROW(AtomSiteMapping({o, h}, {s1}), std::invalid_argument);
    EXPECT_EQ(error_text<std::invalid_argument>([&] { mapping.add_site(HAtom(), s1); }),
              "AtomSiteMapping::add_site(HAtom, HSite, string) atom is a null pointer");
}

TEST(DisorderAtom, PrintsItsGroupAndKeepsAlternativesUnbonded) {
    const HAtom c = atom_at(Element("C"), "C2A", 0, 0, 0);
    HDisorderAtom a(new DisorderAtom(c, 3, 1));
    std::ostringstream parent, proxy;
    c->print(parent);
    a->print(proxy);
    EXPECT_EQ(proxy.str(), parent.str() + ", assembly: 3, group: 1");
    HDisorderAtom copy = handle_dynamic_cast<DisorderAtom>(a->clone());
    ASSERT_NE(copy.unhand(), nullptr);
    EXPECT_EQ(copy->assembly(), 3);
    EXPECT_EQ(copy->group(), 1);
    EXPECT_EQ(copy->parent_atom(), c);

    // Two alternatives 1.5 A apart, as near as a bond.
    const HAtom d = atom_at(Element("C"), "C2B", 1.5, 0, 0);
    const BondDistanceLimit rule(0.1, false);
    auto bonded = [&](int assembly1, int group1, int assembly2, int group2) {
        return rule.is_a_bond(HDisorderAtom(new DisorderAtom(c, assembly1, group1)),
                              HDisorderAtom(new DisorderAtom(d, assembly2, group2)));
    };
    EXPECT_FALSE(bonded(3, 1, 3, 2));
    EXPECT_FALSE(bonded(3, -1, 3, 2));
    EXPECT_TRUE(bonded(3, 1, 3, 1));  // one alternative
    EXPECT_TRUE(bonded(3, 0, 3, 2));  // the ordered part bonds to any alternative
    EXPECT_TRUE(bonded(3, 1, 4, 2));  // two assemblies vary independently
    EXPECT_EQ(error_text<std::invalid_argument>([&] { rule.is_a_bond(HDisorderAtom(), a); }),
              "BondDistanceLimit::is_a_bond(HDisorderAtom, HDisorderAtom) atom1 is a null pointer");
}

// CrystalMaker's non-bonded builders: the partners found through the search
// region against a walk over every image of a wide box, the cutting down of
// the fill crystals, whole neighbours, the criterion's contact type, and the
// helpers that prune, select and carry contacts over.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "crystal/CrystalTestSupport.h"
#include "molcryst/contact/DistanceCriterion.h"
#include "molcryst/contact/VdWCriterion.h"
#include "molcryst/crystal/CrystalMaker.h"
#include "molcryst/crystal/CrystalMakerHelpers.h"
#include "molcryst/molecule/MoleculeSubset.h"
#include "molcryst/molecule/Site.h"

using namespace molcryst;
using namespace molcryst::testing;

namespace {

HCrystalMaker maker_of(const Cell& c, std::vector<HMolecule> molecules) {
    HCrystalMaker maker(new CrystalMaker(c, Hvector_HMolecule(), Hvector_HMolecule(),
                                         Hvector_HMolecule(new vector_HMolecule(molecules))));
    maker->select_3d();
    return maker;
}

// Every sited atom gets the tag of its place in the maker, as the reader gives.
void tag_atoms(CrystalMaker& maker) {
    int tag = 0;
    for (int i = 0; i < maker.nmolecules(); ++i)
        for (int k = 0; k < maker.molecule(i)->natoms(); ++k) maker.molecule(i)->atom(k)->set_symmtag(tag++);
}

// A contact as "from-label to-label distance", the distance to 1e-4 A.
std::string contact_text(const MolecularContact& c) {
    const HAtom a = c.molecule_from()->atom(c.atom_from());
    const HAtom b = c.molecule_to()->atom(c.atom_to());
    const double d = distance(a->site()->orth(), b->site()->orth());
    char text[32];
    std::snprintf(text, sizeof text, "%.4f", d);
    return a->label() + "-" + b->label() + " " + text;
}

std::vector<std::string> sorted_contacts(const Crystal& crystal, bool intermolecular_only) {
    std::vector<std::string> texts;
    for (const HMolecularContact& c : *crystal.contacts())
        if (!intermolecular_only || c->intermolecular()) texts.push_back(contact_text(*c));
    std::sort(texts.begin(), texts.end());
    return texts;
}

// Whether the image of `m` under `t` puts an atom where one of `m` stands.
bool lands_on(const CrystalSymmetryTransformation& t, const Molecule& m) {
    for (int a = 0; a < m.natoms(); ++a)
        for (int b = 0; b < m.natoms(); ++b)
            if (equals(t * m.atom(a)->site()->frac(), m.atom(b)->site()->frac(), 1e-6)) return true;
    return false;
}

// The contacts within `reach` from the atoms of molecule `i` to every image
// of every molecule (but molecule i itself) over a box of translations far
// wider than the reach: the answer the search region must not miss.
std::vector<std::string> walk_all_images(const CrystalMaker& maker, int i, double min, double reach) {
    const Cell& c = maker.cell();
    std::vector<std::string> texts;
    const HMolecule central = maker.molecule(i);
    for (int j = 0; j < maker.nmolecules(); ++j) {
        const HMolecule partner = maker.molecule(j);
        for (const CrystalSymmetryOperator& op : c.spacegroup().operators())
            for (int u = -3; u <= 3; ++u)
                for (int v = -3; v <= 3; ++v)
                    for (int w = -3; w <= 3; ++w) {
                        const CrystalSymmetryTransformation t(op, Vector<int, 3>(u, v, w));
                        if (j == i && lands_on(t, *central)) continue;  // the molecule itself
                        for (int a = 0; a < central->natoms(); ++a)
                            for (int b = 0; b < partner->natoms(); ++b) {
                                const Point q = c.orthogonal(t * partner->atom(b)->site()->frac());
                                const double d = distance(central->atom(a)->site()->orth(), q);
                                if (d < min || d > reach) continue;
                                char text[32];
                                std::snprintf(text, sizeof text, "%.4f", d);
                                texts.push_back(central->atom(a)->label() + "-" + partner->atom(b)->label() + " " +
                                                text);
                            }
                    }
    }
    std::sort(texts.begin(), texts.end());
    return texts;
}

// An awkward little molecule in a general position of P2_1/c and a lone ion.
HCrystalMaker p21c_maker() {
    const Cell c = cell_of(molcryst_test::p21_c());
    HCrystalMaker maker = maker_of(
        c, {at_frac(c, "C C1 0.12 0.07 0.91; O O1 0.21 0.13 0.95; N N1 0.08 -0.04 0.83; C C2 0.03 0.02 0.99",
                    "C1-O1 C1-N1 C1-C2"),
            at_frac(c, "Cl Cl1 0.41 0.27 0.18")});
    tag_atoms(*maker);
    return maker;
}

}  // namespace

TEST(CrystalMakerNonbonded, RegionSearchFindsWhatEveryImageOfAWideBoxGives) {
    const HCrystalMaker maker = p21c_maker();
    for (double reach : {3.0, 4.5, 7.0}) {
        const DistanceCriterion criterion(reach, 0.5, INTERMOLECULAR, 1, 999, false);
        for (int i = 0; i < maker->nmolecules(); ++i) {
            const HCrystal fill = maker->create_nonbonded_fill(i, criterion);
            const std::vector<std::string> expected = walk_all_images(*maker, i, 0.5, reach);
            EXPECT_EQ(sorted_contacts(*fill, true), expected) << "reach " << reach << " molecule " << i;
            if (reach > 4) {
                EXPECT_GE(expected.size(), 3u);
            }
            // The central molecule comes first, whole in its sited atoms.
            EXPECT_EQ(fill->molecule(0)->natoms(), maker->molecule(i)->natoms());
        }
    }
}

TEST(CrystalMakerNonbonded, FillCutsPartnersToTheirContactAtomsAndMoleculeKeepsThemWhole) {
    const HCrystalMaker maker = p21c_maker();
    const DistanceCriterion criterion(3.6, 0.5, INTERMOLECULAR, 1, 999, false);
    const std::vector<int> all{0, 1, 2, 3};
    const HCrystal fill = maker->create_nonbonded_fill(0, all, 0, all, criterion);
    ASSERT_GT(fill->ncontacts(), 0);
    EXPECT_EQ(fill->molecule(0)->natoms(), 4);
    for (int k = 1; k < fill->nmolecules(); ++k) {
        // Each piece holds exactly the atoms some contact ends on.
        std::vector<int> touched;
        for (const HMolecularContact& c : *fill->contacts())
            if (c->molecule_to() == fill->molecule(k)) touched.push_back(c->atom_to());
        std::sort(touched.begin(), touched.end());
        touched.erase(std::unique(touched.begin(), touched.end()), touched.end());
        EXPECT_EQ(static_cast<int>(touched.size()), fill->molecule(k)->natoms()) << "piece " << k;
    }
    // Every contact survived the cutting with its distance.
    const std::vector<std::string> found = sorted_contacts(*fill, true);
    std::vector<std::string> expected = walk_all_images(*maker, 0, 0.5, 3.6);
    expected.erase(std::remove_if(expected.begin(), expected.end(),
                                  [](const std::string& s) { return s.find("-Cl1") != std::string::npos; }),
                   expected.end());
    EXPECT_EQ(found, expected);

    const HCrystal whole = maker->create_nonbonded_molecule(0, all, 0, all, criterion);
    EXPECT_EQ(sorted_contacts(*whole, true), expected);
    for (const HMolecule& m : *whole->molecules()) EXPECT_EQ(m->natoms(), 4);
    // The partners are whole images of the molecule: each has its own place.
    for (int k = 1; k < whole->nmolecules(); ++k)
        EXPECT_FALSE(equals(whole->molecule(k)->atom(0)->site()->frac(), maker->molecule(0)->atom(0)->site()->frac(),
                            1e-07));
}

TEST(CrystalMakerNonbonded, ContactTypeDecidesBetweenImagesAndTheMoleculeItself) {
    const HCrystalMaker maker = p21c_maker();
    // Intramolecular: never an image, only the pairs three bonds or more apart.
    const DistanceCriterion intra(5.0, 0.0, INTRAMOLECULAR, 2, 999, false);
    const HCrystal inside = maker->create_nonbonded_fill(0, intra);
    EXPECT_EQ(inside->nmolecules(), 1);
    ASSERT_GT(inside->ncontacts(), 0);
    for (const HMolecularContact& c : *inside->contacts()) {
        EXPECT_FALSE(c->intermolecular());
        EXPECT_EQ(c->molecule_from(), c->molecule_to());
        EXPECT_EQ(inside->molecule(0)->bond_index(c->atom_from(), c->atom_to()), -1);
    }

    // Both: the intramolecular contacts first, then those to images.
    const DistanceCriterion both(3.6, 0.5, INTRA_AND_INTERMOLECULAR, 2, 999, false);
    const HCrystal mixed = maker->create_nonbonded_fill(0, both);
    ASSERT_GT(mixed->ncontacts(), inside->ncontacts());
    EXPECT_FALSE((*mixed->contacts())[0]->intermolecular());
    EXPECT_TRUE(mixed->contacts()->back()->intermolecular());
}

TEST(CrystalMakerNonbonded, EmptyGroupsAndSitelessMoleculesGiveEmptyCrystals) {
    const Cell c = cell_of(molcryst_test::p21_c());
    HMolecule siteless = molecule("C C1; O O1", "C1-O1");
    HCrystalMaker maker = maker_of(c, {at_frac(c, "C C1 0.1 0.1 0.1"), siteless});
    const VdWCriterion criterion(0.5, -5.0, INTERMOLECULAR, 1, 999, false);
    const HCrystal lone = maker->create_nonbonded_fill(1, criterion);
    ASSERT_EQ(lone->nmolecules(), 1);
    EXPECT_EQ(lone->molecule(0)->natoms(), 0);
    EXPECT_EQ(lone->ncontacts(), 0);
    EXPECT_EQ(maker->create_nonbonded_molecule(1, criterion)->ncontacts(), 0);
    // No partner atoms, or only siteless ones: an empty crystal.
    EXPECT_EQ(maker->create_nonbonded_fill(0, {0}, 0, {}, criterion)->nmolecules(), 0);
    EXPECT_EQ(maker->create_nonbonded_fill(0, {0}, 1, {0, 1}, criterion)->nmolecules(), 0);
    EXPECT_EQ(maker->create_nonbonded_group(0, {}, 0, {0}, criterion)->nmolecules(), 0);
    EXPECT_THROW(maker->create_nonbonded_fill(0, {5}, criterion), std::out_of_range);
    // The whole-crystal forms run over every molecule.
    EXPECT_EQ(maker->create_nonbonded_fill(criterion)->ncontacts(), maker->create_nonbonded_fill(0, criterion)->ncontacts());
}

TEST(CrystalMakerNonbonded, MoleculeOnAnInversionCentreIsNotItsOwnPartner) {
    // A C-C unit across the centre at the origin of P-1: its image is itself.
    const Cell c = cell_of(molcryst_test::p_1bar());
    HCrystalMaker maker = maker_of(c, {at_frac(c, "C C1 0.06 0.02 0.01; C C2 -0.06 -0.02 -0.01", "C1-C2")});
    tag_atoms(*maker);
    maker->molecule(0)->atom(1)->set_symmtag(0);  // the second atom is the image of the first
    EXPECT_EQ(maker->symmetrize_atom_indexes(0, {0}), (std::vector<int>{0, 1}));
    EXPECT_EQ(maker->symmetrize_atom_indexes(0, {1, 0}), (std::vector<int>{0, 1}));  // found by scanning the molecule

    const DistanceCriterion criterion(6.0, 0.5, INTERMOLECULAR, 1, 999, false);
    const HCrystal whole = maker->create_nonbonded_molecule(0, criterion);
    // Only lattice neighbours stand around it, never the inverted copy of itself.
    for (int k = 1; k < whole->nmolecules(); ++k) {
        const Point p = whole->molecule(k)->centroid();
        const Point f = c.fractional(p);
        EXPECT_NEAR(std::fabs(f[0] - std::round(f[0])) + std::fabs(f[1] - std::round(f[1])) +
                        std::fabs(f[2] - std::round(f[2])),
                    0.0, 1e-6);
        EXPECT_FALSE(equals(f, Point(0, 0, 0), 1e-6));
    }
    EXPECT_EQ(sorted_contacts(*whole, true), walk_all_images(*maker, 0, 0.5, 6.0));
}

TEST(CrystalMakerNonbonded, HelpersPruneSelectAndCarryContacts) {
    const Cell c = cell_of(molcryst_test::p_1bar());
    HCrystalMaker maker = maker_of(c, {at_frac(c, "C C1 0.1 0.1 0.1; O O1 0.2 0.1 0.1", "C1-O1")});
    tag_atoms(*maker);
    const HMolecule central = maker->molecule(0);
    const HMolecule image = central->create_molecule(CrystalSymmetryTransformation(c.spacegroup().operators()[1]), c);
    const HMolecule same = HMolecule(new Molecule3d(*central));
    vector_HMolecularContact contacts{
        HMolecularContact(new MolecularContact(central, 0, image, 1, 0)),
        HMolecularContact(new MolecularContact(central, 1, same, 0, 0)),
        HMolecularContact(new MolecularContact(central, 0, image, 0, 0))};
    const std::vector<Point> points = CrystalMaker::create_points(*central);
    EXPECT_EQ(maker->prune_contacts(points, contacts, DistanceCriterion(3, 0, INTERMOLECULAR, 1, 9, false))->size(), 2u);
    EXPECT_EQ(maker->prune_contacts(points, contacts, DistanceCriterion(3, 0, INTRAMOLECULAR, 1, 9, false))->size(), 1u);
    EXPECT_EQ(maker->prune_contacts(points, contacts, DistanceCriterion(3, 0, INTRA_AND_INTERMOLECULAR, 1, 9, false))
                  ->size(),
              3u);

    // The to atoms in first-seen order; a group contact (type -1) gives its group.
    contacts.push_back(HMolecularContact(new MolecularContact(central, 0, {0}, image, -1, {1, 0}, -1)));
    std::map<HMolecule, std::vector<int> > chosen = maker->create_contact_atom_selections(contacts, false);
    EXPECT_EQ(chosen[image], (std::vector<int>{1, 0}));
    EXPECT_EQ(chosen[same], (std::vector<int>{0}));
    EXPECT_EQ(maker->create_contact_atom_selections({contacts[0]}, true)[image], std::vector<int>{1});

    // Carried over to cut molecules by tag and place; the group contact gains
    // an anchor; a contact whose molecule was not replaced is dropped.
    MoleculeSubset cut(image);
    cut.select_atom_indices({1});
    const HMolecule piece = cut.create_molecule();
    std::map<HMolecule, HMolecule> replaced{{central, central}, {image, piece}};
    const Hvector_HMolecularContact carried = maker->update_contact_list(contacts, replaced);
    ASSERT_EQ(carried->size(), 2u);
    EXPECT_EQ((*carried)[0]->molecule_to(), piece);
    EXPECT_EQ((*carried)[0]->atom_to(), 0);
    EXPECT_EQ((*carried)[1]->atom_from(), 0);
    EXPECT_EQ((*carried)[1]->atom_to(), 0);
    EXPECT_EQ((*carried)[1]->group_to(), std::vector<int>{0});

    // The region: the central box widened by the reach and 1e-05 on every side.
    const THandle<TransformedSolid> region = CrystalMakerHelpers::build_nonbonded_solid_region(points, c, 2.0);
    const Box box = region->fractional_box(c);
    EXPECT_TRUE(region->contains(c, c.fractional(Point(central->atom(0)->site()->orth() + Vector<double, 3>(-1.99, 0, 0)))));
    EXPECT_FALSE(region->contains(c, c.fractional(Point(central->atom(0)->site()->orth() + Vector<double, 3>(-2.01, 0, 0)))));
    EXPECT_FALSE(box.empty());
    EXPECT_THROW(CrystalMakerHelpers::build_nonbonded_solid_region(points, c, INFINITY), std::invalid_argument);
}

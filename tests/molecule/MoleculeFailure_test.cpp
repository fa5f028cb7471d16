// Failure paths of whole-molecule operations: a failed copy, assign or merge
// leaves the molecule as it was, and molecules made from views hold atoms of
// their own.
#include "molcryst/molecule/Molecule3d.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "common/ArchiveBytes.h"
#include "molcryst/molecule/Atom3d.h"
#include "molcryst/molecule/Bond3d.h"
#include "molcryst/molecule/MoleculeSubset.h"
#include "molcryst/molecule/ProxyAtom.h"
#include "molcryst/molecule/Site.h"

using namespace molcryst;
using molcryst::testing::archive_of;
using molcryst::testing::bytes_of;

namespace {

HAtom atom_at(const Element& e, const std::string& label, double x, double y, double z) {
    return HAtom(new Atom3d(e, label, HSite(new Site(Point(x, y, z)))));
}

// O1 and C1 with sites, H1 without: O1-C1, O1-H1.
HMolecule hydroxyl() {
    Molecule3d* m = new Molecule3d();
    HMolecule held(m);
    m->add(atom_at(Element::O, "O1", 0, 0, 0));
    m->add(atom_at(Element::C, "C1", 1.4, 0, 0));
    m->add(HAtom(new Atom3d(Element::H, "H1", HSite())));
    m->add(HBond(new Bond3d(SINGLE_BOND)), 0, 1);
    m->add(HBond(new Bond3d(SINGLE_BOND)), 0, 2);
    return held;
}

bool is_free(const HAtom& a) {
    try {
        a->index();
    } catch (const std::runtime_error&) {
        return true;
    }
    return false;
}

}  // namespace

// A molecule made from a view by indices must not hold proxies: they stay
// live views of the parent and leave nothing in an archive.
TEST(MoleculeFailure, CreateMoleculeFromAViewGivesAtomsOfItsOwnWithOrWithoutSites) {
    HMolecule parent = hydroxyl();
    MoleculeSubset view(parent);
    view.select_all();
    HMolecule made = view.create_molecule(std::vector<int>{0, 2});
    ASSERT_EQ(made->natoms(), 2);
    for (int i = 0; i < made->natoms(); ++i)
        EXPECT_EQ(handle_dynamic_cast<ProxyAtom>(made->atom(i)).unhand(), nullptr) << i;

    parent->atom(2)->set_label("H9");
    EXPECT_EQ(made->atom(1)->label(), "H1");

    Archive ar = Archive::temporary();
    made->write(ar);
    Archive in = archive_of(bytes_of(ar));
    Molecule3d back;
    EXPECT_NO_THROW(back.read(in));
    EXPECT_EQ(back.natoms(), 2);
}

// copy() from a view whose proxy has been marked dead throws; the target
// keeps its atoms.
TEST(MoleculeFailure, FailedCopyLeavesTheTargetAsItWas) {
    HMolecule parent = hydroxyl();
    MoleculeSubset view(parent);
    view.select_all();
    handle_dynamic_cast<ProxyAtom>(view.atom(1))->set_parent_atom(HAtom());

    Molecule3d target(*hydroxyl());
    const Molecule3d before(target);
    EXPECT_THROW(target.copy(view), std::runtime_error);
    EXPECT_TRUE(target == before);
}

// assign() with a bond to an atom that isn't there throws; the molecule keeps
// its atoms and the atoms offered stay free.
TEST(MoleculeFailure, FailedAssignLeavesTheMoleculeAndTheAtomsAlone) {
    Molecule3d m(*hydroxyl());
    const Molecule3d before(m);
    Hvector_HAtom atoms(new std::vector<HAtom>{atom_at(Element::N, "N1", 0, 0, 0), atom_at(Element::N, "N2", 1, 0, 0)});
    Hvector_HBondData bonds(new std::vector<THandle<BondData> >{THandle<BondData>(new BondData(0, 5, SINGLE_BOND))});
    EXPECT_ANY_THROW(m.assign(atoms, bonds));
    EXPECT_TRUE(m == before);
    EXPECT_TRUE(is_free((*atoms)[0]));
    EXPECT_TRUE(is_free((*atoms)[1]));
}

// Two bonded atoms of the incoming molecule that both match one atom here:
// either the bond is skipped, or the merge fails and changes nothing.
TEST(MoleculeFailure, MergeOfTwoBondedAtomsOntoOneAtomIsAllOrNothing) {
    Molecule3d here;
    here.add(atom_at(Element::O, "O1", 0, 0, 0));
    HMolecule incoming(new Molecule3d());
    incoming->add(atom_at(Element::Na, "Na1", 5, 0, 0));
    incoming->add(atom_at(Element::O, "O1a", 0, 0, 0));
    incoming->add(atom_at(Element::O, "O1b", 0, 0, 2e-6));
    incoming->add(HBond(new Bond3d(SINGLE_BOND)), 1, 2);
    bool threw = false;
    try {
        here.merge(incoming);
    } catch (const std::exception&) {
        threw = true;
    }
    if (threw) {
        EXPECT_EQ(here.natoms(), 1);
    } else {
        EXPECT_EQ(here.natoms(), 2);
        EXPECT_EQ(here.nbonds(), 0);
    }
}

// Views may not stand for themselves: such a cycle of handles would never be
// freed, and a proxy of itself would forward for ever.
TEST(MoleculeFailure, ViewsAndProxiesRefuseToStandForThemselves) {
    HMolecule parent = hydroxyl();
    HMolecule s1(new MoleculeSubset(parent));
    MoleculeSubset& view = static_cast<MoleculeSubset&>(*s1);
    view.select_all();
    MoleculeSubset view_of_view(s1);
    view_of_view.select_all();
    EXPECT_THROW(view = view_of_view, std::invalid_argument);
    EXPECT_EQ(view.parent(), parent);
    EXPECT_EQ(view.natoms(), 3);

    THandle<ProxyAtom> proxy = handle_dynamic_cast<ProxyAtom>(view.atom(0));
    EXPECT_THROW(proxy->set_parent_atom(proxy), std::invalid_argument);
    EXPECT_THROW(proxy->set_parent_atom(view_of_view.atom(0)), std::invalid_argument);  // a proxy of this proxy
    EXPECT_EQ(proxy->parent_atom(), parent->atom(0));
    EXPECT_EQ(proxy->label(), "O1");
}

// A molecule holding a view's atoms cannot be written: it would leave an
// unreadable record, so nothing is written at all.
TEST(MoleculeFailure, WritingAViewsAtomsIsRefused) {
    HMolecule parent = hydroxyl();
    MoleculeSubset view(parent);
    view.select_all();
    Molecule3d holder;
    holder.add(view.atom(0)->clone());
    Archive ar = Archive::temporary();
    EXPECT_THROW(holder.write(ar), std::runtime_error);
    EXPECT_TRUE(bytes_of(ar).empty());
}

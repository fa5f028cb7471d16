// SYBYL typing of drawn molecules (bond orders known), of the same molecules
// without bond orders (geometry decides), of lone atoms and of molecules that
// mix the two; the carboxylate test under both protonation treatments; and
// the typing queries of a molecule. Expected types are worked out from the
// rules by hand.
#include "molcryst/molecule/SybylAtomTyper.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "TestMolecules.h"

using namespace molcryst;
using namespace molcryst::testing;

namespace {

const SybylAtomTyper known(SybylAtomTyper::HYDROGENS_KNOWN);
const SybylAtomTyper missing(SybylAtomTyper::HYDROGENS_MAY_BE_MISSING);

// "label type, ..." over the atoms other than hydrogen, in index order.
std::string heavy_atom_types(const HMolecule3d& m, const SybylAtomTyper& typer = known) {
    std::string out;
    for (int i = 0; i < m->natoms(); ++i) {
        HAtom a = m->atom(i);
        if (a->element().atomic_number() == 1) continue;
        if (!out.empty()) out += ", ";
        out += a->label() + " " + typer.atom_type(*a);
    }
    return out;
}

// "label1-label2 type, ..." over the bonds without a hydrogen end, in bond order.
std::string heavy_bond_types(const HMolecule3d& m, const SybylAtomTyper& typer = known) {
    std::string out;
    for (int i = 0; i < m->nbonds(); ++i) {
        HBond b = m->bond(i);
        if (b->atom1()->element().atomic_number() == 1 || b->atom2()->element().atomic_number() == 1) continue;
        if (!out.empty()) out += ", ";
        out += b->atom1()->label() + "-" + b->atom2()->label() + " " + typer.bond_type(*b);
    }
    return out;
}

std::string type_of(const HMolecule3d& m, const std::string& label, const SybylAtomTyper& typer = known) {
    return typer.atom_type(*atom_labelled(*m, label));
}

std::string bond_type_of(const HMolecule3d& m, const std::string& a, const std::string& b,
                         const SybylAtomTyper& typer = known) {
    return typer.bond_type(*bond_between(*m, a, b));
}

HMolecule3d unknown(const HMolecule3d& m) { return with_all_bonds(*m); }

// The typer's average bond angle in degrees; -1 where it finds none, when
// the angle it gives must be 0.
double average_angle(const HMolecule3d& m, const std::string& label) {
    bool ok = false;
    const double degrees = known.average_bond_angle(*atom_labelled(*m, label), ok).degrees();
    if (ok) return degrees;
    EXPECT_EQ(degrees, 0.0) << label;
    return -1;
}

// A typer that answers one word for everything, under a chosen name.
struct StubTyper : AtomTyper {
    explicit StubTyper(const std::string& name) : name_(name) {}
    std::string atom_type(const Atom&) const override { return "stub"; }
    std::string bond_type(const Bond&) const override { return "stub"; }
    std::string name() const override { return name_; }
    std::string name_;
};

}  // namespace

TEST(SybylAtomTyper, BondOrderRulesOnDrawnMolecules) {
    HMolecule3d m = acetamide();
    EXPECT_EQ(heavy_atom_types(m), "C2 C.2, C1 C.3, O1 O.2, N1 N.am");
    EXPECT_EQ(heavy_bond_types(m), "C2-C1 1, C2-O1 2, C2-N1 1");
    EXPECT_EQ(type_of(m, "H1"), "H");

    EXPECT_EQ(heavy_atom_types(thioacetamide()), "C2 C.2, C1 C.3, S1 S.2, N1 N.am");
    // The nitro nitrogen is planar by its double bond; neither oxygen is a carboxylate's.
    EXPECT_EQ(heavy_atom_types(nitromethane()), "C1 C.3, N1 N.pl3, O1 O.2, O2 O.2");
    EXPECT_EQ(heavy_atom_types(ammonium()), "N1 N.4");

    EXPECT_EQ(heavy_atom_types(acetonitrile()), "C1 C.3, C2 C.1, N1 N.1");
    EXPECT_EQ(heavy_atom_types(methyl_isocyanide()), "C1 C.3, N1 N.1, C2 C.1");
    // Single and double: not sp; double and double: sp; the terminal N has a
    // nitrogen neighbour, so no carbon to make it planar.
    EXPECT_EQ(heavy_atom_types(methyl_azide()), "C1 C.3, N1 N.2, N2 N.1, N3 N.3");

    EXPECT_EQ(heavy_atom_types(guanidinium()), "C1 C.cat, N1 N.pl3, N2 N.pl3, N3 N.pl3");
    // A nitro nitrogen among the three makes the carbon no cation.
    EXPECT_EQ(heavy_atom_types(guanidinium(true)), "C1 C.2, N1 N.pl3, N2 N.pl3, N3 N.pl3, O1 O.2, O2 O.2");

    m = benzene();
    EXPECT_EQ(heavy_atom_types(m), "C1 C.ar, C2 C.ar, C3 C.ar, C4 C.ar, C5 C.ar, C6 C.ar");
    EXPECT_EQ(heavy_bond_types(m), "C1-C2 ar, C2-C3 ar, C3-C4 ar, C4-C5 ar, C5-C6 ar, C6-C1 ar");
    EXPECT_EQ(heavy_atom_types(benzene(false)), "C1 C.2, C2 C.2, C3 C.2, C4 C.2, C5 C.2, C6 C.2");
    EXPECT_EQ(heavy_atom_types(benzene(true, true)), "N1 N.ar, C2 C.ar, C3 C.ar, C4 C.ar, C5 C.ar, C6 C.ar");
    EXPECT_EQ(type_of(benzene(false, true), "N1"), "N.2");

    // An amine on a vinyl group: planar geometry makes it N.pl3, pyramidal
    // N.3, unless a hydrogen on it settles N.pl3 whatever the geometry.
    EXPECT_EQ(type_of(vinylamine(false), "N1"), "N.3");
    EXPECT_EQ(type_of(vinylamine(false, true), "N1"), "N.pl3");
    EXPECT_EQ(heavy_atom_types(vinylamine(true)), "N1 N.pl3, C1 C.3, C2 C.3, C3 C.2, C4 C.2");
}

TEST(SybylAtomTyper, BondOrderRulesForAtomsShortOfHydrogens) {
    // Amide N with one hydrogen: still an amide; with none: one bond to a C.2.
    HMolecule3d m = acetamide();
    m->remove(atom_labelled(*m, "H1"));
    EXPECT_EQ(type_of(m, "N1"), "N.am");
    m->remove(atom_labelled(*m, "H2"));
    EXPECT_EQ(type_of(m, "N1"), "N.pl3");
    // A carbon with three single bonds is C.2, and so is one with four bonds not all single.
    m->remove(atom_labelled(*m, "H3"));
    EXPECT_EQ(type_of(m, "C1"), "C.2");
    m = acetonitrile();
    bond_between(*m, "C1", "H1")->set_type(DOUBLE_BOND);
    EXPECT_EQ(type_of(m, "C1"), "C.2");

    // A nitrogen on an aromatic carbon alone is planar, on an sp3 carbon not.
    m = benzene();
    m->remove(atom_labelled(*m, "H1"));
    m->add(atom_at("N", "N7", 2.79, 0.0, 0.0));
    add_bonds(*m, "C1-N7");
    EXPECT_EQ(type_of(m, "N7"), "N.pl3");
    m = nitromethane();
    m->remove(atom_labelled(*m, "O1"));
    m->remove(atom_labelled(*m, "O2"));
    EXPECT_EQ(type_of(m, "N1"), "N.3");

    // NH, NH2 and NH3 fragments of ammonium: N.2 by the hydrogen count, N.2
    // as the last resort for two single bonds, N.3 for three.
    m = ammonium();
    m->remove(atom_labelled(*m, "H4"));
    EXPECT_EQ(type_of(m, "N1"), "N.3");
    m->remove(atom_labelled(*m, "H3"));
    EXPECT_EQ(type_of(m, "N1"), "N.2");
    m->remove(atom_labelled(*m, "H2"));
    EXPECT_EQ(type_of(m, "N1"), "N.2");

    // A thiol sulphur without its hydrogen has one single bond: S.3.
    m = dimethyl_sulphide();
    m->remove(atom_labelled(*m, "C2"));
    EXPECT_EQ(type_of(m, "S1"), "S.3");
}

TEST(SybylAtomTyper, CarboxylateUnderBothProtonationTreatments) {
    for (const SybylAtomTyper* t : {&known, &missing}) {
        SCOPED_TRACE(t->oxygen_treatment());
        // The hydroxyl oxygen has two bonds and is no carboxylate's; nor,
        // then, is the carbonyl oxygen.
        HMolecule3d acid = acetic_acid();
        EXPECT_EQ(heavy_atom_types(acid, *t), "C2 C.2, C1 C.3, O1 O.2, O2 O.3");
        EXPECT_EQ(heavy_atom_types(unknown(acid), *t), "C2 C.2, C1 C.3, O1 O.2, O2 O.3");
        EXPECT_EQ(heavy_bond_types(unknown(acid), *t), "C2-C1 1, C2-O1 2, C2-O2 1");
        // Without the hydrogen the acid looks like its anion.
        acid->remove(atom_labelled(*acid, "H6"));
        EXPECT_EQ(heavy_atom_types(acid, *t), "C2 C.2, C1 C.3, O1 O.co2, O2 O.co2");

        HMolecule3d anion = acetate();
        EXPECT_EQ(heavy_atom_types(anion, *t), "C2 C.2, C1 C.3, O1 O.co2, O2 O.co2");
        EXPECT_EQ(heavy_atom_types(unknown(anion), *t), "C2 C.2, C1 C.3, O1 O.co2, O2 O.co2");
        EXPECT_EQ(heavy_bond_types(unknown(anion), *t), "C2-C1 1, C2-O1 un, C2-O2 un");

        // A phosphonate's terminal oxygens count under both treatments.
        HMolecule3d phosphonate = methanesulphonate();
        atom_labelled(*phosphonate, "S1")->set_element(Element("P"));
        EXPECT_EQ(heavy_atom_types(phosphonate, *t), "S1 P.3, C1 C.3, O1 O.co2, O2 O.co2, O3 O.co2");

        // Two terminal oxygens on a sulphone are not enough under either.
        EXPECT_EQ(heavy_atom_types(dimethyl_sulphone(), *t), "S1 S.o2, C1 C.3, C2 C.3, O1 O.2, O2 O.2");
    }
    // Three terminal oxygens on a four-bonded sulphur: a carboxylate-like
    // oxygen only when hydrogens are known, drawn or not.
    HMolecule3d m = methanesulphonate();
    EXPECT_EQ(heavy_atom_types(m, known), "S1 S.2, C1 C.3, O1 O.co2, O2 O.co2, O3 O.co2");
    EXPECT_EQ(heavy_atom_types(m, missing), "S1 S.2, C1 C.3, O1 O.2, O2 O.2, O3 O.2");
    EXPECT_EQ(heavy_atom_types(unknown(m), known), "S1 S.o2, C1 C.3, O1 O.co2, O2 O.co2, O3 O.co2");
    EXPECT_EQ(heavy_atom_types(unknown(m), missing), "S1 S.o2, C1 C.3, O1 O.2, O2 O.2, O3 O.2");
    EXPECT_TRUE(known.is_carboxylate(*atom_labelled(*m, "O3")));
    EXPECT_FALSE(missing.is_carboxylate(*atom_labelled(*m, "O3")));
    // Drawn with single bonds only, the sulphur is S.3.
    EXPECT_EQ(type_of(with_all_bonds(*m, SINGLE_BOND), "S1"), "S.3");
}

TEST(SybylAtomTyper, SulphurByOxygensAndBonds) {
    EXPECT_EQ(heavy_atom_types(dimethyl_sulphoxide()), "S1 S.o, C1 C.3, C2 C.3, O1 O.2");
    EXPECT_EQ(heavy_atom_types(dimethyl_sulphide()), "S1 S.3, C1 C.3, C2 C.3");

    HMolecule3d m = unknown(dimethyl_sulphone());
    EXPECT_EQ(heavy_atom_types(m), "S1 S.o2, C1 C.3, C2 C.3, O1 O.2, O2 O.2");
    EXPECT_EQ(heavy_bond_types(m), "S1-C1 1, S1-C2 1, S1-O1 un, S1-O2 un");
    EXPECT_EQ(heavy_atom_types(unknown(dimethyl_sulphoxide())), "S1 S.o, C1 C.3, C2 C.3, O1 O.2");
    EXPECT_EQ(heavy_atom_types(unknown(dimethyl_sulphide())), "S1 S.3, C1 C.3, C2 C.3");
    EXPECT_EQ(heavy_atom_types(unknown(thioacetamide())), "C2 C.2, C1 C.3, S1 S.2, N1 N.am");
}

TEST(SybylAtomTyper, GeometryRulesOnMoleculesWithoutBondTypes) {
    HMolecule3d m = unknown(acetamide());
    EXPECT_EQ(heavy_atom_types(m), "C2 C.2, C1 C.3, O1 O.2, N1 N.am");
    EXPECT_EQ(heavy_bond_types(m), "C2-C1 1, C2-O1 2, C2-N1 un");

    // A planar nitro or guanidinium nitrogen stays N.3: the mean angle never
    // reaches the 350-degree limit.
    m = unknown(nitromethane());
    EXPECT_EQ(heavy_atom_types(m), "C1 C.3, N1 N.3, O1 O.2, O2 O.2");
    EXPECT_EQ(heavy_bond_types(m), "C1-N1 1, N1-O1 1, N1-O2 1");
    m = unknown(guanidinium());
    EXPECT_EQ(heavy_atom_types(m), "C1 C.2, N1 N.3, N2 N.3, N3 N.3");
    EXPECT_EQ(heavy_bond_types(m), "C1-N1 1, C1-N2 1, C1-N3 1");
    EXPECT_EQ(heavy_atom_types(unknown(vinylamine(true))), "N1 N.3, C1 C.3, C2 C.3, C3 C.2, C4 C.2");
    EXPECT_EQ(heavy_atom_types(unknown(ammonium())), "N1 N.4");

    m = unknown(acetonitrile());
    EXPECT_EQ(heavy_atom_types(m), "C1 C.3, C2 C.1, N1 N.1");
    EXPECT_EQ(heavy_bond_types(m), "C1-C2 1, C2-N1 un");
    EXPECT_EQ(heavy_atom_types(unknown(methyl_isocyanide())), "C1 C.3, N1 N.1, C2 C.1");
    // Bent at N1 (115 degrees), nearly straight at N2 (173), a short end at N3.
    EXPECT_EQ(heavy_atom_types(unknown(methyl_azide())), "C1 C.3, N1 N.2, N2 N.1, N3 N.1");

    m = unknown(benzene());
    EXPECT_EQ(heavy_atom_types(m), "C1 C.2, C2 C.2, C3 C.2, C4 C.2, C5 C.2, C6 C.2");
    EXPECT_EQ(heavy_bond_types(m), "C1-C2 un, C2-C3 un, C3-C4 un, C4-C5 un, C5-C6 un, C6-C1 un");
    EXPECT_EQ(heavy_atom_types(unknown(benzene(true, true))), "N1 N.2, C2 C.2, C3 C.2, C4 C.2, C5 C.2, C6 C.2");
}

TEST(SybylAtomTyper, MetalComplexWithNitrogenAndSulphurLigands) {
    HMolecule3d m = iron_complex();
    // Ammine N.3; nitrile N.1 by its triple bond; the thiolate's one
    // non-metal bond is single and it has two bonds: S.2; nitrido and imido
    // nitrogens by the order of their bond to the metal.
    EXPECT_EQ(heavy_atom_types(m), "Fe1 Fe, N1 N.3, Cl1 Cl, N2 N.1, C1 C.1, C2 C.3, S1 S.2, N3 N.1, N4 N.2, C3 C.3");
    EXPECT_EQ(heavy_bond_types(m),
              "Fe1-N1 1, Fe1-Cl1 1, Fe1-N2 1, N2-C1 3, C1-C2 1, Fe1-S1 1, S1-C3 1, Fe1-N3 3, Fe1-N4 2");

    // By geometry: the metals are set aside, so the nitrido N has no
    // neighbour left (N.1) and the imido N one at 1.01 (N.1).
    m = unknown(m);
    EXPECT_EQ(heavy_atom_types(m), "Fe1 Fe, N1 N.3, Cl1 Cl, N2 N.1, C1 C.1, C2 C.3, S1 S.2, N3 N.1, N4 N.1, C3 C.3");
    EXPECT_EQ(heavy_bond_types(m),
              "Fe1-N1 1, Fe1-Cl1 1, Fe1-N2 un, N2-C1 un, C1-C2 1, Fe1-S1 un, S1-C3 1, Fe1-N3 un, Fe1-N4 un");

    // A thiolate bridging two metals has three bonds: S.3.
    m = iron_complex();
    m->add(atom_at("Fe", "Fe2", 1.6, -3.6, 0.0));
    add_bonds(*m, "S1-Fe2");
    EXPECT_EQ(type_of(m, "S1"), "S.3");
}

TEST(SybylAtomTyper, MixedKnownAndUnknownBonds) {
    // Acetamide with C2-C1 and C2-N1 of unknown type: C2, C1 and N1 go to
    // the geometry rules, O1 keeps the bond-order rules.
    HMolecule3d m = acetamide();
    bond_between(*m, "C2", "C1")->set_type(UNKNOWN_BOND);
    bond_between(*m, "C2", "N1")->set_type(UNKNOWN_BOND);
    EXPECT_EQ(known.is_atom_2d_ruled(*atom_labelled(*m, "C2")), 1);
    EXPECT_EQ(known.is_atom_2d_ruled(*atom_labelled(*m, "O1")), 0);
    EXPECT_EQ(heavy_atom_types(m), "C2 C.2, C1 C.3, O1 O.2, N1 N.am");

    // An unknown bond between atoms with other bonds known is "un", even
    // where the geometry rule would give "1".
    HBond cc = bond_between(*m, "C2", "C1");
    EXPECT_EQ(known.bond_type(*cc), "un");
    EXPECT_EQ(known.calc_bond_type(*cc), "un");
    EXPECT_EQ(known.calc_3d_ruled_bond_type(*cc), "1");
    EXPECT_EQ(bond_type_of(m, "C2", "O1"), "2");
    EXPECT_EQ(bond_type_of(m, "N1", "H1"), "1");

    // Once every bond at both ends is unknown, the geometry rule decides.
    bond_between(*m, "N1", "H1")->set_type(UNKNOWN_BOND);
    EXPECT_EQ(bond_type_of(m, "N1", "H1"), "un");  // N1-H2 is still single
    bond_between(*m, "N1", "H2")->set_type(UNKNOWN_BOND);
    EXPECT_EQ(bond_type_of(m, "N1", "H1"), "1");

    // The geometry rule read directly, on bonds of known type.
    m = acetamide();
    EXPECT_EQ(known.calc_3d_ruled_bond_type(*bond_between(*m, "C2", "O1")), "2");
    EXPECT_EQ(known.calc_bond_type(*bond_between(*m, "C2", "O1")), "un");
    m = benzene();
    EXPECT_EQ(known.calc_3d_ruled_bond_type(*bond_between(*m, "C1", "C2")), "un");
    EXPECT_EQ(known.calc_3d_ruled_bond_type(*bond_between(*m, "C1", "H1")), "1");
}

TEST(SybylAtomTyper, TerminalAtomsByDistance) {
    struct Case {
        double d;
        const char* carbon;
        const char* bond;
    };
    // The limits are inclusive: 1.22 is still sp, 1.41 still sp2.
    for (const Case& c : {Case{1.20, "C.1", "un"}, Case{1.22, "C.1", "un"}, Case{1.30, "C.2", "un"},
                          Case{1.41, "C.2", "un"}, Case{1.50, "C.3", "1"}}) {
        SCOPED_TRACE(c.d);
        HMolecule3d m = molecule("C C1 0 0 0; C C2 " + std::to_string(c.d) + " 0 0", "C1~C2");
        EXPECT_EQ(heavy_atom_types(m), std::string("C1 ") + c.carbon + ", C2 " + c.carbon);
        EXPECT_EQ(heavy_bond_types(m), std::string("C1-C2 ") + c.bond);
    }
    // A terminal nitrogen: N.1 up to 1.2, else N.3, and N.3 without sites.
    HMolecule3d m = molecule("C C1 0 0 0; N N1 1.2 0 0; N N2 -1.25 0 0; C C3; N N3", "C1~N1 C1~N2 C3~N3");
    EXPECT_EQ(type_of(m, "N1"), "N.1");
    EXPECT_EQ(type_of(m, "N2"), "N.3");
    EXPECT_EQ(type_of(m, "N3"), "N.3");
    // A terminal carbon without a site has no distance to read.
    EXPECT_THROW(type_of(m, "C3"), std::logic_error);
}

TEST(SybylAtomTyper, LoneAtomsAndOtherElements) {
    std::string atoms;
    for (const char* e : {"N", "Fe", "C", "O", "S", "H", "D", "P", "Ti", "Cr", "Co", "Ru", "Na", "Cl", "X"})
        atoms += std::string(e) + " " + e + "1;";
    HMolecule3d m = molecule(atoms);
    EXPECT_EQ(known.is_atom_2d_ruled(*m->atom(0)), 2);
    EXPECT_EQ(heavy_atom_types(m),
              "N1 N.3, Fe1 Fe, C1 C.3, O1 O.3, S1 S.3, P1 P.3, Ti1 Ti.th, Cr1 Cr.th, Co1 Co.oh, Ru1 Ru.oh, "
              "Na1 Na, Cl1 Cl, X1 X");
    EXPECT_EQ(type_of(m, "H1"), "H");
    EXPECT_EQ(type_of(m, "D1"), "H");

    // Titanium and chromium are octahedral above four bonds.
    m = molecule("Ti Ti1; Cr Cr1; F F1; F F2; F F3; F F4; F F5; F F6; Cl Cl1; Cl Cl2; Cl Cl3; Cl Cl4",
                 "Ti1-F1 Ti1-F2 Ti1-F3 Ti1-F4 Ti1-F5 Ti1-F6 Cr1-Cl1 Cr1-Cl2 Cr1-Cl3 Cr1-Cl4");
    EXPECT_EQ(type_of(m, "Ti1"), "Ti.oh");
    EXPECT_EQ(type_of(m, "Cr1"), "Cr.th");
    m->remove(atom_labelled(*m, "F6"));
    m->remove(atom_labelled(*m, "F5"));
    EXPECT_EQ(type_of(m, "Ti1"), "Ti.th");
    add_bonds(*m, "Cr1-F4");
    EXPECT_EQ(type_of(m, "Cr1"), "Cr.oh");
}

TEST(SybylAtomTyper, BondTypeOfEveryKind) {
    HMolecule3d m = molecule("Cr Cr1; Cr Cr2; F F1; Br Br1; C C1; C C2; C C3; C C4; C C5",
                             "Cr1-Cr2 Cr1-F1 Cr2-Br1 C1-C2 C2-C3 C3#C4 C4=C5");
    int i = 0;
    for (BondType t : {QUADRUPLE_BOND, POLYMERIC_BOND, DELOCALISED_BOND, RESERVED_BOND, PI_BOND})
        m->bond(i++)->set_type(t);
    EXPECT_EQ(heavy_bond_types(m), "Cr1-Cr2 un, Cr1-F1 un, Cr2-Br1 un, C1-C2 un, C2-C3 un, C3-C4 3, C4-C5 2");
    // Fluorine and bromine ends make a single bond by the geometry rule.
    EXPECT_EQ(known.calc_3d_ruled_bond_type(*bond_between(*m, "Cr1", "F1")), "1");
    EXPECT_EQ(known.calc_3d_ruled_bond_type(*bond_between(*m, "Cr2", "Br1")), "1");
    EXPECT_EQ(known.calc_3d_ruled_bond_type(*bond_between(*m, "Cr1", "Cr2")), "un");
}

TEST(SybylAtomTyper, AverageBondAngle) {
    HMolecule3d acid = acetic_acid();
    EXPECT_NEAR(average_angle(acid, "O2"), 107.0, 0.02);
    EXPECT_NEAR(average_angle(acid, "C2"), 120.0, 0.02);  // 124, 112 and 124 degrees
    // The metal counts among the neighbours of the ammine nitrogen.
    EXPECT_NEAR(average_angle(iron_complex(), "N1"), 109.47, 0.05);
    EXPECT_EQ(average_angle(acid, "O1"), -1);  // one bond: no angle

    // Neighbours without sites are left out of the pairs; an atom without a
    // site, or with no pair of sited neighbours, has no angle.
    HMolecule3d m = molecule(
        "N N1 0 0 0; C C1 1.47 0 0; C C2 0 1.47 0; C C3; C C4 3 3 0; C C5; N N2; C C6 5 0 0;"
        "C C7 5 1.47 0",
        "N1-C1 N1-C2 N1-C3 C4-C3 C4-C5 N2-C6 N2-C7");
    EXPECT_NEAR(average_angle(m, "N1"), 90.0, 1e-9);
    EXPECT_EQ(average_angle(m, "C4"), -1);
    EXPECT_EQ(average_angle(m, "N2"), -1);

    // Without an angle an unsaturated amine falls short of N.pl3.
    HMolecule3d amine = vinylamine(true);
    atom_labelled(*amine, "N1")->set_site(HSite());
    EXPECT_EQ(type_of(amine, "N1"), "N.3");
}

TEST(SybylAtomTyper, MoleculeTypingQueries) {
    HMolecule3d m = unknown(methanesulphonate());
    const int o1 = atom_index(*m, "O1");
    const int so = m->bond_index(atom_index(*m, "S1"), o1);
    const int sc = m->bond_index(atom_index(*m, "S1"), atom_index(*m, "C1"));
    // A new molecule's typer assumes hydrogens may be missing.
    EXPECT_EQ(m->atom_typer()->name(), "SybylAtomTyper");
    EXPECT_EQ(m->custom_atom_type(o1), "O.2");
    EXPECT_EQ(m->atom_sybyl_type(o1), "O.2");

    // The attached typer answers the custom queries; the SYBYL atom query
    // keeps its own typer.
    m->set_atom_typer(HAtomTyper(new SybylAtomTyper(SybylAtomTyper::HYDROGENS_KNOWN)));
    EXPECT_EQ(m->custom_atom_type(o1), "O.co2");
    EXPECT_EQ(m->atom_sybyl_type(o1), "O.2");
    EXPECT_EQ(m->custom_bond_type(so), "un");
    EXPECT_EQ(m->bond_sybyl_type(sc), "1");

    // The SYBYL bond query asks the attached typer when it bears the SYBYL
    // name, and a SYBYL typer of its own otherwise.
    m->set_atom_typer(HAtomTyper(new StubTyper("SybylAtomTyper")));
    EXPECT_EQ(m->bond_sybyl_type(sc), "stub");
    EXPECT_EQ(m->atom_sybyl_type(o1), "O.2");
    m->set_atom_typer(HAtomTyper(new StubTyper("Other")));
    EXPECT_EQ(m->bond_sybyl_type(sc), "1");
    EXPECT_EQ(m->custom_bond_type(sc), "stub");
    EXPECT_EQ(m->custom_atom_type(o1), "stub");
}

// Test helpers: molecules written as text, lookups by label, and a set of
// small molecules with realistic geometry (bond lengths in Angstrom, valence
// angles as in real structures), hydrogens included.
//
// Atoms are written "Element Label x y z" (orthogonal coordinates), or
// "Element Label" for an atom without a site, separated by ';'. Bonds are
// tokens "A-B", one per bond, whose sign gives the type: '-' single,
// '=' double, '#' triple, ':' aromatic, '~' unknown. Molecules are drawn with
// the bond orders a chemist would draw; `with_all_bonds` takes them away.
#ifndef MOLCRYST_TESTS_MOLECULE_TESTMOLECULES_H
#define MOLCRYST_TESTS_MOLECULE_TESTMOLECULES_H

#include <cmath>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "molcryst/geometry/Point.h"
#include "molcryst/molecule/Atom3d.h"
#include "molcryst/molecule/Bond3d.h"
#include "molcryst/molecule/Molecule3d.h"
#include "molcryst/molecule/Site.h"

namespace molcryst {
namespace testing {

/// An atom with a site at an orthogonal position.
inline HAtom atom_at(const Element& e, const std::string& label, double x, double y, double z) {
    return HAtom(new Atom3d(e, label, HSite(new Site(Point(x, y, z)))));
}

/// An atom without a site.
inline HAtom atom_without_site(const Element& e, const std::string& label) {
    return HAtom(new Atom3d(e, label, HSite()));
}

/// The index of the atom labelled `label`; std::invalid_argument if none is.
inline int atom_index(const Molecule& m, const std::string& label) {
    for (int i = 0; i < m.natoms(); ++i)
        if (m.atom(i)->label() == label) return i;
    throw std::invalid_argument("no atom labelled " + label);
}

/// The atom labelled `label`.
inline HAtom atom_labelled(const Molecule& m, const std::string& label) { return m.atom(atom_index(m, label)); }

/// The bond between the atoms labelled `label1` and `label2`.
inline HBond bond_between(const Molecule& m, const std::string& label1, const std::string& label2) {
    HBond b = m.bond(atom_labelled(m, label1), atom_labelled(m, label2));
    if (b.unhand() == nullptr) throw std::invalid_argument("no bond " + label1 + "-" + label2);
    return b;
}

/// The labels of the atoms in index order.
inline std::vector<std::string> labels_of(const Molecule& m) {
    std::vector<std::string> labels;
    for (int i = 0; i < m.natoms(); ++i) labels.push_back(m.atom(i)->label());
    return labels;
}

/// The bonds in index order as "Label1-Label2", space-separated.
inline std::string bonds_of(const Molecule& m) {
    std::string out;
    for (int i = 0; i < m.nbonds(); ++i)
        out += (i == 0 ? "" : " ") + m.bond(i)->atom1()->label() + "-" + m.bond(i)->atom2()->label();
    return out;
}

/// Whether `a` belongs to no molecule.
inline bool is_free(const HAtom& a) { return a->graph_data().graph().unhand() == nullptr; }
inline bool is_free(const HBond& b) { return b->graph_data().graph().unhand() == nullptr; }

/// Adds the bonds written as space-separated tokens "A-B", "A=B", "A#B", "A:B", "A~B".
inline void add_bonds(Molecule& m, const std::string& tokens) {
    std::istringstream in(tokens);
    std::string token;
    while (in >> token) {
        const size_t at = token.find_first_of("-=#:~");
        if (at == std::string::npos || at == 0 || at + 1 == token.size())
            throw std::invalid_argument("bad bond token " + token);
        const std::string signs = "-=#:~";
        const BondType types[] = {SINGLE_BOND, DOUBLE_BOND, TRIPLE_BOND, AROMATIC_BOND, UNKNOWN_BOND};
        m.add(HBond(new Bond3d(types[signs.find(token[at])])), atom_index(m, token.substr(0, at)),
              atom_index(m, token.substr(at + 1)));
    }
}

/// A Molecule3d of the atoms "Element Label [x y z]; ..." and the bonds "A-B ...".
inline HMolecule3d molecule(const std::string& atoms, const std::string& bonds = "") {
    HMolecule3d m(new Molecule3d());
    std::istringstream list(atoms);
    std::string entry;
    while (std::getline(list, entry, ';')) {
        std::istringstream in(entry);
        std::string element, label;
        double x, y, z;
        if (!(in >> element)) continue;
        if (!(in >> label)) throw std::invalid_argument("bad atom " + entry);
        if (in >> x >> y >> z)
            m->add(atom_at(Element(element), label, x, y, z));
        else
            m->add(atom_without_site(element, label));
    }
    add_bonds(*m, bonds);
    return m;
}

/// A copy of `m` with every bond of type `type`.
inline HMolecule3d with_all_bonds(const Molecule& m, BondType type = UNKNOWN_BOND) {
    HMolecule3d copy(new Molecule3d(m));
    for (int i = 0; i < copy->nbonds(); ++i) copy->bond(i)->set_type(type);
    return copy;
}

// Below, a methyl group's three hydrogens stand on a line of their own;
// their coordinates come from bond lengths, angles and torsions worked out once.

/// Water with a bond angle of 104.52 degrees: O1 0, H1 1, H2 2.
inline HMolecule3d water() {
    return molecule("O O1 0 0 0; H H1 0.9572 0 0; H H2 -0.2399872084090341 0.9266272064859951 0", "O1-H1 O1-H2");
}

/// CH3-C(=O)-NH2, planar amide. Heavy atoms C2, C1 (methyl), O1, N1.
inline HMolecule3d acetamide() {
    return molecule(
        "C C2 0 0 0; C C1 1.52 0 0; O O1 -0.6335 1.0543 0; N N1 -0.5830 -1.1954 0;"
        "H H1 -1.5906 -1.2659 0; H H2 -0.0182 -2.0327 0;"
        "H H3 1.8838 1.0275 0; H H4 1.8838 -0.5137 0.8898; H H5 1.8838 -0.5137 -0.8898",
        "C2-C1 C2=O1 C2-N1 N1-H1 N1-H2 C1-H3 C1-H4 C1-H5");
}

/// CH3-C(=S)-NH2. Heavy atoms C2, C1, S1, N1.
inline HMolecule3d thioacetamide() {
    return molecule(
        "C C2 0 0 0; C C1 1.52 0 0; S S1 -0.8653 1.44 0; N N1 -0.5830 -1.1954 0;"
        "H H1 -1.5906 -1.2659 0; H H2 -0.0182 -2.0327 0;"
        "H H3 1.8838 1.0275 0; H H4 1.8838 -0.5137 0.8898; H H5 1.8838 -0.5137 -0.8898",
        "C2-C1 C2=S1 C2-N1 N1-H1 N1-H2 C1-H3 C1-H4 C1-H5");
}

/// CH3-C(=O)-OH, the hydroxyl hydrogen H6 syn to O1. Heavy atoms C2, C1, O1, O2.
inline HMolecule3d acetic_acid() {
    return molecule(
        "C C2 0 0 0; C C1 1.50 0 0; O O1 -0.6766 1.0031 0; O O2 -0.4907 -1.2146 0; H H6 -1.4570 -1.1301 0;"
        "H H3 1.8638 1.0275 0; H H4 1.8638 -0.5137 0.8898; H H5 1.8638 -0.5137 -0.8898",
        "C2-C1 C2=O1 C2-O2 O2-H6 C1-H3 C1-H4 C1-H5");
}

/// CH3-C(=O)-O(-), drawn with one double bond. Heavy atoms C2, C1, O1, O2.
inline HMolecule3d acetate() {
    return molecule(
        "C C2 0 0 0; C C1 1.52 0 0; O O1 -0.5675 1.1138 0; O O2 -0.5675 -1.1138 0;"
        "H H3 1.8838 1.0275 0; H H4 1.8838 -0.5137 0.8898; H H5 1.8838 -0.5137 -0.8898",
        "C2-C1 C2=O1 C2-O2 C1-H3 C1-H4 C1-H5");
}

/// CH3-N(=O)-O(-). Heavy atoms C1, N1, O1, O2.
inline HMolecule3d nitromethane() {
    return molecule(
        "C C1 0 0 0; N N1 1.49 0 0; O O1 2.0533 1.0822 0; O O2 2.0533 -1.0822 0;"
        "H H1 -0.3638 0 -1.0275; H H2 -0.3638 -0.8898 0.5137; H H3 -0.3638 0.8898 0.5137",
        "C1-N1 N1=O1 N1-O2 C1-H1 C1-H2 C1-H3");
}

/// NH4(+), tetrahedral.
inline HMolecule3d ammonium() {
    return molecule(
        "N N1 0 0 0; H H1 0.5947 0.5947 0.5947; H H2 0.5947 -0.5947 -0.5947;"
        "H H3 -0.5947 0.5947 -0.5947; H H4 -0.5947 -0.5947 0.5947",
        "N1-H1 N1-H2 N1-H3 N1-H4");
}

/// (CH3)2S(=O)2. Heavy atoms S1, C1, C2, O1, O2.
inline HMolecule3d dimethyl_sulphone() {
    return molecule(
        "S S1 0 0 0; C C1 1.0219 1.0219 1.0219; C C2 1.0219 -1.0219 -1.0219;"
        "O O1 -0.8314 0.8314 -0.8314; O O2 -0.8314 -0.8314 0.8314;"
        "H H1 0.3930 1.6514 1.6514; H H2 1.6514 0.3930 1.6514; H H3 1.6514 1.6514 0.3930;"
        "H H4 1.6514 -0.3930 -1.6514; H H5 1.6514 -1.6514 -0.3930; H H6 0.3930 -1.6514 -1.6514",
        "S1-C1 S1-C2 S1=O1 S1=O2 C1-H1 C1-H2 C1-H3 C2-H4 C2-H5 C2-H6");
}

/// CH3-S(=O)2-O(-). Heavy atoms S1, C1, O1, O2, O3 (O3 the singly bonded one).
inline HMolecule3d methanesulphonate() {
    return molecule(
        "S S1 0 0 0; C C1 1.0219 1.0219 1.0219;"
        "O O1 0.8429 -0.8429 -0.8429; O O2 -0.8429 0.8429 -0.8429; O O3 -0.8429 -0.8429 0.8429;"
        "H H1 1.6514 1.6514 0.3930; H H2 0.3930 1.6514 1.6514; H H3 1.6514 0.3930 1.6514",
        "S1-C1 S1=O1 S1=O2 S1-O3 C1-H1 C1-H2 C1-H3");
}

/// (CH3)2S=O, pyramidal at sulphur. Heavy atoms S1, C1, C2, O1.
inline HMolecule3d dimethyl_sulphoxide() {
    return molecule(
        "S S1 0 0 0; C C1 1.0392 1.0392 1.0392; C C2 1.0392 -1.0392 -1.0392; O O1 -0.8660 0.8660 -0.8660;"
        "H H1 0.4104 1.6688 1.6688; H H2 1.6688 0.4104 1.6688; H H3 1.6688 1.6688 0.4104;"
        "H H4 1.6688 -0.4104 -1.6688; H H5 1.6688 -1.6688 -0.4104; H H6 0.4104 -1.6688 -1.6688",
        "S1-C1 S1-C2 S1=O1 C1-H1 C1-H2 C1-H3 C2-H4 C2-H5 C2-H6");
}

/// (CH3)2S, C-S-C 99 degrees. Heavy atoms S1, C1, C2.
inline HMolecule3d dimethyl_sulphide() {
    return molecule(
        "S S1 0 0 0; C C1 1.81 0 0; C C2 -0.2831 1.7877 0;"
        "H H1 2.1738 0.5137 0.8898; H H2 2.1738 -1.0275 0; H H3 2.1738 0.5137 -0.8898;"
        "H H4 0.1673 2.2275 -0.8898; H H5 -1.3549 1.9864 0; H H6 0.1673 2.2275 0.8898",
        "S1-C1 S1-C2 C1-H1 C1-H2 C1-H3 C2-H4 C2-H5 C2-H6");
}

// The methyl group C1 of the linear molecules below.
const char* const linear_methyl = "H H1 -0.3638 0.5137 -0.8898; H H2 -0.3638 -1.0275 0; H H3 -0.3638 0.5137 0.8898;";

/// CH3-C#N, linear. Heavy atoms C1, C2, N1.
inline HMolecule3d acetonitrile() {
    return molecule(std::string("C C1 0 0 0; C C2 1.46 0 0; N N1 2.62 0 0;") + linear_methyl,
                    "C1-C2 C2#N1 C1-H1 C1-H2 C1-H3");
}

/// CH3-N#C, linear. Heavy atoms C1, N1, C2.
inline HMolecule3d methyl_isocyanide() {
    return molecule(std::string("C C1 0 0 0; N N1 1.42 0 0; C C2 2.59 0 0;") + linear_methyl,
                    "C1-N1 N1#C2 C1-H1 C1-H2 C1-H3");
}

/// CH3-N=N=N, drawn with two double bonds; C-N-N 115, N-N-N 173 degrees.
/// Heavy atoms C1, N1, N2, N3.
inline HMolecule3d methyl_azide() {
    return molecule(
        std::string("C C1 0 0 0; N N1 1.47 0 0; N N2 1.9940 1.1238 0; N N3 2.5929 2.0821 0;") + linear_methyl,
        "C1-N1 N1=N2 N2=N3 C1-H1 C1-H2 C1-H3");
}

/// C(NH2)3(+), planar, drawn C1=N1 with the other two C-N single. With
/// `nitro`, N3 carries two oxygens O1, O2 in place of its hydrogens (in
/// their directions, at an N-O distance): an amidine on a nitro nitrogen.
inline HMolecule3d guanidinium(bool nitro = false) {
    return molecule(
        std::string("C C1 0 0 0; N N1 0 1.33 0; H H1 -0.8747 1.8350 0; H H2 0.8747 1.8350 0;"
                    "N N2 -1.1518 -0.6650 0; H H3 -1.1518 -1.6750 0; H H4 -2.0265 -0.1600 0;"
                    "N N3 1.1518 -0.6650 0;") +
            (nitro ? "O O1 2.2083 -0.0550 0; O O2 1.1518 -1.8850 0" : "H H5 2.0265 -0.1600 0; H H6 1.1518 -1.6750 0"),
        std::string("C1=N1 C1-N2 C1-N3 N1-H1 N1-H2 N2-H3 N2-H4 ") + (nitro ? "N3=O1 N3-O2" : "N3-H5 N3-H6"));
}

/// A regular hexagon of side 1.39 in the xy plane, ring atoms C1..C6 with
/// hydrogens H1..H6 at 1.09. With `pyridine` the first ring atom is N1 and
/// has no hydrogen. Aromatic bonds, or alternating double (1-2, 3-4, 5-6)
/// and single bonds when `aromatic` is false.
inline HMolecule3d benzene(bool aromatic = true, bool pyridine = false) {
    HMolecule3d m(new Molecule3d());
    const double pi = std::acos(-1.0);
    for (int i = 0; i < 6; ++i) {
        const std::string name = (i == 0 && pyridine) ? "N1" : "C" + std::to_string(i + 1);
        m->add(atom_at(name.substr(0, 1), name, 1.39 * std::cos(pi / 3 * i), 1.39 * std::sin(pi / 3 * i), 0.0));
    }
    for (int i = pyridine ? 1 : 0; i < 6; ++i) {
        m->add(
            atom_at("H", "H" + std::to_string(i + 1), 2.48 * std::cos(pi / 3 * i), 2.48 * std::sin(pi / 3 * i), 0.0));
        m->add(HBond(new Bond3d(SINGLE_BOND)), i, m->natoms() - 1);
    }
    for (int i = 0; i < 6; ++i)
        m->add(HBond(new Bond3d(aromatic ? AROMATIC_BOND : (i % 2 == 0 ? DOUBLE_BOND : SINGLE_BOND))), i, (i + 1) % 6);
    return m;
}

/// An octahedral iron complex: an ammine N1 (+x), a chloride Cl1 (-x), an
/// acetonitrile N2-C1-C2 bound through N (+y), a methanethiolate S1-C3 (-y),
/// a nitrido N3 (Fe#N3, +z) and an imido N4-H10 (Fe=N4, -z). The dative
/// bonds are single.
inline HMolecule3d iron_complex() {
    return molecule(
        "Fe Fe1 0 0 0; N N1 2.05 0 0; Cl Cl1 -2.30 0 0; N N2 0 1.95 0; C C1 0 3.10 0; C C2 0 4.56 0;"
        "S S1 0 -2.30 0; N N3 0 0 1.60; N N4 0 0 -1.70;"
        "H H1 2.3871 0.4760 0.8245; H H2 2.3871 -0.9521 0; H H3 2.3871 0.4760 -0.8245;"
        "H H4 0.5137 4.9238 -0.8898; H H5 -1.0275 4.9238 0; H H6 0.5137 4.9238 0.8898; C C3 -1.7580 -2.7711 0;"
        "H H7 -2.2424 -2.3690 -0.8898; H H8 -1.8435 -3.8577 0; H H9 -2.2424 -2.3690 0.8898; H H10 0.3454 0 -2.6491",
        "Fe1-N1 Fe1-Cl1 Fe1-N2 N2#C1 C1-C2 Fe1-S1 S1-C3 Fe1#N3 Fe1=N4 N4-H10 "
        "N1-H1 N1-H2 N1-H3 C2-H4 C2-H5 C2-H6 C3-H7 C3-H8 C3-H9");
}

/// A vinylamine CH2=CH-N(CH3)R: vinyl C3=C4, methyl C1, and R either a
/// second methyl C2 or, with `nh` (pyramidal only), a hydrogen H9. Planar at
/// N1 (angles of 120 degrees) or pyramidal (tetrahedral angles).
inline HMolecule3d vinylamine(bool planar, bool nh = false) {
    const std::string rest = "N1-C1 N1-C3 C3=C4 C3-H7 C4-H5 C4-H6 C1-H10 C1-H11 C1-H12";
    if (planar)
        return molecule(
            "N N1 0 0 0; C C1 0 1.46 0; C C2 -1.2644 -0.73 0; C C3 1.2124 -0.70 0; C C4 1.3059 -2.0367 0;"
            "H H7 2.1078 -0.0961 0; H H5 0.4212 -2.6562 0; H H6 2.2682 -2.5270 0;"
            "H H10 0.5137 1.8238 -0.8898; H H11 -1.0275 1.8238 0; H H12 0.5137 1.8238 0.8898;"
            "H H13 -1.3226 -1.3568 0.8898; H H14 -2.0932 -0.0221 0; H H15 -1.3226 -1.3568 -0.8898",
            "N1-C2 C2-H13 C2-H14 C2-H15 " + rest);
    return molecule(
        std::string("N N1 0 0 0; C C1 0.8429 0.8429 0.8429;") +
            (nh ? "H H9 0.5831 -0.5831 -0.5831;" : "C C2 0.8429 -0.8429 -0.8429;") +
            "C C3 -0.8083 0.8083 -0.8083; C C4 -1.6944 0.3339 -1.6944;"
            "H H7 -0.6853 1.8742 -0.6853; H H5 -1.8305 -0.7289 -1.8305; H H6 -2.2940 1.0027 -2.2940;"
            "H H10 0.2141 1.4725 1.4725; H H11 1.4725 0.2141 1.4725; H H12 1.4725 1.4725 0.2141;" +
            (nh ? "" : "H H13 1.4725 -0.2141 -1.4725; H H14 1.4725 -1.4725 -0.2141; H H15 0.2141 -1.4725 -1.4725"),
        (nh ? "N1-H9 " : "N1-C2 C2-H13 C2-H14 C2-H15 ") + rest);
}

}  // namespace testing
}  // namespace molcryst

#endif

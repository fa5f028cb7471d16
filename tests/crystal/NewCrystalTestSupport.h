// Test helpers for the crystal view: small crystals whose contacts are known
// by hand, an observer that counts, and an O...O distance rule.
#ifndef MOLCRYST_TESTS_CRYSTAL_NEWCRYSTALTESTSUPPORT_H
#define MOLCRYST_TESTS_CRYSTAL_NEWCRYSTALTESTSUPPORT_H

#include <iostream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "crystal/CrystalTestSupport.h"
#include "molcryst/contact/DistanceCriterion.h"
#include "molcryst/crystal/NewCrystal.h"
#include "molcryst/support/Observer.h"

namespace molcryst {
namespace testing {

/// Counts the notifications it hears.
class CountingObserver : public Observer {
public:
    void update(Subject&, const UpdateFlags&) override { ++count; }
    int count = 0;
};

/// An orthogonal cell with edges a, b, c.
inline Cell box_cell(double a, double b, double c, const Spacegroup& s) {
    const Angle right = Angle::from_degrees(90);
    return Cell(a, b, c, right, right, right, s);
}

inline Spacegroup p1() { return Spacegroup("P1", 1, Spacegroup::Triclinic, std::vector<std::string>{"x,y,z"}); }
inline Spacegroup p21() {
    return Spacegroup("P21", 4, Spacegroup::Monoclinic, std::vector<std::string>{"x,y,z", "-x,y+1/2,-z"});
}

/// A maker of the molecules (atoms at fractional coordinates, as for
/// at_frac), every atom tagged with its place in the asymmetric unit.
inline HCrystalMaker maker_of(const Cell& cell, const std::vector<HMolecule>& molecules) {
    Hvector_HMolecule list(new vector_HMolecule(molecules));
    int tag = 0;
    for (const HMolecule& m : *list)
        for (int i = 0; i < m->natoms(); ++i) m->atom(i)->set_symmtag(tag++);
    return HCrystalMaker(new CrystalMaker(cell, list, Hvector_HMolecule(), Hvector_HMolecule()));
}

/// O...O within [0, max] Angstrom between molecules.
inline HDistanceCriterion oxygen_contacts(double max) {
    return HDistanceCriterion(new DistanceCriterion(max, 0, INTERMOLECULAR, 0, 999, false,
                                                    Hset_int(new std::set<int>{8}), Hset_int(new std::set<int>{8})));
}

/// A centrosymmetric dimer in P-1: O1 2.58 A from its image through the
/// origin, every other O...O at least 7 A.
inline HCrystalMaker dimer_maker() {
    const Cell cell = box_cell(10, 11, 12, molcryst_test::p_1bar());
    return maker_of(cell, {at_frac(cell, "O O1 0.1 0.05 0.05; C C1 0.22 0.05 0.05", "O1-C1")});
}

/// A chain along b in P21: O1 2.87 A from its screw images at y +- 1/2,
/// 5 A from its own translation.
inline HCrystalMaker chain_maker() {
    const Cell cell = box_cell(10, 5, 10, p21());
    return maker_of(cell, {at_frac(cell, "O O1 0.05 0.1 0.05; C C1 0.15 0.1 0.15", "O1-C1")});
}

/// A chain along b in P21 that grows: O1 2.06 A from O2 of the screw image
/// at y + 1/2, which reaches O1 of the molecule moved by b. O...O within
/// 2.5 A meets nothing else.
inline HCrystalMaker screw_chain_maker() {
    const Cell cell = box_cell(10, 5, 10, p21());
    return maker_of(cell, {at_frac(cell, "O O1 0.05 0 0.05; C C1 0.1 -0.2 0; O O2 0.15 -0.4 -0.05", "O1-C1 C1-O2")});
}

/// What `f()` writes to standard output.
template <class F>
std::string stdout_of(F f) {
    std::ostringstream text;
    std::streambuf* saved = std::cout.rdbuf(text.rdbuf());
    struct Restore {
        std::streambuf* saved;
        ~Restore() { std::cout.rdbuf(saved); }
    } restore{saved};
    f();
    return text.str();
}

/// The one-atom molecules of the picture.
inline int nhanging(const Crystal& c) {
    int n = 0;
    for (const HMolecule& m : *c.molecules()) n += m->natoms() == 1 ? 1 : 0;
    return n;
}

}  // namespace testing
}  // namespace molcryst

#endif

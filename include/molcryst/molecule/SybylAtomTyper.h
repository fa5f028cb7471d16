// SybylAtomTyper: SYBYL (mol2) atom and bond types by a decision list per
// element.
//
// Two rule sets exist. When every bond of an atom has a known type the rules
// read bond orders ("2D" rules); when any is of unknown type they fall back
// on distances and valence angles ("3D" rules); an atom without bonds gets a
// guess from its element alone.
#ifndef MOLCRYST_MOLECULE_SYBYLATOMTYPER_H
#define MOLCRYST_MOLECULE_SYBYLATOMTYPER_H

#include <string>

#include "molcryst/geometry/Angle.h"
#include "molcryst/molecule/AtomTyper.h"

namespace molcryst {

/// The SYBYL typer. Its one setting says whether hydrogens are known, which
/// decides how a carboxylate oxygen is recognised.
class SybylAtomTyper : public AtomTyper {
public:
    /// 0: hydrogens are known; any other value: hydrogens may be missing.
    enum OxygenProtonationTreatment { HYDROGENS_KNOWN = 0, HYDROGENS_MAY_BE_MISSING = 1 };

    explicit SybylAtomTyper(OxygenProtonationTreatment treatment);

    /// "C.3", "N.ar", "O.co2", ...: by the 2D rules, the 3D rules or the guess.
    std::string atom_type(const Atom& atom) const override;
    /// "1", "2", "3", "ar" or "un".
    std::string bond_type(const Bond& bond) const override;
    /// "SybylAtomTyper".
    std::string name() const override;
    using AtomTyper::atom_type;
    using AtomTyper::bond_type;

    OxygenProtonationTreatment oxygen_treatment() const { return oxygen_treatment_; }

    /// 0 when every bond of the atom has a known type, 1 when some bond has
    /// type 0 (unknown), 2 for an atom without bonds.
    int is_atom_2d_ruled(const Atom& atom) const;
    std::string calc_2d_ruled_atom_type(const Atom& atom) const;
    std::string calc_3d_ruled_atom_type(const Atom& atom) const;
    std::string guess_atom_sybyl_type(const Atom& atom) const;
    std::string type_carbon_2d(const Atom& atom) const;
    std::string type_nitrogen_2d(const Atom& atom) const;
    std::string type_oxygen_2d(const Atom& atom) const;
    std::string type_sulphur_2d(const Atom& atom) const;
    std::string type_carbon_3d(const Atom& atom) const;
    std::string type_nitrogen_3d(const Atom& atom) const;
    std::string type_oxygen_3d(const Atom& atom) const;
    std::string type_sulphur_3d(const Atom& atom) const;
    /// Elements without rules of their own: P, Ti, Cr, Co, Ru, else the symbol.
    std::string type_other_atom(const Atom& atom) const;
    /// The carboxylate test that the protonation treatment selects.
    bool is_carboxylate(const Atom& atom) const;
    /// The type of a bond of unknown type, from the bonds around it.
    std::string calc_bond_type(const Bond& bond) const;
    /// The type of a bond whose ends have only bonds of unknown type.
    std::string calc_3d_ruled_bond_type(const Bond& bond) const;
    /// The mean valence angle at the atom over pairs of neighbours with
    /// sites; `ok` false, and 0, for an atom without a site, with fewer than
    /// two bonds, or without a pair of neighbours that have sites.
    Angle average_bond_angle(const Atom& atom, bool& ok) const;

private:
    OxygenProtonationTreatment oxygen_treatment_;
};

}  // namespace molcryst

#endif

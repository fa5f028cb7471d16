// CrystalChemicalFormula: the formula of a crystal as residues with real
// multipliers that may be unknown, as in C6 H6,0.5(H2 O1),x(C2 H6 O1).
#ifndef MOLCRYST_FORMULA_CRYSTALCHEMICALFORMULA_H
#define MOLCRYST_FORMULA_CRYSTALCHEMICALFORMULA_H

#include <ostream>
#include <string>
#include <vector>

#include "molcryst/formula/MoleculeChemicalFormula.h"
#include "molcryst/formula/SumFormula.h"
#include "molcryst/support/THandle.h"

namespace molcryst {

class Archive;
class ConnectivityInfo;
class CrystalMaker;

class CrystalChemicalFormula {
public:
    struct tCrystalChemicalFormula_ {
        MoleculeChemicalFormula formula;
        double multiplier = 1.0;
        bool unknown_multiplier = false;
    };

    /// 1: both sides must agree on which residues are unknown; any other value:
    /// an unknown residue matches any.
    typedef int UnknownMultiplierCondition;

    /// Empty, deuterium counted as hydrogen.
    CrystalChemicalFormula();
    /// Parses `text` (see init).
    CrystalChemicalFormula(const char* text, bool D_is_H);
    CrystalChemicalFormula(const std::string& text, bool D_is_H);
    /// One residue per connectivity, with its multiplier and unknown mark.
    CrystalChemicalFormula(const THandle<ConnectivityInfo>& info, bool D_is_H);
    /// The residues of the asymmetric unit; a null handle, or a structure
    /// without atoms, throws std::invalid_argument.
    CrystalChemicalFormula(const THandle<CrystalMaker>& maker, bool D_is_H);
    /// One residue.
    explicit CrystalChemicalFormula(const MoleculeChemicalFormula& formula);

    /// Parses residues separated by ",": "C6 H6", "0.5(H2 O1)", "x(C2 H6 O1)",
    /// "(C2 H4)n". Throws std::invalid_argument for an ill-formed residue.
    void init(const std::string& text, bool D_is_H);

    bool D_is_H() const;
    void set_D_is_H(bool D_is_H);

    double unknown_multiplier_substitute() const { return unknown_multiplier_substitute_; }
    void set_unknown_multiplier_substitute(double substitute);

    int nresidues() const { return static_cast<int>(residues_.size()); }
    const tCrystalChemicalFormula_& residue(int index) const { return residues_.at(static_cast<std::size_t>(index)); }
    const std::vector<tCrystalChemicalFormula_>& residues() const { return residues_; }
    bool polymeric() const { return polymeric_; }
    bool multipliers_known() const { return multipliers_known_; }

    /// An index outside the residues throws std::out_of_range.
    void remove_residue(unsigned int index);
    /// Removes every residue equal to `formula`.
    void remove_residue(const MoleculeChemicalFormula& formula);
    /// A residue of unknown multiplier, which takes the substitute.
    void add_residue(const MoleculeChemicalFormula& formula);
    void add_residue(const MoleculeChemicalFormula& formula, double multiplier);

    bool at_least_one_residue_contains(const MoleculeChemicalFormula& formula) const;
    bool at_least_one_residue_contains(const Element& element) const;
    bool at_least_one_residue_equals(const MoleculeChemicalFormula& formula) const;

    double estimated_volume_sum(double temperature) const;
    double molecular_weight_sum() const;
    double net_charge() const;

    /// Ascending by formula, equal formulae by ascending multiplier.
    void sort_chemical_formulae();

    int nelements() const { return sum_formula().nelements(); }
    std::vector<Element> elements_present() const { return sum_formula().elements_present(); }
    SumFormula sum_formula() const;

    void print(std::ostream& out) const;
    void write(Archive& ar) const;
    void read(Archive& ar);

    /// Recomputes the polymer and known-multiplier marks, and gives unknown residues the substitute.
    void update();

    bool operator==(const CrystalChemicalFormula& other) const;
    bool operator!=(const CrystalChemicalFormula& other) const { return !(*this == other); }

private:
    std::vector<tCrystalChemicalFormula_> residues_;
    bool polymeric_ = false;
    bool multipliers_known_ = true;
    double unknown_multiplier_substitute_ = 1.0;
};

/// Residue by residue in their order: equal formulae, multipliers and unknown marks.
bool identical(const CrystalChemicalFormula& a, const CrystalChemicalFormula& b);
/// Residue by residue in their order, multipliers within `tolerance`.
bool equals(const CrystalChemicalFormula& a, const CrystalChemicalFormula& b, double tolerance,
            CrystalChemicalFormula::UnknownMultiplierCondition condition);
/// As equals, on sorted copies.
bool is_equivalent(const CrystalChemicalFormula& a, const CrystalChemicalFormula& b, double tolerance,
                   CrystalChemicalFormula::UnknownMultiplierCondition condition);
/// The same residue formulae, charges, multipliers and repetitions aside.
bool same_residues(const CrystalChemicalFormula& a, const CrystalChemicalFormula& b);
std::ostream& operator<<(std::ostream& out, const CrystalChemicalFormula& f);

}  // namespace molcryst

#endif

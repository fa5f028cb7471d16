// StructureFormulae: the formulae of a reported structure (each molecule's,
// the crystal's with its residues, the sum over the sites) and how they
// compare with the formulae the file declares.
#ifndef MOLCRYST_IO_STRUCTUREFORMULAE_H
#define MOLCRYST_IO_STRUCTUREFORMULAE_H

#include <string>
#include <vector>

#include "molcryst/formula/CrystalChemicalFormula.h"
#include "molcryst/formula/SumFormula.h"
#include "molcryst/io/StructureReport.h"

namespace molcryst {

class StructureFormulae {
public:
    /// A declared formula against the computed one.
    struct Comparison {
        enum Status { Absent, Agrees, Differs, Unreadable };
        Status status = Absent;
        std::string declared;  // as the file gives it
        /// Computed over declared, where the two have the same proportions
        /// (1 when they are written for the same formula unit); 0 otherwise.
        double scale = 0.0;
        std::string detail;  // why they differ or cannot be read; "" when they agree
    };

    explicit StructureFormulae(const StructureReport& report);

    /// Each molecule's formula in the residue text form ("C6 H6", "(Cl2 Cu1)n"),
    /// by row of the report: the whole molecule, or the repeat unit of a polymer.
    const std::vector<std::string>& molecule_formulae() const { return molecule_formulae_; }
    /// The residues of the crystal, equal molecules together, with their
    /// numbers per formula unit (per asymmetric unit when the file gives no Z).
    const CrystalChemicalFormula& crystal_formula() const { return crystal_; }
    /// What the sites hold with their occupancies, per formula unit (or asymmetric unit).
    const SumFormula& sum_formula() const { return sum_; }
    /// True when the multipliers are per formula unit, false when per asymmetric unit.
    bool per_formula_unit() const { return per_formula_unit_; }

    const Comparison& sum_comparison() const { return sum_check_; }
    const Comparison& moiety_comparison() const { return moiety_check_; }

    static const char* status_name(Comparison::Status status);

    /// A declared sum formula such as "C4 H9 F N3 O3.5", case ignored; false
    /// when a token is not an element with an optional count.
    static bool read_sum_formula(const std::string& text, SumFormula& out);
    /// A declared moiety formula such as "C12 H16 N4 Ni O4 2+, 2C7 H4 N O3 S -, 4H2 O",
    /// counts in front of a residue written without brackets; false when a
    /// residue is not elements with counts and an optional charge.
    static bool read_moiety_formula(const std::string& text, CrystalChemicalFormula& out);

private:
    std::vector<std::string> molecule_formulae_;
    CrystalChemicalFormula crystal_;
    SumFormula sum_;
    bool per_formula_unit_ = false;
    Comparison sum_check_, moiety_check_;
};

}  // namespace molcryst

#endif

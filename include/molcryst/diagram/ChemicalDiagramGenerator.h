// ChemicalDiagramGenerator: the chemical diagram of a molecule.
//
// No layout is made: each atom is drawn at the x and y of its site, so a
// molecule meant for drawing carries two-dimensional coordinates (z is
// ignored). What the generator decides is which atoms become nodes:
// terminal hydrogens fold into a count on their heavy atom, or stay as
// atoms where they have sites, according to the treatment.
#ifndef MOLCRYST_DIAGRAM_CHEMICALDIAGRAMGENERATOR_H
#define MOLCRYST_DIAGRAM_CHEMICALDIAGRAMGENERATOR_H

#include <map>
#include <vector>

#include "molcryst/diagram/ChemicalDiagram.h"
#include "molcryst/diagram/DiagramAtom.h"
#include "molcryst/molecule/Molecule.h"

namespace molcryst {

/// Makes one molecule's diagram and remembers which node each bonded atom became.
class ChemicalDiagramGenerator {
public:
    enum TerminalHTreatment {
        FoldTerminalHydrogens = 0,      // every terminal hydrogen becomes a count
        KeepSitedTerminalHydrogens = 1  // those with sites stay atoms; the others become a count
    };

    ChemicalDiagramGenerator();
    virtual ~ChemicalDiagramGenerator();

    /// A new diagram of `molecule`.
    HChemicalDiagram create_chemical_diagram(HMolecule molecule);
    void set_h_treatment(TerminalHTreatment treatment) { h_treatment_ = treatment; }
    TerminalHTreatment h_treatment() const { return h_treatment_; }
    /// From each bonded atom to its node. Never cleared: one generator serves one molecule.
    std::map<HAtom, HDiagramAtom> atom_match() const { return atom_match_; }

    /// Adds the molecule's bonds and atoms to the current diagram.
    void create_diagram(HMolecule molecule);
    /// A hydrogen with one bond, to a heavy atom, or to a hydrogen when it has no site.
    bool is_a_terminal_hydrogen(HAtom atom) const;
    /// The terminal hydrogens of `atom` that fold into its count.
    int nterminal_hydrogens(HAtom atom) const;
    void add_disconnected_atoms(HMolecule molecule);
    void add_disconnected_atoms(const std::vector<HAtom>& atoms);
    /// Adds a node for `atom`, which must have a site, without its charge and
    /// without entering it in atom_match.
    void add_disconnected_atom(HAtom atom);

private:
    HChemicalDiagram diagram_;
    TerminalHTreatment h_treatment_ = FoldTerminalHydrogens;
    std::map<HAtom, HDiagramAtom> atom_match_;
};

}  // namespace molcryst

#endif

// DiagramFormulaGroup: atoms folded into a formula text placed at a chosen
// point, as drawing programs show a counter-ion or a solvent.
#ifndef MOLCRYST_DIAGRAM_DIAGRAMFORMULAGROUP_H
#define MOLCRYST_DIAGRAM_DIAGRAMFORMULAGROUP_H

#include <set>
#include <string>
#include <vector>

#include "molcryst/diagram/DiagramGroup.h"
#include "molcryst/diagram/DiagramPiGroup.h"
#include "molcryst/diagram/DiagramSymbol.h"
#include "molcryst/diagram/DiagramSymbolGroup.h"

namespace molcryst {

/// A formula group. Contracted, one DiagramSymbol with the text as all
/// three labels stands in place of the atoms (and of the circles, frames,
/// pi and symbol groups over them); bonds to the rest end at it.
class DiagramFormulaGroup : public DiagramGroup {
public:
    DiagramFormulaGroup(const std::vector<HDiagramNode>& nodes, const Point2d& point, const std::string& text,
                        ChemicalDiagram& diagram);
    ~DiagramFormulaGroup() override;

    void expand(ChemicalDiagram& diagram) override;
    void contract(ChemicalDiagram& diagram) override;
    /// Forgets the kept groups, then every match.
    void clear() override;

    /// Matches the group to `nodes`; an empty list leaves it empty.
    virtual void set_atoms(const std::vector<HDiagramNode>& nodes, const Point2d& point, const std::string& text,
                           ChemicalDiagram& diagram);

    /// The formula's symbol; null for an empty group.
    THandle<DiagramSymbol> formula_node() const { return formula_node_; }
    const std::set<HDiagramSymbolGroup>& symbol_groups() const { return symbol_groups_; }
    const std::set<HDiagramPiGroup>& pi_groups() const { return pi_groups_; }

private:
    THandle<DiagramSymbol> formula_node_;
    std::set<HDiagramSymbolGroup> symbol_groups_;
    std::set<HDiagramPiGroup> pi_groups_;
};

typedef THandle<DiagramFormulaGroup> HDiagramFormulaGroup;

}  // namespace molcryst

#endif

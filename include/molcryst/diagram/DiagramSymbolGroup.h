// DiagramSymbolGroup: a known substituent (phenyl, nitro, tert-butyl...)
// folded into one DiagramSymbol that draws as its text ("Ph", "NO<sub>2</sub>").
//
// The catalogue of such groups (DiagramSymbolCatalogue) is registered once
// as prototypes; a group is a clone of one, filled by set_atoms with the
// caller's atoms in the order of the template. Setting the atoms also moves
// them onto the template's regular shape, scaled and turned to suit the
// bonds that lead out of the group, so that the expanded group always looks
// regular. Prototype and clones share the names, labels and template.
#ifndef MOLCRYST_DIAGRAM_DIAGRAMSYMBOLGROUP_H
#define MOLCRYST_DIAGRAM_DIAGRAMSYMBOLGROUP_H

#include <set>
#include <string>
#include <vector>

#include "molcryst/diagram/DiagramGroup.h"
#include "molcryst/diagram/DiagramPiGroup.h"
#include "molcryst/diagram/DiagramSymbol.h"
#include "molcryst/geometry/Point2d.h"

namespace molcryst {

/// A symbol group. While contracted, the pi groups it took over are out of
/// the diagram's reach, so that expanding all pi groups cannot pull ring
/// atoms back into a folded substituent.
class DiagramSymbolGroup : public DiagramGroup {
public:
    /// A prototype: expanded, no matches. `points` are the template, in
    /// units of one bond, the first being the anchor atom.
    DiagramSymbolGroup(const std::string& name, const std::string& left, const std::string& right,
                       const std::string& centre, const std::vector<Point2d>& points, int code,
                       DiagramSymbol::HydrogenPosition position);
    /// Copies the matches and shares the names, labels and template.
    DiagramSymbolGroup(const DiagramSymbolGroup& other);
    DiagramSymbolGroup& operator=(const DiagramSymbolGroup&) = delete;
    ~DiagramSymbolGroup() override;

    void expand(ChemicalDiagram& diagram) override;
    void contract(ChemicalDiagram& diagram) override;
    /// Forgets the pi groups taken over, then every match.
    void clear() override;

    virtual DiagramSymbolGroup* clone() const;
    /// A new symbol for `nodes`, with the group's labels and hydrogen
    /// position; null for no nodes.
    virtual THandle<DiagramSymbol> create_symbol(const std::vector<HDiagramNode>& nodes);
    /// The i-th point of the template; no range check.
    virtual const Point2d& template_point(int i) const;

    /// Matches the group to `nodes`, atoms given in template order, and lays
    /// them out on the template; the group stays expanded. A wrong number of
    /// nodes throws std::runtime_error; a first node that is null or not in
    /// the diagram leaves the group empty.
    void set_atoms(const std::vector<HDiagramNode>& nodes, ChemicalDiagram& diagram);

    int tarn_symbol() const { return tarn_symbol_; }
    const std::string& symbol_name() const { return *symbol_name_; }
    const std::string& left_label() const { return *left_label_; }
    const std::string& right_label() const { return *right_label_; }
    const std::string& centre_label() const { return *centre_label_; }
    DiagramSymbol::HydrogenPosition hydrogen_position() const { return hydrogen_position_; }
    THandle<DiagramSymbol> symbol_node() const { return symbol_node_; }
    int ntemplate_points() const { return static_cast<int>(template_->size()); }
    /// The pi groups this group took over from the diagram.
    const std::set<HDiagramPiGroup>& pi_groups() const { return pi_groups_; }

private:
    THandle<DiagramSymbol> symbol_node_;
    std::set<HDiagramPiGroup> pi_groups_;
    int tarn_symbol_;
    DiagramSymbol::HydrogenPosition hydrogen_position_;
    THandle<std::string> symbol_name_;
    THandle<std::string> left_label_;
    THandle<std::string> right_label_;
    THandle<std::string> centre_label_;
    THandle<std::vector<Point2d> > template_;
};

typedef THandle<DiagramSymbolGroup> HDiagramSymbolGroup;

/// The key under which a symbol group prototype is filed: its name.
struct DiagramSymbolNameExtractor {
    std::string operator()(const DiagramSymbolGroup& prototype) const { return prototype.symbol_name(); }
};

}  // namespace molcryst

#endif

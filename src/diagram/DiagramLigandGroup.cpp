#include "molcryst/diagram/DiagramLigandGroup.h"

#include <stdexcept>
#include <vector>

#include "molcryst/diagram/ChemicalDiagram.h"
#include "molcryst/diagram/DiagramCompositeEdge.h"

namespace molcryst {

namespace {

const char* const where = "DiagramLigandGroup::DiagramLigandGroup";

// The bonds from an atom to nodes that are not in the units.
std::vector<HDiagramEdge> outside_bonds(const HDiagramNode& atom, const DiagramMultipleGroup::UnitAtoms& atoms) {
    std::vector<HDiagramEdge> bonds;
    for (const HDiagramEdge& e : atom->edges())
        if (atoms.count(e->other_node(atom)) == 0) bonds.push_back(e);
    return bonds;
}

}  // namespace

DiagramLigandGroup::DiagramLigandGroup(const Units& units, ChemicalDiagram& diagram) {
    check_units(units, diagram, where);
    // Each place of the units may be bonded to one centre only, the same
    // for every unit: the composite edge of that place ends there.
    std::set<HDiagramNode> members;
    for (const Unit& unit : units) members.insert(unit->begin(), unit->end());
    for (std::size_t j = 0; j < units[0]->size(); ++j) {
        HDiagramNode centre;
        for (const Unit& unit : units) {
            if (!(*unit)[j]->is_in_diagram()) continue;  // folded in a symbol, whose bond is checked there
            for (const HDiagramNode& b : (*unit)[j]->neighbours()) {
                if (members.count(b) != 0) continue;
                if (centre.unhand() == nullptr) centre = b;
                if (b != centre)
                    throw std::invalid_argument(std::string(where) + " the ligands are not bonded to one centre");
            }
        }
    }
    set_atoms(units, diagram);
}

DiagramLigandGroup::~DiagramLigandGroup() = default;

void DiagramLigandGroup::set_attachment_bonds(const Units& units, const UnitAtoms& atoms,
                                              const std::set<HDiagramEdge>&, ChemicalDiagram&) {
    for (std::size_t j = 0; j < units[0]->size(); ++j) {
        const HDiagramNode clone = atoms.at((*units[0])[j]).clone;
        THandle<DiagramCompositeEdge> composite;
        for (const Unit& unit : units) {
            const HDiagramNode a = (*unit)[j];
            for (const HDiagramEdge& e : outside_bonds(a, atoms)) {
                if (composite.unhand() == nullptr)
                    composite = THandle<DiagramCompositeEdge>(new DiagramCompositeEdge(e->type()));
                composite->add_edge(e);
                add_edge_match(e, HDiagramNode(), a, HDiagramEdge(composite), HDiagramNode(), clone);
            }
        }
    }
}

void DiagramLigandGroup::set_inter_unit_bonds(const Units&, const UnitAtoms&, const std::set<HDiagramEdge>&,
                                              ChemicalDiagram&) {}

}  // namespace molcryst

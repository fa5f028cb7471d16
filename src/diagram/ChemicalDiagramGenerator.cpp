#include "molcryst/diagram/ChemicalDiagramGenerator.h"

#include "molcryst/molecule/Atom.h"
#include "molcryst/molecule/Bond.h"
#include "molcryst/molecule/Site.h"

namespace molcryst {

namespace {

// The x and y of an atom's site, as they stand; a missing site is the null-handle failure.
Point2d site_xy(const HAtom& atom) {
    const HSite site = atom->site();
    const Point& p = site->orth();
    return Point2d(p[0], p[1]);
}

}  // namespace

ChemicalDiagramGenerator::ChemicalDiagramGenerator() : diagram_(new ChemicalDiagram()) {}

ChemicalDiagramGenerator::~ChemicalDiagramGenerator() = default;

HChemicalDiagram ChemicalDiagramGenerator::create_chemical_diagram(HMolecule molecule) {
    diagram_ = HChemicalDiagram(new ChemicalDiagram());
    create_diagram(molecule);
    return diagram_;
}

bool ChemicalDiagramGenerator::is_a_terminal_hydrogen(HAtom atom) const {
    if (atom->element().atomic_number() != 1 || atom->nbonds() != 1) return false;
    const std::deque<HAtom> neighbours = atom->neighbours();
    if (neighbours.front()->element().atomic_number() != 1) return true;
    // Of two bonded hydrogens, a sited one stays so that a drawn H2 keeps both atoms.
    return !atom->has_site();
}

int ChemicalDiagramGenerator::nterminal_hydrogens(HAtom atom) const {
    int count = 0;
    for (const HAtom& n : atom->neighbours()) {
        if (!is_a_terminal_hydrogen(n)) continue;
        if (h_treatment_ != FoldTerminalHydrogens && n->has_site()) continue;
        ++count;
    }
    return count;
}

void ChemicalDiagramGenerator::create_diagram(HMolecule molecule) {
    const int nbonds = molecule->nbonds();
    if (nbonds == 0) {
        if (molecule->natoms() > 0) add_disconnected_atoms(molecule);
        return;
    }
    for (int i = 0; i < nbonds; ++i) {
        const HBond bond = molecule->bond(i);
        const HAtom atoms[2] = {bond->atom1(), bond->atom2()};
        const bool terminal = is_a_terminal_hydrogen(atoms[0]) || is_a_terminal_hydrogen(atoms[1]);
        if (!atoms[0]->has_site() || !atoms[1]->has_site()) continue;
        if (h_treatment_ != KeepSitedTerminalHydrogens && terminal) continue;
        HDiagramEdge edge(new DiagramBond(bond->type()));
        HDiagramAtom nodes[2];
        for (int k = 0; k < 2; ++k) {
            std::map<HAtom, HDiagramAtom>::const_iterator found = atom_match_.find(atoms[k]);
            if (found != atom_match_.end()) {
                nodes[k] = found->second;
                continue;
            }
            HDiagramAtom node(new DiagramAtom(atoms[k]->element(), 0));
            node->set_position(site_xy(atoms[k]));
            node->set_nterminal_hydrogens(nterminal_hydrogens(atoms[k]));
            if (atoms[k]->formal_charge() != 0) node->set_formal_charge(atoms[k]->formal_charge());
            atom_match_.insert(std::make_pair(atoms[k], node));
            nodes[k] = node;
        }
        diagram_->add(edge, nodes[0], nodes[1]);
    }
    // Ions and lone atoms.
    std::vector<HAtom> unbonded;
    for (int i = 0; i < molecule->natoms(); ++i) {
        const HAtom atom = molecule->atom(i);
        if (atom->has_site() && !is_a_terminal_hydrogen(atom) && atom_match_.count(atom) == 0)
            unbonded.push_back(atom);
    }
    add_disconnected_atoms(unbonded);
}

void ChemicalDiagramGenerator::add_disconnected_atoms(HMolecule molecule) {
    for (int i = 0; i < molecule->natoms(); ++i) add_disconnected_atom(molecule->atom(i));
}

void ChemicalDiagramGenerator::add_disconnected_atoms(const std::vector<HAtom>& atoms) {
    for (const HAtom& atom : atoms) add_disconnected_atom(atom);
}

void ChemicalDiagramGenerator::add_disconnected_atom(HAtom atom) {
    HDiagramAtom node(new DiagramAtom(atom->element(), 0));
    node->set_position(site_xy(atom));
    node->set_nterminal_hydrogens(nterminal_hydrogens(atom));
    diagram_->add(HDiagramNode(node));
}

}  // namespace molcryst

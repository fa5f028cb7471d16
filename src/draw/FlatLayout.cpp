#include "molcryst/draw/FlatLayout.h"

#include <cmath>
#include <memory>
#include <vector>

#include <coordgen/sketcherMinimizer.h>

#include "molcryst/molecule/Atom.h"
#include "molcryst/molecule/Bond.h"
#include "molcryst/molecule/Molecule3d.h"
#include "molcryst/molecule/Site.h"

namespace molcryst {
namespace draw {

namespace {

// CoordGen knows bond orders 1 to 3. Aromatic and delocalised bonds are laid
// out as single bonds: the ring perception of the layout does not need the
// order, and a Kekule pattern is not ours to invent.
int layout_order(BondType type) {
    switch (type) {
        case DOUBLE_BOND:
            return 2;
        case TRIPLE_BOND:
        case QUADRUPLE_BOND:
            return 3;
        default:
            return 1;
    }
}

void place(const HAtom& atom, const Point& p) {
    if (atom->has_site())
        atom->site()->set_coordinates(p);
    else
        atom->set_site(HSite(new Site(p)));
}

}  // namespace

HMolecule flat_copy(const Molecule& molecule) {
    HMolecule copy(new Molecule3d(molecule));
    const int n = copy->natoms();
    // Terminal hydrogens as the generator judges them, on the copy as it came.
    ChemicalDiagramGenerator judge;
    std::vector<int> parent(static_cast<std::size_t>(n), -1);
    for (int i = 0; i < n; ++i) {
        const HAtom atom = copy->atom(i);
        if (judge.is_a_terminal_hydrogen(atom)) {
            const HAtom heavy = atom->neighbours().front();
            for (int j = 0; j < n; ++j)
                if (copy->atom(j) == heavy) parent[static_cast<std::size_t>(i)] = j;
        }
    }

    std::vector<double> x(static_cast<std::size_t>(n), 0.0), y(static_cast<std::size_t>(n), 0.0);
    double scale = flat_bond_length / 50.0;  // CoordGen draws bonds 50 units long
    {
        sketcherMinimizer minimizer;
        // The minimizer takes the molecule over once initialised with it.
        std::unique_ptr<sketcherMinimizerMolecule> owned(new sketcherMinimizerMolecule());
        std::vector<sketcherMinimizerAtom*> laid(static_cast<std::size_t>(n), nullptr);
        for (int i = 0; i < n; ++i) {
            if (parent[static_cast<std::size_t>(i)] >= 0) continue;
            const HAtom atom = copy->atom(i);
            sketcherMinimizerAtom* a = owned->addNewAtom();
            const int z = atom->element().atomic_number();
            a->setAtomicNumber(z > 0 ? z : 6);  // pseudo-elements are laid out as carbon
            a->charge = atom->formal_charge();
            laid[static_cast<std::size_t>(i)] = a;
        }
        std::vector<std::pair<sketcherMinimizerAtom*, sketcherMinimizerAtom*> > pairs;
        for (int b = 0; b < copy->nbonds(); ++b) {
            const HBond bond = copy->bond(b);
            int i1 = -1, i2 = -1;
            for (int i = 0; i < n && (i1 < 0 || i2 < 0); ++i) {
                if (copy->atom(i) == bond->atom1()) i1 = i;
                if (copy->atom(i) == bond->atom2()) i2 = i;
            }
            if (i1 < 0 || i2 < 0) continue;
            sketcherMinimizerAtom* a1 = laid[static_cast<std::size_t>(i1)];
            sketcherMinimizerAtom* a2 = laid[static_cast<std::size_t>(i2)];
            if (a1 == nullptr || a2 == nullptr) continue;
            owned->addNewBond(a1, a2)->setBondOrder(layout_order(bond->type()));
            pairs.push_back(std::make_pair(a1, a2));
        }
        if (!owned->getAtoms().empty()) {
            minimizer.initialize(owned.release());
            minimizer.runGenerateCoordinates();
            double total = 0.0;
            for (const auto& p : pairs) {
                const sketcherMinimizerPointF d = p.first->getCoordinates() - p.second->getCoordinates();
                total += std::sqrt(static_cast<double>(d.x()) * d.x() + static_cast<double>(d.y()) * d.y());
            }
            if (!pairs.empty() && total > 0.0) scale = flat_bond_length * static_cast<double>(pairs.size()) / total;
            for (int i = 0; i < n; ++i) {
                const sketcherMinimizerAtom* a = laid[static_cast<std::size_t>(i)];
                if (a == nullptr) continue;
                x[static_cast<std::size_t>(i)] = a->getCoordinates().x();
                y[static_cast<std::size_t>(i)] = a->getCoordinates().y();
            }
        }
    }
    for (int i = 0; i < n; ++i) {
        const int from = parent[static_cast<std::size_t>(i)] >= 0 ? parent[static_cast<std::size_t>(i)] : i;
        place(copy->atom(i), Point(x[static_cast<std::size_t>(from)] * scale, y[static_cast<std::size_t>(from)] * scale, 0.0));
    }
    return copy;
}

HChemicalDiagram flat_diagram(const Molecule& molecule, ChemicalDiagramGenerator::TerminalHTreatment treatment) {
    ChemicalDiagramGenerator generator;
    generator.set_h_treatment(treatment);
    return generator.create_chemical_diagram(flat_copy(molecule));
}

}  // namespace draw
}  // namespace molcryst

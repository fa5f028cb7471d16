#include "molcryst/io/NormalisedHydrogens.h"

#include "molcryst/edit/HydrogenNormalisation.h"
#include "molcryst/io/StructureReport.h"
#include "molcryst/molecule/Atom3d.h"
#include "molcryst/molecule/Bond3d.h"
#include "molcryst/molecule/Molecule3d.h"

namespace molcryst {

CifBlock NormalisedHydrogens::normalise(const StructureReport& report, std::vector<Moved>& moved) {
    moved.clear();
    const CifBlock& block = report.block();
    CifBlock result = block;
    const HCell cell(new Cell(block.cell));
    const std::vector<CrystalSymmetryOperator>& ops = block.cell.spacegroup().operators();
    // The bonds of each site: a bond to an image is listed from both its
    // ends, one inside the asymmetric unit from one end only.
    struct Partner {
        int site = -1, op = 0;
        Vector<int, 3> lattice;
        double distance = 0.0;
    };
    std::vector<int> nbonds(block.atoms.size(), 0);
    std::vector<Partner> only(block.atoms.size());
    for (const StructureReport::BondRow& b : report.bonds()) {
        const std::size_t a = static_cast<std::size_t>(b.atom1);
        ++nbonds[a];
        only[a] = Partner{b.atom2, b.op, b.lattice, b.distance};
        const bool inside = ops[static_cast<std::size_t>(b.op)].is_identity() && b.lattice[0] == 0 &&
                            b.lattice[1] == 0 && b.lattice[2] == 0;
        if (inside && b.atom2 != b.atom1) {
            const std::size_t c = static_cast<std::size_t>(b.atom2);
            ++nbonds[c];
            only[c] = Partner{b.atom1, b.op, b.lattice, b.distance};
        }
    }
    const HydrogenNormalisation normalisation;
    for (std::size_t i = 0; i < block.atoms.size(); ++i) {
        const CifAtomSite& h = block.atoms[i];
        if (h.element.symbol() != "H" || nbonds[i] != 1) continue;
        const Partner& b = only[i];
        if (b.site == static_cast<int>(i)) continue;  // bonded to its own image: no direction to keep
        const CifAtomSite& p = block.atoms[static_cast<std::size_t>(b.site)];
        const Point hf(h.fract[0].value(), h.fract[1].value(), h.fract[2].value());
        Point pf = ops[static_cast<std::size_t>(b.op)].apply(Point(p.fract[0].value(), p.fract[1].value(), p.fract[2].value()));
        for (int k = 0; k < 3; ++k) pf[k] += b.lattice[k];
        // The pair alone, as a molecule: the kernel's edit decides and moves.
        HMolecule pair(new Molecule3d());
        pair->add(HAtom(new Atom3d(h.element, h.label, HSite(new Site(Site::frac(hf, block.cell))))));
        pair->add(HAtom(new Atom3d(p.element, p.label, HSite(new Site(Site::frac(pf, block.cell))))));
        pair->add(HBond(new Bond3d(SINGLE_BOND)), 0, 1);
        const HSite old = pair->atom(0)->site();
        normalisation.apply(*pair, *cell);
        const HSite now = pair->atom(0)->site();
        if (now.unhand() == old.unhand()) continue;  // the parent's element has no distance
        for (int k = 0; k < 3; ++k) result.atoms[i].fract[static_cast<std::size_t>(k)] = UncertainValue(now->frac()[k]);
        moved.push_back(Moved{static_cast<int>(i), b.site, b.distance, pair->distance(0, 1)});
    }
    return result;
}

}  // namespace molcryst

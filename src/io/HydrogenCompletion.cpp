#include "molcryst/io/HydrogenCompletion.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <stdexcept>

#include "molcryst/crystal/CrystalMaker.h"
#include "molcryst/io/BondOrderPerception.h"
#include "molcryst/io/CifError.h"
#include "molcryst/io/StructureReport.h"
#include "molcryst/molecule/Molecule3d.h"
#include "molcryst/molecule/MoleculeFunctions.h"
#include "molcryst/molecule/Site.h"

namespace molcryst {

namespace {

std::string suffix_after_symbol(const std::string& label, const Element& e) {
    const std::string& symbol = e.symbol();
    if (label.size() >= symbol.size()) {
        bool same = true;
        for (std::size_t i = 0; i < symbol.size(); ++i)
            same = same && std::toupper(static_cast<unsigned char>(label[i])) ==
                               std::toupper(static_cast<unsigned char>(symbol[i]));
        if (same) return label.substr(symbol.size());
    }
    return label;
}

// Labels "H<rest>", "H<rest>A", "H<rest>B", ... that no site has yet.
std::vector<std::string> new_labels(const std::string& rest, int count, std::set<std::string>& taken) {
    std::vector<std::string> labels;
    if (count == 1 && taken.insert("H" + rest).second) {
        labels.push_back("H" + rest);
        return labels;
    }
    for (int k = 0; static_cast<int>(labels.size()) < count; ++k) {
        std::string tail;
        for (int n = k; ; n = n / 26 - 1) {  // A..Z, AA, AB, ...
            tail.insert(tail.begin(), static_cast<char>('A' + n % 26));
            if (n < 26) break;
        }
        if (taken.insert("H" + rest + tail).second) labels.push_back("H" + rest + tail);
    }
    return labels;
}

// The parent's isotropic displacement: Uiso, or the mean of the diagonal of Uaniso.
double parent_u(const CifAtomSite& a) {
    if (a.displacement == CifAtomSite::Uaniso)
        return (a.u_aniso[0].value() + a.u_aniso[1].value() + a.u_aniso[2].value()) / 3.0;
    if (a.displacement == CifAtomSite::NoDisplacement) return 0.0;
    return a.u_iso.value();
}


}  // namespace

CifBlock HydrogenCompletion::complete(const StructureReport& report, const std::string& source,
                                      std::vector<Added>& added, std::vector<std::string>& warnings) {
    const CifBlock& block = report.block();
    CifBlock result = block;
    std::set<std::string> taken;
    for (const CifAtomSite& a : block.atoms) taken.insert(a.label);
    auto warn = [&](int site, const std::string& what) {
        warnings.push_back(CifError(source, block.atoms[static_cast<std::size_t>(site)].line,
                                    "no hydrogens added to " + block.atoms[static_cast<std::size_t>(site)].label + ": " +
                                        what)
                               .what());
    };

    // Each molecule whole, so that an atom sees its neighbours through
    // symmetry; counting and placing happen there, on a copy.
    const std::vector<HMolecule>& whole = report.whole_molecules();
    Hvector_HMolecule copies(new vector_HMolecule());
    for (const HMolecule& m : whole) copies->push_back(HMolecule(new Molecule3d(*m)));

    // Bonds from each site, to know an image with every neighbour beside it.
    std::vector<int> nbonds(block.atoms.size(), 0);
    // A bond inside the asymmetric unit is listed once, one to an image from both ends.
    for (const StructureReport::BondRow& r : report.bonds()) {
        ++nbonds[static_cast<std::size_t>(r.atom1)];
        const bool inside = block.cell.spacegroup().operators()[static_cast<std::size_t>(r.op)].is_identity() &&
                            r.lattice[0] == 0 && r.lattice[1] == 0 && r.lattice[2] == 0;
        if (inside) ++nbonds[static_cast<std::size_t>(r.atom2)];
    }

    for (std::size_t c = 0; c < copies->size(); ++c) {
        const HMolecule m = (*copies)[c];
        BondOrderPerception::perceive(*m);
        std::vector<int> parents, counts, sites;
        for (int s : report.molecules()[c].sites) {
            const CifAtomSite& site = block.atoms[static_cast<std::size_t>(s)];
            const int z = site.element.atomic_number();
            if (z <= 1) continue;
            // A halogen bonded to nothing is a halide ion, charged or not as deposited.
            if ((z == 9 || z == 17 || z == 35 || z == 53) && nbonds[static_cast<std::size_t>(s)] == 0) continue;
            // The image of the site with all its neighbours, the deposited one first.
            const Point deposited(site.fract[0].value(), site.fract[1].value(), site.fract[2].value());
            int index = -1;
            for (int k = 0; k < m->natoms(); ++k) {
                const HAtom a = m->atom(k);
                if (a->symmtag() != s || a->nbonds() != nbonds[static_cast<std::size_t>(s)]) continue;
                if (index < 0 || equals(a->site()->frac(), deposited, 1e-06)) index = k;
            }
            if (index < 0) {
                warn(s, "its neighbours are not all known");
                continue;
            }
            int count = 0;
            try {
                count = calculate_hydrogens(m, index);
            } catch (const std::runtime_error& e) {
                warn(s, e.what());
                continue;
            }
            if (count <= 0) continue;
            if (report.on_special_position()[static_cast<std::size_t>(s)]) {
                warn(s, "it lies on a special position");
                continue;
            }
            parents.push_back(index);
            counts.push_back(count);
            sites.push_back(s);
        }
        int next = m->natoms();
        // A maker of this molecule alone: the new tags play no part here, and
        // reading them over one molecule keeps the whole run linear.
        HCrystalMaker maker(new CrystalMaker(block.cell, Hvector_HMolecule(), Hvector_HMolecule(),
                                             Hvector_HMolecule(new vector_HMolecule(1, m))));
        add_hydrogens_with_sites(maker, m, parents, counts);
        for (std::size_t p = 0; p < parents.size(); ++p) {
            const CifAtomSite& site = block.atoms[static_cast<std::size_t>(sites[p])];
            const Point deposited(site.fract[0].value(), site.fract[1].value(), site.fract[2].value());
            // Back onto the deposited site: the relation that takes this
            // image of the parent to the parent as deposited.
            const THandle<CrystalSymmetryTransformation> back =
                block.cell.symmetry_relation(m->atom(parents[p])->site()->frac(), deposited, 1e-05);
            const std::vector<std::string> labels =
                new_labels(suffix_after_symbol(site.label, site.element), counts[p], taken);
            const bool methyl_or_oxygen = site.element.atomic_number() == 8 || counts[p] == 3;
            const double u = parent_u(site);
            for (int k = 0; k < counts[p]; ++k, ++next) {
                CifAtomSite h;
                h.label = labels[static_cast<std::size_t>(k)];
                h.type_symbol = "H";
                h.element = Element(Element::H);
                const Point at = m->atom(next)->site()->frac();
                const Point f = back.unhand() != nullptr ? Point(*back * at) : at;
                for (int x = 0; x < 3; ++x) h.fract[static_cast<std::size_t>(x)] = f[x];
                h.occupancy = site.occupancy;
                if (u > 0.0) {
                    h.displacement = CifAtomSite::Uiso;
                    h.u_iso = (methyl_or_oxygen ? 1.5 : 1.2) * u;
                }
                h.disorder_assembly = site.disorder_assembly;
                h.disorder_group = site.disorder_group;
                h.line = site.line;
                added.push_back(Added{static_cast<int>(result.atoms.size()), sites[p]});
                result.atoms.push_back(h);
            }
        }
    }
    return result;
}

}  // namespace molcryst

#include "molcryst/io/MolecularSurroundings.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <tuple>

#include "molcryst/contact/HBondCriterion.h"
#include "molcryst/contact/VdWCriterion.h"
#include "molcryst/crystal/CrystalMaker.h"
#include "molcryst/io/StructureReport.h"
#include "molcryst/molecule/Site.h"

namespace molcryst {

namespace {

const double place_tolerance = 1e-04;

struct Placement {
    int op = -1;  // -1: not an image of the base, or the central molecule itself
    Vector<int, 3> lattice;
};

// Whether `image` stands where `central` does: an atom of one within
// 0.05 A of the atom of the same tag in the other. Coordinates of sites on
// symmetry elements given to four decimals put the molecule's own images
// that close, never a neighbour.
bool overlaps(const Molecule& central, const Molecule& image) {
    for (int a = 0; a < image.natoms(); ++a)
        for (int b = 0; b < central.natoms(); ++b)
            if (image.atom(a)->symmtag() == central.atom(b)->symmtag() &&
                distance(image.atom(a)->site()->orth(), central.atom(b)->site()->orth()) < 0.05)
                return true;
    return false;
}

// Whether `image` is `base` moved by operator `op` and `lattice`: every atom
// of the image on the image of an atom of the base with the same tag.
bool places(const Cell& cell, const Molecule& base, const Molecule& image, int op, const Vector<int, 3>& lattice) {
    const CrystalSymmetryTransformation t(cell.spacegroup().operators()[static_cast<std::size_t>(op)], lattice);
    for (int x = 0; x < image.natoms(); ++x) {
        const HAtom a = image.atom(x);
        bool found = false;
        for (int y = 0; y < base.natoms() && !found; ++y) {
            const HAtom b = base.atom(y);
            found = b->symmtag() == a->symmtag() && equals(t * b->site()->frac(), a->site()->frac(), place_tolerance);
        }
        if (!found) return false;
    }
    return true;
}

// The first operator and translation that carry `base` onto `image`.
Placement placement_of(const Cell& cell, const Molecule& base, const Molecule& image) {
    Placement p;
    if (image.natoms() == 0) return p;
    const HAtom first = image.atom(0);
    const std::vector<CrystalSymmetryOperator>& ops = cell.spacegroup().operators();
    for (std::size_t k = 0; k < ops.size(); ++k) {
        for (int y = 0; y < base.natoms(); ++y) {
            const HAtom b = base.atom(y);
            if (b->symmtag() != first->symmtag()) continue;
            const Point moved = ops[k] * b->site()->frac();
            Vector<int, 3> lattice;
            for (int i = 0; i < 3; ++i) lattice[i] = static_cast<int>(std::lround(first->site()->frac()[i] - moved[i]));
            if (places(cell, base, image, static_cast<int>(k), lattice)) {
                p.op = static_cast<int>(k);
                p.lattice = lattice;
                return p;
            }
        }
    }
    return p;
}

}  // namespace

std::vector<std::vector<MolecularSurroundings::Neighbour> > MolecularSurroundings::of(const StructureReport& report) {
    const CifBlock& block = report.block();
    const Cell& cell = block.cell;
    const std::vector<StructureReport::MoleculeRow>& rows = report.molecules();
    // Whole molecules, so that no neighbour is a part of the central one;
    // a polymer only as its asymmetric part, whose images cover it once.
    Hvector_HMolecule list(new vector_HMolecule());
    for (std::size_t c = 0; c < rows.size(); ++c)
        list->push_back(rows[c].polymeric ? report.asymmetric_molecules()[c] : report.whole_molecules()[c]);
    HCrystalMaker maker(new CrystalMaker(cell, Hvector_HMolecule(), Hvector_HMolecule(), list));
    maker->select_3d();

    const VdWCriterion vdw(0.0, -5.0, INTERMOLECULAR, 1, 999, false);
    const HBondCriterion hbond(0.0, -5.0, Angle::from_degrees(120.0), true, false, INTERMOLECULAR, 3, 999);
    const ContactCriterion* criteria[2] = {&vdw, &hbond};

    std::vector<std::vector<Neighbour> > result(rows.size());
    for (int i = 0; i < static_cast<int>(rows.size()); ++i) {
        if (rows[static_cast<std::size_t>(i)].polymeric) continue;
        const HMolecule central = (*list)[static_cast<std::size_t>(i)];
        const std::vector<int> atoms_i = central->atoms_with_sites();
        std::map<std::tuple<int, int, int, int, int>, Neighbour> found;
        for (int which = 0; which < 2; ++which) {
            // Each pair of atoms once: where a molecule on a symmetry element
            // comes back as a whole image and as a piece of another, the
            // piece's atoms stand on places the whole image holds already.
            std::set<std::tuple<int, long long, long long, long long> > seen;
            for (int j = 0; j < static_cast<int>(rows.size()); ++j) {
                const HMolecule base = (*list)[static_cast<std::size_t>(j)];
                const HCrystal crystal =
                    maker->create_nonbonded_molecule(i, atoms_i, j, base->atoms_with_sites(), *criteria[which]);
                std::map<const Molecule*, Placement> placed;
                for (const HMolecularContact& c : *crystal->contacts()) {
                    // The central end is the copy of the central molecule, at its own place.
                    const bool from_central =
                        c->molecule_from()->natoms() == central->natoms() &&
                        equals(c->molecule_from()->atom(0)->site()->frac(), central->atom(0)->site()->frac(), 1e-06);
                    const HMolecule& image = from_central ? c->molecule_to() : c->molecule_from();
                    const int near = from_central ? c->atom_from() : c->atom_to();
                    const int far = from_central ? c->atom_to() : c->atom_from();
                    const Point& there = image->atom(far)->site()->orth();
                    if (!seen.insert(std::make_tuple(near, std::llround(there[0] * 1e4), std::llround(there[1] * 1e4),
                                                     std::llround(there[2] * 1e4)))
                             .second)
                        continue;
                    auto p = placed.find(image.unhand());
                    if (p == placed.end())
                        p = placed
                                .emplace(image.unhand(), j == i && overlaps(*central, *image)
                                                             ? Placement()
                                                             : placement_of(cell, *base, *image))
                                .first;
                    if (p->second.op < 0) continue;
                    const Vector<int, 3>& t = p->second.lattice;
                    Neighbour& n = found[std::make_tuple(j, p->second.op, t[0], t[1], t[2])];
                    n.molecule = j;
                    n.op = p->second.op;
                    for (int k = 0; k < 3; ++k) n.lattice[k] = t[k];
                    n.symmetry = symmetry_code(n.op, t);
                    const HAtom a = c->molecule_from()->atom(c->atom_from());
                    const HAtom b = c->molecule_to()->atom(c->atom_to());
                    const double d = distance(a->site()->orth(), b->site()->orth());
                    // The closest van der Waals contact names the neighbour;
                    // a hydrogen bond does only when there is none.
                    const bool closer = n.atom1 < 0 || ((which == 0 || n.contacts == 0) && d < n.distance);
                    if (which == 0)
                        ++n.contacts;
                    else
                        ++n.hbonds;
                    if (closer) {
                        n.atom1 = (from_central ? c->molecule_from() : c->molecule_to())->atom(near)->symmtag();
                        n.atom2 = image->atom(far)->symmtag();
                        n.distance = d;
                    }
                }
            }
        }
        std::vector<Neighbour>& neighbours = result[static_cast<std::size_t>(i)];
        for (const auto& entry : found) neighbours.push_back(entry.second);
        std::stable_sort(neighbours.begin(), neighbours.end(), [](const Neighbour& a, const Neighbour& b) {
            if (a.molecule != b.molecule) return a.molecule < b.molecule;
            if (a.op != b.op) return a.op < b.op;
            return std::lexicographical_compare(a.lattice, a.lattice + 3, b.lattice, b.lattice + 3);
        });
    }
    return result;
}

}  // namespace molcryst

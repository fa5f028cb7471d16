#include "molcryst/crystal/CrystalMakerHelpers.h"

#include <stdexcept>

#include "molcryst/geometry/FractionalSolid.h"
#include "molcryst/molecule/Molecule3d.h"
#include "molcryst/molecule/MoleculeSubset.h"
#include "molcryst/molecule/Site.h"

namespace molcryst {

namespace CrystalMakerHelpers {

namespace {

// The index of an atom or bond in its molecule; -1 for one in no molecule,
// whose index cannot be asked.
template <class Handle>
int index_or_none(const Handle& h) {
    if (h.unhand() == nullptr) return -1;
    try {
        return h->index();
    } catch (const std::runtime_error&) {
        return -1;
    }
}

}  // namespace

HMolecule molecule(const CrystalMaker& maker, HAtom atom) {
    const int index = index_or_none(atom);
    if (index < 0) return HMolecule();
    for (const HMolecule& m : *maker.current_molecules())
        if (index < m->natoms() && m->atom(index) == atom) return m;
    return HMolecule();
}

HMolecule molecule(const CrystalMaker& maker, HBond bond) {
    const int index = index_or_none(bond);
    if (index < 0) return HMolecule();
    for (const HMolecule& m : *maker.current_molecules())
        if (index < m->nbonds() && m->bond(index) == bond) return m;
    return HMolecule();
}

HMolecule lazy_select_3d(HMolecule m) {
    const int n = m->natoms();
    const AtomSiteLess siteless;
    for (int i = 0; i < n; ++i) {
        if (!siteless(m->atom(i))) continue;
        HMolecule copy(new Molecule3d(*m));
        copy->remove_atoms(AtomSiteLess());
        return copy;
    }
    return m;
}

HMolecule lazy_subset(HMolecule m, const std::vector<int>& atoms) {
    if (static_cast<int>(atoms.size()) == m->natoms()) return m;
    HMoleculeSubset subset(new MoleculeSubset(m));
    subset->select_atom_indices(atoms);
    return subset;
}

bool molecule_contains_symmetry_atoms(const Cell& cell, const Molecule& molecule, double tolerance) {
    const std::vector<int> sited = molecule.atoms_with_sites();
    for (std::size_t i = 0; i < sited.size(); ++i) {
        HAtom a = molecule.atom(sited[i]);
        for (std::size_t j = i + 1; j < sited.size(); ++j) {
            HAtom b = molecule.atom(sited[j]);
            if (a->element() == b->element() &&
                cell.is_symmetry_related(a->site()->frac(), b->site()->frac(), tolerance))
                return true;
        }
    }
    return false;
}

bool molecule_expansion_needed(const CrystalMaker& maker) {
    for (const HMolecule& m : *maker.current_molecules())
        if (molecule_contains_symmetry_atoms(maker.cell(), *m, 1e-05)) return false;
    return true;
}

Vector<double, 3> transform_axis(const Vector<int, 3>& v, const Cell& cell) {
    return cell.a_axis() * static_cast<double>(v[0]) + cell.b_axis() * static_cast<double>(v[1]) +
           cell.c_axis() * static_cast<double>(v[2]);
}

Box expand_packing_box(const Cell& cell, double tolerance, const Box& box) {
    Box expanded(box);
    expanded.expand(tolerance / cell.a(), tolerance / cell.b(), tolerance / cell.c());
    return expanded;
}

HCrystal create_packed_crystal(const CrystalMaker& maker, const Box& box) {
    const FractionalSolid solid(THandle<Solid>(new Box(expand_packing_box(maker.cell(), 0.001, box))));
    return maker.create_crystal(IfCentroidIncluded<HAtom>(), solid);
}

}  // namespace CrystalMakerHelpers

}  // namespace molcryst

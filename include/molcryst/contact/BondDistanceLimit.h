// BondDistanceLimit: the rule that decides from two atom positions whether
// the atoms are bonded. A pair is bonded when its distance is above a
// minimum and at most the limit of its two elements, read from a table by
// element code; hydrogen to hydrogen only when allowed.
//
// The table is 108 by 108, indexed by element codes, upper triangle only
// (row the smaller code). Its rule: the sum of the two covalent radii plus
// 0.45 Angstrom, tighter (the sum less 0.45) between two alkali,
// alkaline-earth or lanthanide metals, a few tuned pairs, and 0.0 (never
// bonded) for any pair with "Unknown", At, Bk, Cf, Cm, Es, Fm, Fr, Lr, Md,
// No, Rn or the pseudo-elements X, Z and Zz.
//
// Archive layout: the minimum distance (double), then the flag (bool).
#ifndef MOLCRYST_CONTACT_BONDDISTANCELIMIT_H
#define MOLCRYST_CONTACT_BONDDISTANCELIMIT_H

#include <array>
#include <utility>
#include <vector>

#include "molcryst/elements/Element.h"
#include "molcryst/molecule/Atom.h"

namespace molcryst {

class Archive;
// Symmetry mappings belong to crystal generation, above contacts; the bond
// test on two images is only declared here.
template <class T>
class CrystalSymmetryMapping;
// Disorder belongs to the edits, above contacts; the bond test on two
// alternatives is only declared here.
class DisorderAtom;

/// Bonded or not, by distance and a table of limits per element pair.
class BondDistanceLimit {
public:
    typedef std::array<std::array<double, Element::ncodes_>, Element::ncodes_> Table;

    /// A pair at `min_distance` Angstrom or nearer is not a bond; two
    /// hydrogens (atomic number 1) bond only if `hydrogens_may_bond`.
    BondDistanceLimit(double min_distance, bool hydrogens_may_bond);

    double min_distance() const { return min_distance_; }
    bool hydrogens_may_bond() const { return hydrogens_may_bond_; }

    /// The greatest distance (Angstrom) at which the pair counts as bonded;
    /// symmetric in its arguments.
    static double limit(const Element& a, const Element& b);
    /// The whole table, rows by the smaller code; built on first use.
    static const Table& bond_limits();

    /// Whether the atoms are bonded: both with sites, their distance above
    /// the minimum and at most the limit, and not two hydrogens unless
    /// allowed. A null atom throws std::invalid_argument.
    bool is_a_bond(THandle<Atom> a, THandle<Atom> b) const;
    /// The test on the parents, except that two atoms of different non-zero
    /// groups of one disorder assembly are never bonded: they are alternatives.
    /// A null atom throws std::invalid_argument.
    bool is_a_bond(THandle<DisorderAtom> a, THandle<DisorderAtom> b) const;
    /// The test on the two images (the mappings' targets).
    bool is_a_bond(THandle<CrystalSymmetryMapping<THandle<Atom> > > a,
                   THandle<CrystalSymmetryMapping<THandle<Atom> > > b) const;

    /// Every bonded pair (i, j), i < j, of `atoms`: the pairs of the walk
    /// over all pairs, i ascending then j ascending, for which is_a_bond
    /// holds. Candidates come from a spatial grid as wide as the largest
    /// limit among the elements present, so far pairs are never tested.
    std::vector<std::pair<int, int> > bonded_pairs(const std::vector<THandle<Atom> >& atoms) const;
    /// Every bonded pair (i, j) with i an index of `from` and j of `to`, i
    /// ascending then j ascending; through the same grid, over `to`.
    std::vector<std::pair<int, int> > bonded_pairs(const std::vector<THandle<Atom> >& from,
                                                   const std::vector<THandle<Atom> >& to) const;

    bool operator==(const BondDistanceLimit& other) const {
        return min_distance_ == other.min_distance_ && hydrogens_may_bond_ == other.hydrogens_may_bond_;
    }
    bool operator!=(const BondDistanceLimit& other) const { return !(*this == other); }

    void write(Archive& ar) const;
    /// Reads the layout above; on failure the object is left as it was.
    void read(Archive& ar);

private:
    double min_distance_;      // Angstrom
    bool hydrogens_may_bond_;  // whether H to H is admitted
};

}  // namespace molcryst

#endif

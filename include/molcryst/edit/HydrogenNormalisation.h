// HydrogenNormalisation: moves each terminal hydrogen along its bond to a
// standard distance from its anchor atom, by the anchor's element. X-ray
// structures place hydrogens too close to their anchors (the electron density
// is pulled into the bond); the defaults are the mean neutron distances.
#ifndef MOLCRYST_EDIT_HYDROGENNORMALISATION_H
#define MOLCRYST_EDIT_HYDROGENNORMALISATION_H

#include <map>

#include "molcryst/edit/MoleculeGeometryEdit.h"
#include "molcryst/elements/Element.h"
#include "molcryst/geometry/Cell.h"

namespace molcryst {

// A CrystalMaker sits above the edits' molecules; only a reference is taken.
class CrystalMaker;

/// The X-H distance by anchor element, and the edit that applies it.
class HydrogenNormalisation : public MoleculeGeometryEdit {
public:
    typedef std::map<Element, double> DistanceMap;

    /// No molecule and no cell; the default distances.
    HydrogenNormalisation();
    /// The default distances.
    HydrogenNormalisation(const HMolecule& molecule, const HCell& cell);

    /// std::runtime_error without a molecule or a cell; else apply(molecule, cell).
    void apply() const override;
    bool is_absolute() const override { return false; }
    /// Normalises the hydrogens of `molecule`, new fractional points through `cell`.
    void apply(const Molecule& molecule, const Cell& cell) const;
    /// Normalises every current molecule of `maker` in the maker's cell.
    void apply(const CrystalMaker& maker) const;

    const HCell& cell() const { return cell_; }
    void set_molecule_and_cell(const HMolecule& molecule, const HCell& cell);

    /// Back to C 1.083, N 1.009 and O 0.983 Angstrom alone.
    void reset_normalisation_data();
    DistanceMap::const_iterator begin_elements() const { return distances_.begin(); }
    DistanceMap::const_iterator end_elements() const { return distances_.end(); }
    int nelements() const { return static_cast<int>(distances_.size()); }
    /// Sets the X-H distance (Angstrom) for anchors of `element`.
    void add(const Element& element, double distance);
    void remove(const Element& element);

    /// Each bond, in index order, that joins a sited hydrogen (symbol "H",
    /// so not deuterium) of exactly one bond to a sited atom of an element in
    /// the table gets its hydrogen moved. Nothing when the table is empty.
    void normalise_atoms(const Molecule& molecule, const Cell& cell) const;
    /// Gives `hydrogen` a new site at the table's distance from `anchor`
    /// along the present direction; `distance` is the present one. A distance
    /// within 1e-07 of 0 throws std::runtime_error.
    void normalise_distance(const Cell& cell, HAtom& hydrogen, const HAtom& anchor, double distance) const;

private:
    DistanceMap distances_;  // anchor element to X-H distance, Angstrom
    HCell cell_;
};

typedef THandle<HydrogenNormalisation> HHydrogenNormalisation;

}  // namespace molcryst

#endif

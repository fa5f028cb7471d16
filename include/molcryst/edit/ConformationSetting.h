// ConformationSetting: an edit that sets torsion angles of a molecule by
// turning the smaller side of the molecule about each torsion's central bond.
// Only coordinates change; a bond in a ring has no side that can turn alone
// and is refused.
#ifndef MOLCRYST_EDIT_CONFORMATIONSETTING_H
#define MOLCRYST_EDIT_CONFORMATIONSETTING_H

#include "molcryst/edit/MoleculeGeometryEdit.h"
#include "molcryst/edit/TorsionAngleSetting.h"
#include "molcryst/geometry/Cell.h"

namespace molcryst {

/// A list of torsions set in order, each on the geometry the previous left.
class ConformationSetting : public MoleculeGeometryEdit {
public:
    /// No molecule, no torsions, the default cell.
    ConformationSetting();
    /// No torsions yet. Moved atoms take fractional points through `cell`,
    /// or through a default Cell when it is null.
    ConformationSetting(const HMolecule& molecule, const HCell& cell);
    /// The torsions of `torsions` (a null list is an empty one); a null
    /// element throws std::invalid_argument.
    ConformationSetting(const HMolecule& molecule, const Hvector_HTorsionAngleSetting& torsions, const HCell& cell);

    /// Gives every sited atom a copy of its site, so that sites shared with
    /// other molecules stay, then sets each torsion in order. A torsion that
    /// cannot be set throws std::runtime_error and leaves the molecule's atoms
    /// with the very sites they had before.
    void apply() const override;
    bool is_absolute() const override { return false; }

    /// Sets one torsion on the present sites, moving the smaller side of the
    /// axis (the atom2 side on equal sizes). std::runtime_error, with nothing
    /// moved, when atom2 and atom3 are not joined, when either side of the
    /// axis holds no atom but its end (a ring bond, a terminal atom), when a
    /// named atom has no site, or when atom1 and atom4 do not lie on the two
    /// sides. Its cost grows with the side that moves.
    void set_torsion(const TorsionAngleSetting& t) const;

    /// Appends a torsion; a null one throws std::invalid_argument.
    void add_torsion(const HTorsionAngleSetting& t);
    int ntorsions() const { return static_cast<int>(torsions_.size()); }
    vector_HTorsionAngleSetting::const_iterator begin_torsions() const { return torsions_.begin(); }
    vector_HTorsionAngleSetting::const_iterator end_torsions() const { return torsions_.end(); }

    const HCell& cell() const { return cell_; }
    /// Takes the molecule's topology anew; call it after atoms or bonds
    /// of the molecule have changed. Null molecule, null graph.
    void set_graph();

private:
    vector_HTorsionAngleSetting torsions_;
    HCell cell_;            // never null
    HMoleculeGraph graph_;  // the molecule's topology when it was taken
};

typedef THandle<ConformationSetting> HConformationSetting;

}  // namespace molcryst

#endif

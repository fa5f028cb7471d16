// Site: where an atom stands. Its coordinates in both the fractional frame
// of the crystal and orthogonal Angstrom space, its occupancy, and
// optionally the uncertainties of its coordinates and its displacement
// parameters. A site does not know its cell: every conversion takes one.
//
// Archive layout, current (version 6, or a plain archive): orthogonal point,
// fractional point (three doubles each); occupancy value (double) and its
// Uncertainty; int 1 and three Uncertainty of the coordinates, or int 0;
// the displacement parameters as a possibly null handle. Older versions
// lack fields: see read().
#ifndef MOLCRYST_MOLECULE_SITE_H
#define MOLCRYST_MOLECULE_SITE_H

#include <iosfwd>

#include "molcryst/geometry/Cell.h"
#include "molcryst/geometry/CrystalSymmetryTransformation.h"
#include "molcryst/geometry/UncertainValue.h"
#include "molcryst/molecule/AtomicDisplacementParameters.h"

namespace molcryst {

/// An atomic position in both coordinate frames, with occupancy.
class Site {
public:
    /// The origin in both frames, occupancy 1.0, no uncertainties, no displacement parameters.
    Site();
    /// A site read from the archive.
    explicit Site(Archive& ar);
    /// The one point stored as both the orthogonal and the fractional point; occupancy 1.0.
    explicit Site(const Point& p);
    Site(const Point& orthogonal, const Point& fractional, double occupancy);
    /// All fields; the handles are adopted, not copied.
    Site(const Point& orthogonal, const Point& fractional, const UncertainValue& occupancy,
         const THandle<Array<Uncertainty, 3> >& uncertainty,
         const THandle<AtomicDisplacementParameters>& adp = THandle<AtomicDisplacementParameters>());
    /// A deep copy: new objects for the uncertainties and displacement parameters.
    Site(const Site& other);
    /// A deep copy moved by `t` (see transform).
    Site(const Site& other, const CrystalSymmetryTransformation& t, const Cell& cell);
    Site& operator=(const Site& other);
    ~Site();

    /// A site from a fractional point, the orthogonal one derived by the cell.
    static Site frac(const Point& fractional, const Cell& cell, double occupancy = 1.0);
    /// A site from an orthogonal point, the fractional one derived by the cell.
    static Site orth(const Point& orthogonal, const Cell& cell, double occupancy = 1.0);

    const Point& orth() const { return orthogonal_; }
    const Point& frac() const { return fractional_; }
    const UncertainValue& occupancy() const { return occupancy_; }
    void set_occupancy(const UncertainValue& occupancy) { occupancy_ = occupancy; }

    /// Stores the orthogonal point and derives the fractional one.
    void set_orth(const Point& orthogonal, const Cell& cell);
    /// Stores the fractional point and derives the orthogonal one.
    void set_frac(const Point& fractional, const Cell& cell);
    /// Sets both points as given, without conversion.
    void set_coordinates(const Point& orthogonal, const Point& fractional);
    /// Sets the orthogonal point alone; the fractional one stays as it was.
    void set_coordinates(const Point& orthogonal);

    /// Uncertainties of the fractional coordinates; null when unknown.
    const THandle<Array<Uncertainty, 3> >& uncertainty() const { return uncertainty_; }
    void set_uncertainty(const THandle<Array<Uncertainty, 3> >& uncertainty) { uncertainty_ = uncertainty; }
    /// Null when the site has none.
    const THandle<AtomicDisplacementParameters>& atomic_displacement_parameters() const { return adp_; }
    void set_atomic_displacement_parameters(const THandle<AtomicDisplacementParameters>& adp) { adp_ = adp; }

    /// Moves the site to its image under `t`: the fractional point through
    /// the transformation, the orthogonal one from it through the cell, the
    /// coordinate uncertainties and displacement parameters through the
    /// rotation. These get new objects, so that a site sharing them is not moved.
    void transform(const CrystalSymmetryTransformation& t, const Cell& cell);

    /// A hook for consistency checks; does nothing.
    void sanity_check() const {}

    /// "orth (x, y, z) frac (x, y, z) occupancy v", then " uncertainty (..)"
    /// and " adp ..." where present.
    void print(std::ostream& os) const;
    void write(Archive& ar) const;
    /// Reads the layout of the archive's version. On a VersionedArchive:
    /// the occupancy's uncertainty from version 4, the coordinate
    /// uncertainties from version 3, the displacement parameters from
    /// version 6; what is not read stays at its default. A version below 1
    /// throws std::runtime_error. On failure the site is unchanged.
    void read(Archive& ar);

private:
    Point orthogonal_;                                 // Angstrom
    Point fractional_;                                 // cell edges
    UncertainValue occupancy_;                         // usually 0 to 1
    THandle<Array<Uncertainty, 3> > uncertainty_;     // of the fractional coordinates; null unknown
    THandle<AtomicDisplacementParameters> adp_;        // null when none
};

typedef THandle<Site> HSite;

/// Both points, the occupancy, and each handle: null matches only null, and
/// two objects are compared by value.
bool operator==(const Site& a, const Site& b);
bool operator!=(const Site& a, const Site& b);
std::ostream& operator<<(std::ostream& os, const Site& s);
Archive& operator<<(Archive& ar, const Site& s);
Archive& operator>>(Archive& ar, Site& s);

}  // namespace molcryst

#endif

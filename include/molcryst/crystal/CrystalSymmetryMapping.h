// CrystalSymmetryMapping: the record that one object is the symmetry image of
// another, with the transformation that made it; and SymmetryGenerator, the
// policy that makes such images. Symmetry generation is written once for any
// element type that has a generator: atoms (HAtom) and fractional points
// (Point).
#ifndef MOLCRYST_CRYSTAL_CRYSTALSYMMETRYMAPPING_H
#define MOLCRYST_CRYSTAL_CRYSTALSYMMETRYMAPPING_H

#include <vector>

#include "molcryst/geometry/Cell.h"
#include "molcryst/geometry/CrystalSymmetryTransformation.h"
#include "molcryst/geometry/Point.h"
#include "molcryst/molecule/Atom.h"
#include "molcryst/support/THandle.h"

namespace molcryst {

/// `target` is the image of `source` under `transformation`.
template <class T>
class CrystalSymmetryMapping {
public:
    CrystalSymmetryMapping(const T& source, const T& target, const CrystalSymmetryTransformation& transformation)
        : source_(source), target_(target), transformation_(transformation) {}

    const T& source() const { return source_; }
    const T& target() const { return target_; }
    const CrystalSymmetryTransformation& transformation() const { return transformation_; }

private:
    T source_;
    T target_;
    CrystalSymmetryTransformation transformation_;
};

/// The mappings of one image of a group, in the group's order.
template <class T>
using SymmetryMappingList = THandle<std::vector<THandle<CrystalSymmetryMapping<T> > > >;
/// One mapping list per image.
template <class T>
using SymmetryMappingLists = THandle<std::vector<SymmetryMappingList<T> > >;

typedef CrystalSymmetryMapping<HAtom> AtomSymmetryMapping;
typedef THandle<AtomSymmetryMapping> HCrystalSymmetryMapping;
typedef std::vector<HCrystalSymmetryMapping> vector_HCrystalSymmetryMapping;
typedef THandle<vector_HCrystalSymmetryMapping> Hvector_HCrystalSymmetryMapping;
typedef std::vector<Hvector_HCrystalSymmetryMapping> vector_Hvector_HCrystalSymmetryMapping;
typedef THandle<vector_Hvector_HCrystalSymmetryMapping> Hvector_Hvector_HCrystalSymmetryMapping;

/// Makes symmetry images of a `T` and tells where a `T` stands. Stateless;
/// specialised for each element type.
template <class T>
class SymmetryGenerator;

/// Images of atoms: a clone of the atom (of the atom a ProxyAtom stands for)
/// with a new site, the source's site moved by the transformation.
template <>
class SymmetryGenerator<HAtom> {
public:
    /// A null atom raises the null-handle error; an atom without a site
    /// throws std::invalid_argument.
    HAtom target(const HAtom& source, const CrystalSymmetryTransformation& t, const Cell& cell) const;
    /// The fractional point of the atom's site; std::invalid_argument for an
    /// atom without one.
    static const Point& fractional_point(const HAtom& atom);
};

/// Images of fractional points.
template <>
class SymmetryGenerator<Point> {
public:
    Point target(const Point& source, const CrystalSymmetryTransformation& t, const Cell&) const {
        return t.apply(source);
    }
    static const Point& fractional_point(const Point& p) { return p; }
};

}  // namespace molcryst

#endif

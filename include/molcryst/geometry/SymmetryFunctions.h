// The search for symmetry images in a region of a crystal: which lattice
// translations can bring points into a box (find_translation), and which
// symmetry transformations bring a group of points, or a whole box, into a
// region (find_symmetry_transformations). Results follow the spacegroup's
// operator order, then the translations with x outermost, then y, then z.
#ifndef MOLCRYST_GEOMETRY_SYMMETRYFUNCTIONS_H
#define MOLCRYST_GEOMETRY_SYMMETRYFUNCTIONS_H

#include <vector>

#include "molcryst/geometry/Cell.h"
#include "molcryst/geometry/TransformedSolid.h"

namespace molcryst {

namespace SymmetryFunctions {
/// The rule for a group of points against a region.
enum Condition {
    AnyIncluded = 0,  // the group counts if at least one point is inside
    AllIncluded = 1,  // the group counts only if every point is inside
    EachIncluded = 2  // each point counts by itself (searches treat it as AnyIncluded)
};
}  // namespace SymmetryFunctions

/// Three inclusive integer ranges, lower[i] to upper[i] along axis i; empty
/// when some lower bound exceeds its upper bound.
struct TranslationRange {
    /// The empty range.
    TranslationRange() : lower(0, 0, 0), upper(-1, -1, -1) {}
    TranslationRange(const Vector<int, 3>& l, const Vector<int, 3>& u) : lower(l), upper(u) {}

    bool empty() const { return lower[0] > upper[0] || lower[1] > upper[1] || lower[2] > upper[2]; }
    /// The number of translations in the ranges.
    long long count() const;

    Vector<int, 3> lower;
    Vector<int, 3> upper;
};

/// Ranges longer than this, in translations all told, are refused: a search
/// over them would not end in reasonable time.
const long long largest_translation_count = 1LL << 24;

/// Every lattice translation n with p + n inside `box`, as three ranges.
/// Bounds are widened by 1e-9 so that a point on a face is never lost to
/// rounding; extra candidates are the caller's to test. A box that is not
/// finite, or ranges beyond largest_translation_count or the range of int,
/// throw std::domain_error.
TranslationRange find_translation(const Point& p, const Box& box);

/// The ranges that hold, for each point, every translation bringing it into
/// `box`: the smallest ranges covering the points' own ranges. Points that
/// no translation brings in are left out; none at all gives the empty range.
TranslationRange find_translation(const std::vector<Point>& points, const Box& box);

/// Every translation n with which `moving` + n overlaps `box`.
TranslationRange find_translation(const Box& moving, const Box& box);

/// The transformations that bring the fractional points into `solid`: for
/// each operator in order, each translation of find_translation over the
/// operator's images, x outermost, bounds included. With AllIncluded every
/// image must lie inside; otherwise one is enough.
std::vector<CrystalSymmetryTransformation> find_symmetry_transformations(const Cell& cell,
                                                                         const std::vector<Point>& fractional,
                                                                         const TransformedSolid& solid,
                                                                         SymmetryFunctions::Condition condition);

/// The transformations that bring the region `from`, taken as its fractional
/// box, onto `to`: for each operator in order, each translation with which the
/// image of the box meets the box of `to` (AnyIncluded, EachIncluded), or
/// with which every corner of the image lies inside `to` (AllIncluded). For
/// AnyIncluded the result holds every transformation that brings some point
/// of the box inside `to`, and possibly more: callers weed those out point by
/// point. An empty box gives nothing; a box that is not finite throws
/// std::domain_error.
std::vector<CrystalSymmetryTransformation> find_symmetry_transformations(const Cell& cell,
                                                                         const TransformedSolid& from,
                                                                         const TransformedSolid& to,
                                                                         SymmetryFunctions::Condition condition);

}  // namespace molcryst

#endif

// SymmetryInclusionCondition: the rule by which a group of atoms (one
// molecule, or part of one) is expanded by symmetry into a region of the
// crystal, giving one list of mappings per image.
//
// IfAnyIncluded keeps every image with at least one point inside and then
// drops, point by point, what lands on a place already taken: a molecule on a
// symmetry element comes out whole once and in pieces after. IfCentroidIncluded
// keeps every image whose centroid is inside, one per distinct centroid,
// always whole: this is how a packing box is filled.
#ifndef MOLCRYST_CRYSTAL_SYMMETRYINCLUSIONCONDITION_H
#define MOLCRYST_CRYSTAL_SYMMETRYINCLUSIONCONDITION_H

#include <vector>

#include "molcryst/crystal/SymmetryGeneration.h"
#include "molcryst/geometry/FractionalSolid.h"
#include "molcryst/geometry/GeometryFunctions.h"

namespace molcryst {

/// How a group is expanded into a region; polymorphic, stateless.
template <class T>
class SymmetryInclusionCondition {
public:
    virtual ~SymmetryInclusionCondition() = default;
    /// One list of mappings per image of `elements` that the rule admits
    /// into `solid`, in the order of the search.
    virtual SymmetryMappingLists<T> symmetry_generator(const Cell& cell, const std::vector<T>& elements,
                                                       const TransformedSolid& solid) const = 0;
};

/// Images with at least one point inside, without points already taken.
template <class T>
class IfAnyIncluded : public SymmetryInclusionCondition<T> {
public:
    /// Below this many elements the transformations are searched point by
    /// point; from it on, the group's fractional box is carried to the region
    /// first, which costs less on larger groups. Both give the same mappings.
    static constexpr std::size_t box_search_threshold = 9;

    SymmetryMappingLists<T> symmetry_generator(const Cell& cell, const std::vector<T>& elements,
                                               const TransformedSolid& solid) const override {
        SymmetryMappingLists<T> lists;
        if (elements.size() < box_search_threshold) {
            lists = apply_symmetry(
                cell, find_symmetry_transformations(cell, elements, solid, SymmetryFunctions::AnyIncluded),
                elements);
        } else {
            THandle<Box> box(new Box());
            for (const T& x : elements) box->merge(SymmetryGenerator<T>::fractional_point(x));
            const FractionalSolid group(box);
            lists = apply_symmetry_if(
                cell, find_symmetry_transformations(cell, group, solid, SymmetryFunctions::AnyIncluded), elements,
                solid, SymmetryFunctions::AnyIncluded);
        }
        return remove_duplicate_points(*lists, 1e-07);
    }
};

/// Whole images whose centroid (of the fractional points) is inside, each
/// distinct centroid once. An empty group gives nothing.
template <class T>
class IfCentroidIncluded : public SymmetryInclusionCondition<T> {
public:
    SymmetryMappingLists<T> symmetry_generator(const Cell& cell, const std::vector<T>& elements,
                                               const TransformedSolid& solid) const override {
        if (elements.empty()) return SymmetryMappingLists<T>(new std::vector<SymmetryMappingList<T> >());
        std::vector<Point> points;
        points.reserve(elements.size());
        for (const T& x : elements) points.push_back(SymmetryGenerator<T>::fractional_point(x));
        return apply_symmetry(cell, find_symmetry_transformations(cell, centroid(points), solid), elements);
    }
};

extern template class IfAnyIncluded<HAtom>;
extern template class IfCentroidIncluded<HAtom>;

}  // namespace molcryst

#endif

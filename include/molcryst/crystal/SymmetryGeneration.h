// How an asymmetric unit grows: which symmetry transformations bring a group
// into a region of the crystal (find_symmetry_transformations), the images
// they make (apply_symmetry, apply_symmetry_if), and the removal of images
// that land on a place already taken (remove_duplicate_points).
//
// Results keep the order of the search: the spacegroup's operators in their
// order, then lattice translations with x outermost, then y, then z. Where
// two images fall on one place, the first in that order owns it.
//
// Written for any element type with a SymmetryGenerator; the atom forms are
// instantiated once in the library.
#ifndef MOLCRYST_CRYSTAL_SYMMETRYGENERATION_H
#define MOLCRYST_CRYSTAL_SYMMETRYGENERATION_H

#include <memory>
#include <vector>

#include "molcryst/crystal/CrystalSymmetryMapping.h"
#include "molcryst/geometry/SymmetryFunctions.h"

namespace molcryst {

namespace symmetry_detail {

/// The transformations that bring the fractional point `p` into `solid`,
/// each distinct image once: see find_symmetry_transformations<Point>.
std::vector<CrystalSymmetryTransformation> point_transformations(const Cell& cell, const Point& p,
                                                                 const TransformedSolid& solid);

/// The places taken so far, for remove_duplicate_points: points kept in
/// PointCompareXYZ order, a new point compared only with the first kept
/// point not less than it. An ordered tree, so that each claim costs log n.
class PlaceRegister {
public:
    explicit PlaceRegister(double tolerance);
    ~PlaceRegister();
    PlaceRegister(const PlaceRegister&) = delete;
    PlaceRegister& operator=(const PlaceRegister&) = delete;

    /// True, and `p` kept, unless the kept point at the lower bound of `p`
    /// equals it within the tolerance (strictly, per component).
    bool claim(const Point& p);

private:
    struct Places;
    double tolerance_;
    std::unique_ptr<Places> places_;
};

}  // namespace symmetry_detail

/// The transformations that bring the group into `solid`: for each operator
/// in order, each lattice translation that can bring some image point into
/// the solid's fractional box, x outermost; with AllIncluded every image must
/// lie inside, otherwise one is enough. Every element needs a fractional
/// point (an atom without a site throws std::invalid_argument).
template <class T>
std::vector<CrystalSymmetryTransformation> find_symmetry_transformations(const Cell& cell,
                                                                         const std::vector<T>& elements,
                                                                         const TransformedSolid& solid,
                                                                         SymmetryFunctions::Condition condition) {
    std::vector<Point> points;
    points.reserve(elements.size());
    for (const T& x : elements) points.push_back(SymmetryGenerator<T>::fractional_point(x));
    return find_symmetry_transformations(cell, points, solid, condition);
}

/// The transformations that bring one element's point into `solid`, each
/// distinct image point once: an image within 1e-07 (per component) of one
/// already accepted is passed over, so the first operator and translation
/// own the place.
template <class T>
std::vector<CrystalSymmetryTransformation> find_symmetry_transformations(const Cell& cell, const T& element,
                                                                         const TransformedSolid& solid) {
    return symmetry_detail::point_transformations(cell, SymmetryGenerator<T>::fractional_point(element), solid);
}

/// One new mapping per element, in order, to its image under `t`.
template <class T>
SymmetryMappingList<T> apply_symmetry(const Cell& cell, const CrystalSymmetryTransformation& t,
                                      const std::vector<T>& elements) {
    SymmetryMappingList<T> list(new std::vector<THandle<CrystalSymmetryMapping<T> > >());
    list->reserve(elements.size());
    const SymmetryGenerator<T> generator;
    for (const T& x : elements)
        list->push_back(THandle<CrystalSymmetryMapping<T> >(
            new CrystalSymmetryMapping<T>(x, generator.target(x, t, cell), t)));
    return list;
}

/// apply_symmetry for each transformation, in order.
template <class T>
SymmetryMappingLists<T> apply_symmetry(const Cell& cell, const std::vector<CrystalSymmetryTransformation>& ts,
                                       const std::vector<T>& elements) {
    SymmetryMappingLists<T> lists(new std::vector<SymmetryMappingList<T> >());
    lists->reserve(ts.size());
    for (const CrystalSymmetryTransformation& t : ts) lists->push_back(apply_symmetry(cell, t, elements));
    return lists;
}

/// The image under `t`, as far as it lies in `solid`. EachIncluded maps each
/// element whose image point is inside and no other. AnyIncluded and
/// AllIncluded map all elements or none: all when an image is inside
/// (AnyIncluded) or none is outside (AllIncluded).
template <class T>
SymmetryMappingList<T> apply_symmetry_if(const Cell& cell, const CrystalSymmetryTransformation& t,
                                         const std::vector<T>& elements, const TransformedSolid& solid,
                                         SymmetryFunctions::Condition condition) {
    if (condition == SymmetryFunctions::EachIncluded) {
        SymmetryMappingList<T> list(new std::vector<THandle<CrystalSymmetryMapping<T> > >());
        const SymmetryGenerator<T> generator;
        for (const T& x : elements)
            if (solid.contains(cell, t.apply(SymmetryGenerator<T>::fractional_point(x))))
                list->push_back(THandle<CrystalSymmetryMapping<T> >(
                    new CrystalSymmetryMapping<T>(x, generator.target(x, t, cell), t)));
        return list;
    }
    // Scan until one image is inside (AnyIncluded) or one is outside
    // (AllIncluded): the last point tested decides.
    const bool stop_when_inside = condition != SymmetryFunctions::AllIncluded;
    bool inside = false;
    for (const T& x : elements) {
        inside = solid.contains(cell, t.apply(SymmetryGenerator<T>::fractional_point(x)));
        if (inside == stop_when_inside) break;
    }
    if (inside) return apply_symmetry(cell, t, elements);
    return SymmetryMappingList<T>(new std::vector<THandle<CrystalSymmetryMapping<T> > >());
}

/// apply_symmetry_if for each transformation; one list per transformation,
/// empty ones included, in order.
template <class T>
SymmetryMappingLists<T> apply_symmetry_if(const Cell& cell, const std::vector<CrystalSymmetryTransformation>& ts,
                                          const std::vector<T>& elements, const TransformedSolid& solid,
                                          SymmetryFunctions::Condition condition) {
    SymmetryMappingLists<T> lists(new std::vector<SymmetryMappingList<T> >());
    lists->reserve(ts.size());
    for (const CrystalSymmetryTransformation& t : ts)
        lists->push_back(apply_symmetry_if(cell, t, elements, solid, condition));
    return lists;
}

/// The lists without the mappings whose target lands on a place already
/// taken, in list order and mapping order: a target's fractional point is
/// compared with the point that precedes no taken point less than it (its
/// lower bound in x, y, z order), and dropped if the two are equal within
/// `tolerance`, strictly, per component. Lists left empty are dropped; the
/// kept lists are new, and the mappings the same objects.
template <class T>
SymmetryMappingLists<T> remove_duplicate_points(const std::vector<SymmetryMappingList<T> >& lists, double tolerance) {
    SymmetryMappingLists<T> result(new std::vector<SymmetryMappingList<T> >());
    if (lists.empty()) return result;
    symmetry_detail::PlaceRegister places(tolerance);
    for (const SymmetryMappingList<T>& list : lists) {
        SymmetryMappingList<T> kept(new std::vector<THandle<CrystalSymmetryMapping<T> > >());
        kept->reserve(list->size());
        for (const THandle<CrystalSymmetryMapping<T> >& m : *list)
            if (places.claim(SymmetryGenerator<T>::fractional_point(m->target()))) kept->push_back(m);
        if (!kept->empty()) result->push_back(kept);
    }
    return result;
}

extern template SymmetryMappingList<HAtom> apply_symmetry<HAtom>(const Cell&, const CrystalSymmetryTransformation&,
                                                                  const std::vector<HAtom>&);
extern template SymmetryMappingLists<HAtom> apply_symmetry<HAtom>(const Cell&,
                                                                   const std::vector<CrystalSymmetryTransformation>&,
                                                                   const std::vector<HAtom>&);
extern template SymmetryMappingList<HAtom> apply_symmetry_if<HAtom>(const Cell&, const CrystalSymmetryTransformation&,
                                                                     const std::vector<HAtom>&,
                                                                     const TransformedSolid&,
                                                                     SymmetryFunctions::Condition);
extern template SymmetryMappingLists<HAtom> apply_symmetry_if<HAtom>(
    const Cell&, const std::vector<CrystalSymmetryTransformation>&, const std::vector<HAtom>&,
    const TransformedSolid&, SymmetryFunctions::Condition);
extern template SymmetryMappingLists<HAtom> remove_duplicate_points<HAtom>(
    const std::vector<SymmetryMappingList<HAtom> >&, double);

}  // namespace molcryst

#endif

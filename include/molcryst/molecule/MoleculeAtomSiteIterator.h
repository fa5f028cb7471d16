// MoleculeAtomSiteIterator: a walk over the atoms of a molecule that have sites.
#ifndef MOLCRYST_MOLECULE_MOLECULEATOMSITEITERATOR_H
#define MOLCRYST_MOLECULE_MOLECULEATOMSITEITERATOR_H

#include <cstddef>
#include <iterator>

#include "molcryst/geometry/Point.h"
#include "molcryst/molecule/Molecule.h"

namespace molcryst {

/// A forward iterator over the atoms of a molecule that have a site, in
/// index order, skipping the others. It yields each atom's orthogonal
/// position, so that `centroid(MoleculeAtomSiteIterator(m),
/// MoleculeAtomSiteIterator())` needs no vector of points. A default iterator
/// is the end of every walk. Editing the molecule or replacing a site
/// invalidates the iterators on it.
class MoleculeAtomSiteIterator {
public:
    typedef std::forward_iterator_tag iterator_category;
    typedef Point value_type;
    typedef std::ptrdiff_t difference_type;
    typedef const Point* pointer;
    typedef const Point& reference;

    /// The end.
    MoleculeAtomSiteIterator() = default;
    /// At the first atom of `molecule` with a site, or the end if none has one.
    explicit MoleculeAtomSiteIterator(const Molecule& molecule);

    /// The orthogonal position of the current atom's site; std::out_of_range at the end.
    const Point& operator*() const;
    const Point* operator->() const { return &**this; }
    /// The current atom; std::out_of_range at the end.
    HAtom atom() const;
    /// The current atom's index in the molecule; meaningless at the end.
    int index() const { return index_; }

    MoleculeAtomSiteIterator& operator++();
    MoleculeAtomSiteIterator operator++(int);

    /// Both at the end, or both at the same atom of the same molecule.
    bool operator==(const MoleculeAtomSiteIterator& other) const;
    bool operator!=(const MoleculeAtomSiteIterator& other) const { return !(*this == other); }

private:
    /// Steps on from the current index to the next atom with a site, or to the end.
    void find_next_site();

    const Molecule* molecule_ = nullptr;
    int index_ = 0;
    bool at_end_ = true;
};

}  // namespace molcryst

#endif

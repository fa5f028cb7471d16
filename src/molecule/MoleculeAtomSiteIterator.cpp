#include "molcryst/molecule/MoleculeAtomSiteIterator.h"

#include <stdexcept>

#include "molcryst/molecule/Site.h"

namespace molcryst {

MoleculeAtomSiteIterator::MoleculeAtomSiteIterator(const Molecule& molecule)
    : molecule_(&molecule), index_(0), at_end_(false) {
    find_next_site();
}

void MoleculeAtomSiteIterator::find_next_site() {
    const int n = molecule_->natoms();
    while (index_ < n && !molecule_->atom(index_)->has_site()) ++index_;
    if (index_ >= n) at_end_ = true;
}

HAtom MoleculeAtomSiteIterator::atom() const {
    if (at_end_) throw std::out_of_range("MoleculeAtomSiteIterator::atom - past the end");
    return molecule_->atom(index_);
}

const Point& MoleculeAtomSiteIterator::operator*() const {
    if (at_end_) throw std::out_of_range("MoleculeAtomSiteIterator::operator* - past the end");
    // The point lives in the site, which the atom holds, which the molecule holds.
    return molecule_->atom(index_)->site()->orth();
}

MoleculeAtomSiteIterator& MoleculeAtomSiteIterator::operator++() {
    if (at_end_) return *this;
    ++index_;
    find_next_site();
    return *this;
}

MoleculeAtomSiteIterator MoleculeAtomSiteIterator::operator++(int) {
    MoleculeAtomSiteIterator old(*this);
    ++*this;
    return old;
}

bool MoleculeAtomSiteIterator::operator==(const MoleculeAtomSiteIterator& other) const {
    if (at_end_ || other.at_end_) return at_end_ && other.at_end_;
    return molecule_ == other.molecule_ && index_ == other.index_;
}

}  // namespace molcryst

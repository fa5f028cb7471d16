#include "molcryst/edit/GeometryCollection.h"

#include <stdexcept>

namespace molcryst {

GeometryCollection::GeometryCollection(const HMolecule& molecule) : MoleculeGeometrySelector(molecule) {
    if (molecule.unhand() == nullptr)
        throw std::invalid_argument("GeometryCollection::GeometryCollection(molecule): Invalid molecule.");
}

GeometryCollection::GeometryCollection(const HMolecule& molecule, const vector_HMoleculeGeometryEdit& edits)
    : GeometryCollection(molecule) {
    validate_edits(edits);
    edits_ = edits;
}

void GeometryCollection::start() { set(0); }

void GeometryCollection::next() {
    if (done()) throw std::runtime_error("GeometryCollection::next no more steps in iteraction.");
    set(current_ + 1);
}

bool GeometryCollection::done() const { return edits_.empty() || current_ >= nsteps() - 1; }

void GeometryCollection::set(int i) {
    if (edits_.empty() || i < 0 || i > nsteps() - 1)
        throw std::out_of_range("GeometryCollection::set: passed index is off range or collection is empty.");
    // The step counts as taken only once its edit has gone through.
    edits_[static_cast<std::size_t>(i)]->apply();
    current_ = i;
}

int GeometryCollection::current_step() const {
    if (edits_.empty() || current_ == -1)
        throw std::runtime_error("GeometryCollection::current_step: not identified current step.");
    return current_;
}

HMoleculeGeometryEdit GeometryCollection::current_edit() const {
    if (current_ < 0)
        throw std::runtime_error(
            "GeometryCollection::current_edit: it has not been applied any of this' current edits to molecule.");
    return edits_[static_cast<std::size_t>(current_)];
}

vector_HMoleculeGeometryEdit::const_iterator GeometryCollection::edit_it(int index) const {
    if (index < 0 || index >= nsteps())
        throw std::out_of_range("GeometryCollection::edit_it: out of range index or empty collection.");
    return edits_.begin() + index;
}

void GeometryCollection::validate_edits(const vector_HMoleculeGeometryEdit& edits) const {
    for (const HMoleculeGeometryEdit& edit : edits) {
        if (edit.unhand() == nullptr)
            throw std::invalid_argument("GeometryCollection::validate_edits: HMoleculeGeometryEdit element is NULL.");
        if (!(edit->molecule() == molecule_))
            throw std::invalid_argument(
                "GeometryCollection::validate_edits: Wrong molecule in a MoleculeGeometryEdit object in this "
                "collection");
    }
}

}  // namespace molcryst

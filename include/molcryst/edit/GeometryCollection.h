// GeometryCollection: a selector over a list of prepared edits of one
// molecule. set(i) applies edit i to the molecule as it stands, so over
// relative edits stepping composes them.
#ifndef MOLCRYST_EDIT_GEOMETRYCOLLECTION_H
#define MOLCRYST_EDIT_GEOMETRYCOLLECTION_H

#include "molcryst/edit/MoleculeGeometrySelector.h"

namespace molcryst {

/// A list of edits of one molecule, stepped through in order.
class GeometryCollection : public MoleculeGeometrySelector {
public:
    /// An empty collection. A null molecule throws std::invalid_argument.
    explicit GeometryCollection(const HMolecule& molecule);
    /// The edits, checked by validate_edits; a null molecule throws
    /// std::invalid_argument.
    GeometryCollection(const HMolecule& molecule, const vector_HMoleculeGeometryEdit& edits);

    void start() override;
    /// std::runtime_error when done().
    void next() override;
    /// True when the collection is empty or the last edit is the current one.
    bool done() const override;
    /// Applies edit `i`; std::out_of_range outside 0 .. nsteps() - 1.
    void set(int i) override;
    int nsteps() const override { return static_cast<int>(edits_.size()); }
    /// std::runtime_error before any set.
    int current_step() const override;
    /// std::runtime_error before any set.
    HMoleculeGeometryEdit current_edit() const override;

    vector_HMoleculeGeometryEdit::const_iterator begin_edits() const { return edits_.begin(); }
    vector_HMoleculeGeometryEdit::const_iterator end_edits() const { return edits_.end(); }
    /// The edit at `index`; std::out_of_range outside the collection.
    vector_HMoleculeGeometryEdit::const_iterator edit_it(int index) const;

    /// Each edit must be non-null (std::invalid_argument) and act on this
    /// collection's molecule (std::invalid_argument).
    void validate_edits(const vector_HMoleculeGeometryEdit& edits) const;

private:
    vector_HMoleculeGeometryEdit edits_;
    int current_ = -1;  // the edit applied last; -1 when none was
};

typedef THandle<GeometryCollection> HGeometryCollection;

}  // namespace molcryst

#endif

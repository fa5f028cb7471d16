#include "molcryst/edit/DisorderAtom.h"

namespace molcryst {

HAtom DisorderAtom::clone() const { return HAtom(new DisorderAtom(parent_atom(), assembly_, group_)); }

void DisorderAtom::print(std::ostream& out) const {
    // A dead proxy goes through the base print, whose queries raise the proxy's error.
    if (parent_atom().unhand() != nullptr)
        parent_atom()->print(out);
    else
        Atom::print(out);
    out << ", assembly: " << assembly_ << ", group: " << group_;
}

}  // namespace molcryst

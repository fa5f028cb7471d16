#include "molcryst/connectivity/ConnectivityAtom.h"

#include <stdexcept>
#include <string>

#include "molcryst/connectivity/ConnectivityBond.h"

namespace molcryst {

int ConnectivityAtom::nhydrogens(bool all_isotopes) const {
    if (graph_data_.graph().unhand() == nullptr)
        throw std::runtime_error("ConnectivityAtom::nhydrogens cannot work when graph() == 0");
    int count = 0;
    const NeighbourIterator end = graph_data_.end_neighbours();
    for (NeighbourIterator n = graph_data_.begin_neighbours(); n != end; ++n) {
        const Element e = (*n)->element();
        if (all_isotopes ? e.atomic_number() == 1 : e.code() == Element::H) ++count;
    }
    return count;
}

void ConnectivityAtom::print(std::ostream& out) const {
    out << "element: " << element_.symbol() << ", formal_charge: " << formal_charge_;
}

void ConnectivityAtom::write(Archive& ar) const {
    element_.write(ar);
    ar << formal_charge_;
}

void ConnectivityAtom::read(Archive& ar) {
    Element element;
    {
        Archive::Field field(ar, "ConnectivityAtom::read element");
        signed char code = 0;
        ar >> code;
        // A code outside the table is a malformed archive, not a bad argument.
        if (code < 0 || code >= Element::ncodes_) ar.read_error("element code " + std::to_string(code) + " is not in the table");
        element = Element(static_cast<Element::TARNCode>(code));
    }
    int charge = 0;
    {
        Archive::Field field(ar, "ConnectivityAtom::read formal_charge");
        ar >> charge;
    }
    element_ = element;
    formal_charge_ = charge;
}

Archive& operator<<(Archive& ar, const ConnectivityAtom& atom) {
    atom.write(ar);
    return ar;
}

Archive& operator>>(Archive& ar, ConnectivityAtom& atom) {
    atom.read(ar);
    return ar;
}

}  // namespace molcryst

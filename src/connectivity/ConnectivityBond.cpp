#include "molcryst/connectivity/ConnectivityBond.h"

#include <stdexcept>
#include <string>

#include "molcryst/connectivity/ConnectivityAtom.h"

namespace molcryst {

void ConnectivityBond::set_type(int type) {
    if (type < 0 || type > 9) throw std::invalid_argument("ConnectivityBond::set_type: Illegal bond type.");
    type_ = type;
}

HConnectivityAtom ConnectivityBond::atom1() const { return graph_data_.atom1(); }
HConnectivityAtom ConnectivityBond::atom2() const { return graph_data_.atom2(); }
HConnectivityAtom ConnectivityBond::other_atom(const HConnectivityAtom& atom) const {
    return graph_data_.other_atom(atom);
}

void ConnectivityBond::print(std::ostream& out) const {
    out << "type: " << type_;
    // A free bond has no ends to show; printing never throws.
    if (!is_in_connectivity()) return;
    out << ", atom1: " << " (" << atom1()->index() << ")" << ", atom2: " << " (" << atom2()->index() << ")";
}

void ConnectivityBond::write(Archive& ar) const { ar << type_; }

void ConnectivityBond::read(Archive& ar) {
    Archive::Field field(ar, "ConnectivityBond::read type");
    int type = 0;
    ar >> type;
    if (type < 0 || type > 9) ar.read_error("bond type " + std::to_string(type) + " is not 0 to 9");
    type_ = type;
}

Archive& operator<<(Archive& ar, const ConnectivityBond& bond) {
    bond.write(ar);
    return ar;
}

Archive& operator>>(Archive& ar, ConnectivityBond& bond) {
    bond.read(ar);
    return ar;
}

}  // namespace molcryst

#include "molcryst/connectivity/ConnectivityBond.h"

#include <stdexcept>
#include <string>

#include "molcryst/connectivity/ConnectivityAtom.h"

namespace molcryst {

ConnectivityBond::ConnectivityBond() = default;
ConnectivityBond::ConnectivityBond(int type) { set_type(type); }
ConnectivityBond::ConnectivityBond(const ConnectivityBond& other) : type_(other.type_) {}
ConnectivityBond& ConnectivityBond::operator=(const ConnectivityBond& other) {
    type_ = other.type_;
    return *this;
}
ConnectivityBond::~ConnectivityBond() = default;

void ConnectivityBond::set_type(int type) {
    if (type < 0 || type > 9) throw std::invalid_argument("ConnectivityBond::set_type: Illegal bond type.");
    type_ = type;
}

// The graph questions are answered here, where both atom and bond types are complete.
int ConnectivityBond::index() const { return graph_data_.index(); }
bool ConnectivityBond::cyclic() const { return graph_data_.cyclic(); }
int ConnectivityBond::smallest_ring_size() const { return graph_data_.smallest_ring_size(); }
bool ConnectivityBond::is_in_connectivity() const { return graph_data_.is_in_connectivity(); }
HConnectivityBond ConnectivityBond::clone() const { return HConnectivityBond(new ConnectivityBond(*this)); }

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

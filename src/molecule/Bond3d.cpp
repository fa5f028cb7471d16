#include "molcryst/molecule/Bond3d.h"

#include <stdexcept>

namespace molcryst {

HBond Bond3d::clone() const { return HBond(new Bond3d(*this)); }

void Bond3d::set_type(BondType type) {
    if (static_cast<unsigned int>(type) > 9u) throw std::invalid_argument("Bond3d::set_type: Illegal bond type.");
    type_ = type;
}

void Bond3d::write(Archive& ar) const { ar << type_; }

void Bond3d::read(Archive& ar) {
    Archive::Field field(ar, "Bond3d::read type");
    ar >> type_;
}

}  // namespace molcryst

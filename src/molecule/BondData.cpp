#include "molcryst/molecule/BondData.h"

#include "molcryst/molecule/Bond.h"

namespace molcryst {

BondData::BondData(const Bond& bond) : atom1_(bond.atom1()->index()), atom2_(bond.atom2()->index()), type_(bond.type()) {}

void BondData::write(Archive& ar) const {
    // Unsigned arithmetic: out-of-range indices wrap into the neighbouring field, as documented.
    unsigned int packed = (static_cast<unsigned int>(atom1_) << 18) + (static_cast<unsigned int>(atom2_) << 4) +
                          static_cast<unsigned int>(type_);
    ar << packed;
}

void BondData::read(Archive& ar) {
    Archive::Field field(ar, "BondData::read packed bond");
    unsigned int packed = 0;
    ar >> packed;
    atom1_ = static_cast<int>(packed >> 18);
    atom2_ = static_cast<int>((packed >> 4) & 0x3FFFu);
    type_ = static_cast<BondType>(packed & 0xFu);
}

Archive& operator<<(Archive& ar, const BondData& bond) {
    bond.write(ar);
    return ar;
}

Archive& operator>>(Archive& ar, BondData& bond) {
    bond.read(ar);
    return ar;
}

}  // namespace molcryst

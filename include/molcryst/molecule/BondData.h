// BondData: a bond described by the indices of its atoms, free of any
// molecule; the form in which molecules archive and create their bonds.
#ifndef MOLCRYST_MOLECULE_BONDDATA_H
#define MOLCRYST_MOLECULE_BONDDATA_H

#include "molcryst/molecule/BondType.h"
#include "molcryst/support/Archive.h"

namespace molcryst {

class Bond;

/// Atom indices and a type. Archived packed into one unsigned int,
/// atom1 * 2^18 + atom2 * 2^4 + type, so indices above 16383 do not survive
/// (the writer does not check: a larger atom2 spills into atom1).
class BondData {
public:
    BondData() = default;
    /// Indices 0, to be set with set_atoms.
    explicit BondData(BondType type) : type_(type) {}
    /// The indices of the bond's ends and its type.
    explicit BondData(const Bond& bond);
    BondData(int atom1, int atom2, BondType type) : atom1_(atom1), atom2_(atom2), type_(type) {}
    virtual ~BondData() = default;
    BondData(const BondData&) = default;
    BondData& operator=(const BondData&) = default;

    int atom1() const { return atom1_; }
    int atom2() const { return atom2_; }
    BondType type() const { return type_; }
    void set_atoms(int atom1, int atom2) {
        atom1_ = atom1;
        atom2_ = atom2;
    }
    void set_type(BondType type) { type_ = type; }

    void write(Archive& ar) const;
    void read(Archive& ar);

    /// All three fields, atoms in the given order.
    bool operator==(const BondData& other) const {
        return atom1_ == other.atom1_ && atom2_ == other.atom2_ && type_ == other.type_;
    }
    bool operator!=(const BondData& other) const { return !(*this == other); }

private:
    int atom1_ = 0;
    int atom2_ = 0;
    BondType type_ = UNKNOWN_BOND;
};

Archive& operator<<(Archive& ar, const BondData& bond);
Archive& operator>>(Archive& ar, BondData& bond);
template <>
struct ArchiveMinSize<BondData> {
    static constexpr std::size_t value = 4;
};

}  // namespace molcryst

#endif

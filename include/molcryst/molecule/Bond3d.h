// Bond3d: the concrete, archivable bond, which stores its type.
#ifndef MOLCRYST_MOLECULE_BOND3D_H
#define MOLCRYST_MOLECULE_BOND3D_H

#include "molcryst/molecule/BondInGraph.h"

namespace molcryst {

/// A bond of a given type; its ends come from the graph it is in.
class Bond3d : public BondInGraph {
public:
    /// The type is not checked here, only by set_type.
    explicit Bond3d(BondType type = UNKNOWN_BOND) : type_(type) {}
    /// Copies the type only.
    explicit Bond3d(const Bond& bond) : type_(bond.type()) {}
    explicit Bond3d(Archive& ar) { read(ar); }
    Bond3d(const Bond3d& other) = default;
    Bond3d& operator=(const Bond3d& other) = default;

    HBond clone() const override;
    BondType type() const override { return static_cast<BondType>(type_); }
    /// Refuses values outside 0 to 9 with std::invalid_argument.
    void set_type(BondType type) override;
    bool archivable() override { return true; }
    /// One int, the type.
    void write(Archive& ar) const override;
    /// Reads the type unchecked.
    void read(Archive& ar) override;

private:
    int type_ = UNKNOWN_BOND;  // 0 to 9; stored as read from an archive
};

typedef THandle<Bond3d> HBond3d;

}  // namespace molcryst

#endif

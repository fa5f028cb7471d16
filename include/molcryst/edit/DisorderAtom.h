// DisorderAtom: an atom seen with the disorder assembly and group it belongs
// to, so that rules on pairs of atoms can tell alternatives apart.
#ifndef MOLCRYST_EDIT_DISORDERATOM_H
#define MOLCRYST_EDIT_DISORDERATOM_H

#include <ostream>

#include "molcryst/molecule/ProxyAtom.h"

namespace molcryst {

/// A proxy of an atom with its disorder assembly and group; group 0 is the
/// ordered part.
class DisorderAtom : public ProxyAtom {
public:
    DisorderAtom(const HAtom& parent, int assembly, int group)
        : ProxyAtom(parent), assembly_(assembly), group_(group) {}

    /// A new proxy of the same parent, assembly and group, in no graph.
    HAtom clone() const override;
    /// The parent's print, then ", assembly: " and ", group: " with their values.
    void print(std::ostream& out) const override;

    int assembly() const { return assembly_; }
    void set_assembly(int assembly) { assembly_ = assembly; }
    int group() const { return group_; }
    void set_group(int group) { group_ = group; }

private:
    int assembly_;
    int group_;  // 0 when ordered
};

typedef THandle<DisorderAtom> HDisorderAtom;

}  // namespace molcryst

#endif

#include "molcryst/edit/TorsionAngleSetting.h"

#include <stdexcept>

namespace molcryst {

TorsionAngleSetting::TorsionAngleSetting(const HMolecule& molecule, int atom1, int atom2, int atom3, int atom4,
                                         const Angle& angle)
    : angle_(angle) {
    if (molecule.unhand() == nullptr) throw std::invalid_argument("TorsionAngleSetting() invalid zero molecule handle");
    atom1_ = molecule->atom(atom1);
    atom2_ = molecule->atom(atom2);
    atom3_ = molecule->atom(atom3);
    atom4_ = molecule->atom(atom4);
}

TorsionAngleSetting::TorsionAngleSetting(const HAtom& atom1, const HAtom& atom2, const HAtom& atom3,
                                         const HAtom& atom4, const Angle& angle)
    : atom1_(atom1), atom2_(atom2), atom3_(atom3), atom4_(atom4), angle_(angle) {
    if (atom1.unhand() == nullptr || atom2.unhand() == nullptr || atom3.unhand() == nullptr ||
        atom4.unhand() == nullptr)
        throw std::invalid_argument("TorsionAngleSetting() invalid zero atom handle");
}

}  // namespace molcryst

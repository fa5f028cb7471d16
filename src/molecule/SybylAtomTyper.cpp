#include "molcryst/molecule/SybylAtomTyper.h"

#include <stdexcept>

#include "molcryst/molecule/Atom.h"
#include "molcryst/molecule/Bond.h"

namespace molcryst {

SybylAtomTyper::SybylAtomTyper(OxygenProtonationTreatment treatment) : oxygen_treatment_(treatment) {}

std::string SybylAtomTyper::name() const { return "SybylAtomTyper"; }

// The decision lists are being written; until then typing refuses.
std::string SybylAtomTyper::atom_type(const Atom&) const {
    throw std::logic_error("SybylAtomTyper::atom_type not available yet");
}
std::string SybylAtomTyper::bond_type(const Bond&) const {
    throw std::logic_error("SybylAtomTyper::bond_type not available yet");
}

}  // namespace molcryst

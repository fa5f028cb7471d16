#include "molcryst/edit/DisorderState.h"

#include <set>
#include <stdexcept>

#include "DisorderChecks.h"

namespace molcryst {

DisorderState::DisorderState(const HMolecule& molecule) : MoleculeGeometryEdit(molecule) {
    if (molecule.unhand() == nullptr) throw std::invalid_argument("DisorderState::DisorderState: Invalid molecule.");
}

DisorderState::DisorderState(const HMolecule& molecule, const vector_HAtomSiteMapping& edit_data)
    : MoleculeGeometryEdit(molecule) {
    if (molecule.unhand() == nullptr)
        throw std::invalid_argument("DisorderState::DisorderState(mol, edit_data): Invalid molecule.");
    validate(molecule, edit_data);
    edit_data_ = edit_data;
}

void DisorderState::apply() const {
    validate_edit_data();
    for (const HAtomSiteMapping& group : edit_data_) group->apply();
}

void DisorderState::validate_edit_data() const { validate(molecule_, edit_data_); }

void DisorderState::validate(const HMolecule& molecule, const vector_HAtomSiteMapping& edit_data) {
    static const std::string who = "DisorderState::validate_edit_data";
    for (const HAtomSiteMapping& group : edit_data) {
        if (group.unhand() == nullptr) throw std::runtime_error(who + " an edit_data element is NULL.");
        if (group->empty()) throw std::runtime_error(who + " an AtomSiteMapping is empty.");
        for (const AtomSiteMapping::Map::value_type& entry : *group)
            if (!molecule->has_atom(entry.first))
                throw std::runtime_error(who + " an atom in AtomSiteMapping is not in molecule.");
        disorder_checks::check_sites(*group, who);
    }
    std::set<const Atom*> seen;
    for (const HAtomSiteMapping& group : edit_data)
        for (const AtomSiteMapping::Map::value_type& entry : *group)
            if (!seen.insert(entry.first.unhand()).second)
                throw std::runtime_error(who + " found atom shared by two disordered groups.");
}

}  // namespace molcryst
